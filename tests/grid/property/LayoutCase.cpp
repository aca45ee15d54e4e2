#include "LayoutCase.h"

#include <algorithm>
#include <cstring>
#include <iterator>
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

const QStringList knownTypes = typeTexts({1, 3, 4, 5, 7, 8, 9, 10});
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

NewProduct randomProduct(Random& random, const QString& type)
{
    static const QStringList descriptions{QStringLiteral("Adult"), QStringLiteral("Student, 50 %"),
                                          QString(), QStringLiteral("\u017bo\u0142nierz, ulga %1"),
                                          QStringLiteral("---NOT FOR SALE---")};
    static const QStringList names{QStringLiteral("Single"), QStringLiteral("Return"),
                                   QStringLiteral("Bilet jednorazowy \u2013 strefa B"), QString(),
                                   QStringLiteral("%1 of [%2]")};
    NewProduct product{type, {}};
    sProduct& record = product.record;
    record.passengerTypeCode = PassengerTypesModel::codeMap.value(type);
    record.passengerTypeId = random.between(-1, 99);
    record.description = random.pick(descriptions);
    record.icon = random.chance(20) ? QStringLiteral("qrc:/icons/own.svg") : QString();
    record.price = random.between(-100, 5000) / 100.0;
    record.fareProductName = random.pick(names);
    record.isReturnFee = random.chance(30);
    record.fromStopGroupId =
        random.chance(5) ? random.pick(QVector<int>{lowest, highest}) : random.between(-1, 20);
    record.fareProductColor = random.chance(50) ? QStringLiteral("#00ff7f") : QString();
    record.hasExpired = random.chance(20);
    record.fareDiscount = random.between(0, 100) / 3.0;
    return product;
}

