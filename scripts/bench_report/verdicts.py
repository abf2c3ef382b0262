"""Judges the results by bench/goals.json."""
import dataclasses
import math
import statistics

OURS = "zebcomn"
FLOOR = "floor"

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
    floor_goal: float = None


@dataclasses.dataclass
class Growth:
    """How the cost of one operation grows with the size of its input, as powers of the size: over
    all sizes, and over the two largest, where no constant part hides anything."""
    title: str
    sizes: str
    powers: tuple
    floor_powers: tuple     # None where the floor was not measured with the same sizes

    @property
    def goals(self):
        floor = self.floor_powers or (0, 0)
        return [max(MOST_EXPONENT, power + FLOOR_MARGIN) for power in floor]

    @property
    def failures(self):
        return [f"{self.title}: grows to the power of {power:.2f}, goal {goal:.2f}"
                for power, goal in zip(self.powers, self.goals) if power > goal]


def ratio_text(ratio):
    if ratio is None:
        return ""
    if ratio < 0.1:
        return f"{ratio:.3f}" if ratio >= 0.001 else "< 0.001"
    return f"{ratio:.2f}" if ratio < 10 else f"{ratio:,.0f}"


def size_text(name, number):
    """So many of a parameter's unit, as in "3 addresses"; bytes in round units."""
    for unit, bytes_of_unit in (("MiB", 1 << 20), ("KiB", 1 << 10)):
        if name == "bytes" and number >= bytes_of_unit and number % bytes_of_unit == 0:
            return f"{number // bytes_of_unit:,} {unit}"
    return f"{number:,} {name[:-1] if number == 1 else name}"


def param_text(param):
    """threads:4 as "4 threads"; a parameter without a number stays as it is."""
    words = []
    for word in param.split("/"):
        name, _, number = word.partition(":")
        words.append(size_text(name, int(number)) if number.isdigit() else word.replace("_", " "))
    return ", ".join(words)


def rows_of(operation, goals, results):
    """The lines of one operation; none when it was not run."""
    rows = []
    description = goals["operations"][operation]
    for param in results.params_of(operation):
        ours = results.time_of(operation, OURS, param)
        if ours is None:
            continue
        ratios = {}
        for subject in results.subjects() - {OURS}:
            theirs = results.time_of(operation, subject, param)
            if theirs:
                ratios[subject] = ours / theirs
        # A size that only we were measured with is there for the growth.
        if not ratios and "growth" in description:
            continue
        title = description["title"] + (f", {param_text(param)}" if param else "")
        row = Row(operation, title, ratios, [])
        _judge(row, description, param, goals["subjects"])
        rows.append(row)
    return rows


def growth_of(operation, description, results):
    """How the cost grows over the sizes that the operation was run with; None without three."""
    parameter = description.get("growth")
    ours = _points(operation, OURS, parameter, results)
    if len(ours) < 3:
        return None
    floor = _points(operation, FLOOR, parameter, results)
    floor_powers = _powers(floor) if len(floor) == len(ours) else None
    sizes = f"{size_text(parameter, ours[0][0])} to {size_text(parameter, ours[-1][0])}"
    return Growth(description["title"], sizes, _powers(ours), floor_powers)


def _powers(points):
    return _exponent(points), _exponent(points[-2:])


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


def _judge(row, description, param, subjects):
    words = []
    for goal in description.get("goals", []):
        if "param" in goal and goal["param"] != param:
            continue
        if goal["against"] == FLOOR:
            row.floor_goal = goal["most"]
        row.goals.append(_goal_text(goal, subjects))
        word = _judge_goal(row, goal, subjects)
        if word not in words:
            words.append(word)
    words += [description.get("param_notes", {}).get(param, ""), description.get("note", "")]
    row.verdict = "; ".join(word for word in words if word)


def _name(subject, subjects):
    return "the floor" if subject == FLOOR else subjects[subject]["title"]


def _goal_text(goal, subjects):
    against = "" if goal["against"] == FLOOR else f" of {_name(goal['against'], subjects)}"
    return f"≤ {goal['most']:.2f}{against}"


def _judge_goal(row, goal, subjects):
    """"held", or what is to be said of a missed goal."""
    name = _name(goal["against"], subjects)
    ratio = row.ratios.get(goal["against"])
    if ratio is None:
        return f"not compared with {name}"
    if ratio <= goal["most"]:
        return "held"
    what = f"{row.title}: {ratio_text(ratio)} of {name}, goal {goal['most']:.2f}"
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
        figure = _with_unit(value, fact)
        beside = fact.get("beside")
        if beside and beside["fact"] in results.facts:
            figure = f"{_with_unit(results.facts[beside['fact']], beside)}, {figure}"
        most = fact.get("most")
        goal = "" if most is None else f"≤ {_with_unit(most, fact)}"
        verdict, failure = _judge_fact(fact, value)
        rows.append((fact["title"], figure, goal, verdict, failure))
    return rows


def fact_names(goals):
    """The names of all single figures that goals.json knows."""
    facts = goals["facts"].items()
    return {name for name, _ in facts} | {
        fact["beside"]["fact"] for _, fact in facts if "beside" in fact}


def _with_unit(value, fact):
    return f"{number_text(value)} {fact.get('unit', '')}".strip()


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
