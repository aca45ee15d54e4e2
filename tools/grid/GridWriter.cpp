#include "GridWriter.h"

#include <GridLayout.h>
#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <TextTable.h>

#include <QLocale>

#include <algorithm>

using rivo::feed::Feed;

namespace
{

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
        .arg(rowsOf(model))
        .arg(model.getNumberOfNonExpiredProducts())
        .arg(feed.currency.isEmpty() ? QStringLiteral("?") : feed.currency);
}

} // namespace

QByteArray gridAsText(const Feed& feed, PassengerTypesModel& model, bool withColours)
{
    QVector<const PassengerTypeItem*> tiles = tilesOf(model);
    QVector<const PassengerTypeItem*> daily;
    while (!tiles.isEmpty() && tiles.last()->isDaily())
        daily.prepend(tiles.takeLast());

    const int columns = qMax(1, model.numberOfColumns());
    TextTable table(TextTable::Spacing::BlankLine);
    addGrid(table, tiles, columns, feed);
    if (!daily.isEmpty())
        table.addHeading(QStringLiteral("Daily products"));
    for (const PassengerTypeItem* tile : qAsConst(daily))
        table.addRow({cellOf(*tile, feed)});
    return (summary(feed, model) + QLatin1Char('\n') + table.toString(withColours)).toUtf8();
}
