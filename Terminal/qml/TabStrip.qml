import QtQml 2.15
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The choice of tiles: a search, and the tabs, the zones among them in the order of the trip. In a
/// search it shows what was entered.
Item {
    id: root

    required property TileDesk tiles

    implicitHeight: Theme.touch

    FontMetrics {
        id: metrics

        font.pixelSize: Theme.normalText
        font.weight: Font.DemiBold
    }
    PanelButton {
        id: searchButton

        objectName: "searchButton"
        iconSource: root.tiles.searching ? "qrc:/icons/remove.svg" : "qrc:/icons/search.svg"
        Accessible.name: root.tiles.searching ? qsTr("End the search") : qsTr("Search")
        onClicked: root.tiles.searching = !root.tiles.searching
    }
    PlainText {
        objectName: "searchText"
        anchors.left: searchButton.right
        anchors.right: parent.right
        anchors.margins: Theme.gap
        height: parent.height
        visible: root.tiles.searching
        text: root.tiles.search === "" ? qsTr("Begin of a word") : root.tiles.search + "…"
        font.pixelSize: Theme.normalText
        font.weight: Font.DemiBold
        color: root.tiles.search === "" ? Theme.mutedText : Theme.text
    }
    ListView {
        id: strip

        objectName: "tabStrip"
        anchors.left: searchButton.right
        anchors.leftMargin: Theme.gap
        anchors.right: parent.right
        height: parent.height
        visible: !root.tiles.searching
        clip: true
        orientation: ListView.Horizontal
        spacing: Theme.gap
        boundsBehavior: Flickable.StopAtBounds
        model: root.tiles.tabs
        currentIndex: root.tiles.tab
        highlightMoveDuration: 0
        cacheBuffer: 0
        delegate: T.AbstractButton {
            id: tab

            required property int index
            required property var modelData

            objectName: "tab-" + index
            width: Math.max(Theme.touch, Math.min(strip.width * 0.4, Math.ceil(
                                metrics.advanceWidth(text)) + 2 * Theme.gap + 2))
            height: strip.height
            focusPolicy: Qt.NoFocus
            text: modelData["title"]
            Accessible.name: qsTr("%1, %n ticket(s)", "", modelData["count"])
                                 .arg(modelData["title"])
            onClicked: root.tiles.tab = index
            background: Rectangle {
                radius: Theme.radius
                color: tab.index === root.tiles.tab ? Theme.accent
                     : tab.down ? Qt.darker(Theme.raised, 1.2) : Theme.raised
            }
            contentItem: Item {
                FitText {
                    names: root.tiles
                    x: Theme.gap
                    width: parent.width - 2 * x
                    room: parent.height
                    fullText: tab.text
                    largest: Theme.normalText
                    weight: Font.DemiBold
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    color: tab.index === root.tiles.tab ? Theme.accentInk : Theme.text
                }
            }
        }
        T.ScrollBar.horizontal: ScrollMark {}
    }
}
