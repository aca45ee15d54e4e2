#include "AnswerText.h"
#include "VirtualCard.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <functional>
#include <memory>

using namespace rivo::payment;

namespace
{

/// How long a silent card terminal is listened to, in milliseconds: longer than any machine is busy
/// with something else, or short for tests that wait for the end of it.
constexpr int patience = 20000;
constexpr int impatience = 250;

/// A terminal of ours at a virtual one.
struct Pair
{
    explicit Pair(const QStringList& options = {}, int silence = patience)
        : card(options), terminal(card.settings(silence))
    {
        QObject::connect(&terminal, &PaymentTerminal::answered,
                         [this](const Answer& answer) { answers.append(text(answer)); });
        terminal.start();
        isReady();
    }
    bool isReady()
    {
        return QTest::qWaitFor([this] { return terminal.fault().isEmpty(); }, patience);
    }
    /// What is answered to what was just asked.
    QString answer()
    {
        const int before = answers.size();
        return QTest::qWaitFor([&] { return answers.size() > before; }, patience) ? answers.last()
                                                                                  : "nothing";
    }
    /// Charges, again if an answer came too late. `prepare` comes before each attempt.
    bool charge(
        qint64 amount, const std::function<bool()>& prepare = [] { return true; })
    {
        const QString done = QStringLiteral("Approved %1 ").arg(amount);
        for (int attempt = 0; attempt < 20; ++attempt) {
            if (!prepare() || !isReady() || !terminal.authorise(amount))
                return false;
            if (answer().startsWith(done))
                return true;
        }
        return false;
    }
    /// The last receipt, as often as it takes to get it.
    QString last()
    {
        for (int attempt = 0; attempt < 20; ++attempt) {
            if (!isReady() || !terminal.askLastReceipt())
                return "not ready";
            const QString got = answer();
            if (got != "Unknown")
                return got;
        }
        return "Unknown";
    }

    VirtualCard card;
    ZvtTerminal terminal;
    QStringList answers;
};

} // namespace

