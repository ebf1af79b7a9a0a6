"""Runs commands and says what they took, by way of the program `timed`."""
import os
import subprocess
import sys
import tempfile
from collections import namedtuple
from pathlib import Path

CUT_OFF = -1

Run = namedtuple("Run", "status seconds cpu memory output")


def find_programs(build, *names):
    """The paths of programs of a build; ends the script when one is missing."""
    paths = [str((build / "bin" / name).resolve()) for name in names]
    for path in paths:
        if not Path(path).is_file():
            sys.exit(f"{path} is missing: build it with tools/buildPreset bench, or say where it is with --build")
    return paths


def both_ends(file, length=2000):
    """The beginning of a file and its end: some tools say their verdict first, some last."""
    size = file.seek(0, os.SEEK_END)
    file.seek(0)
    text = file.read(length)
    if size > length:
        file.seek(max(length, size - length))
        text += (b"\n...\n" if size > 2 * length else b"") + file.read()
    return text.decode(errors="replace")


class Timer:
    def __init__(self, build, limit=600):
        self.timed, = find_programs(build, "timed")
        self.limit = limit

    def run(self, command, environment=None):
        """One run: exit status, seconds, processor time, peak memory in bytes, and what it wrote, without the middle of
        what is long."""
        with tempfile.NamedTemporaryFile("r") as result, tempfile.TemporaryFile("w+b") as output:
            subprocess.run([self.timed, str(self.limit), result.name, *command], env=environment, check=True,
                           stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.STDOUT)
            status, seconds, cpu, memory = result.read().split()
            return Run(int(status), float(seconds), float(cpu), int(memory) * 1024, both_ends(output))

    def demand(self, command, expected):
        """A run that has to end with `expected`; ends the script when it does not."""
        done = self.run(command)
        if done.status not in (expected, CUT_OFF):
            sys.exit(f"{' '.join(command)} ended with {done.status}, not {expected}:\n{done.output}")
        return done

    def fastest(self, commands, rounds, times=None, measure="seconds"):
        """Lets the commands, pairs with the expected status, take turns: (seconds, memory) of each, the mean of the
        fastest turn and the largest memory. A turn is one run or, with `times`, so many of them. What was cut off took
        for ever, and gets no further turn."""
        best = [(float("inf"), 0)] * len(commands)
        cut = set()
        for _ in range(rounds):
            for i, (command, expected) in enumerate(commands):
                if i not in cut:
                    turn = [self.demand(command, expected) for _ in range(times[i] if times else 1)]
                    if any(run.status == CUT_OFF for run in turn):
                        cut.add(i)
                        best[i] = (float("inf"), max(run.memory for run in turn))
                        continue
                    mean = sum(getattr(run, measure) for run in turn) / len(turn)
                    best[i] = (min(best[i][0], mean), max(best[i][1], *(run.memory for run in turn)))
        return best
