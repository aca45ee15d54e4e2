#include "FareProductFields.h"
#include "FareProductsModel.h"
#include "ForeignRow.h"
#include "ModelBattery.h"
#include "SignalLog.h"

#include <QPointer>
#include <QTest>

#include <memory>
#include <type_traits>

using rivo::models::ListItem;

namespace
{

static_assert(
    std::is_same_v<decltype(&FareProductsModel::addItem),
                   void (FareProductsModel::*)(
                       const int&, const QString&, const QString&, const double&, const double&,
                       const bool&, const bool&, const QList<QVariant>&, const QList<QVariant>&,
                       const QList<QVariant>&, const QList<QVariant>&)>);
static_assert(std::is_same_v<decltype(&FareProductsModel::getFareProductDescription),
                             QString (FareProductsModel::*)(int)>);

void addProduct(FareProductsModel& catalogue, int id, const QString& description)
{
    catalogue.addItem(id, description, "qrc:/icons/ticket.svg", 2.5, 0.1, true, true, {1}, {2}, {3},
                      {4});
}

/// A product with an identity of its own making.
class RenumberedProduct : public FareProductItem
{
public:
    using FareProductItem::FareProductItem;
    int id() const override { return 4711; }
};

/// Begins every search at its second row.
class LateCatalogue : public battery::TopLevelOnly<FareProductsModel>
{
public:
    using TopLevelOnly::TopLevelOnly;

    QModelIndex index(int row, int column, const QModelIndex& parent) const override
    {
        if (isStart) {
            isStart = false;
            start = QString("%1, %2, %3").arg(row).arg(column).arg(parent.isValid());
            row = 1;
        }
        return FareProductsModel::index(row, column, parent);
    }

    QModelIndexList match(const QModelIndex& first, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override
    {
        searchedFrom = first.row();
        return FareProductsModel::match(first, role, value, hits, flags);
    }

    mutable bool isStart = false; ///< of the next call of index()
    mutable QString start;        ///< its arguments
    mutable int searchedFrom = -1;
};

/// Notes what is searched for and finds `found`, whatever it is.
class SearchedCatalogue : public FareProductsModel
{
public:
    using FareProductsModel::FareProductsModel;

    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override
    {
        searches.append(QString("from %1 role %2 for %3 %4, %5 hits, flags %6")
                            .arg(start.row())
                            .arg(role)
                            .arg(value.typeName(), value.toString())
                            .arg(hits)
                            .arg(int(flags)));
        return found;
    }

    QModelIndexList found;
    mutable QStringList searches;
};

/// Shows its first rows only.
class ShortCatalogue : public FareProductsModel
{
public:
    using FareProductsModel::FareProductsModel;

    int rowCount(const QModelIndex& = QModelIndex()) const override { return shown; }

