#include "ZvtTerminal.h"

#include "Zvt_p.h"

#include <QTcpSocket>
#include <QTime>

#include <utility>

namespace rivo::payment
{

namespace
{

/// The terminal takes no amounts and starts no administration on its own, sends what it is doing,
/// and prints its receipts itself.
constexpr char configuration = 0x08 | 0x10 | 0x20;

constexpr int passwordDigits = 6;

QByteArray passwordOf(const QString& text)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    return isNumber && text.size() == passwordDigits && number >= 0
               ? zvt::digits(number, passwordDigits / 2)
               : QByteArray();
}

/// The time of a receipt, which has no year: the one in which it is not in the future.
QDateTime timeOf(std::optional<qint64> date, std::optional<qint64> time, const QDateTime& now)
{
    const int day = static_cast<int>(date.value_or(0));
    const int clock = static_cast<int>(time.value_or(0));
    const QTime at(clock / 10000, clock / 100 % 100, clock % 100);
    const QDateTime made(QDate(now.date().year(), day / 100, day % 100), at);
    return made.isValid() && made > now.addDays(1) ? made.addYears(-1) : made;
}

} // namespace

ZvtTerminal::ZvtTerminal(const ZvtSettings& settings, QObject* parent)
    : PaymentTerminal(parent), m_settings(settings),
      m_currency(zvt::currencyNumber(settings.currency)), m_password(passwordOf(settings.password)),
      m_socket(std::make_unique<QTcpSocket>()), m_fault(tr("No connection to the card terminal"))
{
    m_limit.setSingleShot(true);
    m_retry.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &ZvtTerminal::timedOut);
    connect(&m_retry, &QTimer::timeout, this, &ZvtTerminal::start);
    connect(m_socket.get(), &QTcpSocket::connected, this, &ZvtTerminal::connected);
    connect(m_socket.get(), &QTcpSocket::readyRead, this, &ZvtTerminal::received);
    connect(m_socket.get(), &QTcpSocket::stateChanged, this,
            [this](QAbstractSocket::SocketState state) {
                if (state == QAbstractSocket::UnconnectedState)
                    lose(tr("No connection to the card terminal"));
            });
}

ZvtTerminal::~ZvtTerminal()
{
    m_socket->disconnect(this);
    m_socket->abort();
}

void ZvtTerminal::start()
{
    if (m_currency == 0)
        return setFault(tr("The card terminal cannot take %1.").arg(m_settings.currency));
    if (m_password.isEmpty())
        return setFault(tr("The password of the card terminal is not six digits."));
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        return;
    m_received.clear();
    expect(Step::Connection, m_settings.connectTime);
    m_socket->connectToHost(m_settings.host, m_settings.port);
}

// Requests.

bool ZvtTerminal::isReady() const { return m_fault.isEmpty() && !m_request && m_sent == 0; }

bool ZvtTerminal::authorise(qint64 amount)
{
    if (amount < 1 || amount > mostAmount)
        return false;
    m_amount = isReady() ? amount : m_amount;
    return ask(Request::Authorise, zvt::Authorisation,
               zvt::field(zvt::Amount, zvt::digits(amount, 6)) +
                   zvt::field(zvt::CurrencyCode, zvt::digits(m_currency, 2)));
}

bool ZvtTerminal::reverse(int receipt, qint64 amount)
{
    constexpr int mostReceipt = 9999;
    if (receipt < 1 || receipt > mostReceipt || amount < 1 || amount > mostAmount)
        return false;
    m_amount = isReady() ? amount : m_amount;
    return ask(Request::Reverse, zvt::Reversal,
               m_password + zvt::field(zvt::ReceiptNumber, zvt::digits(receipt, 2)));
}

bool ZvtTerminal::refund(qint64 amount)
{
    if (amount < 1 || amount > mostAmount)
        return false;
    m_amount = isReady() ? amount : m_amount;
    return ask(Request::Refund, zvt::Refund,
               m_password + zvt::field(zvt::Amount, zvt::digits(amount, 6)) +
                   zvt::field(zvt::CurrencyCode, zvt::digits(m_currency, 2)));
}

bool ZvtTerminal::endOfDay() { return ask(Request::EndOfDay, zvt::EndOfDay, m_password); }

/// Asks first whether it is ready: one that still works at something has an older receipt.
bool ZvtTerminal::askLastReceipt()
{
    return ask(Request::LastReceipt, zvt::StatusEnquiry, m_password);
}

bool ZvtTerminal::abort()
{
    if (!m_request || *m_request == Request::LastReceipt || m_isAbortWanted)
        return false;
    m_isAbortWanted = true;
    if (m_step == Step::Result)
        sendAbort();
    return true;
}

void ZvtTerminal::sendAbort()
{
    m_isAbortUnanswered = true;
    send(zvt::AbortByRegister, {});
}

