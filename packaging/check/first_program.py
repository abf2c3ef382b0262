#!/usr/bin/env python3
"""Takes README's first program apart: writes first.c, line.sh and printed.txt into a folder.

usage: first_program.py README FOLDER

The section "First program" holds three blocks in this order: the program (c), the line that compiles
and runs it (sh) and what it prints (text).
"""
import pathlib
import re
import sys

FILES = {"c": "first.c", "sh": "line.sh", "text": "printed.txt"}


def main():
    readme, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    section = re.search(r"^##+ First program\n(.*?)(?=^##+ |\Z)", readme.read_text(encoding="utf-8"),
                        re.MULTILINE | re.DOTALL)
    if not section:
        sys.exit(f'{readme} has no section "First program"')
    blocks = re.findall(r"^```(\w*)\n(.*?)^```$", section.group(1), re.MULTILINE | re.DOTALL)
    if [language for language, _ in blocks[:3]] != list(FILES):
        sys.exit(f'{readme}: "First program" is to begin with a c, an sh and a text block, and has '
                 f"{[language for language, _ in blocks]}")
    for language, text in blocks[:3]:
        (folder / FILES[language]).write_text(text, encoding="utf-8")


main()
