#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QVariantList>

class FareProductItem;
class FareProductsModel;

namespace rivo::feed
{
struct Feed;
struct FeedProduct;
struct Tariff;
} // namespace rivo::feed

namespace rivo::terminal
{

/// Who may buy a fare product, and how, in words: the lists of a FareProductItem have no roles.
///
/// A list is empty if the product has none, or if there is no row `row` of the catalogue.
class CatalogueDesk : public QObject
{
    Q_OBJECT

public:
    /// `catalogue` outlives the desk. The products of `feed`, or the rider categories of GTFS, say
    /// what its passenger type identifiers mean.
    CatalogueDesk(const FareProductsModel& catalogue, const feed::Feed& feed,
                  QObject* parent = nullptr);

    /// A code that the terminal knows ("PT_ADULT") by its name in the language of the screen, an
    /// identifier by the name of the rider category or the one that the feed's first product with
    /// it gives; others as they are.
    Q_INVOKABLE QStringList passengerTypes(int row) const;

    // As the back office writes them.
    Q_INVOKABLE QStringList ticketMaterials(int row) const;
    Q_INVOKABLE QStringList paymentMethods(int row) const;
    Q_INVOKABLE QStringList paymentChannels(int row) const;

private:
    using List = QVariantList (FareProductItem::*)() const;
    QVariantList valuesOf(int row, List list) const;
    void nameTypes(const QVector<feed::FeedProduct>& products);
    void nameCategories(const feed::Tariff& tariff);

    const FareProductsModel& m_catalogue;
    QHash<QString, QString> m_passengerTypes; ///< names by code or identifier
};

} // namespace rivo::terminal
