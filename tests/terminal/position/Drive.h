#pragma once

#include <Timetable.h>

#include <QByteArray>
#include <QTime>

#include <cmath>

/// `body` as a sentence of NMEA 0183, with its checksum.
inline QByteArray nmea(const QByteArray& body)
{
    int sum = 0;
    for (const char byte : body)
        sum ^= static_cast<unsigned char>(byte);
    return '$' + body + '*' + QByteArray::number(sum, 16).rightJustified(2, '0').toUpper() + "\r\n";
}

/// A coordinate as "DDMM.MMMMM,N".
inline QByteArray nmeaDegrees(double value, int digits, const char* signs)
{
    const double size = std::abs(value);
    const int degrees = static_cast<int>(size);
    const QByteArray minutes = QByteArray::number((size - degrees) * 60.0, 'f', 5);
    return QByteArray::number(degrees).rightJustified(digits, '0') +
           minutes.rightJustified(8, '0') + ',' + signs[value < 0.0 ? 1 : 0];
}

/// What a receiver sends when it is on `trip` where the timetable has it at `place` and the
/// satellites say `time`, on 22 March 2026. The receiver is up to ten metres wrong.
inline QByteArray drivenRmc(const rivo::fleet::Trip& trip, rivo::fleet::Seconds place,
                            rivo::fleet::Seconds time)
{
    const rivo::fleet::Trip::Moment moment = trip.at(place);
    const rivo::fleet::Path::Place on = trip.path->at(moment.metres);
    const QGeoCoordinate seen =
        on.coordinate.atDistanceAndAzimuth(10.0 * std::abs(std::sin(place)), (place * 37) % 360);
    const QByteArray speed = moment.isStopped ? "0.0" : "16.0"; // knots
    return nmea("GPRMC," + QTime(0, 0).addSecs(time).toString("HHmmss").toLatin1() + ".00,A," +
                nmeaDegrees(seen.latitude(), 2, "NS") + ',' +
                nmeaDegrees(seen.longitude(), 3, "EW") + ',' + speed + ',' +
                QByteArray::number(on.direction, 'f', 1) + ",220326,,,A");
}
