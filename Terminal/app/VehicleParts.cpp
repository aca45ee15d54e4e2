#include "VehicleParts.h"

#include "OtherVehicles.h"
#include "TakeOver.h"
#include "TripDesk.h"

#include <AssetsModel.h>
#include <Feed.h>
#include <FleetSimulator.h>
#include <HealthWatch.h>
#include <LiveVehicles.h>
#include <OfficeLink.h>
#include <PeripheralItem.h>
#include <PeripheralsModel.h>
#include <PublicationLink.h>
#include <VehiclePosition.h>

#include <QDateTime>

#include <algorithm>

namespace rivo::terminal
{

namespace
{

using health::Level;
using health::State;
using position::Knowledge;

constexpr int millisecondsPerSecond = 1000;
constexpr int firstId = 1000001; // feeds have smaller ones

position::SourceSettings sourceOf(const config::PositionConfig& config)
{
    position::SourceSettings settings;
    if (config.type == QLatin1String("gpsd"))
        settings.kind = position::SourceSettings::Gpsd;
    else if (config.serial)
        settings.kind = position::SourceSettings::Serial;
    else if (config.isThere())
        settings.kind = position::SourceSettings::Device;
    settings.device = config.serial ? config.serial->port : config.device;
    settings.baud = config.serial ? config.serial->baud : settings.baud;
    settings.host = config.host;
    settings.port = static_cast<quint16>(config.port);
    return settings;
}

live::LiveSettings liveOf(const config::VehiclesConfig& config)
{
    live::LiveSettings settings;
    settings.url = QUrl(config.url);
    settings.file = config.file;
    settings.interval = config.interval * millisecondsPerSecond;
    settings.certificates = {config.caFile, config.certificate, config.key};
    return settings;
}

/// Signals follow every step: a fault is gone before its text is, and there after it.
void show(PeripheralItem* row, const State& state)
{
    if (row == nullptr)
        return;
    if (state.level != Level::Fault)
        row->setError(false);
    row->setStateStr(state.text);
    row->setDeviceState(static_cast<int>(state.level));
    row->setBlueWarning(state.level == Level::Notice);
    row->setYellowWarning(state.level == Level::Warning);
    row->setWarning(state.level == Level::SeriousWarning);
    row->setError(state.level == Level::Fault);
}

int reportedLevel(const PeripheralItem& device)
{
    constexpr int fault = office::DeviceReport::worst;
    return device.error()           ? fault
           : device.warning()       ? fault - 1
           : device.yellowWarning() ? 2
           : device.blueWarning()   ? 1
                                    : 0;
}

Level levelOf(Knowledge knowledge)
{
    switch (knowledge) {
    case Knowledge::Disconnected:
    case Knowledge::Silent:
    case Knowledge::Jump:
        return Level::Warning;
    case Knowledge::NoFix:
    case Knowledge::Tunnel:
        return Level::Notice;
    case Knowledge::Fixed:
        break;
    }
    return Level::Ready;
}

} // namespace

VehicleParts::VehicleParts(const Settings& settings, const Terminal& terminal, QObject* parent)
    : QObject(parent), m_terminal(terminal)
{
    followPosition(settings.position);
    if (settings.vehicles.isThere())
        followVehicles(settings.vehicles);
    if (settings.office.isThere())
        reachOffice(settings);
    if (settings.watchesHealth)
        watchHealth(settings);
}

VehicleParts::~VehicleParts() = default;

void VehicleParts::start()
{
    m_position->start();
    if (m_live != nullptr)
        m_live->start();
    if (m_office != nullptr) {
        m_office->start();
        m_deviceReports.start();
    }
    if (m_health != nullptr)
        m_health->start();
}

VehicleParts::Row VehicleParts::addRow(const QString& name, const QString& icon)
{
    PeripheralsModel& devices = m_terminal.devices;
    auto* row = new PeripheralItem(firstId + devices.rowCount(), name, 0,
                                   QStringLiteral("qrc:/icons/%1.svg").arg(icon), false, false,
                                   false, false, 0, tr("starting"), &devices);
    m_rows.append(row);
    devices.appendRow(row);
    return row;
}

bool VehicleParts::has(const PeripheralItem& device) const
{
    return std::any_of(m_rows.begin(), m_rows.end(),
                       [&device](const Row& row) { return row == &device; });
}

void VehicleParts::followPosition(const config::PositionConfig& config)
{
    using position::VehiclePosition;
    m_position = std::make_unique<VehiclePosition>(sourceOf(config));
    connect(m_position.get(), &VehiclePosition::clockStepped, this, &VehicleParts::clockStepped);
    if (!config.isThere())
        return;
    m_positionRow = addRow(tr("Position"), QStringLiteral("gps"));
    m_clockRow = addRow(tr("Time"), QStringLiteral("device"));
    const auto follow = [this] { m_position->setTrip(m_terminal.trip.trip()); };
    follow();
    connect(&m_terminal.trip, &TripDesk::tripChanged, m_position.get(), follow);
    connect(m_position.get(), &VehiclePosition::stateChanged, this, &VehicleParts::showPosition);
    connect(m_position.get(), &VehiclePosition::moved, this, &VehicleParts::showOwnPlace);
    connect(m_position.get(), &VehiclePosition::stopReached, &m_terminal.trip, &TripDesk::setStop);
    connect(m_position.get(), &VehiclePosition::progressChanged, this,
            [this] { m_terminal.trip.setPunctuality(m_position->punctualityText()); });
    connect(m_position.get(), &VehiclePosition::clockOffsetChanged, this, [this](qint64 offset) {
        showClock();
        emit clockOffsetChanged(offset);
    });
    showPosition();
    showClock();
}

void VehicleParts::showPosition()
{
    show(m_positionRow, {levelOf(m_position->knowledge()), m_position->stateText()});
}

/// This vehicle on the fleet page, and for the office.
void VehicleParts::showOwnPlace()
{
    const position::Fix& fix = *m_position->fix();
    m_terminal.fleet.reportOwnPlace(
        {fix.coordinate, fix.direction, fix.speed > position::PositionJudge::moving});
    if (m_office == nullptr)
        return;
    const fleet::Trip* trip = m_terminal.trip.trip();
    m_office->report({fix.time.isValid() ? fix.time : QDateTime::currentDateTimeUtc(),
                      fix.coordinate.latitude(), fix.coordinate.longitude(), fix.direction,
                      fix.speed, trip == nullptr ? QString() : trip->id});
}

void VehicleParts::showClock()
{
    const std::optional<qint64> offset = m_position->clockOffset();
    if (!offset) {
        show(m_clockRow, {Level::Ready, tr("not compared with satellites yet")});
        return;
    }
    const QString seconds =
        QString::number(static_cast<double>(qAbs(*offset)) / millisecondsPerSecond, 'f', 1);
    const QString text = *offset < 0 ? tr("%1 s ahead of the satellites").arg(seconds)
                                     : tr("%1 s behind the satellites").arg(seconds);
    show(m_clockRow, {m_position->isClockWrong() ? Level::SeriousWarning : Level::Ready, text});
}

/// Reports are compared with the time of the satellites where the system's clock is wrong.
qint64 VehicleParts::now() const
{
    const bool isWrong = m_position->isClockWrong();
    const qint64 offset = isWrong ? m_position->clockOffset().value_or(0) : 0;
    return QDateTime::currentSecsSinceEpoch() + offset / millisecondsPerSecond;
}

void VehicleParts::followVehicles(const config::VehiclesConfig& config)
{
    m_liveRow = addRow(tr("Other vehicles"), QStringLiteral("fleet"));
    m_live = std::make_unique<live::LiveVehicles>(liveOf(config), m_terminal.network,
                                                  fleet::Timetable(m_terminal.network),
                                                  m_terminal.vehicles, [this] { return now(); });
    connect(m_live.get(), &live::LiveVehicles::stateChanged, this, &VehicleParts::showVehicles);
    connect(m_live.get(), &live::LiveVehicles::reported, this,
            [this] { m_terminal.fleet.setReportedByOthers(m_live->silences()); });
    showVehicles();
}

void VehicleParts::showVehicles()
{
    show(m_liveRow, {m_live->isConnected() ? Level::Ready : Level::Warning, m_live->stateText()});
}

void VehicleParts::reachOffice(const Settings& settings)
{
    const config::OfficeConfig& config = settings.office;
    m_officeRow = addRow(tr("Office"), QStringLiteral("device"));
    office::BrokerSettings broker;
    broker.host = config.host;
    broker.port = config.port;
    broker.authority = config.caFile;
    broker.certificate = config.certificate;
    broker.key = config.key;
    const office::Topics topics{config.operatorName, config.vehicle};
    m_office = std::make_unique<office::OfficeLink>(broker, topics, m_terminal.journal);
    connect(m_office.get(), &office::OfficeLink::stateChanged, this, &VehicleParts::showOffice);
    if (settings.takeOver != nullptr && settings.takeOver->isThere())
        takePublications(topics, *settings.takeOver, settings.currency);
    if (!settings.vehicles.isThere())
        followOthers(topics);
    constexpr int pause = 5000;
    m_deviceReports.setInterval(pause);
    connect(&m_deviceReports, &QTimer::timeout, this, &VehicleParts::reportDevices);
    showOffice();
}

/// As the Devices page shows them, those of the feed too.
void VehicleParts::reportDevices()
{
    QVector<office::DeviceReport> reports;
    for (int row = 0; row < m_terminal.devices.rowCount(); ++row) {
        const auto* device = qobject_cast<PeripheralItem*>(m_terminal.devices.itemFromRow(row));
        reports.append({device->name(), reportedLevel(*device), device->stateStr()});
    }
    m_office->report(reports);
}

void VehicleParts::followOthers(const office::Topics& topics)
{
    m_others = std::make_unique<OtherVehicles>(*m_office, topics, m_terminal.network,
                                               m_terminal.vehicles, [this] { return now(); });
    connect(m_others.get(), &OtherVehicles::reported, this,
            [this] { m_terminal.fleet.setReportedByOthers(m_others->silences()); });
}

void VehicleParts::setFleetShown(bool isShown)
{
    if (m_others != nullptr)
        m_others->setShown(isShown);
}

void VehicleParts::takePublications(const office::Topics& topics, TakeOver& takeOver,
                                    const QString& currency)
{
    using office::PublicationKind;
    using office::PublicationLink;
    m_publications = std::make_unique<PublicationLink>(*m_office, topics, takeOver.store(),
                                                       takeOver.check(currency));
    for (const PublicationKind kind : {PublicationKind::Feed, PublicationKind::Drivers})
        m_publications->setInUse(kind, takeOver.inUse(kind));
    connect(m_publications.get(), &PublicationLink::problemChanged, this,
            &VehicleParts::showOffice);
    connect(m_publications.get(), &PublicationLink::taken, this, &VehicleParts::publicationTaken);
}

void VehicleParts::setInUse(office::PublicationKind kind, qint64 version)
{
    if (m_publications != nullptr)
        m_publications->setInUse(kind, version);
}

qint64 VehicleParts::acknowledgedByOffice() const
{
    return m_office == nullptr ? -1 : m_office->acknowledged();
}

/// A vehicle without a network is no fault: nothing is lost.
void VehicleParts::showOffice()
{
    using office::OfficeLink;
    const OfficeLink::State state = m_office->state();
    const QString refused = m_publications == nullptr ? QString() : m_publications->problem();
    const bool isWrong = state == OfficeLink::State::Unusable ||
                         state == OfficeLink::State::Refused || !refused.isEmpty();
    const bool isAway = state == OfficeLink::State::Away;
    QStringList texts{m_office->stateText()};
    if (!refused.isEmpty())
        texts.append(refused);
    show(m_officeRow, {isWrong  ? Level::Warning
                       : isAway ? Level::Notice
                                : Level::Ready,
                       texts.join(QStringLiteral("; "))});
}

void VehicleParts::watchHealth(const Settings& settings)
{
    m_networkRow = addRow(tr("Network"), QStringLiteral("router"));
    m_diskRow = addRow(tr("Space for the journal"), QStringLiteral("device"));
    m_health = std::make_unique<health::HealthWatch>(
        health::HealthWatch::Settings{settings.systemRoot, settings.journalFile});
    connect(m_health.get(), &health::HealthWatch::reported, this, &VehicleParts::showHealth);
}

void VehicleParts::showHealth(const health::Health& health)
{
    show(m_networkRow, networkState(health));
    if (health.disk)
        show(m_diskRow, diskState(health));
    showOptional(m_temperatureRow, tr("Temperature"), health.temperature.has_value(),
                 temperatureState(health));
    showOptional(m_brightnessRow, tr("Brightness"), health.brightness.has_value(),
                 brightnessState(health));
}

/// Not every system has such a part: its row comes with its first report.
void VehicleParts::showOptional(Row& row, const QString& name, bool isThere, const State& state)
{
    if (!isThere)
        return;
    if (row.isNull())
        row = addRow(name, QStringLiteral("device"));
    show(row, state);
}

} // namespace rivo::terminal
