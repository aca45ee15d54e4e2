#include "AnswerText.h"

#include <ZvtTerminal.h>

#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <functional>

using namespace rivo::payment;

namespace
{

/// A card terminal that answers as a test says.
class AnsweringServer : public QTcpServer
{
public:
    /// `answer` gets what was heard.
    explicit AnsweringServer(const std::function<QByteArray(const QByteArray& heard)>& answer)
    {
        connect(this, &QTcpServer::newConnection, this, [this, answer] {
            QTcpSocket* const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket,
                    [socket, answer] { socket->write(answer(socket->readAll())); });
        });
        listen(QHostAddress::LocalHost);
    }

    ZvtSettings settings(int acknowledgeTime = 100) const
    {
        ZvtSettings settings;
        settings.host = "127.0.0.1";
        settings.port = serverPort();
        settings.acknowledgeTime = acknowledgeTime;
        settings.answerTime = 100;
        return settings;
    }
};

/// `answer` to a registration, and nothing else.
std::function<QByteArray(const QByteArray&)> toRegistration(const char* answer)
{
    return [answer = QByteArray::fromHex(answer)](const QByteArray& heard) {
        return heard.startsWith(QByteArray::fromHex("0600")) ? answer : QByteArray();
    };
}

} // namespace

/// Answers of a card terminal that are unexpected, wrong or missing.
class TestZvtAnswers : public QObject
{
    Q_OBJECT

private slots:
    void aTerminalThatLiesIsNotBelieved_data()
    {
        QTest::addColumn<QByteArray>("registered"); ///< to the registration
        QTest::addColumn<QByteArray>("said");       ///< to the payment
        QTest::addColumn<QString>("result");
        const QByteArray good = QByteArray::fromHex("800000060f00");
        const auto said = [](const char* bytes) { return QByteArray::fromHex(bytes); };
        QTest::newRow("completed without information") << good << said("800000060f00") << "Unknown";
        QTest::newRow("another amount") << good
                                        << said("800000040f092700040000000000"
                                                "05060f00")
                                        << "Unknown";
        QTest::newRow("another currency") << good
                                          << said("800000040f0504"
                                                  "000000")
                                          << "Unknown";
        QTest::newRow("a field that is cut off")
            << good << said("800000040f0304000000") << "Unknown";
        QTest::newRow("digits that are none")
            << good << said("800000040f07040000000000aa060f00") << "Unknown";
        QTest::newRow("a result without acknowledgement") << good << said("060f00") << "Unknown";
        QTest::newRow("a command for card terminals") << good << said("800000060100") << "Unknown";
        QTest::newRow("stopped without a reason") << good << said("800000061e00") << "Unknown";
        QTest::newRow("refused") << good << said("846f00")
                                 << "Declined: The card terminal takes another currency.";
        QTest::newRow("declined by information")
            << good << said("800000040f022771060f00")
            << "Declined: There is not enough money on the card.";
        QTest::newRow("something else follows, too") << good
                                                     << said("800000040f0927000400000000"
                                                             "0190"
                                                             "060f00999999")
                                                     << "Approved 190 0/0";
    }
    void aTerminalThatLiesIsNotBelieved()
    {
        QFETCH(QByteArray, registered);
        QFETCH(QByteArray, said);
        QFETCH(QString, result);
        const AnsweringServer server([&](const QByteArray& heard) {
            return heard.startsWith(QByteArray::fromHex("0600"))   ? registered
                   : heard.startsWith(QByteArray::fromHex("0601")) ? said
                                                                   : QByteArray();
        });
        ZvtTerminal terminal(server.settings());
        QSignalSpy answered(&terminal, &PaymentTerminal::answered);
        terminal.start();
        QTRY_COMPARE(terminal.fault(), QString());
        QVERIFY(terminal.authorise(190));
        QTRY_COMPARE(answered.count(), 1);
        QCOMPARE(text(answered.at(0).at(0).value<Answer>()), result);
        QTest::qWait(20);
        QCOMPARE(answered.count(), 1);
    }

