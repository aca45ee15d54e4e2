#pragma once

#include "GridSignals.h"
#include "LayoutOracle.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>

/// What the parts of the oracle share: passenger types, records, messages, and the account of what
/// a call emits.
namespace oracle
{

inline constexpr int lastUsablePosition = 100000;

// ---- passenger types ----

struct PassengerType
{
    const char* text;
    int code;
    const char* icon;
};

inline constexpr std::array<PassengerType, 8> passengerTypes{{
    {"PT_ADULT", 1, "adult"},
    {"PT_STUDENT_1", 3, "student"},
    {"PT_SCHOOLBOY", 4, "school"},
    {"PT_DISABLED", 5, "wheelchair"},
    {"PT_MILITARY_1", 7, "soldier"},
    {"PT_LFS", 8, "family_large"},
    {"PT_STUDENT_2", 9, "student"},
    {"PT_MILITARY_2", 10, "soldier"},
}};

inline int codeOf(const QString& text)
{
    for (const PassengerType& type : passengerTypes) {
        if (text == QLatin1String(type.text))
            return type.code;
    }
    return 0;
}

inline QString iconOf(int code)
{
    const char* name = "adult";
    for (const PassengerType& type : passengerTypes) {
        if (type.code == code)
            name = type.icon;
    }
    return QStringLiteral("qrc:/icons/%1.svg").arg(QLatin1String(name));
}

inline QVector<int> ascendingCodes(const QStringList& typeTexts)
{
    std::multiset<int> codes;
    for (const QString& text : typeTexts)
        codes.insert(codeOf(text));
    return {codes.begin(), codes.end()};
}

// ---- records ----

inline Product placeholderAt(int pos)
{
    Product product;
    product.pos = pos;
    return product;
}

inline Product placeholderOf(int passengerTypeCode)
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

inline QVector<Product> rankedByZone(const QVector<Product>& products)
{
    return ranked(products, [](const Product& product) { return product.toStopGroupId; });
}

// ---- messages ----

/// Stands where automatic spacing puts a blank: behind character strings and numbers of a message,
/// not behind texts.
inline const QString gap{QChar(1)};

inline QString piece(const char* text) { return text + gap; }
inline QString piece(int number) { return QString::number(number) + gap; }

/// The dumps of records and of tiles keep the type as a number or as a text.
inline QString message(const Product& product, const QString& type, const char* nameLabel)
{
    return piece("FromStopGroupId: ") + piece(product.fromStopGroupId) + piece(" ToStopGroupId: ") +
           piece(product.toStopGroupId) + piece(" PassengerTypeId: ") +
           piece(product.passengerTypeId) + piece(" PassengerTypeCode: ") + type +
           piece(" FareProductId: ") + piece(product.fareProductId) + piece(nameLabel) +
           product.fareProductName + piece(" Description: ") + product.description;
}

inline QString recordMessage(const Product& product)
{
    return message(product, piece(product.passengerTypeCode), " Name: ");
}

inline QString recordMessageWithPosition(const Product& product)
{
    return recordMessage(product) + piece(" Pos: ") + piece(product.pos);
}

inline QString tileMessage(const Product& product)
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

inline void showDailyProducts(Account& account)
{
    State& state = account.state();
    if (state.dailyProducts.isEmpty())
        return;
    account.note("grid: with daily products");
    state.dailyProducts = rankedByZone(state.dailyProducts);
    account.raiseRows(state.dailyProducts.size());
    account.show(state.dailyProducts);
}

inline void logGridSize(Account& account)
{
    account.log(QString("NumberOfCols: %1").arg(account.state().columns));
    account.log(QString("NumberOfRows: %1").arg(account.state().rows));
}

inline int usableColumns(const State& state) { return state.columns == 0 ? 1 : state.columns; }

// ---- slots ----

inline bool isPermutation(const QVector<int>& numbers)
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

inline QString joined(const QVector<int>& numbers, const QString& separator)
{
    QStringList texts;
    for (const int number : numbers)
        texts.append(QString::number(number));
    return texts.join(separator);
}

// ---- the two layouts ----

/// OracleByPosition.cpp
bool hasPositions(const QVector<Product>& products);
void layOutByPosition(Account& account);

/// OracleByZone.cpp
void layOutByZone(Account& account, const QStringList& typeTexts);
QVector<Product> groupZone(Account& account, int zone);
QVector<int> slotsOf(Account& account, const QVector<int>& codes);

} // namespace oracle
