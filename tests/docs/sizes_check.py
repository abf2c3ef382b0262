#!/usr/bin/env python3
"""Checks the sizes of the public types that docs/targets.md states for one target, by compiling them.

usage: sizes_check.py PROJECT_FOLDER COLUMN COMPILER [COMPILER_FLAG...]
"""
import pathlib
import re
import subprocess
import sys

TYPE = re.compile(r"`(\w+)`")


def rows_of(text):
    """The rows of the section's table as lists of cells, the head first."""
    section = text.split("## Sizes of the public types", 1)[1].split("\n## ", 1)[0]
    rows = [[cell.strip() for cell in line.strip("|").split("|")]
            for line in section.splitlines() if line.startswith("|")]
    return [rows[0]] + rows[2:]


def main():
    project, column, compiler = pathlib.Path(sys.argv[1]), sys.argv[2], sys.argv[3:]
    head, *rows = rows_of((project / "docs/targets.md").read_text(encoding="utf-8"))
    at = head.index(column)
    source = "#include <zebcomn/zebcomn.h>\n"
    for row in rows:
        name = TYPE.fullmatch(row[0]).group(1)
        source += f'static_assert(sizeof({name}) == {int(row[at])}, "{name}: docs/targets.md says {row[at]}");\n'
    result = subprocess.run(
        [*compiler, "-std=c++17", "-fsyntax-only", f"-I{project}", "-D_FILE_OFFSET_BITS=64", "-xc++", "-"],
        input=source, text=True, stderr=subprocess.PIPE)
    for line in result.stderr.splitlines():
        if "error" in line:
            print(line)
    print(f"{len(rows)} sizes for {column}: " + ("a fault" if result.returncode else "as stated"))
    return 1 if result.returncode or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
