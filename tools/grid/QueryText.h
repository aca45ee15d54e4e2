#pragma once

#include <Offers.h>

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

/// YYYY-MM-DDTHH:MM, perhaps with seconds, as a time without a zone; invalid if `text` is none.
QDateTime localTime(const QString& text);

/// "0,1" as types of media; nothing if `text` is no list of types.
std::optional<QVector<int>> mediaTypes(const QString& text);

/// The query that a line of JSON asks; `error` says what is wrong with it.
rivo::feed::OfferQuery queryOf(const QByteArray& json, QString& error);
