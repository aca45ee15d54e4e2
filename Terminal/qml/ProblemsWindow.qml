import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import "."

/// Why the feed, the file of drivers or the configuration was not loaded, and what a driver does
/// now. Shown instead of the terminal: no part of a broken feed is sold.
T.ApplicationWindow {
    id: root

    property var problems: []
    /// "feed", "drivers" or "config".
    property string unusable: "feed"

    title: qsTr("Ticket terminal")
    color: Theme.background

    Column {
        id: texts

        x: 2 * Theme.gap
        y: 2 * Theme.gap
        width: root.width - 4 * Theme.gap
        spacing: Theme.gap
        PlainText {
            objectName: "problemTitle"
            width: parent.width
            text: root.unusable === "drivers" ? qsTr("The file of drivers cannot be used. Nothing is sold.")
                : root.unusable === "config" ? qsTr("The configuration cannot be used. Nothing is sold.")
                                             : qsTr("The feed cannot be used. Nothing is sold.")
            wrapMode: Text.Wrap
            font.pixelSize: Theme.largeText
            font.weight: Font.DemiBold
            color: Theme.error
        }
        PlainText {
            objectName: "problemAdvice"
            width: parent.width
            text: qsTr("Switch the terminal off and on. If this comes again, call the control centre and read the lines below to them.")
            wrapMode: Text.Wrap
        }
        Rectangle {
            width: parent.width
            height: Theme.thinLine
            color: Theme.line
        }
    }
    ListView {
        id: lines

        objectName: "problemLines"
        anchors.top: texts.bottom
        anchors.topMargin: Theme.gap
        height: root.height - y
        anchors.left: texts.left
        anchors.right: texts.right
        clip: true
        spacing: Theme.gap
        model: root.problems
        boundsBehavior: Flickable.StopAtBounds
        T.ScrollBar.vertical: ScrollMark {}
        delegate: PlainText {
            required property string modelData

            width: lines.width
            text: modelData
            wrapMode: Text.WrapAnywhere
            elide: Text.ElideNone
            font.pixelSize: Theme.mediumText
            color: Theme.mutedText
        }
    }
}
