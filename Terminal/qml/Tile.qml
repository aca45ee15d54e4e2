import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One tile of the selection grid. What is not for sale is flat, grey and takes no taps.
T.AbstractButton {
    id: root

    required property Presentation presentation
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

    readonly property bool isPlaceholder: presentation.isPlaceholder(fareProductName, hasExpired)
    readonly property color face: hasExpired ? Theme.inert
                                             : presentation.color(fareProductColor, Theme.tile)
    readonly property color ink: hasExpired ? Theme.inertInk : presentation.textOn(face)

    /// Too narrow for icon, passenger and discount side by side, and for the zone beside the price.
    readonly property bool isNarrow: width < 170

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
            border.color: root.selected ? root.presentation.frameOn(root.face, Theme.accent) : root.hasExpired ? Theme.inert : Theme.line
            opacity: root.down ? 0.7 : 1
        }
    }
    contentItem: Item {
        visible: !root.isPlaceholder
        Icon {
            id: icon

            x: root.totalInBasket > 0 ? 24 : 10 // beside the badge
            y: root.isNarrow ? 6 : 8
            size: root.isNarrow ? 24 : 30
            source: root.presentation.icon(root.fareProductIcon, "qrc:/icons/adult.svg")
            ink: root.ink
        }
        PlainText {
            id: passenger

            objectName: "passengerText"
            x: root.isNarrow ? 10 : icon.x + icon.width + 6
            y: root.isNarrow ? icon.y + icon.height : icon.y + (icon.height - height) / 2
            width: (root.isNarrow ? parent.width - 10 : discount.x - 4) - x
            text: root.description
            font.pixelSize: Theme.smallText
            minimumPixelSize: 11
            fontSizeMode: Text.HorizontalFit
            color: root.ink
        }
        Rectangle {
            id: discount

            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.verticalCenter: icon.verticalCenter
            visible: root.fareDiscount > 0
            width: visible ? discountText.implicitWidth + 6 : 0
            height: 22
            radius: 4
            color: "transparent"
            border.color: root.ink
            PlainText {
                id: discountText

                objectName: "discountText"
                anchors.centerIn: parent
                text: "−" + Number(root.fareDiscount).toLocaleString(Qt.locale(), "f", root.fareDiscount % 1 === 0 ? 0 : 1) + "%"
                font.pixelSize: 12
                color: root.ink
            }
        }
        PlainText {
            objectName: "productText"
            anchors.left: parent.left
            anchors.leftMargin: 10
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.top: root.isNarrow ? passenger.bottom : icon.bottom
            anchors.bottom: root.isNarrow ? marks.top : priceText.top
            text: root.fareProductName
            wrapMode: Text.Wrap
            maximumLineCount: 2
            lineHeight: 0.9
            font.pixelSize: root.height < 112 || root.width < 130 ? Theme.smallText
                                                              : Theme.normalText
            font.weight: Font.DemiBold
            color: root.ink
        }
        Row {
            id: marks

            anchors.left: parent.left
            anchors.leftMargin: 10
            y: root.isNarrow ? priceText.y - height
                             : priceText.y + (priceText.height - height) / 2
            spacing: 4
            Icon {
                visible: root.isReturnFee
                anchors.verticalCenter: parent.verticalCenter
                source: "qrc:/icons/return.svg"
                size: 18
                ink: root.ink
            }
            Icon {
                visible: root.isDaily
                anchors.verticalCenter: parent.verticalCenter
                source: "qrc:/icons/day.svg"
                size: 18
                ink: root.ink
            }
            PlainText {
                objectName: "zoneText"
                readonly property int end: root.isNarrow ? root.width - 10 : priceText.x - 4

                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(0, Math.min(implicitWidth, end - marks.x - x))
                text: {
                    const zone = root.presentation.zoneName(root.toStopGroupId)
                    return zone === String(root.toStopGroupId) ? qsTr("Zone %1").arg(zone) : zone
                }
                font.pixelSize: Theme.smallText
                minimumPixelSize: 11
                fontSizeMode: Text.HorizontalFit
                color: root.ink
            }
        }
        PlainText {
            id: priceText

            readonly property int leftForZone: 64

            objectName: "priceText"
            anchors.right: parent.right
            anchors.rightMargin: 10
            anchors.bottom: parent.bottom
            anchors.bottomMargin: root.isNarrow ? 4 : 6
            width: Math.min(implicitWidth, root.width - 20 - (root.isNarrow ? 0 : leftForZone))
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 12
            text: root.hasExpired ? qsTr("expired") : root.presentation.priceText(root.price)
            font.pixelSize: root.hasExpired ? Theme.smallText : Theme.largeText
            font.weight: Font.Bold
            color: root.ink
        }
    }
    Badge {
        objectName: "badge"
        x: 0
        y: 0
        count: root.totalInBasket
        border.width: 2
        border.color: Theme.background
    }
}
