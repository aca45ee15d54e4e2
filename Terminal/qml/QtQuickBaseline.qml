import QtQuick 2.15
import QtQuick.Window 2.15

/// A window of Qt Quick alone, to measure beside the terminal: 2,000 plain tiles with a text, and a
/// text that counts taps.
Window {
    id: root

    property int taps: 0

    visible: true

    GridView {
        objectName: "grid"
        anchors.fill: parent
        anchors.rightMargin: root.width / 3
        model: 2000
        cellWidth: width / 4
        cellHeight: height / 4
        delegate: Rectangle {
            required property int index

            width: GridView.view.cellWidth - 6
            height: GridView.view.cellHeight - 6
            color: "#cfe3f3"
            Text {
                anchors.centerIn: parent
                text: "Tile " + index
            }
            MouseArea {
                anchors.fill: parent
                onPressed: root.taps += 1
            }
        }
    }
    Text {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: root.width / 4
        text: root.taps
    }
}
