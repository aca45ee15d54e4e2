#include "LayoutOracle.h"

#include "GridSignals.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <set>
#include <utility>

namespace oracle
{

namespace
{

constexpr int lastUsablePosition = 100000;
constexpr qint64 largestFilling = 100000;

// ---- passenger types ----

struct PassengerType
{
    const char* text;
    int code;
    const char* icon;
};

constexpr std::array<PassengerType, 8> passengerTypes{{
    {"PT_ADULT", 1, "adult"},
    {"PT_STUDENT_1", 3, "student"},
    {"PT_SCHOOLBOY", 4, "school"},
    {"PT_DISABLED", 5, "wheelchair"},
    {"PT_MILITARY_1", 7, "soldier"},
    {"PT_LFS", 8, "family_large"},
    {"PT_STUDENT_2", 9, "student"},
    {"PT_MILITARY_2", 10, "soldier"},
}};

constexpr std::array<int, 6> evenedOutTypes{1, 3, 4, 5, 7, 8};

int codeOf(const QString& text)
{
    for (const PassengerType& type : passengerTypes) {
        if (text == QLatin1String(type.text))
            return type.code;
    }
    return 0;
}

QString iconOf(int code)
{
    const char* name = "adult";
    for (const PassengerType& type : passengerTypes) {
        if (type.code == code)
            name = type.icon;
    }
    return QStringLiteral("qrc:/icons/%1.svg").arg(QLatin1String(name));
}

QVector<int> ascendingCodes(const QStringList& typeTexts)
{
    std::multiset<int> codes;
    for (const QString& text : typeTexts)
        codes.insert(codeOf(text));
    return {codes.begin(), codes.end()};
}

// ---- records ----

Product placeholderAt(int pos)
{
    Product product;
    product.pos = pos;
    return product;
}

Product placeholderOf(int passengerTypeCode)
{
    Product product;
    product.passengerTypeCode = passengerTypeCode;
    return product;
}

/// Each record at the place that is the number of records which must stand before it.
template <typename Key>
QVector<Product> ranked(const QVector<Product>& products, Key key)
{
    QVector<Product> result(products.size());
    for (int own = 0; own < products.size(); ++own) {
        int before = 0;
        for (int other = 0; other < products.size(); ++other) {
            const auto left = key(products.at(other));
            const auto right = key(products.at(own));
            before += left < right || (left == right && other < own) ? 1 : 0;
        }
        result[before] = products.at(own);
    }
    return result;
}

QVector<Product> rankedByZone(const QVector<Product>& products)
{
    return ranked(products, [](const Product& product) { return product.toStopGroupId; });
}

// ---- messages ----

/// Stands where automatic spacing puts a blank: behind character strings and numbers of a message,
/// not behind texts.
const QString gap{QChar(1)};

QString piece(const char* text) { return text + gap; }
QString piece(int number) { return QString::number(number) + gap; }

/// The dumps of records and of tiles keep the type as a number or as a text.
QString message(const Product& product, const QString& type, const char* nameLabel)
{
    return piece("FromStopGroupId: ") + piece(product.fromStopGroupId) + piece(" ToStopGroupId: ") +
           piece(product.toStopGroupId) + piece(" PassengerTypeId: ") +
           piece(product.passengerTypeId) + piece(" PassengerTypeCode: ") + type +
           piece(" FareProductId: ") + piece(product.fareProductId) + piece(nameLabel) +
           product.fareProductName + piece(" Description: ") + product.description;
}

QString recordMessage(const Product& product)
{
    return message(product, piece(product.passengerTypeCode), " Name: ");
}

QString recordMessageWithPosition(const Product& product)
{
    return recordMessage(product) + piece(" Pos: ") + piece(product.pos);
}

QString tileMessage(const Product& product)
{
    return message(product, tileOf(product).code, " FareProductName: ");
}

// ---- the account of one call ----

class Account
{
public:
    explicit Account(const State& before) { outcome.state = before; }

    State& state() { return outcome.state; }

    void setColumns(int columns)
    {
        if (columns != state().columns)
            outcome.steps.append(gridColumnsChanged(columns));
        state().columns = columns;
    }

