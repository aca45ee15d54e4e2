import QtQuick 2.15
import QtTest 1.15
import Rivo.SellingTest 1.0

/// Tests of one terminal in its window. None may leave a complaint of Qt or QML behind.
TestCase {
    id: root

    function tap(name) {
        root.tryVerify(() => Harness.countOf(name) === 1, 5000, name + " is to be tapped")
        const item = Harness.item(name)
        Harness.bringIntoView(item)
        root.mouseClick(item)
    }

    /// Waits until the item shows this text.
    function shows(name, text) {
        root.tryVerify(() => Harness.textOf(name) === text, 5000,
                       name + " shows \"" + Harness.textOf(name) + "\", expected \"" + text + "\"")
    }

    function sellTile(row) {
        const tile = Harness.tile(row)
        Harness.layOut()
        root.mouseClick(tile)
    }

    function basketIs(count) {
        root.tryVerify(() => Harness.basketCount === count, 5000,
                       Harness.basketCount + " lines in the basket, expected " + count)
    }

    function cleanup() {
        Harness.close()
        root.compare(Harness.complaints, "")
    }
}
