#pragma once

#include "Choices.h"
#include "Products.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// What a model finds in the configuration file.
struct Configuration
{
    QStringList order;    ///< "passengerTypeCodesOrder"
    bool logging = false; ///< "logLevels" holds "log_fareproducts"
};

/// One call of the model. As text: its name, its list and its numbers, such as "lay out 1 3 in 2";
/// passenger types are numbers or, for any text, in quotes.
struct Call
{
    enum Kind {
        Clear,            ///< "clear": clearData()
        Support,          ///< "support 8 1 "X"": setSupportedPassengerTypeCodes()
        Add,              ///< "add 1a 3b>2": addItem() for each
        SwitchLogging,    ///< "logging 1": setLogFareProducts()
        SetColumns,       ///< "columns 3": setNumberOfColumns()
        SetRows,          ///< "rows 3": setNumberOfRows()
        Slots,            ///< "slots 1 1 3 3": getIndeces()
        Move,             ///< "move 1a 1b to 1 0": reOrder()
        Judge,            ///< "judge -1 4": the checks of positions
        Print,            ///< "print 1a 3b>2": printProducts()
        LayOut,           ///< "lay out 1 3 in 2": sortAndRegroup()
        LayOutByPosition, ///< "by position": sortBasedOnBackendAssignment()
        LayOutByZone,     ///< "by zone 1 3": sortBasedOnLocalData()
        GroupZone         ///< "group 7": sortAndGroupProductsForZone()
    };

    Kind kind = Clear;
    QStringList typeTexts{};
    QVector<NewProduct> products{};
    QVector<int> numbers{};

    int number() const { return numbers.value(0); }
};

/// The life of one model.
struct Case
{
    Configuration configuration;
    bool autoSpacing = false; ///< the logger's flag
    QVector<Call> calls;
};

/// The case with one more line of a description.
void addLine(Case& layoutCase, const QString& line);

/// Everything that is needed to repeat the case, as lines for addLine().
QString describe(const Case& layoutCase);

/// The configurations that the cases of one seed share.
QVector<Configuration> randomConfigurations(quint64 seed, int count);

/// The same case for the same arguments.
Case randomCase(quint64 seed, int number, const QVector<Configuration>& configurations);

/// The case that `choices` decide, for example bytes.
Case decidedCase(Choices choices, const QVector<Configuration>& configurations);

/// A smaller case that fails too: none of its parts can be left out or made simpler. Gives up
/// after `attempts` runs.
Case shrunk(const Case& failing, const std::function<bool(const Case&)>& fails,
            int attempts = 4000);
