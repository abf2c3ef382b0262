#!/usr/bin/env python3
"""Changes the library at random, one place at a time, and counts how many changes a test notices.

usage: change_lines.py [--changes N] [--seed N] [--part I/N] [--near] [UNIT...]

Works on a copy of the last commit in a scratch folder, so the sources here stay as they are. A change is a
comparison turned, a constant moved by one, a literal spoilt, a logical operator swapped, a condition
inverted or a call dropped. One that does not compile is not counted, and another takes its place. The tests
of the changed unit run first, then those of its subsystem, then all; the first that fails twice, or hangs,
ends the search. Prints a line for each change and those that no test noticed; exits with 1 when fewer
than nine in ten were noticed. UNIT limits it to sources whose path contains the word; --part 1/2 and
--part 2/2 share the work between two runs. Takes about half a minute a change.

--near is the short form: it stops at the tests of the subsystem, builds no others, and asks for two in
three, since a dozen changes say little about a share and some are noticed further away only.
"""
import argparse
import json
import os
import pathlib
import random
import re
import signal
import subprocess
import sys
import tempfile

# A changed line may make a test hang: ten times what the slowest takes beside other work.
TEST_SECONDS = 60
NOTICED_SHARE = 0.9
NOTICED_SHARE_NEAR = 2 / 3

# What is changed, and into what. `\\1` keeps what surrounds it.
RULES = [
    ("comparison", r" == ", " != "),
    ("comparison", r" != ", " == "),
    ("comparison", r" < ", " <= "),
    ("comparison", r" <= ", " < "),
    ("comparison", r" > ", " >= "),
    ("comparison", r" >= ", " > "),
    ("logic", r" && ", " || "),
    ("logic", r" \|\| ", " && "),
    ("logic", r"\bif \(!", "if ("),
    ("logic", r"\btrue\b", "false"),
    ("logic", r"\bfalse\b", "true"),
    ("arithmetic", r" \+ ", " - "),
    ("arithmetic", r" - ", " + "),
    ("constant", r"(?<![\w.\"'])(\d+)(?=[uU]?[,;)\] ])", lambda found: str(int(found.group(1)) + 1)),
    ("literal", r"\"[^\"\\]{2,}\"", lambda found: found.group(0)[:-2] + '~"'),
    ("call", r"^(\s+)(?!return\b|delete\b|throw\b|static_assert\b)[\w:.>-]+\([^;{}]*\);$", r"\1;"),
]
# Declarations, and the layout of another word size, which this build does not look at.
SKIPPED_LINE = re.compile(r"^\s*(//|#|\*|using |namespace |template|extern )|static_assert|offsetof\(|sizeof\(void\*\)")


def code_of(line):
    """The line without a comment at its end."""
    return re.sub(r"\s+//.*$", "", line)


def changes_of(path, root):
    """Yields (path, line number, rule, old line, new line) for each place that can be changed."""
    for number, line in enumerate((root / path).read_text().splitlines()):
        if SKIPPED_LINE.search(line):
            continue
        code = code_of(line)
        for rule, pattern, replacement in RULES:
            for found in re.finditer(pattern, code):
                new = found.expand(replacement) if isinstance(replacement, str) else replacement(found)
                yield path, number, rule, line, code[:found.start()] + new + code[found.end():]


def run(command, folder, log):
    with open(log, "w", encoding="utf-8") as output:
        # A group of its own, so that what runs ends with this program.
        process = subprocess.Popen(command, cwd=folder, stdout=output, stderr=subprocess.STDOUT,
                                   start_new_session=True)
        try:
            return process.wait() == 0
        finally:
            if process.poll() is None:
                os.killpg(process.pid, signal.SIGKILL)
                process.wait()


def working_folder(test):
    """The last part of where ctest runs the test; that is the folder which declares it."""
    return next(pathlib.Path(value["value"]).name for value in test["properties"]
                if value["name"] == "WORKING_DIRECTORY")


