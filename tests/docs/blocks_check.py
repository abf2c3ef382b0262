#!/usr/bin/env python3
"""Compiles or runs every fenced block of every Markdown file; a block that it cannot judge is a fault.

usage: blocks_check.py PROJECT_FOLDER BUILD_FOLDER WORK_FOLDER CC CXX LIBRARY ZEBINFO PREFIX

  c, cpp    with a main() it is a program, and is compiled, linked and run; without one, its lines after
            the #include lines are compiled as the body of a function.
  cmake     configured as a project beside the library installed in PREFIX; a block that only calls functions of this
            tree (zebcomn_test, zebcomn_units) has to call those that exist.
  sh, none  each script, option, preset, target and path that it names exists; zebinfo, or scripts/run in
            its place, is run.
  console   the same for the lines after "$ "; what zebinfo prints has the shape of what is shown.
  json, text
            what the command in the marker before it prints, <!-- shown by: COMMAND -->, in the same shape
            ("the program" is the last c or cpp block); or the words of a test's text,
            <!-- tested by: FILE -->.
  gdb       read by gdb as a command file.
  any       <!-- repeated by: FILE -->: that test reads the page and goes through the block itself.

Two outputs have the same shape when they are JSON with the same names and kinds of values, or texts
whose lines begin with the same words, numbers and names of the host apart.
"""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys

import commands
import markdown

STRICT = ["-Wall", "-Wextra", "-Wpedantic", "-Werror", "-Wno-unused", "-pthread", "-D_GNU_SOURCE"]
LANGUAGES = {"c": (["-x", "c", "-std=c11"], ".c"), "cpp": (["-x", "c++", "-std=c++17"], ".cpp")}
LOOP_OPTIONS = ("--watch",)
# The first words of lines that only some hosts have: the table of file systems.
OF_SOME_HOSTS = {"File"}
WORD = re.compile(r"\s*\$?[A-Za-z][\w /\"-]*?(?=\s{2,}|:|$|\s)")


def json_shape(value):
    if isinstance(value, dict):
        return {key: json_shape(part) for key, part in value.items()}
    if isinstance(value, list):
        return [json_shape(value[0])] if value else []
    return type(value).__name__


def same_json(shown, real):
    if isinstance(shown, dict) and isinstance(real, dict):
        return shown.keys() == real.keys() and all(same_json(shown[k], real[k]) for k in shown)
    if isinstance(shown, list) and isinstance(real, list):
        return not shown or not real or same_json(shown[0], real[0])
    return shown == real


def labels(text):
    """The words at the beginnings of a text's lines, those with a digit or in a table's cells apart."""
    found = set()
    for line in text.splitlines():
        match = WORD.match(line)
        if match and not re.search(r"\d", match.group()):
            found.add(match.group().strip())
    return found


def shape_fault(shown, real):
    try:
        return None if same_json(json_shape(json.loads(shown)), json_shape(json.loads(real))) \
            else "the JSON has other names or kinds of values"
    except ValueError:
        pass
    extra = labels(shown) - labels(real)
    missing = labels(real) - labels(shown) - OF_SOME_HOSTS
    if extra:
        return f"not printed any more: {', '.join(sorted(extra))}"
    if missing and "..." not in shown:
        return f"printed and not shown: {', '.join(sorted(missing))}"
    return None


