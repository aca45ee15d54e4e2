"""Cuts the power of an emulated board at random moments: while it sells, starts and updates.

After each cut a copy of the data partition is recovered, as the next start does it. rivo-journal checks
the journal; all records that were there before have to be there with the same seals, and each sale that
the screen confirmed in this run of the board once. A sale is confirmed when the screen says how it was
paid; one whose payment was tapped, but not confirmed, may be there or not.
"""
import argparse
import csv
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

from board import Board

# Shares of the screen of 1024 x 600: the first tile, the button for cash, that of a question, and the
# place of the words that say how was paid. Other things are there until then.
TILE = (0.16, 0.27)
CASH = (0.84, 0.955)  # or, after a cut, the question whether a ticket is out
IS_OUT = (0.66, 0.565)
PAID = (0.781, 0.86, 0.885, 0.895)
STARTS_WITHIN = 400  # seconds
WRITES_WITHIN = 400
ANSWERS_WITHIN = 15
SECTOR = 512
MODES = ("selling", "starting", "selling", "updating")


def region(picture, box):
    width, height, pixels = picture
    left, right = int(box[0] * width) * 3, int(box[2] * width) * 3
    return b"".join(pixels[y * width * 3 + left:y * width * 3 + right]
                    for y in range(int(box[1] * height), int(box[3] * height)))


class Counts:
    lost = doubled = failed = broken = 0


