#pragma once

#include "Offers.h"

#include <QStringList>

/// The query of a line "route stop time [to=S] [media=T]".
inline rivo::feed::OfferQuery queryOf(const QString& line)
{
    const QStringList words = line.split(' ');
    rivo::feed::OfferQuery query;
    query.route = words.value(0);
    query.stop = words.value(1);
    query.at = QDateTime::fromString(words.value(2), "yyyy-MM-dd'T'HH:mm");
    for (const QString& word : words.mid(3)) {
        if (word.startsWith("to="))
            query.to = word.mid(3);
        else
            query.media = {word.mid(6).toInt()};
    }
    return query;
}
