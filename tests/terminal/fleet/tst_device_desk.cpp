#include "DeviceDesk.h"
#include "SignalLog.h"
#include "Table.h"

#include <PeripheralItem.h>
#include <PeripheralsModel.h>
#include <SimulatedPrinter.h>

#include <QtTest>

using rivo::sales::SimulatedPrinter;
using rivo::terminal::DeviceDesk;

namespace
{

struct Device
{
    QString name;
    QString icon;
    bool error = false;
    QString state = "Ready";
};

/// A desk with devices of the ids 1, 2, ...
struct Desk
{
    explicit Desk(const QVector<Device>& given, std::optional<int> printerId = std::nullopt)
        : devices(&owner), desk(devices, printer)
    {
        for (const Device& device : given)
            devices.appendRow(new PeripheralItem(devices.rowCount() + 1, device.name, 0,
                                                 device.icon, false, false, false, device.error, 0,
                                                 device.state, &devices));
        desk.findPrinter(printerId);
    }

    PeripheralItem& device(int row)
    {
        return *qobject_cast<PeripheralItem*>(devices.itemFromRow(row));
    }

    QObject owner;
    PeripheralsModel devices;
    SimulatedPrinter printer;
    DeviceDesk desk;
};

/// blue, yellow, serious, error; state and text.
QString flags(const PeripheralItem& device)
{
    return QString("%1%2%3%4 %5 %6")
        .arg(device.blueWarning())
        .arg(device.yellowWarning())
        .arg(device.warning())
        .arg(device.error())
        .arg(device.deviceState())
        .arg(device.stateStr());
}

const Device ticketPrinter{"Ticket Printer", ""};
const Device cardReader{"Card reader", "qrc:/icons/card.svg"};

} // namespace

Q_DECLARE_METATYPE(Device)
Q_DECLARE_METATYPE(std::optional<int>)

class DeviceDeskTest : public QObject
{
    Q_OBJECT

private slots:
    void thePrinterIs_data();
    void thePrinterIs();
    void withoutAPrinterOneIsAdded();
    void events_data();
    void events();
    void reportForNoRow();
    void faults();
    void thePrinterReportsItsFault();
    void printerThatIsRemoved();
    void realPrinterReportsByItself();
};

void DeviceDeskTest::thePrinterIs_data()
{
    const Table<QVector<Device>, std::optional<int>, int> row("devices", "id", "printer");
    const std::optional<int> notSaid;
    const Device byIcon{"Drucker", "qrc:/icons/printer.svg"};
    row("by its icon", {cardReader, byIcon}, notSaid, 1);
    row("by its name, in any case", {cardReader, ticketPrinter}, notSaid, 1);
    row("the first of several", {byIcon, cardReader, ticketPrinter}, notSaid, 0);
    row("not by another icon", {{"P", "qrc:/icons/printer.svg2"}, ticketPrinter}, notSaid, 1);
    row("by its id, whatever it is called", {cardReader, {"Drucker", ""}}, std::make_optional(2),
        1);
    row("by its id before name and icon", {ticketPrinter, byIcon, cardReader},
        std::make_optional(3), 2);
    row("by its name if none has the id", {cardReader, ticketPrinter}, std::make_optional(0), 1);
}

void DeviceDeskTest::thePrinterIs()
{
    QFETCH(QVector<Device>, devices);
    QFETCH(std::optional<int>, id);
    QFETCH(int, printer);
    Desk desk(devices, id);
    QCOMPARE(desk.devices.rowCount(), devices.size());
    for (int row = devices.size() - 1; row >= 0; --row) {
        QVERIFY(desk.desk.report(row, DeviceDesk::Fault, QString("broken %1").arg(row)));
        QCOMPARE(desk.printer.fault(), row <= printer ? QString("broken %1").arg(printer) : "");
    }
    QVERIFY(desk.desk.isPrinter(printer));
}

