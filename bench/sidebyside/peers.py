"""The tools: how each is called, how it says that a machine is broken, and what has to be there to run it."""
import os
import shutil
from collections import namedtuple
from pathlib import Path

TOOLS = Path(__file__).resolve().parent / "tools"
# Debian's packages are for the system's own Python.
PYTHON = "/usr/bin/python3"

# `rules` is the folder with the forms of the rules, `machine` the path of a machine without its extension.
Place = namedtuple("Place", "rules machine")

# `needs` is a command, or a Python module as "python:name", or a Node module as "node:name". A tool passes a machine by
# ending with 0; it fails it when it ends with `status` and its output has `sign`: a crash is no answer.
Tool = namedtuple("Tool", "name needs version status sign command environment", defaults=[lambda place: {}])


def jq(program):
    return lambda place: [program, "-e", "-r", "--slurpfile", "rules", f"{place.rules}/rules.json", "-f",
                          str(TOOLS / "check.jq"), f"{place.machine}.json"]


def script(*interpreter, form="rules"):
    return lambda place: [*interpreter, f"{place.rules}/{form}.json", f"{place.machine}.json"]


def xmllint(place):
    return ["xmllint", "--noout", "--relaxng", f"{place.rules}/grammar.rng", f"{place.machine}.xml"]


def ansible(place):
    files = f'{{"rules": "{place.rules}/rules.json", "machine": "{place.machine}.json"}}'
    return ["ansible-playbook", "-i", "localhost,", "-e", files, str(TOOLS / "assert.yml")]


def files_in_environment(place):
    return {"RULES": f"{place.rules}/rules.json", "MACHINE": f"{place.machine}.json"}


def package(name):
    return ["dpkg-query", "-W", "-f", "${Version}", name]


def ours(program):
    return Tool("vrx-inventory", program, [program, "--version"], 1, "FAILED",
                lambda place: [program, "check", "--state", f"{place.machine}.xml", f"{place.rules}/script.xml"])


def checkers(node_modules):
    """What checks a machine whose devices are told apart by their places."""
    node_path = {"NODE_PATH": str(node_modules)}
    pytest = [PYTHON, "-B", "-m", "pytest", "-q", "-p", "no:cacheprovider", str(TOOLS / "test_machine.py")]
    return [
        Tool("jq", "jq", package("jq"), 1, "false\n", jq("jq")),
        Tool("gojq", "gojq", package("gojq"), 1, "false\n", jq("gojq")),
        Tool("xmllint --relaxng", "xmllint", package("libxml2-utils"), 3, "fails to validate", xmllint),
        Tool("python3-jsonschema", "python:jsonschema", package("python3-jsonschema"), 1, "bus:",
             script(PYTHON, "-B", str(TOOLS / "validate.py"), form="schema")),
        Tool("ajv", f"node:{node_modules}/ajv", ["node", "-p", "require('ajv/package.json').version"], 1, "bus:",
             script("node", str(TOOLS / "validate.js"), form="schema"), lambda place: node_path),
        Tool("testinfra", "python:testinfra", package("python3-testinfra"), 1, "1 failed",
             lambda place: pytest, files_in_environment),
        Tool("serverspec", "rspec", package("ruby-serverspec"), 1, ", 1 failure",
             lambda place: ["rspec", str(TOOLS / "machine_spec.rb")], files_in_environment),
        Tool("Ansible assert", "ansible-playbook", package("ansible-core"), 2, "failed=1", ansible),
    ]


def matchers():
    """What gives devices to elements that nothing but properties tells apart."""
    return [
        Tool("z3", "python:z3", package("python3-z3"), 1, "no assignment",
             script(PYTHON, "-B", str(TOOLS / "match_z3.py"))),
        Tool("all orders in turn", PYTHON, ["false"], 1, "no assignment",
             script(PYTHON, "-B", str(TOOLS / "match_factorial.py"))),
    ]


def is_present(tool, run):
    kind, _, name = tool.needs.rpartition(":")
    if kind == "python":
        return os.path.exists(PYTHON) and run([PYTHON, "-c", f"import {name}"], None).status == 0
    if kind == "node":
        return shutil.which("node") is not None and os.path.isdir(name)
    return shutil.which(tool.needs) is not None


def environment_of(tool, place):
    return {**os.environ, **tool.environment(place)}


def verdict_of(tool, status, output):
    """Whether the tool passed the machine; None when it did neither pass nor fail it."""
    if status == 0:
        return True
    return False if status == tool.status and tool.sign in output else None
