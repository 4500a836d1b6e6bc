# SPDX-License-Identifier: MIT
"""The machine's own serial adapters as COM ports of a Wine prefix, with names for the program's port list, and the
reasons why an adapter cannot be used.

Wine gives adapters numbers outside the program's ten ports, so they are mapped to free ones.
"""

import errno
import getpass
import grp
import os
import stat
from pathlib import Path

Adapters = ("ttyUSB*", "ttyACM*", "rfcomm*")  # USB converters, USB modems, Bluetooth
Positions = range(1, 10)  # Wine has no COM0
LongestName = 30  # the program's report files are named after the label, and their paths are short

DriversKey = r"HKEY_LOCAL_MACHINE\Drivers\BuiltIn"


def adapters(devices=Path("/dev")):
    """The connected adapters, in the order of their names."""
    return sorted(path for pattern in Adapters for path in devices.glob(pattern))


def friendly_name(device, classes=Path("/sys/class/tty")):
    """The adapter's own name, with its device's name; the device's name alone if the adapter has none."""
    place = (classes / device.name / "device").resolve()
    for folder in (place, *place.parents):
        product = folder / "product"
        if product.is_file():
            name = product.read_text(errors="replace").strip()
            return f"{name[:LongestName - len(device.name) - 3]} ({device.name})"
    return device.name


# ---- What is wrong with a device ----------------------------------------------------------------------

def permission_problem(device):
    """Advice for a user without access to the device."""
    status = os.stat(device)
    try:
        group = grp.getgrgid(status.st_gid)
    except KeyError:
        return f"{device}: permission denied; its group {status.st_gid} has no name, so ask who runs this machine"
    user = getpass.getuser()
    if status.st_mode & 0o060 != 0o060 or group.gr_name == "root":
        return f"{device}: permission denied; only root may use it. A rule for udev can give it to group dialout"
    if user in group.gr_mem and group.gr_gid not in os.getgroups():
        return (f"{device}: permission denied; you have joined group {group.gr_name}, but this session does not know "
                "it yet: log out and in again")
    return (f"{device}: permission denied; it is for members of group {group.gr_name}. Join it with\n"
            f"    sudo adduser {user} {group.gr_name}\n"
            "then log out and in again")


def process_name(process):
    return (Path("/proc") / process / "comm").read_text(errors="replace").strip()


def holders(device, locks=Path("/run/lock")):
    """The program that has the device open or locked, as "gpsd (process 612)". Other users' open files are hidden from all but
    root; lock files are not."""
    number = os.stat(device).st_rdev
    found = set()
    for process in filter(str.isdigit, os.listdir("/proc")):
        try:
            files = os.scandir(f"/proc/{process}/fd")
            if any(os.stat(file.path).st_rdev == number for file in files):
                found.add(process)
        except OSError:
            continue  # the process has ended, or we may not inspect it
    try:
        found.update((locks / f"LCK..{Path(device).resolve().name}").read_text().split()[:1])
    except OSError:
        pass
    alive = (process for process in found if (Path("/proc") / process / "comm").exists())
    return [f"{process_name(process)} (process {process})" for process in sorted(alive, key=int)]


def use_problem(device):
    """A problem that appears when the device is opened. If two programs read, each gets only a part of the bytes."""
    busy = False
    try:
        handle = os.open(device, os.O_RDWR | os.O_NONBLOCK | os.O_NOCTTY)
    except OSError as problem:
        busy = problem.errno == errno.EBUSY
        if not busy:
            return f"{device}: {problem.strerror}; is the receiver still plugged in?"
    else:
        serial = os.isatty(handle)
        os.close(handle)
        if not serial:
            return f"{device}: not a serial port"
    names = holders(device)
    if names:
        return f"{device}: in use by {', '.join(names)}; end that first"
    if busy:
        return f"{device}: in use by another program; this tells by which:\n    sudo fuser --verbose {device}"
    return None


def problem_with(device):
    """The reason why the device cannot be used, and the remedy; None if it can be used."""
    if not os.path.exists(device):
        return f"{device}: no such device; is the receiver plugged in?"
    if not stat.S_ISCHR(os.stat(device).st_mode):
        return f"{device}: not a serial port"
    if not os.access(device, os.R_OK | os.W_OK):
        return permission_problem(device)
    if str(Path(device).resolve()).startswith("/dev/pts/"):
        return None  # a pseudo-terminal is always open in the program that created it
    return use_problem(device)


# ---- Places in the prefix -----------------------------------------------------------------------------

def free_positions(dosdevices):
    """The port numbers whose device does not exist."""
    return [number for number in Positions if not (dosdevices / f"com{number}").exists()]


def place(wine, device):
    """The port number of the device. A device without a number gets a free one; if none is free, the last one."""
    dosdevices = wine.prefix / "dosdevices"
    for number in Positions:
        if (dosdevices / f"com{number}").resolve() == Path(device).resolve():
            return number
    number = (free_positions(dosdevices) or Positions)[-1]
    wine.map_port(number, device)
    return number


def driver_keys(names):
    """The registry file after which only these ports (number to name) have names."""
    lines = ["REGEDIT4", "", f"[-{DriversKey}]", ""]
    for number, name in names.items():
        text = name.replace("\\", "\\\\").replace('"', '\\"')
        lines += [rf"[{DriversKey}\Port{number}]", '"Prefix"="COM"', f'"Index"=dword:{number:08x}',
                  f'"FriendlyName"="{text}"', ""]
    return "\n".join(lines)


def map_adapters(wine, names):
    """Maps the adapters to free ports and names these ports and those of `names` (number to name). The mapping of a
    removed adapter is forgotten. Returns all names."""
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
