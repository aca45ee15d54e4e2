// The selection grid and a basket: a tap on a tile adds a ticket.
#include "../Example.h"

#include <PassengerTypeItem.h>
#include <PassengerTypesModel.h>
#include <RowSync.h>
#include <ShoppingBasketModel.h>

namespace
{

struct Product
{
    const char* passenger;
    const char* code;
    const char* name;
    double price;
    int toZone;
};

const Product products[] = {{"Adult", "PT_ADULT", "Single", 1.90, 10},
                            {"Student", "PT_STUDENT_1", "Single", 1.30, 10},
                            {"Adult", "PT_ADULT", "Single", 2.80, 20},
                            {"Student", "PT_STUDENT_1", "Single", 1.95, 20},
                            {"Adult", "PT_ADULT", "Return", 5.10, 20}};

void fill(PassengerTypesModel& grid)
{
    const QStringList codes{QStringLiteral("PT_ADULT"), QStringLiteral("PT_STUDENT_1")};
    grid.setSupportedPassengerTypeCodes(codes);
    grid.clearData();
    int id = 0;
    for (const Product& product : products) {
        ++id;
        grid.addItem(id, QString::fromLatin1(product.passenger), QString::fromLatin1(product.code),
                     QString(), product.price, id, QString::fromLatin1(product.name), false, 10,
                     product.toZone, QString(), false, 0.0, false, -1);
    }
    grid.sortAndRegroup(codes, 0);
}

} // namespace

/// What a tap does.
class Sale : public QObject
{
    Q_OBJECT

public:
    Sale(const PassengerTypesModel& grid, ShoppingBasketModel& basket)
        : m_grid(grid), m_basket(basket)
    {
    }

    /// Adds the ticket of a tile to the basket; placeholder tiles are not for sale.
    Q_INVOKABLE void add(int tile)
    {
        const auto* item = rivo::models::rowAs<PassengerTypeItem>(m_grid, tile);
        if (item == nullptr || item->hasExpired())
            return;
        m_basket.addItem(item->id(), item->fareProductId(), item->fromStopGroupId(),
                         item->toStopGroupId(), item->description(), item->fareProductName(),
                         item->icon(), item->price(), QString(), QString(), item->isReturnFee(),
                         item->isDaily(), this); // a trip context without properties: no trip
    }

private:
    const PassengerTypesModel& m_grid;
    ShoppingBasketModel& m_basket;
};

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    QObject owner; // of the models and their prototypes
    PassengerTypesModel grid(&owner);
    ShoppingBasketModel basket(&owner);
    fill(grid);
    Sale sale(grid, basket);
    return runExample(application,
                      {{QStringLiteral("grid"), QVariant::fromValue(&grid)},
                       {QStringLiteral("basket"), QVariant::fromValue(&basket)},
                       {QStringLiteral("sale"), QVariant::fromValue<QObject*>(&sale)}},
                      [&](QObject& /*window*/) {
                          sale.add(0);
                          return QStringLiteral("%1 columns, %2 for sale, %3 in the basket")
                              .arg(grid.numberOfColumns())
                              .arg(grid.getNumberOfNonExpiredProducts())
                              .arg(basket.rowCount());
                      });
}

#include "main.moc"
