import QtQml 2.15
import QtQuick 2.15
import Rivo.Terminal 1.0

/// How a vehicle looks that reports, is overdue, or is not heard of any more.
QtObject {
    property int reporting: FleetSimulator.Live

    readonly property color color: reporting === FleetSimulator.Live ? Theme.ok
                                 : reporting === FleetSimulator.Stale ? Theme.warning
                                 : Theme.inertInk
    readonly property url icon: reporting === FleetSimulator.Live ? "qrc:/icons/ok.svg"
                              : reporting === FleetSimulator.Stale ? "qrc:/icons/warning.svg"
                              : "qrc:/icons/offline.svg"
}
