#pragma once

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QTemporaryDir>
#include <QTest>

/// Certificates of an authority that no other program trusts, made by openssl.
class TestCertificates
{
public:
    static bool canBeMade() { return QProcess::execute("openssl", {"version"}) == 0; }

    /// Makes the authority.
    explicit TestCertificates(const QString& name)
    {
        openssl({"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                 "-nodes", "-keyout", file("ca.key"), "-out", file("ca.pem"), "-days", "30",
                 "-subj", "/CN=" + name});
    }

    QString file(const QString& name) const { return m_folder.filePath(name); }

    /// Makes NAME.pem and NAME.key for a host; with -1 days it has expired.
    void make(const QString& name, const QString& host, int days = 30) const
    {
        QFile extension(file("extension"));
        if (!extension.open(QIODevice::WriteOnly))
            qFatal("cannot be written");
        extension.write("subjectAltName=DNS:" + host.toUtf8() + "\n");
        extension.close();
        openssl({"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                 "-keyout", file(name + ".key"), "-out", file("request"), "-subj", "/CN=" + host});
        openssl({"x509", "-req", "-in", file("request"), "-CA", file("ca.pem"), "-CAkey",
                 file("ca.key"), "-CAcreateserial", "-days", QString::number(days), "-extfile",
                 extension.fileName(), "-out", file(name + ".pem")});
    }

    /// What a server with NAME.pem speaks.
    QSslConfiguration serverWith(const QString& name) const
    {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificateChain(QSslCertificate::fromPath(file(name + ".pem")));
        QFile key(file(name + ".key"));
        if (key.open(QIODevice::ReadOnly))
            tls.setPrivateKey(QSslKey(&key, QSsl::Ec));
        return tls;
    }

    /// The same, and clients need a certificate of the authority.
    QSslConfiguration serverForClients(const QString& name) const
    {
        QSslConfiguration tls = serverWith(name);
        tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
        tls.setCaCertificates(QSslCertificate::fromPath(file("ca.pem")));
        return tls;
    }

private:
    static void openssl(const QStringList& arguments)
    {
        if (QProcess::execute("openssl", arguments) != 0)
            qFatal("openssl %s", qPrintable(arguments.join(' ')));
    }

    const QTemporaryDir m_folder;
};
