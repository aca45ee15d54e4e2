#include "PassengerTypesModel.h" // alone: the product record must be visible through it

#include "ForeignRow.h"
#include "GridSignals.h"
#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypeItem.h"
#include "PassengerTypesModelInspector.h"
#include "Products.h"

#include <QtTest>

#include <limits>
#include <memory>
#include <type_traits>

namespace
{

using Type = PassengerTypesModel::PassengerType;

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();

static_assert(std::is_aggregate_v<::sProduct> && !std::is_polymorphic_v<::sProduct>);
static_assert(std::is_copy_constructible_v<sProduct> && std::is_copy_assignable_v<sProduct>);
static_assert(std::is_nothrow_move_constructible_v<sProduct> &&
              std::is_nothrow_move_assignable_v<sProduct>);

static_assert(std::is_same_v<std::underlying_type_t<Type>, int>);
static_assert(PassengerTypesModel::PT_ADULT == 1 && PassengerTypesModel::PT_STUDENT_1 == 3 &&
              PassengerTypesModel::PT_SCHOOLBOY == 4 && PassengerTypesModel::PT_DISABLED == 5 &&
              PassengerTypesModel::PT_MILITARY_1 == 7 && PassengerTypesModel::PT_LFS == 8 &&
              PassengerTypesModel::PT_STUDENT_2 == 9 && PassengerTypesModel::PT_MILITARY_2 == 10);

static_assert(std::is_same_v<decltype(PassengerTypesModel::codeMap), const QMap<QString, Type>>);
static_assert(std::is_same_v<decltype(PassengerTypesModel::iconMap), const QMap<Type, QString>>);

static_assert(std::is_same_v<decltype(&PassengerTypesModel::addItemsToModel),
                             void (PassengerTypesModel::*)(const QVector<sProduct>&)>);
static_assert(std::is_same_v<decltype(&PassengerTypesModel::getFareProductName),
                             QString (PassengerTypesModel::*)(int)>);

sProduct productWith(int fareProductId, const QString& name)
{
    sProduct product;
    product.fareProductId = fareProductId;
    product.fareProductName = name;
    return product;
}

} // namespace

Q_DECLARE_METATYPE(sProduct)

class TestProductCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void recordHasFieldsInOrder();
    void defaultRecordIsPlaceholder();
    void defaultRecordDiffersFromPrototypeTile();

    void codeMapIsWhole();
    void codeMapFindsExactText_data();
    void codeMapFindsExactText();
    void iconMapIsWhole();
    void iconMapFallsBackToAdult_data();
    void iconMapFallsBackToAdult();

    void placeholderBecomesTile();
    void fieldsOfRecordReachTile();
    void iconOfTile_data();
    void iconOfTile();
    void codeOfTile_data();
    void codeOfTile();
    void recordsBecomeRowsInVectorOrder();
    void recordsAreAppendedToRowsThatAreThere();
    void emptyVectorEmitsNothing();
    void callersListMayChangeMeanwhile();
    void ownListMayBeHandedOver();

    void nameOfFareProduct_data();
    void nameOfFareProduct();
    void nameOfFareProductFollowsTheTile();
    void nameOfFareProductFollowsRowOrder();
    void foreignRowHasNoName_data();
    void foreignRowHasNoName();

private:
    std::unique_ptr<QObject> m_owner;  // of models and their prototypes
    std::unique_ptr<LogCapture> m_log; // keeps the console quiet
};

void TestProductCatalogue::init()
{
    m_owner = std::make_unique<QObject>();
    m_log = std::make_unique<LogCapture>();
}

void TestProductCatalogue::cleanup()
{
    m_log.reset();
    m_owner.reset();
}

