import QtQuick 2.15
import Rivo.SellingTest 1.0

ScreenCase {
    id: test

    name: "Sale"

    function test_saleByTaps() {
        Harness.open("coast-line", "sell")
        test.verify(!Harness.isEnabled("payCash"), "an empty basket cannot be paid")
        test.sellTile(0)
        test.sellTile(1)
        test.sellTile(0)
        test.basketIs(3)
        test.compare(Harness.basket("fareProductName"),
                     "Single Port Salis|Single Port Salis|Single Port Salis")
        test.compare(Harness.basket("price"), "1.4|0.7|1.4")
        test.shows("totalText", "€3.50")
        test.tryVerify(() => Harness.countOf("removeButton") === 3)
        test.tap("payCash")
        test.basketIs(0)
        test.compare(Harness.printed, "1,2,3")
        test.shows("paidText", "€3.50")
        test.compare(Harness.countOf("changeText"), 0)
        test.tap("paidSale")
        test.shows("totalText", "€0.00")
        test.tap("nav-zreport")
        test.shows("runningSum", "€3.50")
        test.shows("debtText", "€3.50")
    }

    function test_cardSaleLeavesNoCash() {
        Harness.open("coast-line", "sell")
        test.sellTile(2)
        test.tap("payCard")
        test.basketIs(0)
        test.shows("paidText", "€0.70")
        test.compare(Harness.report("cardSellCountData"), "1")
        test.tap("nav-zreport")
        test.shows("runningSum", "€0.70")
        test.shows("debtText", "€0.00")
    }

    function test_ticketsAreAcceptedBeforeTheyArePrinted() {
        Harness.setTicketTime(700)
        Harness.open("coast-line", "sell")
        test.sellTile(0)
        test.sellTile(1)
        test.basketIs(2)
        test.compare(Harness.basket("accepted"), "false|false")
        test.tap("payCash")
        test.tryVerify(() => Harness.basket("accepted") === "true|false")
        test.compare(Harness.basket("printed"), "false|false")
        test.verify(!Harness.isEnabled("payCash"), "nothing is paid twice")
        test.verify(!Harness.isEnabled("clearButton"))
        test.compare(Harness.countOf("removeButton"), 0)
        test.tryVerify(() => Harness.basket("printed") === "true|false")
        test.compare(Harness.basket("accepted"), "true|true")
        test.basketIs(0)
    }

    function test_onlyTheLastTileIsSelected() {
        Harness.open("coast-line", "sell")
        test.sellTile(0)
        test.compare(Harness.selectedTiles(), "0")
        test.sellTile(1)
        test.compare(Harness.selectedTiles(), "1")
        test.sellTile(1)
        test.compare(Harness.selectedTiles(), "1")
        test.basketIs(3)
        test.tap("payCash")
        test.basketIs(0)
        test.compare(Harness.selectedTiles(), "")
    }

    function test_lineIsRemoved() {
        Harness.open("coast-line", "sell")
        test.sellTile(0)
        test.sellTile(1)
        test.basketIs(2)
        test.tryVerify(() => Harness.countOf("removeButton") === 2)
        Harness.layOut()
        test.mouseClick(Harness.itemAt("removeButton", 0))
        test.basketIs(1)
        test.compare(Harness.basket("price"), "0.7")
        test.shows("totalText", "€0.70")
    }

    function test_clearingAsksFirst() {
        Harness.open("coast-line", "sell")
        test.sellTile(0)
        test.sellTile(1)
        test.basketIs(2)
        test.tap("clearButton")
        test.tap("cancelButton")
        test.tryVerify(() => Harness.countOf("cancelButton") === 0)
        test.compare(Harness.basketCount, 2)
        test.tap("clearButton")
        test.tap("confirmButton")
        test.basketIs(0)
        test.shows("totalText", "€0.00")
        test.verify(!Harness.isEnabled("clearButton"))
    }

    function test_inertTilesTakeNoTap() {
        Harness.open("coast-line", "sell")
        test.verify(Harness.placeholderRow() >= 0)
        if (Harness.tile(Harness.placeholderRow()) !== null) // where the columns of the grid fit
            test.sellTile(Harness.placeholderRow())
        test.compare(Harness.refusals, 0)
        test.verify(Harness.expiredRow() >= 0)
        test.sellTile(Harness.expiredRow())
        test.compare(Harness.refusals, 1)
        test.shows("toastText", "Winter single Port Salis is not valid any more.")
        test.sellTile(0)
        test.basketIs(1)
        test.compare(Harness.basket("price"), "1.4")
    }

    function test_ticketsCarryTheStop() {
        Harness.open("coast-line", "sell")
        const first = Harness.contextStop()
        test.sellTile(0)
        const name = Harness.textOf("stopText")
        test.tap("nextStop")
        test.tryVerify(() => Harness.textOf("stopText") !== name)
        test.sellTile(0)
        test.basketIs(2)
        test.verify(Harness.contextStop() !== first)
        test.compare(Harness.currentStop(0), first)
        test.compare(Harness.currentStop(1), Harness.contextStop())
        test.tap("previousStop")
        test.shows("stopText", name)
    }

    function test_emptyFeed() {
        Harness.open("empty", "sell")
        test.shows("emptyGridText", "This feed has nothing to sell.")
        test.verify(!Harness.isEnabled("payCash"))
        test.tap("nav-products")
        test.shows("emptyCatalogueText", "This feed has no fare catalogue.")
        test.tap("nav-fleet")
        test.shows("emptyMapText", "This feed has no lines and no vehicles.")
        test.tap("nav-zreport")
        test.shows("runningSum", "€0.00")
    }
}
