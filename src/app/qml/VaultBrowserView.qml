// No "pragma ComponentBehavior: Bound" here: in Qt 6.4 a ListView cannot create the header,
// footer or section delegates of a bound file ("Component is not ready"). Without it, qmllint
// takes the ids the list's delegates use for unqualified names, so that one check is off around
// them; every lookup there names its object by id all the same.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// Every shortcut of every app, grouped by app, with search, counts, the open-apps scan and the
// scanner's status line. Its commands go out as signals, which the model passes on to the
// application.
ThemedSurface {
    id: root
    required property BrowserModel model

    signal scanOpenApps()
    signal showJson()

    onScanOpenApps: root.model.requestScanOpenApps()
    onShowJson: root.model.requestShowJson()

    implicitWidth: 760
    implicitHeight: 620

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 18
            Layout.bottomMargin: 10
            spacing: 10
            ColumnLayout {
                spacing: 2
                Label {
                    text: "All Shortcuts"
                    font.pixelSize: 20
                    font.bold: true
                    Accessible.name: text
                }
                Label {
                    objectName: "countsLine"
                    text: root.model.appPackCount + " app packs • " + root.model.shortcutCount + " shortcuts"
                    color: root.secondary
                    font.pixelSize: 12
                    Accessible.name: text
                }
            }
            Item { Layout.fillWidth: true }
            Button {
                text: "Show JSON"
                focusPolicy: Qt.TabFocus
                Accessible.name: text
                onClicked: root.showJson()
                Accessible.onPressAction: if (enabled) clicked()
            }
            BusyIndicator {
                implicitWidth: 20
                implicitHeight: 20
                running: root.model.isScanning
                visible: running
            }
            Button {
                id: scanOpenAppsButton
                objectName: "scanOpenAppsButton"
                text: "Scan Open Apps"
                icon.source: root.tintedSymbol("square.stack.3d.up",
                                               scanOpenAppsButton.palette.buttonText)
                icon.color: "transparent"
                enabled: !root.model.isScanning
                Accessible.name: text
                onClicked: root.scanOpenApps()
                Accessible.onPressAction: if (enabled) clicked()
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            Layout.bottomMargin: 8
            visible: root.model.statusText.length > 0
            spacing: 8
            Symbol {
                name: root.model.isScanning ? "hourglass" : "info.circle.fill"
                tint: root.blue
                side: 14
            }
            Label {
                objectName: "statusLine"
                Layout.fillWidth: true
                text: root.model.statusText
                color: root.secondary
                font.pixelSize: 12
                wrapMode: Text.WordWrap
                Accessible.name: text
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            Layout.bottomMargin: 10
            spacing: 8
            Symbol {
                name: "magnifyingglass"
                tint: root.secondary
            }
            TextField {
                id: search
                objectName: "browserSearch"
                Layout.fillWidth: true
                placeholderTextColor: root.tinted(root.primary, 0.55)
                placeholderText: "Search every app, action, shortcut, tag, or menu path"
                text: root.model.query
                onTextEdited: root.model.query = text
                Accessible.name: placeholderText
                Component.onCompleted: search.forceActiveFocus()
            }
        }
        Rectangle {
            Layout.fillWidth: true
            height: 1
            color: Qt.rgba(root.primary.r, root.primary.g, root.primary.b, 0.1)
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            ColumnLayout {
                objectName: "emptyState"
                anchors.centerIn: parent
                visible: root.model.rowCount === 0
                spacing: 8
                Symbol {
                    Layout.alignment: Qt.AlignHCenter
                    name: "text.magnifyingglass"
                    side: 32
                    tint: root.secondary
                }
                Label {
                    Layout.alignment: Qt.AlignHCenter
                    text: "No shortcuts found"
                    font.weight: Font.DemiBold
                    font.pixelSize: 15
                    Accessible.name: text
                }
                Label {
                    Layout.alignment: Qt.AlignHCenter
                    text: "Try an app name like Files, a command like screenshot, or a chord like Ctrl+K."
                    color: root.secondary
                    font.pixelSize: 12
                    Accessible.name: text
                }
            }

            ListView {
                id: list
                objectName: "browserList"
                anchors.fill: parent
                visible: root.model.rowCount > 0
                clip: true
                spacing: 4
                leftMargin: 16
                rightMargin: 16
                topMargin: 10
                bottomMargin: 16
                model: root.model.rows
                ScrollBar.vertical: ScrollBar {}

                section.property: "group"
                // qmllint disable unqualified
                // The group's name comes from the list's `section` context property: Qt 6.4
                // reuses a title for another group after the rows change and updates only that
                // property, never a required one.
                section.delegate: VaultBrowserSection {
                    width: list.width - list.leftMargin - list.rightMargin
                    group: section
                    model: root.model
                    theme: root
                }

                delegate: VaultBrowserRow {
                    id: row
                    width: list.width - list.leftMargin - list.rightMargin
                    onCopyChord: root.model.copyChord(row.chord)
                }
                // qmllint enable unqualified
            }
        }
    }
}