class Copy:
    """A copy of the last commit with a build of its own."""

    def __init__(self, repository, folder):
        self.root = folder / "copy"
        self.log = folder / "log"
        self.passing = set()  # The stages that pass without a change.
        subprocess.run(["git", "clone", "--quiet", repository, self.root], check=True)
        options = ["-DZEBCOMN_WERROR=OFF", "-DZEBCOMN_INTERFACE_TARGET=",
                   f"-DZEBCOMN_TEST_SECONDS={TEST_SECONDS}"]
        if not run(["cmake", "--preset", "release", *options], self.root, self.log):
            self.give_up("the build cannot be configured")
        listed = subprocess.run(["ctest", "--test-dir", "build/release", "--show-only=json-v1"],
                                cwd=self.root, stdout=subprocess.PIPE, check=True).stdout
        self.tests = [(test["name"], working_folder(test)) for test in json.loads(listed)["tests"]]

    def give_up(self, what):
        sys.exit(f"change_lines: {what}:\n{self.log.read_text(errors='replace')[-2000:]}")

    def builds(self, targets):
        return run(["cmake", "--build", "build/release", "--target", *targets], self.root, self.log)

    def stages(self, path, near):
        """Pairs of a regular expression of test names and what they need built, from the nearest to all."""
        unit = re.sub(r"_internal$", "", path.stem)
        neighbours = [name for name, folder in self.tests
                      if folder == path.parent.name and name.endswith("_test")]
        own = [name for name in neighbours if unit in name]
        stages = [("^(" + "|".join(tests) + ")$", tests) for tests in (own, neighbours) if tests]
        return stages if near else stages + [(".", ["all"])]

    def passes_once(self, tests):
        return run(["ctest", "--test-dir", "build/release", "--stop-on-failure", "--timeout",
                    str(TEST_SECONDS), "-R", tests, "-LE", "stress", "-E",
                    "exported_names_check|install_check"], self.root, self.log)

    def has_hung(self):
        return "***Timeout" in self.log.read_text(errors="replace")

    def passes(self, tests):
        # A failure counts when it comes twice: one that comes once may be the machine's.
        return self.passes_once(tests) or (not self.has_hung() and self.passes_once(tests))

    def test_that_fails(self, stage):
        """The name of a test of the stage, which is built, that fails; None if all pass."""
        if self.passes(stage[0]):
            return None
        found = re.search(r"\d+ - (\S+) \(", self.log.read_text(errors="replace"))
        return found.group(1) if found else "?"

    def expect_to_pass(self, stage):
        """What fails without a change says nothing about one."""
        if stage[0] in self.passing:
            return
        if not self.builds(stage[1]):
            self.give_up("the tests do not build without a change")
        if test := self.test_that_fails(stage):
            self.give_up(f"{test} fails without a change")
        self.passing.add(stage[0])

    def try_change(self, path, number, new, near):
        """Whether the change compiles, and the test that notices it."""
        source = self.root / path
        original = source.read_text()
        lines = original.splitlines()
        lines[number] = new
        source.write_text("\n".join(lines) + "\n")
        test = stage = None
        is_built = True
        try:
            if not self.builds(["zebcomn"]):
                return False, None
            for stage in self.stages(path, near):
                # A test may hold the compiler to what a header of the library says.
                if not (is_built := self.builds(stage[1])) or (test := self.test_that_fails(stage)):
                    break
        finally:
            source.write_text(original)
        if test or not is_built:
            self.expect_to_pass(stage)
        return is_built, test


def arguments():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("--changes", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--part", default="1/1")
    parser.add_argument("--near", action="store_true")
    parser.add_argument("units", nargs="*", metavar="UNIT")
    return parser.parse_args()


def sources(root, units):
    paths = [path.relative_to(root) for pattern in ("*.cpp", "*_internal.h")
             for path in (root / "zebcomn").glob(f"*/{pattern}")]
    return sorted(path for path in paths if not units or any(unit in str(path) for unit in units))


def main():
    options = arguments()
    # Ended early, it still takes its copy and a hanging test with it.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    part, parts = map(int, options.part.split("/"))
    repository = pathlib.Path(__file__).resolve().parents[2]
    tried = noticed = 0
    survivors = []
    with tempfile.TemporaryDirectory(prefix="zebcomn-changes-") as scratch:
        copy = Copy(repository, pathlib.Path(scratch))
        places = [change for path in sources(copy.root, options.units)
                  for change in changes_of(path, copy.root)]
        random.Random(options.seed).shuffle(places)
        for path, number, rule, old, new in places[part - 1::parts]:
            if tried >= options.changes // parts:
                break
            compiled, test = copy.try_change(path, number, new, options.near)
            if not compiled:
                continue
            tried += 1
            noticed += test is not None
            place = f"{path}:{number + 1} ({rule}): {old.strip()}  ->  {new.strip()}"
            print(f"{'noticed by ' + test if test else 'NOT NOTICED'}  {place}", flush=True)
            if not test:
                survivors.append(place)
    print(f"\n{noticed} of {tried} changes were noticed; {len(places)} places can be changed")
    for place in survivors:
        print(f"not noticed: {place}")
    share = NOTICED_SHARE_NEAR if options.near else NOTICED_SHARE
    sys.exit(0 if tried and noticed >= share * tried else 1)


if __name__ == "__main__":
    main()
