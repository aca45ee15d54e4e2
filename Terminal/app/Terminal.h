#pragma once

#include "CardDevice.h"
#include "CatalogueDesk.h"
#include "DeviceDesk.h"
#include "OfferDesk.h"
#include "PaperDesk.h"
#include "Presentation.h"
#include "TicketDetails.h"
#include "TileDesk.h"
#include "TripDesk.h"
#include "VehicleParts.h"

#include <AssetsModel.h>
#include <ClockNotes.h>
#include <Config.h>
#include <DriverDesk.h>
#include <FareProductsModel.h>
#include <Feed.h>
#include <FleetSimulator.h>
#include <Journal.h>
#include <PassengerTypesModel.h>
#include <PeripheralsModel.h>
#include <SalesDesk.h>
#include <ShoppingBasketModel.h>
#include <Sounds.h>
#include <TicketPrinter.h>
#include <ZReportModel.h>

#include <QObject>
#include <QSortFilterProxyModel>

#include <memory>

namespace rivo::terminal
{

class OfficeOrders;
class Pruning;
class TakeOver;

/// One terminal behind its screen: the six models filled from a feed, and the desks that act on
/// them. The window gets it as a whole; pages get what they need of it.
class Terminal : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString operatorName READ operatorName CONSTANT)
    Q_PROPERTY(PassengerTypesModel* grid READ grid CONSTANT)
    Q_PROPERTY(rivo::terminal::TileDesk* tiles READ tiles CONSTANT)
    Q_PROPERTY(ShoppingBasketModel* basket READ basket CONSTANT)
    Q_PROPERTY(FareProductsModel* fareProducts READ fareProducts CONSTANT)
    Q_PROPERTY(ZReportModel* zReports READ zReports CONSTANT)
    Q_PROPERTY(QAbstractItemModel* runningShift READ runningShift CONSTANT)
    Q_PROPERTY(QAbstractItemModel* closedShifts READ closedShifts CONSTANT)
    Q_PROPERTY(AssetsModel* vehicles READ vehicles CONSTANT)
    Q_PROPERTY(PeripheralsModel* peripherals READ peripherals CONSTANT)
    Q_PROPERTY(rivo::sales::SalesDesk* desk READ desk CONSTANT)
    Q_PROPERTY(rivo::drivers::DriverDesk* drivers READ drivers CONSTANT)
    Q_PROPERTY(rivo::terminal::PaperDesk* papers READ papers CONSTANT)
    Q_PROPERTY(rivo::terminal::TripDesk* trip READ trip CONSTANT)
    Q_PROPERTY(rivo::terminal::OfferDesk* offers READ offers CONSTANT)
    Q_PROPERTY(rivo::terminal::DeviceDesk* devices READ devices CONSTANT)
    Q_PROPERTY(rivo::terminal::CatalogueDesk* catalogue READ catalogue CONSTANT)
    Q_PROPERTY(rivo::terminal::Presentation* presentation READ presentation CONSTANT)
    Q_PROPERTY(rivo::sound::Sounds* sounds READ sounds CONSTANT)
    Q_PROPERTY(rivo::fleet::FleetSimulator* fleet READ fleet CONSTANT)
    Q_PROPERTY(QString journalFile READ journalFile CONSTANT)
    Q_PROPERTY(bool isDemo READ isDemo CONSTANT)
    Q_PROPERTY(bool night READ night WRITE setNight NOTIFY nightChanged)
    Q_PROPERTY(bool fleetShown READ isFleetShown WRITE setFleetShown NOTIFY fleetShownChanged)

