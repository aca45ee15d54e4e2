#!/usr/bin/env python3
"""Makes seeds of the fuzzers "gtfs" and "zip" from generated feeds: make_seeds.py FOLDER [COUNT]

Writes FOLDER/gtfs/N, a feed as one text with a line "=== NAME" before each file, and FOLDER/zip/N, the same as an
archive without compression, so that a changed byte is a changed text.
"""

import io
import pathlib
import sys
import tempfile
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "feed" / "offers"))
import feed_generator  # noqa: E402


def files_of(seed):
    """The files of a generated feed: names and bytes."""
    with tempfile.TemporaryDirectory() as folder:
        feed_generator.make_feed(seed).write(folder)
        return [(path.name, path.read_bytes()) for path in sorted(pathlib.Path(folder).iterdir())]


def archive_of(files):
    memory = io.BytesIO()
    with zipfile.ZipFile(memory, "w", zipfile.ZIP_STORED) as archive:
        for name, content in files:
            archive.writestr(zipfile.ZipInfo(name), content)
    return memory.getvalue()


def main(folder, count="40"):
    for form in ("gtfs", "zip"):
        pathlib.Path(folder, form).mkdir(parents=True, exist_ok=True)
    for seed in range(1, int(count) + 1):
        files = files_of(seed)
        text = b"".join(b"=== " + name.encode() + b"\n" + content.rstrip(b"\n") + b"\n" for name, content in files)
        pathlib.Path(folder, "gtfs", str(seed)).write_bytes(text)
        pathlib.Path(folder, "zip", str(seed)).write_bytes(archive_of(files))


if __name__ == "__main__":
    main(*sys.argv[1:])
