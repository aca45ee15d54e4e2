#include "OtherVehicles.h"

#include <VehiclePosition.h>

namespace rivo::terminal
{

namespace
{

live::LiveVehicle vehicleOf(const QString& name, const office::PositionReport& report)
{
    live::LiveVehicle vehicle;
    vehicle.id = name;
    vehicle.label = name;
    vehicle.trip = report.trip;
    vehicle.coordinate = QGeoCoordinate(report.latitude, report.longitude);
    vehicle.direction = report.direction;
    vehicle.time = report.at.toSecsSinceEpoch();
    vehicle.isStopped = report.speed <= position::PositionJudge::moving;
    return vehicle;
}

} // namespace

OtherVehicles::OtherVehicles(office::OfficeLink& link, const office::Topics& own,
                             const feed::Network& network, AssetsModel& fleet,
                             std::function<qint64()> now, QObject* parent)
    : QObject(parent), m_link(link), m_own(own), m_all{own.operatorName, QStringLiteral("+")},
      m_fleet(network, fleet::Timetable(network), fleet), m_now(std::move(now))
{
    m_timer.setInterval(pause);
    connect(&m_timer, &QTimer::timeout, this, &OtherVehicles::apply);
    connect(&m_link, &office::OfficeLink::received, this, &OtherVehicles::take);
}

void OtherVehicles::setShown(bool isShown)
{
    if (isShown == m_isShown)
        return;
    m_isShown = isShown;
    m_link.follow(m_all.position(), isShown);
    if (isShown)
        m_timer.start();
    else
        m_timer.stop();
}

void OtherVehicles::take(const QString& topic, const QByteArray& message)
{
    const office::Topics of{m_own.operatorName, office::Topics::vehicleOf(topic)};
    if (!m_isShown || of.vehicle.isEmpty() || of.vehicle == m_own.vehicle ||
        topic != of.position() || m_collected.size() >= size_t(live::mostVehicles))
        return;
    if (const auto report = office::positionOf(message))
        m_collected[of.vehicle] = vehicleOf(of.vehicle, *report);
}

void OtherVehicles::apply()
{
    live::LiveMessage message;
    message.time = m_now();
    for (const auto& each : m_collected)
        message.vehicles.append(each.second);
    m_collected.clear();
    if (message.vehicles.isEmpty())
        m_fleet.age(message.time);
    else
        m_fleet.apply(message, message.time);
    emit reported();
}

} // namespace rivo::terminal
