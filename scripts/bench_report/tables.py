"""Writes the generated parts of docs/performance.md."""
import re
import subprocess

import verdicts


def table(head, rows):
    """A Markdown table."""
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def group_table(rows, subjects):
    """The operations of one group beside the floor and every peer that has one of them."""
    present = [name for name in subjects if any(name in row.ratios for row in rows)]
    with_floor = [verdicts.FLOOR] if any(verdicts.FLOOR in row.ratios for row in rows) else []
    head = ["Operation"] + ["ours / floor"] * len(with_floor)
    head += [f"/ {subjects[name]['title']}" for name in present]
    body = []
    for row in rows:
        ratios = [verdicts.ratio_text(row.ratios.get(name)) for name in with_floor + present]
        body.append([row.title, *ratios, ", ".join(row.goals), row.verdict])
    return table(head + ["Goal", "Verdict"], body)


def growth_table(growths):
    """How the costs of one group's operations grow with their sizes."""
    body = [[growth.title, growth.sizes, _pair(growth.powers), _pair(growth.floor_powers),
             "≤ " + _pair(growth.goals), "**missed**" if growth.failures else "held"]
            for growth in growths]
    return table(["Growth", "Sizes", "Power: all, largest two", "The floor's", "Goal", "Verdict"], body)


def _pair(powers):
    return ", ".join(f"{power:.2f}" for power in powers or ())


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
        if "package" not in subject:
            continue
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
