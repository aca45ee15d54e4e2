// A program of GuiCore's that knows no core library. What it prints of the selection grid comes
// from the one that was loaded.

#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"

#include <QCoreApplication>

#include <iostream>

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    PassengerTypesModel grid(&application);
    std::cout << "fare products logged: " << grid.logFareProducts() << '\n';

    const QStringList types{QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1")};
    grid.setSupportedPassengerTypeCodes(types);
    for (int type = 0; type < types.size(); ++type)
        grid.addItem(type, types.at(type), types.at(type), QString(), 1.5, 7,
                     QStringLiteral("Single"), false, 1, 2, QStringLiteral("#336699"), false, 0.0,
                     false, -1);
    grid.sortAndRegroup(types, types.size());
    for (int row = 0; row < grid.rowCount(); ++row)
        std::cout << qPrintable(
                         static_cast<PassengerTypeItem*>(grid.itemFromRow(row))->description())
                  << '\n';
    return 0;
}
