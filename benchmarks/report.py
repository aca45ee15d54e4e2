#!/usr/bin/env python3
"""What bench-models measured: judged by the targets, as tables and as plots.

report.py judge RESULT.json...            prints each target, what was measured and the verdict
report.py write FILE DIR RESULT.json...   the same, and writes the tables between the markers of the
                                          Markdown FILE and the plots into DIR

A RESULT.json is what --benchmark_out writes; of all runs of a benchmark, in all of them, the median
counts. The exit code is 1 if a target is missed or if what it is judged by was not measured.
"""

import json
import math
import os
import statistics
import sys
from html import escape

PEERS = {
    "ours": ("GuiCore", "#0b5cad"),
    "standard": ("QStandardItemModel", "#c8321e"),
    "stringlist": ("QStringListModel", "#8a6d00"),
    "proxy": ("QSortFilterProxyModel", "#7b3fa0"),
    "qml": ("QML ListModel", "#1c7f3e"),
    "baseline": ("baseline", "#555555"),
    "refill": ("`clear` and append", "#555555"),
    "object": ("QObject without fields", "#555555"),
}

# Operation, title and what the cost is divided by.
OPERATIONS = {
    "AppendOne": ("Append rows one by one", "row"),
    "AppendBlock": ("Append rows in a block", "row"),
    "InsertFront": ("Insert in front", "row"),
    "ReadRoles": ("Read all 16 roles", "row"),
    "Get": ("`get`", "row"),
    "GetInQml": ("`get` and all values, in QML", "row"),
    "CountByRole": ("`countByRole`", "row"),
    "FindById": ("`findById`", "call"),
    "IndexFromItem": ("`indexFromItem`", "call"),
    "ChangeFirst": ("Change the first row", "change"),
    "ChangeMiddle": ("Change the middle row", "change"),
    "ChangeLast": ("Change the last row", "change"),
    "ChangeAny": ("Change rows in no order", "change"),
    "ChangeNew": ("Change rows the first time", "change"),
    "SortByRoleText": ("`sortByRole`, texts", "row"),
    "SortByRoleNumber": ("`sortByRole`, numbers", "row"),
    "SortRangeByRole": ("`sortRangeByRole`, half the rows", "row"),
    "Sort": ("`sort`", "row"),
    "RemoveOne": ("Remove one row", "row"),
    "RemoveBlock": ("Remove half the rows in a block", "row"),
    "Clear": ("`clear`", "row"),
    "TakeOne": ("Take one row", "row"),
    "TakeBlock": ("Take half the rows in a block", "row"),
    "Destroy": ("Destroy a full model", "row"),
    "FillInView": ("Append a block, GridView attached", "row"),
    "ChangeInView": ("Change a visible row, GridView attached", "change"),
    "ClearInView": ("`clear`, GridView attached", "row"),
}
GRID_OPERATIONS = {
    "GridAddItem": "`addItem`",
    "GridByZone": "layout by zone",
    "GridByZoneInView": "the same, GridView attached",
    "GridByPosition": "layout by position",
    "GridByPositionInView": "the same, GridView attached",
    "GridDuplicates": "duplicate check",
}
SYNC_OPERATIONS = {
    "SyncSame": "nothing is different",
    "SyncChanged": "every tenth row has another price",
    "SyncReplaced": "every tenth row is replaced",
    "SyncShuffled": "all rows in no order",
    "SyncChangedInView": "another price, GridView attached",
    "SyncReplacedInView": "rows replaced, GridView attached",
}
PLOTS = {
    "append-block": ("AppendBlock", "Append rows in a block", "row"),
    "insert-front": ("InsertFront", "Insert a row in front", "row"),
    "read-roles": ("ReadRoles", "Read all 16 roles of a row", "row"),
    "change-middle": ("ChangeMiddle", "Change the middle row, to dataChanged()", "change"),
    "sort-by-role": ("SortByRoleText", "Sort by a role of texts", "row"),
    "remove-block": ("RemoveBlock", "Remove half the rows in a block", "row"),
    "clear": ("Clear", "Remove all rows", "row"),
    "fill-in-view": ("FillInView", "Append a block, GridView attached", "row"),
    "grid-by-zone": ("GridByZone", "Lay out the grid by zone", "product"),
    "grid-by-position": ("GridByPosition", "Lay out the grid by position", "product"),
}

