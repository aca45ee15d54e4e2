#include "Options.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTextStream>
#include <QTime>

#include <algorithm>

namespace rivo::terminal
{

namespace
{

constexpr int smallestSide = 320;
constexpr int largestSide = 8192;
constexpr int longestLock = 1440;

std::optional<QSize> sizeOf(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^([0-9]{1,5})x([0-9]{1,5})$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    const auto fits = [](int side) { return side >= smallestSide && side <= largestSide; };
    return fits(size.width()) && fits(size.height()) ? std::make_optional(size) : std::nullopt;
}

std::optional<QSizeF> millimetresOf(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^([0-9]{2,4})x([0-9]{2,4})$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QSizeF size(match.captured(1).toInt(), match.captured(2).toInt());
    const auto fits = [](double side) { return side >= 40.0 && side <= 2000.0; };
    return fits(size.width()) && fits(size.height()) ? std::make_optional(size) : std::nullopt;
}

/// By its code of two letters; any for none.
QLocale::Country countryOf(const QString& code)
{
    const auto locales =
        QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry);
    const auto isThere = [ending = QLatin1Char('_') + code.toUpper()](const QLocale& locale) {
        return locale.name().endsWith(ending);
    };
    const auto found = std::find_if(locales.begin(), locales.end(), isThere);
    return code.size() != 2 || found == locales.end() ? QLocale::AnyCountry : found->country();
}

std::nullopt_t complain(const QString& what)
{
    QTextStream(stderr) << QStringLiteral("rivo-terminal: ") << what << '\n';
    return std::nullopt;
}

/// The sample feed beside an installed program; null in the build tree.
QString shippedFeed()
{
    const QString file = QCoreApplication::applicationDirPath() + QLatin1String(RIVO_FEED_FOLDER) +
                         QStringLiteral("/hill-valley.json");
    return QFileInfo::exists(file) ? QDir::cleanPath(file) : QString();
}

} // namespace

QStringList pageNames()
{
    return {QStringLiteral("sell"),  QStringLiteral("products"), QStringLiteral("zreport"),
            QStringLiteral("fleet"), QStringLiteral("devices"),  QStringLiteral("settings")};
}

