#pragma once

#include "ItemFields.h"
#include "ListModel.h"

#include <functional>
#include <vector>

/// One model of the library and the class of its rows.
struct LibraryModel
{
    const char* name; ///< of the class
    const QMetaObject* type;
    bool isMadeByQml;      ///< QML may create one
    std::size_t addedSize; ///< in bytes, beyond that of the base
    std::function<rivo::models::ListModel*(QObject* parent)> make;
    /// For QAbstractItemModelTester; see TopLevelOnly.h.
    std::function<rivo::models::ListModel*(QObject* parent)> makeTopLevelOnly;
    ItemClass itemClass;
};

/// All six.
const std::vector<LibraryModel>& libraryModels();

/// The one of this name, which must be there.
const LibraryModel& libraryModel(const QString& name);

/// The class of the rows of that model.
inline const ItemClass& rowsOf(const QString& modelName)
{
    return libraryModel(modelName).itemClass;
}

/// Test data: a row for each model, which then is libraryModel(QTest::currentDataTag()).
void everyModel();
