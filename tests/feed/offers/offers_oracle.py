#!/usr/bin/env python3
"""Works out what a bus may sell at a stop, from the fares of a GTFS feed.

    offers_oracle.py FEED --route ROUTE_ID --stop STOP_ID --at YYYY-MM-DDTHH:MM [--to STOP_ID] [--media TYPE,TYPE...]

The answer is printed as JSON; a fault of the feed or of the query exits with 2. The code is plain and slow, and
shares nothing with the readers that it judges.
"""

import argparse
import json
import re
import sys

from offers_feed import (
    Fault, Feed, Query, TIME_FIELDS, amount_of, check_query, interval_of, is_negative, number_of, priority_of,
    runs_on,
)

PLACE_FIELDS = ("network_id", "from_area_id", "to_area_id")

# -------------------------------------------------------------------------------------------------------------- rides


def trips_of(feed, route_id):
    """The stops of each trip of the route in the order of their numbers, on whatever day the trip runs."""
    trips = []
    for trip in feed.trips:
        if trip["route_id"] == route_id:
            visits = [row for row in feed.stop_times if row["trip_id"] == trip["trip_id"] and row["stop_id"]]
            visits.sort(key=number_of)
            trips.append([row["stop_id"] for row in visits])
    return trips


def destinations(feed, query):
    if query.to is not None:
        return {query.to}
    trips = trips_of(feed, query.route)
    if not trips:
        return {stop["stop_id"] for stop in feed.stops if stop["location_type"] in ("", "0")}
    if not any(query.stop in trip for trip in trips):
        return {stop_id for trip in trips for stop_id in trip}
    return {
        later
        for trip in trips
        for position, stop_id in enumerate(trip)
        if stop_id == query.stop
        for later in trip[position + 1:]
    }


def network_of(feed, route_id):
    """The network of the route, as a set of one or none."""
    own = feed.route(route_id)["network_id"]
    if own:
        return {own}
    return {row["network_id"] for row in feed.route_networks if row["route_id"] == route_id}


def areas_of(feed, stop_id):
    """The areas of the stop, else those of its station."""
    return listed_areas(feed, stop_id) or listed_areas(feed, feed.stop(stop_id)["parent_station"])


def listed_areas(feed, stop_id):
    return {row["area_id"] for row in feed.stop_areas if row["stop_id"] == stop_id}


# --------------------------------------------------------------------------------------------------------- timeframes


def timeframe_holds(feed, group_id, at):
    """An empty timeframe always holds."""
    if not group_id:
        return True
    second = at.hour * 3600 + at.minute * 60
    for timeframe in feed.timeframes:
        if timeframe["timeframe_group_id"] == group_id and runs_on(feed, timeframe["service_id"], at.date()):
            start, end = interval_of(timeframe)
            if start <= second < end:
                return True
    return False


# ---------------------------------------------------------------------------------------------------------- leg rules


def has_priorities(feed):
    return "rule_priority" in feed.leg_rules.columns


def place_of(feed, query, destination):
    """What the ride has for each field of a place: its networks and areas."""
    return {
        "network_id": network_of(feed, query.route),
        "from_area_id": areas_of(feed, query.stop),
        "to_area_id": areas_of(feed, destination),
    }


def field_fits(feed, rule, field, own):
    if rule[field]:
        return rule[field] in own
    if has_priorities(feed):
        return True
    return stands_for(own, feed.leg_rules.values(field))


def stands_for(own, listed):
    """An empty field stands for everything that its column does not list, and for a ride that has nothing there."""
    return not own or bool(own - listed)


def rule_fits(feed, rule, query, destination):
    place = place_of(feed, query, destination)
    return all(field_fits(feed, rule, field, place[field]) for field in PLACE_FIELDS) and all(
        timeframe_holds(feed, rule[field], query.at) for field in TIME_FIELDS
    )


def is_filled_in(rule):
    return all(rule[field] for field in PLACE_FIELDS)


