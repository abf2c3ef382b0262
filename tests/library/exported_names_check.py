#!/usr/bin/env python3
"""Compares what the built library exports with the checked-in list, name by name.

usage: exported_names_check.py NM LIBRARY LIST [--renew]

With --renew the list is written anew instead; do that only when the interface changes on purpose.
"""
import re
import subprocess
import sys


def exported_names(nm, library):
    """The names that the library defines for others, C++ names as they are written in the source."""
    output = subprocess.run([nm, "--dynamic", "--defined-only", "--demangle", library],
                            check=True, capture_output=True, text=True).stdout
    # ADDRESS TYPE NAME; the two forms of a constructor have one name.
    return sorted({same_on_every_target(line.split(maxsplit=2)[2])
                   for line in output.splitlines() if line})


def same_on_every_target(name):
    """A va_list is another type on each target, and so a part of another name."""
    return re.sub(r"(vLogInSystemLog\(.*, ).*\)", r"\1va_list)", name)


def main():
    nm, library, list_path = sys.argv[1:4]
    exported = exported_names(nm, library)
    if sys.argv[4:] == ["--renew"]:
        with open(list_path, "w", encoding="utf-8") as file:
            file.write("\n".join(exported) + "\n")
        return 0
    with open(list_path, encoding="utf-8") as file:
        expected = [line for line in file.read().splitlines() if line]
    surplus = sorted(set(exported) - set(expected))
    missing = sorted(set(expected) - set(exported))
    for name in surplus:
        print(f"exported, but not in {list_path}: {name}")
    for name in missing:
        print(f"in {list_path}, but not exported: {name}")
    if expected != sorted(set(expected)):
        print(f"{list_path} is not sorted, or holds a name twice")
        return 1
    return 1 if surplus or missing else 0


sys.exit(main())
