# SPDX-License-Identifier: MIT
"""The Communication dialog on real serial lines: ports and rates, search, statistics, log, report, unplugging."""

import subprocess
import time

import pytest

from harness import Port, VK_RETURN, desktop, sentence, wait_for
from resource_ids import Id

(Ports, Rates, Protocol, FindPort, Open, Close, FindBaud, Status, LogOpen,
 LogClose) = *range(Id.CONTROL_COM_PORT, Id.CONTROL_COM_LOG_OPEN + 1), Id.CONTROL_COM_LOG_CLOSE
Selection = (Ports, Rates, FindPort, FindBaud, Open)
FileName, SaveButton = 1148, 1  # of the system's save dialog

Drivers = r"HKEY_LOCAL_MACHINE\Drivers\BuiltIn"
SystemsPorts = r"HKEY_LOCAL_MACHINE\HARDWARE\DEVICEMAP\SERIALCOMM"
SaveAs = "Save As"
Sentence = sentence("GPVTG,231.8,T,,M,10.0,N,18.5,K,D")


@pytest.fixture
def ports(user):
    """Maps ports for one test; the other ports do not exist."""
    mapped = []

    def map_port(number, device):
        user.wine.map_port(number, device)
        mapped.append(number)
    for number in range(10):
        unmap(user, number)
    yield map_port
    for number in mapped:
        unmap(user, number)


def unmap(user, number):
    (user.wine.prefix / "dosdevices" / f"com{number}").unlink(missing_ok=True)


def start_receiver(user, rate, *options):
    """A receiver whose terminal has another rate, as if another program had used it."""
    receiver, terminal = desktop.start_software_receiver("--rate", rate, "--start", "hot", *options)
    user.receivers.append(receiver)
    subprocess.run(["stty", "-F", terminal, "300"], check=True)
    return terminal


def start(user):
    user.store(CommPortIdx=Port)  # without a rate: nothing is opened, and no About box is shown
    program = user.start()
    user.main_window()
    return program, communication(user)


def communication(user):
    user.choose(Id.COMMAND_COMMUNICATION)
    dialog = user.dialog("Communication")
    wait_for("the dialog is complete", lambda: len(dialog.items(Rates)[0]) == 8)
    return dialog


def enabled(dialog):
    """The numbers of the controls that can be used."""
    return {c["id"] for c in dialog.controls() if c["enabled"]} & {*Selection, Close, LogOpen, LogClose}


ClosedState = {*Selection, LogOpen}
OpenState = {Close, LogOpen}


def wait_state(dialog, state, seconds=30):
    wait_for(f"the usable controls are {sorted(state)}", lambda: enabled(dialog) == state, seconds)


def wait_through_boxes(user, dialog, state, seconds=60):
    """Waits for a state, and meanwhile answers the boxes of lines that cannot be set."""
    def reached():
        if user.dialogs() != ["Communication"]:
            user.press(VK_RETURN)
        return enabled(dialog) == state
    wait_for(f"the usable controls are {sorted(state)}", reached, seconds)


def select(dialog, port, rate=None):
    label = next(label for label in dialog.items(Ports)[0] if label.startswith(f"COM{port}:"))
    dialog.pick(Ports, label)
    if rate:
        dialog.pick(Rates, str(rate))


def open_port(dialog, port, rate):
    select(dialog, port, rate)
    dialog.press(Open)
    wait_state(dialog, OpenState)


def close_port(dialog):
    dialog.press(Close)
    wait_state(dialog, ClosedState)
    assert dialog.text(Protocol) == "-"


def leave(user, program):
    """The program still reacts to commands."""
    user.dialog("Communication").close()
    user.close()
    assert program.wait_end() == 0


def documents(user):
    return user.wine.documents()


# ---- Open and close -----------------------------------------------------------------------------------

def test_open_close_and_open_again(user, ports):
    ports(4, start_receiver(user, 4800))
    program, dialog = start(user)
    wait_state(dialog, ClosedState)
    user.screenshot("communication closed")
    for _ in range(2):
        open_port(dialog, 4, 4800)
        wait_for("the protocol is shown", lambda: dialog.text(Protocol) == "NMEA")
        user.screenshot("communication open")
        close_port(dialog)
    assert user.stored("CommPortIdx") == 4
    assert user.stored("BaudrateIdx") == desktop.Rates.index(4800)
    leave(user, program)


