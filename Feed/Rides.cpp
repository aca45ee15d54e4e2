#include "Rides_p.h"

#include <algorithm>

namespace rivo::feed
{

namespace
{

void sortAndUnify(QVector<int>& numbers)
{
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
}

QVector<int> allPlatforms(const Tariff& tariff)
{
    QVector<int> platforms;
    for (int stop = 0; stop < tariff.stops.size(); ++stop) {
        if (tariff.stops.at(stop).isPlatform)
            platforms.append(stop);
    }
    return platforms;
}

} // namespace

Rides ridesOf(const Tariff& tariff, int route, int from, int to)
{
    if (to >= 0)
        return {route, from, {to}};
    if (route < 0 || !tariff.routes.at(route).hasTrips)
        return {route, from, allPlatforms(tariff)};
    QVector<int> behind; // the stop
    QVector<int> all;
    bool isVisited = false;
    for (const QVector<int>& run : tariff.routes.at(route).runs) {
        all += run;
        const auto stop = std::find(run.begin(), run.end(), from);
        if (stop == run.end())
            continue;
        isVisited = true;
        std::copy(stop + 1, run.end(), std::back_inserter(behind));
    }
    QVector<int>& destinations = isVisited ? behind : all;
    sortAndUnify(destinations);
    return {route, from, destinations};
}

} // namespace rivo::feed
