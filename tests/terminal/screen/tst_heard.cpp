#include "../sound/FakePlayer.h"
#include "PageTest.h"
#include "Pointer.h"
#include "SampleDriver.h"

using rivo::terminal::Terminal;
using Act = std::function<void(ScreenUnderTest&, Pointer&)>;
Q_DECLARE_METATYPE(Act)

/// What is heard for what happens on the screen.
class TestHeard : public PageTest
{
    Q_OBJECT

public:
    TestHeard() : PageTest({{1024, 600}}) {}

private slots:
    void everyEventHasItsSound_data();
    void everyEventHasItsSound();
    void switchOnTheScreen();
    void startSettings_data();
    void startSettings();

private:
    void open(
        const QString& page,
        const std::function<void(Terminal::Settings&)>& change = [](Terminal::Settings&) {})
    {
        m_player = std::make_shared<FakePlayer>();
        show(exampleFeed("coast-line"), page, [&](Terminal::Settings& settings) {
            settings.soundPlayer = m_player;
            change(settings);
        });
    }
    Heard heard()
    {
        QCoreApplication::processEvents();
        return m_player->heard;
    }

    std::shared_ptr<FakePlayer> m_player;
};

void TestHeard::everyEventHasItsSound_data()
{
    QTest::addColumn<bool>("isTouch");
    QTest::addColumn<bool>("needsSignIn");
    QTest::addColumn<Act>("act");
    QTest::addColumn<Heard>("heard");
    const auto row = [](const char* what, const Act& act, const Heard& heard,
                        bool needsSignIn = false) {
        for (const bool isTouch : {false, true})
            QTest::addRow("%s, by %s", what, isTouch ? "touch" : "mouse")
                << isTouch << needsSignIn << act << heard;
    };
    const auto tapOn = [](const QString& name) {
        return [name](ScreenUnderTest& shown, Pointer& pointer) {
            QTRY_VERIFY(shown.item(name) != nullptr);
            shown.window()->grabWindow();
            pointer.tap(middleOf(shown.item(name)));
        };
    };
    row("a tile is tapped", tapOn("productText"), {Sound::Tap});
    row(
        "a tile is tapped three times",
        [tapOn](ScreenUnderTest& shown, Pointer& pointer) {
            for (int i = 0; i < 3; ++i)
                tapOn("productText")(shown, pointer);
        },
        Heard(3, Sound::Tap));
    row("the basket is paid",
        [tapOn](ScreenUnderTest& shown, Pointer& pointer) {
            QVERIFY(shown.terminal().desk()->add(0));
            tapOn("payCash")(shown, pointer);
        },
        {Sound::Payment});
    row("a sale is refused",
        [](ScreenUnderTest& shown, Pointer&) { QVERIFY(!shown.terminal().desk()->pay({})); },
        {Sound::Refusal});
    row("several calls are refused at once",
        [](ScreenUnderTest& shown, Pointer&) {
            for (int i = 0; i < 4; ++i)
                QVERIFY(!shown.terminal().desk()->remove(7));
        },
        {Sound::Refusal});
    row(
        "a driver is refused",
        [](ScreenUnderTest& shown, Pointer&) {
            QVERIFY(!shown.terminal().drivers()->signIn("42", "0000"));
        },
        {Sound::Refusal}, true);
    row("the tiles are dragged",
        [](ScreenUnderTest& shown, Pointer& pointer) {
            const QPoint from = middleOf(shown.item("productText"));
            pointer.drag(from, from - QPoint(0, 120));
        },
        {});
}

void TestHeard::everyEventHasItsSound()
{
    QFETCH(bool, isTouch);
    QFETCH(bool, needsSignIn);
    QFETCH(Act, act);
    QFETCH(Heard, heard);
    open("sell", [&](Terminal::Settings& settings) {
        if (needsSignIn)
            settings.drivers = {sampleDriver(42, "A. Nowak", "1234")};
    });
    Pointer pointer(m_shown->window(), isTouch);
    act(*m_shown, pointer);
    QCOMPARE(this->heard(), heard);
}

void TestHeard::switchOnTheScreen()
{
    open("settings");
    QTRY_VERIFY(m_shown->item("soundSwitch") != nullptr);
    QCOMPARE(m_shown->item("soundSwitch")->property("checked"), QVariant(true));
    m_shown->tap("soundSwitch");
    QVERIFY(!m_shown->terminal().sounds()->isOn());
    QVERIFY(!desk().pay({}));
    QCOMPARE(heard(), Heard());
    m_shown->tap("soundSwitch");
    QCOMPARE(heard(), Heard{Sound::Tap});
    QVERIFY(!desk().pay({}));
    QCOMPARE(heard(), (Heard{Sound::Tap, Sound::Refusal}));
}

void TestHeard::startSettings_data()
{
    QTest::addColumn<bool>("isConfigured");
    QTest::addColumn<bool>("isSilent");
    QTest::addColumn<Heard>("heard");
    QTest::newRow("as it is") << true << false << Heard{Sound::Refusal};
    QTest::newRow("off by the configuration") << false << false << Heard();
    QTest::newRow("off by the command line") << true << true << Heard();
}

void TestHeard::startSettings()
{
    QFETCH(bool, isConfigured);
    QFETCH(bool, isSilent);
    QFETCH(Heard, heard);
    open("sell", [&](Terminal::Settings& settings) {
        settings.config.sounds = isConfigured;
        settings.isSilent = isSilent;
    });
    QVERIFY(!desk().pay({}));
    QCOMPARE(this->heard(), heard);
}

QTEST_MAIN(TestHeard)
#include "tst_heard.moc"
