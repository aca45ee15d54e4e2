#!/usr/bin/env python3
"""Writes a GTFS folder of the size of a large city's, or one that is made to be slow or large.

    city_feed.py FOLDER [--kind city|collisions|worst]

city        1.8 million stop times of 60,000 trips on 300 routes, 10,000 stops in 250 areas, 64,000 leg rules
collisions  20,000 areas whose identifiers Qt's hash of texts takes for one
worst       every file at the limits of the reader
"""

import argparse
import itertools
import pathlib


def write(folder, name, header, rows):
    with open(folder / name, "w", encoding="utf-8") as file:
        file.write(header + "\n")
        file.writelines(row + "\n" for row in rows)


def city(folder):
    routes, trips_of_route, stops_of_trip, stops, areas, categories = 300, 200, 30, 10_000, 253, 3
    write(folder, "agency.txt", "agency_id,agency_name", ["1,City"])
    write(folder, "routes.txt", "route_id,agency_id,route_short_name,network_id",
          (f"route-{r},1,{r},network-{r % 4}" for r in range(routes)))
    write(folder, "areas.txt", "area_id,area_name", (f"area-{a},Area {a}" for a in range(areas)))
    write(folder, "stops.txt", "stop_id,stop_name,stop_lat,stop_lon",
          (f"stop-{s},Stop {s},{50 + s / 1e5:.5f},{20 + s / 1e5:.5f}" for s in range(stops)))
    write(folder, "stop_areas.txt", "area_id,stop_id",
          (f"area-{s * areas // stops},stop-{s}" for s in range(stops)))
    write(folder, "rider_categories.txt", "rider_category_id,rider_category_name",
          (f"rider-{c},Rider {c}" for c in range(categories)))
    write(folder, "fare_media.txt", "fare_media_id,fare_media_name,fare_media_type",
          ["cash,Cash,0", "paper,Paper,1", "card,Card,2", "app,App,4"])
    steps = 40
    write(folder, "fare_products.txt",
          "fare_product_id,fare_product_name,rider_category_id,fare_media_id,amount,currency",
          (f"fare-{p},Fare {p},rider-{c},{m},{(p + 1) * (c + 1) / 4:.2f},EUR"
           for p in range(steps) for c in range(categories) for m in ("cash", "paper", "card", "app")))
    write(folder, "fare_leg_rules.txt", "leg_group_id,fare_product_id,from_area_id,to_area_id",
          (f"g,fare-{min(abs(a - b), steps - 1)},area-{a},area-{b}"
           for a in range(areas) for b in range(areas)))
    write(folder, "trips.txt", "route_id,service_id,trip_id,trip_headsign",
          (f"route-{r},W,trip-{r}-{t},Stop {r}" for r in range(routes) for t in range(trips_of_route)))
    write(folder, "stop_times.txt", "trip_id,arrival_time,departure_time,stop_id,stop_sequence,stop_headsign",
          (f"trip-{r}-{t},{5 + t // 12:02d}:{s:02d}:00,{5 + t // 12:02d}:{s:02d}:30,"
           f"stop-{(r * 33 + s * 97) % stops},{s},"
           for r in range(routes) for t in range(trips_of_route) for s in range(stops_of_trip)))


def collisions(folder):
    # Qt's hash of texts is h * 31 + c, of which "Aa" and "BB" are the same.
    ids = ["".join(parts) for parts in itertools.islice(itertools.product(("Aa", "BB"), repeat=15), 20_000)]
    write(folder, "areas.txt", "area_id", ids)
    write(folder, "fare_products.txt", "fare_product_id,amount,currency", (f"{i},1,EUR" for i in ids))
    write(folder, "fare_leg_rules.txt", "fare_product_id,from_area_id,to_area_id",
          (f"{i},{i},{i}" for i in ids))
    write(folder, "stops.txt", "stop_id", ids)
    write(folder, "stop_areas.txt", "stop_id,area_id", (f"{i},{i}" for i in ids))
    write(folder, "routes.txt", "route_id", ids)
    write(folder, "trips.txt", "route_id,trip_id", (f"{i},{i}" for i in ids))
    write(folder, "stop_times.txt", "trip_id,stop_id,stop_sequence", (f"{i},{i},1" for i in ids))


def worst(folder):
    records, rows = 300_000, 2_000_000
    every = range(records)
    text = "x" * 12
    write(folder, "agency.txt", "agency_id,agency_name", ["1,City"])
    write(folder, "networks.txt", "network_id", (f"n{i}" for i in every))
    write(folder, "routes.txt", "route_id", (f"r{i}" for i in every))
    write(folder, "route_networks.txt", "network_id,route_id", (f"n{i},r{i}" for i in every))
    write(folder, "areas.txt", "area_id", (f"a{i}" for i in every))
    write(folder, "stops.txt", "stop_id,stop_name", (f"s{i},{text}{i}" for i in every))
    write(folder, "stop_areas.txt", "area_id,stop_id", (f"a{i},s{i}" for i in every))
    write(folder, "rider_categories.txt", "rider_category_id", (f"c{i}" for i in every))
    write(folder, "fare_media.txt", "fare_media_id,fare_media_type", (f"m{i},0" for i in every))
    write(folder, "calendar.txt",
          "service_id,monday,tuesday,wednesday,thursday,friday,saturday,sunday,start_date,end_date",
          (f"w{i},1,1,1,1,1,1,1,20260101,20261231" for i in every))
    write(folder, "calendar_dates.txt", "service_id,date,exception_type",
          (f"w{i % records},2026{i // records % 12 + 1:02d}{i // records // 12 + 1:02d},2" for i in range(rows)))
    write(folder, "timeframes.txt", "timeframe_group_id,start_time,end_time,service_id",
          (f"h{i},00:00:00,24:00:00,w{i}" for i in every))
    write(folder, "fare_products.txt", "fare_product_id,amount,currency,rider_category_id,fare_media_id",
          (f"p{i},1,EUR,c{i},m{i}" for i in every))
    write(folder, "fare_leg_rules.txt",
          "leg_group_id,fare_product_id,from_area_id,to_area_id,network_id,from_timeframe_group_id",
          (f"g{i},p{i},a{i},a{i},n{i},h{i}" for i in every))
    write(folder, "fare_transfer_rules.txt", "from_leg_group_id,to_leg_group_id,fare_product_id",
          (f"g{i},g{i},p{i}" for i in every))
    write(folder, "trips.txt", "route_id,service_id,trip_id,shape_id",
          (f"r{i},w{i},t{i},h{i}" for i in every))
    write(folder, "stop_times.txt", "trip_id,stop_id,stop_sequence",
          (f"t{i % records},s{i % records},{i}" for i in range(rows)))
    write(folder, "shapes.txt", "shape_id,shape_pt_lat,shape_pt_lon,shape_pt_sequence",
          (f"h{i % records},1,1,{i}" for i in range(rows)))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--kind", choices=["city", "collisions", "worst"], default="city")
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    {"city": city, "collisions": collisions, "worst": worst}[arguments.kind](arguments.folder)


if __name__ == "__main__":
    main()
