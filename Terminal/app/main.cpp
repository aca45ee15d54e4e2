#include "Benchmark.h"
#include "Options.h"
#include "Screen.h"
#include "Terminal.h"

#include <FeedLoader.h>
#include <LibraryDiagnostics.h>
#include <StandardOutput.h>

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTranslator>

#include <memory>
#include <optional>

namespace
{

using namespace rivo;
using terminal::Options;
using terminal::Screen;
using terminal::Terminal;

enum ExitCode { Done = 0, Failed = 1, BadInput = 2 };

void complain(const QStringList& lines)
{
    QTextStream standardError(stderr);
    standardError.setCodec("UTF-8");
    for (const QString& line : lines)
        standardError << line << '\n';
}

void translate(QGuiApplication& application, QTranslator& translator, const QString& language)
{
    QLocale locale = language.isEmpty() ? QLocale::system() : QLocale(language);
    if (locale.language() == QLocale::C) // a system without a language; it writes money oddly
        locale = QLocale(QLocale::English, QLocale::UnitedKingdom);
    QLocale::setDefault(locale);
    if (translator.load(locale, QStringLiteral("rivo-terminal"), QStringLiteral("_"),
                        QStringLiteral(":/i18n")))
        application.installTranslator(&translator);
}

Terminal::Settings settingsOf(const Options& options)
{
    Terminal::Settings settings;
    settings.journalFile = options.journal;
    settings.allowFileIcons = options.allowFileIcons;
    settings.night = options.night;
    settings.pace = options.timeScale;
    settings.startTime = options.startTime;
    return settings;
}

/// What the program measures of itself, nothing if it has no screen; sales go to a journal of their
/// own.
QStringList measure(const feed::Feed& feed, const Options& options)
{
    const QTemporaryDir folder;
    const auto settings = [&](const char* journal) {
        Terminal::Settings made = settingsOf(options);
        made.journalFile = folder.filePath(QLatin1String(journal));
        return made;
    };
    QStringList lines;
    {
        Terminal terminal(feed, settings("taps"));
        Screen screen(terminal, QStringLiteral("sell"), options.size);
        if (screen.window() == nullptr)
            return {};
        screen.window()->show();
        lines.append(terminal::benchmark::start(screen));
        lines.append(terminal::benchmark::taps(screen, terminal));
    }
    Terminal terminal(terminal::benchmark::withTiles(feed, 2000), settings("scrolling"));
    Screen screen(terminal, QStringLiteral("sell"), options.size);
    if (screen.window() == nullptr)
        return {};
    screen.window()->show();
    lines.append(terminal::benchmark::scrolling(screen));
    return lines;
}

int show(QGuiApplication& application, Screen& screen, const Options& options, ExitCode otherwise)
{
    if (screen.window() == nullptr)
        return Failed;
    if (options.fullscreen)
        screen.window()->showFullScreen();
    else
        screen.window()->show();
    if (options.screenshot.isEmpty())
        return application.exec() == 0 ? otherwise : Failed;
    if (screen.savePicture(options.screenshot))
        return otherwise;
    complain({QStringLiteral("rivo-terminal: cannot write %1").arg(options.screenshot)});
    return Failed;
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("rivo-terminal"));
    QGuiApplication::setApplicationVersion(QStringLiteral(RIVO_VERSION));
    const std::optional<Options> options = terminal::parseCommandLine(QGuiApplication::arguments());
    if (!options)
        return BadInput;

    QTranslator translator;
    translate(application, translator, options->language);
    QQuickStyle::setStyle(QStringLiteral("Default"));
    Screen::registerTypes();

    const feed::FeedResult result = feed::loadFeed(options->feed, options->reading);
    complain(result.noticeLines());
    complain(result.problemLines());
    if (!result.feed) {
        Screen screen(result.problemLines(), options->size);
        return show(application, screen, *options, BadInput);
    }

    std::optional<LibraryDiagnostics> diagnostics(options->verbose);
    if (options->benchmark) {
        const QStringList lines = measure(*result.feed, *options);
        diagnostics.reset();
        return !lines.isEmpty() &&
                       writeToStandardOutput(lines.join(QLatin1Char('\n')).toUtf8() + '\n')
                   ? Done
                   : Failed;
    }
    QDir().mkpath(QFileInfo(options->journal).absolutePath());
    Terminal terminal(*result.feed, settingsOf(*options));
    Screen screen(terminal, options->page, options->size);
    return show(application, screen, *options, Done);
}
