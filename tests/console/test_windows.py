# SPDX-License-Identifier: MIT
"""The special parts of the Windows program: its list of ports, file names, and the console for `monitor`."""

import fcntl
import json
import os
import pty
import re
import termios

from streams import Limit, Receiver, machine, read_some, run, start


def test_a_port_of_the_registry_is_listed():
    """Wine lists the ports that it maps itself; COM1 is the first one that a machine has, or none."""
    machine().wine.run("reg", "add", r"HKLM\HARDWARE\DEVICEMAP\SERIALCOMM", "/f", "/v", r"\Device\Toravane0", "/d", "COM19")
    try:
        listed = json.loads(run("--json", "ports", check=0).stdout)["ports"]
        assert [port["port"] for port in listed].count("COM19") == 1
    finally:
        machine().wine.run("reg", "delete", r"HKLM\HARDWARE\DEVICEMAP\SERIALCOMM", "/f", "/v", r"\Device\Toravane0")


def test_a_device_of_the_ports_class_is_listed_with_its_description():
    """Registers a port like an adapter's driver."""
    instance = r"HKLM\System\CurrentControlSet\Enum\USB\VID_067B&PID_2303\TORAVANE1"
    guid = "{4d36e978-e325-11ce-bfc1-08002be10318}"

    def add(key, name, value):
        machine().wine.run("reg", "add", key, "/f", "/v", name, "/d", value)

    add(instance, "Class", "Ports")
    add(instance, "ClassGUID", guid)
    add(instance, "FriendlyName", "Prolific USB-to-Serial Comm Port (COM21)")
    add(instance + r"\Device Parameters", "PortName", "COM21")
    try:
        listed = {port["port"]: port for port in json.loads(run("--json", "ports", check=0).stdout)["ports"]}
        assert listed["COM21"]["description"] == "Prolific USB-to-Serial Comm Port (COM21)"
        assert (listed["COM21"]["usb"], listed["COM21"]["serial"]) == ("067b:2303", "TORAVANE1")
    finally:
        machine().wine.run("reg", "delete", instance, "/f")


def test_ports_of_any_number():
    with Receiver("--rate", 4800) as receiver:
        machine().wine.map_port(247, receiver.terminal)
        assert b"COM247: NMEA at 4800 baud" in run("-p", "COM247", "-b", 4800, "probe", check=0).stdout
        assert b"NMEA at 4800 baud" in run("-p", "com247", "-b", 4800, "probe", check=0).stdout
    run("-p", "COM", "probe", check=3)
    run("-p", "/dev/ttyUSB0", "probe", check=3)


def test_names_of_files_in_every_script(tmp_path):
    name = tmp_path / "Spaziergang \u00fcber \u6771\u4eac.log"
    with Receiver("--rate", 57600, "--start", "hot") as receiver:
        run("log", name, "-p", receiver.port, "-b", 57600, "--for", 2, check=0)
    assert name.read_bytes().startswith(b"$") or b"$GP" in name.read_bytes()
    track = tmp_path / "\u6771.csv"
    run("convert", name, "--to", "csv", "-o", track, check=0)
    assert track.read_text().startswith("time,latitude")
    profile = tmp_path / "Empf\u00e4nger.profile"
    profile.write_text("power-mask tracking=28 navigation=28\n")
    run("profile", "show", profile, check=0)


def test_a_console_is_a_terminal():
    """Lines on a console, the key Ctrl-C there, and a question that is only asked on a console."""
    with Receiver("--protocol", "sirf", "--start", "hot", "--rate", 57600) as receiver:
        master, slave = pty.openpty()
        process = start("monitor", "--plain", "-p", receiver.port, "-b", 57600, stdin=slave, stdout=slave, stderr=slave,
                        start_new_session=True, preexec_fn=lambda: fcntl.ioctl(0, termios.TIOCSCTTY, 0))

        def text(data):  # Wine paints the console's cells on the terminal, with sequences between them
            return re.sub(rb"\x1b\[[?0-9;]*[A-Za-z]", b"", data)
        shown = text(read_some(master, lambda data: text(data).count(b"satellites") >= 2))
        os.write(master, b"\x03")
        assert process.wait(Limit) == 130
        os.close(master)
        os.close(slave)
        assert b"2008-06-21T10:" in shown
        done = run("-p", receiver.port, "-b", 57600, "restart", "factory")
        assert done.returncode == 2 and b"--yes" in done.stderr  # NUL is not a console
