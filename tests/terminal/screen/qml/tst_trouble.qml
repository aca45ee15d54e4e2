import QtQuick 2.15
import Rivo.SellingTest 1.0

ScreenCase {
    id: test

    name: "Trouble"

    function test_printerBlocksSellingUntilItRecovers() {
        Harness.open("coast-line", "sell")
        test.sellTile(0)
        test.basketIs(1)
        test.verify(Harness.isEnabled("payCash"))
        test.tap("nav-devices")
        test.tap("event-Cover open")
        test.tap("nav-sell")
        test.tryVerify(() => Harness.obstacle() !== "")
        test.shows("obstacleText", Harness.obstacle())
        test.compare(Harness.textOf("obstacleText"),
                     "The ticket printer cannot print: Cover open")
        test.verify(!Harness.isEnabled("payCash"))
        test.verify(!Harness.isEnabled("payCard"))
        test.tap("payCash")
        test.compare(Harness.basketCount, 1)
        test.tap("faultsButton")
        test.tap("event-Ready")
        test.tap("nav-sell")
        test.tryVerify(() => Harness.isEnabled("payCash"))
        test.compare(Harness.countOf("obstacleText"), 0)
        test.tap("payCash")
        test.basketIs(0)
        test.shows("paidText", "€1.40")
    }

    function test_journal_data() {
        return [
            { tag: "another program has it open", state: "locked" },
            { tag: "its content is broken", state: "damaged" }
        ]
    }

    function test_journal(row) {
        Harness.useJournal(row["state"])
        Harness.open("coast-line", "sell")
        test.verify(Harness.obstacle() !== "")
        test.shows("obstacleText", Harness.obstacle())
        test.sellTile(0)
        test.compare(Harness.basketCount, 0)
        test.shows("toastText", Harness.obstacle())
        test.verify(!Harness.isEnabled("payCash"))
        test.verify(!Harness.isEnabled("payCard"))
        test.tap("nav-zreport")
        test.shows("noShiftText", Harness.obstacle())
        test.compare(Harness.countOf("closeShiftButton"), 0)
    }

    function test_unfinishedBasketComesBack() {
        Harness.open("coast-line", "sell")
        test.sellTile(0)
        test.sellTile(1)
        test.basketIs(2)
        Harness.restart()
        test.compare(Harness.basket("price"), "1.4|0.7")
        test.shows("totalText", "€2.10")
        test.tap("payCash")
        test.basketIs(0)
    }

    function test_unprintedTicketsComeBack() {
        Harness.setTicketTime(500)
        Harness.open("coast-line", "sell")
        test.sellTile(0)
        test.sellTile(1)
        test.sellTile(2)
        test.basketIs(3)
        test.tap("payCash")
        test.tryVerify(() => Harness.basket("printed") === "true|false|false")
        Harness.restart()
        test.compare(Harness.basket("accepted"), "false|false")
        test.compare(Harness.basket("price"), "0.7|0.7")
        test.shows("doubtText", "Is ticket 000002 out?")
        test.compare(Harness.countOf("payCash"), 0)
        test.sellTile(0)
        test.basketIs(2)
        test.tap("confirmDoubt")
        test.tap("cancelButton")
        test.tryCompare(Harness, "basketCount", 2)
        test.tap("confirmDoubt")
        test.tap("confirmButton")
        test.shows("doubtText", "Is ticket 000003 out?")
        test.compare(Harness.basket("printed"), "true|false")
        test.tap("printDoubts")
        test.tap("confirmButton")
        test.compare(Harness.countOf("doubtText"), 0)
        test.compare(Harness.basket("accepted"), "true|true")
        test.basketIs(0)
        test.compare(Harness.countOf("payCash"), 1)
        test.tap("nav-zreport")
        test.shows("runningSum", "€2.80")
    }

    function test_brokenFeedIsNotSold() {
        Harness.openProblems()
        test.verify(Harness.problemCount() >= 3)
        test.compare(Harness.problemTexts(),
                     "The feed cannot be used. Nothing is sold.\n"
                     + "Switch the terminal off and on. If this comes again, call the control"
                     + " centre and read the lines below to them.\n"
                     + Harness.problemLines())
        test.compare(Harness.problemButtons(), 0)
    }
}
