#pragma once

#include "FeedOptions.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

namespace rivo::feed
{

class FeedReport;

/// A column that a reader wants.
struct CsvColumn
{
    const char* name;
    bool isRequired; ///< the header must have it
};

/// Takes the line at which a record begins and its values for the wanted columns, in their order;
/// a value is empty where the file or the record has none.
using CsvRecordHandler = std::function<void(int line, const QVector<QString>& values)>;

/// Reads the CSV file `file` with the content `text`: a header with the column names, in any order
/// and among others, then one record per row. Fields may be quoted and then hold commas, line ends
/// and doubled quotes; blanks around fields and blank lines are skipped; lines end with LF, CR LF
/// or CR. A value is cut after a few characters more than FeedLimits::textLength.
/// Broken quoting, records longer than the header, missing columns and exceeded limits are
/// reported and their records left out. True if nothing was.
bool readCsv(const QByteArray& text, const QString& file, const QVector<CsvColumn>& columns,
             const FeedLimits& limits, FeedReport& report, const CsvRecordHandler& handle);

} // namespace rivo::feed
