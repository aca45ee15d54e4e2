#include "PrinterRig.h"

using rivo::printer::EscPosPrinter;
using rivo::simulators::VirtualPrinter;
using Fault = VirtualPrinter::Fault;
using Answers = VirtualPrinter::Answers;

Q_DECLARE_METATYPE(Fault)
Q_DECLARE_METATYPE(Answers)
Q_DECLARE_METATYPE(rivo::config::PrinterConfig)

namespace
{

const QStringList connections{"network", "device", "serial"};

/// What the driver reads, in the order of the faults.
const QVector<std::pair<Fault, QString>> faults{
    {Fault::PaperOut, "Out of paper"},
    {Fault::CoverOpen, "Cover open"},
    {Fault::CutterJam, "The cutter is jammed"},
    {Fault::Offline, "Off-line"},
    {Fault::Defect, "Defective: switch it off and on"},
};

} // namespace

class TestEscPosPrinter : public QObject
{
    Q_OBJECT

private slots:
    void ticketIsPrinted_data() { addConnections(); }

    void ticketIsPrinted()
    {
        QFETCH(QString, connection);
        PrinterRig rig(connection);
        QCOMPARE(rig.printer->fault(), "Being connected");
        QVERIFY(rig.becomesReady());
        QVERIFY(!rig.printer->lastPrinted());
        for (int number : {42, 43, 44}) {
            rivo::sales::PrintJob job = fullTicket();
            job.ticket.number = number;
            job.opensDrawer = number == 42;
            rig.printer->print(job);
            QCOMPARE(rig.outcomes, QStringList()); // from the event loop
            QVERIFY(rig.ends(1));
            QCOMPARE(rig.outcomes, QStringList("printed"));
            rig.outcomes.clear();
            QCOMPARE(rig.printer->lastPrinted()->ticket.number, number);
        }
        QCOMPARE(rig.device.unknownCommands(), QStringList());
        QCOMPARE(rig.device.drawerPulses(), 1);
        QCOMPARE(rig.device.pieces().size(), 3);
        for (int at = 0; at < 3; ++at) {
            QCOMPARE(rig.device.pieces().at(at).codes.size(), 1);
            QVERIFY(rig.device.pieces().at(at).codes.first().startsWith(
                QString("R1|00004%1|").arg(at + 2)));
        }
        QCOMPARE(rig.completePapers(), 3);
    }

    void faultBeforeAJob_data()
    {
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<QString>("text");
        for (const auto& [fault, text] : faults)
            QTest::newRow(qPrintable(text)) << fault << text;
    }

