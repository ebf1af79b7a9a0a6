"""Made-up machines and scripts for the benchmarks, written as SysInfo XML and inventory scripts."""

TYPES = ["Processor", "MemoryModule", "SolidStateDrive", "HardDiskDrive", "Ethernet", "Display", "Fan", "PowerSupply",
         "TemperatureSensor", "UsbDevice", "PciDevice", "Monitor", "Battery", "Camera", "Keyboard", "Cache"]


def device_type(index):
    return TYPES[index % len(TYPES)]


def property_value(device, number):
    return f"Value {device * 31 + number * 7} of {number}"


def write_machine(path, devices, properties=15, identical=False):
    with open(path, "w") as out:
        out.write("<SysInfo>\n")
        for d in range(devices):
            kind = "MemoryModule" if identical else device_type(d)
            name = "Module" if identical else f"{kind} {d}"
            out.write(f'  <Device type="{kind}" name="{name}" hwLocator="bus:{d:06d}" osLocator="/dev/node{d}">\n')
            for p in range(properties):
                value = "same" if identical else property_value(d, p)
                out.write(f'    <property key="Property{p:02d}" value="{value}"/>\n')
            out.write("  </Device>\n")
        out.write("</SysInfo>\n")


def device_element(d, properties=0, inner=""):
    kind = device_type(d)
    head = f'<device type="{kind}" name="^{kind} {d}$" hwlocator="bus:{d:06d}" oslocator="/dev/node{d}"'
    tests = "".join(f'\n    <property key="Property{p:02d}" type="STRING">'
                    f'\n      <value value="^{property_value(d, p)}$"/>\n    </property>' for p in range(properties))
    return f"  {head}>{tests}{inner}\n  </device>\n" if tests or inner else f"  {head}/>\n"


def write_script(path, body):
    with open(path, "w") as out:
        out.write("<inventory-check>\n")
        out.writelines(body)
        out.write("</inventory-check>\n")


def naming_script(path, devices, properties=0):
    write_script(path, (device_element(d, properties) for d in range(devices)))


def identical_script(path, elements):
    write_script(path, ('  <device type="MemoryModule" name="Module"/>\n' for _ in range(elements)))


def alternatives_script(path, ors, alternatives, plain, failing):
    """`plain` elements, then `ors` choices among `alternatives` present devices each; optionally one missing device."""
    body = [device_element(d) for d in range(plain)]
    at = plain
    for _ in range(ors):
        body.append("  <or>\n")
        for _ in range(alternatives):
            body.append("  " + device_element(at))
            at += 1
        body.append("  </or>\n")
    if failing:
        body.append('  <device type="Fan" hwlocator="nowhere"/>\n')
    write_script(path, body)
    return at


def part_devices(part, size):
    """The devices of one copy of a part: (type, model) of each."""
    return [(TYPES[(part + i) % len(TYPES)], f"Model {part}.{i}") for i in range(size)]


def write_parts_machine(path, copies, sizes, devices, properties=8):
    """A machine that holds `copies[p]` copies of part p of `sizes[p]` devices, filled up with others to `devices`."""
    serial = 0
    with open(path, "w") as out:
        out.write("<SysInfo>\n")

        def device(kind, model):
            nonlocal serial
            out.write(f'  <Device type="{kind}" name="{model}" hwLocator="bus:{serial:06d}" osLocator="">\n'
                      f'    <property key="Model" value="{model}"/>\n'
                      f'    <property key="Serial" value="{serial}"/>\n')
            for p in range(properties):
                out.write(f'    <property key="Property{p:02d}" value="{property_value(serial, p)}"/>\n')
            out.write("  </Device>\n")
            serial += 1

        # Copies lie far apart, as parts that were fitted one after the other do.
        for copy in range(max(copies)):
            for part, (count, size) in enumerate(zip(copies, sizes)):
                if copy < count:
                    for kind, model in part_devices(part, size):
                        device(kind, model)
        while serial < devices:
            device("SerialPort", "filler")
        out.write("</SysInfo>\n")
    return serial


def write_parts_list(path, sizes):
    with open(path, "w") as out:
        out.write("<parts>\n")
        for part, size in enumerate(sizes):
            out.write(f'  <part name="part {part}" id="id-{part}" description="{size} devices">\n')
            for kind, model in part_devices(part, size):
                out.write(f'    <device type="{kind}"><property key="Model" value="^{model}$"/></device>\n')
            out.write("  </part>\n")
        out.write("</parts>\n")
