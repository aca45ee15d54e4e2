#include "RoleValues.h"

#include <QBitArray>
#include <QByteArrayList>
#include <QChar>
#include <QDate>
#include <QDateTime>
#include <QEasingCurve>
#include <QGeoCoordinate>
#include <QGeoRectangle>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QLine>
#include <QLocale>
#include <QMetaType>
#include <QModelIndex>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QRegularExpression>
#include <QSize>
#include <QStringList>
#include <QTime>
#include <QUrl>
#include <QUuid>

#include <cstddef>
#include <limits>
#include <type_traits>

/// A class of an application, without any comparison, too large for a QVariant's own memory.
struct PlainRecord
{
    double values[8] = {};
};
Q_DECLARE_METATYPE(PlainRecord)

/// The same with the operators that a class may have.
struct ComparableRecord
{
    double values[8] = {};
};
inline bool operator==(const ComparableRecord& a, const ComparableRecord& b)
{
    return a.values[0] == b.values[0];
}
inline bool operator<(const ComparableRecord& a, const ComparableRecord& b)
{
    return a.values[0] < b.values[0];
}
Q_DECLARE_METATYPE(ComparableRecord)

namespace
{

template <typename T>
constexpr T lowest = std::numeric_limits<T>::lowest();
template <typename T>
constexpr T highest = std::numeric_limits<T>::max();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

/// A null value of a type: Qt 5 takes the type's number, its successor the type itself.
template <typename Type = QMetaType, typename Variant = QVariant>
QVariant nullOf(int type)
{
    if constexpr (std::is_constructible_v<Variant, Type, std::nullptr_t>)
        return Variant(Type(type), nullptr);
    else
        return Variant(type, nullptr);
}

/// Collects values; those of one type get its name and their number in the list, or their text.
class Values
{
public:
    template <typename T>
    void add(const char* type, std::initializer_list<T> values)
    {
        int number = 0;
        for (const T& value : values)
            append(QByteArray(type) + ' ' + QByteArray::number(number++),
                   QVariant::fromValue(value));
    }

    void append(const QByteArray& name, const QVariant& value)
    {
        value.userType(); // numbers the classes of applications in the order of this list
        m_all.append({name, value});
    }

