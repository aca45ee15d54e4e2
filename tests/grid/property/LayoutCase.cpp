#include "LayoutCase.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>
#include <random>
#include <utility>

namespace
{

constexpr int lowest = std::numeric_limits<int>::min();
constexpr int highest = std::numeric_limits<int>::max();
constexpr int mostProducts = 60;

const QStringList knownTypes{QStringLiteral("PT_ADULT"),      QStringLiteral("PT_STUDENT_1"),
                             QStringLiteral("PT_SCHOOLBOY"),  QStringLiteral("PT_DISABLED"),
                             QStringLiteral("PT_MILITARY_1"), QStringLiteral("PT_LFS"),
                             QStringLiteral("PT_STUDENT_2"),  QStringLiteral("PT_MILITARY_2")};
const QStringList unknownTypes{QStringLiteral("pt_adult"), QStringLiteral("PT_SENIOR"),
                               QStringLiteral("PT_ADULT "), QStringLiteral("100 %1"), QString()};

// ---- choices ----

/// The standard distributions differ between implementations; these do not.
class Random
{
public:
    explicit Random(quint64 seed) : m_engine(seed) {}
    explicit Random(Choices choices) : m_choices(std::move(choices)) {}

    int below(int bound)
    {
        return m_choices ? m_choices->bounded(bound)
                         : static_cast<int>(m_engine() % static_cast<quint64>(bound));
    }
    int between(int first, int last) { return first + below(last - first + 1); }
    bool chance(int percent) { return below(100) < percent; }

    template <typename List>
    auto pick(const List& list)
    {
        return list.at(below(list.size()));
    }

    template <typename List>
    List shuffled(List list)
    {
        for (int i = list.size() - 1; i > 0; --i)
            std::swap(list[i], list[below(i + 1)]);
        return list;
    }

    /// Some of the list, at least one, in random order.
    template <typename List>
    List some(const List& list)
    {
        return shuffled(list).mid(0, between(1, list.size()));
    }

