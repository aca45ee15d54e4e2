#pragma once

#include "LogCapture.h"

#include <FareProductItem.h>
#include <FareProductsModel.h>
#include <Journal.h>
#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <SalesDesk.h>
#include <ShoppingBasketModel.h>
#include <ShoppingItem.h>
#include <SimulatedPaymentTerminal.h>
#include <SimulatedPrinter.h>
#include <TripContext.h>
#include <ZReportItem.h>
#include <ZReportModel.h>

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVector>

#include <cmath>
#include <optional>

/// What belongs to a journal beside its database and log.
inline const QStringList companions{".head", ".key", ".pub"};

/// A journal that never was.
inline void removeJournal(const QString& file)
{
    QFile::remove(file);
    QFile::remove(file + "-wal");
    for (const QString& companion : companions)
        QFile::remove(file + companion);
}

inline void copyCompanions(const QString& from, const QString& to)
{
    for (const QString& companion : companions) {
        QFile::remove(to + companion);
        if (!QFile::copy(from + companion, to + companion))
            qFatal("%s%s cannot be copied", qPrintable(from), qPrintable(companion));
    }
}

/// Rows of an SQL query as texts, values separated by "|"; the error if it fails.
inline QStringList rowsOf(const QSqlDatabase& database, const QString& statement)
{
    QSqlQuery query(database);
    if (!query.exec(statement))
        return {query.lastError().text()};
    QStringList rows;
    while (query.next()) {
        QStringList values;
        for (int at = 0; at < query.record().count(); ++at)
            values.append(query.value(at).toString());
        rows.append(values.join('|'));
    }
    return rows;
}

/// The connection of the one journal that is open in this process: others find it locked.
inline QSqlDatabase onlyConnection()
{
    const QStringList names = QSqlDatabase::connectionNames();
    if (names.size() != 1)
        qFatal("%d journals are open", static_cast<int>(names.size()));
    return QSqlDatabase::database(names.first(), false);
}

/// All that the open journal has.
inline QStringList journalContent()
{
    QStringList content;
    for (const char* table :
         {"shift", "record", "opening", "sale", "ticket", "printout", "reversal", "reversed_ticket",
          "closing", "hand_over", "unprinted", "basket", "payment", "payment_ticket", "outcome",
          "card_sale", "card_reversal", "card_day", "clock"})
        content.append(
            rowsOf(onlyConnection(), QStringLiteral("SELECT '%1', * FROM %1").arg(table)));
    return content;
}

inline const rivo::sales::Currency euro(QStringLiteral("EUR"), 2);

/// The tiles of a Counter.
enum Tile {
    AdultSingle, ///< 1.90
    ChildSingle, ///< 0.95, same fare product
    DayTicket,   ///< 4.50, daily
    Placeholder,
    Expired,
    Free,    ///< 0.00
    NoPrice, ///< NaN
    NegativePrice,
    ReturnFee,    ///< 1.90, the adult's single but for the flag
    TooExact,     ///< 1.005
    SeniorSingle, ///< 1.90, the adult's single but for the passenger type
    TileCount
};

/// A terminal without a screen: the models, a journal, a printer that takes no time, and the desk
/// over them, which may use another printer. Made anew over the same file, it is the terminal after
/// a restart.
struct Counter
{
    explicit Counter(const QString& file, const rivo::sales::Currency& money = euro,
                     double maxDebt = 0.0, const QString& printerFault = {},
                     rivo::sales::TicketPrinter* other = nullptr,
                     rivo::payment::PaymentTerminal* otherCards = nullptr)
        : currency(money),
          desk(
              {grid, basket, fareProducts, zReports}, journal, other != nullptr ? *other : printer,
              currency, [](int zone) { return QStringLiteral("zone %1").arg(zone); }, trip)
    {
        fillGrid();
        for (const int product : {21, 22, 23})
            fareProducts.addItem(product, {}, {}, 1.0, 0.0, false, true, {}, {}, {}, {});
        printer.setTicketTime(0);
        printer.setFault(printerFault);
        cards.setTime(0);
        desk.card()->setTerminal(otherCards != nullptr ? otherCards : &cards);
        journal.open(file, currency, 17);
        desk.restore(maxDebt);
    }

    ShoppingItem* line(int row) const
    {
        return qobject_cast<ShoppingItem*>(basket.itemFromRow(row));
    }
    ZReportItem* report(int row = 0) const
    {
        return qobject_cast<ZReportItem*>(zReports.itemFromRow(row));
    }
    int badge(int row) const
    {
        return qobject_cast<PassengerTypeItem*>(grid.itemFromRow(row))->totalInBasket();
    }
    int productBadge(int row) const
    {
        return qobject_cast<FareProductItem*>(fareProducts.itemFromRow(row))->totalInBasket();
    }

    /// Prices of the basket in minor units, top row first.
    QVector<qint64> prices() const
    {
        QVector<qint64> all;
        for (int row = 0; row < basket.rowCount(); ++row)
            all.append(currency.fromUnits(line(row)->price()).value_or(-1));
        return all;
    }

    const rivo::sales::Currency currency;
    LogCapture log;
    QObject prototypes;
    rivo::feed::TripContext trip{
        rivo::feed::FeedTripContext{5, 6, 7, 8, 9, 10, QStringLiteral("night bus")}};
    PassengerTypesModel grid{&prototypes};
    ShoppingBasketModel basket{&prototypes};
    FareProductsModel fareProducts{&prototypes};
    ZReportModel zReports{&prototypes};
    rivo::sales::Journal journal;
    rivo::sales::SimulatedPrinter printer;
    rivo::payment::SimulatedPaymentTerminal cards; ///< answers at once
    rivo::sales::SalesDesk desk;

private:
    static sProduct product(int type, const QString& description, int fareProduct, double price)
    {
        sProduct made;
        made.passengerTypeId = type;
        made.description = description;
        made.passengerTypeCode = 1;
        made.icon = QStringLiteral("qrc:/icons/%1.svg").arg(description);
        made.price = price;
        made.fareProductId = fareProduct;
        made.fareProductName = QStringLiteral("product %1").arg(fareProduct);
        made.fromStopGroupId = 1;
        made.toStopGroupId = 2;
        made.hasExpired = false;
        return made;
    }

    void fillGrid()
    {
        QVector<sProduct> tiles(TileCount);
        tiles[AdultSingle] = product(11, QStringLiteral("adult"), 21, 1.90);
        tiles[ChildSingle] = product(12, QStringLiteral("child"), 21, 0.95);
        tiles[DayTicket] = product(11, QStringLiteral("adult"), 22, 4.50);
        tiles[DayTicket].isDaily = true;
        tiles[Expired] = product(11, QStringLiteral("adult"), 24, 1.0);
        tiles[Expired].hasExpired = true;
        tiles[Free] = product(13, QStringLiteral("infant"), 21, 0.0);
        tiles[NoPrice] = product(11, QStringLiteral("adult"), 25, std::nan(""));
        tiles[NegativePrice] = product(11, QStringLiteral("adult"), 26, -1.0);
        tiles[ReturnFee] = tiles[AdultSingle];
        tiles[ReturnFee].isReturnFee = true;
        tiles[TooExact] = product(11, QStringLiteral("adult"), 23, 1.005);
        tiles[SeniorSingle] = tiles[AdultSingle];
        tiles[SeniorSingle].passengerTypeId = 14;
        grid.addItemsToModel(tiles);
    }
};
