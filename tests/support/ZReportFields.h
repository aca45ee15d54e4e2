#pragma once

#include "ItemFields.h"
#include "ZReportItem.h"

/// The sixteen fields of a Z report.
inline ItemClass zReportItemClass()
{
    using Item = ZReportItem;
    const QString empty = QStringLiteral("");
    const QList<int> ints{0, 1, 7, 4711, INT_MAX, INT_MIN};
    const QList<QString> texts{QStringLiteral("A-0001"), QStringLiteral("A-0002"),
                               QStringLiteral("Bilet 成人")};
    // Each pair differs by less than the tolerance of a fuzzy comparison.
    const QList<double> amounts{1e-13, 5.0, 5.0 + 1e-12, -0.75, 1000000.01};
    const QDateTime morning(QDate(2024, 5, 1), QTime(6, 30), Qt::UTC);
    const QList<QDateTime> times{morning, morning.addMSecs(1), morning.addDays(1)};
    const Announced fuzzily = Announced::IfFuzzilyDifferent;
    return {[](QObject* parent) { return new Item(parent); },
            [](const QVariantList& v, QObject* parent) {
                return new Item(v[0].toInt(), v[1].toInt(), v[2].toDouble(), v[3].toInt(),
                                v[4].toDouble(), v[5].toInt(), v[6].toDouble(), v[7].toString(),
                                v[8].toString(), v[9].toDouble(), v[10].toDouble(), v[11].toBool(),
                                v[12].toDouble(), v[13].toDateTime(), v[14].toDouble(),
                                v[15].toDouble(), parent);
            },
            {
                itemField("id", 257, -1, ints, &Item::id),
                itemField("ticketCount", 258, -1, ints, &Item::ticketCount, &Item::setTicketCount),
                itemField("ticketSumAmnt", 259, 0.0, amounts, &Item::ticketSumAmnt,
                          &Item::setTicketSumAmnt, fuzzily),
                itemField("cardSellCount", 260, -1, ints, &Item::cardSellCount,
                          &Item::setCardSellCount),
                comparedWith("ticketSumAmnt",
                             itemField("cardSellAmnt", 261, 0.0, amounts, &Item::cardSellAmnt,
                                       &Item::setCardSellAmnt, fuzzily)),
                itemField("parcelCount", 262, -1, ints, &Item::parcelCount, &Item::setParcelCount),
                itemField("parcelAmnt", 263, 0.0, amounts, &Item::parcelAmnt, &Item::setParcelAmnt,
                          fuzzily),
                itemField("fromTicketNumber", 264, empty, texts, &Item::fromTicketNumber,
                          &Item::setFromTicketNumber),
                itemField("toTicketNumber", 265, empty, texts, &Item::toTicketNumber,
                          &Item::setToTicketNumber),
                itemField("zSum", 266, 0.0, amounts, &Item::zSum, &Item::setZSum, fuzzily),
                itemField("zNumber", 267, 0.0, amounts, &Item::zNumber, &Item::setZNumber, fuzzily),
                itemField("isClosed", 268, false, {true}, &Item::isClosed, &Item::setIsClosed),
                itemField("commission", 269, 0.0, amounts, &Item::commission, &Item::setCommission),
                itemField("paymentDate", 270, QDateTime(), times, &Item::paymentDate,
                          &Item::setPaymentDate),
                itemField("currentDebt", 271, 0.0, amounts, &Item::currentDebt,
                          &Item::setCurrentDebt, fuzzily),
                itemField("maxAllowedDebt", 272, 0.0, amounts, &Item::maxAllowedDebt,
                          &Item::setMaxAllowedDebt, fuzzily),
            }};
}
