#pragma once

#include <QMap>
#include <QString>

namespace rivo::feed
{

/// What a feed may hold at most; anything above is a problem, never a reason to run out of memory.
struct FeedLimits
{
    qint64 jsonBytes = 32LL * 1024 * 1024; ///< size of a JSON feed
    int jsonDepth = 32;                    ///< objects and lists within one another
    int jsonValues = 2'000'000;            ///< objects, lists, texts, numbers, true, false, null
    qint64 csvBytes = 64LL * 1024 * 1024;  ///< size of one file of a GTFS folder
    int csvRecords = 2'000'000;            ///< records of one file of a GTFS folder
    int csvColumns = 1'000;                ///< columns of one file of a GTFS folder
    int entries = 100'000;                 ///< products, and entries of every other list of a feed
    int textLength = 1'000;                ///< Unicode characters of one text, or of a key
};

/// How a feed is read.
struct FeedOptions
{
    /// Rider category id to passenger type text ("PT_ADULT"). GTFS only; wins over `mappingFile`.
    QMap<QString, QString> riderCategories;
    /// CSV file with the columns rider_category_id and passenger_type. GTFS only; empty =
    /// passenger_types.txt in the folder, where there is one.
    QString mappingFile;
    FeedLimits limits;
};

} // namespace rivo::feed
