import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One vehicle of the list: registration, route, what it does and how current that is.
T.AbstractButton {
    id: root

    required property var model
    readonly property int vehicle: model["id"] // "id" is no name for a property
    required property string registrationNumber
    required property string drivingStatus
    required property string routeStatus
    required property string routeName
    /// How current the vehicle is; FleetSimulator.Reporting.
    property int reporting: FleetSimulator.Live
    property bool own: false
    property bool chosen: false

    implicitHeight: Math.max(Theme.touch, texts.height + Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.registrationNumber + ", " + root.drivingStatus

    TextMetrics {
        id: statusMetrics

        text: root.drivingStatus
        font: statusText.font
    }
    ReportingLook {
        id: look

        reporting: root.reporting
    }
    background: Rectangle {
        color: root.chosen || root.down ? Theme.raised : Theme.surface
        Rectangle {
            width: Theme.gap
            height: parent.height
            color: look.color
        }
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Theme.thinLine
            color: Theme.line
        }
    }
    contentItem: Item {
        Column {
            id: texts

            x: 2 * Theme.gap
            width: parent.width - x - Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            Item {
                width: parent.width
                height: registration.implicitHeight
                PlainText {
                    id: registration

                    height: parent.height
                    width: Math.min(implicitWidth, parent.width - status.width - Theme.gap)
                    text: root.registrationNumber
                    font.pixelSize: Theme.mediumText
                    font.weight: Font.DemiBold
                    color: root.reporting === FleetSimulator.Offline ? Theme.mutedText : Theme.text
                }
                Row {
                    id: status

                    anchors.right: parent.right
                    height: parent.height
                    spacing: Theme.mm(0.5)
                    Icon {
                        anchors.verticalCenter: parent.verticalCenter
                        size: Theme.smallIcon
                        source: look.icon
                        ink: look.color
                    }
                    PlainText {
                        id: statusText

                        objectName: "statusText"
                        height: parent.height
                        // Its own implicitWidth would change while the text is laid out.
                        width: Math.min(Math.ceil(statusMetrics.advanceWidth) + 1, Math.max(
                            root.width * 0.4, root.width - registration.implicitWidth
                                              - Theme.smallIcon - 5 * Theme.gap))
                        text: root.drivingStatus
                        font.pixelSize: Theme.smallText
                        font.weight: Font.DemiBold
                        color: root.reporting === FleetSimulator.Offline ? Theme.mutedText
                                                                         : look.color
                    }
                }
            }
            PlainText {
                width: parent.width
                text: root.routeName === "" ? qsTr("no route") : root.routeName
                font.pixelSize: Theme.smallText
                color: root.routeName === "" ? Theme.mutedText : Theme.text
            }
            Item {
                width: parent.width
                height: ownText.implicitHeight + Theme.mm(0.4)
                visible: root.routeStatus !== "" || root.own
                PlainText {
                    height: parent.height
                    width: parent.width - (root.own ? ownTag.width + Theme.gap : 0)
                    text: root.routeStatus
                    font.pixelSize: Theme.smallText
                    color: Theme.mutedText
                }
                Rectangle {
                    id: ownTag

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    visible: root.own
                    width: ownText.implicitWidth + Theme.gap
                    height: parent.height
                    radius: Theme.radius
                    color: Theme.accent
                    PlainText {
                        id: ownText

                        anchors.centerIn: parent
                        text: qsTr("this bus")
                        font.pixelSize: Theme.smallText
                        font.weight: Font.DemiBold
                        color: Theme.accentInk
                    }
                }
            }
        }
    }
}
