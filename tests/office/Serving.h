#pragma once

#include "Broker.h"

#include <Database.h>
#include <QProcess>

/// The program of the office, which serves until it is destroyed.
struct Serving
{
    Serving(const Broker& broker, const rivo::backoffice::DatabaseSettings& database,
            const QStringList& more = {})
    {
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(RIVO_OFFICE, QStringList{"serve", "--broker", "127.0.0.1", "--port",
                                               QString::number(broker.port()), "--database",
                                               database.name, "--database-host", database.host,
                                               "--database-user", database.user} +
                                       more);
    }

    ~Serving()
    {
        process.kill();
        process.waitForFinished();
    }

    /// Its exit code when it is asked to end.
    int stop()
    {
        process.terminate();
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit
                   ? process.exitCode()
                   : -1;
    }

    bool says(const QByteArray& text)
    {
        messages += process.readAll();
        return messages.contains(text);
    }

    QProcess process;
    QByteArray messages;
};
