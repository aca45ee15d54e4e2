#include "GridWriter.h"

#include "TextTable.h"

#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QMap>

#include <csv.h>

#include <algorithm>

using rivo::feed::Feed;

namespace
{

QVector<const PassengerTypeItem*> tilesOf(const PassengerTypesModel& model)
{
    QVector<const PassengerTypeItem*> tiles;
    for (int row = 0; row < model.rowCount(); ++row)
        tiles.append(qobject_cast<const PassengerTypeItem*>(model.itemFromRow(row)));
    return tiles;
}

bool isPlaceholder(const PassengerTypeItem& tile)
{
    static const sProduct placeholder;
    return tile.description() == placeholder.description &&
           tile.fareProductName() == placeholder.fareProductName;
}

QString amount(double price, const Feed& feed)
{
    return QLocale::c().toString(price, 'f', feed.currencyDecimals());
}

QString marks(const PassengerTypeItem& tile)
{
    QStringList marks;
    if (tile.isReturnFee())
        marks.append(QStringLiteral("return"));
    if (tile.hasExpired())
        marks.append(QStringLiteral("expired"));
    return marks.isEmpty() ? QString()
                           : QStringLiteral(" [%1]").arg(marks.join(QStringLiteral(", ")));
}

QString ride(const PassengerTypeItem& tile)
{
    if (tile.fromStopGroupId() == tile.toStopGroupId())
        return {};
    return QStringLiteral("%1>%2").arg(tile.fromStopGroupId()).arg(tile.toStopGroupId());
}

TextCell cellOf(const PassengerTypeItem& tile, const Feed& feed)
{
    TextCell cell;
    const QString position = tile.pos() > 0 ? QStringLiteral("#%1 ").arg(tile.pos()) : QString();
    if (isPlaceholder(tile)) {
        cell.style = TextCell::Style::Inert;
        cell.lines = {{position + QStringLiteral("--"), {}}};
        return cell;
    }
    cell.style = tile.hasExpired() ? TextCell::Style::Inert : TextCell::Style::Plain;
    cell.colour = tile.fareProductColor();
    cell.lines = {{position + tile.description() + marks(tile), ride(tile)},
                  {tile.fareProductName(), amount(tile.price(), feed)}};
    return cell;
}

/// "Zone 2" or "Zones 2, 3": the destinations of a grid row; empty for placeholders alone.
QString zonesOf(const QVector<const PassengerTypeItem*>& row)
{
    QVector<int> zones;
    for (const PassengerTypeItem* tile : row) {
        if (!isPlaceholder(*tile) && !zones.contains(tile->toStopGroupId()))
            zones.append(tile->toStopGroupId());
    }
    std::sort(zones.begin(), zones.end());
    QStringList texts;
    for (const int zone : qAsConst(zones))
        texts.append(QString::number(zone));
    if (texts.isEmpty())
        return {};
    return (texts.size() == 1 ? QStringLiteral("Zone %1") : QStringLiteral("Zones %1"))
        .arg(texts.join(QStringLiteral(", ")));
}

void addGrid(TextTable& table, const QVector<const PassengerTypeItem*>& tiles, int columns,
             const Feed& feed)
{
    const bool isPositioned =
        std::any_of(tiles.cbegin(), tiles.cend(),
                    [](const PassengerTypeItem* tile) { return tile->pos() != -1; });
    if (isPositioned)
        table.addHeading(QStringLiteral("By position"));
    QString lastHeading;
    for (int first = 0; first < tiles.size(); first += columns) {
        const QVector<const PassengerTypeItem*> row = tiles.mid(first, columns);
        const QString heading = zonesOf(row);
        if (!isPositioned && !heading.isEmpty() && heading != lastHeading)
            table.addHeading(lastHeading = heading);
        QVector<TextCell> cells;
        for (const PassengerTypeItem* tile : row)
            cells.append(cellOf(*tile, feed));
        table.addRow(cells);
    }
}

QString summary(const Feed& feed, PassengerTypesModel& model)
{
    const QString name = feed.name.isEmpty() ? QString() : feed.name + QStringLiteral(": ");
    return QStringLiteral("%1%2 columns x %3 rows, %4 products for sale, prices in %5")
        .arg(name)
        .arg(model.numberOfColumns())
        .arg(model.numberOfRows())
        .arg(model.getNumberOfNonExpiredProducts())
        .arg(feed.currency.isEmpty() ? QStringLiteral("?") : feed.currency);
}

/// Role numbers in ascending order with their names.
QMap<int, QString> roles(const PassengerTypesModel& model)
{
    QMap<int, QString> roles;
    const QHash<int, QByteArray> names = model.roleNames();
    for (auto name = names.cbegin(); name != names.cend(); ++name)
        roles.insert(name.key(), QString::fromLatin1(name.value()));
    return roles;
}

QByteArray csvField(const QVariant& value)
{
    if (value.userType() != QMetaType::QString)
        return value.userType() == QMetaType::Double
                   ? QByteArray::number(value.toDouble(), 'g', QLocale::FloatingPointShortest)
                   : value.toString().toLatin1();
    const QByteArray text = value.toString().toUtf8();
    const auto size = static_cast<size_t>(text.size());
    QByteArray field(2 * text.size() + 2, Qt::Uninitialized);
    field.resize(static_cast<int>(
        ::csv_write(field.data(), static_cast<size_t>(field.size()), text.constData(), size)));
    return field;
}

} // namespace

QByteArray gridAsText(const Feed& feed, PassengerTypesModel& model, bool withColours)
{
    QVector<const PassengerTypeItem*> tiles = tilesOf(model);
    QVector<const PassengerTypeItem*> daily;
    while (!tiles.isEmpty() && tiles.last()->isDaily())
        daily.prepend(tiles.takeLast());

    TextTable table;
    addGrid(table, tiles, qMax(1, model.numberOfColumns()), feed);
    if (!daily.isEmpty())
        table.addHeading(QStringLiteral("Daily products"));
    for (const PassengerTypeItem* tile : qAsConst(daily))
        table.addRow({cellOf(*tile, feed)});
    return (summary(feed, model) + QLatin1Char('\n') + table.toString(withColours)).toUtf8();
}

QByteArray gridAsJson(const Feed& feed, const PassengerTypesModel& model)
{
    const QMap<int, QString> names = roles(model);
    QJsonArray rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        QJsonObject tile;
        for (auto role = names.cbegin(); role != names.cend(); ++role)
            tile.insert(role.value(),
                        QJsonValue::fromVariant(model.data(model.index(row, 0), role.key())));
        rows.append(tile);
    }
    const QJsonObject grid{{QStringLiteral("name"), feed.name},
                           {QStringLiteral("currency"), feed.currency},
                           {QStringLiteral("numberOfColumns"), model.numberOfColumns()},
                           {QStringLiteral("numberOfRows"), model.numberOfRows()},
                           {QStringLiteral("rows"), rows}};
    return QJsonDocument(grid).toJson();
}

QByteArray gridAsCsv(const PassengerTypesModel& model)
{
    const QMap<int, QString> names = roles(model);
    QByteArrayList header;
    for (const QString& name : names)
        header.append(name.toLatin1());
    QByteArray csv = header.join(',') + "\r\n";
    for (int row = 0; row < model.rowCount(); ++row) {
        QByteArrayList fields;
        for (auto role = names.cbegin(); role != names.cend(); ++role)
            fields.append(csvField(model.data(model.index(row, 0), role.key())));
        csv += fields.join(',') + "\r\n";
    }
    return csv;
}
