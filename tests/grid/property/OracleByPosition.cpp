#include "OracleAccount.h"

#include <map>

namespace oracle
{

namespace
{

constexpr qint64 largestFilling = 100000;

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

} // namespace

bool hasPositions(const QVector<Product>& products)
{
    return std::any_of(products.begin(), products.end(),
                       [](const Product& product) { return product.pos != -1; });
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

} // namespace oracle
