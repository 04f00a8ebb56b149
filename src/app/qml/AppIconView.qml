pragma ComponentBehavior: Bound
import QtQuick

// The application's icon from its desktop entry, or a symbol when it has none.
Item {
    id: view
    property var bundleID: undefined
    property int size: 54
    property string fallbackSystemImage: "keyboard"

    // The provider answers a blank single pixel for an app without an icon.
    readonly property bool hasIcon: icon.status === Image.Ready && icon.implicitWidth > 1

    width: size
    height: size
    Accessible.ignored: true

    Image {
        id: icon
        anchors.fill: parent
        sourceSize.width: view.size * 2
        sourceSize.height: view.size * 2
        fillMode: Image.PreserveAspectFit
        source: view.bundleID ? "image://appicon/" + view.bundleID : ""
        visible: view.hasIcon
    }
    Symbol {
        anchors.centerIn: parent
        side: Math.round(view.size * 0.8)
        name: view.fallbackSystemImage
        tint: Qt.rgba(palette.windowText.r, palette.windowText.g, palette.windowText.b, 0.55)
        visible: !view.hasIcon
    }
}
