#pragma once

#include "SignalLog.h"

#include <QString>
#include <QStringList>

// What a layout emits, as SignalLog writes it.

/// Tiles that become rows `first` to `last`, one by one.
inline QStringList tilesAppended(int first, int last)
{
    QStringList texts;
    for (int row = first; row <= last; ++row)
        texts += announcedInsertion(row, row, row + 1);
    return texts;
}

inline QString gridRowsChanged(int rows) { return QString("numberOfRowsChanged(%1)").arg(rows); }

inline QString gridColumnsChanged(int columns)
{
    return QString("numberOfColumnsChanged(%1)").arg(columns);
}
