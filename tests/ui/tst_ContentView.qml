import QtQuick
import QtQuick.Controls
import QtTest
import "qrc:/Tessaline/qml"

// The cheat sheet's texts and states over a real vault: the "Editor" app has three shortcuts,
// "Hollow" has a pack without any.
Item {
    id: stage
    width: 760
    height: 620

    TestCase {
        id: testCase
        name: "ContentView"
        when: windowShown

        Component {
            id: viewComponent
            ContentView {}
        }
        Component {
            id: spyComponent
            SignalSpy {}
        }

        function init() { fixture.reset() }

        function makeView(appName, bundleID) {
            const view = createTemporaryObject(viewComponent, stage, {
                model: fixture.cheatSheet(appName, bundleID),
                navigator: fixture.navigator()
            })
            verify(view, "ContentView was not created")
            return view
        }

        function spyOn(target, signalName) {
            return createTemporaryObject(spyComponent, testCase,
                                         { target: target, signalName: signalName })
        }

        // Every visible item under `item` whose `text` is exactly `text`.
        function withText(item, text) {
            let found = []
            const visit = function (node) {
                if (!node || !node.visible)
                    return
                if (node.text !== undefined && node.text === text) {
                    // A control's own label repeats its text: count the control once.
                    found.push(node)
                    return
                }
                for (let i = 0; i < node.children.length; ++i)
                    visit(node.children[i])
            }
            visit(item)
            return found
        }

        // The header's symbol buttons, in layout order.
        function headerButtons(item) {
            let found = []
            const visit = function (node) {
                if (!node)
                    return
                if (node.systemName !== undefined && node.help !== "Dismiss scan status")
                    found.push(node)
                for (let i = 0; i < node.children.length; ++i)
                    visit(node.children[i])
            }
            visit(item)
            return found
        }

        function click(item) {
            verify(item, "nothing to click")
            mouseClick(item, item.width / 2, item.height / 2)
        }

        function test_readyApp() {
            const view = makeView("Editor", "org.example.Editor")
            compare(findChild(view, "statusPill").text, "Vault ready")
            compare(findChild(view, "subtitle").text,
                    "Showing commands for the app you were using before opening Tessaline.")
            verify(!findChild(view, "missingAppCallout").visible)
            verify(!findChild(view, "scanStatusCard").visible)
            verify(!findChild(view, "emptySearch").visible)
            compare(withText(view, "Editor").length, 1)
            const list = findChild(view, "shortcutList")
            compare(list.count, 5)
        }

        function test_appWithEmptyPackIsNotScanned() {
            const view = makeView("Hollow", "org.example.Hollow")
            compare(findChild(view, "statusPill").text, "Not scanned yet")
            compare(findChild(view, "subtitle").text,
                    "Search global shortcuts now, or scan this app to add its menu commands.")
            const callout = findChild(view, "missingAppCallout")
            verify(callout.visible)
            compare(withText(callout, "This app is not in the vault yet").length, 1)
            compare(withText(callout, "Click Scan Menus to read commands from Hollow's menu bar. "
                                      + "Global desktop essentials are still shown below.").length, 1)
            // The global list is still there.
            compare(findChild(view, "shortcutList").count, 2)
        }

        function test_unknownAppShowsTheCalloutAndItsButtonScans() {
            const view = makeView("Stranger", "")
            compare(findChild(view, "statusPill").text, "Not scanned yet")
            const spy = spyOn(view, "scanMenus")
            const buttons = withText(findChild(view, "missingAppCallout"), "Scan Menus")
            compare(buttons.length, 1)
            click(buttons[0])
            compare(spy.count, 1)
        }

        function test_emptySearchReplacesTheSectionsButKeepsTheCallout() {
            const view = makeView("Hollow", "org.example.Hollow")
            const list = findChild(view, "shortcutList")
            view.model.filter = "qqqzzzxxx"
            compare(list.count, 0)
            const empty = findChild(view, "emptySearch")
            verify(empty.visible)
            compare(withText(empty, "Nothing matches that search").length, 1)
            compare(withText(empty, "Try the app name, action, key symbols, or tags like screenshot.")
                    .length, 1)
            verify(findChild(view, "missingAppCallout").visible)
            // No section header is left standing.
            compare(withText(list, "GLOBAL DESKTOP ESSENTIALS").length, 0)
            view.model.filter = ""
            verify(!empty.visible)
            compare(list.count, 2)
            tryCompare(withText(list, "GLOBAL DESKTOP ESSENTIALS"), "length", 1)
        }

        // Each section title with the name of the first row drawn below it, in sorted order.
        function titlesAboveRows(list) {
            let titles = [], rows = []
            const items = list.contentItem.children
            for (let i = 0; i < items.length; ++i) {
                const item = items[i]
                if (!item.visible)
                    continue
                if (item.chord !== undefined)
                    rows.push(item)
                else if (item.text !== undefined && item.text !== "")
                    titles.push(item)
            }
            let pairs = []
            for (const title of titles) {
                let below = null
                for (const row of rows) {
                    if (row.y > title.y && (below === null || row.y < below.y))
                        below = row
                }
                pairs.push(title.text + " > " + (below ? below.name : ""))
            }
            return pairs.sort().join(", ")
        }

        function test_sectionTitlesFollowASearch() {
            const view = makeView("Editor", "org.example.Editor")
            const list = findChild(view, "shortcutList")
            const titlesAre = function (expected) {
                for (let i = 0; i < 40 && titlesAboveRows(list) !== expected; ++i)
                    wait(50)
                compare(titlesAboveRows(list), expected)
            }
            const both = "EDITOR SHORTCUTS > Find, GLOBAL DESKTOP ESSENTIALS > Copy"
            titlesAre(both)
            // Every row matches "u" through its detail, so the rows stay where they were while
            // the list is told of the change: each title must still stand over its own group.
            view.model.filter = "u"
            compare(list.count, 5)
            waitForRendering(list)
            titlesAre(both)
            view.model.filter = "copy"
            compare(list.count, 1)
            titlesAre("GLOBAL DESKTOP ESSENTIALS > Copy")
            view.model.filter = ""
            titlesAre(both)
        }

        function test_emptySearchKeepsTheScanCard() {
            const view = makeView("Editor", "org.example.Editor")
            fixture.startScan("Editor", "org.example.Editor")
            tryVerify(function () { return !view.model.isScanning })
            view.model.filter = "qqqzzzxxx"
            verify(findChild(view, "emptySearch").visible)
            const card = findChild(view, "scanStatusCard")
            verify(card.visible)
            compare(withText(card, "Editor is not running anymore.").length, 1)
        }

        function test_openingClearsTheSearch() {
            const model = fixture.cheatSheet("Editor", "org.example.Editor")
            model.filter = "save"
            const view = createTemporaryObject(viewComponent, stage,
                                               { model: model, navigator: fixture.navigator() })
            compare(model.filter, "")
            compare(findChild(view, "searchField").text, "")
            compare(findChild(view, "shortcutList").count, 5)
        }

        function test_dismissButtonIsAbsentWhileScanning() {
            const view = makeView("Editor", "org.example.Editor")
            fixture.startScan("Editor", "org.example.Editor")
            // The scan runs on the next event-loop turn: the view shows the running state now.
            verify(view.model.isScanning)
            const card = findChild(view, "scanStatusCard")
            verify(card.visible)
            compare(withText(card, "Scanning Editor menus...").length, 1)
            verify(!findChild(view, "dismissScanStatus").visible)
            verify(!findChild(view, "scanButton").enabled)

            tryVerify(function () { return !view.model.isScanning })
            const dismiss = findChild(view, "dismissScanStatus")
            verify(dismiss.visible)
            // The button has just appeared: let its row lay it out before clicking.
            waitForRendering(view)
            click(dismiss)
            compare(view.model.scanStatus, "")
            verify(!card.visible)
        }

        function test_scanCardAppearsInSightAtTheTop() {
            const view = makeView("Editor", "org.example.Editor")
            const list = findChild(view, "shortcutList")
            waitForRendering(view)
            fixture.startScan("Editor", "org.example.Editor")
            const card = findChild(view, "scanStatusCard")
            verify(card.visible)
            // The whole card lies inside the list's visible area, not scrolled off above it.
            tryVerify(function () { return card.mapToItem(list, 0, 0).y >= 0 }, 1000,
                      "the scan card sits above the visible part of the list")
            tryVerify(function () { return !view.model.isScanning })
        }

        function test_headerButtons() {
            const view = makeView("Editor", "org.example.Editor")
            const buttons = headerButtons(view)
            compare(buttons.length, 5)
            const names = ["Browse every saved shortcut", "Settings", "Reload keybinds",
                           "Scan the current app's menus", "Close"]
            const symbols = ["rectangle.grid.1x2", "gearshape", "arrow.clockwise", "text.viewfinder",
                             "xmark"]
            const signalNames = ["browseAll", "settings", "reload", "scanMenus", "close"]
            for (let i = 0; i < 5; ++i) {
                compare(buttons[i].Accessible.name, names[i])
                compare(buttons[i].systemName, symbols[i])
                const spy = spyOn(view, signalNames[i])
                click(buttons[i])
                compare(spy.count, 1, signalNames[i])
            }
        }

        function test_escapeCloses() {
            const view = makeView("Editor", "org.example.Editor")
            const spy = spyOn(view, "close")
            keyClick(Qt.Key_Escape)
            compare(spy.count, 1)
        }

        function test_helperBarButtons() {
            const view = makeView("Editor", "org.example.Editor")
            const titles = ["Insert Bullet", "Insert Checklist", "Insert Divider", "Paste Plain Text"]
            const raws = ["bullet", "checklist", "divider", "pastePlainText"]
            const spy = spyOn(view, "helperAction")
            for (let i = 0; i < titles.length; ++i) {
                const buttons = withText(view, titles[i])
                compare(buttons.length, 1, titles[i])
                click(buttons[0])
                compare(spy.signalArguments[i][0], raws[i])
            }
            compare(withText(view, "QUICK HELPERS").length, 1)
        }

        // What has the keyboard focus: its object name, else its accessible name.
        function focusName(view) {
            const item = view.Window.activeFocusItem
            if (!item)
                return ""
            // A row holds the focus inside the list while it is the selection.
            if (item.chord !== undefined)
                return "row " + item.index
            return item.objectName.length > 0 ? item.objectName : item.Accessible.name
        }

        function test_tabGoesFromSearchToListToButtonsAndBack() {
            const view = makeView("Editor", "org.example.Editor")
            const order = ["searchField", "shortcutList", "Insert Bullet", "Insert Checklist",
                           "Insert Divider", "Paste Plain Text", "Browse every saved shortcut",
                           "Settings", "Reload keybinds", "scanButton", "Close",
                           "searchField"]
            compare(focusName(view), order[0])
            for (let i = 1; i < order.length; ++i) {
                keyClick(Qt.Key_Tab)
                compare(focusName(view), order[i], "Tab number " + i)
            }
            for (let i = order.length - 2; i >= 0; --i) {
                keyClick(Qt.Key_Backtab)
                compare(focusName(view), order[i], "Shift+Tab back to " + order[i])
            }
        }

        function test_tabReachesTheCalloutsScanButtonAfterTheList() {
            const view = makeView("Stranger", "")
            keyClick(Qt.Key_Tab)
            compare(focusName(view), "shortcutList")
            keyClick(Qt.Key_Tab)
            compare(focusName(view), "Scan Menus")
        }

        function test_focusRingsShowOnlyForTheTabbedControl() {
            const view = makeView("Editor", "org.example.Editor")
            const close = headerButtons(view)[4]
            const ring = findChild(close, "focusRing")
            const listRing = findChild(view, "listFocusRing")
            verify(!ring.visible)
            verify(!listRing.visible)
            keyClick(Qt.Key_Tab)
            verify(listRing.visible, "the list shows that it has the focus")
            for (let i = 0; i < 9; ++i)
                keyClick(Qt.Key_Tab)
            compare(focusName(view), "Close")
            verify(ring.visible, "the tabbed button shows its ring")
            verify(!listRing.visible)
        }

        function test_clickingAButtonLeavesTheFocusInTheSearchField() {
            const view = makeView("Editor", "org.example.Editor")
            click(headerButtons(view)[2])
            compare(focusName(view), "searchField")
            click(withText(view, "Insert Bullet")[0])
            compare(focusName(view), "searchField")
        }

        function test_theSelectedRowHasTheFocusInsideTheList() {
            const view = makeView("Editor", "org.example.Editor")
            keyClick(Qt.Key_Tab)
            compare(focusName(view), "shortcutList")
            view.navigator.selection = 0
            compare(focusName(view), "row 0")
            view.navigator.selection = 2
            compare(focusName(view), "row 2")
            view.navigator.selection = -1
            compare(focusName(view), "shortcutList")
        }

        function test_rowsAnswerAssistiveToolsActions() {
            const view = makeView("Editor", "org.example.Editor")
            const list = findChild(view, "shortcutList")
            tryVerify(function () { return list.itemAtIndex(0) !== null })
            const row = list.itemAtIndex(0)
            const star = findChild(row, "starButton")
            verify(fixture.doAccessibleAction(row, "Press"), "the row offers a press action")
            compare(fixture.copied(), [row.chord])
            const wasFavorite = row.favorite
            compare(star.checkable, true)
            compare(star.checked, wasFavorite)
            compare(star.Accessible.description, row.name)
            const name = row.name
            verify(fixture.doAccessibleAction(star, "Toggle"), "the star offers a toggle action")
            // The favourite moves the row; find it again by name.
            let toggled = null
            tryVerify(function () {
                for (let i = 0; i < list.count; ++i) {
                    const item = list.itemAtIndex(i)
                    if (item && item.name === name && item.favorite !== wasFavorite) {
                        toggled = item
                        return true
                    }
                }
                return false
            })
            compare(findChild(toggled, "starButton").checked, !wasFavorite)
        }

        function test_runButtonShowsOnTheSelectionAndRunsTheRow() {
            const view = createTemporaryObject(viewComponent, stage, {
                model: fixture.runnableCheatSheet("Editor", "org.example.Editor"),
                navigator: fixture.navigator()
            })
            const list = findChild(view, "shortcutList")
            tryVerify(function () { return list.itemAtIndex(1) !== null })
            const first = list.itemAtIndex(0)
            const second = list.itemAtIndex(1)
            compare(findChild(first, "runButton").visible, false)
            view.navigator.selection = 1
            compare(findChild(second, "runButton").visible, true)
            compare(findChild(first, "runButton").visible, false)
            compare(findChild(second, "runButton").Accessible.name, "Run")
            verify(fixture.doAccessibleAction(findChild(second, "runButton"), "Press"),
                   "the run button offers a press action")
            compare(fixture.ran(), [second.name])
            click(findChild(second, "runButton"))
            compare(fixture.ran(), [second.name, second.name])
            // The run button copies nothing.
            compare(fixture.copied(), [])
        }

        function test_noRunButtonWhereRowsCannotRun() {
            const view = makeView("Editor", "org.example.Editor")
            const list = findChild(view, "shortcutList")
            tryVerify(function () { return list.itemAtIndex(0) !== null })
            view.navigator.selection = 0
            compare(findChild(list.itemAtIndex(0), "runButton").visible, false)
        }

        function test_keyboardSelectionAndCopy() {
            const view = makeView("Editor", "org.example.Editor")
            const list = findChild(view, "shortcutList")
            compare(view.navigator.itemCount, 5)
            // Typing narrows the list and clears the selection.
            view.navigator.selection = 3
            view.model.filter = "save"
            compare(view.navigator.selection, -1)
            compare(view.navigator.itemCount, 1)
            compare(list.count, 1)
        }

        function test_chordsAreDrawnInTheChosenKeyNames() {
            const view = makeView("Editor", "org.example.Editor")
            const settings = fixture.settings()
            // Words by default: the vault's "⌘S" is Super+S on a Linux keyboard.
            // The list's rows are made once the view has been laid out.
            tryVerify(() => withText(view, "Ctrl+Y").length === 1)
            compare(withText(view, "⌘S").length, 0)
            const words = withText(view, "Super+S")
            compare(words.length, 1)
            compare(withText(view, "Ctrl+Y").length, 1)
            // Copying gives the chord as the vault stores it.
            click(words[0])
            compare(fixture.copied(), ["⌘S"])

            settings.keyNames.words = false
            compare(withText(view, "Super S").length, 1)
            compare(withText(view, "⌃Y").length, 1)
            compare(withText(view, "Super+S").length, 0)
            settings.keyNames.words = true
            compare(withText(view, "Super+S").length, 1)
        }

        // The navigator's "/" is the key at the slash place, Shift or not; a "/" that the
        // layout puts on another key (Shift+7 on a German keyboard) is text for the field.
        function test_slashKeyIsReadByItsPlace() {
            const view = makeView("Editor", "org.example.Editor")
            fixture.attachNavigator(view.navigator, view)
            const field = findChild(view, "searchField")
            field.forceActiveFocus()
            tryVerify(function () { return field.activeFocus })
            const requests = view.navigator.searchFocusRequest
            fixture.pressKeyAt(view, 61, Qt.Key_Question, Qt.ShiftModifier, "?")
            compare(view.navigator.searchFocusRequest, requests + 1)
            compare(field.text, "")
            fixture.pressKeyAt(view, 16, Qt.Key_Slash, Qt.ShiftModifier, "/")
            compare(view.navigator.searchFocusRequest, requests + 1)
            compare(field.text, "/")
            compare(view.model.filter, "/")
        }
    
        // Visible items under `item` named `objectName`.
        function visibleNamed(item, objectName) {
            let found = []
            const visit = function (node) {
                if (!node || !node.visible)
                    return
                if (node.objectName === objectName)
                    found.push(node)
                for (let i = 0; i < node.children.length; ++i)
                    visit(node.children[i])
            }
            visit(item)
            return found
        }

        // A chord the desktop takes marks the app's row with a warning that says why, to the
        // eye in its tooltip and to assistive tools in the row's description.
        function test_rowsWhoseChordTheDesktopTakesAreMarked() {
            const view = makeView("Editor", "org.example.Editor")
            tryVerify(() => withText(view, "Super+S").length === 1)
            compare(visibleNamed(view, "conflictBadge").length, 0)
            fixture.bindOnDesktop(view.model, "Snap window", "Super+S")
            tryVerify(() => visibleNamed(view, "conflictBadge").length === 1)
            const badge = visibleNamed(view, "conflictBadge")[0]
            compare(badge.text, "⚠")
            compare(badge.ToolTip.text, "The desktop takes this key: Snap window")
            compare(badge.Accessible.description, "The desktop takes this key: Snap window")
            let row = badge
            while (row && row.favorite === undefined)
                row = row.parent
            verify(row, "the badge is not inside a row")
            compare(row.name, "Save")
            compare(row.Accessible.description, "The desktop takes this key: Snap window")
        }

        // A rescan that no longer finds a command, or finds it under a new chord: the status
        // line counts them, the old rows are muted and tagged, and the moved command tells its
        // old chord in the chosen key names.
        function test_rowsThatDriftedSinceTheLastScanAreMarked() {
            const view = makeView("Editor", "org.example.Editor")
            verify(fixture.scanWithDrift("Editor", "org.example.Editor"))
            tryCompare(view.model, "scanStatus",
                       "Added 1 of 1 discovered shortcuts for Editor, 2 changed since the last scan.")
            tryVerify(() => withText(view, view.model.scanStatus).length === 1)

            const tags = visibleNamed(view, "staleTag")
            compare(tags.length, 2)
            const stale = tags.map(tag => {
                let row = tag
                while (row && row.favorite === undefined)
                    row = row.parent
                return row
            })
            compare(stale.map(row => row.name + " " + row.chordText).sort(),
                    ["Close Ctrl+W", "Cut Ctrl+X"])
            compare(tags[0].text, "not in the menus")
            compare(tags[0].ToolTip.text, "The last menu scan did not find this shortcut")
            compare(stale[0].Accessible.description, "The last menu scan did not find this shortcut")

            // The new Cut, below the fold of the whole list, is found by a search.
            view.model.filter = "cut"
            tryVerify(() => visibleNamed(view, "wasChord").length === 1)
            const was = visibleNamed(view, "wasChord")
            compare(visibleNamed(view, "staleTag").length, 1)
            compare(was[0].text, "was Ctrl+X")
            let row = was[0]
            while (row && row.favorite === undefined)
                row = row.parent
            compare(row.name, "Cut")
            compare(row.chordText, "Ctrl+Shift+X")
            compare(row.stale, false)
            compare(row.Accessible.description,
                    "The last menu scan found this command with a new chord; it was Ctrl+X")

            const settings = fixture.settings()
            settings.keyNames.words = false
            compare(was[0].text, "was ⌃ X")
            settings.keyNames.words = true
            compare(was[0].text, "was Ctrl+X")
        }

        // Ctrl+K asks for a chord; the chord pressed reaches neither the search field nor the
        // HUD's own keys, and the list shows what it is bound to, by source. Escape goes back
        // to the cheat sheet without closing the HUD.
        function test_keyLookup() {
            const view = makeView("Editor", "org.example.Editor")
            fixture.attachNavigator(view.navigator, view)
            fixture.bindOnDesktop(view.model, "Snap window", "Super+S")
            const field = findChild(view, "searchField")
            const list = findChild(view, "shortcutList")
            tryVerify(() => field.activeFocus)
            const closes = spyOn(view, "close")

            keyClick(Qt.Key_K, Qt.ControlModifier)
            verify(view.model.lookupActive)
            verify(view.navigator.capturing)
            compare(field.placeholderText, "Press a shortcut…")
            compare(field.text, "")
            compare(list.count, 0)
            tryVerify(() => withText(view, "Press a shortcut to see what it does").length === 1)

            // A lone modifier waits for its key.
            keyClick(Qt.Key_Control, Qt.ControlModifier)
            verify(view.model.lookupActive)
            compare(list.count, 0)

            keyClick(Qt.Key_S, Qt.MetaModifier)
            compare(field.text, "Super+S")
            compare(view.model.filter, "")
            compare(list.count, 2)
            tryVerify(() => withText(view, "EDITOR").length === 1)
            compare(withText(view, "DESKTOP: ORG.EXAMPLE.KEYS").length, 1)
            compare(withText(view, "Snap window").length, 1)
            compare(withText(view, "Find").length, 0)

            // Keys the HUD acts on are looked up too: "/" does not ask for the search field.
            const requests = view.navigator.searchFocusRequest
            keyClick(Qt.Key_Slash)
            compare(view.navigator.searchFocusRequest, requests)
            compare(field.text, "/")
            compare(list.count, 0)
            tryVerify(() => withText(view, "Nothing is bound to /").length === 1)

            keyClick(Qt.Key_Y, Qt.ControlModifier)
            compare(field.text, "Ctrl+Y")
            compare(list.count, 1)

            keyClick(Qt.Key_Escape)
            compare(closes.count, 0)
            verify(!view.model.lookupActive)
            verify(!view.navigator.capturing)
            compare(field.placeholderText, "Search shortcuts, actions, or tags")
            compare(field.text, "")
            compare(view.navigator.itemCount, 5)
            // The next Escape closes the HUD as before.
            keyClick(Qt.Key_Escape)
            compare(closes.count, 1)
        }
    }
}
