#pragma once

#include <Config.h>
#include <FeedOptions.h>
#include <PublicationStore.h>

#include <QDateTime>
#include <QMap>

#include <optional>

namespace rivo::terminal
{

/// What the office published and the terminal starts with. Nothing of it comes into effect while
/// the terminal runs but by a restart, which interrupts nothing.
class TakeOver
{
public:
    /// Nothing is taken over without a publisher in the configuration. `reading`: as the feed of
    /// the command line is read.
    TakeOver(const config::OfficeConfig& office, const feed::FeedOptions& reading);

    bool isThere() const { return m_store.has_value(); }

    /// The file to start with; nothing if there is none but that of the command line. A file that
    /// cannot be used has to be refused, and the next one is asked for.
    std::optional<QString> begin(office::PublicationKind kind);
    void refuse(office::PublicationKind kind, const QString& reason);

    /// The screen is there: what was begun works.
    void confirmStart();

    /// The version that begin() chose last; 0 = that of the command line.
    qint64 inUse(office::PublicationKind kind) const;

    /// Whether a newer feed, or a newer file of drivers, is valid at `now`.
    bool isDue(const QDateTime& now) const;

    /// For the link to the office. Feeds have to be in `currency`, in which the journal is.
    office::PublicationStore& store() { return *m_store; }
    office::PublicationCheck check(const QString& currency) const;

private:
    const feed::FeedOptions m_reading;
    std::optional<office::PublicationStore> m_store;
    QMap<office::PublicationKind, office::Announcement> m_inUse;
};

} // namespace rivo::terminal
