import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One ticket of the basket. Held down, it asks for more of its kind.
T.AbstractButton {
    id: root

    required property Presentation presentation
    required property int index
    required property string description
    required property string fareProductName
    required property double price
    required property string origin
    required property string destination
    required property bool isReturnFee
    required property bool accepted
    required property bool printed
    property bool removable: true
    readonly property string zones: presentation.zonesText(origin, destination)
    signal removeRequested

    implicitHeight: Math.max(Theme.touch, texts.height) + Theme.gap
    focusPolicy: Qt.NoFocus
    Accessible.name: root.fareProductName + ", " + root.description + ", " + root.zones

    background: Rectangle {
        color: root.down ? Theme.raised : "transparent"
        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: Theme.line
        }
    }
    contentItem: Item {
        Column {
            id: texts

            x: Theme.gap
            width: removeButton.x - Theme.gap - x
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                objectName: "lineProduct"
                width: parent.width
                text: root.fareProductName
                wrapMode: Text.Wrap
                maximumLineCount: 4
                font.pixelSize: Theme.smallText
                font.weight: Font.DemiBold
            }
            PlainText {
                objectName: "linePassenger"
                width: parent.width
                text: root.printed ? qsTr("printed")
                    : root.accepted ? qsTr("being printed")
                    : root.isReturnFee ? qsTr("%1, return").arg(root.description)
                    : root.description
                wrapMode: Text.Wrap
                maximumLineCount: 4
                font.pixelSize: Theme.smallText
                color: root.printed ? Theme.ok : Theme.mutedText
            }
            Item {
                width: parent.width
                height: Math.max(zones.height, priceText.height)
                PlainText {
                    id: zones

                    objectName: "lineZones"
                    anchors.verticalCenter: parent.verticalCenter
                    width: priceText.x - Theme.gap
                    text: root.zones
                    wrapMode: Text.Wrap
                    maximumLineCount: 4
                    font.pixelSize: Theme.smallText
                }
                PlainText {
                    id: priceText

                    objectName: "linePrice"
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    width: Math.min(implicitWidth, parent.width * 0.6)
                    horizontalAlignment: Text.AlignRight
                    elide: Text.ElideNone
                    fontSizeMode: Text.HorizontalFit
                    minimumPixelSize: 1
                    text: root.presentation.priceText(root.price)
                    font.pixelSize: Theme.smallText
                    font.weight: Font.Bold
                }
            }
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
    }
}
