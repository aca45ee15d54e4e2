#pragma once

#include "Currency.h"

#include <QString>
#include <QVector>

namespace rivo::sales
{

/// The notes and coins that are in circulation, in minor units, the smallest first.
struct CashTable
{
    const char* code;
    int decimals; ///< that the values are in
    QVector<Minor> coins;
    QVector<Minor> notes;
};

/// All currencies that are known. A central bank that withdraws its smallest coin, or issues a new
/// note, changes a row here.
const QVector<CashTable>& cashTables();

/// The row of a currency; for an unknown one, 1, 2 and 5 times each power of ten.
const CashTable& cashOf(const QString& code, int decimals);

} // namespace rivo::sales
