#include "OfferWriter.h"

#include <Amount.h>
#include <FeedProblem.h>
#include <TextTable.h>

#include <QJsonArray>

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

QString offersTable(const Tariff& tariff, const QVector<Offer>& offers)
{
    TextTable table(TextTable::Spacing::None);
    addHeader(table, {QStringLiteral("amount"), QStringLiteral("product"), QStringLiteral("name"),
                      QStringLiteral("rider"), QStringLiteral("media"), QStringLiteral("from"),
                      QStringLiteral("to"), QStringLiteral("kind")});
    for (const Offer& offer : offers)
        table.addRow({cell(amountText(offer.amount, tariff.decimals), true),
                      cell(tariff.productIds.text(offer.product)), cell(offer.name),
                      cell(tariff.categoryIds.text(offer.category)),
                      cell(mediaOf(tariff, offer).join(QLatin1String(", "))),
                      cell(tariff.areaIds.text(offer.fromArea)),
                      cell(tariff.areaIds.text(offer.toArea)), cell(kindOf(offer))});
    return table.toString(false);
}

QString leftOutTable(const Tariff& tariff, const QVector<LeftOutProduct>& leftOut)
{
    TextTable table(TextTable::Spacing::None);
    addHeader(table, {QStringLiteral("product"), QStringLiteral("reason")});
    for (const LeftOutProduct& product : leftOut)
        table.addRow(
            {cell(tariff.productIds.text(product.product)), cell(reasonText(product.reason))});
    return table.toString(false);
}

} // namespace

QJsonObject offersAsJson(const Tariff& tariff, const OfferList& list)
{
    QJsonArray offers;
    for (const Offer& offer : list.offers)
        offers.append(jsonOf(tariff, offer));
    QJsonArray leftOut;
    for (const LeftOutProduct& product : list.leftOut)
        leftOut.append(QJsonObject{
            {QStringLiteral("fare_product_id"), tariff.productIds.text(product.product)},
            {QStringLiteral("reason"), reasonText(product.reason)}});
    return {{QStringLiteral("currency"), tariff.currency},
            {QStringLiteral("offers"), offers},
            {QStringLiteral("leftOut"), leftOut}};
}

QByteArray offersAsText(const Feed& feed, const OfferList& list)
{
    const QString name =
        feed.name.isEmpty() ? QString() : printable(feed.name) + QLatin1String(": ");
    QString text = QStringLiteral("%1%2 offers, prices in %3\n\n")
                       .arg(name)
                       .arg(list.offers.size())
                       .arg(feed.currency);
    if (!list.offers.isEmpty())
        text += offersTable(*feed.tariff, list.offers);
    if (!list.leftOut.isEmpty())
        text += QStringLiteral("\n%1 products left out\n\n").arg(list.leftOut.size()) +
                leftOutTable(*feed.tariff, list.leftOut);
    return text.toUtf8();
}
