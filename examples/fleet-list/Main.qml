import QtQuick 2.15
import QtQuick.Window 2.15
import Rivo.GuiCore 1.0

Window {
    id: window

    required property AssetsModel fleet

    width: 480
    height: 640
    visible: true
    title: qsTr("Fleet: %n vehicle(s)", "", fleet.count)

    ListView {
        id: list

        anchors.fill: parent
        model: window.fleet
        delegate: Item {
            id: line

            required property string internalNumber
            required property string routeName
            required property var assetCoordinate

            width: list.width
            height: 56

            Text {
                x: 16
                anchors.verticalCenter: parent.verticalCenter
                font.pixelSize: 22
                textFormat: Text.PlainText
                text: line.internalNumber + "  " + line.routeName
            }
            Text {
                anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
                font.pixelSize: 16
                textFormat: Text.PlainText
                text: line.assetCoordinate.latitude.toFixed(4) + ", " + line.assetCoordinate.longitude.toFixed(4)
            }
        }
    }
}
