"""The machine's own serial adapters as COM ports of a Wine prefix, with names that the program's port list shows.

Wine gives adapters numbers that the program's ten ports do not reach, so they are mapped to free ones.
"""

from pathlib import Path

Adapters = ("ttyUSB*", "ttyACM*", "rfcomm*")  # USB converters, USB modems, Bluetooth
Positions = range(1, 10)  # Wine has no COM0
LongestName = 30  # the program's report files are named after the label, and their paths are short

DriversKey = r"HKEY_LOCAL_MACHINE\Drivers\BuiltIn"


def adapters(devices=Path("/dev")):
    """The adapters that are plugged in, in the order of their names."""
    return sorted(path for pattern in Adapters for path in devices.glob(pattern))


def friendly_name(device, classes=Path("/sys/class/tty")):
    """What the adapter calls itself, with its device's name; the name alone when it tells nothing."""
    place = (classes / device.name / "device").resolve()
    for folder in (place, *place.parents):
        product = folder / "product"
        if product.is_file():
            name = product.read_text(errors="replace").strip()
            return f"{name[:LongestName - len(device.name) - 3]} ({device.name})"
    return device.name


def free_positions(dosdevices):
    """The port numbers that mean nothing that exists."""
    return [number for number in Positions if not (dosdevices / f"com{number}").exists()]


def driver_keys(names):
    """The registry file that makes these ports, number to name, the only ones with names."""
    lines = ["REGEDIT4", "", f"[-{DriversKey}]", ""]
    for number, name in names.items():
        text = name.replace("\\", "\\\\").replace('"', '\\"')
        lines += [rf"[{DriversKey}\Port{number}]", '"Prefix"="COM"', f'"Index"=dword:{number:08x}',
                  f'"FriendlyName"="{text}"', ""]
    return "\n".join(lines)


def map_adapters(wine, names):
    """Maps the adapters to free ports and names these, and those of `names`, number to name. What was mapped
    to an adapter that is gone is forgotten. Returns all names."""
    dosdevices = wine.prefix / "dosdevices"
    for number in free_positions(dosdevices):
        (dosdevices / f"com{number}").unlink(missing_ok=True)
    mapped = {(dosdevices / f"com{number}").resolve() for number in Positions}
    new = [device for device in adapters() if device.resolve() not in mapped]
    for number, device in zip(free_positions(dosdevices), new):
        wine.map_port(number, device)
    names = dict(names)
    for number in Positions:
        device = (dosdevices / f"com{number}").resolve()
        if any(device.match(pattern) for pattern in Adapters):
            names.setdefault(number, friendly_name(device))
    file = wine.prefix / "ports.reg"
    file.write_text(driver_keys(names), encoding="cp1252", errors="replace")
    wine.run("regedit", "/S", str(file))
    return names
