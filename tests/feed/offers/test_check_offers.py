#!/usr/bin/env python3
"""The comparison with the oracle works: the written cases and the random feeds each notice every known slip of a
reader, and the check of a program fails if the program makes one."""

import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import types
import unittest

import check_offers
import feed_generator
import offers_oracle
from slips import SLIPS

HERE = pathlib.Path(__file__).resolve().parent
CASES = check_offers.written_cases(check_offers.CASES)
FEEDS = 600


def oracle_with(old, new):
    """The oracle with a piece replaced: both of its files as one module."""
    sources = [(HERE / name).read_text(encoding="utf-8") for name in ("offers_feed.py", "offers_oracle.py")]
    times = sum(source.count(old) for source in sources)
    if times != 1:
        raise ValueError(f"{old!r} is {times} times in the oracle")
    module = types.ModuleType("slipped_oracle")
    for source in sources:
        alone = re.sub(r"^from offers_feed import \([^)]*\)$", "", source, flags=re.MULTILINE)
        exec(compile(alone.replace(old, new), "slipped_oracle", "exec"), module.__dict__)
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
