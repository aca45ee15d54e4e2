#include "OfficeUnderTest.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>
#include <vector>

using namespace rivo::backoffice;

/// The office's database: how it is made, opened and lost.
class TestOfficeStore : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        const QString problem = m_server.start();
        if (!problem.isEmpty())
            QSKIP(qPrintable(problem));
    }

    void anEmptyDatabaseGetsItsTablesOnce()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        for (int start = 0; start < 2; ++start) {
            OfficeStore store(settings);
            QVERIFY2(store.open(), qPrintable(store.problem()));
        }
        QCOMPARE(valueIn(settings, "SELECT max(version) FROM schema_version"), "3");
        QCOMPARE(valueIn(settings, "SELECT count(*) FROM vehicle"), "0");
    }

    void programsThatStartTogetherMakeThemOnce()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        std::atomic<int> opened = 0;
        std::vector<std::thread> programs;
        for (int program = 0; program < 4; ++program)
            programs.emplace_back([&] {
                OfficeStore store(settings);
                opened += int(store.open());
            });
        for (std::thread& program : programs)
            program.join();
        QCOMPARE(opened.load(), 4);
        QCOMPARE(valueIn(settings, "SELECT max(version) FROM schema_version"), "3");
    }

    void aDatabaseOfANewerProgramIsRefused()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        QVERIFY(OfficeStore(settings).open());
        valueIn(settings, "INSERT INTO schema_version VALUES (7, now())");
        OfficeStore store(settings);
        QVERIFY(!store.open());
        QCOMPARE(store.problem(), "the database has version 7, this program knows 3");
    }

    void aDatabaseThatIsMissingIsReported()
    {
        OfficeStore store(m_server.settings("nowhere"));
        QVERIFY(!store.open());
        QVERIFY2(store.problem().contains("nowhere"), qPrintable(store.problem()));
    }

    void aSessionThatReadsCannotWrite()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        QVERIFY(OfficeStore(settings).open());
        Database database(settings);
        for (const int mostSeconds : {0, 10, 0}) {
            QVERIFY2(database.openToRead(mostSeconds), qPrintable(database.problem()));
            for (const char* statement :
                 {"INSERT INTO vehicle (operator, name) VALUES ('lakeside', '4711')",
                  "DELETE FROM schema_version", "CREATE TABLE kept ()"}) {
                QVERIFY(!database.runAll({statement}));
                QVERIFY2(database.problem().contains("read-only"), qPrintable(database.problem()));
            }
            QSqlQuery* limit = database.run("SELECT current_setting('statement_timeout')");
            QVERIFY(limit != nullptr && limit->next());
            QCOMPARE(limit->value(0).toString(), mostSeconds > 0 ? "10s" : "0");
        }
        QCOMPARE(valueIn(settings, "SELECT count(*) FROM vehicle"), "0");
        QCOMPARE(valueIn(settings, "SELECT max(version) FROM schema_version"), "3");
        QVERIFY(database.open() &&
                database.run("INSERT INTO vehicle (operator, name) VALUES ('lakeside', '4711')"));
    }

    void aTransactionThatFailsHasNoEffect()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        OfficeStore store(settings);
        QVERIFY(store.open());
        QVERIFY(!store.inTransaction([&] {
            return store.lockVehicle("lakeside", "4711") &&
                   store.database().run("SELECT nothing") != nullptr;
        }));
        QCOMPARE(valueIn(settings, "SELECT count(*) FROM vehicle"), "0");
        QVERIFY(store.isAlive());
    }

    void aVehicleIsMadeOnceAndLocked()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        QVERIFY(OfficeStore(settings).open());
        std::atomic<int> inside = 0;
        std::atomic<int> most = 0;
        std::atomic<int> done = 0;
        std::vector<std::thread> programs;
        for (int program = 0; program < 4; ++program)
            programs.emplace_back([&] {
                OfficeStore store(settings);
                done += int(store.open() && store.inTransaction([&] {
                    const auto vehicle = store.lockVehicle("lakeside", "4711");
                    most = qMax(most.load(), ++inside);
                    QThread::msleep(30);
                    --inside;
                    return vehicle.has_value();
                }));
            });
        for (std::thread& program : programs)
            program.join();
        QCOMPARE(done.load(), 4);
        QCOMPARE(most.load(), 1);
        QCOMPARE(valueIn(settings, "SELECT name FROM vehicle"), "4711");
    }

    void namesAreValuesAndNotStatements()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        OfficeStore store(settings);
        const QString name = "'); DROP TABLE vehicle; --\\'\"";
        QVERIFY(store.open());
        QVERIFY(store.inTransaction([&] { return store.lockVehicle(name, name).has_value(); }));
        QCOMPARE(valueIn(settings, "SELECT name FROM vehicle"), name);
    }

    void aFaultIsKeptOnceAndCounted()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        OfficeStore store(settings);
        QVERIFY(store.open());
        const Fault fault{0,  QString::fromUtf8("a\0b", 3), {}, FaultKind::Message, -1,
                          {}, QByteArray("\0'\\\xFF", 4)};
        for (int time = 0; time < 3; ++time)
            QVERIFY(store.inTransaction([&] { return store.keep(fault); }));
        const auto kept = store.faults(false);
        QCOMPARE(kept->size(), 1);
        QCOMPARE(kept->first().times, 3);
        QCOMPARE(kept->first().kind, "message");
        QCOMPARE(valueIn(settings, "SELECT encode(bytes, 'hex') FROM fault"), "00275cff");
    }

    void faultsThatAreTooManyAreCounted()
    {
        const DatabaseSettings settings = m_server.newDatabase();
        OfficeStore store(settings);
        constexpr int extra = 5;
        QVERIFY(store.open());
        QVERIFY(store.inTransaction([&] {
            const auto vehicle = store.lockVehicle("lakeside", "4711");
            bool isKept = vehicle.has_value();
            for (int number = 0; number < OfficeStore::mostFaultsOfVehicle + extra; ++number)
                isKept = isKept && store.keep({*vehicle, "topic", QByteArray(32, 'k'),
                                               FaultKind::Fork, number, "reason", "bytes"});
            return isKept;
        }));
        const auto kept = store.faults(false);
        QCOMPARE(kept->size(), OfficeStore::mostFaultsOfVehicle + 1);
        QCOMPARE(kept->last().times, extra);
        QCOMPARE(kept->last().topic, "topic");
        QCOMPARE(kept->last().number, -1);
    }

    /// The last test: it stops the server.
    void aServerThatIsGoneIsNoticed()
    {
        OfficeStore store(m_server.newDatabase());
        QVERIFY(store.open());
        m_server.kill();
        QVERIFY(!store.isAlive());
        QVERIFY(!store.inTransaction([] { return true; }));
        QVERIFY(!store.faults(true).has_value());
        QVERIFY(!store.open());
        QVERIFY(m_server.resume());
        QVERIFY(store.open());
        QVERIFY(store.isAlive());
    }

private:
    PostgresServer m_server;
};

QTEST_GUILESS_MAIN(TestOfficeStore)
#include "tst_office_store.moc"
