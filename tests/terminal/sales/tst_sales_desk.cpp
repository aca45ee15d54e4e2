#include "Counter.h"
#include "SignalLog.h"

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

const char* const lostJournal = "The sales journal is damaged. Nothing can be sold.";

/// What a call did: its result, then all signals of the desk and the models, then "journal" if that
/// changed.
QStringList outcomeOf(Counter& counter, const std::function<bool()>& call)
{
    const QStringList before = journalContent();
    SignalLog desk(&counter.desk);
    SignalLog grid(&counter.grid);
    SignalLog basket(&counter.basket);
    SignalLog fareProducts(&counter.fareProducts);
    SignalLog zReports(&counter.zReports);
    const bool result = call();
    QStringList outcome{result ? "true" : "false"};
    for (SignalLog* log : {&desk, &grid, &basket, &fareProducts, &zReports})
        outcome += log->take();
    if (journalContent() != before)
        outcome.append("journal");
    return outcome;
}

QStringList refusal(const QString& reason) { return {"false", "refused(" + reason + ")"}; }

/// The flags of the basket's lines: "ap" accepted and printed, "a-", "--".
QString progressOf(const Counter& counter)
{
    QStringList lines;
    for (int row = 0; row < counter.basket.rowCount(); ++row)
        lines.append(QString(counter.line(row)->accepted() ? "a" : "-") +
                     (counter.line(row)->printed() ? "p" : "-"));
    return lines.join(' ');
}

bool waitForEndOfSale(Counter& counter)
{
    return QTest::qWaitFor([&] { return counter.desk.state() == SalesDesk::Selling; });
}

