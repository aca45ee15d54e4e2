import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One tile of the selection grid. What is not for sale is flat, grey and takes no taps.
T.AbstractButton {
    id: root

    required property Terminal terminal
    required property int index
    required property string description
    required property string fareProductIcon
    required property string fareProductName
    required property string fareProductColor
    required property double price
    required property double fareDiscount
    required property int totalInBasket
    required property int toStopGroupId
    required property bool isReturnFee
    required property bool isDaily
    required property bool hasExpired
    required property bool selected

    /// A filler of the layout, which has no product at all.
    readonly property bool isPlaceholder: hasExpired && fareProductName === "---DUMMY---"
    readonly property color face: hasExpired ? Theme.inert
                                             : terminal.color(fareProductColor, Theme.tile)
    readonly property color ink: hasExpired ? Theme.onInert : terminal.textOn(face)

    enabled: !hasExpired
    focusPolicy: Qt.NoFocus
    Accessible.name: root.isPlaceholder ? "" : root.fareProductName + ", " + root.description

    background: Item {
        Rectangle {
            anchors.fill: parent
            anchors.margins: 3
            radius: Theme.radius
            color: root.face
            border.width: root.selected ? 4 : 1
            border.color: root.selected ? Theme.accent : root.hasExpired ? Theme.inert : Theme.line
            opacity: root.down ? 0.7 : 1
        }
    }
    contentItem: Item {
        visible: !root.isPlaceholder
        Icon {
            id: icon

            x: 12
            y: 10
            size: 32
            source: root.terminal.icon(root.fareProductIcon, "qrc:/icons/adult.svg")
            color: root.ink
        }
        Row {
            anchors.left: icon.right
            anchors.leftMargin: 6
            anchors.verticalCenter: icon.verticalCenter
            spacing: 4
            Icon {
                visible: root.isReturnFee
                source: "qrc:/icons/return.svg"
                size: 20
                color: root.ink
            }
            Icon {
                visible: root.isDaily
                source: "qrc:/icons/day.svg"
                size: 20
                color: root.ink
            }
            PlainText {
                objectName: "discountMark"
                visible: root.fareDiscount > 0
                text: "−" + Number(root.fareDiscount).toLocaleString(Qt.locale(), "f", 0) + " %"
                font.pixelSize: Theme.smallText
                color: root.ink
            }
        }
        PlainText {
            objectName: "priceText"
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 8
            text: root.hasExpired ? qsTr("expired") : root.terminal.desk.priceText(root.price)
            font.pixelSize: root.hasExpired ? Theme.smallText : Theme.largeText
            font.weight: Font.Bold
            color: root.ink
        }
        Column {
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.right: parent.right
            anchors.rightMargin: 12
            anchors.top: icon.bottom
            anchors.topMargin: 2
            PlainText {
                width: parent.width
                text: root.fareProductName
                font.weight: Font.DemiBold
                color: root.ink
                maximumLineCount: 1
            }
            PlainText {
                width: parent.width
                visible: root.height >= 112
                text: root.description
                font.pixelSize: Theme.smallText
                color: root.ink
            }
        }
        PlainText {
            objectName: "zoneText"
            anchors.left: parent.left
            anchors.leftMargin: 12
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 10
            width: parent.width * 0.45
            text: {
                const zone = root.terminal.zoneName(root.toStopGroupId)
                return zone === "" ? "" : qsTr("Zone %1").arg(zone)
            }
            font.pixelSize: Theme.smallText
            color: root.ink
        }
    }
    Badge {
        objectName: "badge"
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 10
        count: root.totalInBasket
    }
}
