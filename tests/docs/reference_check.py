#!/usr/bin/env python3
"""Checks that the reference says what every exported name is.

usage: reference_check.py PROJECT_FOLDER XML_FOLDER

Each name of abi/exported-names.txt stands in doxygen's XML, as often as it is overloaded, with a brief
description; each function has a text for every parameter and for a result; each exported text constant
begins with its value, as the source defines it. Each header with exported names shows an example, and the
main page names every public header.
"""
import collections
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

CONSTANT_UNITS = ("zebcomn/util/data_constants.cpp", "zebcomn/sysprops/property_names.cpp")
DEFINITION = re.compile(r'^(?:const )?std::w?string (\w+)\s*=\s*L?"((?:[^"\\]|\\.)*)";', re.MULTILINE)


def text_of(element):
    return " ".join("".join(element.itertext()).split()) if element is not None else ""


def exported_names(project):
    """How often each qualified name, without arguments, is exported."""
    lines = (project / "abi/exported-names.txt").read_text(encoding="utf-8").splitlines()
    names = []
    for line in filter(None, lines):
        name = line.replace("[abi:cxx11]", "")
        if "operator()" in name:
            names.append(name[:name.index("operator()")] + "operator()")
        else:
            names.append(name.split("(")[0])
    return collections.Counter(names)


def documented_members(xml_folder):
    """Every documented function and variable, by qualified name; the same member may be in two files."""
    members = collections.defaultdict(dict)
    for path in sorted(xml_folder.glob("*.xml")):
        for compound in ElementTree.parse(path).getroot().findall("compounddef"):
            scope = ""
            if compound.get("kind") in ("class", "struct", "namespace"):
                scope = compound.findtext("compoundname") + "::"
            for member in compound.iter("memberdef"):
                if member.get("kind") in ("function", "variable"):
                    name = member.findtext("qualifiedname") or scope + member.findtext("name")
                    members[name][member.get("id")] = member
    return members


def documented_parameters(member):
    named = set()
    for item in member.iter("parameteritem"):
        if text_of(item.find("parameterdescription")):
            named.update(text_of(name) for name in item.iter("parametername"))
    return named


def faults_of(name, member):
    if not text_of(member.find("briefdescription")):
        yield "has no brief description"
    if member.get("kind") != "function":
        return
    documented = documented_parameters(member)
    for parameter in member.findall("param"):
        declared = text_of(parameter.find("declname"))
        if declared and declared not in documented:
            yield f"does not describe its parameter {declared}"
    result = text_of(member.find("type"))
    says_result = any(text_of(section) for section in member.iter("simplesect")
                      if section.get("kind") == "return")
    says_result = says_result or member.find(".//parameterlist[@kind='retval']") is not None
    if result not in ("", "void") and not says_result:
        yield "does not describe its result"


def check_names(expected, members):
    faults = []
    for name, count in sorted(expected.items()):
        found = members.get(name, {})
        # A defaulted copy constructor is documented and not exported.
        if len(found) < count:
            faults.append(f"{name}: exported {count} times, documented {len(found)} times")
        for member in found.values():
            place = member.find("location")
            faults += [f"{place.get('file')}:{place.get('line')}: {name} {fault}"
                       for fault in faults_of(name, member)]
    return faults


def check_constants(project, members):
    """The value at the head of each constant's comment is that of its definition."""
    briefs = {name.rsplit("::", 1)[-1]: text_of(member.find("briefdescription"))
              for name, found in members.items() for member in found.values()
              if member.get("kind") == "variable"}
    faults, checked = [], 0
    for unit in CONSTANT_UNITS:
        for name, value in DEFINITION.findall((project / unit).read_text(encoding="utf-8")):
            checked += 1
            shown = '"' + " ".join(value.split()) + ("" if value == value.rstrip() else " ") + '"'
            if not briefs.get(name, "").startswith(shown):
                faults.append(f"{name}: the comment does not begin with its value, {shown}")
    if checked < 100:
        faults.append(f"only {checked} constants were found in the sources")
    return faults


def check_examples(xml_folder, expected):
    faults = []
    for path in sorted(xml_folder.glob("*.xml")):
        for compound in ElementTree.parse(path).getroot().findall("compounddef"):
            if compound.get("kind") != "file":
                continue
            referenced = {re.sub(r"^.*::", "", text_of(item)) for item in compound.iter("name")}
            referenced |= {text_of(item).rsplit("::", 1)[-1] for item in compound.iter("innerclass")}
            declares = referenced & {part for name in expected for part in name.split("::")[-2:]}
            example = compound.find("detaileddescription//programlisting")
            if declares and (example is None or not text_of(example)):
                faults.append(f"{compound.find('location').get('file')}: shows no example")
    return faults


def check_main_page(project):
    named = re.findall(r"\b\w+\.h\b", (project / "docs/reference/mainpage.dox").read_text(encoding="utf-8"))
    public = {path.name for path in (project / "zebcomn").rglob("*.h")
              if not path.name.endswith("_internal.h")}
    # It holds a macro for the other headers, and nothing for a caller.
    return ([f"mainpage.dox: does not name {name}" for name in sorted(public - {"export.h", *named})] +
            [f"mainpage.dox: there is no {name}" for name in sorted(set(named) - public)])


def main():
    project, xml_folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    expected = exported_names(project)
    members = documented_members(xml_folder)
    faults = (check_names(expected, members) + check_constants(project, members) +
              check_examples(xml_folder, expected) + check_main_page(project))
    for fault in faults:
        print(fault)
    print(f"{sum(expected.values())} exported names, {len(faults)} faults in their documentation")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
