import QtQuick
import QtTest
import "qrc:/Tessaline/qml"

// The welcome window: its seven rows and the button that finishes it.
Item {
    id: stage
    width: 640
    height: 540

    TestCase {
        id: testCase
        name: "OnboardingView"
        when: windowShown

        Component {
            id: viewComponent
            OnboardingView {}
        }
        Component {
            id: spyComponent
            SignalSpy {}
        }

        // The `title` of every onboarding row under `item`, in layout order.
        function rowTitles(item) {
            let titles = []
            const visit = function (node) {
                if (!node)
                    return
                if (node.title !== undefined && node.icon !== undefined && node.text !== undefined)
                    titles.push(node.title)
                for (let i = 0; i < node.children.length; ++i)
                    visit(node.children[i])
            }
            visit(item)
            return titles
        }

        function test_sevenRows() {
            const view = createTemporaryObject(viewComponent, stage)
            verify(view)
            compare(rowTitles(view), ["Start from the tray icon", "Gentle tips, not interruptions",
                                      "Scan the app you're using", "Search across every app",
                                      "Build the vault from open apps", "Quick text helpers",
                                      "Qt and KDE apps"])
        }

        function test_startButtonCompletes() {
            const view = createTemporaryObject(viewComponent, stage)
            const spy = createTemporaryObject(spyComponent, testCase,
                                              { target: view, signalName: "complete" })
            const button = findChild(view, "startButton")
            compare(button.text, "Start using Tessaline")
            mouseClick(button, button.width / 2, button.height / 2)
            compare(spy.count, 1)
        }

        function test_tabReachesBothButtons() {
            const view = createTemporaryObject(viewComponent, stage)
            const start = findChild(view, "startButton")
            start.forceActiveFocus()
            keyClick(Qt.Key_Tab)
            compare(view.Window.activeFocusItem.Accessible.name, "Turn On Accessibility")
            keyClick(Qt.Key_Tab)
            verify(start.activeFocus, "Tab comes back to \"Start using Tessaline\"")
        }
    }
}
