import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "."

/// Why the feed, the file of drivers or the configuration was not loaded. Shown instead of the terminal: no part of a broken feed is sold.
T.ApplicationWindow {
    id: root

    property var problems: []
    /// "feed", "drivers" or "config".
    property string unusable: "feed"

    title: qsTr("Ticket terminal")
    color: Theme.background

    Item {
        anchors.fill: parent

        PlainText {
            id: title

            x: 2 * Theme.gap
            width: parent.width - 4 * Theme.gap
            height: Theme.mm(12)
            text: root.unusable === "drivers" ? qsTr("The file of drivers cannot be used. Nothing is sold.")
                : root.unusable === "config" ? qsTr("The configuration cannot be used. Nothing is sold.")
                                             : qsTr("The feed cannot be used. Nothing is sold.")
            font.pixelSize: Theme.largeText
            font.weight: Font.DemiBold
            color: Theme.error
        }
        ListView {
            id: lines

            objectName: "problemLines"
            anchors.top: title.bottom
            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.leftMargin: 2 * Theme.gap
            anchors.rightMargin: 2 * Theme.gap
            clip: true
            spacing: Theme.gap
            model: root.problems
            delegate: PlainText {
                required property string modelData

                width: lines.width
                text: modelData
                wrapMode: Text.WrapAnywhere
                elide: Text.ElideNone
            }
        }
    }
}
