#!/usr/bin/env python3
"""Checks that every command in scripts/ answers -h with the whole comment at its head, and does nothing else.

usage: scripts_check.py PROJECT_FOLDER
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile

# What a script may use before it has looked at its arguments: with nothing else to be found, one that
# does not know -h can neither install nor build.
TOOLS = ("bash", "basename", "dirname", "sed")
# Its -h is that of the program that it builds.
PASSED_ON = "run"


def head_comment(lines):
    comment = []
    for line in lines[1:]:
        if not line.startswith("#"):
            break
        comment.append(line[2:])
    return comment


def fault_of(script, path):
    expected = head_comment(script.read_text(encoding="utf-8").splitlines())
    if not expected:
        return "it has no comment at its head"
    for option in ("-h", "--help"):
        answer = subprocess.run([script, option], env={"PATH": path}, capture_output=True, text=True, timeout=60)
        if answer.returncode != 0:
            return f"{option} exits with {answer.returncode}"
        if answer.stdout.splitlines() != expected or answer.stderr:
            return f"{option} does not print the comment at its head"
    return None


def main():
    folder = pathlib.Path(sys.argv[1]).resolve() / "scripts"
    scripts = [script for script in sorted(folder.iterdir())
               if script.is_file() and script.name != PASSED_ON and os.access(script, os.X_OK)
               and script.read_text(encoding="utf-8").startswith("#!/usr/bin/env bash\n")]
    faults = 0
    with tempfile.TemporaryDirectory() as path:
        for tool in TOOLS:
            os.symlink(shutil.which(tool), pathlib.Path(path) / tool)
        for script in scripts:
            fault = fault_of(script, path)
            if fault:
                faults += 1
                print(f"scripts/{script.name}: {fault}")
    print(f"{len(scripts)} scripts, {faults} with a fault")
    return 1 if faults or not scripts else 0


if __name__ == "__main__":
    sys.exit(main())
