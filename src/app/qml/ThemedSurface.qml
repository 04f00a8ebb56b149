pragma ComponentBehavior: Bound
import QtQuick

// The surface every Tessaline window is drawn on. It hands the desktop's colours (the
// application palette, which follows the system's light or dark theme) to everything inside,
// plain items and controls alike, and names the few signal colours in shades that stay legible
// on the theme's background.
Rectangle {
    id: surface

    // Read from the system palette itself: reading `palette` here, where its roles are set,
    // would re-evaluate these bindings while they run.
    readonly property color windowColor: system.window
    readonly property bool dark: windowColor.hslLightness < 0.5
    readonly property color primary: system.windowText
    readonly property color secondary: tinted(primary, 0.62)
    readonly property color green: dark ? "#4cd07a" : "#17692e"
    readonly property color orange: dark ? "#ffad5c" : "#8f4500"
    readonly property color red: dark ? "#ff7b70" : "#b3231a"
    readonly property color blue: dark ? "#64b0ff" : "#1f62b8"

    function tinted(c, a) { return Qt.rgba(c.r, c.g, c.b, a) }
    // A symbol image drawn in the given colour, for a control's icon.
    function tintedSymbol(name, c) {
        return "image://symbol/" + name + "?color=" + c.toString().replace("#", "").slice(-6)
    }

    SystemPalette { id: system }

    palette.window: system.window
    palette.windowText: system.windowText
    palette.base: system.base
    palette.alternateBase: system.alternateBase
    palette.text: system.text
    palette.button: system.button
    palette.buttonText: system.buttonText
    palette.highlight: system.highlight
    palette.highlightedText: system.highlightedText
    palette.light: system.light
    palette.midlight: system.midlight
    palette.mid: system.mid
    palette.dark: system.dark
    palette.shadow: system.shadow

    color: windowColor
}