class Disk:
    """The disk of the board, between two of its starts."""

    def __init__(self, image, work, journal_program):
        self.work, self.program = work, journal_program
        self.file = os.path.join(work, "disk.img")
        subprocess.run(["cp", "--sparse=always", image, self.file], check=True)

    def data_partition(self):
        listed = subprocess.run(["sfdisk", "-d", self.file], check=True, capture_output=True, text=True)
        start, size = re.search(r"disk\.img4 : start= *(\d+), size= *(\d+)", listed.stdout).groups()
        return int(start) * SECTOR, int(size) * SECTOR

    def set_options(self, options):
        """Puts a file of options on the data partition, as an operator does."""
        settings = os.path.join(self.work, "options")
        with open(settings, "w", encoding="utf-8") as file:
            file.write(f'RIVO_TERMINAL_OPTIONS="{options}"\n')
        subprocess.run(["debugfs", "-w", "-R", f"write {settings} /settings/rivo-terminal",
                        f"{self.file}?offset={self.data_partition()[0]}"],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def records(self):
        """What the journal has now, a list of (number, kind, tickets, seal), and what is wrong."""
        start, size = self.data_partition()
        data, files = os.path.join(self.work, "data.img"), os.path.join(self.work, "files")
        subprocess.run(["dd", f"if={self.file}", f"of={data}", "bs=1M", "iflag=skip_bytes,count_bytes",
                        f"skip={start}", f"count={size}", "conv=sparse", "status=none"], check=True)
        recovered = subprocess.run(["e2fsck", "-fp", data], stdout=subprocess.PIPE, text=True, check=False)
        wrong = [f"e2fsck {recovered.returncode}: {recovered.stdout}"] if recovered.returncode > 1 else []
        shutil.rmtree(files, ignore_errors=True)
        os.mkdir(files)
        subprocess.run(["debugfs", "-R", f"rdump /rivo-terminal {files}", data], check=False,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.remove(data)
        journals = [os.path.join(at, name) for at, _, names in os.walk(files) for name in names
                    if name.endswith(".journal") and os.path.getsize(os.path.join(at, name)) > 0]
        if not journals:
            return [], wrong
        verified = subprocess.run([self.program, "verify", journals[0]], capture_output=True, text=True,
                                  check=False)
        if verified.returncode != 0:
            wrong.append(f"rivo-journal verify {verified.returncode}: {verified.stdout}{verified.stderr}")
        exported = subprocess.run([self.program, "export", journals[0], "--format", "csv"],
                                  capture_output=True, text=True, check=False)
        return [(row["record"], row["kind"], row["tickets"], row["seal"])
                for row in csv.DictReader(exported.stdout.splitlines())], wrong


class Trial:
    def __init__(self, options, work):
        self.options, self.work = options, work
        self.random = random.Random(options.seed)
        self.disk = Disk(os.path.join(options.folder, "disk.img"), work, options.journal_program)
        self.disk.set_options("--demo --language en")
        self.counts = Counts()
        self.paid = None  # how the words look that say how was paid
        self.records = []
        self.media = options.update or []
        self.started = {}  # how often each slot was started
        self.versions = []  # that counted as good, one after the other
        self.start_time = 60  # seconds until the first frame; then what the last start took
        self.tried = self.confirmed = 0

    def seen(self, board, condition):
        """Whether the place of the words fulfils a condition before long."""
        end = time.monotonic() + ANSWERS_WITHIN
        while time.monotonic() < end:
            if condition(region(board.picture(), PAID)):
                return True
            time.sleep(0.2)
        return False

    def sell(self, board, seconds):
        """Sells one ticket after the other; a cut comes between any two of these steps."""
        end = time.monotonic() + seconds
        # What the last cut left: a basket, which is paid, or the question whether a ticket is out. The
        # first tap may come before the page is ready.
        self.tried += 1
        for place in (CASH, IS_OUT, CASH, IS_OUT):
            board.tap(*place)
            time.sleep(1.5)
        while time.monotonic() < end:
            before = region(board.picture(), PAID)
            board.tap(*TILE)
            if not self.seen(board, lambda now, was=before: now != was) or time.monotonic() > end:
                continue
            ready = region(board.picture(), PAID)
            self.tried += 1
            board.tap(*CASH)
            if self.paid is None:
                self.seen(board, lambda now, was=ready: now != was)
                time.sleep(3)
                self.paid = region(board.picture(), PAID)
            if self.seen(board, lambda now: now == self.paid):
                self.confirmed += 1

    def start(self, medium=None):
        return Board(self.options.folder, self.disk.file, self.work, medium)

    def wait_for_start(self, board):
        is_up = board.wait_for_frame(STARTS_WITHIN)
        if not is_up:
            self.counts.failed += 1
            print(board.log()[-2000:], file=sys.stderr)
        self.start_time = board.uptime()
        return is_up

    def update(self, board):
        """Every second time until a random moment, otherwise until the next start will try the update."""
        if self.random.random() < 0.5:
            time.sleep(self.random.uniform(1, 30))
        else:
            self.wait_until_written(board)

    def wait_until_written(self, board):
        """Whether an update was written: not if it is the version that runs."""
        answer = board.wait_for(r"tried at the next start|the version that runs", WRITES_WITHIN)
        if answer is None:
            self.counts.broken += 1
            print(f"no update was written in {WRITES_WITHIN} s", file=sys.stderr)
        return answer is not None and answer[0].startswith("tried")

    def cut(self, mode):
        """Runs the board until a random moment, and checks what is there then."""
        self.tried = self.confirmed = 0
        medium = self.random.choice(self.media) if mode == "updating" and self.media else None
        board = self.start(medium)
        try:
            if mode == "starting":
                time.sleep(self.random.uniform(2, 1.2 * self.start_time))
            elif self.wait_for_start(board):
                if mode == "updating":
                    self.update(board)
                else:
                    self.sell(board, self.random.uniform(5, 40))
        finally:
            ran = board.uptime()
            board.cut_power()
        self.note_slots(board)
        self.check()
        counts = self.counts
        print(f"{mode} for {ran:.0f} s: {self.confirmed} sales confirmed, {len(self.records)} records; so far "
              f"{counts.lost} lost, {counts.doubled} doubled, {counts.failed} failed, "
              f"{counts.broken} not whole", flush=True)

    def note_slots(self, board):
        for slot in re.findall(r"starting slot (\w)", board.log()):
            self.started[slot] = self.started.get(slot, 0) + 1
        for version in re.findall(r"slot \w is good, version (\S+)", board.log()):
            if self.versions[-1:] != [version]:
                self.versions.append(version)

    def put_back(self):
        """Takes an update over, cuts its three starts short, and expects the version before to come back."""
        for medium in self.media:  # one of them has another version
            board = self.start(medium)
            is_written = self.wait_for_start(board) and self.wait_until_written(board)
            board.cut_power()
            self.note_slots(board)
            if is_written:
                break
        before = self.versions[-1]
        tried = []
        for _ in range(4):
            board = self.start()
            board.wait_for("starting slot", STARTS_WITHIN)
            tried += re.findall(r"starting slot (\w) \((\w+), (\d)", board.log())
            board.cut_power()
        board = self.start()
        is_up = self.wait_for_start(board) and board.wait_for(f"is good, version {before}", STARTS_WITHIN)
        board.cut_power()
        self.note_slots(board)
        print(f"starts after an update: {tried}; then version {self.versions[-1]}, before it {before}")
        self.counts.failed += not (is_up and [left for _, mark, left in tried if mark == "try"] == ["2", "1", "0"])

    def check(self):
        records, wrong = self.disk.records()
        if wrong:
            self.counts.broken += 1
            print("\n".join(wrong), file=sys.stderr)
        kept = records[:len(self.records)]
        gone = [record for record in self.records if record not in kept]
        new = sum(kind == "sale" for _, kind, _, _ in records[len(self.records):])
        self.counts.lost += sum(kind == "sale" for _, kind, _, _ in gone)
        self.counts.lost += max(0, self.confirmed - new)
        self.counts.doubled += max(0, new - self.tried)
        tickets = " ".join(tickets for _, kind, tickets, _ in records if kind == "sale").split()
        self.counts.doubled += len(tickets) - len(set(tickets))
        self.records = records


def judge(trial, cuts):
    counts, sales = trial.counts, sum(kind == "sale" for _, kind, _, _ in trial.records)
    slots = ", ".join(f"{number} starts of slot {slot}" for slot, number in sorted(trial.started.items()))
    print(f"{sales} sales, {counts.broken} times a file system or journal that is not whole; {slots}; "
          f"{max(0, len(trial.versions) - 1)} times another version started")
    print(f"{cuts} power cuts, {counts.lost} sales lost, {counts.doubled} doubled, "
          f"{counts.failed} failed boots")
    return 1 if counts.lost or counts.doubled or counts.failed or counts.broken else 0


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder", help="of the image")
    parser.add_argument("journal_program", help="rivo-journal of this machine")
    parser.add_argument("--update", action="append", metavar="FILE", help="a medium with a version")
    parser.add_argument("--cuts", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as work:
        trial = Trial(options, work)
        for number in range(options.cuts):
            trial.cut(MODES[number % len(MODES)])
            if number == 0 and not trial.records:
                print("No sale was made: the result says nothing.", file=sys.stderr)
                return 1
        board = trial.start()
        try:
            if trial.wait_for_start(board):
                print(f"first frame after {board.uptime():.0f} s")
        finally:
            board.cut_power()
        if options.update:
            trial.put_back()
        return judge(trial, options.cuts)


if __name__ == "__main__":
    sys.exit(main())
