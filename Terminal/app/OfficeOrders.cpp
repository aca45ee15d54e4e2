#include "OfficeOrders.h"

#include "TakeOver.h"

#include <Journal.h>
#include <SalesDesk.h>

namespace rivo::terminal
{

using office::PublicationKind;

OfficeOrders::OfficeOrders(TakeOver& takeOver, sales::SalesDesk& desk, sales::Journal& journal,
                           double maxDebt, QObject* parent)
    : QObject(parent), m_takeOver(takeOver), m_desk(desk), m_journal(journal), m_maxDebt(maxDebt)
{
    constexpr int minute = 60000;
    connect(&m_desk, &sales::SalesDesk::driverChanged, this, &OfficeOrders::limit);
    connect(&m_looks, &QTimer::timeout, this, &OfficeOrders::look);
    m_looks.start(minute);
}

void OfficeOrders::look()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    lookForLimits(now);
    lookForPaidShifts(now);
}

void OfficeOrders::lookForLimits(const QDateTime& now)
{
    const auto due = m_takeOver.store().due(PublicationKind::Limits, now);
    if (!due || due->announcement.version == m_limitsVersion)
        return;
    const auto limits = office::readLimits(due->file).limits;
    if (!limits)
        return;
    m_limits = *limits;
    m_limitsVersion = due->announcement.version;
    limit();
    emit inUse(PublicationKind::Limits, m_limitsVersion);
}

/// Those of other vehicles, and those that the journal has as paid, change nothing.
void OfficeOrders::lookForPaidShifts(const QDateTime& now)
{
    const auto due = m_takeOver.store().due(PublicationKind::Paid, now);
    if (!due || due->announcement.version == m_paidVersion)
        return;
    const auto paid = office::readPaidShifts(due->file).shifts;
    if (!paid)
        return;
    QVector<qint64> shifts;
    const QByteArray own = m_journal.publicKey();
    for (const office::PaidShift& each : *paid) {
        if (each.journal == own)
            shifts.append(each.shift);
    }
    if (!m_desk.takePaidInOffice(shifts))
        return; // the next look tries again
    m_paidVersion = due->announcement.version;
    emit inUse(PublicationKind::Paid, m_paidVersion);
}

void OfficeOrders::limit()
{
    const auto driver = static_cast<qint64>(m_desk.driver());
    m_desk.setMaxDebt(m_limits.ofDrivers.value(driver, m_limits.maxDebt.value_or(m_maxDebt)));
}

} // namespace rivo::terminal
