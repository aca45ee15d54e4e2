#pragma once

#include "AssetFields.h"
#include "AssetsModel.h"
#include "FareProductFields.h"
#include "FareProductsModel.h"
#include "PassengerTypeFields.h"
#include "PassengerTypesModel.h"
#include "PeripheralFields.h"
#include "PeripheralsModel.h"
#include "ShoppingBasketModel.h"
#include "ShoppingFields.h"
#include "ZReportFields.h"
#include "ZReportModel.h"

#include <QString>

#include <algorithm>
#include <functional>
#include <vector>

/// One model of the library and the class of its rows.
struct LibraryModel
{
    const char* name; ///< of the class
    std::function<rivo::models::ListModel*(QObject* parent)> make;
    ItemClass itemClass;
    const QMetaObject* itemType;
};

template <typename Model, typename Item>
LibraryModel describedModel(const ItemClass& itemClass)
{
    return {Model::staticMetaObject.className(), [](QObject* parent) { return new Model(parent); },
            itemClass, &Item::staticMetaObject};
}

/// All six.
inline const std::vector<LibraryModel>& libraryModels()
{
    static const std::vector<LibraryModel> models{
        describedModel<PassengerTypesModel, PassengerTypeItem>(passengerTypeItemClass()),
        describedModel<ShoppingBasketModel, ShoppingItem>(shoppingItemClass()),
        describedModel<FareProductsModel, FareProductItem>(fareProductItemClass()),
        describedModel<ZReportModel, ZReportItem>(zReportItemClass()),
        describedModel<AssetsModel, AssetItem>(assetItemClass()),
        describedModel<PeripheralsModel, PeripheralItem>(peripheralItemClass())};
    return models;
}

/// The one of this name, which must be there.
inline const LibraryModel& libraryModel(const QString& name)
{
    const std::vector<LibraryModel>& models = libraryModels();
    const auto found = std::find_if(models.cbegin(), models.cend(), [&](const LibraryModel& model) {
        return name == QLatin1String(model.name);
    });
    if (found == models.cend())
        qFatal("no model %s", qPrintable(name));
    return *found;
}
