"""A test a device: RULES=rules.json MACHINE=machine.json pytest test_machine.py"""
import json
import os
import re

import pytest

with open(os.environ["RULES"]) as file:
    RULES = json.load(file)


@pytest.fixture(scope="module")
def machine(host):
    return json.loads(host.file(os.environ["MACHINE"]).content_string)


@pytest.mark.parametrize("locator", RULES)
def test_device(machine, locator):
    rule, device = RULES[locator], machine[locator]
    assert device["type"] == rule["type"]
    for key, pattern in rule["patterns"].items():
        assert re.fullmatch(pattern, device[key]), key
    for key, (low, high) in rule["ranges"].items():
        assert low <= device[key] <= high, key
