import QtQuick 2.15
import Rivo.Terminal 1.0

/// A text of a tile in a room of fixed size: as large as it fits, wrapped, and shortened only where
/// it does not differ from the texts of other tiles.
PlainText {
    id: root

    required property TileDesk names
    property string fullText
    property int largest: Theme.smallText
    property int lines: 2
    property int weight: Font.Normal
    property int room: root.lines * Math.ceil(root.largest * 1.25) ///< its height
    readonly property var fitted: root.fit(root.fullText)

    function fit(text) {
        return root.names.fit(text, Math.floor(root.width), root.room, root.largest,
                              Math.min(root.largest, Theme.smallText), root.weight)
    }

    /// Whether a text needs to be neither smaller nor shorter.
    function canShow(text) {
        const fitted = root.fit(text)
        return fitted["text"] === text && fitted["pixelSize"] === root.largest
    }

    height: root.room
    text: root.fitted["text"]
    font.pixelSize: root.fitted["pixelSize"]
    font.weight: root.weight
    wrapMode: Text.Wrap
    verticalAlignment: Text.AlignTop
}
