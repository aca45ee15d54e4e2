import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// One tile of the selection grid. What is not valid any more is flat and grey, and says so when it
/// is tapped; a placeholder takes no taps.
T.AbstractButton {
    id: root

    required property Presentation presentation
    required property TileDesk names
    required property int index
    required property int tile
    required property string description
    required property string fareProductIcon
    required property string fareProductName
    required property string fareProductColor
    required property double price
    required property double fareDiscount
    required property int totalInBasket
    required property string zones
    required property string mark
    required property bool isReturnFee
    required property bool isDaily
    required property bool hasExpired
    required property bool selected

    readonly property bool isPlaceholder: presentation.isPlaceholder(fareProductName, hasExpired)
    readonly property color face: hasExpired ? Theme.inert
                                             : presentation.color(fareProductColor, Theme.tile)
    readonly property color ink: hasExpired ? Theme.inertInk : presentation.textOn(face)
    required property TileMeasure measure
    property bool isMade: false ///< tiles that come into view later are made piece by piece

    visible: isMade
    enabled: !isPlaceholder
    focusPolicy: Qt.NoFocus
    Accessible.name: root.isPlaceholder ? "" : root.fareProductName + ", " + root.description
                                               + ", " + root.zones

    Component.onCompleted: isMade = true

    topInset: 3
    bottomInset: 3
    leftInset: 3
    rightInset: 3
    background: Rectangle {
        radius: Theme.radius
        color: root.face
        border.width: root.selected ? 4 : 1
        border.color: root.selected ? root.presentation.frameOn(root.face, Theme.accent) : root.hasExpired ? Theme.inert : Theme.line
        opacity: root.down ? 0.7 : 1
    }
    contentItem: Item {
        visible: !root.isPlaceholder
        FitText {
            id: passenger

            readonly property string withDiscount: root.presentation.withDiscount(root.description,
                                                                                  root.fareDiscount)

            objectName: "passengerText"
            names: root.names
            x: root.measure.margin
            y: Theme.gap
            width: root.measure.room
            // The discount is left out where it would make the passenger smaller or shorter.
            fullText: root.fareDiscount > 0 && canShow(withDiscount) ? withDiscount : root.description
            verticalAlignment: Text.AlignVCenter
            color: root.ink
        }
        FitText {
            id: product

            objectName: "productText"
            names: root.names
            x: root.measure.margin
            anchors.top: passenger.bottom
            width: root.measure.room
            room: root.measure.productRoom
            fullText: root.fareProductName
            largest: Theme.normalText
            weight: Font.DemiBold
            verticalAlignment: Text.AlignVCenter
            color: root.ink
        }
        FitText {
            id: zoneText

            objectName: "zoneText"
            names: root.names
            x: root.measure.margin
            anchors.top: product.bottom
            width: root.measure.room - kinds.width
            fullText: root.mark === "" ? root.zones : root.zones === "" ? root.mark
                                                    : root.zones + " · " + root.mark
            color: root.ink
        }
        Loader {
            id: kinds

            anchors.right: parent.right
            anchors.rightMargin: root.measure.margin
            anchors.top: zoneText.top
            active: root.isReturnFee || root.isDaily
            sourceComponent: Row {
                Icon {
                    visible: root.isReturnFee
                    source: "qrc:/icons/return.svg"
                    size: root.measure.lineRoom
                    ink: root.ink
                }
                Icon {
                    visible: root.isDaily
                    source: "qrc:/icons/day.svg"
                    size: root.measure.lineRoom
                    ink: root.ink
                }
            }
        }
        Icon {
            visible: root.totalInBasket === 0
            x: root.measure.margin
            anchors.verticalCenter: priceText.verticalCenter
            size: root.measure.iconSize
            source: root.presentation.icon(root.fareProductIcon, "qrc:/icons/adult.svg")
            ink: root.ink
        }
        Loader {
            id: badge

            x: root.measure.margin - 2
            anchors.verticalCenter: priceText.verticalCenter
            active: root.totalInBasket > 0
            sourceComponent: Badge {
                objectName: "badge"
                count: root.totalInBasket
                border.width: 2
                border.color: Theme.background
            }
        }
        PlainText {
            id: priceText

            objectName: root.hasExpired ? "expiredText" : "priceText"
            anchors.right: parent.right
            anchors.rightMargin: root.measure.margin
            anchors.bottom: parent.bottom
            anchors.bottomMargin: Theme.gap / 2 + 2
            width: Math.min(implicitWidth, root.measure.room - Theme.gap / 2
                                           - Math.max(root.measure.iconSize, badge.width))
            height: Math.ceil(Theme.largeText * 1.2)
            horizontalAlignment: Text.AlignRight
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 1 // a price never loses its end
            elide: Text.ElideNone
            text: root.hasExpired ? qsTr("expired") : root.presentation.priceText(root.price)
            font.pixelSize: root.hasExpired ? Theme.smallText : Theme.largeText
            font.weight: Font.Bold
            color: root.ink
        }
    }
}
