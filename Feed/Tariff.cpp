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

bool Tariff::holds(int number, const QDate& date, int seconds) const
{
    if (number < 0)
        return true;
    const QVector<TariffSpan>& spans = times.at(number).spans;
    return std::any_of(spans.begin(), spans.end(), [&](const TariffSpan& span) {
        return span.begin <= seconds && seconds < span.end &&
               (span.service < 0 || services.at(span.service).runsOn(date));
    });
}

} // namespace rivo::feed
