#!/usr/bin/env python3
"""Works out what a bus may sell at a stop, from the fares of a GTFS feed.

    offers_oracle.py FEED --route ROUTE_ID --stop STOP_ID --at YYYY-MM-DDTHH:MM [--to STOP_ID] [--media TYPE,TYPE...]

The answer is printed as JSON; a fault of the feed or of the query exits with 2. The code is plain and slow, and
shares nothing with the readers that it judges.
"""

import argparse
import csv
import datetime
import io
import json
import pathlib
import re
import sys

# Currencies of ISO 4217 that have other than two decimals.
DECIMALS = dict.fromkeys("BIF CLP DJF GNF ISK JPY KMF KRW PYG RWF UGX UYI VND VUV XAF XOF XPF".split(), 0)
DECIMALS |= dict.fromkeys("BHD IQD JOD KWD LYD OMR TND".split(), 3)
DECIMALS |= dict.fromkeys("CLF UYW".split(), 4)

NEITHER_FORM = "The feed has neither form of fares."

PLACE_FIELDS = ("network_id", "from_area_id", "to_area_id")
TIME_FIELDS = ("from_timeframe_group_id", "to_timeframe_group_id")
WEEKDAYS = ("monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday")


class Fault(Exception):
    """A feed or a query that is refused; the text is the reason."""


# ------------------------------------------------------------------------------------------------ the files of a feed


class Row(dict):
    """A line of a file. A column that the file does not have is empty."""

    def __missing__(self, column):
        return ""


class Table(list):
    """The rows of a file, in its order, and the names of its columns."""

    def __init__(self, text=""):
        lines = [line for line in csv.reader(io.StringIO(text, newline="")) if line]
        self.columns = [name.strip() for name in lines[0]] if lines else []
        super().__init__(Row(zip(self.columns, line)) for line in lines[1:])

    def values(self, column):
        """What the column lists, without empty fields."""
        return {row[column] for row in self if row[column]}