    void aWishToStopThatComesTooLateEndsWithThePayment_data()
    {
        QTest::addColumn<QByteArray>("answered"); ///< to the wish, after the end of the payment
        QTest::addColumn<bool>("isLost");
        QTest::newRow("it is acknowledged") << QByteArray::fromHex("800000") << false;
        QTest::newRow("it is refused") << QByteArray::fromHex("848300") << false;
        QTest::newRow("it is not answered") << QByteArray() << false;
        QTest::newRow("something else follows") << QByteArray::fromHex("060f00") << true;
    }
    void aWishToStopThatComesTooLateEndsWithThePayment()
    {
        QFETCH(QByteArray, answered);
        QFETCH(bool, isLost);
        const QByteArray paid = QByteArray::fromHex("040f09270004000000000190060f00");
        const AnsweringServer server([&](const QByteArray& heard) {
            return heard.contains(QByteArray::fromHex("060006"))
                       ? QByteArray::fromHex("800000060f00")
                   : heard.contains(QByteArray::fromHex("06b0"))   ? paid + answered
                   : heard.startsWith(QByteArray::fromHex("0601")) ? QByteArray::fromHex("800000")
                                                                   : QByteArray();
        });
        ZvtTerminal terminal(server.settings());
        QSignalSpy answers(&terminal, &PaymentTerminal::answered);
        terminal.start();
        QTRY_COMPARE(terminal.fault(), QString());
        for (int turn = 1; turn <= (isLost ? 1 : 2); ++turn) {
            QVERIFY(terminal.authorise(190));
            QVERIFY(terminal.abort());
            QTRY_COMPARE(answers.count(), turn);
            QCOMPARE(text(answers.last().at(0).value<Answer>()), QString("Approved 190 0/0"));
            QVERIFY(!terminal.isBusy());
        }
        QTest::qWait(20);
        QCOMPARE(terminal.fault(), isLost ? QString("The card terminal was not understood.") : "");
        QCOMPARE(answers.count(), isLost ? 1 : 2);
    }

    void theLastReceiptIsAskedForWhenTheTerminalIsReady_data()
    {
        QTest::addColumn<QByteArray>("enquired");
        QTest::addColumn<QByteArray>("repeated");
        QTest::addColumn<QString>("result");
        const auto said = [](const char* bytes) { return QByteArray::fromHex(bytes); };
        const QByteArray ready = said("800000060f0100");
        QTest::newRow("it is busy") << said("800000060f019c") << QByteArray() << "Unknown";
        QTest::newRow("it has no code") << said("800000060f00") << QByteArray() << "Unknown";
        QTest::newRow("it refuses") << said("849c00") << QByteArray() << "Unknown";
        QTest::newRow("it refuses the receipt") << ready << said("849c00") << "Unknown";
        QTest::newRow("it has no receipt")
            << ready << said("848300") << "Declined: The card terminal cannot do this.";
        QTest::newRow("it stops without a receipt")
            << ready << said("800000061e0183") << "Declined: The card terminal cannot do this.";
        QTest::newRow("the last one was declined")
            << ready << said("800000040f022771060f00")
            << "Declined: There is not enough money on the card.";
        QTest::newRow("it is from last year") << ready
                                              << said("800000040f0e04000000000190"
                                                      "0d1231"
                                                      "0c235959"
                                                      "060f00")
                                              << "Approved 190 0/0";
    }
    void theLastReceiptIsAskedForWhenTheTerminalIsReady()
    {
        QFETCH(QByteArray, enquired);
        QFETCH(QByteArray, repeated);
        QFETCH(QString, result);
        const AnsweringServer server([&](const QByteArray& heard) {
            return heard.contains(QByteArray::fromHex("060006"))
                       ? QByteArray::fromHex("800000060f00")
                   : heard.contains(QByteArray::fromHex("050103")) ? enquired
                   : heard.contains(QByteArray::fromHex("062003")) ? repeated
                                                                   : QByteArray();
        });
        ZvtTerminal terminal(server.settings());
        QSignalSpy answered(&terminal, &PaymentTerminal::answered);
        terminal.start();
        QTRY_COMPARE(terminal.fault(), QString());
        QVERIFY(terminal.askLastReceipt());
        QTRY_COMPARE(answered.count(), 1);
        const auto answer = answered.at(0).at(0).value<Answer>();
        QCOMPARE(text(answer), result);
        QVERIFY(!answer.receipt.at.isValid() ||
                answer.receipt.at <= QDateTime::currentDateTime().addDays(1));
    }

    void aRegistrationThatMakesNoSenseIsAFault()
    {
        const AnsweringServer server(toRegistration("800000060f0177"));
        ZvtTerminal terminal(server.settings());
        terminal.start();
        terminal.start(); // a second one changes nothing
        QTRY_COMPARE(terminal.fault(), QString("The card terminal was not understood."));
    }

    void aRegistrationThatIsRefusedIsAFault()
    {
        const AnsweringServer server(toRegistration("846f00"));
        ZvtTerminal terminal(server.settings());
        terminal.start();
        QTRY_COMPARE(terminal.fault(), QString("The card terminal takes another currency."));
    }

    void aServerThatSaysNothingIsAFault()
    {
        const AnsweringServer server([](const QByteArray&) { return QByteArray(); });
        ZvtTerminal terminal(server.settings(30));
        terminal.start();
        QTRY_COMPARE(terminal.fault(), QString("The card terminal does not answer."));
    }
};

QTEST_GUILESS_MAIN(TestZvtAnswers)
#include "tst_zvt_answers.moc"
