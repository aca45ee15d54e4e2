#include "Play.h"
#include "SignalLog.h"
#include "Table.h"

#include <DriverDesk.h>

#include <QTemporaryDir>
#include <QTest>

using namespace rivo::drivers;

namespace
{

/// PBKDF2 of "password" and of "password" again, one iteration: fast.
Driver driver(qint64 number, const QString& name)
{
    return {
        number, name, 1, "salt",
        QByteArray::fromHex("120fb6cffcf8b32c43e7225256c4f837a86548c92ccc35480805987cb70be17b")};
}

const QVector<Driver> two{driver(42, "A. Nowak"), driver(7, "B. Kowal")};
const QString pin = QStringLiteral("password");
const QStringList wrong{"refused(Number or PIN is wrong.)"};

QString text(const DriverDesk& desk)
{
    return QStringLiteral("%1 %2%3%4")
        .arg(desk.number())
        .arg(desk.name(), desk.isSignedIn() ? ", signed in" : "",
             desk.isLocked() ? ", locked" : "");
}

} // namespace

class TestDriverDesk : public QObject
{
    Q_OBJECT

private slots:
    void withoutDriversThereIsNoSignIn()
    {
        DriverDesk desk({});
        QVERIFY(!desk.isRequired());
        QCOMPARE(text(desk), "0 ");
        SignalLog log(&desk);
        QVERIFY(!desk.signIn("42", pin));
        QCOMPARE(log.take(), QStringList("refused(There are no drivers to sign in.)"));
        QVERIFY(!desk.unlock(pin));
        QCOMPARE(log.take(), QStringList("refused(No driver is signed in.)"));
        desk.lock();
        desk.signOut();
        QCOMPARE(log.take(), QStringList());
        QCOMPARE(text(desk), "0 ");
    }

    void driverSignsInLocksAndUnlocks()
    {
        DriverDesk desk(two);
        SignalLog log(&desk);
        QVERIFY(desk.isRequired());
        QCOMPARE(text(desk), "0 , locked");
        QVERIFY(desk.signIn(" 42 ", pin));
        QCOMPARE(text(desk), "42 A. Nowak, signed in");
        desk.lock();
        desk.lock();
        QCOMPARE(text(desk), "42 A. Nowak, signed in, locked");
        QVERIFY(desk.unlock(pin));
        QCOMPARE(text(desk), "42 A. Nowak, signed in");
        desk.signOut();
        desk.signOut();
        QCOMPARE(text(desk), "0 , locked");
        QCOMPARE(log.take(), (QStringList{"changed()", "changed()", "changed()", "changed()"}));
    }

    void anotherDriverTakesOver()
    {
        DriverDesk desk(two);
        QVERIFY(desk.signIn("42", pin));
        desk.lock();
        QVERIFY(desk.signIn("7", pin));
        QCOMPARE(text(desk), "7 B. Kowal, signed in");
    }

    void wrongSignInsChangeNothing_data()
    {
        const Table<QString, QString> row("number", "given");
        row("wrong PIN", "42", "1234");
        row("no PIN", "42", "");
        row("unknown number", "43", pin);
        row("no number", "", pin);
        row("number 0", "0", pin);
        row("text", "A. Nowak", pin);
        row("a PIN that is too long", "42", QString(65, '1'));
    }

    void wrongSignInsChangeNothing()
    {
        QFETCH(QString, number);
        QFETCH(QString, given);
        DriverDesk desk(two);
        QVERIFY(desk.signIn("7", pin));
        desk.lock();
        SignalLog log(&desk);
        QVERIFY(!desk.signIn(number, given));
        QCOMPARE(log.take(), wrong);
        QCOMPARE(text(desk), "7 B. Kowal, signed in, locked");
    }

