#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

namespace rivo::drivers
{

/// A driver as the operator's file has him. The PIN itself is nowhere.
struct Driver
{
    qint64 number = 0; ///< 1 to 999999999
    QString name;
    int iterations = 0;
    QByteArray salt;
    QByteArray hash; ///< PBKDF2 with HMAC-SHA-256 of the PIN in UTF-8, 32 bytes
};

struct DriversResult
{
    std::optional<QVector<Driver>> drivers; ///< nothing if there are problems
    QStringList problems;                   ///< "FILE: driver 2: no name", one a line
};

/// Reads a file of drivers, see docs/terminal.md. One entry that is wrong makes the whole file
/// wrong.
DriversResult readDrivers(const QString& file);

/// Whether this is the PIN of the driver. Takes as long for a wrong one as for the right one.
bool isPinOf(const Driver& driver, const QString& pin);

} // namespace rivo::drivers
