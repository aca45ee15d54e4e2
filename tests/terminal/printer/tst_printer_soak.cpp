#include "../sales/Counter.h"
#include "PrinterRig.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <map>
#include <set>

using namespace rivo::sales;
using rivo::printer::EscPosPrinter;
using rivo::simulators::VirtualPrinter;
using Fault = VirtualPrinter::Fault;
using Answers = VirtualPrinter::Answers;

namespace
{

constexpr int ticketsPerShift = 200;

/// What the paper says, whatever the terminal believes.
class PaperCount
{
public:
    explicit PaperCount(const VirtualPrinter& printer) : m_printer(printer) {}

    /// Whether all of a ticket is on paper; also before it is cut off.
    bool isOut(int number) const
    {
        auto count = m_complete;
        int last = m_last;
        read(m_printer.current().lines, last, count);
        return count[number] > 0;
    }

    /// Counts the pieces that were cut off, and takes them away.
    void take(VirtualPrinter& printer)
    {
        for (const VirtualPrinter::Piece& piece : printer.pieces())
            read(piece.lines, m_last, m_complete);
        printer.takePieces();
    }

    const std::map<int, int>& complete() const { return m_complete; }

private:
    /// A ticket begins with its number and ends with its check value.
    static void read(const QStringList& lines, int& number, std::map<int, int>& complete)
    {
        for (const QString& line : lines) {
            if (line.startsWith(QLatin1String("Ticket ")))
                number = line.mid(7).trimmed().toInt();
            else if (line.startsWith(QLatin1String("Check ")))
                ++complete[number];
        }
    }

    const VirtualPrinter& m_printer;
    std::map<int, int> m_complete;
    int m_last = 0;
};

} // namespace

