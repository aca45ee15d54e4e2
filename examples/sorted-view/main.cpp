// A fleet in the order of its routes, without the vehicles that are not in service: KItemModels'
// KSortFilterProxyModel does both in QML. The order of the model itself stays.
#include "../Example.h"

#include <AssetItem.h>
#include <AssetsModel.h>

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    QObject owner; // of the model and its prototype
    AssetsModel fleet(&owner);
    const QStringList routes{QStringLiteral("Harbour"), QString(), QStringLiteral("Airport"),
                             QStringLiteral("Castle")};
    QVector<rivo::models::ListItem*> rows;
    for (int id = 1; id <= routes.size(); ++id) {
        auto* row = new AssetItem(&fleet);
        row->setId(id);
        row->setInternalNumber(QStringLiteral("Bus %1").arg(id));
        row->setRouteName(routes.at(id - 1));
        rows.append(row);
    }
    fleet.appendRows(rows);
    return runExample(application, {{QStringLiteral("fleet"), QVariant::fromValue(&fleet)}},
                      [&](QObject& window) {
                          // Silent: the view is asked to read the rows anew.
                          fleet.sort(0, Qt::DescendingOrder);
                          QMetaObject::invokeMethod(&window, "orderAnew");
                          QVariant shown;
                          QMetaObject::invokeMethod(&window, "shown",
                                                    Q_RETURN_ARG(QVariant, shown));
                          return shown.toString();
                      });
}
