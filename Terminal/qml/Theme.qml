pragma Singleton
import QtQml 2.15
import QtQuick 2.15
import Rivo.Terminal 1.0

/// Colours and sizes of the whole screen, by day and by night. Every text has a contrast of at least
/// 4.5:1 to what it stands on.
QtObject {
    property bool night: false

    readonly property color background: night ? "#0e1216" : "#eef1f4"
    readonly property color surface: night ? "#1a2026" : "#ffffff"
    readonly property color raised: night ? "#252d35" : "#e1e6eb"
    readonly property color line: night ? "#3a444e" : "#c3ccd5"
    readonly property color text: night ? "#e6e9ec" : "#14191e"
    readonly property color mutedText: night ? "#a9b3bd" : "#4a5560"
    readonly property color accent: night ? "#5aa9e6" : "#0b5a94"
    readonly property color accentInk: night ? "#08131c" : "#ffffff"
    readonly property color ok: night ? "#6fcf97" : "#166a39"
    readonly property color warning: night ? "#f2c94c" : "#8a5a00"
    readonly property color error: night ? "#ff8a80" : "#b3261e"
    readonly property color errorInk: night ? "#1c0807" : "#ffffff"
    readonly property color notice: night ? "#8ab4f8" : "#1a56b0"
    readonly property color tile: night ? "#33404c" : "#cfe3f3"
    readonly property color inert: night ? "#171c21" : "#e6eaee"
    readonly property color inertInk: night ? "#7f8a95" : "#5c6670"

    // From the size of the glass: 9 mm for a finger. Capital letters have 20 arc minutes in what is
    // read while selling, 15 in what is looked up, and 12 in labels and hints.
    readonly property int touch: GlassScale.length(9)
    readonly property int gap: GlassScale.length(1.2)
    readonly property int radius: GlassScale.length(0.9)
    readonly property int thinLine: GlassScale.length(0.15)
    readonly property int thickLine: GlassScale.length(0.6)
    readonly property int smallIcon: GlassScale.length(3)
    readonly property int icon: GlassScale.length(4.4)
    readonly property int largeIcon: GlassScale.length(6)
    readonly property int smallText: GlassScale.text(12)
    readonly property int mediumText: GlassScale.text(15)
    readonly property int normalText: GlassScale.text(20)
    readonly property int largeText: GlassScale.text(22)
    readonly property int hugeText: GlassScale.text(28)

    /// Pixels of a length that none of the properties has.
    function mm(millimetres) {
        return GlassScale.length(millimetres)
    }
}
