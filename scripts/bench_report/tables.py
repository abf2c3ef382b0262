"""Writes the generated parts of docs/performance.md."""
import re
import subprocess

import verdicts

FLOOR = "floor"


def table(head, rows):
    """A Markdown table; the first column is text, so to the left, and the others as they fit."""
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def group_table(rows, subjects):
    """The operations of one group beside the floor and every peer that has one of them."""
    present = [name for name in subjects if any(name in row.ratios for row in rows)]
    head = ["Operation", "ours / floor"] + [f"/ {subjects[name]['title']}" for name in present]
    body = []
    for row in rows:
        ratios = [verdicts.ratio_text(row.ratios.get(name)) for name in [FLOOR, *present]]
        body.append([row.title, *ratios, ", ".join(row.goals), row.verdict])
    return table(head + ["Goal", "Verdict"], body)


def fact_table(rows):
    return table(["What", "Figure", "Goal", "Verdict"], [list(row[:4]) for row in rows])


def debian_version(package):
    done = subprocess.run(["dpkg-query", "-W", "-f=${Version}", package],
                          capture_output=True, text=True, check=False)
    return done.stdout.strip() or "unknown"


def subject_table(subjects, results):
    present = results.subjects()
    rows = []
    for name, subject in subjects.items():
        version = debian_version(subject["package"]) if name in present else "not present"
        rows.append([subject["title"], f"`{subject['package']}`", version])
    return table(["Peer", "Debian package", "Version"], rows)


def fill(document, parts):
    """Puts each part between its two markers; a marker without a part is an error."""
    def replace(match):
        name = match.group(1)
        if name not in parts:
            raise SystemExit(f"docs/performance.md: there is no generated part \"{name}\"")
        return f"<!-- generated: {name} -->\n{parts[name]}\n<!-- end -->"
    pattern = r"<!-- generated: ([a-z-]+) -->\n.*?<!-- end -->"
    return re.sub(pattern, replace, document, flags=re.DOTALL)
