#include "GtfsFareRows_p.h"
#include "GtfsReading_p.h"

#include <algorithm>

namespace rivo::feed::gtfs
{

namespace
{

const QVector<int CalendarRow::*>& daysOfWeek()
{
    static const QVector<int CalendarRow::*> days{&CalendarRow::monday,    &CalendarRow::tuesday,
                                                  &CalendarRow::wednesday, &CalendarRow::thursday,
                                                  &CalendarRow::friday,    &CalendarRow::saturday,
                                                  &CalendarRow::sunday};
    return days;
}

/// Reads the timeframes and the days of the services that they refer to.
class TimesReader
{
public:
    explicit TimesReader(Reading& reading) : m_reading(reading), m_tariff(reading.tariff) {}

    void read()
    {
        if (m_tariff.form == Tariff::Form::FaresV2)
            readTimeframes();
        readCalendar();
        readDates();
        for (TariffService& service : m_tariff.services) {
            std::sort(service.added.begin(), service.added.end());
            std::sort(service.removed.begin(), service.removed.end());
        }
        checkServices();
    }

private:
    struct Timeframe
    {
        int group;
        int service;
        int line;
        TariffSpan span;
    };

    void readTimeframes()
    {
        QVector<Timeframe> timeframes;
        const auto take = [&](const TimeframeRow& row, TableReport&) {
            TariffSpan span;
            if (!row.start.isEmpty() && !row.end.isEmpty())
                span = {seconds(row.start), seconds(row.end), -1};
            m_reading.tables.add(m_reading.times, row.line, row.group);
            timeframes.append(
                {m_reading.times.table.size() - 1, m_services.append(row.service), row.line, span});
        };
        m_reading.times.isJudged =
            m_reading.tables.read<TimeframeRow>(timeframesFile, Concern::Fares, take);
        const QVector<int> groups = m_reading.times.table.unify();
        const QVector<int> services = m_services.unify();
        m_tariff.times.resize(m_reading.times.table.size());
        m_tariff.services.resize(m_services.size());
        m_isDefined.resize(m_services.size());
        for (Timeframe& timeframe : timeframes) {
            timeframe.span.service = services.at(timeframe.service);
            m_tariff.times[groups.at(timeframe.group)].spans.append(timeframe.span);
            m_users.append({timeframe.span.service, timeframe.line});
        }
    }

    /// A fault of a service costs what depends on it.
    Concern concernOf(int service) const
    {
        return service >= 0 ? Concern::Fares : Concern::Timetable;
    }

    void readCalendar()
    {
        if (!m_reading.tables.isThere(calendarFile))
            return;
        const Concern concern = m_services.size() > 0 ? Concern::Fares : Concern::Timetable;
        TableReport table(m_reading.tables.pathOf(calendarFile), concern,
                          m_reading.tables.report());
        table.keepFaults();
        Ids known;
        QVector<NetworkService> services;
        m_isWhole = m_reading.tables.read<CalendarRow>(
            QLatin1String(calendarFile), table, [&](const CalendarRow& row, TableReport&) {
                const int service = row.service.empty() ? -1 : m_services.find(row.service);
                QVector<FeedProblem> faults = table.takeFaults();
                if (service >= 0 && (row.start.isEmpty() || row.end.isEmpty()) && faults.isEmpty())
                    table.fault(row, row.start.isEmpty() ? "start_date" : "end_date", Id(),
                                QLatin1String(dateInWords));
                faults += table.takeFaults();
                for (const FeedProblem& fault : qAsConst(faults))
                    table.report(fault, row.service.empty() ? concern : concernOf(service));
                if (row.service.empty())
                    return;
                m_reading.tables.add(known, row.line, row.service);
                services.append({m_reading.tables.keep(row.service),
                                 daysOf(row),
                                 gtfsDate(row.start),
                                 gtfsDate(row.end),
                                 {},
                                 {}});
                if (service >= 0)
                    define(service, row);
            });
        const auto repeated = known.table.seal();
        for (const auto& [number, first] : repeated) {
            Row row;
            row.line = known.lines.at(number);
            const Id id = known.table.at(number);
            table.lesserFault(row, "service_id", id, QStringLiteral("each id once"),
                              concernOf(m_services.find(id)));
        }
        for (int i = 0; i < services.size(); ++i) {
            if (known.table.find(known.table.at(i)) == i)
                m_reading.feed.network.services.append(services.at(i));
        }
    }

