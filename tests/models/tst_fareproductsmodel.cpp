#include "FareProductItem.h"
#include "FareProductsModel.h"
#include "ForeignRow.h"
#include "LibraryModels.h"
#include "SignalLog.h"
#include "Table.h"
#include "TopLevelOnly.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <climits>
#include <memory>

namespace
{

void addProduct(FareProductsModel& catalogue, int id, const QString& description)
{
    catalogue.addItem(id, description, "qrc:/icons/ticket.svg", 2.5, 0.1, true, true, {1}, {2}, {3},
                      {4});
}

/// Notes what is searched for and finds `found`, whatever it is.
class SearchedCatalogue : public FareProductsModel
{
public:
    using FareProductsModel::FareProductsModel;

    QModelIndex index(int row, int column, const QModelIndex& parent) const override
    {
        calls.append(QString("index %1 %2 %3").arg(row).arg(column).arg(parent.isValid()));
        return createIndex(startRow, 0);
    }

    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override
    {
        calls.append(QString("match from %1 role %2 for %3 %4, %5 hits, flags %6")
                         .arg(start.row())
                         .arg(role)
                         .arg(value.typeName(), value.toString())
                         .arg(hits)
                         .arg(int(flags)));
        return found;
    }

    QModelIndex indexOfRow(int row) const { return createIndex(row, 0); }

    int startRow = 0;
    QModelIndexList found;
    mutable QStringList calls;
};

} // namespace

class TestFareProductsModel : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_owner = std::make_unique<QObject>();
        m_catalogue = new TopLevelOnly<FareProductsModel>(m_owner.get());
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

    void description_data()
    {
        const Table<int, QString> row("id", "description");
        row("the first product", 10, "Single");
        row("the last product", 40, "Month");
        row("the upper of two products", 20, "Day");
        row("a negative id", -1, "Unnumbered");
        row("a product without description", 30, "");
        row("an unknown id", 11, {});
        row("zero, which is an id like any other", 0, {});
        row("the largest number", INT_MAX, {});
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
        QCOMPARE(m_catalogue->rowCount(), 6);
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

    void aRowThatIsNoProductHidesThoseBelow_data()
    {
        const Table<QVariant, QString> row("role257", "description");
        row("of the same number", QVariant(20), {});
        row("of the same number as text", QVariant("20"), {});
        row("not if of another number", QVariant(21), "Day");
        row("not if without a number", {}, "Day");
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

    void theSearchIsTheVirtualMatchFromTheVirtualIndex()
    {
        SearchedCatalogue catalogue(m_owner.get());
        addProduct(catalogue, 10, "Single");
        addProduct(catalogue, 20, "Day");
        catalogue.startRow = 1;
        QVERIFY(catalogue.getFareProductDescription(20).isNull());
        QCOMPARE(catalogue.calls,
                 (QStringList{"index 0 0 0", "match from 1 role 257 for int 20, 1 hits, flags 0"}));
        QCOMPARE(int(Qt::MatchExactly), 0);
        catalogue.found = {catalogue.indexOfRow(1), catalogue.indexOfRow(0)};
        QCOMPARE(catalogue.getFareProductDescription(10), "Day");
        catalogue.found = {QModelIndex()};
        QVERIFY(catalogue.getFareProductDescription(10).isNull());
    }

private:
    /// The row has exactly these values.
    void compare(int row, const QVariantList& values) const
    {
        QCOMPARE(
            differences(*m_catalogue->itemFromRow(row), rowsOf("FareProductsModel").fields, values),
            QStringList());
    }

    std::unique_ptr<QObject> m_owner;
    FareProductsModel* m_catalogue = nullptr;
};

QTEST_GUILESS_MAIN(TestFareProductsModel)

#include "tst_fareproductsmodel.moc"