class Checker:
    def __init__(self, project, build, work, cc, cxx, library, zebinfo, prefix):
        self.project, self.work, self.zebinfo, self.library = project, work, zebinfo, library
        self.compilers = {"c": cc, "cpp": cxx}
        self.judge = commands.Judge(project, build)
        self.prefix = prefix
        self.program_output = None

    def run(self, command, **options):
        # gdb complains where there is no home.
        return subprocess.run([str(word) for word in command], capture_output=True, text=True,
                              timeout=120, env={**os.environ, "HOME": str(self.work)}, **options)

    def check(self, block):
        """The faults of one block."""
        if block.marker:
            return self.check_output(block, *block.marker.groups())
        if block.language in LANGUAGES:
            return self.check_code(block)
        if block.language == "cmake":
            return self.check_cmake(block)
        if block.language in ("sh", ""):
            return self.check_commands(block.text)
        if block.language == "gdb":
            return self.check_gdb(block)
        if block.language == "console":
            return self.check_console(block)
        return [f'a block of kind "{block.language}" without a marker cannot be checked; the head of '
                "tests/docs/blocks_check.py lists what can"]

    def check_code(self, block):
        flags, suffix = LANGUAGES[block.language]
        source = self.work / ("block" + suffix)
        compiler = [self.compilers[block.language], *flags, *STRICT, f"-I{self.project}"]
        if re.search(r"\bmain\s*\(", block.text):
            source.write_text(block.text, encoding="utf-8")
            program = self.work / "block"
            built = self.run([*compiler, source, "-x", "none", self.library, "-ldl", "-o", program,
                              f"-Wl,-rpath,{self.library.parent}"])
            if built.returncode:
                return [built.stderr]
            ran = self.run([program], cwd=self.work)
            self.program_output = ran.stdout
            return [f"the program ended with {ran.returncode}: {ran.stderr}"] if ran.returncode else []
        includes = [line for line in block.lines if line.startswith("#include")]
        body = [line for line in block.lines if not line.startswith("#include")]
        standard = {"c": "#include <stdio.h>\n#include <stdlib.h>\n#include <string.h>\n",
                    "cpp": "#include <iostream>\n#include <map>\n#include <memory>\n#include <string>\n"}
        source.write_text(standard[block.language] + "\n".join(includes) + "\nvoid Block(void);\n"
                          "void Block(void) {\n" + "\n".join(body) + "\n}\n", encoding="utf-8")
        built = self.run([*compiler, "-fsyntax-only", source])
        return [built.stderr] if built.returncode else []

    def check_cmake(self, block):
        called = set(re.findall(r"^\s*(\w+)\s*\(", block.text, re.MULTILINE))
        own = {name for name in called if name.startswith("zebcomn_")}
        if called and called == own:
            return [f"there is no function {name}" for name in sorted(own)
                    if not re.search(rf"function\({name}\b", self.judge.cmake)]
        project = self.work / "project"
        shutil.rmtree(project, ignore_errors=True)
        project.mkdir()
        text = block.text
        if "project(" not in text:
            text = "cmake_minimum_required(VERSION 3.25)\nproject(block LANGUAGES C CXX)\n" + text
        for target in re.findall(r"target_link_libraries\((\w+)", text):
            if f"add_executable({target}" not in text:
                text = re.sub(r"(project\([^)]*\)\n)", rf"\1add_executable({target} {target}.cpp)\n", text, count=1)
        for source in re.findall(r"[\w./-]+\.(?:cpp|c)\b", text):
            (project / source).parent.mkdir(parents=True, exist_ok=True)
            (project / source).write_text("int main(void) { return 0; }\n", encoding="utf-8")
        (project / "CMakeLists.txt").write_text(text, encoding="utf-8")
        configured = self.run(["cmake", "-S", project, "-B", project / "build",
                               f"-DCMAKE_PREFIX_PATH={self.prefix}"])
        return [configured.stderr] if configured.returncode else []

    def check_commands(self, text):
        faults, built = [], set()
        for command in commands.split(text):
            built |= {name for option, name in zip(command, command[1:]) if option == "-o"}
            if command[0].removeprefix("./") not in built:
                faults += self.judge.faults(command)
            arguments = self.zebinfo_arguments(command)
            if arguments is not None and not any(commands.PLACEHOLDER.fullmatch(a) for a in arguments):
                ran = self.run_zebinfo(arguments)
                if ran.returncode:
                    faults.append(f"zebinfo {' '.join(arguments)} ends with {ran.returncode}: {ran.stderr}")
        return faults

    @staticmethod
    def zebinfo_arguments(command):
        """The arguments of a command that shows zebinfo's output; None for any other command."""
        if command and command[0].removeprefix("./") in ("scripts/run", "zebinfo"):
            return command[1:]
        return None

    def run_zebinfo(self, arguments):
        if any(argument.startswith(LOOP_OPTIONS) for argument in arguments):
            text = self.run([self.zebinfo, "--help"])
            known = all(option in text.stdout for option in arguments if option.startswith("--"))
            return subprocess.CompletedProcess(arguments, 0 if known else 1, "", "an unknown option")
        return self.run([self.zebinfo, *arguments])

    def check_console(self, block):
        faults = []
        for part in re.split(r"^\$ ", block.text, flags=re.MULTILINE)[1:]:
            command, _, shown = part.partition("\n")
            words = next(commands.split(command), [])
            arguments = self.zebinfo_arguments(words)
            faults += self.judge.faults(words)
            if arguments is None:
                if shown.strip():
                    faults.append(f"what \"{command}\" prints is not checked")
                continue
            ran = self.run_zebinfo(arguments)
            fault = shape_fault(shown, ran.stdout + ran.stderr)
            faults += [f"{command}: {fault}"] if fault else []
        return faults

    def check_gdb(self, block):
        script = self.work / "block.gdb"
        script.write_text("\n".join(line.strip() for line in block.lines), encoding="utf-8")
        read = self.run(["gdb", "-nx", "-batch", "-x", script])
        return [read.stderr] if read.returncode or read.stderr else []

    def check_output(self, block, kind, what):
        if kind == "repeated by":
            sources = [self.project / what, (self.project / what).parent / "CMakeLists.txt"]
            named = any(str(block.path) in path.read_text(encoding="utf-8") for path in sources)
            return [] if named else [f"{what} does not read {block.path}"]
        if kind == "tested by":
            tested = (self.project / what).read_text(encoding="utf-8").replace("\\", "")
            words = {word for line in block.lines for word in line.split() if not re.search(r"[\d{]{2}|:$", word)}
            lacking = sorted(word for word in words if word not in tested)
            return [f"{what} does not have: {', '.join(lacking)}"] if lacking or not words else []
        if what == "the program":
            real = self.program_output
            if real is None:
                return ["there is no program before it"]
            return [] if real == block.text else [f"the program prints:\n{real}"]
        arguments = self.zebinfo_arguments(next(commands.split(what), []))
        if arguments is None:
            return [f'"{what}" is not run by this check']
        ran = self.run_zebinfo(arguments)
        fault = shape_fault(block.text, ran.stdout)
        return [f"{what}: {fault}"] if fault else []


def main():
    project, build, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    cc, cxx, library, zebinfo, prefix = sys.argv[4:9]
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    checker = Checker(project, build, work, cc, cxx, pathlib.Path(library), zebinfo, prefix)
    blocks = [block for path in markdown.files(project) for block in markdown.split(project, path)[0]]
    faults = 0
    for block in blocks:
        for fault in checker.check(block):
            faults += 1
            print(f"{block.place()}: {fault}")
    print(f"{len(blocks)} blocks, {faults} faults")
    return 1 if faults or not blocks else 0


if __name__ == "__main__":
    sys.exit(main())
