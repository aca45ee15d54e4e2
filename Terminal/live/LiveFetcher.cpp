#include "LiveFetcher.h"

#include "Inflate_p.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <algorithm>

namespace rivo::live
{

namespace
{

constexpr int statusOk = 200;
constexpr int statusNotModified = 304;
constexpr int mostRedirects = 3;
constexpr int longestTag = 1024;
constexpr qint64 pieceSize = 256 << 10; // bytes that wait to be read

int statusOf(const QNetworkReply& reply)
{
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

/// A header to send back; one that is too long counts as none.
QByteArray header(const QNetworkReply& reply, const char* name)
{
    const QByteArray value = reply.rawHeader(name);
    return value.size() <= longestTag ? value : QByteArray();
}

} // namespace

LiveFetcher::LiveFetcher(const LiveSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings), m_network(new QNetworkAccessManager(this)),
      m_wait(settings.interval)
{
    m_network->setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    m_next.setSingleShot(true);
    m_deadline.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &LiveFetcher::fetch);
    connect(&m_deadline, &QTimer::timeout, this, [this] {
        m_refusal = tr("the answer takes too long");
        m_reply->abort();
    });
}

LiveFetcher::~LiveFetcher()
{
    if (m_reply != nullptr)
        m_reply->disconnect(this);
}

void LiveFetcher::start() { fetch(); }

void LiveFetcher::fetch()
{
    if (m_settings.url.isEmpty())
        fetchFile();
    else
        fetchUrl();
}

/// A pipe or a device would block; a regular file does not.
void LiveFetcher::fetchFile()
{
    const QFileInfo info(m_settings.file);
    if (!info.exists() || !info.isFile())
        return fail(tr("there is no such file"));
    if (info.size() > m_settings.mostBytes)
        return fail(tr("the message is too large"));
    const qint64 time = info.lastModified().toMSecsSinceEpoch();
    if (time == m_fileTime && info.size() == m_fileSize) {
        waitForNext(true);
        emit unchanged();
        return;
    }
    QFile file(m_settings.file);
    if (!file.open(QIODevice::ReadOnly))
        return fail(file.errorString());
    m_fileTime = time;
    m_fileSize = info.size();
    const QByteArray bytes = file.read(m_settings.mostBytes);
    deliver(bytes);
}

void LiveFetcher::fetchUrl()
{
    QNetworkRequest request(m_settings.url);
    if (!secure(request))
        return;
    request.setMaximumRedirectsAllowed(mostRedirects);
    // Set here, it is unpacked here, too: Qt would do it without a limit.
    request.setRawHeader("Accept-Encoding", "gzip");
    if (!m_tag.isEmpty())
        request.setRawHeader("If-None-Match", m_tag);
    if (!m_modified.isEmpty())
        request.setRawHeader("If-Modified-Since", m_modified);
    m_bytes.clear();
    m_refusal.clear();
    m_reply = m_network->get(request);
    m_reply->setReadBufferSize(pieceSize);
    connect(m_reply.data(), &QNetworkReply::sslErrors, this,
            [this](const QList<QSslError>& errors) { m_refusal = textOf(errors); });
    connect(m_reply.data(), &QNetworkReply::readyRead, this, &LiveFetcher::takePart);
    connect(m_reply.data(), &QNetworkReply::finished, this, &LiveFetcher::finish);
    m_deadline.start(m_settings.timeout);
}

/// An address with http may lead to one with https. The files may be replaced while this runs.
bool LiveFetcher::secure(QNetworkRequest& request)
{
    const Certificates& files = m_settings.certificates;
    if (m_settings.url.scheme() != QLatin1String("https") && files.caFile.isEmpty() &&
        files.certificate.isEmpty())
        return true;
    const TlsResult tls = readCertificates(files);
    if (!tls.problem.isEmpty()) {
        fail(tls.problem);
        return false;
    }
    request.setSslConfiguration(tls.configuration);
    return true;
}

void LiveFetcher::takePart()
{
    m_bytes += m_reply->readAll();
    if (m_bytes.size() <= m_settings.mostBytes)
        return;
    m_refusal = tr("the message is too large");
    m_reply->abort();
}

void LiveFetcher::finish()
{
    m_deadline.stop();
    QNetworkReply* reply = m_reply;
    m_reply.clear();
    reply->deleteLater();
    take(*reply);
}

void LiveFetcher::take(QNetworkReply& reply)
{
    if (!m_refusal.isEmpty())
        return fail(m_refusal);
    if (reply.error() != QNetworkReply::NoError)
        return fail(reply.errorString());
    if (statusOf(reply) == statusNotModified) {
        waitForNext(true);
        emit unchanged();
        return;
    }
    if (statusOf(reply) != statusOk)
        return fail(tr("status %1").arg(statusOf(reply)));
    const QByteArray packing = reply.rawHeader("Content-Encoding").trimmed().toLower();
    const std::optional<QByteArray> bytes =
        packing == "gzip"                            ? inflated(m_bytes, m_settings.mostBytes)
        : packing.isEmpty() || packing == "identity" ? std::make_optional(m_bytes)
                                                     : std::nullopt;
    m_bytes.clear();
    if (!bytes)
        return fail(tr("the message cannot be unpacked"));
    m_tag = header(reply, "ETag");
    m_modified = header(reply, "Last-Modified");
    deliver(*bytes);
}

void LiveFetcher::deliver(const QByteArray& bytes)
{
    m_isRejected = false;
    emit received(bytes);
    if (m_isRejected) {
        m_tag.clear();
        m_modified.clear();
        m_fileTime = -1;
    }
    waitForNext(!m_isRejected);
}

/// The next request makes a new connection: an old one would keep the certificates as they were.
void LiveFetcher::fail(const QString& problem)
{
    m_network->clearConnectionCache();
    waitForNext(false);
    emit failed(problem);
}

void LiveFetcher::waitForNext(bool isGood)
{
    m_wait = isGood ? m_settings.interval
                    : std::max(m_settings.interval, std::min(2 * m_wait, m_settings.lastRetry));
    m_next.start(m_wait);
}

} // namespace rivo::live
