#!/usr/bin/env python3
"""Compares what the built library exports with the symbols file of its Debian package.

usage: package_symbols_check.py NM LIBRARY SYMBOLS [--renew VERSION]

With --renew a new name is added as one that came in VERSION, and one that is gone is taken out; do that
only when the interface changes on purpose. A name that is another on some targets, marked "(arch=...)" in
the file, is left to scripts/package, which knows the target.
"""
import re
import subprocess
import sys

LINE = re.compile(r" (\(arch=[^)]*\))?(\S+)@Base (\S+)$")


def exported_names(nm, library):
    output = subprocess.run([nm, "--dynamic", "--defined-only", library],
                            check=True, capture_output=True, text=True).stdout
    return {line.split()[-1] for line in output.splitlines() if line}


def unlike_elsewhere(name):
    """A va_list is another type on each target, and so a part of another name."""
    return "vLogInSystemLog" in name


def main():
    nm, library, path = sys.argv[1:4]
    with open(path, encoding="utf-8") as file:
        lines = file.read().splitlines()
    head = [line for line in lines if not LINE.match(line)]
    listed = {match.group(2): line for line in lines if (match := LINE.match(line))}
    exported = {name for name in exported_names(nm, library) if not unlike_elsewhere(name)}
    expected = {name for name in listed if not unlike_elsewhere(name)}
    if sys.argv[4:5] == ["--renew"]:
        for name in expected - exported:
            del listed[name]
        listed |= {name: f" {name}@Base {sys.argv[5]}" for name in exported - expected}
        with open(path, "w", encoding="utf-8") as file:
            file.write("\n".join(head + [listed[name] for name in sorted(listed)]) + "\n")
        return 0
    for name in sorted(exported - expected):
        print(f"exported, but not in {path}: {name}")
    for name in sorted(expected - exported):
        print(f"in {path}, but not exported: {name}")
    return 1 if exported != expected else 0


sys.exit(main())
