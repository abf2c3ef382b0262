"""Judges a command line that a document shows: does what it names exist?"""
import json
import re
import shlex

# Programs that are not of this project and are shown beside it.
FOREIGN = {"apt", "apt-get", "c++", "cc", "cat", "cd", "clang", "cp", "cpack", "dpkg",
           "dpkg-deb", "dpkg-query", "export", "g++", "gcc", "gdb", "git", "grep", "journalctl", "jq", "kill",
           "ldd", "less", "logger", "ls", "man", "mkdir", "nm", "pkg-config", "pre-commit",
           "python3", "qemu-ppc-static", "readelf", "rm", "set", "source", ".", "sudo", "tar", "tee", "test",
           "time", "valgrind", "watch", "xargs", "xdg-open", "echo", "printf", "env", "sh", "bash", "fish",
           "zsh", "head", "tail", "sort", "wc", "sed", "awk", "diff", "true", "false", "nice", "ninja"}
TREE_FOLDERS = ("scripts", "tests", "docs", "packaging", "bench", "fuzz", "cmake", "examples", "tools",
                "zebcomn", "abi", ".ci")
ASSIGNMENT = re.compile(r"^[A-Za-z_]\w*=")
PLACEHOLDER = re.compile(r"[A-Z]{2,}|<\w+>|\.\.\.|\*|\$")


def split(text):
    """The commands of a block: continued lines joined, remarks taken out, pipes and lists taken apart."""
    for line in re.sub(r"\\\n", " ", text).splitlines():
        lexer = shlex.shlex(line, posix=True, punctuation_chars="&|;<>()")
        lexer.whitespace_split, lexer.commenters = True, "#"
        command, skip = [], False
        for token in lexer:
            if set(token) <= set("&|;()"):
                if command:
                    yield command
                command = []
            elif set(token) <= set("<>") or set(token) <= set("<>&"):
                skip = True
            elif skip:
                skip = False
            else:
                command.append(token)
        if command:
            yield command


class Judge:
    def __init__(self, project, build):
        self.project, self.build = project, build
        presets = json.loads((project / "CMakePresets.json").read_text(encoding="utf-8"))
        self.presets = {preset["name"] for preset in presets["configurePresets"]}
        self.cmake = "\n".join(path.read_text(encoding="utf-8")
                               for path in [project / "CMakeLists.txt", project / "CMakePresets.json",
                                            *project.glob("*/**/CMakeLists.txt"),
                                            *project.glob("*/*.cmake"), *project.glob("*/*/*.cmake")]
                               if "build" not in path.relative_to(project).parts[:1])

    def faults(self, command):
        while command and ASSIGNMENT.match(command[0]):
            command = command[1:]
        while command and command[0] in ("sudo", "time", "nice", "env"):
            command = command[1:]
        if not command:
            return
        program, arguments = command[0].removeprefix("./"), command[1:]
        yield from self.path_faults(arguments)
        if program in ("scripts/run", "zebinfo") or program == "cmake":
            yield from self.cmake_faults(arguments) if program == "cmake" else ()
        elif program.startswith(("scripts/", ".ci/")):
            yield from self.script_faults(program, arguments)
        elif program == "ctest":
            yield from self.ctest_faults(arguments)
        elif "/" in program:
            yield from self.path_faults([program])
        elif program not in FOREIGN and not ASSIGNMENT.match(program):
            yield f"{program}: no program that the check knows"

    def script_faults(self, program, arguments):
        script = self.project / program
        if not script.exists():
            yield f"there is no {program}"
            return
        text = script.read_text(encoding="utf-8")
        for argument in arguments:
            if argument.startswith("-"):
                known = argument.split("=")[0] in text
            elif program == "scripts/test":
                known = argument in self.presets or argument in text
            else:
                known = "/" in argument or argument in text or self.is_in_sources(argument)
            if not known and not PLACEHOLDER.search(argument):
                yield f"{program} does not know {argument}"

    def is_in_sources(self, word):
        """A benchmark, a fuzz target or a test is chosen by a part of its name."""
        sources = (path for folder in ("bench", "fuzz", "tests")
                   for path in (self.project / folder).rglob("*") if path.suffix in (".cpp", ".h", ".json", ".txt"))
        return any(word in path.read_text(encoding="utf-8") for path in sources)

    def cmake_faults(self, arguments):
        option = ""
        for argument in arguments:
            if argument.startswith("-"):
                option = argument
                if argument.startswith("-D") and not argument.startswith("-DCMAKE_"):
                    name = argument[2:].split("=")[0].split(":")[0]
                    if name not in self.cmake:
                        yield f"cmake: nothing reads {name}"
                if "=" in argument:
                    yield from self.path_faults([argument.split("=", 1)[1]])
            elif option == "--preset" and argument not in self.presets:
                yield f"there is no preset {argument}"
            elif option == "--target" and not self.is_target(argument):
                yield f"there is no target {argument}"

    def ctest_faults(self, arguments):
        files = self.build.rglob("CTestTestfile.cmake")
        tests = [name for file in files
                 for name in re.findall(r"^add_test\(\W*(\w+)", file.read_text(encoding="utf-8"), re.M)]
        for option, argument in zip(arguments, arguments[1:]):
            if option == "-R" and not any(re.search(argument, test) for test in tests):
                yield f"ctest has no test that fits {argument}"

    def is_target(self, name):
        if PLACEHOLDER.search(name):
            return True
        if name.startswith("run-"):
            name = name.removeprefix("run-")
        return (re.search(rf"[(\s\"/]{re.escape(name)}[\s)\"]", self.cmake) is not None or
                any(name == f"reference_{path.stem}"
                    for path in (self.project / "examples/reference").glob("*.c*")))

    def path_faults(self, words):
        for word in words:
            word = word.removeprefix("./")
            parts = word.rstrip("/").split("/")
            if PLACEHOLDER.search(word) or " " in word:
                continue
            if parts[0] == "build" and len(parts) > 2:
                if parts[1] not in self.presets:
                    yield f"there is no preset {parts[1]}"
                elif "." not in parts[-1] and not (self.build / "/".join(parts[2:])).exists() and \
                        not self.is_target(parts[-1]):
                    yield f"nothing builds {word}"
            elif parts[0] in TREE_FOLDERS and len(parts) > 1 and not (self.project / word).exists():
                yield f"there is no {word}"
