pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The bar of quick text helpers at the bottom of the HUD, one button per helper action.
RowLayout {
    id: bar
    required property CheatSheetModel model
    required property ThemedSurface theme

    /// `action` is the chosen helper's "raw" value.
    signal helperAction(string action)

    spacing: 8

    Label {
        text: "Quick helpers".toUpperCase()
        font.pixelSize: 11
        font.weight: Font.DemiBold
        color: bar.theme.secondary
    }
    Item { Layout.fillWidth: true }
    Repeater {
        model: bar.model.helperActions
        delegate: Button {
            id: helperButton
            required property var modelData
            text: helperButton.modelData.title
            focusPolicy: Qt.TabFocus
            font.pixelSize: 12
            hoverEnabled: true
            leftPadding: 10
            rightPadding: 10
            topPadding: 6
            bottomPadding: 6
            // Drawn like the HUD's header buttons: a soft tile in the text colour, ringed in the
            // accent colour while Tab has put the keyboard focus on it.
            background: Rectangle {
                radius: 7
                color: bar.theme.tinted(bar.theme.primary,
                                        helperButton.pressed ? 0.13
                                                             : helperButton.hovered ? 0.1 : 0.07)
                border.width: helperButton.visualFocus ? 2 : 0
                border.color: helperButton.palette.highlight
            }
            contentItem: Label {
                text: helperButton.text
                font: helperButton.font
                color: bar.theme.primary
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
            ToolTip.visible: hovered
            ToolTip.text: helperButton.modelData.help
            ToolTip.delay: 500
            Accessible.name: text
            Accessible.description: helperButton.modelData.help
            onClicked: bar.helperAction(helperButton.modelData.raw)
            Accessible.onPressAction: if (enabled) clicked()
        }
    }
}
