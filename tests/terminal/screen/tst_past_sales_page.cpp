#include "PageTest.h"
#include "Pointer.h"

#include <QSignalSpy>

#include <algorithm>

/// Past sales by taps: list, detail, paper, copy, void and refund.
class TestPastSalesPage : public PageTest
{
    Q_OBJECT

private slots:
    void theNewestSaleIsFirstAndSelected();
    void aShiftWithoutSalesIsShownAsSuch();
    void anotherSaleIsShownWhenItIsTapped();
    void thePaperIsShown();
    void aCopyIsPrinted();
    void theLastSaleIsVoid();
    void onlyTheLastSaleCanBeVoid();
    void aSecondVoidIsRefusedWithItsReason();
    void aTicketIsRefunded();
    void allTicketsOfASaleAreRefunded();
    void aRefundNeedsAReason();
    void aTicketThatWasTakenBackIsNotPrintedAgain();
    void aPrinterFaultIsShown();
    void reasonsHearQuickTouches();
    void manySalesAreReadInBatches();
    void backLeadsToTheZReport();

private:
    void start() override { show(exampleFeed("coast-line"), "zreport"); }
    void openPage();
    void tapSale(int row);
    double figure(const char* name) { return desk().xReport()[name].toDouble(); }
};

void TestPastSalesPage::openPage()
{
    m_shown->tap("salesButton");
    QTRY_COMPARE(m_shown->all("backButton").size(), 1);
    m_shown->window()->grabWindow();
}

void TestPastSalesPage::tapSale(int row)
{
    auto sales = m_shown->all("pastSale");
    std::sort(sales.begin(), sales.end(), [](const QQuickItem* a, const QQuickItem* b) {
        return a->property("index").toInt() < b->property("index").toInt();
    });
    m_shown->tap(sales.value(row));
    m_shown->window()->grabWindow();
}

void TestPastSalesPage::theNewestSaleIsFirstAndSelected()
{
    sell(1);
    sell(2);
    openPage();
    QCOMPARE(m_shown->all("pastSale").size(), 2);
    QCOMPARE(m_shown->text("detailPaid"), QString("€2.80"));
    QCOMPARE(m_shown->text("detailChange"), QString("€7.20"));
    QCOMPARE(m_shown->all("pastTicket").size(), 2);
    tapSale(1);
    QCOMPARE(m_shown->text("detailPaid"), QString("€1.40"));
}

void TestPastSalesPage::aShiftWithoutSalesIsShownAsSuch()
{
    show(exampleFeed("coast-line"), "sales");
    QVERIFY(!m_shown->text("noSalesText").isEmpty());
    QVERIFY(m_shown->all("voidButton").isEmpty());
    m_shown->tap("backButton");
    sell(1);
    openPage();
    QCOMPARE(m_shown->all("pastSale").size(), 1);
    QVERIFY(m_shown->all("noSalesText").isEmpty());
}

void TestPastSalesPage::anotherSaleIsShownWhenItIsTapped()
{
    sell(1);
    sell(1);
    openPage();
    const QString newest = m_shown->text("pastTicketText");
    QVERIFY2(newest.startsWith("000002"), qPrintable(newest));
    tapSale(1);
    QVERIFY2(m_shown->text("pastTicketText").startsWith("000001"),
             qPrintable(m_shown->text("pastTicketText")));
}

void TestPastSalesPage::thePaperIsShown()
{
    sell(1);
    openPage();
    m_shown->tap("showPaper");
    QTRY_COMPARE(m_shown->all("paper").size(), 1);
    QCOMPARE(m_shown->item("paper")->property("status").toInt(), 1); // it is loaded
    QVERIFY(m_shown->item("paper")->height() > 200);
    m_shown->tap("closePaper");
    QTRY_COMPARE(m_shown->all("paper").size(), 0);
}

void TestPastSalesPage::aCopyIsPrinted()
{
    sell(2);
    openPage();
    QSignalSpy copied(&desk(), &SalesDesk::copyPrinted);
    m_shown->tap(m_shown->all("pastTicket").value(1));
    m_shown->tap("printCopy");
    QTRY_COMPARE(copied.size(), 1);
    QCOMPARE(copied.first().first().toDouble(), 2.0);
    QTRY_VERIFY(m_shown->texts("pastTicketState").filter("copy").size() == 1);
    m_shown->tap("printCopy");
    QTRY_COMPARE(copied.size(), 2);
    QCOMPARE(figure("copyCount"), 2.0);
    QCOMPARE(figure("ticketCount"), 2.0);
}

void TestPastSalesPage::theLastSaleIsVoid()
{
    sell(2);
    openPage();
    m_shown->tap("voidButton");
    m_shown->tap("cancelButton");
    QTRY_COMPARE(m_shown->all("cancelButton").size(), 0);
    QCOMPARE(figure("voidCount"), 0.0);
    m_shown->tap("voidButton");
    m_shown->tap("confirmButton");
    QTRY_COMPARE(figure("voidCount"), 2.0);
    QTRY_COMPARE(m_shown->text("detailPaidOut"), QString("€2.80"));
    QTRY_COMPARE(m_shown->text("pastSaleState"), QString("taken back"));
    QVERIFY(!m_shown->item("refundButton")->isEnabled());
}

