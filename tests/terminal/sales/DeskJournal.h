#pragma once

#include "Play.h"
#include "SignalLog.h"

#include <QDebug>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

/// What a step did: its result, then all signals of the desk and the models, then "journal" if that
/// changed.
inline QStringList outcomeOf(Counter& counter, const QString& step)
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
inline QStringList refusal(const QString& reason, const QStringList& before = {})
{
    return QStringList("false") + before + QStringList("refused(" + reason + ")");
}

/// The flags of the basket's lines: "ap" accepted and printed, "a-", "--".
inline QString progressOf(const Counter& counter)
{
    QStringList lines;
    for (int row = 0; row < counter.basket.rowCount(); ++row)
        lines.append(QString(counter.line(row)->accepted() ? "a" : "-") +
                     (counter.line(row)->printed() ? "p" : "-"));
    return lines.join(' ');
}

inline QString text(const ShoppingItem& line)
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
inline QString text(const ZReportItem& report)
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

inline QStringList reportsOf(const Counter& counter)
{
    QStringList all;
    for (int row = 0; row < counter.zReports.rowCount(); ++row)
        all.append(text(*counter.report(row)));
    return all;
}

inline QStringList ticketsWhere(const QString& condition, const QString& columns = "number")
{
    return rowsOf(onlyConnection(),
                  QString("SELECT %1 FROM ticket WHERE %2").arg(columns, condition));
}

inline QVector<int> badges(const Counter& counter)
{
    QVector<int> all;
    for (int row = 0; row < counter.grid.rowCount(); ++row)
        all.append(counter.badge(row));
    return all;
}

inline QVector<int> productBadges(const Counter& counter)
{
    return {counter.productBadge(0), counter.productBadge(1), counter.productBadge(2)};
}

inline QVector<double> debtsOf(const Counter& counter)
{
    QVector<double> debts;
    for (int row = 0; row < counter.zReports.rowCount(); ++row)
        debts.append(counter.report(row)->currentDebt());
    return debts;
}

/// No page more for the journal. What is free inside is used up.
inline void fillUp()
{
    const QSqlDatabase db = onlyConnection();
    rowsOf(db, "PRAGMA max_page_count=" + rowsOf(db, "PRAGMA page_count").at(0));
    const char* const guard = "CREATE TEMP TRIGGER %1_%2 BEFORE %1 ON main.%2 BEGIN"
                              " INSERT INTO journal VALUES (zeroblob(100000), 0); END";
    for (const char* table : {"basket", "record"}) {
        for (const char* change : {"INSERT", "UPDATE", "DELETE"})
            rowsOf(db, QString(guard).arg(change, table));
    }
}

/// The journal of a test, empty at first, and desks over it.
class DeskJournal
{
public:
    QString file() const { return m_folder->filePath("journal.db"); }

    /// The next test has a journal of its own.
    void renew() { m_folder = std::make_unique<QTemporaryDir>(); }

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
            play(*counter, QString(" adult").repeated(rivo::sales::SalesDesk::mostTickets));
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

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};
