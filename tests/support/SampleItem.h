#pragma once

#include "ItemFields.h"
#include "ListItem.h"

/// Smallest row: an identity and one value of any type.
class SampleItem : public rivo::models::ListItem
{
public:
    enum Role { IdRole = Qt::UserRole + 1, ValueRole };

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
    const ItemField value{
        "value",
        SampleItem::ValueRole,
        QStringLiteral("none"),
        {QStringLiteral("none"), QStringLiteral("bread"), QStringLiteral("ticket"), QString()},
        Announced::IfDifferent,
        [](const rivo::models::ListItem& item) {
            return static_cast<const SampleItem&>(item).value();
        },
        [](rivo::models::ListItem& item, const QVariant& changed) {
            static_cast<SampleItem&>(item).setValue(changed);
        }};
    return {[](QObject* parent) { return new SampleItem(0, QStringLiteral("none"), parent); },
            [](const QVariantList& v, QObject* parent) {
                return new SampleItem(v[0].toInt(), v[1], parent);
            },
            {itemField("id", SampleItem::IdRole, 0, {-1, 1, 2, 3, INT_MAX, INT_MIN},
                       &SampleItem::id, &SampleItem::setId),
             value}};
}
