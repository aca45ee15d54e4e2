#include "OracleAccount.h"

namespace oracle
{

namespace
{

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
