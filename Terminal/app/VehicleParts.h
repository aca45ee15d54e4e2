#pragma once

#include <Config.h>
#include <Health.h>
#include <PublicationMessages.h>

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVector>

#include <memory>

class AssetsModel;
class PeripheralItem;
class PeripheralsModel;

namespace rivo::feed
{
struct Network;
}

namespace rivo::fleet
{
class FleetSimulator;
}

namespace rivo::health
{
class HealthWatch;
}

namespace rivo::live
{
class LiveVehicles;
}

namespace rivo::office
{
class OfficeLink;
struct Topics;
class PublicationLink;
} // namespace rivo::office

namespace rivo::sales
{
class Journal;
}

namespace rivo::position
{
class VehiclePosition;
}

namespace rivo::terminal
{

class OtherVehicles;
class TakeOver;
class TripDesk;

/// What the vehicle has besides printer and card terminal: the receiver of its position, the server
/// that reports the other vehicles, the connection to the office, and the system itself. Each part
/// has a row among the devices. The current stop follows the receiver.
class VehicleParts : public QObject
{
    Q_OBJECT

public:
    struct Settings
    {
        config::PositionConfig position;
        config::VehiclesConfig vehicles;
        config::OfficeConfig office;
        bool watchesHealth = false;
        QString journalFile;
        QString systemRoot;           ///< where /sys is; empty on a real system
        TakeOver* takeOver = nullptr; ///< for what the office publishes; none = it is not taken
        QString currency = {};        ///< of what is published
    };

    /// What the parts act on; all outlive this.
    struct Terminal
    {
        const feed::Network& network;
        AssetsModel& vehicles;
        PeripheralsModel& devices;
        fleet::FleetSimulator& fleet;
        TripDesk& trip;
        sales::Journal& journal;
    };

    /// Adds the rows of the parts that there are.
    VehicleParts(const Settings& settings, const Terminal& terminal, QObject* parent = nullptr);
    ~VehicleParts() override;

    /// Connects to the parts, again and again.
    void start();

    /// Whether a device is a part of the vehicle.
    bool has(const PeripheralItem& device) const;

    /// Whether the fleet is on the screen: other vehicles are asked for then alone, if the office
    /// is connected and no server reports them.
    void setFleetShown(bool isShown);

    /// A publication came into effect. Ignored without an office.
    void setInUse(office::PublicationKind kind, qint64 version);

    /// The last record that the office has; -1 = that is not known, or there is no office.
    qint64 acknowledgedByOffice() const;

    /// Without a receiver it knows the steps of the clock alone.
    const position::VehiclePosition& position() const { return *m_position; }

signals:
    /// The satellites are `milliseconds` ahead of the system's clock; see VehiclePosition.
    void clockOffsetChanged(qint64 milliseconds);
    /// The system's clock was set by `milliseconds`, backwards if negative.
    void clockStepped(qint64 milliseconds);
    void publicationTaken(); ///< by the store, from the office

private:
    using Row = QPointer<PeripheralItem>; ///< null if the row was removed, or there is none

    void followPosition(const config::PositionConfig& config);
    void followVehicles(const config::VehiclesConfig& config);
    void reachOffice(const Settings& settings);
    void takePublications(const office::Topics& topics, TakeOver& takeOver,
                          const QString& currency);
    void followOthers(const office::Topics& topics);
    qint64 now() const;
    void reportDevices();
    void watchHealth(const Settings& settings);
    Row addRow(const QString& name, const QString& icon);
    void showPosition();
    void showOwnPlace();
    void showClock();
    void showVehicles();
    void showOffice();
    void showHealth(const health::Health& health);
    void showOptional(Row& row, const QString& name, bool isThere, const health::State& state);

    const Terminal m_terminal;
    std::unique_ptr<position::VehiclePosition> m_position;
    std::unique_ptr<live::LiveVehicles> m_live;
    std::unique_ptr<office::OfficeLink> m_office;
    std::unique_ptr<office::PublicationLink> m_publications;
    std::unique_ptr<OtherVehicles> m_others;
    QTimer m_deviceReports;
    std::unique_ptr<health::HealthWatch> m_health;
    QVector<Row> m_rows; ///< all that were added
    Row m_positionRow;
    Row m_clockRow;
    Row m_liveRow;
    Row m_officeRow;
    Row m_networkRow;
    Row m_diskRow;
    Row m_temperatureRow;
    Row m_brightnessRow;
};

} // namespace rivo::terminal
