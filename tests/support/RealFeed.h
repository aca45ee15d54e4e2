#pragma once

#include <QString>
#include <QtGlobal>

/// The folder of a real operator's GTFS feed: the environment variable GUICORE_REAL_GTFS_FEED, or
/// what it or the CMake variable of that name said when the build was configured. Empty: no feed,
/// skip the test.
inline QString realFeed()
{
    return qEnvironmentVariable("GUICORE_REAL_GTFS_FEED", QStringLiteral(REAL_GTFS_FEED));
}
