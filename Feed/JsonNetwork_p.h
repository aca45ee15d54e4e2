#pragma once

#include "Feed.h"

#include <QJsonObject>
#include <QString>

namespace rivo::feed
{

class FeedReport;

namespace json
{
struct NetworkEntry;
}

/// Reports identifiers that a list defines twice, and references of the network and the products to
/// what no list defines. `object` is what `network` was read from: references to a list that it
/// does not have are not judged.
void checkNetwork(const json::NetworkEntry& network, const QVector<FeedProduct>& products,
                  const QJsonObject& object, const QString& file, FeedReport& report);

Network toNetwork(const json::NetworkEntry& entry);

} // namespace rivo::feed
