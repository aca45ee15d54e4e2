#include "PositionCheck.h"

#include <FeedProblem.h>
#include <GridLayout.h>
#include <PassengerTypesModel.h>

#include <QMap>
#include <QTextStream>

using rivo::feed::Feed;
using rivo::feed::FeedProduct;

namespace
{

/// Ranges of missing positions that are listed one by one.
constexpr int maximumListedHoles = 20;

using ProductsByPosition = QMap<int, QVector<const FeedProduct*>>;

QString nameOf(const FeedProduct& product)
{
    return QStringLiteral("fare product %1 %2 for %3 (%4)")
        .arg(product.fareProductId)
        .arg(rivo::feed::quoted(product.fareProductName),
             rivo::feed::printable(product.description),
             rivo::feed::printable(product.passengerTypeCode));
}

void list(QTextStream& report, const QString& finding, const QVector<const FeedProduct*>& products)
{
    report << finding << ":\n";
    for (const FeedProduct* product : products)
        report << "  " << nameOf(*product) << '\n';
}

void listPosition(QTextStream& report, int position, const QVector<const FeedProduct*>& products)
{
    if (position == -1) {
        list(report, QStringLiteral("no position"), products);
        return;
    }
    if (products.size() > 1)
        list(report, QStringLiteral("duplicate position %1").arg(position), products);
    if (position == 0)
        list(report, QStringLiteral("position 0, positions count from 1"), products);
    if (position < -1 || position > PassengerTypesModel::maximumGridSlots)
        list(report,
             QStringLiteral("position %1 out of range, expected 1 to %2")
                 .arg(position)
                 .arg(PassengerTypesModel::maximumGridSlots),
             products);
}

/// "4, 7-9": the positions between 1 and the largest that no product has.
QString holesOf(const ProductsByPosition& products, int& count)
{
    QStringList ranges;
    int further = 0;
    int expected = 1;
    for (auto position = products.lowerBound(1);
         position != products.cend() && position.key() <= PassengerTypesModel::maximumGridSlots;
         ++position) {
        const int last = position.key() - 1;
        if (last >= expected) {
            count += last - expected + 1;
            if (ranges.size() == maximumListedHoles)
                ++further;
            else
                ranges.append(last == expected ? QString::number(last)
                                               : QStringLiteral("%1-%2").arg(expected).arg(last));
        }
        expected = position.key() + 1;
    }
    if (further > 0)
        ranges.append(QStringLiteral("and %1 more ranges").arg(further));
    return ranges.join(QStringLiteral(", "));
}

QVector<sProduct> recordsOf(const ProductsByPosition& products)
{
    QVector<sProduct> records;
    for (auto position = products.cbegin(); position != products.cend(); ++position) {
        for (int i = 0; i < position->size(); ++i) {
            records.append(sProduct());
            records.last().pos = position.key();
        }
    }
    return records;
}

/// Why the model does not use the positions, by its own checks in its own order; empty if it does.
QString objectionOf(PassengerTypesModel& model, const QVector<sProduct>& records)
{
    if (model.checkForPosDuplicates(records))
        return model.hasBackendAssignedPosToProduct(records)
                   ? QStringLiteral("positions are not unique")
                   : QStringLiteral("positions are missing or not unique");
    if (!model.hasBackendAssignedPosToProduct(records))
        return QStringLiteral("a product has no position");
    if (model.hasBackendAssignedPosToZero(records))
        return QStringLiteral("a product has position 0");
    if (model.hasBackendAssignedPosOutOfRange(records))
        return QStringLiteral("a position is out of range");
    return {};
}

} // namespace

PositionVerdict checkPositions(const Feed& feed, PassengerTypesModel& model)
{
    ProductsByPosition products;
    int daily = 0;
    for (const FeedProduct& product : feed.products) {
        if (product.isDaily)
            ++daily;
        else
            products[product.pos].append(&product);
    }
    const QVector<sProduct> records = recordsOf(products);
    const auto withPosition = records.size() - products.value(-1).size();

    PositionVerdict verdict;
    QString text;
    QTextStream report(&text);
    report << records.size() << " products, " << withPosition
           << " with a position; daily products, whose positions are not used: " << daily << '\n';

    if (!model.hasBackendAssignedSortingToProducts(records)) {
        report << "No product has a position: the terminal lays the grid out zone by zone, "
               << model.numberOfColumns() << " columns x " << rowsOf(model) << " rows.\n";
        verdict.report = text.toUtf8();
        return verdict;
    }

    for (auto position = products.cbegin(); position != products.cend(); ++position)
        listPosition(report, position.key(), position.value());
    int holeCount = 0;
    const QString holes = holesOf(products, holeCount);
    if (holeCount > 0)
        report << "holes in the numbering (" << holeCount << "): " << holes << '\n';

    const QString objection = objectionOf(model, records);
    verdict.fallsBack = !objection.isEmpty();
    const QString size =
        QStringLiteral("%1 columns x %2 rows").arg(model.numberOfColumns()).arg(rowsOf(model));
    if (verdict.fallsBack)
        report << "The terminal falls back, since " << objection
               << ": products in the order of their positions, without placeholders, " << size
               << ".\n";
    else
        report << "The terminal lays the grid out by position, " << size << ", every hole and the "
               << "rest of the last row a placeholder.\n";
    verdict.report = text.toUtf8();
    return verdict;
}