public:
    struct Settings
    {
        QString journalFile;
        bool isDemo = false;         ///< devices and vehicles without a connection are simulated
        bool allowFileIcons = false; ///< otherwise icons of feeds come from qrc: only
        bool night = false;
        double pace = 1.0;  ///< of the fleet, see FleetSimulator::pace
        QDate date = {};    ///< of the service day; invalid = today
        int startTime = -1; ///< second of the service day; -1 = now. Tickets are sold by this time
        int ticketTime = 350;             ///< of the printer, milliseconds
        int cardTime = 0;                 ///< of a simulated card terminal, milliseconds
        QVector<drivers::Driver> drivers; ///< that may sign in; none = no sign-in
        config::Config config;            ///< the devices of this vehicle, and its name
        bool watchesHealth = false;       ///< network, disk and so on are rows of the devices
        std::shared_ptr<sound::SoundPlayer> soundPlayer = {}; ///< none = silent
        bool isSilent = false;                                ///< at the start
        int idleTime = 300000; ///< milliseconds without a press until it is locked; 0 = never
        TakeOver* takeOver = nullptr; ///< outlives the terminal; none = nothing is taken over
    };

    Terminal(const feed::Feed& feed, const Settings& settings, QObject* parent = nullptr);
    ~Terminal() override;

    QString operatorName() const { return m_offers.operatorName(); }
    PassengerTypesModel* grid() { return &m_grid; }
    TileDesk* tiles() { return &m_tiles; }
    ShoppingBasketModel* basket() { return &m_basket; }
    FareProductsModel* fareProducts() { return &m_fareProducts; }
    ZReportModel* zReports() { return &m_zReports; }
    /// The one row of zReports() that is not closed; none if the journal cannot be used.
    QAbstractItemModel* runningShift() { return &m_runningShift; }
    QAbstractItemModel* closedShifts() { return &m_closedShifts; } ///< the other rows
    AssetsModel* vehicles() { return &m_vehicles; }
    PeripheralsModel* peripherals() { return &m_peripherals; }
    sales::SalesDesk* desk() { return &m_desk; }
    drivers::DriverDesk* drivers() { return &m_drivers; }
    PaperDesk* papers() { return &m_papers; }
    TripDesk* trip() { return &m_trip; }
    OfferDesk* offers() { return &m_offers; }
    DeviceDesk* devices() { return &m_devices; }
    CatalogueDesk* catalogue() { return &m_catalogue; }
    Presentation* presentation() { return &m_presentation; }
    sound::Sounds* sounds() { return &m_sounds; }
    fleet::FleetSimulator* fleet() { return m_fleet.get(); }
    sales::TicketPrinter& printer() { return *m_printer; }

    /// Position, other vehicles and health of the system.
    VehicleParts& parts() { return *m_parts; }

    /// Whether a restart interrupts nothing: the basket is empty, nothing is printed, charged or
    /// given back, and the screen was not touched for `quietTime` milliseconds.
    bool mayRestart(qint64 quietTime = 300000) const;

    /// Whether a newer feed or file of drivers may be taken over by a restart now: between trips,
    /// and as mayRestart() says.
    bool mayTakeOver(qint64 quietTime = 300000) const;

    QString journalFile() const { return m_settings.journalFile; }
    bool isDemo() const { return m_settings.isDemo; } ///< what is sold is not valid
    bool night() const { return m_night; }            ///< dark colours for driving at night
    void setNight(bool night);
    bool isFleetShown() const { return m_isFleetShown; } ///< on the screen; false at the start
    void setFleetShown(bool isShown);

signals:
    void nightChanged();
    void fleetShownChanged();

private:
    QDateTime timeOfSale() const;
    void keepTime();
    void noteClock();
    void showOwnTrip();
    void obeyOffice(double maxDebt);
    void startFleet();
    int findOwnVehicle();
    void followTrip();
    void layOutGrid();
    TileLook tileLook();
    void board();
    void makeHeard();
    void countSoldTickets(const QVector<sales::Ticket>& tickets);
    void fillZReports();

    const feed::Feed m_feed;
    const Settings m_settings;
    const sales::Currency m_currency;
    Presentation m_presentation;
    QObject m_prototypes; ///< frees the models' prototype rows
    PassengerTypesModel m_grid;
    ShoppingBasketModel m_basket;
    FareProductsModel m_fareProducts;
    ZReportModel m_zReports;
    QSortFilterProxyModel m_runningShift;
    QSortFilterProxyModel m_closedShifts;
    AssetsModel m_vehicles;
    PeripheralsModel m_peripherals;
    const fleet::Timetable m_timetable; ///< of today
    std::unique_ptr<fleet::FleetSimulator> m_fleet;
    TripDesk m_trip;
    OfferDesk m_offers;
    const std::unique_ptr<sales::TicketPrinter> m_printer;
    CardDevice m_cards;
    TicketDetails m_details;
    DeviceDesk m_devices;
    CatalogueDesk m_catalogue;
    sales::Journal m_journal;
    sales::ClockNotes m_clockNotes;
    sales::SalesDesk m_desk;
    TileDesk m_tiles;
    drivers::DriverDesk m_drivers;
    PaperDesk m_papers;
    sound::Sounds m_sounds;
    std::unique_ptr<VehicleParts> m_parts;
    std::unique_ptr<OfficeOrders> m_orders;
    std::unique_ptr<Pruning> m_pruning; ///< nothing if all records are kept
    int m_ownVehicle = -1;
    bool m_hasOwnTime; ///< not that of the system
    bool m_isFleetShown = false;
    bool m_night;
};

} // namespace rivo::terminal
