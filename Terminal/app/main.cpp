#include "Benchmark.h"
#include "LargeFeed.h"
#include "Options.h"
#include "Renderer.h"
#include "Screen.h"
#include "TakeOver.h"
#include "Terminal.h"

#include <Config.h>
#include <DriversFile.h>
#include <FeedLoader.h>
#include <LibraryDiagnostics.h>
#include <Loudspeaker.h>
#include <MemoryCeiling.h>
#include <ProgramStart.h>
#include <SoundThread.h>
#include <StandardOutput.h>
#include <UpgradeWatch.h>
#include <Watchdog.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QProcess>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QTranslator>

#include <functional>
#include <memory>
#include <optional>

namespace
{

using namespace rivo;
using terminal::Options;
using terminal::Screen;
using terminal::TakeOver;
using terminal::Terminal;

/// A feed may take half of the memory; the timetable and the screen need the other one. One that is
/// larger is refused with the file's name, before the system ends the program.
feed::FeedOptions readingOf(const Options& options)
{
    feed::FeedOptions reading = options.reading;
    reading.limits.memory = health::memoryCeiling() / 2;
    return reading;
}

enum ExitCode { Done = 0, Failed = 1, BadInput = 2 };

/// The language of the texts, and the form of money and dates of the operator's country: of
/// `country`, otherwise that which the language names, otherwise that of the system.
QLocale localeOf(const QString& language, QLocale::Country country)
{
    const QLocale system = QLocale::system();
    QLocale locale = language.isEmpty() ? system : QLocale(language);
    if (locale.language() == QLocale::C) // a system without a language; it writes money oddly
        locale = QLocale(QLocale::English, QLocale::UnitedKingdom);
    if (country == QLocale::AnyCountry && !language.contains(QLatin1Char('_')) &&
        system.language() != QLocale::C && !language.isEmpty())
        country = system.country();
    return country == QLocale::AnyCountry ? locale : QLocale(locale.language(), country);
}

void translate(QGuiApplication& application, QTranslator& translator, const QString& language,
               QLocale::Country country)
{
    const QLocale locale = localeOf(language, country);
    QLocale::setDefault(locale);
    const auto name = QStringLiteral("rivo-terminal");
    const auto folder = QStringLiteral(":/i18n");
    const bool isThere = translator.load(locale, name, QStringLiteral("_"), folder);
    if (isThere || translator.load(name + QStringLiteral("_en"), folder))
        application.installTranslator(&translator);
    const bool isUnderstood = isThere && QLocale(language).language() != QLocale::C;
    if (!language.isEmpty() && !isUnderstood)
        reportFailure(
            QStringLiteral("--language %1: no such texts, English is shown").arg(language));
}

Terminal::Settings settingsOf(const Options& options)
{
    Terminal::Settings settings;
    settings.journalFile = options.journal;
    settings.allowFileIcons = options.allowFileIcons;
    settings.isDemo = options.isDemo;
    settings.night = options.night;
    settings.isSilent = options.isSilent;
    settings.pace = options.timeScale;
    settings.startTime = options.startTime;
    settings.idleTime = options.lockAfter * 60000;
    return settings;
}

/// Makes a missing folder that other users cannot enter.
void makePrivateFolder(const QString& folder)
{
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// A journal keeps one currency, so the terminal's own has one file for each.
QString ownJournal(const QString& currency)
{
    return QStringLiteral("%1/sales-%2.journal")
        .arg(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation), currency);
}

/// The same program in a process of its own, which shows a window of Qt Quick alone.
QStringList measureBaseline(const Options& options)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(),
                  {QStringLiteral("--benchmark-baseline"), QStringLiteral("--feed"), options.feed,
                   QStringLiteral("--size"),
                   QStringLiteral("%1x%2").arg(options.size.width()).arg(options.size.height())});
    process.waitForFinished(-1);
    return QString::fromUtf8(process.readAllStandardOutput())
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// What the program measures of itself, nothing if it has no screen; sales go to a journal of their
/// own. `marks` are the ages of the process before the models are filled.
QStringList measure(const feed::Feed& feed, const Options& options, QVector<double> marks)
{
    const QTemporaryDir folder;
    const auto settings = [&](const char* journal) {
        Terminal::Settings made = settingsOf(options);
        made.isDemo = true; // sells without a printer
        made.journalFile = folder.filePath(QLatin1String(journal));
        return made;
    };
    QStringList lines;
    {
        Terminal terminal(feed, settings("taps"));
        marks.append(terminal::benchmark::processAge());
        Screen screen(terminal, QStringLiteral("sell"), options.size, options.glass);
        if (screen.window() == nullptr)
            return {};
        screen.window()->show();
        marks.append(terminal::benchmark::processAge());
        lines.append(terminal::benchmark::start(screen, marks));
        lines.append(terminal::benchmark::taps(screen, terminal));
        lines.append(
            terminal::benchmark::stopChanges(QStringLiteral("stop_change"), screen, terminal));
    }
    if (const auto large = terminal::benchmark::largeFeed()) {
        Terminal terminal(*large, settings("changes"));
        Screen screen(terminal, QStringLiteral("sell"), options.size, options.glass);
        screen.window()->show();
        lines.append(terminal::benchmark::stopChanges(QStringLiteral("large_feed_stop_change"),
                                                      screen, terminal));
        lines.append(terminal::benchmark::tripChanges(QStringLiteral("large_feed_trip_change"),
                                                      screen, terminal));
    }
    {
        Terminal terminal(terminal::benchmark::withTiles(feed, 2000), settings("scrolling"));
        Screen screen(terminal, QStringLiteral("sell"), options.size, options.glass);
        screen.window()->show();
        lines.append(terminal::benchmark::scrolling(screen));
    }
    return lines + measureBaseline(options);
}

