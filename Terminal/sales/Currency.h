#pragma once

#include <QLocale>
#include <QString>
#include <QVector>

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

    /// A price, rounded half away from zero: 1.005 is 1.01, although the double is a bit less.
    /// Nothing for NaN, infinities and amounts beyond 10^12 minor units.
    std::optional<Minor> fromUnits(double units) const;

    /// As the models and the Z report carry it.
    double toUnits(Minor amount) const;

    /// With the currency's decimals and its symbol, where `locale` puts them: "£1.90".
    QString text(Minor amount, const QLocale& locale = QLocale()) const;

    /// The same without decimals if all of them are zero, as notes show it: "£5".
    QString shortText(Minor amount, const QLocale& locale = QLocale()) const;

    // Cash. The notes and coins of a currency that is not in the table are 1, 2 and 5 times each
    // power of ten.

    /// The least that can be paid in cash: more than 1 if the currency has no coins of its smallest
    /// amounts.
    Minor smallestCoin() const;

    /// What is paid in cash for `amount`: rounded to a multiple of the smallest coin, half away
    /// from zero.
    Minor cashAmount(Minor amount) const;

    QVector<Minor> coins() const; ///< the smallest first
    QVector<Minor> notes() const; ///< the smallest first

    /// What a passenger may give for `due`, for quick payment: `due` itself, then more, at most
    /// `most` amounts.
    QVector<Minor> quickAmounts(Minor due, int most = 6) const;

    /// `amount` in as few notes and coins as possible, the largest first; without what is less than
    /// the smallest coin.
    QVector<Minor> inNotesAndCoins(Minor amount) const;

    /// The text of the amount that `units` are; a dash for none.
    QString unitsText(double units, const QLocale& locale = QLocale()) const;

private:
    QString m_code;
    int m_decimals;
};

} // namespace rivo::sales
