#include "CardCounter.h"
#include "FileSizeLimit.h"
#include "SignalLog.h"

#include <SimulatedPaymentTerminal.h>

#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

using namespace rivo::sales;

/// Payments by card between the driver, the journal and a card terminal.
class TestCardDesk : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_cards = std::make_unique<FakeCards>();
    }

    void aSaleIsConfirmedWhenItIsApproved()
    {
        CardCounter counter(file(), *m_cards);
        QVERIFY(play(counter, "adult child card"));
        QCOMPARE(counter.desk.state(), SalesDesk::AwaitingCard);
        QVERIFY(counter.journal.openPayment());
        QCOMPARE(m_cards->asked, QStringList("authorise 285"));
        QCOMPARE(sold(), 0);
        QCOMPARE(counter.desk.card()->statusText(), QString("busy"));
        QVERIFY(counter.desk.card()->isBusy());
        QVERIFY(!play(counter, "adult"));
        QVERIFY(!play(counter, "cash"));
        QVERIFY(!play(counter, "clear"));
        QVERIFY(!play(counter, "close"));
        QCOMPARE(counter.refusals,
                 QStringList(QVector<QString>(4, "The card payment is not finished.").toList()));
        m_cards->approve();
        QVERIFY(play(counter, "end"));
        QCOMPARE(sold(), 1);
        QCOMPARE(outcomes(), QString("1:1"));
        QCOMPARE(counter.desk.lastSale().value("isCash").toBool(), false);
        QVERIFY(counter.desk.card()->obstacle().isEmpty());
    }

    void aDeclinedPaymentKeepsTheBasket()
    {
        CardCounter counter(file(), *m_cards);
        QVERIFY(play(counter, "adult card"));
        m_cards->decline("expired");
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(counter.refusals, QStringList("expired"));
        QCOMPARE(counter.desk.card()->result(), QString("expired"));
        QCOMPARE(counter.prices(), QVector<qint64>{190});
        QCOMPARE(outcomes(), QString("1:2"));
        QSignalSpy changed(counter.desk.card(), &CardDesk::changed);
        counter.desk.card()->forgetResult();
        QCOMPARE(counter.desk.card()->result(), QString());
        QCOMPARE(changed.count(), 1);
        counter.desk.card()->forgetResult();
        QCOMPARE(changed.count(), 1);
        QVERIFY(play(counter, "cash end"));
        QCOMPARE(sold(), 1);
    }

    void nothingIsBegunThatCannotBeAsked_data()
    {
        QTest::addColumn<QString>("obstacle");
        QTest::newRow("there is no card terminal") << "No card terminal is connected.";
        QTest::newRow("the card terminal has a fault") << "unplugged";
        QTest::newRow("the card terminal does something else") << "The card terminal is busy.";
    }
    void nothingIsBegunThatCannotBeAsked()
    {
        QFETCH(QString, obstacle);
        CardCounter counter(file(), *m_cards);
        QVERIFY(play(counter, "adult"));
        if (obstacle.startsWith("No"))
            m_cards.reset();
        else if (obstacle == "unplugged")
            m_cards->setFault(obstacle);
        else
            m_cards->refund(5);
        QCOMPARE(counter.desk.card()->obstacle(), obstacle);
        const QStringList content = journalContent();
        SignalLog log(&counter.desk);
        SignalLog cards(counter.desk.card());
        QVERIFY(!play(counter, "card"));
        QCOMPARE(log.take(), QStringList("refused(" + obstacle + ")"));
        QVERIFY(!counter.desk.card()->charge(190));
        QVERIFY(!counter.desk.card()->giveBack({}));
        QVERIFY(!counter.desk.card()->abort());
        QVERIFY(!counter.desk.card()->release());
        QCOMPARE(cards.take(), QStringList());
        QCOMPARE(journalContent(), content);
        if (m_cards && m_cards->isBusy())
            m_cards->approve(); // what others asked for is not a payment of this desk
        QCOMPARE(journalContent(), content);
    }

    /// The storage is full at this moment: what the card terminal did is cleared after a restart.
    void aJournalThatFailsStopsEverything_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("cleared"); ///< outcomes after the restart
        QTest::newRow("the payment begins") << "adult"
                                            << "card"
                                            << "";
        QTest::newRow("it is approved") << "adult card"
                                        << "approve"
                                        << "1:1";
        QTest::newRow("it is declined") << "adult card"
                                        << "decline"
                                        << "1:2";
        QTest::newRow("the basket is to be free") << "adult card lost"
                                                  << "release"
                                                  << "1:2";
        QTest::newRow("money begins to go back") << "adult card approve end"
                                                 << "void"
                                                 << "1:1";
        QTest::newRow("money went back") << "adult card approve end void"
                                         << "approve"
                                         << "1:1 2:1";
        QTest::newRow("the day has ended") << "adult card approve end close"
                                           << "day"
                                           << "1:1";
        QTest::newRow("a payment that the driver does not wait for is cleared")
            << "adult card lostpaid free"
            << "last"
            << "1:3 1:1 2:1";
    }
    void aJournalThatFailsStopsEverything()
    {
        QFETCH(QString, before);
        QFETCH(QString, answer);
        QFETCH(QString, cleared);
        const auto step = [this](CardCounter& counter, const QString& name) {
            if (name == "approve")
                m_cards->approve();
            else if (name == "decline")
                m_cards->decline();
            else if (name == "lost" || name == "lostpaid")
                m_cards->lose(name == "lostpaid");
            else if (name == "free" || name == "release")
                counter.desk.card()->release();
            else if (name == "day")
                m_cards->answerDay(190);
            else if (name == "last")
                m_cards->answerLast();
            else
                play(counter, name);
        };
        auto counter = std::make_unique<CardCounter>(file(), *m_cards);
        for (const QString& name : before.split(' '))
            step(*counter, name);
        if (answer == "last")
            QTRY_COMPARE(m_cards->asked.last(), QString("last"));
        {
            const FileSizeLimit limit(1);
            step(*counter, answer);
        }
        QVERIFY(counter->journal.fault().has_value());
        QVERIFY(!counter->refusals.isEmpty());
        QVERIFY(!play(*counter, "card"));
        const int asked = m_cards->asked.size();
        QTest::qWait(10);
        QCOMPARE(m_cards->asked.size(), asked);

        counter.reset();
        if (m_cards->isBusy())
            m_cards->lose(false);
        counter = std::make_unique<CardCounter>(file(), *m_cards);
        QVERIFY(!counter->journal.fault());
        QTRY_VERIFY(answerAll(*counter));
        QCOMPARE(outcomes(), cleared);
    }

    void oneThatRefusesAfterAllHasNotBeenAsked()
    {
        CardCounter counter(file(), *m_cards);
        m_cards->isRefusing = true;
        QVERIFY(play(counter, "adult card"));
        QCOMPARE(counter.refusals, QStringList("The card terminal does not answer."));
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(outcomes(), QString("1:2"));
    }

    void freeTicketsNeedNoCardTerminal()
    {
        CardCounter counter(file(), *m_cards);
        m_cards->setFault("unplugged");
        QVERIFY(play(counter, "free card end"));
        QCOMPARE(sold(), 1);
        QCOMPARE(m_cards->asked, QStringList());
        QVERIFY(play(counter, "void"));
    }

    void aPaymentCanBeStopped()
    {
        CardCounter counter(file(), *m_cards);
        QVERIFY(play(counter, "adult card"));
        QVERIFY(counter.desk.card()->mayAbort());
        QVERIFY(counter.desk.card()->abort());
        QCOMPARE(counter.desk.card()->statusText(), QString("Stopping"));
        QVERIFY(!counter.desk.card()->mayAbort());
        QVERIFY(!counter.desk.card()->abort());
        m_cards->approve(); // too late
        QVERIFY(play(counter, "end"));
        QCOMPARE(sold(), 1);
    }

    void moneyGoesBackToTheCard()
    {
        CardCounter counter(file(), *m_cards);
        QVERIFY(play(counter, "adult child card"));
        m_cards->approve();
        QVERIFY(play(counter, "end adult card"));
        m_cards->approve();
        QVERIFY(play(counter, "end void"));
        QCOMPARE(m_cards->asked.last(), QString("reverse 2"));
        QVERIFY(rowsOf(onlyConnection(), "SELECT * FROM reversal").isEmpty());
        m_cards->decline("not possible");
        QCOMPARE(counter.refusals, QStringList("not possible"));
        QVERIFY(rowsOf(onlyConnection(), "SELECT * FROM reversal").isEmpty());
        QVERIFY(play(counter, "void"));
        m_cards->approve();
        QCOMPARE(rowsOf(onlyConnection(), "SELECT paid_out FROM reversal"), QStringList("190"));
        // A part of a payment, and what is left of it, is refunded.
        const int sale = static_cast<int>(counter.journal.saleOf(1));
        QVERIFY(play(counter, "back:1:late"));
        QCOMPARE(m_cards->asked.last(), QString("refund 190"));
        m_cards->approve();
        QVERIFY(play(counter, QStringLiteral("refund:%1:late").arg(sale)));
        QCOMPARE(m_cards->asked.last(), QString("refund 95"));
        m_cards->approve();
        QCOMPARE(outcomes(), QString("1:1 1:1 2:2 2:1 2:1 2:1"));
        QCOMPARE(counter.journal.runningShift()->cardTakings(), 0);
    }

    void theSimulationAnswersAfterAWhile()
    {
        rivo::payment::SimulatedPaymentTerminal cards;
        cards.setTime(20);
        Counter counter(file(), euro, 0.0, {}, nullptr, &cards);
        QVERIFY(play(counter, "adult card"));
        QCOMPARE(counter.desk.card()->statusText(), QString("Simulated card terminal"));
        QVERIFY(play(counter, "end"));
        QCOMPARE(sold(), 1);
        QVERIFY(play(counter, "adult card"));
        QVERIFY(counter.desk.card()->abort());
        QTRY_COMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(sold(), 1);
        cards.setFault("off");
        cards.setFault("off");
        QVERIFY(!play(counter, "card"));
        cards.setFault({});
        cards.setVerdict(rivo::payment::Verdict::Declined);
        QVERIFY(play(counter, "card"));
        QTRY_COMPARE(counter.desk.card()->result(), QString("Simulated answer"));
        QVERIFY(!cards.authorise(0));
        QVERIFY(!cards.reverse(0, 5));
        QVERIFY(!cards.refund(0));
        QVERIFY(!cards.abort());
    }

private:
    /// Answers what is asked until nothing is.
    bool answerAll(const CardCounter& counter)
    {
        if (m_cards->isBusy()) {
            if (m_cards->asked.last() == "last")
                m_cards->answerLast();
            else if (m_cards->asked.last() == "day")
                m_cards->answerDay(190);
            else
                m_cards->approve();
            return false;
        }
        return !counter.journalOf().openPayment() && counter.desk.card()->obstacle().isEmpty() &&
               counter.journalOf().unbookedCharges().isEmpty();
    }

    QString file() const { return m_folder->filePath("journal.db"); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakeCards> m_cards;
};

QTEST_GUILESS_MAIN(TestCardDesk)
#include "tst_card_desk.moc"
