#include "Play.h"
#include "SignalLog.h"

#include <QDebug>
#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>

using namespace rivo::sales;

namespace
{

const QString lostJournal = "The sales journal is damaged. Nothing can be sold.";
const QString fullJournal = "There is no space left for the sales journal. Nothing can be sold.";

/// What a step did: its result, then all signals of the desk and the models, then "journal" if that
/// changed.
QStringList outcomeOf(Counter& counter, const QString& step)
{
    const QStringList before = journalContent();
    SignalLog desk(&counter.desk);
    SignalLog grid(&counter.grid);
    SignalLog basket(&counter.basket);
    SignalLog fareProducts(&counter.fareProducts);
    SignalLog zReports(&counter.zReports);
    const bool result = play(counter, step);
    QStringList outcome{result ? "true" : "false"};
    for (SignalLog* log : {&desk, &grid, &basket, &fareProducts, &zReports})
        outcome += log->take();
    if (journalContent() != before)
        outcome.append("journal");
    return outcome;
}

/// `before`: what is announced first.
QStringList refusal(const QString& reason, const QStringList& before = {})
{
    return QStringList("false") + before + QStringList("refused(" + reason + ")");
}

/// The flags of the basket's lines: "ap" accepted and printed, "a-", "--".
QString progressOf(const Counter& counter)
{
    QStringList lines;
    for (int row = 0; row < counter.basket.rowCount(); ++row)
        lines.append(QString(counter.line(row)->accepted() ? "a" : "-") +
                     (counter.line(row)->printed() ? "p" : "-"));
    return lines.join(' ');
}

QString text(const ShoppingItem& line)
{
    QString all;
    QDebug(&all) << line.passengerTypeId() << line.fareProductId() << line.fromStopGroupId()
                 << line.toStopGroupId() << line.description() << line.fareProductName()
                 << line.icon() << line.price() << line.origin() << line.destination()
                 << line.isReturnFee() << line.isDaily() << line.accepted() << line.printed()
                 << line.payMethod() << line.routeId() << line.fromStopId() << line.toStopId()
                 << line.currentStopId() << line.tripsRouteId() << line.tripsExecutionId()
                 << line.publicRouteExecutionId();
    return all.remove('"').trimmed();
}

/// "17 open: 3 tickets 4.75, 1 by card 1.9, 000001-000003, z 4.75, debt 2.85 of 100".
QString text(const ZReportItem& report)
{
    return QStringLiteral("%1 %2: %3 tickets %4, %5 by card %6, %7-%8, z %9, debt %10 of %11")
        .arg(report.zNumber())
        .arg(report.isClosed() ? "closed" : "open")
        .arg(report.ticketCount())
        .arg(report.ticketSumAmnt())
        .arg(report.cardSellCount())
        .arg(report.cardSellAmnt())
        .arg(report.fromTicketNumber(), report.toTicketNumber())
        .arg(report.zSum())
        .arg(report.currentDebt())
        .arg(report.maxAllowedDebt());
}

QStringList reportsOf(const Counter& counter)
{
    QStringList all;
    for (int row = 0; row < counter.zReports.rowCount(); ++row)
        all.append(text(*counter.report(row)));
    return all;
}

QStringList ticketsWhere(const QString& condition, const QString& columns = "number")
{
    return rowsOf(onlyConnection(),
                  QString("SELECT %1 FROM ticket WHERE %2").arg(columns, condition));
}

} // namespace