void TestProductCatalogue::recordHasFieldsInOrder()
{
    sProduct product;
    auto& [passengerTypeId, description, passengerTypeCode, icon, price, fareProductId,
           fareProductName, isReturnFee, fromStopGroupId, toStopGroupId, fareProductColor,
           hasExpired, fareDiscount, isDaily, pos] = product;
    const QVector<const void*> byOrder{&passengerTypeId,
                                       &description,
                                       &passengerTypeCode,
                                       &icon,
                                       &price,
                                       &fareProductId,
                                       &fareProductName,
                                       &isReturnFee,
                                       &fromStopGroupId,
                                       &toStopGroupId,
                                       &fareProductColor,
                                       &hasExpired,
                                       &fareDiscount,
                                       &isDaily,
                                       &pos};
    const QVector<const void*> byName{&product.passengerTypeId,
                                      &product.description,
                                      &product.passengerTypeCode,
                                      &product.icon,
                                      &product.price,
                                      &product.fareProductId,
                                      &product.fareProductName,
                                      &product.isReturnFee,
                                      &product.fromStopGroupId,
                                      &product.toStopGroupId,
                                      &product.fareProductColor,
                                      &product.hasExpired,
                                      &product.fareDiscount,
                                      &product.isDaily,
                                      &product.pos};
    QCOMPARE(byOrder, byName);

    static_assert(std::is_same_v<decltype(sProduct::passengerTypeId), int>);
    static_assert(std::is_same_v<decltype(sProduct::description), QString>);
    static_assert(std::is_same_v<decltype(sProduct::passengerTypeCode), int>);
    static_assert(std::is_same_v<decltype(sProduct::icon), QString>);
    static_assert(std::is_same_v<decltype(sProduct::price), double>);
    static_assert(std::is_same_v<decltype(sProduct::fareProductId), int>);
    static_assert(std::is_same_v<decltype(sProduct::fareProductName), QString>);
    static_assert(std::is_same_v<decltype(sProduct::isReturnFee), bool>);
    static_assert(std::is_same_v<decltype(sProduct::fromStopGroupId), int>);
    static_assert(std::is_same_v<decltype(sProduct::toStopGroupId), int>);
    static_assert(std::is_same_v<decltype(sProduct::fareProductColor), QString>);
    static_assert(std::is_same_v<decltype(sProduct::hasExpired), bool>);
    static_assert(std::is_same_v<decltype(sProduct::fareDiscount), double>);
    static_assert(std::is_same_v<decltype(sProduct::isDaily), bool>);
    static_assert(std::is_same_v<decltype(sProduct::pos), int>);
}

void TestProductCatalogue::defaultRecordIsPlaceholder()
{
    const sProduct product;
    QCOMPARE(product.passengerTypeId, 0);
    QCOMPARE(product.description, QString("---NOT FOR SALE---"));
    QCOMPARE(product.passengerTypeCode, 0);
    QCOMPARE(product.icon, QString());
    QCOMPARE(product.price, 0.0);
    QCOMPARE(product.fareProductId, 0);
    QCOMPARE(product.fareProductName, QString("---DUMMY---"));
    QCOMPARE(product.isReturnFee, false);
    QCOMPARE(product.fromStopGroupId, 0);
    QCOMPARE(product.toStopGroupId, 0);
    QCOMPARE(product.fareProductColor, QString());
    QCOMPARE(product.hasExpired, true);
    QCOMPARE(product.fareDiscount, 0.0);
    QCOMPARE(product.isDaily, false);
    QCOMPARE(product.pos, -1);
}

void TestProductCatalogue::defaultRecordDiffersFromPrototypeTile()
{
    const PassengerTypeItem prototype(m_owner.get());
    QCOMPARE(prototype.id(), -1);
    QCOMPARE(prototype.fareProductId(), -1);
    QCOMPARE(prototype.fromStopGroupId(), -1);
    QCOMPARE(prototype.toStopGroupId(), -1);
    QCOMPARE(prototype.hasExpired(), false);
    QCOMPARE(prototype.description(), QString());
    QCOMPARE(prototype.fareProductName(), QString());
}

