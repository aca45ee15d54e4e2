#!/usr/bin/env python3
"""Makes small random GTFS feeds with fares of both forms, and queries of what a bus may sell.

    feed_generator.py FOLDER [--seed S] [--queries Q]

writes the feed of the seed below FOLDER and prints Q queries, one JSON object per line. A seed always gives the same
feed and the same queries. About one feed in six has a fault, which make_feed() names.
"""

import argparse
import datetime
import json
import random
import sys

from generated_feed import CURRENCIES, FIRST_DAY, GeneratedFeed, WEEKDAYS

# ------------------------------------------------------------------------------------------------- the parts of a feed


def add_agencies(feed):
    for agency_id in feed.ids("agency", 1, 2):
        feed.add("agency.txt", agency_id=agency_id, agency_name="City Bus, Ltd.", agency_url="https://example.com",
                 agency_timezone="America/Toronto")


def add_stops(feed, with_zones):
    zones = feed.ids("zone", 1, 5) if with_zones else []
    stations = feed.ids("station", 0, 2)
    for station in stations:
        feed.add("stops.txt", stop_id=station, stop_name=f'"{station}", station', stop_lat="45.5", stop_lon="-73.5",
                 location_type="1")
        if feed.chance(0.4):
            feed.add("stops.txt", stop_id=f"door of {station}", stop_name="Door", stop_lat="45.5", stop_lon="-73.5",
                     location_type="2", parent_station=station)
    for stop_id in feed.ids("stop", 3, 8):
        stop_id = "s" + stop_id if stop_id in stations else stop_id
        feed.add("stops.txt", stop_id=stop_id, stop_name=f"Stop {stop_id}, centre", stop_lat="45.51", stop_lon="-73.51",
                 zone_id=feed.pick(zones) if zones and feed.chance(0.85) else "", location_type=feed.pick(("", "0")),
                 parent_station=feed.pick(stations) if stations and feed.chance(0.5) else "")


def plain_stops(feed):
    return [row["stop_id"] for row in feed.rows("stops.txt") if row["location_type"] in ("", "0")]


def add_services(feed):
    services = feed.ids("service", 1, 3)
    form = feed.pick(("both", "both", "calendar", "dates"))
    if form != "dates":
        for service in services:
            days = feed.pick(("1111111", "1111100", "0000011", "0000100", "0000010", "1010101"))
            start = FIRST_DAY + datetime.timedelta(feed.random.randint(0, 7))
            end = start + datetime.timedelta(feed.random.randint(6, 20))
            feed.add("calendar.txt", service_id=service, **dict(zip(WEEKDAYS, days)), start_date=f"{start:%Y%m%d}",
                     end_date=f"{end:%Y%m%d}")
    if form != "calendar":
        for service in services:
            for offset in sorted(feed.random.sample(range(-2, 30), feed.random.randint(1, 5))):
                day = FIRST_DAY + datetime.timedelta(offset)
                exception = "1" if form == "dates" else feed.pick(("1", "2"))
                feed.add("calendar_dates.txt", service_id=service, date=f"{day:%Y%m%d}", exception_type=exception)
    return services