def test_wrong_rate_counts_bytes(user, ports):
    ports(Port, start_receiver(user, 4800))
    _, dialog = start(user)
    select(dialog, Port, 38400)
    dialog.press(Open)
    text = wait_for("the bytes are counted", lambda: dialog.text(Status).startswith("Bytes Received ")
                    and dialog.text(Status))
    assert int(text.split()[-1]) > 100
    user.screenshot("communication wrong rate")
    assert dialog.text(Protocol) == "-"
    wait_state(dialog, OpenState)
    wait_for("the statistics replace it", lambda: dialog.text(Status).startswith("Messages NMEA 0 SiRF 0\r\n"))


def test_missing_and_silent_port(user, ports):
    line = user.connect()
    ports(Port, line.device)
    program, dialog = start(user)
    select(dialog, 7, 4800)
    dialog.press(Open)
    user.dialog("Cannot open COM7:").dismiss("OK")
    wait_state(dialog, ClosedState)

    select(dialog, Port, 4800)
    dialog.press(Open)
    wait_for("nothing was received", lambda: dialog.text(Status) == "Bytes Received 0")
    wait_state(dialog, OpenState)
    close_port(dialog)
    leave(user, program)


def test_nothing_selected(user):
    user.store(BaudrateIdx=2)
    user.start()
    dialog = communication(user)
    for button in (Open, FindBaud):
        dialog.press(button)
        box = user.dialog("Comm Port")
        assert box.texts == ["Bad selection"]
        box.dismiss("OK")
    select(dialog, 4)
    user.store(BaudrateIdx=2)
    wait_state(dialog, ClosedState)


# ---- Statistics ---------------------------------------------------------------------------------------

def test_statistics_each_second(user, ports):
    line = user.connect()
    ports(Port, line.device)
    _, dialog = start(user)
    select(dialog, Port, 4800)
    dialog.press(Open)
    wait_for("the line is open", lambda: line.rate() == 4800)
    line.send(Sentence)
    wait_state(dialog, OpenState)
    for count in range(1, 4):
        lines = [f"Messages NMEA {count} SiRF 0", "Baudrate NMEA 0 Effective 0", f"Bytes {line.sent}"]
        wait_for("the statistics are current", lambda: dialog.text(Status).split("\r\n") == lines, 1.5)
        line.send(Sentence)


# ---- Search -------------------------------------------------------------------------------------------

@pytest.mark.parametrize("protocol, rate", [("NMEA", 4800), ("SiRF", 57600)])
def test_find_baud(user, ports, protocol, rate):
    ports(Port, start_receiver(user, rate, "--protocol", protocol.lower()))
    _, dialog = start(user)
    select(dialog, Port)
    dialog.press(FindBaud)
    wait_state(dialog, {LogOpen})
    user.screenshot(f"communication searching {rate}")
    wait_state(dialog, OpenState, 60)
    wait_for("the protocol is shown", lambda: dialog.text(Protocol) == protocol)
    assert dialog.items(Rates)[1] == str(rate)
    wait_for("port and rate are stored", lambda: (user.stored("CommPortIdx"), user.stored("BaudrateIdx")) ==
             (Port, desktop.Rates.index(rate)))


def test_find_port_and_baud(user, ports):
    """COM1 may be the machine's own port, which Wine does not release."""
    silent = user.connect()
    unmap(user, Port)
    ports(2, silent.device)
    ports(5, start_receiver(user, 2400))
    ports(6, start_receiver(user, 4800))
    program, dialog = start(user)
    dialog.press(FindPort)
    wait_through_boxes(user, dialog, OpenState)
    wait_for("the protocol is shown", lambda: dialog.text(Protocol) == "NMEA")
    assert dialog.items(Ports)[1].startswith("COM5:")
    assert dialog.items(Rates)[1] == "2400"
    assert silent.rate() == 115200  # all of its rates were tried
    close_port(dialog)
    leave(user, program)


# ---- Log ----------------------------------------------------------------------------------------------

def test_log_holds_what_the_receiver_sent(user, ports):
    """The log stays open while the user closes the port and opens it again, and works elsewhere."""
    line = user.connect()
    ports(Port, line.device)
    _, dialog = start(user)
    counted = 0  # bytes sent before the port was last opened

    def open_line():
        nonlocal counted
        counted = line.sent
        line.hang_up()
        dialog.press(Open)
        wait_for("the line is open", lambda: line.rate() == 115200)
        line.send(Sentence)
        wait_state(dialog, {Close, LogOpen} if log is None else {Close, LogClose})

    def arrived():
        wait_for("the bytes have arrived", lambda: dialog.text(Status).endswith(f"Bytes {line.sent - counted}"))

    log = None
    select(dialog, Port, 115200)
    open_line()
    arrived()
    dialog.press(LogOpen)
    save = user.dialog(SaveAs)
    user.screenshot("communication log")
    name = save.text(FileName)
    save.press(SaveButton)
    save.wait_gone()
    wait_state(dialog, {Close, LogClose})
    log = wait_for("the log is there", lambda: next(documents(user).glob(f"{name[-12:]}.txt"), None))

    noise = bytes(range(256)) * 40
    line.send(noise + Sentence * 20, rate=115200)
    arrived()
    dialog.press(Close)
    wait_state(dialog, {*Selection, LogClose})
    select(dialog, 5, 1200)
    select(dialog, Port, 115200)
    open_line()
    dialog.close()
    line.send(noise, rate=115200)  # without a dialog
    dialog = communication(user)
    arrived()
    dialog.press(LogClose)
    wait_state(dialog, OpenState)
    line.send(Sentence * 5)
    arrived()
    assert log.read_bytes() == noise + Sentence * 21 + noise