void TestProductCatalogue::codeMapIsWhole()
{
    const QMap<QString, Type> whole{
        {"PT_ADULT", Type(1)},     {"PT_STUDENT_1", Type(3)},   {"PT_SCHOOLBOY", Type(4)},
        {"PT_DISABLED", Type(5)},  {"PT_MILITARY_1", Type(7)},  {"PT_LFS", Type(8)},
        {"PT_STUDENT_2", Type(9)}, {"PT_MILITARY_2", Type(10)},
    };
    QCOMPARE(PassengerTypesModel::codeMap, whole);
}

void TestProductCatalogue::codeMapFindsExactText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");

    QTest::newRow("adult") << "PT_ADULT" << 1;
    QTest::newRow("first kind of student") << "PT_STUDENT_1" << 3;
    QTest::newRow("schoolboy") << "PT_SCHOOLBOY" << 4;
    QTest::newRow("disabled") << "PT_DISABLED" << 5;
    QTest::newRow("first kind of military") << "PT_MILITARY_1" << 7;
    QTest::newRow("large family") << "PT_LFS" << 8;
    QTest::newRow("second kind of student") << "PT_STUDENT_2" << 9;
    QTest::newRow("second kind of military") << "PT_MILITARY_2" << 10;
    QTest::newRow("lower case is unknown") << "pt_lfs" << 0;
    QTest::newRow("mixed case is unknown") << "PT_Lfs" << 0;
    QTest::newRow("a blank in front is unknown") << " PT_LFS" << 0;
    QTest::newRow("a blank behind is unknown") << "PT_LFS " << 0;
    QTest::newRow("text without number is unknown") << "PT_STUDENT" << 0;
    QTest::newRow("the number itself is unknown") << "8" << 0;
    QTest::newRow("empty text is unknown") << "" << 0;
    QTest::newRow("null text is unknown") << QString() << 0;
}

void TestProductCatalogue::codeMapFindsExactText()
{
    QFETCH(QString, text);
    QFETCH(int, code);
    QCOMPARE(int(PassengerTypesModel::codeMap.value(text)), code);

    PassengerTypesModel model(m_owner.get());
    Product(text).addTo(model);
    QCOMPARE(PassengerTypesModelInspector(model).products().first().passengerTypeCode, code);
}

void TestProductCatalogue::iconMapIsWhole()
{
    const QMap<Type, QString> whole{
        {Type(1), "qrc:/icons/adult.svg"},   {Type(3), "qrc:/icons/student.svg"},
        {Type(4), "qrc:/icons/school.svg"},  {Type(5), "qrc:/icons/wheelchair.svg"},
        {Type(7), "qrc:/icons/soldier.svg"}, {Type(8), "qrc:/icons/family_large.svg"},
        {Type(9), "qrc:/icons/student.svg"}, {Type(10), "qrc:/icons/soldier.svg"},
    };
    QCOMPARE(PassengerTypesModel::iconMap, whole);
}

void TestProductCatalogue::iconMapFallsBackToAdult_data()
{
    QTest::addColumn<int>("code");

    QTest::newRow("unknown type") << 0;
    QTest::newRow("unused number 2") << 2;
    QTest::newRow("unused number 6") << 6;
    QTest::newRow("one past the last type") << 11;
    QTest::newRow("negative number") << -1;
    QTest::newRow("lowest number") << lowest;
    QTest::newRow("highest number") << highest;
}

void TestProductCatalogue::iconMapFallsBackToAdult()
{
    QFETCH(int, code);
    QVERIFY(!PassengerTypesModel::iconMap.contains(Type(code)));

    PassengerTypesModel model(m_owner.get());
    sProduct product;
    product.passengerTypeCode = code;
    model.addItemsToModel({product});
    const auto* tile = qobject_cast<PassengerTypeItem*>(model.itemFromRow(0));
    QVERIFY(tile);
    QCOMPARE(tile->icon(), QString("qrc:/icons/adult.svg"));
    QCOMPARE(tile->code(), QString::number(code));
}