MANY = ("1000", "10000", "100000")


class Missing(Exception):
    """A benchmark that a target needs was not run, or failed."""


class Results:
    """What was measured, by operation, who and size."""

    def __init__(self, documents=()):
        """Of the repetitions in a process the fastest counts, because what disturbs them only adds
        time; of the processes the median."""
        self.context, self.processes, fastest = {}, [], {}
        for document in documents:
            self.context = document["context"]
            process = {}
            for entry in document["benchmarks"]:
                value = entry.get("bytes_per_row", entry.get("per_row"))
                if value is None or entry.get("error_occurred") or entry["run_type"] == "aggregate":
                    continue
                key = self.key(entry["run_name"])
                process[key] = min(value, process.get(key, value))
            self.processes.append(process)
            for key, value in process.items():
                fastest.setdefault(key, []).append(value)
        self.values = {key: statistics.median(values) for key, values in fastest.items()}

    @staticmethod
    def key(name):
        """(operation, who, size), without what the framework appends to a name."""
        parts = [part for part in name.split("/") if ":" not in part and part != "manual_time"]
        return parts[0], parts[1], "/".join(parts[2:])

    def of(self, operation, who, size):
        try:
            return self.values[operation, who, size]
        except KeyError:
            raise Missing(f"{operation}/{who}/{size} was not measured") from None

    def ratio(self, upper, lower):
        """Of two keys: the median of the ratios in each process, where both ran side by side. What slows
        a process down slows both."""
        for key in (upper, lower):
            self.of(*key)
        found = [process[upper] / process[lower]
                 for process in self.processes if upper in process and lower in process]
        if not found:
            raise Missing(f"{'/'.join(upper)} and {'/'.join(lower)} were not measured in one process")
        return statistics.median(found)

    def who(self, operation):
        return [peer for peer in PEERS if any(key[:2] == (operation, peer) for key in self.values)]

    def sizes(self, operation):
        sizes = {size for name, _, size in self.values if name == operation}
        return sorted(sizes, key=lambda size: int(size.split("/")[0]))


class Target:
    """A bound of the worst of several ratios: `at_most`, or at least."""

    def __init__(self, text, bound, at_most, ratios):
        self.text, self.bound, self.at_most, self.ratios = text, bound, at_most, ratios

    def judge(self, results):
        """(measured, where, met); raises Missing."""
        found = [(ratio(results), where) for where, ratio in self.ratios]
        measured, where = (max if self.at_most else min)(found)
        return measured, where, measured <= self.bound if self.at_most else measured >= self.bound

    def bound_text(self):
        return f"{'at most' if self.at_most else 'at least'} {self.bound:g}"


def ratios(text, bound, operation, sizes, who):
    return Target(text, bound, True, [
        (f"{operation}/{size}",
         lambda results, size=size: results.ratio((operation, "ours", size), (operation, who, size)))
        for size in sizes])


def to_baseline(text, bound, operation, sizes):
    return ratios(f"{text}, to the baseline", bound, operation, sizes, "baseline")


def growth(text, bound, operation, small, large):
    return Target(f"{text}, growth of the cost per row", bound, True, [
        (f"{operation}, {small} to {large}",
         lambda results: results.ratio((operation, "ours", large), (operation, "ours", small)))])


# What has a baseline: it does the same work by the same contract. A cost per row may double for a
# hundred times the rows, which no longer fit into the processor's caches. To remove a block from the
# middle is quadratic in QObject's list of children, and has no such bound.
WITH_BASELINE = [operation for operation in OPERATIONS
                 if operation != "GetInQml" and not operation.endswith("InView")]