bool ZvtTerminal::ask(Request request, quint16 command, const QByteArray& data)
{
    if (!isReady())
        return false;
    m_request = request;
    m_isAbortWanted = false;
    m_isAbortUnanswered = false;
    m_information.reset();
    m_resultCode = zvt::Done;
    m_sent = command;
    send(command, data);
    expect(Step::Acknowledged, m_settings.acknowledgeTime);
    emit changed();
    return true;
}

void ZvtTerminal::send(quint16 command, const QByteArray& data)
{
    m_socket->write(zvt::encoded({command, data}));
    m_socket->flush();
}

void ZvtTerminal::acknowledge() { send(zvt::Accepted, {}); }

void ZvtTerminal::expect(Step step, int time)
{
    m_step = step;
    if (step == Step::Nothing)
        m_limit.stop();
    else
        m_limit.start(time);
}

// The connection.

void ZvtTerminal::connected()
{
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
    m_sent = zvt::Registration;
    send(zvt::Registration, m_password + QByteArray(1, configuration) + zvt::digits(m_currency, 2));
    expect(Step::Acknowledged, m_settings.acknowledgeTime);
}

void ZvtTerminal::received()
{
    m_received += m_socket->readAll();
    while (const auto message = zvt::takeMessage(m_received)) {
        use(*message);
        if (m_socket->state() != QAbstractSocket::ConnectedState)
            return;
    }
}

/// A terminal that says what nothing of this protocol allows is not listened to any more.
void ZvtTerminal::use(const zvt::Message& message)
{
    const bool isUsed = m_step == Step::Acknowledged   ? useAcknowledgement(message)
                        : m_step == Step::Result       ? useResult(message)
                        : m_step == Step::StopAnswered ? useAnswerToStop(message)
                                                       : false;
    if (!isUsed)
        lose(tr("The card terminal was not understood."));
}

bool ZvtTerminal::useAcknowledgement(const zvt::Message& message)
{
    if (message.isRefusal()) {
        stopped(message.refusal());
        return true;
    }
    if (message.command != zvt::Accepted)
        return false;
    expect(Step::Result, m_request ? m_settings.answerTime : m_settings.connectTime);
    if (m_isAbortWanted)
        sendAbort();
    return true;
}

bool ZvtTerminal::useAnswerToStop(const zvt::Message& message)
{
    if (!m_isAbortUnanswered || !(message.command == zvt::Accepted || message.isRefusal()))
        return false;
    m_isAbortUnanswered = false;
    if (m_answer)
        say(*std::exchange(m_answer, {}));
    return true;
}

bool ZvtTerminal::useResult(const zvt::Message& message)
{
    if (useAnswerToStop(message))
        return true; // the result follows
    switch (message.command) {
    case zvt::IntermediateStatus:
    case zvt::PrintLine:
    case zvt::PrintTextBlock:
        acknowledge();
        expect(Step::Result, m_request ? m_settings.answerTime : m_settings.connectTime);
        if (message.command == zvt::IntermediateStatus)
            setStatusText(zvt::textOfStatus(message.data));
        return true;
    case zvt::StatusInformation:
        if (!keepInformation(message.data))
            return false;
        acknowledge();
        expect(Step::Result, m_request ? m_settings.answerTime : m_settings.connectTime);
        return true;
    case zvt::Completion:
        acknowledge();
        return completed(message.data);
    case zvt::AbortByTerminal:
        if (message.data.isEmpty())
            return false;
        acknowledge();
        stopped(static_cast<quint8>(message.data.at(0)));
        return true;
    default:
        return false;
    }
}

bool ZvtTerminal::keepInformation(const QByteArray& data)
{
    const auto fields = zvt::fieldsOf(data);
    if (!fields)
        return false;
    const auto number = [&](quint8 field) { return zvt::numberOf(fields->value(field)); };
    for (const quint8 field : {zvt::Amount, zvt::Trace, zvt::OriginalTrace, zvt::ReceiptNumber,
                               zvt::TerminalId, zvt::CurrencyCode, zvt::Time, zvt::Date}) {
        if (!number(field))
            return false;
    }
    if (fields->contains(zvt::CurrencyCode) && *number(zvt::CurrencyCode) != m_currency)
        return false;
    m_resultCode = fields->contains(zvt::ResultCode)
                       ? static_cast<quint8>(fields->value(zvt::ResultCode).at(0))
                       : static_cast<int>(zvt::Done);
    Receipt receipt;
    receipt.amount = *number(zvt::Amount);
    receipt.number = static_cast<int>(*number(zvt::ReceiptNumber));
    receipt.trace = static_cast<int>(*number(zvt::Trace));
    receipt.originalTrace = static_cast<int>(*number(zvt::OriginalTrace));
    receipt.terminalId = fields->contains(zvt::TerminalId)
                             ? QString::fromLatin1(fields->value(zvt::TerminalId).toHex())
                             : m_terminalId;
    receipt.at = timeOf(number(zvt::Date), number(zvt::Time), QDateTime::currentDateTime());
    const QByteArray name = fields->value(zvt::CardName); // may end with a zero
    receipt.card = (QString::fromLatin1(name.constData()) + QLatin1Char(' ') +
                    zvt::maskedNumber(fields->value(zvt::CardNumber)))
                       .simplified();
    m_information = receipt;
    return true;
}