void TestProductCatalogue::placeholderBecomesTile()
{
    PassengerTypesModel model(m_owner.get());
    model.addItemsToModel({sProduct()});

    QCOMPARE(model.rowCount(), 1);
    const auto* tile = qobject_cast<PassengerTypeItem*>(model.itemFromRow(0));
    QVERIFY(tile);
    QCOMPARE(tile->id(), 0);
    QCOMPARE(tile->description(), QString("---NOT FOR SALE---"));
    QCOMPARE(tile->code(), QString("0"));
    QCOMPARE(tile->icon(), QString("qrc:/icons/adult.svg"));
    QCOMPARE(tile->price(), 0.0);
    QCOMPARE(tile->fareProductId(), 0);
    QCOMPARE(tile->fareProductName(), QString("---DUMMY---"));
    QCOMPARE(tile->totalInBasket(), 0);
    QCOMPARE(tile->isReturnFee(), false);
    QCOMPARE(tile->fromStopGroupId(), 0);
    QCOMPARE(tile->toStopGroupId(), 0);
    QCOMPARE(tile->fareProductColor(), QString());
    QCOMPARE(tile->hasExpired(), true);
    QCOMPARE(tile->fareDiscount(), 0.0);
    QCOMPARE(tile->selected(), false);
    QCOMPARE(tile->isDaily(), false);
    QCOMPARE(tile->pos(), -1);
}

void TestProductCatalogue::fieldsOfRecordReachTile()
{
    sProduct product;
    product.passengerTypeId = 21;
    product.description = "Student";
    product.passengerTypeCode = 3;
    product.icon = "file:///icons/own.svg";
    product.price = 2.35;
    product.fareProductId = 77;
    product.fareProductName = "Day ticket";
    product.isReturnFee = true;
    product.fromStopGroupId = 4;
    product.toStopGroupId = 9;
    product.fareProductColor = "#ff8800";
    product.hasExpired = false;
    product.fareDiscount = 0.5;
    product.isDaily = true;
    product.pos = 12;

    PassengerTypesModel model(m_owner.get());
    model.addItemsToModel({product});

    const auto* tile = qobject_cast<PassengerTypeItem*>(model.itemFromRow(0));
    QVERIFY(tile);
    QCOMPARE(tile->parent(), static_cast<QObject*>(&model));
    QCOMPARE(tile->code(), QString("3"));
    QCOMPARE(allRoles(model),
             QStringList{"passengerTypeId=21;description=Student;"
                         "fareProductIcon=file:///icons/own.svg;price=2.35;fareProductId=77;"
                         "fareProductName=Day ticket;totalInBasket=0;isReturnFee=true;"
                         "fromStopGroupId=4;toStopGroupId=9;fareProductColor=#ff8800;"
                         "hasExpired=false;fareDiscount=0.5;selected=false;isDaily=true;pos=12"});
}

void TestProductCatalogue::iconOfTile_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("ownIcon");
    QTest::addColumn<QString>("shownIcon");

    QTest::newRow("adult") << 1 << ""
                           << "qrc:/icons/adult.svg";
    QTest::newRow("first kind of student") << 3 << ""
                                           << "qrc:/icons/student.svg";
    QTest::newRow("schoolboy") << 4 << ""
                               << "qrc:/icons/school.svg";
    QTest::newRow("disabled") << 5 << ""
                              << "qrc:/icons/wheelchair.svg";
    QTest::newRow("first kind of military") << 7 << ""
                                            << "qrc:/icons/soldier.svg";
    QTest::newRow("large family") << 8 << ""
                                  << "qrc:/icons/family_large.svg";
    QTest::newRow("second kind of student") << 9 << ""
                                            << "qrc:/icons/student.svg";
    QTest::newRow("second kind of military") << 10 << ""
                                             << "qrc:/icons/soldier.svg";
    QTest::newRow("null icon counts as empty") << 9 << QString() << "qrc:/icons/student.svg";
    QTest::newRow("own icon wins") << 9 << "qrc:/own.svg"
                                   << "qrc:/own.svg";
    QTest::newRow("own icon of an unknown type wins") << 0 << "qrc:/own.svg"
                                                      << "qrc:/own.svg";
    QTest::newRow("a blank is an icon of its own") << 9 << " "
                                                   << " ";
}

