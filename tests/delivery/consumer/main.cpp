// What an application does with the library: fills the grid, derives a row and a model of its own,
// reads the configuration and logs into the shared storage.
#include <core/Logging.h>

#include <AssetItem.h>
#include <AssetsModel.h>
#include <FareProductsModel.h>
#include <ListItem.h>
#include <ListModel.h>
#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <PeripheralsModel.h>
#include <ShoppingBasketModel.h>
#include <ZReportModel.h>
#include <core/ConfigManager.h>
#include <core/SettingsConfig.h>

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

namespace
{

class Stop : public rivo::models::ListItem
{
public:
    using ListItem::ListItem;

    int id() const override { return 42; }
    QVariant data(int role) const override { return role == 257 ? QVariant(id()) : QVariant(); }
    QHash<int, QByteArray> roleNames() const override { return {{257, "id"}}; }
};

class Stops : public rivo::models::ListModel
{
public:
    Stops() : ListModel(&m_stop, nullptr) {}

private:
    Stop m_stop;
};

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QTextStream out(stdout);

    QObject owner; // of the models, and so of their prototypes
    PassengerTypesModel grid(&owner);
    grid.setSupportedPassengerTypeCodes({QStringLiteral("PT_ADULT")});
    grid.addItem(1, QStringLiteral("Adult"), QStringLiteral("PT_ADULT"), QString(), 1.9, 7,
                 QStringLiteral("Single"), false, 10, 10, QString(), false, 0.0, false, -1);
    grid.sortAndRegroup({QStringLiteral("PT_ADULT")}, 0);
    out << "grid " << grid.getNumberOfNonExpiredProducts() << ' ' << grid.getFareProductName(7)
        << '\n';

    Stops stops;
    int counted = 0;
    QObject::connect(&stops, &rivo::models::ListModel::countChanged,
                     [&counted](int) { ++counted; });
    stops.appendRow(new Stop(&stops));
    out << "stops " << stops.rowCount() << ' ' << stops.rowIndexFromId(42) << ' ' << counted
        << '\n';

    // Type information of the library's classes is known outside of it.
    const rivo::models::ListItem* tile = grid.itemFromRow(0);
    out << "tile " << (dynamic_cast<const PassengerTypeItem*>(tile) != nullptr) << ' '
        << (qobject_cast<const AssetItem*>(tile) == nullptr) << '\n';

    rivo::core::SettingsConfig* settings =
        rivo::core::ConfigManager::instance(QDir::homePath(), QStringLiteral("consumer"))
            ->settingsConfig();
    out << "order " << settings->passengerTypeCodesOrder().size() << '\n';

    AssetsModel assets(&owner);
    FareProductsModel fareProducts(&owner);
    PeripheralsModel peripherals(&owner);
    ShoppingBasketModel basket(&owner);
    ZReportModel reports(&owner);
    out << "empty "
        << assets.rowCount() + fareProducts.rowCount() + peripherals.rowCount() +
               basket.rowCount() + reports.rowCount()
        << '\n';

    // The logger's classes have the same layout here as in the core library, or this is no record.
    LOG(WARNING) << "consumer " << QStringLiteral("says") << ' ' << QList<int>{4, 2};
    return 0;
}
