#pragma once

#include "GlassScale.h"

#include <FeedOptions.h>

#include <QLocale>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace rivo::terminal
{

/// What the command line asks for.
struct Options
{
    QString feed; ///< a feed file, or a GTFS folder
    feed::FeedOptions reading;
    QString page = QStringLiteral("sell");
    QSize size{1024, 600};
    Glass glass;
    QString screenshot; ///< file to save the window to, then end; empty = stay
    double timeScale = 1.0;
    int startTime = -1; ///< seconds of the service day; -1 = now
    QString journal;    ///< file; empty = one in the user's data folder
    QString drivers;    ///< file; empty = no sign-in
    QString config;     ///< the operator's file; empty = the default file, if it exists
    QString vehicle;    ///< its name on tickets; empty = as the configuration has it
    int lockAfter = 5;  ///< minutes without a press; 0 = never
    QString language;   ///< "en", "de" ...; empty = the system's
    QLocale::Country country = QLocale::AnyCountry; ///< of money and dates; any = the system's
    bool night = false;
    bool isSilent = false; ///< no sounds
    bool fullscreen = false;
    bool isDemo = false; ///< what is not connected is simulated
    bool allowFileIcons = false;
    bool benchmark = false;
    bool isBaseline = false; ///< of the benchmark: a window of Qt Quick alone
    bool verbose = false;    ///< the log of the library goes to standard error
};

/// The pages by the names that --page takes, in the order of the navigation.
QStringList pageNames();

/// Reads the command line. Prints and ends the program for --help and --version; on a wrong
/// command line prints what is wrong on standard error and returns nothing.
std::optional<Options> parseCommandLine(const QStringList& arguments);

} // namespace rivo::terminal
