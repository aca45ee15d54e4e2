#include <Renderer.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

/// rivo-terminal as it is started: exit codes, pictures, and nothing on standard error that does
/// not belong there.
class TestTerminalProgram : public QObject
{
    Q_OBJECT

private slots:
    void picturesArePrinted_data();
    void picturesArePrinted();
    void newFolderOfTheJournalIsForItsUserAlone();
    void wrongCommandLines_data();
    void wrongCommandLines();
    void helpAndVersion();
    void brokenFeedIsShownAndNamed();
    void brokenConfigurationIsShownAndNamed();
    void driversSignIn();
    void driversThatCannotBeRead();
    void pictureThatCannotBeWritten();
    void languages();
    void logIsWrittenWhenAskedFor();
    void rendererOfTheMachineIsUsed();
    void measurements();

private:
    struct Result
    {
        int exitCode = -1;
        QString output;
        QString error;
    };
    Result run(const QStringList& arguments) const;
    /// With a feed, a journal, and a picture to save.
    Result shoot(const QStringList& arguments, const QString& picture = "page.png") const;
    /// A file of one driver.
    QString drivers(int iterations);
    static QString feed() { return EXAMPLE_FEEDS "/coast-line.json"; }

    QTemporaryDir m_folder;
};

TestTerminalProgram::Result TestTerminalProgram::run(const QStringList& arguments) const
{
    QProcess program;
    program.start(TERMINAL_PROGRAM, arguments);
    if (!program.waitForFinished(120000) || program.exitStatus() != QProcess::NormalExit)
        return {};
    return {program.exitCode(), QString::fromUtf8(program.readAllStandardOutput()),
            QString::fromUtf8(program.readAllStandardError())};
}

TestTerminalProgram::Result TestTerminalProgram::shoot(const QStringList& arguments,
                                                       const QString& picture) const
{
    return run(QStringList{"--feed", feed(), "--journal", m_folder.filePath("page.journal"),
                           "--screenshot", m_folder.filePath(picture)} +
               arguments);
}

void TestTerminalProgram::picturesArePrinted_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QSize>("size");
    for (const QString page : {"sell", "products", "zreport", "fleet", "devices", "settings"})
        QTest::newRow(qPrintable(page)) << QStringList{"--page", page} << QSize(1024, 600);
    QTest::newRow("small, at night, in German")
        << QStringList{"--size", "800x480", "--night", "--language", "de"} << QSize(800, 480);
    QTest::newRow("a route") << QStringList{"--route", "1", "--page", "fleet"} << QSize(1024, 600);
    QTest::newRow("a panel of 10 inches, larger")
        << QStringList{"--size", "1280x800", "--screen-size", "217x136", "--scale", "1.2"}
        << QSize(1280, 800);
    QTest::newRow("in English, with money as in Austria")
        << QStringList{"--language", "en", "--country", "at"} << QSize(1024, 600);
    QTest::newRow("another time and pace")
        << QStringList{"--time", "23:59", "--time-scale", "60", "--page", "fleet"}
        << QSize(1024, 600);
}

void TestTerminalProgram::picturesArePrinted()
{
    QFETCH(QStringList, arguments);
    QFETCH(QSize, size);
    const QString picture = m_folder.filePath("page.png");
    QFile::remove(picture);
    const Result result = shoot(arguments);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QImage(picture).size(), size);
}

void TestTerminalProgram::newFolderOfTheJournalIsForItsUserAlone()
{
    const QString folder = m_folder.filePath("made");
    const Result result = run({"--feed", feed(), "--journal", folder + "/page.journal",
                               "--screenshot", m_folder.filePath("page.png")});
    QCOMPARE(result.error, QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QFileInfo(folder).permissions() &
                 (QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                  QFile::WriteOther | QFile::ExeOther),
             QFile::Permissions());
}

