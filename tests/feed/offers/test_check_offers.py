#!/usr/bin/env python3
"""The comparison with the oracle works: the written cases and the random feeds each notice every known slip of a
reader, and the check of a program fails if the program makes one."""

import json
import pathlib
import shlex
import subprocess
import sys
import tempfile
import types
import unittest

import check_offers
import feed_generator
import offers_oracle

HERE = pathlib.Path(__file__).resolve().parent
CASES = check_offers.written_cases(check_offers.CASES)
FEEDS = 600

# Each slip is a piece of the oracle and what a careless reader has in its place.
SLIPS = [
    ("stop_sequence is compared as text",
     'return int(visit["stop_sequence"])',
     'return visit["stop_sequence"]'),
    ("trips of all routes count",
     'if trip["route_id"] == route_id:',
     "if True:"),
    ("--to is ignored",
     "if query.to is not None:",
     "if False:"),
    ("a stop before the stop is a destination",
     "trip[position + 1:]",
     "trip"),
    ("the stop is never a destination",
     "in trip[position + 1:]\n",
     "in trip[position + 1:] if later != query.stop\n"),
    ("only the first visit counts",
     "in enumerate(trip)\n        if",
     "in list(enumerate(trip))[:1]\n        if"),
    ("only the next stop is a destination",
     "trip[position + 1:]",
     "trip[position + 1:position + 2]"),
    ("a stop without trips has no destinations",
     "return {stop_id for trip in trips for stop_id in trip}",
     "return set()"),
    ("a route without trips has no destinations",
     "    if not trips:\n",
     "    if not trips:\n        return set()\n"),
    ("stations are destinations",
     'feed.stops if stop["location_type"] in ("", "0")}',
     "feed.stops}"),
    ("a blank location_type is no stop",
     'in ("", "0")}',
     'in ("0",)}'),
    ("networks.txt is ignored",
     'return {row["network_id"] for row in feed.route_networks',
     'return set() and {row["network_id"] for row in feed.route_networks'),
    ("routes.network_id is ignored",
     "    if own:\n        return {own}\n",
     ""),
    ("platforms have no areas of their station",
     "listed_areas(feed, stop_id) or ",
     "listed_areas(feed, stop_id) and "),
    ("platforms always have the areas of their station",
     "listed_areas(feed, stop_id) or ",
     "listed_areas(feed, stop_id) | "),
    ("the start does not belong to a timeframe",
     "start <= second < end",
     "start < second < end"),
    ("the end belongs to a timeframe",
     "start <= second < end",
     "start <= second <= end"),
    ("seconds are dropped",
     "int(match[2]) * 60 + int(match[3]) if",
     "int(match[2]) * 60 if"),
    ("a timeframe without times never holds",
     "if start else (0, 24 * 3600)",
     "if start else (0, 0)"),
    ("the day is the service day",
     'runs_on(feed, timeframe["service_id"], at.date())',
     'runs_on(feed, timeframe["service_id"], (at - datetime.timedelta(hours=3)).date())'),
    ("calendar_dates.txt is ignored",
     "for row in feed.calendar_dates:",
     "for row in []:"),
    ("removed days run",
     'return row["exception_type"] == "1"',
     "return True"),
    ("added days do not run",
     'return row["exception_type"] == "1"',
     "return False"),
    ("weekdays are ignored",
     'row[WEEKDAYS[day.weekday()]] == "1"',
     "True"),
    ("the week starts on Sunday",
     "WEEKDAYS[day.weekday()]",
     "WEEKDAYS[day.weekday() - 1]"),
    ("the last day is left out",
     '<= date <= row["end_date"]',
     '<= date < row["end_date"]'),
    ("the first day is left out",
     'row["start_date"] <= date',
     'row["start_date"] < date'),
    ("only the first row of a timeframe counts",
     "if start <= second < end:\n                return True",
     "return start <= second < end"),
    ("an empty timeframe never holds",
     "    if not group_id:\n        return True\n",
     ""),
    ("the timeframe of the arrival is ignored",
     '("from_timeframe_group_id", "to_timeframe_group_id")',
     '("from_timeframe_group_id",)'),
    ("the timeframe of the start is ignored",
     '("from_timeframe_group_id", "to_timeframe_group_id")',
     '("to_timeframe_group_id",)'),
    ("the column of priorities is ignored",
     'return "rule_priority" in feed.leg_rules.columns',
     "return False"),
    ("a column of priorities without values is none",
     'return "rule_priority" in feed.leg_rules.columns',
     'return bool(feed.leg_rules.values("rule_priority"))'),
    ("priorities are compared as text",
     'return int(rule["rule_priority"] or "0")',
     'return rule["rule_priority"] or "0"'),
    ("all matching rules count",
     "if priority_of(rule) == highest]",
     "]"),
    ("one rule of the highest priority counts",
     "if priority_of(rule) == highest]",
     "if priority_of(rule) == highest][:1]"),
    ("the highest priority of the file counts",
     "highest = max((priority_of(rule) for rule in fitting), default=0)",
     "highest = max(priority_of(rule) for rule in feed.leg_rules) if feed.leg_rules else 0"),
    ("an empty field stands for everything",
     "return stands_for(own, feed.leg_rules.values(field))",
     "return True"),
    ("an empty field stands for nothing",
     "return stands_for(own, feed.leg_rules.values(field))",
     "return False"),
    ("an empty field does not stand for a stop without areas",
     "return not own or bool(own - listed)",
     "return bool(own - listed)"),
    ("all areas of a stop must be unlisted",
     "return not own or bool(own - listed)",
     "return not own & listed"),
    ("the first area of a stop counts",
     "return rule[field] in own",
     "return rule[field] in sorted(own)[:1]"),
    ("a rule of another time lists nothing",
     "feed.leg_rules.values(field))",
     "{other[field] for other in feed.leg_rules if other[field] and all(timeframe_holds(feed,"
     " other[time], datetime.datetime(2026, 3, 4, 10)) for time in TIME_FIELDS)})"),
    ("an area of either column is listed",
     "feed.leg_rules.values(field))",
     'feed.leg_rules.values(field) | feed.leg_rules.values("from_area_id"))'),
    ("exact rules do not precede",
     "return exact or fitting",
     "return fitting"),
    ("only exact rules count",
     "return exact or fitting",
     "return exact"),
    ("one destination is tried",
     "for destination in destinations(feed, query):\n        for rule",
     "for destination in sorted(destinations(feed, query))[:1]:\n        for rule"),
    ("the network is not looked at",
     "    return all(field_fits(feed, rule, field, place[field]) for field in PLACE_FIELDS)",
     "    return all(field_fits(feed, rule, field, place[field]) for field in PLACE_FIELDS[1:])"),
    ("rules of products that cannot be sold are no rules",
     "    exact = [rule for rule in fitting if is_filled_in(rule)]",
     "    fitting = [rule for rule in fitting if not all(why_row_is_not_sold(feed, row, query) for"
     ' row in feed.products if row["fare_product_id"] == rule["fare_product_id"])]\n    exact = [rule'
     " for rule in fitting if is_filled_in(rule)]"),
    ("priorities of products that cannot be sold do not count",
     "    if has_priorities(feed):\n        highest",
     "    fitting = [rule for rule in fitting if not all(why_row_is_not_sold(feed, row, query) for"
     ' row in feed.products if row["fare_product_id"] == rule["fare_product_id"])]\n    if'
     " has_priorities(feed):\n        highest"),
    ("negative amounts are sold",
     'reasons.add("negative")',
     "pass"),
    ("all media are sold",
     'reasons.add("media")',
     "pass"),
    ("paper tickets are not sold",
     "media=(0, 1)):\n        self",
     "media=(0,)):\n        self"),
    ("--media is ignored",
     "{int(medium_type) for medium_type in media}",
     "{0, 1}"),
    ("a row without medium is not sold",
     '    for medium in feed.media:\n        if medium["fare_media_id"] ==',
     '    if not row["fare_media_id"]:\n        reasons.add("media")\n    for medium in feed.media:\n  '
     '      if medium["fare_media_id"] =='),
    ("one medium of several is offered",
     "media = found.setdefault(key, set())",
     "media = found[key] = set()"),
    ("categories are merged",
     'key = (product_id, row["rider_category_id"],',
     'key = (product_id, "",'),
    ("the areas of a rule are dropped",
     'rule["from_area_id"], rule["to_area_id"], "leg"))',
     '"", "", "leg"))'),
    ("amounts keep the decimals that are written",
     'fraction.ljust(decimals, "0") if decimals else "")',
     'fraction if fraction else "")'),
    ("media are sorted as UTF-16",
     '"fare_media_ids": sorted(media)',
     '"fare_media_ids": sorted(media, key=lambda medium: medium.encode("utf-16-be"))'),
    ("products of transfer rules are passes",
     ' | feed.transfer_rules.values("fare_product_id")\n    for product_id',
     "\n    for product_id"),
    ("passes are leg offers",
     '(product_id, "", "", "pass")',
     '(product_id, "", "", "leg")'),
    ("passes are not sold at a last stop",
     'for product_id in feed.products.values("fare_product_id") - in_rules:',
     'for product_id in (feed.products.values("fare_product_id") - in_rules if destinations(feed, query) else []):'),
    ("products of transfer rules are never sold",
     'for row in feed.products:\n            if row["fare_product_id"] == product_id and',
     "for row in feed.products:\n            if product_id in"
     ' feed.transfer_rules.values("fare_product_id"):\n                continue\n            if'
     ' row["fare_product_id"] == product_id and'),
    ("the older form is used beside products",
     'if self.has("fare_products.txt"):',
     'if self.has("fare_products.txt") and not self.has("fare_attributes.txt"):'),
    ("prepaid fares are sold",
     'if fare["payment_method"] == "1" or not',
     "if not"),
    ("agencies are ignored",
     'return fare["agency_id"] in ("", agency_of_route(feed, query.route))',
     "return True"),
    ("a fare without agency is not sold",
     'return fare["agency_id"] in ("", agency_of_route(feed, query.route))',
     'return fare["agency_id"] == agency_of_route(feed, query.route)'),
    ("the routes of fares are ignored",
     'return rule["route_id"] in ("", query.route)',
     "return True"),
    ("an empty route is no route",
     'return rule["route_id"] in ("", query.route)',
     'return rule["route_id"] == query.route'),
    ("origins are ignored",
     'if rule["origin_id"] not in ("", zone_of(feed, query.stop)):',
     "if False:"),
    ("destinations are ignored",
     'if rule["destination_id"] not in ("", zone_of(feed, destination)):',
     "if False:"),
    ("contains_id is ignored",
     'if rule["contains_id"]}',
     "if False}"),
    ("contains_id of one row counts",
     "contained = contained_zones(feed, fare)",
     'contained = {rule["contains_id"]} - {""}'),
    ("contains_id of the rows for other routes is ignored",
     "contained = contained_zones(feed, fare)",
     'contained = {row["contains_id"] for row in rules_of_fare(feed, fare) if route_fits(row, query)} - {""}'),
    ("one zone of contains_id is enough",
     "any(contained <= zones for zones in",
     "not contained or any(contained & zones for zones in"),
    ("the zones of all trips count together",
     "any(contained <= zones for zones in zones_between(feed, query, destination))",
     "contained <= set().union(*zones_between(feed, query, destination))"),
    ("the zones of the whole trip are passed",
     "for stop_id in trip[first:last + 1]}",
     "for stop_id in trip}"),
    ("the zone of the stop is not passed",
     "for stop_id in trip[first:last + 1]}",
     "for stop_id in trip[first + 1:last + 1]}"),
    ("the zone of the destination is not passed",
     "for stop_id in trip[first:last + 1]}",
     "for stop_id in trip[first:last]}"),
    ("no zones are passed without a trip",
     "return ways or [{zone_of(feed, query.stop), zone_of(feed, destination)}]",
     "return ways"),
    ("a fare without rows needs a ride",
     "        if not rules:\n",
     "        if not rules and destinations(feed, query):\n"),
    ("a fare with rows is offered at a last stop",
     "in destinations(feed, query):\n                if route_fits",
     "in destinations(feed, query) or {query.stop}:\n                if route_fits"),
    ("the areas of an older fare are dropped",
     'rule["origin_id"], rule["destination_id"], amount, "leg")',
     '"", "", amount, "leg")'),
    ("several currencies are no fault",
     "if len(codes) > 1:",
     "if False:"),
    ("more decimals are no fault",
     "if len(fraction) > decimals:",
     "if False:"),
    ("all currencies have two decimals",
     "return DECIMALS.get(currency, 2)",
     "return 2"),
    ("a negative product is no fault",
     "if negative and row",
     "if False and row"),
    ("a negative product of transfer rules is a fault",
     'if negative and row["fare_product_id"] not in in_transfer_rules:',
     "if negative:"),
    ("a negative price is no fault",
     'if is_negative(amount_of(fare["price"], feed.currency)):',
     "if False:"),
    ("a feed without fares is no fault",
     "raise Fault(NEITHER_FORM)",
     'self.older, self.currency = False, ""'),
    ("an unknown medium is no fault",
     '        check_exists(row, "fare_media_id",',
     '        ("fare_media_id",'),
    ("an unknown category is no fault",
     '        check_exists(row, "rider_category_id",',
     '        ("rider_category_id",'),
    ("an unknown product of a leg rule is no fault",
     '        check_exists(rule, "fare_product_id", product_ids, required=True)',
     "        pass"),
    ("an unknown network is no fault",
     '        check_exists(rule, "network_id", networks)',
     "        pass"),
    ("an unknown area is no fault",
     'check_exists(rule, column, feed.areas.values("area_id"))',
     "pass"),
    ("an unknown timeframe is no fault",
     'check_exists(rule, column, feed.timeframes.values("timeframe_group_id"))',
     "pass"),
    ("an unknown product of a transfer rule is no fault",
     '        check_exists(rule, "fare_product_id", product_ids)\n',
     ""),
    ("an unknown leg group is no fault",
     'check_exists(rule, column, feed.leg_rules.values("leg_group_id"))',
     "pass"),
    ("an unknown fare is no fault",
     '        check_exists(rule, "fare_id", feed.fares.values("fare_id"), required=True)\n',
     ""),
    ("an unknown route of a fare is no fault",
     '        check_exists(rule, "route_id", feed.routes.values("route_id"))\n',
     ""),
    ("an unknown zone is no fault",
     'check_exists(rule, column, feed.stops.values("zone_id"))',
     "pass"),
    ("an unknown route of a query is no fault",
     'if query.route not in feed.routes.values("route_id"):',
     "if False:"),
    ("an unknown stop of a query is no fault",
     'if stop_id is not None and stop_id not in feed.stops.values("stop_id"):',
     "if False:"),
    ("a byte-order mark is part of the header",
     'decode("utf-8-sig")',
     'decode("utf-8")'),
    ("blanks around header names count",
     "[name.strip() for name in lines[0]]",
     "[name for name in lines[0]]"),
    ("quotes are not read",
     'csv.reader(io.StringIO(text, newline=""))',
     'csv.reader(io.StringIO(text, newline=""), quoting=csv.QUOTE_NONE)'),
    ("every product is left out for its area",
     "        return furthest(strict), ",
     '        return "area", {"area"} or '),
    ("a product of transfer rules is left out for its media",
     'return "transfer_only", reasons | {"transfer_only"}',
     'return "media", {"media"}'),
    ("left out are only products of leg rules",
     'for product_id in feed.products.values("fare_product_id") - offered\n',
     'for product_id in feed.leg_rules.values("fare_product_id") - offered\n'),
    ("a prepaid fare is left out for its area",
     'return "prepaid", {"prepaid"}',
     'return "area", {"area"}'),
]