class Feed:
    """The files of a folder, checked: a feed with a fault cannot be made."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.agencies = self.read("agency.txt")
        self.stops = self.read("stops.txt")
        self.routes = self.read("routes.txt")
        self.trips = self.read("trips.txt")
        self.stop_times = self.read("stop_times.txt")
        self.calendar = self.read("calendar.txt")
        self.calendar_dates = self.read("calendar_dates.txt")
        self.areas = self.read("areas.txt")
        self.stop_areas = self.read("stop_areas.txt")
        self.networks = self.read("networks.txt")
        self.route_networks = self.read("route_networks.txt")
        self.timeframes = self.read("timeframes.txt")
        self.media = self.read("fare_media.txt")
        self.categories = self.read("rider_categories.txt")
        self.products = self.read("fare_products.txt")
        self.leg_rules = self.read("fare_leg_rules.txt")
        self.transfer_rules = self.read("fare_transfer_rules.txt")
        self.fares = self.read("fare_attributes.txt")
        self.fare_rules = self.read("fare_rules.txt")
        for visit in self.stop_times:
            number_of(visit)
        if self.has("fare_products.txt"):
            self.older = False
            self.currency = one_currency(self.products.values("currency"))
            check_products_and_rules(self)
        elif self.has("fare_attributes.txt"):
            self.older = True
            self.currency = one_currency(self.fares.values("currency_type"))
            check_fares_and_rules(self)
        else:
            raise Fault(NEITHER_FORM)

    def has(self, name):
        return (self.folder / name).is_file()

    def read(self, name):
        if not self.has(name):
            return Table()
        try:
            return Table((self.folder / name).read_bytes().decode("utf-8-sig"))
        except (UnicodeDecodeError, csv.Error) as error:
            raise Fault(f"{name} cannot be read: {error}") from error

    def stop(self, stop_id):
        return next((row for row in self.stops if row["stop_id"] == stop_id), Row())

    def route(self, route_id):
        return next(row for row in self.routes if row["route_id"] == route_id)


class Query:
    """What is asked: the ride and the media that the bus can issue."""

    def __init__(self, route, stop, at, to=None, media=(0, 1)):
        self.route = route
        self.stop = stop
        self.to = to
        self.media = {int(medium_type) for medium_type in media}
        if not re.fullmatch(r"[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}", at):
            raise Fault(f"{at} is no time of the form YYYY-MM-DDTHH:MM.")
        try:
            self.at = datetime.datetime.fromisoformat(at)
        except ValueError as error:
            raise Fault(f"{at} does not exist.") from error


# ------------------------------------------------------------------------------------------------------------- faults


def one_currency(codes):
    if len(codes) > 1:
        raise Fault(f"The feed has several currencies: {', '.join(sorted(codes))}.")
    for code in codes:
        if not re.fullmatch(r"[A-Z]{3}", code):
            raise Fault(f"{code} is no currency.")
    return next(iter(codes), "")


def decimals_of(currency):
    return DECIMALS.get(currency, 2)


def amount_of(text, currency):
    """The amount as text with exactly the decimals of the currency: 2.5 CAD is 2.50."""
    match = re.fullmatch(r"(-?)([0-9]+)(?:\.([0-9]+))?", text)
    if not match:
        raise Fault(f"{text} is no amount.")
    sign, whole, fraction = match[1], match[2].lstrip("0") or "0", match[3] or ""
    decimals = decimals_of(currency)
    if len(fraction) > decimals:
        raise Fault(f"{text} has more decimals than {currency}.")
    amount = whole + ("." + fraction.ljust(decimals, "0") if decimals else "")
    return sign + amount if amount.strip("0.") else amount


def is_negative(amount):
    return amount.startswith("-")


def check_exists(row, column, known, required=False):
    if row[column] not in known and (row[column] or required):
        raise Fault(f"{column} names {row[column]!r}, which does not exist.")


def check_products_and_rules(feed):
    in_transfer_rules = feed.transfer_rules.values("fare_product_id")
    for medium in feed.media:
        if medium["fare_media_type"] not in ("0", "1", "2", "3", "4"):
            raise Fault(f"{medium['fare_media_type']!r} is no type of a medium.")
    for row in feed.products:
        if not row["fare_product_id"] or not row["currency"]:
            raise Fault("A product has no ID or no currency.")
        check_exists(row, "rider_category_id", feed.categories.values("rider_category_id"))
        check_exists(row, "fare_media_id", feed.media.values("fare_media_id"))
        negative = is_negative(amount_of(row["amount"], feed.currency))
        if negative and row["fare_product_id"] not in in_transfer_rules:
            raise Fault(f"{row['fare_product_id']} has a negative amount and no transfer rule.")
    product_ids = feed.products.values("fare_product_id")
    networks = feed.routes.values("network_id") | feed.networks.values("network_id")
    for rule in feed.leg_rules:
        check_exists(rule, "fare_product_id", product_ids, required=True)
        check_exists(rule, "network_id", networks)
        for column in ("from_area_id", "to_area_id"):
            check_exists(rule, column, feed.areas.values("area_id"))
        for column in TIME_FIELDS:
            check_exists(rule, column, feed.timeframes.values("timeframe_group_id"))
        priority_of(rule)
    for rule in feed.transfer_rules:
        check_exists(rule, "fare_product_id", product_ids)
        for column in ("from_leg_group_id", "to_leg_group_id"):
            check_exists(rule, column, feed.leg_rules.values("leg_group_id"))
    for timeframe in feed.timeframes:
        interval_of(timeframe)


def check_fares_and_rules(feed):
    for fare in feed.fares:
        if not fare["fare_id"] or not fare["currency_type"]:
            raise Fault("A fare has no ID or no currency.")
        if is_negative(amount_of(fare["price"], feed.currency)):
            raise Fault(f"{fare['fare_id']} has a negative price.")
        if fare["payment_method"] not in ("0", "1"):
            raise Fault(f"{fare['payment_method']!r} is no payment method.")
        check_exists(fare, "agency_id", feed.agencies.values("agency_id"))
    for rule in feed.fare_rules:
        check_exists(rule, "fare_id", feed.fares.values("fare_id"), required=True)
        check_exists(rule, "route_id", feed.routes.values("route_id"))
        for column in ("origin_id", "destination_id", "contains_id"):
            check_exists(rule, column, feed.stops.values("zone_id"))


def check_query(feed, query):
    if query.route not in feed.routes.values("route_id"):
        raise Fault(f"There is no route {query.route}.")
    for stop_id in (query.stop, query.to):
        if stop_id is not None and stop_id not in feed.stops.values("stop_id"):
            raise Fault(f"There is no stop {stop_id}.")
    if not query.media <= {0, 1, 2, 3, 4}:
        raise Fault("There is no such type of a medium.")


# -------------------------------------------------------------------------------------------------------------- rides


def number_of(visit):
    """The place of a visit among those of its trip."""
    if not re.fullmatch(r"[0-9]+", visit["stop_sequence"]):
        raise Fault(f"{visit['stop_sequence']!r} is no stop_sequence.")
    return int(visit["stop_sequence"])


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


def seconds_of(text):
    match = re.fullmatch(r"([0-9]{1,2}):([0-5][0-9]):([0-5][0-9])", text)
    seconds = int(match[1]) * 3600 + int(match[2]) * 60 + int(match[3]) if match else None
    if seconds is None or seconds > 24 * 3600:
        raise Fault(f"{text} is no time of a timeframe.")
    return seconds


def interval_of(timeframe):
    """The first second of the timeframe and the first after it."""
    start, end = timeframe["start_time"], timeframe["end_time"]
    if bool(start) != bool(end):
        raise Fault(f"{timeframe['timeframe_group_id']} has one time of two.")
    return (seconds_of(start), seconds_of(end)) if start else (0, 24 * 3600)


def runs_on(feed, service_id, day):
    date = day.strftime("%Y%m%d")
    for row in feed.calendar_dates:
        if row["service_id"] == service_id and row["date"] == date:
            return row["exception_type"] == "1"
    return any(
        row["service_id"] == service_id
        and row["start_date"] <= date <= row["end_date"]
        and row[WEEKDAYS[day.weekday()]] == "1"
        for row in feed.calendar
    )


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


def priority_of(rule):
    if not re.fullmatch(r"[0-9]*", rule["rule_priority"]):
        raise Fault(f"{rule['rule_priority']} is no priority.")
    return int(rule["rule_priority"] or "0")


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
