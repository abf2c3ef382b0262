#!/usr/bin/env python3
"""Checks that every relative link of every Markdown file leads to a file and, with "#", to a heading, and
that links lead from the README to every Markdown file.

usage: links_check.py PROJECT_FOLDER
"""
import pathlib
import re
import sys

import markdown

LINK = re.compile(r"\]\(([^()\s]+)\)|(?:src|href)=\"([^\"]+)\"")
CODE = re.compile(r"`[^`]*`")
ELSEWHERE = re.compile(r"^(?:[a-z]+:|//)")


def anchor_of(heading):
    """The anchor that a heading is given: lower case, without punctuation, blanks as "-"."""
    text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading.strip()).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", "-")


def anchors_of(project, path):
    anchors = []
    for _, line in markdown.split(project, path)[1]:
        heading = re.match(r"#+\s+(.*)", line)
        if heading:
            anchor = anchor_of(heading.group(1))
            earlier = anchors.count(anchor)
            anchors.append(f"{anchor}-{earlier}" if earlier else anchor)
    return anchors


def fault_of(project, path, target):
    name, _, anchor = target.partition("#")
    where = path if not name else (path.parent / name).resolve()
    if not where.exists():
        return f"there is no {target}"
    if not where.is_relative_to(project):
        return f"{target} leads out of the project"
    if anchor and (where.suffix != ".md" or anchor not in anchors_of(project, where)):
        return f"{target}: there is no such heading"
    return None


def reached_from(start, links):
    """The files that links lead to, one after the other."""
    reached, open_ends = set(), [start]
    while open_ends:
        path = open_ends.pop()
        if path not in reached:
            reached.add(path)
            open_ends.extend(links.get(path, ()))
    return reached


def main():
    project = pathlib.Path(sys.argv[1]).resolve()
    checked, faults = 0, 0
    links = {}
    for path in markdown.files(project):
        links[path] = []
        for number, line in markdown.split(project, path)[1]:
            for match in LINK.finditer(CODE.sub("", line)):
                target = match.group(1) or match.group(2)
                if ELSEWHERE.match(target):
                    continue
                checked += 1
                links[path].append((path.parent / target.partition("#")[0]).resolve())
                fault = fault_of(project, path, target)
                if fault:
                    faults += 1
                    print(f"{path.relative_to(project)}:{number}: {fault}")
    for path in links.keys() - reached_from(project / "README.md", links):
        faults += 1
        print(f"{path.relative_to(project)}: no link leads here from README.md")
    print(f"{checked} links, {faults} faults")
    return 1 if faults or not checked else 0


if __name__ == "__main__":
    sys.exit(main())
