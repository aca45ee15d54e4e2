#include "JournalFiles.h"
#include "Table.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace rivo::sales;
using rivo::payment::Receipt;
using rivo::payment::Verdict;

namespace
{

Receipt receipt(int number, Minor amount)
{
    Receipt made;
    made.number = number;
    made.trace = 100 + number;
    made.amount = amount;
    made.terminalId = "12345678";
    made.card = "girocard **** 1234";
    made.at = noon;
    return made;
}

CardOutcome approved(const CardPayment& payment, int number)
{
    return {payment.id, Verdict::Approved, receipt(number, payment.amount), {}};
}

CardPayment backOf(const CardPayment& charge, const QVector<qint64>& tickets = {},
                   Minor amount = -1)
{
    CardPayment wanted;
    wanted.origin = charge.id;
    wanted.amount = amount < 0 ? charge.amount : amount;
    wanted.tickets = tickets;
    wanted.kind = ReversalKind::Refund;
    wanted.reason = tickets.isEmpty() ? QString() : "late";
    return wanted;
}

/// A sale of one ticket by card.
CardPayment sellByCard(Journal& journal, Minor price, int number)
{
    const auto charge = journal.beginCharge(price, noon);
    if (!charge ||
        !journal.confirmSale({ticket(price)}, {PayMethod::Card}, noon, approved(*charge, number)))
        qFatal("not sold");
    return *charge;
}

} // namespace

