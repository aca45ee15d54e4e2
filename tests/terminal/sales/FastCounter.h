#pragma once

#include "Play.h"

inline const rivo::sales::Currency francs(QStringLiteral("CHF"), 2);

/// What is tested here does not hang on what is on the disk.
struct FastCounter : Counter
{
    explicit FastCounter(const QString& file, const rivo::sales::Currency& money = euro)
        : Counter(file, money)
    {
        rowsOf(onlyConnection(), "PRAGMA synchronous=OFF");
    }
};

/// "2: 190 paid 190, given 200 change 10, 1 of 2 back for 95, may be void and refunded".
inline QString text(const QVariantMap& sale)
{
    const auto number = [&sale](const char* key) {
        return QString::number(sale.value(key).toLongLong());
    };
    return QStringLiteral("%1: %2%3 paid %4, given %5 change %6, %7 of %8 back for %9")
               .arg(number("id"), sale.value("isCash").toBool() ? "" : "card ", number("total"),
                    number("paid"), number("given"), number("change"), number("reversedCount"),
                    number("ticketCount"), number("paidOut")) +
           (sale.value("mayVoid").toBool() ? ", void" : "") +
           (sale.value("mayRefund").toBool() ? ", refund" : "") +
           (sale.value("isReversed").toBool() ? ", reversed" : "");
}

inline QStringList textsOf(const QVariantList& sales)
{
    QStringList all;
    for (const QVariant& sale : sales)
        all.append(text(sale.toMap()));
    return all;
}

/// The figures of a report that are not 0, "cash 190, due 190 ...".
inline QString figuresOf(const QVariantMap& report)
{
    QStringList all;
    for (const char* key :
         {"ticketCount", "ticketSum", "cardCount", "cardSum", "voidCount", "voidSum", "refundCount",
          "refundSum", "reversedCardSum", "rounding", "copyCount", "openingFloat", "takings",
          "cash", "due", "counted", "difference"}) {
        if (!report.contains(key))
            return "no report";
        if (report.value(key).toDouble() != 0.0)
            all.append(QStringLiteral("%1 %2").arg(key).arg(report.value(key).toLongLong()));
    }
    return all.join(", ");
}
