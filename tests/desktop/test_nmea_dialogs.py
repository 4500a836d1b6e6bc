# SPDX-License-Identifier: MIT
"""The NMEA command dialogs and the unattended switch, each against the software receiver."""

import os
import re
import termios
import threading
import time
import tty

import pytest

from harness import Port, VK_RETURN, desktop, sentence, wait_for
from resource_ids import Id

SetSerialPort, NavigationInitialization, SetMessageRate, DevelopmentData, SelectDatum = (
    Id.DIALOG_NMEA_SET_SERIAL_PORT, Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION, Id.DIALOG_NMEA_SET_MESSAGE_RATE,
    Id.DIALOG_NMEA_DEVELOPMENT_DATA, Id.DIALOG_NMEA_SELECT_DATUM)
GreyBox = Id.CONTROL_NMEA_GREY_BOX

HotStart = b"$PSRF101,0,0,0,0,0,0,12,1*15\r\n"


class Bench:
    """The program and the receiver; the program has recognised the protocol."""

    def __init__(self, user, *options, rate=4800):
        self.user = user
        self.record = user.connect_receiver(rate, "--start", "hot", "--track", "still", *options)
        self.terminal = terminal(user)
        user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(rate))
        self.program = user.start()
        wait_for("a fix", lambda: re.match(r" Fix: \d+ SVs", user.page()[4]), 30)
        wait_for("the hot start", lambda: self.record.read_bytes() == HotStart)
        for _ in range(2):  # after its start-up text
            time_shown = user.page()[0]
            wait_for("the receiver goes on", lambda: user.page()[0] != time_shown)
        assert self.sent() == HotStart

    def sent(self):
        """The bytes that the program has sent since the last call."""
        data = self.record.read_bytes()
        new = data[getattr(self, "taken", 0):]
        self.taken = len(data)
        return new

    def open(self, item, caption):
        self.user.choose(item)
        return self.user.dialog(caption)


def terminal(user):
    """The receiver's terminal, on the machine's own side."""
    return os.readlink(user.wine.prefix / "dosdevices" / f"com{Port}")


def line_rate(device):
    """The rate set by the program that has the terminal open."""
    code = termios.tcgetattr(device)[5]
    return next(rate for rate in desktop.Rates if getattr(termios, f"B{rate}") == code)


def terminal_rate(path):
    device = os.open(path, os.O_RDWR | os.O_NOCTTY)
    try:
        return line_rate(device)
    finally:
        os.close(device)


def press_set(bench, dialog, expected, detects_afresh=False):
    """Presses "Set" and waits until the receiver has got exactly this. If the program then detects the protocol again,
    a sentence that is still on its way may cause a hot start, before the command or after it."""
    dialog.press("Set")
    got = bytearray()

    def arrived():
        got.extend(bench.sent())
        return expected in got
    wait_for(f"{expected} is sent", arrived)
    assert bytes(got) == expected or detects_afresh and got.replace(HotStart, b"", 1) == expected


def wait_text(dialog, control, pattern, seconds=30):
    wait_for(f"control {control} shows {pattern}", lambda: re.search(pattern, dialog.text(control)), seconds)


def refused(user, dialog, caption, text):
    dialog.press("Set")
    box = user.dialog(caption)
    assert box.texts == [text]
    box.dismiss("OK")


# ---- Dialogs ------------------------------------------------------------------------------------------

