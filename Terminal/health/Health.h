#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>

#include <optional>

namespace rivo::health
{

/// What the system says of itself. None = it does not have such a thing.
struct Health
{
    struct Disk
    {
        qint64 free = 0; ///< bytes that this program may use
        bool isReadOnly = false;
    };

    QStringList networks;           ///< interfaces that are connected
    bool hasNetwork = false;        ///< there is an interface, connected or not
    std::optional<Disk> disk;       ///< of the journal
    std::optional<int> temperature; ///< degrees Celsius of the hottest part
    std::optional<int> brightness;  ///< of the screen, percent; 0 = dark
};

/// How bad it is, in the order of the flags of a device.
enum class Level { Ready, Notice, Warning, SeriousWarning, Fault };

struct State
{
    Level level = Level::Ready;
    QString text; ///< for people
};

constexpr qint64 littleSpace = 500 << 20; ///< bytes; a year of a journal
constexpr qint64 noSpace = 50 << 20;      ///< bytes
constexpr int warm = 75;                  ///< degrees Celsius
constexpr int hot = 85;                   ///< degrees Celsius

State networkState(const Health& health);
State diskState(const Health& health);
State temperatureState(const Health& health);
State brightnessState(const Health& health);

/// Reads it. `root` is where /sys is, "" on a real system; `journal` is the file, or where it will
/// be. Some parts of /sys and broken disks answer slowly: not for the thread of the screen.
Health readHealth(const QString& root, const QString& journal);

} // namespace rivo::health

Q_DECLARE_METATYPE(rivo::health::Health)
