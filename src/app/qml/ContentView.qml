pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Tessaline

// The cheat sheet shown in the HUD panel: the previous app's shortcuts and the global ones,
// filtered live by the search field, with keyboard selection, favourites, chord copying, a menu
// scan and the quick text helpers. It owns no data; every command goes out as a signal, which
// the model passes on to the application.
ThemedSurface {
    id: root
    required property CheatSheetModel model
    required property ListNavigator navigator

    signal close()
    signal reload()
    signal scanMenus()
    signal browseAll()
    signal settings()
    signal helperAction(string action)

    onClose: root.model.requestClose()
    onReload: root.model.requestReload()
    onScanMenus: root.model.requestScanMenus()
    onBrowseAll: root.model.requestBrowseAll()
    onSettings: root.model.requestSettings()
    onHelperAction: action => root.model.requestHelperAction(action)

    implicitWidth: 720
    implicitHeight: 560
    radius: 12
    border.color: root.tinted(root.primary, 0.12)
    Accessible.name: "Tessaline cheat sheet"

    Component.onCompleted: {
        root.model.filter = ""
        search.focusField()
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
        function onLookupChanged() {
            root.navigator.selection = -1
            root.navigator.syncCount(root.model.flatCount)
        }
    }
    // Key lookup: Ctrl+K starts it, each chord pressed then lists what it is bound to, and
    // Escape brings the cheat sheet back. The navigator captures the keys meanwhile.
    Binding {
        target: root.navigator
        property: "capturing"
        value: root.model.lookupActive
    }
    Connections {
        target: root.navigator
        function onSearchFocusRequestChanged() { search.focusField() }
        function onLookupRequested() { root.model.startLookup() }
        function onChordPressed(chord) { root.model.lookUp(chord) }
        function onLookupCancelled() { root.model.stopLookup() }
        function onSelectionChanged() {
            if (root.navigator.selection >= 0)
                list.scrollTo(root.navigator.selection)
        }
    }

    Shortcut {
        sequence: "Escape"
        onActivated: root.close()
    }

    // Tab goes from the search field to the list, then to the buttons below and above it.
    // Tab follows the order of the items, so the header is declared after the column and only
    // drawn in the slot the column keeps for it at the top.
    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 1
        spacing: 0

        Item {
            id: headerSlot
            Layout.fillWidth: true
            Layout.margins: 18
            Layout.bottomMargin: 12
            implicitHeight: header.implicitHeight
        }
        HudSearchField {
            id: search
            Layout.fillWidth: true
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            Layout.bottomMargin: 10
            model: root.model
            theme: root
        }
        Rectangle {
            Layout.fillWidth: true
            height: 1
            color: root.tinted(root.primary, 0.1)
        }
        HudList {
            id: list
            Layout.fillWidth: true
            Layout.fillHeight: true
            sheet: root.model
            navigator: root.navigator
            theme: root
            onScanMenus: root.scanMenus()
        }
        Rectangle {
            Layout.fillWidth: true
            height: 1
            color: root.tinted(root.primary, 0.1)
        }
        HudHelperBar {
            Layout.fillWidth: true
            Layout.margins: 12
            Layout.leftMargin: 18
            model: root.model
            theme: root
            onHelperAction: action => root.helperAction(action)
        }
    }
    // The list's focus ring, drawn over it so that it stays put while the rows scroll.
    Rectangle {
        objectName: "listFocusRing"
        x: column.x + list.x + 2
        y: column.y + list.y + 2
        width: list.width - 4
        height: list.height - 4
        radius: 6
        color: "transparent"
        border.width: 2
        border.color: palette.highlight
        visible: list.activeFocus
    }
    HudHeader {
        id: header
        x: column.x + headerSlot.x
        y: column.y + headerSlot.y
        width: headerSlot.width
        height: headerSlot.height
        model: root.model
        theme: root
        onBrowseAll: root.browseAll()
        onSettings: root.settings()
        onReload: root.reload()
        onScanMenus: root.scanMenus()
        onClose: root.close()
    }
}
