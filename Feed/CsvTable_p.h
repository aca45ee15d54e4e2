#pragma once

#include "FeedOptions.h"
#include "FeedProblem.h"
#include "FeedSource_p.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <string_view>
#include <vector>

namespace rivo::feed
{

/// A column that a reader wants.
struct CsvColumn
{
    const char* name;
    bool isRequired; ///< the header must have it
};

/// What the header of a file has.
struct CsvHeader
{
    QVector<bool> isThere; ///< per wanted column
    QStringList others;    ///< names of the columns that are not wanted
};

/// How a file is read.
struct CsvReading
{
    QString file; ///< for messages
    QVector<CsvColumn> columns;
    FeedLimits limits;
    int mostRecords = 0;
    std::function<void(FeedProblem)> report;
    /// Lines that are no UTF-8, which go on being read with replacement characters.
    std::function<void(FeedProblem)> reportEncoding;
    std::function<void(const CsvHeader& header)> takeHeader;
    /// Takes the line at which a record begins and its values for the wanted columns, in UTF-8 and
    /// in their order; a value is empty where the file or the record has none. It is valid during
    /// the call.
    std::function<void(int line, const std::vector<std::string_view>& values)> takeRecord;
};

/// Reads CSV from `bytes`: a header with the column names, in any order and among others, then one
/// record per row. Fields may be quoted and then hold commas, line ends and doubled quotes; a
/// byte-order mark, blanks around fields and blank lines are skipped; lines end with LF, CR LF or
/// CR. A value is cut after a few characters more than FeedLimits::textLength.
/// Broken quoting, records longer than the header, missing columns and exceeded limits are
/// reported and their records left out. True if nothing was.
bool readCsv(const ByteReader& bytes, const CsvReading& reading);

} // namespace rivo::feed
