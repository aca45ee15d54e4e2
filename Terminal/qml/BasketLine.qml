import QtQuick 2.15
import Rivo.Terminal 1.0

/// One ticket of the basket.
Item {
    id: root

    required property Presentation presentation
    required property int index
    required property string description
    required property string fareProductName
    required property string shoppingItemIcon
    required property double price
    required property string destination
    required property bool isReturnFee
    required property bool accepted
    required property bool printed
    property bool removable: true
    signal removeRequested

    height: 64

    Icon {
        id: icon

        x: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        size: 28
        source: root.presentation.icon(root.shoppingItemIcon, "qrc:/icons/adult.svg")
    }
    Column {
        anchors.left: icon.right
        anchors.leftMargin: Theme.gap
        anchors.right: priceText.left
        anchors.rightMargin: Theme.gap
        anchors.verticalCenter: parent.verticalCenter
        PlainText {
            width: parent.width
            text: root.fareProductName
            wrapMode: Text.Wrap
            maximumLineCount: 2
            lineHeight: 0.9
            font.pixelSize: root.width < 300 ? Theme.smallText : Theme.normalText
            font.weight: Font.DemiBold
        }
        PlainText {
            width: parent.width
            text: root.printed ? qsTr("printed")
                : root.accepted ? qsTr("being printed")
                : root.isReturnFee ? qsTr("%1, return").arg(root.description) : root.description
            font.pixelSize: Theme.smallText
            color: root.printed ? Theme.ok : Theme.mutedText
        }
    }
    PlainText {
        id: priceText

        anchors.right: removeButton.left
        anchors.rightMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        text: root.presentation.priceText(root.price)
        font.weight: Font.DemiBold
    }
    PanelButton {
        id: removeButton

        objectName: "removeButton"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.touch
        visible: root.removable
        iconSource: "qrc:/icons/remove.svg"
        Accessible.name: qsTr("Remove this ticket")
        onClicked: root.removeRequested()
    }
    Icon {
        anchors.centerIn: removeButton
        visible: root.printed
        source: "qrc:/icons/ok.svg"
        ink: Theme.ok
    }
    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.line
    }
}
