#include "HealthWatch.h"
#include "Table.h"

#include <QStorageInfo>
#include <QtTest>

using namespace rivo::health;

namespace
{

/// A /sys with these files: "net/eth0/operstate up".
class Sys
{
public:
    explicit Sys(const QStringList& files)
    {
        for (const QString& file : files)
            write(file.section(' ', 0, 0), file.section(' ', 1));
    }

    void write(const QString& name, const QString& content)
    {
        const QString path = m_folder.filePath("sys/class/" + name);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(content.toLatin1() + '\n');
    }

    QString root() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

QString text(const State& state)
{
    static const char* const names[] = {"ready", "notice", "warning", "serious", "fault"};
    return QString("%1: %2").arg(names[static_cast<int>(state.level)], state.text);
}

QString text(const std::optional<int>& number)
{
    return number ? QString::number(*number) : QString("-");
}

} // namespace

class HealthTest : public QObject
{
    Q_OBJECT

private slots:
    void networks_data();
    void networks();
    void temperatures_data();
    void temperatures();
    void brightness_data();
    void brightness();
    void disks();
    void states_data();
    void states();
    void aSystemWithoutAnything();
    void reports();
    void anEndBeforeTheStart();
};

void HealthTest::networks_data()
{
    const Table<QStringList, bool, QString> row("files", "hasNetwork", "state");
    row("none", {}, false, "warning: not connected");
    row("the loopback interface does not count", {"net/lo/operstate unknown", "net/lo/carrier 1"},
        false, "warning: not connected");
    row("one is up, one is down", {"net/eth0/operstate down", "net/wlan0/operstate up"}, true,
        "ready: connected: wlan0");
    row("two are up", {"net/wwan0/operstate up", "net/eth0/operstate up"}, true,
        "ready: connected: eth0, wwan0");
    row("a modem with a carrier", {"net/ppp0/operstate unknown", "net/ppp0/carrier 1"}, true,
        "ready: connected: ppp0");
    row("a modem without a carrier", {"net/ppp0/operstate unknown", "net/ppp0/carrier 0"}, true,
        "warning: not connected");
    row("one that says nothing", {"net/eth0/mtu 1500"}, true, "warning: not connected");
}

void HealthTest::networks()
{
    QFETCH(QStringList, files);
    const Sys sys(files);
    const Health health = readHealth(sys.root(), QString());
    QTEST(health.hasNetwork, "hasNetwork");
    QTEST(text(networkState(health)), "state");
}

void HealthTest::temperatures_data()
{
    const Table<QStringList, QString> row("files", "degrees");
    const auto zone = [](const char* name, const char* value) {
        return QString("thermal/%1/temp %2").arg(name, value);
    };
    row("none", {}, "-");
    row("a fan has none", {"thermal/cooling_device0/cur_state 1"}, "-");
    row("one", QStringList{zone("thermal_zone0", "43250")}, "43");
    row("the highest counts",
        {zone("thermal_zone0", "43250"), zone("thermal_zone1", "71000"),
         zone("thermal_zone2", "50000")},
        "71");
    row("below zero", QStringList{zone("thermal_zone0", "-20500")}, "-20");
    row("a sensor that lies does not count",
        {zone("thermal_zone0", "43250"), zone("thermal_zone1", "2147483647")}, "43");
    row("no number", QStringList{zone("thermal_zone0", "N/A")}, "-");
}

void HealthTest::temperatures()
{
    QFETCH(QStringList, files);
    const Sys sys(files);
    QTEST(text(readHealth(sys.root(), QString()).temperature), "degrees");
}

void HealthTest::brightness_data()
{
    const Table<QStringList, QString> row("files", "percent");
    const auto light = [](const char* name, const char* value) {
        return QString("backlight/panel/%1 %2").arg(name, value);
    };
    row("no light", {}, "-");
    row("half", {light("brightness", "100"), light("max_brightness", "200")}, "50");
    row("full", {light("brightness", "255"), light("max_brightness", "255")}, "100");
    row("switched off",
        {light("brightness", "100"), light("max_brightness", "200"), light("bl_power", "4")}, "0");
    row("switched on",
        {light("brightness", "100"), light("max_brightness", "200"), light("bl_power", "0")}, "50");
    row("no highest", QStringList{light("brightness", "100")}, "-");
    row("a highest of 0", {light("brightness", "1"), light("max_brightness", "0")}, "-");
    row("more than the highest", {light("brightness", "2147483647"), light("max_brightness", "1")},
        "100");
}

void HealthTest::brightness()
{
    QFETCH(QStringList, files);
    const Sys sys(files);
    QTEST(text(readHealth(sys.root(), QString()).brightness), "percent");
}

void HealthTest::disks()
{
    QTemporaryDir folder;
    const Health health = readHealth(folder.path(), folder.filePath("not/yet/there/journal"));
    QVERIFY(health.disk);
    QVERIFY(!health.disk->isReadOnly);
    const qint64 free = QStorageInfo(folder.path()).bytesAvailable();
    QVERIFY(qAbs(health.disk->free - free) < (64 << 20));
    QVERIFY(!readHealth(folder.path(), QString()).disk);
    if (QStorageInfo("/proc").isReadOnly())
        QVERIFY(readHealth(folder.path(), "/proc/journal").disk->isReadOnly);
}

void HealthTest::states_data()
{
    const Table<QString, QString> row("state", "expected");
    Health health;
    const auto disk = [&](qint64 megabytes, bool isReadOnly = false) {
        health.disk = Health::Disk{megabytes << 20, isReadOnly};
        return text(diskState(health));
    };
    const auto temperature = [&](int degrees) {
        health.temperature = degrees;
        return text(temperatureState(health));
    };
    const auto light = [&](int percent) {
        health.brightness = percent;
        return text(brightnessState(health));
    };
    row("much space", disk(9000), "ready: 9000 MB free");
    row("just enough space", disk(500), "ready: 500 MB free");
    row("little space", disk(499), "warning: 499 MB free");
    row("very little space", disk(50), "warning: 50 MB free");
    row("no space", disk(49), "fault: 49 MB free");
    row("read-only", disk(9000, true), "fault: cannot be written");
    row("cool", temperature(74), "ready: 74 °C");
    row("warm", temperature(75), "warning: 75 °C");
    row("hot", temperature(85), "serious: 85 °C");
    row("bright", light(100), "ready: 100 %");
    row("dark", light(0), "notice: dark");
}

void HealthTest::states()
{
    QFETCH(QString, state);
    QTEST(state, "expected");
}

void HealthTest::aSystemWithoutAnything()
{
    const Health health = readHealth("/there/is/no/such/folder", QString());
    QVERIFY(!health.hasNetwork);
    QVERIFY(!health.disk);
    QVERIFY(!health.temperature);
    QVERIFY(!health.brightness);
    readHealth(QString(), QDir::homePath() + "/journal"); // the real one: whatever it has
}

void HealthTest::reports()
{
    Sys sys({"thermal/thermal_zone0/temp 40000"});
    HealthWatch watch({sys.root(), QString(), 20});
    QVector<int> temperatures;
    QThread* thread = nullptr;
    connect(&watch, &HealthWatch::reported, this, [&](const Health& health) {
        temperatures.append(health.temperature.value_or(-1));
        thread = QThread::currentThread();
    });
    watch.start();
    QTRY_VERIFY(temperatures.size() >= 2);
    QCOMPARE(temperatures.first(), 40);
    QCOMPARE(thread, QThread::currentThread());
    sys.write("thermal/thermal_zone0/temp", "90000");
    QTRY_COMPARE(temperatures.last(), 90);
}

void HealthTest::anEndBeforeTheStart() { const HealthWatch watch({QString(), QString(), 20}); }

QTEST_GUILESS_MAIN(HealthTest)
#include "tst_health.moc"
