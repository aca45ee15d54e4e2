#include "Terminal.h"

#include "DirectionControls.h"
#include "OfficeOrders.h"
#include "Pruning.h"
#include "TakeOver.h"

#include <EscPosPrinter.h>
#include <FeedToModels.h>
#include <NoPrinter.h>
#include <PassengerTypes.h>
#include <SimulatedPrinter.h>
#include <ZReportItem.h>
#include <addProduct.h>

#include <QDateTime>
#include <QTime>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace rivo::terminal
{

namespace
{

ticket::PaperContext paperContext(const feed::Feed& feed)
{
    return {feed.name, sales::Currency(feed.currency, feed.currencyDecimals()), QByteArray(),
            QLocale()};
}

std::unique_ptr<sales::TicketPrinter> printerFor(const feed::Feed& feed,
                                                 const Terminal::Settings& settings)
{
    if (settings.config.printer.isThere())
        return printer::makePrinter(settings.config.printer, paperContext(feed));
    if (!settings.isDemo)
        return std::make_unique<sales::NoPrinter>();
    auto simulated = std::make_unique<sales::SimulatedPrinter>();
    simulated->setTicketTime(settings.ticketTime);
    return simulated;
}

/// The report that the feed's back office expects next.
qint64 nextZNumber(const feed::Feed& feed)
{
    double last = 0.0;
    for (const feed::FeedZReport& report : feed.zReports)
        last = std::max(last, report.isClosed ? report.zNumber : report.zNumber - 1.0);
    return static_cast<qint64>(std::floor(last)) + 1;
}

/// The limit that the back office gave last: with the report of the highest number.
double maxDebt(const feed::Feed& feed)
{
    const auto latest =
        std::max_element(feed.zReports.begin(), feed.zReports.end(),
                         [](const feed::FeedZReport& a, const feed::FeedZReport& b) {
                             return a.zNumber < b.zNumber;
                         });
    return latest == feed.zReports.end() ? 0.0 : latest->maxAllowedDebt;
}

/// The feed with what the journal of this terminal does not know: the shifts before its first.
feed::Feed withClosedShiftsOnly(feed::Feed feed)
{
    feed.zReports.erase(
        std::remove_if(feed.zReports.begin(), feed.zReports.end(),
                       [](const feed::FeedZReport& report) { return !report.isClosed; }),
        feed.zReports.end());
    std::stable_sort(feed.zReports.begin(), feed.zReports.end(),
                     [](const feed::FeedZReport& a, const feed::FeedZReport& b) {
                         return a.zNumber > b.zNumber;
                     });
    return feed;
}

/// The feed without what it states of devices and vehicles: they are not connected.
feed::Feed withoutReports(feed::Feed feed)
{
    for (feed::FeedPeripheral& device : feed.peripherals) {
        device.warning = device.blueWarning = device.yellowWarning = device.error = true;
        device.stateStr.clear();
    }
    for (feed::FeedVehicle& vehicle : feed.vehicles) {
        vehicle.latitude = vehicle.longitude = vehicle.altitude = qQNaN();
        vehicle.updated = false;
        vehicle.drivingStatus = Terminal::tr("not connected");
        vehicle.routeStatus.clear();
    }
    return feed;
}

/// `reports` has the rows of `all` that are closed, or those that are not.
void showReports(QSortFilterProxyModel& reports, ZReportModel& all, bool areClosed)
{
    reports.setFilterRole(ZReportItem::IsClosedDataRole);
    reports.setFilterFixedString(QVariant(areClosed).toString());
    reports.setSourceModel(&all);
}

/// The feed without the reports that this terminal's journal has itself.
feed::Feed withReportsBefore(feed::Feed feed, const ZReportModel& own)
{
    double first = std::numeric_limits<double>::infinity();
    for (int row = 0; row < own.rowCount(); ++row)
        first = std::min(first, own.data(own.index(row), ZReportItem::ZNumberDataRole).toDouble());
    feed.zReports.erase(std::remove_if(feed.zReports.begin(), feed.zReports.end(),
                                       [first](const feed::FeedZReport& report) {
                                           return report.zNumber >= first;
                                       }),
                        feed.zReports.end());
    return feed;
}

/// Second of the service day.
int startOf(const Terminal::Settings& settings)
{
    return settings.startTime >= 0 ? settings.startTime : QTime(0, 0).secsTo(QTime::currentTime());
}

/// Tickets of the journal that say what is sold often: those of some days.
constexpr int ticketsCounted = 1000;

QDate dayOf(const Terminal::Settings& settings)
{
    return settings.date.isValid() ? settings.date : QDate::currentDate();
}

} // namespace

Terminal::Terminal(const feed::Feed& feed, const Settings& settings, QObject* parent)
    : QObject(parent), m_feed(withClosedShiftsOnly(withoutDirectionControls(
                           settings.isDemo ? feed : withoutReports(feed)))),
      m_settings(settings), m_currency(feed.currency, feed.currencyDecimals()),
      m_presentation(m_feed, m_currency, settings.allowFileIcons), m_grid(&m_prototypes),
      m_basket(&m_prototypes), m_fareProducts(&m_prototypes), m_zReports(&m_prototypes),
      m_vehicles(&m_prototypes), m_peripherals(&m_prototypes),
      m_timetable(m_feed.network, dayOf(settings)), m_trip(m_feed, m_timetable, startOf(settings)),
      m_offers(m_feed, *m_trip.context(), [this] { return timeOfSale(); }),
      m_printer(printerFor(feed, settings)), m_cards(m_peripherals),
      m_details(feed, m_currency, m_trip, settings.config.vehicle),
      m_devices(m_peripherals, *m_printer), m_catalogue(m_fareProducts, m_feed),
      m_clockNotes(m_journal, [this] { return timeOfSale(); }),
      m_desk(
          {m_grid, m_basket, m_fareProducts, m_zReports}, m_journal, *m_printer, m_currency,
          [this](int zone) { return m_presentation.zoneName(zone); }, *m_trip.context()),
      m_tiles(m_grid, tileLook()), m_drivers(settings.drivers),
      m_papers(m_desk, *m_printer, paperContext(feed)),
      m_sounds(settings.soundPlayer, settings.config.sounds && !settings.isSilent),
      m_hasOwnTime(settings.startTime >= 0 || !qFuzzyCompare(settings.pace, 1.0)),
      m_night(settings.night)
{
    startFleet();
    m_offers.update();
    m_grid.setSupportedPassengerTypeCodes(feed::distinctTypes(m_feed.supportedPassengerTypes));
    layOutGrid();
    feed::addFareProducts(m_feed, m_fareProducts);
    feed::addPeripherals(m_feed, m_peripherals);
    m_cards.connectTo(settings.config.cardTerminal, m_feed.currency,
                      settings.isDemo ? settings.cardTime : -1);
    m_cards.addRow();
    m_desk.card()->setTerminal(m_cards.terminal());
    m_parts = std::make_unique<VehicleParts>(
        VehicleParts::Settings{settings.config.position, settings.config.vehicles,
                               settings.config.office, settings.watchesHealth, settings.journalFile,
                               QString(), m_settings.takeOver, m_feed.currency},
        VehicleParts::Terminal{m_feed.network, m_vehicles, m_peripherals, *m_fleet, m_trip,
                               m_journal});
    m_devices.setReal([this](const PeripheralItem& device) {
        return &device == m_cards.row() || m_parts->has(device);
    });
    m_devices.findPrinter(m_feed.printerId);
    if (!m_settings.isDemo && !m_settings.config.printer.isThere())
        m_devices.disconnectPrinter();

    m_journal.open(settings.journalFile, m_currency, nextZNumber(feed));
    m_desk.setClock([this] { return timeOfSale(); });
    m_desk.restore(maxDebt(feed));
    if (!m_hasOwnTime)
        noteClock();
    countSoldTickets(m_journal.lastTickets(ticketsCounted));
    m_drivers.setIdleTime(settings.idleTime);
    m_drivers.control(m_desk);
    feed::addZReports(withReportsBefore(m_feed, m_zReports), m_zReports);
    showReports(m_runningShift, m_zReports, false);
    showReports(m_closedShifts, m_zReports, true);
    followTrip();
    makeHeard();
    if (m_settings.takeOver != nullptr && m_settings.takeOver->isThere())
        obeyOffice(maxDebt(feed));
    if (const int days = m_settings.config.office.keepDays; days > 0)
        m_pruning = std::make_unique<Pruning>(
            m_desk, [this] { return m_parts->acknowledgedByOffice(); }, days);
    m_parts->start();

    // The log is written while tiles are put in order, which is over when a client turns it on.
    connect(&m_grid, &PassengerTypesModel::logFareProductsChanged, this, [this] {
        if (!m_grid.logFareProducts())
            return;
        layOutGrid();
        m_desk.showBadges();
    });
}

Terminal::~Terminal() = default;

void Terminal::setFleetShown(bool isShown)
{
    if (isShown == m_isFleetShown)
        return;
    m_isFleetShown = isShown;
    m_parts->setFleetShown(isShown);
    emit fleetShownChanged();
}

void Terminal::obeyOffice(double maxDebt)
{
    m_orders = std::make_unique<OfficeOrders>(*m_settings.takeOver, m_desk, m_journal, maxDebt);
    connect(m_orders.get(), &OfficeOrders::inUse, m_parts.get(), &VehicleParts::setInUse);
    connect(m_parts.get(), &VehicleParts::publicationTaken, m_orders.get(), &OfficeOrders::look);
    m_orders->look();
}

void Terminal::startFleet()
{
    feed::addVehicles(m_feed, m_vehicles);
    m_fleet = std::make_unique<fleet::FleetSimulator>(
        m_timetable, m_vehicles,
        m_settings.isDemo ? fleet::FleetSimulator::Vehicles::Simulated
                          : fleet::FleetSimulator::Vehicles::AsReported);
    m_fleet->setPace(m_settings.pace);
    m_fleet->setTime(startOf(m_settings));
    m_ownVehicle = findOwnVehicle();
    showOwnTrip();
    // In a demo the pace can be changed; the time that is shown is then not that of the system.
    connect(m_fleet.get(), &fleet::FleetSimulator::paceChanged, this,
            [this] { m_hasOwnTime = true; });
    m_fleet->start();
}

/// The vehicle that the configuration names, otherwise the one of the trip. A receiver places no
/// other vehicle: without a vehicle of that name one is added.
int Terminal::findOwnVehicle()
{
    const QString& name = m_settings.config.vehicle;
    const bool hasReceiver = m_settings.config.position.isThere();
    int id = m_fleet->vehicleNamed(name);
    if (id < 0 && (name.isEmpty() || !hasReceiver))
        id = m_fleet->vehicleOf(m_trip.context()->tripsExecutionId(), m_trip.context()->routeId());
    if (id < 0 && hasReceiver)
        id = m_fleet->addVehicle(name.isEmpty() ? tr("This vehicle") : name);
    return id;
}

/// This vehicle is where the driver's trip is, on the fleet page too.
void Terminal::showOwnTrip()
{
    const int trip = m_trip.trip() == nullptr ? -1 : m_trip.trip()->number;
    m_fleet->setOwn(m_ownVehicle, trip, m_trip.stop());
}

/// The clock of the system, which may be set while the terminal runs, unless another time is shown.
QDateTime Terminal::timeOfSale() const
{
    const QDateTime now = QDateTime::currentDateTime();
    return m_hasOwnTime ? QDateTime(dayOf(m_settings), QTime(0, 0).addSecs(m_fleet->time())) : now;
}

/// Remarks about the clock of the system go into the journal, if sales have their time of it.
void Terminal::noteClock()
{
    using sales::ClockNotes;
    connect(&m_clockNotes, &ClockNotes::failed, &m_desk, &sales::SalesDesk::obstacleChanged);
    connect(m_parts.get(), &VehicleParts::clockOffsetChanged, &m_clockNotes,
            &ClockNotes::noteOffset);
    connect(m_parts.get(), &VehicleParts::clockStepped, &m_clockNotes, &ClockNotes::noteStep);
    m_clockNotes.compareWithLastRecord();
}

/// The status line shows the time of the fleet: it follows the clock of the system, unless it was
/// set or runs at another pace.
void Terminal::keepTime()
{
    const int now = QTime(0, 0).secsTo(QTime::currentTime());
    if (!m_hasOwnTime && std::abs(now - m_fleet->time()) > 1)
        m_fleet->setTime(now);
}

/// The basket stays as it is when other tickets are sold.
void Terminal::followTrip()
{
    m_desk.setTicketDetails([this](sales::Ticket& ticket) { m_details.fill(ticket); });
    board();
    connect(&m_trip, &TripDesk::stopChanged, this, &Terminal::showOwnTrip);
    connect(m_trip.context(), &feed::TripContext::currentStopIdChanged, this, &Terminal::board);
    connect(m_fleet.get(), &fleet::FleetSimulator::timeChanged, this, &Terminal::keepTime);
    connect(m_fleet.get(), &fleet::FleetSimulator::timeChanged, &m_offers, &OfferDesk::update);
    connect(&m_offers, &OfferDesk::changed, this, [this] {
        m_desk.setBoardingZones(m_offers.zones());
        layOutGrid();
        m_desk.showBadges();
    });
    connect(&m_desk, &sales::SalesDesk::saleConfirmed, this,
            [this] { countSoldTickets(m_desk.tickets()); });
}

/// Taps are added by the screen.
void Terminal::makeHeard()
{
    connect(&m_desk, &sales::SalesDesk::saleConfirmed, &m_sounds, &sound::Sounds::pay);
    connect(&m_desk, &sales::SalesDesk::refused, &m_sounds, &sound::Sounds::refuse);
    connect(&m_drivers, &drivers::DriverDesk::refused, &m_sounds, &sound::Sounds::refuse);
}

/// Tickets begin in the zone of the stop, and the tiles name it.
void Terminal::board()
{
    m_desk.setBoardingZones(m_offers.zones());
    m_tiles.nameZones();
}

TileLook Terminal::tileLook()
{
    return {
        [this](int zone) { return m_presentation.zoneName(zone); },
        [this](int from, int to) {
            return m_presentation.zonesText(m_presentation.zoneName(from),
                                            m_presentation.zoneName(to));
        },
        [this](double units) { return m_currency.fromUnits(units).value_or(-1); },
        [this](const PassengerTypeItem& tile) { return m_desk.originOf(tile); },
        [this](const PassengerTypeItem& tile, int which) { return m_offers.details(tile, which); },
        [this] { return m_trip.zonesAhead(); }};
}

void Terminal::countSoldTickets(const QVector<sales::Ticket>& tickets)
{
    for (const sales::Ticket& ticket : tickets)
        m_tiles.countSold(ticket.description, ticket.fareProductName, ticket.toStopGroupId);
}

void Terminal::layOutGrid()
{
    m_tiles.clear();
    m_grid.clearData();
    for (const feed::FeedProduct& product : m_offers.products())
        addProduct(m_grid, withoutDirectionControls(product), product.passengerTypeCode);
    // With 0 columns the model takes the number of types of the layout before.
    m_grid.sortAndRegroup(feed::distinctTypes(m_offers.passengerTypes()),
                          m_feed.columns != 0 ? m_feed.columns : m_grid.numberOfColumns());
    m_tiles.setNotSold(m_offers.notSold().size());
    m_tiles.layOut();
}

bool Terminal::mayRestart(qint64 quietTime) const
{
    const sales::CardDesk& card = *m_desk.card();
    return m_desk.state() == sales::SalesDesk::Selling && m_desk.tickets().isEmpty() &&
           !card.isBusy() && !card.isReturnOpen() && m_drivers.untouchedFor() >= quietTime;
}

bool Terminal::mayTakeOver(qint64 quietTime) const
{
    return mayRestart(quietTime) && !m_trip.isUnderWay(m_fleet->time());
}

void Terminal::setNight(bool night)
{
    if (m_night == night)
        return;
    m_night = night;
    emit nightChanged();
}

} // namespace rivo::terminal
