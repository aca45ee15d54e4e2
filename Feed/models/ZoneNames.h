#pragma once

#include <QHash>
#include <QString>

namespace rivo::feed
{

struct Feed;

/// What a ticket calls the zones of a feed.
class ZoneNames
{
public:
    explicit ZoneNames(const Feed& feed);

    /// The zone's own name, otherwise the one that all its stops have (platforms of one station),
    /// otherwise its number. Empty for zone 0, which is no zone: a pass is valid anywhere.
    QString name(int zone) const;

private:
    QHash<int, QString> m_ownNames;
    QHash<int, QString> m_stopNames; // empty where the stops of a zone differ
};

} // namespace rivo::feed
