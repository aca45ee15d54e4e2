#include "ItemBattery.h"

#include "MetaObjectText.h"

#include <QDateTime>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <limits>
#include <utility>

#include <dlfcn.h>

using rivo::models::ListItem;

namespace
{

QString text(const QVariant& value)
{
    if (value.userType() == qMetaTypeId<QGeoCoordinate>()) {
        const auto place = value.value<QGeoCoordinate>();
        return QString::asprintf("(%g, %g, %g)", place.latitude(), place.longitude(),
                                 place.altitude());
    }
    switch (value.userType()) {
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', 17);
    case QMetaType::QVariantList: {
        QStringList texts;
        for (const QVariant& element : value.toList())
            texts.append(text(element));
        return '[' + texts.join(", ") + ']';
    }
    case QMetaType::QDateTime:
        return value.toDateTime().toString(Qt::ISODateWithMs);
    default:
        return '"' + value.toString() + '"';
    }
}

/// The samples of a field, and what is seldom thought of: texts that differ in case only, and
/// doubles beyond amounts of money. Where the shift by one leads to zero, the fuzzy comparison is
/// exact.
QVariantList thoroughSamples(const ItemField& field)
{
    using Limits = std::numeric_limits<double>;
    switch (field.initial.userType()) {
    case QMetaType::QString:
        return field.samples + QVariantList{field.samples.at(1).toString().toLower()};
    case QMetaType::Double:
        return field.samples + QVariantList{-0.0,
                                            -1.0,
                                            -1.0 + 1e-13,
                                            Limits::denorm_min(),
                                            Limits::max(),
                                            Limits::lowest(),
                                            Limits::infinity(),
                                            -Limits::infinity(),
                                            Limits::quiet_NaN()};
    default:
        return field.samples;
    }
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

bool isExported(const QString& function)
{
    return librarySymbols().indexOf(QRegularExpression(
               "^[0-9a-f]+ [0-9a-f]+ T " + QRegularExpression::escape(function) + '$')) >= 0;
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

/// Increments per counter.
QVector<int> values(const QVector<const volatile int*>& counters)
{
    QVector<int> numbers;
    for (const volatile int* each : counters)
        numbers.append(int(*each));
    return numbers;
}

/// How many counters have grown, and by how much together.
QPair<int, int> growth(const QVector<int>& before, const QVector<int>& after)
{
    int growing = 0;
    int sum = 0;
    for (int i = 0; i < after.size(); ++i) {
        growing += after.at(i) != before.at(i) ? 1 : 0;
        sum += after.at(i) - before.at(i);
    }
    return {growing, sum};
}

} // namespace

ItemBattery::ItemBattery(ItemUnderTest item) : m_item(std::move(item)) {}

ItemBattery::~ItemBattery() = default;

const ItemField& ItemBattery::field(const char* name) const
{
    return fields().at(indexOfField(fields(), name));
}

ItemBattery::ItemPointer ItemBattery::build(const QVariantList& values) const
{
    ItemPointer item(m_item.itemClass.construct(values, nullptr));
    for (int i = 0; i < fields().size(); ++i) {
        if (!fields().at(i).isArgument)
            fields().at(i).set(*item, values.at(i));
    }
    return item;
}

void ItemBattery::compare(const ListItem& item, const QVariantList& values) const
{
    QCOMPARE(differences(item, fields(), values), QStringList());
    QCOMPARE(item.id(), values.first().toInt());
}

void ItemBattery::declaresNothingElse()
{
    const QMetaObject& type = *m_item.type;
    QCOMPARE(ItemPointer(m_item.itemClass.make(nullptr))->metaObject(), &type);
    QVERIFY(m_item.constructors.first().startsWith(QString(type.className()) + "::"));
    QCOMPARE(type.superClass(), &ListItem::staticMetaObject);
    QCOMPARE(metaobject::methods(type), QStringList());
    QCOMPARE(metaobject::properties(type), m_item.properties);
    QCOMPARE(metaobject::enums(type), QStringList());
    QVERIFY(metaobject::hasNothingElse(type));
}

void ItemBattery::roles()
{
    const ItemPointer one(m_item.itemClass.make(nullptr));
    const ItemPointer other(m_item.itemClass.make(nullptr));
    QCOMPARE(*m_item.roleTable, m_item.roleNames);
    QCOMPARE(one->roleNames(), m_item.roleNames);
    QVERIFY(one->roleNames().isSharedWith(*m_item.roleTable));
    QVERIFY(other->roleNames().isSharedWith(*m_item.roleTable));

    QList<int> shown;
    for (const ItemField& each : fields()) {
        if (each.role != 0)
            shown.append(each.role);
    }
    std::sort(shown.begin(), shown.end());
    QList<int> named = m_item.roleNames.keys();
    std::sort(named.begin(), named.end());
    QCOMPARE(shown, named);
}

void ItemBattery::onlyRolesOfTheTableHaveAValue()
{
    const ItemPointer item(m_item.itemClass.make(nullptr));
    for (int role = -1000; role <= 1000; ++role)
        QVERIFY2(item->data(role).isValid() == m_item.roleNames.contains(role),
                 qPrintable(QString::number(role)));
    for (int role : {INT_MIN, INT_MAX, 65536 + 257})
        QVERIFY2(!item->data(role).isValid(), qPrintable(QString::number(role)));
}

void ItemBattery::theIdentityRoleAsksTheVirtualId()
{
    const ItemPointer item(m_item.makeRenumbered());
    QVERIFY(sameValue(item->data(257), 4711));
}

void ItemBattery::aPrototypeHasTheInitialValues()
{
    compare(*ItemPointer(m_item.itemClass.make(nullptr)), initialValues(fields()));
}

void ItemBattery::textsOfAPrototypeAreEmptyNotNull()
{
    const ItemPointer item(m_item.itemClass.make(nullptr));
    for (const ItemField& each : fields()) {
        if (each.initial.userType() != QMetaType::QString)
            continue;
        QVERIFY2(!each.get(*item).toString().isNull(), each.name);
        if (each.role != 0)
            QVERIFY2(!item->data(each.role).toString().isNull(), each.name);
    }
}

void ItemBattery::parents()
{
    QObject owner;
    const QVariantList values = initialValues(fields());
    QCOMPARE(ItemPointer(m_item.itemClass.make(nullptr))->parent(), nullptr);
    QCOMPARE(ItemPointer(m_item.itemClass.make(&owner))->parent(), &owner);
    QCOMPARE(ItemPointer(m_item.itemClass.construct(values, nullptr))->parent(), nullptr);
    QCOMPARE(ItemPointer(m_item.itemClass.construct(values, &owner))->parent(), &owner);
}

void ItemBattery::eachArgumentGoesToItsField_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QVariant>("value");
    for (int i = 0; i < fields().size(); ++i) {
        const ItemField& each = fields().at(i);
        if (!each.isArgument)
            continue;
        for (const QVariant& value : thoroughSamples(each))
            QTest::addRow("%s %s", each.name, qPrintable(text(value))) << i << value;
    }
}

void ItemBattery::eachArgumentGoesToItsField()
{
    QFETCH(int, index);
    QFETCH(QVariant, value);
    QVariantList values = initialValues(fields());
    values[index] = value;
    compare(*ItemPointer(m_item.itemClass.construct(values, nullptr)), values);
}

void ItemBattery::allArgumentsAtOnce()
{
    QVariantList values = initialValues(fields());
    for (int i = 0; i < fields().size(); ++i) {
        if (fields().at(i).isArgument)
            values[i] = fields().at(i).samples.last();
    }
    compare(*ItemPointer(m_item.itemClass.construct(values, nullptr)), values);
}

// From each value to each other one, under each value of the field that the setter looks at.
void ItemBattery::setter_data()
{
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<int>("index");
    QTest::addColumn<QVariant>("value");
    const auto addRows = [this](int index, const QVariantList& values, const QString& condition) {
        const ItemField& each = fields().at(index);
        QVariantList stored = values;
        for (const QVariant& before : thoroughSamples(each)) {
            stored[index] = before;
            for (const QVariant& value : thoroughSamples(each)) {
                const SetterEffect effect = setterEffect(fields(), stored, index, value);
                QTest::addRow("%s from %s to %s%s is %s, %s", each.name, qPrintable(text(before)),
                              qPrintable(text(value)), qPrintable(condition),
                              effect.isStored ? "stored" : "ignored",
                              effect.isAnnounced ? "announced" : "silent")
                    << stored << index << value;
            }
        }
    };
    for (int index = 0; index < fields().size(); ++index) {
        QVariantList values = initialValues(fields());
        const ItemField& each = fields().at(index);
        if (!each.set)
            continue;
        if (!each.comparedWith) {
            addRows(index, values, QString());
            continue;
        }
        const int other = indexOfField(fields(), each.comparedWith);
        for (const QVariant& compared : thoroughSamples(fields().at(other))) {
            values[other] = compared;
            addRows(index, values,
                    QString::fromLatin1(" beside %1 %2").arg(each.comparedWith, text(compared)));
        }
    }
}

void ItemBattery::setter()
{
    QFETCH(QVariantList, values);
    QFETCH(int, index);
    QFETCH(QVariant, value);
    const ItemField& each = fields().at(index);
    const ItemPointer item = build(values);
    compare(*item, values);
    QSignalSpy changes(item.get(), &ListItem::dataChanged);
    bool isStoredFirst = true;
    connect(item.get(), &ListItem::dataChanged, this,
            [&] { isStoredFirst = isStoredFirst && sameValue(each.get(*item), value); });

    // Set again, it is silent unless the value differs from what it is compared with even then.
    int announced = 0;
    for (int round = 0; round < 2; ++round) {
        const SetterEffect effect = setterEffect(fields(), values, index, value);
        if (effect.isStored)
            values[index] = value;
        announced += effect.isAnnounced ? 1 : 0;
        each.set(*item, value);
        QCOMPARE(changes.count(), announced);
        compare(*item, values);
    }
    QVERIFY(isStoredFirst);
}

void ItemBattery::aNullTextEqualsAnEmptyOne()
{
    const ItemPointer item(m_item.itemClass.make(nullptr));
    QSignalSpy changes(item.get(), &ListItem::dataChanged);
    for (const ItemField& each : fields()) {
        if (each.initial.userType() != QMetaType::QString)
            continue;
        each.set(*item, QString());
        QCOMPARE(changes.count(), 0);
        QCOMPARE(each.get(*item).toString().isNull(), each.announced == Announced::Never);
    }
}

void ItemBattery::anUpdateCanBeTriggered()
{
    const ItemPointer item(m_item.itemClass.make(nullptr));
    QSignalSpy changes(item.get(), &ListItem::dataChanged);
    item->triggerItemUpdate();
    QCOMPARE(changes.count(), 1);
    compare(*item, initialValues(fields()));
}

void ItemBattery::constructorsTakeTheirArgumentsAsDeclared()
{
    QVERIFY(!librarySymbols().isEmpty());
    for (const QString& constructor : m_item.constructors)
        QVERIFY2(isExported(constructor), qPrintable(constructor));
}

void ItemBattery::bothConstructorsCountAndTheDestructorDoesNot()
{
    const QByteArray file = library().dli_fname;
    QVERIFY2(file.contains("/lib/libGuiCore.so") && !file.startsWith("/usr/lib"), file.constData());
    const QVector<const volatile int*> counters = instanceCounters();
    QCOMPARE(counters.size(), 5); // one per item class that counts
    const int one = m_item.isCounted ? 1 : 0;

    const QVector<int> start = values(counters);
    {
        const ItemPointer prototype(m_item.itemClass.make(nullptr));
        QCOMPARE(growth(start, values(counters)), qMakePair(one, one));
        const ItemPointer item(m_item.itemClass.construct(initialValues(fields()), nullptr));
        QCOMPARE(growth(start, values(counters)), qMakePair(one, 2 * one));
    }
    QCOMPARE(growth(start, values(counters)), qMakePair(one, 2 * one));
}
