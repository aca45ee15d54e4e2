#pragma once

#include "LayoutCase.h"
#include "LayoutOracle.h"
#include "LogCapture.h"
#include "OutputCapture.h"

#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

/// What a case showed.
struct Verdict
{
    QString difference; ///< first difference between model and oracle; empty if there is none
    QStringList branches;
    int layouts = 0;
};

/// Plays cases on real models and compares after every call everything that can be seen: signals,
/// insertions and log messages in their order, standard output, all roles of all rows, both sizes
/// and the lists that the model keeps.
class LayoutRunner
{
public:
    /// Changes what is expected; for showing that a mistake would be found.
    using Distortion = std::function<void(oracle::Outcome&)>;

    LayoutRunner() = default;
    explicit LayoutRunner(Distortion distortion) : m_distortion(std::move(distortion)) {}

    Verdict run(const Case& layoutCase);

private:
    void useConfiguration(const Configuration& configuration);

    const Distortion m_distortion;
    QTemporaryDir m_homes;
    QMap<QString, QByteArray> m_homeOfSettings;
    LogCapture m_log;
    OutputCapture m_output;
};