std::optional<Options> readCommandLine(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    return terminal::parseCommandLine(QCoreApplication::arguments());
}

/// The feed that was taken over from the office, or that of the command line.
feed::FeedResult loadFeed(const Options& options, TakeOver& takeOver)
{
    using office::PublicationKind;
    while (const auto file = takeOver.begin(PublicationKind::Feed)) {
        feed::FeedResult result = feed::loadFeed(*file, readingOf(options));
        if (result.feed)
            return result;
        complain(result.problemLines());
        takeOver.refuse(PublicationKind::Feed, result.problemLines().value(0));
    }
    return feed::loadFeed(options.feed, readingOf(options));
}

/// Likewise. Without any file there is no sign-in.
drivers::DriversResult readDrivers(const Options& options, TakeOver& takeOver)
{
    using office::PublicationKind;
    while (const auto file = takeOver.begin(PublicationKind::Drivers)) {
        drivers::DriversResult result = drivers::readDrivers(*file);
        if (result.drivers)
            return result;
        complain(result.problems);
        takeOver.refuse(PublicationKind::Drivers, result.problems.value(0));
    }
    return options.drivers.isEmpty() ? drivers::DriversResult{QVector<drivers::Driver>(), {}}
                                     : drivers::readDrivers(options.drivers);
}

/// What the program may end for, as systemd starts it again.
struct Restarts
{
    std::function<bool()> mayUpgrade = [] { return true; };
    std::function<bool()> isTakeOverDue = [] { return false; }; ///< and possible now
    std::function<void()> screenIsThere = [] {};                ///< the first frames are shown
};

void restartForTakeOver(QGuiApplication& application, const Restarts& restarts)
{
    auto* const looks = new QTimer(&application);
    QObject::connect(looks, &QTimer::timeout, &application, [restarts] {
        if (restarts.isTakeOverDue())
            QCoreApplication::quit();
    });
    looks->start(health::UpgradeWatch::usualInterval);
}

int show(QGuiApplication& application, Screen& screen, const Options& options, ExitCode otherwise,
         const Restarts& restarts = {})
{
    if (screen.window() == nullptr)
        return Failed;
    auto* const firstFrame = new QObject(screen.window());
    QObject::connect(
        screen.window(), &QQuickWindow::frameSwapped, firstFrame,
        [firstFrame, window = screen.window(), isThere = restarts.screenIsThere] {
            isThere();
            QObject::disconnect(window, nullptr, firstFrame, nullptr);
        },
        Qt::QueuedConnection);
    if (options.fullscreen)
        screen.window()->showFullScreen();
    else
        screen.window()->show();
    if (options.screenshot.isEmpty()) {
        const auto manager = health::ServiceManager::fromEnvironment();
        const health::Watchdog watchdog(manager, reportFailure);
        const health::UpgradeWatch upgrades(QStringLiteral("/run/rivo-terminal.upgraded"),
                                            restarts.mayUpgrade);
        if (manager.isThere()) { // it starts the new version
            QObject::connect(&upgrades, &health::UpgradeWatch::restartDue, &application,
                             &QCoreApplication::quit);
            restartForTakeOver(application, restarts);
        }
        return application.exec() == 0 ? otherwise : Failed;
    }
    const QString problem = screen.savePicture(options.screenshot);
    if (problem.isEmpty()) {
        restarts.screenIsThere();
        return otherwise;
    }
    reportFailure(QStringLiteral("cannot write %1: %2").arg(options.screenshot, problem));
    return Failed;
}

} // namespace

