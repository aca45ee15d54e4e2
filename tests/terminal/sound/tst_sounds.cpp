#include "FakePlayer.h"

#include <Loudspeaker.h>
#include <SoundThread.h>
#include <Sounds.h>
#include <Tones.h>

#include <QSemaphore>
#include <QtEndian>
#include <QtTest>

#include <atomic>
#include <cstdlib>

using namespace rivo::sound;

namespace
{

QVector<int> firstChannel(const QByteArray& samples)
{
    QVector<int> values;
    for (int at = 0; at < samples.size(); at += 2 * channels)
        values.append(qFromLittleEndian<qint16>(samples.constData() + at));
    return values;
}

/// A device that blocks until it is let go.
struct Device
{
    QSemaphore entered;
    QSemaphore mayGoOn;
    Heard heard;
    std::atomic<int> destroyed{0};
};

class BlockingPlayer : public SoundPlayer
{
public:
    explicit BlockingPlayer(Device& device) : m_device(device) {}
    ~BlockingPlayer() override { ++m_device.destroyed; }
    void play(Sound sound) override
    {
        m_device.heard.append(sound);
        m_device.entered.release();
        m_device.mayGoOn.acquire();
    }

private:
    Device& m_device;
};

} // namespace

class TestSounds : public QObject
{
    Q_OBJECT

private slots:
    void mostImportantIsHeardOnce_data();
    void mostImportantIsHeardOnce();
    void whatComesLaterIsHeardToo();
    void switchSilencesWhatHappened();
    void switchAnnouncesChangesOnly();
    void withoutPlayerNothingHappens();
    void blockedDeviceDelaysNobody();
    void deviceIsAskedInItsThread();
    void toneIsShortSoftAndItsOwn_data();
    void toneIsShortSoftAndItsOwn();
    void loudspeakerNeedsNoDevice();
};

void TestSounds::mostImportantIsHeardOnce_data()
{
    QTest::addColumn<Heard>("happened");
    QTest::addColumn<bool>("isOn");
    QTest::addColumn<Heard>("heard");
    const auto row = [](const char* what, const Heard& happened, const Heard& heard,
                        bool isOn = true) { QTest::newRow(what) << happened << isOn << heard; };
    row("a tap", {Sound::Tap}, {Sound::Tap});
    row("a payment", {Sound::Payment}, {Sound::Payment});
    row("a refusal", {Sound::Refusal}, {Sound::Refusal});
    row("a tap that pays", {Sound::Tap, Sound::Payment}, {Sound::Payment});
    row("a tap that is refused", {Sound::Tap, Sound::Refusal}, {Sound::Refusal});
    row("a refusal before a tap", {Sound::Refusal, Sound::Tap}, {Sound::Refusal});
    row("a payment, and something is refused", {Sound::Payment, Sound::Refusal}, {Sound::Refusal});
    row("several refusals at once", Heard(5, Sound::Refusal), {Sound::Refusal});
    row("everything, switched off", {Sound::Tap, Sound::Payment, Sound::Refusal}, {}, false);
}

void TestSounds::mostImportantIsHeardOnce()
{
    QFETCH(Heard, happened);
    QFETCH(bool, isOn);
    QFETCH(Heard, heard);
    const auto player = std::make_shared<FakePlayer>();
    Sounds sounds(player, isOn);
    for (const Sound sound : happened) {
        if (sound == Sound::Tap)
            sounds.tap();
        else if (sound == Sound::Payment)
            sounds.pay();
        else
            sounds.refuse();
    }
    QCOMPARE(player->heard, Heard());
    QCoreApplication::processEvents();
    QCOMPARE(player->heard, heard);
}

void TestSounds::whatComesLaterIsHeardToo()
{
    const auto player = std::make_shared<FakePlayer>();
    Sounds sounds(player, true);
    for (int i = 0; i < 3; ++i) {
        sounds.tap();
        QCoreApplication::processEvents();
    }
    QCOMPARE(player->heard, Heard(3, Sound::Tap));
}

