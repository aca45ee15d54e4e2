#pragma once

#include "Feed.h"
#include "FeedOptions.h"
#include "FeedProblem.h"
#include "FieldRule.h"

#include <QByteArray>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <optional>
#include <tuple>

/// Reads JSON documents into records by tables of their keys, and reports every problem with line
/// and JSON pointer.
namespace rivo::feed::json
{

/// A JSON document and the text that it was read from.
struct JsonText
{
    QByteArray utf8;
    QJsonObject object;
};

/// The JSON object in the file `path`. Nothing, and problems in `report`, if there is none, it is
/// larger than `limits` allow, has a key twice, or is no JSON to the letter.
std::optional<JsonText> readJsonText(const QString& path, const FeedLimits& limits,
                                     FeedReport& report);

/// Gives every problem without a line the line of its pointer, and puts all in the order of the
/// file.
void completeProblems(const QByteArray& utf8, QVector<FeedProblem>& problems);

/// A value as problems show it.
QString found(const QJsonValue& value);

constexpr FieldRule dateRule =
    required.satisfying(isDateAndTime, "a date and time such as \"2024-05-31T18:30:00+02:00\"");

constexpr FieldRule latitudeRule = optional.within(-90, 90);
constexpr FieldRule longitudeRule = optional.within(-180, 180);

/// One key of an object: where its value goes and what it must be. Each has the type of its value,
/// so that what reads a record is compiled for the types that this record has and no other.
template <class Record, class Value>
struct Field
{
    const char* key;
    Value Record::*member;
    FieldRule rule;
};

template <class Record, class Value>
Field(const char*, Value Record::*, FieldRule) -> Field<Record, Value>;

/// The keys of a record, a tuple in the order of its fields.
template <class Record>
struct Fields;

/// Where a value stands in the document; a chain up to the root, so that a pointer is put
/// together only for a problem.
struct Place
{
    const Place* parent = nullptr;
    QString key;

    Place at(const QString& name) const { return {this, name}; }
    Place at(int index) const { return {this, QString::number(index)}; }
    QString pointer() const;
};

/// Whether a number has no fraction.
bool isInteger(const QJsonValue& value);

/// Fills records from the objects of a document. What is wrong goes into the report.
class RecordReader
{
public:
    RecordReader(const QString& file, const FeedLimits& limits, FeedReport& report)
        : m_file(file), m_limits(limits), m_report(report)
    {
    }

    template <class Record>
    void read(const QJsonValue& value, const Place& place, Record& into)
    {
        if (!value.isObject())
            return problem(place, value, QStringLiteral("an object"));
        const QJsonObject object = value.toObject();
        int known = 0;
        std::apply(
            [&](const auto&... fields) {
                ((known += readField(object, place, fields, into)), ...);
            },
            Fields<Record>::table);
        if (known < object.size())
            reportUnknownKeys(object, place, keysOf<Record>());
    }

private:
    /// 1 if the object has the key, 0 if not.
    template <class Record, class Owner, class Value>
    int readField(const QJsonObject& object, const Place& place, const Field<Owner, Value>& field,
                  Record& into)
    {
        const QString key = QLatin1String(field.key);
        const QJsonValue value = object.value(key);
        const bool isThere = !value.isUndefined();
        if (isThere || field.rule.isRequired)
            readValue(value, place.at(key), field.rule, into.*field.member);
        if (isThere && field.rule.companion)
            checkCompanion(object, place, key, QLatin1String(field.rule.companion));
        return isThere ? 1 : 0;
    }

    void checkCompanion(const QJsonObject& object, const Place& place, const QString& key,
                        const QString& companion)
    {
        if (!object.contains(companion))
            problem(place.at(companion), QJsonValue(QJsonValue::Undefined),
                    QStringLiteral("a value beside %1").arg(key));
    }

    template <class Record>
    static QStringList keysOf()
    {
        return std::apply(
            [](const auto&... fields) { return QStringList{QLatin1String(fields.key)...}; },
            Fields<Record>::table);
    }

    void reportUnknownKeys(const QJsonObject& object, const Place& place, const QStringList& known);

    void readValue(const QJsonValue& value, const Place& place, const FieldRule& rule, int& into)
    {
        readInteger(value, place, rule, into);
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule& rule,
                   quint32& into)
    {
        readInteger(value, place, rule, into);
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule& rule,
                   std::optional<int>& into)
    {
        int number = 0;
        if (readInteger(value, place, rule, number))
            into = number;
    }