    int shown = 0;
};

} // namespace

class TestFareProductsModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_owner = std::make_unique<QObject>();
        m_catalogue = new battery::TopLevelOnly<FareProductsModel>(m_owner.get());
        new QAbstractItemModelTester(
            m_catalogue, QAbstractItemModelTester::FailureReportingMode::Fatal, m_catalogue);
    }

    void cleanup() { m_owner.reset(); }

    void aProductTakesOverTheArgumentsAndIsNotInTheBasket()
    {
        const QVariantList types{1, 2, "Student"};
        SignalLog log(m_catalogue);
        m_catalogue->addItem(12, "Single", "qrc:/icons/single.svg", 2.75, -0.5, true, false, types,
                             {3}, {4, 4}, {QVariant()});
        QCOMPARE(log.take(), announcedInsertion(0, 0, 1));
        m_catalogue->addItem(-7, QString(), "", 0.0, 0.0, false, true, {}, {}, {}, {});
        QCOMPARE(log.take(), announcedInsertion(1, 1, 2));

        compare(0, {12, "Single", "qrc:/icons/single.svg", 2.75, -0.5, true, false, QVariant(types),
                    QVariant(QVariantList{3}), QVariant(QVariantList{4, 4}),
                    QVariant(QVariantList{QVariant()}), 0});
        const QVariant none = QVariantList();
        compare(1, {-7, "", "", 0.0, 0.0, false, true, none, none, none, none, 0});
        QCOMPARE(m_catalogue->itemFromRow(0)->metaObject(), &FareProductItem::staticMetaObject);
        QCOMPARE(m_catalogue->itemFromRow(0)->parent(), m_catalogue);

        qobject_cast<FareProductItem*>(m_catalogue->itemFromRow(1))->setTotalInBasket(3);
        QCOMPARE(log.take(), QStringList{rowChanged(1)});
    }

    void productsOfOneIdAreSeveralRows()
    {
        addProduct(*m_catalogue, 12, "Single");
        addProduct(*m_catalogue, 12, "Single");
        QCOMPARE(m_catalogue->rowCount(), 2);
    }

    void productsBelongToTheCatalogue()
    {
        for (int id = 0; id < 3; ++id)
            addProduct(*m_catalogue, id, "Single");
        const QPointer<ListItem> removed = m_catalogue->itemFromRow(1);
        QVERIFY(m_catalogue->removeRow(1));
        QVERIFY(removed);
        battery::runDeferredDeletions();
        QVERIFY(!removed);
        const QPointer<ListItem> left = m_catalogue->itemFromRow(1);
        delete m_catalogue;
        QVERIFY(!left);
    }

    void description_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("description");
        QTest::newRow("the first product") << 10 << "Single";
        QTest::newRow("the last product") << 40 << "Month";
        QTest::newRow("the upper of two products") << 20 << "Day";
        QTest::newRow("a negative id") << -1 << "Unnumbered";
        QTest::newRow("a product without description") << 30 << "";
        QTest::newRow("an unknown id") << 11 << QString();
        QTest::newRow("zero, which is an id like any other") << 0 << QString();
        QTest::newRow("the largest number") << INT_MAX << QString();
    }

    void description()
    {
        QFETCH(int, id);
        QFETCH(QString, description);
        addProduct(*m_catalogue, 10, "Single");
        addProduct(*m_catalogue, 20, "Day");
        addProduct(*m_catalogue, -1, "Unnumbered");
        addProduct(*m_catalogue, 20, "Week");
        addProduct(*m_catalogue, 30, "");
        addProduct(*m_catalogue, 40, "Month");
        SignalLog log(m_catalogue);
        const QString found = m_catalogue->getFareProductDescription(id);
        QCOMPARE(found, description);
        QCOMPARE(found.isNull(), description.isNull());
        QCOMPARE(log.take(), QStringList());
    }

    void noProductsHaveNoDescription()
    {
        SignalLog log(m_catalogue);
        QVERIFY(m_catalogue->getFareProductDescription(-1).isNull());
        QVERIFY(m_catalogue->getFareProductDescription(0).isNull());
        QCOMPARE(log.take(), QStringList());
    }

    void theDescriptionFollowsTheRows()
    {
        addProduct(*m_catalogue, 20, "Day");
        addProduct(*m_catalogue, 20, "Week");
        QVERIFY(m_catalogue->removeRow(0));
        QCOMPARE(m_catalogue->getFareProductDescription(20), "Week");
        qobject_cast<FareProductItem*>(m_catalogue->itemFromRow(0))->setDescription("Month");
        QCOMPARE(m_catalogue->getFareProductDescription(20), "Month");
    }

    void aRowThatIsNoProductHidesThoseBelow_data()
    {
        QTest::addColumn<QVariant>("role257");
        QTest::addColumn<QString>("description");
        QTest::newRow("of the same number") << QVariant(20) << QString();
        QTest::newRow("of the same number as text") << QVariant("20") << QString();
        QTest::newRow("not if of another number") << QVariant(21) << "Day";
        QTest::newRow("not if without a number") << QVariant() << "Day";
    }

    void aRowThatIsNoProductHidesThoseBelow()
    {
        QFETCH(QVariant, role257);
        QFETCH(QString, description);
        // Without the model tester, which objects to a row whose every role has this value.
        FareProductsModel catalogue(m_owner.get());
        catalogue.appendRow(new ForeignRow(role257, &catalogue));
        addProduct(catalogue, 20, "Day");
        QCOMPARE(catalogue.getFareProductDescription(20), description);
    }

    void productsAreFoundByTheirVirtualId()
    {
        auto* product = new RenumberedProduct(m_catalogue);
        product->setDescription("Renumbered");
        m_catalogue->appendRow(product);
        QCOMPARE(m_catalogue->getFareProductDescription(4711), "Renumbered");
        QVERIFY(m_catalogue->getFareProductDescription(-1).isNull());
    }

    void theSearchBeginsAtTheVirtualIndex()
    {
        LateCatalogue catalogue(m_owner.get());
        addProduct(catalogue, 20, "Day");
        addProduct(catalogue, 20, "Week");
        QCOMPARE(catalogue.getFareProductDescription(20), "Day");
        catalogue.isStart = true;
        QCOMPARE(catalogue.getFareProductDescription(20), "Week");
        QCOMPARE(catalogue.start, "0, 0, 0");
        QCOMPARE(catalogue.searchedFrom, 1);
    }

    void theSearchIsTheVirtualMatch()
    {
        SearchedCatalogue catalogue(m_owner.get());
        QVERIFY(catalogue.getFareProductDescription(7).isNull());
        QCOMPARE(catalogue.searches, QStringList{"from -1 role 257 for int 7, 1 hits, flags 0"});
        QCOMPARE(int(Qt::MatchExactly), 0);

        addProduct(catalogue, 10, "Single");
        addProduct(catalogue, 20, "Day");
        catalogue.searches.clear();
        QVERIFY(catalogue.getFareProductDescription(20).isNull());
        QCOMPARE(catalogue.searches, QStringList{"from 0 role 257 for int 20, 1 hits, flags 0"});
        catalogue.found = {catalogue.index(1, 0), catalogue.index(0, 0)};
        QCOMPARE(catalogue.getFareProductDescription(10), "Day");
        catalogue.found = {QModelIndex()};
        QVERIFY(catalogue.getFareProductDescription(10).isNull());
    }

    void theSearchEndsAtTheVirtualRowCount()
    {
        ShortCatalogue catalogue(m_owner.get());
        addProduct(catalogue, 10, "Single");
        addProduct(catalogue, 20, "Day");
        QVERIFY(catalogue.getFareProductDescription(10).isNull());
        catalogue.shown = 1;
        QCOMPARE(catalogue.getFareProductDescription(10), "Single");
        QVERIFY(catalogue.getFareProductDescription(20).isNull());
        catalogue.shown = 2;
        QCOMPARE(catalogue.getFareProductDescription(20), "Day");
    }

private:
    /// The row has exactly these values.
    void compare(int row, const QVariantList& values) const
    {
        QCOMPARE(differences(*m_catalogue->itemFromRow(row), fareProductItemClass().fields, values),
                 QStringList());
    }

    std::unique_ptr<QObject> m_owner;
    FareProductsModel* m_catalogue = nullptr;
};

QTEST_GUILESS_MAIN(TestFareProductsModel)

#include "tst_fareproductsmodel.moc"
