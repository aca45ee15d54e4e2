#pragma once

#include <QList>
#include <QSslConfiguration>
#include <QSslError>
#include <QString>

namespace rivo::live
{

/// Files in PEM form for connections with https; an empty name = none.
struct Certificates
{
    QString caFile;      ///< whose certificates are trusted; none = those of the system
    QString certificate; ///< of this terminal, with those that it depends on
    QString key;         ///< of this certificate
};

/// A configuration for connections, or what is wrong with the files, for people.
struct TlsResult
{
    QSslConfiguration configuration;
    QString problem; ///< empty if it can be used
};

/// Reads the files. Certificates of servers are always verified, with TLS 1.2 or later.
TlsResult readCertificates(const Certificates& files);

/// What keeps a server from being trusted, for people.
QString textOf(const QList<QSslError>& errors);

} // namespace rivo::live
