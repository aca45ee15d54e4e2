#include "RoleValueOrder_p.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QJsonValue>
#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QTime>
#include <QVariantList>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <limits>

namespace rivo
{
namespace models
{

// Qt 6's QVariant has no order and finds other values equal than Qt 5's. Rows must not change
// places when the Qt below an application changes, so the rules of Qt 5 are written out here.

namespace
{

bool isReal(int type) { return type == QMetaType::Double || type == QMetaType::Float; }

bool isInteger(int type)
{
    switch (type) {
    case QMetaType::Bool:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

bool isNumber(int type) { return isReal(type) || isInteger(type); }

template <typename T>
int sign(const T& a, const T& b)
{
    if (a == b)
        return 0;
    return a < b ? -1 : 1;
}

int compareReals(double a, double b)
{
    const bool isFuzzy = std::isfinite(a) && std::isfinite(b);
    return isFuzzy && qFuzzyCompare(a, b) ? 0 : sign(a, b);
}

/// The type in which C++ compares two integers.
int promoted(int a, int b)
{
    const auto isOneOf = [a, b](int type, int sameSize) {
        return a == type || b == type || a == sameSize || b == sameSize;
    };
    constexpr bool isLongWide = sizeof(long) == sizeof(qlonglong);
    constexpr int longType = QMetaType::Long;
    constexpr int ulongType = QMetaType::ULong;
    if (isOneOf(QMetaType::ULongLong, isLongWide ? ulongType : QMetaType::ULongLong))
        return QMetaType::ULongLong;
    if (isOneOf(QMetaType::LongLong, isLongWide ? longType : QMetaType::LongLong))
        return QMetaType::LongLong;
    return isOneOf(QMetaType::UInt, ulongType) ? QMetaType::UInt : QMetaType::Int;
}

/// All bits of an integer, whichever type it has.
qlonglong bitsOf(const QVariant& value)
{
    const int type = value.typeId();
    const bool isUnsignedWide = type == QMetaType::ULongLong || type == QMetaType::ULong;
    return isUnsignedWide ? static_cast<qlonglong>(value.toULongLong()) : value.toLongLong();
}

int compareNumbers(const QVariant& a, const QVariant& b)
{
    if (isReal(a.typeId()) || isReal(b.typeId()))
        return compareReals(a.toDouble(), b.toDouble());
    const qlonglong left = bitsOf(a);
    const qlonglong right = bitsOf(b);
    switch (promoted(a.typeId(), b.typeId())) {
    case QMetaType::ULongLong:
        return sign(static_cast<qulonglong>(left), static_cast<qulonglong>(right));
    case QMetaType::LongLong:
        return sign(left, right);
    case QMetaType::UInt:
        return sign(static_cast<uint>(left), static_cast<uint>(right));
    default:
        return sign(static_cast<int>(left), static_cast<int>(right));
    }
}

bool areBothNumbers(const QVariant& a, const QVariant& b)
{
    return isNumber(a.typeId()) && isNumber(b.typeId());
}

template <typename Map>
bool areEqualMaps(const Map& a, const Map& b)
{
    if (a.size() != b.size())
        return false;
    if (a.isSharedWith(b))
        return true;
    for (auto entry = a.cbegin(); entry != a.cend(); ++entry) {
        const auto other = b.constFind(entry.key());
        if (other == b.cend() || !areEqualRoleValues(entry.value(), other.value()))
            return false;
    }
    return true;
}

/// Values of one type.
bool areEqualOfType(const QVariant& a, const QVariant& b)
{
    switch (a.typeId()) {
    case QMetaType::QVariantList:
        return areEqualRoleValues(a.toList(), b.toList());
    case QMetaType::QVariantMap:
        return areEqualMaps(a.toMap(), b.toMap());
    case QMetaType::QVariantHash:
        return areEqualMaps(a.toHash(), b.toHash());
    default:
        break;
    }
    // Values of other classes compare by their bytes, whatever operators they have: what holds its
    // data behind a pointer is equal to copies that share the data.
    if (a.typeId() >= QMetaType::User)
        return std::memcmp(a.constData(), b.constData(),
                           static_cast<std::size_t>(a.metaType().sizeOf())) == 0;
    return !a.isValid() || a.metaType().equals(a.constData(), b.constData());
}

bool isEnumeration(const QVariant& value)
{
    return value.metaType().flags().testFlag(QMetaType::IsEnumeration);
}

/// Whether values of a type may be converted to numbers.
bool isNumeric(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::QByteArray:
    case QMetaType::QJsonValue:
        return true;
    default:
        return isNumber(value.typeId()) || isEnumeration(value);
    }
}

/// Integers that Qt 5 makes of texts, but no text or character of them.
bool isOddInteger(int type)
{
    return type == QMetaType::UChar || type == QMetaType::Long || type == QMetaType::ULong;
}

/// What Qt 5 converts; it tries no other conversion, although Qt 6 has more.
bool canConvert(const QVariant& value, const QVariant& other)
{
    const int from = value.typeId();
    const int to = other.typeId();
    const auto isOneOf = [from](std::initializer_list<int> types) {
        return std::find(types.begin(), types.end(), from) != types.end();
    };
    if (isEnumeration(other))
        return isNumeric(value) || from == QMetaType::QChar;
    if (isEnumeration(value) && (to == QMetaType::Bool || isReal(to)))
        return false;
    if (isReal(to))
        return isNumeric(value);
    if (isInteger(to))
        return isNumeric(value) || from == QMetaType::QChar;
    switch (to) {
    case QMetaType::QChar:
        return isInteger(from) && from != QMetaType::Bool && !isOddInteger(from);
    case QMetaType::QString:
        return (isNumeric(value) && !isOddInteger(from)) ||
               isOneOf({QMetaType::QChar, QMetaType::QStringList, QMetaType::QDate,
                        QMetaType::QTime, QMetaType::QDateTime, QMetaType::QUrl, QMetaType::QUuid,
                        QMetaType::Nullptr});
    case QMetaType::QByteArray:
        return (isNumeric(value) && from != QMetaType::QJsonValue && !isOddInteger(from)) ||
               isOneOf({QMetaType::QUuid, QMetaType::Nullptr});
    case QMetaType::QStringList:
        return isOneOf({QMetaType::QVariantList, QMetaType::QString});
    case QMetaType::QVariantList:
        return isOneOf({QMetaType::QStringList, QMetaType::QJsonArray, QMetaType::QJsonValue});
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return isOneOf({QMetaType::QJsonObject, QMetaType::QJsonValue, QMetaType::QVariantMap,
                        QMetaType::QVariantHash});
    case QMetaType::QJsonValue:
        return isNumber(from) ||
               isOneOf({QMetaType::QString, QMetaType::QVariantList, QMetaType::QVariantMap,
                        QMetaType::QVariantHash, QMetaType::Nullptr});
    case QMetaType::Nullptr:
        return from == QMetaType::QJsonValue; // which then fails
    case QMetaType::QDate:
    case QMetaType::QTime:
        return isOneOf({QMetaType::QString, QMetaType::QDateTime});
    case QMetaType::QDateTime:
        return isOneOf({QMetaType::QString, QMetaType::QDate});
    case QMetaType::QUuid:
        return isOneOf({QMetaType::QString, QMetaType::QByteArray});
    case QMetaType::QUrl:
        return from == QMetaType::QString;
    case QMetaType::QRect:
        return from == QMetaType::QRectF;
    case QMetaType::QRectF:
        return from == QMetaType::QRect;
    case QMetaType::QSize:
        return from == QMetaType::QSizeF;
    case QMetaType::QSizeF:
        return from == QMetaType::QSize;
    case QMetaType::QLine:
        return from == QMetaType::QLineF;
    case QMetaType::QLineF:
        return from == QMetaType::QLine;
    case QMetaType::QPoint:
        return from == QMetaType::QPointF;
    case QMetaType::QPointF:
        return from == QMetaType::QPoint;
    default:
        // Between classes of applications, as they register it.
        return (from >= QMetaType::User || to >= QMetaType::User) &&
               value.canConvert(other.metaType());
    }
}

/// Replaces a value by its bits as an integer; false if it has none.
bool makeInteger(QVariant& value)
{
    bool isInt = true;
    qlonglong bits = 0;
    if (isReal(value.typeId())) {
        const double real = value.toDouble();
        bits = std::abs(real) < 9.2e18 ? qRound64(real) : std::numeric_limits<qlonglong>::min();
    } else if (value.typeId() == QMetaType::QJsonValue) {
        isInt = value.toJsonValue().isDouble();
        bits = static_cast<qlonglong>(value.toJsonValue().toDouble());
    } else if (isInteger(value.typeId())) {
        bits = bitsOf(value);
    } else {
        bits = value.toLongLong(&isInt);
    }
    value = bits;
    return isInt;
}

bool isInvalidTime(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QDate:
        return !value.toDate().isValid();
    case QMetaType::QTime:
        return !value.toTime().isValid();
    case QMetaType::QDateTime:
        return !value.toDateTime().isValid();
    default:
        return false;
    }
}

/// Converts `value` to the type of `other`, if Qt 5 does.
bool convertTo(const QVariant& other, QVariant& value)
{
    if (!canConvert(value, other) || other.typeId() == QMetaType::Nullptr)
        return false;
    const bool isCharacter =
        value.typeId() == QMetaType::Char || value.typeId() == QMetaType::SChar;
    const bool isJsonNumber =
        value.typeId() == QMetaType::QJsonValue && value.toJsonValue().isDouble();
    if (isEnumeration(other)) {
        QVariant named = value;
        if (value.typeId() == QMetaType::QString && named.convert(other.metaType())) {
            value = named;
            return true;
        }
        if (!makeInteger(value))
            return false;
        value = static_cast<int>(value.toLongLong());
    } else if (isEnumeration(value) && isNumber(other.typeId())) {
        value = value.toLongLong();
    } else if (isJsonNumber && isInteger(other.typeId()) && other.typeId() != QMetaType::Bool) {
        makeInteger(value);
    } else if (isCharacter && other.typeId() == QMetaType::QByteArray) {
        value = QByteArray(1, static_cast<char>(bitsOf(value)));
    }
    return value.convert(other.metaType()) && !isInvalidTime(value);
}

/// A typed null is the default of its type.
QVariant withoutNull(const QVariant& value)
{
    return value.isNull() && value.isValid() ? QVariant(value.metaType(), value.constData())
                                             : value;
}

/// Values that are not equal, as texts.
int compareTexts(const QVariant& a, const QVariant& b)
{
    return QString::compare(a.toString(), b.toString(), Qt::CaseInsensitive);
}

/// Values of one type that are not equal; 0 if nothing distinguishes them.
int compareOfType(const QVariant& a, const QVariant& b)
{
    switch (a.typeId()) {
    case QMetaType::QDate:
        return a.toDate() < b.toDate() ? -1 : 1;
    case QMetaType::QTime:
        return a.toTime() < b.toTime() ? -1 : 1;
    case QMetaType::QDateTime:
        return a.toDateTime() < b.toDateTime() ? -1 : 1;
    case QMetaType::QStringList:
        return a.toStringList() < b.toStringList() ? -1 : 1;
    default:
        return compareTexts(a, b);
    }
}

int compare(const QVariant& first, const QVariant& second)
{
    if (areBothNumbers(first, second))
        return compareNumbers(first, second);
    if (areEqualRoleValues(first, second))
        return 0;
    const QVariant a = withoutNull(first);
    const QVariant b = withoutNull(second);
    QVariant left = a;
    QVariant right = b;
    if (a.metaType() != b.metaType() && !convertTo(a, right)) {
        right = b;
        if (!convertTo(b, left))
            left = a;
    }
    if (areBothNumbers(left, right))
        return compareNumbers(left, right);
    const int order =
        left.metaType() == right.metaType() ? compareOfType(left, right) : compareTexts(a, b);
    if (order != 0)
        return order;
    return a.typeId() < b.typeId() ? -1 : 1;
}

} // namespace

bool isLessRoleValue(const QVariant& a, const QVariant& b) { return compare(a, b) < 0; }
bool isGreaterRoleValue(const QVariant& a, const QVariant& b) { return compare(a, b) > 0; }

bool areEqualRoleValues(const QVariant& a, const QVariant& b)
{
    if (areBothNumbers(a, b))
        return compareNumbers(a, b) == 0;
    if (a.metaType() == b.metaType())
        return areEqualOfType(a, b);
    QVariant left = withoutNull(a);
    QVariant right = withoutNull(b);
    return (canConvert(right, left) ? convertTo(left, right) : convertTo(right, left)) &&
           areEqualOfType(left, right);
}

bool areEqualRoleValues(const QVariantList& a, const QVariantList& b)
{
    const auto areEqual = [](const QVariant& left, const QVariant& right) {
        return areEqualRoleValues(left, right);
    };
    return (a.size() == b.size() && a.constData() == b.constData()) ||
           std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(), areEqual);
}

} // namespace models
} // namespace rivo
