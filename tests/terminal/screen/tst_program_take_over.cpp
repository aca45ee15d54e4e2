#include "../office/Publishing.h"

#include <PublicationStore.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace rivo::office;

/// rivo-terminal as it starts with what the office published. What it shows is compared with what
/// it shows of the same file on its command line.
class TestProgramTakeOver : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.emplace();
        QVERIFY(m_publisher.key.write(file("publisher.key"), file("publisher.pem")));
        QVERIFY(write("terminal.conf", configuration(R"(, "publisher": "%1", "store": "%2")")));
        QVERIFY(write("without.conf", configuration("")));
    }

    void publishedFeedIsSold()
    {
        put(1, feed("hill-valley"));
        const QImage published = shown();
        QCOMPARE(published, shownOf("hill-valley"));
        QVERIFY(published != shownOf("coast-line"));
        QCOMPARE(content("store/feed-1.start"), "proven");
        QCOMPARE(m_messages, "");
    }

    void withoutAKeyItIsNot()
    {
        put(1, feed("hill-valley"));
        QCOMPARE(shown("without.conf"), shownOf("coast-line"));
    }

    void feedOfTomorrowIsNot()
    {
        put(1, feed("hill-valley"), PublicationKind::Feed,
            QDateTime::currentDateTimeUtc().addDays(1));
        QCOMPARE(shown(), shownOf("coast-line"));
    }

    void feedThatCannotBeReadIsReplacedByTheOneBefore()
    {
        put(1, feed("hill-valley"));
        put(2, "{}");
        const QImage published = shown();
        QVERIFY2(m_messages.contains("feed-2.json"), m_messages);
        QCOMPARE(published, shownOf("hill-valley"));
        QVERIFY(content("store/feed-2.refused").contains("feed-2.json"));
        QCOMPARE(shown(), published);
        QCOMPARE(m_messages, "");
    }

    void feedWithWhichItDidNotStartIsReplacedByTheOneBefore()
    {
        put(1, feed("hill-valley"));
        put(2, feed("coast-line"));
        QVERIFY(write("store/feed-2.start", "3"));
        QCOMPARE(shown(), shownOf("hill-valley"));
        QVERIFY(content("store/feed-2.refused").contains("did not start"));
    }

    /// What is wrong with another file is not the fault of the feed.
    void feedIsNotBlamedForTheDriversOfTheCommandLine()
    {
        put(1, feed("hill-valley"));
        QVERIFY(shown("terminal.conf", "coast-line", {"--drivers", "/nowhere"}).isNull());
        QVERIFY2(m_messages.contains("/nowhere"), m_messages);
        QCOMPARE(content("store/feed-1.start"), "proven");
    }

    void feedThatWasHarmedIsNotSold()
    {
        put(1, feed("hill-valley"));
        QVERIFY(write("store/feed-1.json", feed("hill-valley").chopped(1)));
        QCOMPARE(shown(), shownOf("coast-line"));
    }

    void publishedDriversSignIn()
    {
        const QImage open = shown();
        put(1,
            QStringLiteral(R"({"drivers": [{"number": 42, "name": "A. Nowak",
                "iterations": 100000, "salt": "0f1e2d3c4b5a6978", "hash": "%1"}]})")
                .arg(QString(64, 'a'))
                .toUtf8(),
            PublicationKind::Drivers);
        const QImage locked = shown();
        // The panel covers everything.
        QCOMPARE(locked.pixel(40, 300), locked.pixel(2, 2));
        QCOMPARE(locked.pixel(5, 475), locked.pixel(790, 20));
        QVERIFY(open.pixel(5, 475) != open.pixel(790, 20));
        QCOMPARE(content("store/drivers-1.start"), "proven");
    }

private:
    QString file(const QString& name) const { return m_folder->filePath(name); }

    bool write(const QString& name, const QByteArray& bytes) const
    {
        QFile target(file(name));
        return target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size();
    }

    QByteArray content(const QString& name) const
    {
        QFile source(file(name));
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray("none");
    }

    static QByteArray feed(const QString& name)
    {
        QFile source(EXAMPLE_FEEDS "/" + name + ".json");
        return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
    }

    /// Of a terminal whose office is not there.
    QByteArray configuration(const QString& more) const
    {
        const QString keys = more.isEmpty() ? more : more.arg(file("publisher.pem"), file("store"));
        return QStringLiteral(R"({"format": "rivo-terminal", "version": 1, "office": {"type":
            "mqtt", "host": "127.0.0.1", "port": 1, "operator": "lakeside", "vehicle": "4711"%1}})")
            .arg(keys)
            .toUtf8();
    }

    void put(qint64 version, const QByteArray& bytes, PublicationKind kind = PublicationKind::Feed,
             const QDateTime& from = QDateTime::fromSecsSinceEpoch(1, Qt::UTC)) const
    {
        PublicationStore store(file("store"), "lakeside", m_publisher.key.publicKey());
        Announcement made = m_publisher.announce(version, bytes, kind);
        made.validFrom = QDateTime::fromSecsSinceEpoch(from.toSecsSinceEpoch(), Qt::UTC);
        made = m_publisher.resigned(made);
        store.begin(made);
        QCOMPARE(store.append(made, bytes), QString());
        QCOMPARE(store.accept(made), QString());
    }

    /// The Sell page, with the feed of the Coast Line on the command line.
    QImage shown(const QString& configurationFile = "terminal.conf",
                 const QString& name = "coast-line", const QStringList& more = {})
    {
        const QString picture = file("page.png");
        QFile::remove(picture);
        QProcess program;
        const QTemporaryDir journals;
        program.start(TERMINAL_PROGRAM,
                      more + QStringList{"--feed", EXAMPLE_FEEDS "/" + name + ".json", "--journal",
                                         journals.filePath("page.journal"), "--screenshot", picture,
                                         "--size", "800x480", "--time-scale", "0", "--time",
                                         "08:00", "--config", file(configurationFile)});
        const bool isEnded = program.waitForFinished(120000) && program.exitCode() == 0;
        m_messages = program.readAllStandardError();
        return isEnded ? QImage(picture) : QImage();
    }

    QImage shownOf(const QString& name)
    {
        const QByteArray before = m_messages;
        const QImage picture = shown("without.conf", name);
        m_messages = before;
        return picture.isNull() ? QImage(1, 1, QImage::Format_RGB32) : picture;
    }

    const TestPublisher m_publisher;
    std::optional<QTemporaryDir> m_folder;
    QByteArray m_messages;
};

QTEST_GUILESS_MAIN(TestProgramTakeOver)
#include "tst_program_take_over.moc"
