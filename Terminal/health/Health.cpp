#include "Health.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

namespace rivo::health
{

namespace
{

constexpr int longestValue = 64;
constexpr int perDegree = 1000;
constexpr int hottest = 200; ///< degrees; more is no temperature
constexpr int coldest = -60;
constexpr qint64 mebibyte = 1 << 20;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(rivo::health::Texts)
};

QString textOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.read(longestValue)).trimmed()
                                          : QString();
}

std::optional<int> numberOf(const QString& path)
{
    bool isNumber = false;
    const int number = textOf(path).toInt(&isNumber);
    return isNumber ? std::make_optional(number) : std::nullopt;
}

/// The folders in a folder of /sys, which are links there.
QStringList entriesOf(const QString& folder)
{
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    QStringList paths;
    for (const QFileInfo& entry : entries)
        paths.append(entry.filePath());
    return paths;
}

/// An interface of a modem does not know whether it is up, and has a carrier.
bool isConnected(const QString& interface)
{
    const QString state = textOf(interface + QStringLiteral("/operstate"));
    return state == QLatin1String("up") ||
           (state == QLatin1String("unknown") &&
            numberOf(interface + QStringLiteral("/carrier")).value_or(0) == 1);
}

void readNetworks(const QString& root, Health& health)
{
    const QStringList interfaces = entriesOf(root + QStringLiteral("/sys/class/net"));
    for (const QString& interface : interfaces) {
        const QString name = QFileInfo(interface).fileName();
        if (name == QLatin1String("lo"))
            continue;
        health.hasNetwork = true;
        if (isConnected(interface))
            health.networks.append(name);
    }
}

std::optional<Health::Disk> readDisk(const QString& journal)
{
    if (journal.isEmpty())
        return std::nullopt;
    QString folder = QFileInfo(journal).absolutePath();
    while (!QFileInfo::exists(folder)) // it is made with the journal
        folder = QFileInfo(folder).absolutePath();
    const QStorageInfo storage(folder);
    if (!storage.isValid())
        return std::nullopt;
    return Health::Disk{storage.bytesAvailable(), storage.isReadOnly()};
}

std::optional<int> readTemperature(const QString& root)
{
    std::optional<int> highest;
    const QStringList zones = entriesOf(root + QStringLiteral("/sys/class/thermal"));
    for (const QString& zone : zones) {
        const std::optional<int> milli = numberOf(zone + QStringLiteral("/temp"));
        if (!milli || *milli / perDegree > hottest || *milli / perDegree < coldest)
            continue;
        highest = std::max(highest.value_or(coldest), *milli / perDegree);
    }
    return highest;
}

std::optional<int> readBrightness(const QString& root)
{
    const QStringList lights = entriesOf(root + QStringLiteral("/sys/class/backlight"));
    for (const QString& light : lights) {
        const std::optional<int> is = numberOf(light + QStringLiteral("/brightness"));
        const std::optional<int> most = numberOf(light + QStringLiteral("/max_brightness"));
        if (!is || !most || *most <= 0)
            continue;
        const bool isOff = numberOf(light + QStringLiteral("/bl_power")).value_or(0) != 0;
        return isOff ? 0 : static_cast<int>(qBound(0LL, 100LL * *is / *most, 100LL));
    }
    return std::nullopt;
}

} // namespace

Health readHealth(const QString& root, const QString& journal)
{
    Health health;
    readNetworks(root, health);
    health.disk = readDisk(journal);
    health.temperature = readTemperature(root);
    health.brightness = readBrightness(root);
    return health;
}

State networkState(const Health& health)
{
    if (health.networks.isEmpty())
        return {Level::Warning, Texts::tr("not connected")};
    return {Level::Ready,
            Texts::tr("connected: %1").arg(health.networks.join(QStringLiteral(", ")))};
}

State diskState(const Health& health)
{
    const Health::Disk disk = health.disk.value_or(Health::Disk());
    if (disk.isReadOnly)
        return {Level::Fault, Texts::tr("cannot be written")};
    const QString text = Texts::tr("%1 MB free").arg(disk.free / mebibyte);
    return {disk.free < noSpace       ? Level::Fault
            : disk.free < littleSpace ? Level::Warning
                                      : Level::Ready,
            text};
}

State temperatureState(const Health& health)
{
    const int degrees = health.temperature.value_or(0);
    return {degrees >= hot    ? Level::SeriousWarning
            : degrees >= warm ? Level::Warning
                              : Level::Ready,
            Texts::tr("%1 °C").arg(degrees)};
}

State brightnessState(const Health& health)
{
    const int percent = health.brightness.value_or(0);
    if (percent == 0)
        return {Level::Notice, Texts::tr("dark")};
    return {Level::Ready, Texts::tr("%1 %").arg(percent)};
}

} // namespace rivo::health
