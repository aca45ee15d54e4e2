import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// One ticket of a past sale.
T.AbstractButton {
    id: root

    property bool chosen: false // a button that is "checked" would turn that off when it is tapped
    required property var ticket ///< as SalesDesk::pastSale() has it
    readonly property bool isReversed: ticket["isReversed"] === true

    function textOf(name) {
        const text = root.ticket[name]
        return text === undefined ? "" : String(text)
    }

    objectName: "pastTicket"
    height: Math.max(Theme.touch, texts.height + 2 * Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.textOf("numberText")
    background: Rectangle {
        radius: Theme.radius
        color: root.chosen ? Theme.tile : Theme.surface
        border.width: root.chosen ? Theme.thickLine : Theme.thinLine
        border.color: root.chosen ? Theme.accent : Theme.line
    }
    contentItem: Item {
        Column {
            id: texts

            anchors.left: parent.left
            anchors.leftMargin: Theme.gap
            anchors.right: priceText.left
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            PlainText {
                objectName: "pastTicketText"
                width: parent.width
                text: qsTr("%1 %2, %3", "ticket number, product, passenger")
                          .arg(root.textOf("numberText")).arg(root.textOf("product"))
                          .arg(root.textOf("passenger"))
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallText
                font.weight: Font.DemiBold
            }
            PlainText {
                objectName: "pastTicketState"
                width: parent.width
                text: root.isReversed ? qsTr("taken back")
                    : root.ticket["copies"] > 0 ? qsTr("%n copy(ies)", "", root.ticket["copies"])
                    : root.textOf("origin") === root.textOf("destination")
                      ? root.textOf("destination")
                      : root.textOf("origin") + " → " + root.textOf("destination")
                wrapMode: Text.Wrap
                font.pixelSize: Theme.smallText
                color: root.chosen ? Theme.text : Theme.mutedText
            }
        }
        PlainText {
            id: priceText

            anchors.right: parent.right
            anchors.rightMargin: Theme.gap
            anchors.verticalCenter: parent.verticalCenter
            text: root.textOf("priceText")
            font.weight: Font.DemiBold
            font.strikeout: root.isReversed
        }
    }
}
