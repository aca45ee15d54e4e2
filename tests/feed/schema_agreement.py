#!/usr/bin/python3
"""Checks that the JSON Schema and the reader of rivo-feed JSON give the same verdict.

usage: schema_agreement.py SCHEMA VERDICT_PROGRAM BASE TABLE SAMPLE...

BASE is a feed with every key. TABLE lists edits of it with the verdict that both must give (or,
where it says "schema", the schema alone). On top of the table, every key that the schema knows is
removed, misspelt and given a range of values, at the limits that the schema states and beyond; the
reader may then also refuse an identifier that is unknown or given twice, which no schema sees.
SAMPLE are feeds that both must accept.
"""

import copy
import json
import pathlib
import subprocess
import sys

import jsonschema

BATCH = 500
UNSEEN_BY_SCHEMA = ("expected an id of ", "expected each id once", "decimals")


def parent_of(document, pointer):
    *path, last = pointer.split("/")[1:]
    for token in path:
        document = document[int(token)] if isinstance(document, list) else document[token]
    return document, int(last) if isinstance(document, list) else last


def edited(base, entry):
    document = copy.deepcopy(base)
    for pointer in entry.get("remove", []):
        container, key = parent_of(document, pointer)
        del container[key]
    for pointer, value in entry.get("set", {}).items():
        container, key = parent_of(document, pointer)
        container[key] = value
    return document


def resolved(schema, part):
    if "$ref" not in part:
        return part
    target = schema
    for token in part["$ref"].split("/")[1:]:
        target = target[token]
    return {**resolved(schema, target), **{k: v for k, v in part.items() if k != "$ref"}}


def probes(part):
    """Values of every kind, and those on both sides of each limit of `part`."""
    values = [None, True, False, "", "text", "EUR", 0, -1, 1, 1.5, 1e300, [], [1], [""], [None],
              [[]], {}, {"x-a": 1}]
    for limit in ("minimum", "maximum"):
        if limit in part:
            values += [part[limit] + step for step in (-1, -0.5, 0, 0.5, 1)]
    if "maxLength" in part:
        longest = part["maxLength"]
        values += ["a" * longest, "a" * (longest + 1), "\U0001f68c" * longest,
                   "\U0001f68c" * (longest + 1)]
    if "const" in part:
        values += [part["const"], str(part["const"])]
    return values


def derived(schema, part, pointer):
    """Rows that follow from `part` of the schema, which describes what `pointer` leads to."""
    part = resolved(schema, part)
    if pointer:
        for value in probes(part):
            yield {"row": f"{pointer} = {str(value)[:40]}", "set": {pointer: value},
                   "derived": True}
    if part.get("type") == "array":
        for index, item in enumerate(part.get("prefixItems") or [part["items"]]):
            yield from derived(schema, item, f"{pointer}/{index}")
    for key, member in part.get("properties", {}).items():
        yield {"row": f"{pointer}/{key} removed", "remove": [f"{pointer}/{key}"],
               "derived": True}
        yield from derived(schema, member, f"{pointer}/{key}")
    if "properties" in part:
        for key in ("zzz", "x_a", "X-a", "x-", "x-a", ""):
            yield {"row": f"{pointer}/{key} added", "set": {f"{pointer}/{key}": 1}}


def verdicts(program, documents):
    folder = pathlib.Path("documents")
    folder.mkdir(exist_ok=True)
    paths = []
    for index, document in enumerate(documents):
        paths.append(folder / f"{index}.json")
        paths[-1].write_text(json.dumps(document), encoding="utf-8")
    lines = []
    for start in range(0, len(paths), BATCH):
        batch = [str(path) for path in paths[start:start + BATCH]]
        run = subprocess.run([program, *batch], check=True, capture_output=True, encoding="utf-8")
        lines += run.stdout.splitlines()
    assert len(lines) == len(documents), f"{len(lines)} verdicts for {len(documents)} documents"
    return lines


def main():
    schema_path, program, base_path, table_path, *samples = sys.argv[1:]
    schema, base, table = (json.loads(pathlib.Path(path).read_text(encoding="utf-8"))
                           for path in (schema_path, base_path, table_path))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)

    rows = [{"row": sample, "verdict": "good",
             "document": json.loads(pathlib.Path(sample).read_text(encoding="utf-8"))}
            for sample in [*samples, base_path]]
    rows += table
    rows += derived(schema, schema, "")
    documents = [row.get("document") or edited(base, row) for row in rows]

    failures = 0
    good = 0
    for row, document, line in zip(rows, documents, verdicts(program, documents)):
        by_schema = "good" if validator.is_valid(document) else "bad"
        by_reader = line.split(" ", 1)[0]
        good += by_reader == "good"
        if row.get("derived") and any(reason in line for reason in UNSEEN_BY_SCHEMA):
            by_reader = "good"
        expected = row.get("verdict", by_schema)
        if by_reader != expected or by_schema != row.get("schema", expected):
            failures += 1
            print(f"{row['row']}: expected {expected}, schema {by_schema}, reader {line}")
    print(f"{len(rows)} documents, {good} good, {failures} disagreements")
    assert good > 0 and good < len(rows)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
