#pragma once

#include "LiveMessage.h"

#include <Timetable.h>

#include <QHash>
#include <QMap>
#include <QVector>

class AssetItem;
class AssetsModel;

namespace rivo::feed
{
struct Network;
}

namespace rivo::live
{

/// Brings the rows of the fleet to what messages report.
///
/// A vehicle of a message is a row that was there before if the row's id or internal number is the
/// vehicle's id or label, or if both have the same plate. Other vehicles get rows of their own, at
/// the end. A row that was never reported stays as it is. Times are seconds since 1970.
class LiveFleet
{
public:
    static constexpr int staleAfter = 60;       ///< seconds since the report
    static constexpr int offlineAfter = 300;    ///< seconds since the report
    static constexpr int forgottenAfter = 1800; ///< seconds; then a row of its own is removed
    static constexpr int mostAhead = 300; ///< seconds; a report of a later time was made just now

    /// `fleet` outlives this, and has the rows that were there before.
    LiveFleet(const feed::Network& network, const fleet::Timetable& timetable, AssetsModel& fleet);

    /// Takes what `message` reports. The model announces all changes of rows at once.
    void apply(const LiveMessage& message, qint64 now);
    /// Time passes without a message.
    void age(qint64 now);

    /// Seconds since the report, by the ids of the rows that were reported.
    QHash<int, fleet::Seconds> silences(qint64 now) const;
    int reportedCount() const { return m_reports.size(); }

private:
    struct Row
    {
        int id = -1;
        QString plate;
        QString number;
        QString drivingStatus;
        QString routeStatus;
        int route = -1;
        QString routeName;
        QGeoCoordinate coordinate;
        bool isUpdated = false;
        double direction = 0.0;
    };

    struct Report
    {
        qint64 time = 0;
        bool isStopped = false;
        bool isOwn = false; ///< the row was made for it
    };

    struct Journey
    {
        int route = -1;
        QString routeName;
        QString headsign;
    };

    static Row rowOf(const AssetItem& item);
    void describe(const feed::Network& network, const fleet::Timetable& timetable);
    void readRows();
    int idOf(const LiveVehicle& vehicle) const;
    int newId(const LiveVehicle& vehicle);
    Row& rowFor(const LiveVehicle& vehicle);
    void take(const LiveVehicle& vehicle, qint64 messageTime, qint64 now);
    void forget(qint64 now);
    void judge(qint64 now);
    void show();

    AssetsModel& m_fleet;
    QMap<QString, Journey> m_trips;  ///< by id
    QMap<QString, Journey> m_routes; ///< by id
    QVector<Row> m_rows;             ///< in the order of the model
    QHash<int, int> m_placeOf;       ///< in m_rows, by id
    QHash<int, Report> m_reports;    ///< by id of the row
    QMap<QString, int> m_ids;        ///< by id of the vehicle
    QMap<QString, int> m_idsOfNumbers;
    QMap<QString, int> m_idsOfPlates;
    int m_nextId;
};

} // namespace rivo::live
