"""The machines that every tool checks, and what it has to check: the one description of which all forms are made.

The rules map a locator to a device: its type, five patterns and five ranges of 10 % around a value. Patterns stand for
the whole value, and are written in what all dialects of regular expressions share. A machine maps the same locators to
devices with their values.
"""
import copy
import random

PATTERNS = ("Model", "Vendor", "Serial", "Firmware", "Slot")
RANGES = ("Speed", "Capacity", "Power", "Voltage", "Temperature")
TYPES = ("Processor", "MemoryModule", "SolidStateDrive", "HardDiskDrive", "Ethernet", "Fan", "PowerSupply",
         "TemperatureSensor")
SERIAL, DIGITS, VENDORS = "[0-9A-F]{8}", "[0-9]+", "(Northwind|Eastgate)"
FAULTS = ("pattern", "too low", "too high", "missing device")


def rules_of(devices):
    return {f"bus:{number:06d}": rule_of(number) for number in range(devices)}


def rule_of(number):
    nominal = {key: 10 * (20 + (number * 7 + place * 13) % 500) for place, key in enumerate(RANGES)}
    return {
        "type": TYPES[number % len(TYPES)],
        "patterns": {
            "Model": rf"M{number}\.{DIGITS}",
            "Vendor": f"{VENDORS} Systems",
            "Serial": f"SN{number}-{SERIAL}",
            "Firmware": rf"2\.{number % 20}\.{DIGITS}",
            "Slot": f"slot {number}",
        },
        "ranges": {key: [value * 9 // 10, value * 11 // 10] for key, value in nominal.items()},
    }


def good_machine(rules, seed):
    """A machine that meets the rules, with values of its own."""
    dice = random.Random(seed)
    return {locator: good_device(rule, dice) for locator, rule in rules.items()}


def good_device(rule, dice):
    return {
        "type": rule["type"],
        **{key: matching_text(pattern, dice) for key, pattern in rule["patterns"].items()},
        **{key: dice.randint(low, high) for key, (low, high) in rule["ranges"].items()},
    }


def matching_text(pattern, dice):
    """A text that matches one of the patterns above."""
    for wild, text in ((SERIAL, f"{dice.randrange(16 ** 8):08X}"), (DIGITS, str(dice.randrange(100))),
                       (VENDORS, dice.choice(("Northwind", "Eastgate")))):
        pattern = pattern.replace(wild, text)
    return pattern.replace("\\.", ".")


def broken_machine(rules, seed, fault):
    """The good machine of that seed with one fault of FAULTS in it."""
    machine = copy.deepcopy(good_machine(rules, seed))
    dice = random.Random(f"fault {seed}")
    locator = dice.choice(list(rules))
    if fault == "missing device":
        del machine[locator]
        return machine
    key = dice.choice(PATTERNS if fault == "pattern" else RANGES)
    machine[locator][key] = wrong_value(rules[locator], machine[locator], key, fault)
    return machine


def wrong_value(rule, device, key, fault):
    """A value that only just breaks the rule, so that a tool that compares loosely is found out."""
    if fault == "pattern":
        return device[key] + "x"
    low, high = rule["ranges"][key]
    return low - 1 if fault == "too low" else high + 1


def anonymous_rules(elements):
    """Rules without places: kinds of some eight elements, whose ranges overlap within the kind."""
    kinds = max(1, elements // 8)
    return {f"element {number}": anonymous_rule(number % kinds, number // kinds) for number in range(elements)}


def anonymous_rule(kind, step):
    rule = rule_of(kind)
    rule["patterns"]["Slot"] = "slot [0-9]+"
    nominal = 1000 + 40 * step
    rule["ranges"]["Speed"] = [nominal * 9 // 10, nominal * 11 // 10]
    return rule


def anonymous_machine(rules, seed, fault=None):
    """A machine that meets such rules, or one with that fault, its devices in an order of their own."""
    machine = broken_machine(rules, seed, fault) if fault else good_machine(rules, seed)
    devices = list(machine.values())
    random.Random(f"order {seed}").shuffle(devices)
    return {f"bus:{number:06d}": device for number, device in enumerate(devices)}