std::optional<Options> parseCommandLine(const QStringList& arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Sells tickets on board."));
    parser.addHelpOption();
    parser.addVersionOption();
    const auto option = [&parser](const char* name, const char* description,
                                  const char* value = nullptr, const QString& initial = {}) {
        const QCommandLineOption made(QLatin1String(name), QLatin1String(description),
                                      QLatin1String(value), initial);
        parser.addOption(made);
        return made;
    };
    const auto feed = option(
        "feed", "Feed to sell from, rivo-feed JSON; an installed terminal has a sample.", "file");
    const auto gtfs = option("gtfs", "Feed to sell from, a GTFS folder with Fares V2.", "folder");
    const auto category = option(
        "rider-category", "Passenger type of a GTFS rider category; may be repeated.", "id=PT_X");
    const auto categories =
        option("rider-categories", "Passenger types of all GTFS rider categories.", "file");
    const auto route = option(
        "route", "GTFS route that the vehicle runs; may be repeated. Default: all routes.", "id");
    const auto page = option("page", "Page to open.", "name", QStringLiteral("sell"));
    const auto size =
        option("size", "Size of the window in pixels.", "WxH", QStringLiteral("1024x600"));
    const auto screenSize =
        option("screen-size", "Size of the window on the glass in millimetres.", "WxH");
    const auto scale = option("scale", "Makes texts and buttons larger or smaller, 0.5 to 3.",
                              "factor", QStringLiteral("1"));
    const auto screenshot = option("screenshot", "Save a picture of the window and end.", "file");
    const auto timeScale = option("time-scale", "Seconds of the timetable per second, 0 to 600.",
                                  "factor", QStringLiteral("1"));
    const auto time = option("time", "Time of the timetable to start at.", "HH:MM");
    const auto journal = option("journal", "File that keeps the sales.", "file");
    const auto drivers = option("drivers", "File of drivers, who sign in to sell.", "file");
    const auto config = option("config",
                               "The operator's file of printer, card terminal and other devices. "
                               "Default: /etc/rivo-terminal/terminal.conf, if it exists.",
                               "file");
    const auto lockAfter = option(
        "lock-after", "Minutes without a press until a driver has to sign in again, 0 to 1440.",
        "minutes", QStringLiteral("5"));
    const auto vehicle = option("vehicle", "Name of the vehicle on tickets.", "name");
    const auto language = option("language", "Language of the screen: en or de.", "code");
    const auto country = option(
        "country", "Country whose form money and dates have. Default: the system's.", "code");
    const auto night = option("night", "Start with dark colours.");
    const auto silent = option("silent", "Start without sounds.");
    const auto demo = option("demo", "Simulate devices and vehicles, and show controls for them.");
    const auto fullscreen = option("fullscreen", "Fill the screen.");
    const auto fileIcons = option("allow-file-icons", "Show icons of a feed that are local files.");
    const auto benchmark = option("benchmark", "Measure start, tap, scrolling and stops, and end.");
    QCommandLineOption baseline(QStringLiteral("benchmark-baseline"));
    baseline.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOption(baseline);
    const auto verbose = option("verbose", "Write the log to standard error.");
    parser.process(arguments);

    const QStringList unexpected = parser.positionalArguments();
    if (!unexpected.isEmpty())
        return complain(QStringLiteral("unexpected argument %1").arg(unexpected.first()));
    Options options;
    options.feed = parser.isSet(feed)   ? parser.value(feed)
                   : parser.isSet(gtfs) ? parser.value(gtfs)
                                        : shippedFeed();
    if (options.feed.isNull() || (parser.isSet(feed) && parser.isSet(gtfs)))
        return complain(QStringLiteral("one of --feed and --gtfs is needed"));
    options.reading.mappingFile = parser.value(categories);
    const QStringList mappings = parser.values(category);
    for (const QString& mapping : mappings) {
        const int equals = mapping.lastIndexOf(QLatin1Char('='));
        if (equals < 1 || equals == mapping.size() - 1)
            return complain(
                QStringLiteral("--rider-category: \"%1\", expected ID=PT_X").arg(mapping));
        options.reading.riderCategories.insert(mapping.left(equals), mapping.mid(equals + 1));
    }
    if (parser.isSet(route))
        options.reading.timetableOf = parser.values(route);
    options.page = parser.value(page);
    if (!pageNames().contains(options.page))
        return complain(
            QStringLiteral("--page is one of %1").arg(pageNames().join(QStringLiteral(", "))));
    const std::optional<QSize> wantedSize = sizeOf(parser.value(size));
    if (!wantedSize)
        return complain(QStringLiteral("--size is WIDTHxHEIGHT, %1 to %2 each")
                            .arg(smallestSide)
                            .arg(largestSide));
    options.size = *wantedSize;
    if (parser.isSet(screenSize)) {
        const std::optional<QSizeF> millimetres = millimetresOf(parser.value(screenSize));
        if (!millimetres)
            return complain(
                QStringLiteral("--screen-size is WIDTHxHEIGHT in millimetres, 40 to 2000 each"));
        options.glass.millimetres = *millimetres;
    }
    bool isNumber = false;
    options.glass.scale = parser.value(scale).toDouble(&isNumber);
    if (!isNumber || !(options.glass.scale >= 0.5 && options.glass.scale <= 3.0))
        return complain(QStringLiteral("--scale is a number from 0.5 to 3"));
    options.timeScale = parser.value(timeScale).toDouble(&isNumber);
    if (!isNumber || !(options.timeScale >= 0.0 && options.timeScale <= 600.0))
        return complain(QStringLiteral("--time-scale is a number from 0 to 600"));
    if (parser.isSet(time)) {
        const QTime start = QTime::fromString(parser.value(time), QStringLiteral("HH:mm"));
        if (!start.isValid())
            return complain(QStringLiteral("--time is HH:MM"));
        options.startTime = QTime(0, 0).secsTo(start);
    }
    options.lockAfter = parser.value(lockAfter).toInt(&isNumber);
    if (!isNumber || options.lockAfter < 0 || options.lockAfter > longestLock)
        return complain(
            QStringLiteral("--lock-after is a whole number from 0 to %1").arg(longestLock));
    options.screenshot = parser.value(screenshot);
    options.journal = parser.value(journal);
    options.drivers = parser.value(drivers);
    options.config = parser.value(config);
    options.vehicle = parser.value(vehicle);
    options.language = parser.value(language);
    if (parser.isSet(country)) {
        options.country = countryOf(parser.value(country));
        if (options.country == QLocale::AnyCountry)
            return complain(QStringLiteral("--country is a code of ISO 3166 such as DE"));
    }
    options.night = parser.isSet(night);
    options.isSilent = parser.isSet(silent);
    options.isDemo = parser.isSet(demo);
    options.fullscreen = parser.isSet(fullscreen);
    options.allowFileIcons = parser.isSet(fileIcons);
    options.benchmark = parser.isSet(benchmark);
    options.isBaseline = parser.isSet(baseline);
    options.verbose = parser.isSet(verbose);
    return options;
}

} // namespace rivo::terminal
