pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts

// One row of the browser: highlighted name and detail, source badge, favourite star, chord
// keycap and a copy button.
Rectangle {
    id: row
    required property string name
    required property string nameHtml
    required property string detail
    required property string chord
    required property string chordText
    required property bool favorite
    required property bool scanned

    signal copyChord()

    readonly property color primary: palette.windowText
    readonly property color secondary: Qt.rgba(primary.r, primary.g, primary.b, 0.62)

    implicitHeight: layout.implicitHeight + 14
    radius: 8
    color: Qt.rgba(primary.r, primary.g, primary.b, 0.035)
    Accessible.role: Accessible.ListItem
    Accessible.name: name + ", " + chordText
    // An assistive tool's press on the row copies its chord, like the row's copy button.
    Accessible.onPressAction: row.copyChord()

    RowLayout {
        id: layout
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 8
        spacing: 8
        ColumnLayout {
            Layout.fillWidth: true
            spacing: 1
            Label {
                text: row.nameHtml
                textFormat: Text.StyledText
                font.pixelSize: 13
                elide: Text.ElideRight
                Layout.fillWidth: true
                Accessible.name: row.name
            }
            Label {
                text: row.detail
                font.pixelSize: 10
                color: row.secondary
                elide: Text.ElideRight
                Layout.fillWidth: true
                Accessible.name: text
            }
        }
        RowLayout {
            spacing: 3
            Symbol {
                visible: row.scanned
                name: "text.viewfinder"
                side: 11
                tint: row.secondary
            }
            Label {
                text: row.scanned ? "scanned" : "curated"
                font.pixelSize: 10
                font.weight: Font.DemiBold
                color: row.secondary
                Accessible.name: text
            }
        }
        Symbol {
            visible: row.favorite
            name: "star.fill"
            tint: "#f5b400"
            side: 13
            // The star is read out; the favourite is marked in the HUD.
            Accessible.ignored: false
            Accessible.role: Accessible.Graphic
            Accessible.name: "Favorite"
        }
        Label {
            text: row.chordText
            font.family: "monospace"
            font.pixelSize: 12
            font.weight: Font.DemiBold
            leftPadding: 8
            rightPadding: 8
            topPadding: 4
            bottomPadding: 4
            background: Rectangle {
                radius: 6
                color: Qt.rgba(row.primary.r, row.primary.g, row.primary.b, 0.08)
            }
            Accessible.name: row.chordText
        }
        AbstractButton {
            implicitWidth: 24
            implicitHeight: 24
            focusPolicy: Qt.NoFocus
            hoverEnabled: true
            Accessible.name: "Copy shortcut"
            Accessible.description: row.chordText
            ToolTip.visible: hovered
            ToolTip.text: "Copy shortcut"
            ToolTip.delay: 500
            contentItem: Symbol {
                name: "doc.on.doc"
                side: 14
                tint: row.secondary
            }
            onClicked: row.copyChord()
            Accessible.onPressAction: if (enabled) clicked()
        }
    }
}