/// What happens between this terminal and one for cards, over a real connection.
class TestZvtTerminal : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_patientPair =
            std::make_unique<Pair>(QStringList{"--books", m_folder.filePath("patient")});
        m_impatientPair = std::make_unique<Pair>(
            QStringList{"--books", m_folder.filePath("impatient")}, impatience);
    }

    void aPaymentIsApproved()
    {
        Pair pair;
        QCOMPARE(pair.terminal.fault(), QString());
        QCOMPARE(pair.terminal.terminalId(), QString("12345678"));
        QStringList statuses;
        connect(&pair.terminal, &PaymentTerminal::statusTextChanged, this,
                [&] { statuses.append(pair.terminal.statusText()); });
        std::optional<Receipt> receipt;
        connect(&pair.terminal, &PaymentTerminal::answered, this,
                [&](const Answer& answer) { receipt = answer.receipt; });
        QVERIFY(pair.terminal.authorise(190));
        QVERIFY(pair.terminal.isBusy());
        QCOMPARE(pair.answer(), QString("Approved 190 1/1"));
        QVERIFY(!pair.terminal.isBusy());
        QCOMPARE(statuses, (QStringList{"Present the card", "Please wait", ""}));
        QCOMPARE(receipt->card, QString("girocard **** 1234"));
        QCOMPARE(receipt->terminalId, QString("12345678"));
        QVERIFY(qAbs(receipt->at.secsTo(QDateTime::currentDateTime())) < 100);
        QCOMPARE(pair.card.books(), QStringList("payment 190"));
    }

    void everythingElseIsDone()
    {
        Pair pair;
        QCOMPARE(pair.last(), QString("Declined: The card terminal cannot do this."));
        QVERIFY(pair.terminal.authorise(190));
        QCOMPARE(pair.answer(), QString("Approved 190 1/1"));
        QVERIFY(pair.terminal.authorise(95));
        QCOMPARE(pair.answer(), QString("Approved 95 2/2"));
        QVERIFY(pair.terminal.reverse(1, 190));
        QCOMPARE(pair.answer(), QString("Approved 190 3/3"));
        QVERIFY(pair.terminal.reverse(1, 190));
        QCOMPARE(pair.answer(), QString("Approved before"));
        QVERIFY(pair.terminal.reverse(77, 190));
        QCOMPARE(pair.answer(), QString("Declined: The payment cannot be taken back."));
        QVERIFY(pair.terminal.refund(5));
        QCOMPARE(pair.answer(), QString("Approved 5 4/4"));
        QCOMPARE(pair.last(), QString("Approved 5 4/4"));
        QVERIFY(pair.terminal.endOfDay());
        QCOMPARE(pair.answer(), QString("Approved 90"));
        QVERIFY(pair.terminal.endOfDay());
        QCOMPARE(pair.answer(), QString("Approved 0"));
        QCOMPARE(pair.card.books(), (QStringList{"payment 190", "payment 95", "reversal 190",
                                                 "refund 5", "day 90", "day 0"}));
    }

    void invalidRequestsAreRefused_data()
    {
        QTest::addColumn<QString>("request");
        for (const char* request :
             {"nothing is charged", "a negative amount is charged", "too much is charged",
              "nothing is refunded", "receipt 0 is reversed", "receipt 10000 is reversed",
              "nothing is reversed", "nothing is stopped"})
            QTest::newRow(request) << request;
    }
    void invalidRequestsAreRefused()
    {
        QFETCH(QString, request);
        Pair pair;
        QSignalSpy changed(&pair.terminal, &PaymentTerminal::changed);
        QSignalSpy status(&pair.terminal, &PaymentTerminal::statusTextChanged);
        ZvtTerminal& terminal = pair.terminal;
        const bool isAccepted =
            request == "nothing is charged"             ? terminal.authorise(0)
            : request == "a negative amount is charged" ? terminal.authorise(-1)
            : request == "too much is charged" ? terminal.authorise(PaymentTerminal::mostAmount + 1)
            : request == "nothing is refunded" ? terminal.refund(0)
            : request == "receipt 0 is reversed"     ? terminal.reverse(0, 1)
            : request == "receipt 10000 is reversed" ? terminal.reverse(10000, 1)
            : request == "nothing is reversed"       ? terminal.reverse(1, 0)
                                                     : terminal.abort();
        QVERIFY(!isAccepted);
        QTest::qWait(20);
        QCOMPARE(changed.count(), 0);
        QCOMPARE(status.count(), 0);
        QCOMPARE(pair.answers, QStringList());
        QCOMPARE(pair.card.books(), QStringList());
    }

    void oneThatIsBusyOrNotThereRefusesEverything()
    {
        Pair pair({"--work", "30"});
        QVERIFY(pair.terminal.authorise(190));
        QVERIFY(!pair.terminal.authorise(95));
        QVERIFY(!pair.terminal.reverse(1, 190));
        QVERIFY(!pair.terminal.refund(5));
        QVERIFY(!pair.terminal.endOfDay());
        QVERIFY(!pair.terminal.askLastReceipt());
        QCOMPARE(pair.answer(), QString("Approved 190 1/1"));
        QCOMPARE(pair.answers.size(), 1);

        ZvtTerminal absent(pair.card.settings(patience));
        QSignalSpy answered(&absent, &PaymentTerminal::answered);
        QSignalSpy changed(&absent, &PaymentTerminal::changed);
        QCOMPARE(absent.fault(), QString("No connection to the card terminal"));
        QVERIFY(!absent.authorise(95));
        QVERIFY(!absent.endOfDay());
        QVERIFY(!absent.abort());
        QCOMPARE(answered.count(), 0);
        QCOMPARE(changed.count(), 0);
    }

    void settingsThatCannotWorkAreAFault()
    {
        ZvtSettings settings;
        settings.host = "127.0.0.1";
        settings.currency = "XXX";
        ZvtTerminal foreign(settings);
        foreign.start();
        QCOMPARE(foreign.fault(), QString("The card terminal cannot take XXX."));
        for (const char* password : {"12345", "1234567", "12345a", "-12345"}) {
            settings.currency = "EUR";
            settings.password = password;
            ZvtTerminal terminal(settings);
            terminal.start();
            QCOMPARE(terminal.fault(),
                     QString("The password of the card terminal is not six digits."));
        }
    }

    void aPaymentCanBeStopped()
    {
        Pair pair({"--work", "60"});
        QVERIFY(pair.terminal.authorise(190));
        QVERIFY(pair.terminal.abort());
        QVERIFY(!pair.terminal.abort());
        QCOMPARE(pair.answer(), QString("Declined: The payment was stopped."));
        QCOMPARE(pair.card.books(), QStringList());
    }

    void aDeclinedPaymentHasAReason()
    {
        Pair pair;
        QVERIFY(pair.card.say("decline:78"));
        QVERIFY(pair.terminal.authorise(190));
        QCOMPARE(pair.answer(), QString("Declined: The card has expired."));
        QCOMPARE(pair.last(), QString("Declined: The card terminal cannot do this."));
    }

    /// Whatever happens at any step, the last receipt says what is in the books.
    void everyFaultAtEveryStepIsCleared_data()
    {
        QTest::addColumn<QByteArray>("fault");
        QTest::addColumn<QString>("request");
        for (const char* request : {"payment", "reversal", "refund", "day"}) {
            for (const char* fault : {"drop", "silence", "garbage", "delay", "power"}) {
                for (const char* step : {"ask", "ack", "work", "book", "info", "done"}) {
                    const QByteArray word = QByteArray(fault) + '@' + step;
                    QTest::newRow(request + (' ' + word)) << word << QString(request);
                }
            }
        }
    }
    void everyFaultAtEveryStepIsCleared()
    {
        QFETCH(QByteArray, fault);
        QFETCH(QString, request);
        const bool isSilent = fault.startsWith("silence") || fault.startsWith("garbage");
        Pair& pair = isSilent ? *m_impatientPair : *m_patientPair;
        QVERIFY(pair.charge(190, [&] { return pair.card.say("forget"); }));
        QCOMPARE(pair.answers.last(), QString("Approved 190 1/1"));
        QVERIFY(pair.card.say(fault));
        QVERIFY(request == "payment"    ? pair.terminal.authorise(95)
                : request == "reversal" ? pair.terminal.reverse(1, 190)
                : request == "refund"   ? pair.terminal.refund(95)
                                        : pair.terminal.endOfDay());
        const QString answer = pair.answer();
        const QString last = pair.last();
        const QStringList books = pair.card.books();
        const int amount = request == "reversal" ? 190 : 95;
        const bool isBooked = books.size() == 2;
        const bool isCertain = fault.startsWith("delay") || fault.endsWith("done");
        if (request == "day") {
            QCOMPARE(answer, isCertain ? QString("Approved 190") : QString("Unknown"));
            QCOMPARE(last, QString("Approved 190 1/1"));
            QVERIFY(!isCertain || isBooked);
            return;
        }
        const QString done = QStringLiteral("Approved %1 2/2").arg(amount);
        QCOMPARE(answer, isCertain ? done : QString("Unknown"));
        QCOMPARE(last, isBooked ? done : QString("Approved 190 1/1"));
        QCOMPARE(isBooked, isCertain || fault.endsWith("book") || fault.endsWith("info"));
        // And it works on.
        QVERIFY(pair.charge(5));
    }

    void aStopThatComesTooLateIsNotForTheNextPayment()
    {
        Pair pair({"--script", "delay@info", "--delay", "800"}, impatience);
        QVERIFY(pair.terminal.authorise(190));
        pair.answer(); // stopped after it was booked: its books alone are certain
        QVERIFY(pair.charge(95));
        QCOMPARE(pair.card.books(), (QStringList{"payment 190", "payment 95"}));
    }

    void aRequestThatWasGivenUpIsEndedBeforeTheNextOneIsTaken()
    {
        Pair pair({"--script", "delay@ask", "--delay", "1500", "--stuck", "1", "--seed", "4",
                   "--faults", "0"},
                  impatience);
        QStringList faults;
        connect(&pair.terminal, &PaymentTerminal::changed, this,
                [&] { faults.append(pair.terminal.fault()); });
        QVERIFY(pair.terminal.authorise(190));
        QCOMPARE(pair.answer(), QString("Unknown"));
        const QString last = pair.last();
        QVERIFY2(faults.contains("The card terminal is busy."), qPrintable(faults.join('|')));
        QCOMPARE(last, pair.card.books().isEmpty()
                           ? QString("Declined: The card terminal cannot do this.")
                           : QString("Approved 190 1/1"));
        QTest::qWait(400); // nothing is booked any more
        QCOMPARE(pair.last(), last);
    }

private:
    const QTemporaryDir m_folder;
    std::unique_ptr<Pair> m_patientPair; ///< for all faults: it takes a while to start
    std::unique_ptr<Pair> m_impatientPair;
};

QTEST_GUILESS_MAIN(TestZvtTerminal)
#include "tst_zvt_terminal.moc"
