#pragma once

#include "Certificates.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

namespace rivo::live
{

/// Where the messages come from: the operator's choice.
struct LiveSettings
{
    QUrl url;                  ///< http or https; empty = a file
    QString file;              ///< empty = an address
    int interval = 15000;      ///< milliseconds between two requests
    int timeout = 20000;       ///< milliseconds that an answer may take as a whole
    int lastRetry = 300000;    ///< milliseconds; after failures the interval doubles up to this
    int mostBytes = 4 << 20;   ///< of a message, unpacked
    Certificates certificates; ///< for https

    bool isThere() const { return !url.isEmpty() || !file.isEmpty(); }
};

/// Fetches messages again and again, one at a time. A server that has nothing new says so, and a
/// server that fails, sends too much or takes too long is asked less often. Never blocks. With
/// https a server whose certificate is not trusted gets no request.
class LiveFetcher : public QObject
{
    Q_OBJECT

public:
    explicit LiveFetcher(const LiveSettings& settings, QObject* parent = nullptr);
    ~LiveFetcher() override;

    void start();

    /// To be called from a slot of received() if the message cannot be read: the next answer is not
    /// compared with it, and it counts as a failure.
    void reject() { m_isRejected = true; }

signals:
    /// A message, which may be the same as the last one.
    void received(const QByteArray& bytes);
    /// The server was asked and has nothing new, or the file has not changed.
    void unchanged();
    void failed(const QString& problem);

private:
    void fetch();
    void fetchFile();
    void fetchUrl();
    bool secure(QNetworkRequest& request);
    void takePart();
    void finish();
    void take(QNetworkReply& reply);
    void fail(const QString& problem);
    void deliver(const QByteArray& bytes);
    void waitForNext(bool isGood);

    const LiveSettings m_settings;
    QNetworkAccessManager* m_network;
    QPointer<QNetworkReply> m_reply;
    QByteArray m_bytes;
    QString m_refusal;     ///< why the answer is not read to its end
    QByteArray m_tag;      ///< of the last message
    QByteArray m_modified; ///< of the last message
    qint64 m_fileTime = -1;
    qint64 m_fileSize = -1;
    QTimer m_next;
    QTimer m_deadline;
    bool m_isRejected = false;
    int m_wait;
};

} // namespace rivo::live
