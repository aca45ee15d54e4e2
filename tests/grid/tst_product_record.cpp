#include "addProduct.h"

#include "GridText.h"
#include "PassengerTypeItem.h"
#include "Table.h"
#include "TerminalHome.h"

#include <QtTest>

namespace
{

/// A product that differs from a default record in every field.
sProduct distinctProduct()
{
    sProduct product;
    product.passengerTypeId = 21;
    product.description = "Student";
    product.passengerTypeCode = PassengerTypesModel::PT_STUDENT_2;
    product.icon = "file:///own.svg";
    product.price = 2.35;
    product.fareProductId = 77;
    product.fareProductName = "Day ticket";
    product.isReturnFee = true;
    product.fromStopGroupId = 4;
    product.toStopGroupId = 9;
    product.fareProductColor = "#336699";
    product.hasExpired = false;
    product.fareDiscount = 0.25;
    product.isDaily = true;
    product.pos = 5;
    return product;
}

QString codeOf(const PassengerTypesModel& model, int row)
{
    const auto* tile = qobject_cast<const PassengerTypeItem*>(model.itemFromRow(row));
    return tile ? tile->code() : QString();
}

} // namespace

class TestProductRecord : public QObject
{
    Q_OBJECT

private slots:
    void addedProductBecomesTileWithAllItsValues();
    void passengerTypeIsKept_data();
    void passengerTypeIsKept();
    void productGoesToTheListOfItsKind();
    void textNamesThePassengerTypeOfAnyRecord();
    void placeholderHasItsNameAndIsExpired();

private:
    const TerminalHome m_home;
    QObject m_owner;
};

void TestProductRecord::addedProductBecomesTileWithAllItsValues()
{
    const sProduct product = distinctProduct();
    PassengerTypesModel added(&m_owner);
    addProduct(added, product);
    QCOMPARE(added.rowCount(), 0);
    added.sortAndRegroup({}, 1);
    PassengerTypesModel expected(&m_owner);
    expected.addItemsToModel({product});
    QCOMPARE(allRoles(added), allRoles(expected));
    QCOMPARE(codeOf(added, 0), codeOf(expected, 0));
}

void TestProductRecord::passengerTypeIsKept_data()
{
    addColumns<int, QString>("code", "codeOfTile");
    for (const int code : {1, 3, 4, 5, 7, 8, 9, 10})
        QTest::addRow("%d", code) << code << QString::number(code);
    for (const int code : {-1, 0, 2, 6, 11, 1000000})
        QTest::addRow("no type %d", code) << code << "0";
}

void TestProductRecord::passengerTypeIsKept()
{
    QFETCH(int, code);
    sProduct product = distinctProduct();
    product.passengerTypeCode = code;
    PassengerTypesModel model(&m_owner);
    addProduct(model, product);
    model.sortAndRegroup({}, 1);
    QTEST(codeOf(model, 0), "codeOfTile");
}

void TestProductRecord::productGoesToTheListOfItsKind()
{
    sProduct product = distinctProduct();
    product.isDaily = false;
    product.pos = -1;
    PassengerTypesModel model(&m_owner);
    addProduct(model, product);
    product.fareProductName = "Daily";
    product.isDaily = true;
    addProduct(model, product);
    model.sortAndRegroup({"PT_STUDENT_2"}, 1);
    QCOMPARE(gridText(model), "Day ticket | Daily");
}

void TestProductRecord::textNamesThePassengerTypeOfAnyRecord()
{
    struct Record : sProduct
    {
        QString passengerTypeCode = "PT_LFS"; // instead of a number
    };
    PassengerTypesModel model(&m_owner);
    const Record record;
    addProduct(model, record, record.passengerTypeCode);
    addProduct(model, record, "PT_UNKNOWN");
    model.sortAndRegroup({"PT_LFS"}, 1);
    QCOMPARE(model.rowCount(), 2);
    QCOMPARE(codeOf(model, 0), "0");
    QCOMPARE(codeOf(model, 1), "8");
}

void TestProductRecord::placeholderHasItsNameAndIsExpired()
{
    const sProduct placeholder;
    QVERIFY(isPlaceholder(placeholder.fareProductName, placeholder.hasExpired));
    QVERIFY(isPlaceholder("---DUMMY---", true));
    QVERIFY(!isPlaceholder("---DUMMY---", false)); // a product of that name is sold
    QVERIFY(!isPlaceholder("Day ticket", true));   // a product that is no longer valid
    QVERIFY(!isPlaceholder(QString(), true));
}

QTEST_GUILESS_MAIN(TestProductRecord)

#include "tst_product_record.moc"
