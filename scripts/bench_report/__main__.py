#!/usr/bin/env python3
"""Judges a run of the benchmarks and writes docs/performance.md and docs/performance.svg.

usage: bench_report [--partial] [--smoke] RESULTS

RESULTS is the folder with the JSON files of the run. --partial says that not every operation was
run; the tables are printed then instead of written. --smoke says that the figures mean nothing: no
goal is judged and nothing is written. Exits with 1 when a goal is missed and no reason stands beside
it in bench/goals.json, when a benchmark failed, or when one is missing there.
"""
import argparse
import json
import os
import pathlib
import platform
import sys

import chart
import results as results_module
import tables
import verdicts

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENT = ROOT / "docs/performance.md"
CHART = ROOT / "docs/performance.svg"


def arguments():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--partial", action="store_true")
    parser.add_argument("--smoke", action="store_true")
    parser.add_argument("results")
    return parser.parse_args()


def group_rows(group, goals, results):
    rows = []
    for name, operation in goals["operations"].items():
        if operation["group"] == group:
            rows += verdicts.rows_of(name, operation, results)
    return rows


def floor_goals(rows, goals):
    """The goal against the floor of each row that has one, by the row's title."""
    found = {}
    for row in rows:
        for goal in goals["operations"][row.operation].get("goals", []):
            if goal["against"] == "floor" and f"≤ {goal['most']:.2f}" in row.goals:
                found[row.title] = goal["most"]
    return found


def machine_text(results):
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        models = [line.split(":", 1)[1].strip() for line in lines if line.startswith("model name")]
    counts = sorted(results.repetitions.values())
    runs = f"{counts[len(counts) // 2]}" if counts else "0"
    return (f"Machine: {platform.machine()}, {os.cpu_count()} processors "
            f"({models[0] if models else 'of unknown model'}), Linux {platform.release()}, "
            f"glibc {platform.libc_ver()[1]}. Repetitions of most operations: {runs}.")


def problems_of(goals, results, rows_by_group, options):
    """What makes the run fail, each once."""
    problems = list(results.errors) + _unknown(goals, results)
    if not options.smoke:
        problems += _missed(goals, results, rows_by_group)
    if not options.partial:
        problems += _missing(goals, results)
    return list(dict.fromkeys(problems))


def _missed(goals, results, rows_by_group):
    missed = [failure for rows in rows_by_group.values() for row in rows for failure in row.failures]
    for group in goals["groups"]:
        missed += [row[4] for row in verdicts.fact_rows(group["id"], goals, results) if row[4]]
    return missed


def _unknown(goals, results):
    return [f"{name}: not in bench/goals.json"
            for name in sorted({key.operation for key in results.medians} | set(results.facts))
            if name not in goals["operations"] and name not in goals["facts"]]


def _missing(goals, results):
    run = {key.operation for key in results.medians if key.subject == verdicts.OURS}
    run |= set(results.left_out)
    return ([f"{name}: was not run" for name in goals["operations"] if name not in run] +
            [f"{name}: was not measured" for name in goals["facts"] if name not in results.facts])


def parts_of(goals, results, rows_by_group):
    """The generated parts of the document, by the names of their markers."""
    parts = {"machine": machine_text(results),
             "peers": tables.subject_table(goals["subjects"], results)}
    for group in goals["groups"]:
        rows = rows_by_group[group["id"]]
        facts = verdicts.fact_rows(group["id"], goals, results)
        written = [tables.group_table(rows, goals["subjects"])] if rows else []
        written += [tables.fact_table(facts)] if facts else []
        parts[group["id"]] = "\n\n".join(written)
    return parts


def publish(goals, results, rows_by_group, partial):
    """Prints the tables of a partial run; writes the documents of a whole one."""
    parts = parts_of(goals, results, rows_by_group)
    if partial:
        print("\n\n".join(part for part in parts.values() if part))
        return
    DOCUMENT.write_text(tables.fill(DOCUMENT.read_text(), parts))
    groups = [(group["title"], rows_by_group[group["id"]],
               floor_goals(rows_by_group[group["id"]], goals)) for group in goals["groups"]]
    CHART.write_text(chart.draw(groups))
    print("wrote docs/performance.md and docs/performance.svg")


def main():
    options = arguments()
    goals = json.loads((ROOT / "bench/goals.json").read_text())
    results = results_module.load(options.results)
    rows = {group["id"]: group_rows(group["id"], goals, results) for group in goals["groups"]}
    if not options.smoke:
        publish(goals, results, rows, options.partial)
    for name, reason in results.left_out.items():
        print(f"bench: {name} is left out: {reason}", file=sys.stderr)
    problems = problems_of(goals, results, rows, options)
    for problem in problems:
        print(f"bench: {problem}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
