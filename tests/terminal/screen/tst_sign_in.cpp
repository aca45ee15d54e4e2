#include "PageTest.h"
#include "Pointer.h"
#include "SampleDriver.h"

using rivo::terminal::Terminal;

/// Who drives, by taps: number and PIN, lock, and another driver.
class TestSignIn : public PageTest
{
    Q_OBJECT

private slots:
    void withoutDriversThereIsNoSignIn();
    void aDriverSignsIn();
    void nothingBehindThePanelGetsTaps();
    void aWrongPinIsRefused();
    void theLockAsksForThePinOnly();
    void anotherDriverTakesOver();
    void anIdleTerminalIsLocked();
    void pressesKeepItOpen();
    void openPanelsAreCovered();
    void keysHearQuickTouches();

private:
    void showPanel(int idleTime = 0);
    void signIn(const QString& number, const QString& pin);
};

void TestSignIn::showPanel(int idleTime)
{
    show(exampleFeed("coast-line"), "sell", [idleTime](Terminal::Settings& settings) {
        settings.drivers = {sampleDriver(42, "A. Nowak", "1234"),
                            sampleDriver(7, "B. Kowal", "99")};
        settings.idleTime = idleTime;
    });
    QTRY_COMPARE(m_shown->all("signInButton").size(), 1);
    m_shown->window()->grabWindow();
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
    showPanel();
    QVERIFY(!m_shown->item("signInButton")->isEnabled());
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QCOMPARE(desk().driver(), 42.0);
    QVERIFY(desk().add(0));
}

void TestSignIn::nothingBehindThePanelGetsTaps()
{
    showPanel();
    for (const char* name : {"nav-settings", "productText", "nightButton"})
        m_shown->tap(m_shown->item(name));
    QVERIFY(!m_shown->terminal().night());
    QCOMPARE(m_shown->terminal().basket()->rowCount(), 0);
    QCOMPARE(m_shown->window()->property("page").toString(), QString("sell"));
}

void TestSignIn::aWrongPinIsRefused()
{
    showPanel();
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
    showPanel();
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
    showPanel();
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
    showPanel(700);
    signIn("42", "1234");
    QTRY_COMPARE(m_shown->all("signInButton").size(), 0);
    QTRY_COMPARE(m_shown->all("signInButton").size(), 1);
}

void TestSignIn::pressesKeepItOpen()
{
    showPanel(1500);
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
    showPanel();
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
    showPanel();
    Pointer pointer(m_shown->window(), true);
    for (int press = 0; press < 6; ++press)
        pointer.tap(middleOf(m_shown->item("key-5")));
    QCOMPARE(m_shown->text("numberFieldText"), QString("555555"));
}

QTEST_MAIN(TestSignIn)
#include "tst_sign_in.moc"
