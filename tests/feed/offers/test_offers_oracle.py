#!/usr/bin/env python3
"""What may be sold, sentence by sentence: the oracle answers each written case as the case expects."""

import contextlib
import io
import json
import pathlib
import tempfile
import unittest

import check_offers
import offers_feed
import offers_oracle

CASES = check_offers.written_cases(check_offers.CASES)


class Sentences(unittest.TestCase):
    """A test for each written case; the loop below adds them."""

    def judge(self, case):
        with tempfile.TemporaryDirectory() as parent:
            folder = pathlib.Path(parent) / "feed"
            check_offers.write_case(folder, case)
            expected, acceptable = check_offers.expectation_of_case(case)
            if expected is None:
                with self.assertRaises(offers_oracle.Fault):
                    offers_oracle.offers(folder, **case["query"])
                return
            feed = offers_oracle.Feed(folder)
            query = offers_oracle.Query(**case["query"])
            found = offers_oracle.answer(feed, query)
            self.assertEqual(check_offers.differences(found, expected, acceptable), [])
            self.assertEqual(offers_oracle.acceptable_reasons(feed, query), acceptable)
            first = {entry["fare_product_id"]: entry["reasons"][0] for entry in expected["leftOut"]}
            self.assertEqual({entry["fare_product_id"]: entry["reason"] for entry in found["leftOut"]}, first)


def add_sentences():
    for case in CASES:
        def test(self, case=case):
            self.judge(case)
        test.__doc__ = case["name"]
        name = "test_" + "".join(letter if letter.isalnum() else "_" for letter in case["name"]).strip("_")
        if hasattr(Sentences, name):
            raise ValueError(f"two cases are named {case['name']}")
        setattr(Sentences, name, test)


add_sentences()


class Program(unittest.TestCase):

    def run_oracle(self, case, *arguments):
        with tempfile.TemporaryDirectory() as parent:
            folder = pathlib.Path(parent) / "feed"
            check_offers.write_case(folder, case)
            out, err = io.StringIO(), io.StringIO()
            with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
                code = offers_oracle.main([str(folder), *arguments])
            return code, out.getvalue(), err.getvalue()

    def test_the_answer_is_printed_as_json(self):
        case = next(case for case in CASES if case["name"].startswith("With the media 2 and 4 given"))
        code, text, _ = self.run_oracle(case, "--route", "R", "--stop", "A", "--to", "B", "--at", "2026-03-04T08:00",
                                        "--media", "2,4")
        self.assertEqual(code, 0)
        self.assertEqual([offer["fare_product_id"] for offer in json.loads(text)["offers"]], ["app", "card"])

    def test_a_fault_exits_with_2(self):
        for name, sentence in (("A stop that does not exist is a fault.", "There is no stop"),
                               ("A feed without either form of fares is a fault.", offers_feed.NEITHER_FORM)):
            case = next(case for case in CASES if case["name"] == name)
            code, text, message = self.run_oracle(case, "--route", "R", "--stop", case["query"]["stop"],
                                                  "--at", "2026-03-04T08:00")
            self.assertEqual((code, text), (2, ""))
            self.assertIn(sentence, message)

    def test_a_time_that_does_not_exist_is_a_fault(self):
        case = CASES[0]
        for at in ("2026-02-30T08:00", "2026-03-04T24:00", "2026-03-04", "2026-03-04T08:00:00", "today"):
            self.assertEqual(self.run_oracle(case, "--route", "R", "--stop", "A", "--at", at)[0], 2, at)


if __name__ == "__main__":
    unittest.main()
