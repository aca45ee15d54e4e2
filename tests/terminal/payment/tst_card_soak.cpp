#include "Counter.h"
#include "VirtualCard.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <CardDesk.h>

#include <memory>

using namespace rivo;
using namespace rivo::sales;

namespace
{

/// A till at a card terminal. Made anew over the same file, it is the till after a restart.
struct Till
{
    Till(const QString& file, const payment::ZvtSettings& settings)
        : cards(settings), counter(file, euro, 0.0, {}, nullptr, &cards)
    {
        rowsOf(onlyConnection(), "PRAGMA synchronous=OFF"); // no matter here, and much faster
        counter.desk.card()->setRetryTime(10);
        cards.start();
    }

    bool waitFor(const std::function<bool()>& isReached)
    {
        return QTest::qWaitFor(isReached, 20000);
    }
    bool isQuiet() const
    {
        return counter.desk.state() == SalesDesk::Selling &&
               counter.desk.card()->obstacle().isEmpty();
    }

    payment::ZvtTerminal cards;
    Counter counter;
};

qint64 valueOf(const char* statement)
{
    return rowsOf(onlyConnection(), statement).value(0).toLongLong();
}

} // namespace

/// Many payments by card through faults of the card terminal and restarts of this program: its
/// books, the journal and the reports of the shifts agree to the cent.
class TestCardSoak : public QObject
{
    Q_OBJECT

private slots:
    void booksAgree()
    {
        bool isNumber = false;
        const int asked = qEnvironmentVariableIntValue("RIVO_CARD_PAYMENTS", &isNumber);
        const int payments = isNumber ? asked : 200;
        const int seed = qEnvironmentVariableIntValue("RIVO_CARD_SEED") + 20261122;
        QRandomGenerator random(static_cast<quint32>(seed));
        const QTemporaryDir folder;
        VirtualCard card({"--books", folder.filePath("books"), "--seed", QString::number(seed),
                          "--faults", "0.3", "--delay", "20", "--outage", "5", "--stuck", "5"});
        const payment::ZvtSettings settings = card.settings(60);
        const QString file = folder.filePath("journal.db");
        auto till = std::make_unique<Till>(file, settings);

        const auto restart = [&] {
            till.reset();
            till = std::make_unique<Till>(file, settings);
        };
        const auto settle = [&] {
            while (till->counter.desk.state() != SalesDesk::Selling ||
                   !till->counter.desk.card()->obstacle().isEmpty()) {
                if (till->counter.desk.state() == SalesDesk::Interrupted)
                    till->counter.desk.printTicketsInDoubt();
                if (till->counter.desk.card()->mayRelease() && random.bounded(50) == 0)
                    till->counter.desk.card()->release();
                if (random.bounded(400) == 0)
                    restart();
                QTest::qWait(1);
            }
        };

        int asks = 0;
        int restarts = 0;
        int returns = 0;
        int releases = 0;
        while (asks < payments) {
            settle();
            SalesDesk& desk = till->counter.desk;
            QVERIFY(desk.clear());
            const QVector<int> tiles{AdultSingle, ChildSingle, DayTicket, TooExact};
            for (int count = 1 + random.bounded(3); count > 0; --count)
                QVERIFY(desk.add(tiles.at(random.bounded(tiles.size()))));
            if (random.bounded(10) == 0) {
                QVERIFY(desk.pay(SalesDesk::Cash));
                continue;
            }
            // The connection may be lost at this moment: then nothing is begun.
            if (!desk.pay(SalesDesk::Card))
                continue;
            ++asks;
            if (random.bounded(8) == 0) { // stopped at any moment
                QTest::qWait(random.bounded(20));
                if (till->counter.desk.card()->mayAbort())
                    till->counter.desk.card()->abort();
            }
            if (random.bounded(6) == 0) { // the power is cut at any moment
                QTest::qWait(random.bounded(12));
                restart();
                ++restarts;
                continue;
            }
            if (random.bounded(6) == 0) { // the driver does not wait
                till->waitFor([&] {
                    return till->counter.desk.state() != SalesDesk::AwaitingCard ||
                           till->counter.desk.card()->mayRelease();
                });
                releases += till->counter.desk.card()->release() ? 1 : 0;
            }
            if (random.bounded(6) == 0) {
                settle();
                const QVariantMap sale = till->counter.desk.lastSale();
                if (!sale.isEmpty() && random.bounded(3) != 0) {
                    returns += till->counter.desk.refundTicket(
                                   sale.value("firstTicket").toString().toDouble(), "late")
                                   ? 1
                                   : 0;
                } else {
                    returns += till->counter.desk.voidLastSale() ? 1 : 0;
                }
                if (random.bounded(6) == 0) {
                    QTest::qWait(random.bounded(12));
                    restart();
                    ++restarts;
                }
            }
            if (random.bounded(40) == 0) {
                settle();
                QVERIFY(till->counter.desk.clear());
                QVERIFY(till->counter.desk.closeShift());
                if (random.bounded(3) == 0)
                    restart();
            }
        }
        QVERIFY(card.say("faults 0"));
        settle();
        QVERIFY(till->counter.desk.clear());
        QVERIFY(till->counter.desk.closeShift());
        const auto isDayEnded = [&] { return till->counter.journal.shiftOfOpenCardDay() == 0; };
        QVERIFY(till->waitFor([&] { return isDayEnded() && till->isQuiet(); }));

        compare(card.entries(), *till);
        qInfo("%d payments asked for, %lld sales by card, %d given back, %d restarts, %d released, "
              "%lld cleared later, %lld declined",
              asks, valueOf("SELECT COUNT(*) FROM card_sale"), returns, restarts, releases,
              valueOf("SELECT COUNT(*) FROM outcome WHERE reason LIKE 'cleared%'"),
              valueOf("SELECT COUNT(*) FROM outcome WHERE verdict = 2"));
    }

private:
    /// Each transaction of the card terminal is an outcome of the journal, and the other way round.
    void compare(const QJsonArray& entries, Till& till)
    {
        QStringList ofTerminal;
        QStringList ofJournal;
        qint64 sum = 0;
        qint64 days = 0;
        for (const QJsonValue& each : entries) {
            const qint64 amount = each["amount"].toInt();
            if (each["kind"] == QLatin1String("day")) {
                days += qMax(Q_INT64_C(0), amount); // it reports no negative sum
                continue;
            }
            const bool isPayment = each["kind"] == QLatin1String("payment");
            sum += isPayment ? amount : -amount;
            ofTerminal.append(QStringLiteral("%1|%2|%3")
                                  .arg(each["trace"].toInt())
                                  .arg(isPayment ? 1 : 2)
                                  .arg(amount));
        }
        ofJournal = rowsOf(onlyConnection(),
                           "SELECT trace, direction, amount FROM outcome JOIN payment ON"
                           " payment.record = outcome.payment WHERE verdict = 1 ORDER BY trace");
        QCOMPARE(ofJournal, ofTerminal);

        // The reports of the shifts.
        qint64 ofShifts = 0;
        qint64 ofDays = 0;
        qint64 differences = 0;
        for (const ShiftReport& report : till.counter.journal.closedShifts()) {
            ofShifts += report.cardTakings();
            ofDays += report.cardDayTotal;
            differences += qAbs(report.cardDayDifference);
        }
        QCOMPARE(till.counter.journal.runningShift()->cardSum, 0);
        QCOMPARE(ofShifts, sum);
        QCOMPARE(differences, 0);
        QVERIFY(days >= ofDays); // a day whose answer was lost is not reported twice

        // What was taken without a sale was given back.
        QCOMPARE(rowsOf(onlyConnection(),
                        "SELECT * FROM payment JOIN outcome ON outcome.payment = payment.record"
                        " AND verdict = 1 LEFT JOIN card_sale ON card_sale.payment = payment.record"
                        " WHERE direction = 1 AND card_sale.sale IS NULL AND NOT EXISTS (SELECT 1"
                        " FROM payment AS back JOIN outcome AS done ON done.payment = back.record"
                        " AND done.verdict = 1 WHERE back.origin = payment.record AND"
                        " back.amount = payment.amount)"),
                 QStringList());
        QCOMPARE(rowsOf(onlyConnection(),
                        "SELECT COUNT(*) FROM payment WHERE NOT EXISTS (SELECT 1"
                        " FROM outcome WHERE outcome.payment = payment.record AND verdict <> 3)"),
                 QStringList("0"));
    }
};

QTEST_GUILESS_MAIN(TestCardSoak)
#include "tst_card_soak.moc"
