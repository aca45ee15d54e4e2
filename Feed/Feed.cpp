#include "Feed.h"

namespace rivo::feed
{

bool NetworkService::runsOn(const QDate& date) const
{
    if (added.contains(date) || removed.contains(date))
        return added.contains(date);
    return (!first.isValid() || first <= date) && (!last.isValid() || date <= last) &&
           (days >> (date.dayOfWeek() - 1) & 1) == 1;
}

int Feed::currencyDecimals() const { return feed::currencyDecimals(currency); }

int currencyDecimals(const QString& currency)
{
    static const QStringList none =
        QStringLiteral("BIF CLP DJF GNF ISK JPY KMF KRW PYG RWF UGX UYI "
                       "VND VUV XAF XOF XPF")
            .split(QLatin1Char(' '));
    static const QStringList three =
        QStringLiteral("BHD IQD JOD KWD LYD OMR TND").split(QLatin1Char(' '));
    static const QStringList four = QStringLiteral("CLF UYW").split(QLatin1Char(' '));
    if (none.contains(currency))
        return 0;
    if (three.contains(currency))
        return 3;
    return four.contains(currency) ? 4 : 2;
}

} // namespace rivo::feed
