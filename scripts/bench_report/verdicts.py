"""Judges the results by bench/goals.json."""
import dataclasses
import math
import statistics

OURS = "zebcomn"

# An operation whose cost grows with the input has the power 1; the larger a working set, the dearer
# its memory. What a file system costs more for many files shows in the floor too.
MOST_EXPONENT = 1.15
FLOOR_MARGIN = 0.05


@dataclasses.dataclass
class Row:
    """One line of a table: an operation with one parameter."""
    operation: str
    title: str
    ratios: dict        # by subject: our time over its time
    goals: list         # texts
    verdict: str = ""
    failures: list = dataclasses.field(default_factory=list)


def ratio_text(ratio):
    if ratio is None:
        return ""
    if ratio < 0.1:
        return f"{ratio:.3f}"
    return f"{ratio:.2f}" if ratio < 10 else f"{ratio:,.0f}"


def param_text(param):
    """threads:4 as "4 threads"; a parameter without a number stays as it is."""
    words = []
    for word in param.split("/"):
        name, colon, number = word.partition(":")
        if not colon:
            words.append(name.replace("_", " "))
        elif number == "1" and name == "threads":
            words.append("1 thread")
        else:
            words.append(f"{int(number):,} {name}" if number.isdigit() else f"{name} {number}")
    return ", ".join(words)


def rows_of(operation, goals, results):
    """The lines of one operation; none when it was not run."""
    rows = []
    for param in results.params_of(operation):
        ours = results.time_of(operation, OURS, param)
        if ours is None:
            continue
        ratios = {}
        for subject in results.subjects() - {OURS}:
            theirs = results.time_of(operation, subject, param)
            if theirs:
                ratios[subject] = ours / theirs
        title = goals["title"] + (f", {param_text(param)}" if param else "")
        # A size that only we were measured with is there for the growth.
        if not ratios and "growth" in goals:
            continue
        row = Row(operation, title, ratios, [])
        _judge(row, goals, param)
        rows.append(row)
    return rows + growth_rows(operation, goals, results)


def growth_rows(operation, goals, results):
    """The line that tells how the cost grows over the sizes that the operation was run with."""
    parameter = goals.get("growth")
    ours = _points(operation, OURS, parameter, results)
    if len(ours) < 3:
        return []
    exponent = _exponent(ours)
    most = MOST_EXPONENT
    words = f"grows as its input to the power of {exponent:.2f}, {ours[0][0]:,} to {ours[-1][0]:,}"
    floor = _points(operation, "floor", parameter, results)
    if len(floor) == len(ours):
        most = max(most, _exponent(floor) + FLOOR_MARGIN)
        words += f" (the floor: {_exponent(floor):.2f})"
    row = Row(operation, f"{goals['title']}: growth with {parameter}", {}, [f"≤ {most:.2f}"], words)
    if exponent > most:
        row.verdict = f"**missed**: {words}"
        row.failures.append(f"{row.title}: power of {exponent:.2f}, goal {most:.2f}")
    return [row]


def _points(operation, subject, parameter, results):
    """(size, time), by size."""
    points = []
    for param in results.params_of(operation):
        name, _, number = param.partition(":")
        time = results.time_of(operation, subject, param)
        if name == parameter and time:
            points.append((int(number), time))
    return sorted(points)


def _exponent(points):
    """The slope of the straight line through the logarithms, by least squares."""
    xs = [math.log(size) for size, _ in points]
    ys = [math.log(time) for _, time in points]
    x_mean, y_mean = statistics.fmean(xs), statistics.fmean(ys)
    return (sum((x - x_mean) * (y - y_mean) for x, y in zip(xs, ys)) /
            sum((x - x_mean) ** 2 for x in xs))


def _judge(row, goals, param):
    words = []
    for goal in goals.get("goals", []):
        if "param" in goal and goal["param"] != param:
            continue
        row.goals.append(_goal_text(goal))
        word = _judge_goal(row, goal)
        if word not in words:
            words.append(word)
    words += [goals.get("param_notes", {}).get(param, ""), goals.get("note", "")]
    row.verdict = "; ".join(word for word in words if word)


def _goal_text(goal):
    against = "" if goal["against"] == "floor" else f" of {goal['against']}"
    return f"≤ {goal['most']:.2f}{against}"


def _judge_goal(row, goal):
    """"held", or what is to be said of a missed goal."""
    ratio = row.ratios.get(goal["against"])
    if ratio is None:
        return f"not compared with {goal['against']}"
    if ratio <= goal["most"]:
        return "held"
    what = f"{row.title}: {ratio_text(ratio)} of {goal['against']}, goal {goal['most']:.2f}"
    if "reason" not in goal:
        row.failures.append(f"{what}, and no reason is given")
        return "**missed**"
    if ratio > goal["reason_holds_to"]:
        row.failures.append(f"{what}, and its reason explains {goal['reason_holds_to']} at most")
        return f"**missed by more than this explains**: {goal['reason']}"
    return f"missed: {goal['reason']}"


def fact_rows(group, goals, results):
    """(title, figure, goal, verdict, failure) for each single figure of a group."""
    rows = []
    for name, fact in goals["facts"].items():
        if fact["group"] != group or name not in results.facts:
            continue
        value = results.facts[name]
        figure = f"{number_text(value)} {fact.get('unit', '')}".strip()
        most = fact.get("most")
        goal = "" if most is None else f"≤ {number_text(most)} {fact.get('unit', '')}".strip()
        verdict, failure = _judge_fact(fact, value)
        rows.append((fact["title"], figure, goal, verdict, failure))
    return rows


def number_text(value):
    if isinstance(value, str):
        return value
    return f"{value:,}" if isinstance(value, int) else f"{value:,.2f}"


def _judge_fact(fact, value):
    note = fact.get("note", "")
    if "most" not in fact:
        return note, ""
    if value <= fact["most"]:
        return "; ".join(filter(None, ["held", note])), ""
    if "reason" in fact and value <= fact["reason_holds_to"]:
        return f"missed: {fact['reason']}", ""
    return "**missed**", f"{fact['title']}: {number_text(value)}, goal {number_text(fact['most'])}"
