#include "DeskJournal.h"

#include <cmath>
#include <limits>

using namespace rivo::sales;

namespace
{

const QString lostJournal = "The sales journal is damaged. Nothing can be sold.";

} // namespace

/// What a desk sells: the basket, prices, badges, refusals.
class TestSalesDesk : public QObject, private DeskJournal
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale("en_GB")); }
    void init() { renew(); }

    void startsEmpty()
    {
        Counter counter(file(), euro, 100.0);
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(counter.desk.obstacle(), QString());
        QCOMPARE(counter.desk.total(), 0.0);
        QCOMPARE(counter.desk.totalText(), "€0.00");
        QCOMPARE(counter.basket.rowCount(), 0);
        QCOMPARE(reportsOf(counter),
                 QStringList("17 open: 0 tickets 0, 0 by card 0, -, z 0, debt 0 of 100"));
    }

    void ticketHasTheFieldsOfTileAndTrip()
    {
        Counter counter(file());
        QVERIFY(play(counter, "return"));
        QCOMPARE(text(*counter.line(0)),
                 "11 21 1 2 adult product 21 qrc:/icons/adult.svg 1.9 zone 1 zone 2 true false"
                 " false false -1 5 6 7 8 9 10 night bus");
        QCOMPARE(counter.line(0)->parent(), &counter.basket);
    }

    void tripIsThatOfTheTap()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult"));
        counter.trip.setCurrentStopId(80);
        counter.trip.setProperty("publicRouteExecutionId", "DynamicTrip");
        QVERIFY(play(counter, "adult"));
        QCOMPARE(counter.line(0)->currentStopId(), 8);
        QCOMPARE(counter.line(1)->currentStopId(), 80);
        QVERIFY(play(counter, "cash"));
        QCOMPARE(ticketsWhere("1", "current_stop, public_execution"),
                 (QStringList{"8|night bus", "80|"}));
    }

    /// Rows show the tickets; changes of the rows are not sold.
    void rowsOfTheBasketAreNotReadBack()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult"));
        counter.line(0)->setPrice(0.01);
        counter.line(0)->setFareProductId(99);
        QVERIFY(play(counter, "child"));
        QCOMPARE(counter.desk.totalText(), "€2.85");
        QCOMPARE(counter.badge(AdultSingle), 1);
        QVERIFY(play(counter, "cash"));
        QCOMPARE(ticketsWhere("1", "fare_product, price"), (QStringList{"21|190", "21|95"}));
    }

    void totalIsTheSumOfWhatIsShown()
    {
        Counter counter(file());
        SignalLog log(&counter.desk);
        const QStringList once("totalChanged()");
        for (const auto& [step, total] : {std::pair("adult", "€1.90"),
                                          {"child", "€2.85"},
                                          {"exact", "€3.86"},
                                          {"remove:0", "€1.96"},
                                          {"clear", "€0.00"}}) {
            QVERIFY(play(counter, step));
            QCOMPARE(log.take(), once);
            QCOMPARE(counter.desk.totalText(), total);
        }
        QVERIFY(play(counter, "adult"));
        QCOMPARE(counter.desk.total(), 190.0);
    }

    void pricesBeyondTheCurrencyAreNotSold()
    {
        Counter counter(file());
        SignalLog log(&counter.desk);
        auto* tile = qobject_cast<PassengerTypeItem*>(counter.grid.itemFromRow(AdultSingle));
        constexpr double infinite = std::numeric_limits<double>::infinity();
        for (const double price : {1e10 + 0.01, std::numeric_limits<double>::max(), infinite,
                                   -1e10 - 0.01, -infinite, std::nan("")}) {
            tile->setPrice(price);
            QVERIFY(!play(counter, "adult"));
            QCOMPARE(log.take(), QStringList("refused(This tile has no valid price.)"));
        }
        QVERIFY(play(counter, "child")); // the others are sold
        QCOMPARE(counter.prices(), QVector<qint64>{95});
    }

    void pricesWithMoreDecimalsAreThoseOfTheCurrency()
    {
        Counter counter(file());
        QVERIFY(play(counter, "exact exact exact"));
        QCOMPARE(counter.prices(), (QVector<qint64>{101, 101, 101}));
        QCOMPARE(counter.line(0)->price(), 1.01);
        QCOMPARE(counter.badge(TooExact), 3);
        QVERIFY(play(counter, "card"));
        QCOMPARE(counter.report()->ticketSumAmnt(), 3.03);
        QCOMPARE(counter.report()->cardSellAmnt(), 3.03);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT total FROM sale"), QStringList("303"));
    }

    void currencyWithoutDecimals()
    {
        Counter counter(file(), Currency("JPY", 0));
        QVERIFY(play(counter, "adult day"));
        QCOMPARE(counter.desk.totalText(), "¥7");
        QVERIFY(play(counter, "cash"));
        QCOMPARE(counter.report()->ticketSumAmnt(), 7.0);
    }

    void badgesCountTheTicketsOfEachTile()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult adult child day senior"));
        QCOMPARE(badges(counter), (QVector<int>{2, 1, 1, 0, 0, 0, 0, 0, 0, 0, 1}));
        QCOMPARE(productBadges(counter), (QVector<int>{4, 1, 0}));
        QVERIFY(play(counter, "return remove:0"));
        QCOMPARE(badges(counter), (QVector<int>{1, 1, 1, 0, 0, 0, 0, 0, 1, 0, 1}));
        QCOMPARE(productBadges(counter), (QVector<int>{4, 1, 0}));
        QVERIFY(play(counter, "cash"));
        QCOMPARE(counter.badge(AdultSingle), 1);
        QVERIFY(play(counter, "end"));
        QCOMPARE(badges(counter), QVector<int>(TileCount, 0));
        QCOMPARE(productBadges(counter), (QVector<int>{0, 0, 0}));
    }

    /// Only what changed is repainted.
    void badgesOfOtherTilesAreLeftAlone()
    {
        Counter counter(file());
        SignalLog grid(&counter.grid);
        SignalLog fareProducts(&counter.fareProducts);
        QVERIFY(play(counter, "child"));
        QCOMPARE(grid.take(), QStringList(rowChanged(ChildSingle)));
        QCOMPARE(fareProducts.take(), QStringList(rowChanged(0)));
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("state"); // of the desk before it
        QTest::addColumn<QString>("reason");
        const auto add = [](const char* reason, const char* state, const QStringList& steps) {
            for (const QString& step : steps)
                QTest::addRow("%s, %s", qPrintable(step), state) << step << state << reason;
        };
        add("This tile is not for sale.", "basket", {"placeholder", "add:-1", "add:11"});
        add("product 24 is not valid any more.", "basket", {"expired"});
        add("This tile has no valid price.", "basket", {"nan", "negative"});
        add("The basket is full.", "full", {"adult"});
        add("There is no such line.", "basket", {"remove:-1", "remove:2"});
        add("There is no such line.", "empty", {"remove:0"});
        add("The basket is empty.", "empty", {"cash", "card"});
        add("There is no such way of payment.", "basket", {"pay:0", "pay:3"});
        add("The ticket printer cannot print: no paper", "fault", {"cash"});
        // Of the running shift, a paid one, one before the journal's first, one to come.
        add("There is no cash of this shift to hand over.", "shifts",
            {"hand:18", "hand:17", "hand:16", "hand:19"});
        add("There are unpaid tickets in the basket.", "basket", {"close"});
        for (const char* state : {"empty", "basket", "printing", "waiting"})
            add("There is no ticket in doubt.", state, {"out", "print"});
        const QStringList all{"adult", "remove:0", "clear", "cash", "card", "close"};
        for (const char* state : {"printing", "waiting"})
            add("Tickets are being printed.", state, all);
        add("The last sale was interrupted: say first which tickets are out.", "doubt", all);
        add(qPrintable(lostJournal), "damaged", all + QStringList("hand:17"));
    }

    void refusals()
    {
        QFETCH(QString, step);
        QFETCH(QString, state);
        QFETCH(QString, reason);
        const auto counter = counterIn(state);
        const QVector<qint64> prices = counter->prices();
        const QStringList reports = reportsOf(*counter);
        QCOMPARE(outcomeOf(*counter, step), refusal(reason));
        QCOMPARE(counter->prices(), prices);
        QCOMPARE(reportsOf(*counter), reports);
    }

    void basketHasRoomForTwoHundredTickets()
    {
        const auto counter = counterIn("full");
        QCOMPARE(counter->basket.rowCount(), SalesDesk::mostTickets);
        QCOMPARE(counter->desk.totalText(), "€380.00");
        QVERIFY(play(*counter, "remove:57 child card"));
        QCOMPARE(counter->report()->ticketCount(), 200);
        QCOMPARE(counter->report()->cardSellAmnt(), 379.05);
        QVERIFY(play(*counter, "end"));
    }

    void linesSayHowTheyWerePaid()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult"));
        QCOMPARE(counter.line(0)->payMethod(), -1);
        QVERIFY(play(counter, "card"));
        QCOMPARE(counter.line(0)->payMethod(), 2);
        QCOMPARE(counter.line(0)->payChannel(), driverChannel);
        QVERIFY(play(counter, "end adult cash"));
        QCOMPARE(counter.line(0)->payMethod(), 1);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT pay_method FROM sale"), (QStringList{"2", "1"}));
    }

    /// A slot of a sale finds the desk busy: nothing is sold twice.
    void slotsCannotSellTheSameBasketAgain()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult"));
        int refused = 0;
        const auto interfere = [&] {
            for (const char* step : {"cash", "child", "close"})
                refused += play(counter, step) ? 0 : 1;
        };
        connect(&counter.desk, &SalesDesk::saleConfirmed, this, interfere);
        connect(&counter.zReports, &QAbstractItemModel::dataChanged, this, interfere);
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this, interfere);
        connect(&counter.basket, &QAbstractItemModel::rowsRemoved, this, interfere);
        QVERIFY(play(counter, "cash end"));
        QVERIFY(refused > 0);
        QCOMPARE(refused % 3, 0);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT total FROM sale"), QStringList("190"));
        QCOMPARE(counter.basket.rowCount(), 0);
    }

    void basketIsThereAfterARestart()
    {
        QString before;
        {
            Counter counter(file());
            QVERIFY(play(counter, "adult child day remove:0"));
            before = text(*counter.line(0)) + text(*counter.line(1));
        }
        Counter counter(file());
        QCOMPARE(text(*counter.line(0)) + text(*counter.line(1)), before);
        QCOMPARE(counter.prices(), (QVector<qint64>{95, 450}));
        QCOMPARE(counter.desk.totalText(), "€5.45");
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(badges(counter), (QVector<int>{0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
        QVERIFY(play(counter, "remove:0 cash end"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT total FROM sale"), QStringList("450"));
    }

    void emptiedBasketIsEmptyAfterARestart()
    {
        QVERIFY(play(*std::make_unique<Counter>(file()), "adult clear"));
        QCOMPARE(Counter(file()).basket.rowCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestSalesDesk)
#include "tst_sales_desk.moc"
