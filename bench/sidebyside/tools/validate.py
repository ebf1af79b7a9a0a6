"""validate.py SCHEMA MACHINE: prints what is wrong; ends with 1 when something is."""
import json
import sys

import jsonschema


def read(path):
    with open(path) as file:
        return json.load(file)


faults = list(jsonschema.Draft7Validator(read(sys.argv[1])).iter_errors(read(sys.argv[2])))
for fault in faults:
    print(fault.json_path, fault.message)
sys.exit(1 if faults else 0)
