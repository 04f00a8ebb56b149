import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// Every shortcut of every app, grouped by app, with search, counts, the open-apps scan and the
// scanner's status line.
ThemedSurface {
    id: root
    required property var model   // BrowserModel

    signal scanOpenApps()
    signal showJson()

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
            }
            BusyIndicator {
                implicitWidth: 20
                implicitHeight: 20
                running: root.model.isScanning
                visible: running
            }
            Button {
                objectName: "scanOpenAppsButton"
                text: "Scan Open Apps"
                icon.source: root.tintedSymbol("square.stack.3d.up", palette.buttonText)
                icon.color: "transparent"
                enabled: !root.model.isScanning
                Accessible.name: text
                onClicked: root.scanOpenApps()
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
                Component.onCompleted: forceActiveFocus()
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
                section.delegate: RowLayout {
                    required property string section
                    width: list.width - list.leftMargin - list.rightMargin
                    spacing: 8
                    height: 36
                    AppIconView {
                        size: 20
                        bundleID: root.model.bundleIDForGroup(section)
                        fallbackSystemImage: root.model.bundleIDForGroup(section) ? "app.dashed" : "keyboard"
                    }
                    Label {
                        text: section
                        font.pixelSize: 13
                        font.weight: Font.DemiBold
                        Accessible.name: text
                    }
                    Label {
                        objectName: "groupCount"
                        // A header is kept while its group stays in the list: the count must
                        // follow the rows, so it binds to the counts, not a one-off call.
                        text: root.model.groupCounts[section] ?? 0
                        font.pixelSize: 11
                        color: root.secondary
                    }
                    Item { Layout.fillWidth: true }
                }

                delegate: VaultBrowserRow {
                    width: list.width - list.leftMargin - list.rightMargin
                    onCopyChord: root.model.copyChord(chord)
                }
            }
        }
    }
}
