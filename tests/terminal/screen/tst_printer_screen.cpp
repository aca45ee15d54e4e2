#include "../ScreenUnderTest.h"

#include <PeripheralItem.h>
#include <PrinterPorts.h>
#include <VirtualPrinter.h>

using rivo::sales::SalesDesk;
using rivo::simulators::NetworkPort;
using rivo::simulators::VirtualPrinter;
using rivo::terminal::Terminal;
using Fault = VirtualPrinter::Fault;

/// The terminal with the printer of its configuration.
class TestPrinterScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { prepareScreens(); }

    void init()
    {
        m_device = std::make_unique<VirtualPrinter>();
        m_device->setDrawing(false);
        m_network = std::make_unique<NetworkPort>(*m_device);
        QVERIFY(m_network->listen(0));
        m_shown = std::make_unique<ScreenUnderTest>(
            exampleFeed("hill-valley"), "sell", QSize(1024, 600), [this](Terminal::Settings& made) {
                made.config.vehicle = "bus 104";
                made.config.printer.type = "escpos";
                made.config.printer.codePage = "PC858";
                made.config.printer.tcp = rivo::config::TcpAddress{"127.0.0.1", m_network->port()};
            });
        QTRY_COMPARE(row(), "Ready");
    }

    void cleanup() { m_shown.reset(); }

    void saleIsPrinted()
    {
        QVERIFY(sell());
        QTRY_COMPARE(desk().state(), SalesDesk::Selling);
        QCOMPARE(m_device->pieces().size(), 1);
        QCOMPARE(m_device->pieces().first().codes.size(), 1);
        QVERIFY(m_device->pieces().first().lines.contains(
            "Vehicle" + QString("bus 104").rightJustified(32 - 7)));
        QCOMPARE(m_device->unknownCommands(), QStringList());
        QCOMPARE(m_device->drawerPulses(), 1);
        QVERIFY(!m_shown->terminal().papers()->ofLastPrinted().isEmpty());
    }

    void faultIsShownAndTheTicketAskedAbout()
    {
        QCOMPARE(m_shown->terminal().devices()->faults(), 0);
        m_device->setFaultAfter(200, Fault::PaperOut);
        QVERIFY(sell());
        QTRY_COMPARE(row(), "Out of paper");
        QCOMPARE(m_shown->terminal().devices()->faults(), 1);
        QCOMPARE(desk().obstacle(), "The ticket printer cannot print: Out of paper");
        QCOMPARE(desk().state(), SalesDesk::Printing);
        m_device->setFault(Fault::None);
        QTRY_COMPARE(desk().state(), SalesDesk::Interrupted);
        QCOMPARE(desk().firstTicketInDoubt(), "000001");
        QCOMPARE(row(), "Ready");
        QCOMPARE(m_shown->texts("doubtText"), QStringList("Is ticket 000001 out?"));
        QVERIFY(desk().printTicketsInDoubt());
        QTRY_COMPARE(desk().state(), SalesDesk::Selling);
        QCOMPARE(m_device->pieces().last().codes.size(), 1);
    }

    void nothingIsSoldWithoutAPrinter()
    {
        ScreenUnderTest shown(exampleFeed("hill-valley"), "sell", QSize(1024, 600),
                              [](Terminal::Settings& made) { made.isDemo = false; });
        QCOMPARE(shown.terminal().desk()->obstacle(),
                 "The ticket printer cannot print: No ticket printer is set up");
        QVERIFY(shown.terminal().desk()->add(0));
        QVERIFY(!shown.terminal().desk()->pay(SalesDesk::Cash));
        QSignalSpy failed(&shown.terminal().printer(), &rivo::sales::TicketPrinter::failed);
        shown.terminal().printer().print({});
        QTRY_COMPARE(failed.size(), 1);
    }

private:
    SalesDesk& desk() { return *m_shown->terminal().desk(); }

    bool sell() { return desk().add(0) && desk().pay(SalesDesk::Cash); }

    /// What the first device reports, which is the printer.
    QString row()
    {
        const auto* device =
            qobject_cast<PeripheralItem*>(m_shown->terminal().peripherals()->itemFromRow(0));
        return m_shown->terminal().devices()->isReal(0) ? device->stateStr() : QString();
    }

    std::unique_ptr<VirtualPrinter> m_device;
    std::unique_ptr<NetworkPort> m_network;
    std::unique_ptr<ScreenUnderTest> m_shown;
};

QTEST_MAIN(TestPrinterScreen)
#include "tst_printer_screen.moc"