TARGETS = [to_baseline(OPERATIONS[operation][0], 1.15, operation, MANY) for operation in WITH_BASELINE] + [
    to_baseline("Memory per row", 1.15, "Memory", ["10000"]),
    to_baseline("`addItem`", 1.15, "GridAddItem", MANY),
    to_baseline("Duplicate check", 1.15, "GridDuplicates", MANY),
    to_baseline("Layout by zone", 1.6, "GridByZone", ["1000/20"]),
    to_baseline("Layout by position", 1.6, "GridByPosition", ["1000/20"]),
    growth("Append rows in a block", 2, "AppendBlock", "1000", "100000"),
    growth("Read all 16 roles", 2, "ReadRoles", "1000", "100000"),
    growth("`clear`", 2, "Clear", "1000", "100000"),
    growth("Layout by zone", 1.3, "GridByZone", "1000/20", "100000/2000"),
    growth("Layout by position", 1.3, "GridByPosition", "1000/20", "100000/2000"),
] + [
    # A change searches its row: with more rows, to make them all anew costs less than many changes.
    ratios(f"RowSync, {SYNC_OPERATIONS[operation]}, to `clear` and append", bound, operation, sizes, "refill")
    for operation, bound, sizes in [
        ("SyncSame", 0.4, ("100", "1000", "10000")),
        ("SyncChanged", 0.5, ("100", "1000")),
        ("SyncReplaced", 0.6, ("100", "1000")),
        ("SyncChangedInView", 0.5, ("100", "1000")),
    ]
]


def ratio_text(ratio):
    return f"{ratio:.2f}" if ratio >= 0.1 else f"{ratio:.2g}"


def judged(results):
    """Rows of (target, measured, where, verdict), and whether all are met."""
    rows, all_met = [], True
    for target in TARGETS:
        try:
            measured, where, met = target.judge(results)
            rows.append((target, ratio_text(measured), where, "met" if met else "missed"))
        except Missing as missing:
            met = False
            rows.append((target, "-", str(missing), "missed"))
        all_met = all_met and met
    return rows, all_met


def print_judgement(rows):
    for target, measured, where, verdict in rows:
        print(f"{verdict:6}  {measured:>7}  {target.bound_text():<13}  {target.text} ({where})")


# Tables


def time_text(seconds):
    for unit, scale in (("ns", 1e-9), ("µs", 1e-6), ("ms", 1e-3), ("s", 1)):
        value = seconds / scale
        if value < 999.5 or unit == "s":
            return f"{value:.0f} {unit}" if value >= 99.5 else f"{value:.3g} {unit}"
    return ""


def thousands(size):
    return " / ".join(f"{int(number):,}" for number in size.split("/"))


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|---" * len(header) + "|"]
    return lines + ["| " + " | ".join(row) + " |" for row in rows]


def cell(results, operation, who, size, text=time_text):
    value = results.values.get((operation, who, size))
    return "" if value is None else text(value)


def machine(context):
    parts = [context.get("processor", ""), f"{context.get('num_cpus', '?')} processors",
             context.get("system", ""), "Qt " + context.get("qt", "?"), context.get("compiler", "")]
    if context.get("load_avg"):
        parts.append(f"load average at the start {context['load_avg'][0]:.1f}")
    return ", ".join(part for part in parts if part)