/// Tickets are sold and printed through faults of the printer and its connection, and power cuts of
/// the terminal. The driver answers what the paper says. RIVO_SOAK_TICKETS says how many tickets,
/// RIVO_SOAK_SEED which faults.
class TestPrinterSoak : public QObject
{
    Q_OBJECT

private slots:
    void everyTicketIsOnPaperOnceOrAskedAbout()
    {
        bool isGiven = false;
        const int given = qEnvironmentVariableIntValue("RIVO_SOAK_TICKETS", &isGiven);
        const int tickets = isGiven ? given : 600;
        const int seed = qEnvironmentVariableIntValue("RIVO_SOAK_SEED", &isGiven);
        m_random.seed(isGiven ? static_cast<quint32>(seed) : 20260329U);
        QVERIFY(m_network.listen(0));
        m_device.setDrawing(false);
        start();

        while (m_sold < tickets) {
            QVERIFY(comesTrue([this] { return m_printer->fault().isEmpty(); }));
            const int count = 1 + m_random.bounded(5);
            for (int at = 0; at < count; ++at)
                QVERIFY(m_counter->desk.add(m_random.bounded(2) == 0 ? AdultSingle : DayTicket));
            m_sold += count;
            QVERIFY(m_counter->desk.pay(SalesDesk::Cash));
            if (m_random.bounded(4) == 0)
                breakSomething();
            QVERIFY(finishSale());
            m_paper.take(m_device);
            if (m_sold / ticketsPerShift > (m_sold - count) / ticketsPerShift)
                QVERIFY(m_counter->desk.closeShift());
        }

        QCOMPARE(rowsOf(onlyConnection(), "SELECT count(*) FROM unprinted"), QStringList("0"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT count(DISTINCT ticket) FROM printout"),
                 QStringList(QString::number(m_sold)));
        for (int number = 1; number <= m_sold; ++number) {
            const auto found = m_paper.complete().find(number);
            QVERIFY2(found != m_paper.complete().end() && found->second == 1,
                     qPrintable(QStringLiteral("ticket %1 is on paper %2 times, asked: %3")
                                    .arg(number)
                                    .arg(found == m_paper.complete().end() ? 0 : found->second)
                                    .arg(m_asked.count(number))));
        }
        QCOMPARE(int(m_paper.complete().size()), m_sold);
        QCOMPARE(m_device.unknownCommands(), QStringList());
        const int asked = static_cast<int>(m_asked.size());
        QVERIFY2(asked > 0 && asked < m_sold / 3, qPrintable(QString::number(asked)));
        std::printf("%d tickets, %d asked about, %d faults\n", m_sold, asked, m_faults);
    }

private:
    /// A terminal that was switched on.
    void start()
    {
        rivo::config::TcpAddress address{QStringLiteral("127.0.0.1"), m_network.port()};
        m_printer = std::make_unique<EscPosPrinter>(rivo::printer::makeTcpLink(address),
                                                    rivo::printer::EscPosFormat(), hillValley(),
                                                    EscPosPrinter::Times{80, 2000, 10, 3});
        m_counter = std::make_unique<Counter>(m_folder.filePath("journal.db"), euro, 0.0, QString(),
                                              m_printer.get());
        rowsOf(onlyConnection(), "PRAGMA synchronous=OFF"); // the machine is not switched off
    }

    void breakSomething()
    {
        ++m_faults;
        const auto fault = static_cast<Fault>(1 + m_random.bounded(5));
        const int steps = m_random.bounded(1500);
        switch (m_random.bounded(7)) {
        case 0:
        case 1:
        case 2:
            m_device.setFaultAfter(steps, fault);
            break;
        case 3:
        case 4:
            m_network.dropAfter(steps);
            break;
        case 5:
            m_device.setAnswers(static_cast<Answers>(1 + m_random.bounded(3)), 60);
            break;
        default:
            m_stopAfter = m_random.bounded(8);
        }
    }

    /// What the driver and the conductor of this test do until the sale is finished.
    bool finishSale()
    {
        const QDeadlineTimer end(30000);
        int turns = 0;
        QElapsedTimer broken;
        while (m_counter->desk.state() != SalesDesk::Selling) {
            if (end.hasExpired())
                return false;
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
            if (m_stopAfter >= 0 && turns++ >= m_stopAfter)
                restart();
            if (m_counter->desk.state() == SalesDesk::Interrupted)
                answer();
            const bool isBroken = !m_printer->fault().isEmpty();
            if (!isBroken)
                broken.invalidate();
            else if (!broken.isValid())
                broken.start();
            else if (broken.elapsed() > 3)
                repair();
        }
        repair();
        m_device.setFaultAfter(-1, Fault::None);
        m_network.dropAfter(-1);
        m_stopAfter = -1;
        return true;
    }

    void restart()
    {
        m_stopAfter = -1;
        m_counter.reset();
        m_printer.reset();
        start();
    }

    void repair()
    {
        m_device.setFault(Fault::None);
        m_device.setAnswers(Answers::Normal);
    }

    /// The driver looks at the paper, when the printer has come to rest.
    void answer()
    {
        if (!m_printer->fault().isEmpty())
            return;
        m_paper.take(m_device);
        const int number = m_counter->desk.firstTicketInDoubt().toInt();
        m_asked.insert(number);
        if (m_paper.isOut(number))
            QVERIFY(m_counter->desk.confirmTicketInDoubt());
        else
            QVERIFY(m_counter->desk.printTicketsInDoubt());
    }

    QTemporaryDir m_folder;
    QRandomGenerator m_random;
    VirtualPrinter m_device;
    rivo::simulators::NetworkPort m_network{m_device};
    PaperCount m_paper{m_device};
    std::unique_ptr<EscPosPrinter> m_printer;
    std::unique_ptr<Counter> m_counter;
    int m_sold = 0;
    int m_faults = 0;
    int m_stopAfter = -1; ///< turns of the event loop
    std::set<int> m_asked;
};

QTEST_MAIN(TestPrinterSoak)
#include "tst_printer_soak.moc"
