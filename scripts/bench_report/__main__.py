#!/usr/bin/env python3
"""Judges a run of the benchmarks and writes docs/performance.md and docs/performance.svg.

usage: bench_report [--partial] [--smoke] RESULTS

RESULTS is the folder with the JSON files of the run. --partial says that not every operation was
run; the tables are printed then instead of written. --smoke says that the figures mean nothing: no
goal is judged and nothing is written. Exits with 1 when a goal is missed and no reason stands beside
it in bench/goals.json, when a benchmark failed, or when one is missing there.
"""
import argparse
import dataclasses
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


@dataclasses.dataclass
class Group:
    """What was measured of one group of operations, judged."""
    title: str
    rows: list
    growths: list
    facts: list

    def failures(self):
        return ([failure for item in self.rows + self.growths for failure in item.failures] +
                [fact[4] for fact in self.facts if fact[4]])

    def tables(self, subjects):
        parts = [tables.group_table(self.rows, subjects)] if self.rows else []
        parts += [tables.growth_table(self.growths)] if self.growths else []
        parts += [tables.fact_table(self.facts)] if self.facts else []
        return "\n\n".join(parts)


def judged_group(group, goals, results):
    rows, growths = [], []
    for name, operation in goals["operations"].items():
        if operation["group"] != group["id"]:
            continue
        rows += verdicts.rows_of(name, goals, results)
        growth = verdicts.growth_of(name, operation, results)
        growths += [growth] if growth else []
    return Group(group["title"], rows, growths, verdicts.fact_rows(group["id"], goals, results))


def machine_text(results):
    with open("/proc/cpuinfo", encoding="utf-8") as lines:
        models = [line.split(":", 1)[1].strip() for line in lines if line.startswith("model name")]
    text = (f"Machine: {platform.machine()}, {os.cpu_count()} processors "
            f"({models[0] if models else 'of unknown model'}), Linux {platform.release()}, "
            f"glibc {platform.libc_ver()[1]}.")
    spreads = sorted(results.spreads.values())
    if spreads:
        text += (f" Spread: the middle half of an operation's {results.most_repetitions()} repetitions "
                 f"is {_percent(spreads, 0.5)} of their median wide for one half of the "
                 f"operations, and at most {_percent(spreads, 0.9)} for nine in ten.")
    return text


def _percent(ordered, share):
    return f"{100 * ordered[int(share * (len(ordered) - 1))]:.0f} %"


def problems_of(goals, results, groups, options):
    """What makes the run fail, each once."""
    problems = list(results.errors) + _unknown(goals, results)
    if not options.smoke:
        problems += [failure for group in groups.values() for failure in group.failures()]
    if not options.partial:
        problems += _missing(goals, results)
    return list(dict.fromkeys(problems))


def _unknown(goals, results):
    known = set(goals["operations"]) | verdicts.fact_names(goals)
    run = {key.operation for key in results.medians} | set(results.facts)
    return [f"{name}: not in bench/goals.json" for name in sorted(run - known)]


def _missing(goals, results):
    run = {key.operation for key in results.medians if key.subject == verdicts.OURS}
    run |= set(results.left_out)
    return ([f"{name}: was not run" for name in goals["operations"] if name not in run] +
            [f"{name}: was not measured" for name in sorted(verdicts.fact_names(goals))
             if name not in results.facts])


def publish(goals, results, groups, partial):
    """Prints the tables of a partial run; writes the documents of a whole one."""
    parts = {"machine": machine_text(results),
             "peers": tables.subject_table(goals["subjects"], results)}
    parts.update((name, group.tables(goals["subjects"])) for name, group in groups.items())
    if partial:
        print("\n\n".join(part for part in parts.values() if part))
        return
    DOCUMENT.write_text(tables.fill(DOCUMENT.read_text(), parts))
    CHART.write_text(chart.draw([(group.title, group.rows) for group in groups.values()],
                                goals["subjects"]))
    print("wrote docs/performance.md and docs/performance.svg")


def main():
    options = arguments()
    goals = json.loads((ROOT / "bench/goals.json").read_text())
    results = results_module.load(options.results)
    groups = {group["id"]: judged_group(group, goals, results) for group in goals["groups"]}
    if not options.smoke:
        publish(goals, results, groups, options.partial)
    for name, reason in results.left_out.items():
        print(f"bench: {name} is left out: {reason}", file=sys.stderr)
    problems = problems_of(goals, results, groups, options)
    for problem in problems:
        print(f"bench: {problem}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
