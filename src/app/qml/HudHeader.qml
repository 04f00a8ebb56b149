pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The HUD's header: the icon and name of the app the user was in, whether the vault knows it,
// and the symbol buttons of the panel's commands.
RowLayout {
    id: header
    required property CheatSheetModel model
    required property ThemedSurface theme

    signal browseAll()
    signal settings()
    signal reload()
    signal scanMenus()
    signal close()

    spacing: 14

    AppIconView {
        bundleID: header.model.appBundleID
        size: 54
        fallbackSystemImage: (!header.model.appBundleID || header.model.appName === "Desktop")
                             ? "keyboard" : "app.dashed"
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 3
        Label {
            text: header.model.appName
            font.pixelSize: 22
            font.bold: true
            elide: Text.ElideRight
            Layout.fillWidth: true
            Accessible.name: text
        }
        RowLayout {
            spacing: 8
            Label {
                text: "Last focused app".toUpperCase()
                font.pixelSize: 11
                font.weight: Font.DemiBold
                color: header.theme.secondary
            }
            Label {
                id: pill
                objectName: "statusPill"
                text: header.model.vaultReady ? "Vault ready" : "Not scanned yet"
                color: header.model.vaultReady ? header.theme.green : header.theme.orange
                font.pixelSize: 11
                font.weight: Font.DemiBold
                leftPadding: 7
                rightPadding: 7
                topPadding: 2
                bottomPadding: 2
                background: Rectangle {
                    radius: height / 2
                    color: header.theme.tinted(pill.color, 0.15)
                }
                Accessible.name: text
            }
        }
        Label {
            objectName: "subtitle"
            text: header.model.vaultReady
                  ? "Showing commands for the app you were using before opening Tessaline."
                  : "Search global shortcuts now, or scan this app to add its menu commands."
            font.pixelSize: 12
            color: header.theme.secondary
            wrapMode: Text.WordWrap
            maximumLineCount: 2
            elide: Text.ElideRight
            Layout.fillWidth: true
            Accessible.name: text
        }
    }
    RowLayout {
        spacing: 6
        Layout.alignment: Qt.AlignTop
        HUDIconButton {
            systemName: "rectangle.grid.1x2"
            help: "Browse every saved shortcut"
            onClicked: header.browseAll()
        }
        HUDIconButton {
            systemName: "gearshape"
            help: "Settings"
            onClicked: header.settings()
        }
        HUDIconButton {
            systemName: "arrow.clockwise"
            help: "Reload keybinds"
            onClicked: header.reload()
        }
        HUDIconButton {
            objectName: "scanButton"
            systemName: "text.viewfinder"
            help: "Scan the current app's menus"
            busy: header.model.isScanning
            enabled: !header.model.isScanning
            onClicked: header.scanMenus()
        }
        HUDIconButton {
            systemName: "xmark"
            help: "Close"
            onClicked: header.close()
        }
    }
}
