pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The welcome window shown until the user starts using Tessaline. "Start using Tessaline" goes
// out as a signal, which the commands pass on to the application.
ThemedSurface {
    id: root
    /// Asks for the accessibility permission; none when the window only shows.
    property SettingsModel accessibility: null
    property OnboardingCommands commands: null
    property url logoSource: ""

    signal complete()

    onComplete: if (root.commands) root.commands.complete()

    implicitWidth: 600
    implicitHeight: 500

    Keys.onReturnPressed: root.complete()
    Keys.onEnterPressed: root.complete()
    Component.onCompleted: root.forceActiveFocus()

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 20
        spacing: 12

        RowLayout {
            spacing: 14
            Item {
                Layout.preferredWidth: 58
                Layout.preferredHeight: 58
                Image {
                    id: logo
                    anchors.fill: parent
                    source: root.logoSource
                    fillMode: Image.PreserveAspectFit
                    visible: status === Image.Ready
                }
                Symbol {
                    anchors.centerIn: parent
                    side: 48
                    name: "keyboard"
                    visible: logo.status !== Image.Ready
                }
            }
            ColumnLayout {
                spacing: 2
                Label {
                    text: "Tessaline for Jorvo"
                    font.pixelSize: 22
                    font.bold: true
                    Accessible.name: text
                }
                Label {
                    text: "A tiny desktop coach for shortcuts you actually use."
                    font.pixelSize: 13
                    color: Qt.rgba(root.primary.r, root.primary.g, root.primary.b, 0.62)
                    Accessible.name: text
                }
            }
        }

        Flickable {
            id: rows
            Layout.fillWidth: true
            Layout.fillHeight: true
            contentHeight: rowColumn.implicitHeight
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            ScrollBar.vertical: ScrollBar { policy: rows.contentHeight > rows.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded }

        ColumnLayout {
            id: rowColumn
            width: rows.width - 14
            spacing: 10
            OnboardingRow {
                icon: "menubar.rectangle"
                title: "Start from the tray icon"
                text: "Click the Tessaline icon to open the cheat sheet for the app you were just using."
            }
            OnboardingRow {
                icon: "lightbulb.fill"
                title: "Gentle tips, not interruptions"
                text: "When Tessaline notices a useful moment, it can show a small tip and then get out of the way."
            }
            OnboardingRow {
                icon: "text.viewfinder"
                title: "Scan the app you're using"
                text: "If an app is not in the vault yet, click Scan Menus to pull in its menu shortcuts automatically."
            }
            OnboardingRow {
                icon: "rectangle.grid.1x2"
                title: "Search across every app"
                text: "Use Browse All Shortcuts when you remember the action but not which app or menu it came from."
            }
            OnboardingRow {
                icon: "square.stack.3d.up"
                title: "Build the vault from open apps"
                text: "Open the apps Jorvo uses, choose Scan Open Apps, and Tessaline will collect menu shortcuts it can read."
            }
            OnboardingRow {
                icon: "text.badge.checkmark"
                title: "Quick text helpers"
                text: "Use helper actions for bullets, checklists, dividers, and plain-text paste in a text editor, a chat box, or any text field."
            }
            OnboardingRow {
                icon: "archivebox.fill"
                title: "Qt and KDE apps"
                text: "Apps built with Qt read the accessibility switch when they start: after turning it on, restart them once so Tessaline can read their menus."
            }
        }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 10
            Item { Layout.fillWidth: true }
            Button {
                text: "Turn On Accessibility"
                Accessible.name: text
                onClicked: if (root.accessibility) root.accessibility.requestAccessibility()
                Accessible.onPressAction: if (enabled) clicked()
            }
            Button {
                objectName: "startButton"
                text: "Start using Tessaline"
                highlighted: true
                Accessible.name: text
                onClicked: root.complete()
                Accessible.onPressAction: if (enabled) clicked()
            }
        }
    }
}
