import QtQuick
import QtTest
import "qrc:/Tessaline/qml"

// The browser window over a real vault: two app packs, five shortcuts in all.
Item {
    id: stage
    width: 800
    height: 660

    TestCase {
        id: testCase
        name: "VaultBrowserView"
        when: windowShown

        Component {
            id: viewComponent
            VaultBrowserView {}
        }
        Component {
            id: spyComponent
            SignalSpy {}
        }

        function init() { fixture.reset() }

        function makeView() {
            const view = createTemporaryObject(viewComponent, stage, { model: fixture.browser() })
            verify(view, "VaultBrowserView was not created")
            return view
        }

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

        function click(item) {
            verify(item, "nothing to click")
            mouseClick(item, item.width / 2, item.height / 2)
        }

        function test_countsLine() {
            const view = makeView()
            compare(findChild(view, "countsLine").text, "2 app packs • 5 shortcuts")
            compare(withText(view, "All Shortcuts").length, 1)
            verify(findChild(view, "browserList").visible)
            compare(findChild(view, "browserList").count, 5)
            verify(!findChild(view, "emptyState").visible)
        }

        function test_chordsAreDrawnInTheChosenKeyNames() {
            const view = makeView()
            const settings = fixture.settings()
            tryVerify(() => withText(view, "Ctrl+Y").length === 1)
            compare(withText(view, "Super+C").length, 1)
            compare(withText(view, "⌘C").length, 0)
            settings.keyNames.words = false
            compare(withText(view, "⌃Y").length, 1)
            compare(withText(view, "Super C").length, 1)
        }

        function test_emptyState() {
            const view = makeView()
            view.model.query = "no shortcut is called this"
            const empty = findChild(view, "emptyState")
            verify(empty.visible)
            verify(!findChild(view, "browserList").visible)
            compare(withText(empty, "No shortcuts found").length, 1)
            compare(withText(empty, "Try an app name like Files, a command like screenshot, "
                                    + "or a chord like Ctrl+K.").length, 1)
            // The counts describe the vault, not the filter.
            compare(findChild(view, "countsLine").text, "2 app packs • 5 shortcuts")
            view.model.query = "   "
            verify(!empty.visible)
            compare(findChild(view, "browserList").count, 5)
        }

        function test_typingFilters() {
            const view = makeView()
            const search = findChild(view, "browserSearch")
            search.forceActiveFocus()
            keyClick(Qt.Key_Y)
            keyClick(Qt.Key_A)
            keyClick(Qt.Key_N)
            keyClick(Qt.Key_K)
            compare(view.model.query, "yank")
            compare(findChild(view, "browserList").count, 1)
        }

        // Every shown group header: its title and the count beside it.
        function groupHeaders(item) {
            let found = []
            const visit = function (node) {
                if (!node || !node.visible)
                    return
                if (node.objectName === "groupCount") {
                    found.push(node.parent.children[1].text + " " + node.text)
                    return
                }
                for (let i = 0; i < node.children.length; ++i)
                    visit(node.children[i])
            }
            visit(item)
            return found.sort()
        }

        function test_groupCountsFollowTheQuery() {
            const view = makeView()
            const list = findChild(view, "browserList")
            const headers = function (expected) {
                tryVerify(function () { return String(groupHeaders(list)) === String(expected) },
                          1000, "group headers " + groupHeaders(list) + ", wanted " + expected)
            }
            headers(["Editor 3", "Global desktop essentials 2"])
            // Typed a key at a time, as a person does: the headers stay while their counts change.
            const search = findChild(view, "browserSearch")
            search.forceActiveFocus()
            keyClick(Qt.Key_Y)
            headers(["Editor 1", "Global desktop essentials 1"])
            keyClick(Qt.Key_A)
            headers(["Editor 1"])
            keyClick(Qt.Key_Backspace)
            keyClick(Qt.Key_Backspace)
            keyClick(Qt.Key_S)
            headers(["Editor 3", "Global desktop essentials 2"])
            view.model.query = "yank"
            headers(["Editor 1"])
        }

        // Each group's title with the name of the first row drawn below it, in sorted order.
        function titlesAboveRows(list) {
            let titles = [], rows = []
            const items = list.contentItem.children
            for (let i = 0; i < items.length; ++i) {
                const item = items[i]
                if (!item.visible)
                    continue
                if (item.chord !== undefined)
                    rows.push(item)
                else if (findChild(item, "groupCount"))
                    titles.push(item)
            }
            let pairs = []
            for (const title of titles) {
                let below = null
                for (const row of rows) {
                    if (row.y > title.y && (below === null || row.y < below.y))
                        below = row
                }
                pairs.push(title.children[1].text + " > " + (below ? below.name : ""))
            }
            return pairs.sort().join(", ")
        }

        function test_groupTitlesFollowASearch() {
            const view = makeView()
            const list = findChild(view, "browserList")
            const titlesAre = function (expected) {
                for (let i = 0; i < 40 && titlesAboveRows(list) !== expected; ++i)
                    wait(50)
                compare(titlesAboveRows(list), expected)
            }
            const both = "Editor > Find, Global desktop essentials > Copy"
            titlesAre(both)
            for (const query of ["e", "o", "", "copy", "e", ""]) {
                view.model.query = query
                const expected = query === "copy" ? "Global desktop essentials > Copy" : both
                titlesAre(expected)
            }
        }

        // A star set elsewhere changes its row in place: the list keeps where it was scrolled
        // to and which row was current.
        function test_starKeepsScrollAndSelection() {
            const view = createTemporaryObject(viewComponent, stage,
                                               { model: fixture.browser(), height: 260 })
            verify(view, "VaultBrowserView was not created")
            const list = findChild(view, "browserList")
            tryVerify(function () { return list.contentHeight > list.height + 40 }, 1000,
                      "the list does not scroll at this height")
            const top = list.contentY
            list.currentIndex = 3
            list.contentY = top + 30
            wait(50)
            const scrolled = list.contentY
            verify(scrolled > top + 20, "the list did not scroll")
            let save = null
            for (let row = 0; row < list.count; ++row) {
                const item = list.itemAtIndex(row)
                if (item && item.name === "Save")
                    save = item
            }
            verify(save, "no row shows Save")
            verify(!save.favorite)
            fixture.cheatSheet("Editor", "org.example.Editor").toggleFavorite(1) // Save
            // The same row, changed in place.
            verify(save.favorite)
            wait(50)
            compare(list.currentIndex, 3)
            compare(list.contentY, scrolled)
        }

        function test_showJsonEmitsItsSignal() {
            const view = makeView()
            const spy = createTemporaryObject(spyComponent, testCase,
                                              { target: view, signalName: "showJson" })
            const buttons = withText(view, "Show JSON")
            compare(buttons.length, 1)
            click(buttons[0])
            compare(spy.count, 1)
        }

        function test_scanOpenAppsEmitsItsSignal() {
            const view = makeView()
            const spy = createTemporaryObject(spyComponent, testCase,
                                              { target: view, signalName: "scanOpenApps" })
            const button = findChild(view, "scanOpenAppsButton")
            compare(button.text, "Scan Open Apps")
            click(button)
            compare(spy.count, 1)
        }

        function test_statusLineFollowsTheScanner() {
            const view = makeView()
            fixture.startScan("Editor", "org.example.Editor")
            verify(!findChild(view, "scanOpenAppsButton").enabled)
            compare(findChild(view, "statusLine").text, "Scanning Editor menus...")
            tryVerify(function () { return findChild(view, "scanOpenAppsButton").enabled })
            compare(findChild(view, "statusLine").text, "Editor is not running anymore.")
        }

        function test_tabGoesFromTheSearchToTheButtonsAndBack() {
            const view = makeView()
            const focusName = () => view.Window.activeFocusItem.Accessible.name
            compare(findChild(view, "browserSearch").activeFocus, true)
            keyClick(Qt.Key_Tab)
            compare(focusName(), "Show JSON")
            keyClick(Qt.Key_Tab)
            compare(focusName(), "Scan Open Apps")
            keyClick(Qt.Key_Tab)
            verify(findChild(view, "browserSearch").activeFocus)
            keyClick(Qt.Key_Backtab)
            compare(focusName(), "Scan Open Apps")
        }
    }
}
