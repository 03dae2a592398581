#!/usr/bin/env python3
"""Prints what the library costs a device: its size, its relocations, what it needs, its start.

The library is a stripped one, with a program that starts with it and one that loads the same
libraries but this. The exit status is 1 when it takes more than a small device should have to give.
"""

import argparse
import collections
import os
import re
import statistics
import subprocess
import sys

MOST_START = 1.2  # times the program without the library
ROUNDS = 1000
PAGE = 4096
ALLOWED = re.compile(
    r"lib(boost_(filesystem|system|thread)|stdc\+\+|gcc_s|m|c)\.so\.[0-9.]+|ld-linux.*\.so\.[0-9]+")


def output(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def kib(path):
    return os.path.getsize(os.path.realpath(path)) / 1024


def needs(path):
    return re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-dW", path))


def relocations(path):
    counts = dict.fromkeys(("relative", "symbolic", "jump slots"), 0)
    for kind in re.findall(r"\bR_\w+", output("readelf", "-rW", path)):
        counts["relative" if kind.endswith("_RELATIVE") else
               "jump slots" if kind.endswith("_JUMP_SLOT") else "symbolic"] += 1
    return counts


def written_pages(path):
    """Filled in by the loader or changed by the library, so that each process has its own."""
    pages = 0
    for line in output("readelf", "-lW", path).splitlines():
        match = re.fullmatch(r" *LOAD +\S+ (\S+) \S+ \S+ (\S+) RW.*", line)
        if match:
            begin, size = (int(number, 16) for number in match.groups())
            pages += (begin + size - 1) // PAGE - begin // PAGE + 1
    return pages


def instructions(emulator, program):
    """Those of a whole run: with one in each block and no blocks chained, each makes a line."""
    command = [*emulator, "-singlestep", "-d", "exec,nochain", "-D", "/dev/stdout", program]
    with subprocess.Popen(command, stdout=subprocess.PIPE) as run:
        count = sum(line.startswith(b"Trace ") for line in run.stdout)
    if run.returncode:
        sys.exit(f"{program} ends with {run.returncode}")
    return count


def report_emulated(emulator, program, without):
    ours, floor = instructions(emulator, program), instructions(emulator, without)
    print(f"  instructions     {ours:10} beside {floor:8} {ours / floor:6.2f}"
          "   the emulator's count: those of the kernel are not in it")
    return [ours / floor]


def report_launched(launcher, program, without):
    starts = collections.defaultdict(list)
    for line in output(launcher, str(ROUNDS), program, without).splitlines():
        name, *costs = line.rsplit(maxsplit=3)
        starts[name].append([int(cost) for cost in costs])

    ratios = []
    for what, *both in zip(("wall clock, us", "processor, us", "page faults"),
                           zip(*starts[program]), zip(*starts[without])):
        ours, floor = (statistics.quantiles(costs, n=4) for costs in both)
        ratios.append(ours[1] / floor[1])
        print(f"  {what:16} {ours[1]:10.0f} beside {floor[1]:8.0f} {ratios[-1]:6.2f}"
              f"   middle half {ours[0]:.0f}..{ours[2]:.0f} beside {floor[0]:.0f}..{floor[2]:.0f}")
    return ratios[1:]  # the clock runs on while the machine does something else


def report_file(options):
    print(f"stripped, KiB      {kib(options.library):10.1f}")
    for peer in options.peers:
        print(f"  {os.path.basename(peer):16} {kib(peer):10.1f}")
    print("relocations")
    for kind, count in relocations(options.library).items():
        print(f"  {kind:16} {count:10}")
    print(f"writable pages     {written_pages(options.library):10}")
    print("needs " + " ".join(needs(options.library)))


def complaints(options, ratios):
    needed = needs(options.library)
    for name in needed:
        if not ALLOWED.fullmatch(name):
            yield f"needs {name}"
    loaded = {name for name in needed if not name.startswith("ld-")}
    for name in loaded ^ set(needs(options.without)):
        yield f"compared with a program that differs in {name}, too"
    if kib(options.library) > options.most_kib:
        yield f"larger than {options.most_kib} KiB"
    if max(ratios) > MOST_START:
        yield f"makes a start {max(ratios):.2f} times as long, more than {MOST_START}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("library")
    parser.add_argument("program")
    parser.add_argument("without")
    parser.add_argument("--most-kib", type=int, default=sys.maxsize)
    parser.add_argument("--peers", nargs="*", default=[], help="libraries to compare sizes with")
    runner = parser.add_mutually_exclusive_group(required=True)
    runner.add_argument("--launcher", help="for programs of this machine")
    runner.add_argument("--emulator", nargs=argparse.REMAINDER, help="for those of another")
    options = parser.parse_args()

    report_file(options)
    print(f"a start, beside one without the library: at most {MOST_START}")
    start_report = report_emulated if options.emulator else report_launched
    ratios = start_report(options.emulator or options.launcher, options.program, options.without)

    found = list(complaints(options, ratios))
    for complaint in found:
        print(f"{options.library}: {complaint}", file=sys.stderr)
    sys.exit(bool(found))


if __name__ == "__main__":
    main()
