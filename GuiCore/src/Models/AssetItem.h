#pragma once

#include "GuiCoreExport.h"
#include "ListItem.h"
#include "QHashStaticInit.h"

#include <QByteArray>
#include <QGeoCoordinate>
#include <QHash>
#include <QString>
#include <QVariant>

/// The role table of AssetItem.
struct GUICORE_EXPORT AssetItemRolesHandling
{
    /// Role number to the name that QML uses.
    static const rivo::models::QHashStaticInit<int, QByteArray> ASSETS_HASH_TABLE;
};

/// One vehicle of the fleet. A row of AssetsModel; give it a QObject parent, best the model.
///
/// Setters store and emit dataChanged() once if the value differs; the exceptions are noted.
class GUICORE_EXPORT AssetItem : public rivo::models::ListItem
{
    Q_OBJECT

public:
    /// Role numbers; QML uses the names in ASSETS_HASH_TABLE.
    enum Role {
        IdRole = 257,
        RegistrationNumberRole = 258,
        InternalNumberRole = 259,
        DrivingStatusRole = 260,
        RouteStatusRole = 261,
        RouteIdRole = 262,
        RouteNameRole = 263,
        AssetCoordinateRole = 264,
        InViewRole = 265,
        DirectionRole = 266
    };

    /// A vehicle with empty texts, identifiers -1, an invalid coordinate, direction 0 and flags
    /// false.
    explicit AssetItem(QObject* parent = nullptr);

    /// All fields in their order.
    AssetItem(const int& id, const QString& registrationNumber, const QString& internalNumber,
              const QString& drivingStatus, const QString& routeStatus, const int& routeId,
              const QString& routeName, const QGeoCoordinate& assetCoordinate, const bool& updated,
              const bool& inView, const double& direction, QObject* parent);

    ~AssetItem() override;

    int id() const override; ///< vehicle identifier
    QVariant data(int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString registrationNumber() const { return m_registrationNumber; } ///< licence plate
    QString internalNumber() const { return m_internalNumber; } ///< the operator's own number
    QString drivingStatus() const { return m_drivingStatus; }
    QString routeStatus() const { return m_routeStatus; }
    int routeId() const { return m_routeId; }
    QString routeName() const { return m_routeName; }
    QGeoCoordinate assetCoordinate() const { return m_assetCoordinate; } ///< invalid if unknown
    bool updated() const { return m_updated; }       ///< the application's own mark; has no role
    bool inView() const { return m_inView; }         ///< the application's: whether views show it
    double direction() const { return m_direction; } ///< degrees clockwise from north, as given

    void setId(const int& value);
    void setRegistrationNumber(const QString& value);
    void setInternalNumber(const QString& value);
    void setDrivingStatus(const QString& value);
    void setRouteStatus(const QString& value);
    void setRouteId(const int& value);
    void setRouteName(const QString& value);
    /// Compares as QGeoCoordinate does: fuzzily, and at a pole without the longitude.
    void setAssetCoordinate(const QGeoCoordinate& value);
    void setUpdated(const bool& value); ///< silent: stores, never emits
    void setInView(const bool& value);
    void setDirection(const double& value); ///< compares fuzzily

private:
    int m_id = -1;
    QString m_registrationNumber = QLatin1String("");
    QString m_internalNumber = QLatin1String("");
    QString m_drivingStatus = QLatin1String("");
    QString m_routeStatus = QLatin1String("");
    int m_routeId = -1;
    QString m_routeName = QLatin1String("");
    QGeoCoordinate m_assetCoordinate;
    bool m_updated = false;
    bool m_inView = false;
    double m_direction = 0.0;
};
