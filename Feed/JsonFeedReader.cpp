#include "JsonFeedReader_p.h"

#include "Amount.h"
#include "FeedFile_p.h"
#include "FeedProblem.h"
#include "JsonFields_p.h"
#include "JsonNetwork_p.h"
#include "JsonPrescan_p.h"
#include "JsonTariff_p.h"
#include "PassengerTypes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

namespace rivo::feed
{

namespace
{

using namespace json;

/// Where a value stands in the document; a chain up to the root, so that a pointer is put
/// together only for a problem.
struct Place
{
    const Place* parent = nullptr;
    QString key;

    Place at(const QString& name) const { return {this, name}; }
    Place at(int index) const { return {this, QString::number(index)}; }
    QString pointer() const
    {
        return parent ? parent->pointer() + jsonPointerToken(key) : QString();
    }
};

QString found(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::Undefined:
        return QStringLiteral("missing");
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QJsonValue::String:
        return quoted(value.toString());
    case QJsonValue::Array:
        return QStringLiteral("a list");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    default:
        return QStringLiteral("null");
    }
}

bool isInteger(const QJsonValue& value)
{
    return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
}

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

    void reportUnknownKeys(const QJsonObject& object, const Place& place, const QStringList& known)
    {
        const QStringList keys = object.keys();
        for (const QString& key : keys) {
            if (!known.contains(key) && !key.startsWith(QLatin1String("x-")))
                problem(place.at(key), QStringLiteral("unknown key"),
                        QLatin1String("one of ") + known.join(QLatin1String(", ")));
        }
    }

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

    void problem(const Place& place, const QString& value, const QString& expected)
    {
        m_report.add(FeedProblem{m_file, 0, 0, place.pointer(), place.key, value, expected});
    }

    const QString& m_file;
    const FeedLimits& m_limits;
    FeedReport& m_report;
};

/// Reports a printer that is none of the peripherals. A list that could not be read is not judged.
void checkPrinter(const Document& feed, const QJsonValue& peripherals, const QString& file,
                  FeedReport& report)
{
    const auto given = peripherals.toArray().size();
    if (!feed.printerId || !peripherals.isArray() || given != feed.peripherals.size())
        return;
    const bool isThere =
        std::any_of(feed.peripherals.cbegin(), feed.peripherals.cend(),
                    [&](const FeedPeripheral& device) { return device.id == *feed.printerId; });
    if (!isThere)
        report.add(FeedProblem{file, 0, 0, QStringLiteral("/printerId"),
                               QStringLiteral("printerId"), QString::number(*feed.printerId),
                               QStringLiteral("an id of /peripherals")});
}

/// Reports prices with more decimals than the currency has. What could not be read is not judged.
void checkPrices(const Document& feed, const QString& file, FeedReport& report)
{
    const int decimals = feed.currencyDecimals();
    const auto check = [&](const char* list, int index, double price) {
        if (toMinorUnits(price, decimals))
            return;
        const QString pointer = QStringLiteral("/%1/%2/price").arg(QLatin1String(list)).arg(index);
        report.add(FeedProblem{file, 0, 0, pointer, QStringLiteral("price"), found(price),
                               QStringLiteral("a number with at most %1 decimals").arg(decimals)});
    };
    if (!isCurrencyCode(feed.currency))
        return;
    for (int i = 0; i < feed.products.size(); ++i)
        check("products", i, feed.products.at(i).price);
    for (int i = 0; i < feed.fareProducts.size(); ++i)
        check("fareProducts", i, feed.fareProducts.at(i).price);
}

/// Names every text that the terminal takes as type 0, at its first product.
void noticeUnknownTypes(const Feed& feed, const QString& file, FeedReport& report)
{
    std::set<QString> seen;
    for (int i = 0; i < feed.products.size(); ++i) {
        const QString& text = feed.products.at(i).passengerTypeCode;
        if (passengerTypeNumber(text) != 0 || !seen.insert(text).second)
            continue;
        report.add(FeedNotice{file, 0,
                              QStringLiteral("/products/%1/passengerTypeCode: unknown passenger "
                                             "type %2, taken as type 0")
                                  .arg(i)
                                  .arg(quoted(text))});
    }
}

/// The line of the value that `pointer` leads to; where there is none, of what should hold it.
int lineOf(const QString& pointer, const std::map<QString, int>& lines)
{
    const int line = lines.at(pointer);
    return line > 0 ? line : lines.at(pointer.left(pointer.lastIndexOf(QLatin1Char('/'))));
}

/// Gives every problem its line and puts them in the order of the file.
void completeProblems(const QByteArray& text, QVector<FeedProblem>& problems)
{
    std::map<QString, int> lines;
    for (const FeedProblem& problem : qAsConst(problems)) {
        lines[problem.pointer] = 0;
        lines[problem.pointer.left(problem.pointer.lastIndexOf(QLatin1Char('/')))] = 0;
    }
    findJsonLines(text, lines);
    for (FeedProblem& problem : problems) {
        if (problem.line == 0)
            problem.line = lineOf(problem.pointer, lines);
    }
    std::stable_sort(problems.begin(), problems.end(),
                     [](const auto& left, const auto& right) { return left.line < right.line; });
}

} // namespace

std::optional<Feed> readJsonFeed(const QString& path, const FeedOptions& options,
                                 FeedReport& report)
{
    std::optional<QByteArray> text = readFeedFile(path, options.limits.jsonBytes, report);
    if (!text)
        return std::nullopt;
    if (isUtf16(*text)) {
        report.add(path, 1, QStringLiteral("text in UTF-16"), utf8Expected());
        return std::nullopt;
    }
    // Broken bytes are replaced after they were reported, so that the rest is judged too.
    if (!checkUtf8(*text, path, report))
        text = toText(*text).toUtf8();
    if (!checkJson(*text, path, options.limits, report))
        return std::nullopt;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(*text, &error);
    // GCOVR_EXCL_START: checkJson() lets nothing pass that Qt refuses.
    if (document.isNull()) {
        report.add(path, static_cast<int>(text->left(error.offset).count('\n') + 1),
                   error.errorString(), QStringLiteral("JSON"));
        return std::nullopt;
    }
    // GCOVR_EXCL_STOP
    Document feed;
    RecordReader(path, options.limits, report).read(document.object(), Place(), feed);
    checkPrices(feed, path, report);
    checkPrinter(feed, document.object().value(QLatin1String("peripherals")), path, report);
    if (feed.networkEntry)
        checkNetwork(*feed.networkEntry, feed.products,
                     document.object().value(QLatin1String("network")).toObject(), path, report);
    if (report.hasProblems()) {
        completeProblems(*text, report.keptProblems());
        return std::nullopt;
    }
    if (!document.object().contains(QLatin1String("supportedPassengerTypes")))
        feed.supportedPassengerTypes = passengerTypesOf(feed.products);
    if (feed.networkEntry)
        feed.network = toNetwork(*feed.networkEntry);
    feed.tariff = tariffOf(feed);
    noticeUnknownTypes(feed, path, report);
    return std::move(static_cast<Feed&>(feed));
}

} // namespace rivo::feed
