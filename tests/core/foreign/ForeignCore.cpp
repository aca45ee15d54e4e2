// A core library of another maker: it shares no header with ours, and its classes have another size
// and other bases. FOREIGN_SIZE is the size of its SettingsConfig.

#include <QMap>
#include <QObject>
#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace
{

/// Fills memory of a size and knows whether it was zeroed before and stayed as it was since.
template <std::size_t size>
class Filling
{
public:
    Filling()
    {
        auto* const bytes = const_cast<volatile char*>(m_bytes);
        m_wasZeroed =
            std::all_of(bytes, bytes + sizeof(m_bytes), [](char byte) { return byte == 0; });
        std::memset(m_bytes, pattern, sizeof(m_bytes));
    }

    const char* state() const
    {
        const bool isIntact = std::all_of(m_bytes, m_bytes + sizeof(m_bytes),
                                          [](char byte) { return byte == pattern; });
        return !isIntact ? "damaged" : m_wasZeroed ? "zeroed and intact" : "not zeroed";
    }

private:
    static constexpr char pattern = 0x5a;

    bool m_wasZeroed;
    char m_bytes[size - 1]; // with the flag before it as large as wanted
};

/// Nothing but a QObject.
template <>
class Filling<0>
{
public:
    const char* state() const { return "zeroed and intact"; }
};

constexpr std::size_t fillingSize = FOREIGN_SIZE > sizeof(QObject) ? FOREIGN_SIZE - sizeof(QObject)
                                                                   : 0;

} // namespace

namespace rivo::core
{

class SettingsConfig : public QObject, private Filling<fillingSize>
{
    Q_OBJECT

public:
    explicit SettingsConfig(QObject* parent);
    ~SettingsConfig() override;

    QStringList getLogLevels();
    QList<QVariant> passengerTypeCodesOrder() const;

signals:
    void logLevelsChanged(QStringList logLevels);
};
static_assert(sizeof(SettingsConfig) == std::max(std::size_t(FOREIGN_SIZE), sizeof(QObject)));

SettingsConfig::SettingsConfig(QObject* parent) : QObject(parent)
{
    const auto address = reinterpret_cast<std::uintptr_t>(this);
    std::fprintf(stderr, "made, %s\n", address % 64 == 0 ? "aligned" : "not aligned");
}

SettingsConfig::~SettingsConfig() { std::fprintf(stderr, "destroyed, %s\n", state()); }

QStringList SettingsConfig::getLogLevels() { return {QStringLiteral("log_fareproducts")}; }

QList<QVariant> SettingsConfig::passengerTypeCodesOrder() const
{
    return {QStringLiteral("PT_STUDENT_1"), QStringLiteral("PT_ADULT")};
}

/// An object that signals, with the settings behind other fields.
class ConfigManager : public QObject
{
    Q_OBJECT

public:
    static ConfigManager* instance(QString basePath, QString subFolder);

    SettingsConfig* settingsConfig() const;

signals:
    void reloaded();

private:
    const QStringList m_levels;
    double m_revision = 0.0;
    SettingsConfig* m_settings = nullptr;
};

ConfigManager* ConfigManager::instance(QString, QString)
{
    static ConfigManager* const manager = [] {
        auto* const made = new ConfigManager;
        made->m_settings = new SettingsConfig(made);
        return made; // lives as long as the process
    }();
    return manager;
}

SettingsConfig* ConfigManager::settingsConfig() const { return m_settings; }

} // namespace rivo::core

namespace QJsonWrapper
{

class JsonObjectFactory
{
public:
    static bool isRegistered(QString key);
    static QMap<QString, const QObject*>& m_ObjectsMap();
};

bool JsonObjectFactory::isRegistered(QString key) { return m_ObjectsMap().contains(key); }

QMap<QString, const QObject*>& JsonObjectFactory::m_ObjectsMap()
{
    static QMap<QString, const QObject*> objects;
    return objects;
}

} // namespace QJsonWrapper

#include "ForeignCore.moc"
