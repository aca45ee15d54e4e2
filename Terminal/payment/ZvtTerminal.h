#pragma once

#include "PaymentTerminal.h"

#include <QTimer>

#include <memory>
#include <optional>

class QTcpSocket;

namespace rivo::payment
{

namespace zvt
{
struct Message;
}

/// How a card terminal is reached. Times are milliseconds.
struct ZvtSettings
{
    QString host;
    quint16 port = 20007;
    QString password = QStringLiteral("000000"); ///< six digits
    QString currency = QStringLiteral("EUR");
    int connectTime = 5000;     ///< until it must be connected and registered
    int acknowledgeTime = 5000; ///< until a message must be acknowledged
    int answerTime = 180000;    ///< between messages of a request
    int retryTime = 3000;       ///< until the next attempt to connect
};

/// A card terminal that speaks ZVT over TCP. Connects when it is started, and again whenever the
/// connection is lost or makes no sense.
class ZvtTerminal : public PaymentTerminal
{
    Q_OBJECT

public:
    explicit ZvtTerminal(const ZvtSettings& settings, QObject* parent = nullptr);
    ~ZvtTerminal() override;

    /// Connects; without it there is a fault for ever.
    void start();

    QString fault() const override { return m_fault; }
    bool isBusy() const override { return m_request.has_value(); }
    QString statusText() const override { return m_statusText; }
    QString terminalId() const { return m_terminalId; } ///< as it registered; empty before

    bool authorise(qint64 amount) override;
    bool reverse(int receipt, qint64 amount) override;
    bool refund(qint64 amount) override;
    bool endOfDay() override;
    bool askLastReceipt() override;
    bool abort() override;

private:
    /// What is expected next.
    enum class Step {
        Nothing,      ///< not connected, or nothing to do
        Connection,   ///< of the socket
        Acknowledged, ///< that the message which was sent arrived
        Result,       ///< messages until it is completed or stopped
        StopAnswered  ///< an answer to the wish to stop, which crossed with the end
    };

    bool isReady() const;
    bool ask(Request request, quint16 command, const QByteArray& data);
    void send(quint16 command, const QByteArray& data);
    void expect(Step step, int time);
    void acknowledge();
    void sendAbort();

    void connected();
    void received();
    void use(const zvt::Message& message);
    bool useAcknowledgement(const zvt::Message& message);
    bool useResult(const zvt::Message& message);
    bool useAnswerToStop(const zvt::Message& message);
    bool keepInformation(const QByteArray& data);
    bool completed(const QByteArray& data);
    void stopped(quint8 code);
    void timedOut();

    void finish(const Answer& answer);
    void say(const Answer& answer);
    void finish(Verdict verdict, const QString& reason);
    void lose(const QString& fault);
    void setFault(const QString& fault);
    void setStatusText(const QString& text);

    const ZvtSettings m_settings;
    const int m_currency;
    QByteArray m_password;
    std::unique_ptr<QTcpSocket> m_socket;
    QTimer m_limit; ///< of the step
    QTimer m_retry;
    QByteArray m_received;
    QString m_fault;
    QString m_statusText;
    QString m_terminalId;
    Step m_step = Step::Nothing;
    quint16 m_sent = 0; ///< the command that is not completed; 0 = none
    std::optional<Request> m_request;
    std::optional<Receipt> m_information; ///< what the terminal said about the request
    int m_resultCode = 0;
    qint64 m_amount = 0;
    bool m_isAbortWanted = false;
    bool m_isAbortUnanswered = false;
    std::optional<Answer> m_answer; ///< said when the wish to stop is answered, too
};

} // namespace rivo::payment
