#include "MetaObjectText.h"
#include "PassengerTypeFields.h"
#include "PassengerTypeItem.h"

#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <climits>
#include <memory>
#include <type_traits>

#include <dlfcn.h>

using rivo::models::ListItem;

namespace
{

/// The members of a tile in order.
struct Members : ListItem
{
    int id;
    QString description;
    QString code;
    QString icon;
    double price;
    int fareProductId;
    QString fareProductName;
    int totalInBasket;
    bool isReturnFee;
    int fromStopGroupId;
    int toStopGroupId;
    QString fareProductColor;
    bool hasExpired;
    double fareDiscount;
    bool selected;
    bool isDaily;
    int pos;
};
static_assert(sizeof(PassengerTypeItem) == sizeof(Members));

// Getters and setters are checked by itemField(), which takes nothing but their exact types; the
// constructors by their symbols below.
static_assert(std::is_base_of_v<ListItem, PassengerTypeItem>);
static_assert(std::is_default_constructible_v<PassengerTypeItem>);
static_assert(std::is_same_v<decltype(&PassengerTypeItem::id), int (PassengerTypeItem::*)() const>);
static_assert(
    std::is_same_v<decltype(&PassengerTypeItem::data), QVariant (PassengerTypeItem::*)(int) const>);
static_assert(std::is_same_v<decltype(&PassengerTypeItem::roleNames),
                             QHash<int, QByteArray> (PassengerTypeItem::*)() const>);
static_assert(std::is_same_v<decltype(&PassengerTypeItem::triggerItemUpdate), void (ListItem::*)()>,
              "inherited unchanged");

const QVector<ItemField>& fields()
{
    static const QVector<ItemField> all = passengerTypeItemClass().fields;
    return all;
}

const ItemField& field(const char* name)
{
    return *std::find_if(fields().cbegin(), fields().cend(),
                         [name](const ItemField& f) { return qstrcmp(f.name, name) == 0; });
}

QVariantList initialValues()
{
    QVariantList values;
    for (const ItemField& each : fields())
        values << each.initial;
    return values;
}

/// A tile from one value per field; that of `selected` is no argument.
std::unique_ptr<PassengerTypeItem> construct(const QVariantList& v, QObject* parent = nullptr)
{
    return std::make_unique<PassengerTypeItem>(
        v[0].toInt(), v[1].toString(), v[2].toString(), v[3].toString(), v[4].toDouble(),
        v[5].toInt(), v[6].toString(), v[7].toInt(), v[8].toBool(), v[9].toInt(), v[10].toInt(),
        v[11].toString(), v[12].toBool(), v[13].toDouble(), v[15].toBool(), v[16].toInt(), parent);
}

/// Getters and roles show exactly these values.
void compare(const PassengerTypeItem& tile, const QVariantList& values)
{
    for (int i = 0; i < fields().size(); ++i) {
        const ItemField& each = fields().at(i);
        QVERIFY2(sameValue(each.get(tile), values.at(i)), each.name);
        if (each.role != 0)
            QVERIFY2(sameValue(tile.data(each.role), values.at(i)), each.name);
    }
    QCOMPARE(tile.id(), values.first().toInt());
}

/// A tile with an identity of its own making.
class RenumberedTile : public PassengerTypeItem
{
public:
    int id() const override { return 4711; }
};

/// Symbols of the library as nm prints them: "address size type name".
QStringList librarySymbols()
{
    QProcess nm;
    nm.start(QStringLiteral(NM_FILE), {QStringLiteral("-CS"), QStringLiteral("--defined-only"),
                                       QStringLiteral(GUICORE_FILE)});
    if (!nm.waitForFinished() || nm.exitCode() != 0)
        return {};
    return QString::fromLocal8Bit(nm.readAllStandardOutput()).split('\n');
}

bool isExported(const QStringList& symbols, const QString& function)
{
    return symbols.indexOf(QRegularExpression("^[0-9a-f]+ [0-9a-f]+ T " +
                                              QRegularExpression::escape(function) + '$')) >= 0;
}

} // namespace

class TestPassengerTypeItem : public QObject
{
    Q_OBJECT

private slots:
    void declaresNothingOfItsOwn()
    {
        const QMetaObject& type = PassengerTypeItem::staticMetaObject;
        QCOMPARE(type.className(), "PassengerTypeItem");
        QCOMPARE(type.superClass(), &ListItem::staticMetaObject);
        QCOMPARE(metaobject::methods(type), QStringList());
        QCOMPARE(metaobject::properties(type), QStringList());
        QCOMPARE(metaobject::enums(type), QStringList());
        QVERIFY(metaobject::hasNothingElse(type));
    }

