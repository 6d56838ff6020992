#!/usr/bin/env python3
"""Sets the results of a benchmark program against goals.

usage: ratios.py GOALS.tsv RESULTS.json...

GOALS.tsv has rows of work, ours, peer, goal and stretch, parted by tabs. Ours and peer name a benchmark, or with
#counter a counter of it; peer "-" sets our amount itself against the goal. A goal "-" only shows the ratio. Times
are CPU nanoseconds divided by the counter "items". Each amount is the median over all repetitions; the second
ratio, of the fastest repetitions, tells how much of the first is noise.
"""

import json
import statistics
import sys

UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def load(paths):
    """All repetitions by benchmark name."""
    runs = {}
    for path in paths:
        with open(path, encoding="utf-8") as file:
            for run in json.load(file)["benchmarks"]:
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


def verdict(value, goal, stretch):
    if goal == "-":
        return ""
    if value > float(goal):
        return "MISSED"
    return "stretch" if stretch != "-" and value <= float(stretch) else "met"


def show(work, ours, peer, goal, stretch, runs):
    """Prints one row; False when the goal is missed or cannot be told."""
    our_amounts = amounts(runs, ours)
    peer_amounts = [1.0] if peer == "-" else amounts(runs, peer)
    if not our_amounts or not peer_amounts:
        print(f"{work:34} {ours:28} {peer:26} {'no result':>44}")
        return False
    our, other = statistics.median(our_amounts), statistics.median(peer_amounts)
    ratio, fastest = our / other, min(our_amounts) / min(peer_amounts)
    result = verdict(ratio, goal, stretch)
    shown = f"{other:9.1f}" if peer != "-" else " " * 9
    print(f"{work:34} {ours:28} {peer:26} {our:9.1f} {shown} {ratio:7.2f} {fastest:7.2f} {goal:>6} {result}")
    return result != "MISSED"


def main(goals, results):
    runs = load(results)
    print(f"{'work':34} {'ours':28} {'peer':26} {'ours':>9} {'peer':>9} {'ratio':>7} {'fastest':>7} {'goal':>6}")
    missed = 0
    with open(goals, encoding="utf-8") as file:
        for line in file:
            if line.strip() and not line.startswith("#"):
                missed += not show(*line.rstrip("\n").split("\t"), runs)
    print(f"{missed} goals missed" if missed else "all goals met")


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2:])
