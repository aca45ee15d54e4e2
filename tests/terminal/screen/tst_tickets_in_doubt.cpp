#include "PageTest.h"

/// A terminal that stopped while it printed paid tickets: which they are, and what became of them.
class TestTicketsInDoubt : public PageTest
{
    Q_OBJECT

private slots:
    void theyAreShownWithTheirNumbers();
    void theListFollowsTheAnswers();
    void theListFollowsThePrinter();
    void theBasketFollowsThePrinter();
    void aSaleThatWasNotInterruptedHasNone();

private:
    static constexpr int soldTickets = 12;

    void start() override;
    void stopWhilePrinting();
    void confirmFirst();
    /// How many tickets of the list have this flag.
    int countOf(const char* flag);
    /// Numbers that are in sight as a whole.
    QStringList numbersInView();
    static QString number(int ticket) { return QString("%1").arg(ticket, 6, 10, QChar('0')); }
};

void TestTicketsInDoubt::start()
{
    show(exampleFeed("coast-line"), "sell",
         [](rivo::terminal::Terminal::Settings& settings) { settings.ticketTime = 300; });
    for (int i = 0; i < soldTickets; ++i)
        QVERIFY(desk().add(i % 4));
}

void TestTicketsInDoubt::stopWhilePrinting()
{
    m_shown->tap("payCash");
    QTRY_COMPARE(m_shown->terminal().printer().lastPrinted().has_value(), true);
    m_shown->restart();
    m_shown->window()->grabWindow();
}

void TestTicketsInDoubt::confirmFirst()
{
    m_shown->tap("confirmDoubt");
    m_shown->tap("confirmButton");
    QTRY_COMPARE(m_shown->all("confirmButton").size(), 0);
    m_shown->window()->grabWindow();
}

int TestTicketsInDoubt::countOf(const char* flag)
{
    int count = 0;
    const QVariantList tickets = desk().interruptedSale();
    for (const QVariant& ticket : tickets)
        count += ticket.toMap()[flag].toBool() ? 1 : 0;
    return count;
}

QStringList TestTicketsInDoubt::numbersInView()
{
    QStringList numbers;
    QQuickItem* list = m_shown->item("ticketsInDoubt");
    if (list == nullptr)
        return numbers;
    for (QQuickItem* text : m_shown->all("doubtNumber")) {
        const QRectF place = text->mapRectToItem(list, text->boundingRect());
        if (list->boundingRect().contains(place) && !text->property("truncated").toBool())
            numbers.append(text->property("text").toString());
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

void TestTicketsInDoubt::theyAreShownWithTheirNumbers()
{
    stopWhilePrinting();
    const QString first = desk().firstTicketInDoubt();
    QVERIFY(first.toInt() > 1);
    QCOMPARE(desk().interruptedSale().size(), soldTickets + 1 - first.toInt());
    QVERIFY(m_shown->item("ticketsInDoubt") != nullptr);
    QTRY_COMPARE(numbersInView().value(0), first);
    QVERIFY(numbersInView().size() >= 2);
    QCOMPARE(countOf("isOut"), 0);
    QCOMPARE(countOf("isInDoubt"), desk().interruptedSale().size());
    QVERIFY(m_shown->all("basketLines").isEmpty());
    QVERIFY(!m_shown->item("doubtText")->property("truncated").toBool());
    QVERIFY(m_shown->item("ticketsInDoubt")->height() > 0);
}

void TestTicketsInDoubt::theListFollowsTheAnswers()
{
    stopWhilePrinting();
    while (desk().ticketsInDoubt() > 2) {
        const QString first = desk().firstTicketInDoubt();
        QTRY_VERIFY2(numbersInView().contains(first), qPrintable(numbersInView().join(' ')));
        confirmFirst();
        QCOMPARE(countOf("isInDoubt"), desk().ticketsInDoubt());
        QCOMPARE(countOf("isOut"), desk().interruptedSale().size() - desk().ticketsInDoubt());
    }
    QTRY_VERIFY(numbersInView().contains(number(soldTickets - 1)));
    confirmFirst();
    confirmFirst();
    QTRY_COMPARE(desk().state(), SalesDesk::Selling);
    QVERIFY(m_shown->all("ticketsInDoubt").isEmpty());
    QCOMPARE(m_shown->all("basketLines").size(), 1);
}

void TestTicketsInDoubt::theListFollowsThePrinter()
{
    stopWhilePrinting();
    m_shown->tap("printDoubts");
    m_shown->tap("confirmButton");
    QCOMPARE(countOf("isInDoubt"), 0);
    const int first = soldTickets - desk().interruptedSale().size() + 1;
    QSet<int> seen; // numbers that were in view while they were the next to come out
    while (desk().state() == SalesDesk::Printing) {
        QTest::qWait(10);
        const int next = first + countOf("isOut");
        if (numbersInView().contains(number(next)))
            seen.insert(next);
    }
    QVERIFY2(seen.size() > (soldTickets - first) / 2, qPrintable(number(seen.size())));
    QTRY_COMPARE(desk().state(), SalesDesk::Selling);
    QVERIFY(m_shown->all("ticketsInDoubt").isEmpty());
    QCOMPARE(desk().interruptedSale(), QVariantList());
}

void TestTicketsInDoubt::theBasketFollowsThePrinter()
{
    QQuickItem* list = m_shown->item("basketLines");
    QMetaObject::invokeMethod(list, "positionViewAtBeginning");
    m_shown->tap("payCash");
    QTRY_VERIFY(m_shown->terminal().printer().lastPrinted().has_value() &&
                m_shown->terminal().printer().lastPrinted()->ticket.number >= soldTickets - 2);
    QVERIFY(list->property("contentY").toReal() - list->property("originY").toReal() > 0);
    QTRY_COMPARE(desk().state(), SalesDesk::Selling);
}

void TestTicketsInDoubt::aSaleThatWasNotInterruptedHasNone()
{
    m_shown->tap("payCash");
    QCOMPARE(desk().interruptedSale(), QVariantList());
    QVERIFY(m_shown->all("ticketsInDoubt").isEmpty());
    QTRY_COMPARE(desk().state(), SalesDesk::Selling);
}

QTEST_MAIN(TestTicketsInDoubt)
#include "tst_tickets_in_doubt.moc"
