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

    /// The name that all stops of the zone bear (platforms of one station), otherwise the zone's
    /// number. Empty for zone 0, which is no zone: a pass is valid anywhere.
    QString name(int zone) const;

private:
    QHash<int, QString> m_stopNames; // empty where the stops of a zone differ
};

} // namespace rivo::feed
