"""A random GTFS feed as tables, and its files in random styles."""

import csv
import datetime
import io
import pathlib
import random

WEEKDAYS = ("monday", "tuesday", "wednesday", "thursday", "friday", "saturday", "sunday")
FIRST_DAY = datetime.date(2026, 3, 2)  # a Monday
CURRENCIES = {"CAD": 2, "PLN": 2, "EUR": 2, "JPY": 0, "ISK": 0, "CLP": 0, "KWD": 3, "TND": 3}

# The columns of each file; a fault may add rows, a feed may leave out columns that have no value.
COLUMNS = {
    "agency.txt": "agency_id agency_name agency_url agency_timezone",
    "stops.txt": "stop_id stop_name stop_lat stop_lon zone_id location_type parent_station",
    "routes.txt": "route_id agency_id route_short_name route_type network_id",
    "trips.txt": "route_id service_id trip_id direction_id",
    "stop_times.txt": "trip_id arrival_time departure_time stop_id stop_sequence",
    "calendar.txt": "service_id " + " ".join(WEEKDAYS) + " start_date end_date",
    "calendar_dates.txt": "service_id date exception_type",
    "areas.txt": "area_id area_name",
    "stop_areas.txt": "area_id stop_id",
    "networks.txt": "network_id network_name",
    "route_networks.txt": "network_id route_id",
    "timeframes.txt": "timeframe_group_id start_time end_time service_id",
    "fare_media.txt": "fare_media_id fare_media_name fare_media_type",
    "rider_categories.txt": "rider_category_id rider_category_name is_default_fare_category",
    "fare_products.txt": "fare_product_id fare_product_name rider_category_id fare_media_id amount currency",
    "fare_leg_rules.txt": "leg_group_id network_id from_area_id to_area_id from_timeframe_group_id"
    " to_timeframe_group_id fare_product_id",
    "fare_transfer_rules.txt": "from_leg_group_id to_leg_group_id transfer_count fare_transfer_type fare_product_id",
    "fare_attributes.txt": "fare_id price currency_type payment_method transfers agency_id",
    "fare_rules.txt": "fare_id route_id origin_id destination_id contains_id",
}
OPTIONAL = set(
    "zone_id location_type parent_station network_id direction_id leg_group_id from_area_id to_area_id agency_id"
    " from_timeframe_group_id to_timeframe_group_id rider_category_id fare_media_id fare_product_name area_name"
    " start_time end_time origin_id destination_id contains_id route_id transfer_count".split()
)
UNKNOWN_COLUMNS = ("x_note", "min_age", "amounts", "rule_priority_note", "stop", "fare_media")

# IDs are plain or hard: the same numbers in all files, letters beyond ASCII, commas and quotes, astral characters.
ID_STYLES = {
    "named": lambda kind, number: f"{kind}{number}",
    "numbers": lambda kind, number: str(number),
    "letters": lambda kind, number: f"{kind} {'ŻółÄß日本'[number % 7]}{number}",
    "quoted": lambda kind, number: f'{kind} "{number}", west',
    "astral": lambda kind, number: kind + "_\U0001f3ab\uff21zZé\ue000"[number % 7] + str(number),
}


class GeneratedFeed:
    """The files of a feed: tables maps a name to its rows, columns to its columns."""

    def __init__(self, seed):
        self.seed = seed
        self.random = random.Random(f"feed {seed}")
        self.tables = {}
        self.columns = {}
        self.fault = None
        self.style_of_ids = ID_STYLES[self.pick(list(ID_STYLES))]

    def chance(self, share):
        return self.random.random() < share

    def pick(self, values):
        return self.random.choice(values)

    def some(self, values, least, most):
        return self.random.sample(values, min(len(values), self.random.randint(least, most)))

    def ids(self, kind, least, most):
        return [self.style_of_ids(kind, number) for number in range(1, self.random.randint(least, most) + 1)]

    def make(self, name):
        self.columns[name] = COLUMNS[name].split()
        self.tables[name] = []

    def add(self, name, **values):
        if name not in self.tables:
            self.make(name)
        self.tables[name].append(values)

    def rows(self, name):
        return self.tables.get(name, [])

    def listed(self, name, column):
        """The different values of a column, without empty ones, in the order of the rows."""
        return list(dict.fromkeys(row[column] for row in self.rows(name) if row.get(column)))

    def write(self, folder):
        """Writes the files below the folder, each in a style of its own."""
        style = random.Random(f"style {self.seed}")
        folder = pathlib.Path(folder)
        folder.mkdir(parents=True, exist_ok=True)
        for name in sorted(self.tables):
            (folder / name).write_bytes(text_of(self.columns[name], self.tables[name], style).encode("utf-8"))


def text_of(columns, rows, style):
    """A file as text. The style decides its columns and their order, quotes, line ends and the byte-order mark."""
    used = [
        column
        for column in columns
        if column not in OPTIONAL or any(row.get(column) for row in rows) or style.random() < 0.5
    ]
    constants = {}
    for column in style.sample(UNKNOWN_COLUMNS, style.choice((0, 0, 1, 2))):
        used.append(column)
        constants[column] = style.choice(("", "1", "a, b"))
    if style.random() < 0.6:
        style.shuffle(used)
    if style.random() < 0.5:
        rows = style.sample(rows, len(rows))
    end = style.choice(("\n", "\n", "\r\n"))
    quoting = csv.QUOTE_ALL if style.random() < 0.2 else csv.QUOTE_MINIMAL
    out = io.StringIO()
    writer = csv.writer(out, lineterminator=end, quoting=quoting)
    if style.random() < 0.3:
        out.write(",".join(style.choice((" {}", "{} ", " {} ", "{}")).format(column) for column in used) + end)
    else:
        writer.writerow(used)
    for row in rows:
        writer.writerow([constants.get(column, row.get(column, "")) for column in used])
    text = out.getvalue()
    if style.random() < 0.3:
        text = text[:-len(end)]
    return ("\ufeff" if style.random() < 0.3 else "") + text
