"""Faults in what another program wrote: a memory module is pulled, halved or replaced in the text of dmidecode and lshw
or in the resources of a Redfish service.

All that such a text sums up is changed with it (lshw's size of all memory), so that a check has to tell the module from
the sums. Each kind lists its candidates in a recording; a fault is one of them, made in a copy. Texts that do not parse,
and modules whose device cannot be told, are passed over.
"""

import copy
import json
import re
import xml.etree.ElementTree as ElementTree

from machineFaults import OTHER_PART, OTHER_SERIAL, Fault
from redfishFaults import RedfishResources

ENTRY = "/sys/firmware/dmi/entries/17-%d"
EMPTY = "No Module Installed"
# What an empty slot of dmidecode's text says, where the recording has none to copy.
EMPTY_FIELDS = {"Size": EMPTY, "Manufacturer": "Not Specified", "Serial Number": "Not Specified",
                "Asset Tag": "Not Specified", "Part Number": "Not Specified", "Type": "Unknown", "Speed": "Unknown",
                "Type Detail": "None", "Rank": "Unknown", "Total Width": "Unknown", "Data Width": "Unknown",
                "Configured Memory Speed": "Unknown", "Configured Clock Speed": "Unknown",
                "Configured Voltage": "Unknown"}


class DmidecodeText:
    """The text as a list of structures, each a list of lines."""

    KINDS = ["pulled", "halved", "replaced"]
    HEAD = re.compile(r"^Handle 0x[0-9A-Fa-f]+, DMI type (\d+)")
    FIELD = re.compile(r"^(\s+)([^:]+):\s*(.*?)\s*$")

    def __init__(self, data):
        self.structures = [[]]
        for line in data.decode("utf-8", "surrogateescape").split("\n"):
            if self.HEAD.match(line):
                self.structures.append([])
            self.structures[-1].append(line)
        self.slots = [i for i, lines in enumerate(self.structures) if self.typeOf(lines) == 17]

    def typeOf(self, lines):
        head = self.HEAD.match(lines[0]) if lines else None
        return int(head.group(1)) if head else None

    def value(self, number, key):
        for line in self.structures[self.slots[number]]:
            field = self.FIELD.match(line)
            if field and field.group(2) == key:
                return field.group(3)
        return ""

    def modules(self):
        return [n for n in range(len(self.slots)) if self.size(n)]

    def size(self, number):
        """Megabytes; 0 for an empty slot."""
        size = re.match(r"(\d+) ([MG])B$", self.value(number, "Size"))
        return int(size.group(1)) * (1024 if size.group(2) == "G" else 1) if size else 0

    def changed(self, number, values):
        other = copy.deepcopy(self)
        lines = other.structures[other.slots[number]]
        for i, line in enumerate(lines):
            field = self.FIELD.match(line)
            if field and field.group(2) in values:
                lines[i] = f"{field.group(1)}{field.group(2)}: {values[field.group(2)]}"
        return "\n".join(line for lines in other.structures for line in lines).encode("utf-8", "surrogateescape")

    def pulled(self, number):
        empty = [n for n in range(len(self.slots)) if self.value(n, "Size") == EMPTY]
        values = {key: self.value(empty[0], key) or value for key, value in EMPTY_FIELDS.items()} if empty else EMPTY_FIELDS
        return self.changed(number, values)

    def halved(self, number):
        return self.changed(number, {"Size": f"{self.size(number) // 2} MB"})

    def replaced(self, number):
        return self.changed(number, {"Serial Number": OTHER_SERIAL, "Part Number": OTHER_PART})

    def locator(self, number):
        return ENTRY % number


