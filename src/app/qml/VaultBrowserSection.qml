pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Tessaline

// The title of one app's group in the browser: its icon, its name and how many of its rows
// the search shows.
RowLayout {
    id: header
    // Set where the title is made; none of them is required, or the list would hand the title
    // its group as a required "section" once and never again when it reuses the title.
    property string group
    property BrowserModel model
    property ThemedSurface theme

    spacing: 8
    height: 36

    AppIconView {
        size: 20
        bundleID: header.model.bundleIDForGroup(header.group)
        fallbackSystemImage: header.model.bundleIDForGroup(header.group) ? "app.dashed" : "keyboard"
    }
    Label {
        text: header.group
        font.pixelSize: 13
        font.weight: Font.DemiBold
        Accessible.name: text
    }
    Label {
        objectName: "groupCount"
        // A header is kept while its group stays in the list: the count must follow the rows,
        // so it binds to the counts, not a one-off call.
        text: header.model.groupCounts[header.group] ?? 0
        font.pixelSize: 11
        color: header.theme.secondary
    }
    Item { Layout.fillWidth: true }
}
