#!/usr/bin/env python3
"""How the report of the benchmarks judges what was measured: made-up results go in, the verdicts and
the exit code are what the targets say."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

REPORT = sys.argv.pop(1)

SIZES = ("1000", "10000", "100000")
ROWS = ("AppendOne", "AppendBlock", "InsertFront", "ReadRoles", "Get", "CountByRole", "FindById",
        "IndexFromItem", "ChangeFirst", "ChangeMiddle", "ChangeLast", "ChangeAny", "ChangeNew",
        "SortByRoleText", "SortByRoleNumber", "SortRangeByRole", "Sort", "RemoveOne", "RemoveBlock",
        "Clear", "TakeOne", "TakeBlock", "Destroy", "GridAddItem", "GridDuplicates")
GRIDS = ("GridByZone", "GridByPosition")
SYNCS = {"SyncSame": 40.0, "SyncChanged": 50.0, "SyncReplaced": 60.0, "SyncChangedInView": 50.0}
TARGETS = len(ROWS) + 1 + len(GRIDS) + len(SYNCS) + 5


def all_met():
    """Nanoseconds, and bytes for the memory, that are as good as each target asks for, and no better."""
    values = {}
    for operation in ROWS:
        for size in SIZES:
            values[f"{operation}/ours/{size}"] = 115.0
            values[f"{operation}/baseline/{size}"] = 100.0
    for operation in ("AppendBlock", "ReadRoles", "Clear"):
        values[f"{operation}/ours/100000"] = 230.0
        values[f"{operation}/baseline/100000"] = 200.0
    values["Memory/ours/10000"] = 575.0
    values["Memory/baseline/10000"] = 500.0
    for operation in GRIDS:
        values[f"{operation}/ours/1000/20"] = 160.0
        values[f"{operation}/baseline/1000/20"] = 100.0
        values[f"{operation}/ours/100000/2000"] = 208.0
    for operation, met in SYNCS.items():
        for size in ("100", "1000", "10000") if operation == "SyncSame" else ("100", "1000"):
            values[f"{operation}/ours/{size}"] = met
            values[f"{operation}/refill/{size}"] = 100.0
    return values


def entry(name, value, **others):
    kind = "bytes_per_row" if name.startswith("Memory") else "per_row"
    return {"name": name + "/manual_time", "run_name": name + "/manual_time", "run_type": "iteration",
            kind: value, **others}


class ReportJudgement(unittest.TestCase):

    def judge(self, *runs):
        """Exit code and verdict lines, from the entries of each run of the program."""
        with tempfile.TemporaryDirectory() as folder:
            paths = []
            for number, entries in enumerate(runs):
                paths.append(os.path.join(folder, f"{number}.json"))
                with open(paths[-1], "w", encoding="utf-8") as file:
                    json.dump({"context": {}, "benchmarks": entries}, file)
            run = subprocess.run([sys.executable, "-B", REPORT, "judge", *paths], capture_output=True,
                                 text=True, check=False)
        self.assertEqual(run.stderr, "")
        return run.returncode, run.stdout.splitlines()

    def judge_values(self, values):
        return self.judge([entry(name, value) for name, value in values.items()])

    def missed(self, lines):
        return [line for line in lines if not line.startswith("met")]

    def test_targets_that_are_just_met_pass(self):
        code, lines = self.judge_values(all_met())
        self.assertEqual(self.missed(lines), [])
        self.assertEqual(len(lines), TARGETS)
        self.assertEqual(code, 0)

    def test_each_cost_that_is_too_high_is_a_missed_target(self):
        for name in all_met():
            if "/ours/" not in name:
                continue
            with self.subTest(name):
                values = all_met()
                values[name] *= 1.02
                code, lines = self.judge_values(values)
                self.assertGreaterEqual(len(self.missed(lines)), 1)
                self.assertEqual(code, 1)

    def test_the_worst_size_is_the_one_that_is_judged_and_named(self):
        values = all_met()
        values["AppendBlock/ours/10000"] = 130.0
        values["AppendBlock/ours/100000"] = 120.0
        code, lines = self.judge_values(values)
        self.assertEqual(len(self.missed(lines)), 1)
        self.assertIn("1.30", self.missed(lines)[0])
        self.assertIn("(AppendBlock/10000)", self.missed(lines)[0])
        self.assertEqual(code, 1)

    def test_a_cost_that_grows_is_a_missed_target(self):
        values = all_met()
        values["Clear/ours/100000"] = values["Clear/baseline/100000"] = 300.0
        lines = self.missed(self.judge_values(values)[1])
        self.assertEqual(len(lines), 1)
        self.assertIn("2.61", lines[0])
        self.assertIn("(Clear, 1000 to 100000)", lines[0])

    def test_each_benchmark_that_was_not_run_is_a_missed_target(self):
        for name in all_met():
            with self.subTest(name):
                values = all_met()
                del values[name]
                code, lines = self.judge_values(values)
                if name.split("/")[0] in ("AppendBlock", "Memory"):
                    self.assertIn(f"{name} was not measured", "\n".join(lines))
                self.assertGreaterEqual(len(self.missed(lines)), 1)
                self.assertEqual(code, 1)

    def test_nothing_measured_fails(self):
        code, lines = self.judge([])
        self.assertEqual(len(self.missed(lines)), TARGETS)
        self.assertEqual(code, 1)

    def test_a_benchmark_that_failed_was_not_measured(self):
        values = all_met()
        entries = [entry(name, value, error_occurred=name == "Clear/ours/1000")
                   for name, value in values.items()]
        code, lines = self.judge(entries)
        self.assertIn("Clear/ours/1000 was not measured", "\n".join(lines))
        self.assertEqual(code, 1)

    def test_of_repetitions_the_fastest_counts(self):
        values = all_met()
        entries = [entry(name, value) for name, value in values.items()]
        entries += [entry("Sort/ours/1000", values["Sort/ours/1000"] * 9)]
        code, lines = self.judge(entries)
        self.assertEqual(self.missed(lines), [])
        self.assertEqual(code, 0)

    def test_of_processes_the_median_counts(self):
        for factors, missed in (((9, 1, 0.1), 0), ((9, 9, 1), 1)):
            runs = []
            for factor in factors:
                values = all_met()
                values["Sort/ours/1000"] *= factor
                runs.append([entry(name, value) for name, value in values.items()])
            code, lines = self.judge(*runs)
            self.assertEqual(len(self.missed(lines)), missed)
            self.assertEqual(code, missed)

    def test_the_ratio_is_of_what_ran_in_one_process(self):
        runs = []
        for ours, baseline in ((100.0, 100.0), (200.0, 210.0), (300.0, 90.0)):
            values = all_met()
            values["Sort/ours/1000"], values["Sort/baseline/1000"] = ours, baseline
            runs.append([entry(name, value) for name, value in values.items()])
        code, lines = self.judge(*runs)
        self.assertEqual(self.missed(lines), [])
        self.assertEqual(code, 0)

    def test_what_the_framework_has_computed_does_not_count(self):
        entries = [entry(name, value) for name, value in all_met().items()]
        entries += [entry(name, value * 9, run_type="aggregate", aggregate_name="mean")
                    for name, value in all_met().items() if "/ours/" in name]
        code, lines = self.judge(entries)
        self.assertEqual(self.missed(lines), [])
        self.assertEqual(code, 0)


if __name__ == "__main__":
    unittest.main()
