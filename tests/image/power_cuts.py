"""Cuts the power of an emulated board at random moments: while it starts, updates and sells.

After each cut the data partition is copied and its file system recovered, as the next start does it;
rivo-journal checks the journal, and the tickets are counted. A sale counts as confirmed when the
picture of the basket is the one of an empty basket again after the payment.
"""
import argparse
import os
import random
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import time

from board import Board

# Shares of the screen of 1024 x 600. The first tile, and the buttons of a payment.
TILE = (0.10, 0.25)
PAY = (0.85, 0.92)
EXACT = (0.80, 0.75)
BASKET = (0.70, 0.10, 1.00, 0.95)
STARTS_WITHIN = 300 # seconds
SECTOR = 512


def region(picture, box):
    width, height, pixels = picture
    left, right = int(box[0] * width) * 3, int(box[2] * width) * 3
    return b"".join(pixels[y * width * 3 + left:y * width * 3 + right]
                    for y in range(int(box[1] * height), int(box[3] * height)))


class Trial:
    def __init__(self, folder, work, seed):
        self.folder, self.work = folder, work
        self.random = random.Random(seed)
        self.disk = os.path.join(work, "disk.img")
        subprocess.run(["cp", "--sparse=always", os.path.join(folder, "disk.img"), self.disk], check=True)
        self.tried = self.confirmed = 0
        self.lost = self.doubled = self.failed = self.broken = 0

    def partition(self, number):
        """First byte and bytes of a partition."""
        listed = subprocess.run(["sfdisk", "-d", self.disk], check=True, capture_output=True, text=True)
        for line in listed.stdout.splitlines():
            if line.startswith(f"{self.disk}{number} "):
                words = line.replace(",", " ").replace("=", " ").split()
                return (int(words[words.index("start") + 1]) * SECTOR,
                        int(words[words.index("size") + 1]) * SECTOR)
        raise ValueError("no such partition")

    def journal(self):
        """A copy of the journal's files as the next start finds them, or None."""
        start, size = self.partition(4)
        data, files = os.path.join(self.work, "data.img"), os.path.join(self.work, "files")
        subprocess.run(["dd", f"if={self.disk}", f"of={data}", "bs=1M", "iflag=skip_bytes,count_bytes",
                        f"skip={start}", f"count={size}", "conv=sparse", "status=none"], check=True)
        subprocess.run(["e2fsck", "-fp", data], stdout=subprocess.DEVNULL, check=False)
        shutil.rmtree(files, ignore_errors=True)
        os.mkdir(files)
        subprocess.run(["debugfs", "-R", f"rdump /rivo-terminal {files}", data], check=False,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.remove(data)
        found = [os.path.join(at, name) for at, _, names in os.walk(files) for name in names
                 if name.endswith(".journal")]
        return found[0] if found else None

    def check(self):
        """Compares the journal with what the screen confirmed and with what was tried."""
        journal = self.journal()
        if journal is None:
            self.lost += self.confirmed
            return
        root = os.path.join(self.folder, "root")
        verified = subprocess.run(
            ["qemu-arm", "-L", root, os.path.join(root, "usr/bin/rivo-journal"), "verify", journal],
            capture_output=True, text=True, check=False)
        if verified.returncode != 0:
            self.broken += 1
            print(verified.stdout, verified.stderr, file=sys.stderr)
        database = sqlite3.connect(journal)
        sales = database.execute("SELECT COUNT(*) FROM sale").fetchone()[0]
        database.close()
        self.lost += max(0, self.confirmed - sales)
        self.doubled += max(0, sales - self.tried)
        # A sale between payment and picture may be there or not: what is there now stays.
        self.confirmed = self.tried = sales

    def sell(self, board, empty, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            board.tap(*TILE)
            time.sleep(0.5)
            board.tap(*PAY)
            time.sleep(0.5)
            self.tried += 1
            board.tap(*EXACT)
            while time.monotonic() < end:
                if region(board.picture(), BASKET) == empty:
                    self.confirmed += 1
                    break
                time.sleep(0.2)

    def cut(self, number):
        selling = number % 2 == 0
        medium = os.path.join(self.folder, "update.img") if not selling else None
        board = Board(self.folder, self.disk, self.work, medium)
        try:
            if selling:
                if board.wait_for_frame(STARTS_WITHIN):
                    self.sell(board, region(board.picture(), BASKET), self.random.uniform(5, 30))
                else:
                    self.failed += 1
            else:
                time.sleep(self.random.uniform(1, 60))
        finally:
            board.cut_power()
        self.check()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("folder")
    parser.add_argument("--cuts", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as work:
        trial = Trial(options.folder, work, options.seed)
        for number in range(options.cuts):
            trial.cut(number)
        board = Board(options.folder, trial.disk, work)
        try:
            if board.wait_for_frame(STARTS_WITHIN):
                print(f"first frame after {board.uptime():.0f} s")
            else:
                trial.failed += 1
        finally:
            board.cut_power()
        if not trial.confirmed:
            print("No sale was made: the result says nothing.", file=sys.stderr)
            return 1
        print(f"{trial.broken} journals not whole, {trial.confirmed} sales")
        print(f"{options.cuts} power cuts, {trial.lost} sales lost, {trial.doubled} doubled, "
              f"{trial.failed} failed boots")
        return 1 if trial.lost or trial.doubled or trial.failed or trial.broken else 0


sys.exit(main())
