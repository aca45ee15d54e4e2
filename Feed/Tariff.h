#pragma once

#include "FeedProblem.h"
#include "IdTable.h"

#include <QDate>
#include <QString>
#include <QVector>

namespace rivo::feed
{

// The fares of a feed as it states them. Records refer to one another by the numbers of their
// identifiers in the tables of Tariff; -1 = none.

/// A fare product, or a fare of the older form.
struct TariffProduct
{
    bool isInTransferRule = false;
    bool isPrepaid = false; ///< older form: sold before boarding
    int agency = -1;        ///< older form: of the routes where it is valid
    QVector<int> contains;  ///< older form: zones that a ride must pass
    int line = 0;
};

/// What a product costs one category of riders on one medium.
struct TariffPrice
{
    QString name; ///< of the product for this rider and medium; empty = none given
    int product = -1;
    int category = -1; ///< -1 = any rider
    int medium = -1;   ///< -1 = unknown
    qint64 amount = 0; ///< in minor units; negative for a discount of transfers
    int line = 0;
};

/// A row of fare_leg_rules.txt or fare_rules.txt; in the older form the network is the route, the
/// areas are zones.
struct TariffRule
{
    int product = -1;
    int network = -1;
    int fromArea = -1;
    int toArea = -1;
    int fromTimes = -1;
    int toTimes = -1;
    int priority = 0;
    int line = 0;
};

struct TariffCategory
{
    QString name;
    QString passengerType; ///< "PT_ADULT" ...; empty = mapped to none
    bool isDefault = false;
    int line = 0;
};

struct TariffMedium
{
    QString name;
    int type = 0; ///< 0 none, 1 paper, 2 transit card, 3 bank card, 4 mobile app
};

struct TariffArea
{
    QString name;
};

struct TariffAgency
{
    QString name;
};

/// The days of a service.
struct TariffService
{
    int days = 0; ///< bit 0 = Monday ... bit 6 = Sunday
    QDate first;
    QDate last;
    QVector<QDate> added; ///< sorted
    QVector<QDate> removed;

    bool runsOn(QDate date) const;
};

/// A span of a day: its begin belongs to it, its end does not.
struct TariffSpan
{
    int begin = 0; ///< seconds since midnight
    int end = 24 * 3600;
    int service = -1; ///< -1 = every day
};

/// A group of spans, of which one must hold.
struct TariffTimes
{
    QVector<TariffSpan> spans;
};

struct TariffStop
{
    bool isPlatform = true; ///< or a plain stop; otherwise a station, an entrance or the like
    int station = -1;
    int zone = -1;      ///< older form
    QVector<int> areas; ///< its own, otherwise its station's; sorted
    int line = 0;
};

struct TariffRoute
{
    int network = -1;
    int agency = -1;
    bool hasTrips = false;
    QVector<QVector<int>> runs; ///< the stops of its trips in order, each sequence once
};

/// A fault of a route's timetable: what may be sold on the route is not known.
struct TariffFault
{
    int route = -1;
    FeedProblem problem;
};

/// Where a product of a JSON feed is sold, as it states. Empty lists restrict nothing.
struct TariffValidity
{
    int fromArea = -1;
    int toArea = -1;
    QVector<int> zones;  ///< where rides begin and end; sorted
    QVector<int> routes; ///< sorted
    QVector<int> media;  ///< types
    QVector<TariffSpan> times;
    bool hasExpired = false;
};

struct Tariff
{
    enum class Form { FaresV2, Older, OwnValidity };

    Form form = Form::FaresV2;
    QString publisher; ///< of feed_info.txt
    QString currency;
    int decimals = 2;
    bool hasPriorities = false; ///< fare_leg_rules.txt has the column rule_priority

    IdTable productIds;
    IdTable categoryIds;
    IdTable mediumIds;
    IdTable areaIds; ///< areas, or zones of the older form
    IdTable networkIds;
    IdTable timesIds;
    IdTable stopIds;
    IdTable routeIds;
    IdTable agencyIds;

    QVector<TariffProduct> products;    ///< by number of productIds
    QVector<TariffPrice> prices;        ///< sorted by product, each product's in order of the file
    QVector<TariffRule> rules;          ///< in order of the file
    QVector<TariffCategory> categories; ///< by number of categoryIds
    QVector<TariffMedium> media;        ///< by number of mediumIds
    QVector<TariffArea> areas;          ///< by number of areaIds
    QVector<TariffTimes> times;         ///< by number of timesIds
    QVector<TariffService> services;    ///< that the times refer to
    QVector<TariffStop> stops;          ///< by number of stopIds
    QVector<TariffRoute> routes;        ///< by number of routeIds
    QVector<TariffAgency> agencies;     ///< by number of agencyIds
    QVector<TariffValidity> validities; ///< by number of prices; of OwnValidity alone
    QVector<TariffFault> faults;        ///< sorted by route

    /// Whether one of the spans holds.
    bool holds(const QVector<TariffSpan>& spans, const QDate& date, int seconds) const;
    /// Whether the group of times `number` holds; -1 always does.
    bool holds(int number, const QDate& date, int seconds) const;

    /// Name of the agency that runs the route `number`; empty if that is not known.
    QString agencyOf(int number) const;

    /// Seconds since midnight at which spans begin or end; sorted. Between two of them, on one day,
    /// the same spans hold.
    QVector<int> turningPoints() const;
};

} // namespace rivo::feed
