import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// Route, stop, time and faults; the current stop can be changed here.
Rectangle {
    id: root

    required property TripDesk trip
    required property PassengerTypesModel tiles
    required property string time
    required property int faults ///< devices with one
    required property bool night
    required property DriverDesk drivers
    required property bool demo
    signal devicesRequested
    signal tripRequested
    signal nightRequested(bool night)

    color: Theme.raised

    Row {
        anchors.left: parent.left
        anchors.leftMargin: Theme.gap
        anchors.right: right.left
        anchors.rightMargin: Theme.gap
        height: parent.height
        spacing: Theme.gap
        T.AbstractButton {
            id: tripButton

            objectName: "tripButton"
            height: parent.height
            width: parent.width * 0.45
            enabled: root.trip.stopCount > 0
            focusPolicy: Qt.NoFocus
            Accessible.name: qsTr("Trip and stop")
            onClicked: root.tripRequested()
            background: Rectangle {
                color: tripButton.down ? Qt.darker(Theme.raised, 1.2) : "transparent"
            }
            contentItem: Item {
                Icon {
                    id: bus

                    anchors.verticalCenter: parent.verticalCenter
                    source: "qrc:/icons/fleet.svg"
                }
                PlainText {
                    objectName: "routeText"
                    anchors.left: bus.right
                    anchors.leftMargin: Theme.gap
                    anchors.right: parent.right
                    height: parent.height
                    text: root.trip.route === "" ? qsTr("No trip")
                        : root.trip.tripText === "" ? root.trip.route
                        : root.trip.route + " · " + root.trip.tripText
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    fontSizeMode: Text.Fit
                    minimumPixelSize: Theme.smallText
                    font.weight: Font.DemiBold
                }
            }
        }
        PanelButton {
            objectName: "previousStop"
            height: parent.height
            width: Math.max(implicitWidth, Theme.touch)
            visible: root.trip.stopCount > 0
            enabled: root.trip.stop > 0
            iconSource: "qrc:/icons/previous.svg"
            Accessible.name: qsTr("Previous stop")
            onClicked: root.trip.stop -= 1
        }
        PlainText {
            objectName: "stopText"
            height: parent.height
            // One width for all names, or the button beside it moves away from the finger.
            width: Math.max(1, parent.width - tripButton.width
                               - (root.trip.stopCount > 0 ? 2 * Theme.touch + 3 * Theme.gap
                                                          : Theme.gap))
            horizontalAlignment: Text.AlignHCenter
            text: root.trip.stopName
            wrapMode: Text.Wrap
            maximumLineCount: 2
            fontSizeMode: Text.Fit
            minimumPixelSize: Theme.smallText
        }
        PanelButton {
            objectName: "nextStop"
            height: parent.height
            width: Math.max(implicitWidth, Theme.touch)
            visible: root.trip.stopCount > 0
            enabled: root.trip.atEnd || root.trip.stop < root.trip.stopCount - 1
            iconSource: root.trip.atEnd ? "qrc:/icons/return.svg" : "qrc:/icons/next.svg"
            Accessible.name: root.trip.atEnd ? qsTr("Next trip") : qsTr("Next stop")
            onClicked: {
                if (root.trip.atEnd)
                    root.tripRequested()
                else
                    root.trip.stop += 1
            }
        }
        PlainText {
            objectName: "punctualityText"
            height: parent.height
            width: Math.max(0, Math.min(implicitWidth, parent.width - x))
            visible: text !== ""
            text: root.trip.punctuality
            font.pixelSize: Theme.smallText
            font.weight: Font.DemiBold
        }
    }
    Row {
        id: right

        anchors.right: parent.right
        height: parent.height
        spacing: Theme.gap
        PanelButton {
            objectName: "statusLog"
            height: parent.height
            visible: root.demo
            text: qsTr("LOG")
            checked: root.tiles.logFareProducts || root.tiles.logExtraFareProducts
            Accessible.name: qsTr("Log fare products")
            onClicked: root.tiles.logFareProducts = !root.tiles.logFareProducts
        }
        PanelButton {
            objectName: "faultsButton"
            height: parent.height
            visible: root.faults > 0
            danger: true
            iconSource: "qrc:/icons/error.svg"
            text: root.faults
            Accessible.name: qsTr("%n device fault(s)", "", root.faults)
            onClicked: root.devicesRequested()
        }
        PanelButton {
            objectName: "lockButton"
            height: parent.height
            visible: root.drivers.required
            iconSource: "qrc:/icons/lock.svg"
            Accessible.name: qsTr("Lock the terminal")
            onClicked: root.drivers.lock()
        }
        PlainText {
            objectName: "clockText"
            height: parent.height
            text: root.time
            font.pixelSize: Theme.largeText
            font.weight: Font.DemiBold
        }
        PanelButton {
            objectName: "nightButton"
            height: parent.height
            iconSource: root.night ? "qrc:/icons/sun.svg" : "qrc:/icons/moon.svg"
            Accessible.name: root.night ? qsTr("Day colours") : qsTr("Night colours")
            onClicked: root.nightRequested(!root.night)
        }
    }
}
