import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The devices of the terminal, and events that can be made for the one that was tapped.
Item {
    id: root

    required property Terminal terminal

    ListView {
        id: devices

        objectName: "deviceCards"
        anchors.left: parent.left
        anchors.right: panel.left
        height: parent.height
        leftMargin: Theme.gap
        rightMargin: Theme.gap
        topMargin: Theme.gap
        bottomMargin: Theme.gap
        spacing: Theme.gap
        clip: true
        model: root.terminal.peripherals
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollMark {}
        delegate: DeviceCard {
            terminal: root.terminal
            width: devices.width - 2 * Theme.gap
            checked: ListView.isCurrentItem
            onClicked: {
                devices.currentIndex = index
                checked = Qt.binding(() => devices.currentIndex === index)
            }
        }
    }
    Rectangle {
        id: panel

        anchors.right: parent.right
        width: Math.max(260, Math.min(340, parent.width * 0.3))
        height: parent.height
        color: Theme.surface

        PlainText {
            id: title

            x: 2 * Theme.gap
            width: parent.width - 4 * Theme.gap
            height: Theme.touch
            text: devices.currentItem === null ? "" : devices.currentItem.peripheralName
            font.pixelSize: Theme.largeText
            font.weight: Font.DemiBold
        }
        PlainText {
            id: hint

            anchors.top: title.bottom
            x: 2 * Theme.gap
            width: parent.width - 4 * Theme.gap
            text: qsTr("Simulated: choose what it reports.")
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallText
            color: Theme.mutedText
        }
        ListView {
            id: events

            objectName: "deviceEvents"
            anchors.top: hint.bottom
            anchors.topMargin: Theme.gap
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            leftMargin: Theme.gap
            rightMargin: Theme.gap
            bottomMargin: Theme.gap
            spacing: Theme.gap
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollMark {}
            model: [
                { event: DeviceDesk.Ready, text: qsTr("Ready"), printer: false },
                { event: DeviceDesk.Notice, text: qsTr("Updating"), printer: false },
                { event: DeviceDesk.Warning, text: qsTr("Paper low"), printer: true },
                { event: DeviceDesk.Warning, text: qsTr("Weak signal"), printer: false },
                { event: DeviceDesk.SeriousWarning, text: qsTr("Too hot"), printer: false },
                { event: DeviceDesk.Fault, text: qsTr("Paper jam"), printer: true },
                { event: DeviceDesk.Fault, text: qsTr("Cover open"), printer: true },
                { event: DeviceDesk.Fault, text: qsTr("Out of paper"), printer: true },
                { event: DeviceDesk.Fault, text: qsTr("No connection"), printer: false }
            ].filter(entry => !entry.printer || root.terminal.devices.isPrinter(devices.currentIndex))
            delegate: DeviceEvent {
                width: events.width - 2 * Theme.gap
                onClicked: root.terminal.devices.report(devices.currentIndex, modelData.event,
                                                        modelData.text)
            }
        }
        Rectangle {
            width: 1
            height: parent.height
            color: Theme.line
        }
    }
}
