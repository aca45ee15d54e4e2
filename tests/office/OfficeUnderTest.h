#pragma once

#include "JournalFiles.h"
#include "PostgresServer.h"

#include <Intake.h>
#include <QTemporaryDir>

// An office with a database of its own, and journals that send to it.

/// The value of a statement that yields one, as text; rows are joined with blanks.
inline QString valueIn(const rivo::backoffice::DatabaseSettings& settings, const QString& statement)
{
    rivo::backoffice::Database database(settings);
    QSqlQuery* found = database.open() ? database.run(statement) : nullptr;
    if (found == nullptr)
        return database.problem();
    QStringList values;
    while (found->next())
        values.append(found->value(0).toString());
    return values.join(' ');
}

/// A vehicle's journal in a folder of its own.
struct VehicleJournal
{
    VehicleJournal() : journal(fileIn(folder.path())) {}

    rivo::office::Batch batch(qint64 after = -1, int count = 200)
    {
        return {journal.publicKey(), journal.sealedRecords(after, count)};
    }

    QTemporaryDir folder;
    OpenJournal journal;
};

/// A program of the office.
struct Office
{
    explicit Office(const rivo::backoffice::DatabaseSettings& database)
        : settings(database), store(settings), intake(store)
    {
        if (!store.open())
            qWarning("%s", qPrintable(store.problem()));
    }

    /// "5", or "5: reason": what it answers to bytes. "not stored" without a database, "none"
    /// without an answer.
    QString take(const QByteArray& message,
                 const QString& topic = QStringLiteral("rivo/lakeside/4711/records"))
    {
        std::optional<rivo::backoffice::Reply> reply;
        if (!intake.take(topic, message, now, reply))
            return QStringLiteral("not stored");
        if (!reply)
            return QStringLiteral("none");
        const auto answer = rivo::office::acknowledgementOf(reply->message);
        if (!answer || reply->topic != QString(topic).replace("records", "acknowledged"))
            return QStringLiteral("no answer");
        const QString number = QString::number(answer->number);
        return answer->refusal.isEmpty() ? number : number + ": " + answer->refusal;
    }

    QString take(const rivo::office::Batch& batch,
                 const QString& topic = QStringLiteral("rivo/lakeside/4711/records"))
    {
        return take(encode(batch), topic);
    }

    /// "fork 3", one for each fault; "x2" if it came twice, "closed" if it is.
    QStringList faults(bool all = false)
    {
        QStringList lines;
        const auto kept = store.faults(all);
        for (const rivo::backoffice::KeptFault& fault : kept.value()) {
            QString line = QStringLiteral("%1 %2").arg(fault.kind).arg(fault.number);
            if (fault.times > 1)
                line += QStringLiteral(" x%1").arg(fault.times);
            if (fault.closedAt.isValid())
                line += QStringLiteral(" closed");
            lines.append(line);
        }
        return lines;
    }

    /// Whether a statement without a result was done.
    bool change(const QString& statement) const
    {
        rivo::backoffice::Database database(settings);
        return database.open() && database.runAll({statement});
    }

    /// 100001, 100002 and so on, each with a place; false if that fails.
    bool addVehicles(int count, const QDateTime& at) const
    {
        return change(QStringLiteral("INSERT INTO vehicle (operator, name) SELECT 'lakeside',"
                                     " CAST(100000 + number AS text)"
                                     " FROM generate_series(1, %1) AS number")
                          .arg(count)) &&
               change(QStringLiteral("INSERT INTO vehicle_state"
                                     " (vehicle, alive, position_at, latitude, longitude)"
                                     " SELECT id, true, to_timestamp(%1), 54.1, -2.9 FROM vehicle")
                          .arg(at.toSecsSinceEpoch()));
    }

    QString value(const QString& statement) const { return valueIn(settings, statement); }

    rivo::backoffice::DatabaseSettings settings;
    rivo::backoffice::OfficeStore store;
    rivo::backoffice::Intake intake;
    QDateTime now = noon;
};