    /// False for a value that is no such integer.
    template <class Integer>
    bool readInteger(const QJsonValue& value, const Place& place, const FieldRule& rule,
                     Integer& into)
    {
        if (!isInteger(value) || !rule.allows(value.toDouble())) {
            problem(place, value, rule.inWords("an integer"));
            return false;
        }
        into = static_cast<Integer>(value.toDouble());
        return true;
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule& rule, double& into)
    {
        if (!value.isDouble() || !rule.allows(value.toDouble()))
            return problem(place, value, rule.inWords("a number"));
        into = value.toDouble();
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule&, bool& into)
    {
        if (!value.isBool())
            return problem(place, value, QStringLiteral("true or false"));
        into = value.toBool();
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule& rule,
                   QString& into)
    {
        into = value.toString();
        if (!value.isString() || !rule.allows(into, m_limits))
            problem(place, value, rule.textInWords(m_limits));
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule&, QDateTime& into)
    {
        QString text;
        readValue(value, place, dateRule, text);
        into = QDateTime::fromString(text, Qt::ISODateWithMs);
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule&, QStringList& into)
    {
        readList(value, place, "texts", [&](const QJsonValue& entry, const Place& here) {
            into.append(QString());
            readValue(entry, here, required, into.last());
        });
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule&,
                   QVariantList& into)
    {
        readList(value, place, "integers or texts",
                 [&](const QJsonValue& entry, const Place& here) {
                     if (entry.isString())
                         into.append(readEntry<QString>(entry, here));
                     else
                         into.append(readEntry<int>(entry, here));
                 });
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule& rule,
                   QVector<int>& into)
    {
        readList(value, place, "integers", [&](const QJsonValue& entry, const Place& here) {
            into.append(0);
            readValue(entry, here, rule, into.last());
        });
    }

    void readValue(const QJsonValue& value, const Place& place, const FieldRule&,
                   QVector<NetworkShapePoint>& into)
    {
        readList(value, place, "points", [&](const QJsonValue& entry, const Place& here) {
            into.append(NetworkShapePoint());
            const QJsonArray pair = entry.toArray();
            if (pair.size() != 2)
                return problem(here, entry, QStringLiteral("[latitude, longitude]"));
            readValue(pair.at(0), here.at(0), latitudeRule, into.last().latitude);
            readValue(pair.at(1), here.at(1), longitudeRule, into.last().longitude);
        });
    }

    template <class Record>
    void readValue(const QJsonValue& value, const Place& place, const FieldRule&, Record& into)
    {
        read(value, place, into);
    }

    template <class Record>
    void readValue(const QJsonValue& value, const Place& place, const FieldRule&,
                   QVector<Record>& into)
    {
        readList(value, place, "objects", [&](const QJsonValue& entry, const Place& here) {
            into.append(Record());
            read(entry, here, into.last());
        });
    }

    template <class Record>
    void readValue(const QJsonValue& value, const Place& place, const FieldRule&,
                   std::optional<Record>& into)
    {
        read(value, place, into.emplace());
    }

    template <class Value>
    Value readEntry(const QJsonValue& entry, const Place& place)
    {
        Value value{};
        readValue(entry, place, required, value);
        return value;
    }

    template <class EntryReader>
    void readList(const QJsonValue& value, const Place& place, const char* kind,
                  const EntryReader& readEntryAt)
    {
        const QJsonArray list = value.toArray();
        if (!value.isArray() || list.size() > m_limits.entries)
            return problem(place,
                           value.isArray() ? QStringLiteral("%1 entries").arg(list.size())
                                           : found(value),
                           QStringLiteral("a list of at most %1 %2")
                               .arg(m_limits.entries)
                               .arg(QLatin1String(kind)));
        for (int i = 0; i < list.size(); ++i)
            readEntryAt(list.at(i), place.at(i));
    }

    void problem(const Place& place, const QJsonValue& value, const QString& expected)
    {
        problem(place, found(value), expected);
    }

    void problem(const Place& place, const QString& value, const QString& expected);

    const QString& m_file;
    const FeedLimits& m_limits;
    FeedReport& m_report;
};

} // namespace rivo::feed::json