def tables(results, rows, images):
    peers = ["ours", "baseline", "standard", "stringlist", "proxy", "qml"]
    names = [PEERS[peer][0] for peer in peers]
    out = [f"Measured on {machine(results.context)}.", ""]
    out += table(["Target", "Bound", "Measured", "Worst at", ""],
                 [[target.text, target.bound_text(), measured, where, verdict]
                  for target, measured, where, verdict in rows])
    for size in ("10000", "100000"):
        out += ["", f"With {thousands(size)} rows:", ""]
        out += table(["Cost"] + names,
                     [[f"{title}, per {unit}"] + [cell(results, operation, peer, size) for peer in peers]
                      for operation, (title, unit) in OPERATIONS.items()
                      if (operation, "ours", size) in results.values])
    out += ["", "Memory of a row in a model of 10,000:", ""]
    in_memory = [peer for peer in PEERS if ("Memory", peer, "10000") in results.values]
    out += table([""] + [PEERS[peer][0] for peer in in_memory],
                 [["bytes"] + [cell(results, "Memory", peer, "10000", "{:.0f}".format)
                               for peer in in_memory]])
    out += ["", "The grid, per product. The baseline of a layout sorts the same records once and appends"
            " a tile for each:", ""]
    grid_rows = []
    for operation, title in GRID_OPERATIONS.items():
        for size in results.sizes(operation):
            grid_rows.append([title, thousands(size)] + [cell(results, operation, who, size)
                                                         for who in ("ours", "baseline")])
    out += table(["", "Products / zones", "GuiCore", "baseline"], grid_rows)
    out += ["", "A model brought to a list of records, per row:", ""]
    out += table(["", "Rows", "RowSync", "`clear` and append"],
                 [[title, thousands(size)] + [cell(results, operation, who, size)
                                              for who in ("ours", "refill")]
                  for operation, title in SYNC_OPERATIONS.items() for size in results.sizes(operation)])
    out += [""]
    for name, (operation, title, unit) in PLOTS.items():
        if results.who(operation):
            out += [f"![{title}: time per {unit}]({images}/{name}.svg)", ""]
    return "\n".join(out)