void TestPastSalesPage::onlyTheLastSaleCanBeVoid()
{
    sell(1);
    sell(1);
    openPage();
    QVERIFY(m_shown->item("voidButton")->isEnabled());
    tapSale(1);
    QVERIFY(!m_shown->item("voidButton")->isEnabled());
}

void TestPastSalesPage::aSecondVoidIsRefusedWithItsReason()
{
    sell(1);
    openPage();
    for (int i = 0; i < 2; ++i) {
        m_shown->tap("voidButton");
        m_shown->tap("confirmButton");
        QTRY_COMPARE(m_shown->all("confirmButton").size(), 0);
    }
    QTRY_COMPARE(m_shown->text("toastText"), QString("The last sale was taken back already."));
    QCOMPARE(figure("voidCount"), 1.0);
}

void TestPastSalesPage::aTicketIsRefunded()
{
    sell(3);
    openPage();
    m_shown->tap(m_shown->all("pastTicket").value(1));
    m_shown->tap("refundButton");
    m_shown->tap("reason-2");
    m_shown->tap("confirmRefund");
    QTRY_COMPARE(figure("refundCount"), 1.0);
    QTRY_COMPARE(m_shown->text("pastSaleState"), QString("1 of 3 taken back"));
    const auto tickets = desk().pastSale(desk().lastSale()["id"].toDouble())["tickets"].toList();
    QVERIFY(!tickets.at(0).toMap()["isReversed"].toBool());
    QVERIFY(tickets.at(1).toMap()["isReversed"].toBool());
    QCOMPARE(m_shown->text("detailPaidOut"), QString("€1.40"));
}

void TestPastSalesPage::allTicketsOfASaleAreRefunded()
{
    sell(3);
    openPage();
    m_shown->tap("refundButton");
    m_shown->tap("refundAll");
    m_shown->tap("reason-0");
    m_shown->tap("confirmRefund");
    QTRY_COMPARE(figure("refundCount"), 3.0);
    QCOMPARE(m_shown->text("detailPaidOut"), QString("€4.20"));
}

void TestPastSalesPage::aRefundNeedsAReason()
{
    sell(1);
    openPage();
    m_shown->tap("refundButton");
    QTRY_COMPARE(m_shown->all("confirmRefund").size(), 1);
    QVERIFY(!m_shown->item("confirmRefund")->isEnabled());
    QVERIFY(m_shown->all("refundAll").isEmpty()); // one ticket is all of it
    m_shown->tap("confirmRefund");
    m_shown->tap("cancelButton");
    QTRY_COMPARE(m_shown->all("cancelButton").size(), 0);
    QCOMPARE(figure("refundCount"), 0.0);
}

void TestPastSalesPage::aTicketThatWasTakenBackIsNotPrintedAgain()
{
    sell(1);
    QVERIFY(desk().voidLastSale());
    openPage();
    m_shown->tap("printCopy");
    QTRY_COMPARE(m_shown->text("toastText"), QString("This ticket was taken back."));
}

void TestPastSalesPage::aPrinterFaultIsShown()
{
    sell(1);
    openPage();
    simulatedPrinter(m_shown->terminal()).setFault("Paper out");
    m_shown->tap("printCopy");
    QTRY_VERIFY(m_shown->text("toastText").contains("Paper out"));
    QCOMPARE(figure("copyCount"), 0.0);
}

void TestPastSalesPage::reasonsHearQuickTouches()
{
    sell(3);
    openPage();
    const auto tickets = m_shown->all("pastTicket");
    Pointer pointer(m_shown->window(), true);
    for (QQuickItem* ticket : tickets) {
        pointer.tap(middleOf(ticket));
        QVERIFY(ticket->property("chosen").toBool());
    }
    m_shown->tap("refundButton");
    QTRY_COMPARE(m_shown->all("reason-0").size(), 1);
    QTest::qWait(200); // the panel comes to rest
    for (const char* reason : {"reason-0", "reason-1", "reason-2", "reason-3"}) {
        pointer.tap(middleOf(m_shown->item(reason)));
        QVERIFY(m_shown->item(reason)->property("chosen").toBool());
    }
}

void TestPastSalesPage::manySalesAreReadInBatches()
{
    for (int i = 0; i < 60; ++i)
        sell(1);
    openPage();
    QQuickItem* list = m_shown->item("pastSales");
    QCOMPARE(list->property("count").toInt(), 50);
    QMetaObject::invokeMethod(list, "positionViewAtEnd");
    QTRY_COMPARE(list->property("count").toInt(), 60);
    QMetaObject::invokeMethod(list, "positionViewAtEnd");
    QTRY_VERIFY(m_shown->texts("pastSaleNumbers").contains("000001"));
}

void TestPastSalesPage::backLeadsToTheZReport()
{
    sell(1);
    openPage();
    m_shown->tap("backButton");
    QTRY_COMPARE(m_shown->all("closeShiftButton").size(), 1);
    QCOMPARE(m_shown->all("backButton").size(), 0);
}

QTEST_MAIN(TestPastSalesPage)
#include "tst_past_sales_page.moc"
