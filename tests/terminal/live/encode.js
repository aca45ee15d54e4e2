// Writes the messages of data/ with an encoder that is not ours: npm's gtfs-realtime-bindings.
//
//     node encode.js FOLDER
"use strict";
const fs = require("fs");
const path = require("path");
const {transit_realtime: rt} = require("gtfs-realtime-bindings");

const folder = process.argv[2];
const header = {gtfsRealtimeVersion: "2.0", timestamp: 1774166400};

function write(name, message) {
    fs.writeFileSync(path.join(folder, name), rt.FeedMessage.encode(message).finish());
}

// Every field that the terminal reads, and neighbours that it skips.
write("everything.pb", {
    header: {...header, incrementality: rt.FeedHeader.Incrementality.FULL_DATASET},
    entity: [
        {
            id: "entity-1",
            vehicle: {
                trip: {
                    tripId: "T1", routeId: "R1", directionId: 1, startTime: "08:00:00", startDate: "20260322",
                    scheduleRelationship: rt.TripDescriptor.ScheduleRelationship.SCHEDULED,
                },
                vehicle: {id: "4711", label: "Bus 11", licensePlate: "AB-CD 11"},
                position: {latitude: 48.1173, longitude: 11.5167, bearing: 84.5, odometer: 1234567.5, speed: 11.5},
                currentStopSequence: 7,
                stopId: "S7",
                currentStatus: rt.VehiclePosition.VehicleStopStatus.STOPPED_AT,
                timestamp: 1774166390,
                congestionLevel: rt.VehiclePosition.CongestionLevel.CONGESTION,
                occupancyStatus: rt.VehiclePosition.OccupancyStatus.FEW_SEATS_AVAILABLE,
            },
        },
        {id: "south-west", vehicle: {position: {latitude: -33.8688, longitude: -70.25}}},
        {id: "update", tripUpdate: {trip: {tripId: "T2"}, stopTimeUpdate: [{stopSequence: 1}]}},
        {id: "alert", alert: {headerText: {translation: [{text: "Détour"}]}, informedEntity: []}},
        {
            id: "umlauts",
            vehicle: {
                vehicle: {id: "Zürich 7", label: "Großraumbus"},
                trip: {routeId: "R2"},
                position: {latitude: 47.25, longitude: 8.5, bearing: 0},
                currentStatus: rt.VehiclePosition.VehicleStopStatus.INCOMING_AT,
            },
        },
    ],
});
write("empty.pb", {header});
write("changes.pb", {
    header: {...header, incrementality: rt.FeedHeader.Incrementality.DIFFERENTIAL},
    entity: [{id: "1", isDeleted: true}],
});
// Vehicles that do not count.
write("wrong.pb", {
    header,
    entity: [
        {id: "nowhere", vehicle: {vehicle: {id: "1"}}},
        {id: "beyond", vehicle: {position: {latitude: 91, longitude: 0}}},
        {id: "nan", vehicle: {position: {latitude: NaN, longitude: 0}}},
        {id: "deleted", isDeleted: true, vehicle: {position: {latitude: 1, longitude: 1}}},
        {id: "", vehicle: {position: {latitude: 1, longitude: 1}}},
        {id: "good", vehicle: {position: {latitude: 1, longitude: 1, bearing: 400}}},
        {id: "again", vehicle: {vehicle: {id: "good"}, position: {latitude: 2, longitude: 2}}},
    ],
});
