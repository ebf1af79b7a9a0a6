"""Which devices fit which elements; both are told apart by nothing but their properties."""
import json
import re


def read(path):
    with open(path) as file:
        return list(json.load(file).values())


def fits(rule, device):
    return (rule["type"] == device["type"]
            and all(low <= device[key] <= high for key, (low, high) in rule["ranges"].items())
            and all(re.fullmatch(pattern, device[key]) for key, pattern in rule["patterns"].items()))


def links(rules, devices):
    return [[number for number, device in enumerate(devices) if fits(rule, device)] for rule in rules]
