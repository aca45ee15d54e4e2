import QtQml 2.15
import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// Where the vehicles are: the map, the list of all of them, and the pace of the simulation.
Item {
    id: root

    required property FleetSimulator fleet
    required property AssetsModel vehicles
    required property TripContext trip
    required property Presentation presentation
    required property bool demo ///< shows the controls of the simulation
    readonly property int ownId: fleet.own
    property int chosenId: ownId
    property bool follow: false
    property bool chosenIsSilent: false

    function readSilence() {
        chosenIsSilent = fleet.isSilent(chosenId)
    }

    onChosenIdChanged: readSilence()
    Component.onCompleted: readSilence()
    Connections {
        target: root.fleet
        function onSilentChanged() {
            root.readSilence()
        }
    }

    FleetMap {
        anchors.left: parent.left
        anchors.right: panel.left
        height: parent.height
        clip: true
        fleet: root.fleet
        vehicles: root.vehicles
        ownRoute: root.trip.routeId
        presentation: root.presentation
        chosenId: root.chosenId
        ownId: root.ownId
        follow: root.follow
        onPanned: root.follow = false
        onVehicleTapped: function (id) {
            root.chosenId = id
        }
    }
    Rectangle {
        id: panel

        anchors.right: parent.right
        width: Math.max(Theme.mm(54), Math.min(Theme.mm(64), parent.width * 0.3))
        height: parent.height
        color: Theme.surface

        ListView {
            id: lines

            objectName: "vehicleLines"
            anchors.top: parent.top
            anchors.bottom: tools.top
            anchors.left: parent.left
            anchors.right: parent.right
            clip: true
            model: root.vehicles
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollMark {}
            delegate: VehicleLine {
                width: lines.width
                reporting: drivingStatus, root.fleet.reportingOf(vehicle)
                own: vehicle === root.ownId
                chosen: vehicle === root.chosenId
                onClicked: root.chosenId = vehicle
            }
            EmptyText {
                visible: lines.count === 0
                text: qsTr("This feed has no vehicles.")
            }
        }
        Column {
            id: tools

            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.margins: Theme.gap
            topPadding: Theme.gap
            spacing: Theme.gap
            Row {
                width: parent.width
                spacing: Theme.gap
                PanelButton {
                    objectName: "followButton"
                    width: root.demo ? (parent.width - Theme.gap) / 2 : parent.width
                    height: Theme.mm(11)
                    stacked: true
                    accent: root.follow
                    iconSource: "qrc:/icons/gps.svg"
                    text: qsTr("Follow")
                    enabled: root.chosenId >= 0
                    Accessible.checkable: true
                    Accessible.checked: root.follow
                    onClicked: root.follow = !root.follow
                }
                PanelButton {
                    objectName: "silenceButton"
                    width: (parent.width - Theme.gap) / 2
                    height: Theme.mm(11)
                    stacked: true
                    visible: root.demo
                    accent: root.chosenIsSilent
                    iconSource: "qrc:/icons/offline.svg"
                    text: qsTr("Radio off")
                    enabled: root.chosenId >= 0
                    Accessible.checkable: true
                    Accessible.checked: root.chosenIsSilent
                    onClicked: root.fleet.setSilent(root.chosenId, !root.chosenIsSilent)
                }
            }
            Row {
                width: parent.width
                visible: root.demo
                spacing: Theme.gap
                Repeater {
                    model: [1, 10, 60]
                    PanelButton {
                        required property int modelData

                        objectName: "pace" + modelData
                        width: (parent.width - 2 * Theme.gap) / 3
                        accent: root.fleet.pace === modelData
                        text: "×" + modelData
                        Accessible.name: qsTr("%1 times the pace of the clock").arg(modelData)
                        onClicked: root.fleet.pace = modelData
                    }
                }
            }
        }
        Rectangle {
            width: Theme.thinLine
            height: parent.height
            color: Theme.line
        }
    }
}
