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

    /// Some of the list, in random order.
    template <typename List>
    List some(const List& list, int least = 1, int most = highest)
    {
        return shuffled(list).mid(0, between(least, qMin(most, list.size())));
    }

    QVector<int> numbers(int count, int first, int last)
    {
        QVector<int> numbers;
        while (numbers.size() < count)
            numbers.append(between(first, last));
        return numbers;
    }

    /// One of the values, by weight.
    template <typename Value>
    Value oneOf(const QVector<QPair<int, Value>>& values)
    {
        QVector<int> weights;
        for (const auto& value : values)
            weights.append(value.first);
        return values.at(weighted(weights)).second;
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
    const QStringList repeated = random.some(knownTypes + unknownTypes.mid(0, 1));
    return random.oneOf<QStringList>(
        {{15, {}},
         {20, random.shuffled(knownTypes)},
         {30, random.some(knownTypes, 1, 4)},
         {15, random.some(knownTypes + unknownTypes, 2, 8)},
         {20, random.shuffled(repeated + random.some(repeated)).mid(0, 10)}});
}

/// The types that the products of one list have.
QStringList randomTypes(Random& random, QStringList order)
{
    order.removeDuplicates();
    return random.oneOf<QStringList>({{order.isEmpty() ? 0 : 35, order},
                                      {25, random.some(knownTypes, 1, 4)},
                                      {10, random.shuffled(knownTypes)},
                                      {8, knownTypes.mid(6, random.between(1, 2))},
                                      {12, random.some(knownTypes + unknownTypes)},
                                      {10, random.some(knownTypes, 5, 8)}});
}

QStringList randomLocalTypes(Random& random, const QStringList& types)
{
    QStringList more = types + random.some(knownTypes);
    more.removeDuplicates();
    QStringList others = knownTypes;
    for (const QString& type : types)
        others.removeOne(type);
    const QStringList endingInLfs = random.some(knownTypes.mid(0, 5), 3, 5) << knownTypes.at(5);
    return random.oneOf<QStringList>({{36, random.shuffled(types)},
                                      {11, random.some(types)},
                                      {14, random.shuffled(more)},
                                      {8, others.isEmpty() ? others : random.some(others)},
                                      {11, random.shuffled(types + random.some(types))},
                                      {6, {}},
                                      {5, random.some(knownTypes + unknownTypes)},
                                      {9, endingInLfs}});
}

QVector<int> randomZones(Random& random)
{
    const QVector<int> outermost{lowest, highest, 0, -1, 1, lowest + 1, highest - 1};
    return random.oneOf<QVector<int>>({{30, random.numbers(1, 1, 9)},
                                       {35, random.numbers(random.between(2, 4), 1, 9)},
                                       {15, random.numbers(random.between(5, 30), -5, 40)},
                                       {10, random.numbers(random.between(1, 5), -4, 1)},
                                       {10, random.some(outermost)}});
}

QVector<int> randomFareProducts(Random& random)
{
    return random.oneOf<QVector<int>>({{25, random.numbers(1, 0, 5)},
                                       {45, random.some(QVector<int>{1, 2, 3, 4, 5}, 2, 4)},
                                       {20, random.numbers(mostProducts, 0, mostProducts)},
                                       {10, {lowest, -7, 0, 7, highest}}});
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
    const QVector<int> odd{-1, -2, -3, -4, -7, lowest, highest, 40, 600, 100500};
    return random.oneOf<int>({{15, 0},
                              {25, types.size()},
                              {12, localTypes.size()},
                              {14, 3},
                              {14, 4},
                              {14, random.between(1, 8)},
                              {6, random.pick(odd)}});
}

Call layoutCall(Random& random, const QStringList& types, const QVector<NewProduct>& products)
{
    const QStringList local = randomLocalTypes(random, types);
    const int zone = products.isEmpty() || random.chance(10)
                         ? random.between(-1, 9)
                         : random.pick(products).record.toStopGroupId;
    const int columns = randomColumns(random, types, local);
    return random.oneOf<Call>({{88, {Call::LayOut, local, {}, {columns}}},
                               {3, {Call::LayOutByPosition}},
                               {3, {Call::LayOutByZone, local}},
                               {6, {Call::GroupZone, {}, {}, {zone}}}});
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
