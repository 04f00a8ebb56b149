pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The HUD's search row: what the user types filters the cheat sheet as they type.
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
        placeholderText: "Search shortcuts, actions, or tags"
        text: row.model.filter
        onTextEdited: row.model.filter = text
        background: null
        font.pixelSize: 15
        Accessible.name: placeholderText
    }
}
