#include "OfferWriter.h"

#include <Amount.h>
#include <FeedProblem.h>
#include <StandardOutput.h>
#include <TextTable.h>

#include <QJsonArray>
#include <QJsonObject>

#include <utility>

using namespace rivo::feed;

namespace
{

QStringList mediaOf(const Tariff& tariff, const Offer& offer)
{
    QStringList media;
    for (const int medium : offer.media)
        media.append(tariff.mediumIds.text(medium));
    return media;
}

QString kindOf(const Offer& offer)
{
    return offer.isPass ? QStringLiteral("pass") : QStringLiteral("leg");
}

QJsonObject jsonOf(const Tariff& tariff, const Offer& offer)
{
    return {{QStringLiteral("fare_product_id"), tariff.productIds.text(offer.product)},
            {QStringLiteral("fare_product_name"), offer.name},
            {QStringLiteral("rider_category_id"), tariff.categoryIds.text(offer.category)},
            {QStringLiteral("fare_media_ids"), QJsonArray::fromStringList(mediaOf(tariff, offer))},
            {QStringLiteral("from_area_id"), tariff.areaIds.text(offer.fromArea)},
            {QStringLiteral("to_area_id"), tariff.areaIds.text(offer.toArea)},
            {QStringLiteral("amount"), amountText(offer.amount, tariff.decimals)},
            {QStringLiteral("kind"), kindOf(offer)}};
}

TextCell cell(const QString& text, bool isRight = false)
{
    TextCell cell;
    cell.lines = {isRight ? TextCell::Line{{}, text} : TextCell::Line{text, {}}};
    return cell;
}

void addHeader(TextTable& table, const QStringList& names)
{
    QVector<TextCell> cells;
    for (const QString& name : names)
        cells.append(cell(name));
    table.addRow(cells);
}

/// Rows that are written at once; the columns of each part are aligned.
constexpr int rowsOfPart = 10'000;

QJsonObject jsonOf(const Tariff& tariff, const LeftOutProduct& product)
{
    return {{QStringLiteral("fare_product_id"), tariff.productIds.text(product.product)},
            {QStringLiteral("reason"), reasonText(product.reason)}};
}

QVector<TextCell> rowOf(const Tariff& tariff, const Offer& offer)
{
    return {cell(amountText(offer.amount, tariff.decimals), true),
            cell(tariff.productIds.text(offer.product)),
            cell(offer.name),
            cell(tariff.categoryIds.text(offer.category)),
            cell(mediaOf(tariff, offer).join(QLatin1String(", "))),
            cell(tariff.areaIds.text(offer.fromArea)),
            cell(tariff.areaIds.text(offer.toArea)),
            cell(kindOf(offer))};
}

QVector<TextCell> rowOf(const Tariff& tariff, const LeftOutProduct& product)
{
    return {cell(tariff.productIds.text(product.product)), cell(reasonText(product.reason))};
}

/// A table of `rows` below the names of its columns.
template <class Row>
bool writeTable(const Tariff& tariff, const QVector<Row>& rows, const QStringList& names)
{
    bool isWritten = true;
    for (int first = 0; isWritten && first < rows.size(); first += rowsOfPart) {
        TextTable table(TextTable::Spacing::None);
        if (first == 0)
            addHeader(table, names);
        for (int i = first; i < qMin(rows.size(), first + rowsOfPart); ++i)
            table.addRow(rowOf(tariff, rows.at(i)));
        isWritten = writeToStandardOutput(table.toString(false).toUtf8());
    }
    return isWritten;
}

/// The objects of `rows` as the content of a list, written as QJsonDocument does.
template <class Row>
bool writeList(const Tariff& tariff, const QVector<Row>& rows, QJsonDocument::JsonFormat format)
{
    const bool isCompact = format == QJsonDocument::Compact;
    QByteArray part;
    bool isWritten = true;
    for (int i = 0; isWritten && i < rows.size(); ++i) {
        QByteArray object = QJsonDocument(jsonOf(tariff, rows.at(i))).toJson(format).trimmed();
        if (!isCompact)
            object.prepend('\n').replace('\n', "\n        ");
        part += (i > 0 ? "," : "") + object;
        if (i % rowsOfPart == rowsOfPart - 1)
            isWritten = writeToStandardOutput(std::exchange(part, {}));
    }
    return isWritten && writeToStandardOutput(part);
}

} // namespace

bool writeAsJson(const Tariff& tariff, const OfferList& list, QJsonDocument::JsonFormat format)
{
    const bool isCompact = format == QJsonDocument::Compact;
    const QByteArray key = isCompact ? "\"" : "\n    \"";
    const QByteArray colon = isCompact ? "\":" : "\": ";
    const QByteArray endOfList = isCompact ? "]" : "\n    ]";
    return writeToStandardOutput('{' + key + "currency" + colon + '"' + tariff.currency.toUtf8() +
                                 "\"," + key + "leftOut" + colon + '[') &&
           writeList(tariff, list.leftOut, format) &&
           writeToStandardOutput(endOfList + ',' + key + "offers" + colon + '[') &&
           writeList(tariff, list.offers, format) &&
           writeToStandardOutput(endOfList + (isCompact ? "}\n" : "\n}\n"));
}

bool writeAsText(const Feed& feed, const OfferList& list)
{
    const QString name =
        feed.name.isEmpty() ? QString() : printable(feed.name) + QLatin1String(": ");
    const QString headline = QStringLiteral("%1%2 offers, prices in %3\n\n")
                                 .arg(name, QString::number(list.offers.size()), feed.currency);
    const QString between =
        list.leftOut.isEmpty()
            ? QString()
            : QStringLiteral("\n%1 products left out\n\n").arg(list.leftOut.size());
    return writeToStandardOutput(headline.toUtf8()) &&
           writeTable(*feed.tariff, list.offers,
                      {QStringLiteral("amount"), QStringLiteral("product"), QStringLiteral("name"),
                       QStringLiteral("rider"), QStringLiteral("media"), QStringLiteral("from"),
                       QStringLiteral("to"), QStringLiteral("kind")}) &&
           writeToStandardOutput(between.toUtf8()) &&
           writeTable(*feed.tariff, list.leftOut,
                      {QStringLiteral("product"), QStringLiteral("reason")});
}
