#include "AssetItem.h"

const rivo::models::QHashStaticInit<int, QByteArray> AssetItemRolesHandling::ASSETS_HASH_TABLE{
    {AssetItem::IdRole, "id"},
    {AssetItem::RegistrationNumberRole, "registrationNumber"},
    {AssetItem::InternalNumberRole, "internalNumber"},
    {AssetItem::DrivingStatusRole, "drivingStatus"},
    {AssetItem::RouteStatusRole, "routeStatus"},
    {AssetItem::RouteIdRole, "routeId"},
    {AssetItem::RouteNameRole, "routeName"},
    {AssetItem::AssetCoordinateRole, "assetCoordinate"},
    {AssetItem::InViewRole, "inView"},
    {AssetItem::DirectionRole, "direction"},
};

AssetItem::AssetItem(QObject* parent) : ListItem(parent) {}

AssetItem::AssetItem(const int& id, const QString& registrationNumber,
                     const QString& internalNumber, const QString& drivingStatus,
                     const QString& routeStatus, const int& routeId, const QString& routeName,
                     const QGeoCoordinate& assetCoordinate, const bool& updated, const bool& inView,
                     const double& direction, QObject* parent)
    : ListItem(parent), m_id(id), m_registrationNumber(registrationNumber),
      m_internalNumber(internalNumber), m_drivingStatus(drivingStatus), m_routeStatus(routeStatus),
      m_routeId(routeId), m_routeName(routeName), m_assetCoordinate(assetCoordinate),
      m_updated(updated), m_inView(inView), m_direction(direction)
{
}

AssetItem::~AssetItem() = default;

QVariant AssetItem::data(int role) const
{
    switch (role) {
    case IdRole:
        return id();
    case RegistrationNumberRole:
        return m_registrationNumber;
    case InternalNumberRole:
        return m_internalNumber;
    case DrivingStatusRole:
        return m_drivingStatus;
    case RouteStatusRole:
        return m_routeStatus;
    case RouteIdRole:
        return m_routeId;
    case RouteNameRole:
        return m_routeName;
    case AssetCoordinateRole:
        return QVariant::fromValue(m_assetCoordinate);
    case InViewRole:
        return m_inView;
    case DirectionRole:
        return m_direction;
    default:
        return {};
    }
}

QHash<int, QByteArray> AssetItem::roleNames() const
{
    return AssetItemRolesHandling::ASSETS_HASH_TABLE.hash;
}

int AssetItem::id() const { return m_id; }

void AssetItem::setId(const int& value) { store(m_id, value); }
void AssetItem::setRegistrationNumber(const QString& value) { store(m_registrationNumber, value); }
void AssetItem::setInternalNumber(const QString& value) { store(m_internalNumber, value); }
void AssetItem::setDrivingStatus(const QString& value) { store(m_drivingStatus, value); }
void AssetItem::setRouteStatus(const QString& value) { store(m_routeStatus, value); }
void AssetItem::setRouteId(const int& value) { store(m_routeId, value); }
void AssetItem::setRouteName(const QString& value) { store(m_routeName, value); }
void AssetItem::setAssetCoordinate(const QGeoCoordinate& value) { store(m_assetCoordinate, value); }
void AssetItem::setUpdated(const bool& value) { m_updated = value; }
void AssetItem::setInView(const bool& value) { store(m_inView, value); }
void AssetItem::setDirection(const double& value) { storeFuzzy(m_direction, value); }
