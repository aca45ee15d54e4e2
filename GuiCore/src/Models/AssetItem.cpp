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

void AssetItem::setId(const int& id) { store(m_id, id); }
void AssetItem::setRegistrationNumber(const QString& registrationNumber)
{
    store(m_registrationNumber, registrationNumber);
}
void AssetItem::setInternalNumber(const QString& internalNumber)
{
    store(m_internalNumber, internalNumber);
}
void AssetItem::setDrivingStatus(const QString& drivingStatus)
{
    store(m_drivingStatus, drivingStatus);
}
void AssetItem::setRouteStatus(const QString& routeStatus) { store(m_routeStatus, routeStatus); }
void AssetItem::setRouteId(const int& routeId) { store(m_routeId, routeId); }
void AssetItem::setRouteName(const QString& routeName) { store(m_routeName, routeName); }
void AssetItem::setAssetCoordinate(const QGeoCoordinate& assetCoordinate)
{
    store(m_assetCoordinate, assetCoordinate);
}
void AssetItem::setUpdated(const bool& updated) { m_updated = updated; }
void AssetItem::setInView(const bool& inView) { store(m_inView, inView); }
void AssetItem::setDirection(const double& direction) { storeFuzzy(m_direction, direction); }
