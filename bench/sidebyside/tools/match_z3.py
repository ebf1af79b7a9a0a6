"""match_z3.py RULES MACHINE: ends with 1 when the devices cannot be given out so that every element has its own."""
import sys
from collections import defaultdict

import z3

from fitting import links, read

solver = z3.Solver()
takers = defaultdict(list)
for element, devices in enumerate(links(*map(read, sys.argv[1:3]))):
    takes = [z3.Bool(f"element {element} takes {device}") for device in devices]
    solver.add(z3.Or(takes))
    for device, take in zip(devices, takes):
        takers[device].append(take)
for rivals in takers.values():
    solver.add(z3.AtMost(*rivals, 1))
if solver.check() != z3.sat:
    sys.exit("no assignment")