    void roles()
    {
        const QHash<int, QByteArray> names{{257, "passengerTypeId"},  {258, "description"},
                                           {259, "fareProductIcon"},  {260, "price"},
                                           {261, "fareProductId"},    {262, "fareProductName"},
                                           {263, "totalInBasket"},    {264, "isReturnFee"},
                                           {265, "fromStopGroupId"},  {266, "toStopGroupId"},
                                           {267, "fareProductColor"}, {268, "hasExpired"},
                                           {269, "fareDiscount"},     {270, "selected"},
                                           {271, "isDaily"},          {272, "pos"}};
        QCOMPARE(names.size(), 16);
        QCOMPARE(PassengerTypeItem().roleNames(), names);
        QCOMPARE(PassengerTypeItemRolesHandling::PASSENGER_TYPE_ROLES_HASH_TABLE.hash, names);
    }

    void otherRolesHaveNoValue_data()
    {
        QTest::addColumn<int>("role");
        QTest::newRow("before the first") << 256;
        QTest::newRow("after the last") << 273;
        QTest::newRow("what Qt displays") << int(Qt::DisplayRole);
        QTest::newRow("negative") << -1;
        QTest::newRow("the largest") << INT_MAX;
        QTest::newRow("the smallest") << INT_MIN;
    }

    void otherRolesHaveNoValue()
    {
        QFETCH(int, role);
        QVERIFY(!PassengerTypeItem().data(role).isValid());
    }

    void theIdentityRoleAsksTheVirtualId()
    {
        const RenumberedTile tile;
        QVERIFY(sameValue(tile.data(257), 4711));
    }

    void aPrototypeHasTheInitialValues()
    {
        const PassengerTypeItem tile;
        compare(tile,
                {-1, "", "", "", 0.0, -1, "", 0, false, -1, -1, "", false, 0.0, false, false, -1});
    }

    void textsOfAPrototypeAreEmptyNotNull()
    {
        const PassengerTypeItem tile;
        for (const QString& text : {tile.description(), tile.code(), tile.icon(),
                                    tile.fareProductName(), tile.fareProductColor()}) {
            QVERIFY(text.isEmpty());
            QVERIFY(!text.isNull());
        }
        for (int role : {258, 259, 262, 267})
            QVERIFY(!tile.data(role).toString().isNull());
    }

    void parents()
    {
        QObject owner;
        QCOMPARE(PassengerTypeItem().parent(), nullptr);
        QCOMPARE(PassengerTypeItem(&owner).parent(), &owner);
        QCOMPARE(construct(initialValues())->parent(), nullptr);
        QCOMPARE(construct(initialValues(), &owner)->parent(), &owner);
    }

