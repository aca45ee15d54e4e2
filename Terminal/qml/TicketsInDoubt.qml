import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// The tickets of a sale that was interrupted, by their numbers. The first one that is not out is in
/// view.
ListView {
    id: root

    required property var tickets ///< as SalesDesk::interruptedSale() has them
    readonly property int next: tickets["findIndex"](ticket => !ticket["isOut"]) ///< -1 = all are out

    function follow() {
        root.positionViewAtIndex(root.next < 0 ? root.count - 1 : root.next, ListView["Contain"])
    }

    objectName: "ticketsInDoubt"
    visible: tickets["length"] > 0
    clip: true
    model: root.tickets
    boundsBehavior: Flickable.StopAtBounds
    onModelChanged: Qt.callLater(root.follow)
    onHeightChanged: Qt.callLater(root.follow)
    T.ScrollBar.vertical: ScrollMark {}
    delegate: Item {
        id: line

        required property int index
        required property var modelData
        readonly property bool isNext: index === root.next

        width: root.width
        height: texts.height + Theme.gap

        Rectangle {
            anchors.fill: parent
            visible: line.isNext
            color: Theme.raised
        }
        Icon {
            id: mark

            x: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            source: line.modelData["isOut"] ? "qrc:/icons/ok.svg"
                  : line.modelData["isInDoubt"] ? "qrc:/icons/warning.svg"
                                                : "qrc:/icons/printer.svg"
            ink: line.modelData["isOut"] ? Theme.ok
               : line.modelData["isInDoubt"] ? Theme.warning : Theme.mutedText
        }
        Column {
            id: texts

            anchors.left: mark.right
            anchors.leftMargin: Theme.gap
            anchors.right: parent.right
            anchors.rightMargin: 2 * Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                objectName: "doubtNumber"
                width: parent.width
                text: line.modelData["numberText"]
                font.weight: line.isNext ? Font.Bold : Font.Normal
            }
            Item {
                width: parent.width
                height: price.height
                PlainText {
                    anchors.left: parent.left
                    anchors.right: price.left
                    anchors.rightMargin: Theme.gap
                    text: line.modelData["product"] + ", " + line.modelData["passenger"]
                    font.pixelSize: Theme.smallText
                    color: Theme.mutedText
                }
                PlainText {
                    id: price

                    anchors.right: parent.right
                    text: line.modelData["priceText"]
                    font.pixelSize: Theme.smallText
                }
            }
        }
    }
}
