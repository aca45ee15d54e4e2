#pragma once

#include "ListItem.h"

/// A row of no class of the library; every role has the same value.
class ForeignRow : public rivo::models::ListItem
{
public:
    ForeignRow(const QVariant& value, QObject* parent) : ListItem(parent), m_value(value) {}

    int id() const override { return 0; }
    QVariant data(int) const override { return m_value; }
    QHash<int, QByteArray> roleNames() const override { return {}; }

private:
    const QVariant m_value;
};
