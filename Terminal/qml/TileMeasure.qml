import QtQml 2.15

/// The sizes that all tiles of a grid share, for a width.
QtObject {
    property int width: 0
    readonly property int margin: Theme.gap + 2
    readonly property int room: width - 2 * margin
    readonly property int lineRoom: Math.ceil(Theme.smallText * 1.25)
    readonly property int iconSize: Math.round(Theme.smallText * 1.6)
    /// One line as it should be, or two smaller ones.
    readonly property int productRoom: 2 * lineRoom + Theme.normalText - Theme.smallText
    /// Two lines each of passenger, product and zones, and the price.
    readonly property int height: 4 * lineRoom + productRoom + Math.ceil(Theme.largeText * 1.2)
                                  + 2 * Theme.gap
}
