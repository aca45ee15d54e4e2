#include "QueryText.h"

#include <FeedProblem.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTimeZone>

using rivo::feed::OfferQuery;
using rivo::feed::quoted;

QDateTime localTime(const QString& text)
{
    static const QRegularExpression form(QStringLiteral(
        "\\A([0-9]{4}-[0-9]{2}-[0-9]{2})T((?:[01][0-9]|2[0-3]):[0-9]{2}(?::[0-9]{2})?)\\z"));
    const QRegularExpressionMatch match = form.match(text);
    const QDate date = QDate::fromString(match.captured(1), Qt::ISODate);
    const QTime time = QTime::fromString(match.captured(2), Qt::ISODate);
    // UTC has every hour of every day; which zone is meant does not matter.
    return date.isValid() && time.isValid() ? QDateTime(date, time, Qt::UTC) : QDateTime();
}

std::optional<QVector<int>> mediaTypes(const QString& text)
{
    QVector<int> types;
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString& part : parts) {
        const QString digit = part.trimmed();
        if (digit.size() != 1 || digit < QLatin1String("0") || digit > QLatin1String("4"))
            return std::nullopt;
        types.append(digit.toInt());
    }
    return types;
}

namespace
{

/// A list of numbers, or the text of one.
std::optional<QVector<int>> mediaOf(const QJsonValue& value)
{
    QStringList types;
    const QJsonArray list = value.toArray();
    for (const QJsonValue& type : list)
        types.append(type.toVariant().toString());
    if (value.isArray() && list.isEmpty())
        return QVector<int>();
    return mediaTypes(value.isArray() ? types.join(QLatin1Char(',')) : value.toString());
}

} // namespace

OfferQuery queryOf(const QByteArray& json, QString& error)
{
    QJsonParseError parsing;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parsing);
    const QJsonObject object = document.object();
    OfferQuery query;
    query.route = object.value(QLatin1String("route")).toString();
    query.stop = object.value(QLatin1String("stop")).toString();
    query.to = object.value(QLatin1String("to")).toString();
    const QString at = object.value(QLatin1String("at")).toString();
    query.at = localTime(at);
    const QJsonValue media = object.value(QLatin1String("media"));
    const auto types = mediaOf(media);
    if (!document.isObject())
        error = QStringLiteral("%1, expected an object in JSON").arg(parsing.errorString());
    else if (!query.at.isValid())
        error = QStringLiteral("at: %1, expected a time such as 2026-03-02T08:15").arg(quoted(at));
    else if (!media.isUndefined() && !media.isNull() && !types)
        error = QStringLiteral("media: expected types from 0 to 4, such as 0,1");
    query.media = types.value_or(query.media);
    return query;
}
