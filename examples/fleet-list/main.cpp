// A list of vehicles. Every second their positions arrive anew, as from a fleet service; RowSync
// brings the rows up to date, so that the list keeps its scroll place.
#include "../Example.h"

#include <AssetItem.h>
#include <AssetsModel.h>
#include <RowSync.h>

#include <QTimer>

namespace
{

struct Vehicle
{
    int id;
    QString number;
    QString route;
    QGeoCoordinate place;
};

AssetItem* makeRow(const Vehicle& vehicle, QObject* parent)
{
    auto* row = new AssetItem(parent);
    row->setId(vehicle.id);
    row->setInternalNumber(vehicle.number);
    row->setRouteName(vehicle.route);
    row->setAssetCoordinate(vehicle.place);
    return row;
}

/// Twenty vehicles, each on its way east; every tenth second one of them ends its duty.
QVector<Vehicle> vehiclesAt(int second)
{
    QVector<Vehicle> vehicles;
    for (int id = 1; id <= 20; ++id) {
        if (second > 0 && second % 10 == id % 10)
            continue;
        vehicles.append({id, QStringLiteral("Bus %1").arg(id, 2, 10, QLatin1Char('0')),
                         QStringLiteral("Route %1").arg(1 + id % 3),
                         QGeoCoordinate(52.4 + 0.001 * id, 20.6 + 0.0005 * second)});
    }
    return vehicles;
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    QObject owner; // of the model and its prototype
    AssetsModel fleet(&owner);

    rivo::models::RowSync<AssetItem, Vehicle> sync(&Vehicle::id, &AssetItem::id, makeRow);
    sync.field(&Vehicle::route, &AssetItem::routeName, &AssetItem::setRouteName)
        .field(&Vehicle::place, &AssetItem::assetCoordinate, &AssetItem::setAssetCoordinate);
    int second = 0;
    sync.apply(fleet, vehiclesAt(second));

    QTimer feed;
    QObject::connect(&feed, &QTimer::timeout, &fleet,
                     [&] { sync.apply(fleet, vehiclesAt(++second)); });
    feed.start(1000);
    return runExample(application, {{QStringLiteral("fleet"), QVariant::fromValue(&fleet)}},
                      [&](QObject& /*window*/) {
                          const auto* first = rivo::models::rowAs<AssetItem>(fleet, 0);
                          return QStringLiteral("%1 vehicles, the first: %2 on %3")
                              .arg(fleet.rowCount())
                              .arg(first->internalNumber(), first->routeName());
                      });
}
