#include "Amount.h"

#include "TextForms.h"

namespace rivo::feed
{

namespace
{

qint64 powerOfTen(int decimals)
{
    qint64 power = 1;
    for (int i = 0; i < decimals; ++i)
        power *= 10;
    return power;
}

} // namespace

std::optional<qint64> minorUnits(const QString& text, int decimals)
{
    const bool isNegative = text.startsWith(QLatin1Char('-'));
    const QString digits = isNegative ? text.mid(1) : text;
    if (!isDecimal(digits))
        return std::nullopt;
    const QString fraction = digits.section(QLatin1Char('.'), 1);
    if (fraction.size() > decimals)
        return std::nullopt;
    bool isConverted = false;
    const qint64 amount = (digits.section(QLatin1Char('.'), 0, 0) + fraction +
                           QString(decimals - fraction.size(), QLatin1Char('0')))
                              .toLongLong(&isConverted);
    if (!isConverted || amount > largestPrice * powerOfTen(decimals))
        return std::nullopt;
    return isNegative ? -amount : amount;
}

std::optional<qint64> toMinorUnits(double units, int decimals)
{
    if (!(qAbs(units) <= largestPrice))
        return std::nullopt;
    const qint64 amount = qRound64(units * static_cast<double>(powerOfTen(decimals)));
    return toUnits(amount, decimals) == units ? std::optional<qint64>(amount) : std::nullopt;
}

QString amountText(qint64 minorUnits, int decimals)
{
    const qint64 unit = powerOfTen(decimals);
    const qint64 amount = qAbs(minorUnits);
    QString text = QString::number(amount / unit);
    if (decimals > 0)
        text += QLatin1Char('.') +
                QString::number(amount % unit).rightJustified(decimals, QLatin1Char('0'));
    return minorUnits < 0 ? QLatin1Char('-') + text : text;
}

double toUnits(qint64 minorUnits, int decimals)
{
    return static_cast<double>(minorUnits) / static_cast<double>(powerOfTen(decimals));
}

} // namespace rivo::feed
