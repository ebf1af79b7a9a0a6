"""Faults in a recorded machine, made by a program.

A Machine is a SysInfo XML recording as `vrx-inventory convert` writes it. Every kind of fault lists its candidates in
the recording; a fault is one of them, made on a copy. It says what was touched and whether a check has to notice.
"""

import copy
import dataclasses
import re
import xml.etree.ElementTree as ElementTree

# What belongs to the place and stays there when two devices change places.
PLACE_KEYS = {"Slot", "Bank"}
# Devices that people take out and put in somewhere else; others are swapped only where there are none of these.
EXCHANGEABLE = {"MemoryModule", "Storage", "HardDiskDrive", "SolidStateDrive", "NvmeDrive", "OpticalDrive", "TapeDrive",
                "Network", "Ethernet", "WirelessNetwork", "Infiniband", "FibreChannel"}
# What stands on a part that another one was replaced with.
OTHER_SERIAL, OTHER_PART = "5EA1ED07", "OTHER-PART-77"
NUMBER = re.compile(r"[-+]?\d+(\.\d+)?$")


def itemOf(device, attribute, child):
    """An item of a device, which is an attribute or a child element."""
    element = device.find(child)
    return (element.text or "").strip() if element is not None else device.get(attribute, "")


def setItem(device, attribute, child, text):
    for element in device.findall(child):
        device.remove(element)
    device.set(attribute, text)


class Device:
    """One Device element with what the trial needs to know of it."""

    def __init__(self, element, parent):
        self.element = element
        self.parent = parent
        self.type = itemOf(element, "type", "DeviceType")
        self.name = itemOf(element, "name", "Name")
        self.hwLocator = itemOf(element, "hwLocator", "HW_Locator")
        self.osLocator = itemOf(element, "osLocator", "OS_Locator")

    def place(self):
        return self.hwLocator, self.osLocator

    def moveTo(self, place):
        setItem(self.element, "hwLocator", "HW_Locator", place[0])
        setItem(self.element, "osLocator", "OS_Locator", place[1])
        self.hwLocator, self.osLocator = place

    def properties(self):
        """The properties that a check can see: the first one of each key."""
        first = {}
        for element in self.element.findall("property"):
            first.setdefault(element.get("key", ""), element)
        return list(first.values())

    def size(self):
        """The property Size, when it is a measurement above 0."""
        for element in self.properties():
            value = element.get("value", "")
            if element.get("key") == "Size" and element.get("units") and NUMBER.match(value) and float(value) > 0:
                return element
        return None

    def isLeaf(self):
        return self.element.find("Device") is None

    def content(self):
        """Everything but the place, so that devices can be compared."""
        properties = [ElementTree.tostring(element).strip() for element in self.element.findall("property")
                      if element.get("key") not in PLACE_KEYS]
        capabilities = [element.text for element in self.element.findall("Capability")]
        return self.name, capabilities, properties

    def __str__(self):
        return f'{self.type} "{self.name}" ({self.hwLocator or self.osLocator})'


class Machine:
    def __init__(self, text):
        self.root = ElementTree.fromstring(text)
        self.devices = []
        self._collect(self.root)
        self.typesInPart = {child.text for unread in self.root.findall("UnreadSource") if unread.find("Key") is None
                            for child in unread.findall("DeviceType")}

    def _collect(self, parent):
        for element in parent.findall("Device"):
            self.devices.append(Device(element, parent))
            self._collect(element)

    def copy(self):
        return Machine(self.text())

    def isReadWholly(self, device):
        """Whether the recording would hold any other device of that type: one more or less is one for sure."""
        return device.type not in self.typesInPart

    def isAlone(self, device):
        """Whether no other device has its type and name."""
        return sum(1 for other in self.devices if (other.type, other.name) == (device.type, device.name)) == 1

    def text(self):
        return ElementTree.tostring(self.root, encoding="utf-8", xml_declaration=True)

    def leaveOut(self, index):
        """Takes one device away and hangs what is below it where it was."""
        device = self.devices[index]
        at = list(device.parent).index(device.element)
        device.parent.remove(device.element)
        for child in reversed(device.element.findall("Device")):
            device.parent.insert(at, child)


@dataclasses.dataclass
class Fault:
    kind: str
    what: str  # for people: what was done
    machine: bytes
    touched: list  # the Devices that the report may name
    mustFail: bool = True
    hasTolerance: bool = False  # checked against the script with tolerances
    isNameTelling: bool = False  # whether type and name tell what was touched from everything else


def removed(machine, index):
    faulty = machine.copy()
    device = faulty.devices[index]
    gone = set(device.element.iter("Device"))
    touched = [device] + [other for other in faulty.devices if other is not device and other.element in gone]
    device.parent.remove(device.element)
    return Fault("device removed", f"{device} removed with what is below it", faulty.text(), touched,
                 isNameTelling=machine.isAlone(device))


def removable(machine):
    """Every device that does not hold all others, and of which a recording that lacks it says that it is gone."""
    return [i for i, device in enumerate(machine.devices)
            if machine.isReadWholly(device) and sum(1 for _ in device.element.iter("Device")) < len(machine.devices)]


def doubled(machine, index):
    faulty = machine.copy()
    original = faulty.devices[index]
    element = copy.deepcopy(original.element)
    for child in element.findall("Device"):
        element.remove(child)
    twin = Device(element, original.parent)
    twin.moveTo(freePlace(faulty, original))
    # The first device is the root of the machine and stays it.
    original.parent.insert(list(original.parent).index(original.element) + 1, element)
    return Fault("device doubled", f"{original} doubled as {twin}", faulty.text(), [twin])