void DeviceDeskTest::withoutAPrinterOneIsAdded()
{
    for (const QVector<Device>& given : {QVector<Device>(), QVector<Device>{cardReader}}) {
        Desk desk(given);
        QCOMPARE(desk.devices.rowCount(), given.size() + 1);
        const PeripheralItem& added = desk.device(given.size());
        QCOMPARE(added.name(), QString("Ticket printer"));
        QCOMPARE(added.icon(), QString("qrc:/icons/printer.svg"));
        QCOMPARE(flags(added), QString("0000 0 Ready"));
        QCOMPARE(desk.printer.fault(), QString());
        QCOMPARE(desk.desk.faults(), 0);
        QVERIFY(desk.desk.isPrinter(given.size()));
        QVERIFY(given.isEmpty() || !desk.desk.isPrinter(0));
        QVERIFY(desk.desk.report(given.size(), DeviceDesk::Fault, "Paper jam"));
        QCOMPARE(desk.printer.fault(), QString("Paper jam"));
    }
}

void DeviceDeskTest::events_data()
{
    const Table<DeviceDesk::Event, QString> row("event", "flagsOfDevice");
    row("ready", DeviceDesk::Ready, "0000 0 Text");
    row("notice", DeviceDesk::Notice, "1000 1 Text");
    row("warning", DeviceDesk::Warning, "0100 2 Text");
    row("serious warning", DeviceDesk::SeriousWarning, "0010 3 Text");
    row("fault", DeviceDesk::Fault, "0001 4 Text");
}

void DeviceDeskTest::events()
{
    QFETCH(DeviceDesk::Event, event);
    QFETCH(QString, flagsOfDevice);
    // Whatever was reported before is gone.
    for (const DeviceDesk::Event before :
         {DeviceDesk::Ready, DeviceDesk::Notice, DeviceDesk::Warning, DeviceDesk::SeriousWarning,
          DeviceDesk::Fault}) {
        Desk desk({ticketPrinter, cardReader});
        QVERIFY(desk.desk.report(1, before, "Before"));
        SignalLog signalLog(&desk.devices);
        SignalLog otherDevice(&desk.device(0));
        QVERIFY(desk.desk.report(1, event, "Text"));
        QCOMPARE(flags(desk.device(1)), flagsOfDevice);
        // The text; the state and the flags that differ.
        const int flagChanges = (before == event ? 0 : 1) + (before == DeviceDesk::Ready ? 0 : 1) +
                                (event == DeviceDesk::Ready ? 0 : 1);
        QCOMPARE(signalLog.take().size(), before == event ? 1 : 1 + flagChanges);
        QCOMPARE(otherDevice.take(), QStringList());
        QVERIFY(desk.desk.report(1, event, "Text"));
        QCOMPARE(signalLog.take(), QStringList());
    }
}

void DeviceDeskTest::reportForNoRow()
{
    Desk desk({ticketPrinter, cardReader});
    SignalLog modelSignals(&desk.devices);
    SignalLog deskSignals(&desk.desk);
    SignalLog printerSignals(&desk.printer);
    for (const int row : {-1, 2, std::numeric_limits<int>::max()}) {
        QVERIFY(!desk.desk.report(row, DeviceDesk::Fault, "Paper jam"));
        QVERIFY(!desk.desk.isPrinter(row));
    }
    QCOMPARE(modelSignals.take() + deskSignals.take() + printerSignals.take(), QStringList());
}