    /// Nothing is sent, and the next job is printed when the fault is gone.
    void faultBeforeAJob()
    {
        QFETCH(Fault, fault);
        QFETCH(QString, text);
        PrinterRig rig;
        QVERIFY(rig.becomesReady());
        rig.device.setFault(fault);
        QTRY_COMPARE(rig.printer->fault(), text);
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(1));
        QCOMPARE(rig.outcomes, QStringList("failed"));
        rig.device.setFault(Fault::None);
        QVERIFY(rig.becomesReady());
        QCOMPARE(rig.completePapers(), 0);
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(2));
        QCOMPARE(rig.outcomes, (QStringList{"failed", "printed"}));
        QCOMPARE(rig.completePapers(), 1);
    }

    /// The fault is noticed when the job comes, before anything of it is sent.
    void faultThatIsNotKnownYet()
    {
        PrinterRig rig("network", EscPosPrinter::Proof::ProcessId, {1500, 8000, 100000, 5});
        QVERIFY(rig.becomesReady());
        rig.device.setFault(Fault::CoverOpen);
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(1));
        QCOMPARE(rig.outcomes, QStringList("failed"));
        QCOMPARE(rig.printer->fault(), "Cover open");
        QCOMPARE(rig.device.current().lines, QStringList());
    }

    void littlePaperIsANotice()
    {
        PrinterRig rig;
        QVERIFY(rig.becomesReady());
        QCOMPARE(rig.printer->notice(), QString());
        rig.device.setPaperNearEnd(true);
        QTRY_COMPARE(rig.printer->notice(), "Little paper left");
        QVERIFY(rig.isReady());
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(1));
        QCOMPARE(rig.outcomes, QStringList("printed"));
        rig.device.setPaperNearEnd(false);
        QTRY_COMPARE(rig.printer->notice(), QString());
    }

    void faultAtEveryStep_data() { faultBeforeAJob_data(); }

    /// Whatever was carried out of the job: it is asked about once, nothing more of it comes out
    /// when the fault is gone, and the printer goes on.
    void faultAtEveryStep()
    {
        QFETCH(Fault, fault);
        QFETCH(QString, text);
        PrinterRig rig;
        QVERIFY(rig.becomesReady());
        const int before = rig.device.commandCount();
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(1));
        QCOMPARE(rig.outcomes, QStringList("printed"));
        const int commands = rig.device.commandCount() - before;
        for (int step = 0; step < commands; step += step < commands - 4 ? 61 : 1) {
            rig.device.takePieces();
            rig.outcomes.clear();
            const int papers = rig.completePapers();
            QCOMPARE(papers, 0);
            rig.device.setFaultAfter(step, fault);
            rig.printer->print(fullTicket());
            QVERIFY(comesTrue([&] { return rig.printer->fault() == text; }));
            QTest::qWait(2);
            QCOMPARE(rig.outcomes, QStringList());
            const int onPaper = rig.completePapers();
            rig.device.setFault(Fault::None);
            QVERIFY(rig.ends(1));
            QCOMPARE(rig.outcomes, QStringList("in doubt"));
            QVERIFY(rig.isReady());
            QCOMPARE(rig.completePapers(), onPaper);
            QVERIFY(onPaper <= 1);
            rig.printer->print(fullTicket());
            QVERIFY(rig.ends(2));
            QCOMPARE(rig.outcomes, (QStringList{"in doubt", "printed"}));
            QCOMPARE(rig.completePapers(), onPaper + 1);
            QCOMPARE(rig.device.unknownCommands(), QStringList());
        }
    }

    /// A connection that breaks after some bytes of a job.
    void connectionThatBreaksAtEveryStep()
    {
        PrinterRig rig;
        QVERIFY(rig.becomesReady());
        const int bytes =
            rivo::printer::encode(rivo::ticket::layOut(fullTicket(), hillValley()), {}).size() + 24;
        int doubts = 0;
        for (int step = 0; step < bytes; step += 37) {
            rig.device.takePieces();
            rig.outcomes.clear();
            rig.network.dropAfter(step);
            rig.printer->print(fullTicket());
            QVERIFY(rig.ends(1));
            QVERIFY(rig.becomesReady());
            QVERIFY2(rig.outcomes != QStringList("printed"), qPrintable(QString::number(step)));
            doubts += rig.outcomes == QStringList("in doubt") ? 1 : 0;
            const int onPaper = rig.completePapers();
            QVERIFY(onPaper <= (rig.outcomes == QStringList("in doubt") ? 1 : 0));
            rig.network.dropAfter(-1);
            rig.printer->print(fullTicket());
            QVERIFY(rig.ends(2));
            QCOMPARE(rig.outcomes.last(), "printed");
            QCOMPARE(rig.completePapers(), onPaper + 1);
        }
        QVERIFY(doubts > bytes / 37 / 2);
    }

    void printerThatDoesNotAnswer_data()
    {
        QTest::addColumn<QString>("connection");
        QTest::addColumn<Answers>("answers");
        for (const QString& connection : connections) {
            QTest::newRow(qPrintable("never, " + connection)) << connection << Answers::Never;
            QTest::newRow(qPrintable("other bytes, " + connection))
                << connection << Answers::Garbage;
            QTest::newRow(qPrintable("too late, " + connection)) << connection << Answers::Late;
        }
    }

    void printerThatDoesNotAnswer()
    {
        QFETCH(QString, connection);
        QFETCH(Answers, answers);
        PrinterRig rig(connection, EscPosPrinter::Proof::ProcessId, {120, 3000, 15, 5});
        QVERIFY(rig.becomesReady());
        rig.device.setAnswers(answers, 200);
        rig.printer->print(fullTicket());
        QTRY_VERIFY(!rig.isReady());
        QTest::qWait(300);
        QVERIFY(!rig.isReady());
        rig.device.setAnswers(Answers::Normal);
        QVERIFY(rig.becomesReady());
        QCOMPARE(rig.outcomes.size(), 1);
        QVERIFY(rig.outcomes.first() != "printed");
        const int onPaper = rig.completePapers();
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(2));
        QCOMPARE(rig.outcomes.last(), "printed");
        QCOMPARE(rig.completePapers(), onPaper + 1);
    }

    /// The printer stops answering when it has the job.
    void proofThatDoesNotCome()
    {
        PrinterRig rig("network", EscPosPrinter::Proof::ProcessId, {120, 3000, 15, 5});
        QVERIFY(rig.becomesReady());
        const auto silence = connect(&rig.device, &VirtualPrinter::cutOff, this,
                                     [&] { rig.device.setAnswers(Answers::Never); });
        rig.printer->print(fullTicket());
        QTRY_COMPARE(rig.printer->fault(), "Does not answer");
        QCOMPARE(rig.completePapers(), 1);
        QCOMPARE(rig.outcomes, QStringList());
        disconnect(silence);
        rig.device.setAnswers(Answers::Normal);
        QVERIFY(rig.ends(1));
        QCOMPARE(rig.outcomes, QStringList("in doubt"));
    }

    void deviceThatIsUnplugged_data()
    {
        QTest::addColumn<QString>("connection");
        for (const char* connection : {"device", "serial"})
            QTest::newRow(connection) << connection;
    }

    void deviceThatIsUnplugged()
    {
        QFETCH(QString, connection);
        PrinterRig rig(connection);
        QVERIFY(rig.becomesReady());
        rig.line.unplug();
        QTRY_VERIFY2(rig.printer->fault().startsWith("Not connected: "),
                     qPrintable(rig.printer->fault()));
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(1));
        QCOMPARE(rig.outcomes, QStringList("failed"));
    }

    void networkPrinterThatIsUnplugged()
    {
        PrinterRig rig;
        QVERIFY(rig.becomesReady());
        rig.network.setPlugged(false);
        QTRY_VERIFY(rig.printer->fault().startsWith("Not connected: "));
        rig.network.setPlugged(true);
        QVERIFY(rig.becomesReady());
    }

    void printerThatIsNotThere_data()
    {
        QTest::addColumn<rivo::config::PrinterConfig>("config");
        rivo::config::PrinterConfig config;
        config.device = "/dev/no-such-printer";
        QTest::newRow("device") << config;
        config.serial = rivo::config::SerialLine{"/dev/no-such-line", 9600, "even", "hardware"};
        QTest::newRow("serial") << config;
        config.serial = rivo::config::SerialLine{"/dev/no-such-line", 9600, "odd", "software"};
        QTest::newRow("serial, set otherwise") << config;
        config.tcp = rivo::config::TcpAddress{"127.0.0.1", 1};
        QTest::newRow("network") << config;
    }

    void printerThatIsNotThere()
    {
        QFETCH(rivo::config::PrinterConfig, config);
        EscPosPrinter printer(rivo::printer::makeLink(config), {}, hillValley(),
                              PrinterRig::times());
        QTRY_VERIFY2(printer.fault().startsWith("Not connected: "), qPrintable(printer.fault()));
        QSignalSpy failed(&printer, &EscPosPrinter::failed);
        printer.print(fullTicket());
        QCOMPARE(failed.size(), 0);
        QTRY_COMPARE(failed.size(), 1);
    }

    /// A printer that knows neither GS ( H nor DLE DC4.
    void simplePrinter()
    {
        PrinterRig rig("network", EscPosPrinter::Proof::Sensor, {120, 3000, 15, 5});
        rig.device.setSimple(true);
        QVERIFY(rig.becomesReady());
        rig.printer->print(fullTicket());
        QVERIFY(rig.ends(1));
        QCOMPARE(rig.outcomes, QStringList("printed"));
        rig.device.setFaultAfter(100, Fault::PaperOut);
        rig.printer->print(fullTicket());
        QTRY_COMPARE(rig.printer->fault(), "Out of paper");
        rig.device.setFault(Fault::None);
        QVERIFY(rig.ends(2));
        QCOMPARE(rig.outcomes, (QStringList{"printed", "in doubt"}));
        QCOMPARE(rig.completePapers(), 2); // the printer forgot nothing, and all of it was awaited
    }

    /// It answers about its state, but never proves anything.
    void printerWithoutProof()
    {
        PrinterRig rig("network", EscPosPrinter::Proof::ProcessId, {120, 300, 15, 5});
        rig.device.setSimple(true);
        QTRY_COMPARE(rig.printer->fault(), "Does not answer");
    }

    void printerOfAConfiguration()
    {
        VirtualPrinter device(42 * 12);
        device.setDrawing(false);
        rivo::simulators::NetworkPort port(device);
        QVERIFY(port.listen(0));
        rivo::config::PrinterConfig config;
        config.tcp = rivo::config::TcpAddress{"localhost", port.port()};
        config.codePage = "PC858";
        config.cut = false;
        config.columns = 42;
        const auto printer = rivo::printer::makePrinter(config, hillValley());
        QTRY_VERIFY(printer->fault().isEmpty());
        QSignalSpy printed(printer.get(), &EscPosPrinter::printed);
        printer->print(fullTicket());
        QTRY_COMPARE(printed.size(), 1);
        QCOMPARE(device.pieces().size(), 0);
        QVERIFY(device.current().lines.contains("Price" + QString("€1.90").rightJustified(42 - 5)));
    }

private:
    static void addConnections()
    {
        QTest::addColumn<QString>("connection");
        for (const QString& connection : connections)
            QTest::newRow(qPrintable(connection)) << connection;
    }
};

QTEST_MAIN(TestEscPosPrinter)
#include "tst_escpos_printer.moc"
