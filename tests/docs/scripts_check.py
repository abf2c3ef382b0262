#!/usr/bin/env python3
"""Checks that every command in scripts/ answers -h with the whole comment at its head, and does nothing else,
and that the README has it in its table of commands.

usage: scripts_check.py PROJECT_FOLDER
"""
import os
import pathlib
import re
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
    project = pathlib.Path(sys.argv[1]).resolve()
    commands = [path for path in sorted((project / "scripts").iterdir())
                if path.is_file() and os.access(path, os.X_OK)
                and path.read_text(encoding="utf-8").startswith("#!/usr/bin/env bash\n")]
    scripts = [path for path in commands if path.name != PASSED_ON]
    readme = (project / "README.md").read_text(encoding="utf-8")
    shown = re.findall(r"^\| `scripts/([\w-]+)` \| ", readme, re.MULTILINE)
    faults = 0
    for name in sorted(set(shown) ^ {path.name for path in commands}):
        faults += 1
        print(f"README.md: its table has scripts/{name}, which is no command" if name in shown
              else f"README.md: scripts/{name} is not in its table of commands")
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