class LshwNodes:
    """What both forms of lshw's output have in common: `nodes` with `get`, `set` and `parent`."""

    KINDS = DmidecodeText.KINDS

    def banks(self):
        return [node for node in self.nodes() if self.get(node, "class") == "memory"
                and re.match(r"bank(:|$)", self.get(node, "id"))]

    def modules(self):
        return [n for n, bank in enumerate(self.banks()) if self.size(bank) and self.get(bank, "handle")]

    def size(self, node):
        text = self.get(node, "size")
        return int(text) if text.isdigit() else 0

    def locator(self, number):
        return ENTRY % number

    def changed(self, number, change):
        other = copy.deepcopy(self)
        bank = other.banks()[number]
        before = other.size(bank)
        change(other, bank)
        memory = other.parent(bank)
        if memory is not None and other.size(memory) >= before:
            other.set(memory, "size", other.size(memory) - before + other.size(bank))
        return other.text()

    def pulled(self, number):
        def change(other, bank):
            empty = [node for node in other.banks() if not other.size(node)]
            for key in ("description", "product", "vendor", "serial"):
                other.set(bank, key, other.get(empty[0], key) if empty else None)
            for key in ("size", "clock", "width"):
                other.set(bank, key, None)
            if not empty:
                other.set(bank, "description", "DIMM [empty]")
        return self.changed(number, change)

    def halved(self, number):
        return self.changed(number, lambda other, bank: other.set(bank, "size", other.size(bank) // 2))

    def replaced(self, number):
        def change(other, bank):
            other.set(bank, "serial", OTHER_SERIAL)
            other.set(bank, "product", OTHER_PART)
        return self.changed(number, change)


class LshwXml(LshwNodes):
    def __init__(self, data):
        self.root = ElementTree.fromstring(data)

    def nodes(self):
        return list(self.root.iter("node"))

    def parent(self, node):
        return next((other for other in self.nodes() if node in list(other)), None)

    def get(self, node, key):
        return node.get(key) or (node.findtext(key) or "").strip()

    def set(self, node, key, value):
        child = node.find(key)
        if child is None and value:
            child = ElementTree.SubElement(node, key)
        if child is not None:
            child.text = str(value) if value else ""
            if not value:
                node.remove(child)

    def text(self):
        return ElementTree.tostring(self.root, encoding="utf-8")


class LshwJson(LshwNodes):
    def __init__(self, data):
        self.root = json.loads(data)

    def nodes(self):
        found = []
        def walk(node):
            found.append(node)
            for child in node.get("children", []):
                walk(child)
        for node in self.root if isinstance(self.root, list) else [self.root]:
            walk(node)
        return found

    def parent(self, node):
        return next((other for other in self.nodes() if any(child is node for child in other.get("children", []))), None)

    def get(self, node, key):
        return str(node.get(key, ""))

    def set(self, node, key, value):
        node.pop(key, None)
        if value:
            node[key] = value

    def text(self):
        return json.dumps(self.root).encode()


def sourceOf(path):
    """The recording as something that modules can be taken out of; None for other formats."""
    if path.is_dir():
        return RedfishResources.ofFolder(path)
    data = path.read_bytes()
    start = data[:4096].lstrip(b"\xef\xbb\xbf \t\r\n")
    try:
        if b"DMI type " in data and b"Handle 0x" in data:
            return DmidecodeText(data)
        if start.startswith(b"<") and b"<node" in data and b"hwloc" not in start and b"topology" not in start:
            return LshwXml(data)
        if start[:1] == b"{" and b'"@odata' in data:
            return RedfishResources.ofText(data)
        if start[:1] in (b"{", b"[") and b'"class"' in data:
            return LshwJson(data)
    except (ElementTree.ParseError, ValueError, RecursionError):
        pass
    return None


class SourceRecording:
    """A recording in its own format beside the machine that it was converted to."""

    def __init__(self, path, machine):
        self.source = sourceOf(path)
        self.machine = machine
        self.byLocator = {locator: device for device in machine.devices for locator in device.place() if locator}

    def candidates(self, kind):
        if self.source is None or kind not in self.source.KINDS:
            return []
        return [n for n in self.source.modules() if self.source.locator(n) in self.byLocator]

    def fault(self, kind, number):
        device = self.byLocator[self.source.locator(number)]
        text = getattr(self.source, kind)(number)
        return Fault(f"module {kind} in the source", f"{device} {kind}", text, [device],
                     isNameTelling=self.machine.isAlone(device))


KINDS = RedfishResources.KINDS
KIND_NAMES = [f"module {kind} in the source" for kind in KINDS]
