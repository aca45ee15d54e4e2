#include "Table.h"

#include <CatalogueDesk.h>
#include <FareProductsModel.h>
#include <Feed.h>
#include <Tariff.h>

#include <QtTest>

using rivo::feed::Feed;
using rivo::feed::FeedProduct;
using rivo::terminal::CatalogueDesk;

namespace
{

FeedProduct product(int passengerType, const QString& name)
{
    FeedProduct product;
    product.passengerTypeId = passengerType;
    product.description = name;
    return product;
}

Feed feedWithTwoAdults()
{
    Feed feed;
    feed.products = {product(101, "Grown-up"), product(102, "Child"), product(101, "Visitor")};
    return feed;
}

} // namespace

class TestCatalogueDesk : public QObject
{
    Q_OBJECT

private slots:
    void passengerTypesAreInWords_data();
    void passengerTypesAreInWords();
    void identifiersOfGtfsAreRiderCategories();
    void otherListsStayAsTheyAre();
    void noSuchRowHasEmptyLists();
};

void TestCatalogueDesk::passengerTypesAreInWords_data()
{
    const Table<QVariantList, QStringList> row("types", "words");
    row("no types are an empty list", QVariantList{}, QStringList{});
    const QVector<QPair<const char*, const char*>> codes{
        {"PT_ADULT", "Adult"},
        {"PT_STUDENT_1", "Student"},
        {"PT_SCHOOLBOY", "School pupil"},
        {"PT_DISABLED", "Passenger with a disability"},
        {"PT_MILITARY_1", "Military"},
        {"PT_LFS", "Large family"},
        {"PT_STUDENT_2", "Student (second group)"},
        {"PT_MILITARY_2", "Military (second group)"}};
    for (const auto& code : codes)
        QTest::addRow("%s has a name", code.first)
            << QVariantList{code.first} << QStringList{code.second};
    row("a code that differs in case stays as it is", QVariantList{"pt_adult"}, {"pt_adult"});
    row("an unknown text stays as it is", {"PT_NEW", ""}, {"PT_NEW", ""});
    row("an identifier has the name of its product", QVariantList{102}, {"Child"});
    row("the first of two products names the identifier", QVariantList{101}, {"Grown-up"});
    row("an identifier without a product stays as it is", {1, -1}, {"1", "-1"});
    row("order and repetitions stay", {102, "PT_ADULT", 102}, {"Child", "Adult", "Child"});
}

void TestCatalogueDesk::passengerTypesAreInWords()
{
    QFETCH(QVariantList, types);
    QFETCH(QStringList, words);
    QObject prototypes;
    FareProductsModel catalogue(&prototypes);
    const CatalogueDesk desk(catalogue, feedWithTwoAdults());
    catalogue.addItem(1, "Day ticket", {}, 7.5, 0.0, false, true, types, {9}, {9}, {9});
    QCOMPARE(desk.passengerTypes(0), words);
}

void TestCatalogueDesk::identifiersOfGtfsAreRiderCategories()
{
    const auto tariff = std::make_shared<rivo::feed::Tariff>();
    for (const char* id : {"adult", "child"})
        tariff->categoryIds.append(id);
    tariff->categories = {{"Grown-up", {}, true, 2}, {{}, {}, false, 3}};
    Feed feed;
    feed.tariff = tariff;
    QObject prototypes;
    FareProductsModel catalogue(&prototypes);
    const CatalogueDesk desk(catalogue, feed);
    catalogue.addItem(1, "Day ticket", {}, 7.5, 0.0, false, true, {0, 1, 2, 3}, {}, {}, {});
    QCOMPARE(desk.passengerTypes(0), QStringList({"Anyone", "Grown-up", "child", "3"}));
}

void TestCatalogueDesk::otherListsStayAsTheyAre()
{
    QObject prototypes;
    FareProductsModel catalogue(&prototypes);
    const CatalogueDesk desk(catalogue, feedWithTwoAdults());
    catalogue.addItem(1, "First", {}, 1.0, 0.0, false, true, {"PT_ADULT"}, {}, {}, {});
    catalogue.addItem(2, "Second", {}, 7.5, 0.0, false, true, {}, {101, "paper"}, {"cash", 2},
                      {"PT_ADULT", 1});
    QCOMPARE(desk.passengerTypes(1), QStringList());
    QCOMPARE(desk.ticketMaterials(1), QStringList({"101", "paper"}));
    QCOMPARE(desk.paymentMethods(1), QStringList({"cash", "2"}));
    QCOMPARE(desk.paymentChannels(1), QStringList({"PT_ADULT", "1"}));
}

void TestCatalogueDesk::noSuchRowHasEmptyLists()
{
    QObject prototypes;
    FareProductsModel catalogue(&prototypes);
    const CatalogueDesk desk(catalogue, feedWithTwoAdults());
    catalogue.addItem(1, "Only", {}, 1.0, 0.0, false, true, {1}, {1}, {1}, {1});
    for (const int row : {-1, 1})
        QCOMPARE(desk.passengerTypes(row) + desk.ticketMaterials(row) + desk.paymentMethods(row) +
                     desk.paymentChannels(row),
                 QStringList());
}

QTEST_GUILESS_MAIN(TestCatalogueDesk)
#include "tst_catalogue_desk.moc"
