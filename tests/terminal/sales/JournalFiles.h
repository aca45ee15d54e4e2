#pragma once

#include "Counter.h"

#include <QDir>
#include <QFile>

#include <functional>

// Journals in files, without a desk over them.

inline const QDateTime noon(QDate(2026, 3, 29), QTime(12, 0, 0, 250), Qt::UTC);

inline rivo::sales::Ticket ticket(rivo::sales::Minor price,
                                  const QString& name = QStringLiteral("single"))
{
    rivo::sales::Ticket made;
    made.fareProductName = name;
    made.price = price;
    return made;
}

inline QVector<qint64> valuesOf(const QVector<rivo::sales::Ticket>& tickets,
                                qint64 rivo::sales::Ticket::*field)
{
    QVector<qint64> all;
    for (const rivo::sales::Ticket& each : tickets)
        all.append(each.*field);
    return all;
}

/// "17: 3 tickets 475, 1 by card 190, 1-3, closed 29 12:00, paid 30 12:00", the latter with the day
/// of the month, as far as it happened.
inline QString text(const rivo::sales::ShiftReport& report)
{
    const auto when = [](const char* what, const QDateTime& at) {
        return at.isValid() ? QString(", %1 %2").arg(what, at.toUTC().toString("dd hh:mm"))
                            : QString();
    };
    return QStringLiteral("%1: %2 tickets %3, %4 by card %5, %6-%7")
               .arg(report.zNumber)
               .arg(report.ticketCount)
               .arg(report.ticketSum)
               .arg(report.cardCount)
               .arg(report.cardSum)
               .arg(report.firstTicket)
               .arg(report.lastTicket) +
           when("closed", report.closedAt) + when("paid", report.paidAt);
}

inline QString text(const std::optional<rivo::sales::ShiftReport>& report)
{
    return report ? text(*report) : QStringLiteral("none");
}

/// All shifts, the running one last.
inline QStringList shiftsOf(rivo::sales::Journal& journal)
{
    QStringList all;
    const QVector<rivo::sales::ShiftReport> closed = journal.closedShifts();
    for (const rivo::sales::ShiftReport& report : closed)
        all.append(text(report));
    return all << text(journal.runningShift());
}

inline QByteArray contentOf(const QString& file)
{
    QFile content(file);
    return content.open(QIODevice::ReadOnly) ? content.readAll() : QByteArray("unreadable");
}

inline QMap<QString, QByteArray> filesIn(const QString& folder)
{
    QMap<QString, QByteArray> files;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files | QDir::System))
        files.insert(file.fileName(),
                     file.isFile() ? contentOf(file.filePath()) : QByteArray("not regular"));
    return files;
}

inline void write(const QString& file, const QByteArray& content)
{
    QFile target(file);
    if (!target.open(QIODevice::WriteOnly) || target.write(content) != content.size())
        qFatal("%s cannot be written", qPrintable(file));
}

/// Executes statements in `file` with plain SQL, outside any journal, then calls `look`.
inline void executeIn(
    const QString& file, const QStringList& statements, const std::function<void()>& look = [] {})
{
    {
        QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "plain");
        db.setDatabaseName(file);
        if (!db.open())
            qFatal("%s cannot be opened", qPrintable(file));
        for (const QString& statement : statements) {
            QSqlQuery query(db);
            if (!query.exec(statement))
                qFatal("%s: %s", qPrintable(statement), qPrintable(query.lastError().text()));
        }
        look();
    }
    QSqlDatabase::removeDatabase("plain");
}

struct OpenJournal : rivo::sales::Journal
{
    explicit OpenJournal(const QString& file, qint64 firstZ = 17,
                         const rivo::sales::Currency& money = euro)
    {
        open(file, money, firstZ);
    }
};

inline bool sell(rivo::sales::Journal& journal, const QVector<rivo::sales::Minor>& ticketPrices,
                 rivo::sales::PayMethod method = rivo::sales::PayMethod::Cash)
{
    QVector<rivo::sales::Ticket> tickets;
    for (const rivo::sales::Minor price : ticketPrices)
        tickets.append(ticket(price));
    return journal.confirmSale(tickets, {method}, noon).has_value();
}

inline QString kindOf(const std::optional<rivo::sales::JournalFault>& fault)
{
    static const QStringList names{"locked",        "full",           "damaged",  "foreign",
                                   "other version", "other currency", "replaced", "unreachable"};
    return fault ? names.at(static_cast<int>(fault->kind)) : QStringLiteral("none");
}

inline QString fileIn(const QString& folder) { return folder + "/journal.db"; }
