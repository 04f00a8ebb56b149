// No "pragma ComponentBehavior: Bound" here: in Qt 6.4 a ListView cannot create the header,
// footer or section delegates of a bound file ("Component is not ready"). Without it, qmllint
// takes the ids the list's delegates use for unqualified names, so that one check is off around
// them; every lookup there names its object by id all the same.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The cheat sheet itself: the scan status and the missing-app callout on top, then the rows
// under their section titles, the navigator's selection marked, and a note when the search
// matches nothing.
ListView {
    id: list
    /// The cheat sheet whose rows the list shows (`model` is the list's own).
    required property CheatSheetModel sheet
    required property ListNavigator navigator
    required property ThemedSurface theme

    signal scanMenus()

    // Scrolls smoothly until row `index` stands in the middle.
    function scrollTo(index) {
        const from = contentY
        positionViewAtIndex(index, ListView.Center)
        const to = contentY
        contentY = from
        scrollAnimation.to = to
        scrollAnimation.restart()
    }

    objectName: "shortcutList"
    // Tab stops here between the search field and the buttons; the arrow keys move the
    // navigator's selection wherever the focus is.
    activeFocusOnTab: true
    Accessible.name: "Shortcuts"
    // The list's current row is the navigator's selection, so that the focus an assistive tool
    // follows inside the list is the row that Return copies; with no selection the list itself
    // has it. The navigator scrolls, not the list.
    currentIndex: list.navigator.selection
    highlightFollowsCurrentItem: false
    keyNavigationEnabled: false
    clip: true
    spacing: 6
    leftMargin: 16
    rightMargin: 16
    topMargin: 16
    bottomMargin: 16
    boundsBehavior: Flickable.StopAtBounds
    // Rows are made only as they come into view, never ahead of it in the background: a row
    // still being made when a keystroke replaces the rows is cancelled by an index the new
    // rows no longer have, and Qt warns about every one.
    cacheBuffer: 0
    model: list.sheet.rows
    ScrollBar.vertical: ScrollBar {}

    NumberAnimation {
        id: scrollAnimation
        target: list
        property: "contentY"
        duration: 120
        easing.type: Easing.InOutQuad
    }

    // qmllint disable unqualified
    header: Column {
        width: list.width - list.leftMargin - list.rightMargin
        spacing: 14
        bottomPadding: list.sheet.flatCount > 0 ? 14 : 0

        // The list does not move when its header grows, so a card appearing above the rows
        // would sit above the visible area. A list shown from its top stays there.
        property real shownHeight: 0
        onHeightChanged: {
            const wasAtTop = list.contentY <= -shownHeight - list.topMargin + 0.5
            shownHeight = height
            if (wasAtTop)
                Qt.callLater(list.positionViewAtBeginning)
        }

        HudScanStatus {
            width: parent.width
            model: list.sheet
            theme: list.theme
        }
        HudMissingAppCallout {
            width: parent.width
            model: list.sheet
            theme: list.theme
            onScanMenus: list.scanMenus()
        }
    }

    section.property: "group"
    // The title reads the list's `section` context property rather than declaring it a
    // required property: Qt 6.4 reuses a title item for another section after the rows change
    // and updates only the context property, so a required one kept the old section's name.
    section.delegate: Label {
        id: sectionTitle
        readonly property string sectionName: section
        width: list.width - list.leftMargin - list.rightMargin
        text: sectionTitle.sectionName.toUpperCase()
        font.pixelSize: 11
        font.bold: true
        color: list.theme.secondary
        topPadding: 8
        bottomPadding: 4
        Accessible.name: sectionTitle.sectionName
    }

    delegate: ShortcutRowView {
        id: row
        width: list.width - list.leftMargin - list.rightMargin
        isSelected: list.navigator.selection === row.index
        // A row gives the focus back to the list when it is no longer the selection.
        focus: row.isSelected
        onToggleFavorite: list.sheet.toggleFavorite(row.index)
        onCopyChord: list.sheet.copyChord(row.chord)
        canRun: list.sheet.canRun
        onRun: list.sheet.runAt(row.index)
    }

    footer: Item {
        width: list.width - list.leftMargin - list.rightMargin
        height: emptySearch.visible ? emptySearch.implicitHeight + 40 : 0
        ColumnLayout {
            id: emptySearch
            objectName: "emptySearch"
            anchors.centerIn: parent
            visible: list.sheet.flatCount === 0
            spacing: 8
            Symbol {
                Layout.alignment: Qt.AlignHCenter
                name: "magnifyingglass"
                side: 28
                tint: list.theme.secondary
            }
            Label {
                Layout.alignment: Qt.AlignHCenter
                text: !list.sheet.lookupActive ? "Nothing matches that search"
                    : list.sheet.lookupChordText === "" ? "Press a shortcut to see what it does"
                    : "Nothing is bound to " + list.sheet.lookupChordText
                font.pixelSize: 14
                font.weight: Font.Medium
                Accessible.name: text
            }
            Label {
                Layout.alignment: Qt.AlignHCenter
                text: list.sheet.lookupActive ? "Escape goes back to the cheat sheet."
                                              : "Try the app name, action, key symbols, or tags like screenshot."
                font.pixelSize: 12
                color: list.theme.secondary
                Accessible.name: text
            }
        }
    }
    // qmllint enable unqualified
}