def test_set_serial_port_switches_the_receiver_and_follows_it(user):
    bench = Bench(user)
    dialog = bench.open(SetSerialPort, "Set Serial Port")
    # The receiver has named its rate in the text that follows the hot start.
    assert dialog.items(Id.CONTROL_TO_SIRF_BAUDRATE) == ([str(rate) for rate in desktop.Rates], "4800")
    assert dialog.items(Id.CONTROL_SERIAL_PROTOCOL) == (["SiRF", "NMEA"], "SiRF")
    assert not dialog.control(Id.CONTROL_SERIAL_FOLLOW)["enabled"]
    wait_text(dialog, Id.CONTROL_NMEA_TIME, r"^\d\d:\d\d:\d\d$")
    assert dialog.text(Id.CONTROL_SIRF_TIME) == ""

    dialog.pick(Id.CONTROL_TO_SIRF_BAUDRATE, "38400")
    press_set(bench, dialog, b"$PSRF100,0,38400,8,1,0*3C\r\n", detects_afresh=True)
    wait_for("=Baud is enabled", lambda: dialog.control(Id.CONTROL_SERIAL_FOLLOW)["enabled"])
    time.sleep(1)
    assert terminal_rate(bench.terminal) == 4800  # the program does not follow by itself
    dialog.press("=Baud")
    wait_for("the program's own rate changes", lambda: terminal_rate(bench.terminal) == 38400)
    wait_text(dialog, Id.CONTROL_SIRF_TIME, r"^\d\d:\d\d:\d\d$")
    wait_for("the rate is stored for later switches",
             lambda: user.stored("SirfBaudrateIdx") == desktop.Rates.index(38400))
    assert user.stored("BaudrateIdx") == desktop.Rates.index(38400)
    dialog.close()
    wait_for("the page of SiRF binary", lambda: user.page()[3].startswith(" St:"))


def test_set_serial_port_takes_a_typed_rate_and_warns(user):
    bench = Bench(user)
    dialog = bench.open(SetSerialPort, "Set Serial Port")
    assert dialog.items(Id.CONTROL_TO_SIRF_BAUDRATE)[1] == "4800"
    user.press(*map(ord, "1234"))  # the list has the focus, with its text marked
    wait_for("the number is typed", lambda: dialog.items(Id.CONTROL_TO_SIRF_BAUDRATE)[1] is None)
    assert dialog.text(Id.CONTROL_TO_SIRF_BAUDRATE) == "1234"
    dialog.pick(Id.CONTROL_SERIAL_PROTOCOL, "NMEA")
    refused(user, dialog, "Baudrate", "Select a baudrate.\n\nSee Help for more information.")
    dialog.press("Help")
    box = user.dialog("Switching Baudrate")
    assert box.texts[0].startswith("Switching the SiRF chip to another baudrate is dangerous")
    box.dismiss("OK")
    assert bench.sent() == b""

    dialog.enter(Id.CONTROL_TO_SIRF_BAUDRATE, "9600")
    press_set(bench, dialog, b"$PSRF100,1,9600,8,1,0*0D\r\n", detects_afresh=True)
    time.sleep(1)
    dialog.press("=Baud")
    wait_for("the program's own rate changes", lambda: terminal_rate(bench.terminal) == 9600)
    # NMEA is recognised again, so the receiver is made to print its start-up text.
    wait_text(dialog, GreyBox, r"Baud rate: 9600")
    wait_for("the rate is stored", lambda: user.stored("BaudrateIdx") == desktop.Rates.index(9600))
    shown = dialog.text(Id.CONTROL_NMEA_TIME)
    wait_for("the time goes on", lambda: dialog.text(Id.CONTROL_NMEA_TIME) != shown)


