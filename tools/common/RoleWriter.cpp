#include "RoleWriter.h"

#include "TextTable.h"

#include <Feed.h>
#include <FeedProblem.h>
#include <ListItem.h>
#include <ListModel.h>
#include <PassengerTypesModel.h>

#include <QDateTime>
#include <QGeoCoordinate>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QMap>
#include <QMetaProperty>

#include <csv.h>

using rivo::feed::Feed;
using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// Role numbers in ascending order with their names.
QMap<int, QString> rolesOf(const ListModel& model)
{
    QMap<int, QString> roles;
    const QHash<int, QByteArray> names = model.roleNames();
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        roles.insert(name.key(), QString::fromLatin1(name.value()));
    return roles;
}

QVariant valueOf(const ListModel& model, int row, int role)
{
    return model.data(model.index(row, 0), role);
}

QString number(double value)
{
    return QString::fromLatin1(QByteArray::number(value, 'g', QLocale::FloatingPointShortest));
}

QString isoText(const QDateTime& date)
{
    if (!date.isValid())
        return {};
    // A local time would be written without an offset.
    return date.toOffsetFromUtc(date.offsetFromUtc())
        .toString(date.time().msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
}

QString positionText(const QGeoCoordinate& position)
{
    if (!position.isValid())
        return {};
    QStringList numbers{number(position.latitude()), number(position.longitude())};
    if (position.type() == QGeoCoordinate::Coordinate3D)
        numbers.append(number(position.altitude()));
    return numbers.join(QLatin1Char(' '));
}

bool isPosition(const QVariant& value) { return value.userType() == qMetaTypeId<QGeoCoordinate>(); }

bool isNumber(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Double:
        return true;
    default:
        return false;
    }
}

QString textOf(const QVariant& value)
{
    if (isPosition(value))
        return positionText(value.value<QGeoCoordinate>());
    switch (value.userType()) {
    case QMetaType::Double:
        return number(value.toDouble());
    case QMetaType::QDateTime:
        return isoText(value.toDateTime());
    default:
        return value.toString();
    }
}

TextCell cellOf(const QString& text, bool isRightAligned)
{
    TextCell cell;
    cell.lines = {isRightAligned ? TextCell::Line{{}, text} : TextCell::Line{text, {}}};
    return cell;
}

QJsonValue positionJson(const QGeoCoordinate& position)
{
    if (!position.isValid())
        return QJsonValue::Null;
    const bool hasAltitude = position.type() == QGeoCoordinate::Coordinate3D;
    return QJsonObject{{QStringLiteral("latitude"), position.latitude()},
                       {QStringLiteral("longitude"), position.longitude()},
                       {QStringLiteral("altitude"), hasAltitude ? QJsonValue(position.altitude())
                                                                : QJsonValue(QJsonValue::Null)}};
}

QJsonValue jsonOf(const QVariant& value)
{
    if (isPosition(value))
        return positionJson(value.value<QGeoCoordinate>());
    if (value.userType() != QMetaType::QDateTime)
        return QJsonValue::fromVariant(value);
    const QString date = isoText(value.toDateTime());
    return date.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(date);
}

/// The Qt properties that the class of the row adds to those of every row.
QJsonObject propertiesOf(const ListItem& item)
{
    QJsonObject values;
    const QMetaObject* type = item.metaObject();
    for (int i = ListItem::staticMetaObject.propertyCount(); i < type->propertyCount(); ++i) {
        const QMetaProperty property = type->property(i);
        values.insert(QLatin1String(property.name()), jsonOf(property.read(&item)));
    }
    return values;
}

QByteArray csvFieldOf(const QVariant& value)
{
    QByteArray text = textOf(value).toUtf8();
    if (value.userType() != QMetaType::QString)
        return text;
    const auto size = static_cast<size_t>(text.size());
    QByteArray field(2 * text.size() + 2, Qt::Uninitialized);
    field.resize(static_cast<int>(
        ::csv_write(field.data(), static_cast<size_t>(field.size()), text.constData(), size)));
    return field;
}

} // namespace

QByteArray modelAsText(const Feed& feed, const QString& title, const ListModel& model)
{
    const QMap<int, QString> roles = rolesOf(model);
    const int rows = model.rowCount();
    TextTable table(TextTable::Spacing::None);
    QVector<TextCell> header;
    for (auto role = roles.cbegin(); role != roles.cend(); ++role)
        header.append(cellOf(role.value(), isNumber(valueOf(model, 0, role.key()))));
    table.addRow(header);
    for (int row = 0; row < rows; ++row) {
        QVector<TextCell> cells;
        for (auto role = roles.cbegin(); role != roles.cend(); ++role) {
            const QVariant value = valueOf(model, row, role.key());
            cells.append(cellOf(textOf(value), isNumber(value)));
        }
        table.addRow(cells);
    }
    const QString name =
        feed.name.isEmpty() ? QString() : rivo::feed::printable(feed.name) + QStringLiteral(": ");
    const QString summary =
        (rows == 1 ? QStringLiteral("%1%2, %3 row\n\n") : QStringLiteral("%1%2, %3 rows\n\n"))
            .arg(name, title, QString::number(rows));
    return (summary + table.toString(false)).toUtf8();
}

QByteArray modelAsJson(const Feed& feed, const ListModel& model)
{
    const QMap<int, QString> roles = rolesOf(model);
    QJsonArray rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QJsonObject values;
        for (auto role = roles.cbegin(); role != roles.cend(); ++role)
            values.insert(role.value(), jsonOf(valueOf(model, row, role.key())));
        const QJsonObject properties = propertiesOf(*model.itemFromRow(row));
        if (!properties.isEmpty())
            values.insert(QStringLiteral("properties"), properties);
        rows.append(values);
    }
    QJsonObject document{{QStringLiteral("name"), feed.name},
                         {QStringLiteral("currency"), feed.currency},
                         {QStringLiteral("rows"), rows}};
    if (const auto* grid = qobject_cast<const PassengerTypesModel*>(&model)) {
        document.insert(QStringLiteral("numberOfColumns"), grid->numberOfColumns());
        document.insert(QStringLiteral("numberOfRows"), grid->numberOfRows());
    }
    return QJsonDocument(document).toJson();
}

QByteArray modelAsCsv(const ListModel& model)
{
    const QMap<int, QString> roles = rolesOf(model);
    QByteArrayList header;
    for (const QString& name : roles)
        header.append(name.toLatin1());
    QByteArray csv = header.join(',') + "\r\n";
    for (int row = 0; row < model.rowCount(); ++row) {
        QByteArrayList fields;
        for (auto role = roles.cbegin(); role != roles.cend(); ++role)
            fields.append(csvFieldOf(valueOf(model, row, role.key())));
        csv += fields.join(',') + "\r\n";
    }
    return csv;
}
