#pragma once

#include <PaymentTerminal.h>

#include <QStringList>

/// A card terminal that a test answers for.
class FakeCards : public rivo::payment::PaymentTerminal
{
public:
    using Request = rivo::payment::Request;
    using Verdict = rivo::payment::Verdict;

    QString fault() const override { return m_fault; }
    bool isBusy() const override { return m_isBusy; }
    QString statusText() const override { return m_isBusy ? QStringLiteral("busy") : QString(); }
    bool authorise(qint64 amount) override
    {
        return take(Request::Authorise, QStringLiteral("authorise %1").arg(amount), amount);
    }
    bool reverse(int receipt, qint64 amount) override
    {
        return take(Request::Reverse, QStringLiteral("reverse %1").arg(receipt), amount);
    }
    bool refund(qint64 amount) override
    {
        return take(Request::Refund, QStringLiteral("refund %1").arg(amount), amount);
    }
    bool endOfDay() override { return take(Request::EndOfDay, QStringLiteral("day"), 0); }
    bool askLastReceipt() override { return take(Request::LastReceipt, QStringLiteral("last"), 0); }
    bool abort() override
    {
        asked.append(QStringLiteral("abort"));
        return m_isBusy;
    }

    void setFault(const QString& fault)
    {
        m_fault = fault;
        emit changed();
    }

    /// Approved with the next receipt, which becomes the last one.
    void approve()
    {
        rivo::payment::Answer answer = empty(Verdict::Approved);
        answer.receipt = last = receipt(++m_receipts, m_amount);
        end(answer);
    }
    void decline(const QString& reason = QStringLiteral("no"))
    {
        rivo::payment::Answer answer = empty(Verdict::Declined);
        answer.reason = reason;
        end(answer);
    }
    /// Nothing is heard any more; `isDone`: it was done nevertheless.
    void lose(bool isDone)
    {
        if (isDone)
            last = receipt(++m_receipts, m_amount);
        end(empty(Verdict::Unknown));
    }
    void answerLast()
    {
        rivo::payment::Answer answer =
            empty(last.number > 0 ? Verdict::Approved : Verdict::Declined);
        answer.receipt = last;
        end(answer);
    }
    void answerDay(qint64 total)
    {
        rivo::payment::Answer answer = empty(Verdict::Approved);
        answer.total = total;
        end(answer);
    }

    static rivo::payment::Receipt receipt(int number, qint64 amount)
    {
        rivo::payment::Receipt made;
        made.number = number;
        made.trace = number;
        made.amount = amount;
        made.terminalId = QStringLiteral("1");
        return made;
    }

    QStringList asked;
    rivo::payment::Receipt last;
    bool isRefusing = false; ///< although it has no fault

private:
    bool take(Request request, const QString& text, qint64 amount)
    {
        if (m_isBusy || !m_fault.isEmpty() || isRefusing)
            return false;
        asked.append(text);
        m_isBusy = true;
        m_request = request;
        m_amount = amount;
        emit changed();
        return true;
    }
    rivo::payment::Answer empty(Verdict verdict) const
    {
        rivo::payment::Answer answer;
        answer.request = m_request;
        answer.verdict = verdict;
        return answer;
    }
    void end(const rivo::payment::Answer& answer)
    {
        m_isBusy = false;
        emit changed();
        emit answered(answer);
    }

    QString m_fault;
    bool m_isBusy = false;
    Request m_request = Request::Authorise;
    qint64 m_amount = 0;
    int m_receipts = 0;
};
