#include "FareProductFields.h"
#include "ItemBattery.h"

#include <QSignalSpy>
#include <QTest>

#include <limits>

using rivo::models::ListItem;

namespace
{

/// The members of a catalogue entry.
struct Members : ListItem
{
    int id;
    QString description;
    QString icon;
    double price;
    double discount;
    bool freeReturn;
    bool paperTicket;
    QList<QVariant> passengerTypes;
    QList<QVariant> ticketMaterial;
    QList<QVariant> paymentMethod;
    QList<QVariant> paymentChannel;
    int totalInBasket;
};

ItemUnderTest fareProductItem()
{
    return itemUnderTest<FareProductItem, Members>(
        fareProductItemClass(),
        {{257, "fareProductId"},
         {259, "description"},
         {260, "productFairIcon"},
         {261, "price"},
         {262, "discount"},
         {263, "freeReturn"},
         {264, "paperTicket"},
         {265, "totalInBasket"}},
        FareProductItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash,
        {"FareProductItem::FareProductItem(QObject*)",
         "FareProductItem::FareProductItem(int const&, QString const&, QString const&, "
         "double const&, double const&, bool const&, bool const&, QList<QVariant> const&, "
         "QList<QVariant> const&, QList<QVariant> const&, QList<QVariant> const&, int const&, "
         "QObject*)"});
}

/// An entry of this price.
FareProductItem* priced(double price, QObject* parent)
{
    return new FareProductItem(12, "Single", "qrc:/icons/single.svg", price, 0.0, false, false, {},
                               {}, {}, {}, 0, parent);
}

} // namespace

class TestFareProductItem : public ItemBattery
{
    Q_OBJECT

public:
    TestFareProductItem() : ItemBattery(fareProductItem()) {}

private slots:
    void initialValuesOfAPrototype()
    {
        const QVariant none = QVariantList();
        compare(FareProductItem(), {-1, "", "", 0.0, 0.0, false, false, none, none, none, none, 0});
    }

    void noRoleIsNumbered258()
    {
        const FareProductItem product(12, "Single", "qrc:/icons/single.svg", 2.5, 0.1, true, true,
                                      {1, 2}, {3}, {4}, {5, 6}, 8, nullptr);
        QVERIFY(sameValue(product.data(257), 12));
        QVERIFY(!product.data(258).isValid());
        QVERIFY(sameValue(product.data(259), "Single"));
        QVERIFY(sameValue(product.data(260), "qrc:/icons/single.svg"));
        QVERIFY(sameValue(product.data(261), 2.5));
        QVERIFY(sameValue(product.data(262), 0.1));
        QVERIFY(sameValue(product.data(263), true));
        QVERIFY(sameValue(product.data(264), true));
        QVERIFY(sameValue(product.data(265), 8));
    }

    void noiseInThePriceIsIgnored()
    {
        QObject owner;
        FareProductItem* product = priced(10.0 + 1e-13, &owner);
        QSignalSpy changes(product, &ListItem::dataChanged);
        product->setPrice(10.0);
        QCOMPARE(changes.count(), 0);
        QVERIFY(sameValue(product->data(261), 10.0 + 1e-13));
        product->setPrice(10.1);
        QCOMPARE(changes.count(), 1);
    }

    void noiseNearZeroIsIgnored()
    {
        QObject owner;
        FareProductItem* product = priced(1e-13, &owner);
        QSignalSpy changes(product, &ListItem::dataChanged);
        product->setPrice(0.0);
        product->setPrice(-1e-13);
        QCOMPARE(changes.count(), 0);
        QVERIFY(sameValue(product->data(261), 1e-13));
        product->setPrice(1e-11);
        QCOMPARE(changes.count(), 1);
        product->setDiscount(1e-13);
        QCOMPARE(changes.count(), 1);
    }

    // The comparison is relative to the value plus one.
    void noiseNearMinusOneIsNotIgnored()
    {
        QObject owner;
        FareProductItem* product = priced(-1.0, &owner);
        QSignalSpy changes(product, &ListItem::dataChanged);
        product->setPrice(-1.0 + 1e-13);
        QCOMPARE(changes.count(), 1);
        product->setPrice(-1.0);
        QCOMPARE(changes.count(), 2);
    }

    // What the formula says of them: no tolerance, but opposite infinities are equal.
    void amountsThatAreNoNumbers()
    {
        const double notANumber = std::numeric_limits<double>::quiet_NaN();
        const double infinity = std::numeric_limits<double>::infinity();
        QObject owner;
        FareProductItem* product = priced(2.5, &owner);
        QSignalSpy changes(product, &ListItem::dataChanged);
        product->setPrice(notANumber);
        product->setPrice(notANumber);
        QCOMPARE(changes.count(), 2);
        product->setPrice(infinity);
        product->setPrice(infinity);
        QCOMPARE(changes.count(), 4);
        product->setPrice(-infinity);
        QCOMPARE(changes.count(), 4);
        QVERIFY(sameValue(product->data(261), infinity));
        product->setPrice(2.5);
        QCOMPARE(changes.count(), 5);
    }

    void list_data()
    {
        QTest::addColumn<QVariantList>("stored");
        QTest::addColumn<QVariantList>("value");
        QTest::addColumn<bool>("announced");
        const QVariantList three{1, 2, 3};
        QTest::newRow("the same shared list is silent") << three << three << false;
        QTest::newRow("a list of equal values is silent")
            << three << QVariantList{1, 2, 3} << false;
        QTest::newRow("another order is announced") << three << QVariantList{3, 2, 1} << true;
        QTest::newRow("a value less is announced") << three << QVariantList{1, 2} << true;
        QTest::newRow("a value twice is announced") << three << QVariantList{1, 2, 3, 3} << true;
        QTest::newRow("no values are announced") << three << QVariantList() << true;
        QTest::newRow("no values again are silent") << QVariantList() << QVariantList() << false;
        QTest::newRow("a number as text equals the number")
            << three << QVariantList{"1", 2, 3.0} << false;
        QTest::newRow("texts differ by their case")
            << QVariantList{"Adult"} << QVariantList{"adult"} << true;
        QTest::newRow("lists inside are compared as well")
            << QVariantList{QVariant(three)} << QVariantList{QVariant(QVariantList{1, 2, 4})}
            << true;
    }

    void list()
    {
        QFETCH(QVariantList, stored);
        QFETCH(QVariantList, value);
        QFETCH(bool, announced);
        for (const char* name :
             {"passengerTypes", "ticketMaterial", "paymentMethod", "paymentChannel"}) {
            FareProductItem product;
            field(name).set(product, stored);
            QSignalSpy changes(&product, &ListItem::dataChanged);
            field(name).set(product, value);
            QCOMPARE(changes.count(), announced ? 1 : 0);
            const QVariantList kept = field(name).get(product).toList();
            QCOMPARE(kept, announced ? value : stored);
            if (!kept.isEmpty())
                QCOMPARE(kept.first().userType(), (announced ? value : stored).first().userType());
        }
    }
};

QTEST_GUILESS_MAIN(TestFareProductItem)

#include "tst_fareproductitem.moc"
