#!/usr/bin/env python3
"""Compares what a program says that a bus may sell with the oracle.

    check_offers.py PROGRAM [--feeds N] [--seed S] [--queries Q] [--batch] [--jobs J]
    check_offers.py PROGRAM --cases [FILE]

The first form makes random feeds and queries; feed number i has the seed S + i. A feed with a difference is kept. The
second form uses the written cases. PROGRAM is run as

    PROGRAM offers FOLDER --route R --stop S --at T [--to D] [--media TYPE,TYPE...] --format json

or with --batch once for all queries of a feed as PROGRAM offers FOLDER --queries FILE --format json, where FILE has one
JSON object with route, stop, at and, if given, to and media per line, and the output has one JSON object per line.
"""

import argparse
import json
import multiprocessing
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

import feed_generator
import offers_oracle

SHOWN = 5
TIMEOUT_S = 60
KEYS = ("fare_product_id", "rider_category_id", "fare_media_ids", "from_area_id", "to_area_id", "amount", "kind")
CASES = pathlib.Path(__file__).with_name("cases.json")


# ---------------------------------------------------------------------------------------------------------- comparison


def identity(offer):
    """An offer without further keys, as text that can be sorted."""
    return json.dumps({key: offer.get(key) for key in KEYS}, ensure_ascii=False)


def differences(found, expected, acceptable):
    """What is wrong with an answer. The offers may be in any order, a reason may be any of the acceptable ones."""
    if not isinstance(found, dict) or not all(isinstance(found.get(key), list) for key in ("offers", "leftOut")):
        return [f"no object with offers and leftOut: {json.dumps(found, ensure_ascii=False)[:200]}"]
    wrong = []
    if found.get("currency") != expected["currency"]:
        wrong.append(f"currency is {found.get('currency')!r} and not {expected['currency']!r}")
    have = sorted(identity(offer) for offer in found["offers"])
    want = sorted(identity(offer) for offer in expected["offers"])
    wrong += [f"missing offer {offer}" for offer in want if offer not in have]
    wrong += [f"wrong offer {offer}" for offer in dict.fromkeys(have) if offer not in want]
    wrong += [f"repeated offer {offer}" for offer in dict.fromkeys(have) if have.count(offer) > 1]
    left = [entry.get("fare_product_id") for entry in found["leftOut"]]
    wrong += [f"{product} is not left out" for product in sorted(acceptable) if product not in left]
    wrong += [f"{product} is left out" for product in dict.fromkeys(left) if product not in acceptable]
    wrong += [f"{product} is left out twice" for product in dict.fromkeys(left) if left.count(product) > 1]
    for entry in found["leftOut"]:
        product, reason = entry.get("fare_product_id"), entry.get("reason")
        if product in acceptable and reason not in acceptable[product]:
            wrong.append(f"{product} is left out for {reason!r} and not for {' or '.join(sorted(acceptable[product]))}")
    return wrong


# --------------------------------------------------------------------------------------------------------- the program


class Failure(Exception):
    """A run of the program that gave no answer."""


class Refusal(Exception):
    """A run of the program that reported a fault; the text is what it printed."""


def run(program, arguments):
    environment = {**os.environ, "LC_ALL": "C.UTF-8"}
    try:
        return subprocess.run([*program, *arguments], capture_output=True, timeout=TIMEOUT_S, check=False,
                              env=environment)
    except subprocess.TimeoutExpired as error:
        raise Failure(f"no answer within {TIMEOUT_S} s") from error


def output_of(program, arguments):
    result = run(program, arguments)
    message = result.stderr[-500:].decode(errors="replace").strip()
    if result.returncode == 2:
        raise Refusal(message)
    if result.returncode != 0:
        raise Failure(f"exit code {result.returncode}: {message}")
    return result.stdout


def command_of(folder, query):
    arguments = ["offers", str(folder), "--route", query["route"], "--stop", query["stop"], "--at", query["at"]]
    if "to" in query:
        arguments += ["--to", query["to"]]
    if "media" in query:
        arguments += ["--media", ",".join(map(str, query["media"]))]
    return arguments + ["--format", "json"]


def parsed(text):
    try:
        return json.loads(text)
    except ValueError as error:
        raise Failure(f"no JSON: {text[:200]!r}") from error


def ask(program, folder, query):
    """The answer to one query."""
    return parsed(output_of(program, command_of(folder, query)))


def ask_all(program, folder, queries):
    """The answers to the queries from one run."""
    file = pathlib.Path(f"{folder}.queries")
    file.write_text("".join(json.dumps(query, ensure_ascii=False) + "\n" for query in queries), encoding="utf-8")
    output = output_of(program, ["offers", str(folder), "--queries", str(file), "--format", "json"])
    answers = [parsed(line) for line in output.splitlines() if line.strip()]
    if len(answers) != len(queries):
        raise Failure(f"{len(answers)} answers to {len(queries)} queries")
    return answers


# -------------------------------------------------------------------------------------------------------- random feeds


def expectation(feed, query):
    """The answer of the oracle and the acceptable reasons, or None and the fault."""
    try:
        asked = offers_oracle.Query(**query)
        return offers_oracle.answer(feed, asked), offers_oracle.acceptable_reasons(feed, asked)
    except offers_oracle.Fault as fault:
        return None, str(fault)