def rules_that_count(feed, query, destination):
    """The rules for the ride to the destination, whether or not their products can be sold."""
    fitting = [rule for rule in feed.leg_rules if rule_fits(feed, rule, query, destination)]
    if has_priorities(feed):
        highest = max((priority_of(rule) for rule in fitting), default=0)
        return [rule for rule in fitting if priority_of(rule) == highest]
    exact = [rule for rule in fitting if is_filled_in(rule)]
    return exact or fitting


# ------------------------------------------------------------------------------------------------------------- offers


def why_row_is_not_sold(feed, row, query):
    """The reasons that keep the row of a product from being sold: none of them if it is sold."""
    reasons = set()
    if is_negative(amount_of(row["amount"], feed.currency)):
        reasons.add("negative")
    for medium in feed.media:
        if medium["fare_media_id"] == row["fare_media_id"] and int(medium["fare_media_type"]) not in query.media:
            reasons.add("media")
    return reasons


def offers_of_products(feed, query):
    """The keys of the offers, each with its media."""
    places = set()
    for destination in destinations(feed, query):
        for rule in rules_that_count(feed, query, destination):
            places.add((rule["fare_product_id"], rule["from_area_id"], rule["to_area_id"], "leg"))
    in_rules = feed.leg_rules.values("fare_product_id") | feed.transfer_rules.values("fare_product_id")
    for product_id in feed.products.values("fare_product_id") - in_rules:
        places.add((product_id, "", "", "pass"))
    found = {}
    for product_id, from_area, to_area, kind in places:
        for row in feed.products:
            if row["fare_product_id"] == product_id and not why_row_is_not_sold(feed, row, query):
                amount = amount_of(row["amount"], feed.currency)
                key = (product_id, row["rider_category_id"], from_area, to_area, amount, kind)
                media = found.setdefault(key, set())
                if row["fare_media_id"]:
                    media.add(row["fare_media_id"])
    return found


# --------------------------------------------------------------------------------------------------- the older form


def zone_of(feed, stop_id):
    return feed.stop(stop_id)["zone_id"]


def zones_between(feed, query, destination):
    """For each way to ride from the stop to the destination, the zones that it passes."""
    ways = []
    for trip in trips_of(feed, query.route):
        for first, start in enumerate(trip):
            for last in range(first + 1, len(trip)):
                if start == query.stop and trip[last] == destination:
                    ways.append({zone_of(feed, stop_id) for stop_id in trip[first:last + 1]})
    return ways or [{zone_of(feed, query.stop), zone_of(feed, destination)}]


def rules_of_fare(feed, fare):
    return [rule for rule in feed.fare_rules if rule["fare_id"] == fare["fare_id"]]


def contained_zones(feed, fare):
    """The zones that a ride with this fare must pass: those of the rules for other routes too."""
    return {rule["contains_id"] for rule in rules_of_fare(feed, fare) if rule["contains_id"]}


def agency_of_route(feed, route_id):
    """The agency of the route: an empty field names the only agency of the feed."""
    named = feed.route(route_id)["agency_id"]
    return feed.agencies[0]["agency_id"] if not named and len(feed.agencies) == 1 else named


def agency_fits(feed, fare, query):
    return fare["agency_id"] in ("", agency_of_route(feed, query.route))


def route_fits(rule, query):
    return rule["route_id"] in ("", query.route)


def zones_fit(feed, fare, rule, query, destination):
    if rule["origin_id"] not in ("", zone_of(feed, query.stop)):
        return False
    if rule["destination_id"] not in ("", zone_of(feed, destination)):
        return False
    contained = contained_zones(feed, fare)
    return any(contained <= zones for zones in zones_between(feed, query, destination))


