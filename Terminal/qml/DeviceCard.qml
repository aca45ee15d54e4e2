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

    implicitHeight: 116
    focusPolicy: Qt.NoFocus
    Accessible.name: root.peripheralName + ", " + stateText.text

    background: Rectangle {
        radius: Theme.radius
        color: root.down ? Theme.raised : Theme.surface
        border.width: root.chosen ? 3 : 1
        border.color: root.chosen ? Theme.accent : Theme.line
    }
    contentItem: Item {
        Icon {
            id: icon

            x: 2 * Theme.gap
            y: 14
            size: 40
            objectName: "deviceIcon"
            source: root.presentation.icon(root.iconSource,
                                           root.isPrinter ? "qrc:/icons/printer.svg"
                                                          : "qrc:/icons/device.svg")
        }
        PlainText {
            id: name

            anchors.left: icon.right
            anchors.leftMargin: Theme.gap + 4
            anchors.right: identityText.left
            anchors.rightMargin: Theme.gap
            y: 12
            text: root.peripheralName
            font.pixelSize: Theme.largeText
            font.weight: Font.DemiBold
        }
        PlainText {
            id: identityText

            objectName: "identityText"
            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            anchors.baseline: name.baseline
            text: root.identity === 0 ? "" : qsTr("No. %1").arg(Number(root.identity).toFixed(0))
            font.pixelSize: Theme.smallText
            color: Theme.mutedText
        }
        PlainText {
            id: stateText

            objectName: "stateText"
            anchors.left: name.left
            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            anchors.top: name.bottom
            anchors.topMargin: 2
            text: !root.hasReported ? qsTr("has not reported yet")
                : root.stateStr === "" ? qsTr("no details") : root.stateStr
            color: root.hasReported && root.error ? Theme.error
                 : root.hasReported ? Theme.text : Theme.mutedText
        }
        Row {
            anchors.left: parent.left
            anchors.leftMargin: Theme.gap + 2
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 10
            spacing: 6
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
