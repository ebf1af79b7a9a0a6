"""The rules and the machines of `world` in the form that each tool reads."""
import json
from xml.sax.saxutils import quoteattr


def write_json(path, data):
    path.write_text(json.dumps(data, indent=1))


def value_keys(device):
    return [key for key in device if key != "type"]


def write_recording(path, machine):
    with open(path, "w") as out:
        out.write("<SysInfo>\n")
        for locator, device in machine.items():
            out.write(f'<Device type="{device["type"]}" name="{device["type"]}" hwLocator="{locator}" osLocator="">\n')
            out.writelines(f"<property key={quoteattr(key)} value={quoteattr(str(device[key]))}/>\n"
                           for key in value_keys(device))
            out.write("</Device>\n")
        out.write("</SysInfo>\n")


def write_script(path, rules, has_places=True):
    with open(path, "w") as out:
        out.write("<inventory-check>\n")
        for locator, rule in rules.items():
            place = f' hwlocator="{locator}"' if has_places else ""
            out.write(f'<device type="{rule["type"]}"{place}>\n')
            out.writelines(f'<property key="{key}" value={quoteattr(f"^{pattern}$")}/>\n'
                           for key, pattern in rule["patterns"].items())
            out.writelines(f'<property key="{key}" value="^VRXRRANGE[{low}-{high}]$"/>\n'
                           for key, (low, high) in rule["ranges"].items())
            out.write("</device>\n")
        out.write("</inventory-check>\n")


def write_json_schema(path, rules):
    write_json(path, {
        "$schema": "http://json-schema.org/draft-07/schema#",
        "type": "object",
        "required": list(rules),
        "properties": {locator: device_schema(rule) for locator, rule in rules.items()},
    })


def device_schema(rule):
    properties = {"type": {"const": rule["type"]}}
    for key, pattern in rule["patterns"].items():
        properties[key] = {"type": "string", "pattern": f"^{pattern}$"}
    for key, (low, high) in rule["ranges"].items():
        properties[key] = {"type": "number", "minimum": low, "maximum": high}
    return {"type": "object", "required": list(properties), "properties": properties}


def write_relax_ng(path, rules):
    """Devices and properties in the order of the recording: a grammar that allows any order is far more work."""
    with open(path, "w") as out:
        out.write('<element name="SysInfo" xmlns="http://relaxng.org/ns/structure/1.0"\n'
                  ' datatypeLibrary="http://www.w3.org/2001/XMLSchema-datatypes">\n')
        for locator, rule in rules.items():
            out.write(f'<element name="Device"><attribute name="type"><value>{rule["type"]}</value></attribute>'
                      f'<attribute name="name"/><attribute name="hwLocator"><value>{locator}</value></attribute>'
                      '<attribute name="osLocator"/>\n')
            for key, pattern in rule["patterns"].items():
                write_relax_ng_property(out, key, "string", {"pattern": pattern})
            for key, (low, high) in rule["ranges"].items():
                write_relax_ng_property(out, key, "decimal", {"minInclusive": low, "maxInclusive": high})
            out.write("</element>\n")
        out.write("</element>\n")


def write_relax_ng_property(out, key, kind, facets):
    parameters = "".join(f'<param name="{name}">{value}</param>' for name, value in facets.items())
    out.write(f'<element name="property"><attribute name="key"><value>{key}</value></attribute>'
              f'<attribute name="value"><data type="{kind}">{parameters}</data></attribute></element>\n')
