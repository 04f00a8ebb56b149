pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// A titled group of the settings window on a rounded background.
Rectangle {
    id: card
    property string title
    property string systemImage
    default property alias content: body.data

    readonly property color primary: palette.windowText

    Layout.fillWidth: true
    implicitHeight: column.implicitHeight + 28
    radius: 10
    color: Qt.rgba(primary.r, primary.g, primary.b, 0.045)
    border.color: Qt.rgba(primary.r, primary.g, primary.b, 0.08)
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 14
        spacing: 10
        RowLayout {
            spacing: 8
            Symbol {
                name: card.systemImage
                side: 16
            }
            Label {
                text: card.title
                font.pixelSize: 14
                font.weight: Font.DemiBold
                Accessible.name: text
            }
        }
        ColumnLayout {
            id: body
            Layout.fillWidth: true
            spacing: 8
        }
    }
}
