#include "SampleModel.h"

#include <QDateTime>
#include <QStringListModel>
#include <QTest>

using rivo::models::ListItem;
using rivo::models::ListModel;

namespace
{

/// A row with twelve roles of many types, one of them without a value.
class WideItem : public ListItem
{
public:
    using ListItem::ListItem;

    int id() const override { return 12; }

    QVariant data(int role) const override
    {
        return role >= 257 && role < 257 + values().size() ? values().at(role - 257) : QVariant();
    }

    QHash<int, QByteArray> roleNames() const override
    {
        // Not in numeric order, and one name outside ASCII.
        return {{268, "number"}, {267, "größe"}, {266, "list"},   {265, "date"},
                {264, "bytes"},  {263, "none"},  {262, "map"},    {261, "long"},
                {260, "flag"},   {259, "text"},  {258, "amount"}, {257, "id"}};
    }

    static const QVariantList& values()
    {
        static const QVariantList all{12,
                                      0.1 + 0.2,
                                      QStringLiteral("Dorosły"),
                                      true,
                                      QVariant::fromValue<qint64>(1LL << 40),
                                      QVariantMap{{"a", 1}},
                                      QVariant(),
                                      QByteArray("\0\1", 2),
                                      QDateTime(QDate(2026, 3, 29), QTime(2, 30), Qt::UTC),
                                      QVariantList{1, "two"},
                                      3.5f,
                                      42u};
        return all;
    }
};

QVector<ListItem*> exposedRows;

void noteExposed(ListItem* row) { exposedRows.append(row); }

} // namespace

class TestListModelExport : public QObject
{
    Q_OBJECT

private slots:
    void aRowIsAMapOfItsRoles()
    {
        SampleItem prototype;
        WideItem item;
        ListModel model(&prototype, nullptr);
        model.appendRow(&item);

        const QVariant row = model.get(0);

        QCOMPARE(row.userType(), static_cast<int>(QMetaType::QVariantMap));
        const QVariantMap map = row.toMap();
        QCOMPARE(map.keys(), (QStringList{"amount", "bytes", "date", "flag", "größe", "id", "list",
                                          "long", "map", "none", "number", "text"}));
        const QHash<int, QByteArray> names = item.roleNames();
        for (auto name = names.cbegin(); name != names.cend(); ++name) {
            const QVariant value = map.value(QString::fromUtf8(name.value()));
            const QVariant expected = WideItem::values().at(name.key() - 257);
            QVERIFY2(sameValue(value, expected), name.value());
        }
        QVERIFY(map.contains("none") && !map.value("none").isValid());
    }

    void theTableIsTheRowsOwnNotThePrototypes()
    {
        WideItem prototype;
        SampleItem item(5, "bread");
        ListModel model(&prototype, nullptr);
        model.appendRow(&item);
        QCOMPARE(model.get(0).toMap(), (QVariantMap{{"id", 5}, {"value", "bread"}}));
        QCOMPARE(model.roleNames(), prototype.roleNames());
    }

    void aRowByIndexIsTheRowOfThatNumber()
    {
        SampleModel model(2);
        QStringListModel foreign({"a", "b", "c"});
        QCOMPARE(model.get(model.index(1, 0)), model.get(1));
        QCOMPARE(model.get(1).toMap().value("id"), QVariant(1));
        QCOMPARE(model.get(foreign.index(1, 0)), model.get(1));
        QVERIFY(!model.get(foreign.index(2, 0)).isValid());
    }

    /// Which values are equal: see tst_role_value_order.
    void rowsAreCountedByTheValueOfARole()
    {
        SampleModel model(QVariantList{1, 2, 1, QVariant()});
        QCOMPARE(model.countByRole(SampleItem::ValueRole, 1), 2);
        QCOMPARE(model.countByRole(SampleItem::ValueRole, 7), 0);
        QCOMPARE(model.countByRole(SampleItem::IdRole, 0), 1);
        // An unknown role has no value in any row.
        QCOMPARE(model.countByRole(999, QVariant()), 4);
        QCOMPARE(model.countByRole(999, 1), 0);
        QCOMPARE(SampleModel().countByRole(SampleItem::ValueRole, 1), 0);
    }

    void theHandlerIsCalledWithEveryRowThatIsHandedOut()
    {
        SampleModel model(1);
        SampleItem* first = model.item(0); // without a handler
        SampleItem* second = model.newItem(1);
        QVERIFY(!ListModel::rowExposureHandler());

        exposedRows.clear();
        ListModel::setRowExposureHandler(noteExposed);
        QVERIFY(ListModel::rowExposureHandler() == noteExposed);
        QCOMPARE(model.itemFromRow(-1), nullptr);
        model.appendRowFromQml(nullptr);
        model.data(model.index(0, 0), SampleItem::IdRole);
        model.get(0);
        model.get(model.index(0, 0));
        model.findById(0);
        model.rowIndexFromId(0);
        first->triggerItemUpdate();
        QCOMPARE(exposedRows, QVector<ListItem*>());
        QCOMPARE(model.itemFromRow(0), first);
        model.appendRowFromQml(second);
        QCOMPARE(exposedRows, (QVector<ListItem*>{first, second}));

        ListModel::setRowExposureHandler(nullptr);
        QCOMPARE(model.itemFromRow(1), second);
        QCOMPARE(exposedRows.size(), 2);
    }
};

QTEST_GUILESS_MAIN(TestListModelExport)

#include "tst_listmodel_export.moc"
