import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One device: what it is, what it says of itself, and its four flags.
T.AbstractButton {
    id: root

    required property Presentation presentation
    required property int index
    required property string peripheralName
    required property double identity
    required property string iconSource
    required property bool warning
    required property bool blueWarning
    required property bool yellowWarning
    required property bool error
    required property string stateStr
    property bool isPrinter: false
    property bool chosen: false

    readonly property bool hasReported: stateStr !== ""
                                        || !(warning && blueWarning && yellowWarning && error)

    /// Of every card, so that they make a grid: a state has two lines.
    readonly property int fullHeight: 1.3 * Theme.normalText + 2.5 * Theme.mediumText
                                      + 1.7 * Theme.smallText + 3 * Theme.gap

    objectName: "deviceCard"
    implicitHeight: root.fullHeight
    focusPolicy: Qt.NoFocus
    Accessible.name: root.peripheralName + ", " + stateText.text

    background: Rectangle {
        radius: Theme.radius
        color: root.down ? Theme.raised : Theme.surface
        border.width: root.chosen ? Theme.thickLine : Theme.thinLine
        border.color: root.chosen ? Theme.accent : Theme.line
    }
    contentItem: Item {
        Icon {
            id: icon

            x: 2 * Theme.gap
            y: 2 * Theme.gap
            size: Theme.mm(7)
            objectName: "deviceIcon"
            source: root.presentation.icon(root.iconSource,
                                           root.isPrinter ? "qrc:/icons/printer.svg"
                                                          : "qrc:/icons/device.svg")
        }
        Column {
            anchors.left: icon.right
            anchors.leftMargin: Theme.gap
            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            y: Theme.gap
            PlainText {
                width: parent.width
                text: root.peripheralName
                font.pixelSize: Theme.normalText
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: Theme.mediumText
                font.weight: Font.DemiBold
            }
            PlainText {
                id: stateText

                objectName: "stateText"
                width: parent.width
                text: !root.hasReported ? qsTr("not connected")
                    : root.stateStr === "" ? qsTr("no details") : root.stateStr
                wrapMode: Text.Wrap
                maximumLineCount: 2
                font.pixelSize: Theme.mediumText
                color: root.hasReported && root.error ? Theme.error
                     : root.hasReported ? Theme.text : Theme.mutedText
            }
        }
        PlainText {
            objectName: "identityText"
            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            anchors.verticalCenter: flags.verticalCenter
            text: root.identity === 0 ? "" : qsTr("No. %1").arg(Number(root.identity).toFixed(0))
            font.pixelSize: Theme.smallText
            color: Theme.mutedText
        }
        Row {
            id: flags

            anchors.left: parent.left
            anchors.leftMargin: 2 * Theme.gap
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.gap
            height: Math.ceil(1.6 * Theme.smallText)
            spacing: Theme.gap
            visible: root.hasReported
            DeviceFlag {
                objectName: "blueFlag"
                on: root.blueWarning
                iconSource: "qrc:/icons/info.svg"
                text: qsTr("Notice")
                face: Theme.notice
                ink: root.presentation.textOn(face)
            }
            DeviceFlag {
                objectName: "yellowFlag"
                on: root.yellowWarning
                iconSource: "qrc:/icons/warning.svg"
                text: qsTr("Warning")
                face: "#f2c94c"
                ink: root.presentation.textOn(face)
            }
            DeviceFlag {
                objectName: "warningFlag"
                on: root.warning
                iconSource: "qrc:/icons/warning.svg"
                text: qsTr("Serious")
                face: "#e8772e"
                ink: root.presentation.textOn(face)
            }
            DeviceFlag {
                objectName: "errorFlag"
                on: root.error
                iconSource: "qrc:/icons/error.svg"
                text: qsTr("Fault")
                face: Theme.error
                ink: Theme.errorInk
            }
        }
    }
}
