#pragma once

#include "ListModel.h"

#include <QString>
#include <QVector>

#include <functional>

/// Makes the row with this identity.
using RowMaker = std::function<rivo::models::ListItem*(int id)>;

/// All rows.
QVector<rivo::models::ListItem*> itemsOf(const rivo::models::ListModel& model);

/// Identities of rows: "1 2 2".
QString idsOf(const QVector<rivo::models::ListItem*>& items);
inline QString idsOf(const rivo::models::ListModel& model) { return idsOf(itemsOf(model)); }

/// Makes a call that is written as in "takeRows 0 n-1 below 2" and returns its result as text.
///
/// A number may be n, the number of rows, with an offset, or max and min, the greatest and the
/// smallest number. Rows that come in are written as their identities, or "null"; "below 2" gives
/// row 2 as the parent. The result is "true" or "false", the identity of a row or "null", the
/// identities of rows, the number of keys of an exported row or "invalid", a row number, or
/// nothing.
QString makeCall(rivo::models::ListModel& model, const QString& call, const RowMaker& makeRow);

/// Calls without effect on any model: nothing changes, nothing is emitted, and the result is that
/// of a rejection. Those of the second list only where there are no rows.
const QVector<const char*>& rejectedCalls();
const QVector<const char*>& callsRejectedWithoutRows();

/// Whether `result` is that of a rejected call.
bool isRejection(const QString& result);
