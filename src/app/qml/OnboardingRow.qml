pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One point of the welcome window: a symbol, a title and a sentence.
RowLayout {
    id: row
    property string icon
    property string title
    property string text

    readonly property color primary: palette.windowText
    spacing: 12
    Layout.fillWidth: true

    Item {
        Layout.preferredWidth: 26
        Layout.preferredHeight: 26
        Layout.alignment: Qt.AlignTop
        Symbol {
            anchors.centerIn: parent
            name: row.icon
            side: 20
            tint: palette.highlight
        }
    }
    ColumnLayout {
        Layout.fillWidth: true
        spacing: 2
        Label {
            text: row.title
            font.pixelSize: 14
            font.weight: Font.DemiBold
            Accessible.name: text
        }
        Label {
            Layout.fillWidth: true
            text: row.text
            font.pixelSize: 13
            color: Qt.rgba(row.primary.r, row.primary.g, row.primary.b, 0.62)
            wrapMode: Text.WordWrap
            Accessible.name: text
        }
    }
}