    static int daysOf(const CalendarRow& row)
    {
        int days = 0;
        for (int day = 0; day < 7; ++day)
            days |= row.*daysOfWeek().at(day) << day;
        return days;
    }

    void define(int service, const CalendarRow& row)
    {
        TariffService& record = m_tariff.services[service];
        record.days = daysOf(row);
        record.first = gtfsDate(row.start);
        record.last = gtfsDate(row.end);
        m_isDefined[service] = true;
    }

    void readDates()
    {
        if (!m_reading.tables.isThere(calendarDatesFile))
            return;
        TableReport table(m_reading.tables.pathOf(calendarDatesFile),
                          m_services.size() > 0 ? Concern::Fares : Concern::Timetable,
                          m_reading.tables.report());
        table.keepFaults();
        QMap<QByteArray, int> known; // services of the network
        for (int i = 0; i < m_reading.feed.network.services.size(); ++i)
            known.insert(m_reading.feed.network.services.at(i).id.toUtf8(), i);
        const auto take = [&](const CalendarDateRow& row, TableReport&) {
            const int service = row.service.empty() ? -1 : m_services.find(row.service);
            const QVector<FeedProblem> faults = table.takeFaults();
            if (faults.isEmpty() && !row.service.empty())
                addDate(networkService(row.service, known), row);
            if (service < 0 && (!row.service.empty() || m_services.size() == 0))
                return; // no fare depends on it
            for (const FeedProblem& fault : faults)
                table.report(fault, Concern::Fares);
            if (!faults.isEmpty())
                return;
            TariffService& record = m_tariff.services[service];
            (row.exception == 1 ? record.added : record.removed).append(gtfsDate(row.date));
            m_isDefined[service] = true;
        };
        m_isWhole =
            m_reading.tables.read<CalendarDateRow>(QLatin1String(calendarDatesFile), table, take) &&
            m_isWhole;
    }

    NetworkService& networkService(Id id, QMap<QByteArray, int>& known)
    {
        QVector<NetworkService>& services = m_reading.feed.network.services;
        const QByteArray text(id.data(), static_cast<int>(id.size()));
        const auto found = known.constFind(text);
        if (found != known.constEnd())
            return services[*found];
        known.insert(text, static_cast<int>(services.size()));
        services.append({m_reading.tables.keep(id), 0, {}, {}, {}, {}});
        return services.last();
    }

    static void addDate(NetworkService& service, const CalendarDateRow& row)
    {
        (row.exception == 1 ? service.added : service.removed).append(gtfsDate(row.date));
    }

    void checkServices()
    {
        TableReport table(m_reading.tables.pathOf(timeframesFile), Concern::Fares,
                          m_reading.tables.report());
        for (const auto& [service, line] : qAsConst(m_users)) {
            Row row;
            row.line = line;
            if (m_isWhole && !m_isDefined.at(service) && !m_services.at(service).empty())
                table.fault(row, "service_id", m_services.at(service),
                            idOf("calendar.txt or calendar_dates.txt"));
        }
        checkDates();
    }

    /// A date that a service has and has not is a fault.
    void checkDates()
    {
        TableReport table(m_reading.tables.pathOf(calendarDatesFile), Concern::Fares,
                          m_reading.tables.report());
        for (int service = 0; service < m_tariff.services.size(); ++service) {
            const TariffService& record = m_tariff.services.at(service);
            for (const QDate& date : record.added) {
                if (std::binary_search(record.removed.begin(), record.removed.end(), date))
                    table.wholeFault(QStringLiteral("%1 added to and removed from %2")
                                         .arg(date.toString(QStringLiteral("yyyyMMdd")),
                                              quoted(m_services.text(service))),
                                     QStringLiteral("each date of a service once"));
            }
        }
    }

    Reading& m_reading;
    Tariff& m_tariff;
    IdTable m_services;
    QVector<bool> m_isDefined;        ///< by service
    QVector<QPair<int, int>> m_users; ///< service and line of each timeframe
    bool m_isWhole = true;
};

} // namespace

void readTimes(Reading& reading) { TimesReader(reading).read(); }

} // namespace rivo::feed::gtfs
