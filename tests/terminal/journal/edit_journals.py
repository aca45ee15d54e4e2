#!/usr/bin/env python3
"""Edits a closed journal in hundreds of ways and expects rivo-journal to notice each.

The chain of seals is computed here a second time, by what docs/journal.md says: a forger without the
key may do the same, and must be noticed too.

edit_journals.py RIVO_JOURNAL
"""

import hashlib
import os
import random
import shutil
import sqlite3
import subprocess
import sys
import tempfile

program = sys.argv[1]
KEYS = {"opening": "record", "sale": "record", "ticket": "sale", "card_sale": "sale",
        "printout": "record", "reversal": "record", "reversed_ticket": "reversal",
        "card_reversal": "reversal", "closing": "record", "hand_over": "record",
        "payment": "record", "payment_ticket": "payment", "outcome": "record",
        "card_day": "record", "clock": "record", "pruning": "record"}
# The tables of each kind of record, each with the column that its rows are in the order of.
KINDS = {1: [("opening", "record")],
         2: [("sale", "record"), ("ticket", "number"), ("card_sale", "sale")],
         3: [("printout", "record")],
         4: [("reversal", "record"), ("reversed_ticket", "ticket"), ("card_reversal", "reversal")],
         5: [("closing", "shift")], 6: [("hand_over", "shift")],
         7: [("payment", "record"), ("payment_ticket", "ticket")],
         8: [("outcome", "record")], 9: [("card_day", "record")], 10: [("clock", "record")],
         11: [("pruning", "record")]}
# Of the moment; what they say follows from the records.
UNSEALED = {"basket", "unprinted"}
failures = []


def copy(source, target):
    for end in ("", ".head", ".key", ".pub"):
        if os.path.exists(target + end):
            os.remove(target + end)
        shutil.copy(source + end, target + end)
    if os.path.exists(target + "-wal"):
        os.remove(target + "-wal")


def verify(journal, *options):
    done = subprocess.run([program, "verify", journal, *options], capture_output=True, text=True,
                          timeout=60, check=False)
    return done.returncode, done.stdout + done.stderr


def expect(what, expected, journal, *options):
    code, text = verify(journal, *options)
    if code != expected:
        failures.append(f"{what}: exit code {code} instead of {expected}: {text.strip()}")
    return text


def value_bytes(value):
    if value is None:
        return b"n"
    if isinstance(value, int):
        return b"i%d;" % value
    if isinstance(value, float):
        return b"f%s;" % format(value, ".17g").encode()
    data = value.encode() if isinstance(value, str) else value
    return (b"t" if isinstance(value, str) else b"b") + b"%d:" % len(data) + data


def rows_bytes(database, table, condition="", order="rowid"):
    rows = database.execute(f"SELECT * FROM {table} {condition} ORDER BY {order}")
    return b"".join(table.encode() + b";" + b"".join(map(value_bytes, row)) + b"\n" for row in rows)


def content(database, record):
    made = rows_bytes(database, "record", f"WHERE id = {record}")
    kind = database.execute("SELECT kind FROM record WHERE id = ?", (record,)).fetchone()[0]
    for table, order in KINDS[kind]:
        made += rows_bytes(database, table, f"WHERE {KEYS[table]} = {record}", order)
    return made


def is_pruned(database):
    return database.execute("SELECT COUNT(*) FROM sqlite_master WHERE name = 'pruning'").fetchone()[0]


def chain(database):
    """Numbers and hashes of all seals, from the content and the signatures."""
    base = database.execute("SELECT base FROM chain").fetchone()[0]
    start = hashlib.sha256(rows_bytes(database, "journal") + rows_bytes(database, "chain"))
    if not is_pruned(database):
        for record in range(1, base + 1):
            start.update(content(database, record))
        made = [(base, start.digest())]
    else:
        pruned = database.execute("SELECT start FROM pruning ORDER BY record DESC LIMIT 1").fetchone()
        if pruned[0] != start.digest():
            failures.append("the start is not the one of the last pruning")
        made = [(base, database.execute("SELECT hash FROM seal WHERE record = ?", (base,)
                                        ).fetchone()[0])]
    for record, signature in database.execute("SELECT record, signature FROM seal ORDER BY record"
                                              ).fetchall()[:-1]:
        made.append((record + 1, hashlib.sha256(made[-1][1] + signature
                                                + content(database, record + 1)).digest()))
    return made


def seal_again(database):
    """What a forger can do without the key."""
    start = hashlib.sha256(rows_bytes(database, "journal") + rows_bytes(database, "chain"))
    if is_pruned(database):
        database.execute("UPDATE pruning SET start = ? WHERE record = (SELECT MAX(record) FROM pruning)",
                         (start.digest(),))
    for record, digest in chain(database):
        database.execute("UPDATE seal SET hash = ? WHERE record = ?", (digest, record))