def offers_of_fares(feed, query):
    """The keys of the offers, each with an empty set of media."""
    found = {}
    for fare in feed.fares:
        if fare["payment_method"] == "1" or not agency_fits(feed, fare, query):
            continue
        amount = amount_of(fare["price"], feed.currency)
        rules = rules_of_fare(feed, fare)
        if not rules:
            found[(fare["fare_id"], "", "", "", amount, "leg")] = set()
        for rule in rules:
            for destination in destinations(feed, query):
                if route_fits(rule, query) and zones_fit(feed, fare, rule, query, destination):
                    key = (fare["fare_id"], "", rule["origin_id"], rule["destination_id"], amount, "leg")
                    found[key] = set()
    return found


# ------------------------------------------------------------------------------------- why a product has no offer
#
# A product that has no offer gets one reason, the first of this list that applies:
#
#   transfer_only   transfer rules name the product and no leg rule does;
#   prepaid         the fare is paid before boarding;
#   negative        each row of the product is kept from being sold, one by its negative amount;
#   media           each row of the product is kept from being sold, by its medium;
#   network, area, timeframe, priority
#                   no rule of the product counts. Each rule is tried with each ride in this order: its network (in
#                   the older form its route, and the agency of the fare), its areas or zones, its timeframes, and
#                   whether another rule precedes it. The reason is the furthest step at which one of them failed.
#                   Where there is no ride, no area fits.
#
# Several of these may hold for one product, and a reader of the answer is served by each of them. acceptable_reasons()
# is the set that can be defended:
#
#   - what keeps the rows of the product from being sold, if no row can be sold;
#   - why its rules do not count, if none does. A rule and a ride that fail in several steps give each of these reasons,
#     unless another rule or ride of the product fails in fewer of the same steps: that one came closer.
#   - priority also for a rule with empty fields on a ride that has an exact rule, since such a rule is not looked at.

STEPS = ("network", "area", "timeframe", "priority")


def closest(failures):
    """The reasons of the sets that contain no other set of them."""
    return {reason for one in failures if not any(other < one for other in failures) for reason in one}


def furthest(failures):
    """The furthest of the first steps that failed."""
    first_steps = [min(STEPS.index(reason) for reason in one) for one in failures]
    return STEPS[max(first_steps)]


def failures_of_leg_rules(feed, query, product_id):
    """For each rule and ride the steps that failed, strictly, and once more with empty fields behind exact rules."""
    strict, behind_exact = [], []
    for rule in feed.leg_rules:
        if rule["fare_product_id"] != product_id:
            continue
        late = not all(timeframe_holds(feed, rule[field], query.at) for field in TIME_FIELDS)
        rides = destinations(feed, query)
        for destination in rides or [None]:
            if destination is None:
                place = {"network_id": network_of(feed, query.route)}
                counting = []
            else:
                place = place_of(feed, query, destination)
                counting = rules_that_count(feed, query, destination)
            failed = {"timeframe"} if late else set()
            failed_filled = set(failed)
            for field in PLACE_FIELDS:
                reason = "network" if field == "network_id" else "area"
                if field not in place or not field_fits(feed, rule, field, place[field]):
                    failed.add(reason)
                    if rule[field]:
                        failed_filled.add(reason)
            if not failed and rule not in counting:
                failed.add("priority")
            strict.append(frozenset(failed))
            exact = not has_priorities(feed) and any(is_filled_in(other) for other in counting)
            behind = exact and not is_filled_in(rule)
            behind_exact.append(frozenset(failed_filled | {"priority"} if behind else failed))
    return strict, behind_exact


def reasons_of_product(feed, query, product_id):
    """The reason of a product without offer, and all that can be defended."""
    rows = [row for row in feed.products if row["fare_product_id"] == product_id]
    kept_back = [why_row_is_not_sold(feed, row, query) for row in rows]
    reasons = set().union(*kept_back) if all(kept_back) else set()
    if product_id not in feed.leg_rules.values("fare_product_id"):
        if product_id in feed.transfer_rules.values("fare_product_id"):
            return "transfer_only", reasons | {"transfer_only"}
        return preferred(reasons), reasons
    strict, behind_exact = failures_of_leg_rules(feed, query, product_id)
    if not reasons:
        return furthest(strict), closest(strict) | closest(behind_exact)
    preferred_reason = preferred(reasons)
    if frozenset() not in strict:
        reasons |= closest(strict) | closest(behind_exact)
    return preferred_reason, reasons


