#include "GtfsReader_p.h"

#include "GtfsNetwork_p.h"
#include "GtfsProducts_p.h"
#include "GtfsTables_p.h"

namespace rivo::feed
{

namespace
{

using namespace gtfs;

/// The first agency's name, otherwise the publisher's.
QString readName(Folder& folder)
{
    QString operatorName;
    const auto take = [&](const QString& name) {
        if (operatorName.isEmpty())
            operatorName = name;
    };
    folder.readIfThere<AgencyRow>(agencyFile, [&](const AgencyRow& row, auto&) { take(row.name); });
    folder.readIfThere<FeedInfoRow>(feedInfoFile,
                                    [&](const FeedInfoRow& row, auto&) { take(row.publisher); });
    return operatorName;
}

} // namespace

std::optional<Feed> readGtfsFeed(const QString& path, const FeedOptions& options,
                                 FeedReport& report)
{
    Folder folder(path, options, report);
    Feed feed;
    feed.name = readName(folder);
    Products products(folder);
    products.read();
    NetworkReader network(folder, feed.network);
    network.read(products.areas());
    if (!report.hasProblems())
        products.addTo(feed);
    if (report.hasProblems())
        return std::nullopt;
    products.noticeUnmappedCategories();
    network.setStopAreas([&](const QString& area) { return products.numberOfArea(area); });
    return feed;
}

} // namespace rivo::feed
