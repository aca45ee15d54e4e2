import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Controls.impl 2.15

/// A picture of the resources in one colour.
IconImage {
    property int size: 24

    width: size
    height: size
    sourceSize: Qt.size(size, size)
    color: Theme.text
    asynchronous: false
}
