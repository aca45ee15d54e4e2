#pragma once

#include "OfficeStore.h"

#include <FleetMessages.h>

#include <QDateTime>
#include <QElapsedTimer>

#include <map>
#include <optional>

namespace rivo::backoffice
{

/// Where vehicles are, how their devices are, and whether they are connected: what they last
/// reported besides records. The broker keeps these messages, so each program of the office gets
/// all of them, and what one of them writes again changes nothing.
///
/// The last word of each vehicle is stored, once in `pause`: a fleet that moves writes no more than
/// one transaction a second.
class VehicleStates
{
public:
    static constexpr int pause = 1000; ///< milliseconds between two transactions
    static constexpr int mostWaiting =
        5000;                             ///< vehicles that wait for one; more are stored at once
    static constexpr int mostAhead = 900; ///< seconds; a report of a later time does not count

    /// Of a store that is open, and lives longer.
    explicit VehicleStates(OfficeStore& store) : m_store(store) {}

    /// Notes a message of one of these topics. False for other topics. What cannot be read is a
    /// fault of the vehicle.
    bool note(const QString& topic, const QByteArray& message, const QDateTime& now);

    /// Stores what was noted, if it is time. False if the database fails; it stays noted.
    bool store();

private:
    struct State
    {
        std::optional<bool> isAlive;
        std::optional<office::PositionReport> position;
        std::optional<QVector<office::DeviceReport>> devices;
        std::optional<Fault> fault;
    };
    using Name = std::pair<QString, QString>; ///< operator, vehicle

    static bool readState(State& state, const QString& what, const QByteArray& message,
                          const QDateTime& now);
    std::optional<qint64> vehicleOf(const Name& name);
    bool storeState(const Name& name, const State& state);
    bool storePosition(qint64 vehicle, const office::PositionReport& position);
    bool storeDevices(qint64 vehicle, const QVector<office::DeviceReport>& devices);

    OfficeStore& m_store;
    std::map<Name, State> m_noted; ///< in the order in which all programs lock rows
    QElapsedTimer m_since;         ///< the last transaction
};

} // namespace rivo::backoffice
