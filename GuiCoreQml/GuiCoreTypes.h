#pragma once

#include "AssetItem.h"
#include "AssetsModel.h"
#include "FareProductItem.h"
#include "FareProductsModel.h"
#include "ListItem.h"
#include "ListModel.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModel.h"
#include "PeripheralItem.h"
#include "PeripheralsModel.h"
#include "PrototypeOwner.h"
#include "ShoppingBasketModel.h"
#include "ShoppingItem.h"
#include "ZReportItem.h"
#include "ZReportModel.h"

#include <QObject>
#include <QtQml>

// The types of the QML module Rivo.GuiCore 1.0. Each declaration gives a class of GuiCore its QML
// name. Both the registration with the engine and plugins.qmltypes are generated from these.

/// A type that QML can name, but not create.
#define RIVO_QML_UNCREATABLE(TYPE, NAME, REASON)                                                   \
    Q_GADGET                                                                                       \
    QML_FOREIGN(TYPE)                                                                              \
    QML_NAMED_ELEMENT(NAME)                                                                        \
    QML_UNCREATABLE(REASON)

/// A model that QML can create. It is one with its prototype, see PrototypeOwner.
///
/// Spells out what QML_FOREIGN stands for, since the two halves differ: the text names the class
/// that plugins.qmltypes describes, which moc knows; the alias is the class that QML creates, a
/// template that moc does not know.
#define RIVO_QML_CREATABLE_MODEL(TYPE)                                                             \
    Q_GADGET                                                                                       \
    Q_CLASSINFO("QML.Foreign", #TYPE)                                                              \
    QML_NAMED_ELEMENT(TYPE)                                                                        \
public:                                                                                            \
    using QmlForeignType = PrototypeOwner<TYPE>;

#define RIVO_QML_ABSTRACT_REASON "is the common base of the types of Rivo.GuiCore"
#define RIVO_QML_ITEM_REASON                                                                       \
    "is a row that the application creates; itemFromRow() of its model hands it out"
#define RIVO_QML_MODEL_REASON                                                                      \
    "is filled by the application, which creates it and shows it to QML as a context property"

struct ListItemType
{
    RIVO_QML_UNCREATABLE(rivo::models::ListItem, ListItem, "ListItem " RIVO_QML_ABSTRACT_REASON)
};

struct ListModelType
{
    RIVO_QML_UNCREATABLE(rivo::models::ListModel, ListModel, "ListModel " RIVO_QML_ABSTRACT_REASON)
};

struct PassengerTypeItemType
{
    RIVO_QML_UNCREATABLE(PassengerTypeItem, PassengerTypeItem,
                         "PassengerTypeItem " RIVO_QML_ITEM_REASON)
};

struct PassengerTypesModelType
{
    RIVO_QML_UNCREATABLE(PassengerTypesModel, PassengerTypesModel,
                         "PassengerTypesModel " RIVO_QML_MODEL_REASON)
};

struct ShoppingItemType
{
    RIVO_QML_UNCREATABLE(ShoppingItem, ShoppingItem, "ShoppingItem " RIVO_QML_ITEM_REASON)
};

struct ShoppingBasketModelType
{
    RIVO_QML_UNCREATABLE(ShoppingBasketModel, ShoppingBasketModel,
                         "ShoppingBasketModel " RIVO_QML_MODEL_REASON)
};

struct FareProductItemType
{
    RIVO_QML_UNCREATABLE(FareProductItem, FareProductItem, "FareProductItem " RIVO_QML_ITEM_REASON)
};

struct FareProductsModelType
{
    RIVO_QML_UNCREATABLE(FareProductsModel, FareProductsModel,
                         "FareProductsModel " RIVO_QML_MODEL_REASON)
};

struct ZReportItemType
{
    RIVO_QML_UNCREATABLE(ZReportItem, ZReportItem, "ZReportItem " RIVO_QML_ITEM_REASON)
};

struct ZReportModelType
{
    RIVO_QML_UNCREATABLE(ZReportModel, ZReportModel, "ZReportModel " RIVO_QML_MODEL_REASON)
};

struct AssetItemType
{
    RIVO_QML_UNCREATABLE(AssetItem, AssetItem, "AssetItem " RIVO_QML_ITEM_REASON)
};

struct AssetsModelType
{
    RIVO_QML_CREATABLE_MODEL(AssetsModel)
};

struct PeripheralItemType
{
    RIVO_QML_UNCREATABLE(PeripheralItem, PeripheralItem, "PeripheralItem " RIVO_QML_ITEM_REASON)
};

struct PeripheralsModelType
{
    RIVO_QML_CREATABLE_MODEL(PeripheralsModel)
};