/// Products of each type in each zone, with some missing, or just any.
QVector<NewProduct> randomProducts(Random& random, const QStringList& types)
{
    const QVector<int> zones = randomZones(random);
    const QVector<int> fareProducts = randomFareProducts(random);
    QVector<NewProduct> products;
    const auto add = [&](const QString& type, int zone) {
        NewProduct product = randomProduct(random, type);
        product.record.toStopGroupId = zone;
        product.record.fareProductId = random.pick(fareProducts);
        products.append(product);
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
    return random.shuffled(products).mid(0, mostProducts);
}

void makeSomeDaily(Random& random, QVector<NewProduct>& products)
{
    const int percent = QVector<int>{0, 15, 100}.at(random.weighted({60, 35, 5}));
    for (NewProduct& product : products)
        product.record.isDaily = random.chance(percent);
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

void assignPositions(Random& random, QVector<NewProduct>& products)
{
    if (products.isEmpty())
        return;
    const QVector<int> positions = randomPositions(random, products.size());
    for (int i = 0; i < products.size(); ++i)
        products[i].record.pos = positions.at(i);
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

Call layoutCall(Random& random, const QStringList& types, const QVector<NewProduct>& products)
{
    const QStringList local = randomLocalTypes(random, types);
    switch (random.weighted({88, 3, 3, 6})) {
    case 0:
        return {Call::LayOut, local, {}, {randomColumns(random, types, local)}};
    case 1:
        return {Call::LayOutByPosition};
    case 2:
        return {Call::LayOutByZone, local};
    default:
        return {Call::GroupZone,
                {},
                {},
                {products.isEmpty() || random.chance(10)
                     ? random.between(-1, 9)
                     : random.pick(products).record.toStopGroupId}};
    }
}

Call numberCall(Call::Kind kind, int number) { return {kind, {}, {}, {number}}; }

/// Mostly ascending types with repetitions.
Call slotsCall(Random& random)
{
    const QVector<int> codes{0, 1, 3, 4, 5, 7, 8, 9, 10, -1, lowest, highest};
    const int choice = random.chance(10) ? codes.size() : 7;
    Call call{Call::Slots};
    for (int count = random.below(24); count > 0; --count)
        call.numbers.append(codes.at(random.below(choice)));
    if (!random.chance(10))
        std::sort(call.numbers.begin(), call.numbers.end());
    return call;
}

/// To a permutation, or one with a mistake, or one of another length.
Call moveCall(Random& random)
{
    const int length = random.below(12);
    Call call{Call::Move};
    for (int i = 0; i < length; ++i) {
        call.products.append(usualProduct(i, 0));
        call.numbers.append(i);
    }
    call.numbers = random.shuffled(call.numbers);
    switch (random.below(5)) {
    case 0:
        if (length > 0)
            call.numbers[random.below(length)] =
                random.pick(QVector<int>{lowest, -1, length, highest, 0, length / 2});
        break;
    case 1:
        call.numbers.append(length);
        break;
    case 2:
        call.numbers.resize(length / 2);
        break;
    default:
        break;
    }
    return call;
}

Call judgeCall(Random& random)
{
    const QVector<int> positions =
        random.chance(50) ? QVector<int>{1, 2, 3, 4, 5, 6, 7, 8, 9}
                          : QVector<int>{-1, -1, 0, -2, lowest, highest, 100000, 100001, 1, 2, 3};
    Call call{Call::Judge};
    for (int count = random.below(5); count > 0; --count)
        call.numbers.append(random.pick(positions));
    return call;
}

/// One product list and what is done with it.
void appendRound(Random& random, Case& layoutCase, bool first)
{
    QVector<Call>& calls = layoutCase.calls;
    const QStringList types = randomTypes(random, layoutCase.configuration.order);

    if (random.chance(first ? 60 : 20))
        calls.append({Call::Support, randomLocalTypes(random, types)});
    if (!first && random.chance(65))
        calls.append(Call{Call::Clear});
    if (random.chance(15))
        calls.append(numberCall(Call::SwitchLogging, random.below(2)));

    Call add{Call::Add, {}, randomProducts(random, types)};
    if (random.chance(40))
        assignPositions(random, add.products);
    makeSomeDaily(random, add.products);
    calls.append(add);

    if (random.chance(5))
        calls.append(numberCall(Call::SetColumns, random.pick(QVector<int>{0, 0, 2, -2})));
    const Call layout = layoutCall(random, types, add.products);
    if (random.chance(layout.kind == Call::GroupZone ? 40 : 5))
        calls.append(numberCall(Call::SetRows, random.pick(QVector<int>{highest, highest, 1, -5})));
    calls.append(layout);
    if (random.chance(10))
        calls.append({Call::Support, randomLocalTypes(random, types)});
    if (random.chance(10))
        calls.append({Call::Print, {}, add.products.mid(0, 3)});
    calls += {slotsCall(random), moveCall(random), judgeCall(random)};
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
            auto& shorter = list(candidate);
            shorter.erase(shorter.begin() + start, shorter.begin() + start + part);
            if (accept(candidate))
                return true;
        }
    }
    return false;
}

bool offerSmallerNumbers(const Case& failing, int call, const Visitor& accept)
{
    for (int i = 0; i < failing.calls.at(call).numbers.size(); ++i) {
        const int value = failing.calls.at(call).numbers.at(i);
        for (const int smaller : {0, 1, -1, 3, value / 2, value - value / 8}) {
            Case candidate = failing;
            candidate.calls[call].numbers[i] = smaller;
            if (qAbs(qint64(smaller)) < qAbs(qint64(value)) && accept(candidate))
                return true;
        }
    }
    return false;
}

/// Simpler values of a field: what a product has by itself, then smaller numbers.
QVector<QVariant> simplerValues(const ProductField& field, const sProduct& product, int place)
{
    const QVariant value = field.get(product);
    QVector<QVariant> simpler{field.get(usualProduct(product.passengerTypeCode, place).record)};
    if (value.userType() == QMetaType::Int) {
        for (const int smaller : {0, 1, -1, value.toInt() / 2}) {
            if (qAbs(qint64(smaller)) < qAbs(qint64(value.toInt())))
                simpler.append(smaller);
        }
    }
    return simpler.mid(simpler.first() == value ? simpler.size() : 0);
}

bool offerSimplerProducts(const Case& failing, int call, const Visitor& accept)
{
    const QVector<NewProduct>& products = failing.calls.at(call).products;
    for (int i = 0; i < products.size(); ++i) {
        Case candidate = failing;
        NewProduct& product = candidate.calls[call].products[i];
        const sProduct& record = products.at(i).record;
        product = usualProduct(PassengerTypesModel::PT_ADULT, i);
        if (shortText(product, i) != shortText(products.at(i), i) && accept(candidate))
            return true;
        for (const ProductField& field : productFields) {
            const QVector<QVariant> values = simplerValues(field, record, i);
            for (const QVariant& value : values) {
                product = products.at(i);
                field.set(product.record, value);
                if (accept(candidate))
                    return true;
            }
        }
    }
    return false;
}

/// Offers cases that are one step simpler, boldest first, until one is accepted.
bool offerSimplerCases(const Case& failing, const Visitor& accept)
{
    const auto calls = [](Case & it) -> auto& { return it.calls; };
    if (offerShorterList(failing, calls, accept))
        return true;
    for (int call = 0; call < failing.calls.size(); ++call) {
        const auto products = [call](Case & it) -> auto& { return it.calls[call].products; };
        const auto types = [call](Case & it) -> auto& { return it.calls[call].typeTexts; };
        if (offerShorterList(failing, products, accept) ||
            offerShorterList(failing, types, accept) ||
            offerSmallerNumbers(failing, call, accept) ||
            offerSimplerProducts(failing, call, accept))
            return true;
    }
    const auto order = [](Case & it) -> auto& { return it.configuration.order; };
    if (offerShorterList(failing, order, accept))
        return true;
    Case candidate = failing;
    candidate.configuration.logging = false;
    candidate.autoSpacing = false;
    return (failing.configuration.logging || failing.autoSpacing) && accept(candidate);
}

// ---- description ----

/// How a kind of call is written: its name, its list and what stands before the numbers behind it.
struct Writing
{
    Call::Kind kind;
    const char* name;
    enum { Numbers, Types, Products } list = Numbers;
    const char* separator = "";
};

const Writing writings[] = {{Call::Clear, "clear"},
                            {Call::Support, "support", Writing::Types},
                            {Call::Add, "add", Writing::Products},
                            {Call::SwitchLogging, "logging"},
                            {Call::SetColumns, "columns"},
                            {Call::SetRows, "rows"},
                            {Call::Slots, "slots"},
                            {Call::Move, "move", Writing::Products, "to"},
                            {Call::Judge, "judge"},
                            {Call::Print, "print", Writing::Products},
                            {Call::LayOut, "lay out", Writing::Types, "in"},
                            {Call::LayOutByPosition, "by position"},
                            {Call::LayOutByZone, "by zone", Writing::Types},
                            {Call::GroupZone, "group"}};

QStringList words(const QString& text)
{
    static const QRegularExpression pattern(R"re("[^"]*"|[^ ]+)re");
    QStringList found;
    for (auto it = pattern.globalMatch(text); it.hasNext();)
        found.append(it.next().captured());
    return found;
}

QVector<int> numbersFrom(const QString& text)
{
    QVector<int> numbers;
    for (const QString& word : words(text)) {
        bool isNumber = false;
        numbers.append(word.toInt(&isNumber));
        if (!isNumber)
            qFatal("\"%s\" is no number", qPrintable(word));
    }
    return numbers;
}

QString numbersText(const QVector<int>& numbers)
{
    QString text;
    for (const int number : numbers)
        text += ' ' + QString::number(number);
    return text;
}

QStringList typesFrom(const QString& text)
{
    QStringList types;
    for (const QString& word : words(text))
        types.append(word.startsWith('"') ? withoutQuotes(word)
                                          : typeText(numbersFrom(word).first()));
    return types;
}

QString typesText(const QStringList& types)
{
    QString text;
    for (const QString& type : types) {
        const int code = PassengerTypesModel::codeMap.value(type);
        text += ' ' + (code == 0 ? '"' + type + '"' : QString::number(code));
    }
    return text;
}

Call callFrom(const QString& line)
{
    for (const Writing& writing : writings) {
        if (line != writing.name && !line.startsWith(writing.name + QStringLiteral(" ")))
            continue;
        Call call{writing.kind};
        QString list = line.mid(int(std::strlen(writing.name)));
        if (*writing.separator) {
            const QString separator = QStringLiteral(" %1 ").arg(writing.separator);
            const int at = (list + ' ').lastIndexOf(separator);
            if (at == -1)
                qFatal("\"%s\" lacks \"%s\"", qPrintable(line), writing.separator);
            call.numbers = numbersFrom(list.mid(at + separator.size()));
            list.truncate(at);
        }
        if (writing.list == Writing::Numbers)
            call.numbers = numbersFrom(list);
        else if (writing.list == Writing::Types)
            call.typeTexts = typesFrom(list);
        else
            call.products = productsFrom(list.trimmed());
        return call;
    }
    qFatal("\"%s\" is no call", qPrintable(line));
}

QString describe(const Call& call)
{
    const Writing& writing =
        *std::find_if(std::begin(writings), std::end(writings),
                      [&call](const Writing& entry) { return entry.kind == call.kind; });
    QString text = writing.name + typesText(call.typeTexts);
    for (int i = 0; i < call.products.size(); ++i)
        text += ' ' + shortText(call.products.at(i), i);
    if (*writing.separator)
        text += QStringLiteral(" %1").arg(writing.separator);
    return text + numbersText(call.numbers);
}

} // namespace

void addLine(Case& layoutCase, const QString& line)
{
    if (line == "spacing")
        layoutCase.autoSpacing = true;
    else if (line == "logged")
        layoutCase.configuration.logging = true;
    else if (line.startsWith("order "))
        layoutCase.configuration.order = typesFrom(line.mid(6));
    else
        layoutCase.calls.append(callFrom(line));
}

QString describe(const Case& layoutCase)
{
    QStringList lines;
    if (!layoutCase.configuration.order.isEmpty())
        lines.append("order" + typesText(layoutCase.configuration.order));
    if (layoutCase.configuration.logging)
        lines.append("logged");
    if (layoutCase.autoSpacing)
        lines.append("spacing");
    for (const Call& call : layoutCase.calls)
        lines.append(describe(call));
    return lines.join("\n");
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

QVector<Configuration> randomConfigurations(quint64 seed, int count)
{
    Random random(seed);
    QVector<Configuration> configurations;
    for (int i = 0; i < count; ++i)
        configurations.append({randomOrder(random), random.chance(40)});
    return configurations;
}

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
