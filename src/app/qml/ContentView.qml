import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// The cheat sheet shown in the HUD panel: the previous app's shortcuts and the global ones,
// filtered live by the search field, with keyboard selection, favourites, chord copying, a menu
// scan and the quick text helpers. It owns no data; every command goes out as a signal.
ThemedSurface {
    id: root
    required property var model      // CheatSheetModel
    required property var navigator  // ListNavigator

    signal close()
    signal reload()
    signal scanMenus()
    signal browseAll()
    signal settings()
    signal helperAction(string action)

    readonly property bool vaultReady: model.vaultReady

    implicitWidth: 720
    implicitHeight: 560
    radius: 12
    border.color: tinted(primary, 0.12)
    Accessible.name: "Tessaline cheat sheet"

    Component.onCompleted: {
        root.model.filter = ""
        search.forceActiveFocus()
        root.navigator.syncCount(root.model.flatCount)
        root.navigator.start()
    }
    Component.onDestruction: root.navigator.stop()

    Connections {
        target: root.model
        function onFilterChanged() {
            root.navigator.selection = -1
            root.navigator.syncCount(root.model.flatCount)
        }
        function onSectionsChanged() { root.navigator.syncCount(root.model.flatCount) }
    }
    Connections {
        target: root.navigator
        function onSearchFocusRequestChanged() { search.forceActiveFocus() }
        function onSelectionChanged() {
            if (root.navigator.selection >= 0)
                list.scrollTo(root.navigator.selection)
        }
    }

    Shortcut {
        sequence: "Escape"
        onActivated: root.close()
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 1
        spacing: 0

        // Header
        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 18
            Layout.bottomMargin: 12
            spacing: 14

            AppIconView {
                bundleID: root.model.appBundleID
                size: 54
                fallbackSystemImage: (!root.model.appBundleID || root.model.appName === "Desktop")
                                     ? "keyboard" : "app.dashed"
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 3
                Label {
                    text: root.model.appName
                    font.pixelSize: 22
                    font.bold: true
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                    Accessible.name: text
                }
                RowLayout {
                    spacing: 8
                    Label {
                        text: "Last focused app".toUpperCase()
                        font.pixelSize: 11
                        font.weight: Font.DemiBold
                        color: root.secondary
                    }
                    Label {
                        id: pill
                        objectName: "statusPill"
                        text: root.vaultReady ? "Vault ready" : "Not scanned yet"
                        color: root.vaultReady ? root.green : root.orange
                        font.pixelSize: 11
                        font.weight: Font.DemiBold
                        leftPadding: 7
                        rightPadding: 7
                        topPadding: 2
                        bottomPadding: 2
                        background: Rectangle {
                            radius: height / 2
                            color: root.tinted(pill.color, 0.15)
                        }
                        Accessible.name: text
                    }
                }
                Label {
                    objectName: "subtitle"
                    text: root.vaultReady
                          ? "Showing commands for the app you were using before opening Tessaline."
                          : "Search global shortcuts now, or scan this app to add its menu commands."
                    font.pixelSize: 12
                    color: root.secondary
                    wrapMode: Text.WordWrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    Layout.fillWidth: true
                    Accessible.name: text
                }
            }
            RowLayout {
                spacing: 6
                Layout.alignment: Qt.AlignTop
                HUDIconButton {
                    systemName: "rectangle.grid.1x2"
                    help: "Browse every saved shortcut"
                    onClicked: root.browseAll()
                }
                HUDIconButton {
                    systemName: "gearshape"
                    help: "Settings"
                    onClicked: root.settings()
                }
                HUDIconButton {
                    systemName: "arrow.clockwise"
                    help: "Reload keybinds"
                    onClicked: root.reload()
                }
                HUDIconButton {
                    objectName: "scanButton"
                    systemName: "text.viewfinder"
                    help: "Scan the current app's menus"
                    busy: root.model.isScanning
                    enabled: !root.model.isScanning
                    onClicked: root.scanMenus()
                }
                HUDIconButton {
                    systemName: "xmark"
                    help: "Close"
                    onClicked: root.close()
                }
            }
        }

        // Search row
        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            Layout.bottomMargin: 10
            spacing: 8
            Symbol {
                name: "magnifyingglass"
                side: 16
                tint: root.secondary
            }
            TextField {
                id: search
                objectName: "searchField"
                Layout.fillWidth: true
                placeholderTextColor: root.tinted(root.primary, 0.55)
                placeholderText: "Search shortcuts, actions, or tags"
                text: root.model.filter
                onTextEdited: root.model.filter = text
                background: null
                font.pixelSize: 15
                Accessible.name: placeholderText
            }
        }
        Rectangle {
            Layout.fillWidth: true
            height: 1
            color: root.tinted(root.primary, 0.1)
        }

        // Content
        ListView {
            id: list
            objectName: "shortcutList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            spacing: 6
            leftMargin: 16
            rightMargin: 16
            topMargin: 16
            bottomMargin: 16
            boundsBehavior: Flickable.StopAtBounds
            model: root.model.rows
            ScrollBar.vertical: ScrollBar {}

            function scrollTo(index) {
                const from = contentY
                positionViewAtIndex(index, ListView.Center)
                const to = contentY
                contentY = from
                scrollAnimation.to = to
                scrollAnimation.restart()
            }
            NumberAnimation {
                id: scrollAnimation
                target: list
                property: "contentY"
                duration: 120
                easing.type: Easing.InOutQuad
            }

            header: Column {
                width: list.width - list.leftMargin - list.rightMargin
                spacing: 14
                bottomPadding: root.model.flatCount > 0 ? 14 : 0

                // The list does not move when its header grows, so a card appearing above the
                // rows would sit above the visible area. A list shown from its top stays there.
                property real shownHeight: 0
                onHeightChanged: {
                    const wasAtTop = list.contentY <= -shownHeight - list.topMargin + 0.5
                    shownHeight = height
                    if (wasAtTop)
                        Qt.callLater(list.positionViewAtBeginning)
                }

                // Scan status card
                Rectangle {
                    objectName: "scanStatusCard"
                    visible: root.model.scanStatus.length > 0
                    width: parent.width
                    height: visible ? statusRow.implicitHeight + 24 : 0
                    radius: 10
                    color: root.tinted(root.primary, 0.055)
                    RowLayout {
                        id: statusRow
                        anchors.fill: parent
                        anchors.margins: 12
                        spacing: 10
                        Symbol {
                            Layout.alignment: Qt.AlignTop
                            name: root.model.isScanning ? "hourglass" : "info.circle.fill"
                            tint: root.model.isScanning ? root.blue : root.secondary
                        }
                        Label {
                            Layout.fillWidth: true
                            text: root.model.scanStatus
                            font.pixelSize: 12
                            wrapMode: Text.WordWrap
                            Accessible.name: text
                        }
                        HUDIconButton {
                            objectName: "dismissScanStatus"
                            Layout.alignment: Qt.AlignTop
                            visible: !root.model.isScanning
                            systemName: "xmark"
                            help: "Dismiss scan status"
                            implicitWidth: 22
                            implicitHeight: 22
                            onClicked: root.model.dismissScanStatus()
                        }
                    }
                }

                // Missing-app callout
                Rectangle {
                    objectName: "missingAppCallout"
                    visible: !root.vaultReady
                    width: parent.width
                    height: visible ? callout.implicitHeight + 28 : 0
                    radius: 10
                    color: root.tinted(root.orange, 0.1)
                    border.color: root.tinted(root.orange, 0.18)
                    border.width: 1
                    RowLayout {
                        id: callout
                        anchors.fill: parent
                        anchors.margins: 14
                        spacing: 12
                        Symbol {
                            Layout.alignment: Qt.AlignTop
                            name: "text.viewfinder"
                            tint: root.orange
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
                                text: "Click Scan Menus to read commands from " + root.model.appName
                                      + "'s menu bar. Global desktop essentials are still shown below."
                                font.pixelSize: 12
                                wrapMode: Text.WordWrap
                                Accessible.name: text
                            }
                        }
                        Button {
                            text: "Scan Menus"
                            icon.source: root.tintedSymbol("text.viewfinder", palette.buttonText)
                            icon.color: "transparent"
                            focusPolicy: Qt.NoFocus
                            Accessible.name: text
                            onClicked: root.scanMenus()
                        }
                    }
                }
            }

            section.property: "group"
            section.delegate: Label {
                required property string section
                width: list.width - list.leftMargin - list.rightMargin
                text: section.toUpperCase()
                font.pixelSize: 11
                font.bold: true
                color: root.secondary
                topPadding: 8
                bottomPadding: 4
                Accessible.name: section
            }

            delegate: ShortcutRowView {
                width: list.width - list.leftMargin - list.rightMargin
                isSelected: root.navigator.selection === index
                onToggleFavorite: root.model.toggleFavorite(index)
                onCopyChord: root.model.copyChord(chord)
            }

            footer: Item {
                width: list.width - list.leftMargin - list.rightMargin
                height: emptySearch.visible ? emptySearch.implicitHeight + 40 : 0
                ColumnLayout {
                    id: emptySearch
                    objectName: "emptySearch"
                    anchors.centerIn: parent
                    visible: root.model.flatCount === 0
                    spacing: 8
                    Symbol {
                        Layout.alignment: Qt.AlignHCenter
                        name: "magnifyingglass"
                        side: 28
                        tint: root.secondary
                    }
                    Label {
                        Layout.alignment: Qt.AlignHCenter
                        text: "Nothing matches that search"
                        font.pixelSize: 14
                        font.weight: Font.Medium
                        Accessible.name: text
                    }
                    Label {
                        Layout.alignment: Qt.AlignHCenter
                        text: "Try the app name, action, key symbols, or tags like screenshot."
                        font.pixelSize: 12
                        color: root.secondary
                        Accessible.name: text
                    }
                }
            }
        }

        // Helper bar
        Rectangle {
            Layout.fillWidth: true
            height: 1
            color: root.tinted(root.primary, 0.1)
        }
        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 12
            Layout.leftMargin: 18
            spacing: 8
            Label {
                text: "Quick helpers".toUpperCase()
                font.pixelSize: 11
                font.weight: Font.DemiBold
                color: root.secondary
            }
            Item { Layout.fillWidth: true }
            Repeater {
                model: root.model.helperActions
                delegate: Button {
                    required property var modelData
                    text: modelData.title
                    flat: false
                    focusPolicy: Qt.NoFocus
                    font.pixelSize: 12
                    ToolTip.visible: hovered
                    ToolTip.text: modelData.help
                    ToolTip.delay: 500
                    Accessible.name: text
                    Accessible.description: modelData.help
                    onClicked: root.helperAction(modelData.raw)
                }
            }
        }
    }
}
