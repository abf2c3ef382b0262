"""Reads what the benchmark programs and the measuring scripts wrote, and takes medians."""
import collections
import json
import pathlib
import statistics

NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}

# What Google Benchmark appends to a name and is no parameter of ours.
SUFFIXES = ("real_time", "manual_time", "process_time")
OPTION_PREFIXES = ("min_time:", "min_warmup_time:", "iterations:", "repeats:")

# Of fewer repetitions no spread is told.
FEWEST_FOR_SPREAD = 5

# How a benchmark says that the machine refuses what it needs.
LEFT_OUT = "left out: "

Key = collections.namedtuple("Key", "operation subject param")


class Results:
    """Medians by Key in nanoseconds, how wide the repetitions lie, and single facts by name."""

    def __init__(self):
        self.medians = {}
        self.repetitions = {}
        self.spreads = {}  # The middle half of the repetitions, as a part of their median.
        self.facts = {}
        self.errors = []
        self.left_out = {}  # By operation: why the machine does not let it run.

    def time_of(self, operation, subject, param):
        return self.medians.get(Key(operation, subject, param))

    def params_of(self, operation):
        """The parameters that the operation was run with, in the order of their numbers."""
        params = {key.param for key in self.medians if key.operation == operation}
        return sorted(params, key=lambda param: [_order(word) for word in param.split("/")])

    def most_repetitions(self):
        return max(self.repetitions.values(), default=0)

    def subjects(self):
        return {key.subject for key in self.medians}


def _order(word):
    name, _, number = word.partition(":")
    return (name, int(number) if number.isdigit() else 0, number)


def key_of(name):
    """The Key in a benchmark's name, OPERATION/SUBJECT[/PARAM...]."""
    words = [word for word in name.split("/")
             if word not in SUFFIXES and not word.startswith(OPTION_PREFIXES)]
    if len(words) < 2:
        raise ValueError(f"the benchmark \"{name}\" is not named OPERATION/SUBJECT")
    return Key(words[0], words[1], "/".join(words[2:]))


def counts_clock(name):
    """Whether the clock's time is meant: the name says so, or several threads share the work."""
    return any(word in ("real_time", "manual_time") or word.startswith("threads:")
               for word in name.split("/"))


def load(folder):
    """All results of one run."""
    results = Results()
    times = collections.defaultdict(list)
    for path in sorted(pathlib.Path(folder).glob("*.json")):
        data = json.loads(path.read_text())
        results.facts.update(data.get("facts", {}))
        for entry in data.get("benchmarks", []):
            _add(entry, times, results)
    for key, values in times.items():
        results.medians[key] = statistics.median(values)
        results.repetitions[key] = len(values)
        if len(values) >= FEWEST_FOR_SPREAD:
            low, _, high = statistics.quantiles(values, n=4)
            results.spreads[key] = (high - low) / results.medians[key]
    return results


def _add(entry, times, results):
    message = entry.get("error_message", "failed")
    if entry.get("error_occurred") and message.startswith(LEFT_OUT):
        results.left_out[key_of(entry["name"]).operation] = message[len(LEFT_OUT):]
    elif entry.get("error_occurred"):
        results.errors.append(f"{entry['name']}: {message}")
    elif entry.get("run_type") == "iteration":
        name = entry.get("run_name", entry["name"])
        time = entry["real_time" if counts_clock(name) else "cpu_time"]
        times[key_of(name)].append(time * NANOSECONDS[entry.get("time_unit", "ns")])