def add_routes(feed, services):
    agencies = feed.listed("agency.txt", "agency_id")
    for route_id in feed.ids("route", 1, 3):
        agency_id = "" if len(agencies) == 1 and feed.chance(0.3) else feed.pick(agencies)
        feed.add("routes.txt", route_id=route_id, agency_id=agency_id, route_short_name=route_id, route_type="3",
                 network_id="")
    feed.make("trips.txt")
    feed.make("stop_times.txt")
    stops = plain_stops(feed)
    served = feed.some(stops, 2, max(2, len(stops) - 1))
    counts = (0,) if feed.chance(0.08) else (0, 1, 2, 2, 3, 4)
    for route in feed.rows("routes.txt"):
        patterns = []
        for number in range(feed.pick(counts)):
            if patterns and feed.chance(0.35):
                pattern = feed.pick(patterns)[::-1]
            elif patterns and feed.chance(0.4):
                pattern = list(feed.pick(patterns))
                pattern[feed.random.randrange(len(pattern) // 2, len(pattern))] = feed.pick(served)
                pattern = pattern if all(one != next_one for one, next_one in zip(pattern, pattern[1:])) else served[:2]
            else:
                pattern = feed.some(served, 2, 6)
                if feed.chance(0.3):
                    pattern.insert(feed.random.randint(2, len(pattern)), feed.pick(pattern[:2]))
                pattern = [stop for at, stop in enumerate(pattern) if at == 0 or stop != pattern[at - 1]]
            patterns.append(pattern)
            trip_id = f"{route['route_id']}/{number}"
            feed.add("trips.txt", route_id=route["route_id"], service_id=feed.pick(services), trip_id=trip_id,
                     direction_id=feed.pick(("", "0", "1")))
            numbers = sorted(feed.random.sample(range(feed.pick((12, 120))), len(pattern)))
            for place, (stop, number_of_visit) in enumerate(zip(pattern, numbers)):
                time = f"{24 + place:02d}:10:00" if number == 3 else f"{8 + place:02d}:10:00"
                feed.add("stop_times.txt", trip_id=trip_id, arrival_time=time, departure_time=time, stop_id=stop,
                         stop_sequence=str(number_of_visit))


def add_networks(feed):
    """The networks of the routes, in either form or in none."""
    networks = feed.ids("network", 1, 3)
    form = feed.pick(("none", "routes", "routes", "files", "files"))
    for route in feed.rows("routes.txt"):
        if feed.chance(0.2) or form == "none":
            continue
        network = feed.pick(networks)
        if form == "routes":
            route["network_id"] = network
        else:
            feed.add("route_networks.txt", network_id=network, route_id=route["route_id"])
    if form == "files":
        for network in networks:
            feed.add("networks.txt", network_id=network, network_name=f"Network {network}")
        return networks
    return feed.listed("routes.txt", "network_id")


def add_areas(feed):
    areas = feed.ids("area", 0, 5)
    of_plain_stops = feed.pick(((4, 5, 2), (1, 6, 1), (1, 2, 6)))
    for area in areas:
        feed.add("areas.txt", area_id=area, area_name=f"Area, {area}")
    for stop in feed.rows("stops.txt"):
        weights = (1, 2, 0) if stop["location_type"] in ("1", "2") else of_plain_stops
        count = feed.random.choices((0, 1, 2), weights)[0]
        for area in feed.random.sample(areas, min(count, len(areas))):
            feed.add("stop_areas.txt", area_id=area, stop_id=stop["stop_id"])
    return areas


def add_timeframes(feed, services):
    """Groups of timeframes: whole days, parts of days, and nights over midnight as two rows."""
    groups = feed.ids("time", 0, 3)
    for group in groups:
        form = feed.pick(("day", "parts", "parts", "night"))
        if form == "day":
            for service in feed.some(services, 1, 2):
                feed.add("timeframes.txt", timeframe_group_id=group, start_time="", end_time="", service_id=service)
            continue
        if form == "night":
            intervals = [("22:00:00", "24:00:00"), ("00:00:00", feed.pick(("04:00:00", "4:00:00", "00:01:00")))]
        else:
            cuts = feed.random.sample((0, 6 * 60, 7 * 60 + 30, 9 * 60, 12 * 60, 16 * 60, 18 * 60 + 15, 24 * 60), 4)
            cuts = [cut * 60 + (30 if 0 < cut < 1440 and feed.chance(0.3) else 0) for cut in sorted(cuts)]
            times = [f"{cut // 3600:02d}:{cut // 60 % 60:02d}:{cut % 60:02d}" for cut in cuts]
            times = [time[1:] if time[0] == "0" and feed.chance(0.2) else time for time in times]
            intervals = [(times[0], times[1]), (times[2], times[3])][:feed.pick((1, 2))]
        for start, end in intervals:
            feed.add("timeframes.txt", timeframe_group_id=group, start_time=start, end_time=end,
                     service_id=feed.pick(services))
    return groups


def amount_text(feed, units, decimals):
    """The amount of so many smallest units, sometimes without decimals that are 0."""
    text = str(abs(units)).rjust(decimals + 1, "0")
    if decimals:
        text = text[:-decimals] + "." + text[-decimals:]
        if feed.chance(0.3):
            text = text.rstrip("0").rstrip(".")
    return ("-" if units < 0 else "") + text


def add_products(feed, currency):
    """The products; those that transfer rules name come in the second list."""
    media = feed.ids("medium", 0, 5)
    types = feed.pick(("0011234", "0122334"))
    for medium in media:
        feed.add("fare_media.txt", fare_media_id=medium, fare_media_name=f'The "{medium}"',
                 fare_media_type=feed.pick(types))
    categories = feed.ids("rider", 0, 3)
    for category in categories:
        feed.add("rider_categories.txt", rider_category_id=category, rider_category_name=f"Rider, {category}",
                 is_default_fare_category="1" if category == categories[0] else "")
    products = feed.ids("product", 2, 7)
    in_transfers = feed.some(products, 1, 3) if feed.chance(0.5) else []
    most_rows = feed.pick((1, 2, 4))
    amounts = feed.some([0, 5, 50, 100, 250, 300, 1234, 14000], 2, 4)
    feed.make("fare_products.txt")
    for product in products:
        keys = set()
        for _ in range(feed.random.randint(1, most_rows)):
            category = feed.pick(categories) if categories and feed.chance(0.6) else ""
            keys.add((category, feed.pick(media) if media and feed.chance(0.8) else ""))
        for category, medium in sorted(keys):
            units = feed.pick(amounts)
            if product in in_transfers and feed.chance(0.3):
                units = -max(units, 1)
            feed.add("fare_products.txt", fare_product_id=product, fare_product_name=f"Ticket, {product}",
                     rider_category_id=category, fare_media_id=medium,
                     amount=amount_text(feed, units, CURRENCIES[currency]), currency=currency)
    return products, in_transfers


def ride_of(feed):
    """The networks and areas of a ride on one of the trips, or None: rules of such rides are likely to fit."""
    if not feed.rows("trips.txt"):
        return None
    trip = feed.pick(feed.rows("trips.txt"))
    visits = [row["stop_id"] for row in feed.rows("stop_times.txt") if row["trip_id"] == trip["trip_id"]]
    start = feed.random.randrange(len(visits) - 1)
    networks = [row["network_id"] for row in feed.rows("routes.txt") + feed.rows("route_networks.txt")
                if row["route_id"] == trip["route_id"] and row["network_id"]]
    ends = (visits[start], feed.pick(visits[start + 1:]))
    return [networks] + [[row["area_id"] for row in feed.rows("stop_areas.txt") if row["stop_id"] == stop]
                         for stop in ends]


def places_of_one_ride(feed):
    """An exact place of a ride and one with an empty area that fits the same ride: its stop has a second area."""
    ride = ride_of(feed)
    ends = [number for number in (1, 2) if ride and len(ride[number]) > 1]
    if not ends or not all(ride):
        return []
    exact = [feed.pick(values) for values in ride]
    blank = feed.pick(ends)
    return [tuple(exact), tuple("" if at == blank else value for at, value in enumerate(exact))]


def add_leg_rules(feed, products, networks, areas, groups):
    in_rules = feed.some(products, 1, len(products))
    aimed = feed.pick((0.0, 0.6, 1.0))
    filled = feed.pick((0.3, 0.6, 0.9, 1.0, 1.0))
    timed = feed.pick((0.0, 0.3, 0.8))
    leg_groups = feed.ids("group", 1, 2)
    feed.make("fare_leg_rules.txt")
    priorities = ("",) if feed.chance(0.2) else ("", "", "0", "1", "2", "9", "10")
    if feed.chance(0.4):
        feed.columns["fare_leg_rules.txt"].append("rule_priority")
    seen = set()

    def field(values, share):
        return feed.pick(values) if values and feed.chance(share) else ""

    places = places_of_one_ride(feed) if feed.chance(0.25) else []
    for number in range(feed.pick((0, 1, 2, 2, 3, 3, 4, 6, 8, 12))):
        if number < len(places):
            place = places[number]
        elif number and feed.chance(0.3):
            blank = feed.pick((0, 1, 1, 2, 2))  # the place of the rule before, but for one field
            place = tuple("" if at == blank else value for at, value in enumerate(place))
        else:
            ride = ride_of(feed) if feed.chance(aimed) else None
            place = tuple(field(values, filled) for values in ride or (networks, areas, areas))
        key = (*place, field(groups, timed), field(groups, timed / 2), feed.pick(in_rules))
        if key in seen:
            continue
        seen.add(key)
        feed.add("fare_leg_rules.txt", leg_group_id=field(leg_groups, 0.8), network_id=key[0], from_area_id=key[1],
                 to_area_id=key[2], from_timeframe_group_id=key[3], to_timeframe_group_id=key[4],
                 fare_product_id=key[5], rule_priority=feed.pick(priorities))


def add_transfer_rules(feed, in_transfers):
    leg_groups = feed.listed("fare_leg_rules.txt", "leg_group_id") + [""]
    for product in in_transfers + ([""] if in_transfers and feed.chance(0.4) else []):
        one, other = feed.pick(leg_groups), feed.pick(leg_groups)
        feed.add("fare_transfer_rules.txt", from_leg_group_id=one, to_leg_group_id=other,
                 transfer_count="1" if one == other else "", fare_transfer_type="0", fare_product_id=product)


def zones_of_trips(feed, route_id):
    """The zones that the trips of a route visit, whichever trip it is."""
    trips = {row["trip_id"] for row in feed.rows("trips.txt") if row["route_id"] == route_id}
    stops = {row["stop_id"] for row in feed.rows("stop_times.txt") if row["trip_id"] in trips}
    return sorted({row["zone_id"] for row in feed.rows("stops.txt") if row["stop_id"] in stops and row["zone_id"]})


def add_fares(feed, currency):
    """The older form."""
    zones = feed.listed("stops.txt", "zone_id")
    routes = feed.listed("routes.txt", "route_id")
    agencies = feed.listed("agency.txt", "agency_id")
    with_agencies = feed.chance(0.5)
    filled = feed.pick((0.2, 0.5))
    containing = feed.pick((0.1, 0.4, 0.9))
    if feed.chance(0.8):
        feed.make("fare_rules.txt")
    for fare in feed.ids("fare", 1, 5):
        feed.add("fare_attributes.txt", fare_id=fare, currency_type=currency,
                 price=amount_text(feed, feed.pick((0, 50, 100, 250, 1234)), CURRENCIES[currency]),
                 payment_method="1" if feed.chance(0.2) else "0", transfers=feed.pick(("", "0", "1", "2")),
                 agency_id=feed.pick(agencies) if with_agencies and feed.chance(0.6) else "")
        rows = set()
        if "fare_rules.txt" in feed.tables and feed.chance(0.25):
            visited = zones_of_trips(feed, feed.pick(routes))
            rows = {("", "", "", zone) for zone in feed.some(visited, 2, 3)}
        for _ in range(feed.pick((0, 1, 1, 2, 3, 4)) if "fare_rules.txt" in feed.tables and not rows else 0):
            rows.add((feed.pick(routes) if feed.chance(filled) else "",
                      feed.pick(zones) if zones and feed.chance(filled) else "",
                      feed.pick(zones) if zones and feed.chance(filled) else "",
                      feed.pick(zones) if zones and feed.chance(containing) else ""))
        for route, origin, destination, contains in sorted(rows):
            feed.add("fare_rules.txt", fare_id=fare, route_id=route, origin_id=origin, destination_id=destination,
                     contains_id=contains)


# ------------------------------------------------------------------------------------------------------------- faults


NO_SUCH = "no such thing"
FAULTS_OF_PRODUCTS = [("fare_products.txt", column, value) for column, value in (
    ("amount", "negative"), ("amount", "decimals"), ("currency", "USD"), ("fare_media_id", NO_SUCH),
    ("rider_category_id", NO_SUCH))]
FAULTS_OF_PRODUCTS += [("fare_leg_rules.txt", column, NO_SUCH) for column in (
    "fare_product_id", "network_id", "from_area_id", "to_area_id", "from_timeframe_group_id", "to_timeframe_group_id")]
FAULTS_OF_PRODUCTS += [("fare_transfer_rules.txt", column, NO_SUCH) for column in (
    "fare_product_id", "from_leg_group_id", "to_leg_group_id")]
FAULTS_OF_PRODUCTS += [("", "", "")]
FAULTS_OF_FARES = [("fare_attributes.txt", column, value) for column, value in (
    ("price", "negative"), ("price", "decimals"), ("currency_type", "USD"))]
FAULTS_OF_FARES += [("fare_rules.txt", column, NO_SUCH) for column in (
    "fare_id", "route_id", "origin_id", "destination_id", "contains_id")]
FAULTS_OF_FARES += [("", "", "")]


def put_fault(feed, faults, currency):
    """Puts one of the faults into one row, the first in random order that this feed can have."""
    for name, column, value in feed.random.sample(faults, len(faults)):
        if not name:
            for fares in [fares for fares in feed.tables if fares.startswith("fare_")]:
                del feed.tables[fares]
            feed.fault = "neither form of fares"
            return
        rows = feed.rows(name)
        if value == "negative" and name == "fare_products.txt":
            transfers = feed.listed("fare_transfer_rules.txt", "fare_product_id")
            rows = [row for row in rows if row["fare_product_id"] not in transfers]
        if rows and (value != "USD" or len(rows) > 1):
            text = {"negative": "-1", "decimals": "1." + "5" * (1 + CURRENCIES[currency])}.get(value, value)
            feed.pick(rows)[column] = text
            feed.fault = f"{text} as {column} of {name}"
            return


# --------------------------------------------------------------------------------------------------- feeds and queries


def make_feed(seed):
    """The feed of the seed. Its fault is None, or says what is wrong with it."""
    feed = GeneratedFeed(seed)
    older = feed.chance(0.3)
    currency = feed.pick(sorted(CURRENCIES))
    with_fault = feed.chance(0.18)
    add_agencies(feed)
    add_stops(feed, with_zones=older or feed.chance(0.2))
    services = add_services(feed)
    add_routes(feed, services)
    if older:
        add_fares(feed, currency)
        if feed.chance(0.3):
            add_areas(feed)
        if feed.chance(0.2):
            feed.add("fare_media.txt", fare_media_id="cash", fare_media_name="Cash", fare_media_type="0")
    else:
        networks = add_networks(feed)
        areas = add_areas(feed)
        groups = add_timeframes(feed, services)
        products, in_transfers = add_products(feed, currency)
        if feed.chance(0.93):
            add_leg_rules(feed, products, networks, areas, groups)
        add_transfer_rules(feed, in_transfers)
        if feed.chance(0.1):
            add_fares(feed, currency)
    if with_fault:
        put_fault(feed, FAULTS_OF_FARES if older else FAULTS_OF_PRODUCTS, currency)
    return feed


def times_of_edges(feed):
    """Times of a day in minutes: the edges of the timeframes and the minutes beside them."""
    minutes = {0, 1, 12 * 60, 23 * 60 + 59}
    for row in feed.rows("timeframes.txt"):
        for column in ("start_time", "end_time"):
            if row[column]:
                hours, minute = row[column].split(":")[:2]
                at = int(hours) * 60 + int(minute)
                minutes |= {at - 1, at, at + 1}
    return sorted(minute for minute in minutes if 0 <= minute < 24 * 60)


def days_of_edges(feed):
    """The first and last days of the services, their exceptions, and the days beside them."""
    days = {f"{FIRST_DAY:%Y%m%d}"}
    for name, columns in (("calendar.txt", ("start_date", "end_date")), ("calendar_dates.txt", ("date",))):
        for row in feed.rows(name):
            days |= {row[column] for column in columns}
    dates = {datetime.datetime.strptime(day, "%Y%m%d").date() for day in days}
    beside = {date + datetime.timedelta(offset) for date in dates for offset in (-1, 0, 1)}
    return sorted(beside | {FIRST_DAY + datetime.timedelta(offset) for offset in range(14)})


def queries(feed, count):
    """So many queries of the feed: objects with route, stop and at, some with to and media."""
    rng = random.Random(f"queries {feed.seed}")
    routes = [row["route_id"] for row in feed.rows("routes.txt")]
    stops = [row["stop_id"] for row in feed.rows("stops.txt")]
    minutes, days = times_of_edges(feed), days_of_edges(feed)
    found = []
    for _ in range(count):
        route = rng.choice(routes)
        trips = {row["trip_id"] for row in feed.rows("trips.txt") if row["route_id"] == route}
        visited = [row["stop_id"] for row in feed.rows("stop_times.txt") if row["trip_id"] in trips] or stops
        minute = rng.choice(minutes)
        at = f"{rng.choice(days)}T{minute // 60:02d}:{minute % 60:02d}"
        query = {"route": route, "stop": rng.choice(visited if rng.random() < 0.8 else stops), "at": at}
        if rng.random() < 0.4:
            query["to"] = rng.choice(visited if rng.random() < 0.8 else stops)
        if rng.random() < 0.4:
            query["media"] = sorted(rng.sample(range(5), rng.randint(1, 5)))
        if rng.random() < 0.02:
            query[rng.choice(("route", "stop", "to"))] = "no such thing"
        found.append(query)
    return found


def main(arguments):
    parser = argparse.ArgumentParser(description="Writes a random GTFS feed with fares and prints queries of it.")
    parser.add_argument("folder", metavar="FOLDER")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--queries", type=int, default=10)
    options = parser.parse_args(arguments)
    feed = make_feed(options.seed)
    feed.write(options.folder)
    for query in queries(feed, options.queries):
        print(json.dumps(query, ensure_ascii=False))


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
