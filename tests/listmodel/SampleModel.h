#pragma once

#include "ListModel.h"
#include "ModelCalls.h"
#include "SampleItem.h"

/// A model of SampleItems, which it owns. Their identities count from 0: they show which row went
/// where.
class SampleModel : public rivo::models::ListModel
{
public:
    explicit SampleModel(int rows = 0, QObject* parent = nullptr) : ListModel(prototype(), parent)
    {
        for (int id = 0; id < rows; ++id)
            appendRow(newItem(id));
    }

    explicit SampleModel(const QVariantList& values) : SampleModel()
    {
        QVector<rivo::models::ListItem*> items;
        for (const QVariant& value : values)
            items << new SampleItem(items.size(), value, this);
        appendRows(items);
    }

    SampleItem* item(int row) const { return static_cast<SampleItem*>(itemFromRow(row)); }
    SampleItem* newItem(int id) { return new SampleItem(id, QVariant(), this); }
    QModelIndex anyIndex(int row, int column) const { return createIndex(row, column); }

private:
    static rivo::models::ListItem* prototype()
    {
        static SampleItem item;
        return &item;
    }
};

/// Makes a call as ModelCalls.h writes it; new rows belong to the model.
inline QString make(SampleModel& model, const QString& call)
{
    return makeCall(model, call, [&model](int id) { return model.newItem(id); });
}
