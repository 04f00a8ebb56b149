pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The HUD's search row: what the user types filters the cheat sheet as they type. During key
// lookup it shows the chord looked up instead, and asks for one until it is pressed.
RowLayout {
    id: row
    required property CheatSheetModel model
    required property ThemedSurface theme

    function focusField() { field.forceActiveFocus() }

    spacing: 8

    Symbol {
        name: "magnifyingglass"
        side: 16
        tint: row.theme.secondary
    }
    TextField {
        id: field
        objectName: "searchField"
        Layout.fillWidth: true
        placeholderTextColor: row.theme.tinted(row.theme.primary, 0.55)
        placeholderText: row.model.lookupActive ? "Press a shortcut…"
                                                : "Search shortcuts, actions, or tags"
        text: row.model.lookupActive ? row.model.lookupChordText : row.model.filter
        readOnly: row.model.lookupActive
        onTextEdited: row.model.filter = text
        background: null
        font.pixelSize: 15
        Accessible.name: placeholderText
        Accessible.description: row.model.lookupActive
                                ? "Key lookup: press a shortcut to see what it does, Escape to go back"
                                : ""
    }
}
