#include "Table.h"
#include "Watchdog.h"

#include <QtTest>

#include <chrono>
#include <cstddef>
#include <cstring>
#include <thread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace rivo::health;

namespace
{

/// The socket of a service manager; '@' in front of a name makes one without a file.
class Manager
{
public:
    explicit Manager(const QByteArray& name)
        : m_file(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
        if (name.startsWith('@'))
            address.sun_path[0] = '\0';
        const auto size = offsetof(sockaddr_un, sun_path) + static_cast<size_t>(name.size());
        m_isOpen = bind(m_file, reinterpret_cast<const sockaddr*>(&address),
                        static_cast<socklen_t>(size)) == 0;
    }
    ~Manager() { close(m_file); }
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;

    bool isOpen() const { return m_isOpen; }

    /// What came since the last call.
    QStringList messages()
    {
        QStringList texts;
        char buffer[256];
        for (;;) {
            const ssize_t size = recv(m_file, buffer, sizeof buffer, 0);
            if (size < 0)
                return texts;
            texts.append(QString::fromLatin1(buffer, static_cast<int>(size)));
        }
    }

private:
    int m_file;
    bool m_isOpen;
};

void getStuck(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// The name of a socket has at most 107 bytes; the folder that TMPDIR names may have more.
const QString shortFolder = QStringLiteral("/tmp/rivo-watchdog-XXXXXX");

} // namespace

class WatchdogTest : public QObject
{
    Q_OBJECT

private slots:
    void environments_data();
    void environments();
    void messages_data();
    void messages();
    void managersThatAreNotThere_data();
    void managersThatAreNotThere();
    void signsOfLife();
    void stuck();
    void withoutAManager();
    void limitOfTheManager();
};

void WatchdogTest::environments_data()
{
    const Table<QByteArray, QByteArray, QByteArray, bool, int> row("socket", "microseconds",
                                                                   "process", "isThere", "time");
    const QByteArray own = QByteArray::number(QCoreApplication::applicationPid());
    row("started by hand", "", "", "", false, 0);
    row("without a watchdog", "/run/notify", "", "", true, 0);
    row("with a watchdog", "/run/notify", "30000000", own, true, 30000);
    row("a watchdog for every process", "/run/notify", "30000000", "", true, 30000);
    row("the watchdog of another process", "/run/notify", "30000000", "1", true, 0);
    row("no number", "/run/notify", "soon", own, true, 0);
    row("a negative time", "/run/notify", "-30000000", own, true, 0);
    row("a time beyond all limits", "/run/notify", "9223372036854775807", own, true, 0);
}

void WatchdogTest::environments()
{
    QFETCH(QByteArray, socket);
    QFETCH(QByteArray, microseconds);
    QFETCH(QByteArray, process);
    qputenv("NOTIFY_SOCKET", socket);
    qputenv("WATCHDOG_USEC", microseconds);
    qputenv("WATCHDOG_PID", process);
    const ServiceManager manager = ServiceManager::fromEnvironment();
    QTEST(manager.isThere(), "isThere");
    QTEST(manager.watchdogTime(), "time");
    for (const char* name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"})
        qunsetenv(name);
}

void WatchdogTest::messages_data()
{
    const Table<bool> row("hasFile");
    row("a socket with a file", true);
    row("a socket without a file", false);
}

void WatchdogTest::messages()
{
    QFETCH(bool, hasFile);
    QTemporaryDir folder(shortFolder);
    const QByteArray name =
        hasFile ? folder.filePath("notify").toLocal8Bit() : "@rivo-" + QByteArray::number(getpid());
    Manager manager(name);
    QVERIFY(manager.isOpen());
    const ServiceManager seen(name, 0);
    QVERIFY(seen.reportReady());
    QVERIFY(seen.reportLife());
    QVERIFY(seen.reportStatus("Selling"));
    QCOMPARE(manager.messages(), QStringList({"READY=1", "WATCHDOG=1", "STATUS=Selling"}));
}

void WatchdogTest::managersThatAreNotThere_data()
{
    const Table<QByteArray> row("socket");
    row("none", {});
    row("one that has gone", "/there/is/no/such/socket");
    row("a name that is too long", QByteArray(200, 'x'));
}

void WatchdogTest::managersThatAreNotThere()
{
    QFETCH(QByteArray, socket);
    QVERIFY(!ServiceManager(socket, 1000).reportReady());
}

void WatchdogTest::signsOfLife()
{
    QTemporaryDir folder(shortFolder);
    const QByteArray name = folder.filePath("notify").toLocal8Bit();
    Manager manager(name);
    QStringList complaints;
    QStringList messages;
    {
        const Watchdog watchdog(
            ServiceManager(name, 2000), [&](const QString& text) { complaints.append(text); },
            2000);
        QVERIFY(!manager.messages().contains("READY=1")); // the event loop does not turn yet
        QTest::qWait(1100);
        messages = manager.messages();
    }
    QCOMPARE(messages.count("READY=1"), 1);
    QVERIFY2(messages.count("WATCHDOG=1") >= 2, qPrintable(messages.join(' ')));
    QCOMPARE(complaints, QStringList());
}

void WatchdogTest::stuck()
{
    QTemporaryDir folder(shortFolder);
    const QByteArray name = folder.filePath("notify").toLocal8Bit();
    Manager manager(name);
    QStringList complaints; // read when the other thread has ended
    QStringList whileStuck;
    QStringList afterwards;
    {
        const Watchdog watchdog(
            ServiceManager(name, 60000), [&](const QString& text) { complaints.append(text); },
            400);
        QTest::qWait(300);
        getStuck(700);
        manager.messages();
        getStuck(700);
        whileStuck = manager.messages();
        QTest::qWait(500);
        afterwards = manager.messages();
    }
    QCOMPARE(complaints, QStringList("the screen has not answered for 400 ms"));
    QCOMPARE(whileStuck, QStringList());
    QVERIFY(afterwards.contains("STATUS=Running"));
    QVERIFY(afterwards.contains("WATCHDOG=1"));
}

void WatchdogTest::withoutAManager()
{
    QStringList complaints;
    {
        const Watchdog watchdog(
            ServiceManager(), [&](const QString& text) { complaints.append(text); }, 100);
        getStuck(400);
    }
    QCOMPARE(complaints.size(), 1);
}

void WatchdogTest::limitOfTheManager()
{
    QStringList complaints;
    {
        const Watchdog watchdog(ServiceManager("/there/is/no/such/socket", 400),
                                [&](const QString& text) { complaints.append(text); });
        getStuck(600);
    }
    QCOMPARE(complaints, QStringList("the screen has not answered for 200 ms"));
}

QTEST_GUILESS_MAIN(WatchdogTest)
#include "tst_watchdog.moc"
