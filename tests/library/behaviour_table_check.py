#!/usr/bin/env python3
"""Checks docs/behaviour.md against the tests: one table, five cells a row, and every test that a row
names is there. `Suite.*` names a whole suite. Usage: behaviour_table_check.py PROJECT_FOLDER"""
import pathlib
import re
import sys

TEST = re.compile(r"\bTEST(?:_F|_P)?\(\s*(\w+)\s*,\s*(\w+)\s*\)")
NAMED = re.compile(r"`(\w+)\.(\w+|\*)`")
CELL_BORDER = re.compile(r"(?<!\\)\|")


def tests_of(project):
    tests = set()
    for source in (project / "tests").rglob("*.cpp"):
        for suite, name in TEST.findall(source.read_text(encoding="utf-8")):
            tests.update({(suite, name), (suite, "*")})
    return tests


def table_rows(text):
    """The rows of the only table, each with the number of its line."""
    lines = [(n, line) for n, line in enumerate(text.splitlines(), 1) if line.startswith("|")]
    if [n for n, _ in lines] != list(range(lines[0][0], lines[0][0] + len(lines))):
        raise SystemExit("docs/behaviour.md: there is more than one table")
    return lines[2:]


def faults_of(row, tests):
    cells = [cell.strip() for cell in CELL_BORDER.split(row)[1:-1]]
    if len(cells) != 5:
        return [f"{len(cells)} cells instead of 5"]
    if cells[0].startswith("**"):
        return [] if not any(cells[1:]) else ["text beside a group's name"]
    faults = [f"cell {n} is empty" for n, cell in enumerate(cells, 1) if not cell]
    named = NAMED.findall(cells[4])
    if not named and not cells[4].startswith("none: "):
        faults.append("no test, and no reason why there is none")
    faults += [f"there is no test {suite}.{name}" for suite, name in named
               if (suite, name) not in tests]
    return faults


def main():
    project = pathlib.Path(sys.argv[1])
    tests = tests_of(project)
    rows = table_rows((project / "docs/behaviour.md").read_text(encoding="utf-8"))
    failed = False
    for number, row in rows:
        for fault in faults_of(row, tests):
            print(f"docs/behaviour.md:{number}: {fault}")
            failed = True
    print(f"{len(rows)} rows, {len(tests)} tests and suites")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
