// The journal's shifts: floats, figures, closing and hand-over.

#include "JournalChain_p.h"
#include "JournalFigures_p.h"
#include "JournalHead_p.h"
#include "JournalRecords_p.h"

namespace rivo::sales
{

std::optional<qint64> Journal::runningZNumber()
{
    const std::optional<QVariant> number = m_file->value(
        QStringLiteral("SELECT z_number FROM shift WHERE z_number = (SELECT MAX(z_number) FROM"
                       " shift) AND z_number NOT IN (SELECT shift FROM closing"
                       " WHERE shift = z_number)"));
    return number ? std::make_optional(number->toLongLong()) : std::nullopt;
}

std::optional<ShiftReport> Journal::runningShift()
{
    const auto zNumber = m_file->fault() ? std::nullopt : runningZNumber();
    if (!zNumber)
        return std::nullopt;
    QSqlQuery query = m_file->prepared(figuresOfShifts(*zNumber));
    ShiftReport report;
    report.zNumber = *zNumber;
    const bool isRead = m_file->forEachRow(query, [&] { readFigures(report, query, 1); });
    return isRead ? std::make_optional(report) : std::nullopt;
}

QVector<ShiftReport> Journal::readClosedShifts(const QString& condition)
{
    if (m_file->fault())
        return {};
    QSqlQuery query = m_file->prepared(
        QStringLiteral("SELECT closing.shift, done.at, done.driver, paid.at, counted,"
                       " hand_over.difference, day.total, day.difference, seal.record, seal.hash,"
                       " %1 FROM closing JOIN record AS done ON done.id = closing.record"
                       " LEFT JOIN seal ON seal.record = closing.record"
                       " LEFT JOIN hand_over ON hand_over.shift = closing.shift"
                       " LEFT JOIN record AS paid ON paid.id = hand_over.record"
                       " LEFT JOIN card_day AS day ON day.record = (SELECT MAX(id) FROM record"
                       " CROSS JOIN card_day ON card_day.record = id WHERE kind = %3"
                       " AND record.shift = closing.shift AND total NOT NULL)"
                       " %2 ORDER BY closing.shift")
            .arg(figureNames(), condition)
            .arg(static_cast<int>(RecordKind::CardDay)));
    QVector<ShiftReport> reports;
    const bool isRead = m_file->forEachRow(query, [&] {
        ShiftReport report;
        report.zNumber = query.value(0).toLongLong();
        report.closedAt = timeOf(query.value(1));
        report.driver = query.value(2).toLongLong();
        report.paidAt = timeOf(query.value(3));
        report.counted = query.value(4).toLongLong();
        report.difference = query.value(5).toLongLong();
        report.isCardDayEnded = !query.value(6).isNull();
        report.cardDayTotal = query.value(6).toLongLong();
        report.cardDayDifference = query.value(7).toLongLong();
        if (!query.value(8).isNull())
            report.head = headText(query.value(8).toLongLong(), query.value(9).toByteArray());
        readFigures(report, query, 10);
        if (report.due() == 0 && !report.paidAt.isValid())
            report.paidAt = report.closedAt;
        reports.append(report);
    });
    return isRead ? reports : QVector<ShiftReport>();
}

QVector<ShiftReport> Journal::closedShifts() { return readClosedShifts({}); }

QVector<ShiftReport> Journal::recentShifts(int count)
{
    return readClosedShifts(
        QStringLiteral("WHERE closing.shift > (SELECT MAX(shift) FROM closing) - %1"
                       " OR (hand_over.shift IS NULL AND %2 <> 0)")
            .arg(count)
            .arg(QLatin1String(dueOfFigures)));
}

qint64 Journal::firstZNumber()
{
    if (m_file->fault())
        return 0;
    const auto number = m_file->value(m_file->chain().reader().isPruned()
                                          ? QStringLiteral("SELECT %1 + 1").arg(lastPrunedShift())
                                          : QStringLiteral("SELECT MIN(z_number) FROM shift"));
    return number ? number->toLongLong() : 0;
}

std::optional<ShiftReport> Journal::closedShift(qint64 zNumber)
{
    const QVector<ShiftReport> found =
        readClosedShifts(QStringLiteral("WHERE closing.shift = %1").arg(zNumber));
    return found.isEmpty() ? std::nullopt : std::make_optional(found.first());
}

bool Journal::recordOpeningFloat(Minor amount, const QDateTime& at)
{
    return m_file->inTransaction([&] {
        const auto shift = runningZNumber();
        const auto record = shift ? addRecord(RecordKind::Opening, *shift, at) : std::nullopt;
        return record && m_file->insert("opening", {*record, amount});
    });
}

std::optional<ShiftReport> Journal::closeShift(const QDateTime& at)
{
    std::optional<ShiftReport> report;
    const bool isDone = m_file->inTransaction([&] {
        const auto shift = runningZNumber();
        const auto record = shift ? addRecord(RecordKind::Closing, *shift, at) : std::nullopt;
        if (!record ||
            !m_file->run(QStringLiteral("INSERT INTO closing SELECT z_number, %1, %2 FROM (%3)")
                             .arg(*record)
                             .arg(figureNames(), figuresOfShifts(*shift))) ||
            !m_file->insert("shift", {*shift + 1}))
            return false;
        report = closedShift(*shift);
        return report.has_value();
    });
    return isDone ? closedShift(report->zNumber) : std::nullopt; // with its seal
}

std::optional<ShiftReport> Journal::handOver(qint64 zNumber, const QDateTime& at,
                                             std::optional<Minor> counted)
{
    std::optional<ShiftReport> report;
    const bool isDone = m_file->inTransaction([&] {
        report = closedShift(zNumber);
        if (!report || report->paidAt.isValid())
            return false;
        const Minor amount = counted.value_or(report->due());
        const auto record = addRecord(RecordKind::HandOver, zNumber, at);
        if (!record ||
            !m_file->insert("hand_over", {zNumber, *record, amount, amount - report->due()}))
            return false;
        report = closedShift(zNumber);
        return report.has_value();
    });
    return isDone ? report : std::nullopt;
}

} // namespace rivo::sales
