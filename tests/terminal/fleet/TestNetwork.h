#pragma once

#include <Feed.h>
#include <TextForms.h>

#include <QStringList>

/// Stops on the equator, where a thousandth of a degree is the same length in both directions; stop
/// N is N thousandths east of the origin.
inline rivo::feed::NetworkStop testStop(const QString& id, double thousandths)
{
    rivo::feed::NetworkStop stop;
    stop.id = id;
    stop.name = "Stop " + id;
    stop.latitude = 0.0;
    stop.longitude = thousandths / 1000.0;
    return stop;
}

/// Builds a network trip by trip.
struct TestNetwork : rivo::feed::Network
{
    TestNetwork()
    {
        routes = {{"5", "5", "East - West", "#112233", ""}, {"6", "", "Ring", "", ""}};
        for (int id = 1; id <= 9; ++id)
            stops.append(testStop(QString::number(id), id));
    }

    /// `calls`: "STOP ARRIVAL DEPARTURE", "STOP TIME" for both, "STOP" for none; "-" is no time.
    TestNetwork& trip(const QString& id, const QString& route, const QStringList& calls,
                      const QString& shape = {}, const QString& service = {},
                      const QString& headsign = {})
    {
        trips.append({id, route, service, headsign, shape});
        int sequence = 0;
        for (const QString& call : calls) {
            const QStringList parts = call.split(' ');
            const QString arrival = parts.value(1);
            const QString departure = parts.value(2, arrival);
            stopTimes.append({id, parts.first(), sequence++, rivo::feed::seconds(arrival),
                              rivo::feed::seconds(departure)});
        }
        return *this;
    }

    TestNetwork& shape(const QString& id, const QVector<rivo::feed::NetworkShapePoint>& points)
    {
        shapes.append({id, points});
        return *this;
    }
};
