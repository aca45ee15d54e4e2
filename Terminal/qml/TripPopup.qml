import QtQml 2.15
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// Chooses the trip by its route and time, and the stop. Without a timetable, the stop alone.
T.Popup {
    id: root

    required property TripDesk trip
    property int now: 0 ///< second of the service day
    property int route: -1 ///< whose trips are listed
    readonly property bool hasTrips: trip.routes["length"] > 0

    function ask(now) {
        root.now = now
        root.route = root.trip.routeNumber
        const isKnown = root.trip.routes["some"](each => each["route"] === root.route)
        if (!isKnown && root.hasTrips)
            root.route = root.trip.routes[0]["route"]
        root.open()
    }

    /// To be read anew when the trip or the stop `chosen` changes.
    function tripsOf(route, chosen) {
        return root.trip.tripsOf(route, root.now)
    }

    objectName: "tripPopup"
    parent: T.Overlay["overlay"] // qmllint reads no attached properties
    anchors.centerIn: parent
    width: parent ? parent.width - 4 * Theme.gap : 0
    height: parent ? parent.height - 4 * Theme.gap : 0
    modal: true
    closePolicy: T.Popup.NoAutoClose
    T.Overlay.modal: Rectangle {
        color: "#99000000"
    }
    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border.color: Theme.line
    }
    contentItem: Item {
        PlainText {
            id: title

            x: 2 * Theme.gap
            width: closeButton.x - x - Theme.gap
            height: closeButton.y + closeButton.height + Theme.gap
            text: root.hasTrips ? qsTr("Trip and stop") : qsTr("Stop")
            font.weight: Font.DemiBold
        }
        PanelButton {
            id: closeButton

            objectName: "closeTrips"
            anchors.right: parent.right
            anchors.rightMargin: Theme.gap
            y: Theme.gap
            text: qsTr("Close")
            onClicked: root.close()
        }
        ListView {
            id: routes

            objectName: "routeLines"
            anchors.top: title.bottom
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.margins: Theme.gap
            width: root.hasTrips ? parent.width * 0.18 : 0
            visible: root.hasTrips
            clip: true
            spacing: Theme.gap
            boundsBehavior: Flickable.StopAtBounds
            model: root.trip.routes
            T.ScrollBar.vertical: ScrollMark {}
            delegate: ChoiceLine {
                required property var modelData

                objectName: "route-" + modelData["route"]
                width: routes.width
                title: modelData["name"]
                chosen: modelData["route"] === root.route
                onClicked: root.route = modelData["route"]
            }
        }
        ListView {
            id: trips

            objectName: "tripLines"
            anchors.top: title.bottom
            anchors.bottom: parent.bottom
            anchors.left: routes.right
            anchors.margins: Theme.gap
            width: root.hasTrips ? parent.width * 0.42 : 0
            visible: root.hasTrips
            clip: true
            spacing: Theme.gap
            boundsBehavior: Flickable.StopAtBounds
            model: root.visible ? root.tripsOf(root.route, [root.trip.tripText, root.trip.stop])
                                : []
            T.ScrollBar.vertical: ScrollMark {}
            delegate: ChoiceLine {
                required property var modelData

                objectName: "trip-" + modelData["trip"]
                width: trips.width
                title: modelData["time"]
                detail: modelData["isNext"] ? qsTr("%1, next trip").arg(modelData["destination"])
                      : modelData["isNow"] ? qsTr("%1, now").arg(modelData["destination"])
                      : modelData["isOver"] ? qsTr("%1, over").arg(modelData["destination"])
                      : modelData["destination"]
                muted: modelData["isOver"]
                chosen: modelData["isChosen"]
                onClicked: {
                    // The choice makes the list anew, and this line is gone then.
                    const popup = root
                    const isNext = modelData["isNext"]
                    popup.trip.choose(modelData["trip"])
                    if (isNext) // it begins here: there is nothing else to choose
                        popup.close()
                }
            }
        }
        ListView {
            id: stops

            objectName: "stopLines"
            anchors.top: title.bottom
            anchors.bottom: parent.bottom
            anchors.left: root.hasTrips ? trips.right : parent.left
            anchors.right: parent.right
            anchors.margins: Theme.gap
            clip: true
            spacing: Theme.gap
            boundsBehavior: Flickable.StopAtBounds
            model: root.trip.stops
            currentIndex: root.trip.stop
            highlightMoveDuration: 0
            T.ScrollBar.vertical: ScrollMark {}
            delegate: ChoiceLine {
                required property int index
                required property string modelData

                objectName: "stop-" + index
                width: stops.width
                title: modelData
                chosen: index === root.trip.stop
                onClicked: {
                    root.trip.stop = index
                    root.close()
                }
            }
        }
    }
}
