import QtQuick 2.15

/// A titled box as high as its content.
Rectangle {
    id: root

    property string title
    default property alias content: column.data

    implicitHeight: column.height + 4 * Theme.gap
    radius: Theme.radius
    color: Theme.surface
    Column {
        id: column

        x: 2 * Theme.gap
        y: 2 * Theme.gap
        width: root.width - 4 * Theme.gap
        spacing: 2 * Theme.gap
        PlainText {
            width: parent.width
            text: root.title
            font.pixelSize: Theme.largeText
            font.weight: Font.DemiBold
        }
    }
}
