#!/usr/bin/env python3
"""Sets the results of benchmark programs against goals.

usage: ratios.py FAMILY...          prints a table for each family
       ratios.py --write FAMILY...  writes them to bench/RESULTS.md, and the headline rows into README.md

A family is a folder of bench/ with goals.tsv: rows of work, ours, peer, goal and stretch, parted by tabs; a sixth
column "headline" brings a row into README.md. Ours and peer name a benchmark of build/bench/bench/FAMILY.json, or with
#counter a counter of it; peer "-" sets our amount itself against the goal. A goal "-" only shows the ratio. Times
are CPU nanoseconds divided by the counter "items". Each amount is the median over all repetitions; the second
ratio, of the fastest repetitions, tells how much of the first is noise.
"""

import datetime
import json
import pathlib
import platform
import re
import statistics
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def load(family):
    """All repetitions by benchmark name."""
    runs = {}
    text = (ROOT / f"build/bench/bench/{family}.json").read_text(encoding="utf-8")
    for run in json.loads(text)["benchmarks"]:
        if run["run_type"] == "iteration":
            runs.setdefault(run["run_name"], []).append(run)
    return runs


def amounts(runs, name):
    """The repetitions of "benchmark" or "benchmark#counter", empty when one of them failed."""
    name, _, counter = name.partition("#")
    found = runs.get(name, [])
    if any(run.get("error_occurred") for run in found):
        return []
    if counter:
        return [run[counter] / run.get("items", 1) for run in found]
    return [run["cpu_time"] * UNITS[run["time_unit"]] / run.get("items", 1) for run in found]


def shown(amount, counter):
    """An amount with its unit: of a time, or of the counter that it comes from."""
    if counter == "bytes":
        return f"{amount:.0f} B"
    if counter and not counter.endswith("_ns"):
        return f"{amount:.2f}"
    for unit in ("ns", "µs", "ms"):
        if amount < 1000:
            return f"{amount:.3g} {unit}" if amount < 100 else f"{amount:.0f} {unit}"
        amount /= 1000
    return f"{amount:.3g} s"


def short(ratio):
    return f"{ratio:.2f}" if ratio >= 0.1 else f"{ratio:.1g}"


def peer_of(ours, peer):
    """What tells the peer's benchmark from ours."""
    own = ours.partition("#")[0].split("/")
    return " ".join(part for part in peer.partition("#")[0].split("/") if part not in own)


class Row:
    def __init__(self, runs, work, ours, peer, goal, stretch, headline=""):
        self.work = work
        self.headline = headline == "headline"
        self.is_own = "hbx" in peer  # set against another work of ours
        self.peer = "" if peer == "-" else ("our " if self.is_own else "") + peer_of(ours, peer)
        self.goal = None if goal == "-" else float(goal)
        self.stretch = None if stretch == "-" else float(stretch)
        ours_all, peer_all = amounts(runs, ours), [1.0] if peer == "-" else amounts(runs, peer)
        self.known = bool(ours_all and peer_all)
        if not self.known:
            return
        self.counter = ours.partition("#")[2]
        self.ours, self.other = statistics.median(ours_all), statistics.median(peer_all)
        self.ratio = self.ours / self.other
        self.fastest = min(ours_all) / min(peer_all)

    def verdict(self):
        if not self.known:
            return "no result"
        if self.goal is None:
            return ""
        if self.ratio > self.goal:
            return "missed"
        return "stretch" if self.stretch is not None and self.ratio <= self.stretch else "met"

    def cells(self):
        goal = "" if self.goal is None else shown(self.goal, self.counter) if not self.peer else f"{self.goal:g}"
        if not self.known:
            return [self.work, "", self.peer, "", "", "", goal, self.verdict()]
        other = shown(self.other, self.counter) if self.peer else ""
        ratios = [short(self.ratio), short(self.fastest)] if self.peer else ["", ""]
        return [self.work, shown(self.ours, self.counter), self.peer, other, *ratios, goal, self.verdict()]


HEADS = ["Work", "Ours", "Peer", "Peer's", "Ratio", "Fastest", "Goal", ""]


def read_rows(family):
    runs = load(family)
    with open(ROOT / f"bench/{family}/goals.tsv", encoding="utf-8") as file:
        return [Row(runs, *line.rstrip("\n").split("\t")) for line in file if line.strip() and line[0] != "#"]


def show(family):
    rows = read_rows(family)
    lines = [HEADS] + [row.cells() for row in rows]
    widths = [max(len(line[i]) for line in lines) for i in range(len(HEADS))]
    for line in lines:
        print("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip())
    missed = sum(row.verdict() in ("missed", "no result") for row in rows)
    print(f"{missed} goals missed" if missed else "all goals met")


def markdown(lines):
    head = ["| " + " | ".join(HEADS) + " |", "|---|---:|---|---:|---:|---:|---:|---|"]
    return "\n".join(head + ["| " + " | ".join(cells) + " |" for cells in lines]) + "\n"


def machine():
    model = re.search(r"model name\s*:\s*(.*)", pathlib.Path("/proc/cpuinfo").read_text())
    cores = subprocess.run(["nproc"], capture_output=True, text=True, check=True).stdout.strip()
    compiler = subprocess.run(["c++", "--version"], capture_output=True, text=True, check=True).stdout.splitlines()[0]
    return f"{model[1] if model else platform.machine()}, {cores} cores, Linux {platform.release()}, {compiler}"


def behind(tables):
    """Where a peer is faster or smaller, goal or not; only what the numbers say for certain."""
    rows = [row for rows in tables.values() for row in rows]
    slower = [row for row in rows if row.known and row.peer and not row.is_own and min(row.ratio, row.fastest) > 1.05]
    lines = [f"- {row.work}: {row.ratio:.2f} times {row.peer}" for row in sorted(slower, key=lambda r: -r.ratio)]
    return "\n".join(lines) + "\n" if lines else "Nowhere.\n"


def write(families):
    tables = {family: read_rows(family) for family in families}
    text = "# Benchmark results\n\n"
    text += f"{datetime.date.today()}, `./dev bench` on {machine()}. Times are CPU time of one item, medians of all "
    text += "repetitions; Ratio is ours to the peer's, Fastest that of the fastest repetitions. Below 1 we are ahead.\n"
    for family, rows in tables.items():
        text += f"\n## {family}\n\n" + markdown([row.cells() for row in rows])
    text += "\n## Where a peer is ahead\n\n" + behind(tables)
    (ROOT / "bench/RESULTS.md").write_text(text, encoding="utf-8")
    named = [(family, row.cells()) for family, rows in tables.items() for row in rows if row.headline]
    headlines = markdown([[f"{family}: {cells[0]}", *cells[1:]] for family, cells in named])
    readme = ROOT / "README.md"
    begin, end = "<!-- written by ./dev bench -->\n", "<!-- end -->"
    before, rest = readme.read_text(encoding="utf-8").split(begin)
    readme.write_text(before + begin + headlines + end + rest.partition(end)[2], encoding="utf-8")


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    if sys.argv[1] == "--write":
        write(sys.argv[2:])
    else:
        for name in sys.argv[1:]:
            show(name)
