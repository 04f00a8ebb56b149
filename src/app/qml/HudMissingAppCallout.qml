pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The callout shown while the vault has no shortcuts for the app: it offers the menu scan.
Rectangle {
    id: callout
    required property CheatSheetModel model
    required property ThemedSurface theme

    signal scanMenus()

    objectName: "missingAppCallout"
    visible: !callout.model.vaultReady
    height: visible ? content.implicitHeight + 28 : 0
    radius: 10
    color: callout.theme.tinted(callout.theme.orange, 0.1)
    border.color: callout.theme.tinted(callout.theme.orange, 0.18)
    border.width: 1

    RowLayout {
        id: content
        anchors.fill: parent
        anchors.margins: 14
        spacing: 12
        Symbol {
            Layout.alignment: Qt.AlignTop
            name: "text.viewfinder"
            tint: callout.theme.orange
            side: 20
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 4
            Label {
                text: "This app is not in the vault yet"
                font.pixelSize: 13
                font.weight: Font.DemiBold
                Accessible.name: text
            }
            Label {
                Layout.fillWidth: true
                text: "Click Scan Menus to read commands from " + callout.model.appName
                      + "'s menu bar. Global desktop essentials are still shown below."
                font.pixelSize: 12
                wrapMode: Text.WordWrap
                Accessible.name: text
            }
        }
        Button {
            id: scanButton
            text: "Scan Menus"
            icon.source: callout.theme.tintedSymbol("text.viewfinder", scanButton.palette.buttonText)
            icon.color: "transparent"
            focusPolicy: Qt.TabFocus
            Accessible.name: text
            onClicked: callout.scanMenus()
            Accessible.onPressAction: if (enabled) clicked()
        }
    }
}