def judge(get_answer, expected, acceptable):
    """What is wrong with the answer that get_answer returns. A fault is expected if no answer is."""
    try:
        found = get_answer()
    except Refusal as refusal:
        return [] if expected is None else [f"an answer was expected, not the fault: {refusal}"]
    except Failure as failure:
        return [str(failure)]
    return [f"a fault was expected: {acceptable}"] if expected is None else differences(found, expected, acceptable)


def report(seed, folder, query, wrong, program):
    lines = [f"feed with seed {seed}, kept in {folder}", "  " + shlex.join([*program, *command_of(folder, query)])]
    return "\n".join(lines + [f"    {line}" for line in wrong])


def check_feed(job):
    """The counts of the queries that passed and failed, and the reports of these."""
    program, seed, count, batch, parent = job
    made = feed_generator.make_feed(seed)
    folder = pathlib.Path(parent) / f"feed-{seed}"
    made.write(folder)
    queries = feed_generator.queries(made, count)
    try:
        feed = offers_oracle.Feed(folder)
        expected = [expectation(feed, query) for query in queries]
    except offers_oracle.Fault as fault:
        # One query is enough to see that the program refuses the feed.
        queries, expected = queries[:1], [(None, f"{fault} ({made.fault})")]
    answers = {}
    if batch:
        sound = [number for number, (answer, _) in enumerate(expected) if answer is not None]
        try:
            found = ask_all(program, folder, [queries[number] for number in sound]) if sound else []
            answers = dict(zip(sound, found))
        except (Failure, Refusal) as failure:
            return 0, len(queries), [report(seed, folder, queries[0], [f"batch: {failure}"], program)]
    passed, reports = 0, []
    for number, (query, (answer, acceptable)) in enumerate(zip(queries, expected)):
        get_answer = (lambda: answers[number]) if number in answers else (lambda: ask(program, folder, query))
        wrong = judge(get_answer, answer, acceptable)
        passed += not wrong
        if wrong:
            reports.append(report(seed, folder, query, wrong, program))
    if not reports:
        shutil.rmtree(folder)
        pathlib.Path(f"{folder}.queries").unlink(missing_ok=True)
    return passed, len(reports), reports


def check_feeds(program, options):
    parent = tempfile.mkdtemp(prefix="check_offers.")
    jobs = [(program, options.seed + number, options.queries, options.batch, parent) for number in range(options.feeds)]
    passed, failed, shown = 0, 0, 0
    with multiprocessing.Pool(options.jobs) as pool:
        for good, bad, reports in pool.imap_unordered(check_feed, jobs, chunksize=4):
            passed += good
            failed += bad
            for text in reports[:max(0, SHOWN - shown)]:
                print(text, flush=True)
                shown += 1
    if not failed:
        shutil.rmtree(parent)
    return passed, failed


# ------------------------------------------------------------------------------------------------------- written cases


def written_cases(file):
    """The cases of a file. Each says how its files differ from those of a feed that many share; null = no such file."""
    written = json.loads(pathlib.Path(file).read_text(encoding="utf-8"))
    for case in written["cases"]:
        files = {**written["feeds"][case["feed"]], **case["files"]}
        case["files"] = {name: text for name, text in files.items() if text is not None}
    return written["cases"]


def write_case(folder, case):
    folder.mkdir()
    for name, text in case["files"].items():
        (folder / name).write_bytes(text.encode("utf-8"))


def expectation_of_case(case):
    """What a case expects, in the form of expectation()."""
    expected = case["expected"]
    if expected.get("exit") == 2:
        return None, case["name"]
    return expected, {entry["fare_product_id"]: set(entry["reasons"]) for entry in expected["leftOut"]}


def check_cases(program, file):
    passed, failed = 0, 0
    parent = pathlib.Path(tempfile.mkdtemp(prefix="check_offers."))
    for number, case in enumerate(written_cases(file)):
        folder = parent / f"case-{number}"
        write_case(folder, case)
        wrong = judge(lambda: ask(program, folder, case["query"]), *expectation_of_case(case))
        if wrong:
            failed += 1
            print("\n".join([case["name"], "  " + shlex.join([*program, *command_of(folder, case["query"])])]))
            print("\n".join(f"    {line}" for line in wrong), flush=True)
        else:
            passed += 1
            shutil.rmtree(folder)
    if not failed:
        shutil.rmtree(parent)
    return passed, failed


def main(arguments):
    parser = argparse.ArgumentParser(description="Compares the offers of a program with those of the oracle.")
    parser.add_argument("program", metavar="PROGRAM", help="may have arguments of its own")
    parser.add_argument("--feeds", type=int, default=200, help="number of random feeds")
    parser.add_argument("--seed", type=int, default=1, help="seed of the first feed")
    parser.add_argument("--queries", type=int, default=10, help="number of queries of each feed")
    parser.add_argument("--batch", action="store_true", help="run the program once for each feed")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="number of processes")
    parser.add_argument("--cases", nargs="?", const=str(CASES), metavar="FILE", help="use the written cases")
    options = parser.parse_args(arguments)
    program = shlex.split(options.program)
    passed, failed = check_cases(program, options.cases) if options.cases else check_feeds(program, options)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
