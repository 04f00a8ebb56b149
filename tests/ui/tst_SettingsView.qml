import QtQuick
import QtTest
import "qrc:/Tessaline/qml"

// The settings window's hotkey recorder, driven by key presses, and its start-at-login switch.
Item {
    id: stage
    width: 600
    height: 560

    TestCase {
        id: testCase
        name: "SettingsView"
        when: windowShown

        Component {
            id: viewComponent
            SettingsView {}
        }

        function init() { fixture.reset() }

        function makeView() {
            const view = createTemporaryObject(viewComponent, stage, { model: fixture.settings() })
            verify(view, "SettingsView was not created")
            return view
        }

        function recorderText(view) { return findChild(view, "recorderText").text }

        function record(view) {
            const recorder = findChild(view, "hotkeyRecorder")
            mouseClick(recorder, recorder.width / 2, recorder.height / 2)
            verify(recorder.activeFocus)
            return recorder
        }

        function test_disabledHotkeyReadsClickToRecord() {
            const view = makeView()
            compare(recorderText(view), "Click to record")
            verify(!findChild(view, "registrationMessage").visible)
        }

        function test_recordingOptionCommandJ() {
            const view = makeView()
            const recorder = record(view)
            keyClick(Qt.Key_J, Qt.AltModifier | Qt.MetaModifier)
            compare(recorderText(view), "Alt+Super+J")
            const message = findChild(view, "registrationMessage")
            verify(message.visible)
            compare(message.text, "HUD hotkey set to Alt+Super+J.")
            verify(findChild(view, "hotkeyToggle").checked)
            // The recorder keeps focus: the next chord replaces the last.
            verify(recorder.activeFocus)
            keyClick(Qt.Key_K, Qt.ControlModifier | Qt.MetaModifier)
            compare(recorderText(view), "Ctrl+Super+K")
        }

        function test_sessionWithoutGlobalKeysSaysWhatToBind() {
            let view = makeView()
            verify(!findChild(view, "hotkeyUnavailable").visible)
            fixture.setSessionGrabsKeys(false)
            view = makeView()
            const hint = findChild(view, "hotkeyUnavailable")
            verify(hint.visible)
            compare(hint.text, "The desktop gave Tessaline no global key: bind the command tessaline --toggle to a key in the desktop's keyboard settings.")
            // The hint wraps and the next line starts below it.
            const next = findChild(view, "recorderHint")
            const frame = hint.parent
            tryVerify(() => hint.lineCount > 1)
            tryVerify(() => next.y >= frame.y + hint.height)
            tryVerify(() => hint.height >= hint.contentHeight, 2000)
        }

        function test_coachTipsOffSaysWhy() {
            let view = makeView()
            verify(!findChild(view, "coachTipsNote").visible)
            const reason = "Coach tips are off: Tessaline may not read the keyboard. Add your user to the \"input\" group and log in again."
            fixture.refuseTipKeys(reason)
            const note = findChild(view, "coachTipsNote")
            tryVerify(() => note.visible)
            compare(note.text, reason)
            compare(note.Accessible.name, reason)
            tryVerify(() => note.lineCount > 1)
            tryVerify(() => note.parent.height >= note.contentHeight, 2000)
        }

        function test_keyNamesChoiceRedrawsTheHotkey() {
            const view = makeView()
            record(view)
            keyClick(Qt.Key_J, Qt.AltModifier | Qt.MetaModifier)
            const words = findChild(view, "keyNamesWords")
            const symbols = findChild(view, "keyNamesSymbols")
            verify(words.checked)
            verify(!symbols.checked)
            compare(words.text, "Words (Ctrl+Shift+S)")
            compare(symbols.text, "Symbols (⌃ ⇧ S)")

            mouseClick(symbols, symbols.width / 2, symbols.height / 2)
            verify(symbols.checked)
            verify(!words.checked)
            verify(!view.model.keyNames.words)
            compare(recorderText(view), "⌥Super J")
            compare(findChild(view, "registrationMessage").text, "HUD hotkey set to ⌥Super J.")

            // Assistive tools choose through the radio button's action.
            verify(fixture.doAccessibleAction(words, "Press"))
            verify(words.checked)
            compare(recorderText(view), "Alt+Super+J")
        }

        function test_keyWithoutModifierChangesOnlyTheMessage() {
            const view = makeView()
            record(view)
            keyClick(Qt.Key_J)
            compare(recorderText(view), "Click to record")
            compare(findChild(view, "registrationMessage").text,
                    "Choose at least one modifier, like Ctrl or Alt.")
            verify(!findChild(view, "hotkeyToggle").checked)
        }

        function startSwitch(view) { return findChild(view, "startAtLoginSwitch") }

        function test_startAtLoginIsOffByDefault() {
            const view = makeView()
            const toggle = startSwitch(view)
            verify(!toggle.checked)
            compare(toggle.Accessible.name, "Start Tessaline at login")
            verify(!fixture.fileExists(fixture.autostartFile()))
            verify(!findChild(view, "startAtLoginMessage").visible)
        }

        function test_switchWritesAndRemovesTheEntry() {
            const view = makeView()
            const toggle = startSwitch(view)
            toggle.forceActiveFocus()
            keyClick(Qt.Key_Space)
            verify(toggle.checked)
            verify(fixture.fileExists(fixture.autostartFile()))
            keyClick(Qt.Key_Space)
            verify(!toggle.checked)
            verify(!fixture.fileExists(fixture.autostartFile()))
        }

        function test_switchShowsTheFileEachTimeItIsShown() {
            const view = makeView()
            const toggle = startSwitch(view)
            toggle.forceActiveFocus()
            keyClick(Qt.Key_Space)
            verify(toggle.checked)
            // The user deletes the entry by hand; the next showing reads it as off.
            verify(fixture.removeFile(fixture.autostartFile()))
            view.visible = false
            view.visible = true
            verify(!toggle.checked)
            // A fresh settings window over an existing entry reads it as on.
            toggle.forceActiveFocus()
            keyClick(Qt.Key_Space)
            verify(startSwitch(makeView()).checked)
        }

        function test_assistiveToolsStartAndEndARecording() {
            const view = makeView()
            const recorder = findChild(view, "hotkeyRecorder")
            compare(recorder.Accessible.checkable, true)
            verify(!recorder.Accessible.checked)
            verify(fixture.doAccessibleAction(recorder, "Press"), "the recorder offers a press")
            verify(recorder.activeFocus, "a press starts a recording")
            verify(recorder.Accessible.checked)
            keyClick(Qt.Key_J, Qt.AltModifier | Qt.MetaModifier)
            compare(recorderText(view), "Alt+Super+J")
            verify(fixture.doAccessibleAction(recorder, "Press"))
            verify(!recorder.activeFocus, "a second press ends the recording")
            verify(!recorder.Accessible.checked)
            // Keys after the end are not recorded.
            keyClick(Qt.Key_K, Qt.ControlModifier | Qt.MetaModifier)
            compare(recorderText(view), "Alt+Super+J")
        }

        function test_tabReachesEveryControlInReadingOrder() {
            const view = makeView()
            const toggle = findChild(view, "hotkeyToggle")
            toggle.forceActiveFocus()
            const names = ["Enable custom HUD hotkey", "Hotkey recorder: Click to record",
                           "Words (Ctrl+Shift+S)", "Symbols (⌃ ⇧ S)",
                           "Turn On Accessibility", "Show File", "Import JSON", "Export JSON",
                           "Reset to Jorvo Pack", "Start Tessaline at login"]
            compare(view.Window.activeFocusItem.Accessible.name, names[0])
            // The recorder takes every key, Tab included, while it records: leave it by a
            // press, as an assistive tool would, and go on from the control after it.
            keyClick(Qt.Key_Tab)
            compare(view.Window.activeFocusItem.Accessible.name, names[1])
            findChild(view, "hotkeyRecorder").nextItemInFocusChain(true).forceActiveFocus()
            for (let i = 2; i < names.length; ++i) {
                compare(view.Window.activeFocusItem.Accessible.name, names[i], names[i])
                keyClick(Qt.Key_Tab)
            }
        }

        function test_assistiveToolsToggleTheSwitch() {
            const view = makeView()
            const toggle = startSwitch(view)
            verify(fixture.doAccessibleAction(toggle, "Toggle"))
            verify(toggle.checked)
            verify(toggle.Accessible.checked)
            verify(fixture.fileExists(fixture.autostartFile()))
            verify(fixture.doAccessibleAction(toggle, "Press"))
            verify(!toggle.checked)
            verify(!fixture.fileExists(fixture.autostartFile()))
        }
    }
}
