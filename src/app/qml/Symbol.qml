import QtQuick

// One of the interface's symbols, drawn from the icon theme or the bundled set and tinted.
Image {
    id: symbol
    property string name
    property color tint: palette.windowText
    property int side: 16

    readonly property string tintHex: tint.toString().replace("#", "").slice(-6)

    width: side
    height: side
    implicitWidth: side
    implicitHeight: side
    sourceSize.width: side * 2
    sourceSize.height: side * 2
    fillMode: Image.PreserveAspectFit
    source: name.length > 0 ? "image://symbol/" + name + "?color=" + tintHex : ""
    smooth: true
    Accessible.ignored: true
}
