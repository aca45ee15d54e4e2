import QtQuick 2.15
import QtQuick.Window 2.15
import org.kde.kitemmodels 1.0
import Rivo.GuiCore 1.0

Window {
    id: window

    required property AssetsModel fleet

    /// Orders the view anew after a sort of the model itself, which emits no signal.
    function orderAnew() {
        inService.invalidate();
    }

    /// What the view shows, from top to bottom.
    function shown() {
        const lines = [];
        for (let row = 0; row < list.count; ++row)
            lines.push(list.itemAtIndex(row).text);
        return lines.join(", ");
    }

    width: 480
    height: 320
    visible: true
    title: qsTr("Vehicles in service")

    KSortFilterProxyModel {
        id: inService

        sourceModel: window.fleet
        sortRole: "routeName"
        sortOrder: Qt.AscendingOrder
        filterRowCallback: row => window.fleet.get(row).routeName !== ""
    }
    ListView {
        id: list

        anchors.fill: parent
        model: inService
        delegate: Text {
            required property string internalNumber
            required property string routeName

            padding: 12
            font.pixelSize: 22
            textFormat: Text.PlainText
            text: routeName + " " + internalNumber
        }
    }
}