# ---- Names of ports -----------------------------------------------------------------------------------

def test_ports_of_the_system_are_named(user, ports):
    """As on a Windows machine, without names from a launcher; adapters come and go."""
    added = {r"\Device\VCP0": "COM6", "BthModem0": "COM7", r"\Device\VCP1": "COM12", r"\Device\Parallel0": "LPT1"}
    for device, port in added.items():
        user.wine.run("reg", "add", SystemsPorts, "/f", "/v", device, "/d", port)
    try:
        program, dialog = start(user)
        labels = dialog.items(Ports)[0]
        assert (labels[0], labels[6:]) == ("COM0:", ["COM6: VCP0", "COM7: BthModem0", "COM8:", "COM9:"])
        dialog.close()
    finally:
        for device in added:
            user.wine.run("reg", "delete", SystemsPorts, "/f", "/v", device)
    assert communication(user).items(Ports)[0][6:] == ["COM6:", "COM7:", "COM8:", "COM9:"]


# ---- Report -------------------------------------------------------------------------------------------

def test_report_is_named_after_the_label(user, ports):
    line = user.connect()
    ports(Port, line.device)
    for name, kind, value in (("Prefix", "REG_SZ", "COM"), ("Index", "REG_DWORD", Port),
                              ("FriendlyName", "REG_SZ", r"USB\Serial 2")):
        user.wine.run("reg", "add", Drivers + r"\Test", "/f", "/v", name, "/t", kind, "/d", str(value))
    try:
        _, dialog = start(user)
        assert dialog.items(Ports)[0][Port] == rf"COM{Port}: USB\Serial 2"
        open_port(dialog, Port, 4800)
        report = documents(user) / f"COM{Port}; USB!Serial 2;.txt"
        text = report.read_bytes().decode("cp1252")
    finally:
        user.wine.run("reg", "delete", r"HKEY_LOCAL_MACHINE\Drivers", "/f")
    assert text.startswith("This file was created by Toravane v 2.20 \r\nfor troubleshooting serial")
    assert "\r\n\r\nWindows Version:\t" in text
    assert f"\r\n\r\nCOM{Port}: USB\\Serial 2\r\n\r\nCommProp:\r\n" in text
    assert "\r\nBaudRate\t300\r\n" in text  # the port's state before it was opened
    assert "\r\nByteSize\t8\r\n" in text
    assert text.endswith("\r\n\r\n") and "\r\nComStat:\r\n" in text
    assert text.count("\n") == text.count("\r\n")


# ---- Unplugging ---------------------------------------------------------------------------------------

def test_unplugged_while_open(user, ports):
    line = user.connect()
    ports(Port, line.device)
    program, dialog = start(user)
    select(dialog, Port, 4800)
    dialog.press(Open)
    wait_for("the line is open", lambda: line.rate() == 4800)
    line.send(Sentence)
    wait_state(dialog, OpenState)
    user.pull_out(line)
    time.sleep(1)
    close_port(dialog)

    line = user.connect()
    dialog.press(Open)
    wait_for("the new line is open", lambda: line.rate() == 4800)
    line.send(Sentence)
    wait_for("the protocol is shown", lambda: dialog.text(Protocol) == "NMEA")
    wait_state(dialog, OpenState)
    close_port(dialog)
    leave(user, program)


def test_unplugged_during_a_search(user, ports):
    line = user.connect()
    ports(Port, line.device)
    program, dialog = start(user)
    select(dialog, Port)
    dialog.press(FindBaud)
    wait_for("the search has begun", lambda: line.rate() == 2400)
    user.pull_out(line)

    wait_through_boxes(user, dialog, ClosedState)
    line = user.connect()
    dialog.pick(Rates, "4800")
    dialog.press(Open)
    wait_for("the new line is open", lambda: line.rate() == 4800)
    line.send(Sentence)
    wait_for("the protocol is shown", lambda: dialog.text(Protocol) == "NMEA")
    wait_state(dialog, OpenState)
    leave(user, program)
