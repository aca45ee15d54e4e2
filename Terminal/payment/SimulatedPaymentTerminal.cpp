#include "SimulatedPaymentTerminal.h"

namespace rivo::payment
{

SimulatedPaymentTerminal::SimulatedPaymentTerminal(QObject* parent) : PaymentTerminal(parent)
{
    m_work.setSingleShot(true);
    connect(&m_work, &QTimer::timeout, this, &SimulatedPaymentTerminal::finish);
}

void SimulatedPaymentTerminal::setTime(int milliseconds) { m_time = milliseconds; }

void SimulatedPaymentTerminal::setFault(const QString& fault)
{
    if (m_fault == fault)
        return;
    m_fault = fault;
    emit changed();
}

QString SimulatedPaymentTerminal::statusText() const
{
    return m_isBusy ? tr("Simulated card terminal") : QString();
}

bool SimulatedPaymentTerminal::authorise(qint64 amount)
{
    return amount > 0 && amount <= mostAmount && start(Request::Authorise, amount);
}

bool SimulatedPaymentTerminal::reverse(int receipt, qint64 amount)
{
    return receipt > 0 && start(Request::Reverse, amount);
}

bool SimulatedPaymentTerminal::refund(qint64 amount)
{
    return amount > 0 && amount <= mostAmount && start(Request::Refund, amount);
}

bool SimulatedPaymentTerminal::endOfDay() { return start(Request::EndOfDay, 0); }

bool SimulatedPaymentTerminal::askLastReceipt() { return start(Request::LastReceipt, 0); }

bool SimulatedPaymentTerminal::abort()
{
    if (!m_isBusy || m_request != Request::Authorise || m_isAborted)
        return false;
    m_isAborted = true;
    m_work.start(0);
    return true;
}

bool SimulatedPaymentTerminal::start(Request request, qint64 amount)
{
    if (m_isBusy || !m_fault.isEmpty())
        return false;
    m_isBusy = true;
    m_isAborted = false;
    m_request = request;
    m_amount = amount;
    if (m_time == 0) {
        finish();
        return true;
    }
    m_work.start(m_time);
    emit changed();
    emit statusTextChanged();
    return true;
}

void SimulatedPaymentTerminal::book(Answer& answer)
{
    m_total += m_request == Request::Authorise ? m_amount : -m_amount;
    m_last = Receipt();
    m_last.number = ++m_receipts;
    m_last.trace = m_receipts;
    m_last.amount = m_amount;
    m_last.originalTrace = m_request == Request::Reverse ? 1 : 0;
    m_last.card = tr("Simulated card");
    m_last.at = QDateTime::currentDateTime();
    // Another one for each start of the program: receipts begin at 1 again.
    static const QString id = QString::number(QDateTime::currentMSecsSinceEpoch());
    m_last.terminalId = id;
    answer.receipt = m_last;
}

void SimulatedPaymentTerminal::finish()
{
    Answer answer;
    answer.request = m_request;
    answer.verdict = m_isAborted ? Verdict::Declined : m_verdict;
    answer.reason = m_isAborted ? tr("The payment was stopped.") : tr("Simulated answer");
    if (m_request == Request::EndOfDay) {
        answer.verdict = Verdict::Approved;
        answer.total = m_total;
        m_total = 0;
    } else if (m_request == Request::LastReceipt) {
        answer.verdict = m_last.number > 0 ? Verdict::Approved : Verdict::Declined;
        answer.receipt = m_last;
    } else if (answer.verdict == Verdict::Approved) {
        book(answer);
    }
    m_isBusy = false;
    emit changed();
    emit statusTextChanged();
    emit answered(answer);
}

} // namespace rivo::payment
