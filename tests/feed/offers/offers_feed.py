"""The files of a GTFS feed, checked, and queries: what the oracle reads."""

import csv
import datetime
import io
import pathlib
import re

# Currencies of ISO 4217 that have other than two decimals.
DECIMALS = dict.fromkeys("BIF CLP DJF GNF ISK JPY KMF KRW PYG RWF UGX UYI VND VUV XAF XOF XPF".split(), 0)
DECIMALS |= dict.fromkeys("BHD IQD JOD KWD LYD OMR TND".split(), 3)
DECIMALS |= dict.fromkeys("CLF UYW".split(), 4)

NEITHER_FORM = "The feed has neither form of fares."

WEEKDAYS = ("monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday")
TIME_FIELDS = ("from_timeframe_group_id", "to_timeframe_group_id")


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


def number_of(visit):
    """The place of a visit among those of its trip."""
    if not re.fullmatch(r"[0-9]+", visit["stop_sequence"]):
        raise Fault(f"{visit['stop_sequence']!r} is no stop_sequence.")
    return int(visit["stop_sequence"])


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


def priority_of(rule):
    if not re.fullmatch(r"[0-9]*", rule["rule_priority"]):
        raise Fault(f"{rule['rule_priority']} is no priority.")
    return int(rule["rule_priority"] or "0")


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
