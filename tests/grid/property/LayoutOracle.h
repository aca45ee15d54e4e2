#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// What the selection grid must show and tell, stated slot by slot and independently of the
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

bool operator==(const Product& left, const Product& right);
inline bool operator!=(const Product& left, const Product& right) { return !(left == right); }

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
    QVector<int> order;     ///< display order of passenger types
    QVector<int> supported; ///< supported types, ascending
    QVector<int> local;     ///< types of the last zone layout, ascending
    QVector<Product> products;
    QVector<Product> dailyProducts;
    QVector<Product> groupedProducts;
    QVector<Product> tiles; ///< the records behind the model's rows
    int columns = 3;
    int rows = 0;
    bool logging = false;     ///< the switch logFareProducts
    bool autoSpacing = false; ///< the logger's flag
};

/// One thing that an observer of the model notices.
struct Step
{
    enum Kind {
        Columns,  ///< numberOfColumnsChanged(value)
        Rows,     ///< numberOfRowsChanged(value)
        Appended, ///< row `value` was inserted, on its own and at the end
        Removed,  ///< the first `value` rows were removed in one block
        Log,      ///< the message `text`
        Other     ///< `text` tells what; never expected
    };

    Kind kind = Log;
    int value = 0;
    QString text;
};

bool operator==(const Step& left, const Step& right);
inline bool operator!=(const Step& left, const Step& right) { return !(left == right); }

/// What a call leads to.
struct Outcome
{
    State state;
    QVector<Step> steps; ///< in the order in which they happen
    QString standardOutput;
    QStringList branches; ///< which of the rules decided, for counting; may repeat
};

/// A new model: `order` are the configured texts.
Outcome constructed(const QStringList& order, bool logging, bool autoSpacing);

/// addItem(): `typeText` decides the code of `product`.
State added(State state, Product product, const QString& typeText);

/// clearData().
Outcome cleared(const State& state);

/// setSupportedPassengerTypeCodes().
Outcome supporting(const State& state, const QStringList& typeTexts);

/// setNumberOfColumns() and setNumberOfRows().
Outcome withColumns(const State& state, int columns);
Outcome withRows(const State& state, int rows);

/// sortAndRegroup().
Outcome laidOut(const State& state, const QStringList& typeTexts, int columns);

/// sortBasedOnBackendAssignment(); there must be a product.
Outcome laidOutByPosition(const State& state);

/// sortBasedOnLocalData().
Outcome laidOutByZone(const State& state, const QStringList& typeTexts);

/// sortAndGroupProductsForZone().
Outcome withZone(const State& state, int zone);

/// What getIndeces() returns and writes.
struct Slots
{
    QVector<int> numbers;
    QString standardOutput;
    QStringList branches;
};

Slots slotsOf(const State& state, const QVector<int>& codes);

/// reOrder(): what then stands at each place.
QVector<Product> reordered(const QVector<Product>& products, const QVector<int>& slotNumbers);

/// Whether `numbers` holds each of 0 .. length - 1 once.
bool isPermutation(const QVector<int>& numbers);

} // namespace oracle
