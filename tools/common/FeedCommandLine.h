#pragma once

#include "GridLayout.h"

#include <FeedOptions.h>

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

enum class OutputFormat { Text, Json, Csv };

/// What every tool that prints a feed can be asked for.
struct FeedToolOptions
{
    QString feed;
    OutputFormat format = OutputFormat::Text;
    rivo::feed::FeedOptions reading;
    LayoutOptions layout;
    bool verbose = false; ///< show the library's log on standard error
};

/// The command line of such a tool. All errors in it are collected and reported at once.
class FeedCommandLine
{
public:
    /// `description` heads the help, `syntax` is what stands for the arguments that are no options.
    FeedCommandLine(const QString& description, const QString& syntax);

    void addOption(const QCommandLineOption& option) { m_parser.addOption(option); }

    /// Reads the options. Prints and ends the program for --help and --version.
    void read(const QStringList& arguments, FeedToolOptions& options);

    QStringList positionalArguments() const { return m_parser.positionalArguments(); }
    bool isSet(const QString& option) const { return m_parser.isSet(option); }
    QString value(const QString& option) const { return m_parser.value(option); }

    /// Collects what is wrong; nothing is if `error` is empty.
    void reject(const QString& error);

    /// Nothing is wrong; complains of it otherwise.
    bool isAccepted() const;

    static QStringList layoutOptions(); ///< names of the options that shape the grid

private:
    QCommandLineParser m_parser;
    QCommandLineOption m_help;
    QCommandLineOption m_version;
    QStringList m_errors;
};

/// The parts of a comma-separated list, without blanks around them and without empty ones.
QStringList partsOf(const QString& list);
