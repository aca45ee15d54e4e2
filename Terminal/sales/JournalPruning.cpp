// The journal's old records, which are removed when others have them.

#include "JournalChain_p.h"
#include "JournalFigures_p.h"
#include "JournalRecords_p.h"

#include <algorithm>

namespace rivo::sales
{

/// The end of a closed shift, up to which records may be removed.
struct PruningCut
{
    qint64 shift = 0;
    qint64 record = 0; ///< the last of these
    qint64 ticket = 0; ///< the last that was sold up to there
};

namespace
{

constexpr int approved = static_cast<int>(payment::Verdict::Approved);

/// Rows of records, by the column that has the record's number.
struct Rows
{
    const char* table;
    const char* record;
};

constexpr Rows rowsOfRecords[] = {{"opening", "record"},
                                  {"sale", "record"},
                                  {"ticket", "sale"},
                                  {"card_sale", "sale"},
                                  {"printout", "record"},
                                  {"reversal", "record"},
                                  {"reversed_ticket", "reversal"},
                                  {"card_reversal", "reversal"},
                                  {"closing", "record"},
                                  {"hand_over", "record"},
                                  {"payment", "record"},
                                  {"payment_ticket", "payment"},
                                  {"outcome", "record"},
                                  {"card_day", "record"},
                                  {"clock", "record"},
                                  {"pruning", "record"},
                                  {"record", "id"}};

/// Rows that stay, and are about one that would not.
QStringList references(const PruningCut& cut)
{
    const auto after = [&](const char* form, qint64 last) {
        return QString::fromLatin1(form).arg(cut.record).arg(last);
    };
    return {QStringLiteral("unprinted WHERE ticket <= %1").arg(cut.ticket),
            after("printout WHERE record > %1 AND ticket <= %2", cut.ticket),
            after("reversal WHERE record > %1 AND sale <= %2", cut.record),
            after("payment WHERE record > %1 AND origin <= %2", cut.record),
            after("payment_ticket WHERE payment > %1 AND ticket <= %2", cut.ticket),
            after("outcome WHERE record > %1 AND payment <= %2", cut.record),
            after("card_sale WHERE sale > %1 AND payment <= %2", cut.record),
            after("card_reversal WHERE reversal > %1 AND payment <= %2", cut.record),
            after("record WHERE id > %1 AND shift <= %2", cut.shift) +
                QStringLiteral(" AND kind NOT IN (%1, %2)")
                    .arg(static_cast<int>(RecordKind::HandOver))
                    .arg(static_cast<int>(RecordKind::CardDay))};
}

/// Payments that the next question to the card terminal is about: the last one, by which its answer
/// is known, and those of a day that it has not closed.
QStringList paymentsInUse(const PruningCut& cut)
{
    return {QStringLiteral("outcome WHERE verdict = %1 AND record <= %2 AND record ="
                           " (SELECT MAX(record) FROM outcome WHERE verdict = %1)")
                .arg(approved)
                .arg(cut.record),
            QStringLiteral("outcome WHERE verdict = %1 AND payment <= %2 AND payment >"
                           " (SELECT IFNULL(MAX(record), 0) FROM card_day WHERE total NOT NULL)")
                .arg(approved)
                .arg(cut.record)};
}

} // namespace

QStringList pruningTables()
{
    return {QStringLiteral("CREATE TABLE pruning (record INTEGER PRIMARY KEY REFERENCES record,"
                           " last INTEGER NOT NULL, shift INTEGER NOT NULL REFERENCES shift,"
                           " start BLOB NOT NULL)")};
}

qint64 Journal::lastPruned()
{
    if (m_file->fault())
        return 0;
    const ChainReader& reader = m_file->chain().reader();
    return reader.isPruned() ? reader.base() : 0;
}

/// The ends of shifts that are old, handed over and known to others, the oldest first.
QVector<PruningCut> Journal::cutsFor(qint64 acknowledged, const QDateTime& closedBefore)
{
    const qint64 base = m_file->chain().reader().base();
    QSqlQuery query = m_file->prepared(
        QStringLiteral("SELECT closing.shift, closing.record, record.at,"
                       " hand_over.shift NOT NULL OR %1 = 0,"
                       " IFNULL((SELECT number FROM ticket WHERE sale <= closing.record"
                       "  ORDER BY sale DESC, number DESC LIMIT 1), 0)"
                       " FROM closing JOIN record ON record.id = closing.record"
                       " LEFT JOIN hand_over ON hand_over.shift = closing.shift"
                       " WHERE closing.record <= MIN(%2, MAX(%3,"
                       "  (SELECT MIN(record) FROM closing WHERE record >= %4)))"
                       " ORDER BY closing.shift")
            .arg(QLatin1String(dueOfFigures))
            .arg(acknowledged)
            .arg(base + mostPrunedAtOnce)
            .arg(base));
    QVector<PruningCut> cuts;
    bool isAtEnd = false;
    const bool isRead = m_file->forEachRow(query, [&] {
        const QDateTime closedAt = timeOf(query.value(2));
        isAtEnd =
            isAtEnd || !query.value(3).toBool() || !closedAt.isValid() || closedAt >= closedBefore;
        const qint64 record = query.value(1).toLongLong();
        if (!isAtEnd && record >= base)
            cuts.append({query.value(0).toLongLong(), record, query.value(4).toLongLong()});
    });
    return isRead ? cuts : QVector<PruningCut>();
}

bool Journal::isNeeded(const PruningCut& cut)
{
    const QVector<CardPayment> charges = unbookedCharges();
    const auto open = openPayment();
    if (m_file->fault() || (open && open->id <= cut.record) ||
        (!charges.isEmpty() && charges.first().id <= cut.record))
        return true;
    const QStringList rows = references(cut) + paymentsInUse(cut);
    return std::any_of(rows.begin(), rows.end(), [&](const QString& each) {
        const auto found =
            m_file->value(QStringLiteral("SELECT EXISTS (SELECT 1 FROM %1)").arg(each));
        return !found || found->toBool();
    });
}

bool Journal::removeUpTo(const PruningCut& cut, const QDateTime& at)
{
    QStringList statements;
    for (const Rows& rows : rowsOfRecords)
        statements.append(QStringLiteral("DELETE FROM %1 WHERE %2 <= %3")
                              .arg(QLatin1String(rows.table), QLatin1String(rows.record))
                              .arg(cut.record));
    statements << QStringLiteral("DELETE FROM seal WHERE record < %1").arg(cut.record)
               << QStringLiteral("UPDATE chain SET base = %1, last_ticket = MAX(last_ticket, %2)")
                      .arg(cut.record)
                      .arg(cut.ticket);
    return m_file->inTransaction([&] {
        const auto running = runningZNumber();
        if (!running || !admitPruning(*m_file) || !m_file->runAll(statements))
            return false;
        const auto start = m_file->chain().reader().hashOfStart();
        const auto record = start ? addRecord(RecordKind::Pruning, *running, at) : std::nullopt;
        return record && m_file->insert("pruning", {*record, cut.record, cut.shift, *start}) &&
               m_file->chain().reader().read();
    });
}

qint64 Journal::prune(qint64 acknowledged, const QDateTime& closedBefore, const QDateTime& at)
{
    if (m_file->fault())
        return 0;
    const qint64 before = lastPruned();
    const QVector<PruningCut> cuts = cutsFor(acknowledged, closedBefore);
    const auto cut = std::find_if(cuts.rbegin(), cuts.rend(),
                                  [this](const PruningCut& each) { return !isNeeded(each); });
    // SQLite would look for what refers to each row; isNeeded() did, at once.
    const bool isDone =
        cut != cuts.rend() && m_file->run(QStringLiteral("PRAGMA foreign_keys=OFF")) &&
        removeUpTo(*cut, at) && m_file->run(QStringLiteral("PRAGMA foreign_keys=ON"));
    return isDone ? cut->record - before : 0;
}

} // namespace rivo::sales
