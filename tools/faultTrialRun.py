"""Runs of vrx-inventory for tools/faultTrial: a recording is converted, gets its scripts and passes them; then each fault
is checked.
"""

import dataclasses
import hashlib
import json
import pathlib
import random
import re
import subprocess
import xml.etree.ElementTree as ElementTree
from xml.sax.saxutils import quoteattr

import machineFaults
import sourceFaults

TOLERANCE = 5
SECONDS = 120


@dataclasses.dataclass
class Result:
    """What became of one recording."""
    name: str
    isSelfCheckPassed: bool = False
    notices: list = dataclasses.field(default_factory=list)
    problems: list = dataclasses.field(default_factory=list)


@dataclasses.dataclass
class Trial:
    """One fault with the script that has to notice it, and what the check said."""
    recording: str
    number: int
    fault: machineFaults.Fault
    script: bytes
    status: int = None
    line: str = ""

    def isCaught(self):
        return self.status == 1

    def isNamed(self):
        return any(names(self.line, device, self.fault.isNameTelling) for device in self.fault.touched)

    def isRight(self):
        return self.isCaught() and self.isNamed() if self.fault.mustFail else self.status == 0


def names(line, device, isNameTelling):
    """Whether the line names the device: by its locator as a whole, or by a type and name that no other device has."""
    locator = device.hwLocator or device.osLocator
    if locator and re.search(r"(?<![\w./:-])" + re.escape(printable(locator)) + r"(?![\w/-]|[.:]\w)", line):
        return True
    return isNameTelling and bool(device.name) and device.type in line and printable(device.name) in line


def printable(text):
    """As the program writes text on a terminal."""
    return "".join(character if character >= " " else "\\u%04X" % ord(character) for character in text)


class Runner:
    """Runs the program in a folder where no default filter lies."""

    def __init__(self, program, folder):
        self.program = program
        self.folder = pathlib.Path(folder)

    def run(self, *arguments):
        try:
            done = subprocess.run([self.program, *map(str, arguments)], cwd=self.folder, capture_output=True,
                                  timeout=SECONDS)
        except subprocess.TimeoutExpired:
            return -1, b"", f"no answer within {SECONDS} s"
        return done.returncode, done.stdout, done.stderr.decode("utf-8", "replace").strip()

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        return path


class Failure(Exception):
    pass


class Preparation:
    """A recording up to its scripts, self-checked."""

    def __init__(self, runner, path, name):
        self.runner = runner
        self.path = path
        self.stem = hashlib.sha256(name.encode()).hexdigest()[:12]
        self.result = Result(name)
        self.machine = None
        self.script = b""
        self.tolerantScript = b""

    def prepare(self):
        try:
            self.machine = self.knownDevices(self.convert())
            self.script = self.scriptOf("script")
            self.selfCheck(self.script)
            if machineFaults.sized(self.machine):
                self.tolerantScript = self.scriptOf("tolerant", "--filter", self.writeFilter())
                self.selfCheck(self.tolerantScript)
            self.result.isSelfCheckPassed = True
        except Failure as failure:
            self.result.problems.append(str(failure))
        except (ElementTree.ParseError, ValueError, LookupError, OSError) as failure:
            self.result.problems.append(f"what the program wrote cannot be used: {failure}")
        return self

    def must(self, what, *arguments):
        status, out, error = self.runner.run(*arguments)
        if status != 0:
            firstLine = (error or out.decode("utf-8", "replace")).strip().split("\n")[0]
            raise Failure(f"{what} ended with {status}: {firstLine}")
        return out

    def file(self, name):
        return self.runner.folder / f"{self.stem}-{name}"

    def convert(self):
        outputs = []
        for name in ("once.xml", "twice.xml"):
            self.must("convert", "convert", self.path, "-o", self.file(name))
            outputs.append(self.file(name).read_bytes())
        if outputs[0] != outputs[1]:
            raise Failure("converting twice gave different bytes")
        return outputs[0]

    def knownDevices(self, recording):
        """The machine without devices of types that nobody knows: a check cannot find such devices."""
        machine = machineFaults.Machine(recording)
        shown = json.loads(self.must("show", "show", "--state", self.file("once.xml"), "--format", "json"))["devices"]
        if len(shown) != len(machine.devices):
            raise Failure(f"show has {len(shown)} devices, the converted recording {len(machine.devices)}")
        unknown = [i for i, device in enumerate(shown) if not device["capabilities"]]
        for index in reversed(unknown):
            machine.leaveOut(index)
        if unknown:
            self.result.notices.append(f"{len(unknown)} of an unknown type left out")
            machine = machine.copy()
        self.file("machine.xml").write_bytes(machine.text())
        return machine

    def types(self):
        return sorted({device.type for device in self.machine.devices})

    def writeFilter(self):
        """Everything, with a tolerance on sizes."""
        keys = sorted({element.get("key") for device in self.machine.devices for element in device.properties()})
        properties = "".join(f"<property key={quoteattr(key)}{self.tolerance(key)}/>" for key in keys)
        rules = "".join(f"<device type={quoteattr(kind)}>{properties}</device>" for kind in self.types())
        text = f"<system-information-filter>{rules}</system-information-filter>"
        return self.runner.write(f"{self.stem}-filter.xml", text.encode())

    @staticmethod
    def tolerance(key):
        return f' tolerance="{TOLERANCE}"' if key == "Size" else ""

    def scriptOf(self, name, *options):
        """A generated script that allows no device beyond those that it names."""
        path = self.file(f"{name}.xml")
        self.must("generate", "generate", "--fail-on-extra", "--state", self.file("machine.xml"), *options, "-o", path)
        return path.read_bytes()

    def selfCheck(self, script):
        path = self.runner.write(f"{self.stem}-self.xml", script)
        self.must("the self-check", "check", path, "--state", self.file("machine.xml"))

    def trials(self, seed, faults):
        """The faults of this recording, the same for the same seed, whatever else is in the folder."""
        for number, fault in enumerate(self.faults(seed, faults), 1):
            yield Trial(self.result.name, number, fault, self.tolerantScript if fault.hasTolerance else self.script)

    def faults(self, seed, most):
        def chosen(kind, candidates):
            rng = random.Random(f"{seed}/{self.result.name}/{kind}")
            candidates = list(candidates)
            return rng, rng.sample(candidates, min(most, len(candidates)))
        for kind, candidatesOf, make in machineFaults.KINDS:
            rng, candidates = chosen(kind, candidatesOf(self.machine))
            for candidate in candidates:
                yield make(self.machine, candidate, rng)
        source = sourceFaults.SourceRecording(self.path, self.machine)
        for kind in sourceFaults.KINDS:
            for candidate in chosen(kind, source.candidates(kind))[1]:
                yield source.fault(kind, candidate)


def runTrial(runner, trial):
    stem = f"{hashlib.sha256(trial.recording.encode()).hexdigest()[:12]}-{trial.number}"
    script = runner.write(f"{stem}-script.xml", trial.script)
    machine = runner.write(f"{stem}-machine.xml", trial.fault.machine)
    status, out, error = runner.run("check", script, "--state", machine)
    trial.status = status
    trial.line = (out.decode("utf-8", "replace") or error).split("\n")[0]
    script.unlink()
    machine.unlink()
    return trial