    /// Index of a weight, by weight.
    int weighted(const QVector<int>& weights)
    {
        int ticket = below(std::accumulate(weights.begin(), weights.end(), 0));
        int index = 0;
        while (ticket >= weights.at(index))
            ticket -= weights.at(index++);
        return index;
    }

private:
    std::mt19937_64 m_engine;
    std::optional<Choices> m_choices;
};

QStringList randomOrder(Random& random)
{
    switch (random.weighted({15, 20, 30, 15, 20})) {
    case 0:
        return {};
    case 1:
        return random.shuffled(knownTypes);
    case 2:
        return random.shuffled(knownTypes).mid(0, random.between(1, 4));
    case 3:
        return random.shuffled(knownTypes + unknownTypes).mid(0, random.between(2, 8));
    default: {
        const QStringList some = random.some(knownTypes + unknownTypes.mid(0, 1));
        return random.shuffled(some + random.some(some)).mid(0, 10);
    }
    }
}

/// The types that the products of one list have.
QStringList randomTypes(Random& random, const QStringList& order)
{
    switch (random.weighted({order.isEmpty() ? 0 : 35, 25, 10, 8, 12, 10})) {
    case 0: {
        QStringList types = order;
        types.removeDuplicates();
        return types;
    }
    case 1:
        return random.shuffled(knownTypes).mid(0, random.between(1, 4));
    case 2:
        return random.shuffled(knownTypes);
    case 3:
        return knownTypes.mid(6, random.between(1, 2));
    case 4:
        return random.some(knownTypes + unknownTypes);
    default:
        return random.shuffled(knownTypes).mid(0, random.between(5, 8));
    }
}

QStringList randomLocalTypes(Random& random, const QStringList& types)
{
    switch (random.weighted({36, 11, 14, 8, 11, 6, 5, 9})) {
    case 0:
        return random.shuffled(types);
    case 1:
        return random.some(types);
    case 2: {
        QStringList superset = types + random.some(knownTypes);
        superset.removeDuplicates();
        return random.shuffled(superset);
    }
    case 3: {
        QStringList others;
        for (const QString& type : knownTypes) {
            if (!types.contains(type))
                others.append(type);
        }
        return others.isEmpty() ? others : random.some(others);
    }
    case 4:
        return random.shuffled(types + random.some(types));
    case 5:
        return {};
    case 6:
        return random.some(knownTypes + unknownTypes);
    default: // with PT_LFS as the last
        return random.shuffled(knownTypes.mid(0, 5)).mid(0, random.between(3, 5)) +
               knownTypes.mid(5, 1);
    }
}

QVector<int> randomZones(Random& random)
{
    QVector<int> zones;
    switch (random.weighted({30, 35, 15, 10, 10})) {
    case 0:
        return {random.between(1, 9)};
    case 1:
        for (int count = random.between(2, 4); count > 0; --count)
            zones.append(random.between(1, 9));
        return zones;
    case 2:
        for (int count = random.between(5, 30); count > 0; --count)
            zones.append(random.between(-5, 40));
        return zones;
    case 3:
        for (int count = random.between(1, 5); count > 0; --count)
            zones.append(random.between(-4, 1));
        return zones;
    default:
        return random.some(QVector<int>{lowest, highest, 0, -1, 1, lowest + 1, highest - 1});
    }
}

QVector<int> randomFareProducts(Random& random)
{
    switch (random.weighted({25, 45, 20, 10})) {
    case 0:
        return {random.between(0, 5)};
    case 1:
        return random.shuffled(QVector<int>{1, 2, 3, 4, 5}).mid(0, random.between(2, 4));
    case 2: {
        QVector<int> all;
        for (int i = 0; i < mostProducts; ++i)
            all.append(i);
        return all;
    }
    default:
        return {lowest, -7, 0, 7, highest};
    }
}

oracle::Product randomProduct(Random& random)
{
    static const QStringList descriptions{QStringLiteral("Adult"), QStringLiteral("Student, 50 %"),
                                          QString(), QStringLiteral("\u017bo\u0142nierz, ulga %1"),
                                          QStringLiteral("---NOT FOR SALE---")};
    static const QStringList names{QStringLiteral("Single"), QStringLiteral("Return"),
                                   QStringLiteral("Bilet jednorazowy \u2013 strefa B"), QString(),
                                   QStringLiteral("%1 of [%2]")};
    oracle::Product product;
    product.passengerTypeId = random.between(-1, 99);
    product.description = random.pick(descriptions);
    product.icon = random.chance(20) ? QStringLiteral("qrc:/icons/own.svg") : QString();
    product.price = random.between(-100, 5000) / 100.0;
    product.fareProductName = random.pick(names);
    product.isReturnFee = random.chance(30);
    product.fromStopGroupId =
        random.chance(5) ? random.pick(QVector<int>{lowest, highest}) : random.between(-1, 20);
    product.fareProductColor = random.chance(50) ? QStringLiteral("#00ff7f") : QString();
    product.hasExpired = random.chance(20);
    product.fareDiscount = random.between(0, 100) / 3.0;
    return product;
}

/// Products of each type in each zone, with some missing, or just any.
QVector<Record> randomRecords(Random& random, const QStringList& types)
{
    const QVector<int> zones = randomZones(random);
    const QVector<int> fareProducts = randomFareProducts(random);
    QVector<Record> records;
    const auto add = [&](const QString& type, int zone) {
        Record record{type, randomProduct(random)};
        record.product.toStopGroupId = zone;
        record.product.fareProductId = random.pick(fareProducts);
        records.append(record);
    };

    switch (random.weighted({45, 28, 22, 5})) {
    case 0: {
        const int each = random.weighted({0, 60, 30, 10});
        const int missing = random.chance(50) ? 0 : random.between(5, 40);
        for (const int zone : zones) {
            for (const QString& type : types) {
                for (int i = 0; i < each; ++i) {
                    if (!random.chance(missing))
                        add(type, zone);
                }
            }
        }
        break;
    }
    case 1:
        for (int count = random.between(1, 6); count > 0; --count)
            add(random.pick(types), random.pick(zones));
        break;
    case 2:
        for (int count = random.between(0, mostProducts); count > 0; --count)
            add(random.pick(types), random.pick(zones));
        break;
    default:
        break;
    }
    return random.shuffled(records).mid(0, mostProducts);
}

void makeSomeDaily(Random& random, QVector<Record>& records)
{
    const int percent = QVector<int>{0, 15, 100}.at(random.weighted({60, 35, 5}));
    for (Record& record : records)
        record.product.isDaily = random.chance(percent);
}

/// 1 .. count in random order, then spoilt in one of many ways.
QVector<int> randomPositions(Random& random, int count)
{
    QVector<int> positions;
    for (int i = 0; i < count; ++i)
        positions.append(i + 1);

    int& victim = positions[random.below(count)];
    switch (random.weighted({15, 15, 10, 8, 10, 8, 8, 8, 3, 10})) {
    case 0:
        break;
    case 1: // holes
        for (int i = 0, last = 0; i < count; ++i)
            positions[i] = last += random.between(1, 3);
        break;
    case 2: // a block far behind
        for (int& pos : positions)
            pos += random.between(0, 1) * 80;
        std::sort(positions.begin(), positions.end());
        positions.erase(std::unique(positions.begin(), positions.end()), positions.end());
        while (positions.size() < count)
            positions.append(positions.last() + 1);
        break;
    case 3:
        victim = random.pick(positions);
        break;
    case 4:
        victim = -1;
        if (random.chance(30))
            positions[random.below(count)] = -1;
        break;
    case 5:
        victim = 0;
        break;
    case 6:
        victim = random.pick(QVector<int>{-2, -5, lowest});
        break;
    case 7:
        victim = random.pick(QVector<int>{100001, 100002, highest});
        break;
    case 8:
        victim = random.between(500, 2000);
        break;
    default:
        for (int& pos : positions)
            pos = random.pick(QVector<int>{-1, -1, -2, 0, 1, 2, 3, pos, pos + 7, 100001});
        break;
    }
    return random.shuffled(positions);
}

void assignPositions(Random& random, QVector<Record>& records)
{
    if (records.isEmpty())
        return;
    const QVector<int> positions = randomPositions(random, records.size());
    for (int i = 0; i < records.size(); ++i)
        records[i].product.pos = positions.at(i);
}

int randomColumns(Random& random, const QStringList& types, const QStringList& localTypes)
{
    switch (random.weighted({15, 25, 12, 14, 14, 14, 6})) {
    case 0:
        return 0;
    case 1:
        return types.size();
    case 2:
        return localTypes.size();
    case 3:
        return 3;
    case 4:
        return 4;
    case 5:
        return random.between(1, 8);
    default:
        return random.pick(QVector<int>{-1, -2, -3, -4, -7, lowest, highest, 40, 600, 100500});
    }
}

Call layoutCall(Random& random, const QStringList& types, const QVector<Record>& records)
{
    Call call;
    call.typeTexts = randomLocalTypes(random, types);
    switch (random.weighted({88, 3, 3, 6})) {
    case 0:
        call.kind = Call::LayOut;
        call.number = randomColumns(random, types, call.typeTexts);
        break;
    case 1:
        call.kind = Call::LayOutByPosition;
        break;
    case 2:
        call.kind = Call::LayOutByZone;
        break;
    default:
        call.kind = Call::GroupZone;
        call.number = records.isEmpty() || random.chance(10)
                          ? random.between(-1, 9)
                          : random.pick(records).product.toStopGroupId;
        break;
    }
    return call;
}

Call numberCall(Call::Kind kind, int number)
{
    Call call;
    call.kind = kind;
    call.number = number;
    return call;
}

Call supportCall(Random& random, const QStringList& types)
{
    Call call;
    call.kind = Call::Support;
    call.typeTexts = randomLocalTypes(random, types);
    return call;
}

/// One product list and what is done with it.
void appendRound(Random& random, Case& layoutCase, bool first)
{
    QVector<Call>& calls = layoutCase.calls;
    const QStringList types = randomTypes(random, layoutCase.configuration.order);

    if (random.chance(first ? 60 : 20))
        calls.append(supportCall(random, types));
    if (!first && random.chance(65))
        calls.append(numberCall(Call::Clear, 0));
    if (random.chance(15))
        calls.append(numberCall(Call::SwitchLogging, random.below(2)));

    Call add;
    add.kind = Call::Add;
    add.records = randomRecords(random, types);
    if (random.chance(40))
        assignPositions(random, add.records);
    makeSomeDaily(random, add.records);
    calls.append(add);

    if (random.chance(5))
        calls.append(numberCall(Call::SetColumns, random.pick(QVector<int>{0, 0, 2, -2})));
    const Call layout = layoutCall(random, types, add.records);
    if (random.chance(layout.kind == Call::GroupZone ? 40 : 5))
        calls.append(numberCall(Call::SetRows, random.pick(QVector<int>{highest, highest, 1, -5})));
    calls.append(layout);
    if (random.chance(10))
        calls.append(supportCall(random, types));
}

// ---- shrinking ----

using Visitor = std::function<bool(const Case&)>;

/// Offers the case without a half, a quarter ... of a list, down to single entries, until one is
/// accepted.
template <typename Access>
bool offerShorterList(const Case& failing, Access list, const Visitor& accept)
{
    Case original = failing;
    const int size = list(original).size();
    for (int part = size; part > 0; part /= 2) {
        for (int start = 0; start + part <= size; start += part) {
            Case candidate = failing;
            list(candidate).erase(list(candidate).begin() + start,
                                  list(candidate).begin() + start + part);
            if (accept(candidate))
                return true;
        }
    }
    return false;
}

bool offerSmallerNumber(const Case& failing, const std::function<int&(Case&)>& number,
                        const Visitor& accept)
{
    Case original = failing;
    const int value = number(original);
    for (const int smaller : {0, 1, -1, 3, value / 2, value - value / 8}) {
        if (qAbs(qint64(smaller)) >= qAbs(qint64(value)))
            continue;
        Case candidate = failing;
        number(candidate) = smaller;
        if (accept(candidate))
            return true;
    }
    return false;
}

/// Numbers of a record, unless they are small already.
bool offerSmallerRecordNumbers(const Case& failing, int call, const Visitor& accept)
{
    for (int i = 0; i < failing.calls.at(call).records.size(); ++i) {
        for (int oracle::Product::*const field :
             {&oracle::Product::toStopGroupId, &oracle::Product::fareProductId,
              &oracle::Product::pos, &oracle::Product::fromStopGroupId}) {
            const auto number = [=](Case& it) -> int& {
                return it.calls[call].records[i].product.*field;
            };
            const int value = failing.calls.at(call).records.at(i).product.*field;
            if (qAbs(qint64(value)) > 1 && offerSmallerNumber(failing, number, accept))
                return true;
        }
    }
    return false;
}

using Simplification = void (*)(Record&);

const QVector<Simplification> simplifications{
    [](Record& record) {
        const oracle::Product old = record.product;
        record.product = oracle::Product();
        record.product.toStopGroupId = old.toStopGroupId;
        record.product.fareProductId = old.fareProductId;
        record.product.isDaily = old.isDaily;
        record.product.pos = old.pos;
    },
    [](Record& record) { record.product.description = QStringLiteral("---NOT FOR SALE---"); },
    [](Record& record) { record.product.fareProductName = QStringLiteral("---DUMMY---"); },
    [](Record& record) { record.product.icon.clear(); },
    [](Record& record) { record.product.fareProductColor.clear(); },
    [](Record& record) { record.product.passengerTypeId = 0; },
    [](Record& record) { record.product.price = 0.0; },
    [](Record& record) { record.product.fareDiscount = 0.0; },
    [](Record& record) { record.product.fromStopGroupId = 0; },
    [](Record& record) { record.product.hasExpired = true; },
    [](Record& record) { record.product.isReturnFee = false; },
    [](Record& record) { record.product.isDaily = false; },
    [](Record& record) { record.product.pos = -1; },
    [](Record& record) { record.product.fareProductId = 0; },
    [](Record& record) { record.product.toStopGroupId = 0; },
    [](Record& record) { record.typeText = knownTypes.first(); },
};

bool sameRecord(const Record& left, const Record& right)
{
    return left.typeText == right.typeText && left.product == right.product;
}

/// Offers simpler records: first all of a call at once, then one by one.
bool offerSimplerRecords(const Case& failing, int call, const Visitor& accept)
{
    const QVector<Record>& records = failing.calls.at(call).records;
    for (const Simplification simplify : simplifications) {
        Case together = failing;
        for (Record& record : together.calls[call].records)
            simplify(record);
        const bool changed = !std::equal(records.begin(), records.end(),
                                         together.calls.at(call).records.constBegin(), sameRecord);
        if (!changed)
            continue;
        if (accept(together))
            return true;
        for (int i = 0; i < records.size(); ++i) {
            Case single = failing;
            simplify(single.calls[call].records[i]);
            if (!sameRecord(single.calls.at(call).records.at(i), records.at(i)) && accept(single))
                return true;
        }
    }
    return false;
}

bool offerSimplerSwitches(const Case& failing, const Visitor& accept)
{
    Case candidate = failing;
    candidate.configuration.logging = false;
    if (failing.configuration.logging && accept(candidate))
        return true;
    candidate = failing;
    candidate.autoSpacing = false;
    return failing.autoSpacing && accept(candidate);
}

bool offerSimplerCall(const Case& failing, int call, const Visitor& accept)
{
    return offerShorterList(
               failing, [call](Case & it) -> auto& { return it.calls[call].records; }, accept) ||
           offerShorterList(
               failing, [call](Case & it) -> auto& { return it.calls[call].typeTexts; }, accept) ||
           offerSmallerNumber(
               failing, [call](Case& it) -> int& { return it.calls[call].number; }, accept) ||
           offerSimplerRecords(failing, call, accept) ||
           offerSmallerRecordNumbers(failing, call, accept);
}

/// Offers cases that are one step simpler, boldest first, until one is accepted.
bool offerSimplerCases(const Case& failing, const Visitor& accept)
{
    if (offerShorterList(
            failing, [](Case & it) -> auto& { return it.calls; }, accept))
        return true;
    for (int call = 0; call < failing.calls.size(); ++call) {
        if (offerSimplerCall(failing, call, accept))
            return true;
    }
    return offerShorterList(
               failing, [](Case & it) -> auto& { return it.configuration.order; }, accept) ||
           offerSimplerSwitches(failing, accept);
}

// ---- description ----

QString quoted(const QStringList& texts)
{
    return texts.isEmpty() ? QStringLiteral("{}")
                           : QStringLiteral("{\"%1\"}").arg(texts.join(QLatin1String("\", \"")));
}

QString describeCall(const Call& call)
{
    const QString number = QString::number(call.number);
    switch (call.kind) {
    case Call::Clear:
        return QStringLiteral("clearData()");
    case Call::Support:
        return QStringLiteral("setSupportedPassengerTypeCodes(") + quoted(call.typeTexts) +
               QStringLiteral(")");
    case Call::Add: {
        QString text = QStringLiteral("addItem() of %1 products").arg(call.records.size());
        for (const Record& record : call.records) {
            text += QStringLiteral("\n       \"") + record.typeText + QStringLiteral("\" ") +
                    describe(record.product);
        }
        return text;
    }
    case Call::SwitchLogging:
        return QStringLiteral("setLogFareProducts(") + number + QStringLiteral(")");
    case Call::SetColumns:
        return QStringLiteral("setNumberOfColumns(") + number + QStringLiteral(")");
    case Call::SetRows:
        return QStringLiteral("setNumberOfRows(") + number + QStringLiteral(")");
    case Call::LayOut:
        return QStringLiteral("sortAndRegroup(") + quoted(call.typeTexts) + QStringLiteral(", ") +
               number + QStringLiteral(")");
    case Call::LayOutByPosition:
        return QStringLiteral("sortBasedOnBackendAssignment()");
    case Call::LayOutByZone:
        return QStringLiteral("sortBasedOnLocalData(") + quoted(call.typeTexts) +
               QStringLiteral(")");
    case Call::GroupZone:
        return QStringLiteral("sortAndGroupProductsForZone(") + number + QStringLiteral(")");
    }
    return {};
}

} // namespace

