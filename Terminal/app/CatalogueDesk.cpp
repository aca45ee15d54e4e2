#include "CatalogueDesk.h"

#include <FareProductItem.h>
#include <FareProductsModel.h>
#include <Feed.h>

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
    for (const feed::FeedProduct& product : feed.products) {
        const QString id = QString::number(product.passengerTypeId);
        if (!m_passengerTypes.contains(id))
            m_passengerTypes.insert(id, product.description);
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
