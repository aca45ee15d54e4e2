#include "TicketCode.h"

#include <QCryptographicHash>
#include <QMessageAuthenticationCode>
#include <QStringList>

namespace rivo::ticket
{

namespace
{

constexpr int checkBytes = 8;
constexpr int checkGroup = 4; ///< digits

QString checkValue(const QString& content, const QByteArray& key)
{
    const QByteArray digest =
        QMessageAuthenticationCode::hash(content.toUtf8(), key, QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.left(checkBytes).toHex().toUpper());
}

} // namespace

QString codeOf(const sales::Ticket& ticket, const sales::Currency& currency, const QByteArray& key)
{
    const QString time = ticket.soldAt.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    const QStringList parts{QStringLiteral("R1"),
                            sales::ticketNumberText(ticket.number),
                            time,
                            QString::number(ticket.price),
                            currency.code(),
                            QString::number(ticket.fareProductId),
                            QString::number(ticket.passengerTypeId),
                            QString::number(ticket.fromStopGroupId),
                            QString::number(ticket.toStopGroupId)};
    const QString content = parts.join(QLatin1Char('|'));
    return content + QLatin1Char('|') + checkValue(content, key);
}

bool isCodeValid(const QString& code, const QByteArray& key)
{
    const int last = code.lastIndexOf(QLatin1Char('|'));
    return last > 0 && code.mid(last + 1) == checkValue(code.left(last), key);
}

QString checkText(const QString& code)
{
    const QString check = code.section(QLatin1Char('|'), -1);
    QStringList groups;
    for (int at = 0; at < check.size(); at += checkGroup)
        groups.append(check.mid(at, checkGroup));
    return groups.join(QLatin1Char('-'));
}

} // namespace rivo::ticket
