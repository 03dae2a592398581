#!/usr/bin/env python3
"""Prints, for every case of the benchmark programs, the library's time divided by the best peer's.

Reads the JSON files that the programs wrote. A case is named "group|subject"; a subject that
begins with "floor" is no peer but what the behaviour itself costs, and is shown apart.
"""

import json
import os
import sys


def read(paths):
    groups = {}
    for path in filter(os.path.getsize, paths):  # empty: the filter left no case
        with open(path, encoding="utf-8") as file:
            for run in json.load(file)["benchmarks"]:
                if run.get("aggregate_name", "median") != "median":
                    continue
                group, subject = run["run_name"].split("|")
                groups.setdefault(group, {})[subject] = run["real_time"]
    return groups


def row(group, times):
    ours = times.pop("qorutils")
    floors = [times.pop(name) for name in list(times) if name.startswith("floor")]
    peer = min(times, key=times.get, default=None)
    columns = [f"{group:44}", f"{ours:12.1f}"]
    columns += [f"{times[peer]:12.1f}  {peer:20}", f"{ours / times[peer]:6.2f}"] if peer else ["-"]
    if floors:
        columns.append(f"  {ours / min(floors):6.2f} of the floor")
    return " ".join(columns)


def main():
    print(f"{'case':44} {'qorutils ns':>12} {'best peer ns':>12}  {'who':20} {'ratio':>6}")
    for group, times in sorted(read(sys.argv[1:]).items()):
        print(row(group, times))


if __name__ == "__main__":
    main()
