import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Rivo.Terminal 1.0

/// The products that are not sold here and now, and why. A tap says it aloud.
ListView {
    id: root

    required property var products ///< maps of name and reason
    signal refused(string reason)

    clip: true
    spacing: Theme.gap
    boundsBehavior: Flickable.StopAtBounds
    model: root.products
    T.ScrollBar.vertical: ScrollMark {}
    delegate: T.AbstractButton {
        id: line

        required property var modelData
        readonly property string name: modelData["name"]
        readonly property string reason: modelData["reason"]

        objectName: "notSoldLine"
        width: root.width - Theme.gap
        height: Math.max(Theme.touch, texts.height + Theme.gap)
        focusPolicy: Qt.NoFocus
        Accessible.name: line.name + ", " + line.reason
        onClicked: root.refused(qsTr("%1: %2", "a fare, and why it is not sold").arg(line.name)
                                    .arg(line.reason))
        background: Rectangle {
            radius: Theme.radius
            color: Theme.inert
        }
        contentItem: Item {
            Column {
                id: texts

                x: Theme.gap
                width: parent.width - 2 * Theme.gap
                anchors.verticalCenter: parent.verticalCenter
                PlainText {
                    width: parent.width
                    text: line.name
                    wrapMode: Text.Wrap
                    maximumLineCount: 3
                    font.weight: Font.DemiBold
                }
                PlainText {
                    objectName: "notSoldReason"
                    width: parent.width
                    text: line.reason
                    wrapMode: Text.Wrap
                    font.pixelSize: Theme.smallText
                    color: Theme.mutedText
                }
            }
        }
    }
}
