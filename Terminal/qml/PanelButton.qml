import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// A button for fingers: at least Theme.touch high, with an icon, a text or both.
T.AbstractButton {
    id: root

    property bool accent: false ///< it is what is done most here, or is on
    property bool danger: false ///< it cannot be taken back, or something is wrong
    property bool chosen: false ///< of several; "checked" would turn itself off when it is tapped
    property url iconSource
    property bool stacked: false ///< the icon stands above a small text
    property int textSize: root.stacked ? Theme.smallText : Theme.normalText
    readonly property int besideText: icon.visible && !root.stacked
                                      ? icon.width + (root.text === "" ? 0 : Theme.gap) : 0
    readonly property color face: root.accent ? Theme.accent
                                : root.danger ? Theme.error : Theme.raised
    readonly property color ink: root.accent ? Theme.accentInk
                               : root.danger ? Theme.errorInk : Theme.text

    implicitHeight: Theme.touch
    implicitWidth: Math.max(Theme.touch, Math.ceil(label.implicitWidth) + besideText
                                         + 2 * padding)
    focusPolicy: Qt.NoFocus
    padding: Theme.gap
    Accessible.name: root.text

    background: Rectangle {
        radius: Theme.radius
        color: root.enabled ? (root.down ? Qt.darker(root.face, 1.2) : root.face) : Theme.inert
        border.width: root.checked || root.chosen ? Theme.thickLine : 0
        border.color: Theme.accent
    }
    contentItem: Item {
        Grid {
            id: row

            anchors.centerIn: parent
            columns: root.stacked ? 1 : 2
            spacing: root.stacked ? 0 : Theme.gap
            horizontalItemAlignment: Grid.AlignHCenter
            verticalItemAlignment: Grid.AlignVCenter
            Icon {
                id: icon

                visible: String(root.iconSource) !== ""
                source: root.iconSource
                ink: root.enabled ? root.ink : Theme.inertInk
            }
            PlainText {
                id: label

                visible: root.text !== ""
                width: Math.min(Math.ceil(implicitWidth),
                                root.width - 2 * root.padding - root.besideText)
                text: root.text
                color: root.enabled ? root.ink : Theme.inertInk
                font.pixelSize: root.textSize
                fontSizeMode: Text.HorizontalFit
                minimumPixelSize: Theme.smallText
                font.weight: root.stacked ? Font.Normal : Font.DemiBold
            }
        }
    }
}
