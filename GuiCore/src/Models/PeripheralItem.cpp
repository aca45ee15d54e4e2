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

namespace PeripheralItems
{
// Counts constructions for a debugger or a core dump; nothing reads it, hence marked as used.
__attribute__((used)) static int instanceCount = 0;
} // namespace PeripheralItems

PeripheralItem::PeripheralItem(QObject* parent) : ListItem(parent)
{
    ++PeripheralItems::instanceCount;
}

PeripheralItem::PeripheralItem(const int& id, const QString& name, const unsigned int& identity,
                               const QString& icon, bool warning, bool blueWarning,
                               bool yellowWarning, bool error, const int& deviceState,
                               QString stateStr, QObject* parent)
    : ListItem(parent), m_id(id), m_name(name), m_identity(identity), m_icon(icon),
      m_warning(warning), m_blueWarning(blueWarning), m_yellowWarning(yellowWarning),
      m_error(error), m_deviceState(deviceState), m_stateStr(stateStr)
{
    ++PeripheralItems::instanceCount;
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

void PeripheralItem::setId(const int& value) { store(m_id, value); }
void PeripheralItem::setName(const QString& value) { store(m_name, value); }
void PeripheralItem::setIdentity(const unsigned int& value) { store(m_identity, value); }
void PeripheralItem::setIcon(const QString& value) { store(m_icon, value); }
void PeripheralItem::setWarning(const bool& value) { store(m_warning, value); }
void PeripheralItem::setBlueWarning(const bool& value) { store(m_blueWarning, value); }
void PeripheralItem::setYellowWarning(const bool& value) { store(m_yellowWarning, value); }
void PeripheralItem::setError(const bool& value) { store(m_error, value); }
void PeripheralItem::setDeviceState(const int& value) { store(m_deviceState, value); }
void PeripheralItem::setStateStr(const QString& value) { store(m_stateStr, value); }
