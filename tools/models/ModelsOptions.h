#pragma once

#include <FeedCommandLine.h>

#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

enum class ModelKind { Grid, Basket, FareProducts, ZReports, Fleet, Devices };

/// What the command line asks for.
struct ModelsOptions : FeedToolOptions
{
    ModelKind model = ModelKind::Grid;
    QString modelName;                   ///< of `model`, as the user gave it
    std::optional<QVector<int>> tickets; ///< grid slots; otherwise every tile for sale, once
};

/// Reads the command line. Prints and ends the program for --help and --version; on a wrong
/// command line prints what is wrong on standard error and returns nothing.
std::optional<ModelsOptions> parseCommandLine(const QStringList& arguments);