def oracle_with(old, new):
    """The oracle with a piece replaced."""
    source = (HERE / "offers_oracle.py").read_text(encoding="utf-8")
    if source.count(old) != 1:
        raise ValueError(f"{old!r} is {source.count(old)} times in the oracle")
    module = types.ModuleType("slipped_oracle")
    exec(compile(source.replace(old, new), "slipped_oracle", "exec"), module.__dict__)
    return module


class Asked:
    """A folder with its queries, and what is expected of each."""

    def __init__(self, folder, queries, expected):
        self.folder = folder
        self.queries = queries
        self.expected = expected

    def differences_of(self, oracle):
        """The first differences between what an oracle answers and what is expected."""
        feed = None
        for query, (expected, acceptable) in zip(self.queries, self.expected):
            try:
                feed = feed or oracle.Feed(self.folder)
                found = oracle.answer(feed, oracle.Query(**query))
            except oracle.Fault:
                found = None
            except Exception as error:
                return [f"{type(error).__name__}: {error}"]
            if found is None or expected is None:
                wrong = [] if found is expected else ["a fault on one side"]
            else:
                wrong = check_offers.differences(found, expected, acceptable)
            if wrong:
                return wrong
        return []


def asked_of_seed(folder, seed):
    made = feed_generator.make_feed(seed)
    made.write(folder)
    queries = feed_generator.queries(made, 10)
    try:
        feed = offers_oracle.Feed(folder)
    except offers_oracle.Fault as fault:
        return Asked(folder, queries[:1], [(None, str(fault))])
    return Asked(folder, queries, [check_offers.expectation(feed, query) for query in queries])


