#!/usr/bin/env python3
"""Holds the includes between subsystems and docs/architecture.md to each other.

usage: layering_check.py PROJECT_FOLDER

Also: the exported variables are all in the table of process-wide state, and every exported call of the
portability layer, "tiv" and a capital letter, is in docs/porting.md.
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+["<]((?:zebcomn|tools|examples|tests)/[^">]+)[">]', re.MULTILINE)
ROW = re.compile(r"^\| `(\w+)` \| (.+) \|$", re.MULTILINE)


def allowed_includes(text):
    section = text.split("## Who may call whom", 1)[1].split("\n## ", 1)[0]
    return {name: set(re.findall(r"`([^`]+)`", cell)) for name, cell in ROW.findall(section)}


def includes_of(folder):
    for path in sorted(folder.rglob("*")):
        if path.suffix in (".h", ".cpp", ".c"):
            for target in INCLUDE.findall(path.read_text(encoding="utf-8")):
                yield path, target


def layer_faults(project, allowed):
    used = {name: set() for name in allowed}
    folders = {path.name for path in (project / "zebcomn").iterdir() if path.is_dir()}
    if folders != set(allowed):
        yield f"docs/architecture.md: the table has {sorted(allowed)}, the tree {sorted(folders)}"
        return
    for name, permitted in allowed.items():
        for path, target in includes_of(project / "zebcomn" / name):
            where = path.relative_to(project)
            narrow = target.removeprefix("zebcomn/")
            other = narrow.split("/")[0]
            if not target.startswith("zebcomn/") or target == "zebcomn/zebcomn.h":
                yield f"{where}: includes {target}"
            elif other in (name, "export.h"):
                continue
            elif other in permitted or narrow in permitted:
                used[name] |= {other, narrow} & permitted
            else:
                yield f"{where}: {name} must not include {target}"
        for entry in sorted(permitted - used[name]):
            yield f"docs/architecture.md: {name} does not use {entry}"


def top_faults(project):
    for name in ("tools", "examples"):
        for path, target in includes_of(project / name):
            if target.endswith("_internal.h") or target.startswith("tests/"):
                yield f"{path.relative_to(project)}: includes {target}"


def named_faults(project, architecture):
    porting = (project / "docs/porting.md").read_text(encoding="utf-8")
    for line in (project / "abi/exported-names.txt").read_text(encoding="utf-8").splitlines():
        name = line.replace("[abi:cxx11]", "")
        is_variable = "(" not in line and ("::" not in line or line.endswith("::mutex"))
        is_c_function = re.fullmatch(r"tiv[A-Z]\w*", name)
        if is_c_function and f"`{name}`" not in porting:
            yield f"docs/porting.md: says nothing of {name}"
        elif is_variable and name[0] in "bnpM" or name.endswith(("m_wstrLastKnownLocalIP", "::mutex")):
            if f"`{name.removeprefix('quenty_com::pelu::sysprops::ISysProps::')}`" not in architecture:
                yield f"docs/architecture.md: says nothing of {name}"


def main():
    project = pathlib.Path(sys.argv[1]).resolve()
    architecture = (project / "docs/architecture.md").read_text(encoding="utf-8")
    allowed = allowed_includes(architecture)
    faults = [*layer_faults(project, allowed), *top_faults(project), *named_faults(project, architecture)]
    for fault in faults:
        print(fault)
    edges = sum(len(entries) for entries in allowed.values())
    print(f"{len(allowed)} subsystems, {edges} permitted ways, {len(faults)} faults")
    return 1 if faults or not edges else 0


if __name__ == "__main__":
    sys.exit(main())
