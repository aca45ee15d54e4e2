#include "CardCounter.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

using namespace rivo::sales;

/// Payments with an unknown result, and the end of the card terminal's day.
class TestCardClearing : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        m_cards = std::make_unique<FakeCards>();
    }

    void aLostAnswerIsClearedWithTheCardTerminal_data()
    {
        QTest::addColumn<bool>("isDone");
        QTest::addColumn<bool>("isRestarted");
        QTest::newRow("paid") << true << false;
        QTest::newRow("not paid") << false << false;
        QTest::newRow("paid, after a restart") << true << true;
        QTest::newRow("not paid, after a restart") << false << true;
    }
    void aLostAnswerIsClearedWithTheCardTerminal()
    {
        QFETCH(bool, isDone);
        QFETCH(bool, isRestarted);
        auto counter = std::make_unique<CardCounter>(file(), *m_cards);
        QVERIFY(play(*counter, "adult card"));
        m_cards->approve();
        QVERIFY(play(*counter, "end adult card"));
        if (isRestarted)
            counter.reset();
        m_cards->lose(isDone); // the same amount as the one before
        if (isRestarted)
            counter = std::make_unique<CardCounter>(file(), *m_cards);
        QCOMPARE(counter->desk.state(), SalesDesk::AwaitingCard);
        QVERIFY(counter->desk.card()->isClearing());
        QVERIFY(!counter->desk.card()->mayAbort());
        QCOMPARE(counter->desk.card()->obstacle(),
                 QString("The last card payment is not cleared yet."));
        QTRY_COMPARE(m_cards->asked.last(), QString("last"));
        m_cards->lose(false); // not heard either
        QTRY_COMPARE(m_cards->asked.count("last"), 2);
        m_cards->answerLast();
        QVERIFY(play(*counter, "end"));
        QCOMPARE(sold(), isDone ? 2 : 1);
        QCOMPARE(outcomes(), isDone ? QString("1:1 1:1") : QString("1:1 1:2"));
        QCOMPARE(counter->prices().size(), isDone ? 0 : 1);
    }

    void thePowerMayGoBeforeTheCardTerminalIsAsked()
    {
        {
            CardCounter counter(file(), *m_cards);
            QVERIFY(play(counter, "adult"));
            QVERIFY(counter.journal.beginCharge(190, QDateTime::currentDateTime()));
        }
        CardCounter counter(file(), *m_cards);
        QCOMPARE(m_cards->asked, QStringList("last"));
        m_cards->answerLast();
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(outcomes(), QString("1:2"));
        QCOMPARE(counter.prices(), QVector<qint64>{190});
    }

    void theBasketCanBeFreedAndThePaymentIsGivenBack()
    {
        auto counter = std::make_unique<CardCounter>(file(), *m_cards);
        QVERIFY(play(*counter, "adult card"));
        QVERIFY(!counter->desk.card()->release()); // it is not lost
        m_cards->setFault("unplugged");
        m_cards->lose(true);
        QVERIFY(counter->desk.card()->mayRelease());
        QCOMPARE(counter->desk.card()->statusText(),
                 QString("Asking the card terminal whether it was paid"));
        QVERIFY(counter->desk.card()->release());
        QVERIFY(!counter->desk.card()->release());
        QCOMPARE(counter->desk.state(), SalesDesk::Selling);
        QVERIFY(play(*counter, "cash end adult"));
        QVERIFY(!play(*counter, "card"));
        counter.reset();
        counter = std::make_unique<CardCounter>(file(), *m_cards);
        QCOMPARE(counter->desk.state(), SalesDesk::Selling);
        m_cards->setFault({});
        QTRY_COMPARE(m_cards->asked.last(), QString("last"));
        m_cards->answerLast();
        QTRY_COMPARE(m_cards->asked.last(), QString("reverse 1"));
        m_cards->approve();
        QCOMPARE(outcomes(), QString("1:3 1:1 2:1"));
        QCOMPARE(sold(), 1);
        QCOMPARE(counter->refusals, QStringList("A card payment without tickets was given back."));
        QCOMPARE(counter->prices(), QVector<qint64>{190});
        QVERIFY(counter->journal.unbookedCharges().isEmpty());
    }

    void ticketsInDoubtComeBeforeMoneyThatGoesBack_data()
    {
        QTest::addColumn<bool>("isOutFirst");
        QTest::newRow("the tickets are out first") << true;
        QTest::newRow("the money is back first") << false;
    }
    void ticketsInDoubtComeBeforeMoneyThatGoesBack()
    {
        QFETCH(bool, isOutFirst);
        auto counter = std::make_unique<CardCounter>(file(), *m_cards);
        QVERIFY(play(*counter, "adult card"));
        m_cards->lose(true);
        QVERIFY(counter->desk.card()->release());
        QTRY_COMPARE(m_cards->asked.last(), QString("last"));
        m_cards->answerLast();
        QTRY_COMPARE(m_cards->asked.last(), QString("reverse 1"));
        QVERIFY(play(*counter, "child cash")); // while the money of the other goes back
        counter.reset();
        m_cards->lose(true);
        counter = std::make_unique<CardCounter>(file(), *m_cards);
        QCOMPARE(counter->desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter->desk.ticketsInDoubt(), 2);
        if (isOutFirst)
            QVERIFY(play(*counter, "print end"));
        QTRY_COMPARE(m_cards->asked.count("last"), 2);
        m_cards->answerLast();
        if (!isOutFirst)
            QVERIFY(play(*counter, "print end"));
        QCOMPARE(outcomes(), QString("1:3 1:1 2:1"));
        QVERIFY(counter->journal.unprintedTickets().isEmpty());
        QVERIFY(play(*counter, "clear senior cash end"));
        QCOMPARE(sold(), 2);
    }

    void whatCannotBeGivenBackIsTriedAgainWithTheNextShift()
    {
        CardCounter counter(file(), *m_cards);
        QVERIFY(play(counter, "adult card"));
        m_cards->lose(true);
        QVERIFY(counter.desk.card()->release());
        QVERIFY(play(counter, "clear"));
        QTRY_COMPARE(m_cards->asked.last(), QString("last"));
        m_cards->answerLast();
        for (int attempt = 1; attempt <= 3; ++attempt) {
            QTRY_COMPARE(m_cards->asked.count("reverse 1"), attempt);
            m_cards->decline();
        }
        QTest::qWait(10);
        QCOMPARE(m_cards->asked.count("reverse 1"), 3);
        QCOMPARE(counter.refusals,
                 QStringList("A card payment without tickets could not be given back: no"));
        QVERIFY(play(counter, "close"));
        QCOMPARE(m_cards->asked.count("reverse 1"), 4);
        m_cards->approve();
        QTRY_COMPARE(m_cards->asked.last(), QString("day"));
        m_cards->answerDay(0);
        QCOMPARE(counter.journal.closedShift(17)->cardDayDifference, 0);
        QVERIFY(counter.journal.closedShift(17)->isCardDayEnded);
    }

    void moneyThatGoesBackIsClearedAfterARestart_data()
    {
        QTest::addColumn<bool>("isDone");
        QTest::newRow("it went back") << true;
        QTest::newRow("it did not") << false;
    }
    void moneyThatGoesBackIsClearedAfterARestart()
    {
        QFETCH(bool, isDone);
        auto counter = std::make_unique<CardCounter>(file(), *m_cards);
        QVERIFY(play(*counter, "adult card"));
        m_cards->approve();
        QVERIFY(play(*counter, "end void"));
        counter.reset();
        m_cards->lose(isDone);
        m_cards->setFault("unplugged");
        counter = std::make_unique<CardCounter>(file(), *m_cards);
        QCOMPARE(counter->desk.state(), SalesDesk::AwaitingCard);
        QVERIFY(counter->desk.card()->release());
        QVERIFY(!play(*counter, "close")); // the report of the shift needs to know
        m_cards->setFault({});
        QTRY_COMPARE(m_cards->asked.last(), QString("last"));
        m_cards->answerLast();
        QCOMPARE(counter->journal.runningShift()->cardTakings(), isDone ? 0 : 190);
        QCOMPARE(outcomes(), isDone ? QString("1:1 2:3 2:1") : QString("1:1 2:3 2:2"));
        QVERIFY(play(*counter, "close"));
    }

    void theDayOfTheCardTerminalEndsAfterTheShift()
    {
        CardCounter counter(file(), *m_cards);
        QSignalSpy ended(counter.desk.card(), &CardDesk::cardDayEnded);
        QVERIFY(play(counter, "adult card"));
        m_cards->approve();
        QVERIFY(play(counter, "end close"));
        QCOMPARE(m_cards->asked.last(), QString("day"));
        QCOMPARE(counter.desk.card()->obstacle(), QString("The card terminal is busy."));
        m_cards->lose(false);
        QTRY_COMPARE(m_cards->asked.count("day"), 2);
        m_cards->answerDay(191);
        QCOMPARE(ended.count(), 1);
        const QVariantMap report = counter.desk.zReport(17);
        QCOMPARE(report.value("isCardDayEnded").toBool(), true);
        QCOMPARE(report.value("cardDayTotal").toDouble(), 191.0);
        QCOMPARE(report.value("cardDayDifference").toDouble(), 1.0);
        QCOMPARE(counter.refusals, QStringList("Shift 17: the card terminal's total differs by " +
                                               euro.text(1) + "."));
        QVERIFY(play(counter, "close")); // nothing was paid by card
        QTest::qWait(10);
        QCOMPARE(m_cards->asked.count("day"), 2);
    }

    void aDayThatEndsWhileThePowerGoesIsSeenByTheNext()
    {
        auto counter = std::make_unique<CardCounter>(file(), *m_cards);
        QVERIFY(play(*counter, "adult card"));
        m_cards->approve();
        QVERIFY(play(*counter, "end close"));
        QCOMPARE(m_cards->asked.last(), QString("day"));
        counter.reset();
        m_cards->answerDay(190); // not heard
        counter = std::make_unique<CardCounter>(file(), *m_cards);
        QCOMPARE(m_cards->asked.count("day"), 2);
        m_cards->answerDay(0);
        QVERIFY(counter->journal.closedShift(17)->isCardDayEnded);
        QCOMPARE(counter->journal.closedShift(17)->cardDayDifference, 0);
        QCOMPARE(counter->refusals, QStringList());
    }

    void aDayThatIsRefusedWaitsForTheNextShift()
    {
        CardCounter counter(file(), *m_cards);
        QVERIFY(play(counter, "adult card"));
        m_cards->approve();
        QVERIFY(play(counter, "end close"));
        m_cards->decline();
        QTest::qWait(10);
        QCOMPARE(m_cards->asked.count("day"), 1);
        QVERIFY(play(counter, "close"));
        QCOMPARE(m_cards->asked.count("day"), 2);
    }

private:
    QString file() const { return m_folder->filePath("journal.db"); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakeCards> m_cards;
};

QTEST_GUILESS_MAIN(TestCardClearing)
#include "tst_card_clearing.moc"
