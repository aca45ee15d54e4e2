#include "LibraryModels.h"
#include "MetaObjectText.h"
#include "Table.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <limits>
#include <memory>

#include <dlfcn.h>

using rivo::models::ListItem;

namespace
{

using ItemPointer = std::unique_ptr<ListItem>;

/// The class that is tested: one after the other.
const ItemClass* tested = nullptr;

const ItemClass& rows() { return *tested; }

/// The samples of a field, a text that differs from another in case only, and doubles beyond
/// amounts of money. Where the shift by one leads to zero, the fuzzy comparison is exact.
QVariantList thoroughSamples(const ItemField& field)
{
    using Limits = std::numeric_limits<double>;
    if (field.initial.userType() == QMetaType::QString)
        return field.samples() + QVariantList{"adult"};
    if (field.initial.userType() != QMetaType::Double)
        return field.samples();
    return field.samples() + QVariantList{-0.0,
                                          -1.0,
                                          -1.0 + 1e-13,
                                          Limits::denorm_min(),
                                          Limits::max(),
                                          Limits::lowest(),
                                          Limits::infinity(),
                                          -Limits::infinity(),
                                          Limits::quiet_NaN()};
}

/// Getters and roles show exactly these values; a failure is one of the test.
void compare(const ListItem& item, const QVariantList& values)
{
    QCOMPARE(differences(item, rows().fields, values), QStringList());
    QCOMPARE(item.id(), values.first().toInt());
}

/// The library that is loaded: its file and where it begins. A build may be tested with the library
/// of another one.
Dl_info library()
{
    Dl_info found{};
    dladdr(&ListItem::staticMetaObject, &found);
    return found;
}

/// Symbols of the library as nm prints them: "address size type name".
const QStringList& librarySymbols()
{
    static const QStringList symbols = [] {
        QProcess nm;
        nm.start(NM_FILE, {"-CS", "--defined-only", QFile::decodeName(library().dli_fname)});
        return nm.waitForFinished() && nm.exitCode() == 0
                   ? QString::fromLocal8Bit(nm.readAllStandardOutput()).split('\n')
                   : QStringList();
    }();
    return symbols;
}

/// The instanceCount of every item class.
QVector<const volatile int*> instanceCounters()
{
    const auto* base = static_cast<const char*>(library().dli_fbase);
    const QRegularExpression counter("^([0-9a-f]+) 0*4 [bBdD] (.*::)?instanceCount$");
    QVector<const volatile int*> counters;
    for (const QString& symbol : librarySymbols()) {
        const QRegularExpressionMatch match = counter.match(symbol);
        if (match.hasMatch())
            counters << reinterpret_cast<const volatile int*>(
                base + match.captured(1).toULongLong(nullptr, 16));
    }
    return counters;
}

/// How many counters have grown since `before`, and by how much together.
QPair<int, int> growth(const QVector<const volatile int*>& counters, const QVector<int>& before)
{
    int growing = 0;
    int sum = 0;
    for (int i = 0; i < counters.size(); ++i) {
        growing += *counters.at(i) != before.at(i) ? 1 : 0;
        sum += *counters.at(i) - before.at(i);
    }
    return {growing, sum};
}

QString setterName(const ItemField& field)
{
    const QString name = QLatin1String(field.name);
    return QString("set") + name.at(0).toUpper() + name.mid(1);
}

/// One member behind another as the compiler lays them out.
std::size_t roundedUp(std::size_t size, std::size_t alignment)
{
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace

/// What every item class must stand: fields, roles, constructors and setters as LibraryModels.cpp
/// states them, the meta-object, and what the built library has of the class.
class TestEveryItem : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { qInfo("%s", rows().type->className()); }

    void declaresNothingElse()
    {
        const QMetaObject& type = *rows().type;
        QCOMPARE(ItemPointer(rows().make(nullptr))->metaObject(), &type);
        QCOMPARE(type.superClass(), &ListItem::staticMetaObject);
        QCOMPARE(metaobject::methods(type), QStringList());
        QStringList properties;
        for (const QString& name : rows().properties) {
            const ItemField& field = rows().fields.at(rows().indexOf(name));
            properties.append(
                QString("%1 %2: readable writable designable scriptable stored")
                    .arg(QLatin1String(field.initial.typeName()), QLatin1String(field.name)));
        }
        QCOMPARE(metaobject::properties(type), properties);
        QCOMPARE(metaobject::enums(type), QStringList());
        QVERIFY(metaobject::hasNothingElse(type));
    }

    void holdsItsFieldsAndNothingElse()
    {
        std::size_t size = sizeof(ListItem);
        std::size_t alignment = alignof(ListItem);
        for (const ItemField& field : rows().fields) {
            size = roundedUp(size, field.alignment) + field.size;
            alignment = std::max(alignment, field.alignment);
        }
        QCOMPARE(rows().size, roundedUp(size, alignment));
    }

    void theTableHasEverySetter()
    {
        const QRegularExpression setter(
            QString("^[0-9a-f]+ [0-9a-f]+ T %1::(set\\w+)\\(").arg(rows().type->className()));
        QSet<QString> exported;
        for (const QString& symbol : librarySymbols()) {
            const QRegularExpressionMatch match = setter.match(symbol);
            if (match.hasMatch())
                exported.insert(match.captured(1));
        }
        QSet<QString> stated;
        for (const ItemField& field : rows().fields) {
            if (field.set)
                stated.insert(setterName(field));
        }
        QCOMPARE(exported, stated);
    }

    void rolesAreSharedByAllItems()
    {
        const ItemPointer one(rows().make(nullptr));
        const ItemPointer other(rows().make(nullptr));
        QCOMPARE(one->roleNames(), rows().roleNames());
        QVERIFY(one->roleNames().isSharedWith(*rows().roleTable));
        QVERIFY(other->roleNames().isSharedWith(*rows().roleTable));
    }

    void onlyRolesOfTheTableHaveAValue()
    {
        const ItemPointer item(rows().make(nullptr));
        const QHash<int, QByteArray> names = rows().roleNames();
        for (int role = -1000; role <= 1000; ++role)
            QVERIFY2(item->data(role).isValid() == names.contains(role),
                     qPrintable(QString::number(role)));
        for (int role : {INT_MIN, INT_MAX, 65536 + 257})
            QVERIFY2(!item->data(role).isValid(), qPrintable(QString::number(role)));
    }

    void theIdentityRoleAsksTheVirtualId()
    {
        const ItemPointer item(rows().makeRenumbered());
        QVERIFY(sameValue(item->data(257), 4711));
    }

    void aPrototypeHasTheInitialValues()
    {
        const ItemPointer item(rows().make(nullptr));
        compare(*item, rows().initialValues());
        for (const ItemField& field : rows().fields) {
            if (field.initial.userType() == QMetaType::QString)
                QVERIFY2(!field.get(*item).toString().isNull(), field.name);
        }
    }

    void parents()
    {
        QObject owner;
        const QVariantList values = rows().initialValues();
        QCOMPARE(ItemPointer(rows().make(nullptr))->parent(), nullptr);
        QCOMPARE(ItemPointer(rows().make(&owner))->parent(), &owner);
        QCOMPARE(ItemPointer(rows().construct(values, nullptr))->parent(), nullptr);
        QCOMPARE(ItemPointer(rows().construct(values, &owner))->parent(), &owner);
    }

    void eachArgumentGoesToItsField_data()
    {
        addColumns<int, QVariant>("index", "value");
        for (const ItemField& field : rows().fields) {
            for (const QVariant& value : field.isArgument ? thoroughSamples(field) : QVariantList())
                QTest::addRow("%s %s", field.name, qPrintable(valueText(value)))
                    << field.number << value;
        }
    }
    void eachArgumentGoesToItsField()
    {
        QFETCH(int, index);
        QFETCH(QVariant, value);
        QVariantList values = rows().initialValues();
        values[index] = value;
        compare(*ItemPointer(rows().construct(values, nullptr)), values);
    }

    void allArgumentsAtOnce()
    {
        QVariantList values = rows().initialValues();
        for (const ItemField& field : rows().fields) {
            if (field.isArgument)
                values[field.number] = field.numbered(3);
        }
        compare(*ItemPointer(rows().construct(values, nullptr)), values);
    }

    // From each value to each other one, under each value of the field that the setter looks at.
    void setter_data()
    {
        addColumns<QVariantList, int, QVariant>("values", "index", "value");
        for (const ItemField& field : rows().fields) {
            if (!field.set)
                continue;
            const int other =
                field.comparedWith ? rows().indexOf(field.comparedWith) : field.number;
            QVariantList values = rows().initialValues();
            for (const QVariant& compared : thoroughSamples(rows().fields.at(other))) {
                for (const QVariant& before :
                     field.comparedWith ? thoroughSamples(field) : QVariantList{compared}) {
                    values[other] = compared;
                    values[field.number] = before;
                    for (const QVariant& value : thoroughSamples(field))
                        QTest::addRow("%s from %s to %s, compared with %s", field.name,
                                      qPrintable(valueText(before)), qPrintable(valueText(value)),
                                      qPrintable(valueText(compared)))
                            << values << field.number << value;
                }
            }
        }
    }
    void setter()
    {
        QFETCH(QVariantList, values);
        QFETCH(int, index);
        QFETCH(QVariant, value);
        const ItemField& field = rows().fields.at(index);
        const ItemPointer item(rows().build(values, nullptr));
        compare(*item, values);
        QSignalSpy changes(item.get(), &ListItem::dataChanged);
        bool isStoredFirst = true;
        connect(item.get(), &ListItem::dataChanged, this,
                [&] { isStoredFirst = isStoredFirst && sameValue(field.get(*item), value); });

        // Set again, it is silent unless the value differs from what it is compared with even then.
        int announced = 0;
        for (int round = 0; round < 2; ++round) {
            const SetterEffect effect = setterEffect(rows(), values, index, value);
            if (effect.isStored)
                values[index] = value;
            announced += effect.isAnnounced ? 1 : 0;
            field.set(*item, value);
            QCOMPARE(changes.count(), announced);
            compare(*item, values);
        }
        QVERIFY(isStoredFirst);
    }

    void propertiesAreFields()
    {
        const ItemPointer item(rows().make(nullptr));
        QVariantList values = rows().initialValues();
        QSignalSpy changes(item.get(), &ListItem::dataChanged);
        for (const QString& name : rows().properties) {
            const ItemField& field = rows().fields.at(rows().indexOf(name));
            for (const QVariant& value : field.samples() + field.samples()) {
                const SetterEffect effect = setterEffect(rows(), values, field.number, value);
                values[field.number] = value;
                changes.clear();
                QVERIFY(item->setProperty(field.name, value));
                QCOMPARE(changes.count(), effect.isAnnounced ? 1 : 0);
                QVERIFY(sameValue(item->property(field.name), value));
                compare(*item, values);
            }
        }
    }

    void aNullTextEqualsAnEmptyOne()
    {
        const ItemPointer item(rows().make(nullptr));
        QSignalSpy changes(item.get(), &ListItem::dataChanged);
        for (const ItemField& field : rows().fields) {
            if (field.initial.userType() != QMetaType::QString)
                continue;
            field.set(*item, QString());
            QCOMPARE(changes.count(), 0);
            QCOMPARE(field.get(*item).toString().isNull(), field.announced == Announced::Never);
        }
    }

    void anUpdateCanBeTriggered()
    {
        const ItemPointer item(rows().make(nullptr));
        QSignalSpy changes(item.get(), &ListItem::dataChanged);
        item->triggerItemUpdate();
        item->triggerItemUpdate();
        QCOMPARE(changes.count(), 2);
        compare(*item, rows().initialValues());
    }

    void bothConstructorsCountAndTheDestructorDoesNot()
    {
        const QByteArray file = library().dli_fname;
        QVERIFY2(file.contains("/lib/libGuiCore.so") && !file.startsWith("/usr/lib"),
                 file.constData());
        const QVector<const volatile int*> counters = instanceCounters();
        QCOMPARE(counters.size(), 5); // one per item class that counts
        const int one = rows().isCounted ? 1 : 0;
        QVector<int> start;
        for (const volatile int* counter : counters)
            start.append(int(*counter));
        {
            const ItemPointer prototype(rows().make(nullptr));
            QCOMPARE(growth(counters, start), qMakePair(one, one));
            const ItemPointer item(rows().construct(rows().initialValues(), nullptr));
            QCOMPARE(growth(counters, start), qMakePair(one, 2 * one));
        }
        QCOMPARE(growth(counters, start), qMakePair(one, 2 * one));
    }

    // The setters that differ from the others, in plain values: a ticket sum of 100 beside them.
    void exception_data()
    {
        addColumns<QString, QVariant, QVariant, bool, bool>("field", "before", "value", "isStored",
                                                            "isAnnounced");
        const auto row = [](const char* type, const char* field, const QVariant& before,
                            const QVariant& value, bool isStored, bool isAnnounced) {
            if (qstrcmp(rows().type->className(), type) == 0)
                QTest::addRow("%s from %s to %s", field, qPrintable(valueText(before)),
                              qPrintable(valueText(value)))
                    << QString(field) << before << value << isStored << isAnnounced;
        };
        row("PassengerTypeItem", "price", 5.0, 5.0 + 1e-13, false, false);
        row("PassengerTypeItem", "price", 1e-13, 0.0, false, false);
        row("PassengerTypeItem", "price", -1.0, -1.0 + 1e-13, true, true);
        row("PassengerTypeItem", "fareDiscount", 0.5, 0.5 + 1e-13, true, true);
        row("PassengerTypeItem", "fareProductName", "", "Single", true, false);
        row("ShoppingItem", "price", 1.0, 1.0 + 1e-15, true, true);
        row("ShoppingItem", "routeId", -999999, 7, true, false);
        row("ShoppingItem", "fromStopId", -1, 7, true, true);
        row("ShoppingItem", "publicRouteExecutionId", "", "2024-05-01/1", true, false);
        row("AssetItem", "updated", false, true, true, false);
        row("AssetItem", "direction", 90.0 + 1e-11, 90.0, false, false);
        row("ZReportItem", "cardSellAmnt", 20.0, 100.0 + 1e-11, false, false);
        row("ZReportItem", "cardSellAmnt", 20.0, 20.0, true, true);
        row("ZReportItem", "cardSellAmnt", 20.0, 20.0 + 1e-13, true, true);
        row("ZReportItem", "zSum", 5.0, 5.0 + 1e-12, false, false);
        row("ZReportItem", "commission", 5.0, 5.0 + 1e-12, true, true);
        row("FareProductItem", "discount", 2.5, 2.5 + 1e-13, false, false);
        row("PeripheralItem", "warning", true, false, true, true);
    }
    void exception()
    {
        QFETCH(QString, field);
        QFETCH(QVariant, before);
        QFETCH(QVariant, value);
        QFETCH(bool, isStored);
        QFETCH(bool, isAnnounced);
        const int index = rows().indexOf(field);
        QVariantList values = rows().initialValues();
        if (field == "cardSellAmnt")
            values[rows().indexOf("ticketSumAmnt")] = 100.0;
        values[index] = before;
        const ItemPointer item(rows().build(values, nullptr));
        QSignalSpy changes(item.get(), &ListItem::dataChanged);
        rows().fields.at(index).set(*item, value);
        QCOMPARE(changes.count(), isAnnounced ? 1 : 0);
        values[index] = isStored ? value : before;
        compare(*item, values);
    }
};

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    int failures = 0;
    for (const LibraryModel& model : libraryModels()) {
        tested = &model.itemClass;
        TestEveryItem test;
        QTEST_SET_MAIN_SOURCE_PATH
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}

#include "tst_every_item.moc"
