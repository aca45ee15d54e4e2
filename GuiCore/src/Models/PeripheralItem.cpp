#include "PeripheralItem.h"

const rivo::models::QHashStaticInit<int, QByteArray>
    PeripheralItemRolesHandling::PERIPHERAL_ROLES_HASH_TABLE{
        {PeripheralItem::IdRole, "id"},
        {PeripheralItem::PeripheralNameRole, "peripheralName"},
        {PeripheralItem::IdentityRole, "identity"},
        {PeripheralItem::IconSourceRole, "iconSource"},
        {PeripheralItem::WarningRole, "warning"},
        {PeripheralItem::BlueWarningRole, "blueWarning"},
        {PeripheralItem::YellowWarningRole, "yellowWarning"},
        {PeripheralItem::ErrorRole, "error"},
        {PeripheralItem::DeviceStateRole, "deviceState"},
        {PeripheralItem::StateStrRole, "stateStr"},
    };

namespace
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) int instanceCount = 0;
} // namespace

PeripheralItem::PeripheralItem(QObject* parent) : ListItem(parent) { ++instanceCount; }

PeripheralItem::PeripheralItem(const int& id, const QString& name, const unsigned int& identity,
                               const QString& icon, bool warning, bool blueWarning,
                               bool yellowWarning, bool error, const int& deviceState,
                               QString stateStr, QObject* parent)
    : ListItem(parent), m_id(id), m_name(name), m_identity(identity), m_icon(icon),
      m_warning(warning), m_blueWarning(blueWarning), m_yellowWarning(yellowWarning),
      m_error(error), m_deviceState(deviceState), m_stateStr(stateStr)
{
    ++instanceCount;
}

PeripheralItem::~PeripheralItem() = default;

QVariant PeripheralItem::data(int role) const
{
    switch (role) {
    case IdRole:
        return id();
    case PeripheralNameRole:
        return m_name;
    case IdentityRole:
        return m_identity;
    case IconSourceRole:
        return m_icon;
    case WarningRole:
        return m_warning;
    case BlueWarningRole:
        return m_blueWarning;
    case YellowWarningRole:
        return m_yellowWarning;
    case ErrorRole:
        return m_error;
    case DeviceStateRole:
        return m_deviceState;
    case StateStrRole:
        return m_stateStr;
    default:
        return {};
    }
}

QHash<int, QByteArray> PeripheralItem::roleNames() const
{
    return PeripheralItemRolesHandling::PERIPHERAL_ROLES_HASH_TABLE.hash;
}

int PeripheralItem::id() const { return m_id; }

void PeripheralItem::setId(const int& id) { store(m_id, id); }
void PeripheralItem::setName(const QString& name) { store(m_name, name); }
void PeripheralItem::setIdentity(const unsigned int& identity) { store(m_identity, identity); }
void PeripheralItem::setIcon(const QString& icon) { store(m_icon, icon); }
void PeripheralItem::setWarning(const bool& warning) { store(m_warning, warning); }
void PeripheralItem::setBlueWarning(const bool& blueWarning) { store(m_blueWarning, blueWarning); }
void PeripheralItem::setYellowWarning(const bool& yellowWarning)
{
    store(m_yellowWarning, yellowWarning);
}
void PeripheralItem::setError(const bool& error) { store(m_error, error); }
void PeripheralItem::setDeviceState(const int& deviceState) { store(m_deviceState, deviceState); }
void PeripheralItem::setStateStr(const QString& stateStr) { store(m_stateStr, stateStr); }
