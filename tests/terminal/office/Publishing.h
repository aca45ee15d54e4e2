#pragma once

#include <JournalKey_p.h>
#include <PublicationMessages.h>

#include <QCryptographicHash>
#include <QFile>

// A publisher, for tests of what goes down to vehicles.

inline QByteArray sha256Of(const QByteArray& content)
{
    return QCryptographicHash::hash(content, QCryptographicHash::Sha256);
}

/// The owner of a publisher's key.
struct TestPublisher
{
    rivo::office::Announcement
    announce(qint64 version, const QByteArray& content,
             rivo::office::PublicationKind kind = rivo::office::PublicationKind::Feed,
             const QString& name = QStringLiteral("network.json")) const
    {
        rivo::office::Announcement made{QStringLiteral("lakeside"),
                                        kind,
                                        version,
                                        QDateTime::fromSecsSinceEpoch(1, Qt::UTC),
                                        content.size(),
                                        sha256Of(content),
                                        name};
        return resigned(made);
    }

    rivo::office::Announcement resigned(rivo::office::Announcement it) const
    {
        it.signature = key.sign(signedPartOf(it));
        return it;
    }

    rivo::sales::JournalKey key = rivo::sales::JournalKey::make().value();
};
