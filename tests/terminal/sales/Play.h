#pragma once

#include "Counter.h"

#include <QTest>

#include <algorithm>

/// Waits until the sale in progress is printed.
inline bool waitForEndOfSale(const Counter& counter)
{
    return QTest::qWaitFor([&] { return counter.desk.state() == rivo::sales::SalesDesk::Selling; },
                           20000);
}

/// What a driver does, step by step: "adult child cash end close hand:17". False at the first step
/// that is refused.
///
/// A tile's name or add:ROW puts a ticket into the basket; cash, card or pay:N pays; end waits
/// until all is printed; remove:ROW, clear; out and print decide about tickets in doubt; close,
/// hand:Z, count:Z:AMOUNT; give:AMOUNT pays in cash; void, refund:SALE:REASON and
/// back:TICKET:REASON take back; copy:TICKET and report:Z print; float:AMOUNT; lock and unlock; jam
/// and ready are the printer's.
inline bool play(Counter& counter, const QString& steps)
{
    using rivo::sales::SalesDesk;
    static const QStringList tiles{"adult", "child",    "day",    "placeholder", "expired", "free",
                                   "nan",   "negative", "return", "exact",       "senior"};
    SalesDesk& desk = counter.desk;
    const auto isDone = [&](const QString& step) {
        const QString name = step.section(':', 0, 0);
        const int number = step.section(':', 1, 1).toInt();
        if (tiles.contains(name))
            return desk.add(tiles.indexOf(name));
        if (name == "add")
            return desk.add(number);
        if (name == "cash" || name == "card")
            return desk.pay(name == "cash" ? SalesDesk::Cash : SalesDesk::Card);
        if (name == "give")
            return desk.payCash(step.section(':', 1).toDouble());
        if (name == "void")
            return desk.voidLastSale();
        if (name == "refund") // a sale
            return desk.refundSale(number, step.section(':', 2));
        if (name == "back") // a ticket
            return desk.refundTicket(number, step.section(':', 2));
        if (name == "copy")
            return desk.printCopy(number);
        if (name == "report")
            return desk.printReport(number);
        if (name == "float")
            return desk.setOpeningFloat(step.section(':', 1).toDouble());
        if (name == "count")
            return desk.handOverCounted(number, step.section(':', 2).toDouble());
        if (name == "lock" || name == "unlock") {
            desk.setLocked(name == "lock");
            return true;
        }
        if (name == "pay")
            return desk.pay(static_cast<SalesDesk::Payment>(number));
        if (name == "end")
            return waitForEndOfSale(counter);
        if (name == "first")
            return QTest::qWaitFor([&] { return counter.line(0)->printed(); });
        if (name == "remove")
            return desk.remove(number);
        if (name == "clear")
            return desk.clear();
        if (name == "out")
            return desk.confirmTicketInDoubt();
        if (name == "print")
            return desk.printTicketsInDoubt();
        if (name == "close")
            return desk.closeShift();
        if (name == "hand")
            return desk.handOver(number);
        if (name != "jam" && name != "ready")
            qFatal("%s is no step", qPrintable(step));
        counter.printer.setFault(name == "jam" ? QStringLiteral("no paper") : QString());
        return true;
    };
    const QStringList all = steps.split(' ', Qt::SkipEmptyParts);
    return std::all_of(all.begin(), all.end(), isDone);
}