def doublable(machine):
    """Every device of a type that a script can forbid more of."""
    return [i for i, device in enumerate(machine.devices) if machine.isReadWholly(device)]


def freePlace(machine, device):
    taken = {locator for other in machine.devices for locator in other.place()}
    def free(locator):
        number = 2
        while f"{locator}-copy{number}" in taken:
            number += 1
        return f"{locator}-copy{number}"
    return free(device.hwLocator), free(device.osLocator) if device.osLocator else ""


def changed(machine, candidate, rng):
    index, number = candidate
    faulty = machine.copy()
    device = faulty.devices[index]
    element = device.properties()[number]
    entries = entriesOf(element)
    if entries:
        entry, name = rng.choice(entries)
        before = entry.text or "" if name is None else entry.get(name)
        after = changedText(before, bool(element.get("units")), rng)
        if name is None:
            entry.text = after
        else:
            entry.set(name, after)
    else:
        before, after = "", "X"
        element.set("value", after)
    what = f"{device}: {element.get('key')} changed from {before!r} to {after!r}"
    return Fault("property changed", what, faulty.text(), [device], isNameTelling=machine.isAlone(device))


def entriesOf(element):
    """Where the texts of a property stand: (element, attribute) or (element, None) for its own text."""
    if element.get("value"):
        return [(element, "value")]
    return ([(child, None) for child in element.findall("Value") if child.text]
            or [(child, "value") for child in element.findall("value") if child.get("value")])


def changedText(text, isMeasured, rng):
    if isMeasured:
        return repr(float(text) * 1.5 if NUMBER.match(text) and float(text) else 1.0)
    digits = [i for i, character in enumerate(text) if character in "0123456789"]
    way = rng.randrange(3)
    if way == 0 and digits:
        at = rng.choice(digits)
        return text[:at] + str((int(text[at]) + 1) % 10) + text[at + 1:]
    return text[:-1] if way == 1 and len(text) > 1 and text[:-1].strip() == text[:-1] else text + "X"


def changeable(machine):
    return [(i, n) for i, device in enumerate(machine.devices) for n in range(len(device.properties()))]


def swapped(machine, pair, areEqual):
    faulty = machine.copy()
    one, other = (faulty.devices[index] for index in pair)
    what = f"{one} and {other} swapped"
    places = one.place(), other.place()
    one.moveTo(places[1])
    other.moveTo(places[0])
    swapPlaceProperties(one.element, other.element)
    kind = "two equal devices swapped" if areEqual else "two devices swapped"
    return Fault(kind, what, faulty.text(), [one, other], mustFail=not areEqual)


def swapPlaceProperties(one, other):
    """What belongs to the place goes on with it, at the position that it had there."""
    def indexes(element):
        return {child.get("key"): i for i, child in enumerate(element)
                if child.tag == "property" and child.get("key") in PLACE_KEYS}
    mine, others = indexes(one), indexes(other)
    for key in mine.keys() & others.keys():
        one[mine[key]], other[others[key]] = other[others[key]], one[mine[key]]


def swappable(machine, areEqual, atMost=2000):
    """Pairs of one type without anything below, with equal or with different contents, by index."""
    byType = {}
    for i, device in enumerate(machine.devices):
        if device.isLeaf():
            byType.setdefault(device.type, []).append((i, device.content(), device.place()))
    return (pairsOf([byType[kind] for kind in byType if kind in EXCHANGEABLE], areEqual, atMost)
            or pairsOf(byType.values(), areEqual, atMost))


def pairsOf(groups, areEqual, atMost):
    pairs = []
    for devices in groups:
        for n, (i, content, place) in enumerate(devices):
            for j, other, otherPlace in devices[n + 1:]:
                if place != otherPlace and (content == other) == areEqual and len(pairs) < atMost:
                    pairs.append((i, j))
    return pairs


def resized(machine, index, percent, rng):
    faulty = machine.copy()
    device = faulty.devices[index]
    element = device.size()
    before = element.get("value")
    element.set("value", repr(float(before) * (1 + rng.choice((-1, 1)) * percent / 100)))
    what = f"{device}: Size changed by {percent} %, from {before} to {element.get('value')} {element.get('units')}"
    return Fault(f"size changed by {percent} %", what, faulty.text(), [device], mustFail=percent > 5, hasTolerance=True,
                 isNameTelling=machine.isAlone(device))


def sized(machine):
    return [i for i, device in enumerate(machine.devices) if device.size() is not None]


# Each kind: its name, its candidates in a machine, and how one of them is made.
KINDS = [
    ("device removed", removable, lambda machine, at, rng: removed(machine, at)),
    ("device doubled", doublable, lambda machine, at, rng: doubled(machine, at)),
    ("property changed", changeable, changed),
    ("two devices swapped", lambda machine: swappable(machine, False),
     lambda machine, at, rng: swapped(machine, at, False)),
    ("two equal devices swapped", lambda machine: swappable(machine, True),
     lambda machine, at, rng: swapped(machine, at, True)),
    ("size changed by 2 %", sized, lambda machine, at, rng: resized(machine, at, 2, rng)),
    ("size changed by 20 %", sized, lambda machine, at, rng: resized(machine, at, 20, rng)),
]
