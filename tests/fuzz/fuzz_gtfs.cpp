// The input is a GTFS folder: each file is a line "=== NAME" and what follows up to the next one.
// Files of other names than those that the reader looks for are left out.

#include "FeedChecks.h"
#include "Fuzzing.h"

#include <QDir>
#include <QMap>

namespace
{

const QByteArrayList& knownNames()
{
    static const QByteArrayList names{"agency.txt",          "areas.txt",
                                      "calendar.txt",        "calendar_dates.txt",
                                      "fare_attributes.txt", "fare_leg_rules.txt",
                                      "fare_media.txt",      "fare_products.txt",
                                      "fare_rules.txt",      "fare_transfer_rules.txt",
                                      "feed_info.txt",       "networks.txt",
                                      "passenger_types.txt", "rider_categories.txt",
                                      "route_networks.txt",  "routes.txt",
                                      "shapes.txt",          "stop_areas.txt",
                                      "stop_times.txt",      "stops.txt",
                                      "timeframes.txt",      "trips.txt"};
    return names;
}

QMap<QByteArray, QByteArray> unpacked(const QByteArray& packed)
{
    QMap<QByteArray, QByteArray> files;
    QByteArray name;
    int at = 0;
    while (at < packed.size()) {
        const int lineEnd = packed.indexOf('\n', at);
        const int next = lineEnd < 0 ? packed.size() : lineEnd + 1;
        const QByteArray line = packed.mid(at, next - at);
        if (line.startsWith("=== "))
            name = line.mid(4).trimmed();
        else if (knownNames().contains(name))
            files[name] += line;
        if (knownNames().contains(name))
            files[name] += QByteArray();
        at = next;
    }
    return files;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QString folder = fuzzing::folder() + QStringLiteral("/gtfs");
    QDir().mkpath(folder);
    const QMap<QByteArray, QByteArray> files = unpacked(fuzzing::bytes(data, size));
    for (const QByteArray& name : knownNames()) {
        const QString path = folder + QLatin1Char('/') + QString::fromLatin1(name);
        if (files.contains(name))
            fuzzing::write(path, files.value(name));
        else
            QFile::remove(path);
    }
    fuzzing::checkFeed(rivo::feed::loadFeed(folder, fuzzing::tightOptions()), folder);
    return 0;
}
