import QtQml 2.15
import QtQuick 2.15
import QtLocation 5.15
import QtPositioning 5.15
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0
import "." // before the types of QtLocation

/// Lines, stops and vehicles on a map without tiles, which needs no network.
Item {
    id: root

    required property FleetSimulator fleet
    required property AssetsModel vehicles
    required property int ownRoute
    required property Presentation presentation
    property int chosenId: -1
    property int ownId: -1
    property bool follow: false
    /// The map was moved by a finger.
    signal panned
    signal vehicleTapped(int id)

    readonly property int margin: Theme.touch
    /// The names that are shown: where they are, from their stop on, by its number.
    property var labels: ({})
    property var labelledCenter: QtPositioning.coordinate()
    property double labelledZoom: -1

    function zoomBy(steps) {
        map.zoomLevel = Math.max(map.minimumZoomLevel,
                                 Math.min(map.maximumZoomLevel, map.zoomLevel + steps))
    }

    /// Brings the line of this vehicle's trip into view; all lines if it has none, and where
    /// there are no lines what else there is.
    function fit() {
        const lines = root.fleet.lines
        const own = lines.filter(line => line.route === root.ownRoute)
        let points = []
        for (const line of own.length > 0 ? own : lines)
            points = points.concat(line.path)
        if (points.length < 2) {
            map.fitViewportToVisibleMapItems()
            return
        }
        // Room for the buttons, which lie on the map's east.
        const region = QtPositioning.rectangle(points)
        const covered = buttons.width / Math.max(1, map.width - buttons.width - 2 * margin)
        const east = region.bottomRight
        east.longitude = Math.min(180, east.longitude + region.width * covered)
        region.bottomRight = east
        map.fitViewportToGeoShape(region, margin)
    }

    /// Gives the names their places, which they keep while the map is moved a little.
    function placeLabels() {
        const before = map.fromCoordinate(root.labelledCenter, false)
        const isNear = root.labelledZoom === map.zoomLevel
                       && Math.abs(before.x - map.width / 2) < map.width / 3
                       && Math.abs(before.y - map.height / 2) < map.height / 3
        if (!isNear) {
            root.labelledCenter = map.center
            root.labelledZoom = map.zoomLevel
            names.place(root.fleet.stops, root.pointsOfStops(), root.pointsOfLines(),
                        root.placesOfMarks(), Qt.rect(0, 0, map.width, map.height),
                        Qt.rect(buttons.x, buttons.y, buttons.width, buttons.height))
        }
        root.showLabels()
    }

    function drawnLines() {
        const drawn = []
        for (const line of root.fleet.lines) {
            const own = root.presentation.color(line.color, Theme.accent)
            drawn.push({
                "path": line.path,
                "color": Theme.night ? Qt.lighter(own, 1.4) : own,
                "width": Theme.mm(line.route === root.ownRoute ? 1 : 0.6)
            })
        }
        return drawn
    }

    function pointsOfStops() {
        const points = []
        for (const stop of root.fleet.stops)
            points.push(map.fromCoordinate(stop.coordinate, false))
        return points
    }

    function pointsOfLines() {
        const points = []
        for (const line of root.fleet.lines)
            points.push(line.path.map(place => map.fromCoordinate(place, false)))
        return points
    }

    function placesOfMarks() {
        const marks = []
        for (const item of map.mapItems) {
            if (!(item instanceof VehicleMark) || !item.visible)
                continue
            const at = map.fromCoordinate(item.coordinate, false)
            marks.push(Qt.rect(at.x + item.extent.x, at.y + item.extent.y, item.extent.width,
                               item.extent.height))
        }
        return marks
    }

    /// Leaves out the names that a vehicle stands on.
    function showLabels() {
        root.labels = names.shown(root.fleet.stops, root.pointsOfStops(), root.placesOfMarks())
    }

    onWidthChanged: fitting.restart()
    onHeightChanged: fitting.restart()
    StopLabels {
        id: names

        font.pixelSize: Theme.smallText
    }
    Timer {
        id: labelling

        interval: 100
        onTriggered: root.placeLabels()
    }
    Connections {
        target: root.fleet
        function onTimeChanged() {
            root.showLabels()
        }
    }
    Timer {
        id: fitting

        interval: 0
        onTriggered: {
            if (!root.follow && map.width > 0 && map.height > 0)
                root.fit()
            root.labelledZoom = -1 // another part of the map is seen
            labelling.restart()
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Theme.background
    }
    MapLines {
        objectName: "mapLines"
        anchors.fill: root
        center: map.center
        zoomLevel: map.zoomLevel
        lines: root.drawnLines()
    }
    Map {
        id: map

        objectName: "map"
        anchors.fill: parent
        plugin: Plugin { name: "itemsoverlay" }
        color: "transparent"
        copyrightsVisible: false
        minimumZoomLevel: 6
        maximumZoomLevel: 18
        gesture.acceptedGestures: MapGestureArea.PanGesture | MapGestureArea.FlickGesture
                                  | MapGestureArea.PinchGesture
        gesture.onPanStarted: root.panned()
        onCenterChanged: labelling.restart()
        onZoomLevelChanged: labelling.restart()

        MapItemView {
            model: root.fleet.stops
            delegate: MapQuickItem {
                id: stop

                required property var modelData
                readonly property var label: root.labels[modelData["number"]]

                coordinate: modelData["coordinate"]
                anchorPoint.x: sourceItem.width / 2
                anchorPoint.y: sourceItem.height / 2
                sourceItem: Item {
                    width: 2 * Math.ceil(0.35 * Theme.smallText)
                    height: width
                    Rectangle {
                        objectName: "stopMark"
                        anchors.fill: parent
                        radius: width / 2
                        color: Theme.surface
                        border.width: Theme.mm(0.5)
                        border.color: Theme.mutedText
                    }
                    Rectangle {
                        readonly property rect place: stop.label === undefined ? Qt.rect(0, 0, 0, 0)
                                                                               : stop.label

                        objectName: "stopLabel"
                        visible: stop.label !== undefined
                        x: parent.width / 2 + place["x"]
                        y: parent.height / 2 + place["y"]
                        width: place["width"]
                        height: place["height"]
                        radius: Theme.radius
                        color: Theme.surface
                        PlainText {
                            anchors.fill: parent
                            anchors.leftMargin: names.padding
                            text: stop.modelData["name"]
                            font.pixelSize: Theme.smallText
                        }
                    }
                }
            }
        }
        MapItemView {
            model: root.vehicles
            delegate: VehicleMark {
                id: mark

                readonly property bool isFollowed: root.follow && chosen

                reporting: drivingStatus, root.fleet.reportingOf(vehicle)
                chosen: vehicle === root.chosenId
                own: vehicle === root.ownId
                onTapped: root.vehicleTapped(vehicle)
                onCoordinateChanged: center()
                onIsFollowedChanged: center()
                function center() {
                    if (isFollowed && isPlaced)
                        map.center = coordinate
                }
            }
        }
    }
    Rectangle {
        anchors.fill: parent
        visible: root.fleet.lines["length"] === 0 && root.vehicles.count === 0
        color: Theme.background
        EmptyText {
            objectName: "emptyMapText"
            text: qsTr("This feed has no lines and no vehicles.")
            font.pixelSize: Theme.largeText
        }
    }
    Column {
        id: buttons

        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: Theme.gap
        spacing: Theme.gap
        PanelButton {
            objectName: "zoomIn"
            text: "+"
            Accessible.name: qsTr("Closer")
            onClicked: root.zoomBy(1)
        }
        PanelButton {
            objectName: "zoomOut"
            text: "−"
            Accessible.name: qsTr("Further away")
            onClicked: root.zoomBy(-1)
        }
        PanelButton {
            objectName: "showLine"
            iconSource: "qrc:/icons/fleet.svg"
            Accessible.name: qsTr("Show the whole line")
            onClicked: {
                root.panned()
                root.fit()
            }
        }
    }
}