void TestSounds::switchSilencesWhatHappened()
{
    const auto player = std::make_shared<FakePlayer>();
    Sounds sounds(player, true);
    sounds.tap();
    sounds.setOn(false);
    QCoreApplication::processEvents();
    QCOMPARE(player->heard, Heard());
    sounds.setOn(true);
    sounds.tap();
    QCoreApplication::processEvents();
    QCOMPARE(player->heard, Heard{Sound::Tap});
}

void TestSounds::switchAnnouncesChangesOnly()
{
    Sounds sounds(nullptr, true);
    QSignalSpy spy(&sounds, &Sounds::onChanged);
    sounds.setOn(true);
    QCOMPARE(spy.size(), 0);
    sounds.setOn(false);
    QCOMPARE(spy.size(), 1);
    QVERIFY(!sounds.isOn());
}

void TestSounds::withoutPlayerNothingHappens()
{
    Sounds sounds(nullptr, true);
    sounds.refuse();
    QCoreApplication::processEvents();
    QVERIFY(sounds.isOn());
}

/// The device is blocked during all but the first call; the most important sound of them follows.
void TestSounds::blockedDeviceDelaysNobody()
{
    Device device;
    {
        SoundThread thread([&device] { return std::make_unique<BlockingPlayer>(device); });
        thread.play(Sound::Tap);
        device.entered.acquire();
        thread.play(Sound::Tap);
        thread.play(Sound::Refusal);
        for (int i = 0; i < 1000; ++i)
            thread.play(Sound::Payment);
        QCOMPARE(device.heard, Heard{Sound::Tap});
        device.mayGoOn.release(2);
        device.entered.acquire();
    }
    QCOMPARE(device.heard, (Heard{Sound::Tap, Sound::Refusal}));
    QCOMPARE(device.destroyed.load(), 1);
}

void TestSounds::deviceIsAskedInItsThread()
{
    QThread* made = nullptr;
    QSemaphore isMade;
    {
        SoundThread thread([&] {
            made = QThread::currentThread();
            isMade.release();
            return std::make_unique<FakePlayer>();
        });
        QVERIFY(!isMade.tryAcquire(1, 50)); // before the first sound
        thread.play(Sound::Tap);
        isMade.acquire();
    }
    QVERIFY(made != nullptr);
    QVERIFY(made != QThread::currentThread());
}

void TestSounds::toneIsShortSoftAndItsOwn_data()
{
    QTest::addColumn<int>("sound");
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("tap") << int(Sound::Tap) << 25;
    QTest::newRow("payment") << int(Sound::Payment) << 160;
    QTest::newRow("refusal") << int(Sound::Refusal) << 180;
}

void TestSounds::toneIsShortSoftAndItsOwn()
{
    QFETCH(int, sound);
    QFETCH(int, milliseconds);
    const QVector<int> values = firstChannel(samplesOf(static_cast<Sound>(sound)));
    QCOMPARE(values.size(), milliseconds * samplesPerSecond / 1000);
    QCOMPARE(values.first(), 0);
    QCOMPARE(values.last(), 0);
    int loudest = 0;
    int largestStep = 0;
    for (int i = 1; i < values.size(); ++i) {
        loudest = std::max(loudest, std::abs(values.at(i)));
        largestStep = std::max(largestStep, std::abs(values.at(i) - values.at(i - 1)));
    }
    QVERIFY2(loudest > 8000 && loudest < 32767, qPrintable(QString::number(loudest)));
    QVERIFY2(largestStep < loudest / 4, qPrintable(QString::number(largestStep)));
}

/// On this machine there may be a sound device or none; both are the same to the caller.
void TestSounds::loudspeakerNeedsNoDevice()
{
    QElapsedTimer timer;
    timer.start();
    {
        SoundThread thread([] { return std::make_unique<Loudspeaker>(); });
        for (const Sound sound : {Sound::Tap, Sound::Refusal, Sound::Payment})
            thread.play(sound);
    }
    QVERIFY(timer.elapsed() < 10000);
}

QTEST_GUILESS_MAIN(TestSounds)
#include "tst_sounds.moc"
