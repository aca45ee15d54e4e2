#include "Records.h"

#include "PassengerTypeItem.h"

#include <QStandardItem>

#include <algorithm>
#include <numeric>
#include <random>

namespace
{

QVector<int> shuffled(unsigned seed)
{
    QVector<int> numbers(maximumRows);
    std::iota(numbers.begin(), numbers.end(), 1);
    std::mt19937 random(seed);
    // Not std::shuffle(), whose result differs between standard libraries.
    for (int last = numbers.size() - 1; last > 0; --last)
        std::swap(numbers[last],
                  numbers[static_cast<int>(random() % static_cast<unsigned>(last + 1))]);
    return numbers;
}

QVector<sProduct> makeRecords()
{
    const QVector<int> ids = shuffled(1);
    const QVector<int> products = shuffled(2);
    const QVector<int> positions = shuffled(3);
    const QVector<int> descriptions = shuffled(4);
    const QVector<int> names = shuffled(5);
    QVector<sProduct> made(maximumRows);
    for (int row = 0; row < maximumRows; ++row) {
        sProduct& product = made[row];
        product.passengerTypeId = ids.at(row);
        product.description =
            QStringLiteral("passenger %1").arg(descriptions.at(row), 6, 10, QLatin1Char('0'));
        product.passengerTypeCode = 1;
        product.icon = QStringLiteral("qrc:/icons/%1.svg").arg(row % 8);
        product.price = 0.05 * (row % 200);
        product.fareProductId = products.at(row);
        product.fareProductName =
            QStringLiteral("ticket %1").arg(names.at(row), 6, 10, QLatin1Char('0'));
        product.isReturnFee = row % 2 == 1;
        product.fromStopGroupId = 10;
        product.toStopGroupId = 10 * (row % 20);
        product.fareProductColor =
            QStringLiteral("#3366%1").arg(row % 100, 2, 10, QLatin1Char('0'));
        product.hasExpired = row % 10 == 0;
        product.fareDiscount = 0.1 * (row % 5);
        product.isDaily = false;
        product.pos = positions.at(row);
    }
    return made;
}

const QVector<sProduct>& allRecords()
{
    static const QVector<sProduct> all = makeRecords();
    return all;
}

} // namespace

const sProduct& record(int number) { return allRecords().at(number % maximumRows); }

QVector<sProduct> records(int count) { return allRecords().mid(0, count); }

const QHash<int, QByteArray>& roleNames()
{
    return PassengerTypeItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash;
}

const QVector<int>& roles()
{
    static const QVector<int> ascending = [] {
        QVector<int> numbers = roleNames().keys().toVector();
        std::sort(numbers.begin(), numbers.end());
        return numbers;
    }();
    return ascending;
}

PassengerTypeItem* newItem(const sProduct& product, QObject* parent)
{
    static const QString code = QStringLiteral("1");
    return new PassengerTypeItem(
        product.passengerTypeId, product.description, code, product.icon, product.price,
        product.fareProductId, product.fareProductName, 0, product.isReturnFee,
        product.fromStopGroupId, product.toStopGroupId, product.fareProductColor,
        product.hasExpired, product.fareDiscount, product.isDaily, product.pos, parent);
}

QStandardItem* newStandardItem(const sProduct& product)
{
    auto* const item = new QStandardItem;
    item->setData(product.passengerTypeId, PassengerTypeItem::PassengerTypeIdRole);
    item->setData(product.description, PassengerTypeItem::DescriptionRole);
    item->setData(product.icon, PassengerTypeItem::FareProductIconRole);
    item->setData(product.price, PassengerTypeItem::PriceRole);
    item->setData(product.fareProductId, PassengerTypeItem::FareProductIdRole);
    item->setData(product.fareProductName, PassengerTypeItem::FareProductNameRole);
    item->setData(0, PassengerTypeItem::TotalInBasketRole);
    item->setData(product.isReturnFee, PassengerTypeItem::IsReturnFeeRole);
    item->setData(product.fromStopGroupId, PassengerTypeItem::FromStopGroupIdRole);
    item->setData(product.toStopGroupId, PassengerTypeItem::ToStopGroupIdRole);
    item->setData(product.fareProductColor, PassengerTypeItem::FareProductColorRole);
    item->setData(product.hasExpired, PassengerTypeItem::HasExpiredRole);
    item->setData(product.fareDiscount, PassengerTypeItem::FareDiscountRole);
    item->setData(false, PassengerTypeItem::SelectedRole);
    item->setData(product.isDaily, PassengerTypeItem::IsDailyRole);
    item->setData(product.pos, PassengerTypeItem::PosRole);
    return item;
}
