#!/usr/bin/env python3
"""Tries the judgement of power_cuts.py with records that were lost, put back and doubled."""
import sys

from power_cuts import Counts, Trial


class Disk:
    def __init__(self, records, wrong):
        self.answer = records, wrong

    def records(self):
        return self.answer


def sale(number, ticket, seal="s"):
    return str(number), "sale", str(ticket), seal + str(number)


def printout(number, ticket):
    return str(number), "printout", str(ticket), "s" + str(number)


def judged(before, after, tried, confirmed, wrong=()):
    """Sales lost, doubled, and times that something was not whole."""
    trial = Trial.__new__(Trial)
    trial.counts, trial.disk = Counts(), Disk(after, list(wrong))
    trial.records, trial.tried, trial.confirmed = before, tried, confirmed
    trial.check()
    return trial.counts.lost, trial.counts.doubled, trial.counts.broken


BEFORE = [sale(1, 1), printout(2, 1)]
CASES = [
    ("nothing happened", BEFORE, BEFORE, 0, 0, (), (0, 0, 0)),
    ("a sale was confirmed", BEFORE, BEFORE + [sale(3, 2)], 1, 1, (), (0, 0, 0)),
    ("a sale that was not confirmed is there", BEFORE, BEFORE + [sale(3, 2)], 1, 0, (), (0, 0, 0)),
    ("a sale that was not confirmed is not there", BEFORE, BEFORE, 1, 0, (), (0, 0, 0)),
    ("a confirmed sale is not there", BEFORE, BEFORE, 1, 1, (), (1, 0, 0)),
    ("an older journal was put back", BEFORE + [sale(3, 2)], BEFORE, 0, 0, (), (1, 0, 0)),
    ("a sale of before has another seal", BEFORE, [sale(1, 1, "t"), printout(2, 1)], 0, 0, (), (1, 0, 0)),
    ("there is no journal", BEFORE, [], 0, 0, (), (1, 0, 0)),
    ("a sale is there twice", BEFORE, BEFORE + [sale(3, 2), sale(4, 3)], 1, 1, (), (0, 1, 0)),
    ("a ticket is there twice", BEFORE, BEFORE + [sale(3, 1)], 1, 1, (), (0, 1, 0)),
    ("the journal is not whole", BEFORE, BEFORE, 0, 0, ("verify 1",), (0, 0, 1)),
]

failures = 0
for what, before, after, tried, confirmed, wrong, expected in CASES:
    found = judged(before, after, tried, confirmed, wrong)
    if found != expected:
        failures += 1
        print(f"{what}: {found}, not {expected}", file=sys.stderr)
print(f"{len(CASES)} judgements, {failures} not as expected")
sys.exit(failures > 0)
