#pragma once

#include "OfficeUnderTest.h"

#include <JournalKey_p.h>
#include <QCryptographicHash>

/// Signs what a thief of the journal's key would: see docs/journal.md.
struct Forger
{
    explicit Forger(const VehicleJournal& vehicle)
        : key(*rivo::sales::JournalKey::read(fileIn(vehicle.folder.path()) + ".key"))
    {
    }

    rivo::sales::SealedRecord recordAfter(const rivo::sales::SealedRecord& last,
                                          const QByteArray& rows) const
    {
        rivo::sales::SealedRecord record;
        record.number = last.number + 1;
        record.content = rows;
        record.hash =
            QCryptographicHash::hash(last.hash + last.signature + rows, QCryptographicHash::Sha256);
        return sealed(record);
    }

    rivo::sales::SealedRecord sealed(rivo::sales::SealedRecord record) const
    {
        record.signature =
            key.sign("RivoSeal 1\n" + QByteArray::number(record.number) + '\n' + record.hash);
        return record;
    }

    rivo::sales::JournalKey key;
};

inline QByteArray textOf(const QByteArray& text)
{
    return 't' + QByteArray::number(text.size()) + ':' + text;
}

inline QByteArray recordRow(qint64 number, int kind,
                            const QByteArray& at = "2026-03-29T12:00:00.250+00:00")
{
    return "record;i" + QByteArray::number(number) + ";i" + QByteArray::number(kind) + ";i17;" +
           textOf(at) + "i7;\n";
}
