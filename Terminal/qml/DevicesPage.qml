import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.GuiCore 1.0
import Rivo.Terminal 1.0

/// The devices of the terminal, and in a demo events for the one that was tapped.
Item {
    id: root

    required property PeripheralsModel peripherals
    required property DeviceDesk desk
    required property Presentation presentation
    required property bool demo
    readonly property DeviceCard current: devices.currentItem
    readonly property bool isPrinter: desk.isPrinter(devices.currentIndex)
    readonly property bool isReal: desk.isReal(devices.currentIndex)

    GridView {
        id: devices

        readonly property int columns: Math.max(1, Math.floor(width / Theme.mm(62)))

        objectName: "deviceCards"
        anchors.left: parent.left
        anchors.right: root.demo ? panel.left : parent.right
        height: parent.height
        leftMargin: Theme.gap
        topMargin: Theme.gap
        cellWidth: Math.floor((width - leftMargin) / columns)
        cellHeight: (currentItem === null ? Theme.touch : root.current.fullHeight) + Theme.gap
        clip: true
        model: root.peripherals
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollMark {}
        delegate: DeviceCard {
            presentation: root.presentation
            width: devices.cellWidth - Theme.gap
            height: fullHeight
            isPrinter: root.desk.isPrinter(index)
            chosen: devices.currentIndex === index
            onClicked: devices.currentIndex = index
        }
    }
    Rectangle {
        id: panel

        anchors.right: parent.right
        width: visible ? Theme.mm(54) : 0
        visible: root.demo
        height: parent.height
        color: Theme.surface

        PlainText {
            id: title

            x: 2 * Theme.gap
            width: parent.width - 4 * Theme.gap
            height: Math.max(Theme.touch, implicitHeight)
            text: root.current === null ? "" : root.current.peripheralName
            wrapMode: Text.Wrap
            maximumLineCount: 2
            font.pixelSize: Theme.normalText
            font.weight: Font.DemiBold
        }
        PlainText {
            id: hint

            anchors.top: title.bottom
            x: 2 * Theme.gap
            width: parent.width - 4 * Theme.gap
            text: root.isReal ? qsTr("Connected: it reports by itself.")
                              : qsTr("Simulated: choose what it reports.")
            wrapMode: Text.Wrap
            font.pixelSize: Theme.smallText
            color: Theme.mutedText
        }
        Flickable {
            objectName: "deviceEvents"
            visible: !root.isReal
            anchors.top: hint.bottom
            anchors.topMargin: Theme.gap
            anchors.bottom: parent.bottom
            width: parent.width
            contentHeight: events.height + Theme.gap
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            T.ScrollBar.vertical: ScrollMark {}
            Column {
                id: events

                x: Theme.gap
                width: parent.width - 2 * Theme.gap
                spacing: Theme.gap
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Ready
                    text: qsTr("Ready")
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Notice
                    text: qsTr("Updating")
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Warning
                    text: qsTr("Paper low")
                    visible: root.isPrinter
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Warning
                    text: qsTr("Weak signal")
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.SeriousWarning
                    text: qsTr("Too hot")
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Fault
                    text: qsTr("Paper jam")
                    visible: root.isPrinter
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Fault
                    text: qsTr("Cover open")
                    visible: root.isPrinter
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Fault
                    text: qsTr("Out of paper")
                    visible: root.isPrinter
                }
                DeviceEvent {
                    desk: root.desk
                    row: devices.currentIndex
                    event: DeviceDesk.Fault
                    text: qsTr("No connection")
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
