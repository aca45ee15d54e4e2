#pragma once

#include "ItemFields.h"

/// Smallest row: an identity and one value of any type.
class SampleItem : public rivo::models::ListItem
{
public:
    enum Role { IdRole = Qt::UserRole + 1, ValueRole };

    explicit SampleItem(QObject* parent) : SampleItem(0, QStringLiteral("none"), parent) {}
    explicit SampleItem(int id = 0, const QVariant& value = QVariant(), QObject* parent = nullptr)
        : ListItem(parent), m_id(id), m_value(value)
    {
    }

    int id() const override { return m_id; }

    QVariant data(int role) const override
    {
        switch (role) {
        case IdRole:
            return m_id;
        case ValueRole:
            return m_value;
        default:
            return QVariant();
        }
    }

    QHash<int, QByteArray> roleNames() const override
    {
        return {{IdRole, "id"}, {ValueRole, "value"}};
    }

    QVariant value() const { return m_value; }

    void setId(const int& id) { store(m_id, id); }
    void setValue(const QVariant& value) { store(m_value, value); }

private:
    int m_id;
    QVariant m_value;
};

/// SampleItem with a text as its value.
inline ItemClass sampleItemClass()
{
    return itemClass<SampleItem>(
        field("id", 0, &SampleItem::id, &SampleItem::setId).shownAs(SampleItem::IdRole),
        field("value", QVariant("none"), &SampleItem::value, &SampleItem::setValue)
            .shownAs(SampleItem::ValueRole));
}
