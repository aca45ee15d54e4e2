#include "ItemFields.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <climits>

using rivo::models::ListItem;

namespace
{

const QDateTime morning(QDate(2024, 5, 1), QTime(6, 30), Qt::UTC);

/// Of one type. Some moments, places, lists and amounts are equal to one comparison and different
/// to another.
QVariantList valuesOf(int type)
{
    switch (type) {
    case QMetaType::Int:
        return {-1, 0, 1, 7, 4711, INT_MAX, INT_MIN};
    case QMetaType::UInt:
        return {1U, 4711U, UINT_MAX};
    case QMetaType::Bool:
        return {false, true};
    case QMetaType::QString:
        return {"Adult", "Student", "Dorosły 成人"};
    case QMetaType::Double:
        return {1e-13, 2.5, 2.5 + 1e-13, 90.0, -0.75, 1000000.01};
    case QMetaType::QDateTime: {
        const QTimeZone warsaw("Europe/Warsaw"); // two hours ahead
        return {morning,
                morning.addMSecs(1),
                QDateTime(morning.date(), QTime(8, 30), Qt::OffsetFromUTC, 7200),
                QDateTime(morning.date(), QTime(8, 30), warsaw),
                QDateTime(morning.date(), morning.time(), warsaw),
                morning.addDays(1)};
    }
    case QMetaType::QVariantList:
        return {QVariantList{1, 2, 3},    QVariantList{"1", 2, 3.0},
                QVariantList{3, 2, 1},    QVariantList{1, 2},
                QVariantList{QVariant()}, QVariantList{"Adult"},
                QVariantList{"adult"},    QVariantList{QVariant(QVariantList{1, 2})}};
    default:
        break;
    }
    if (type != qMetaTypeId<QGeoCoordinate>())
        qFatal("no values of type %d", type);
    QVariantList places;
    for (const QGeoCoordinate& place :
         {QGeoCoordinate(52.25, 20.75), QGeoCoordinate(52.25, 20.75, 80.0),
          QGeoCoordinate(52.25 + 1e-13, 20.75, 80.0), QGeoCoordinate(52.25, 20.75, 81.0),
          QGeoCoordinate(52.25, 20.5, 80.0), QGeoCoordinate(52.5, 20.75, 80.0),
          QGeoCoordinate(0.0, 0.0)})
        places.append(QVariant::fromValue(place));
    return places;
}

bool sameNumber(double a, double b)
{
    const bool bothNaN = std::isnan(a) && std::isnan(b);
    return bothNaN || (a == b && std::signbit(a) == std::signbit(b));
}

bool samePlace(const QGeoCoordinate& a, const QGeoCoordinate& b)
{
    return sameNumber(a.latitude(), b.latitude()) && sameNumber(a.longitude(), b.longitude()) &&
           sameNumber(a.altitude(), b.altitude());
}

bool sameMoment(const QDateTime& a, const QDateTime& b)
{
    return a == b && a.timeSpec() == b.timeSpec() && a.time() == b.time();
}

bool sameList(const QVariantList& a, const QVariantList& b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(), sameValue);
}

/// The setter's comparison, as a formula of its own.
bool fuzzilyEqual(double a, double b)
{
    const double shiftedA = a + 1.0;
    const double shiftedB = b + 1.0;
    return qAbs(shiftedA - shiftedB) * 1e12 <= qMin(qAbs(shiftedA), qAbs(shiftedB));
}

} // namespace

QVariantList ItemField::samples() const
{
    QVariantList values = valuesOf(initial.userType());
    const auto isInitial = [this](const QVariant& value) { return sameValue(value, initial); };
    if (std::none_of(values.cbegin(), values.cend(), isInitial))
        values.prepend(initial);
    return values;
}

QVariant ItemField::numbered(int n) const
{
    switch (initial.userType()) {
    case QMetaType::Int:
        return n + number;
    case QMetaType::UInt:
        return UINT_MAX - static_cast<unsigned int>(n);
    case QMetaType::Bool: // differs from that of the neighbours
        return (n >> number % 2) % 2 == number / 2 % 2;
    case QMetaType::QString:
        return QStringLiteral("%1 %2").arg(QLatin1String(name)).arg(n);
    case QMetaType::Double:
        return n + number * 0.5;
    case QMetaType::QDateTime:
        return morning.addSecs(n * 3600);
    case QMetaType::QVariantList:
        return QVariantList{n, n + number};
    default:
        return QVariant::fromValue(
            QGeoCoordinate(40.5 + n / 1000.0, 22.25 - n / 1000.0, static_cast<double>(n)));
    }
}

