#include "../ScreenUnderTest.h"
#include "Pointer.h"

#include <QPasswordDigestor>
#include <QtTest>

using rivo::drivers::Driver;
using rivo::sales::SalesDesk;
using rivo::terminal::Terminal;

namespace
{

/// One iteration: fast.
Driver driver(qint64 number, const QString& name, const QByteArray& pin)
{
    return {number, name, 1, "salt",
            QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, pin, "salt", 1, 32)};
}

} // namespace

/// Who drives, by taps: number and PIN, lock, and another driver.
class TestSignIn : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        prepareScreens();
        m_complaints = std::make_unique<Complaints>();
    }
    void initTestCase_data();
    void init();
    void cleanup()
    {
        m_shown.reset();
        QCOMPARE(Complaints::take(), QStringList());
    }
    void cleanupTestCase() { m_complaints.reset(); }

    void withoutDriversThereIsNoSignIn();
    void aDriverSignsIn();
    void nothingBehindThePanelHearsTaps();
    void aWrongPinIsRefused();
    void theLockAsksForThePinOnly();
    void anotherDriverTakesOver();
    void anIdleTerminalIsLocked();
    void pressesKeepItOpen();
    void openPanelsAreCovered();
    void keysHearQuickTouches();

private:
    SalesDesk& desk() { return *m_shown->terminal().desk(); }
    void show(int idleTime = 0);
    void enter(const QString& digits);
    void signIn(const QString& number, const QString& pin);

    QSize m_size;
    std::unique_ptr<Complaints> m_complaints;
    std::unique_ptr<ScreenUnderTest> m_shown;
};

void TestSignIn::initTestCase_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize(800, 480), QSize(1280, 800)})
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
}

void TestSignIn::init()
{
    QFETCH_GLOBAL(QSize, size);
    m_size = size;
}

void TestSignIn::show(int idleTime)
{
    m_shown = std::make_unique<ScreenUnderTest>(
        exampleFeed("coast-line"), "sell", m_size, [idleTime](Terminal::Settings& settings) {
            settings.drivers = {driver(42, "A. Nowak", "1234"), driver(7, "B. Kowal", "99")};
            settings.idleTime = idleTime;
        });
    QTRY_COMPARE(m_shown->all("signInButton").size(), 1);
    m_shown->window()->grabWindow();
}

void TestSignIn::enter(const QString& digits)
{
    for (const QChar digit : digits)
        m_shown->tap("key-" + QString(digit));
}

void TestSignIn::signIn(const QString& number, const QString& pin)
{
    enter(number);
    m_shown->tap("signInButton");
    enter(pin);
    m_shown->tap("signInButton");
}

void TestSignIn::withoutDriversThereIsNoSignIn()
{
    ScreenUnderTest shown(exampleFeed("coast-line"), "sell", m_size);
    QCOMPARE(shown.all("signInButton").size(), 0);
    QCOMPARE(shown.all("lockButton").size(), 0);
    QVERIFY(shown.terminal().desk()->add(0));
}

void TestSignIn::aDriverSignsIn()
{
    show();
    QVERIFY(!m_shown->item("signInButton")->isEnabled());
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QCOMPARE(desk().driver(), 42.0);
    QVERIFY(desk().add(0));
}

void TestSignIn::nothingBehindThePanelHearsTaps()
{
    show();
    for (const char* name : {"nav-settings", "productText", "nightButton"})
        m_shown->tap(m_shown->item(name));
    QVERIFY(!m_shown->terminal().night());
    QCOMPARE(m_shown->terminal().basket()->rowCount(), 0);
    QCOMPARE(m_shown->window()->property("page").toString(), QString("sell"));
}

void TestSignIn::aWrongPinIsRefused()
{
    show();
    signIn("42", "4321");
    QTRY_COMPARE(m_shown->text("signInRefusal"), QString("Number or PIN is wrong."));
    QCOMPARE(m_shown->text("pinFieldText"), QString()); // begins anew
    QCOMPARE(desk().driver(), 0.0);
    enter("1234");
    QCOMPARE(m_shown->text("pinFieldText"), QString::fromUtf8("●●●●"));
    m_shown->tap("signInButton");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
}

void TestSignIn::theLockAsksForThePinOnly()
{
    show();
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QVERIFY(desk().add(0));
    m_shown->tap("lockButton");
    QTRY_COMPARE(m_shown->text("signInTitle"), QString("Locked: A. Nowak"));
    QCOMPARE(m_shown->all("numberField").size(), 0);
    QCOMPARE(m_shown->text("pinFieldText"), QString());
    enter("1234");
    m_shown->tap("signInButton");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QCOMPARE(m_shown->terminal().basket()->rowCount(), 1);
}

void TestSignIn::anotherDriverTakesOver()
{
    show();
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QVERIFY(desk().add(0));
    m_shown->tap("lockButton");
    m_shown->tap("otherDriver");
    signIn("7", "99");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QCOMPARE(desk().driver(), 7.0);
    QCOMPARE(m_shown->terminal().basket()->rowCount(), 1);
}

void TestSignIn::anIdleTerminalIsLocked()
{
    show(700);
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QTRY_COMPARE(m_shown->all("signInButton").size(), 1);
}

void TestSignIn::pressesKeepItOpen()
{
    show(1500);
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    for (const bool isTouch : {false, true}) {
        Pointer pointer(m_shown->window(), isTouch);
        for (int press = 0; press < 25; ++press) {
            pointer.tap(middleOf(m_shown->item("nightButton")));
            QVERIFY(m_shown->all("signInButton").isEmpty());
        }
    }
}

void TestSignIn::openPanelsAreCovered()
{
    show();
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QVERIFY(desk().add(0));
    m_shown->tap("clearButton");
    QTRY_COMPARE(m_shown->all("confirmButton").size(), 1);
    const QPoint place = middleOf(m_shown->item("confirmButton"));
    m_shown->terminal().drivers()->lock();
    QTRY_COMPARE(m_shown->all("signInButton").size(), 1);
    QTest::mouseClick(m_shown->window(), Qt::LeftButton, {}, place);
    QCOMPARE(m_shown->terminal().basket()->rowCount(), 1);
}

void TestSignIn::keysHearQuickTouches()
{
    show();
    Pointer pointer(m_shown->window(), true);
    for (int press = 0; press < 6; ++press)
        pointer.tap(middleOf(m_shown->item("key-5")));
    QCOMPARE(m_shown->text("numberFieldText"), QString("555555"));
}

QTEST_MAIN(TestSignIn)
#include "tst_sign_in.moc"
