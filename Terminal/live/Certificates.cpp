#include "Certificates.h"

#include <QCoreApplication>
#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>

namespace rivo::live
{

namespace
{

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(Certificates)
};

constexpr qint64 largestFile = 1 << 20; // bytes; all certificates of a system are a fifth of it

QByteArray contentOf(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.read(largestFile) : QByteArray();
}

QSslKey keyOf(const QString& name)
{
    const QByteArray content = contentOf(name);
    const QSslKey rsa(content, QSsl::Rsa);
    return rsa.isNull() ? QSslKey(content, QSsl::Ec) : rsa;
}

} // namespace

TlsResult readCertificates(const Certificates& files)
{
    TlsResult result;
    result.configuration = QSslConfiguration::defaultConfiguration();
    result.configuration.setProtocol(QSsl::TlsV1_2OrLater);
    result.configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    if (!files.caFile.isEmpty()) {
        const auto trusted = QSslCertificate::fromData(contentOf(files.caFile));
        if (trusted.isEmpty())
            result.problem = Texts::tr("no certificate in %1").arg(files.caFile);
        result.configuration.setCaCertificates(trusted);
    }
    if (!files.certificate.isEmpty()) {
        const auto own = QSslCertificate::fromData(contentOf(files.certificate));
        const QSslKey key = keyOf(files.key);
        if (own.isEmpty())
            result.problem = Texts::tr("no certificate in %1").arg(files.certificate);
        else if (key.isNull())
            result.problem = Texts::tr("no private key in %1").arg(files.key);
        result.configuration.setLocalCertificateChain(own);
        result.configuration.setPrivateKey(key);
    }
    return result;
}

QString textOf(const QList<QSslError>& errors)
{
    for (const QSslError& error : errors) {
        switch (error.error()) {
        case QSslError::HostNameMismatch:
            return Texts::tr("the certificate of the server is for another name");
        case QSslError::CertificateExpired:
            return Texts::tr("the certificate of the server has expired");
        case QSslError::CertificateNotYetValid:
            return Texts::tr("the certificate of the server is not valid yet");
        default:
            break;
        }
    }
    return Texts::tr("the certificate of the server is not trusted");
}

} // namespace rivo::live
