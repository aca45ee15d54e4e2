#pragma once

#include "GtfsTables_p.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <functional>

namespace rivo::feed::gtfs
{

/// Reads where and when the vehicles of a folder run.
class NetworkReader
{
public:
    NetworkReader(Folder& folder, Network& network) : m_folder(folder), m_network(network) {}

    /// Reads stops, routes, shapes, days, trips and stop times. `areas` are those of the fares.
    void read(Ids& areas);
    /// Gives every stop its areas, as the numbers that `numberOf` knows them by.
    void setStopAreas(const std::function<int(const QString& area)>& numberOf);

private:
    void readStops();
    void readStopAreas(Ids& areas);
    void readRoutes();
    void readShapes();
    void readCalendar();
    void readTrips();
    void readStopTimes();

    Folder& m_folder;
    Network& m_network;
    Ids m_stopIds;
    Ids m_routeIds;
    Ids m_shapeIds;
    Ids m_tripIds;
    QHash<QString, QStringList> m_stopAreas; ///< of a stop
};

} // namespace rivo::feed::gtfs
