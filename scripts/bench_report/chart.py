"""Draws docs/performance.svg: our time over the floor's, a bar for each operation."""
import math
from xml.sax.saxutils import escape

import verdicts

WIDTH = 960
LABEL_WIDTH = 390
RIGHT_MARGIN = 70
ROW_HEIGHT = 20
HEAD_HEIGHT = 74
GROUP_HEIGHT = 28
STYLE = """
  .page { fill: #ffffff; } .text { fill: #1f2328; } .quiet { fill: #59636e; }
  .grid { stroke: #d1d9e0; } .floor { stroke: #1f2328; }
  .held { fill: #2f6f9f; } .reason { fill: #c07a1c; } .failed { fill: #c0392b; }
  .goal { stroke: #1f2328; stroke-width: 2; }
  text { font: 12px sans-serif; } .title { font: bold 15px sans-serif; }
  .group { font: bold 12px sans-serif; }
  @media (prefers-color-scheme: dark) {
    .page { fill: #0d1117; } .text { fill: #e6edf3; } .quiet { fill: #9198a1; }
    .grid { stroke: #3d444d; } .floor { stroke: #e6edf3; }
    .held { fill: #5aa5d8; } .reason { fill: #e0a040; } .failed { fill: #f07167; }
    .goal { stroke: #e6edf3; }
  }"""


class Scale:
    """A logarithmic scale from ratios to x."""

    def __init__(self, ratios):
        self.low = min([0.5, *ratios]) / 1.05
        self.high = max([2.0, *ratios]) * 1.05
        self.span = math.log(self.high / self.low)

    def x(self, ratio):
        return LABEL_WIDTH + math.log(ratio / self.low) / self.span * (
            WIDTH - LABEL_WIDTH - RIGHT_MARGIN)

    def ticks(self):
        marks = [m * 10.0 ** e for e in range(-4, 7) for m in (1, 2, 5)]
        return [mark for mark in marks if self.low <= mark <= self.high]


def _text(x, y, words, kind="text", anchor="start"):
    return f'<text class="{kind}" x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}">{escape(words)}</text>'


def _line(x1, y1, x2, y2, kind):
    return f'<line class="{kind}" x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}"/>'


def _kind(row):
    if row.failures:
        return "failed"
    return "reason" if row.verdict.startswith("missed") else "held"


def _bar(row, y, scale, floor_goal):
    ratio = row.ratios["floor"]
    left, right = sorted((scale.x(1.0), scale.x(ratio)))
    figure = max(right, scale.x(floor_goal or 1.0)) + 6
    parts = [
        _text(LABEL_WIDTH - 8, y + 14, row.title, anchor="end"),
        f'<rect class="{_kind(row)}" x="{left:.1f}" y="{y + 4}" '
        f'width="{max(right - left, 1.5):.1f}" height="12"/>',
        _text(figure, y + 14, verdicts.ratio_text(ratio), "quiet")]
    if floor_goal:
        goal = scale.x(floor_goal)
        parts.append(_line(goal, y + 2, goal, y + 18, "goal"))
    return parts


def _head(scale, height):
    parts = [f'<rect class="page" width="{WIDTH}" height="{height}"/>',
             _text(16, 26, "Time of each operation over the floor's", "text title"),
             _text(16, 46, "1 = only the calls that the described behaviour requires; upright mark = goal; "
                   "logarithmic scale", "quiet")]
    for tick in scale.ticks():
        x = scale.x(tick)
        parts.append(_line(x, HEAD_HEIGHT, x, height - 8, "floor" if tick == 1 else "grid"))
        parts.append(_text(x, HEAD_HEIGHT - 6, f"{tick:g}", "quiet", "middle"))
    return parts


def _fits(row):
    return "floor" in row.ratios


def draw(groups):
    """The chart of [(title, rows, {title of a row: its goal against the floor})]."""
    groups = [(title, [row for row in rows if _fits(row)], goals) for title, rows, goals in groups]
    groups = [group for group in groups if group[1]]
    ratios = [row.ratios["floor"] for _, rows, _ in groups for row in rows]
    scale = Scale(ratios + [goal for _, _, goals in groups for goal in goals.values()])
    height = HEAD_HEIGHT + sum(GROUP_HEIGHT + ROW_HEIGHT * len(rows) for _, rows, _ in groups) + 16
    parts = _head(scale, height)
    y = HEAD_HEIGHT
    for title, rows, goals in groups:
        parts.append(_text(16, y + 20, title, "text group"))
        y += GROUP_HEIGHT
        for row in rows:
            parts += _bar(row, y, scale, goals.get(row.title))
            y += ROW_HEIGHT
    body = "\n".join(parts)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" '
            f'width="{WIDTH}" height="{height}" role="img" '
            f'aria-label="Ratio of each operation to its floor">\n'
            f'<style>{STYLE}\n</style>\n{body}\n</svg>\n')
