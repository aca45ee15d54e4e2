#include "Currency.h"

#include "CashTable_p.h"

#include <algorithm>
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

/// Currencies with a sign; others show their code.
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

Minor Currency::smallestCoin() const { return cashOf(m_code, m_decimals).coins.front(); }

Minor Currency::cashAmount(Minor amount) const
{
    const Minor coin = smallestCoin();
    const Minor half = amount < 0 ? -(coin / 2) : coin / 2;
    return (amount + half) / coin * coin;
}

QVector<Minor> Currency::coins() const { return cashOf(m_code, m_decimals).coins; }

QVector<Minor> Currency::notes() const { return cashOf(m_code, m_decimals).notes; }

QVector<Minor> Currency::quickAmounts(Minor due, int most) const
{
    // Coins that are small beside the amount are not offered.
    constexpr Minor mostPieces = 10;
    QVector<Minor> amounts{due};
    const QVector<Minor> pieces = due > 0 ? coins() + notes() : QVector<Minor>();
    for (const Minor piece : pieces) {
        const Minor amount = (due + piece - 1) / piece * piece;
        if (piece * mostPieces >= due && !amounts.contains(amount))
            amounts.append(amount);
    }
    std::sort(amounts.begin(), amounts.end());
    return amounts.mid(0, most);
}

QVector<Minor> Currency::inNotesAndCoins(Minor amount) const
{
    QVector<Minor> pieces;
    const QVector<Minor> all = coins() + notes();
    for (auto piece = all.rbegin(); piece != all.rend(); ++piece) {
        for (; amount >= *piece; amount -= *piece)
            pieces.append(*piece);
    }
    return pieces;
}

QString Currency::text(Minor amount, const QLocale& locale) const
{
    return locale.toCurrencyString(toUnits(amount), symbolOf(m_code), m_decimals);
}

QString Currency::shortText(Minor amount, const QLocale& locale) const
{
    const double units = toUnits(amount);
    const int decimals = std::trunc(units) == units ? 0 : m_decimals;
    return locale.toCurrencyString(units, symbolOf(m_code), decimals);
}

QString Currency::unitsText(double units, const QLocale& locale) const
{
    const std::optional<Minor> amount = fromUnits(units);
    return amount ? text(*amount, locale) : QStringLiteral("–");
}

} // namespace rivo::sales
