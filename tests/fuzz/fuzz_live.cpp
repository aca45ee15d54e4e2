// The input is a message of GTFS-Realtime.

#include "Fuzzing.h"

#include <AssetItem.h>
#include <AssetsModel.h>
#include <Feed.h>
#include <LiveFleet.h>
#include <LiveMessage.h>

#include <QSet>

using namespace rivo;

namespace
{

constexpr qint64 now = 1774166400;

void check(const live::LiveMessage& message)
{
    fuzzing::require(message.time >= 0, "a negative time");
    QSet<QString> ids;
    for (const live::LiveVehicle& vehicle : message.vehicles) {
        fuzzing::require(!vehicle.id.isEmpty(), "a vehicle without an id");
        fuzzing::require(!ids.contains(vehicle.id), "an id twice");
        ids.insert(vehicle.id);
        fuzzing::require(vehicle.coordinate.isValid(), "a position that does not exist");
        fuzzing::require(vehicle.time >= 0, "a negative time of a vehicle");
        for (const QString& text :
             {vehicle.id, vehicle.label, vehicle.plate, vehicle.trip, vehicle.route})
            fuzzing::require(text.size() <= live::longestText, "a long text");
    }
}

/// Each vehicle has a row, and after a day none is left.
void checkRows(const live::LiveMessage& message)
{
    QObject prototypes;
    AssetsModel model(&prototypes);
    live::LiveFleet rows(feed::Network(), fleet::Timetable(), model);
    for (int i = 0; i < 2; ++i)
        rows.apply(message, now + i);
    fuzzing::require(model.rowCount() <= message.vehicles.size(), "more rows than vehicles");
    const QHash<int, fleet::Seconds> silences = rows.silences(now + 1);
    fuzzing::require(silences.size() == model.rowCount(), "a row that was not reported");
    rows.age(now + 86400);
    fuzzing::require(model.rowCount() == 0, "a row that stays");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const live::LiveResult result = live::readMessage(fuzzing::bytes(data, size));
    fuzzing::require(result.message.has_value() == result.problem.isEmpty(),
                     "a message and its problem disagree");
    if (!result.message)
        return 0;
    check(*result.message);
    checkRows(*result.message);
    return 0;
}