    void eachArgumentGoesToItsField_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QVariant>("value");
        for (int i = 0; i < fields().size(); ++i) {
            for (const QVariant& value : fields().at(i).samples) {
                if (qstrcmp(fields().at(i).name, "selected") != 0)
                    QTest::addRow("%s %s", fields().at(i).name, qPrintable(value.toString()))
                        << i << value;
            }
        }
    }

    void eachArgumentGoesToItsField()
    {
        QFETCH(int, index);
        QFETCH(QVariant, value);
        QVariantList values = initialValues();
        values[index] = value;
        compare(*construct(values), values);
    }

    void allArgumentsAtOnce()
    {
        const QVariantList values{7,    "Student", "3",   "qrc:/icons/student.svg",
                                  2.75, 12,        "Day", 4,
                                  true, 10,        20,    "#00ff00",
                                  true, 0.5,       false, true,
                                  9};
        compare(*construct(values), values);
    }

    // From each sample value to each other one.
    void setter_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QVariant>("value");
        const auto text = [](const QVariant& value) {
            return value.userType() == QMetaType::Double
                       ? QString::number(value.toDouble(), 'g', 17)
                       : '"' + value.toString() + '"';
        };
        for (int i = 0; i < fields().size(); ++i) {
            const ItemField& each = fields().at(i);
            for (const QVariant& stored : each.samples) {
                for (const QVariant& value : each.samples)
                    QTest::addRow("%s from %s to %s is %s", each.name, qPrintable(text(stored)),
                                  qPrintable(text(value)),
                                  isAnnounced(each, stored, value) ? "announced" : "silent")
                        << i << stored << value;
            }
        }
    }

    void setter()
    {
        QFETCH(int, index);
        QFETCH(QVariant, stored);
        QFETCH(QVariant, value);
        const ItemField& each = fields().at(index);
        QVariantList values = initialValues();
        values[index] = stored;
        const std::unique_ptr<PassengerTypeItem> tile = construct(values);
        if (qstrcmp(each.name, "selected") == 0)
            tile->setSelected(stored.toBool());
        compare(*tile, values);
        QSignalSpy changes(tile.get(), &ListItem::dataChanged);

        each.set(*tile, value);

        QCOMPARE(changes.count(), isAnnounced(each, stored, value) ? 1 : 0);
        if (!isKept(each, stored, value))
            values[index] = value;
        compare(*tile, values);

        each.set(*tile, value);
        QCOMPARE(changes.count(), isAnnounced(each, stored, value) ? 1 : 0);
        compare(*tile, values);
    }

    // The setters that differ from the others, in plain values.

    void noiseInThePriceIsIgnored()
    {
        PassengerTypeItem tile;
        tile.setPrice(5.0);
        QSignalSpy changes(&tile, &ListItem::dataChanged);
        tile.setPrice(5.0 + 1e-13);
        QCOMPARE(changes.count(), 0);
        QVERIFY(sameValue(tile.data(260), 5.0));
        tile.setPrice(5.01);
        QCOMPARE(changes.count(), 1);

        QVariantList values = initialValues();
        values[4] = 1e-13;
        const std::unique_ptr<PassengerTypeItem> almostFree = construct(values);
        QSignalSpy freeChanges(almostFree.get(), &ListItem::dataChanged);
        almostFree->setPrice(0.0);
        QCOMPARE(freeChanges.count(), 0);
        QVERIFY(sameValue(almostFree->data(260), 1e-13));
    }

    void noiseInTheDiscountIsAnnounced()
    {
        PassengerTypeItem tile;
        QSignalSpy changes(&tile, &ListItem::dataChanged);
        tile.setFareDiscount(1e-13);
        QCOMPARE(changes.count(), 1);
        tile.setFareDiscount(0.5);
        tile.setFareDiscount(0.5 + 1e-13);
        QCOMPARE(changes.count(), 3);
        QVERIFY(sameValue(tile.data(269), 0.5 + 1e-13));
        tile.setFareDiscount(0.5 + 1e-13);
        QCOMPARE(changes.count(), 3);
    }

    void theNameOfTheFareProductIsStoredSilently()
    {
        PassengerTypeItem tile;
        QSignalSpy changes(&tile, &ListItem::dataChanged);
        tile.setFareProductName("Single");
        QCOMPARE(tile.fareProductName(), "Single");
        QCOMPARE(tile.data(262), QVariant("Single"));
        QCOMPARE(changes.count(), 0);
    }

    void textsAreComparedWithTheirCase_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("description") << QByteArray("description");
        QTest::newRow("code") << QByteArray("code");
        QTest::newRow("icon") << QByteArray("icon");
        QTest::newRow("colour") << QByteArray("fareProductColor");
    }

    void textsAreComparedWithTheirCase()
    {
        QFETCH(QByteArray, name);
        PassengerTypeItem tile;
        QSignalSpy changes(&tile, &ListItem::dataChanged);
        field(name.constData()).set(tile, QString());
        QCOMPARE(changes.count(), 0); // null equals empty
        field(name.constData()).set(tile, "Adult");
        field(name.constData()).set(tile, "adult");
        QCOMPARE(changes.count(), 2);
    }

    // What only the built library can tell.

    void constructorsTakeTheirArgumentsAsDeclared()
    {
        const QStringList symbols = librarySymbols();
        QVERIFY(!symbols.isEmpty());
        QVERIFY(isExported(symbols, "PassengerTypeItem::PassengerTypeItem(QObject*)"));
        QVERIFY(isExported(symbols,
                           "PassengerTypeItem::PassengerTypeItem(int const&, QString const&, "
                           "QString const&, QString const&, double const&, int const&, "
                           "QString const&, int const&, bool const&, int const&, int const&, "
                           "QString const&, bool const&, double const&, bool const&, int, "
                           "QObject*)"));
    }

    void bothConstructorsCountAndTheDestructorDoesNot()
    {
        // Where the library is loaded, and its counters, one per item class.
        const PassengerTypeItem any;
        Dl_info library;
        QVERIFY(dladdr(any.metaObject(), &library) != 0);
        QCOMPARE(QFileInfo(library.dli_fname).canonicalFilePath(),
                 QFileInfo(QStringLiteral(GUICORE_FILE)).canonicalFilePath());
        const QRegularExpression counter("^([0-9a-f]+) 0*4 [bBdD] (.*::)?instanceCount$");
        QVector<const volatile int*> counters;
        for (const QString& symbol : librarySymbols()) {
            const QRegularExpressionMatch match = counter.match(symbol);
            if (match.hasMatch())
                counters << reinterpret_cast<const volatile int*>(
                    static_cast<const char*>(library.dli_fbase) +
                    match.captured(1).toULongLong(nullptr, 16));
        }
        QVERIFY(!counters.isEmpty());
        const auto values = [&counters] {
            QVector<int> numbers;
            for (const volatile int* each : qAsConst(counters))
                numbers.append(int(*each));
            return numbers;
        };
        const auto growth = [&values](const QVector<int>& before) {
            int sum = 0;
            int growing = 0;
            const QVector<int> after = values();
            for (int i = 0; i < after.size(); ++i) {
                sum += after.at(i) - before.at(i);
                growing += after.at(i) != before.at(i) ? 1 : 0;
            }
            return qMakePair(growing, sum);
        };

        const QVector<int> start = values();
        {
            const PassengerTypeItem prototype;
            QCOMPARE(growth(start), qMakePair(1, 1));
            const std::unique_ptr<PassengerTypeItem> tile = construct(initialValues());
            QCOMPARE(growth(start), qMakePair(1, 2));
        }
        QCOMPARE(growth(start), qMakePair(1, 2));
    }
};

QTEST_GUILESS_MAIN(TestPassengerTypeItem)

#include "tst_passengertypeitem.moc"
