#pragma once

#include <DriversFile.h>

#include <QPasswordDigestor>

/// A driver whose PIN is checked with one iteration: fast.
inline rivo::drivers::Driver sampleDriver(qint64 number, const QString& name, const QByteArray& pin)
{
    return {number, name, 1, "salt",
            QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, pin, "salt", 1, 32)};
}
