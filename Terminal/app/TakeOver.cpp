#include "TakeOver.h"

#include <DriversFile.h>
#include <FeedLoader.h>
#include <Instructions.h>
#include <JournalKey_p.h>
#include <QCoreApplication>
#include <QStandardPaths>

namespace rivo::terminal
{

namespace
{

using office::PublicationKind;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(rivo::terminal::TakeOver)
};

QString folderOf(const config::OfficeConfig& office)
{
    return office.store.isEmpty()
               ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
                     QStringLiteral("/publications")
               : office.store;
}

QString faultOfFeed(const QString& file, const feed::FeedOptions& reading, const QString& currency)
{
    const feed::FeedResult result = feed::loadFeed(file, reading);
    if (!result.feed)
        return result.problemLines().value(0);
    return result.feed->currency == currency
               ? QString()
               : Texts::tr("its currency is %1").arg(result.feed->currency);
}

QString faultOf(PublicationKind kind, const QString& file, const feed::FeedOptions& reading,
                const QString& currency)
{
    switch (kind) {
    case PublicationKind::Feed:
        return faultOfFeed(file, reading, currency);
    case PublicationKind::Drivers:
        return drivers::readDrivers(file).problems.value(0);
    case PublicationKind::Limits:
        return office::readLimits(file).problems.value(0);
    case PublicationKind::Paid:
        break;
    }
    return office::readPaidShifts(file).problems.value(0);
}

} // namespace

TakeOver::TakeOver(const config::OfficeConfig& office, const feed::FeedOptions& reading)
    : m_reading(reading)
{
    if (office.isThere() && !office.publisher.isEmpty())
        m_store.emplace(folderOf(office), office.operatorName,
                        sales::publicKeyOf(office.publisher));
}

std::optional<QString> TakeOver::begin(PublicationKind kind)
{
    m_inUse.remove(kind);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    qint64 last = 0;
    while (const auto found = m_store ? m_store->due(kind, now) : std::nullopt) {
        if (m_store->beginStart(found->announcement)) {
            m_inUse.insert(kind, found->announcement);
            return found->file;
        }
        if (found->announcement.version == last) // not refused: the starts cannot be counted
            break;
        last = found->announcement.version;
    }
    return std::nullopt;
}

void TakeOver::refuse(PublicationKind kind, const QString& reason)
{
    if (m_inUse.contains(kind))
        m_store->refuse(m_inUse.take(kind), reason);
}

void TakeOver::confirmStart()
{
    for (const office::Announcement& each : qAsConst(m_inUse))
        m_store->endStart(each);
}

qint64 TakeOver::inUse(PublicationKind kind) const { return m_inUse.value(kind).version; }

bool TakeOver::isDue(const QDateTime& now) const
{
    for (const PublicationKind kind : {PublicationKind::Feed, PublicationKind::Drivers}) {
        const auto due = m_store ? m_store->due(kind, now) : std::nullopt;
        if (due && due->announcement.version > inUse(kind))
            return true;
    }
    return false;
}

office::PublicationCheck TakeOver::check(const QString& currency) const
{
    feed::FeedOptions reading = m_reading;
    reading.limits.memory += reading.limits.memory / 2; // the program has another feed then
    return [reading, currency](PublicationKind kind, const QString& file) {
        return faultOf(kind, file, reading, currency);
    };
}

} // namespace rivo::terminal
