pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The settings window: the HUD hotkey, how key names are written, the accessibility permission,
// the shortcut pack file and starting at login.
ThemedSurface {
    id: root
    required property SettingsModel model

    implicitWidth: 560
    implicitHeight: 520

    // Import and reset write a new vault file, not a merge: say so where the button is.
    readonly property string importHint: "Replaces the whole vault file with the JSON file you choose"
    readonly property string resetHint: "Replaces the whole vault file with the bundled pack"

    Timer {
        // The permission and the autostart entry can change outside Tessaline; look again
        // while the window is open.
        interval: 1500
        running: true
        repeat: true
        onTriggered: {
            root.model.refreshAccessibility()
            root.model.refreshStartAtLogin()
        }
    }

    // Each time the window comes forward, the switch shows whether the autostart entry exists.
    readonly property bool windowActive: Window.active
    onWindowActiveChanged: if (windowActive) root.model.refreshStartAtLogin()
    onVisibleChanged: if (visible) root.model.refreshStartAtLogin()
    Component.onCompleted: root.model.refreshStartAtLogin()

    Flickable {
        id: flickable
        anchors.fill: parent
        contentHeight: column.implicitHeight + 48
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        // The cards are taller than the window: a scroll bar that stays says there is more.
        ScrollBar.vertical: ScrollBar {
            policy: flickable.contentHeight > flickable.height ? ScrollBar.AlwaysOn
                                                               : ScrollBar.AsNeeded
        }

        ColumnLayout {
            id: column
            x: 24
            y: 24
            width: root.width - 48
            spacing: 18

            ColumnLayout {
                spacing: 4
                Label {
                    text: "Tessaline Settings"
                    font.pixelSize: 22
                    Accessible.name: text
                }
                Label {
                    Layout.fillWidth: true
                    text: "Keep the tray icon as the main entry point, and let Jorvo opt into a hotkey when he is ready."
                    font.pixelSize: 13
                    color: root.secondary
                    wrapMode: Text.WordWrap
                    Accessible.name: text
                }
            }

            SettingsCard {
                title: "HUD Hotkey"
                systemImage: "keyboard.badge.ellipsis"
                CheckBox {
                    objectName: "hotkeyToggle"
                    text: "Enable custom HUD hotkey"
                    checked: root.model.hotkeyManager.isEnabled
                    onToggled: root.model.hotkeyManager.isEnabled = checked
                    Accessible.name: text
                    // Assistive tools toggle through the check box's action, not with a click.
                    Accessible.onToggleAction: root.model.hotkeyManager.isEnabled = !checked
                    Accessible.onPressAction: root.model.hotkeyManager.isEnabled = !checked
                }
                // The wrapped text sets the height of its frame, which the card's layout follows.
                Item {
                    visible: hotkeyUnavailable.text.length > 0
                    Layout.fillWidth: true
                    implicitHeight: hotkeyUnavailable.implicitHeight
                    Label {
                        id: hotkeyUnavailable
                        objectName: "hotkeyUnavailable"
                        width: parent.width
                        text: root.model.hotkeyManager.sessionGrabsKeys ? "" : "The desktop gave Tessaline no global key: bind the command tessaline --toggle to a key in the desktop's keyboard settings."
                        color: root.orange
                        font.pixelSize: 12
                        wrapMode: Text.WordWrap
                        Accessible.name: text
                    }
                }
                Label {
                    objectName: "recorderHint"
                    Layout.fillWidth: true
                    text: "Click the recorder, then press the shortcut Jorvo wants to use."
                    font.pixelSize: 12
                    color: root.secondary
                    wrapMode: Text.WordWrap
                    Accessible.name: text
                }
                RowLayout {
                    spacing: 10
                    HotkeyRecorderView {
                        objectName: "hotkeyRecorder"
                        recorder: root.model.recorder
                        Layout.preferredWidth: 210
                        Layout.preferredHeight: 42
                    }
                    Button {
                        text: "Disable"
                        enabled: root.model.hotkeyManager.isEnabled
                        Accessible.name: text
                        onClicked: root.model.hotkeyManager.disable()
                        Accessible.onPressAction: if (enabled) clicked()
                    }
                }
                Label {
                    objectName: "registrationMessage"
                    visible: root.model.hotkeyManager.hasRegistrationMessage
                    Layout.fillWidth: true
                    text: root.model.hotkeyManager.registrationMessage
                    font.pixelSize: 12
                    wrapMode: Text.WordWrap
                    Accessible.name: text
                }
            }

            SettingsCard {
                title: "Key names"
                systemImage: "keyboard"
                Label {
                    Layout.fillWidth: true
                    text: "How shortcuts are written in the HUD, the browser and the command line. The shortcut pack keeps its own form."
                    font.pixelSize: 12
                    color: root.secondary
                    wrapMode: Text.WordWrap
                    Accessible.name: text
                }
                RadioButton {
                    objectName: "keyNamesWords"
                    text: "Words (Ctrl+Shift+S)"
                    checked: root.model.keyNames.words
                    onToggled: root.model.keyNames.words = true
                    Accessible.name: text
                    Accessible.onPressAction: root.model.keyNames.words = true
                    Accessible.onToggleAction: root.model.keyNames.words = true
                }
                RadioButton {
                    objectName: "keyNamesSymbols"
                    text: "Symbols (⌃ ⇧ S)"
                    checked: !root.model.keyNames.words
                    onToggled: root.model.keyNames.words = false
                    Accessible.name: text
                    Accessible.onPressAction: root.model.keyNames.words = false
                    Accessible.onToggleAction: root.model.keyNames.words = false
                }
            }

            SettingsCard {
                title: "Permissions"
                systemImage: "hand.raised.fill"
                Label {
                    Layout.fillWidth: true
                    text: "Needed for menu scanning, helper paste actions, and passive coach tips. The curated cheat sheet still works from the tray icon without it."
                    font.pixelSize: 12
                    color: root.secondary
                    wrapMode: Text.WordWrap
                    Accessible.name: text
                }
                RowLayout {
                    spacing: 6
                    Symbol {
                        name: root.model.accessibilityEnabled ? "checkmark.circle.fill"
                                                              : "exclamationmark.triangle.fill"
                        tint: root.model.accessibilityEnabled ? root.green : root.orange
                    }
                    Label {
                        objectName: "accessibilityStatus"
                        text: root.model.accessibilityEnabled ? "Accessibility is enabled"
                                                              : "Accessibility is not enabled"
                        color: root.model.accessibilityEnabled ? root.green : root.orange
                        Accessible.name: text
                    }
                }
                // The wrapped text sets the height of its frame, which the card's layout follows.
                Item {
                    visible: coachTipsNote.text.length > 0
                    Layout.fillWidth: true
                    implicitHeight: coachTipsNote.implicitHeight
                    Label {
                        id: coachTipsNote
                        objectName: "coachTipsNote"
                        width: parent.width
                        text: root.model.coachTipsNote
                        color: root.orange
                        font.pixelSize: 12
                        wrapMode: Text.WordWrap
                        Accessible.name: text
                    }
                }
                Button {
                    text: "Turn On Accessibility"
                    Accessible.name: text
                    onClicked: root.model.requestAccessibility()
                    Accessible.onPressAction: if (enabled) clicked()
                }
            }

            SettingsCard {
                title: "Shortcut Pack"
                systemImage: "tray.full.fill"
                Label {
                    objectName: "dataFilePath"
                    Layout.fillWidth: true
                    text: root.model.dataFilePath
                    font.family: "monospace"
                    font.pixelSize: 11
                    wrapMode: Text.WrapAnywhere
                    Accessible.name: text
                }
                Label {
                    objectName: "lastError"
                    visible: root.model.lastError.length > 0
                    Layout.fillWidth: true
                    text: root.model.lastError
                    color: root.red
                    font.pixelSize: 12
                    wrapMode: Text.WordWrap
                    Accessible.name: text
                }
                Flow {
                    Layout.fillWidth: true
                    spacing: 8
                    Button {
                        text: "Show File"
                        Accessible.name: text
                        onClicked: root.model.showFile()
                        Accessible.onPressAction: if (enabled) clicked()
                    }
                    Button {
                        text: "Import JSON"
                        Accessible.name: text
                        Accessible.description: root.importHint
                        ToolTip.text: root.importHint
                        ToolTip.visible: hovered
                        ToolTip.delay: 600
                        onClicked: root.model.importJson()
                        Accessible.onPressAction: if (enabled) clicked()
                    }
                    Button {
                        text: "Export JSON"
                        Accessible.name: text
                        onClicked: root.model.exportJson()
                        Accessible.onPressAction: if (enabled) clicked()
                    }
                    Button {
                        text: "Reset to Jorvo Pack"
                        Accessible.name: text
                        Accessible.description: root.resetHint
                        ToolTip.text: root.resetHint
                        ToolTip.visible: hovered
                        ToolTip.delay: 600
                        onClicked: root.model.resetToSeed()
                        Accessible.onPressAction: if (enabled) clicked()
                    }
                }
            }

            SettingsCard {
                title: "Startup"
                systemImage: "gearshape"
                Switch {
                    id: startAtLogin
                    objectName: "startAtLoginSwitch"
                    text: "Start Tessaline at login"
                    checked: root.model.startAtLogin
                    // A click flips `checked` before the model answers; bind it back to the file.
                    onToggled: {
                        root.model.setStartAtLogin(checked)
                        checked = Qt.binding(() => root.model.startAtLogin)
                    }
                    Accessible.name: text
                    Accessible.checkable: true
                    Accessible.checked: checked
                    Accessible.onToggleAction: root.model.setStartAtLogin(!root.model.startAtLogin)
                    Accessible.onPressAction: root.model.setStartAtLogin(!root.model.startAtLogin)
                }
                Label {
                    objectName: "startAtLoginMessage"
                    visible: root.model.startAtLoginMessage.length > 0
                    Layout.fillWidth: true
                    text: root.model.startAtLoginMessage
                    color: root.red
                    font.pixelSize: 12
                    wrapMode: Text.WordWrap
                    Accessible.name: text
                }
            }
        }
    }
}
