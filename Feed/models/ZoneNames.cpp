#include "ZoneNames.h"

#include "Feed.h"

namespace rivo::feed
{

ZoneNames::ZoneNames(const Feed& feed)
{
    for (const NetworkZone& zone : feed.network.zones)
        m_ownNames.insert(zone.number, zone.name);
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
    const QString ownName = m_ownNames.value(zone);
    const QString name = ownName.isEmpty() ? m_stopNames.value(zone) : ownName;
    return name.isEmpty() ? QString::number(zone) : name;
}

} // namespace rivo::feed
