#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace rivo::feed
{

/// What a feed may hold at most; anything above is a problem, never a reason to run out of memory.
struct FeedLimits
{
    qint64 jsonBytes = 32LL * 1024 * 1024; ///< size of a JSON feed
    int jsonDepth = 32;                    ///< objects and lists within one another
    int jsonValues = 2'000'000;            ///< objects, lists, texts, numbers, true, false, null
    int feedFiles = 10'000;                ///< files of a GTFS folder or archive
    qint64 csvBytes = 256LL * 1024 * 1024; ///< size of one GTFS file, unpacked
    int csvColumns = 1'000;                ///< columns of one GTFS file
    int csvLineBytes = 1024 * 1024;        ///< bytes of one GTFS record
    int csvRecords = 2'000'000;            ///< stop times, shape points and dates of services
    int tableRecords = 300'000;            ///< records of any other GTFS file
    qint64 textBytes = 64LL * 1024 * 1024; ///< texts that are kept of a GTFS feed
    int entries = 100'000;                 ///< products, and entries of every other list of a feed
    int textLength = 1'000;                ///< Unicode characters of one text, or of a key
    qint64 memory = 0; ///< bytes of the whole program while a GTFS feed is read; 0 = any number
};

/// How a feed is read.
struct FeedOptions
{
    /// Rider category id to passenger type text ("PT_ADULT"). GTFS only; wins over `mappingFile`.
    QMap<QString, QString> riderCategories;
    /// CSV file with the columns rider_category_id and passenger_type. GTFS only; empty =
    /// passenger_types.txt in the folder, where there is one.
    QString mappingFile;
    /// The routes whose trips, stop times and shapes are kept in Feed::network. GTFS only; none
    /// given = all. Fares know the stops of every route in any case.
    std::optional<QStringList> timetableOf;
    FeedLimits limits;
};

} // namespace rivo::feed
