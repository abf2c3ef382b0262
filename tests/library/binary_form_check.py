#!/usr/bin/env python3
"""Checks what a loader and a package builder see of a built file: names, run path and hardening.

usage: binary_form_check.py READELF library FILE
       binary_form_check.py READELF program FILE
"""
import re
import subprocess
import sys


def readelf(tool, path):
    return subprocess.run([tool, "--wide", "--dynamic", "--program-headers", "--dyn-syms",
                           "--file-header", path],
                          check=True, capture_output=True, text=True).stdout


HARDENED = {
    "read-only relocations": r"GNU_RELRO",
    "all symbols bound at start": r"\(FLAGS.*(BIND_NOW|NOW)",
    "a stack that is not executable": r"GNU_STACK\s+\S+ \S+ \S+ \S+ \S+ RW\s",
    "the stack protector": r"__stack_chk_fail",
    "position-independent code": r"Type:\s+DYN",
    # Not the stack protector's own __stack_chk_fail.
    "checked string functions": r"__\w+_chk\b",
}
LIBRARY = {
    "the name that users are linked to": r"\(SONAME\).*\[libzebcomn\.so\.4\]",
    "the run path": r"\((RUNPATH|RPATH)\).*\[/opt/Quenty/pelu/lib\]",
}
PROGRAM = {
    "a program that can be loaded anywhere": r"\(FLAGS_1\).*\bPIE\b",
}
FORBIDDEN = {
    "relocations in its code": r"\(TEXTREL\)|\(FLAGS\).*TEXTREL",
}
ALLOWED_NEEDED = re.compile(r"\(NEEDED\).*\[(lib(stdc\+\+|gcc_s|c|m)\.so\.\d+|ld[\w-]*\.so\.\d+)\]")


def main():
    tool, kind, path = sys.argv[1:4]
    text = readelf(tool, path)
    wanted = {**HARDENED, **(LIBRARY if kind == "library" else PROGRAM)}
    faults = [f"lacks this: {what}" for what, pattern in wanted.items()
              if not re.search(pattern, text)]
    faults += [f"has this: {what}" for what, pattern in FORBIDDEN.items()
               if re.search(pattern, text)]
    if kind == "library":
        faults += [f"is to need nothing but the C and C++ libraries: {line.strip()}"
                   for line in text.splitlines()
                   if "(NEEDED)" in line and not ALLOWED_NEEDED.search(line)]
    for fault in faults:
        print(f"{path} {fault}")
    return 1 if faults else 0


sys.exit(main())
