#include "Table.h"
#include "TestNetwork.h"

#include <Feed.h>
#include <TicketDetails.h>
#include <TripDesk.h>

#include <QtTest>

using namespace rivo;
using terminal::TicketDetails;

/// What the paper of a ticket says besides its tile.
class TestTicketDetails : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedKingdom)); }
    void stopRouteAndVehicle();
    void nothingIsInvented();
    void validity_data();
    void validity();
    void tax_data();
    void tax();

private:
    static sales::Ticket filled(const feed::Feed& feed, sales::Ticket ticket,
                                const QString& vehicle = {})
    {
        const terminal::TripDesk trip(feed, fleet::Timetable(feed.network));
        TicketDetails(feed, sales::Currency("EUR", 2), trip, vehicle).fill(ticket);
        return ticket;
    }
};

void TestTicketDetails::stopRouteAndVehicle()
{
    feed::Feed feed;
    feed.network = TestNetwork().trip("50", "5", {"4 8:00:00", "1 8:30:00"});
    const sales::Ticket ticket = filled(feed, {}, "MR 4711");
    QCOMPARE(ticket.fromStopName, QString("Stop 4"));
    QCOMPARE(ticket.routeName, QString("5 to Stop 1"));
    QCOMPARE(ticket.vehicle, QString("MR 4711"));
}

void TestTicketDetails::nothingIsInvented()
{
    sales::Ticket sold;
    sold.price = 1000;
    const sales::Ticket ticket = filled({}, sold);
    QCOMPARE(ticket.fromStopName, QString());
    QCOMPARE(ticket.routeName, QString());
    QCOMPARE(ticket.vehicle, QString());
    QCOMPARE(ticket.validity, QString());
    QCOMPARE(ticket.tax, QString());
}

void TestTicketDetails::validity_data()
{
    const Table<int, int, QString> row("product", "passengerType", "text");
    row("as the feed says it", 1, 1, "60 minute(s)");
    row("of the passenger type", 1, 2, "30 minute(s)");
    row("of another product", 2, 1, "90 minute(s)");
    row("not said", 3, 1, "");
    row("unknown product", 9, 1, "");
}

void TestTicketDetails::validity()
{
    QFETCH(int, product);
    QFETCH(int, passengerType);
    QFETCH(QString, text);
    feed::Feed feed;
    for (const auto& [id, type, minutes] :
         {std::tuple(1, 1, 60), {1, 2, 30}, {2, 1, 90}, {3, 1, 0}}) {
        feed::FeedProduct entry;
        entry.fareProductId = id;
        entry.passengerTypeId = type;
        entry.validMinutes = minutes;
        feed.products.append(entry);
    }
    sales::Ticket sold;
    sold.fareProductId = product;
    sold.passengerTypeId = passengerType;
    QCOMPARE(filled(feed, sold).validity, text);
}

void TestTicketDetails::tax_data()
{
    const Table<double, int, QString> row("percent", "price", "text");
    row("of a whole percentage", 10.0, 1100, "Includes 10% VAT: €1.00");
    row("of a part of a percentage", 5.5, 1055, "Includes 5.5% VAT: €0.55");
    row("is rounded to the nearest", 19.0, 140, "Includes 19% VAT: €0.22");
    row("of nothing", 19.0, 0, "Includes 19% VAT: €0.00");
    row("not said", 0.0, 140, "");
}

void TestTicketDetails::tax()
{
    QFETCH(double, percent);
    QFETCH(int, price);
    QFETCH(QString, text);
    feed::Feed feed;
    feed.taxPercent = percent;
    sales::Ticket sold;
    sold.price = price;
    QCOMPARE(filled(feed, sold).tax, text);
}

QTEST_GUILESS_MAIN(TestTicketDetails)
#include "tst_ticket_details.moc"
