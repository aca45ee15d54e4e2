#include "VehicleStates.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace rivo::backoffice
{

namespace
{

QVariant numberOrNull(double number)
{
    return qIsNaN(number) ? QVariant(QVariant::Double) : QVariant(number);
}

Fault faultOf(const QString& topic, const QByteArray& message)
{
    constexpr int mostBytes = 1024;
    Fault fault;
    fault.topic = topic;
    fault.reason = QStringLiteral("it is not a message of this topic");
    fault.bytes = message.left(mostBytes);
    return fault;
}

} // namespace

bool VehicleStates::readState(State& state, const QString& what, const QByteArray& message,
                              const QDateTime& now)
{
    if (what == QLatin1String("alive")) {
        state.isAlive = message == "1";
        return message == "1" || message == "0";
    }
    if (what == QLatin1String("devices")) {
        state.devices = office::devicesOf(message);
        return state.devices.has_value();
    }
    const auto position = office::positionOf(message);
    if (position && position->at <= now.addSecs(mostAhead))
        state.position = position;
    return position.has_value();
}

bool VehicleStates::note(const QString& topic, const QByteArray& message, const QDateTime& now)
{
    const QStringList parts = topic.split(QLatin1Char('/'));
    const QString what = parts.value(3);
    if (what != QLatin1String("alive") && what != QLatin1String("position") &&
        what != QLatin1String("devices"))
        return false;
    // Without content the broker forgets what it kept.
    if (parts.size() != 4 || !office::isTopicName(parts.at(1)) ||
        !office::isTopicName(parts.at(2)) || message.isEmpty())
        return true;
    State& state = m_noted[{parts.at(1), parts.at(2)}];
    if (!readState(state, what, message, now))
        state.fault = faultOf(topic, message);
    return true;
}

bool VehicleStates::store()
{
    const bool isTime =
        !m_since.isValid() || m_since.hasExpired(pause) || m_noted.size() >= size_t(mostWaiting);
    if (m_noted.empty() || !isTime)
        return true;
    const bool isStored = m_store.inTransaction([this] {
        return std::all_of(m_noted.begin(), m_noted.end(), [this](const auto& each) {
            return storeState(each.first, each.second);
        });
    });
    if (isStored)
        m_noted.clear();
    m_since.start();
    return isStored;
}

/// Not locked, as for records: those would wait.
std::optional<qint64> VehicleStates::vehicleOf(const Name& name)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        QSqlQuery* found = m_store.database().run(
            QStringLiteral("SELECT id FROM vehicle WHERE operator = ? AND name = ?"),
            {name.first, name.second});
        if (found == nullptr)
            return std::nullopt;
        if (found->next())
            return found->value(0).toLongLong();
        if (m_store.database().run(
                QStringLiteral("INSERT INTO vehicle (operator, name) VALUES (?, ?)"
                               " ON CONFLICT (operator, name) DO NOTHING"),
                {name.first, name.second}) == nullptr)
            return std::nullopt;
    }
    return std::nullopt;
}

bool VehicleStates::storeState(const Name& name, const State& state)
{
    const auto vehicle = vehicleOf(name);
    if (!vehicle)
        return false;
    if (state.isAlive &&
        m_store.database().run(
            QStringLiteral("INSERT INTO vehicle_state (vehicle, alive) VALUES (?, ?)"
                           " ON CONFLICT (vehicle) DO UPDATE SET alive = excluded.alive,"
                           " alive_since = now()"
                           " WHERE vehicle_state.alive <> excluded.alive"),
            {*vehicle, *state.isAlive}) == nullptr)
        return false;
    if ((state.position && !storePosition(*vehicle, *state.position)) ||
        (state.devices && !storeDevices(*vehicle, *state.devices)))
        return false;
    if (!state.fault)
        return true;
    Fault fault = *state.fault;
    fault.vehicle = *vehicle;
    return m_store.keep(fault);
}

bool VehicleStates::storePosition(qint64 vehicle, const office::PositionReport& position)
{
    return m_store.database().run(
               QStringLiteral(
                   "INSERT INTO vehicle_state (vehicle, alive, position_at, latitude, longitude,"
                   " direction, speed, trip) VALUES (?, false, to_timestamp(?), ?, ?, ?, ?, ?)"
                   " ON CONFLICT (vehicle) DO UPDATE SET position_at = excluded.position_at,"
                   " latitude = excluded.latitude, longitude = excluded.longitude,"
                   " direction = excluded.direction, speed = excluded.speed, trip = excluded.trip"
                   " WHERE vehicle_state.position_at IS NULL"
                   " OR vehicle_state.position_at < excluded.position_at"),
               {vehicle, position.at.toSecsSinceEpoch(), position.latitude, position.longitude,
                numberOrNull(position.direction), numberOrNull(position.speed),
                storable(position.trip)}) != nullptr;
}

bool VehicleStates::storeDevices(qint64 vehicle, const QVector<office::DeviceReport>& devices)
{
    QJsonArray array;
    for (const office::DeviceReport& each : devices)
        array.append(QJsonObject{{QStringLiteral("name"), storable(each.name)},
                                 {QStringLiteral("level"), each.level},
                                 {QStringLiteral("text"), storable(each.text)}});
    return m_store.database().run(
               QStringLiteral("INSERT INTO vehicle_state (vehicle, alive, devices) VALUES"
                              " (?, false, CAST(? AS jsonb)) ON CONFLICT (vehicle) DO UPDATE SET"
                              " devices = excluded.devices, devices_at = now()"
                              " WHERE vehicle_state.devices <> excluded.devices"),
               {vehicle, QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact))}) !=
           nullptr;
}

} // namespace rivo::backoffice
