#include "AssetsModel.h"

#include "AssetItem.h"

AssetsModel::AssetsModel(QObject* parent) : ListModel(new AssetItem(parent), parent) {}

AssetsModel::~AssetsModel() = default;