QVector<Configuration> randomConfigurations(quint64 seed, int count)
{
    Random random(seed);
    QVector<Configuration> configurations;
    for (int i = 0; i < count; ++i)
        configurations.append({randomOrder(random), random.chance(40)});
    return configurations;
}

namespace
{

Case someCase(Random& random, const QVector<Configuration>& configurations)
{
    Case layoutCase;
    layoutCase.configuration = random.pick(configurations);
    layoutCase.autoSpacing = random.chance(10);
    const int rounds = 1 + random.weighted({60, 25, 15});
    for (int round = 0; round < rounds; ++round)
        appendRound(random, layoutCase, round == 0);
    return layoutCase;
}

} // namespace

Case randomCase(quint64 seed, int number, const QVector<Configuration>& configurations)
{
    Random random((seed << 32U) ^ static_cast<quint64>(number));
    return someCase(random, configurations);
}

Case decidedCase(Choices choices, const QVector<Configuration>& configurations)
{
    Random random(std::move(choices));
    return someCase(random, configurations);
}

Case shrunk(Case failing, const std::function<bool(const Case&)>& fails, int attempts)
{
    bool simpler = true;
    while (simpler) {
        Case next;
        simpler = offerSimplerCases(failing, [&](const Case& candidate) {
            if (--attempts < 0 || !fails(candidate))
                return false;
            next = candidate;
            return true;
        });
        if (simpler)
            failing = next;
    }
    return failing;
}