    const QVector<RoleValue>& all() const { return m_all; }

private:
    QVector<RoleValue> m_all;
};

void addNumbers(Values& values)
{
    values.add<bool>("bool", {false, true});
    values.add<int>("int",
                    {0, 1, -1, 2, 3, 7, 10, 42, 65, 97, 257, 1000000, highest<int>, lowest<int>});
    values.add<uint>("uint", {0U, 1U, 2U, 7U, 2147483647U, 2147483648U, highest<uint>});
    values.add<qlonglong>("longlong", {0, 1, -1, 2, 7, 1LL << 31, 1LL << 32, 1LL << 40, 1LL << 53,
                                       (1LL << 53) + 1, highest<qlonglong>, lowest<qlonglong>});
    values.add<qulonglong>("ulonglong",
                           {0, 1, 7, 1ULL << 32, 1ULL << 53, 1ULL << 63, highest<qulonglong>});
    values.add<double>("double", {0.0,
                                  -0.0,
                                  1.0,
                                  1.0 + 1e-13,
                                  1.0 + 1e-11,
                                  1e-13,
                                  1e-300,
                                  -1.0,
                                  2.0,
                                  2.5,
                                  7.0,
                                  10.0,
                                  1e6,
                                  2147483648.0,
                                  4294967296.0,
                                  9007199254740992.0,
                                  1.8446744073709552e19,
                                  1e300,
                                  infinity,
                                  -infinity,
                                  nan});
    values.add<float>("float", {0.0F, 1.0F, 1.0000001F, -1.0F, 2.5F, 0.1F,
                                std::numeric_limits<float>::infinity()});
    values.add<short>("short", {0, 1, -1, 7});
    values.add<ushort>("ushort", {0, 1, 7, 65535});
    values.add<char>("char", {'\0', '\1', '7', 'A', 'a'});
    values.add<signed char>("schar", {0, 1, -1, 7});
    values.add<uchar>("uchar", {0, 1, 7, 255});
    values.add<long>("long", {0L, 1L, -1L, 7L});
    values.add<ulong>("ulong", {0UL, 1UL, 7UL});
    values.add<Qt::SortOrder>("enum", {Qt::AscendingOrder, Qt::DescendingOrder});
    values.add<Qt::DayOfWeek>("other enum", {Qt::Monday, Qt::Sunday});
}

void addTexts(Values& values)
{
    const QByteArray texts =
        "|0|1|-1|01|1.0| 1|1 |2|2.5|7|10|9|1e2|0x10|1e400|inf|nan|a|A|b|B|abc|ABC|abd|ss|9.5|"
        "true|TRUE|false|False|no|2026|2026-01-31|12:30|12:30:00|2026-01-31T12:30:00|"
        "2026-01-31T12:30:00.000|2026-03-15T12:30:00Z|http://example.org/|"
        "qrc:/icons/adult.svg|de_DE|C|4294967295|2147483648|18446744073709551615|"
        "9223372036854775807|-9223372036854775808|9223372036854775808|"
        "{67c8770b-44f1-410a-ab9a-f9b5446f13ee}|[1,2]|{\"a\":1}|PT_ADULT|AscendingOrder|"
        "Monday";
    for (const QByteArray& text : texts.split('|'))
        values.append("text '" + text + "'", QString::fromLatin1(text));
    values.append("null text", QString());
    values.append("text a-umlaut", QString::fromUtf8("\xc3\xa4"));
    values.append("text A-umlaut", QString::fromUtf8("\xc3\x84"));
    values.append("text sharp s", QString::fromUtf8("\xc3\x9f"));
    values.append("text z", QStringLiteral("z"));
    values.append("text beyond 16 bits", QString::fromUtf8("\xf0\x9f\x9a\x8c"));
    values.append("text of a private use", QString(QChar(0xF8FF)));

    for (const char* bytes :
         {"", "0", "1", "7", "2.5", "a", "A", "abc", "ABC", "true", "2026-01-31"})
        values.append("bytes '" + QByteArray(bytes) + "'", QByteArray(bytes));
    values.append("null bytes", QByteArray());
    values.append("bytes of Latin-1", QByteArray("\xe4"));
    values.append("bytes of UTF-8", QByteArray("\xc3\xa4"));

    values.add<QChar>("QChar", {QChar(), QChar('\1'), QChar('1'), QChar('7'), QChar('a'),
                                QChar('A'), QChar('b'), QChar(0xE4), QChar(0xC4)});
    values.add<QStringList>(
        "texts", {{}, {""}, {"1"}, {"a"}, {"A"}, {"a", "b"}, {"b"}, {"abc"}, {"2026-01-31"}});
    values.add<QByteArrayList>("list of bytes", {{}, {"a"}, {"a", "b"}});
    values.add<QUrl>("url", {QUrl(), QUrl("http://example.org/"), QUrl("http://EXAMPLE.org/a"),
                             QUrl("qrc:/icons/adult.svg"), QUrl("a"), QUrl("abc"), QUrl("1")});
    values.add<QUuid>("uuid", {QUuid(), QUuid("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}"),
                               QUuid("{67c8770b-44f1-410a-ab9a-f9b5446f13ef}")});
    values.add<QRegularExpression>("expression", {QRegularExpression(), QRegularExpression("a")});
    values.add<QLocale>("locale", {QLocale::c(), QLocale("de_DE"), QLocale("en_GB")});
}

void addTimes(Values& values)
{
    const QDate day(2026, 1, 31);
    const QTime noon(12, 30);
    values.add<QDate>("date", {QDate(), day, QDate(2026, 2, 1), QDate(1970, 1, 1), QDate(1, 1, 1)});
    values.add<QTime>("time",
                      {QTime(), noon, QTime(0, 0), QTime(12, 30, 0, 1), QTime(23, 59, 59, 999)});
    values.add<QDateTime>(
        "moment",
        {QDateTime(), QDateTime(day, noon), QDateTime(QDate(2026, 3, 15), noon, Qt::UTC),
         QDateTime(day, QTime(0, 0)), QDateTime(QDate(2026, 4, 15), noon, Qt::OffsetFromUTC, 3600),
         QDateTime(day, noon.addMSecs(1)), QDateTime(QDate(1970, 1, 1), QTime(6, 0), Qt::UTC)});
}

void addGeometry(Values& values)
{
    values.add<QPoint>("point", {QPoint(), QPoint(1, 2), QPoint(2, 1)});
    values.add<QPointF>("point of doubles",
                        {QPointF(), QPointF(1, 2), QPointF(1, 2 + 1e-13), QPointF(1.5, 2)});
    values.add<QSize>("size", {QSize(), QSize(0, 0), QSize(1, 2), QSize(2, 1)});
    values.add<QSizeF>("size of doubles", {QSizeF(), QSizeF(1, 2), QSizeF(1, 2 + 1e-13)});
    values.add<QRect>("rectangle", {QRect(), QRect(0, 0, 1, 2), QRect(0, 0, 2, 1)});
    values.add<QRectF>("rectangle of doubles",
                       {QRectF(), QRectF(0, 0, 1, 2), QRectF(0, 0, 1, 2 + 1e-13)});
    values.add<QLine>("line", {QLine(), QLine(0, 0, 1, 2)});
    values.add<QLineF>("line of doubles", {QLineF(), QLineF(0, 0, 1, 2)});
    values.add<QEasingCurve>("curve", {QEasingCurve(), QEasingCurve(QEasingCurve::InQuad)});
    values.add<QGeoCoordinate>("coordinate",
                               {QGeoCoordinate(), QGeoCoordinate(52.2, 21.0),
                                QGeoCoordinate(52.2, 21.0), QGeoCoordinate(50, 19.9)});
    values.add<QGeoRectangle>("geographic rectangle", {QGeoRectangle()});
}

void addContainers(Values& values)
{
    values.add<QVariantList>("list", {{},
                                      {1},
                                      {1},
                                      {2},
                                      {"1"},
                                      {1.0},
                                      {1.0 + 1e-13},
                                      {1, 2},
                                      {"a"},
                                      {"A"},
                                      {QVariant()},
                                      {nan},
                                      {QVariantList{1}},
                                      {QVariantList{"1"}},
                                      {"PT_ADULT"},
                                      {QStringList{"a"}},
                                      {QVariant::fromValue(QGeoCoordinate(52.2, 21.0))}});
    values.add<QVariantMap>("map", {{},
                                    {{"a", 1}},
                                    {{"a", 1.0}},
                                    {{"a", "1"}},
                                    {{"a", 2}},
                                    {{"b", 1}},
                                    {{"a", QVariantList{1}}},
                                    {{"a", 1}, {"b", 2}},
                                    {{"a", nan}}});
    values.add<QVariantHash>(
        "hash", {{}, {{"a", 1}}, {{"a", "1"}}, {{"a", 2}}, {{"b", 1}}, {{"a", 1}, {"b", 2}}});
    values.add<QBitArray>("bits", {QBitArray(), QBitArray(2), QBitArray(2, true)});
    values.add<QJsonValue>("json", {QJsonValue(), QJsonValue(true), QJsonValue(1), QJsonValue(2.5),
                                    QJsonValue(QStringLiteral("a")),
                                    QJsonValue(QStringLiteral("1")), QJsonValue(QJsonArray{1})});
    values.add<QJsonObject>("json object", {{}, {{"a", 1}}, {{"a", 2}}});
    values.add<QJsonArray>("json array", {{}, {1}, {2}});
    values.add<QJsonDocument>("json document", {QJsonDocument(), QJsonDocument(QJsonArray{1})});
    values.add<QVector<int>>("vector of int", {{}, {1}, {1, 2}});
    values.add<QList<double>>("list of double", {{}, {1.0}});
}

void addObjects(Values& values)
{
    static QObject objects[2];
    values.add<QObject*>("object", {nullptr, &objects[0], &objects[1]});
    values.add<void*>("pointer", {nullptr, &objects[0]});
    values.add<std::nullptr_t>("nullptr", {nullptr});
    values.add<QModelIndex>("index", {QModelIndex()});
    static const QVariant plain = QVariant::fromValue(PlainRecord{{1}});
    values.append("record", plain);
    values.append("the same record", plain);
    static const QVariant coordinate = QVariant::fromValue(QGeoCoordinate(52.2, 21.0));
    static const QVariant list = QVariantList{nan, coordinate};
    values.append("shared coordinate", coordinate);
    values.append("shared list", list);
    values.append("equal record", QVariant::fromValue(PlainRecord{{1}}));
    static const QVariant comparable = QVariant::fromValue(ComparableRecord{{1}});
    values.append("comparable record", comparable);
    values.append("the same comparable record", comparable);
    values.append("equal comparable record", QVariant::fromValue(ComparableRecord{{1}}));
    values.append("greater comparable record", QVariant::fromValue(ComparableRecord{{2}}));
}

void addNulls(Values& values)
{
    values.append("invalid", QVariant());
    for (const int type :
         {QMetaType::Bool, QMetaType::Int, QMetaType::LongLong, QMetaType::Double,
          QMetaType::QString, QMetaType::QStringList, QMetaType::QVariantList,
          QMetaType::QVariantMap, QMetaType::QDate, QMetaType::QDateTime, QMetaType::QByteArray,
          QMetaType::QUrl, QMetaType::QPoint, QMetaType::QObjectStar})
        values.append("null of type " + QByteArray::number(type), nullOf(type));
}

} // namespace

QVector<RoleValue> roleValues()
{
    Values values;
    addNulls(values);
    addNumbers(values);
    addTexts(values);
    addTimes(values);
    addGeometry(values);
    addContainers(values);
    addObjects(values);
    return values.all();
}