def preferred(reasons):
    return "negative" if "negative" in reasons else "media"


def reasons_of_fare(feed, query, fare):
    """The reason of a fare without offer, and all that can be defended."""
    failures = []
    for rule in rules_of_fare(feed, fare) or [None]:
        for destination in destinations(feed, query) or [None]:
            failed = set()
            if not agency_fits(feed, fare, query) or rule is not None and not route_fits(rule, query):
                failed.add("network")
            if rule is not None:
                if destination is None or not zones_fit(feed, fare, rule, query, destination):
                    failed.add("area")
            failures.append(frozenset(failed))
    if fare["payment_method"] == "1":
        return "prepaid", {"prepaid"} | (closest(failures) if frozenset() not in failures else set())
    return furthest(failures), closest(failures)


def reasons_left_out(feed, query):
    """For each product without offer its reason, and the set of all that can be defended."""
    if feed.older:
        offered = {key[0] for key in offers_of_fares(feed, query)}
        return {
            fare["fare_id"]: reasons_of_fare(feed, query, fare)
            for fare in feed.fares
            if fare["fare_id"] not in offered
        }
    offered = {key[0] for key in offers_of_products(feed, query)}
    return {
        product_id: reasons_of_product(feed, query, product_id)
        for product_id in feed.products.values("fare_product_id") - offered
    }


def acceptable_reasons(feed, query):
    """For each product without offer, the reasons that can be defended."""
    return {product_id: acceptable for product_id, (_, acceptable) in reasons_left_out(feed, query).items()}


# -------------------------------------------------------------------------------------------------------- the answer


def answer(feed, query):
    check_query(feed, query)
    found = offers_of_fares(feed, query) if feed.older else offers_of_products(feed, query)
    return {
        "currency": feed.currency,
        "offers": [
            {
                "fare_product_id": product_id,
                "rider_category_id": category_id,
                "fare_media_ids": sorted(media),
                "from_area_id": from_area,
                "to_area_id": to_area,
                "amount": amount,
                "kind": kind,
            }
            for (product_id, category_id, from_area, to_area, amount, kind), media in sorted(found.items())
        ],
        "leftOut": [
            {"fare_product_id": product_id, "reason": reason}
            for product_id, (reason, _) in sorted(reasons_left_out(feed, query).items())
        ],
    }


def offers(folder, route, stop, at, to=None, media=(0, 1)):
    """What may be sold on the route at the stop and the local time. A fault raises Fault."""
    return answer(Feed(folder), Query(route, stop, at, to, media))


def main(arguments):
    parser = argparse.ArgumentParser(description="Prints what a bus may sell at a stop, as JSON.")
    parser.add_argument("feed", metavar="FEED", help="folder of a GTFS feed")
    parser.add_argument("--route", required=True, metavar="ROUTE_ID")
    parser.add_argument("--stop", required=True, metavar="STOP_ID")
    parser.add_argument("--at", required=True, metavar="YYYY-MM-DDTHH:MM", help="local time")
    parser.add_argument("--to", metavar="STOP_ID", help="destination")
    parser.add_argument("--media", default="0,1", metavar="TYPE,TYPE...", help="types of media that the bus can issue")
    options = parser.parse_args(arguments)
    if not re.fullmatch(r"[0-9]+(,[0-9]+)*", options.media):
        parser.error("--media takes numbers with commas between them")
    media = options.media.split(",")
    try:
        result = offers(options.feed, options.route, options.stop, options.at, options.to, media)
    except Fault as fault:
        print(fault, file=sys.stderr)
        return 2
    print(json.dumps(result, ensure_ascii=False, indent=2))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