int ItemClass::indexOf(const QString& name) const
{
    const auto found = std::find_if(fields.cbegin(), fields.cend(), [&](const ItemField& each) {
        return name == QLatin1String(each.name);
    });
    if (found == fields.cend())
        qFatal("%s has no field %s", type->className(), qPrintable(name));
    return static_cast<int>(found - fields.cbegin());
}

QVariantList ItemClass::initialValues() const
{
    QVariantList values;
    for (const ItemField& each : fields)
        values << each.initial;
    return values;
}

QVariantList ItemClass::initialValuesBut(const QVariantMap& others) const
{
    QVariantList values = initialValues();
    for (auto other = others.cbegin(); other != others.cend(); ++other)
        values[indexOf(other.key())] = other.value();
    return values;
}

QHash<int, QByteArray> ItemClass::roleNames() const
{
    QHash<int, QByteArray> names;
    for (const ItemField& each : fields) {
        if (each.role != 0)
            names.insert(each.role, each.roleName);
    }
    return names;
}

ListItem* ItemClass::build(const QVariantList& values, QObject* parent) const
{
    ListItem* item = construct(values, parent);
    for (const ItemField& each : fields) {
        if (each.isArgument)
            continue;
        if (each.announced == Announced::IfFuzzilyDifferent)
            each.set(*item, qQNaN()); // from which every value differs
        each.set(*item, values.at(each.number));
    }
    return item;
}

QVariantList ItemClass::numberedValues(int id, int n) const
{
    QVariantList values{id};
    for (int i = 1; i < fields.size(); ++i)
        values << fields.at(i).numbered(n);
    return values;
}

void ItemClass::renumber(ListItem& item, int n) const
{
    for (bool isSilent : {true, false}) {
        for (const ItemField& each : fields) {
            if (each.set && each.number > 0 && (each.announced == Announced::Never) == isSilent)
                each.set(item, each.numbered(n));
        }
    }
}

bool sameValue(const QVariant& a, const QVariant& b)
{
    if (a.userType() != b.userType())
        return false;
    if (a.userType() == qMetaTypeId<QGeoCoordinate>())
        return samePlace(a.value<QGeoCoordinate>(), b.value<QGeoCoordinate>());
    switch (a.userType()) {
    case QMetaType::Double:
        return sameNumber(a.toDouble(), b.toDouble());
    case QMetaType::QDateTime:
        return sameMoment(a.toDateTime(), b.toDateTime());
    case QMetaType::QVariantList:
        return sameList(a.toList(), b.toList());
    default:
        return a == b;
    }
}

QStringList differences(const ListItem& item, const QVector<ItemField>& fields,
                        const QVariantList& values)
{
    if (values.size() != fields.size())
        return {QStringLiteral("number of values")};
    QStringList names;
    for (int i = 0; i < fields.size(); ++i) {
        const ItemField& each = fields.at(i);
        if (!sameValue(each.get(item), values.at(i)) ||
            (each.role != 0 && !sameValue(item.data(each.role), values.at(i))))
            names.append(QString::fromLatin1(each.name));
    }
    return names;
}

SetterEffect setterEffect(const ItemClass& itemClass, const QVariantList& values, int index,
                          const QVariant& value)
{
    const ItemField& set = itemClass.fields.at(index);
    const QVariant compared =
        values.at(set.comparedWith ? itemClass.indexOf(set.comparedWith) : index);
    switch (set.announced) {
    case Announced::IfDifferent: {
        const bool isDifferent = !isEqual(compared, value);
        return {isDifferent, isDifferent};
    }
    case Announced::IfFuzzilyDifferent: {
        const bool isDifferent = !fuzzilyEqual(compared.toDouble(), value.toDouble());
        return {isDifferent, isDifferent};
    }
    case Announced::Never:
        break;
    }
    return {true, false};
}

QString valueText(const QVariant& value)
{
    const auto number = [](double each) { return QString::number(each, 'g', 17); };
    if (value.userType() == qMetaTypeId<QGeoCoordinate>()) {
        const auto place = value.value<QGeoCoordinate>();
        return QStringList{number(place.latitude()), number(place.longitude()),
                           number(place.altitude())}
            .join(QLatin1String(", "));
    }
    switch (value.userType()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Double:
        return number(value.toDouble());
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    case QMetaType::QVariantList: {
        QStringList texts;
        for (const QVariant& element : value.toList())
            texts.append(valueText(element));
        return QLatin1Char('[') + texts.join(QLatin1String(", ")) + QLatin1Char(']');
    }
    default:
        return QStringLiteral("%1 \"%2\"").arg(QLatin1String(value.typeName()), value.toString());
    }
}
