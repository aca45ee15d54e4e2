#pragma once

#include <Records.h>

#include <QByteArray>
#include <QString>

namespace rivo::ticket
{

/// The content of the square code of a ticket: number, time, price, what was sold, a check value.
/// docs/ticket.md describes the format.
///
/// The check value is made with the operator's `key`. With an empty key it finds misread codes, but
/// anybody can make it.
QString codeOf(const sales::Ticket& ticket, const sales::Currency& currency, const QByteArray& key);

/// Whether the check value of a code is the one that `key` makes.
bool isCodeValid(const QString& code, const QByteArray& key);

/// The last part of a code, as it is on the paper for people: "1A2B-3C4D-5E6F-7081".
QString checkText(const QString& code);

} // namespace rivo::ticket
