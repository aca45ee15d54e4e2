#pragma once

#include "Choices.h"
#include "LayoutOracle.h"

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

/// One product of addItem(), with the passenger type as text.
struct Record
{
    QString typeText;
    oracle::Product product;
};

/// One call of the model.
struct Call
{
    enum Kind {
        Clear,            ///< clearData()
        Support,          ///< setSupportedPassengerTypeCodes(typeTexts)
        Add,              ///< addItem() for each of `records`
        SwitchLogging,    ///< setLogFareProducts(number != 0)
        SetColumns,       ///< setNumberOfColumns(number)
        SetRows,          ///< setNumberOfRows(number)
        LayOut,           ///< sortAndRegroup(typeTexts, number)
        LayOutByPosition, ///< sortBasedOnBackendAssignment(); skipped without products
        LayOutByZone,     ///< sortBasedOnLocalData(typeTexts)
        GroupZone         ///< sortAndGroupProductsForZone(number)
    };

    Kind kind = Clear;
    QStringList typeTexts;
    int number = 0;
    QVector<Record> records;
};

/// The life of one model.
struct Case
{
    Configuration configuration;
    bool autoSpacing = false; ///< the logger's flag
    QVector<Call> calls;
};

/// The configurations that the cases of one seed share.
QVector<Configuration> randomConfigurations(quint64 seed, int count);

/// The same case for the same arguments.
Case randomCase(quint64 seed, int number, const QVector<Configuration>& configurations);

/// The case that `choices` decide: bytes, say.
Case decidedCase(Choices choices, const QVector<Configuration>& configurations);

/// A smaller case that fails too: none of its parts can be left out or made simpler. Gives up
/// after `attempts` runs.
Case shrunk(Case failing, const std::function<bool(const Case&)>& fails, int attempts = 4000);

int productCount(const Case& layoutCase);

/// Everything that is needed to repeat the case by hand.
QString describe(const Case& layoutCase);

/// The fields that differ from those of a placeholder.
QString describe(const oracle::Product& product);
