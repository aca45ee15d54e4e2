#include "../ScreenUnderTest.h"

#include <ShoppingItem.h>
#include <ZReportModel.h>

#include <QRandomGenerator>
#include <QtTest>

#include <malloc.h>
#include <unistd.h>

using rivo::sales::SalesDesk;

namespace
{

size_t usedMemory() { return mallinfo2().uordblks; }

/// What the system has given to the process, in bytes; parts of it may be free.
size_t residentMemory()
{
    QFile file("/proc/self/statm");
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const qlonglong pages = isOpen ? file.readAll().split(' ').value(1).toLongLong() : 0;
    return static_cast<size_t>(pages * sysconf(_SC_PAGESIZE));
}

int itemsBelow(const QQuickItem* top)
{
    int count = 1;
    for (const QQuickItem* child : top->childItems())
        count += itemsBelow(child);
    return count;
}

} // namespace

/// Days of selling with the window open: nothing is left behind. RIVO_SOAK_SALES says how many.
class TestScreenSoak : public QObject
{
    Q_OBJECT

private slots:
    void sellsAllDay();
};

void TestScreenSoak::sellsAllDay()
{
    prepareScreens();
    const Complaints complaints;
    bool isNumber = false;
    const int asked = qEnvironmentVariableIntValue("RIVO_SOAK_SALES", &isNumber);
    const int sales = isNumber ? asked : 1000;
    const int salesPerShift = 100;
    const int warmUp = sales / 2;
    const QStringList pages{"sell",  "products", "sell",    "zreport", "sell",
                            "fleet", "sell",     "devices", "sell",    "settings"};

    ScreenUnderTest shown(exampleFeed("coast-line"), "sell", {800, 480});
    auto& terminal = shown.terminal();
    auto* desk = terminal.desk();
    QVector<int> rows;
    for (int row = 0; row < terminal.grid()->rowCount(); ++row) {
        if (desk->add(row))
            rows.append(row);
    }
    QVERIFY(rows.size() > 5);
    QVERIFY(desk->clear());
    const int reports = terminal.zReports()->rowCount();

    QRandomGenerator random(20260329);
    size_t memory = 0;
    size_t resident = 0;
    int objects = 0;
    for (int sale = 1; sale <= sales; ++sale) {
        for (int count = 1 + random.bounded(3); count > 0; --count)
            QVERIFY(desk->add(rows.at(random.bounded(rows.size()))));
        QVERIFY(desk->pay(random.bounded(3) == 0 ? SalesDesk::Card : SalesDesk::Cash));
        while (desk->state() != SalesDesk::Selling)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (sale % 20 == 0)
            shown.tap(shown.item("nav-" + pages.at(sale / 20 % pages.size())));
        if (sale % salesPerShift == 0)
            QVERIFY(desk->closeShift());
        if (sale == warmUp || sale == sales) {
            shown.tap(shown.item("nav-sell"));
            QTest::qWait(200);
            QMetaObject::invokeMethod(shown.window(), "releaseResources");
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            malloc_trim(0);
            if (sale == warmUp) {
                memory = usedMemory();
                resident = residentMemory();
                objects = itemsBelow(shown.window()->contentItem());
            }
        }
    }
    const size_t after = usedMemory();
    const int objectsAfter = itemsBelow(shown.window()->contentItem());
    qInfo("after %d and %d sales: %zu and %zu bytes in use, %zu and %zu resident; %d and %d items "
          "on the screen",
          warmUp, sales, memory, after, resident, residentMemory(), objects, objectsAfter);

    QCOMPARE(terminal.basket()->rowCount(), 0);
    QVERIFY(terminal.basket()->children().isEmpty());
    QCOMPARE(terminal.zReports()->rowCount(), reports + sales / salesPerShift);
    QCOMPARE(Complaints::take(), QStringList());
    // A line of the basket has more than ten items, the pages some hundreds. Lists keep a few lines
    // for what comes next.
    QVERIFY(objects > 200);
    QVERIFY2(std::abs(objectsAfter - objects) < 100,
             qPrintable(QString("%1 items, then %2").arg(objects).arg(objectsAfter)));
    // A closed shift stays, in the model and as a row of two filters.
    const auto shifts = static_cast<size_t>((sales - warmUp) / salesPerShift);
    // The graphics driver has one frame more in some moments.
    const auto frame = static_cast<size_t>(shown.window()->width() * shown.window()->height()) * 4;
    const size_t allowed = 1024 * 1024 + frame + shifts * 8192;
    QVERIFY2(after < memory + allowed, qPrintable(QString("%1 bytes more").arg(after - memory)));
}

QTEST_MAIN(TestScreenSoak)
#include "tst_screen_soak.moc"
