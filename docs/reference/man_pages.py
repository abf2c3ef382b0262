#!/usr/bin/env python3
"""Chooses the man pages to install out of those that doxygen wrote.

usage: man_pages.py DOXYGEN_FOLDER OUTPUT_FOLDER EXPORTED_NAMES
       man_pages.py --names EXPORTED_NAMES      prints the names that have a page

A header's page gets the prefix "zebcomn_", and a type's page its plain name. Of the links, one for each
exported C function, function of a namespace, and C object is kept: a link for every field and constant
would put names such as read, size and unknown beside the system's. A header's page says how to include
the header, in place of what that includes itself.
"""
import pathlib
import re
import sys

LINK = re.compile(r"\.so man3/(\S+)")
EXAMPLE = re.compile(r"^\.nf$.*?^\.fi$", re.MULTILINE | re.DOTALL)
DATED_TITLE = re.compile(r'^(\.TH "[^"]*" 3 )"[^"]*"', re.MULTILINE)
HEADER_TITLE = re.compile(r'^\.TH "(zebcomn/[^"]*)"', re.MULTILINE)
INCLUDES = re.compile(r"(?:^\\fC#include .*\n(?:^\.br\n)?)+", re.MULTILINE)


def mended(text):
    """A page that is the same whenever it is made, and loses nothing when it is shown."""
    text = DATED_TITLE.sub(r'\1""', text)
    # A quotation mark in front of a line would make a request of it.
    text = re.sub(r"^'", r"\\&'", text, flags=re.MULTILINE)
    header = HEADER_TITLE.search(text)
    if header:
        include = f"\\fC#include <{header.group(1)}>\\fP\n"
        text = INCLUDES.sub(lambda _: include, text, count=1)
    text = EXAMPLE.sub(lambda block: re.sub(r"\\(?!f[BIP]|[&-])", r"\\e", block.group()), text)
    return text.replace(r"\\", r"\e")


def page_name(name):
    if name.endswith(".h.3"):
        return "zebcomn_" + name
    return re.sub(r"^quenty_com_pelu_(?:sysprops_)?(?=[A-Z])", "", name)


def linked_names(list_path):
    return sorted(set(all_linked_names(list_path)))


def all_linked_names(list_path):
    for line in list_path.read_text(encoding="utf-8").splitlines():
        scope, _, name = line.replace("[abi:cxx11]", "").split("(")[0].rpartition("::")
        is_function = "(" in line
        if not scope and name or scope == "quenty_com::pelu" and is_function:
            yield name


def main():
    if sys.argv[1] == "--names":
        print("\n".join(linked_names(pathlib.Path(sys.argv[2]))))
        return
    source, output, list_path = map(pathlib.Path, sys.argv[1:4])
    output.mkdir(parents=True, exist_ok=True)
    pages = {path.name: path.read_text(encoding="utf-8") for path in sorted(source.iterdir())}
    for name, text in pages.items():
        if LINK.match(text) or name.startswith("quenty_com.") or name.startswith("@"):
            continue
        (output / page_name(name)).write_text(mended(text), encoding="utf-8")
    links = 0
    for name in linked_names(list_path):
        link = LINK.match(pages.get(name + ".3", ""))
        if not link:
            raise SystemExit(f"man_pages: no page describes {name}")
        (output / (name + ".3")).write_text(f".so man3/{page_name(link.group(1))}\n", encoding="utf-8")
        links += 1
    print(f"{len(list(output.iterdir())) - links} man pages, {links} links")


if __name__ == "__main__":
    main()
