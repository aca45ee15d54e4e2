#pragma once

#include "PaymentTerminal.h"

#include <QTimer>

namespace rivo::payment
{

/// A card terminal without cards, for trials: approves everything after a moment, and takes no
/// money.
class SimulatedPaymentTerminal : public PaymentTerminal
{
    Q_OBJECT

public:
    explicit SimulatedPaymentTerminal(QObject* parent = nullptr);

    /// Milliseconds for each request; 0 = it is answered from within the call.
    void setTime(int milliseconds);

    /// What happens to payments, reversals and refunds from now on.
    void setVerdict(Verdict verdict) { m_verdict = verdict; }

    /// Empty for a terminal that works.
    void setFault(const QString& fault);

    QString fault() const override { return m_fault; }
    bool isBusy() const override { return m_isBusy; }
    QString statusText() const override;

    bool authorise(qint64 amount) override;
    bool reverse(int receipt, qint64 amount) override;
    bool refund(qint64 amount) override;
    bool endOfDay() override;
    bool askLastReceipt() override;
    bool abort() override;

private:
    bool start(Request request, qint64 amount);
    void finish();
    void book(Answer& answer);

    QTimer m_work;
    int m_time = 1500;
    Verdict m_verdict = Verdict::Approved;
    QString m_fault;
    bool m_isBusy = false;
    bool m_isAborted = false;
    Request m_request = Request::Authorise;
    qint64 m_amount = 0;
    int m_receipts = 0;
    qint64 m_total = 0;
    Receipt m_last;
};

} // namespace rivo::payment
