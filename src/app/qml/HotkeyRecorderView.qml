pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Tessaline

// The field that records a new HUD hotkey: click it, then press a chord. It shows the current
// hotkey, or "Click to record" while the hotkey is off, and keeps focus after a capture so the
// next chord replaces the last.
FocusScope {
    id: field
    required property HotkeyRecorder recorder

    readonly property string displayText: field.recorder.displayText
    implicitWidth: 210
    implicitHeight: 42
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: "Hotkey recorder: " + displayText
    // The field records while it has the focus. On the bus it is a toggle, checked while it
    // records; an assistive tool's press starts a recording, or ends one without a capture.
    Accessible.checkable: true
    Accessible.checked: field.activeFocus
    Accessible.onPressAction: field.toggleRecording()
    Accessible.onToggleAction: field.toggleRecording()

    function toggleRecording() {
        if (field.activeFocus)
            field.focus = false
        else
            field.forceActiveFocus()
    }

    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        radius: 8
        color: palette.base
        border.width: 1.5
        border.color: field.activeFocus ? palette.highlight : palette.mid
    }
    Label {
        objectName: "recorderText"
        anchors.centerIn: parent
        text: field.displayText
        font.family: "monospace"
        font.pixelSize: 13
        font.weight: Font.DemiBold
        color: palette.text
    }
    MouseArea {
        anchors.fill: parent
        onPressed: field.forceActiveFocus()
    }
    Keys.onPressed: function(event) {
        // Every key press is the recorder's, captured or not, so none reaches the window.
        field.recorder.captureQtKey(event.key, event.modifiers, event.nativeScanCode)
        event.accepted = true
    }
}
