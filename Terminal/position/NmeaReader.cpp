#include "NmeaReader.h"

#include <QGeoPositionInfo>

#include <cmath>

namespace rivo::position
{

namespace
{

/// After so many positions in other sentences the receiver sends no RMC, or no more.
constexpr int mostOthers = 20;

bool isOfType(const QByteArray& line, const char* type)
{
    return line.size() > 6 && line.at(0) == '$' && line.mid(3, 3) == type;
}

double attribute(const QGeoPositionInfo& info, QGeoPositionInfo::Attribute which)
{
    return info.hasAttribute(which) ? info.attribute(which) : qQNaN();
}

Fix fixOf(const QGeoPositionInfo& info)
{
    Fix fix;
    fix.coordinate = info.coordinate();
    fix.speed = attribute(info, QGeoPositionInfo::GroundSpeed);
    fix.direction = attribute(info, QGeoPositionInfo::Direction);
    if (info.timestamp().isValid())
        fix.time = info.timestamp().toUTC();
    return fix;
}

} // namespace

NmeaReader::NmeaReader() : m_othersSinceRmc(mostOthers) {}

QVector<Report> NmeaReader::read(const QByteArray& bytes)
{
    QVector<Report> reports;
    const QList<QByteArray> lines = m_lines.split(bytes);
    for (const QByteArray& line : lines) {
        if (const std::optional<Report> report = readLine(line))
            reports.append(*report);
    }
    return reports;
}

std::optional<Report> NmeaReader::readLine(const QByteArray& line)
{
    const bool isRmc = isOfType(line, "RMC");
    if (!isRmc && !isOfType(line, "GGA") && !isOfType(line, "GLL"))
        return std::nullopt;
    QGeoPositionInfo info;
    bool hasFix = false;
    if (!m_parser.parsePosInfoFromNmeaData(line.constData(), line.size(), &info, &hasFix))
        return std::nullopt;
    if (isRmc)
        m_othersSinceRmc = 0;
    else if (m_othersSinceRmc < mostOthers && ++m_othersSinceRmc < mostOthers)
        return std::nullopt;
    if (!hasFix || !info.coordinate().isValid())
        return Report();
    return Report{fixOf(info)};
}

} // namespace rivo::position
