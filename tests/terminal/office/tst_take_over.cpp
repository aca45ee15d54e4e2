#include "JournalFiles.h"
#include "Publishing.h"
#include "Table.h"

#include <TakeOver.h>

#include <QTemporaryDir>
#include <QTest>

using namespace rivo;
using namespace rivo::office;
using terminal::TakeOver;

namespace
{

QByteArray coast() { return contentOf(EXAMPLE_FEEDS "/coast-line.json"); }

QByteArray drivers(int iterations)
{
    return QStringLiteral(R"({"drivers": [{"number": 42, "name": "A. Nowak", "iterations": %1,
                            "salt": "0f1e2d3c4b5a6978", "hash": "%2"}]})")
        .arg(iterations)
        .arg(QString(64, 'a'))
        .toUtf8();
}

} // namespace

/// What the terminal starts with.
class TestTakeOver : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder.emplace();
        QVERIFY(m_publisher.key.write(file("publisher.key"), file("publisher.pem")));
        m_office = {};
        m_office.type = "mqtt";
        m_office.operatorName = "lakeside";
        m_office.publisher = file("publisher.pem");
        m_office.store = file("store");
    }

    void withoutAPublisherNothingIsTaken()
    {
        m_office.publisher.clear();
        TakeOver takeOver(m_office, {});
        QVERIFY(!takeOver.isThere());
        QVERIFY(!takeOver.begin(PublicationKind::Feed));
        QVERIFY(!takeOver.isDue(QDateTime::currentDateTimeUtc()));
        QVERIFY(!QFile::exists(file("store")));
    }

    void newestIsBegun()
    {
        put(1, "one");
        put(2, "two");
        TakeOver takeOver(m_office, {});
        QCOMPARE(contentOf(takeOver.begin(PublicationKind::Feed).value_or("")), "two");
        QCOMPARE(takeOver.inUse(PublicationKind::Feed), 2);
        QVERIFY(!takeOver.begin(PublicationKind::Drivers));
        QCOMPARE(takeOver.inUse(PublicationKind::Drivers), 0);
    }

    void oneThatCannotBeUsedIsFollowedByThatBefore()
    {
        put(1, "one");
        put(2, "two");
        TakeOver takeOver(m_office, {});
        QVERIFY(takeOver.begin(PublicationKind::Feed));
        takeOver.refuse(PublicationKind::Feed, "broken");
        QCOMPARE(contentOf(takeOver.begin(PublicationKind::Feed).value_or("")), "one");
        takeOver.refuse(PublicationKind::Feed, "broken, too");
        QVERIFY(!takeOver.begin(PublicationKind::Feed));
        QCOMPARE(takeOver.store().refusal(PublicationKind::Feed).refused, 2);
    }

    void startsThatCannotBeCountedAreNotTried()
    {
        put(1, "one");
        TakeOver takeOver(m_office, {});
        QVERIFY(QDir(file("store")).removeRecursively());
        QVERIFY(!takeOver.begin(PublicationKind::Feed));
    }

    void crashesLeadToTheOneBefore()
    {
        put(1, "one");
        {
            TakeOver first(m_office, {});
            QVERIFY(first.begin(PublicationKind::Feed));
            first.confirmStart();
        }
        put(2, "two");
        for (int start = 0; start < 3; ++start)
            QCOMPARE(contentOf(TakeOver(m_office, {}).begin(PublicationKind::Feed).value_or("")),
                     "two");
        for (int start = 0; start < 5; ++start)
            QCOMPARE(contentOf(TakeOver(m_office, {}).begin(PublicationKind::Feed).value_or("")),
                     "one");
    }

    void newerOneIsDueFromItsTimeOn()
    {
        put(1, "one");
        TakeOver takeOver(m_office, {});
        QVERIFY(takeOver.begin(PublicationKind::Feed));
        const QDateTime now = QDateTime::currentDateTimeUtc();
        QVERIFY(!takeOver.isDue(now));
        Announcement later = m_publisher.announce(2, "two");
        later.validFrom = now.addSecs(60);
        later = m_publisher.resigned(later);
        takeOver.store().begin(later);
        QCOMPARE(takeOver.store().append(later, "two"), QString());
        QCOMPARE(takeOver.store().accept(later), QString());
        QVERIFY(!takeOver.isDue(now));
        QVERIFY(takeOver.isDue(now.addSecs(61)));
    }

    void contentIsReadBeforeItIsTaken_data()
    {
        const Table<PublicationKind, QByteArray, QString> row("kind", "content", "fault");
        row("a feed", PublicationKind::Feed, coast(), "");
        row("a feed in another currency", PublicationKind::Feed,
            contentOf(EXAMPLE_FEEDS "/hill-valley.json"), "its currency is GBP");
        row("no feed", PublicationKind::Feed, "{", "content.json:1");
        row("drivers", PublicationKind::Drivers, drivers(100000), "");
        row("no drivers", PublicationKind::Drivers, drivers(1), "iterations");
    }

    void contentIsReadBeforeItIsTaken()
    {
        QFETCH(PublicationKind, kind);
        QFETCH(QByteArray, content);
        QFETCH(QString, fault);
        QFile target(file("content.json"));
        QVERIFY(target.open(QIODevice::WriteOnly) && target.write(content) == content.size());
        target.close();
        const QString found = TakeOver(m_office, {}).check("EUR")(kind, target.fileName());
        QVERIFY2(fault.isEmpty() ? found.isEmpty() : found.contains(fault), qPrintable(found));
    }

private:
    QString file(const QString& name) const { return m_folder->filePath(name); }

    void put(qint64 version, const QByteArray& content) const
    {
        PublicationStore store(m_office.store, "lakeside", m_publisher.key.publicKey());
        const Announcement made = m_publisher.announce(version, content);
        store.begin(made);
        QCOMPARE(store.append(made, content), QString());
        QCOMPARE(store.accept(made), QString());
    }

    const TestPublisher m_publisher;
    std::optional<QTemporaryDir> m_folder;
    config::OfficeConfig m_office;
};

Q_DECLARE_METATYPE(rivo::office::PublicationKind)

QTEST_GUILESS_MAIN(TestTakeOver)
#include "tst_take_over.moc"
