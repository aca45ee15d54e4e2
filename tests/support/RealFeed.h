#pragma once

#include <QString>
#include <QtGlobal>

/// The folder of a real operator's GTFS feed with Fares V2, an absolute path: the environment
/// variable GUICORE_REAL_GTFS_FEED. Empty: no feed, skip the test.
inline QString realFeed() { return qEnvironmentVariable("GUICORE_REAL_GTFS_FEED"); }
