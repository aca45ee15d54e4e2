#pragma once

#include "ToolRunner.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

inline const QStringList allModels{"grid",      "basket", "fare-products",
                                   "z-reports", "fleet",  "devices"};

inline const QString coast = QStringLiteral(FEEDS "/coast-line.json");
inline const QString hill = QStringLiteral(FEEDS "/hill-valley.json");
inline const QString lake = QStringLiteral(TEST_FEEDS "/gtfs-lakeside");

inline QJsonObject product(int fareProductId, bool hasExpired = false,
                           const QString& type = "PT_ADULT")
{
    return {{"passengerTypeId", 1},           {"description", "Adult"},
            {"passengerTypeCode", type},      {"price", 0.1},
            {"fareProductId", fareProductId}, {"fareProductName", "Single"},
            {"fromStopGroupId", 1},           {"toStopGroupId", 2},
            {"hasExpired", hasExpired}};
}

inline QJsonObject feedOf(const QString& section = {}, const QJsonArray& entries = {})
{
    QJsonObject feed{
        {"format", "rivo-feed"}, {"version", 1}, {"currency", "EUR"}, {"products", QJsonArray()}};
    if (!section.isEmpty())
        feed.insert(section, entries);
    return feed;
}

/// The rows in the JSON that a run wrote; none if it failed.
inline QJsonArray rowsOf(const Outcome& outcome)
{
    return outcome.exitCode == 0
               ? QJsonDocument::fromJson(outcome.output).object().value("rows").toArray()
               : QJsonArray();
}

/// The values of one role, as text.
inline QString column(const QJsonArray& rows, const QString& role)
{
    QStringList texts;
    for (const QJsonValue& row : rows)
        texts.append(row.toObject().value(role).toVariant().toString());
    return texts.join(' ');
}