void TestTerminalProgram::wrongCommandLines_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const QStringList good{"--feed", feed()};
    QTest::newRow("no feed") << QStringList() << "one of --feed and --gtfs is needed";
    QTest::newRow("two feeds") << good + QStringList{"--gtfs", "x"}
                               << "one of --feed and --gtfs is needed";
    QTest::newRow("something left over") << good + QStringList{"x"} << "unexpected argument x";
    QTest::newRow("no such page") << good + QStringList{"--page", "x"}
                                  << "--page is one of sell, products, zreport, fleet, devices, "
                                     "settings";
    for (const QString size : {"x", "800", "319x480", "800x9000", "-800x480", "800x480x3"})
        QTest::newRow(qPrintable("size " + size))
            << good + QStringList{"--size", size} << "--size is WIDTHxHEIGHT, 320 to 8192 each";
    for (const QString size : {"x", "154", "154x", "39x86", "154x2001", "1.5x2"})
        QTest::newRow(qPrintable("screen size " + size))
            << good + QStringList{"--screen-size", size}
            << "--screen-size is WIDTHxHEIGHT in millimetres, 40 to 2000 each";
    for (const QString country : {"x", "DEU", "XX", "_D"})
        QTest::newRow(qPrintable("country " + country))
            << good + QStringList{"--country", country}
            << "--country is a code of ISO 3166 such as DE";
    for (const QString scale : {"x", "0.4", "3.1", "nan"})
        QTest::newRow(qPrintable("scale " + scale))
            << good + QStringList{"--scale", scale} << "--scale is a number from 0.5 to 3";
    for (const QString scale : {"x", "-1", "600.1", "nan", "inf"})
        QTest::newRow(qPrintable("time scale " + scale))
            << good + QStringList{"--time-scale", scale}
            << "--time-scale is a number from 0 to 600";
    for (const QString time : {"x", "24:00", "8", "08:60"})
        QTest::newRow(qPrintable("time " + time))
            << good + QStringList{"--time", time} << "--time is HH:MM";
    for (const QString minutes : {"x", "-1", "1441", "2.5"})
        QTest::newRow(qPrintable("lock after " + minutes))
            << good + QStringList{"--lock-after", minutes}
            << "--lock-after is a whole number from 0 to 1440";
    QTest::newRow("half a rider category") << good + QStringList{"--rider-category", "a="}
                                           << "--rider-category: \"a=\", expected ID=PT_X";
}

void TestTerminalProgram::wrongCommandLines()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Result result = run(arguments);
    QCOMPARE(result.error, "rivo-terminal: " + error + "\n");
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
}

void TestTerminalProgram::helpAndVersion()
{
    for (const auto& [option, start] :
         {std::pair("--help", "Usage: "), {"--version", "rivo-terminal "}}) {
        const Result result = run({option});
        QCOMPARE(result.error, QString());
        QVERIFY2(result.output.startsWith(start), qPrintable(result.output));
        QCOMPARE(result.exitCode, 0);
    }
}

void TestTerminalProgram::brokenFeedIsShownAndNamed()
{
    const QString picture = m_folder.filePath("problems.png");
    const Result result =
        run({"--feed", m_folder.filePath("missing.json"), "--screenshot", picture});
    QVERIFY2(result.error.contains("missing.json"), qPrintable(result.error));
    QCOMPARE(result.error.count('\n'), 1);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(!QImage(picture).isNull());
}

void TestTerminalProgram::brokenConfigurationIsShownAndNamed()
{
    const Result result =
        shoot({"--config", m_folder.filePath("missing.conf")}, "config-problems.png");
    QVERIFY2(result.error.contains("missing.conf"), qPrintable(result.error));
    QCOMPARE(result.error.count('\n'), 1);
    QCOMPARE(result.exitCode, 2);
    QVERIFY(!QImage(m_folder.filePath("config-problems.png")).isNull());
}

QString TestTerminalProgram::drivers(int iterations)
{
    const QString name = m_folder.filePath("drivers.json");
    QFile file(name);
    const QString entry(R"({"drivers": [{"number": 42, "name": "A. Nowak", "iterations": %1,
                            "salt": "0f1e2d3c4b5a6978", "hash": "%2"}]})");
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(entry.arg(iterations).arg(QString(64, 'a')).toUtf8()) < 0)
        qFatal("%s cannot be written", qPrintable(name));
    return name;
}