    void wrongPinsAreFollowedByAWait()
    {
        DriverDesk desk(two);
        desk.setFirstWait(300);
        SignalLog log(&desk);
        for (int attempt = 0; attempt < 3; ++attempt) {
            QCOMPARE(desk.secondsToWait("42"), 0);
            QVERIFY(!desk.signIn("42", "1234"));
            QCOMPARE(log.take(), wrong);
        }
        QCOMPARE(desk.secondsToWait("42"), 1);
        QVERIFY(!desk.signIn("42", pin)); // the right one is not tried either
        QCOMPARE(log.take(), QStringList("refused(Too many wrong attempts. Wait 1 second(s).)"));
        QVERIFY(desk.signIn("7", pin)); // others need not wait
        QTRY_COMPARE(desk.secondsToWait("42"), 0);
        QVERIFY(!desk.signIn("42", "1234"));
        log.take();
        QTest::qWait(320); // the wait is twice as long now
        QCOMPARE(desk.secondsToWait("42"), 1);
        QTRY_COMPARE(desk.secondsToWait("42"), 0);
        QVERIFY(desk.signIn("42", pin));
        for (int attempt = 0; attempt < 2; ++attempt) { // counted from the start again
            QVERIFY(!desk.signIn("42", "1234"));
            QCOMPARE(desk.secondsToWait("42"), 0);
        }
    }

    void waitGrowsToALimit()
    {
        DriverDesk desk(two);
        desk.setFirstWait(1);
        for (int attempt = 0; attempt < 12; ++attempt) {
            QTRY_COMPARE(desk.secondsToWait("42"), 0);
            QVERIFY(!desk.signIn("42", "1234"));
        }
        desk.setFirstWait(5000);
        QTRY_COMPARE(desk.secondsToWait("42"), 0);
        QVERIFY(!desk.signIn("42", "1234"));
        QCOMPARE(desk.secondsToWait("42"), 320); // 5 s times 64
    }

    void unknownNumbersWaitTogether()
    {
        DriverDesk desk(two);
        for (const char* number : {"1", "2", "x"})
            QVERIFY(!desk.signIn(number, pin));
        QCOMPARE(desk.secondsToWait("4"), 5);
        QCOMPARE(desk.secondsToWait("42"), 0);
    }

    void locksAfterIdleTime()
    {
        DriverDesk desk(two);
        desk.setIdleTime(200);
        QTest::qWait(250); // no driver is signed in who could be locked out
        QVERIFY(desk.signIn("42", pin));
        SignalLog log(&desk);
        for (int touches = 0; touches < 6; ++touches) {
            QTest::qWait(60);
            desk.touch();
        }
        QVERIFY(!desk.isLocked());
        QTRY_VERIFY(desk.isLocked());
        QCOMPARE(log.take(), QStringList("changed()"));
        desk.touch(); // does not unlock
        QVERIFY(desk.isLocked());
        QVERIFY(desk.unlock(pin));
        desk.setIdleTime(0);
        QTest::qWait(250);
        QVERIFY(!desk.isLocked());
    }

    void deskOfSalesFollowsAndItsBasketStays()
    {
        const QTemporaryDir folder;
        Counter counter(folder.filePath("journal.db"));
        DriverDesk desk(two);
        QVERIFY(play(counter, "adult"));
        desk.control(counter.desk);
        QVERIFY(counter.desk.isLocked());
        QVERIFY(!play(counter, "child"));
        QVERIFY(desk.signIn("42", pin));
        QVERIFY(play(counter, "child"));
        desk.lock();
        QVERIFY(!play(counter, "cash"));
        QVERIFY(desk.signIn("7", pin));
        QCOMPARE(counter.desk.driverName(), "B. Kowal");
        QCOMPARE(counter.prices(), (QVector<qint64>{190, 95}));
        QVERIFY(play(counter, "cash end"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT DISTINCT driver FROM record"), QStringList("7"));
        desk.signOut();
        QCOMPARE(counter.desk.driver(), 0.0);
        QVERIFY(counter.desk.isLocked());
    }

    void withoutDriversTheDeskOfSalesIsOpen()
    {
        const QTemporaryDir folder;
        Counter counter(folder.filePath("journal.db"));
        DriverDesk desk({});
        desk.control(counter.desk);
        QVERIFY(play(counter, "adult cash end"));
        QCOMPARE(rowsOf(onlyConnection(), "SELECT DISTINCT driver FROM record"), QStringList("0"));
    }
};

QTEST_GUILESS_MAIN(TestDriverDesk)
#include "tst_driver_desk.moc"
