import QtQuick 2.15
import QtQuick.Templates 2.15 as T

/// A button for fingers: at least Theme.touch high, with an icon, a text or both.
T.AbstractButton {
    id: root

    property bool accent: false ///< it is what is done most here, or is on
    property bool danger: false ///< it cannot be taken back, or something is wrong
    property bool chosen: false ///< of several; "checked" would turn itself off when it is tapped
    property url iconSource
    readonly property color face: root.accent ? Theme.accent
                                : root.danger ? Theme.error : Theme.raised
    readonly property color ink: root.accent ? Theme.accentInk
                               : root.danger ? Theme.errorInk : Theme.text

    implicitHeight: Theme.touch
    implicitWidth: Math.max(Theme.touch, row.implicitWidth + 2 * Theme.gap)
    focusPolicy: Qt.NoFocus
    Accessible.name: root.text

    background: Rectangle {
        radius: Theme.radius
        color: root.enabled ? (root.down ? Qt.darker(root.face, 1.2) : root.face) : Theme.inert
        border.width: root.checked || root.chosen ? 3 : 0
        border.color: Theme.accent
    }
    contentItem: Item {
        Row {
            id: row

            anchors.centerIn: parent
            spacing: Theme.gap
            Icon {
                visible: String(root.iconSource) !== ""
                source: root.iconSource
                ink: root.enabled ? root.ink : Theme.inertInk
                anchors.verticalCenter: parent.verticalCenter
            }
            PlainText {
                visible: root.text !== ""
                text: root.text
                color: root.enabled ? root.ink : Theme.inertInk
                font.weight: Font.DemiBold
                anchors.verticalCenter: parent.verticalCenter
            }
        }
    }
}
