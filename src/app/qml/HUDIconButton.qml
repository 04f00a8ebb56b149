pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls

// A square symbol button of the HUD header; its tooltip is also its accessible name. Tab
// reaches it (a click leaves the focus where it was), and a ring marks it while it has the
// keyboard focus.
AbstractButton {
    id: button
    property string systemName
    property string help
    property bool busy: false

    implicitWidth: 30
    implicitHeight: 30
    hoverEnabled: true
    focusPolicy: Qt.TabFocus
    Accessible.name: help
    Accessible.role: Accessible.Button
    // Assistive tools press a button through its action, not with a click.
    Accessible.onPressAction: if (button.enabled) button.clicked()
    ToolTip.visible: hovered && help.length > 0
    ToolTip.text: help
    ToolTip.delay: 500

    background: Item {
        Rectangle {
            anchors.fill: parent
            radius: 7
            color: palette.windowText
            opacity: button.pressed ? 0.13 : 0.07
        }
        Rectangle {
            objectName: "focusRing"
            anchors.fill: parent
            radius: 7
            color: "transparent"
            border.width: 2
            border.color: palette.highlight
            visible: button.visualFocus
        }
    }
    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.systemName
            side: 16
            visible: !button.busy
            opacity: button.enabled ? 1.0 : 0.4
        }
        BusyIndicator {
            anchors.centerIn: parent
            width: 16
            height: 16
            running: button.busy
            visible: button.busy
        }
    }
}