void TestProductCatalogue::iconOfTile()
{
    QFETCH(int, code);
    QFETCH(QString, ownIcon);
    QFETCH(QString, shownIcon);

    sProduct product;
    product.passengerTypeCode = code;
    product.icon = ownIcon;
    PassengerTypesModel model(m_owner.get());
    model.addItemsToModel({product});
    QCOMPARE(model.data(model.index(0, 0), PassengerTypeItem::FareProductIconRole),
             QVariant(shownIcon));
}

void TestProductCatalogue::codeOfTile_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");

    QTest::newRow("unknown type") << 0 << "0";
    QTest::newRow("adult") << 1 << "1";
    QTest::newRow("two digits") << 10 << "10";
    QTest::newRow("negative") << -7 << "-7";
    QTest::newRow("lowest number") << lowest << "-2147483648";
    QTest::newRow("highest number") << highest << "2147483647";
}

void TestProductCatalogue::codeOfTile()
{
    QFETCH(int, code);
    QFETCH(QString, text);

    sProduct product;
    product.passengerTypeCode = code;
    PassengerTypesModel model(m_owner.get());
    model.addItemsToModel({product});
    QCOMPARE(qobject_cast<PassengerTypeItem*>(model.itemFromRow(0))->code(), text);
}

void TestProductCatalogue::recordsBecomeRowsInVectorOrder()
{
    PassengerTypesModel model(m_owner.get());
    SignalLog signalLog(&model);
    sProduct expired = productWith(1, "expired");
    sProduct sold = productWith(3, "sold");
    sold.hasExpired = false;
    sold.pos = 2;

    model.addItemsToModel({sold, expired, sProduct(), sold});

    QCOMPARE(gridText(model, 0), QString("sold@2 expired (0) sold@2"));
    QCOMPARE(signalLog.take(), tilesAppended(0, 3));
    QCOMPARE(model.numberOfRows(), 0);
}

void TestProductCatalogue::recordsAreAppendedToRowsThatAreThere()
{
    PassengerTypesModel model(m_owner.get());
    const QVector<sProduct> products{productWith(1, "a"), productWith(2, "b")};
    model.addItemsToModel(products);
    const rivo::models::ListItem* first = model.itemFromRow(0);

    SignalLog signalLog(&model);
    model.addItemsToModel(products);

    QCOMPARE(gridText(model, 0), QString("a b a b"));
    QCOMPARE(model.itemFromRow(0), first);
    QVERIFY(model.itemFromRow(2) != first);
    QCOMPARE(signalLog.take(), tilesAppended(2, 3));
}

void TestProductCatalogue::emptyVectorEmitsNothing()
{
    PassengerTypesModel model(m_owner.get());
    SignalLog signalLog(&model);
    model.addItemsToModel({});
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(signalLog.take(), QStringList());
}

void TestProductCatalogue::callersListMayChangeMeanwhile()
{
    PassengerTypesModel model(m_owner.get());
    QVector<sProduct> products{productWith(1, "a"), productWith(2, "b"), productWith(3, "c")};
    connect(&model, &PassengerTypesModel::countChanged, this, [&products] { products.clear(); });
    model.addItemsToModel(products);
    QCOMPARE(gridText(model, 0), QString("a b c"));
}

void TestProductCatalogue::ownListMayBeHandedOver()
{
    PassengerTypesModel model(m_owner.get());
    addProducts(model, "1a 1b");
    connect(&model, &PassengerTypesModel::countChanged, this, [&model] {
        if (model.rowCount() < 3)
            addProducts(model, "1x");
    });
    model.addItemsToModel(PassengerTypesModelInspector(model).products());
    QCOMPARE(gridText(model, 0), QString("1a 1b"));
}

