#pragma once

#include <QLocale>
#include <QString>

#include <optional>

namespace rivo::sales
{

/// An amount of money in minor units of its currency (cents, pence). All sums are made of these.
using Minor = qint64;

/// A currency by its ISO 4217 code: between the models' doubles, minor units and what people read.
class Currency
{
public:
    /// `decimals` as ISO 4217 says, 0 to 4.
    Currency(QString code, int decimals);

    QString code() const { return m_code; }
    int decimals() const { return m_decimals; }

    /// Nearest amount, half away from zero: 1.005 is 1.01, although the double is a trifle less.
    /// Nothing for NaN, infinities and amounts beyond 10^12 minor units.
    std::optional<Minor> fromUnits(double units) const;

    /// As the models and the Z report carry it.
    double toUnits(Minor amount) const;

    /// With the currency's decimals and its symbol, where `locale` puts them: "£1.90".
    QString text(Minor amount, const QLocale& locale = QLocale()) const;

    /// The text of the amount that `units` are; a dash for none.
    QString unitsText(double units, const QLocale& locale = QLocale()) const;

private:
    QString m_code;
    int m_decimals;
};

} // namespace rivo::sales