def test_navigation_initialization_restarts_the_receiver(user):
    bench = Bench(user)
    dialog = bench.open(NavigationInitialization, "Navigation Initialization")
    checked = {c["id"]: c["checked"] for c in dialog.controls("Button") if c["id"] not in (1, Id.CONTROL_NAVINIT_SET)}
    assert checked == {Id.CONTROL_NAVINIT_SNAP_START: 0, Id.CONTROL_NAVINIT_HOT_START: 1,
                       Id.CONTROL_NAVINIT_WARM_START_INIT: 0, Id.CONTROL_NAVINIT_WARM_START_NO_INIT: 0,
                       Id.CONTROL_NAVINIT_COLD_START: 0, Id.CONTROL_NAVINIT_FACTORY_RESET: 0}
    fields = range(Id.CONTROL_NAVINIT_ECEF_X, Id.CONTROL_NAVINIT_CHANNELS)
    assert [dialog.control(number)["enabled"] for number in fields] == [0] * 6
    assert dialog.text(Id.CONTROL_NAVINIT_CHANNELS) == "12"
    assert dialog.text(GreyBox) == ""

    press_set(bench, dialog, HotStart)
    wait_text(dialog, GreyBox, r"^Version: .*\r\nTOW: \d+\r\nWK: \d+\r\nPOS: .*\r\nCLK: \d+\r\nCHNL: 12\r\nBaud rate: 4800\r\n$")
    wait_for("the fields are filled", lambda: dialog.text(Id.CONTROL_NAVINIT_CLOCK_OFFSET) == "96000"
             and dialog.text(Id.CONTROL_NAVINIT_ECEF_X) != "")

    dialog.press("Warm Start (Init)")
    assert [dialog.control(number)["enabled"] for number in fields] == [1] * 6
    for number, text in zip(fields, ("4278000", "642000", "4672000", "95000", "604801", "1480")):
        dialog.enter(number, text)
    refused(user, dialog, "Time of Week", "Range 0-604800 s")
    dialog.enter(Id.CONTROL_NAVINIT_TIME_OF_WEEK, "123456")
    press_set(bench, dialog, sentence("PSRF101,4278000,642000,4672000,95000,12345600,1480,12,3"))
    wait_text(dialog, GreyBox, r"TOW: 123456\r\nWK: 1480\r\nPOS: 4278000 642000 4672000\r\nCLK: 95000\r\n")

    dialog.press("Cold Start")
    assert [dialog.control(number)["enabled"] for number in fields] == [0] * 6
    press_set(bench, dialog, b"$PSRF101,0,0,0,0,0,0,12,4*10\r\n")
    dialog.close()
    wait_for("the fix is lost", lambda: user.page()[4] == " Fix: -", 8)


def test_set_message_rate_changes_what_arrives(user):
    bench = Bench(user)
    dialog = bench.open(SetMessageRate, "Set Message Rate")
    zda, gll = Id.CONTROL_STAMP_ZDA, Id.CONTROL_STAMP_GLL
    wait_text(dialog, gll, r"^\d\d:\d\d:\d\d$")
    assert dialog.text(zda) == ""
    assert next(c for c in dialog.controls("Button") if c["id"] == Id.CONTROL_NMEA_RATE_CHECKSUM)["checked"] == 1
    refused(user, dialog, "Message", "Select a message.")

    dialog.pick(Id.CONTROL_NMEA_RATE_MESSAGE, "ZDA")
    refused(user, dialog, "Update Rate", "Range 0-255 s")
    dialog.enter(Id.CONTROL_NMEA_RATE_SECONDS, "2")
    press_set(bench, dialog, b"$PSRF103,8,0,2,1*2E\r\n")
    wait_text(dialog, zda, r"^\d\d:\d\d:\d\d$")
    first = dialog.text(zda)
    wait_for("ZDA comes again", lambda: dialog.text(zda) != first)

    dialog.pick(Id.CONTROL_NMEA_RATE_MESSAGE, "GLL")
    dialog.pick(Id.CONTROL_NMEA_RATE_SECONDS, "0")
    press_set(bench, dialog, b"$PSRF103,1,0,0,1*25\r\n")
    time.sleep(1.5)
    last, other = dialog.text(gll), dialog.text(zda)
    wait_for("ZDA goes on", lambda: dialog.text(zda) != other)
    assert dialog.text(gll) == last


