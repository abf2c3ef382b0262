#!/usr/bin/env python3
"""Compares callgrind's counts of the library's operations with the figures that are kept.

usage: compare-instructions.py [--renew] FOLDER FIGURES

FOLDER has one dump of callgrind for each operation, FIGURES is the JSON file to compare with or, with
--renew, to write. Exits with 1 when an operation needs over a tenth more than its figure, when one
has no figure, or when one has no dump.
"""
import argparse
import json
import pathlib
import re
import sys

TIMES = 1000        # as in count_instructions.cpp
GROWTH = 1.1
LIBRARY = "libzebcomn.so"
OPERATION = re.compile(r"^desc: Trigger: Client Request: (\w+)$", re.MULTILINE)


def parse_dump(text):
    """(name of the operation, instructions inside the library, its calls to the outside)."""
    name = OPERATION.search(text)
    own = calls = 0
    ob = cob = ""
    after_call = False
    for line in text.splitlines():
        if line.startswith("ob="):
            ob = line[3:]
        elif line.startswith("cob="):
            cob = line[4:]
        elif line.startswith("calls="):
            # The call's target is in the caller's object unless a cob= line has said otherwise.
            if LIBRARY in ob and cob and LIBRARY not in cob:
                calls += int(line[6:].split()[0])
            cob = ""
            after_call = True
        elif line[:1].isdigit():
            if LIBRARY in ob and not after_call:
                own += int(line.split()[1])
            after_call = False
    return name and name.group(1), own, calls


def counts_in(folder):
    """The counts of one execution of each operation."""
    counts = {}
    for path in pathlib.Path(folder).glob("counts.*"):
        name, own, calls = parse_dump(path.read_text())
        if name:
            counts[name] = {"instructions": own / TIMES, "calls": calls / TIMES}
    return counts


def compare(counts, figures):
    """Prints a line for each operation; whether all are within their figures."""
    good = True
    print(f"{'operation':24}{'instructions':>14}{'figure':>10}{'calls out':>12}{'figure':>10}")
    for name in sorted(counts.keys() | figures.keys()):
        if name not in counts or name not in figures:
            print(f"{name:24}{'has no ' + ('count' if name not in counts else 'figure'):>46}")
            good = False
            continue
        count, figure = counts[name], figures[name]
        grown = [key for key in figure if count[key] > figure[key] * GROWTH]
        good = good and not grown
        print(f"{name:24}{count['instructions']:14.1f}{figure['instructions']:10.1f}"
              f"{count['calls']:12.2f}{figure['calls']:10.2f}"
              f"{'  MORE ' + ' and '.join(grown) if grown else ''}")
    return good


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--renew", action="store_true")
    parser.add_argument("folder")
    parser.add_argument("figures", type=pathlib.Path)
    options = parser.parse_args()
    counts = counts_in(options.folder)
    if not counts:
        print("compare-instructions: there is no dump of an operation", file=sys.stderr)
        return 1
    if options.renew:
        options.figures.write_text(json.dumps(counts, indent=2, sort_keys=True) + "\n")
        print(f"wrote {options.figures}: {len(counts)} operations")
        return 0
    if compare(counts, json.loads(options.figures.read_text())):
        return 0
    print("compare-instructions: an operation needs more than a tenth more than its figure; if that "
          "is meant, run scripts/check-instructions --renew", file=sys.stderr)
    return 1


if __name__ == "__main__":
    sys.exit(main())