    void setRows(qint64 wanted)
    {
        const int rows =
            static_cast<int>(std::min<qint64>(wanted, std::numeric_limits<int>::max()));
        if (wanted != rows)
            note("rows: saturated");
        if (rows != state().rows)
            outcome.steps.append(gridRowsChanged(rows));
        state().rows = rows;
    }

    void raiseRows(int by) { setRows(qint64(state().rows) + by); }

    void show(const QVector<Product>& products)
    {
        for (const Product& product : products) {
            outcome.steps += tilesAppended(state().tiles.size(), state().tiles.size());
            state().tiles.append(product);
        }
    }

    void logAlways(QString message)
    {
        outcome.steps.append(logged(message.replace(gap, state().autoSpacing ? " " : "")));
    }

    void log(const QString& message)
    {
        if (state().logging)
            logAlways(message);
    }

    template <typename Format>
    void dump(const QVector<Product>& products, Format format)
    {
        if (!state().logging)
            return;
        for (const Product& product : products)
            logAlways(format(product));
    }

    void note(const QString& branch) { outcome.branches.append(branch); }
    void note(const char* branch) { note(QString::fromLatin1(branch)); }

    Outcome outcome;
};

void showDailyProducts(Account& account)
{
    State& state = account.state();
    if (state.dailyProducts.isEmpty())
        return;
    account.note("grid: with daily products");
    state.dailyProducts = rankedByZone(state.dailyProducts);
    account.raiseRows(state.dailyProducts.size());
    account.show(state.dailyProducts);
}

void logGridSize(Account& account)
{
    account.log(QString("NumberOfCols: %1").arg(account.state().columns));
    account.log(QString("NumberOfRows: %1").arg(account.state().rows));
}

int usableColumns(const State& state) { return state.columns == 0 ? 1 : state.columns; }

// ---- layout by position ----

bool hasPositions(const QVector<Product>& products)
{
    return std::any_of(products.begin(), products.end(),
                       [](const Product& product) { return product.pos != -1; });
}

/// Why a layout by position is not possible; empty if it is.
QString objectionTo(Account& account)
{
    const QString duplicate =
        piece("------------------- DUPLICATE POSITIONS IN FARE PRODUCTS --------------------");
    const QString unassigned =
        piece("------------------- POSITION NOT ASSIGNED TO PRODUCT --------------------");
    const QString zero =
        piece("--- POSITION 0 ASSIGNED TO PRODUCT. THAT IS NOT ALLOWED. SHOULD ALWAYS START "
              "COUNTING/NUMBERING POSITION FROM 1 ---");
    const auto objection = [&account](const char* branch, const QString& message) {
        account.note(branch);
        return message;
    };

    std::map<int, int> frequency;
    for (const Product& product : qAsConst(account.state().products))
        ++frequency[product.pos];
    const int unassignedOnes = frequency.count(-1) ? frequency[-1] : 0;
    for (const auto& [pos, count] : frequency) {
        if (count > 1 && pos != -1)
            return objection("position: duplicate", duplicate);
    }
    if (unassignedOnes > 0)
        return unassignedOnes > 1 ? objection("position: several unassigned", duplicate)
                                  : objection("position: one unassigned", unassigned);
    if (frequency.begin()->first < -1)
        return objection("position: below -1", unassigned);
    if (frequency.count(0))
        return objection("position: zero", zero);
    if (frequency.rbegin()->first > lastUsablePosition)
        return objection("position: above the bound", unassigned);
    return {};
}

qint64 rowsFor(int count, int columns) { return (qint64(count) - 1) / columns + 1; }

/// Placeholders behind the last position.
int filling(Account& account, int count)
{
    const int columns = usableColumns(account.state());
    const qint64 missing = columns < 0 || count % columns == 0 ? 0 : columns - count % columns;
    account.note(columns < 0                ? "position: negative columns"
                 : missing == 0             ? "position: last row full"
                 : missing > largestFilling ? "position: last row too long to fill"
                                            : "position: last row filled");
    return missing > largestFilling ? 0 : static_cast<int>(missing);
}

void showNumbered(Account& account)
{
    State& state = account.state();
    std::map<int, Product> byPosition;
    for (const Product& product : qAsConst(state.products))
        byPosition[product.pos] = product;
    const int last = byPosition.rbegin()->first;

    account.note("position: numbered");
    if (byPosition.count(1) == 0) {
        account.note("position: nothing at 1");
        state.products.prepend(placeholderAt(1));
        byPosition[1] = placeholderAt(1);
    }
    if (last != static_cast<int>(byPosition.size()))
        account.note("position: hole");

    const int length = last + filling(account, last);
    QVector<Product> arranged;
    for (int pos = 1; pos <= length; ++pos) {
        const auto known = byPosition.find(pos);
        arranged.append(known == byPosition.end() ? placeholderAt(pos) : known->second);
    }

    account.setRows(rowsFor(last, usableColumns(state)));
    account.show(arranged);
    account.log(piece("------------------- FARE PRODUCTS AFTER --------------------"));
    account.dump(arranged, recordMessageWithPosition);
}

void layOutByPosition(Account& account)
{
    State& state = account.state();
    account.log(piece("------------------- FARE PRODUCTS BEFORE --------------------"));
    account.dump(state.products, recordMessageWithPosition);
    state.products = ranked(state.products, [](const Product& product) { return product.pos; });

    if (state.products.isEmpty()) {
        account.note("position: no products");
        account.setRows(0);
        account.log(piece("------------------- FARE PRODUCTS AFTER --------------------"));
    } else if (const QString objection = objectionTo(account); !objection.isEmpty()) {
        account.logAlways(objection);
        account.show(state.products);
        account.setRows(rowsFor(state.products.size(), usableColumns(state)));
    } else {
        showNumbered(account);
    }
    showDailyProducts(account);
    logGridSize(account);
}

// ---- layout by zone ----

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

bool isPermutation(const QVector<int>& numbers)
{
    for (int value = 0; value < numbers.size(); ++value) {
        if (numbers.count(value) != 1)
            return false;
    }
    return true;
}

/// What then stands at each place.
template <typename List>
List reordered(const List& entries, const QVector<int>& slotNumbers)
{
    if (entries.size() != slotNumbers.size() || !isPermutation(slotNumbers))
        return entries;
    List result;
    for (int place = 0; place < entries.size(); ++place)
        result.append(entries.at(slotNumbers.indexOf(place)));
    return result;
}

QString joined(const QVector<int>& numbers, const QString& separator)
{
    QStringList texts;
    for (const int number : numbers)
        texts.append(QString::number(number));
    return texts.join(separator);
}

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

int chosenColumns(Account& account)
{
    const int types = account.state().local.size();
    account.note(types == 0   ? "columns: chosen without a previous layout"
                 : types <= 4 ? "columns: as many as the previous layout had types"
                              : "columns: chosen after a layout of many types");
    return types >= 1 && types <= 4 ? types : 3;
}

} // namespace

Tile tileOf(const Product& product)
{
    const QString icon = product.icon.isEmpty() ? iconOf(product.passengerTypeCode) : product.icon;
    return {{product.passengerTypeId, product.description, icon, product.price,
             product.fareProductId, product.fareProductName, 0, product.isReturnFee,
             product.fromStopGroupId, product.toStopGroupId, product.fareProductColor,
             product.hasExpired, product.fareDiscount, false, product.isDaily, product.pos},
            QString::number(product.passengerTypeCode)};
}

Outcome constructed(const QStringList& order, bool logging, bool autoSpacing)
{
    State fresh;
    fresh.logging = logging;
    fresh.autoSpacing = autoSpacing;
    Account account(fresh);

    QStringList entries;
    for (const QString& entry : order) {
        account.state().order.append(codeOf(entry));
        entries.append('[' + QString::number(codeOf(entry)) + "->" + entry + ']');
    }
    account.note(order.isEmpty() ? "order: none configured" : "order: configured");
    account.logAlways("TypeCodes Order: " + (order.isEmpty()
                                                 ? "Products ordering in config is empty."
                                                 : entries.join(',')));
    return account.outcome;
}

State added(State state, Product product, const QString& typeText)
{
    product.passengerTypeCode = codeOf(typeText);
    (product.isDaily ? state.dailyProducts : state.products).append(product);
    return state;
}

Outcome cleared(const State& state)
{
    Outcome outcome;
    outcome.state = state;
    outcome.state.tiles.clear();
    outcome.state.products.clear();
    outcome.state.dailyProducts.clear();
    if (!state.tiles.isEmpty())
        outcome.steps = announcedRemoval(0, state.tiles.size() - 1, 0) << countChanged(0);
    return outcome;
}

Outcome supporting(const State& state, const QStringList& typeTexts)
{
    Account account(state);
    QVector<int>& order = account.state().order;
    const QVector<int> supported = ascendingCodes(typeTexts);

    if (order.isEmpty()) {
        account.note("order: taken from the supported types");
        order = supported;
        QStringList entries;
        for (const int code : supported)
            entries.append('[' + QString::number(code) + ']');
        account.logAlways("Products ordering in config is empty. Set default ordering. TypeCodes "
                          "Order:" +
                          QString(entries.isEmpty() ? "" : " ") + entries.join(','));
        return account.outcome;
    }
    if (order.size() == supported.size()) {
        account.note("order: trusted for its length");
        return account.outcome;
    }
    std::set<int> missing(supported.begin(), supported.end());
    for (const int code : qAsConst(order))
        missing.erase(code);
    account.note(missing.empty() ? "order: complete" : "order: completed");
    for (const int code : missing) {
        account.logAlways(QString("Append missing type code %1 from config").arg(code));
        order.append(code);
    }
    return account.outcome;
}

Outcome withColumns(const State& state, int columns)
{
    Account account(state);
    account.setColumns(columns);
    return account.outcome;
}

Outcome withRows(const State& state, int rows)
{
    Account account(state);
    account.setRows(rows);
    return account.outcome;
}

Outcome withLogging(const State& state, bool logging)
{
    Outcome outcome;
    outcome.state = state;
    outcome.state.logging = logging;
    if (logging != state.logging)
        outcome.steps = QStringList(QStringLiteral("logFareProductsChanged()"));
    return outcome;
}

Outcome laidOut(const State& state, const QStringList& typeTexts, int columns)
{
    Account account(state);
    account.setColumns(columns != 0 ? columns : chosenColumns(account));
    if (hasPositions(state.products))
        layOutByPosition(account);
    else
        layOutByZone(account, typeTexts);
    return account.outcome;
}

Outcome laidOutByPosition(const State& state)
{
    Account account(state);
    layOutByPosition(account);
    return account.outcome;
}

Outcome laidOutByZone(const State& state, const QStringList& typeTexts)
{
    Account account(state);
    layOutByZone(account, typeTexts);
    return account.outcome;
}

Outcome withZone(const State& state, int zone)
{
    Account account(state);
    groupZone(account, zone);
    return account.outcome;
}

Outcome withSlots(const State& state, const QVector<int>& codes)
{
    Account account(state);
    account.outcome.result = joined(slotsOf(account, codes), QStringLiteral(" "));
    account.outcome.branches.clear(); // those of layouts are counted
    return account.outcome;
}

Outcome moved(const State& state, const QStringList& names, const QVector<int>& slotNumbers)
{
    Account account(state);
    const bool moves = names.size() == slotNumbers.size() && isPermutation(slotNumbers);
    account.note(moves ? "move: to a permutation" : "move: refused");
    QVector<int> after = slotNumbers;
    if (moves)
        std::sort(after.begin(), after.end());
    account.outcome.result = reordered(names, slotNumbers).join(QLatin1Char(' ')) + " to " +
                             joined(after, QStringLiteral(" "));
    return account.outcome;
}

Outcome judged(const State& state, const QVector<int>& positions)
{
    Account account(state);
    const std::set<int> distinct(positions.begin(), positions.end());
    QStringList answers;
    const auto judge = [&](bool is, const char* answer) {
        if (is)
            answers.append(QString::fromLatin1(answer));
        account.note(QStringLiteral("judge: ") + QLatin1String(is ? "" : "not ") +
                     QLatin1String(answer));
    };
    judge(positions.count(-1) < positions.size(), "some assigned");
    judge(positions.count(-1) == 0, "all assigned");
    judge(static_cast<int>(distinct.size()) < positions.size(), "duplicates");
    judge(distinct.count(0) == 1, "zero");
    judge(!distinct.empty() && (*distinct.begin() < -1 || *distinct.rbegin() > lastUsablePosition),
          "out of range");
    account.outcome.result = answers.join(", ");
    return account.outcome;
}

Outcome printed(const State& state, const QVector<Product>& products)
{
    Account account(state);
    account.dump(products, recordMessageWithPosition);
    return account.outcome;
}

} // namespace oracle
