#include "ItemSetters.h"

#include "LibraryModels.h"

#include <QDateTime>
#include <QGeoCoordinate>
#include <QSignalSpy>

#include <algorithm>
#include <climits>

using rivo::models::ListItem;

namespace
{

/// Values of all roles in the order of their numbers.
QVariantList shown(const ListItem& item)
{
    QList<int> roles = item.roleNames().keys();
    std::sort(roles.begin(), roles.end());
    QVariantList values;
    for (int role : qAsConst(roles))
        values.append(item.data(role));
    return values;
}

/// How often the item announces something while these values are set in turn.
int announcements(ListItem& item, const ItemSetter& setter, const QVariantList& values)
{
    QSignalSpy changes(&item, &ListItem::dataChanged);
    for (const QVariant& value : values)
        setter.set(item, value);
    return changes.count();
}

} // namespace

QVariant ItemSetter::sample(int n) const
{
    switch (type) {
    case QMetaType::Bool:
        return n != 0;
    case QMetaType::UInt:
        return UINT_MAX - uint(n);
    case QMetaType::Double:
        return 5.0 + n;
    case QMetaType::QDateTime:
        return QDateTime::fromSecsSinceEpoch(n);
    case QMetaType::QVariantList:
        return QVariantList{n};
    default:
        break;
    }
    if (type == qMetaTypeId<QGeoCoordinate>())
        return QVariant::fromValue(QGeoCoordinate(n, n));
    QVariant value(QString::number(4711 + n));
    if (!value.convert(type))
        qFatal("%s has no sample values", qPrintable(name));
    return value;
}

QString ItemSetter::field() const { return name.at(3).toLower() + name.mid(4); }

QString ItemSetters::announcement(const ItemSetter& setter) const
{
    const QVariant stored = setter.sample(0);
    const QVariant other = setter.sample(1);
    QObject owner;
    ListItem* item = itemClass.make(&owner);
    setter.set(*item, stored);
    if (announcements(*item, setter, {other}) == 0)
        return QStringLiteral("silent");

    if (announcements(*item, setter, {other}) != 0) {
        for (const ItemSetter& field : setters) {
            if (field.type != setter.type)
                continue;
            ListItem* fresh = itemClass.make(&owner);
            field.set(*fresh, stored);
            if (announcements(*fresh, setter, {stored}) == 0)
                return "against " + field.field();
        }
        return QStringLiteral("always");
    }

    if (setter.type != QMetaType::Double)
        return {};
    return announcements(*item, setter, {other.toDouble() + 1e-13}) == 0 ? QStringLiteral("fuzzy")
                                                                         : QStringLiteral("exact");
}

bool ItemSetters::hasRole(const ItemSetter& setter) const
{
    QObject owner;
    ListItem* item = itemClass.make(&owner);
    setter.set(*item, setter.sample(0));
    const QVariantList before = shown(*item);
    setter.set(*item, setter.sample(1));
    return shown(*item) != before;
}

ItemSetters settersOfRows(const QString& modelClass)
{
    const LibraryModel& model = libraryModel(modelClass);
    ItemSetters rows{model.itemType->className(), model.itemClass, {}};
    for (const ItemField& field : model.itemClass.fields) {
        if (field.set)
            rows.setters.append({setterName(field), field.initial.userType(), field.set});
    }
    return rows;
}

QString setterName(const ItemField& field)
{
    const QString name = QString::fromLatin1(field.name);
    return QStringLiteral("set") + name.at(0).toUpper() + name.mid(1);
}