def test_development_data_and_datum(user):
    bench = Bench(user)
    dialog = bench.open(DevelopmentData, "Development Data")
    assert dialog.text(Id.CONTROL_DEVELOPMENT_COMMAND) == "PSRF105,1"
    press_set(bench, dialog, b"$PSRF105,1*3E\r\n")
    dialog.enter(Id.CONTROL_DEVELOPMENT_COMMAND, "PSRF106,999")
    press_set(bench, dialog, b"$PSRF106,999*35\r\n")
    wait_text(dialog, GreyBox, r"^PSRF106 parameter out of range\r\n$")
    dialog.enter(Id.CONTROL_DEVELOPMENT_COMMAND, "HELLO")
    press_set(bench, dialog, b"$HELLO*42\r\n")
    wait_text(dialog, GreyBox, r"^HELLO unknown\r\n$")
    dialog.close()
    latitude = user.page()[6]

    dialog = bench.open(SelectDatum, "Select Datum")
    assert dialog.items(Id.CONTROL_DATUM)[1] == "WGS-84"
    assert dialog.text(GreyBox) == ""  # until the receiver sends a text
    dialog.pick(Id.CONTROL_DATUM, "Tokyo Korea")
    press_set(bench, dialog, b"$PSRF106,180*35\r\n")
    wait_text(dialog, GreyBox, r"^PSRF106 ok\r\n$")
    dialog.close()
    wait_for("the position is in another datum", lambda: user.page()[6] != latitude)


# ---- The unattended switch ----------------------------------------------------------------------------

class RateWatch:
    """The rates to which the line is set, one after the other."""

    def __init__(self, device):
        self.device = os.open(device, os.O_RDWR | os.O_NOCTTY)
        self.rates = []
        self.watching = True
        self.thread = threading.Thread(target=self._watch)
        self.thread.start()

    def _watch(self):
        while self.watching:
            rate = line_rate(self.device)
            if self.rates[-1:] != [rate]:
                self.rates.append(rate)
            time.sleep(0.005)

    def end(self):
        self.watching = False
        self.thread.join()
        os.close(self.device)
        return self.rates


