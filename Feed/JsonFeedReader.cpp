#include "JsonFeedReader_p.h"

#include "Amount.h"
#include "JsonFields_p.h"
#include "JsonNetwork_p.h"
#include "JsonTariff_p.h"
#include "PassengerTypes.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>
#include <set>

namespace rivo::feed
{

namespace
{

using namespace json;

/// Reports a printer that is none of the peripherals. A list that could not be read is not judged.
void checkPrinter(const Document& feed, const QJsonValue& peripherals, const QString& file,
                  FeedReport& report)
{
    const auto given = peripherals.toArray().size();
    if (!feed.printerId || !peripherals.isArray() || given != feed.peripherals.size())
        return;
    const bool isThere =
        std::any_of(feed.peripherals.cbegin(), feed.peripherals.cend(),
                    [&](const FeedPeripheral& device) { return device.id == *feed.printerId; });
    if (!isThere)
        report.add(FeedProblem{file, 0, 0, QStringLiteral("/printerId"),
                               QStringLiteral("printerId"), QString::number(*feed.printerId),
                               QStringLiteral("an id of /peripherals")});
}

/// Reports prices with more decimals than the currency has. What could not be read is not judged.
void checkPrices(const Document& feed, const QString& file, FeedReport& report)
{
    const int decimals = feed.currencyDecimals();
    const auto check = [&](const char* list, int index, double price) {
        if (toMinorUnits(price, decimals))
            return;
        const QString pointer = QStringLiteral("/%1/%2/price").arg(QLatin1String(list)).arg(index);
        report.add(FeedProblem{file, 0, 0, pointer, QStringLiteral("price"), found(price),
                               QStringLiteral("a number with at most %1 decimals").arg(decimals)});
    };
    if (!isCurrencyCode(feed.currency))
        return;
    for (int i = 0; i < feed.products.size(); ++i)
        check("products", i, feed.products.at(i).price);
    for (int i = 0; i < feed.fareProducts.size(); ++i)
        check("fareProducts", i, feed.fareProducts.at(i).price);
}

/// Names every text that the terminal takes as type 0, at its first product.
void noticeUnknownTypes(const Feed& feed, const QString& file, FeedReport& report)
{
    std::set<QString> seen;
    for (int i = 0; i < feed.products.size(); ++i) {
        const QString& text = feed.products.at(i).passengerTypeCode;
        if (passengerTypeNumber(text) != 0 || !seen.insert(text).second)
            continue;
        report.add(FeedNotice{file, 0,
                              QStringLiteral("/products/%1/passengerTypeCode: unknown passenger "
                                             "type %2, taken as type 0")
                                  .arg(i)
                                  .arg(quoted(text))});
    }
}

} // namespace

std::optional<Feed> readJsonFeed(const QString& path, const FeedOptions& options,
                                 FeedReport& report)
{
    std::optional<JsonText> text = readJsonText(path, options.limits, report);
    if (!text)
        return std::nullopt;
    Document feed;
    RecordReader(path, options.limits, report).read(text->object, Place(), feed);
    checkPrices(feed, path, report);
    checkPrinter(feed, text->object.value(QLatin1String("peripherals")), path, report);
    if (feed.networkEntry)
        checkNetwork(*feed.networkEntry, feed.products,
                     text->object.value(QLatin1String("network")).toObject(), path, report);
    if (report.hasProblems()) {
        completeProblems(text->utf8, report.keptProblems());
        return std::nullopt;
    }
    if (!text->object.contains(QLatin1String("supportedPassengerTypes")))
        feed.supportedPassengerTypes = passengerTypesOf(feed.products);
    if (feed.networkEntry)
        feed.network = toNetwork(*feed.networkEntry);
    feed.tariff = tariffOf(feed);
    noticeUnknownTypes(feed, path, report);
    return std::move(static_cast<Feed&>(feed));
}

} // namespace rivo::feed
