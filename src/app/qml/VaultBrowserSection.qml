pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The title of one app's group in the browser: its icon, its name and how many of its rows
// the search shows.
RowLayout {
    id: header
    required property string section
    required property BrowserModel model
    required property ThemedSurface theme

    spacing: 8
    height: 36

    AppIconView {
        size: 20
        bundleID: header.model.bundleIDForGroup(header.section)
        fallbackSystemImage: header.model.bundleIDForGroup(header.section) ? "app.dashed" : "keyboard"
    }
    Label {
        text: header.section
        font.pixelSize: 13
        font.weight: Font.DemiBold
        Accessible.name: text
    }
    Label {
        objectName: "groupCount"
        // A header is kept while its group stays in the list: the count must follow the rows,
        // so it binds to the counts, not a one-off call.
        text: header.model.groupCounts[header.section] ?? 0
        font.pixelSize: 11
        color: header.theme.secondary
    }
    Item { Layout.fillWidth: true }
}