def check_signatures(journal):
    """With OpenSSL's own program, which knows nothing of this one."""
    with sqlite3.connect(journal) as database:
        seals = database.execute("SELECT record, hash, signature FROM seal ORDER BY record DESC"
                                 " LIMIT 3").fetchall()
    for record, digest, signature in seals:
        with open(journal + ".message", "wb") as file:
            file.write(b"RivoSeal 1\n%d\n" % record + digest)
        with open(journal + ".signature", "wb") as file:
            file.write(signature)
        done = subprocess.run(["openssl", "pkeyutl", "-verify", "-pubin", "-inkey", journal + ".pub",
                               "-rawin", "-in", journal + ".message",
                               "-sigfile", journal + ".signature"], capture_output=True, check=False)
        if done.returncode != 0:
            failures.append(f"the signature of record {record} is not that of the public key")


def other(value):
    if value is None:
        return 1
    if isinstance(value, int):
        return value + 1
    if isinstance(value, str):
        return value + "x"
    return bytes([value[0] ^ 1]) + value[1:] if value else b"x"


def edits(journal):
    """Each value of the first, a middle and the last row of each table, and each row removed."""
    with sqlite3.connect(journal) as database:
        tables = [name for (name,) in database.execute(
            "SELECT name FROM sqlite_master WHERE type = 'table'") if name not in UNSEALED]
        for table in tables:
            rows = database.execute(f"SELECT rowid, * FROM {table} ORDER BY rowid").fetchall()
            columns = [row[1] for row in database.execute(f"PRAGMA table_info({table})")]
            for at in sorted({0, len(rows) // 2, len(rows) - 1} if rows else ()):
                rowid = rows[at][0]
                yield (f"{table} without row {rowid}",
                       (f"DELETE FROM {table} WHERE rowid = ?", (rowid,)))
                for column, value in zip(columns, rows[at][1:]):
                    yield (f"{table}.{column} of row {rowid}",
                           (f"UPDATE {table} SET {column} = ? WHERE rowid = ?",
                            (other(value), rowid)))


def simulate(journal, *options):
    subprocess.run([program, "simulate", journal, "--sales", "120", "--per-shift", "40",
                    "--seed", "5", *options], check=True, capture_output=True)
    head = subprocess.run([program, "head", journal], check=True, capture_output=True,
                          text=True).stdout.strip()
    expect("the journal as it is", 0, journal, "--head", head, "--key", journal + ".pub")
    check_signatures(journal)
    with sqlite3.connect(journal) as database:
        stored = database.execute("SELECT record, hash FROM seal ORDER BY record").fetchall()
        if chain(database) != stored:
            failures.append("the chain is not the one that is documented")


def edit(original, edited):
    """Returns how many edits there were."""
    count = 0
    for forged in (False, True):
        for what, (statement, values) in edits(original):
            if forged and (what.startswith("seal") or what.startswith("sqlite_sequence")):
                continue
            if forged and random.Random(what).random() > 0.3:
                continue
            copy(original, edited)
            database = sqlite3.connect(edited)
            database.execute("PRAGMA synchronous=OFF")
            try:
                database.execute(statement, values)
                if forged:
                    seal_again(database)
                database.commit()
            except (sqlite3.Error, KeyError, TypeError):
                continue  # the tables do not allow it
            finally:
                database.close()
            expect(what + (", sealed again without the key" if forged else ""), 1, edited)
            count += 1
    return count


def main(folder):
    original = os.path.join(folder, "original")
    pruned = os.path.join(folder, "pruned")
    edited = os.path.join(folder, "edited")
    simulate(original)
    simulate(pruned, "--keep-shifts", "1")
    count = edit(original, edited)
    pruned_count = edit(pruned, edited)

    source = random.Random(5)
    with open(original, "rb") as file:
        content_before = file.read()
    flips = 0
    with sqlite3.connect(original) as database:
        before = "\n".join(database.iterdump())
    while flips < 105:
        copy(original, edited)
        place = source.randrange(100, len(content_before))
        changed = bytearray(content_before)
        changed[place] ^= 1 << source.randrange(8)
        with open(edited, "wb") as file:
            file.write(changed)
        try:
            with sqlite3.connect(edited) as database:
                after = "\n".join(database.iterdump())
            if after == before and database.execute("PRAGMA integrity_check").fetchone() == ("ok",):
                continue  # a byte that holds nothing
        except (sqlite3.Error, UnicodeDecodeError):
            pass
        flips += 1
        code, text = verify(edited)
        if code not in (1, 2):
            failures.append(f"bit of byte {place}: exit code {code}: {text.strip()}")

    print(f"{count} edits, {pruned_count} of a pruned journal, {flips} flipped bits, {len(failures)} not noticed")
    for failure in failures[:20]:
        print(failure)
    return 1 if failures or count < 300 or pruned_count < 150 else 0


with tempfile.TemporaryDirectory() as place:
    sys.exit(main(place))
