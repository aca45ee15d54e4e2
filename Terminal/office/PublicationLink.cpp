#include "PublicationLink.h"

namespace rivo::office
{

namespace
{

constexpr int longestPause = 86400000;

} // namespace

PublicationLink::PublicationLink(OfficeLink& link, const Topics& topics, PublicationStore& store,
                                 PublicationCheck check, const PublicationPace& pace,
                                 QObject* parent)
    : QObject(parent), m_link(link), m_topics(topics), m_store(store), m_check(std::move(check)),
      m_pace(pace)
{
    for (const PublicationKind kind : allPublicationKinds) {
        const PublicationState known = m_store.refusal(kind);
        m_kinds[kind].refused = known.refused;
        m_kinds[kind].refusal = known.refusal;
    }
    m_link.subscribe(publicationTopic(topics.operatorName, QStringLiteral("+")));
    m_link.subscribe(topics.piece());
    m_again.setSingleShot(true);
    connect(&m_again, &QTimer::timeout, this, &PublicationLink::ask);
    m_reports.setInterval(m_pace.reportEvery);
    connect(&m_reports, &QTimer::timeout, this, &PublicationLink::report);
    connect(&m_link, &OfficeLink::received, this, &PublicationLink::take);
    connect(&m_link, &OfficeLink::connected, this, [this] {
        report();
        ask();
    });
    m_reports.start();
}

PublicationLink::~PublicationLink()
{
    if (m_checking.joinable())
        m_checking.join();
}

void PublicationLink::setInUse(PublicationKind kind, qint64 version)
{
    m_kinds[kind].inUse = version;
    m_store.prune(kind, version);
    report();
}

QString PublicationLink::problem() const
{
    QStringList problems;
    for (const PublicationKind kind : allPublicationKinds) {
        const OfKind& known = *m_kinds.find(kind);
        if (known.refusal.isEmpty())
            continue;
        QString name;
        switch (kind) {
        case PublicationKind::Feed:
            name = tr("feed");
            break;
        case PublicationKind::Drivers:
            name = tr("drivers");
            break;
        case PublicationKind::Limits:
            name = tr("limits");
            break;
        case PublicationKind::Paid:
            name = tr("paid shifts");
            break;
        }
        problems.append(known.refused == 0
                            ? tr("%1 refused: %2").arg(name, known.refusal)
                            : tr("%1, version %2, refused: %3")
                                  .arg(name, QString::number(known.refused), known.refusal));
    }
    return problems.join(QLatin1String("; "));
}

void PublicationLink::take(const QString& topic, const QByteArray& message)
{
    if (topic == m_topics.piece())
        return takePiece(message);
    for (const PublicationKind kind : allPublicationKinds) {
        if (topic == publicationTopic(m_topics.operatorName, nameOf(kind)))
            return takeAnnouncement(kind, message);
    }
}

/// A publication that is refused does not end one that is on its way.
void PublicationLink::takeAnnouncement(PublicationKind kind, const QByteArray& message)
{
    const PublicationStore::Judgement judgement = m_store.judge(kind, message);
    OfKind& known = m_kinds[kind];
    if (!judgement.wanted)
        return setRefusal(kind, judgement.version, judgement.refusal);
    if (known.wanted && (known.wanted->version > judgement.wanted->version ||
                         known.wanted->sha256 == judgement.wanted->sha256))
        return;
    known.wanted = judgement.wanted;
    known.isPaused = false;
    known.pause = 0;
    if (!m_isChecking)
        ask();
}

const Announcement* PublicationLink::next() const
{
    for (const OfKind& each : m_kinds) {
        if (each.wanted && !each.isPaused)
            return &*each.wanted;
    }
    return nullptr;
}

void PublicationLink::ask()
{
    m_again.stop();
    const Announcement* const wanted = next();
    if (wanted == nullptr || m_isChecking)
        return;
    const qint64 received = m_store.begin(*wanted);
    if (received == wanted->size)
        return check(*wanted);
    m_link.publish(m_topics.wanted(), encode(WantedPiece{wanted->kind, wanted->version, received}));
    m_again.start(m_pace.againAfter);
}

/// A piece that comes twice, or late, begins elsewhere than what is missing.
void PublicationLink::takePiece(const QByteArray& message)
{
    const auto piece = pieceOf(message);
    const Announcement* const wanted = next();
    if (!piece || wanted == nullptr || m_isChecking || piece->wanted.kind != wanted->kind ||
        piece->wanted.version != wanted->version || piece->bytes.isEmpty() ||
        piece->wanted.offset != m_store.begin(*wanted))
        return;
    const QString fault = m_store.append(*wanted, piece->bytes);
    if (!fault.isEmpty())
        postpone(*wanted, fault);
    ask();
}

void PublicationLink::check(const Announcement& wanted)
{
    m_isChecking = true;
    if (m_checking.joinable())
        m_checking.join(); // it has ended
    m_checking = std::thread([this, wanted, file = m_store.partOf(wanted)] {
        const QString damage = PublicationStore::faultOf(
            wanted, file, [](PublicationKind, const QString&) { return QString(); });
        const QString fault = damage.isEmpty() ? m_check(wanted.kind, file) : damage;
        QMetaObject::invokeMethod(
            this, [=] { checked(wanted, fault, damage.isEmpty()); }, Qt::QueuedConnection);
    });
}

/// What has the signed hash and cannot be used stays so; damage may be that of the disk.
void PublicationLink::checked(const Announcement& wanted, const QString& fault, bool isWhole)
{
    m_isChecking = false;
    OfKind& known = m_kinds[wanted.kind];
    if (!fault.isEmpty() && !isWhole) {
        m_store.discard(wanted);
        postpone(wanted, fault);
        return ask();
    }
    const QString problem = fault.isEmpty() ? m_store.accept(wanted) : QString();
    if (!problem.isEmpty()) {
        postpone(wanted, problem);
        return ask();
    }
    if (known.wanted && known.wanted->sha256 == wanted.sha256)
        known.wanted.reset();
    if (!fault.isEmpty()) {
        m_store.refuse(wanted, fault);
        setRefusal(wanted.kind, wanted.version, fault);
    } else {
        m_store.prune(wanted.kind, known.inUse);
        setRefusal(wanted.kind, 0, {});
        report();
        emit taken(wanted.kind);
    }
    ask();
}

void PublicationLink::postpone(const Announcement& wanted, const QString& reason)
{
    OfKind& known = m_kinds[wanted.kind];
    known.isPaused = true;
    known.pause = known.pause == 0
                      ? m_pace.refusedAgainAfter
                      : static_cast<int>(qMin<qint64>(qint64(known.pause) * 2, longestPause));
    QTimer::singleShot(known.pause, this, [this, kind = wanted.kind] {
        m_kinds[kind].isPaused = false;
        ask();
    });
    setRefusal(wanted.kind, wanted.version, reason);
}

void PublicationLink::setRefusal(PublicationKind kind, qint64 version, const QString& reason)
{
    OfKind& known = m_kinds[kind];
    if (known.refusal == reason && known.refused == version)
        return;
    known.refused = version;
    known.refusal = reason;
    report();
    emit problemChanged();
}

void PublicationLink::report()
{
    QVector<PublicationState> states;
    for (const PublicationKind kind : allPublicationKinds) {
        const OfKind& known = *m_kinds.find(kind);
        const QVector<StoredPublication> stored = m_store.publications(kind);
        const qint64 taken = stored.isEmpty() ? 0 : stored.last().announcement.version;
        states.append({kind, taken, known.inUse, known.refused, known.refusal});
    }
    m_link.publish(m_topics.publications(), encode(states));
}

} // namespace rivo::office
