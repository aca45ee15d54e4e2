// Prints what the models show, and works with whichever core library is loaded. It knows none.

#include "AssetsModel.h"
#include "FareProductsModel.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PeripheralsModel.h"
#include "ShoppingBasketModel.h"
#include "ZReportModel.h"
#include "addProduct.h"

#include <QCoreApplication>

#include <iostream>

namespace
{

void printRoles(const rivo::models::ListModel& model)
{
    const QHash<int, QByteArray> names = model.roleNames();
    QList<int> roles = names.keys();
    std::sort(roles.begin(), roles.end());
    std::cout << model.metaObject()->className();
    for (const int role : qAsConst(roles))
        std::cout << ' ' << role << '=' << names.value(role).constData();
    std::cout << '\n';
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QObject owner;
    printRoles(*new AssetsModel(&owner));
    printRoles(*new FareProductsModel(&owner));
    printRoles(*new PeripheralsModel(&owner));
    printRoles(*new ShoppingBasketModel(&owner));
    printRoles(*new ZReportModel(&owner));
    auto* grid = new PassengerTypesModel(&owner);
    printRoles(*grid);

    std::cout << "dumps: " << grid->logFareProducts() << '\n';
    const QStringList types{QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1")};
    grid->setLogFareProducts(false);
    grid->setSupportedPassengerTypeCodes(types);
    for (const QString& type : types) {
        sProduct product;
        product.description = type;
        product.passengerTypeCode = PassengerTypesModel::codeMap.value(type);
        addProduct(*grid, product);
    }
    grid->sortAndRegroup(types, types.size());
    for (int row = 0; row < grid->rowCount(); ++row)
        std::cout << qPrintable(
                         static_cast<PassengerTypeItem*>(grid->itemFromRow(row))->description())
                  << '\n';
    return 0;
}
