"""What the checks of the Markdown files share: the files, their fenced blocks, their prose."""
import re
import subprocess

FENCE = re.compile(r"^(\s*)```(.*)$")
MARKER = re.compile(r"^<!-- (shown by|tested by|repeated by): (.+) -->$")


class Block:
    """A fenced block: its language, its text, and the marker that stands on the line before it."""

    def __init__(self, path, line, language, marker):
        self.path, self.line, self.language, self.marker = path, line, language, marker
        self.lines = []

    @property
    def text(self):
        return "\n".join(self.lines) + "\n"

    def place(self):
        return f"{self.path}:{self.line}"


def files(project):
    """Every Markdown file of the tree; outside a checkout, as in an archive, those that are there."""
    listed = subprocess.run(["git", "-C", project, "ls-files", "*.md"], capture_output=True, text=True)
    if listed.returncode == 0 and listed.stdout:
        return [project / name for name in listed.stdout.split()]
    return [path for path in project.rglob("*.md") if "build" not in path.relative_to(project).parts]


def split(project, path):
    """The file's blocks, and its prose as (number, line) with the blocks left out."""
    blocks, prose, block, before = [], [], None, ""
    name = path.relative_to(project)
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        fence = FENCE.match(line)
        if block is None and fence:
            block = Block(name, number, fence.group(2).strip(), MARKER.match(before.strip()))
        elif block is not None and fence and not fence.group(2).strip():
            blocks.append(block)
            block = None
        elif block is not None:
            block.lines.append(line)
        else:
            prose.append((number, line))
        before = line if line.strip() else before
    if block is not None:
        raise SystemExit(f"{block.place()}: the block does not end")
    return blocks, prose
