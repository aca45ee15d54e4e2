import QtQuick 2.15
import QtLocation 5.15
import Rivo.Terminal 1.0
import "." // before the Icon of QtLocation

/// One vehicle on the map: an arrow in the direction of travel, with its number.
MapQuickItem {
    id: root

    required property var model
    readonly property int vehicle: model["id"] // "id" is no name for a property
    required property string registrationNumber
    required property string internalNumber
    required property var assetCoordinate
    required property string drivingStatus
    required property double direction
    required property bool inView
    /// How current the vehicle is; FleetSimulator.Reporting.
    property int reporting: FleetSimulator.Live
    property bool chosen: false
    readonly property bool isPlaced: coordinate["isValid"]
    property bool own: false
    /// What the mark covers, from the vehicle's place on.
    readonly property rect extent: {
        const width = Math.max(arrow.width, tag.width)
        const half = arrow.height / 2
        return Qt.rect(-width / 2, tag.isAbove ? -half - tag.height : -half,
                       width, arrow.height + tag.height)
    }
    signal tapped

    coordinate: assetCoordinate
    visible: inView && isPlaced
    z: root.chosen ? 3 : root.own ? 2 : 1
    anchorPoint.x: sourceItem.width / 2
    anchorPoint.y: sourceItem.height / 2

    sourceItem: Item {
        width: 1.4 * Theme.touch
        height: arrow.height + 2 * tag.height

        ReportingLook {
            id: look

            reporting: root.reporting
        }
        Item {
            id: arrow

            objectName: "arrow"
            anchors.centerIn: parent
            width: Theme.touch
            height: Theme.touch
            rotation: root.direction
            Rectangle {
                anchors.horizontalCenter: parent.horizontalCenter
                y: 0.09 * Theme.touch
                width: 0.43 * Theme.touch
                height: width
                rotation: 45
                antialiasing: true
                color: look.color
            }
            Rectangle {
                anchors.centerIn: parent
                width: 0.64 * Theme.touch
                height: width
                radius: width / 2
                antialiasing: true
                color: look.color
                border.width: Theme.thickLine
                border.color: root.chosen ? Theme.text : root.own ? Theme.accent : look.color
            }
            Icon {
                anchors.centerIn: parent
                size: 0.43 * Theme.touch
                source: "qrc:/icons/vehicle.svg"
                ink: Theme.surface
            }
        }
        Rectangle {
            id: tag

            objectName: "vehicleTag"
            // Behind the vehicle, where it does not cover the arrow's head.
            readonly property bool isAbove: root.direction > 90 && root.direction < 270

            y: isAbove ? Theme.mm(1) : parent.height - height - Theme.mm(1)
            anchors.horizontalCenter: parent.horizontalCenter
            width: tagText.width + 2 * Theme.gap
            height: tagText.implicitHeight
            radius: Theme.radius
            color: root.own ? Theme.accent : Theme.surface
            border.width: Theme.thinLine
            border.color: root.chosen ? Theme.text : look.color
            PlainText {
                id: tagText

                anchors.centerIn: parent
                width: Math.min(implicitWidth, Theme.mm(22))
                text: root.internalNumber === "" ? root.registrationNumber : root.internalNumber
                font.pixelSize: Theme.smallText
                font.weight: Font.DemiBold
                color: root.own ? Theme.accentInk : Theme.text
            }
        }
        Rectangle {
            anchors.left: arrow.right
            anchors.leftMargin: -Theme.smallIcon
            anchors.top: arrow.top
            visible: root.reporting !== FleetSimulator.Live
            width: Theme.icon
            height: width
            radius: width / 2
            color: Theme.surface
            Icon {
                anchors.centerIn: parent
                size: Theme.smallIcon
                source: look.icon
                ink: look.color
            }
        }
        TapHandler {
            onTapped: root.tapped()
        }
    }
}