/// Payments by card in the journal: begun before they are asked for, ended once.
class TestJournalPayments : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void aPaymentIsOpenUntilItsOutcomeIsKnown()
    {
        {
            OpenJournal journal(file());
            QVERIFY(!journal.openPayment());
            const auto charge = journal.beginCharge(190, noon);
            QVERIFY(charge);
            QCOMPARE(charge->amount, 190);
            QVERIFY(!journal.beginCharge(5, noon)); // one at a time
            QVERIFY(!journal.beginReturn(backOf(*charge), noon));
            QCOMPARE(kindOf(journal.fault()), "none");
        }
        {
            OpenJournal again(file());
            const auto open = again.openPayment();
            QVERIFY(open);
            QCOMPARE(open->amount, 190);
            QVERIFY(!open->verdict);
            QVERIFY(again.recordOutcome({open->id, Verdict::Unknown, {}, "free"}, noon));
            QVERIFY(again.openPayment());
            QVERIFY(again.openPayment()->verdict == Verdict::Unknown);
            QVERIFY(again.recordOutcome({open->id, Verdict::Declined, {}, "no"}, noon));
            QVERIFY(!again.openPayment());
        }
        OpenJournal last(file());
        QCOMPARE(kindOf(last.fault()), "none");
        QVERIFY(last.beginCharge(5, noon));
    }

    void nothingIsBegunForNothing()
    {
        OpenJournal journal(file());
        const QStringList content = journalContent();
        QVERIFY(!journal.beginCharge(0, noon));
        QVERIFY(!journal.beginCharge(-5, noon));
        QCOMPARE(kindOf(journal.fault()), "none");
        QCOMPARE(journalContent(), content);
    }

    void aSaleAndItsOutcomeAreOneTransaction()
    {
        OpenJournal journal(file());
        QVERIFY(journal.appendToBasket(ticket(190)));
        const auto charge = journal.beginCharge(190, noon);
        QVERIFY(journal.confirmSale({ticket(190)}, {PayMethod::Card}, noon, approved(*charge, 7)));
        QVERIFY(!journal.openPayment());
        QCOMPARE(journal.basket().size(), 0);
        const qint64 sale = journal.saleOf(1);
        const auto of = journal.chargeOf(sale);
        QVERIFY(of);
        QCOMPARE(of->id, charge->id);
        QCOMPARE(of->receipt.number, 7);
        QCOMPARE(of->receipt.trace, 107);
        QCOMPARE(of->receipt.card, "girocard **** 1234");
        QCOMPARE(of->receipt.at, noon);
        QCOMPARE(journal.saleOfCharge(charge->id), sale);
        QCOMPARE(journal.saleOfCharge(99), 0);
        QVERIFY(!journal.chargeOf(99));
        QVERIFY(journal.knowsReceipt(receipt(7, 190)));
        QVERIFY(!journal.knowsReceipt(receipt(8, 190)));
        QVERIFY(journal.unbookedCharges().isEmpty());
    }

    void aSecondOutcomeThatIsKnownIsNotAccepted()
    {
        OpenJournal journal(file());
        const auto charge = journal.beginCharge(190, noon);
        QVERIFY(journal.recordOutcome(approved(*charge, 1), noon));
        QVERIFY(!journal.recordOutcome({charge->id, Verdict::Declined, {}, {}}, noon));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM outcome"), QStringList("1"));
    }

    void aChargeWithoutASaleIsFoundUntilItIsGivenBack()
    {
        OpenJournal journal(file());
        const auto charge = journal.beginCharge(190, noon);
        QVERIFY(journal.recordOutcome(approved(*charge, 1), noon));
        QCOMPARE(journal.unbookedCharges().size(), 1);
        QCOMPARE(journal.unbookedCharges().at(0).id, charge->id);
        const auto first = journal.beginReturn(backOf(*charge), noon);
        QVERIFY(journal.recordOutcome({first->id, Verdict::Declined, {}, "no"}, noon));
        QCOMPARE(journal.unbookedCharges().size(), 1);
        const auto second = journal.beginReturn(backOf(*charge), noon);
        QVERIFY(journal.recordOutcome(approved(*second, 2), noon));
        QVERIFY(journal.unbookedCharges().isEmpty());
    }

    void whatGoesBackKeepsItsTicketsAndReason()
    {
        OpenJournal journal(file());
        const CardPayment charge = sellByCard(journal, 190, 1);
        QVERIFY(journal.isReversible(*journal.cardPayment(charge.id)));
        QVERIFY(journal.beginReturn(backOf(charge, {1}), noon));
        const auto open = journal.openPayment();
        QVERIFY(open->direction == CardDirection::Return);
        QCOMPARE(open->tickets, QVector<qint64>{1});
        QCOMPARE(open->reason, "late");
        QVERIFY(open->kind == ReversalKind::Refund);
        QCOMPARE(open->origin, charge.id);
        const auto left = journal.reverse(journal.saleOfCharge(charge.id), open->tickets,
                                          open->kind, open->reason, 190, noon, approved(*open, 2));
        QVERIFY(left);
        QVERIFY(left->isReversed());
        QVERIFY(!journal.openPayment());
        QVERIFY(!journal.isReversible(*journal.cardPayment(charge.id)));
    }

    void aClosedDayCannotBeReversed()
    {
        OpenJournal journal(file());
        const CardPayment charge = sellByCard(journal, 190, 1);
        QCOMPARE(journal.shiftOfOpenCardDay(), 0);
        QVERIFY(journal.closeShift(noon));
        QCOMPARE(journal.shiftOfOpenCardDay(), 17);
        QVERIFY(journal.beginCardDay(17, noon));
        QVERIFY(journal.isReversible(*journal.cardPayment(charge.id)));
        QCOMPARE(journal.shiftOfOpenCardDay(), 17);
        QCOMPARE(journal.recordCardDay(17, 190, noon).value(), 0);
        QCOMPARE(journal.shiftOfOpenCardDay(), 0);
        QVERIFY(!journal.isReversible(*journal.cardPayment(charge.id)));
        const ShiftReport closed = journal.closedShift(17).value();
        QVERIFY(closed.isCardDayEnded);
        QCOMPARE(closed.cardDayTotal, 190);
        QCOMPARE(closed.cardDayDifference, 0);
    }

    void aDifferenceOfTheDayIsNoted()
    {
        OpenJournal journal(file());
        sellByCard(journal, 190, 1);
        sellByCard(journal, 95, 2);
        QVERIFY(journal.closeShift(noon));
        QVERIFY(!journal.closedShift(17)->isCardDayEnded);
        QVERIFY(journal.beginCardDay(17, noon));
        QCOMPARE(journal.recordCardDay(17, 300, noon).value(), 15);
        QCOMPARE(journal.closedShift(17)->cardDayDifference, 15);
    }

    void aDayWhoseAnswerWasLostIsSeenByTheNext()
    {
        OpenJournal journal(file());
        sellByCard(journal, 190, 1);
        QVERIFY(journal.closeShift(noon));
        QVERIFY(journal.beginCardDay(17, noon));
        QCOMPARE(journal.shiftOfOpenCardDay(), 17);
        sellByCard(journal, 95, 2);
        // The terminal had closed its day: its next total is that of the payment since.
        QVERIFY(journal.beginCardDay(17, noon));
        QCOMPARE(journal.recordCardDay(17, 95, noon).value(), 0);
        QCOMPARE(journal.shiftOfOpenCardDay(), 0);
    }

    void aDayWhoseAnswerWasLostMayNotHaveBeenClosed()
    {
        OpenJournal journal(file());
        sellByCard(journal, 190, 1);
        QVERIFY(journal.closeShift(noon));
        QVERIFY(journal.beginCardDay(17, noon));
        sellByCard(journal, 95, 2);
        QVERIFY(journal.beginCardDay(17, noon));
        QCOMPARE(journal.recordCardDay(17, 285, noon).value(), 0);
    }

    void aDayThatWasJustClosedHasToAddUp()
    {
        OpenJournal journal(file());
        sellByCard(journal, 190, 1);
        QVERIFY(journal.closeShift(noon));
        QVERIFY(journal.beginCardDay(17, noon));
        QCOMPARE(journal.recordCardDay(17, 0, noon).value(), -190);
    }

    /// Every byte stays for a later look.
    void paymentsThatContradictEachOtherAreDamage_data()
    {
        const Table<QString> row("harm");
        for (const char* harm :
             {"UPDATE payment SET amount = amount + 1 WHERE direction = 1",
              "UPDATE payment SET amount = amount + 1 WHERE direction = 2",
              "UPDATE payment SET amount = 0 WHERE record = 1", "UPDATE payment SET direction = 2",
              "UPDATE payment SET origin = NULL", "DELETE FROM outcome WHERE record = 2",
              "UPDATE outcome SET verdict = 2 WHERE record = 2",
              "UPDATE outcome SET verdict = 3 WHERE record = 2", "DELETE FROM payment",
              "UPDATE sale SET pay_method = 1", "UPDATE card_sale SET sale = 99 WHERE payment = 1",
              "UPDATE card_reversal SET payment = 1",
              "UPDATE card_day SET total = NULL WHERE total = 95", "DELETE FROM card_day",
              "DROP TABLE payment_ticket", "DROP TABLE card_day"})
            row(harm, harm);
    }
    void paymentsThatContradictEachOtherAreDamage()
    {
        QFETCH(QString, harm);
        {
            OpenJournal journal(file());
            const CardPayment charge = sellByCard(journal, 190, 1);
            const auto back = journal.beginReturn(backOf(charge, {1}), noon);
            QVERIFY(journal.reverse(journal.saleOfCharge(charge.id), {1}, ReversalKind::Refund,
                                    "late", 190, noon, approved(*back, 2)));
            sellByCard(journal, 95, 3);
            QVERIFY(journal.closeShift(noon));
            QVERIFY(journal.beginCardDay(17, noon));
            QVERIFY(journal.recordCardDay(17, 95, noon));
        }
        {
            Journal whole;
            QCOMPARE(kindOf(whole.open(file(), euro, 17)), "none");
        }
        executeIn(file(), {"PRAGMA foreign_keys=OFF", harm, "PRAGMA journal_mode=delete"});
        const QMap<QString, QByteArray> before = filesIn(m_folder->path());
        Journal journal;
        QCOMPARE(kindOf(journal.open(file(), euro, 17)), "damaged");
        QVERIFY(!journal.beginCharge(5, noon));
        QVERIFY(!journal.openPayment());
        QVERIFY(journal.unbookedCharges().isEmpty());
        QVERIFY(!journal.chargeOf(3));
        QCOMPARE(journal.saleOfCharge(1), 0);
        QVERIFY(!journal.knowsReceipt(receipt(1, 190)));
        QVERIFY(!journal.isReversible(CardPayment()));
        QCOMPARE(journal.shiftOfOpenCardDay(), 0);
        QVERIFY(!journal.beginCardDay(17, noon));
        QVERIFY(!journal.recordCardDay(17, 5, noon));
        QVERIFY(!journal.recordOutcome({1, Verdict::Declined, {}, {}}, noon));
        QCOMPARE(filesIn(m_folder->path()), before);
    }

private:
    QString file() const { return fileIn(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestJournalPayments)
#include "tst_journal_payments.moc"
