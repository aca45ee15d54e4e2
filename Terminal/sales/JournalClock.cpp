// The journal's remarks about the clock.

#include "JournalRecords_p.h"

namespace rivo::sales
{

QStringList clockTables()
{
    return {QStringLiteral("CREATE TABLE clock (record INTEGER PRIMARY KEY REFERENCES"
                           " record, remark INTEGER NOT NULL,"
                           " milliseconds INTEGER NOT NULL)")};
}

bool Journal::recordClock(ClockRemark remark, qint64 milliseconds, const QDateTime& at)
{
    return m_file->inTransaction([&] {
        const auto shift = runningZNumber();
        const auto record = shift ? addRecord(RecordKind::Clock, *shift, at) : std::nullopt;
        return record && m_file->insert("clock", {*record, static_cast<int>(remark), milliseconds});
    });
}

QDateTime Journal::lastRecordAt()
{
    const auto at = m_file->fault()
                        ? std::nullopt
                        : m_file->value(QStringLiteral(
                              "SELECT IFNULL((SELECT at FROM record ORDER BY id DESC LIMIT 1),"
                              " '')"));
    return at ? timeOf(*at) : QDateTime();
}

} // namespace rivo::sales
