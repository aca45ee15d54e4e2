#include "OracleAccount.h"

#include <map>
#include <utility>

namespace oracle
{

namespace
{

constexpr std::array<int, 6> evenedOutTypes{1, 3, 4, 5, 7, 8};

/// The products of one zone, type by type: what an even block consists of.
using TypeTable = std::map<int, QVector<Product>>;

QVector<Product> flattened(const TypeTable& table)
{
    QVector<Product> group;
    for (const auto& [code, products] : table)
        group += products;
    return group;
}

int tallestColumn(const TypeTable& table)
{
    int tallest = 0;
    for (const auto& [code, products] : table) {
        if (std::count(evenedOutTypes.begin(), evenedOutTypes.end(), code) > 0)
            tallest = std::max(tallest, static_cast<int>(products.size()));
    }
    return tallest;
}

void evenOut(TypeTable& table, int height, Account& account)
{
    for (const int code : evenedOutTypes) {
        if (!account.state().local.contains(code))
            continue;
        const int present = table.count(code) ? table[code].size() : 0;
        if (present == height)
            continue;
        account.note(present == 0 ? "zone: whole column of placeholders"
                                  : "zone: column evened out");
        table[code] += QVector<Product>(height - present, placeholderOf(code));
    }
}

int fillerType(const QVector<int>& local)
{
    if (local.last() != 8)
        return 8;
    for (const int candidate : {7, 5, 4, 3}) {
        if (!local.contains(candidate))
            return candidate;
    }
    return 1;
}

/// For one product, two, three ... in a block.
int fillerCount(int columns, int members)
{
    const QVector<int> ofThree{2, 1, 0, 2, 1};
    const QVector<int> ofFour{3, 2, 1, 0, 3, 2, 1};
    return columns == 3 ? ofThree.value(members - 1) : columns == 4 ? ofFour.value(members - 1) : 0;
}

void fillShortBlock(TypeTable& table, Account& account)
{
    const State& state = account.state();
    const int members = flattened(table).size();
    const int fillers = fillerCount(state.columns, members);
    if (fillers == 0)
        return;
    if (state.local.isEmpty()) {
        account.note("filler: none without local types");
        return;
    }
    if (state.columns == state.local.size()) {
        account.note("filler: none with as many columns as types");
        return;
    }
    const int code = fillerType(state.local);
    account.note(QStringLiteral("filler: type %1").arg(code));
    account.note(QStringLiteral("filler: %1 columns, row %2")
                     .arg(state.columns)
                     .arg(members < state.columns ? 1 : 2));
    table[code] = QVector<Product>(fillers, placeholderOf(code)) + table[code];
}

/// The column that the display order gives to a type; -1 if none. Entries that are not local count
/// only if the order is taken whole.
int configuredColumn(const State& state, int code, bool wholeOrder)
{
    int column = 0;
    for (const int entry : state.order) {
        if (!wholeOrder && !state.local.contains(entry))
            continue;
        if (entry == code)
            return column;
        ++column;
    }
    return -1;
}

/// The column of each type. Those without one share the first four columns that are left over.
QVector<int> columnsOf(Account& account, const QVector<int>& types, bool wholeOrder)
{
    QVector<int> columns;
    for (const int code : types)
        columns.append(configuredColumn(account.state(), code, wholeOrder));

    QVector<int> leftOver;
    for (int column = 0; column < 4; ++column) {
        if (!columns.contains(column))
            leftOver.append(column);
    }
    int homeless = 0;
    for (int& column : columns) {
        if (column == -1) {
            column = leftOver.value(homeless++, -1);
            account.note(QStringLiteral("slots: free column %1").arg(column));
        }
        if (column >= account.state().columns)
            account.note("slots: column beyond the last");
    }
    return columns;
}

void noteMove(Account& account, const TypeTable& table, const QVector<int>& numbers, int members)
{
    const std::set<int> distinct(numbers.begin(), numbers.end());
    if (isPermutation(numbers) && numbers.size() == members) {
        const int height = table.begin()->second.size();
        const bool even = std::all_of(table.begin(), table.end(), [height](const auto& entry) {
            return entry.second.size() == height;
        });
        const bool moves = !std::is_sorted(numbers.begin(), numbers.end());
        account.note(even ? "slots: even group" : "slots: uneven group, yet a permutation");
        account.note(moves ? "slots: products move" : "slots: products stay");
    } else if (numbers.size() != members) {
        account.note(numbers.size() < members ? "slots: too few" : "slots: too many");
    } else if (static_cast<int>(distinct.size()) < members) {
        account.note("slots: repeated");
    }
    if (*distinct.begin() < 0)
        account.note("slots: negative");
    if (*distinct.rbegin() >= members)
        account.note("slots: beyond the group");
}

} // namespace

QVector<int> slotsOf(Account& account, const QVector<int>& codes)
{
    const State& state = account.state();
    QString& output = account.outcome.standardOutput;
    QVector<int> types;
    for (int i = 0; i < codes.size(); ++i) {
        if (i == 0 || codes.at(i) != codes.at(i - 1))
            types.append(codes.at(i));
    }

    const bool wholeOrder = state.order.size() == types.size();
    account.note(wholeOrder ? "slots: whole order" : "slots: local part of the order");
    for (const int entry : state.order) {
        if (!wholeOrder && !state.local.contains(entry)) {
            account.note("slots: entry removed from the order");
            output += QStringLiteral("Remove : %1 from vTypeCodesOrderCpy\n").arg(entry);
        }
    }

    const QVector<int> columns = columnsOf(account, types, wholeOrder);
    const int width = usableColumns(state);
    const int height = std::max(1, static_cast<int>(codes.size()) / width);
    QVector<int> numbers;
    for (int k = 0; k < types.size() * height; ++k)
        numbers.append(columns.at(k / height) + k % height * width);
    if (state.logging)
        output += "Indeces: [" + joined(numbers, QStringLiteral(", ")) + "]\n";
    return numbers;
}

/// The block of a zone.
QVector<Product> groupZone(Account& account, int zone)
{
    State& state = account.state();
    account.log(QString("Group products for zone: %1").arg(zone));

    TypeTable table;
    for (const Product& product : qAsConst(state.products)) {
        if (product.toStopGroupId == zone)
            table[product.passengerTypeCode].append(product);
    }
    if (table.empty()) {
        account.note("zone: without products");
        return {};
    }

    const int height = tallestColumn(table);
    if (height == 0)
        account.note("zone: of no height");
    account.raiseRows(height);
    evenOut(table, height, account);
    fillShortBlock(table, account);

    const QVector<Product> group = flattened(table);
    QVector<int> codes;
    for (const Product& product : group)
        codes.append(product.passengerTypeCode);
    const QVector<int> numbers = slotsOf(account, codes);
    noteMove(account, table, numbers, group.size());
    return reordered(group, numbers);
}

void layOutByZone(Account& account, const QStringList& typeTexts)
{
    State& state = account.state();
    state.local = ascendingCodes(typeTexts);
    account.setRows(0);
    account.log(piece(state.products.size()) + piece(" products in our vector"));
    if (state.products.isEmpty())
        account.note("zone: no products at all");

    state.products = ranked(state.products, [](const Product& product) {
        return std::make_pair(product.fareProductId, product.toStopGroupId);
    });
    account.log(piece("------------------- BEFORE GROUPING --------------------"));
    account.dump(state.products, recordMessage);

    std::set<int> zones;
    std::set<int> types;
    for (const Product& product : qAsConst(state.products)) {
        zones.insert(product.toStopGroupId);
        types.insert(product.passengerTypeCode);
    }
    account.log(QString("%1 zones will be supported").arg(zones.size()));
    account.log(QString("%1 passengerTypeCodes will be supported").arg(types.size()));

    QVector<Product> groupedProducts;
    for (const int zone : zones)
        groupedProducts += groupZone(account, zone);
    account.show(groupedProducts);
    showDailyProducts(account);

    logGridSize(account);
    account.log(piece("------------------- AFTER GROUPING --------------------"));
    QVector<Product> described;
    for (const Product& tile : qAsConst(state.tiles)) {
        if (!tile.description.isEmpty())
            described.append(tile);
    }
    account.dump(described, tileMessage);
}

} // namespace oracle