bool sell(Counter& counter, const QVector<int>& tiles, SalesDesk::Payment payment)
{
    for (const int tile : tiles) {
        if (!counter.desk.add(tile))
            return false;
    }
    return counter.desk.pay(payment) && waitForEndOfSale(counter);
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
        QVERIFY(counter.desk.add(ReturnFee));
        const ShoppingItem& line = *counter.line(0);
        QCOMPARE(line.passengerTypeId(), 11);
        QCOMPARE(line.fareProductId(), 21);
        QCOMPARE(line.fromStopGroupId(), 1);
        QCOMPARE(line.toStopGroupId(), 2);
        QCOMPARE(line.description(), "adult");
        QCOMPARE(line.fareProductName(), "product 21");
        QCOMPARE(line.icon(), "qrc:/icons/adult.svg");
        QCOMPARE(line.price(), 1.9);
        QCOMPARE(line.origin(), "zone 1");
        QCOMPARE(line.destination(), "zone 2");
        QCOMPARE(line.isReturnFee(), true);
        QCOMPARE(line.isDaily(), false);
        QCOMPARE(line.accepted(), false);
        QCOMPARE(line.printed(), false);
        QCOMPARE(line.routeId(), 5);
        QCOMPARE(line.fromStopId(), 6);
        QCOMPARE(line.toStopId(), 7);
        QCOMPARE(line.currentStopId(), 8);
        QCOMPARE(line.tripsRouteId(), 9);
        QCOMPARE(line.tripsExecutionId(), 10);
        QCOMPARE(line.publicRouteExecutionId(), "night bus");
        QCOMPARE(line.parent(), &counter.basket);
    }

    void tripIsThatOfTheTap()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        counter.trip.setCurrentStopId(80);
        counter.trip.setProperty("publicRouteExecutionId", "DynamicTrip");
        QVERIFY(counter.desk.add(AdultSingle));
        QCOMPARE(counter.line(0)->currentStopId(), 8);
        QCOMPARE(counter.line(1)->currentStopId(), 80);
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT current_stop, public_execution FROM ticket"),
                 (QStringList{"8|night bus", "80|"}));
    }

    /// Rows show the tickets; what they say is not sold.
    void rowsOfTheBasketAreNotReadBack()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        counter.line(0)->setPrice(0.01);
        counter.line(0)->setFareProductId(99);
        QVERIFY(counter.desk.add(ChildSingle));
        QCOMPARE(counter.desk.totalText(), "€2.85");
        QCOMPARE(counter.badge(AdultSingle), 1);
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT fare_product, price FROM ticket"),
                 (QStringList{"21|190", "21|95"}));
    }

    void totalIsTheSumOfWhatIsShown()
    {
        Counter counter(file());
        SignalLog log(&counter.desk);
        QVERIFY(counter.desk.add(AdultSingle));
        QCOMPARE(log.take(), QStringList("totalChanged()"));
        QCOMPARE(counter.desk.total(), 190.0);
        QCOMPARE(counter.desk.totalText(), "€1.90");
        QVERIFY(counter.desk.add(ChildSingle));
        QVERIFY(counter.desk.add(TooExact));
        QCOMPARE(counter.desk.totalText(), "€3.86");
        QVERIFY(counter.desk.remove(0));
        QCOMPARE(counter.desk.totalText(), "€1.96");
        log.take();
        QVERIFY(counter.desk.clear());
        QCOMPARE(log.take(), QStringList("totalChanged()"));
        QCOMPARE(counter.desk.totalText(), "€0.00");
    }

    void pricesBeyondTheCurrencyAreNotSold_data()
    {
        QTest::addColumn<double>("price");
        QTest::newRow("more than 10^12 minor units") << 1e10 + 0.01;
        QTest::newRow("the largest number") << std::numeric_limits<double>::max();
        QTest::newRow("infinity") << std::numeric_limits<double>::infinity();
        QTest::newRow("less than -10^12 minor units") << -1e10 - 0.01;
        QTest::newRow("no number") << std::nan("");
    }

    void pricesBeyondTheCurrencyAreNotSold()
    {
        QFETCH(double, price);
        Counter counter(file());
        qobject_cast<PassengerTypeItem*>(counter.grid.itemFromRow(AdultSingle))->setPrice(price);
        QStringList reasons;
        connect(&counter.desk, &SalesDesk::refused, &counter.desk,
                [&reasons](const QString& reason) { reasons.append(reason); });
        QVERIFY(!counter.desk.add(AdultSingle));
        QCOMPARE(reasons, QStringList("This tile has no valid price."));
        QCOMPARE(counter.basket.rowCount(), 0);
        QCOMPARE(counter.desk.totalText(), "€0.00");
        QVERIFY(counter.desk.add(ChildSingle)); // the others are sold
    }

    void pricesWithMoreDecimalsAreThoseOfTheCurrency()
    {
        Counter counter(file());
        for (int i = 0; i < 3; ++i)
            QVERIFY(counter.desk.add(TooExact));
        QCOMPARE(counter.prices(), (QVector<qint64>{101, 101, 101}));
        QCOMPARE(counter.line(0)->price(), 1.01);
        QCOMPARE(counter.badge(TooExact), 3);
        QVERIFY(counter.desk.pay(SalesDesk::Card));
        QCOMPARE(counter.report()->ticketSumAmnt(), 3.03);
        QCOMPARE(counter.report()->cardSellAmnt(), 3.03);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT total FROM sale"), QStringList("303"));
    }

    void currencyWithoutDecimals()
    {
        Counter counter(file(), Currency("JPY", 0));
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(DayTicket));
        QCOMPARE(counter.desk.totalText(), "¥7");
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QCOMPARE(counter.report()->ticketSumAmnt(), 7.0);
    }

    void badgesCountTheTicketsOfEachTile()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(ChildSingle));
        QVERIFY(counter.desk.add(DayTicket));
        QVERIFY(counter.desk.add(SeniorSingle));
        QCOMPARE(badges(counter), (QVector<int>{2, 1, 1, 0, 0, 0, 0, 0, 0, 0, 1}));
        QCOMPARE(productBadges(counter), (QVector<int>{4, 1, 0}));
        QVERIFY(counter.desk.add(ReturnFee));
        QVERIFY(counter.desk.remove(0));
        QCOMPARE(badges(counter), (QVector<int>{1, 1, 1, 0, 0, 0, 0, 0, 1, 0, 1}));
        QCOMPARE(productBadges(counter), (QVector<int>{4, 1, 0}));
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QCOMPARE(counter.badge(AdultSingle), 1);
        QVERIFY(waitForEndOfSale(counter));
        QCOMPARE(badges(counter), QVector<int>(TileCount, 0));
        QCOMPARE(productBadges(counter), (QVector<int>{0, 0, 0}));
    }

    /// Only what changed is repainted.
    void badgesOfOtherTilesAreLeftAlone()
    {
        Counter counter(file());
        SignalLog grid(&counter.grid);
        SignalLog fareProducts(&counter.fareProducts);
        QVERIFY(counter.desk.add(ChildSingle));
        QCOMPARE(grid.take(), QStringList(rowChanged(ChildSingle)));
        QCOMPARE(fareProducts.take(), QStringList(rowChanged(0)));
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("state"); // of the desk before the call
        QTest::addColumn<QString>("reason");

        const char* const notForSale = "This tile is not for sale.";
        QTest::newRow("placeholder") << "add 3"
                                     << "basket" << notForSale;
        QTest::newRow("expired tile") << "add 4"
                                      << "basket" << notForSale;
        QTest::newRow("tile before the first") << "add -1"
                                               << "basket" << notForSale;
        QTest::newRow("tile behind the last") << "add 11"
                                              << "basket" << notForSale;
        const char* const noPrice = "This tile has no valid price.";
        QTest::newRow("price that is no number") << "add 6"
                                                 << "basket" << noPrice;
        QTest::newRow("negative price") << "add 7"
                                        << "basket" << noPrice;
        QTest::newRow("ticket 201") << "add 0"
                                    << "full"
                                    << "The basket is full.";
        const char* const noLine = "There is no such line.";
        QTest::newRow("line before the first") << "remove -1"
                                               << "basket" << noLine;
        QTest::newRow("line behind the last") << "remove 2"
                                              << "basket" << noLine;
        QTest::newRow("line of an empty basket") << "remove 0"
                                                 << "empty" << noLine;
        QTest::newRow("payment of nothing") << "pay 1"
                                            << "empty"
                                            << "The basket is empty.";
        const char* const noWay = "There is no such way of payment.";
        QTest::newRow("payment by nothing") << "pay 0"
                                            << "basket" << noWay;
        QTest::newRow("payment by an unknown way") << "pay 3"
                                                   << "basket" << noWay;
        QTest::newRow("printer cannot print") << "pay 1"
                                              << "fault"
                                              << "The ticket printer cannot print: no paper";
        const char* const noCash = "There is no cash of this shift to hand over.";
        QTest::newRow("cash of the running shift") << "handOver 18"
                                                   << "shifts" << noCash;
        QTest::newRow("cash of a shift that is paid") << "handOver 17"
                                                      << "shifts" << noCash;
        QTest::newRow("cash of a shift before the journal's first") << "handOver 16"
                                                                    << "shifts" << noCash;
        QTest::newRow("cash of a shift to come") << "handOver 19"
                                                 << "shifts" << noCash;
        for (const char* state : {"empty", "basket", "printing", "waiting"}) {
            for (const char* call : {"out", "rest"})
                QTest::addRow("%s while %s", call, state)
                    << call << state << "There is no ticket in doubt.";
        }
        QTest::newRow("shift with an open basket") << "close"
                                                   << "basket"
                                                   << "There are unpaid tickets in the basket.";
        for (const char* call : {"add 0", "remove 0", "clear", "pay 1", "pay 2", "close"}) {
            QTest::addRow("%s while tickets are printed", call) << call << "printing"
                                                                << "Tickets are being printed.";
            QTest::addRow("%s while waiting for the printer", call) << call << "waiting"
                                                                    << "Tickets are being printed.";
            QTest::addRow("%s without a journal", call) << call << "damaged" << lostJournal;
        }
        QTest::newRow("cash without a journal") << "handOver 17"
                                                << "damaged" << lostJournal;
    }

    void refusals()
    {
        QFETCH(QString, call);
        QFETCH(QString, state);
        QFETCH(QString, reason);
        Counter counter(file());
        bring(counter, state);
        const QVector<qint64> prices = counter.prices();
        const QStringList reports = reportsOf(counter);
        QCOMPARE(outcomeOf(counter, [&] { return run(counter.desk, call); }), refusal(reason));
        QCOMPARE(counter.prices(), prices);
        QCOMPARE(reportsOf(counter), reports);
    }

    void everyFaultOfTheJournalIsSaidInWords_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("obstacle");

        QTest::newRow("locked")
            << "locked"
            << "The sales journal is in use by another program. Nothing can be sold.";
        QTest::newRow("damaged") << "damaged" << lostJournal;
        QTest::newRow("foreign") << "foreign"
                                 << "The file given as sales journal is not one of this terminal. "
                                    "Nothing can be sold.";
        QTest::newRow("other version")
            << "PRAGMA user_version=7"
            << "The sales journal was kept by another version of this terminal. Nothing can be "
               "sold.";
        QTest::newRow("other currency")
            << "UPDATE journal SET currency = 'PLN'"
            << "The sales journal is kept in another currency. Nothing can be sold.";
        QTest::newRow("unreachable") << "unreachable"
                                     << "The sales journal cannot be written. Nothing can be sold.";
    }

    void everyFaultOfTheJournalIsSaidInWords()
    {
        QFETCH(QString, fault);
        QFETCH(QString, obstacle);
        Journal other;
        QString path = file();
        if (fault == "locked") {
            other.open(path, euro, 1);
        } else if (fault == "foreign") {
            changeJournal("PRAGMA application_id=7");
        } else if (fault.contains(' ')) {
            changeJournal(fault);
        } else if (fault == "damaged") {
            QFile text(path);
            QVERIFY(text.open(QIODevice::WriteOnly));
            text.write("nothing to see here");
        } else {
            path = m_folder->filePath("none/journal.db");
        }
        Counter counter(path);
        QCOMPARE(counter.desk.obstacle(), obstacle);
        QCOMPARE(counter.zReports.rowCount(), 0);
        SignalLog log(&counter.desk);
        QVERIFY(!counter.desk.add(AdultSingle));
        QVERIFY(!counter.desk.closeShift());
        QCOMPARE(log.take(),
                 (QStringList{"refused(" + obstacle + ")", "refused(" + obstacle + ")"}));
        QCOMPARE(counter.basket.rowCount(), 0);
    }

    void journalThatFillsUpStopsSelling_data()
    {
        QTest::addColumn<QString>("call");
        QTest::addColumn<QString>("state");

        QTest::newRow("line of the basket") << "add 0"
                                            << "basket";
        QTest::newRow("removed line") << "remove 0"
                                      << "basket";
        QTest::newRow("emptied basket") << "clear"
                                        << "basket";
        QTest::newRow("cash sale") << "pay 1"
                                   << "basket";
        QTest::newRow("closed shift") << "close"
                                      << "empty";
        QTest::newRow("cash handed over") << "handOver 17"
                                          << "closed";
    }

    void journalThatFillsUpStopsSelling()
    {
        QFETCH(QString, call);
        QFETCH(QString, state);
        const QString full = "There is no space left for the sales journal. Nothing can be sold.";
        QVector<qint64> prices;
        QStringList reports;
        {
            Counter counter(file());
            bring(counter, state);
            prices = counter.prices();
            reports = reportsOf(counter);
            fillUp();
            QCOMPARE(outcomeOf(counter, [&] { return run(counter.desk, call); }),
                     (QStringList{"false", "obstacleChanged()", "refused(" + full + ")"}));
            QCOMPARE(counter.desk.obstacle(), full);
            QCOMPARE(counter.desk.state(), SalesDesk::Selling);
            QCOMPARE(counter.prices(), prices);
            QCOMPARE(reportsOf(counter), reports);
            for (const char* next : {"add 0", "clear", "pay 1", "close"})
                QCOMPARE(outcomeOf(counter, [&] { return run(counter.desk, next); }),
                         refusal(full));
        }
        Counter again(file());
        QCOMPARE(again.desk.obstacle(), QString());
        QCOMPARE(again.prices(), prices);
        QCOMPARE(reportsOf(again), reports);
        QVERIFY(run(again.desk, call));
    }

    /// The passenger has paid: the tickets come out. After a restart the driver says that they are,
    /// since the journal could not.
    void journalThatFillsUpWhilePrintingFinishesTheSale()
    {
        {
            Counter counter(file());
            QVERIFY(counter.desk.add(AdultSingle));
            QVERIFY(counter.desk.add(ChildSingle));
            QVERIFY(counter.desk.pay(SalesDesk::Cash));
            fillUp();
            SignalLog log(&counter.desk);
            QVERIFY(waitForEndOfSale(counter));
            QVERIFY(log.take().contains("saleFinished()"));
            QVERIFY(!counter.desk.obstacle().isEmpty());
            QCOMPARE(counter.basket.rowCount(), 0);
            QVERIFY(!counter.desk.add(AdultSingle));
        }
        Counter again(file());
        QCOMPARE(again.prices(), (QVector<qint64>{190, 95}));
        QCOMPARE(again.desk.state(), SalesDesk::Interrupted);
        SignalLog printer(&again.printer);
        QVERIFY(again.desk.confirmTicketInDoubt());
        QVERIFY(again.desk.confirmTicketInDoubt());
        QCOMPARE(again.desk.state(), SalesDesk::Selling);
        QCOMPARE(printer.take(), QStringList());
        QCOMPARE(again.report()->ticketCount(), 2);
    }

    void basketHasRoomForTwoHundredTickets()
    {
        Counter counter(file());
        bring(counter, "full");
        QCOMPARE(counter.basket.rowCount(), SalesDesk::mostTickets);
        QCOMPARE(counter.desk.totalText(), "€380.00");
        QVERIFY(counter.desk.remove(57));
        QVERIFY(counter.desk.add(ChildSingle));
        QVERIFY(counter.desk.pay(SalesDesk::Card));
        QCOMPARE(counter.report()->ticketCount(), 200);
        QCOMPARE(counter.report()->cardSellAmnt(), 379.05);
        QVERIFY(waitForEndOfSale(counter));
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
            seen.append(QStringLiteral("report %1 %2")
                            .arg(count("sale"))
                            .arg(count("shift WHERE closed_at IS NOT NULL")));
        });
        connect(&counter.desk, &SalesDesk::saleConfirmed, this,
                [&] { seen.append(QStringLiteral("confirmed %1").arg(count("sale"))); });
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this,
                [&](const QModelIndex& index) {
                    if (counter.line(index.row())->printed())
                        seen.append(
                            QStringLiteral("printed %1").arg(count("ticket WHERE printed = 1")));
                });
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.remove(1));
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QVERIFY(waitForEndOfSale(counter));
        QVERIFY(counter.desk.closeShift());
        seen.removeDuplicates();
        QCOMPARE(seen,
                 (QStringList{"insert 1", "insert 2", "insert 3", "remove 2", "report 1 0",
                              "confirmed 1", "printed 1", "printed 2", "remove 0", "report 1 1"}));
    }

    void ticketsArePrintedOneByOne()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(ChildSingle));
        QVERIFY(counter.desk.add(Free));
        SignalLog desk(&counter.desk);
        SignalLog basket(&counter.basket);
        QStringList progress;
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this,
                [&] { progress.append(progressOf(counter)); });
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QCOMPARE(desk.take(), (QStringList{"stateChanged()", "saleConfirmed(3)"}));
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(waitForEndOfSale(counter));
        QCOMPARE(progress, (QStringList{"a- -- --", "ap -- --", "ap a- --", "ap ap --", "ap ap a-",
                                        "ap ap ap"}));
        QCOMPARE(basket.take(), (QStringList{rowChanged(0), rowChanged(0), rowChanged(1),
                                             rowChanged(1), rowChanged(2), rowChanged(2)} +
                                 announcedRemoval(0, 2, 0) + QStringList{countChanged(0)}));
        QCOMPARE(desk.take(), (QStringList{"totalChanged()", "stateChanged()", "saleFinished()"}));
        QCOMPARE(counter.desk.totalText(), "€0.00");
        QCOMPARE(rowsOf(onlyConnection(), "SELECT number, printed FROM ticket"),
                 (QStringList{"1|1", "2|1", "3|1"}));
    }

    void linesSayHowTheyWerePaid()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        QCOMPARE(counter.line(0)->payMethod(), -1);
        QVERIFY(counter.desk.pay(SalesDesk::Card));
        QCOMPARE(counter.line(0)->payMethod(), 2);
        QCOMPARE(counter.line(0)->payChannel(), driverChannel);
        QVERIFY(waitForEndOfSale(counter));
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QCOMPARE(counter.line(0)->payMethod(), 1);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT pay_method FROM sale"), (QStringList{"2", "1"}));
    }

    /// Whoever reacts to a sale finds the desk busy: nothing is sold twice.
    void slotsCannotSellTheSameBasketAgain()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        int refused = 0;
        const auto interfere = [&] {
            refused += counter.desk.pay(SalesDesk::Cash) ? 0 : 1;
            refused += counter.desk.add(ChildSingle) ? 0 : 1;
            refused += counter.desk.closeShift() ? 0 : 1;
        };
        connect(&counter.desk, &SalesDesk::saleConfirmed, this, interfere);
        connect(&counter.zReports, &QAbstractItemModel::dataChanged, this, interfere);
        connect(&counter.basket, &QAbstractItemModel::dataChanged, this, interfere);
        connect(&counter.basket, &QAbstractItemModel::rowsRemoved, this, interfere);
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QVERIFY(waitForEndOfSale(counter));
        QVERIFY(refused > 0);
        QCOMPARE(refused % 3, 0);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT total FROM sale"), QStringList("190"));
        QCOMPARE(counter.basket.rowCount(), 0);
    }

    void printerFaultBlocksPayment()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        SignalLog log(&counter.desk);
        counter.printer.setFault("no paper");
        QCOMPARE(log.take(), QStringList("obstacleChanged()"));
        QCOMPARE(counter.desk.obstacle(), "The ticket printer cannot print: no paper");
        QVERIFY(counter.desk.add(ChildSingle)); // the basket may be prepared
        QVERIFY(!counter.desk.pay(SalesDesk::Cash));
        counter.printer.setFault("cover open");
        QCOMPARE(counter.desk.obstacle(), "The ticket printer cannot print: cover open");
        log.take();
        counter.printer.setFault({});
        QCOMPARE(log.take(), QStringList("obstacleChanged()"));
        QCOMPARE(counter.desk.obstacle(), QString());
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QVERIFY(waitForEndOfSale(counter));
    }

    void printerFaultWhilePrintingWaits()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(ChildSingle));
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QVERIFY(QTest::qWaitFor([&] { return counter.line(0)->printed(); }));
        counter.printer.setFault("no paper");
        QVERIFY(
            QTest::qWaitFor([&] { return counter.desk.state() == SalesDesk::WaitingForPrinter; }));
        QCOMPARE(progressOf(counter), "ap a-");
        counter.printer.setFault("cover open");
        QCOMPARE(counter.desk.state(), SalesDesk::WaitingForPrinter);
        SignalLog log(&counter.desk);
        counter.printer.setFault({});
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(waitForEndOfSale(counter));
        QCOMPARE(log.take(), (QStringList{"obstacleChanged()", "stateChanged()", "totalChanged()",
                                          "stateChanged()", "saleFinished()"}));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM ticket WHERE printed = 1"),
                 QStringList("2"));
    }

    /// The paper is spoilt: the ticket is printed again.
    void faultThatIsGoneBeforeTheTicketIsOutSpoilsIt()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        SignalLog printer(&counter.printer);
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        counter.printer.setFault("cover open");
        counter.printer.setFault({});
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QVERIFY(waitForEndOfSale(counter));
        QCOMPARE(printer.take(),
                 (QStringList{"faultChanged()", "faultChanged()", "failed()", "printed()"}));
    }

    void sameFaultAgainIsNoNews()
    {
        Counter counter(file());
        counter.printer.setFault("no paper");
        SignalLog log(&counter.printer);
        counter.printer.setFault("no paper");
        QCOMPARE(log.take(), QStringList());
    }

    void printerWithoutASaleIsIgnored()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        SignalLog printer(&counter.printer);
        SignalLog desk(&counter.desk);
        counter.printer.print(); // the driver's paper feed
        QVERIFY(QTest::qWaitFor([&] { return !printer.take().isEmpty(); }));
        QCOMPARE(desk.take(), QStringList());
        counter.printer.print();
        counter.printer.setFault("no paper");
        QVERIFY(QTest::qWaitFor([&] { return printer.take().contains("failed()"); }));
        QCOMPARE(desk.take(), QStringList("obstacleChanged()"));
        QCOMPARE(counter.basket.rowCount(), 1);
    }

    void basketIsThereAfterARestart()
    {
        {
            Counter counter(file());
            QVERIFY(counter.desk.add(AdultSingle));
            QVERIFY(counter.desk.add(ChildSingle));
            QVERIFY(counter.desk.add(DayTicket));
            QVERIFY(counter.desk.remove(0));
        }
        Counter counter(file());
        QCOMPARE(counter.prices(), (QVector<qint64>{95, 450}));
        QCOMPARE(counter.desk.totalText(), "€5.45");
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(badges(counter), (QVector<int>{0, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0}));
        QCOMPARE(counter.line(1)->isDaily(), true);
        QCOMPARE(counter.line(0)->origin(), "zone 1");
        QCOMPARE(counter.line(0)->tripsExecutionId(), 10);
        QCOMPARE(counter.line(0)->publicRouteExecutionId(), "night bus");
        QVERIFY(counter.desk.remove(0));
        QVERIFY(counter.desk.pay(SalesDesk::Cash));
        QVERIFY(waitForEndOfSale(counter));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT total FROM sale"), QStringList("450"));
    }

    void emptiedBasketIsEmptyAfterARestart()
    {
        {
            Counter counter(file());
            QVERIFY(counter.desk.add(AdultSingle));
            QVERIFY(counter.desk.clear());
        }
        Counter counter(file());
        QCOMPARE(counter.basket.rowCount(), 0);
    }

    /// Nobody but the driver knows whether the paper is out.
    void interruptedPrintingIsAskedAboutAfterARestart()
    {
        interruptPrinting();
        Counter counter(file());
        QCOMPARE(counter.desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter.desk.ticketsInDoubt(), 2);
        QCOMPARE(counter.desk.firstTicketInDoubt(), "000002");
        QCOMPARE(counter.desk.obstacle(), QString());
        QCOMPARE(counter.prices(), (QVector<qint64>{95, 0}));
        QCOMPARE(progressOf(counter), "-- --");
        const QStringList before = journalContent();
        SignalLog printer(&counter.printer);
        SignalLog desk(&counter.desk);
        const QString decide =
            "refused(The last sale was interrupted: say first which tickets are out.)";
        for (const char* call : {"add 0", "remove 0", "clear", "pay 1", "close"})
            QVERIFY(!run(counter.desk, call));
        QCOMPARE(desk.take(), (QStringList{decide, decide, decide, decide, decide}));
        counter.printer.print(); // for somebody else
        QVERIFY(QTest::qWaitFor([&] { return printer.take().contains("printed()"); }));
        counter.printer.print();
        counter.printer.setFault("no paper");
        counter.printer.setFault({});
        QVERIFY(QTest::qWaitFor([&] { return printer.take().contains("failed()"); }));
        QTest::qWait(1);
        QCOMPARE(printer.take(), QStringList());
        QCOMPARE(counter.desk.state(), SalesDesk::Interrupted);
        QCOMPARE(progressOf(counter), "-- --");
        QCOMPARE(journalContent(), before);
    }

    void ticketThatIsOutIsNotPrintedAgain()
    {
        interruptPrinting();
        Counter counter(file());
        SignalLog printer(&counter.printer);
        SignalLog desk(&counter.desk);
        QVERIFY(counter.desk.confirmTicketInDoubt());
        QCOMPARE(desk.take(), QStringList("ticketsInDoubtChanged()"));
        QCOMPARE(counter.desk.ticketsInDoubt(), 1);
        QCOMPARE(counter.desk.firstTicketInDoubt(), "000003");
        QCOMPARE(progressOf(counter), "ap --");
        QCOMPARE(rowsOf(onlyConnection(), "SELECT number FROM ticket WHERE printed = 0"),
                 QStringList("3"));
        QVERIFY(counter.desk.confirmTicketInDoubt());
        QCOMPARE(desk.take(), (QStringList{"ticketsInDoubtChanged()", "totalChanged()",
                                           "stateChanged()", "saleFinished()"}));
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(counter.desk.ticketsInDoubt(), 0);
        QCOMPARE(counter.desk.firstTicketInDoubt(), QString());
        QCOMPARE(counter.basket.rowCount(), 0);
        QCOMPARE(printer.take(), QStringList());
        QVERIFY(!counter.desk.confirmTicketInDoubt());
        QVERIFY(counter.desk.add(AdultSingle));
    }

    void journalThatFillsUpKeepsTheDoubt()
    {
        interruptPrinting();
        Counter counter(file());
        fillUp();
        const QString full = "There is no space left for the sales journal. Nothing can be sold.";
        const QStringList expected{"false", "obstacleChanged()", "refused(" + full + ")"};
        QCOMPARE(outcomeOf(counter, [&] { return counter.desk.confirmTicketInDoubt(); }), expected);
        QCOMPARE(outcomeOf(counter, [&] { return counter.desk.confirmTicketInDoubt(); }), expected);
        QCOMPARE(counter.desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter.desk.ticketsInDoubt(), 2);
        QCOMPARE(progressOf(counter), "-- --");
    }

    /// They have been paid; that they are out is noted as far as the journal can.
    void ticketsInDoubtArePrintedWithoutAJournal()
    {
        interruptPrinting();
        Counter counter(file());
        fillUp();
        QVERIFY(counter.desk.printTicketsInDoubt());
        QVERIFY(waitForEndOfSale(counter));
        QVERIFY(!counter.desk.obstacle().isEmpty());
    }

    void allTicketsInDoubtAreOutThoughThePrinterCannotPrint()
    {
        interruptPrinting();
        Counter counter(file(), euro, 0.0, "no paper");
        QVERIFY(counter.desk.confirmTicketInDoubt());
        QVERIFY(counter.desk.confirmTicketInDoubt());
        QCOMPARE(counter.desk.state(), SalesDesk::Selling);
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM ticket WHERE printed = 0"),
                 QStringList("0"));
    }

    void cashIsHandedOverInEveryState_data()
    {
        QTest::addColumn<QString>("state");

        for (const char* state : {"empty", "basket", "printing", "waiting", "fault"})
            QTest::newRow(state) << state;
    }

    void cashIsHandedOverInEveryState()
    {
        QFETCH(QString, state);
        Counter counter(file());
        bring(counter, "closed");
        bring(counter, state);
        const SalesDesk::State before = counter.desk.state();
        const QString progress = progressOf(counter);
        QVERIFY(counter.desk.handOver(17));
        QCOMPARE(counter.desk.state(), before);
        QCOMPARE(progressOf(counter), progress);
        QCOMPARE(counter.report(1)->currentDebt(), 0.0);
    }

    void cashIsHandedOverWhileTicketsAreInDoubt()
    {
        {
            Counter counter(file());
            bring(counter, "closed");
        }
        interruptPrinting();
        Counter counter(file());
        QVERIFY(counter.desk.handOver(17));
        QCOMPARE(counter.desk.state(), SalesDesk::Interrupted);
        QCOMPARE(counter.desk.ticketsInDoubt(), 2);
        QCOMPARE(debtsOf(counter), (QVector<double>{0.0, 0.0}));
    }

    void ticketsInDoubtArePrintedIfTheDriverSaysSo()
    {
        interruptPrinting();
        Counter counter(file());
        QVERIFY(counter.desk.printTicketsInDoubt());
        QCOMPARE(counter.desk.ticketsInDoubt(), 0);
        QCOMPARE(counter.desk.state(), SalesDesk::Printing);
        QCOMPARE(counter.prices(), (QVector<qint64>{95, 0}));
        QCOMPARE(counter.line(0)->payMethod(), 2);
        QCOMPARE(counter.line(0)->payChannel(), driverChannel);
        QCOMPARE(progressOf(counter), "a- --");
        SignalLog log(&counter.desk);
        QVERIFY(waitForEndOfSale(counter));
        QVERIFY(log.take().contains("saleFinished()"));
        QCOMPARE(counter.basket.rowCount(), 0);
        QCOMPARE(text(*counter.report()),
                 "17 open: 3 tickets 2.85, 3 by card 2.85, 000001-000003, z 2.85, debt 0 of 0");
        QCOMPARE(rowsOf(onlyConnection(), "SELECT COUNT(*) FROM ticket WHERE printed = 1"),
                 QStringList("3"));
    }

    void printingOfDoubtsWaitsForThePrinter()
    {
        {
            Counter counter(file());
            QVERIFY(counter.desk.add(AdultSingle));
            QVERIFY(counter.desk.pay(SalesDesk::Cash));
            counter.printer.setFault("no paper");
            QVERIFY(QTest::qWaitFor(
                [&] { return counter.desk.state() == SalesDesk::WaitingForPrinter; }));
        }
        Counter counter(file(), euro, 0.0, "no paper");
        QCOMPARE(counter.desk.state(), SalesDesk::Interrupted);
        QVERIFY(counter.desk.printTicketsInDoubt());
        QCOMPARE(counter.desk.state(), SalesDesk::WaitingForPrinter);
        QCOMPARE(progressOf(counter), "--");
        QVERIFY(!counter.desk.add(AdultSingle));
        counter.printer.setFault({});
        QVERIFY(waitForEndOfSale(counter));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT number, printed FROM ticket"),
                 QStringList("1|1"));
    }

    void reportFollowsTheSales()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(sell(counter, {AdultSingle, ChildSingle}, SalesDesk::Cash));
        QCOMPARE(text(*counter.report()),
                 "17 open: 2 tickets 2.85, 0 by card 0, 000001-000002, z 2.85, debt 2.85 of 100");
        QVERIFY(sell(counter, {DayTicket}, SalesDesk::Card));
        QCOMPARE(text(*counter.report()),
                 "17 open: 3 tickets 7.35, 1 by card 4.5, 000001-000003, z 7.35, debt 2.85 of 100");
    }

    /// setCardSellAmnt() does not take what equals the ticket sum of the moment.
    void cardSumIsTrueForEveryOrderOfSales_data()
    {
        QTest::addColumn<QString>("sales"); // tile letters, upper case by card

        QTest::newRow("first by card") << "A";
        QTest::newRow("all by card") << "A C D A";
        QTest::newRow("first by card, equal to the sum before") << "a A";
        QTest::newRow("card sum equal to the sum before") << "a c A C";
        QTest::newRow("twice the same") << "a A A";
        QTest::newRow("free by card first") << "F";
        QTest::newRow("free by card behind cash") << "a F A";
        QTest::newRow("free by card behind card") << "A F F";
        QTest::newRow("free by cash behind card") << "A f A";
        QTest::newRow("card, cash, card") << "A a A c C d D";
        QTest::newRow("card sum reaches the sum of before by two") << "d C C C";
    }

    void cardSumIsTrueForEveryOrderOfSales()
    {
        QFETCH(QString, sales);
        Counter counter(file());
        qint64 sum = 0;
        qint64 cardSum = 0;
        for (const QString& sale : sales.split(' ')) {
            const QChar letter = sale.at(0).toLower();
            const int tile = letter == 'a'   ? AdultSingle
                             : letter == 'c' ? ChildSingle
                             : letter == 'd' ? DayTicket
                                             : Free;
            const qint64 price = letter == 'a' ? 190 : letter == 'c' ? 95 : letter == 'd' ? 450 : 0;
            const bool isCard = sale.at(0).isUpper();
            sum += price;
            cardSum += isCard ? price : 0;
            QVERIFY(sell(counter, {tile}, isCard ? SalesDesk::Card : SalesDesk::Cash));
            compareSums(counter, sum, cardSum);
        }
        counter.printer.setFault({});
    }

    void cardSumIsTrueForRandomSales()
    {
        QRandomGenerator random(20260329);
        const QVector<QPair<int, qint64>> tiles{
            {AdultSingle, 190}, {ChildSingle, 95}, {DayTicket, 450}, {Free, 0}, {TooExact, 101}};
        qint64 owed = 0;
        for (int shift = 0; shift < 12; ++shift) {
            Counter counter(file());
            rowsOf(onlyConnection(), "PRAGMA synchronous=OFF"); // this is about sums
            qint64 sum = 0;
            qint64 cardSum = 0;
            int cardCount = 0;
            const int cardShare = random.bounded(5);
            for (int sale = 0; sale < 12; ++sale) {
                const bool isCard = random.bounded(4) < cardShare;
                QVector<int> basket;
                for (int count = 1 + random.bounded(3); count > 0; --count) {
                    const auto& [tile, price] = tiles.at(random.bounded(tiles.size()));
                    basket.append(tile);
                    sum += price;
                    cardSum += isCard ? price : 0;
                    cardCount += isCard ? 1 : 0;
                }
                QVERIFY(sell(counter, basket, isCard ? SalesDesk::Card : SalesDesk::Cash));
                compareSums(counter, sum, cardSum, owed);
                QCOMPARE(counter.report()->cardSellCount(), cardCount);
            }
            QVERIFY(counter.desk.closeShift());
            if (shift % 2 == 0)
                owed += sum - cardSum;
            else if (sum > cardSum)
                QVERIFY(counter.desk.handOver(counter.report(1)->zNumber()));
            QCOMPARE(counter.report()->currentDebt(), euro.toUnits(owed));
        }
    }

    void closingNumbersTheReportAndStartsTheNext()
    {
        Counter counter(file(), euro, 100.0);
        QVERIFY(sell(counter, {AdultSingle}, SalesDesk::Cash));
        QVERIFY(sell(counter, {ChildSingle}, SalesDesk::Card));
        SignalLog log(&counter.desk);
        QVERIFY(counter.desk.closeShift());
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
        QVERIFY(sell(counter, {DayTicket}, SalesDesk::Cash));
        for (const QString& each : reports.take())
            QCOMPARE(each, rowChanged(0)); // the row that runs now, each change once
        QCOMPARE(text(*counter.report()),
                 "18 open: 1 tickets 4.5, 0 by card 0, 000003-000003, z 4.5, debt 6.4 of 100");
    }

    void cashIsOwedUntilItIsHandedOver()
    {
        Counter counter(file(), euro, 100.0);
        for (const int tile : {AdultSingle, ChildSingle, DayTicket}) {
            QVERIFY(sell(counter, {tile}, SalesDesk::Cash));
            if (tile != DayTicket)
                QVERIFY(counter.desk.closeShift());
        }
        QCOMPARE(debtsOf(counter), (QVector<double>{7.35, 0.95, 1.9}));
        SignalLog desk(&counter.desk);
        SignalLog reports(&counter.zReports);
        QVERIFY(counter.desk.handOver(17));
        QCOMPARE(desk.take(), QStringList("shiftPaid(double)"));
        const QStringList changes = reports.take();
        QCOMPARE(changes.mid(0, 2), (QStringList{rowChanged(2), rowChanged(2)}));
        QCOMPARE(changes.last(), rowChanged(0));
        QCOMPARE(debtsOf(counter), (QVector<double>{5.45, 0.95, 0.0}));
        QVERIFY(counter.report(2)->paymentDate().isValid());
        QVERIFY(!counter.report(1)->paymentDate().isValid());
        QVERIFY(counter.desk.add(AdultSingle)); // an open basket does not matter
        QVERIFY(counter.desk.handOver(18));
        QCOMPARE(debtsOf(counter), (QVector<double>{4.5, 0.0, 0.0}));
        QVERIFY(counter.desk.clear());
        QVERIFY(counter.desk.closeShift());
        QCOMPARE(debtsOf(counter), (QVector<double>{4.5, 4.5, 0.0, 0.0}));
    }

    void debtIsThereAfterARestart()
    {
        QStringList before;
        QDateTime paidAt;
        {
            Counter counter(file(), euro, 50.0);
            for (const int tile : {AdultSingle, ChildSingle, DayTicket}) {
                QVERIFY(sell(counter, {tile}, SalesDesk::Cash));
                QVERIFY(counter.desk.closeShift());
            }
            QVERIFY(counter.desk.handOver(18));
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
        QVERIFY(sell(counter, {ChildSingle}, SalesDesk::Cash));
        QCOMPARE(debtsOf(counter), (QVector<double>{7.35, 4.5, 0.0, 1.9}));
        QVERIFY(counter.desk.handOver(17));
        QCOMPARE(debtsOf(counter), (QVector<double>{5.45, 4.5, 0.0, 0.0}));
        QVERIFY(counter.desk.handOver(19));
        QCOMPARE(debtsOf(counter), (QVector<double>{0.95, 0.0, 0.0, 0.0}));
    }

    void shiftWithoutCashOwesNothing()
    {
        Counter counter(file());
        QVERIFY(sell(counter, {AdultSingle}, SalesDesk::Card));
        QVERIFY(counter.desk.closeShift());
        QCOMPARE(debtsOf(counter), (QVector<double>{0.0, 0.0}));
        QVERIFY(counter.report(1)->paymentDate().isValid());
        QVERIFY(!counter.desk.handOver(17));
    }

    void reportsAreThereAfterARestart()
    {
        QStringList before;
        {
            Counter counter(file(), euro, 50.0);
            QVERIFY(sell(counter, {AdultSingle}, SalesDesk::Cash));
            QVERIFY(counter.desk.closeShift());
            QVERIFY(sell(counter, {ChildSingle}, SalesDesk::Card));
            QVERIFY(counter.desk.closeShift());
            QVERIFY(sell(counter, {DayTicket}, SalesDesk::Cash));
            before = reportsOf(counter);
        }
        QCOMPARE(before.size(), 3);
        Counter counter(file(), euro, 50.0);
        QCOMPARE(reportsOf(counter), before);
    }

    void shiftWithoutSalesCanBeClosed()
    {
        Counter counter(file());
        QVERIFY(counter.desk.closeShift());
        QCOMPARE(reportsOf(counter),
                 (QStringList{"18 open: 0 tickets 0, 0 by card 0, -, z 0, debt 0 of 0",
                              "17 closed: 0 tickets 0, 0 by card 0, -, z 0, debt 0 of 0"}));
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
        for (const char* table : {"basket", "sale", "ticket", "shift"}) {
            for (const char* change : {"INSERT", "UPDATE", "DELETE"})
                rowsOf(db, QString(guard).arg(change, table));
        }
    }

    /// The journal of a sale of which one ticket of three was noted as printed.
    void interruptPrinting()
    {
        Counter counter(file());
        QVERIFY(counter.desk.add(AdultSingle));
        QVERIFY(counter.desk.add(ChildSingle));
        QVERIFY(counter.desk.add(Free));
        QVERIFY(counter.desk.pay(SalesDesk::Card));
        QVERIFY(QTest::qWaitFor([&] { return counter.line(0)->printed(); }));
    }

    /// A journal with one change.
    void changeJournal(const QString& statement)
    {
        Journal journal;
        journal.open(file(), euro, 1);
        rowsOf(onlyConnection(), statement);
    }

    static QVector<double> debtsOf(const Counter& counter)
    {
        QVector<double> debts;
        for (int row = 0; row < counter.zReports.rowCount(); ++row)
            debts.append(counter.report(row)->currentDebt());
        return debts;
    }

    /// Brings a new desk into a state, see refusals_data().
    static void bring(Counter& counter, const QString& state)
    {
        if (state == "empty")
            return;
        if (state == "closed" || state == "shifts") {
            QVERIFY(sell(counter, {AdultSingle}, SalesDesk::Cash));
            QVERIFY(counter.desk.closeShift());
            if (state == "shifts") {
                QVERIFY(sell(counter, {AdultSingle}, SalesDesk::Cash));
                QVERIFY(counter.desk.handOver(17));
            }
            return;
        }
        if (state == "full") {
            rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
            for (int i = 0; i < SalesDesk::mostTickets; ++i)
                counter.desk.add(AdultSingle);
            return;
        }
        counter.desk.add(AdultSingle);
        counter.desk.add(ChildSingle);
        if (state == "printing" || state == "waiting")
            counter.desk.pay(SalesDesk::Cash);
        if (state == "waiting" || state == "fault")
            counter.printer.setFault("no paper");
        if (state == "waiting")
            QTest::qWait(1);
        if (state == "damaged") {
            rowsOf(onlyConnection(), "ALTER TABLE basket RENAME TO lost");
            counter.desk.clear();
            rowsOf(onlyConnection(), "ALTER TABLE lost RENAME TO basket");
        }
    }

    /// "add 3", "remove 0", "clear", "pay 1", "close", "handOver 17", "out" or "rest".
    static bool run(SalesDesk& desk, const QString& call)
    {
        const int argument = call.section(' ', 1).toInt();
        if (call.startsWith("add"))
            return desk.add(argument);
        if (call.startsWith("remove"))
            return desk.remove(argument);
        if (call == "clear")
            return desk.clear();
        if (call.startsWith("pay"))
            return desk.pay(static_cast<SalesDesk::Payment>(argument));
        if (call.startsWith("handOver"))
            return desk.handOver(argument);
        if (call == "out")
            return desk.confirmTicketInDoubt();
        if (call == "rest")
            return desk.printTicketsInDoubt();
        return desk.closeShift();
    }

    static void compareSums(const Counter& counter, qint64 sum, qint64 cardSum, qint64 owed = 0)
    {
        QCOMPARE(counter.report()->ticketSumAmnt(), euro.toUnits(sum));
        QCOMPARE(counter.report()->zSum(), euro.toUnits(sum));
        QCOMPARE(counter.report()->cardSellAmnt(), euro.toUnits(cardSum));
        QCOMPARE(counter.report()->currentDebt(), euro.toUnits(sum - cardSum + owed));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_GUILESS_MAIN(TestSalesDesk)
#include "tst_sales_desk.moc"
