#include "ZoneNames.h"

#include "Feed.h"

namespace rivo::feed
{

ZoneNames::ZoneNames(const Feed& feed)
{
    for (const NetworkStop& stop : feed.network.stops) {
        for (const int zone : stop.areas) {
            const auto known = m_stopNames.find(zone);
            if (known == m_stopNames.end())
                m_stopNames.insert(zone, stop.name);
            else if (*known != stop.name)
                known->clear();
        }
    }
}

QString ZoneNames::name(int zone) const
{
    if (zone == 0)
        return {};
    const QString stopName = m_stopNames.value(zone);
    return stopName.isEmpty() ? QString::number(zone) : stopName;
}

} // namespace rivo::feed
