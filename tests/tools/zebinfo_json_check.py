#!/usr/bin/env python3
"""Checks what zebinfo prints with --json against its JSON Schema.

usage: zebinfo_json_check.py SCHEMA MANUAL-PAGE MODULE ZEBINFO-COMMAND...

Each form that the schema describes is asked for, must be valid, and must be valid as that form. Each
member of the schema must be in the manual page. MODULE is a plug-in with a version.
"""
import json
import pathlib
import re
import socket
import subprocess
import sys

import jsonschema


def forms(module, port):
    """From the name of a form to the command lines that give it."""
    return {
        "catalogue": [[], ["--watch", "0.1", "--count", "2"]],
        "properties": [["OSType"], ["OSType", "FreeMemory"]],
        "list": [["--list"]],
        "interfaces": [["interfaces", "--loopback"]],
        "local-address": [["local-address", "127.0.0.1", port]],
        "resolve": [["resolve", "127.0.0.1"]],
        "time": [["time"], ["time", "--watch", "0.1", "--count", "2"]],
        "guid": [["guid"]],
        "software-id": [["software-id"]],
        "plugin-version": [["plugin-version", module]],
        "platform-match": [["platform-match", "A:1:0:0", supported] for supported in ("A", "A:2", "B")],
        "path": [["path", "/etc/passwd"], ["path", "/etc/nonesuch"]],
        "keys": [["keys"], ["keys", "SiteList"]],
    }


def objects(text):
    """The JSON objects that follow each other in a text."""
    decoder, at = json.JSONDecoder(), 0
    while at < len(text):
        value, at = decoder.raw_decode(text, at)
        yield value
        at += len(text[at:]) - len(text[at:].lstrip())


def member_names(node):
    """Every name that a schema gives to a member."""
    if isinstance(node, dict):
        for name, value in node.items():
            if name == "properties" and all(isinstance(member, dict) for member in value.values()):
                yield from value
            yield from member_names(value)
    elif isinstance(node, list):
        for value in node:
            yield from member_names(value)


def complaints(schema, command, module, port):
    """Yields what is not as the schema says."""
    whole = jsonschema.Draft7Validator(schema)
    asked = forms(module, port)
    if set(asked) != {choice["$ref"].rsplit("/", 1)[1] for choice in schema["oneOf"]}:
        yield "the schema has other forms than this check"
    for form, command_lines in asked.items():
        one = jsonschema.Draft7Validator({**schema, "oneOf": [{"$ref": f"#/definitions/{form}"}]})
        for arguments in command_lines:
            result = subprocess.run(command + arguments + ["--json"], stdout=subprocess.PIPE,
                                    stderr=subprocess.PIPE, text=True, check=False)
            answers = list(objects(result.stdout))
            if not answers:
                yield f"{arguments}: no answer: {result.stderr}"
            for answer in answers:
                for error in [*whole.iter_errors(answer), *one.iter_errors(answer)]:
                    yield f"{arguments}: {error.message}"


def main():
    if len(sys.argv) < 5:
        sys.exit(__doc__)
    schema = json.loads(pathlib.Path(sys.argv[1]).read_text())
    page = pathlib.Path(sys.argv[2]).read_text()
    jsonschema.Draft7Validator.check_schema(schema)
    with socket.create_server(("127.0.0.1", 0)) as server:
        port = str(server.getsockname()[1])
        found = list(complaints(schema, sys.argv[4:], sys.argv[3], port))
    for name in sorted(set(member_names(schema["definitions"]))):
        if not re.search(rf"\b{name}\b", page):
            found.append(f"the manual page does not name the member {name}")
    for complaint in found:
        print(complaint, file=sys.stderr)
    sys.exit(1 if found else 0)


main()
