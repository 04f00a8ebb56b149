// SPDX-License-Identifier: MIT
// A coach tip: a yellow lightbulb beside the tip's title, its message and two buttons.
// Sizes are device-independent pixels, like the panel that hosts the view.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

ThemedSurface {
    id: view

    /// The tip to show: an object with `id`, `title` and `message`.
    required property var tip
    /// Passes the buttons on to the panel's presenter; none when the view only shows.
    property CoachTipCommands commands: null
    /// The lightbulb image, a bundled symbol in yellow, so it is never blank.
    property url symbolSource: view.tintedSymbol("lightbulb.fill", "#f5c211")

    /// "Not now" (also Escape).
    signal dismiss()
    /// "Don't show again".
    signal neverShow()

    onDismiss: if (view.commands) view.commands.dismiss()
    onNeverShow: if (view.commands) view.commands.neverShow()

    implicitWidth: 360
    implicitHeight: content.implicitHeight + 2 * 14
    radius: 12
    color: tinted(windowColor, 0.97)
    border.width: 1
    border.color: tinted(primary, 0.08)

    RowLayout {
        id: content
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        anchors.margins: 14
        spacing: 10

        Image {
            objectName: "symbol"
            Layout.alignment: Qt.AlignTop
            Layout.preferredWidth: 24
            Layout.preferredHeight: 24
            sourceSize.width: 48
            sourceSize.height: 48
            source: view.symbolSource
            fillMode: Image.PreserveAspectFit
            smooth: true
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.alignment: Qt.AlignTop
            spacing: 4

            Label {
                objectName: "title"
                Layout.fillWidth: true
                text: view.tip ? view.tip.title : ""
                font.pixelSize: 14
                font.weight: Font.DemiBold
                elide: Text.ElideRight
            }

            Label {
                objectName: "message"
                Layout.fillWidth: true
                text: view.tip ? view.tip.message : ""
                font.pixelSize: 12
                wrapMode: Text.WordWrap
                maximumLineCount: 3
                elide: Text.ElideRight
            }

            RowLayout {
                Layout.topMargin: 4
                spacing: 8

                Button {
                    objectName: "notNowButton"
                    text: "Not now"
                    font.pixelSize: 12
                    focusPolicy: Qt.NoFocus
                    onClicked: view.dismiss()
                    Accessible.onPressAction: if (enabled) clicked()
                }
                Button {
                    objectName: "neverShowButton"
                    text: "Don't show again"
                    font.pixelSize: 12
                    focusPolicy: Qt.NoFocus
                    onClicked: view.neverShow()
                    Accessible.onPressAction: if (enabled) clicked()
                }
            }
        }
    }

    // The cancel key of the panel.
    Shortcut {
        sequence: "Escape"
        onActivated: view.dismiss()
    }
}
