#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// What the selection grid must show and emit, stated slot by slot and independently of the
/// library: no code, record or table is shared with it. Pure functions from one state to the next.
namespace oracle
{

/// One product record. The defaults are those of a placeholder.
struct Product
{
    int passengerTypeId = 0;
    QString description = QStringLiteral("---NOT FOR SALE---");
    int passengerTypeCode = 0;
    QString icon;
    double price = 0.0;
    int fareProductId = 0;
    QString fareProductName = QStringLiteral("---DUMMY---");
    bool isReturnFee = false;
    int fromStopGroupId = 0;
    int toStopGroupId = 0;
    QString fareProductColor;
    bool hasExpired = true;
    double fareDiscount = 0.0;
    bool isDaily = false;
    int pos = -1;
};

/// A tile as its readers see it.
struct Tile
{
    QVector<QVariant> roles; ///< roles 257 to 272, in this order
    QString code;
};

Tile tileOf(const Product& product);

/// Everything that a model remembers between two calls.
struct State
{
    QVector<int> order; ///< display order of passenger types
    QVector<int> local; ///< types of the last zone layout, ascending
    QVector<Product> products;
    QVector<Product> dailyProducts;
    QVector<Product> tiles; ///< the records behind the model's rows
    int columns = 3;
    int rows = 0;
    bool logging = false;     ///< the switch logFareProducts
    bool autoSpacing = false; ///< the logger's flag
};

/// What a call leads to.
struct Outcome
{
    State state;
    QStringList steps; ///< signals as SignalLog writes them and messages as logged(), in order
    QString standardOutput;
    QString result;       ///< what a call returns or does to its arguments
    QStringList branches; ///< which of the rules decided, for counting; may repeat
};

/// The step of a log message.
inline QString logged(const QString& message) { return QLatin1String("log: ") + message; }

/// A new model: `order` are the configured texts.
Outcome constructed(const QStringList& order, bool logging, bool autoSpacing);

/// addItem(): `typeText` decides the code of `product`.
State added(State state, Product product, const QString& typeText);

/// clearData().
Outcome cleared(const State& state);

/// setSupportedPassengerTypeCodes().
Outcome supporting(const State& state, const QStringList& typeTexts);

/// setNumberOfColumns(), setNumberOfRows() and setLogFareProducts().
Outcome withColumns(const State& state, int columns);
Outcome withRows(const State& state, int rows);
Outcome withLogging(const State& state, bool logging);

/// sortAndRegroup().
Outcome laidOut(const State& state, const QStringList& typeTexts, int columns);

/// sortBasedOnBackendAssignment().
Outcome laidOutByPosition(const State& state);

/// sortBasedOnLocalData().
Outcome laidOutByZone(const State& state, const QStringList& typeTexts);

/// sortAndGroupProductsForZone().
Outcome withZone(const State& state, int zone);

/// getIndeces(): the slots.
Outcome withSlots(const State& state, const QVector<int>& codes);

/// reOrder(): `names` at their places, " to " and the slots.
Outcome moved(const State& state, const QStringList& names, const QVector<int>& slotNumbers);

/// What the checks of the positions answer.
Outcome judged(const State& state, const QVector<int>& positions);

/// printProducts().
Outcome printed(const State& state, const QVector<Product>& products);

} // namespace oracle
