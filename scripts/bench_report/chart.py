"""Draws docs/performance.svg: our time over the floor's as a bar, and over each peer's as a dot."""
import math
from xml.sax.saxutils import escape

import verdicts

WIDTH = 1200
LABEL_WIDTH = 372
FLOOR_LEFT, FLOOR_RIGHT = 382, 662
PEERS_LEFT, PEERS_RIGHT = 732, 1170
ROW_HEIGHT = 20
HEAD_HEIGHT = 118
GROUP_HEIGHT = 28
MOST_OF_FLOOR = 2.0     # Longer bars are cut there; the figure beside them tells.
FEWEST_OF_PEER, MOST_OF_PEER = 0.01, 100.0     # Dots beyond stand at the edge.
PEER_COLOURS = ["#d1495b", "#edae49", "#00798c", "#7b5ea7", "#5a8f29", "#e07a2f", "#3066be",
                "#a05c7b", "#6d6875", "#1b998b", "#b5651d", "#556b2f", "#8d99ae", "#2b2d42"]
STYLE = """
  .page { fill: #ffffff; } .text { fill: #1f2328; } .quiet { fill: #59636e; }
  .grid { stroke: #d1d9e0; } .one { stroke: #1f2328; }
  .held { fill: #2f6f9f; } .free { fill: #9aa7b2; } .reason { fill: #c07a1c; }
  .failed { fill: #c0392b; }
  .goal { stroke: #1f2328; stroke-width: 2; }
  text { font: 12px sans-serif; } .title { font: bold 15px sans-serif; }
  .group { font: bold 12px sans-serif; }
  @media (prefers-color-scheme: dark) {
    .page { fill: #0d1117; } .text { fill: #e6edf3; } .quiet { fill: #9198a1; }
    .grid { stroke: #3d444d; } .one { stroke: #e6edf3; }
    .held { fill: #5aa5d8; } .free { fill: #6b7681; } .reason { fill: #e0a040; }
    .failed { fill: #f07167; }
    .goal { stroke: #e6edf3; }
  }"""


def _text(x, y, words, kind="text", anchor="start"):
    words = escape(words.replace("`", ""))
    return f'<text class="{kind}" x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}">{words}</text>'


def _line(x1, y1, x2, y2, kind):
    return f'<line class="{kind}" x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}"/>'


def _rectangle(x, y, width, kind):
    return f'<rect class="{kind}" x="{x:.1f}" y="{y}" width="{width:.1f}" height="12"/>'


def _dot(x, y, colour, tip):
    return (f'<circle cx="{x:.1f}" cy="{y}" r="4" fill="{colour}" fill-opacity="0.85">'
            f'<title>{escape(tip)}</title></circle>')


def _floor_x(ratio):
    return FLOOR_LEFT + min(ratio, MOST_OF_FLOOR) / MOST_OF_FLOOR * (FLOOR_RIGHT - FLOOR_LEFT)


def _peer_x(ratio):
    ratio = min(max(ratio, FEWEST_OF_PEER), MOST_OF_PEER)
    share = math.log(ratio / FEWEST_OF_PEER) / math.log(MOST_OF_PEER / FEWEST_OF_PEER)
    return PEERS_LEFT + share * (PEERS_RIGHT - PEERS_LEFT)


def _kind(row):
    if row.failures:
        return "failed"
    if row.floor_goal is None:
        return "free"
    return "reason" if row.verdict.startswith("missed") else "held"


def _bar(row, y):
    ratio = row.ratios[verdicts.FLOOR]
    parts = [_rectangle(FLOOR_LEFT, y + 4, _floor_x(ratio) - FLOOR_LEFT, _kind(row)),
             _text(max(_floor_x(ratio), _floor_x(row.floor_goal or 0)) + 6, y + 14,
                   verdicts.ratio_text(ratio) + (" →" if ratio > MOST_OF_FLOOR else ""), "quiet")]
    if row.floor_goal:
        goal = _floor_x(row.floor_goal)
        parts.append(_line(goal, y + 2, goal, y + 18, "goal"))
    return parts


def _row(row, y, peers):
    parts = [_text(LABEL_WIDTH, y + 14, row.title, anchor="end")]
    if verdicts.FLOOR in row.ratios:
        parts += _bar(row, y)
    for name, (title, colour) in peers.items():
        if name in row.ratios:
            ratio = row.ratios[name]
            parts.append(_dot(_peer_x(ratio), y + 10, colour,
                              f"{title}: {verdicts.ratio_text(ratio)}"))
    return parts


def _legend(peers):
    parts, x = [], 16
    for title, colour in peers.values():
        parts += [_dot(x + 4, 66, colour, title), _text(x + 12, 70, title, "quiet")]
        x += 34 + 6.6 * len(title.replace("`", ""))
    return parts


def _axis(x_of, ticks, height):
    parts = []
    for tick in ticks:
        x = x_of(tick)
        parts.append(_line(x, HEAD_HEIGHT, x, height - 8, "one" if tick == 1 else "grid"))
        parts.append(_text(x, HEAD_HEIGHT - 6, f"{tick:g}", "quiet", "middle"))
    return parts


def _head(peers, height):
    return [f'<rect class="page" width="{WIDTH}" height="{height}"/>',
            _text(16, 26, "Our time over the floor's, and over each peer's", "text title"),
            _text(16, 46, "Less is better. Floor: only the calls that the described behaviour "
                  "requires; upright mark = goal. Grey bar: no goal; orange: missed, with a reason. "
                  "Dots beyond the scale stand at its edge.",
                  "quiet"),
            *_legend(peers),
            _text(FLOOR_LEFT, 94, "over the floor", "text group"),
            _text(PEERS_LEFT, 94, "over the peers, logarithmic", "text group"),
            *_axis(_floor_x, [0, 0.5, 1, 1.5, 2], height),
            *_axis(_peer_x, [0.01, 0.1, 1, 10, 100], height)]


def draw(groups, subjects):
    """The chart of [(title, rows)]."""
    groups = [(title, [row for row in rows if row.ratios]) for title, rows in groups]
    groups = [group for group in groups if group[1]]
    shown = {name for _, rows in groups for row in rows for name in row.ratios}
    named = [(name, subject["title"]) for name, subject in subjects.items()
             if name in shown and "package" in subject]
    peers = {name: (title, PEER_COLOURS[i % len(PEER_COLOURS)])
             for i, (name, title) in enumerate(named)}
    height = HEAD_HEIGHT + sum(GROUP_HEIGHT + ROW_HEIGHT * len(rows) for _, rows in groups) + 16
    parts = _head(peers, height)
    y = HEAD_HEIGHT
    for title, rows in groups:
        parts.append(_text(16, y + 20, title, "text group"))
        y += GROUP_HEIGHT
        for row in rows:
            parts += _row(row, y, peers)
            y += ROW_HEIGHT
    body = "\n".join(parts)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" '
            f'width="{WIDTH}" height="{height}" role="img" '
            f'aria-label="Ratio of each operation to its floor and to its peers">\n'
            f'<style>{STYLE}\n</style>\n{body}\n</svg>\n')
