"""How cost grows: for each number that may grow, what is written and run for any size of it."""
from collections import namedtuple

import hostileworlds
import worlds

# `write(folder, size)` writes files and returns the arguments of the program; `sizes` each ten times the one before.
# `isLinear` where ten times the size is to cost at most some ten times as much.
Growth = namedtuple("Growth", "name what sizes status write isLinear", defaults=[True])


def files(folder, size):
    return folder / f"grown-machine-{size}.xml", folder / f"grown-script-{size}.xml"


def check(machine, script):
    return ["check", "--state", str(machine), str(script)]


def write_devices(folder, size):
    machine, script = files(folder, size)
    worlds.write_machine(machine, size)
    worlds.naming_script(script, size)
    return check(machine, script)


def write_elements(folder, size):
    machine, script = files(folder, size)
    worlds.write_machine(machine, 100_000)
    worlds.write_script(script, (worlds.device_element(d, 1) for d in range(size)))
    return check(machine, script)


def write_properties(folder, size):
    machine, script = files(folder, size)
    worlds.write_machine(machine, 1_000, size)
    worlds.naming_script(script, 1_000, size)
    return check(machine, script)


def write_alternatives(folder, size):
    machine, script = files(folder, size)
    worlds.write_machine(machine, 10_000)
    worlds.alternatives_script(script, 1, size, 0, False)
    return check(machine, script)


def write_combinations(folder, size):
    machine, script = files(folder, size)
    ors = len(str(size)) - 1
    worlds.write_machine(machine, 300)
    worlds.alternatives_script(script, ors, 10, 199 - ors * 11, True)
    return check(machine, script)


def write_equal(folder, size):
    machine, script = files(folder, size)
    worlds.write_machine(machine, size, 2, identical=True)
    worlds.identical_script(script, size)
    return check(machine, script)


def write_rules(folder, size):
    machine, script = files(folder, size)
    with open(machine, "w") as out:
        hostileworlds.equal_machine(out, 1_000)
    with open(script, "w") as out:
        hostileworlds.script(out, hostileworlds.rules(size))
    return check(machine, script)


def write_parts(folder, size):
    machine, parts = files(folder, size)
    worlds.write_parts_machine(machine, [2] * size, [4] * size, 8_000)
    worlds.write_parts_list(parts, [4] * size)
    return ["parts", "generate", str(parts), "--state", str(machine)]


CASES = [
    Growth("devices", "a machine of so many devices, each named", (1_000, 10_000, 100_000), 0, write_devices),
    Growth("script elements", "so many elements, 100,000 devices", (1_000, 10_000, 100_000), 0, write_elements),
    Growth("properties", "so many in each of 1,000 devices, each named", (2, 20, 200), 0, write_properties),
    Growth("alternatives of an or", "10,000 devices", (100, 1_000, 10_000), 0, write_alternatives),
    Growth("combinations", "200 elements, of which one cannot be met", (1_000, 10_000, 100_000), 1, write_combinations),
    Growth("equal elements and devices", "any element fits any device", (100, 1_000, 10_000), 0, write_equal, False),
    Growth("rules for extra devices", "with content, 1,000 devices", (10, 100, 1_000), 0, write_rules),
    Growth("parts", "of 4 devices, 2 copies each, 8,000 devices", (10, 100, 1_000), 0, write_parts),
]


def rows(timer, program, folder, rounds):
    """For each case its name, what it is, sizes and seconds."""
    for case in CASES:
        commands = [([program, *case.write(folder, size)], case.status) for size in case.sizes]
        yield case, [seconds for seconds, _ in timer.fastest(commands, rounds)]
