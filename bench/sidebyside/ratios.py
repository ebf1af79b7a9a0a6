"""Ratios of one run against those of an earlier one. A ratio is a time, or a size, by another one of the same run: it
holds from machine to machine, and smaller is better."""
import json

TOLERANCE = 0.15


def regressions(before, now, tolerance=TOLERANCE):
    """What got worse by more than `tolerance`, a sentence each; a ratio that is no longer measured is one."""
    found = []
    for name, old in before.items():
        if name not in now:
            found.append(f"{name}: {old:.3f} before, not measured any more")
        elif now[name] > old * (1 + tolerance):
            found.append(f"{name}: {old:.3f} before, {now[name]:.3f} now: {100 * (now[name] / old - 1):.0f} % more")
    return found


def best_of(first, second):
    """The smaller of each ratio: a regression shows in every measurement, a disturbance of the machine does not."""
    return {name: min(value, first.get(name, value)) for name, value in second.items()}


def save(path, ratios):
    path.write_text(json.dumps({name: round(value, 3) for name, value in ratios.items()}, indent=2) + "\n")


def load(path):
    return json.loads(path.read_text())
