"""Machines and scripts that were made to be slow, in any size. What is equal here is what makes them so."""
from collections import namedtuple

# `size` is the smaller of the two that are measured, `product` how much more ten times of everything is to look at.
Case = namedtuple("Case", "name size product expected isParts write")


def device(number, content="", name="Module", locators=True):
    where = f' hwLocator="bus:{number}" osLocator="node:{number}"' if locators else ""
    return f'<Device type="MemoryModule" name="{name}"{where}>{content}</Device>\n'


def recorded(key, value):
    return f'<property key="{key}" value="{value}"/>'


def machine(out, devices):
    out.write("<SysInfo>\n")
    out.writelines(devices)
    out.write("</SysInfo>\n")


def equal_machine(out, size):
    machine(out, (device(d, recorded("Size", "16 GB") + recorded("Speed", "5600 MT/s")) for d in range(size)))


def script(out, elements):
    out.write("<inventory-check>\n")
    out.writelines(elements)
    out.write("</inventory-check>\n")


def element(content="", attributes=""):
    return f'<device type="MemoryModule"{attributes}>{content}</device>\n'


def colliding_keys(size):
    """Keys of one hash, where the hash is a product that the first four units make 0."""
    for number in range(size):
        digits = "".join(chr(0x4E00 + (number >> 4 * place & 15)) for place in range(4))
        yield "\uED03\uD192\u4A32\uD1B5" + digits + "same end"


def write_keys(m, s, size):
    machine(m, [device(0, "".join(recorded(key, "on") for key in colliding_keys(size)))])
    script(s, [element("".join(recorded(key, "^on$") for key in colliding_keys(size)))])


def rules(size):
    return (f'<fail-on-extra type="MemoryModule">{recorded("Size", f"^{rule} KB$")}</fail-on-extra>\n'
            for rule in range(size))


def write_rules(m, s, size):
    equal_machine(m, 10 * size)
    script(s, rules(size))


def write_equal(m, s, size):
    equal_machine(m, size)
    script(s, (element(recorded("Size", "^16 GB$")) for _ in range(size)))


def write_parts(m, s, size):
    equal_machine(m, 5 * size)
    s.write("<parts>\n")
    for part in range(size):
        s.write(f'<part name="part {part}" id="{part}">{element(recorded("Size", "^16 GB$"))}</part>\n')
    s.write("</parts>\n")


def write_absent_parts(m, s, size):
    """A catalogue of parts, none of which the machine holds."""
    machine(m, (device(d, recorded("Model", f"Model {d}")) for d in range(5 * size)))
    s.write("<parts>\n")
    for part in range(size):
        s.write(f'<part name="part {part}" id="{part}">{element(recorded("Model", f"^Other {part}$"))}</part>\n')
    s.write("</parts>\n")


def write_alternatives(m, s, size):
    """Every alternative can be met, and another element cannot, so that all are tried."""
    machine(m, (device(d) for d in range(size)))
    alternatives = "".join(element(attributes=f' hwlocator="bus:{d}"') for d in range(size))
    script(s, [f"<or>{alternatives}</or>\n", '<device type="Fan"/>\n'])


def write_reversed(m, s, size):
    entries = "".join(f'<value value="entry {i}"/>' for i in range(size))
    machine(m, [device(0, f'<property key="List">{entries}</property>')])
    asked = "".join(f'<value value="^entry {i}$"/>' for i in reversed(range(size)))
    script(s, [element(f'<property key="List">{asked}</property>')])


def write_nameless(m, s, size):
    """Devices that only their properties tell apart."""
    keys = [f"Key{k}" for k in range(15)]
    machine(m, (device(d, "".join(recorded(key, f"{key} of {d}") for key in keys), locators=False)
                for d in range(size)))
    script(s, (element("".join(recorded(key, f"^{key} of {d}$") for key in keys)) for d in range(size)))


CASES = [
    Case("keys that collide", 4_000, 10, 0, False, write_keys),
    Case("rules with content and ten times the devices", 100, 100, 0, False, write_rules),
    Case("equal elements and equal devices", 1_000, 100, 0, False, write_equal),
    Case("parts that are ambiguous and five times the devices", 20, 100, 1, True, write_parts),
    Case("parts that no device is of", 400, 10, 3, True, write_absent_parts),
    Case("alternatives of an or", 2_000, 10, 1, False, write_alternatives),
    Case("entries of a list in reverse", 2_000, 10, 0, False, write_reversed),
    Case("devices without name and locators", 85, 100, 0, False, write_nameless),
]