class Generator(unittest.TestCase):

    def test_a_seed_always_gives_the_same_feed_and_queries(self):
        for seed in range(20):
            with tempfile.TemporaryDirectory() as parent:
                texts = []
                for name in ("one", "other"):
                    made = feed_generator.make_feed(seed)
                    made.write(pathlib.Path(parent) / name)
                    files = {path.name: path.read_bytes() for path in (pathlib.Path(parent) / name).iterdir()}
                    texts.append((files, feed_generator.queries(made, 5)))
                self.assertEqual(texts[0], texts[1])

    def test_the_oracle_refuses_the_feeds_with_a_fault_and_no_others(self):
        faults = 0
        for seed in range(FEEDS):
            with tempfile.TemporaryDirectory() as folder:
                made = feed_generator.make_feed(seed)
                made.write(folder)
                faults += made.fault is not None
                try:
                    offers_oracle.Feed(folder)
                    self.assertIsNone(made.fault, f"seed {seed}")
                except offers_oracle.Fault as fault:
                    self.assertIsNotNone(made.fault, f"seed {seed}: {fault}")
        self.assertGreater(faults, FEEDS / 20)


class Slips(unittest.TestCase):
    """Each slip must be noticed, by the written cases and by the random feeds: both ask for what they say they do."""

    @classmethod
    def setUpClass(cls):
        cls.parent = tempfile.TemporaryDirectory()
        parent = pathlib.Path(cls.parent.name)
        cls.random = [asked_of_seed(parent / f"feed-{seed}", seed) for seed in range(FEEDS)]
        cls.written = []
        for number, case in enumerate(CASES):
            check_offers.write_case(parent / f"case-{number}", case)
            expected = check_offers.expectation_of_case(case)
            cls.written.append(Asked(parent / f"case-{number}", [case["query"]], [expected]))

    @classmethod
    def tearDownClass(cls):
        cls.parent.cleanup()

    def noticed_by_all(self, everything):
        for name, old, new in SLIPS:
            with self.subTest(name):
                slipped = oracle_with(old, new)
                self.assertTrue(any(asked.differences_of(slipped) for asked in everything), "not noticed")

    def test_the_oracle_itself_makes_none(self):
        for asked in self.random + self.written:
            self.assertEqual(asked.differences_of(offers_oracle), [])

    def test_the_written_cases_notice_each(self):
        self.noticed_by_all(self.written)

    def test_the_random_feeds_notice_each(self):
        self.noticed_by_all(self.random)


