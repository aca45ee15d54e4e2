#include "GpsdReader.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <optional>

namespace rivo::position
{

namespace
{

/// Modes of TPV: 0 unknown, 1 no fix, 2 without altitude, 3 with it.
constexpr int leastMode = 2;

double number(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key)).toDouble(qQNaN());
}

std::optional<Report> readLine(const QByteArray& line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (object.value(QLatin1String("class")).toString() != QLatin1String("TPV"))
        return std::nullopt;
    Fix fix;
    fix.coordinate = QGeoCoordinate(number(object, "lat"), number(object, "lon"));
    if (object.value(QLatin1String("mode")).toInt() < leastMode || !fix.coordinate.isValid())
        return Report();
    fix.speed = number(object, "speed");
    fix.direction = number(object, "track");
    fix.time =
        QDateTime::fromString(object.value(QLatin1String("time")).toString(), Qt::ISODateWithMs)
            .toUTC();
    return Report{fix};
}

} // namespace

QByteArray GpsdReader::request()
{
    return QByteArrayLiteral("?WATCH={\"enable\":true,\"json\":true}\n");
}

QVector<Report> GpsdReader::read(const QByteArray& bytes)
{
    QVector<Report> reports;
    const QList<QByteArray> lines = m_lines.split(bytes);
    for (const QByteArray& line : lines) {
        if (const std::optional<Report> report = readLine(line))
            reports.append(*report);
    }
    return reports;
}

} // namespace rivo::position