int productCount(const Case& layoutCase)
{
    int count = 0;
    for (const Call& call : layoutCase.calls)
        count += call.records.size();
    return count;
}

QString describe(const oracle::Product& product)
{
    const oracle::Product placeholder;
    QStringList fields;
    const auto add = [&fields](const char* name, const auto& value, const auto& usual) {
        if (value != usual)
            fields.append(QLatin1String(name) + QLatin1Char('=') +
                          QVariant::fromValue(value).toString());
    };
    add("zone", product.toStopGroupId, placeholder.toStopGroupId);
    add("fareProductId", product.fareProductId, placeholder.fareProductId);
    add("pos", product.pos, placeholder.pos);
    add("daily", product.isDaily, placeholder.isDaily);
    add("type", product.passengerTypeCode, placeholder.passengerTypeCode);
    add("typeId", product.passengerTypeId, placeholder.passengerTypeId);
    add("name", product.fareProductName, placeholder.fareProductName);
    add("description", product.description, placeholder.description);
    add("from", product.fromStopGroupId, placeholder.fromStopGroupId);
    add("icon", product.icon, placeholder.icon);
    add("price", product.price, placeholder.price);
    add("discount", product.fareDiscount, placeholder.fareDiscount);
    add("colour", product.fareProductColor, placeholder.fareProductColor);
    add("expired", product.hasExpired, placeholder.hasExpired);
    add("returnFee", product.isReturnFee, placeholder.isReturnFee);
    return fields.isEmpty() ? QStringLiteral("like a placeholder") : fields.join(QLatin1Char(' '));
}

QString describe(const Case& layoutCase)
{
    QString text = QStringLiteral("configured order ") + quoted(layoutCase.configuration.order) +
                   (layoutCase.configuration.logging ? QStringLiteral(", log_fareproducts on")
                                                     : QStringLiteral(", log_fareproducts off")) +
                   (layoutCase.autoSpacing ? QStringLiteral(", automatic spacing") : QString());
    for (int i = 0; i < layoutCase.calls.size(); ++i)
        text += QStringLiteral("\n%1: ").arg(i + 1, 4) + describeCall(layoutCase.calls.at(i));
    return text;
}
