#!/usr/bin/env python3
"""Compares what the library needs of the C library with what the sweep of failing calls can fail.

usage: wrapped_calls_check.py NM LIBRARY TEST_PROGRAM CALLS_SOURCE REVIEWED

Every C function that LIBRARY takes from elsewhere has a wrapper in TEST_PROGRAM, or stands in
REVIEWED with the reason why it cannot fail or needs none. A wrapper of CALLS_SOURCE, or a line of
REVIEWED, that LIBRARY does not need is an error too. For these two the forms of one function
("open64", "__readlink_chk", "fread_unlocked") count as one; the wrapper must have the very name that
LIBRARY calls. Of the C++ library only the operators that take
memory are looked at: its other functions fail through them.
"""
import re
import subprocess
import sys

FORMS = [r"__(\w+)_chk", r"__isoc99_(\w+)", r"(\w+)_unlocked", r"__(\w+?)64_time64",
         r"__(\w+?)(?:_time)?64(_r)?", r"(\w+?)64"]
OPERATOR = re.compile(r"_Zn([wa])[jm](RKSt9nothrow_t)?")


def base_name(name):
    """The function that this name is a form of."""
    operator = OPERATOR.fullmatch(name)
    if operator:
        return f"operator new{'[]' if operator[1] == 'a' else ''}{' (nothrow)' if operator[2] else ''}"
    for form in FORMS:
        match = re.fullmatch(form, name)
        if match:
            return "".join(part or "" for part in match.groups())
    return name


def symbols(nm, which, file):
    """The dynamic symbols of a file, without versions."""
    lines = subprocess.run([nm, "--dynamic", which, file], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    return {line.split()[-1].split("@")[0] for line in lines if line}


def needed(nm, library):
    """What the library calls of other libraries, name by name."""
    names = symbols(nm, "--undefined-only", library)
    return {name for name in names if OPERATOR.fullmatch(name) or not name.startswith("_Z")}


def base_names(names):
    return {base_name(name) for name in names}


def wrappers(source):
    """The functions that have a wrapper in the source."""
    with open(source, encoding="utf-8") as file:
        text = file.read()
    names = re.findall(r"^(?:CLOSING_)?CALL\([\w ]+\*?,\s*(\w+),", text, re.M)
    names += re.findall(r"^(?:ERROR|READING)_CALL\((\w+)", text, re.M)
    names += [name for name in re.findall(r"\bDUE\((\w+)", text) if name != "name"]
    return {base_name(name) for name in names}


def reviewed(path):
    """The names that the list has, each with its reason, and those that only some targets need."""
    with open(path, encoding="utf-8") as file:
        lines = [line for line in file.read().splitlines() if line and not line.startswith("#")]
    pairs = [line.split(maxsplit=1) for line in lines]
    reasons = {pair[0].lstrip("?"): pair[1] if len(pair) > 1 else "" for pair in pairs}
    return reasons, {pair[0][1:] for pair in pairs if pair[0].startswith("?")}


def main():
    nm, library, program, source, list_path = sys.argv[1:6]
    names = needed(nm, library)
    names_in_program = symbols(nm, "--defined-only", program)
    needs = base_names(names)
    wrapped = wrappers(source)
    in_program = base_names(names_in_program)
    cannot_fail, on_some_targets = reviewed(list_path)
    errors = [f"{name}: needed by the library, not wrapped under this name and not in {list_path}"
              for name in sorted(names - names_in_program) if base_name(name) not in cannot_fail]
    errors += [f"{name}: wrapped, but the test program does not export it"
               for name in sorted(wrapped - in_program)]
    errors += [f"{name}: wrapped, but not needed by the library"
               for name in sorted(wrapped - needs)]
    errors += [f"{name}: in {list_path}, but not needed by the library"
               for name in sorted(set(cannot_fail) - needs - on_some_targets)]
    errors += [f"{name}: wrapped and in {list_path}" for name in sorted(set(cannot_fail) & wrapped)]
    errors += [f"{name}: in {list_path} without a reason"
               for name, reason in sorted(cannot_fail.items()) if not reason]
    print("\n".join(errors) if errors else
          f"{len(needs)} functions: {len(needs & in_program)} wrapped, "
          f"{len(needs & set(cannot_fail))} reviewed")
    return 1 if errors else 0


sys.exit(main())
