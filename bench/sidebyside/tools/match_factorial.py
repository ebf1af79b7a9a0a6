"""match_factorial.py RULES MACHINE: ends with 1 when no order of the devices fits the elements one by one."""
import itertools
import sys

from fitting import links, read

rules, devices = map(read, sys.argv[1:3])
fitting = [set(numbers) for numbers in links(rules, devices)]
orders = itertools.permutations(range(len(devices)), len(rules))
if not any(all(device in element for device, element in zip(order, fitting)) for order in orders):
    sys.exit("no assignment")
