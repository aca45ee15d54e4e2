#include "Currency.h"

#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace rivo::sales
{

namespace
{

constexpr double mostMinor = 1e12;
/// More than the error of a decimal text as a double times a power of ten, less than a thousandth
/// of a minor unit for all amounts.
constexpr double tolerance = 4.0 * std::numeric_limits<double>::epsilon();
constexpr std::array<double, 5> powersOfTen{1.0, 10.0, 100.0, 1000.0, 10000.0};

struct Symbol
{
    const char* code;
    const char* symbol; // UTF-8
};

/// Currencies that people know by a sign; others show their code.
constexpr std::array<Symbol, 7> symbols{{{"EUR", "€"},
                                         {"GBP", "£"},
                                         {"USD", "$"},
                                         {"JPY", "¥"},
                                         {"PLN", "zł"},
                                         {"CZK", "Kč"},
                                         {"INR", "₹"}}};

QString symbolOf(const QString& code)
{
    for (const Symbol& known : symbols) {
        if (code == QLatin1String(known.code))
            return QString::fromUtf8(known.symbol);
    }
    return code;
}

} // namespace

Currency::Currency(QString code, int decimals)
    : m_code(std::move(code)),
      m_decimals(qBound(0, decimals, static_cast<int>(powersOfTen.size()) - 1))
{
}

std::optional<Minor> Currency::fromUnits(double units) const
{
    const double minor = units * powersOfTen.at(static_cast<std::size_t>(m_decimals));
    if (!(std::abs(minor) <= mostMinor)) // NaN too
        return std::nullopt;
    return std::llround(minor * (1.0 + tolerance));
}

double Currency::toUnits(Minor amount) const
{
    return static_cast<double>(amount) / powersOfTen.at(static_cast<std::size_t>(m_decimals));
}

QString Currency::text(Minor amount, const QLocale& locale) const
{
    return locale.toCurrencyString(toUnits(amount), symbolOf(m_code), m_decimals);
}

QString Currency::unitsText(double units, const QLocale& locale) const
{
    const std::optional<Minor> amount = fromUnits(units);
    return amount ? text(*amount, locale) : QStringLiteral("–");
}

} // namespace rivo::sales
