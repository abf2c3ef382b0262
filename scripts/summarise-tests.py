#!/usr/bin/env python3
"""Counts the test cases of each target and prints a line for each.

usage: summarise-tests.py TARGET...

Reads build/TARGET/test-results: what ctest wrote of its entries, and what each test program wrote of
its cases. An entry that left no list of cases counts as one case. Exits with 1 when a case failed, or
when a target has no result at all.
"""
import collections
import pathlib
import re
import sys
import xml.etree.ElementTree as ET


def reason_of(skipped):
    """The message of a skip; GoogleTest puts the place where it stands into the first line."""
    text = "" if skipped is None else skipped.get("message") or skipped.text or ""
    lines = [line.strip() for line in text.splitlines() if line.strip()]
    if len(lines) > 1 and re.search(r"\.(cpp|h):\d+$", lines[0]):
        lines = lines[1:]
    return lines[0] if lines else "no reason given"


def cases_of_program(path):
    """Yields (name, outcome, reason) for each case of one test program."""
    for case in ET.parse(path).getroot().iter("testcase"):
        name = f"{case.get('classname')}.{case.get('name')}"
        skipped = case.find("skipped")
        if case.find("failure") is not None:
            yield name, "failed", ""
        elif skipped is not None or case.get("result") == "skipped":
            yield name, "skipped", reason_of(skipped)
        elif case.get("status") != "notrun":
            yield name, "passed", ""


def cases_of_target(folder):
    """Yields (name, outcome, reason) for each case of one target."""
    for entry in ET.parse(folder / "ctest.junit").getroot().iter("testcase"):
        name = entry.get("name")
        own = folder / f"{name}.xml"
        cases = list(cases_of_program(own)) if own.exists() else []
        yield from cases
        status = entry.get("status")
        if status == "fail" and not any(outcome == "failed" for _, outcome, _ in cases):
            yield name, "failed", "the program did not end as it should"
        elif not cases and status == "run":
            yield name, "passed", ""
        elif not cases and status in ("notrun", "disabled"):
            yield name, "skipped", reason_of(entry.find("skipped"))


def summarise(target):
    folder = pathlib.Path("build") / target / "test-results"
    counts = collections.Counter()
    reasons = collections.Counter()
    failures = []
    if (folder / "ctest.junit").exists():
        for name, outcome, reason in cases_of_target(folder):
            counts[outcome] += 1
            if outcome == "skipped":
                reasons[reason] += 1
            if outcome == "failed":
                failures.append(f"{name} {reason}".rstrip())
    if not counts:
        failures.append(f"no test ran: build/{target}.log and build/{target}-test.log say why")
    print(f"{target}: {counts['passed']} passed, {len(failures)} failed, {counts['skipped']} skipped")
    for failure in failures:
        print(f"    failed: {failure}")
    for reason, times in sorted(reasons.items()):
        print(f"    skipped {times}: {reason}")
    return counts["passed"], len(failures), counts["skipped"]


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    totals = [sum(column) for column in zip(*(summarise(target) for target in sys.argv[1:]))]
    print(f"{totals[0]} passed, {totals[1]} failed, {totals[2]} skipped")
    sys.exit(1 if totals[1] else 0)


main()
