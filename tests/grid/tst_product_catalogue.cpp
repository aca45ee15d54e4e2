#include "PassengerTypesModel.h" // alone: the product record must be visible through it

#include "ForeignRow.h"
#include "GridSignals.h"
#include "GridText.h"
#include "LogCapture.h"
#include "PassengerTypeItem.h"
#include "Products.h"
#include "Table.h"

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
static_assert(std::is_nothrow_move_constructible_v<sProduct> &&
              std::is_nothrow_move_assignable_v<sProduct>);
static_assert(std::is_same_v<std::underlying_type_t<Type>, int>);
static_assert(std::is_same_v<decltype(PassengerTypesModel::codeMap), const QMap<QString, Type>>);
static_assert(std::is_same_v<decltype(PassengerTypesModel::iconMap), const QMap<Type, QString>>);

sProduct productWith(int fareProductId, const QString& name)
{
    sProduct product;
    product.fareProductId = fareProductId;
    product.fareProductName = name;
    return product;
}

} // namespace

/// The product record, the tables of passenger types, and how records become tiles.
class TestProductCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_owner = std::make_unique<QObject>();
        m_log = std::make_unique<LogCapture>();
        m_model = new PassengerTypesModel(m_owner.get());
    }

    void cleanup()
    {
        m_owner.reset();
        m_log.reset();
    }

    // Tables

    void codeMapIsWhole()
    {
        const QMap<QString, Type> whole{
            {"PT_ADULT", Type(1)},     {"PT_STUDENT_1", Type(3)},   {"PT_SCHOOLBOY", Type(4)},
            {"PT_DISABLED", Type(5)},  {"PT_MILITARY_1", Type(7)},  {"PT_LFS", Type(8)},
            {"PT_STUDENT_2", Type(9)}, {"PT_MILITARY_2", Type(10)},
        };
        QCOMPARE(PassengerTypesModel::codeMap, whole);
    }

    void addedTypeTextIsMappedExactly()
    {
        QStringList texts = PassengerTypesModel::codeMap.keys();
        texts << "pt_lfs"
              << "PT_Lfs"
              << " PT_LFS"
              << "PT_LFS "
              << "PT_STUDENT"
              << "8"
              << "" << QString();
        for (const QString& text : texts) {
            addItem(*m_model, {text, {}});
            m_model->sortBasedOnLocalData({});
            QCOMPARE(tile(m_model->rowCount() - 1).code(),
                     QString::number(PassengerTypesModel::codeMap.value(text, Type(0))));
            m_model->clearData();
        }
    }

    void iconOfTileIsThatOfTheTypeUnlessTheRecordHasOne()
    {
        const QMap<Type, QString> whole{
            {Type(1), "qrc:/icons/adult.svg"},   {Type(3), "qrc:/icons/student.svg"},
            {Type(4), "qrc:/icons/school.svg"},  {Type(5), "qrc:/icons/wheelchair.svg"},
            {Type(7), "qrc:/icons/soldier.svg"}, {Type(8), "qrc:/icons/family_large.svg"},
            {Type(9), "qrc:/icons/student.svg"}, {Type(10), "qrc:/icons/soldier.svg"},
        };
        QCOMPARE(PassengerTypesModel::iconMap, whole);
        for (const int code : {1, 3, 4, 5, 7, 8, 9, 10, 0, 2, 6, 11, -1, lowest, highest}) {
            sProduct product;
            product.passengerTypeCode = code;
            sProduct withIcon = product;
            withIcon.icon = " "; // a blank is an icon, too
            m_model->addItemsToModel({product, withIcon});
            const int row = m_model->rowCount() - 2;
            QCOMPARE(tile(row).icon(), whole.value(Type(code), "qrc:/icons/adult.svg"));
            QCOMPARE(tile(row).code(), QString::number(code));
            QCOMPARE(tile(row + 1).icon(), QString(" "));
        }
    }

    // Records become tiles

    void placeholderBecomesTile()
    {
        QVERIFY(sProduct().icon.isEmpty());
        m_model->addItemsToModel({sProduct()});
        QCOMPARE(allRoles(*m_model),
                 QStringList{"passengerTypeId=0;description=---NOT FOR SALE---;"
                             "fareProductIcon=qrc:/icons/adult.svg;price=0;fareProductId=0;"
                             "fareProductName=---DUMMY---;totalInBasket=0;isReturnFee=false;"
                             "fromStopGroupId=0;toStopGroupId=0;fareProductColor=;"
                             "hasExpired=true;fareDiscount=0;selected=false;isDaily=false;pos=-1"});
        QCOMPARE(tile(0).code(), QString("0"));
    }

    void addedFieldsReachTheTile_data()
    {
        const Table<bool, bool, bool> row("isReturnFee", "hasExpired", "isDaily");
        row("return fee", true, false, false);
        row("expired", false, true, false);
        row("daily", false, false, true);
    }

    void addedFieldsReachTheTile()
    {
        QFETCH(bool, isReturnFee);
        QFETCH(bool, hasExpired);
        QFETCH(bool, isDaily);
        m_model->addItem(21, "Student", "PT_STUDENT_1", "file:///own.svg", 2.35, 77, "Day ticket",
                         isReturnFee, 4, 9, "#ff8800", hasExpired, 0.5, isDaily, 1);
        m_model->setNumberOfColumns(1);
        m_model->sortBasedOnBackendAssignment();
        QCOMPARE(
            allRoles(*m_model),
            QStringList{QString("passengerTypeId=21;description=Student;"
                                "fareProductIcon=file:///own.svg;price=2.35;fareProductId=77;"
                                "fareProductName=Day ticket;totalInBasket=0;isReturnFee=%1;"
                                "fromStopGroupId=4;toStopGroupId=9;fareProductColor=#ff8800;"
                                "hasExpired=%2;fareDiscount=0.5;selected=false;isDaily=%3;"
                                "pos=1")
                            .arg(QVariant(isReturnFee).toString(), QVariant(hasExpired).toString(),
                                 QVariant(isDaily).toString())});
        QCOMPARE(tile(0).code(), QString("3"));
        QCOMPARE(tile(0).parent(), static_cast<QObject*>(m_model));
    }

    void recordsAreAppendedInTheirOrder()
    {
        const QVector<sProduct> products{productWith(3, "b"), sProduct(), productWith(1, "a")};
        m_model->addItemsToModel(products);
        const rivo::models::ListItem* first = m_model->itemFromRow(0);
        SignalLog signalLog(m_model);
        m_model->addItemsToModel({});
        QCOMPARE(signalLog.take(), QStringList());
        m_model->addItemsToModel(products);
        QCOMPARE(gridText(*m_model, 0), QString("b (0) a b (0) a"));
        QCOMPARE(m_model->itemFromRow(0), first);
        QCOMPARE(signalLog.take(), tilesAppended(3, 5));
        QCOMPARE(m_model->numberOfRows(), 0);
    }

    void longListsAreJudgedAndMovedInTime()
    {
        constexpr int count = 50000;
        QVector<sProduct> products(count);
        QVector<int> slotNumbers(count);
        for (int i = 0; i < count; ++i) {
            products[i].pos = i + 1;
            slotNumbers[i] = int(qint64(i) * 7 % count); // each once
        }
        const QVector<int> wanted = slotNumbers;
        QVERIFY(!m_model->checkForPosDuplicates(products));
        m_model->reOrder(products, slotNumbers);
        for (int i = 0; i < count; ++i)
            QCOMPARE(products.at(wanted.at(i)).pos, i + 1);
        products.last().pos = products.first().pos;
        QVERIFY(m_model->checkForPosDuplicates(products));
    }

    // Names

    void nameIsThatOfTheFirstTileWithTheNumber()
    {
        QVERIFY(m_model->getFareProductName(0).isNull());
        m_model->addItemsToModel({productWith(55, "longer number"), productWith(5, "upper"),
                                  productWith(5, "lower"), productWith(-6, "negative"), sProduct(),
                                  productWith(lowest, "lowest"), productWith(highest, "highest")});
        SignalLog signalLog(m_model);
        QCOMPARE(m_model->getFareProductName(55), QString("longer number"));
        QCOMPARE(m_model->getFareProductName(5), QString("upper"));
        QCOMPARE(m_model->getFareProductName(-6), QString("negative"));
        QCOMPARE(m_model->getFareProductName(0), QString("---DUMMY---"));
        QCOMPARE(m_model->getFareProductName(lowest), QString("lowest"));
        QCOMPARE(m_model->getFareProductName(highest), QString("highest"));
        QVERIFY(m_model->getFareProductName(7).isNull());
        QCOMPARE(signalLog.take(), QStringList());

        tile(1).setFareProductName("renamed");
        QCOMPARE(m_model->getFareProductName(5), QString("renamed"));
        tile(1).setFareProductId(7);
        QCOMPARE(m_model->getFareProductName(5), QString("lower"));
        QCOMPARE(m_model->getFareProductName(7), QString("renamed"));
        m_model->removeRow(1);
        QVERIFY(m_model->getFareProductName(7).isNull());
    }

    void foreignRowHasNoName_data()
    {
        const Table<QVariant, QString> row("fareProductId", "name");
        row("a foreign row above hides the tile", QVariant(5), {});
        row("equality is that of QVariant: text above hides it too", QVariant("5"), {});
        row("a foreign row of another product does not matter", QVariant(6), "tile");
        row("a foreign row without the role does not matter", {}, "tile");
    }

    void foreignRowHasNoName()
    {
        QFETCH(QVariant, fareProductId);
        QFETCH(QString, name);

        m_model->appendRow(new ForeignRow(fareProductId, m_model));
        m_model->addItemsToModel({productWith(5, "tile")});
        const QString found = m_model->getFareProductName(5);
        QCOMPARE(found, name);
        QCOMPARE(found.isNull(), name.isNull());
    }

private:
    PassengerTypeItem& tile(int row) const
    {
        return *qobject_cast<PassengerTypeItem*>(m_model->itemFromRow(row));
    }

    std::unique_ptr<QObject> m_owner;  // of the model and its prototype
    std::unique_ptr<LogCapture> m_log; // keeps the console quiet
    PassengerTypesModel* m_model = nullptr;
};

QTEST_GUILESS_MAIN(TestProductCatalogue)
#include "tst_product_catalogue.moc"
