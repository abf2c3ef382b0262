#!/usr/bin/env python3
"""Compares the built library's binary interface with the checked-in description of this target.

usage: interface_check.py LIBRARY DESCRIPTION [--renew]

With --renew the description is written anew instead; do that only when the interface changes on
purpose. Functions, variables and the records that they reach, with fields, offsets and sizes, are
compared; static_asserts beside the types hold those that callers reach through a handle.
"""
import subprocess
import sys


COMMON = ["--exported-interfaces-only", "--no-show-locs"]


def main():
    library, description = sys.argv[1:3]
    if sys.argv[3:] == ["--renew"]:
        return subprocess.run(
            ["abidw", *COMMON, "--no-corpus-path", "--no-comp-dir-path", "--type-id-style", "hash",
             "--out-file", description, library], check=False).returncode
    compared = subprocess.run(["abidiff", *COMMON, description, library],
                              check=False, capture_output=True, text=True)
    if compared.returncode == 0:
        return 0
    print(compared.stdout + compared.stderr)
    print(f"The interface is not the one of {description}. Was the change meant? Then renew it:"
          " scripts/renew-interface")
    return 1


sys.exit(main())
