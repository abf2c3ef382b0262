#!/usr/bin/env python3
"""Checks the promises of SECURITY.md: each names what holds it, and every test, check, preset,
script and fuzz target that it names is there. Usage: security_promises_check.py PROJECT_FOLDER"""
import pathlib
import re
import sys

from behaviour_table_check import CELL_BORDER, NAMED, tests_of

CODE = re.compile(r"`([^`]+)`")


def promises_of(text):
    """The rows of the tables that name what holds a promise, each with the number of its line."""
    in_table = False
    for number, line in enumerate(text.splitlines(), 1):
        in_table = line.startswith("| promise |") or (in_table and line.startswith("|"))
        if in_table and not line.startswith(("| promise |", "|---")):
            yield number, [cell.strip() for cell in CELL_BORDER.split(line)[1:-1]]


def is_there(name, project, tests, checks):
    """Whether what stands between two back quotes is a test, a check, a preset or a command."""
    if NAMED.fullmatch(f"`{name}`"):
        return tuple(name.split(".")) in tests
    if name.startswith("scripts/"):
        script, *targets = name.split()
        presets = (project / "CMakePresets.json").read_text(encoding="utf-8")
        known = (lambda t: (project / "fuzz" / f"{t}_fuzz.cpp").exists()
                 if script == "scripts/fuzz" else f'"name": "{t}", "inherits"' in presets)
        return (project / script).exists() and all(known(target) for target in targets)
    return name in checks or any((project / "tests").rglob(name + ".cpp"))


def faults_of(cells, project, tests, checks):
    if len(cells) != 2 or not all(cells):
        return ["a promise and what holds it are wanted"]
    named = CODE.findall(cells[1])
    if not named:
        return ["nothing holds this promise"]
    return [f"there is no {name}" for name in named if not is_there(name, project, tests, checks)]


def main():
    project = pathlib.Path(sys.argv[1])
    tests = tests_of(project)
    cmake = (project / "tests/library/CMakeLists.txt").read_text(encoding="utf-8")
    presets = (project / "CMakePresets.json").read_text(encoding="utf-8")
    checks = set(re.findall(r"add_test\(NAME (\w+)", cmake))
    checks |= set(re.findall(r'"name": "([^"]+)", "inherits"', presets))
    promises = list(promises_of((project / "SECURITY.md").read_text(encoding="utf-8")))
    failed = not promises
    for number, cells in promises:
        for fault in faults_of(cells, project, tests, checks):
            print(f"SECURITY.md:{number}: {fault}")
            failed = True
    print(f"{len(promises)} promises")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