int main(int argc, char* argv[])
{
    nameProgram(QStringLiteral("rivo-terminal"));
    // Before there has to be a display: --help and mistakes need none.
    const std::optional<Options> options = readCommandLine(argc, argv);
    if (!options)
        return BadInput;

    QGuiApplication application(argc, argv);
    if (terminal::isRasterQuicker(QGuiApplication::platformName()))
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    QTranslator translator;
    translate(application, translator, options->language, options->country);
    QQuickStyle::setStyle(QStringLiteral("Default"));
    Screen::registerTypes();

    if (options->isBaseline)
        return writeToStandardOutput(
                   terminal::benchmark::baseline(options->size).join(QLatin1Char('\n')).toUtf8())
                   ? Done
                   : Failed;

    const config::ConfigResult config = options->config.isEmpty()
                                            ? config::readConfigIfThere(config::defaultFile())
                                            : config::readConfig(options->config);
    const bool isTakenOver = config.config && !options->benchmark;
    TakeOver takeOver(isTakenOver ? config.config->office : config::OfficeConfig(),
                      readingOf(*options));

    Restarts restarts;
    restarts.screenIsThere = [&] { takeOver.confirmStart(); };

    QVector<double> marks{terminal::benchmark::processAge()};
    const feed::FeedResult result = loadFeed(*options, takeOver);
    marks.append(terminal::benchmark::processAge());
    complain(result.noticeLines());
    complain(result.problemLines());
    if (!result.feed && options->benchmark)
        return BadInput;
    if (!result.feed) {
        Screen screen(result.problemLines(), options->size, Screen::Unusable::Feed, options->glass);
        return show(application, screen, *options, BadInput, restarts);
    }

    const drivers::DriversResult drivers = readDrivers(*options, takeOver);
    complain(drivers.problems);
    if (!drivers.drivers) {
        Screen screen(drivers.problems, options->size, Screen::Unusable::Drivers, options->glass);
        return show(application, screen, *options, BadInput, restarts);
    }

    complain(config.problems);
    if (!config.config) {
        Screen screen(config.problems, options->size, Screen::Unusable::Config, options->glass);
        return show(application, screen, *options, BadInput, restarts);
    }

    std::optional<LibraryDiagnostics> diagnostics(options->verbose);
    if (options->benchmark) {
        const QStringList lines = measure(*result.feed, *options, marks);
        diagnostics.reset();
        return !lines.isEmpty() &&
                       writeToStandardOutput(lines.join(QLatin1Char('\n')).toUtf8() + '\n')
                   ? Done
                   : Failed;
    }
    Terminal::Settings settings = settingsOf(*options);
    settings.drivers = *drivers.drivers;
    settings.config = *config.config;
    if (!options->vehicle.isEmpty())
        settings.config.vehicle = options->vehicle;
    settings.cardTime = 1500;
    settings.watchesHealth = options->screenshot.isEmpty() && !options->isDemo;
    settings.soundPlayer =
        std::make_shared<sound::SoundThread>([] { return std::make_unique<sound::Loudspeaker>(); });
    if (settings.journalFile.isEmpty())
        settings.journalFile = ownJournal(result.feed->currency);
    makePrivateFolder(QFileInfo(settings.journalFile).absolutePath());
    settings.takeOver = &takeOver;
    Terminal terminal(*result.feed, settings);
    Screen screen(terminal, options->page, options->size, options->glass);
    restarts.mayUpgrade = [&] { return terminal.mayRestart(); };
    restarts.isTakeOverDue = [&] {
        return takeOver.isDue(QDateTime::currentDateTimeUtc()) && terminal.mayTakeOver();
    };
    return show(application, screen, *options, Done, restarts);
}
