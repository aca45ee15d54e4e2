#pragma once

#include "OfficeLink.h"
#include "PublicationStore.h"

#include <thread>

namespace rivo::office
{

/// Times of a PublicationLink, in milliseconds.
struct PublicationPace
{
    int againAfter = 20000;         ///< without an answer
    int refusedAgainAfter = 300000; ///< after damage or a full disk; then twice as long, to a day
    int reportEvery = 3600000;
};

/// Takes what the office publishes: asks for the content in pieces, checks it in a thread of its
/// own, and stores it. Nothing here waits for the network, and nothing comes into effect here. What
/// the vehicle has and what it refuses is reported to the office with each connection, with each
/// change and every hour.
class PublicationLink : public QObject
{
    Q_OBJECT

public:
    /// `link` was not started. `check` is called in another thread. All outlive this.
    PublicationLink(OfficeLink& link, const Topics& topics, PublicationStore& store,
                    PublicationCheck check, const PublicationPace& pace = {},
                    QObject* parent = nullptr);
    ~PublicationLink() override; ///< waits for a check that runs

    /// The version of a kind that counts from now on; what is older is removed.
    void setInUse(PublicationKind kind, qint64 version);

    /// What is refused, for people; empty if nothing is.
    QString problem() const;

signals:
    void taken(rivo::office::PublicationKind kind); ///< a new version is stored
    void problemChanged();

private:
    struct OfKind
    {
        std::optional<Announcement> wanted;
        bool isPaused = false;
        int pause = 0; ///< the last one; 0 = none yet
        qint64 inUse = 0;
        qint64 refused = 0;
        QString refusal;
    };

    void take(const QString& topic, const QByteArray& message);
    void takeAnnouncement(PublicationKind kind, const QByteArray& message);
    void takePiece(const QByteArray& message);
    void ask();
    void check(const Announcement& wanted);
    void checked(const Announcement& wanted, const QString& fault, bool isWhole);
    void postpone(const Announcement& wanted, const QString& reason);
    void setRefusal(PublicationKind kind, qint64 version, const QString& reason);
    const Announcement* next() const;
    void report();

    OfficeLink& m_link;
    const Topics m_topics;
    PublicationStore& m_store;
    const PublicationCheck m_check;
    const PublicationPace m_pace;
    QMap<PublicationKind, OfKind> m_kinds;
    std::thread m_checking;
    bool m_isChecking = false;
    QTimer m_again;
    QTimer m_reports;
};

} // namespace rivo::office
