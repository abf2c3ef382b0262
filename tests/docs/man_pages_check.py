#!/usr/bin/env python3
"""Opens the man pages as a reader does.

usage: man_pages_check.py MAN_FOLDER EXPORTED_NAMES

MAN_FOLDER has man3 in it. Each page is set without a complaint of troff, which leaves out what it does
not understand, and opens with a name and what it is; and "man NAME" shows NAME in its page for each
exported call and object that has a page of its own.
"""
import os
import pathlib
import re
import subprocess
import sys

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "docs/reference"))
import man_pages  # noqa: E402

# Set for a screen, and not for this one.
ENVIRONMENT = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "MANWIDTH": "100", "MANROFFSEQ": "", "MANPAGER": "cat"}
TITLE = re.compile(r"^NAME\n +\S+ - \S", re.MULTILINE)


def man(*words):
    return subprocess.run(["man", *map(str, words)], env=ENVIRONMENT, capture_output=True, text=True,
                          encoding="utf-8", errors="replace", timeout=60)


def faults_of_page(path):
    page = man("--warnings", "-l", path)
    if page.stderr or page.returncode:
        yield page.stderr.strip() or f"man ends with {page.returncode}"
    if not TITLE.search(page.stdout):
        yield "it does not begin with a name and what that is"


def faults_of_name(folder, name):
    page = man("-M", folder, "3", name)
    if page.returncode:
        yield page.stderr.strip()
    elif not re.search(rf"\b{re.escape(name)}\b", page.stdout):
        yield "the page that opens does not have it"


def main():
    folder, list_path = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    pages = [path for path in sorted((folder / "man3").iterdir())
             if not path.read_text(encoding="utf-8").startswith(".so ")]
    names = man_pages.linked_names(list_path)
    faults = [f"{path.name}: {fault}" for path in pages for fault in faults_of_page(path)]
    faults += [f"{name}: {fault}" for name in names for fault in faults_of_name(folder, name)]
    for fault in faults:
        print(fault)
    print(f"{len(pages)} pages shown, {len(names)} names looked up, {len(faults)} faults")
    return 1 if faults or not pages or not names else 0


if __name__ == "__main__":
    sys.exit(main())
