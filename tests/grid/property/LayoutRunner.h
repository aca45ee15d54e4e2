#pragma once

#include "LayoutCase.h"
#include "LayoutOracle.h"
#include "LogCapture.h"

#include <QMap>
#include <QPair>
#include <QString>
#include <QStringList>

#include <functional>

/// What a call of the model showed.
struct Seen
{
    QStringList steps; ///< signals and messages, written as those of the oracle
    QString output;    ///< on standard output
    QString result; ///< of a layout, the number of rows and the grid; otherwise that of the oracle
};

/// What a case showed.
struct Verdict
{
    QString difference; ///< first difference between model and oracle; empty if there is none
    QStringList branches;
    int layouts = 0;
};

/// Plays cases on real models and compares after every call everything that can be seen: signals
/// and log messages in their order, standard output, results, all roles of all rows, both sizes.
/// Calls at the end bring to light what the model keeps to itself.
class LayoutRunner
{
public:
    /// Changes what is expected; for showing that a mistake would be found.
    using Distortion = std::function<void(oracle::Outcome&)>;
    /// Receives what the construction (-1) and each call of the case showed.
    using Watcher = std::function<void(int call, const Seen&)>;

    LayoutRunner() = default;
    explicit LayoutRunner(Distortion distortion) : m_distortion(std::move(distortion)) {}

    Verdict run(const Case& layoutCase, const Watcher& watch = {});

private:
    void useConfiguration(const Configuration& configuration);

    const Distortion m_distortion;
    QMap<QPair<QString, bool>, QByteArray> m_homes;
    LogCapture m_log;
};