void TestTerminalProgram::driversSignIn()
{
    const QString picture = m_folder.filePath("page.png");
    const QString size = "800x480";
    QCOMPARE(shoot({"--size", size, "--time-scale", "0", "--time", "08:00"}).exitCode, 0);
    const QImage open(picture);
    const Result result =
        shoot({"--size", size, "--time-scale", "0", "--time", "08:00", "--drivers", drivers(600000),
               "--lock-after", "0", "--vehicle", "MR 4711"});
    QCOMPARE(result.error, QString());
    QCOMPARE(result.exitCode, 0);
    const QImage locked(picture);
    QCOMPARE(locked.size(), open.size());
    // The panel covers everything, also the navigation at the left and the status line.
    const QRgb background = locked.pixel(2, 2);
    for (const QPoint place : {QPoint(30, 30), QPoint(40, 300), QPoint(790, 20), QPoint(5, 475)})
        QCOMPARE(locked.pixel(place), background);
    QVERIFY(open.pixel(5, 475) != open.pixel(790, 20));
}

void TestTerminalProgram::driversThatCannotBeRead()
{
    const Result result = shoot({"--drivers", drivers(1)});
    QVERIFY2(result.error.contains("iterations"), qPrintable(result.error));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
}

void TestTerminalProgram::pictureThatCannotBeWritten()
{
    const Result result = shoot({}, "no/such/folder.png");
    QCOMPARE(result.error, QString("rivo-terminal: cannot write %1: No such file or directory\n")
                               .arg(m_folder.filePath("no/such/folder.png")));
    QCOMPARE(result.exitCode, 1);
}

void TestTerminalProgram::languages()
{
    for (const auto& [language, isThere] :
         {std::pair("en", true), {"de", true}, {"de_AT", true}, {"fr", false}, {"xx", false}}) {
        const Result result = shoot({"--language", language});
        const char* const error = "rivo-terminal: --language %1: no such texts, English is shown\n";
        QCOMPARE(result.error, isThere ? QString() : QString(error).arg(language));
        QCOMPARE(result.exitCode, 0);
    }
}

void TestTerminalProgram::logIsWrittenWhenAskedFor()
{
    const Result result = shoot({"--verbose"});
    QVERIFY2(result.error.contains(" INFO "), qPrintable(result.error));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 0);
}

void TestTerminalProgram::rendererOfTheMachineIsUsed()
{
    qputenv("QSG_INFO", "1"); // Qt Quick names the renderer on standard error
    const Result result = shoot({});
    qunsetenv("QSG_INFO");
    QCOMPARE(result.exitCode, 0);
    const bool isRaster = result.error.contains("Loading backend software");
    QCOMPARE(isRaster, rivo::terminal::isRasterQuicker("xcb"));
    QCOMPARE(result.error.contains("GL_RENDERER"), !isRaster);
}

void TestTerminalProgram::measurements()
{
    const Result result = run({"--feed", feed(), "--benchmark"});
    QCOMPARE(result.error, QString());
    const QString spread = "median [0-9.]+ p95 [0-9.]+ ";
    const QString changes =
        "worst [0-9.]+ \\(50 changes, [0-9]+ tiles; offers and tiles [0-9.]+, frame "
        "[0-9.]+\\)\\n";
    const QString frames = "\\([0-9]{4} tiles, 400 frames\\)\\n";
    const QRegularExpression form(
        "^start_to_grid_ms [0-9]+ \\(program [0-9]+, feed [0-9]+, models [0-9]+, window [0-9]+, "
        "frame [0-9]+\\)\\n"
        "tap_to_basket_ms " +
        spread +
        "\\(50 taps; journal and basket [0-9.]+, frame [0-9.]+\\)\\n"
        "stop_change_ms " +
        spread + changes + "large_feed_stop_change_ms " + spread + changes +
        "large_feed_trip_change_ms " + spread + changes + "flick_frame_ms " + spread + frames +
        "scroll_frame_ms " + spread + frames +
        "qt_quick_start_ms [0-9]+\\n"
        "qt_quick_tap_ms " +
        spread +
        "\\(50 taps\\)\\n"
        "qt_quick_flick_frame_ms " +
        spread + frames + "qt_quick_scroll_frame_ms " + spread + frames + "$");
    QVERIFY2(form.match(result.output).hasMatch(), qPrintable(result.output));
    QCOMPARE(result.exitCode, 0);
}

QTEST_GUILESS_MAIN(TestTerminalProgram)
#include "tst_terminal_program.moc"
