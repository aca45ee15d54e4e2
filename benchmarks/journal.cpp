// What a journal of many sales costs a terminal: bench-journal FILE. The journal stays as it is,
// but for what closing it writes.

#include <FareProductsModel.h>
#include <Journal.h>
#include <PassengerTypesModel.h>
#include <SalesDesk.h>
#include <ShoppingBasketModel.h>
#include <SimulatedPrinter.h>
#include <TripContext.h>
#include <ZReportModel.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

using namespace rivo::sales;

namespace
{

template <typename Step>
void measure(const char* name, Step step)
{
    QElapsedTimer timer;
    timer.start();
    const auto result = step();
    QTextStream(stdout) << name << ' ' << static_cast<double>(timer.nsecsElapsed()) / 1e6 << " ("
                        << result << ")\n";
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const Currency currency(QStringLiteral("EUR"), 2);
    Journal journal;
    measure("open_ms", [&] {
        const auto fault = journal.open(QString::fromLocal8Bit(argv[1]), currency, 1);
        return fault ? fault->detail : QStringLiteral("whole");
    });
    measure("recent_shifts_ms", [&] { return journal.recentShifts(400).size(); });
    measure("past_sales_ms", [&] { return journal.pastSales(0, 20).size(); });
    measure("last_tickets_ms", [&] { return journal.lastTickets(1000).size(); });
    measure("unbooked_charges_ms", [&] { return journal.unbookedCharges().size(); });
    PassengerTypesModel grid;
    ShoppingBasketModel basket;
    FareProductsModel fareProducts;
    ZReportModel reports;
    SimulatedPrinter printer;
    rivo::feed::TripContext trip{rivo::feed::FeedTripContext()};
    SalesDesk desk(
        {grid, basket, fareProducts, reports}, journal, printer, currency,
        [](int) { return QString(); }, trip);
    measure("desk_ms", [&] {
        desk.restore(0);
        return reports.rowCount();
    });
    return journal.fault() ? 1 : 0;
}
