"""Runs tools over machines, looks whether each answers rightly, and keeps what the runs took."""
import random
import statistics
import sys
from collections import namedtuple

from . import forms, peers, world
from .measure import CUT_OFF

Options = namedtuple("Options", "machines limit budget")

# Of a tool and a size: `problem` says why there are no figures, or that the tool answers wrongly.
Row = namedtuple("Row", "tool size problem isWrong runs")

PROOF_SIZE = 20


class World:
    """The rules of one size and machines for them, written in all forms."""

    def __init__(self, folder, size, isAnonymous):
        self.folder, self.size, self.isAnonymous = folder, size, isAnonymous
        folder.mkdir()
        self.rules = world.anonymous_rules(size) if isAnonymous else world.rules_of(size)
        forms.write_script(folder / "script.xml", self.rules, has_places=not isAnonymous)
        forms.write_json(folder / "rules.json", self.rules)
        if not isAnonymous:
            forms.write_json_schema(folder / "schema.json", self.rules)
            forms.write_relax_ng(folder / "grammar.rng", self.rules)

    def place(self, seed, fault=None):
        path = self.folder / f"machine-{seed}-{fault or 'good'}".replace(" ", "-")
        if self.isAnonymous:
            machine = world.anonymous_machine(self.rules, seed, fault)
        else:
            machine = world.broken_machine(self.rules, seed, fault) if fault else world.good_machine(self.rules, seed)
        forms.write_json(path.with_suffix(".json"), machine)
        forms.write_recording(path.with_suffix(".xml"), machine)
        return peers.Place(self.folder, path)


def median(runs, what):
    return statistics.median(getattr(run, what) for run in runs)


class Trial:
    """One tool in one world."""

    def __init__(self, timer, tool):
        self.timer, self.tool = timer, tool
        self.runs, self.problem, self.isWrong = [], "", False

    def spent(self):
        return sum(run.seconds for run in self.runs)

    def check(self, place, fault):
        """One run; a problem when the answer is wrong or did not come in time."""
        done = self.timer.run(self.tool.command(place), peers.environment_of(self.tool, place))
        verdict = peers.verdict_of(self.tool, done.status, done.output)
        if done.status == CUT_OFF:
            self.problem = f"took more than {self.timer.limit} s"
        elif verdict is None:
            self.set_wrong(f"neither passes nor fails a machine ({fault or 'good'}): status {done.status}", done.output)
        elif verdict == bool(fault):
            self.set_wrong(f"passes a broken machine ({fault})" if fault else "fails a good machine", done.output)
        else:
            self.runs.append(done)

    def set_wrong(self, problem, output):
        self.problem, self.isWrong = problem, True
        print(f"{self.tool.name} {problem}:\n{output[-600:]}", file=sys.stderr)


def prove(timer, tools, folder):
    """The tools that answer rightly on a small machine with each fault, and rows for those that do not."""
    small = World(folder / "proof", PROOF_SIZE, isAnonymous=False)
    places = [(fault, small.place(seed, fault)) for seed, fault in enumerate((None, *world.FAULTS))]
    sound, rows = [], []
    for tool in tools:
        trial = Trial(timer, tool)
        for fault, place in places:
            if not trial.problem:
                trial.check(place, fault)
        if trial.problem:
            rows.append(Row(tool, PROOF_SIZE, trial.problem, trial.isWrong, []))
        else:
            sound.append(tool)
    return sound, rows


def measure(timer, tools, folder, size, options, isAnonymous=False):
    """A row of figures for each tool: the tools take turns on machine after machine, of which the second is broken.
    After the first two, a tool that has used up its budget gets no more turns."""
    here = World(folder / f"{'anonymous' if isAnonymous else 'placed'}-{size}", size, isAnonymous)
    # Without places a number that misses one rule may meet another, so there it is a text.
    fault = "pattern" if isAnonymous else random.Random(size).choice(("pattern", "too low", "too high"))
    trials = [Trial(timer, tool) for tool in tools]
    for number in range(options.machines):
        broken = fault if number == 1 else None
        place = here.place(number, broken)
        for trial in trials:
            if not trial.problem and (number < 2 or trial.spent() < options.budget):
                trial.check(place, broken)
        print(f"  {size} devices: machine {number + 1} of {options.machines} done", file=sys.stderr, flush=True)
    return [Row(trial.tool, size, trial.problem, trial.isWrong, trial.runs) for trial in trials]