class Host:
    """Another host at the receiver's terminal."""

    def __init__(self, device, rate):
        self.device = os.open(device, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        tty.setraw(self.device)
        self.set_rate(rate)
        self.received = bytearray()

    def set_rate(self, rate):
        settings = termios.tcgetattr(self.device)
        settings[4] = settings[5] = getattr(termios, f"B{rate}")
        termios.tcsetattr(self.device, termios.TCSANOW, settings)

    def send(self, data):
        os.write(self.device, data)

    def wait_for(self, pattern, seconds=8):
        def arrived():
            try:
                self.received += os.read(self.device, 4096)
            except BlockingIOError:
                pass
            return re.search(pattern, bytes(self.received), re.DOTALL)
        found = wait_for(f"the receiver sends {pattern}", arrived, seconds)
        self.received.clear()
        return found

    def close(self):
        os.close(self.device)


def frame(*payload):
    checksum = sum(payload) & 0x7FFF
    return bytes([0xA0, 0xA2, 0, len(payload), *payload, checksum >> 8, checksum & 0xFF, 0xB0, 0xB3])


def static_navigation(device, rate):
    """Reads the setting of a receiver that uses NMEA at this rate, and leaves it in this state."""
    host = Host(device, rate)
    try:
        host.wait_for(rb"\$GPGGA,[^\r]*\*[0-9A-F]{2}\r\n")
        host.send(sentence(f"PSRF100,0,{rate},8,1,0"))
        host.wait_for(rb"\xA0\xA2\x00.\x02|\xA0\xA2\x00.\x29")
        host.send(frame(168, 143))
        setting = host.wait_for(rb"\xA0\xA2..\x2B\x8F(.)")[1][0]
        rates = [value for seconds in (1, 1, 5, 5, 1, 1, 0, 0, 0, 0) for value in (seconds, 1)]
        host.send(frame(129, 2, *rates, rate >> 8, rate & 0xFF))
        host.wait_for(rb"\$GPGGA,[^\r]*\*[0-9A-F]{2}\r\n")
        return setting
    finally:
        host.close()


# 129, debug messages as they are, GGA 1, GLL 1, GSA 5, GSV 5, RMC 1, VTG 1 and no others, each with its checksum
ToNmea = b"\xA0\xA2\x00\x18\x81\x02\x01\x01\x01\x01\x05\x01\x05\x01\x01\x01\x01\x01\x00\x01\x00\x01\x00\x01\x00\x01"


def test_static_navigation_is_switched_on_and_off_without_a_user(user):
    record = user.connect_receiver(4800, "--start", "hot")
    device = terminal(user)
    assert static_navigation(device, 4800) == 0
    user.store(CommPortIdx=Port, BaudrateIdx=2, SirfBaudrateIdx=6, NmeaBaudrateIdx=3)

    def run(argument, expected, rates):
        before = len(record.read_bytes())
        watch = RateWatch(device)
        try:
            program = user.start(argument)
            assert program.wait_end(40) == 0
        finally:
            seen = watch.end()
        assert record.read_bytes()[before:] == expected  # so no hot start either
        assert seen == rates
        assert user.stored("CommPortIdx") == Port
        assert user.stored("BaudrateIdx") == desktop.Rates.index(rates[-1])

    run("StaticNavigationOn",
        b"$PSRF100,0,57600,8,1,0*37\r\n" + b"\xA0\xA2\x00\x02\x8F\x01\x00\x90\xB0\xB3"
        + ToNmea + b"\x25\x80\x01\x40\xB0\xB3",
        [4800, 57600, 9600])
    assert static_navigation(device, 9600) == 1

    user.store(SirfBaudrateIdx=5, NmeaBaudrateIdx=2)
    run("StaticNavigationOff",
        b"$PSRF100,0,38400,8,1,0*3C\r\n" + b"\xA0\xA2\x00\x02\x8F\x00\x00\x8F\xB0\xB3"
        + ToNmea + b"\x12\xC0\x01\x6D\xB0\xB3",
        [9600, 38400, 4800])
    assert static_navigation(device, 4800) == 0


@pytest.mark.parametrize("stored, text", [
    ({"NmeaBaudrateIdx": 2}, "Unknown baudrate for switching to SiRF"),
    ({"SirfBaudrateIdx": 6}, "Unknown baudrate for switching to NMEA"),
    ({"SirfBaudrateIdx": 8, "NmeaBaudrateIdx": 2}, "Unknown baudrate for switching to SiRF"),
], ids=["no-sirf-rate", "no-nmea-rate", "sirf-rate-outside-the-table"])
def test_switch_names_the_missing_rate_and_ends_the_program(user, stored, text):
    line = user.connect()
    user.store(CommPortIdx=Port, BaudrateIdx=2, **stored)
    program = user.start("StaticNavigationOn")
    box = user.dialog("CmdLine")
    assert box.texts == [text]
    box.dismiss("OK")
    assert program.wait_end() == 0
    assert line.received == b""


# ---- Enter and Close ----------------------------------------------------------------------------------

def test_enter_sends_a_rate_and_does_not_close(user):
    bench = Bench(user)
    dialog = bench.open(SetMessageRate, "Set Message Rate")
    dialog.pick(Id.CONTROL_NMEA_RATE_MESSAGE, "GSV")
    dialog.enter(Id.CONTROL_NMEA_RATE_SECONDS, "7")
    user.press(VK_RETURN)
    got = bytearray()

    def arrived():
        got.extend(bench.sent())
        return b"PSRF103,3,0,7,1*" in got
    wait_for("the rate is sent", arrived)
    assert dialog.text(Id.CONTROL_NMEA_RATE_SECONDS) == "7"
    dialog.dismiss("Close")


def test_enter_closes_where_set_restarts_or_switches(user):
    bench = Bench(user)
    for number, caption in ((SetSerialPort, "Set Serial Port"), (NavigationInitialization, "Navigation Initialization")):
        dialog = bench.open(number, caption)
        user.press(VK_RETURN)
        dialog.wait_gone()
    assert bench.sent() == b""