# A program with the interface that check_offers.py runs: the oracle with a piece replaced, or as it is.
PROGRAM = '''
import json, sys
sys.path.insert(0, {here!r})
sys.dont_write_bytecode = True
import test_check_offers as tests
oracle = tests.oracle_with({old!r}, {new!r})
assert sys.argv[1] == "offers" and sys.argv[-2:] == ["--format", "json"]
if sys.argv[3] == "--queries":
    feed = oracle.Feed(sys.argv[2])
    for line in open(sys.argv[4], encoding="utf-8"):
        print(json.dumps(oracle.answer(feed, oracle.Query(**json.loads(line)))))
else:
    sys.exit(oracle.main(sys.argv[2:-2]))
'''


class Check(unittest.TestCase):

    def check(self, old, new, *arguments):
        """The exit code and what the check prints about the oracle with a piece replaced."""
        with tempfile.TemporaryDirectory() as folder:
            program = pathlib.Path(folder) / "program.py"
            program.write_text(PROGRAM.format(here=str(HERE), old=old, new=new), encoding="utf-8")
            command = shlex.join([sys.executable, str(program)])
            run = subprocess.run([sys.executable, "-B", str(HERE / "check_offers.py"), command, *arguments],
                                 check=False, capture_output=True, encoding="utf-8",
                                 env={"TMPDIR": folder, "PATH": "/usr/bin:/bin"})
            kept = [path for path in pathlib.Path(folder).glob("check_offers.*/*") if path.is_dir()]
            self.assertEqual(run.stderr, "")
            return run.returncode, run.stdout, len(kept)

    SAME = ("return exact or fitting", "return exact or fitting")
    SLIP = ("if priority_of(rule) == highest]", "]")
    BACKWARDS = ('return int(visit["stop_sequence"])', 'return -int(visit["stop_sequence"])')
    TRIPS = "def trips_of(feed, route_id):"
    FEW = ("--feeds", "6", "--seed", "3", "--queries", "3")

    def test_a_program_that_answers_as_the_oracle_passes(self):
        for form in ((), ("--batch",)):
            with self.subTest(form):
                code, text, kept = self.check(*self.SAME, *self.FEW, *form)
                self.assertRegex(text, r"^[1-9][0-9]* passed, 0 failed\n$")
                self.assertEqual((code, kept), (0, 0))

    def test_a_program_with_a_slip_fails_and_its_feeds_are_kept(self):
        for form in ((), ("--batch",)):
            with self.subTest(form):
                code, text, kept = self.check(*self.BACKWARDS, *self.FEW, *form)
                self.assertIn("feed with seed ", text)
                self.assertRegex(text, r"[1-9][0-9]* failed\n$")
                self.assertEqual(code, 1)
                self.assertGreater(kept, 0)

    def test_a_program_that_crashes_fails(self):
        code, text, _ = self.check(self.TRIPS, self.TRIPS + "\n    sys.exit(3)", *self.FEW)
        self.assertIn("exit code 3", text)
        self.assertEqual(code, 1)

    def test_a_program_that_refuses_a_sound_feed_fails(self):
        code, text, _ = self.check(self.TRIPS, self.TRIPS + "\n    raise Fault('No.')", *self.FEW)
        self.assertIn("an answer was expected, not the fault: No.", text)
        self.assertEqual(code, 1)

    def test_the_cases_name_the_sentence_that_fails(self):
        with tempfile.TemporaryDirectory() as folder:
            few = [case for case in CASES if "highest priority" in case["name"] or "end of a timeframe" in case["name"]]
            file = pathlib.Path(folder) / "few.json"
            file.write_text(json.dumps({"feeds": {case["feed"]: {} for case in few}, "cases": few}), encoding="utf-8")
            code, text, _ = self.check(*self.SAME, "--cases", str(file))
            self.assertEqual((code, text), (0, f"{len(few)} passed, 0 failed\n"))
            code, text, _ = self.check(*self.SLIP, "--cases", str(file))
            self.assertIn("Of the rules that match a ride only those of the highest priority count.\n", text)
            self.assertNotIn("The end of a timeframe does not belong to it.", text)
            self.assertEqual(code, 1)


