import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.impl 2.15

/// A picture of the resources in one colour, or a file in its own.
IconImage {
    property int size: Theme.icon
    property color ink: Theme.text

    width: size
    height: size
    sourceSize: Qt.size(size, size)
    color: String(source).indexOf("file:") === 0 ? "transparent" : ink
    asynchronous: false
}
