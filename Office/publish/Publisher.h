#pragma once

#include "PublicationRows.h"

#include <Intake.h>

namespace rivo::backoffice
{

/// What has to be known to publish a file.
struct ToPublish
{
    QString file;
    QString operatorName;
    office::PublicationKind kind = office::PublicationKind::Feed;
    QDateTime validFrom;
    qint64 version = 0; ///< 0 = the one after the last
    QString keyFile;    ///< the publisher's private key, in PEM form
};

/// Checks a file, signs it and stores it. What is wrong with it, one a line; empty if it is
/// published. `published`: its announcement then.
QStringList publish(OfficeStore& store, const ToPublish& wanted, office::Announcement& published);

/// Answers what vehicles ask about publications.
class Publisher
{
public:
    /// Of a store that is open, and lives longer.
    explicit Publisher(OfficeStore& store) : m_store(store), m_rows(store) {}

    /// Whether a topic is of a vehicle that asks for a piece, or says what it has.
    static bool isFor(const QString& topic);

    /// Takes a message of such a topic, as Intake::take() does. One that is not understood is
    /// ignored.
    bool take(const QString& topic, const QByteArray& message, std::optional<Reply>& reply);

    /// What was published since the last call, at first the newest of all; nothing if the database
    /// fails.
    std::optional<QVector<PublicationRows::ToAnnounce>> fresh() { return m_rows.newest(m_last); }

    /// Announce all again: the broker may be a new one.
    void announceAgain() { m_last = 0; }

private:
    OfficeStore& m_store;
    PublicationRows m_rows;
    qint64 m_last = 0;
};

/// A line for each publication, and for each vehicle that does not have or use the newest ones.
QByteArray textOf(const QVector<ListedPublication>& publications,
                  const QVector<ListedState>& states);

} // namespace rivo::backoffice