void TestProductCatalogue::nameOfFareProduct_data()
{
    QTest::addColumn<QVector<sProduct>>("products");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<QString>("name");

    const QVector<sProduct> some{productWith(4, "four"),        productWith(5, "upper"),
                                 productWith(5, "lower"),       productWith(-6, "negative"),
                                 productWith(lowest, "lowest"), productWith(highest, "highest")};
    QTest::newRow("no rows have no name") << QVector<sProduct>() << 5 << QString();
    QTest::newRow("no rows have no name for 0 either") << QVector<sProduct>() << 0 << QString();
    QTest::newRow("first row counts") << some << 4 << "four";
    QTest::newRow("upper one of two rows wins") << some << 5 << "upper";
    QTest::newRow("number that no row has") << some << 7 << QString();
    QTest::newRow("negative number") << some << -6 << "negative";
    QTest::newRow("lowest number") << some << lowest << "lowest";
    QTest::newRow("highest number in the last row") << some << highest << "highest";
    QTest::newRow("number is not matched by its beginning")
        << QVector<sProduct>{productWith(55, "55"), productWith(5, "5")} << 5 << "5";
    QTest::newRow("placeholders have the number 0")
        << QVector<sProduct>{productWith(1, "one"), sProduct()} << 0 << "---DUMMY---";
}

void TestProductCatalogue::nameOfFareProduct()
{
    QFETCH(QVector<sProduct>, products);
    QFETCH(int, wanted);
    QFETCH(QString, name);

    PassengerTypesModel model(m_owner.get());
    model.addItemsToModel(products);
    SignalLog signalLog(&model);
    const QString found = model.getFareProductName(wanted);
    QCOMPARE(found, name);
    QCOMPARE(found.isNull(), name.isNull());
    QCOMPARE(signalLog.take(), QStringList());
}

void TestProductCatalogue::nameOfFareProductFollowsTheTile()
{
    PassengerTypesModel model(m_owner.get());
    model.addItemsToModel({productWith(5, "old"), productWith(6, "other")});
    auto* tile = qobject_cast<PassengerTypeItem*>(model.itemFromRow(0));
    tile->setFareProductName("new");
    QCOMPARE(model.getFareProductName(5), QString("new"));
    tile->setFareProductId(6);
    QVERIFY(model.getFareProductName(5).isNull());
    QCOMPARE(model.getFareProductName(6), QString("new"));
}

void TestProductCatalogue::nameOfFareProductFollowsRowOrder()
{
    PassengerTypesModel model(m_owner.get());
    model.addItemsToModel({productWith(5, "first"), productWith(5, "second")});
    const std::unique_ptr<rivo::models::ListItem> taken(model.takeRow(0));
    QCOMPARE(model.getFareProductName(5), QString("second"));
    model.removeRow(0);
    QVERIFY(model.getFareProductName(5).isNull());
}

void TestProductCatalogue::foreignRowHasNoName_data()
{
    QTest::addColumn<QVariant>("fareProductId");
    QTest::addColumn<QString>("name");

    QTest::newRow("a foreign row above hides the tile") << QVariant(5) << QString();
    QTest::newRow("equality is that of QVariant: text above hides it too")
        << QVariant("5") << QString();
    QTest::newRow("a foreign row of another product does not matter") << QVariant(6) << "tile";
    QTest::newRow("a foreign row without the role does not matter") << QVariant() << "tile";
}

void TestProductCatalogue::foreignRowHasNoName()
{
    QFETCH(QVariant, fareProductId);
    QFETCH(QString, name);

    PassengerTypesModel model(m_owner.get());
    model.appendRow(new ForeignRow(fareProductId, &model));
    model.addItemsToModel({productWith(5, "tile")});
    const QString found = model.getFareProductName(5);
    QCOMPARE(found, name);
    QCOMPARE(found.isNull(), name.isNull());
}

QTEST_GUILESS_MAIN(TestProductCatalogue)
#include "tst_product_catalogue.moc"
