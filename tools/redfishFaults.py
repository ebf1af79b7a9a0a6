"""Faults in the resources of a Redfish service: a memory module is pulled, unlisted, halved or replaced.

A mirror is a folder of resources; a faulty copy is one JSON document of them by path. A service may keep the resource
of a place that is empty ("pulled") or have none ("unlisted"). What sums the modules up changes with them, and sensors
of a module that is not there are not there either.
"""

import copy
import json
import re

from machineFaults import OTHER_PART, OTHER_SERIAL

PATH = "@odata.id"
ROOT = "/redfish/v1"
# What a resource still says of a place that is empty.
OF_THE_PLACE = {PATH, "@odata.type", "@odata.context", "Id", "Name", "MemoryLocation", "Location", "DeviceLocator"}


def resourceIn(path):
    """The resource that a file holds; None for other files."""
    if path.suffix.lower() not in (".json", ""):
        return None
    try:
        value = json.loads(path.read_bytes())
    except (ValueError, RecursionError):
        return None
    return value if isinstance(value, dict) and isinstance(value.get(PATH), str) else None


def mirrorOf(path, resource):
    """The folder that the mirror of a resource begins in: as much of its path as is part of the file's goes."""
    place = path.parent if path.stem == "index" else path.with_suffix("")
    steps = resource[PATH].strip("/").split("/")
    while steps and place.name == steps[-1]:
        place = place.parent
        steps.pop()
    return path.parent if place == path.with_suffix("") else place


def mirrorsIn(files, top):
    """The folders that are recordings, and all files in them."""
    folders = {mirrorOf(path, resource) for path in files if (resource := resourceIn(path)) is not None}
    folders = {folder for folder in folders if top == folder or top in folder.parents}
    outer = {folder for folder in folders if not any(other in folder.parents for other in folders)}
    return outer, [path for path in files if any(folder in outer for folder in path.parents)]


def canonical(path):
    return path.rstrip("/")


class RedfishResources:
    KINDS = ["pulled", "unlisted", "halved", "replaced"]

    def __init__(self, resources):
        self.resources = resources
        self.memory = [path for path in sorted(resources) if self.isMemory(path)]

    @staticmethod
    def ofFolder(folder):
        found = [resourceIn(path) for path in sorted(folder.rglob("*")) if path.is_file()]
        return RedfishResources({canonical(one[PATH]): one for one in found if one is not None})

    @staticmethod
    def ofText(data):
        value = json.loads(data)
        return RedfishResources({canonical(path): one for path, one in value.items() if isinstance(one, dict)})

    def isMemory(self, path):
        return re.fullmatch(ROOT + r"/Systems/[^/]+/Memory/[^/]+", path) is not None

    def modules(self):
        return [n for n, path in enumerate(self.memory) if self.size(self.resources[path])]

    @staticmethod
    def size(resource):
        size = resource.get("CapacityMiB")
        isThere = resource.get("Status", {}).get("State") not in ("Absent", "Disabled")
        return size if isinstance(size, int) and isThere else 0

    def locator(self, number):
        system, _, name = self.memory[number].split("/")[-3:]
        areMany = len({path.split("/")[4] for path in self.memory}) > 1
        return (f"system:{system}/" if areMany else "") + f"dimm:{name}"

    def changed(self, number, change):
        other = copy.deepcopy(self)
        path = self.memory[number]
        change(other, path)
        lost = self.size(self.resources[path]) - self.size(other.resources.get(path, {}))
        summary = other.resources.get(path.rsplit("/", 2)[0], {}).get("MemorySummary", {})
        total = summary.get("TotalSystemMemoryGiB")
        if isinstance(total, (int, float)) and total * 1024 >= lost:
            summary["TotalSystemMemoryGiB"] = total - lost / 1024
        return other.text()

    def text(self):
        return json.dumps(self.resources).encode()

    def withoutSensorsOf(self, path):
        for sensor in list(self.resources.values()):
            related = sensor.get("RelatedItem", []) if "/Sensors/" in sensor.get(PATH, "") else []
            if any(canonical(item.get(PATH, "")) == path for item in related):
                sensor["Status"] = {"State": "Absent"}
                sensor.pop("Reading", None)

    def pulled(self, number):
        def change(other, path):
            kept = {key: value for key, value in other.resources[path].items() if key in OF_THE_PLACE}
            other.resources[path] = kept | {"Status": {"State": "Absent"}}
            other.withoutSensorsOf(path)
        return self.changed(number, change)

    def unlisted(self, number):
        def change(other, path):
            del other.resources[path]
            other.withoutSensorsOf(path)
            for resource in other.resources.values():
                dropReferences(resource, path)
        return self.changed(number, change)

    def halved(self, number):
        def change(other, path):
            other.resources[path]["CapacityMiB"] //= 2
        return self.changed(number, change)

    def replaced(self, number):
        def change(other, path):
            other.resources[path] |= {"SerialNumber": OTHER_SERIAL, "PartNumber": OTHER_PART}
        return self.changed(number, change)


def dropReferences(value, path):
    """Takes the resource off every list that refers to it, or to something below it."""
    if isinstance(value, dict):
        for key, inner in list(value.items()):
            dropReferences(inner, path)
            if isinstance(inner, list):
                kept = [one for one in inner if not refersTo(one, path)]
                if len(kept) < len(inner) and f"{key}@odata.count" in value:
                    value[f"{key}@odata.count"] = len(kept)
                value[key] = kept
    elif isinstance(value, list):
        for inner in value:
            dropReferences(inner, path)


def refersTo(value, path):
    return isinstance(value, dict) and isinstance(value.get(PATH), str) and canonical(value[PATH]) == path