bool ZvtTerminal::completed(const QByteArray& data)
{
    if (m_sent == zvt::Registration) {
        const auto fields = zvt::fieldsOf(data);
        if (!fields)
            return false;
        m_terminalId = QString::fromLatin1(fields->value(zvt::TerminalId).toHex());
        m_sent = 0;
        expect(Step::Nothing, 0);
        setFault({});
        return true;
    }
    if (m_sent == zvt::StatusEnquiry) {
        const auto code = zvt::statusCode(data);
        if (!code)
            return false;
        if (*code == zvt::PleaseWait) {
            finish(Verdict::Unknown, zvt::textOfCode(*code));
            return true;
        }
        m_sent = zvt::RepeatReceipt;
        send(zvt::RepeatReceipt, m_password);
        expect(Step::Acknowledged, m_settings.acknowledgeTime);
        return true;
    }
    Answer answer;
    answer.request = *m_request;
    if (m_request == Request::EndOfDay) {
        answer.verdict =
            m_information && m_resultCode == zvt::Done ? Verdict::Approved : Verdict::Unknown;
        answer.total = m_information ? m_information->amount : 0;
        finish(answer);
        return true;
    }
    if (m_information && m_resultCode != zvt::Done) {
        finish(Verdict::Declined, zvt::textOfCode(static_cast<quint8>(m_resultCode)));
        return true;
    }
    const bool isAnyAmount = m_request == Request::LastReceipt;
    if (!m_information || (!isAnyAmount && m_information->amount != m_amount)) {
        finish(Verdict::Unknown, tr("The card terminal did not say what it did."));
        return true;
    }
    answer.verdict = Verdict::Approved;
    answer.receipt = *m_information;
    finish(answer);
    return true;
}

/// The terminal does not do it, or not any more.
void ZvtTerminal::stopped(quint8 code)
{
    if (m_sent == zvt::Registration)
        return lose(zvt::textOfCode(code));
    if (m_request == Request::LastReceipt) {
        const bool isNone = m_sent == zvt::RepeatReceipt && code == zvt::NotPossible;
        return finish(isNone ? Verdict::Declined : Verdict::Unknown, zvt::textOfCode(code));
    }
    Answer answer;
    answer.request = *m_request;
    answer.verdict = Verdict::Declined;
    answer.reason = zvt::textOfCode(code);
    if (m_request == Request::Reverse && code == zvt::AlreadyReversed) {
        answer.verdict = Verdict::Approved;
        answer.wasDone = true;
    }
    finish(answer);
}

/// One that takes too long for a card is asked to stop before it is given up.
void ZvtTerminal::timedOut()
{
    if (m_step == Step::Result && abort())
        return expect(Step::Result, m_settings.acknowledgeTime);
    if (m_step == Step::StopAnswered && m_answer)
        return say(
            *std::exchange(m_answer, {})); // one that had nothing to stop any more may not answer
    lose(tr("The card terminal does not answer."));
}

// Results.

void ZvtTerminal::finish(Verdict verdict, const QString& reason)
{
    Answer answer;
    answer.request = *m_request;
    answer.verdict = verdict;
    answer.reason = reason;
    finish(answer);
}

/// The answer to a wish to stop that comes later belongs to this request: no other one may begin.
void ZvtTerminal::finish(const Answer& answer)
{
    if (!m_isAbortUnanswered)
        return say(answer);
    m_answer = answer;
    expect(Step::StopAnswered, m_settings.acknowledgeTime);
}

void ZvtTerminal::say(const Answer& answer)
{
    m_request.reset();
    m_sent = 0;
    expect(Step::Nothing, 0);
    setStatusText({});
    emit changed();
    emit answered(answer);
}

/// What was asked and not answered is unknown from here on. Connects again after a while.
void ZvtTerminal::lose(const QString& fault)
{
    const std::optional<Request> lost = m_request;
    const std::optional<Answer> known = std::exchange(m_answer, {});
    m_request.reset();
    m_sent = 0;
    expect(Step::Nothing, 0);
    m_received.clear();
    if (!m_retry.isActive())
        m_retry.start(m_settings.retryTime);
    if (m_socket->state() != QAbstractSocket::UnconnectedState)
        m_socket->abort();
    setStatusText({});
    setFault(fault);
    if (!lost)
        return;
    Answer unknown;
    unknown.request = *lost;
    unknown.reason = fault;
    emit answered(known.value_or(unknown));
}

void ZvtTerminal::setFault(const QString& fault)
{
    if (m_fault == fault)
        return;
    m_fault = fault;
    emit changed();
}

void ZvtTerminal::setStatusText(const QString& text)
{
    if (m_statusText == text)
        return;
    m_statusText = text;
    emit statusTextChanged();
}

} // namespace rivo::payment
