#include "CatalogueDesk.h"

#include <FareProductItem.h>
#include <FareProductsModel.h>
#include <Feed.h>
#include <Tariff.h>

namespace rivo::terminal
{

namespace
{

QStringList textsOf(const QVariantList& values)
{
    QStringList texts;
    for (const QVariant& value : values)
        texts.append(value.toString());
    return texts;
}

} // namespace

CatalogueDesk::CatalogueDesk(const FareProductsModel& catalogue, const feed::Feed& feed,
                             QObject* parent)
    : QObject(parent), m_catalogue(catalogue),
      m_passengerTypes{{QStringLiteral("PT_ADULT"), tr("Adult")},
                       {QStringLiteral("PT_STUDENT_1"), tr("Student")},
                       {QStringLiteral("PT_SCHOOLBOY"), tr("School pupil")},
                       {QStringLiteral("PT_DISABLED"), tr("Passenger with a disability")},
                       {QStringLiteral("PT_MILITARY_1"), tr("Military")},
                       {QStringLiteral("PT_LFS"), tr("Large family")},
                       {QStringLiteral("PT_STUDENT_2"), tr("Student (second group)")},
                       {QStringLiteral("PT_MILITARY_2"), tr("Military (second group)")}}
{
    const bool isGtfs = feed.tariff && feed.tariff->form != feed::Tariff::Form::OwnValidity;
    if (isGtfs)
        nameCategories(*feed.tariff);
    else
        nameTypes(feed.products);
}

void CatalogueDesk::nameTypes(const QVector<feed::FeedProduct>& products)
{
    for (const feed::FeedProduct& product : products) {
        const QString id = QString::number(product.passengerTypeId);
        if (!m_passengerTypes.contains(id))
            m_passengerTypes.insert(id, product.description);
    }
}

void CatalogueDesk::nameCategories(const feed::Tariff& tariff)
{
    m_passengerTypes.insert(QStringLiteral("0"), tr("Anyone"));
    const QVector<int> numbers = tariff.categoryIds.publicNumbers();
    for (int i = 0; i < numbers.size(); ++i) {
        const QString& name = tariff.categories.at(i).name;
        m_passengerTypes.insert(QString::number(numbers.at(i)),
                                name.isEmpty() ? tariff.categoryIds.text(i) : name);
    }
}

QVariantList CatalogueDesk::valuesOf(int row, List list) const
{
    const auto* product = qobject_cast<FareProductItem*>(m_catalogue.itemFromRow(row));
    return product == nullptr ? QVariantList() : (product->*list)();
}

QStringList CatalogueDesk::passengerTypes(int row) const
{
    QStringList types = textsOf(valuesOf(row, &FareProductItem::passengerTypes));
    for (QString& type : types)
        type = m_passengerTypes.value(type, type);
    return types;
}

QStringList CatalogueDesk::ticketMaterials(int row) const
{
    return textsOf(valuesOf(row, &FareProductItem::ticketMaterial));
}

QStringList CatalogueDesk::paymentMethods(int row) const
{
    return textsOf(valuesOf(row, &FareProductItem::paymentMethod));
}

QStringList CatalogueDesk::paymentChannels(int row) const
{
    return textsOf(valuesOf(row, &FareProductItem::paymentChannel));
}

} // namespace rivo::terminal
