#pragma once

#include "FleetSimulator.h"
#include "TestNetwork.h"

#include <AssetItem.h>
#include <AssetsModel.h>

#include <memory>

/// From stop 1 to stop 4, three thousandths of a degree east, and back.
inline QStringList out(const QString& start, const QString& end)
{
    return {"1 " + start, "4 " + end};
}

inline QStringList back(const QString& start, const QString& end)
{
    return {"4 " + start, "1 " + end};
}

/// A fleet with a simulator on it.
struct Fleet
{
    explicit Fleet(const rivo::feed::Network& network, const QVector<int>& routesOfVehicles = {},
                   bool updated = true)
        : model(&owner)
    {
        int id = 100;
        for (const int route : routesOfVehicles) {
            ++id;
            model.appendRow(new AssetItem(id, QString("R %1").arg(id), "", "in the depot",
                                          "off duty", route, "", QGeoCoordinate(1, 2), updated,
                                          true, 15.0, &model));
        }
        simulator =
            std::make_unique<rivo::fleet::FleetSimulator>(rivo::fleet::Timetable(network), model);
    }

    AssetItem& vehicle(int id) { return *qobject_cast<AssetItem*>(model.findById(id)); }

    /// Thousandths of a degree east of the origin.
    double east(int id) { return vehicle(id).assetCoordinate().longitude() * 1000.0; }

    int tripOf(int id) const
    {
        const rivo::fleet::Trip* trip = simulator->tripOf(id);
        return trip == nullptr ? -1 : trip->number;
    }

    void setTime(const QString& time) { simulator->setTime(rivo::feed::seconds(time)); }

    /// "2.5 driving": thousandths of a degree east of the origin, and what it does.
    QString stateOf(int id)
    {
        return QString("%1 %2").arg(east(id), 0, 'g', 6).arg(vehicle(id).drivingStatus());
    }

    QObject owner;
    AssetsModel model;
    std::unique_ptr<rivo::fleet::FleetSimulator> simulator;
};

inline constexpr int hour = 3600;
inline constexpr int minute = 60;