class TestSalesDesk : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale("en_GB")); }

    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

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

    void ticketSaysWhatTheTileAndTheTripSay()
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

    void everyFaultOfTheJournalIsSaidInWords_data()
    {
        QTest::addColumn<QString>("change"); // of a journal, or of the file; "open" elsewhere
        QTest::addColumn<QString>("obstacle");
        const auto add = [](const char* fault, const char* change, const QString& what) {
            QTest::newRow(fault) << change << what + " Nothing can be sold.";
        };
        add("locked", "open", "The sales journal is in use by another program.");
        add("damaged", "text", "The sales journal is damaged.");
        add("foreign", "PRAGMA application_id=7",
            "The file given as sales journal is not one of this terminal.");
        add("other version", "PRAGMA user_version=7",
            "The sales journal was kept by another version of this terminal.");
        add("other currency", "UPDATE journal SET currency = 'PLN'",
            "The sales journal is kept in another currency.");
        add("unreachable", "folder", "The sales journal cannot be written.");
    }

    void everyFaultOfTheJournalIsSaidInWords()
    {
        QFETCH(QString, change);
        QFETCH(QString, obstacle);
        auto other = std::make_unique<Journal>();
        if (change == "text") {
            QFile text(file());
            QVERIFY(text.open(QIODevice::WriteOnly) && text.write("nothing to see here") > 0);
        } else if (change == "folder") {
            QVERIFY(QDir().mkdir(file()));
        } else {
            other->open(file(), euro, 1);
        }
        if (change.contains(' ')) {
            rowsOf(onlyConnection(), change);
            other.reset();
        }
        Counter counter(file());
        QCOMPARE(counter.desk.obstacle(), obstacle);
        QCOMPARE(counter.zReports.rowCount(), 0);
        SignalLog log(&counter.desk);
        QVERIFY(!play(counter, "adult"));
        QVERIFY(!play(counter, "close"));
        QCOMPARE(log.take(),
                 (QStringList{"refused(" + obstacle + ")", "refused(" + obstacle + ")"}));
        QCOMPARE(counter.basket.rowCount(), 0);
    }

    void journalThatFillsUpStopsSelling_data()
    {
        QTest::addColumn<QString>("step");
        QTest::addColumn<QString>("state");
        for (const auto& [step, state] : {std::pair("adult", "basket"),
                                          {"remove:0", "basket"},
                                          {"clear", "basket"},
                                          {"cash", "basket"},
                                          {"close", "empty"},
                                          {"hand:17", "closed"},
                                          {"out", "doubt"}})
            QTest::newRow(step) << step << state;
    }

    void journalThatFillsUpStopsSelling()
    {
        QFETCH(QString, step);
        QFETCH(QString, state);
        auto counter = counterIn(state);
        const QVector<qint64> prices = counter->prices();
        const QStringList reports = reportsOf(*counter);
        const SalesDesk::State before = counter->desk.state();
        const QString progress = progressOf(*counter);
        fillUp();
        const QStringList stopped = refusal(fullJournal, {"obstacleChanged()"});
        QCOMPARE(outcomeOf(*counter, step), stopped);
        QCOMPARE(counter->desk.obstacle(), fullJournal);
        QCOMPARE(counter->desk.state(), before);
        QCOMPARE(counter->prices(), prices);
        QCOMPARE(reportsOf(*counter), reports);
        QCOMPARE(progressOf(*counter), progress);
        for (const char* next : {"adult", "clear", "cash", "close"})
            QCOMPARE(outcomeOf(*counter, next), refusal(fullJournal));
        if (state == "doubt") {
            QCOMPARE(outcomeOf(*counter, step), stopped);
            QCOMPARE(counter->desk.ticketsInDoubt(), 2);
        }
        counter.reset();
        Counter again(file());
        QCOMPARE(again.desk.obstacle(), QString());
        QCOMPARE(again.prices(), prices);
        QCOMPARE(reportsOf(again), reports);
        QVERIFY(play(again, step));
    }

    /// The passenger has paid: the tickets come out. After a restart the driver says that they are,
    /// since the journal could not.
    void journalThatFillsUpWhilePrintingFinishesTheSale()
    {
        {
            Counter counter(file());
            QVERIFY(play(counter, "adult child cash"));
            fillUp();
            SignalLog log(&counter.desk);
            QVERIFY(play(counter, "end"));
            QVERIFY(log.take().contains("saleFinished()"));
            QVERIFY(!counter.desk.obstacle().isEmpty());
            QCOMPARE(counter.basket.rowCount(), 0);
            QVERIFY(!play(counter, "adult"));
        }
        Counter again(file());
        QCOMPARE(again.prices(), (QVector<qint64>{190, 95}));
        QCOMPARE(again.desk.state(), SalesDesk::Interrupted);
        SignalLog printer(&again.printer);
        QVERIFY(play(again, "out out"));
        QCOMPARE(again.desk.state(), SalesDesk::Selling);
        QCOMPARE(printer.take(), QStringList());
        QCOMPARE(again.report()->ticketCount(), 2);
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

    void journalComesBeforeTheScreen()
    {
        Counter counter(file());
        const auto count = [](const char* what) {
            return rowsOf(onlyConnection(), QStringLiteral("SELECT COUNT(*) FROM ") + what)
                .at(0)
                .toInt();
        };
        QStringList seen;
        connect(&counter.basket, &QAbstractItemModel::rowsAboutToBeInserted, this,
                [&] { seen.append(QStringLiteral("insert %1").arg(count("basket"))); });
        connect(&counter.basket, &QAbstractItemModel::rowsAboutToBeRemoved, this,
                [&] { seen.append(QStringLiteral("remove %1").arg(count("basket"))); });
        connect(&counter.zReports, &QAbstractItemModel::dataChanged, this, [&] {
            seen.append(QStringLiteral("report %1 %2").arg(count("sale")).arg(count("closing")));
        });
        connect(&counter.desk, &SalesDesk::saleConfirmed, this,
                [&] { seen.append(QStringLiteral("confirmed %1").arg(count("sale"))); });
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex& index) {
                    if (counter.line(index.row())->printed())
                        seen.append(QStringLiteral("printed %1").arg(count("printout")));
                });
        QVERIFY(play(counter, "adult adult adult remove:1 cash end close"));
        seen.removeDuplicates();
        QCOMPARE(seen,
                 (QStringList{"insert 1", "insert 2", "insert 3", "remove 2", "report 1 0",
                              "confirmed 1", "printed 1", "printed 2", "remove 0", "report 1 1"}));
    }

    void ticketsArePrintedOneByOne()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult child free"));
        SignalLog desk(&counter.desk);
        SignalLog basket(&counter.basket);
        QStringList progress;
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this,
                [&] { progress.append(progressOf(counter)); });
        QVERIFY(play(counter, "cash"));
        QCOMPARE(desk.take(), (QStringList{"stateChanged()", "saleConfirmed(3)"}));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(play(counter, "end"));
        QCOMPARE(progress, (QStringList{"a- -- --", "ap -- --", "ap a- --", "ap ap --", "ap ap a-",
                                        "ap ap ap"}));
        QCOMPARE(basket.take(), (QStringList{rowChanged(0), rowChanged(0), rowChanged(1),
                                             rowChanged(1), rowChanged(2), rowChanged(2)} +
                                 announcedRemoval(0, 2, 0) + QStringList{countChanged(0)}));
        QCOMPARE(desk.take(), (QStringList{"totalChanged()", "stateChanged()", "saleFinished()"}));
        QCOMPARE(counter.desk.totalText(), "€0.00");
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"),
                 (QStringList{"1", "2", "3"}));
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

    void printerFaultBlocksPayment()
    {
        Counter counter(file());
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "jam"));
        QCOMPARE(log.take(), QStringList("obstacleChanged()"));
        QCOMPARE(counter.desk.obstacle(), "The ticket printer cannot print: no paper");
        QVERIFY(play(counter, "adult child")); // the basket may be prepared
        QVERIFY(!play(counter, "cash"));
        counter.printer.setFault("cover open");
        QCOMPARE(counter.desk.obstacle(), "The ticket printer cannot print: cover open");
        log.take();
        QVERIFY(play(counter, "ready"));
        QCOMPARE(log.take(), QStringList("obstacleChanged()"));
        QCOMPARE(counter.desk.obstacle(), QString());
        QVERIFY(play(counter, "cash end"));
    }

    void printerFaultWhilePrintingWaits()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult child cash first jam"));
        QTRY_COMPARE(counter.desk.state(), SalesDesk::WaitingForPrinter);
        QCOMPARE(progressOf(counter), "ap a-");
        counter.printer.setFault("cover open");
        QCOMPARE(counter.desk.state(), SalesDesk::WaitingForPrinter);
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "ready"));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(play(counter, "end"));
        QCOMPARE(log.take(), (QStringList{"obstacleChanged()", "stateChanged()", "totalChanged()",
                                          "stateChanged()", "saleFinished()"}));
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"), (QStringList{"1", "2"}));
    }

    /// The paper is spoilt: the ticket is printed again.
    void faultThatIsGoneBeforeTheTicketIsOutSpoilsIt()
    {
        Counter counter(file());
        SignalLog printer(&counter.printer);
        QVERIFY(play(counter, "adult cash jam jam ready"));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(play(counter, "end"));
        QCOMPARE(printer.take(), // the same fault again is no news
                 (QStringList{"faultChanged()", "faultChanged()", "failed()", "printed()"}));
    }

    void printerWithoutASaleIsIgnored_data()
    {
        QTest::addColumn<QString>("state");
        for (const char* state : {"empty", "basket", "doubt"})
            QTest::newRow(state) << state;
    }

    void printerWithoutASaleIsIgnored()
    {
        QFETCH(QString, state);
        const auto counter = counterIn(state);
        const QStringList before = journalContent();
        const SalesDesk::State deskState = counter->desk.state();
        const QString progress = progressOf(*counter);
        SignalLog printer(&counter->printer);
        SignalLog desk(&counter->desk);
        counter->printer.print(); // the driver's paper feed
        QVERIFY(QTest::qWaitFor([&] { return printer.take().contains("printed()"); }));
        QCOMPARE(desk.take(), QStringList());
        counter->printer.print();
        QVERIFY(play(*counter, "jam ready"));
        QVERIFY(QTest::qWaitFor([&] { return printer.take().contains("failed()"); }));
        QTest::qWait(1);
        QCOMPARE(printer.take(), QStringList());
        QCOMPARE(desk.take(), (QStringList{"obstacleChanged()", "obstacleChanged()"}));
        QCOMPARE(counter->desk.state(), deskState);
        QCOMPARE(progressOf(*counter), progress);
        QCOMPARE(journalContent(), before);
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

    /// Only the driver knows whether the paper is out.
    void interruptedPrintingIsAskedAboutAfterARestart()
    {
        const auto counter = counterIn("doubt");
        QCOMPARE(counter->desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter->desk.ticketsInDoubt(), 2);
        QCOMPARE(counter->desk.firstTicketInDoubt(), "000002");
        QCOMPARE(counter->desk.obstacle(), QString());
        QCOMPARE(counter->prices(), (QVector<qint64>{95, 0}));
        QCOMPARE(progressOf(*counter), "-- --");
    }

    /// A printer that was cut off while it printed the first of two tickets.
    void printerInDoubtIsAskedAbout_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QStringList>("printed");
        QTest::newRow("the ticket is out") << "out" << QStringList{"2"};
        QTest::newRow("the ticket is not out") << "print" << QStringList{"1", "2"};
    }

    void printerInDoubtIsAskedAbout()
    {
        QFETCH(QString, answer);
        QFETCH(QStringList, printed);
        Counter counter(file());
        QVERIFY(play(counter, "adult child cash"));
        SignalLog desk(&counter.desk);
        emit counter.printer.inDoubt();
        QCOMPARE(desk.take(), (QStringList{"stateChanged()", "ticketsInDoubtChanged()"}));
        QCOMPARE(counter.desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter.desk.ticketsInDoubt(), 1);
        QCOMPARE(counter.desk.firstTicketInDoubt(), "000001");
        emit counter.printer.inDoubt(); // nothing is being printed
        QTest::qWait(1);                // what the printer reports late counts for nothing
        QCOMPARE(desk.take(), QStringList());
        QStringList tickets;
        connect(&counter.printer, &SimulatedPrinter::printed, this, [&] {
            tickets.append(QString::number(counter.printer.lastPrinted()->ticket.number));
        });
        QVERIFY(play(counter, answer));
        QCOMPARE(desk.take(), (QStringList{"stateChanged()", "ticketsInDoubtChanged()"}));
        QCOMPARE(counter.desk.ticketsInDoubt(), 0);
        QVERIFY(play(counter, "end"));
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(tickets, printed);
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM unprinted)"), QStringList());
        emit counter.printer.inDoubt(); // nothing was sold
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
    }

    void copyInDoubtIsReported()
    {
        Counter counter(file());
        QVERIFY(play(counter, "adult cash end copy:1"));
        SignalLog desk(&counter.desk);
        emit counter.printer.inDoubt();
        QCOMPARE(desk.take(),
                 (QStringList{"stateChanged()", "refused(Look whether this was printed.)"}));
    }

    void drawerOpensOnceForACashSale()
    {
        Counter counter(file());
        QString opened;
        connect(&counter.printer, &SimulatedPrinter::printed, this,
                [&] { opened += counter.printer.lastPrinted()->opensDrawer ? 'o' : '-'; });
        QVERIFY(
            play(counter, "adult child cash end adult child card end copy:1 end adult cash end"));
        QCOMPARE(opened, "o----o");
    }

    void ticketThatIsOutIsNotPrintedAgain()
    {
        const auto counter = counterIn("doubt");
        SignalLog printer(&counter->printer);
        SignalLog desk(&counter->desk);
        QVERIFY(play(*counter, "jam out")); // no printer is needed for it
        QCOMPARE(desk.take(), (QStringList{"obstacleChanged()", "ticketsInDoubtChanged()"}));
        QCOMPARE(counter->desk.ticketsInDoubt(), 1);
        QCOMPARE(counter->desk.firstTicketInDoubt(), "000003");
        QCOMPARE(progressOf(*counter), "ap --");
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM unprinted)"), QStringList("3"));
        QVERIFY(play(*counter, "out"));
        QCOMPARE(desk.take(), (QStringList{"totalChanged()", "ticketsInDoubtChanged()",
                                           "stateChanged()", "saleFinished()"}));
        QCOMPARE(counter->desk.state(), SalesDesk::Selling);
        QCOMPARE(counter->desk.ticketsInDoubt(), 0);
        QCOMPARE(counter->desk.firstTicketInDoubt(), QString());
        QCOMPARE(counter->basket.rowCount(), 0);
        QCOMPARE(printer.take(), QStringList("faultChanged()"));
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM unprinted)"), QStringList());
        QVERIFY(!play(*counter, "out"));
        QVERIFY(play(*counter, "adult"));
    }

    /// They have been paid; that they are out is noted as far as the journal can.
    void ticketsInDoubtArePrintedWithoutAJournal()
    {
        const auto counter = counterIn("doubt");
        fillUp();
        QVERIFY(play(*counter, "print end"));
        QVERIFY(!counter->desk.obstacle().isEmpty());
    }

    void ticketsInDoubtArePrintedIfTheDriverSaysSo()
    {
        const auto counter = counterIn("doubt");
        QVERIFY(play(*counter, "print"));
        QCOMPARE(counter->desk.ticketsInDoubt(), 0);
        QCOMPARE(counter->desk.state(), SalesDesk::Printing);
        QCOMPARE(counter->prices(), (QVector<qint64>{95, 0}));
        QCOMPARE(counter->line(0)->payMethod(), 2);
        QCOMPARE(counter->line(0)->payChannel(), driverChannel);
        QCOMPARE(progressOf(*counter), "a- --");
        SignalLog log(&counter->desk);
        QVERIFY(play(*counter, "end"));
        QVERIFY(log.take().contains("saleFinished()"));
        QCOMPARE(counter->basket.rowCount(), 0);
        QCOMPARE(text(*counter->report()),
                 "17 open: 3 tickets 2.85, 3 by card 2.85, 000001-000003, z 2.85, debt 0 of 0");
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"),
                 (QStringList{"1", "2", "3"}));
    }

    void printingOfDoubtsWaitsForThePrinter()
    {
        const auto counter = counterIn("doubt");
        QVERIFY(play(*counter, "jam print"));
        QCOMPARE(counter->desk.state(), SalesDesk::WaitingForPrinter);
        QCOMPARE(progressOf(*counter), "-- --");
        QVERIFY(!play(*counter, "adult"));
        QVERIFY(play(*counter, "ready end"));
        QCOMPARE(ticketsWhere("number IN (SELECT ticket FROM printout)"),
                 (QStringList{"1", "2", "3"}));
    }

    void cashIsHandedOverInEveryState_data()
    {
        QTest::addColumn<QString>("state");
        for (const char* state : {"empty", "basket", "printing", "waiting", "fault", "doubt"})
            QTest::newRow(state) << state;
    }

    void cashIsHandedOverInEveryState()
    {
        QFETCH(QString, state);
        counterIn("closed");
        const auto counter = counterIn(state);
        const SalesDesk::State before = counter->desk.state();
        const QString progress = progressOf(*counter);
        QVERIFY(play(*counter, "hand:17"));
        QCOMPARE(counter->desk.state(), before);
        QCOMPARE(progressOf(*counter), progress);
        QCOMPARE(counter->report(1)->currentDebt(), 0.0);
    }

    void reportFollowsTheSales()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(play(counter, "adult child cash end"));
        QCOMPARE(text(*counter.report()),
                 "17 open: 2 tickets 2.85, 0 by card 0, 000001-000002, z 2.85, debt 2.85 of 100");
        QVERIFY(play(counter, "day card end"));
        QCOMPARE(text(*counter.report()),
                 "17 open: 3 tickets 7.35, 1 by card 4.5, 000001-000003, z 7.35, debt 2.85 of 100");
    }

    /// setCardSellAmnt() does not take what equals the ticket sum of the moment.
    void cardSumIsTrueForEveryOrderOfSales_data()
    {
        QTest::addColumn<QString>("sales"); // tile letters, upper case by card
        for (const char* sales :
             {"A",                         // first by card
              "A C D A",                   // all by card
              "a A",                       // first by card, equal to the sum before
              "a c A C",                   // card sum equal to the sum before
              "a A A",                     // twice the same
              "F",                         // free by card first
              "a F A",                     // free by card behind cash
              "A F F",                     // free by card behind card
              "A f A",                     // free by cash behind card
              "A a A c C d D", "d C C C"}) // card sum reaches the sum of before by two
            QTest::newRow(sales) << sales;
    }

    void cardSumIsTrueForEveryOrderOfSales()
    {
        QFETCH(QString, sales);
        Counter counter(file());
        const QMap<QChar, QPair<QString, qint64>> tiles{
            {'a', {"adult", 190}}, {'c', {"child", 95}}, {'d', {"day", 450}}, {'f', {"free", 0}}};
        qint64 sum = 0;
        qint64 cardSum = 0;
        for (const QString& sale : sales.split(' ')) {
            const auto [tile, price] = tiles.value(sale.at(0).toLower());
            const bool isCard = sale.at(0).isUpper();
            sum += price;
            cardSum += isCard ? price : 0;
            QVERIFY(play(counter, tile + (isCard ? " card end" : " cash end")));
            QCOMPARE(counter.report()->ticketSumAmnt(), euro.toUnits(sum));
            QCOMPARE(counter.report()->zSum(), euro.toUnits(sum));
            QCOMPARE(counter.report()->cardSellAmnt(), euro.toUnits(cardSum));
            QCOMPARE(counter.report()->currentDebt(), euro.toUnits(sum - cardSum));
        }
    }

    void closingNumbersTheReportAndStartsTheNext()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(play(counter, "adult cash end child card end"));
        SignalLog log(&counter.desk);
        QVERIFY(play(counter, "close"));
        QCOMPARE(log.take(), QStringList("shiftClosed(double)"));
        const QStringList expected{
            "18 open: 0 tickets 0, 0 by card 0, -, z 0, debt 1.9 of 100",
            "17 closed: 2 tickets 2.85, 1 by card 0.95, 000001-000002, z 2.85, debt 1.9 of 100"};
        QCOMPARE(reportsOf(counter), expected);
        QVERIFY(!counter.report(1)->paymentDate().isValid());
        QVERIFY(!counter.report(0)->paymentDate().isValid());
        QCOMPARE(counter.report(0)->id(), 18);
        QCOMPARE(counter.report(0)->parent(), &counter.zReports);

        SignalLog reports(&counter.zReports);
        QVERIFY(play(counter, "day cash end"));
        for (const QString& each : reports.take())
            QCOMPARE(each, rowChanged(0)); // the row that runs now, each change once
        QCOMPARE(text(*counter.report()),
                 "18 open: 1 tickets 4.5, 0 by card 0, 000003-000003, z 4.5, debt 6.4 of 100");
    }

    void cashIsOwedUntilItIsHandedOver()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(play(counter, "adult cash end close child cash end close day cash end"));
        QCOMPARE(debtsOf(counter), (QVector<double>{7.35, 0.95, 1.9}));
        SignalLog desk(&counter.desk);
        SignalLog reports(&counter.zReports);
        QVERIFY(play(counter, "hand:17"));
        QCOMPARE(desk.take(), QStringList("shiftPaid(double)"));
        const QStringList changes = reports.take();
        QCOMPARE(changes.mid(0, 2), (QStringList{rowChanged(2), rowChanged(2)}));
        QCOMPARE(changes.last(), rowChanged(0));
        QCOMPARE(debtsOf(counter), (QVector<double>{5.45, 0.95, 0.0}));
        QVERIFY(counter.report(2)->paymentDate().isValid());
        QVERIFY(!counter.report(1)->paymentDate().isValid());
        QVERIFY(play(counter, "hand:18"));
        QCOMPARE(debtsOf(counter), (QVector<double>{4.5, 0.0, 0.0}));
        QVERIFY(play(counter, "close"));
        QCOMPARE(debtsOf(counter), (QVector<double>{4.5, 4.5, 0.0, 0.0}));
    }

    void reportsAndDebtAreThereAfterARestart()
    {
        QStringList before;
        QDateTime paidAt;
        {
            Counter counter(file(), euro, 50.0);
            QVERIFY(play(counter, "adult cash end close child cash end close"
                                  " day cash end adult card end close hand:18 child card end"));
            before = reportsOf(counter);
            paidAt = counter.report(2)->paymentDate();
        }
        Counter counter(file(), euro, 50.0);
        QCOMPARE(reportsOf(counter), before);
        QCOMPARE(debtsOf(counter), (QVector<double>{6.4, 4.5, 0.0, 1.9}));
        QCOMPARE(counter.report(2)->paymentDate(), paidAt);
        QVERIFY(counter.desk.keepsShift(17));
        QVERIFY(counter.desk.keepsShift(20));
        QVERIFY(!counter.desk.keepsShift(16));
        QVERIFY(!counter.desk.keepsShift(qQNaN()));
        QVERIFY(play(counter, "child cash end"));
        QCOMPARE(debtsOf(counter), (QVector<double>{7.35, 4.5, 0.0, 1.9}));
        QVERIFY(play(counter, "hand:17"));
        QCOMPARE(debtsOf(counter), (QVector<double>{5.45, 4.5, 0.0, 0.0}));
        QVERIFY(play(counter, "hand:19"));
        QCOMPARE(debtsOf(counter), (QVector<double>{0.95, 0.0, 0.0, 0.0}));
    }

    void shiftWithoutCashOwesNothing()
    {
        Counter counter(file());
        QVERIFY(play(counter, "close adult card end close"));
        QCOMPARE(reportsOf(counter),
                 (QStringList{"19 open: 0 tickets 0, 0 by card 0, -, z 0, debt 0 of 0",
                              "18 closed: 1 tickets 1.9, 1 by card 1.9, 000001-000001, z 1.9,"
                              " debt 0 of 0",
                              "17 closed: 0 tickets 0, 0 by card 0, -, z 0, debt 0 of 0"}));
        QVERIFY(counter.report(1)->paymentDate().isValid());
        QVERIFY(!play(counter, "hand:18"));
    }

    /// What the driver taps is on the disk as it is shown.
    void randomTapsLeaveJournalAndScreenEqual()
    {
        QRandomGenerator random(7);
        auto counter = std::make_unique<Counter>(file());
        rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
        for (int tap = 0; tap < 400; ++tap) {
            const int kind = random.bounded(20);
            if (kind < 12)
                counter->desk.add(random.bounded(-1, TileCount + 1));
            else if (kind < 15)
                counter->desk.remove(random.bounded(-1, 8));
            else if (kind == 15)
                counter->desk.clear();
            else if (kind < 18 && counter->desk.pay(SalesDesk::Cash))
                QVERIFY(waitForEndOfSale(*counter));
            else if (kind == 18)
                counter->desk.closeShift();
            else if (kind == 19) {
                const QVector<qint64> before = counter->prices();
                counter.reset();
                counter = std::make_unique<Counter>(file());
                rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
                QCOMPARE(counter->prices(), before);
            }
            QStringList shown;
            for (const qint64 price : counter->prices())
                shown.append(QString::number(price));
            QCOMPARE(rowsOf(onlyConnection(), "SELECT price FROM basket ORDER BY line"), shown);
            QCOMPARE(rowsOf(onlyConnection(), "SELECT IFNULL(SUM(price), 0) FROM basket"),
                     QStringList(QString::number(counter->desk.total())));
        }
        QVERIFY(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM sale").at(0).toInt() > 5);
    }

private:
    QString file() const { return m_folder->filePath("journal.db"); }

    static QVector<int> badges(const Counter& counter)
    {
        QVector<int> all;
        for (int row = 0; row < counter.grid.rowCount(); ++row)
            all.append(counter.badge(row));
        return all;
    }

    static QVector<int> productBadges(const Counter& counter)
    {
        return {counter.productBadge(0), counter.productBadge(1), counter.productBadge(2)};
    }

    /// No page more for the journal. What is free inside is used up.
    static void fillUp()
    {
        const QSqlDatabase db = onlyConnection();
        rowsOf(db, "CREATE TABLE IF NOT EXISTS filler (content)");
        rowsOf(db, "PRAGMA max_page_count=" + rowsOf(db, "PRAGMA page_count").at(0));
        const char* const guard = "CREATE TEMP TRIGGER %1_%2 BEFORE %1 ON main.%2 BEGIN"
                                  " INSERT INTO filler VALUES (zeroblob(100000)); END";
        for (const char* table : {"basket", "record"}) {
            for (const char* change : {"INSERT", "UPDATE", "DELETE"})
                rowsOf(db, QString(guard).arg(change, table));
        }
    }

    static QVector<double> debtsOf(const Counter& counter)
    {
        QVector<double> debts;
        for (int row = 0; row < counter.zReports.rowCount(); ++row)
            debts.append(counter.report(row)->currentDebt());
        return debts;
    }

    /// A desk over the journal of this test that was brought into a state.
    std::unique_ptr<Counter> counterIn(const QString& state) const
    {
        static const QMap<QString, QString> steps{{"empty", ""},
                                                  {"basket", "adult child"},
                                                  {"fault", "adult child jam"},
                                                  {"printing", "adult child cash"},
                                                  {"waiting", "adult child cash jam"},
                                                  {"doubt", "adult child free card first"},
                                                  {"closed", "adult cash end close"},
                                                  {"shifts", "adult cash end close adult cash end"
                                                             " hand:17"},
                                                  {"damaged", "adult child"},
                                                  {"full", ""}};
        auto counter = std::make_unique<Counter>(file());
        if (!steps.contains(state) || !play(*counter, steps.value(state)))
            qFatal("The desk cannot be brought into the state %s", qPrintable(state));
        if (state == "waiting")
            QTest::qWait(1);
        if (state == "full") {
            rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
            play(*counter, QString(" adult").repeated(SalesDesk::mostTickets));
        }
        if (state == "doubt") { // the power fails when the first of three tickets is out
            counter.reset();
            counter = std::make_unique<Counter>(file());
        }
        if (state == "damaged") {
            rowsOf(onlyConnection(), "ALTER TABLE basket RENAME TO lost");
            play(*counter, "clear");
            rowsOf(onlyConnection(), "ALTER TABLE lost RENAME TO basket");
        }
        return counter;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestSalesDesk)
#include "tst_sales_desk.moc"