void DeviceDeskTest::faults()
{
    Desk desk({ticketPrinter, cardReader, {"Validator", "", true, ""}});
    QCOMPARE(desk.desk.faults(), 1);
    SignalLog signalLog(&desk.desk);
    desk.desk.report(1, DeviceDesk::Fault, "Broken");
    QCOMPARE(desk.desk.faults(), 2);
    QCOMPARE(signalLog.take(), QStringList("faultsChanged()"));
    desk.desk.report(1, DeviceDesk::Fault, "Still broken");
    desk.desk.report(0, DeviceDesk::SeriousWarning, "Hot");
    QCOMPARE(signalLog.take(), QStringList());
    desk.device(2).setError(false); // from outside the desk
    QCOMPARE(desk.desk.faults(), 1);
    desk.desk.report(1, DeviceDesk::Ready, "Ready");
    QCOMPARE(desk.desk.faults(), 0);
    QCOMPARE(signalLog.take(), QStringList({"faultsChanged()", "faultsChanged()"}));
}

void DeviceDeskTest::thePrinterReportsItsFault()
{
    Desk silent({{"Printer", "", true, ""}});
    QCOMPARE(silent.printer.fault(), QString("The ticket printer is not connected."));

    Desk desk({{"Printer", "", true, "Cover open"}});
    QCOMPARE(desk.printer.fault(), QString("Cover open"));
    SignalLog signalLog(&desk.printer);
    desk.desk.report(0, DeviceDesk::Fault, "Paper jam");
    QCOMPARE(desk.printer.fault(), QString("Paper jam"));
    QCOMPARE(signalLog.take(), QStringList("faultChanged()"));

    // It goes at once, never by way of another text.
    QStringList texts;
    connect(&desk.printer, &SimulatedPrinter::faultChanged, this,
            [&] { texts.append(desk.printer.fault()); });
    desk.desk.report(0, DeviceDesk::Warning, "Paper low");
    desk.desk.report(0, DeviceDesk::Fault, "Out of paper");
    desk.desk.report(0, DeviceDesk::Ready, "Ready");
    QCOMPARE(texts, QStringList({"", "Out of paper", ""}));
}

void DeviceDeskTest::printerThatIsRemoved()
{
    Desk desk({ticketPrinter, cardReader});
    delete desk.devices.takeRow(0);
    QVERIFY(desk.desk.report(0, DeviceDesk::Notice, "Updating"));
    QCOMPARE(desk.printer.fault(), QString("The ticket printer is not connected."));
}

/// A printer that is connected.
class RealPrinter : public rivo::sales::TicketPrinter
{
public:
    void print(const rivo::sales::PrintJob&) override {}
    using TicketPrinter::storeFault;
    using TicketPrinter::storeNotice;
};

void DeviceDeskTest::realPrinterReportsByItself()
{
    QObject owner;
    PeripheralsModel devices(&owner);
    RealPrinter printer;
    printer.storeFault("Out of paper");
    devices.appendRow(
        new PeripheralItem(1, "Reader", 0, "", false, false, false, false, 0, "Ready", &devices));
    DeviceDesk desk(devices, printer);
    desk.findPrinter();
    const auto row = [&] { return flags(*qobject_cast<PeripheralItem*>(devices.itemFromRow(1))); };
    QCOMPARE(row(), "0001 4 Out of paper");
    QCOMPARE(desk.faults(), 1);
    QVERIFY(desk.isReal(1));
    QVERIFY(!desk.isReal(0));
    QVERIFY(!desk.isReal(-1));
    printer.storeNotice("Little paper");
    QCOMPARE(row(), "0001 4 Out of paper");
    printer.storeFault({});
    QCOMPARE(row(), "0100 2 Little paper");
    QCOMPARE(desk.faults(), 0);
    printer.storeNotice({});
    QCOMPARE(row(), "0000 0 Ready");
    SignalLog log(qobject_cast<PeripheralItem*>(devices.itemFromRow(1)));
    QVERIFY(!desk.report(1, DeviceDesk::Fault, "Paper jam"));
    QCOMPARE(log.take(), QStringList());
    delete devices.takeRow(1);
    printer.storeFault("Out of paper");
    QCOMPARE(desk.faults(), 0);
}

QTEST_GUILESS_MAIN(DeviceDeskTest)
#include "tst_device_desk.moc"
