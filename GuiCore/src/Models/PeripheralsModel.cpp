#include "PeripheralsModel.h"

#include "PeripheralItem.h"

PeripheralsModel::PeripheralsModel(QObject* parent) : ListModel(new PeripheralItem(parent), parent)
{
}

PeripheralsModel::~PeripheralsModel() = default;
