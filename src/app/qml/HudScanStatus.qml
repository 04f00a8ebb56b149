pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The card above the cheat sheet telling how the last menu scan of this app went; shown while
// the scanner has something to say about the app.
Rectangle {
    id: card
    required property CheatSheetModel model
    required property ThemedSurface theme

    objectName: "scanStatusCard"
    visible: card.model.scanStatus.length > 0
    height: visible ? statusRow.implicitHeight + 24 : 0
    radius: 10
    color: card.theme.tinted(card.theme.primary, 0.055)

    RowLayout {
        id: statusRow
        anchors.fill: parent
        anchors.margins: 12
        spacing: 10
        Symbol {
            Layout.alignment: Qt.AlignTop
            name: card.model.isScanning ? "hourglass" : "info.circle.fill"
            tint: card.model.isScanning ? card.theme.blue : card.theme.secondary
        }
        Label {
            Layout.fillWidth: true
            text: card.model.scanStatus
            font.pixelSize: 12
            wrapMode: Text.WordWrap
            Accessible.name: text
        }
        HUDIconButton {
            objectName: "dismissScanStatus"
            Layout.alignment: Qt.AlignTop
            visible: !card.model.isScanning
            systemName: "xmark"
            help: "Dismiss scan status"
            implicitWidth: 22
            implicitHeight: 22
            onClicked: card.model.dismissScanStatus()
        }
    }
}