def replace_tables(path, text):
    begin, end = "<!-- benchmarks: begin -->", "<!-- benchmarks: end -->"
    with open(path, encoding="utf-8") as file:
        document = file.read()
    if document.count(begin) != 1 or document.count(end) != 1:
        sys.exit(f"{path} has no place for the tables")
    before, rest = document.split(begin)
    after = rest.split(end)[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{begin}\n\n{text}\n{end}{after}")


# Plots

WIDTH, HEIGHT = 720, 420
LEFT, RIGHT, TOP, BOTTOM = 76, 190, 44, 52
MARKERS = {
    "ours": "<circle cx='{x}' cy='{y}' r='4.5'/>",
    "standard": "<rect x='{l}' y='{t}' width='8' height='8'/>",
    "stringlist": "<path d='M{x} {t}l4.6 8h-9.2z'/>",
    "proxy": "<path d='M{x} {t}l4.5 4.5-4.5 4.5-4.5-4.5z'/>",
    "qml": "<path d='M{x} {b}l4.6-8h-9.2z'/>",
    "baseline": "<circle cx='{x}' cy='{y}' r='3.5' fill='#ffffff'/>",
}


class Axis:
    """Logarithmic, over whole decades or to the nearest step of 1, 2, 5."""

    def __init__(self, values, start, end):
        self.low, self.high = self.step(min(values), math.floor), self.step(max(values), math.ceil)
        if self.low == self.high:
            self.high *= 10
        self.start, self.end = start, end

    @staticmethod
    def step(value, rounded):
        decade = 10.0 ** math.floor(math.log10(value) + 1e-9)
        steps = [1, 2, 5, 10]
        if rounded is math.floor:
            return decade * max(step for step in steps if step <= value / decade * (1 + 1e-9))
        return decade * min(step for step in steps if step >= value / decade * (1 - 1e-9))

    def at(self, value):
        part = math.log(value / self.low) / math.log(self.high / self.low)
        return self.start + part * (self.end - self.start)

    def ticks(self, steps):
        first, last = math.floor(math.log10(self.low) + 1e-9), math.ceil(math.log10(self.high))
        values = [step * 10.0 ** decade for decade in range(first, last + 1) for step in steps]
        return [value for value in values if self.low * 0.999 <= value <= self.high * 1.001]


def marker(who, x, y):
    shape = MARKERS[who].format(x=f"{x:.1f}", y=f"{y:.1f}", l=f"{x - 4:.1f}", t=f"{y - 4.5:.1f}",
                                b=f"{y + 4.5:.1f}")
    return f"<g fill='{PEERS[who][1]}' stroke='{PEERS[who][1]}' stroke-width='1.5'>{shape}</g>"


def plot(results, operation, title, unit):
    series = {}
    for who in results.who(operation):
        series[who] = [(int(size.split("/")[0]), results.values[operation, who, size])
                       for size in results.sizes(operation) if (operation, who, size) in results.values]
    points = [point for line in series.values() for point in line]
    across = Axis([x for x, _ in points], LEFT, WIDTH - RIGHT)
    up = Axis([y for _, y in points], HEIGHT - BOTTOM, TOP)
    out = [f"<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 {WIDTH} {HEIGHT}' width='{WIDTH}' "
           f"height='{HEIGHT}' font-family='DejaVu Sans, Verdana, sans-serif' font-size='12'>",
           f"<title>{escape(title)}</title>",
           f"<rect width='{WIDTH}' height='{HEIGHT}' fill='#ffffff'/>",
           f"<text x='{LEFT}' y='24' font-size='15' font-weight='bold'>{escape(title)}</text>"]
    decades = up.high / up.low > 1000
    for value in up.ticks([1] if decades else [1, 2, 5]):
        y = up.at(value)
        out.append(f"<path d='M{LEFT} {y:.1f}H{WIDTH - RIGHT}' stroke='#dddddd'/>")
        out.append(f"<text x='{LEFT - 8}' y='{y + 4:.1f}' text-anchor='end'>{time_text(value)}</text>")
    for value in across.ticks([1]):
        x = across.at(value)
        out.append(f"<path d='M{x:.1f} {TOP}V{HEIGHT - BOTTOM}' stroke='#dddddd'/>")
        out.append(f"<text x='{x:.1f}' y='{HEIGHT - BOTTOM + 18}' text-anchor='middle'>{value:,.0f}</text>")
    out.append(f"<path d='M{LEFT} {TOP}V{HEIGHT - BOTTOM}H{WIDTH - RIGHT}' fill='none' stroke='#000000'/>")
    rows = "products" if operation.startswith("Grid") else "rows of the model"
    out.append(f"<text x='{(LEFT + WIDTH - RIGHT) / 2:.0f}' y='{HEIGHT - 12}' text-anchor='middle'>"
               f"{rows}</text>")
    middle = (TOP + HEIGHT - BOTTOM) / 2
    out.append(f"<text transform='translate(18 {middle:.0f}) rotate(-90)' text-anchor='middle'>"
               f"time per {unit}</text>")
    for who, line in series.items():
        places = [(across.at(x), up.at(y)) for x, y in line]
        path = "M" + "L".join(f"{x:.1f} {y:.1f}" for x, y in places)
        width, dashes = (3, "") if who == "ours" else (1.5, " stroke-dasharray='5 4'" if who == "baseline" else "")
        out.append(f"<path d='{path}' fill='none' stroke='{PEERS[who][1]}' stroke-width='{width}'{dashes}/>")
        out += [marker(who, x, y) for x, y in places]
    # The names in the order in which the lines end, from above.
    order = sorted(series, key=lambda who: -series[who][-1][1])
    for place, who in enumerate(order):
        y = TOP + 12 + 22 * place
        out.append(marker(who, WIDTH - RIGHT + 18, y))
        out.append(f"<text x='{WIDTH - RIGHT + 30}' y='{y + 4}' fill='{PEERS[who][1]}'>"
                   f"{escape(PEERS[who][0])}</text>")
    return "\n".join(out + ["</svg>", ""])


def draw(results, folder):
    os.makedirs(folder, exist_ok=True)
    for name, (operation, title, unit) in PLOTS.items():
        if results.who(operation):
            with open(os.path.join(folder, name + ".svg"), "w", encoding="utf-8") as file:
                file.write(plot(results, operation, title, unit))


def read(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def main(arguments):
    if len(arguments) >= 2 and arguments[0] == "judge":
        places, paths = None, arguments[1:]
    elif len(arguments) >= 4 and arguments[0] == "write":
        places, paths = arguments[1:3], arguments[3:]
    else:
        sys.exit(__doc__)
    results = Results(read(path) for path in paths)
    rows, all_met = judged(results)
    if places:
        document, folder = places
        draw(results, folder)
        replace_tables(document, tables(results, rows, os.path.relpath(folder, os.path.dirname(document))))
    print_judgement(rows)
    return 0 if all_met else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
