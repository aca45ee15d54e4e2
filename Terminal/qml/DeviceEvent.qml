import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One event that a device may be made to report.
T.AbstractButton {
    id: root

    property DeviceDesk desk
    property int row ///< of the device
    property int event: DeviceDesk.Ready

    objectName: "event-" + root.text
    width: parent.width
    implicitHeight: Math.max(Theme.touch, texts.height + Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.text
    onClicked: desk.report(row, event, text)

    background: Rectangle {
        radius: Theme.radius
        color: root.down ? Theme.line : Theme.raised
        Rectangle {
            width: Theme.gap
            height: parent.height
            radius: Theme.radius
            color: icon.color
        }
    }
    contentItem: Item {
        Icon {
            id: icon

            x: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            source: root.event === DeviceDesk.Ready ? "qrc:/icons/ok.svg"
                  : root.event === DeviceDesk.Notice ? "qrc:/icons/info.svg"
                  : root.event === DeviceDesk.Fault ? "qrc:/icons/error.svg"
                  : "qrc:/icons/warning.svg"
            ink: root.event === DeviceDesk.Ready ? Theme.ok
                 : root.event === DeviceDesk.Notice ? Theme.notice
                 : root.event === DeviceDesk.Warning ? Theme.warning
                 : root.event === DeviceDesk.Fault ? Theme.error
                 : Theme.night ? "#ffb074" : "#b84a00"
        }
        Column {
            id: texts

            anchors.left: icon.right
            anchors.leftMargin: Theme.gap
            anchors.right: parent.right
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                width: parent.width
                text: root.text
                wrapMode: Text.Wrap
                font.pixelSize: Theme.mediumText
                font.weight: Font.DemiBold
            }
            PlainText {
                width: parent.width
                visible: text !== ""
                text: root.event === DeviceDesk.Ready ? ""
                    : root.event === DeviceDesk.Notice ? qsTr("notice")
                    : root.event === DeviceDesk.Warning ? qsTr("warning")
                    : root.event === DeviceDesk.SeriousWarning ? qsTr("serious") : qsTr("fault")
                font.pixelSize: Theme.smallText
                color: Theme.mutedText
            }
        }
    }
}
