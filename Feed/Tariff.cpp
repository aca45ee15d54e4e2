#include "Tariff.h"

#include <algorithm>

namespace rivo::feed
{

bool TariffService::runsOn(QDate date) const
{
    const auto has = [date](const QVector<QDate>& dates) {
        return std::binary_search(dates.begin(), dates.end(), date);
    };
    if (has(added) || has(removed))
        return has(added);
    return first.isValid() && first <= date && date <= last &&
           (days >> (date.dayOfWeek() - 1) & 1) == 1;
}

bool Tariff::holds(const QVector<TariffSpan>& spans, const QDate& date, int seconds) const
{
    return std::any_of(spans.begin(), spans.end(), [&](const TariffSpan& span) {
        return span.begin <= seconds && seconds < span.end &&
               (span.service < 0 || services.at(span.service).runsOn(date));
    });
}

bool Tariff::holds(int number, const QDate& date, int seconds) const
{
    return number < 0 || holds(times.at(number).spans, date, seconds);
}

QString Tariff::agencyOf(int number) const
{
    const int agency = number < 0 ? -1 : routes.at(number).agency;
    return agency < 0 ? QString() : agencies.at(agency).name;
}

QVector<int> Tariff::turningPoints() const
{
    QVector<int> points;
    const auto add = [&points](const QVector<TariffSpan>& spans) {
        for (const TariffSpan& span : spans)
            points << span.begin << span.end;
    };
    for (const TariffTimes& group : times)
        add(group.spans);
    for (const TariffValidity& validity : validities)
        add(validity.times);
    std::sort(points.begin(), points.end());
    points.erase(std::unique(points.begin(), points.end()), points.end());
    return points;
}

} // namespace rivo::feed
