pragma ComponentBehavior: Bound
import QtQuick

// One of the interface's symbols, drawn from the icon theme or the bundled set and tinted.
Item {
    id: symbol
    property string name
    property color tint: palette.windowText
    property int side: 16

    readonly property string tintHex: tint.toString().replace("#", "").slice(-6)

    implicitWidth: side
    implicitHeight: side
    Accessible.ignored: true

    Image {
        anchors.fill: parent
        sourceSize.width: symbol.side * 2
        sourceSize.height: symbol.side * 2
        fillMode: Image.PreserveAspectFit
        source: symbol.name.length > 0 ? "image://symbol/" + symbol.name + "?color=" + symbol.tintHex : ""
        smooth: true
    }
}
