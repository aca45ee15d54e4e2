#!/usr/bin/env python3
"""Compares what a program says that a bus may sell with the written cases.

    check_offers.py PROGRAM [--cases FILE]

PROGRAM is run as

    PROGRAM offers FOLDER --route R --stop S --at T [--to D] [--media TYPE,TYPE...] --format json
"""

import argparse
import json
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile

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


# ------------------------------------------------------------------------------------------------------- written cases


def judge(get_answer, expected, acceptable):
    """What is wrong with the answer that get_answer returns. A fault is expected if no answer is."""
    try:
        found = get_answer()
    except Refusal as refusal:
        return [] if expected is None else [f"an answer was expected, not the fault: {refusal}"]
    except Failure as failure:
        return [str(failure)]
    return [f"a fault was expected: {acceptable}"] if expected is None else differences(found, expected, acceptable)


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
    for number, case in enumerate(json.loads(pathlib.Path(file).read_text(encoding="utf-8"))):
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
    parser = argparse.ArgumentParser(description="Compares the offers of a program with the written cases.")
    parser.add_argument("program", metavar="PROGRAM", help="may have arguments of its own")
    parser.add_argument("--cases", default=str(CASES), metavar="FILE", help="the written cases")
    options = parser.parse_args(arguments)
    program = shlex.split(options.program)
    passed, failed = check_cases(program, options.cases)
    print(f"{passed} passed, {failed} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
