pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One shortcut of the cheat sheet: star, highlighted name with its detail line, chord keycap.
// Its fields come from the roles of the cheat sheet's row model. A row the last menu scan no
// longer found is drawn muted with a tag; a command whose chord changed shows its old chord.
Rectangle {
    id: row
    required property int index
    required property string name
    required property string nameHtml
    required property string chord
    required property string chordText
    required property string detail
    required property bool favorite
    required property bool scanned
    /// Why the chord may not do what the row says; empty when it does.
    required property string conflict
    /// The last menu scan of the app no longer found this shortcut.
    required property bool stale
    /// The chord the command had before its last scan ("was Ctrl+X"); empty when unchanged.
    required property string wasText
    property bool isSelected: false
    /// Whether the row can be run in its app (the run button is offered).
    property bool canRun: false

    signal toggleFavorite()
    signal copyChord()
    signal run()

    readonly property color primary: palette.windowText
    readonly property color secondary: Qt.rgba(primary.r, primary.g, primary.b, 0.62)
    readonly property color accent: palette.highlight
    /// What the menus no longer hold reads as set aside; the tag that says so stays legible.
    readonly property real mutedOpacity: stale ? 0.55 : 1
    /// Why the row is muted or shows an old chord; empty when neither. A stale row is never
    /// one whose chord changed: the last scan found the one and not the other.
    readonly property string driftReason: stale ? "The last menu scan did not find this shortcut"
        : wasText !== "" ? "The last menu scan found this command with a new chord; it " + wasText
        : ""

    implicitHeight: content.implicitHeight + 18
    radius: 8
    color: isSelected ? Qt.rgba(accent.r, accent.g, accent.b, 0.16)
                      : Qt.rgba(primary.r, primary.g, primary.b, 0.04)
    border.color: isSelected ? Qt.rgba(accent.r, accent.g, accent.b, 0.7)
                             : Qt.rgba(primary.r, primary.g, primary.b, 0.045)
    border.width: isSelected ? 1.5 : 1
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + chordText
    Accessible.description: conflict + (conflict !== "" && driftReason !== "" ? "\n" : "") + driftReason
    Accessible.selected: isSelected
    // An assistive tool's press on the row copies its chord, as Return does on the selection.
    Accessible.onPressAction: row.copyChord()

    HoverHandler {
        id: rowHover
    }

    RowLayout {
        id: content
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        anchors.topMargin: 9
        anchors.bottomMargin: 9
        spacing: 10

        AbstractButton {
            objectName: "starButton"
            implicitWidth: 20
            implicitHeight: 20
            focusPolicy: Qt.NoFocus
            hoverEnabled: true
            readonly property string help: row.favorite ? "Remove from favorites" : "Add to favorites"
            Accessible.name: help
            // On the bus the star is a toggle of the row it stands in, checked for a favourite.
            // A click flips `checked` before the vault answers; it is bound back to the row's
            // favourite after each toggle.
            Accessible.description: row.name
            checkable: true
            checked: row.favorite
            Accessible.onToggleAction: if (enabled) clicked()
            ToolTip.visible: hovered
            ToolTip.text: help
            ToolTip.delay: 500
            contentItem: Symbol {
                name: row.favorite ? "star.fill" : "star"
                tint: row.favorite ? "#f5b400" : row.secondary
            }
            onClicked: {
                row.toggleFavorite()
                checked = Qt.binding(() => row.favorite)
            }
            Accessible.onPressAction: if (enabled) clicked()
        }
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2
            RowLayout {
                spacing: 6
                Layout.fillWidth: true
                Label {
                    objectName: "rowName"
                    text: row.nameHtml
                    textFormat: Text.StyledText
                    opacity: row.mutedOpacity
                    font.pixelSize: 13
                    font.weight: Font.Medium
                    elide: Text.ElideRight
                    Layout.fillWidth: !scannedBadge.visible && !conflictBadge.visible
                                      && !staleTag.visible
                    Accessible.name: row.name
                }
                Label {
                    id: scannedBadge
                    visible: row.scanned
                    opacity: row.mutedOpacity
                    text: "scanned"
                    font.pixelSize: 10
                    font.weight: Font.DemiBold
                    color: row.secondary
                    leftPadding: 6
                    rightPadding: 6
                    topPadding: 1
                    bottomPadding: 1
                    background: Rectangle {
                        radius: height / 2
                        color: Qt.rgba(row.primary.r, row.primary.g, row.primary.b, 0.06)
                    }
                    Accessible.name: text
                }
                Label {
                    id: conflictBadge
                    objectName: "conflictBadge"
                    visible: row.conflict !== ""
                    text: "⚠"
                    font.pixelSize: 11
                    color: "#d97706"
                    HoverHandler { id: conflictHover }
                    ToolTip.visible: conflictHover.hovered
                    ToolTip.text: row.conflict
                    ToolTip.delay: 300
                    Accessible.role: Accessible.StaticText
                    Accessible.name: "Conflict"
                    Accessible.description: row.conflict
                }
                Label {
                    id: staleTag
                    objectName: "staleTag"
                    visible: row.stale
                    text: "not in the menus"
                    font.pixelSize: 10
                    font.italic: true
                    color: row.secondary
                    HoverHandler { id: staleHover }
                    ToolTip.visible: staleHover.hovered
                    ToolTip.text: row.driftReason
                    ToolTip.delay: 300
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                    Accessible.description: row.driftReason
                }
                Item {
                    Layout.fillWidth: scannedBadge.visible || conflictBadge.visible
                                      || staleTag.visible
                }
            }
            Label {
                text: row.detail
                opacity: row.mutedOpacity
                color: row.secondary
                font.pixelSize: 12
                elide: Text.ElideRight
                Layout.fillWidth: true
                Accessible.name: text
            }
        }
        // Runs the row in its app, as Ctrl+Return does on the selection; shown on hover and on
        // the selected row.
        AbstractButton {
            id: runButton
            objectName: "runButton"
            visible: row.canRun && (rowHover.hovered || row.isSelected)
            implicitWidth: 24
            implicitHeight: 24
            focusPolicy: Qt.NoFocus
            hoverEnabled: true
            Accessible.role: Accessible.Button
            Accessible.name: "Run"
            Accessible.description: row.name
            ToolTip.visible: hovered
            ToolTip.text: "Run in the app (Ctrl+Return)"
            ToolTip.delay: 500
            background: Rectangle {
                radius: 6
                color: Qt.rgba(row.primary.r, row.primary.g, row.primary.b, runButton.pressed ? 0.16 : 0.08)
            }
            contentItem: Item {
                Symbol {
                    anchors.centerIn: parent
                    name: "play.fill"
                    side: 12
                    tint: row.accent
                }
            }
            onClicked: row.run()
            Accessible.onPressAction: if (enabled) clicked()
        }
        Label {
            id: oldChord
            objectName: "wasChord"
            visible: row.wasText !== ""
            text: row.wasText
            font.pixelSize: 11
            color: row.secondary
            HoverHandler { id: oldChordHover }
            ToolTip.visible: oldChordHover.hovered
            ToolTip.text: row.driftReason
            ToolTip.delay: 300
            Accessible.role: Accessible.StaticText
            Accessible.name: text
            Accessible.description: row.driftReason
        }
        AbstractButton {
            id: keycap
            objectName: "chordButton"
            focusPolicy: Qt.NoFocus
            hoverEnabled: true
            Accessible.name: "Copy shortcut"
            Accessible.description: row.chordText
            ToolTip.visible: hovered
            ToolTip.text: "Copy shortcut"
            ToolTip.delay: 500
            leftPadding: 9
            rightPadding: 9
            topPadding: 6
            bottomPadding: 6
            contentItem: Label {
                text: row.chordText
                opacity: row.mutedOpacity
                font.family: "monospace"
                font.pixelSize: 12
                font.weight: Font.DemiBold
            }
            background: Rectangle {
                radius: 6
                color: Qt.rgba(row.primary.r, row.primary.g, row.primary.b, keycap.pressed ? 0.16 : 0.08)
            }
            onClicked: row.copyChord()
            Accessible.onPressAction: if (enabled) clicked()
        }
    }
}