class Differences(unittest.TestCase):
    """What is compared, and what is not."""

    EXPECTED = {"currency": "CAD", "offers": [dict.fromkeys(check_offers.KEYS, "")], "leftOut": []}
    REASONS = {"p": {"area", "network"}}

    def found(self, **changes):
        answer = {"currency": "CAD", "offers": [dict.fromkeys(check_offers.KEYS, "")],
                  "leftOut": [{"fare_product_id": "p", "reason": "area"}]}
        return check_offers.differences({**answer, **changes}, self.EXPECTED, self.REASONS)

    def test_further_keys_and_each_acceptable_reason_are_welcome(self):
        self.assertEqual(self.found(note=1), [])
        self.assertEqual(self.found(offers=[{**self.EXPECTED["offers"][0], "name": "Single"}]), [])
        self.assertEqual(self.found(leftOut=[{"fare_product_id": "p", "reason": "network"}]), [])

    def test_each_other_difference_is_named(self):
        offer = self.EXPECTED["offers"][0]
        for wrong, changes in (
            ("currency", {"currency": "USD"}),
            ("missing offer", {"offers": []}),
            ("wrong offer", {"offers": [offer, {**offer, "amount": "1"}]}),
            ("repeated offer", {"offers": [offer, offer]}),
            ("p is not left out", {"leftOut": []}),
            ("q is left out", {"leftOut": [{"fare_product_id": name, "reason": "area"} for name in "pq"]}),
            ("p is left out twice", {"leftOut": [{"fare_product_id": "p", "reason": "area"}] * 2}),
            ("'media' and not for area or network", {"leftOut": [{"fare_product_id": "p", "reason": "media"}]}),
            ("no object", {"offers": None}),
        ):
            self.assertIn(wrong, "\n".join(self.found(**changes)))


if __name__ == "__main__":
    unittest.main()
