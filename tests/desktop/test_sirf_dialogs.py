# SPDX-License-Identifier: MIT
"""The SiRF command dialogs in the real window: against the software receiver, which keeps what it is told."""

import time

import pytest

from harness import Port, VK_ESCAPE, VK_RETURN, Dialog, desktop, wait_for

Rate = 38400


def frame(payload):
    """A payload, given in hexadecimal, as it goes over the line."""
    data = bytes.fromhex(payload)
    return b"\xa0\xa2" + len(data).to_bytes(2, "big") + data + sum(data).to_bytes(2, "big") + b"\xb0\xb3"


# ---- Dialogs ------------------------------------------------------------------------------------------

class Case:
    """A dialog: what it shows of a receiver fresh from the factory, what is set then, what it refuses."""

    def __init__(self, item, caption, get, set, poll, factory=None, changed=None, refused=None):
        self.item, self.caption, self.get, self.set, self.poll = item, caption, get, set, poll
        self.factory, self.changed, self.refused = factory or {}, changed or {}, refused


Cases = [
    Case(2009, "Advanced Power Management", 5310, 5311, "9800",
         {5301: 0, 5302: "0", 5303: "30", 5304: "No Max", 5305: "No Max", 5306: "0", 5307: "No Preference",
          5308: "20", 5309: "No Preference"},
         {5301: 1, 5302: "255", 5303: "180", 5304: "5", 5305: "160", 5306: "60", 5307: "Max Horizontal Error",
          5308: "100", 5309: "Power Duty Cycle"},
         (5303, "181", "Time Between Fixes", "Range 10-180")),
    Case(2012, "DGPS Source", 1334, 1335, "A885",
         {1331: "SBAS", 1332: "0", 1333: "0"}, {1331: "Internal Beacon", 1332: "325000", 1333: "200"},
         (1332, "283499", "Internal Beacon Frequency", "Range 0 or 283500-325000 Hz")),
    Case(2013, "Mode Control", 1361, 1362, "A888",
         {1363: "Hold direction,clock", 1364: "0", 1365: "Auto", 1366: "Last computed", 1367: "30", 1368: "15",
          1369: 0},
         {1363: "Disable", 1364: "10000", 1365: "Always", 1366: "User input", 1367: "120", 1368: "0", 1369: 1},
         (1364, "-1001", "Altitude", "Range -1000 to +10000 m")),
    Case(2014, "DOP Mask", 1371, 1372, "A889",
         {1373: "Auto PDOP/HDOP", 1374: "8", 1375: "8", 1376: "8"},
         {1373: "Disabled", 1374: "1", 1375: "50", 1376: "12"}, (1376, "51", "HDOP Value", "Range 1-50")),
    Case(2015, "DGPS Mode", 1381, 1382, "A88A", {1383: "Auto", 1384: "30"}, {1383: "Never use", 1384: "255"},
         (1384, "256", "DGPS TimeOut", "Range 0-255 s")),
    Case(2016, "Elevation Mask", 1391, 1392, "A88B", {1393: "5.0", 1394: "7.5"}, {1393: "0.0", 1394: "10.5"},
         (1393, "900.1", "Tracking Mask", "Range -20.0 to 90.0 °")),
    Case(2017, "Power Mask", 1401, 1402, "A88C", {1403: "28", 1404: "28"}, {1403: "0", 1404: "20"},
         (1404, "51", "Navigation Mask", "Range 0-50 dBHz")),
    Case(2018, "Static Navigation", 1431, 1432, "A88F", {1433: 0}, {1433: 1}),
    Case(2019, "Trickle Power", 1511, 1512, "A897", {1513: 0, 1514: "100.0", 1515: "200"},
         {1513: 0, 1514: "0.0", 1515: "900"}, (1515, "901", "On-Time", "Range 200-900 ms")),
    # Of its own settings the receiver reports the two times only.
    Case(2021, "Low Power", 1671, 1672, "9800", {1673: "30000", 1674: "120000"},
         {1673: "3600000", 1674: "0", 1675: "3600", 1676: 0},
         (1673, "3600001", "Max Off Time", "Range 0-3600000 ms\rDefault 30 s")),
]
UnreadFields = {1675, 1676}

# The rest have tests of their own.
AllDialogs = [(c.item, c.caption, c.poll) for c in Cases] + [
    (2011, "Switch to NMEA Protocol", None), (2020, "Set Message Rate", None),
    (2025, "Poll Software Version", "8400"), (2010, "Initialize Data Source", "A880")]


def shown(dialog, number):
    control = dialog.control(number)
    if control["class"] == "Button":
        return control["checked"]
    if control["class"] in ("ComboBox", "ListBox"):
        return dialog.items(number)[1]
    return control["text"]


def wait_shown(dialog, expected):
    last = {}

    def matches():
        last.update({number: shown(dialog, number) for number in expected})
        return last == expected
    try:
        wait_for("the dialog shows the settings", matches, 10)
    except AssertionError:
        assert last == expected
        raise


def enter(dialog, values):
    for number, value in values.items():
        kind = dialog.control(number)["class"]
        if kind in ("ComboBox", "ListBox"):
            dialog.pick(number, value)
        elif kind == "Edit":
            dialog.enter(number, value)
        else:
            for _ in range(3):  # undecided, too, is one of its states
                if shown(dialog, number) == value:
                    break
                before = shown(dialog, number)
                dialog.press(number)
                wait_for("the box changes", lambda: shown(dialog, number) != before)
            assert shown(dialog, number) == value


def refused(user, dialog, set_button, caption, text):
    dialog.press(set_button)
    box = user.dialog(caption)
    assert box.texts == [text]
    box.dismiss("OK")


Ends = {
    "Close": lambda user, dialog: dialog.dismiss("Close"),
    "cross": lambda user, dialog: dialog.close(),
    "Escape": lambda user, dialog: (user.press(VK_ESCAPE), dialog.wait_gone()),
}


class Session:
    """The program with a receiver that already sends SiRF binary."""

    def __init__(self, user, *options, environment=None):
        self.user = user
        user.tidy()
        self.record = user.connect_receiver(Rate, "--protocol", "sirf", "--start", "hot", *options)
        user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(Rate))
        self.program = user.start(environment=environment)
        user.main_window()
        wait_for("SiRF binary arrives", lambda: user.page()[18].startswith(" Use joystick"), 30)

    def open(self, item, caption) -> Dialog:
        self.mark = len(self.sent_in_all())
        self.user.choose(item)
        return self.user.dialog(caption)

    def sent_in_all(self):
        return self.record.read_bytes()

    def sent(self):
        """What the program has sent since a dialog was opened."""
        return self.sent_in_all()[self.mark:]

    def wait_sent(self, *payloads):
        expected = b"".join(map(frame, payloads))
        wait_for(f"{payloads} is sent", lambda: self.sent() == expected, 5)


@pytest.fixture(scope="module")
def session(desktop_session):
    yield Session(desktop_session)
    desktop_session.tidy()


# ---- Settings -----------------------------------------------------------------------------------------

@pytest.mark.parametrize("case", Cases, ids=lambda c: c.caption)
def test_setting_is_shown_set_and_shown_again(session, case):
    user = session.user
    dialog = session.open(case.item, case.caption)
    wait_shown(dialog, case.factory)
    session.wait_sent(case.poll)

    if case.refused:
        control, value, caption, text = case.refused
        enter(dialog, case.changed | {control: value})
        refused(user, dialog, case.set, caption, text)
        assert session.sent() == frame(case.poll)

    enter(dialog, case.changed)
    dialog.press(case.set)
    wait_for("the command is sent", lambda: len(session.sent()) > len(frame(case.poll)))
    Ends["Close"](user, dialog)

    dialog = session.open(case.item, case.caption)
    readable = {n: v for n, v in case.changed.items() if n not in UnreadFields}
    wait_shown(dialog, readable)
    Ends["cross"](user, dialog)

    dialog = session.open(case.item, case.caption)
    wait_shown(dialog, readable)
    edits = [n for n in readable if dialog.control(n)["class"] == "Edit"]
    for number in edits:
        dialog.enter(number, "")
    dialog.press(case.get)
    wait_shown(dialog, readable)
    session.wait_sent(case.poll, case.poll)
    Ends["Escape"](user, dialog)
    assert user.dialogs() == [] and user.main_window()["enabled"]


def test_enter_sends_and_leaves_the_dialog_open(session):
    """Set is the default button, also while a field or a list has the focus."""
    dialog = session.open(2017, "Power Mask")
    session.wait_sent("A88C")
    enter(dialog, {1403: "21", 1404: "22"})
    session.user.press(VK_RETURN)
    session.wait_sent("A88C", "8C1516")
    assert session.user.dialogs() == ["Power Mask"]
    dialog.dismiss("Close")


def test_enter_does_not_restart_or_switch_the_receiver(session):
    for number, caption, polls in ((2010, "Initialize Data Source", ["A880"]), (2011, "Switch to NMEA Protocol", [])):
        dialog = session.open(number, caption)
        session.user.press(VK_RETURN)
        dialog.wait_gone()
        session.wait_sent(*polls)


def test_undecided_box_is_refused(session):
    dialog = session.open(2018, "Static Navigation")
    wait_for("the dialog shows the setting", lambda: shown(dialog, 1433) != 2)
    enter(dialog, {1433: 2})
    refused(session.user, dialog, 1432, "Static Navigation Flag", "Indeterminate")
    session.wait_sent("A88F")
    dialog.dismiss("Close")


def test_trickle_power_warns_before_a_long_sleep(session):
    dialog = session.open(2019, "Trickle Power")
    wait_shown(dialog, {1514: "0.0"})
    enter(dialog, {1513: 0, 1514: "1.0", 1515: "200"})
    dialog.press(1512)
    box = session.user.dialog("Warning")
    assert box.texts == ["GPS will be on for only 200 milliseconds every 20 seconds."
                         " It may be VERY difficult to communicate with it. Try anyway?"]
    assert box.buttons == ["OK", "Cancel"]
    session.user.press(0x0D)  # Return presses the default button
    box.wait_gone()
    session.wait_sent("A897")
    enter(dialog, {1514: "100"})
    dialog.press(1512)  # 0.2 s: no warning
    session.wait_sent("A897", "97 0000 03E8 000000C8")
    wait_for("the time of day comes", lambda: dialog.text(1518))
    dialog.dismiss("Close")


def test_software_version(session):
    dialog = session.open(2025, "Poll Software Version")
    version = wait_for("the version comes", lambda: dialog.text(1322))
    assert len(version) > 3
    dialog.press(1321)
    session.wait_sent("8400", "8400")
    dialog.dismiss("Close")


def test_message_rate(session):
    dialog = session.open(2020, "Set Message Rate")
    wait_for("messages are listed", lambda: dialog.text(16602) and dialog.text(16603))
    assert dialog.text(16602)[3:5] == "  " and dialog.text(16602)[7] == ":"
    dialog.enter(16617, "31")
    dialog.enter(16616, "0")
    refused(session.user, dialog, 16618, "Message Rate", "Range 0-30 s")
    dialog.pick(16617, "0")
    refused(session.user, dialog, 16618, "Message ID", "Range 1-255")
    dialog.pick(16616, "4 Measured Tracking Data")
    assert session.sent() == b""
    dialog.press(16618)
    session.wait_sent("A6 00 04 00 00000000")

    def row(message):
        return next((dialog.text(n) for n in range(16602, 16615) if dialog.text(n).startswith(message)), None)
    time.sleep(1.5)
    stopped = row("004")
    others = row("002")
    wait_for("other messages go on", lambda: row("002") != others)
    assert row("004") == stopped
    dialog.enter(16617, "1")
    dialog.press(16618)
    wait_for("it is sent again", lambda: row("004") != stopped)
    dialog.dismiss("Close")


def test_initialize_data_source(session):
    user = session.user
    dialog = session.open(2010, "Initialize Data Source")
    wait_shown(dialog, {1287: "12", 12811: 1, 12818: 0, 12819: 0, 12820: 0})
    session.wait_sent("A880")
    assert not dialog.control(1281)["enabled"] and dialog.control(1287)["enabled"]
    dialog.press(12813)
    wait_for("the fields open", lambda: dialog.control(1286)["enabled"])
    enter(dialog, {1281: "10000001", 1282: "0", 1283: "0", 1284: "96000", 1286: "1443"})
    refused(user, dialog, 12810, "ECEF X", "Range -10000000 to 10000000 m")
    enter(dialog, {1287: "8"})
    dialog.press(12817)
    wait_for("the fields close and Clear is ticked",
             lambda: not dialog.control(1286)["enabled"] and shown(dialog, 12820) == 1)
    dialog.press(12812)
    enter(dialog, {12818: 0, 12819: 0, 12820: 0})
    dialog.press(12810)
    session.wait_sent("A880", "80" + "00" * 22 + "08 40")
    dialog.dismiss("Close")
    time.sleep(2)  # the receiver starts

    dialog = session.open(2010, "Initialize Data Source")
    wait_shown(dialog, {1287: "8", 12811: 0, 12812: 1, 12820: 0})
    dialog.close()
    dialog = session.open(2010, "Initialize Data Source")
    wait_shown(dialog, {1287: "8"})
    dialog.press(1289)
    session.wait_sent("A880", "A880")
    user.press(VK_ESCAPE)
    dialog.wait_gone()


# ---- Switch to NMEA -----------------------------------------------------------------------------------

def test_switch_to_nmea(session):
    """Last with this program: the receiver really switches, the port follows, the page becomes that of NMEA."""
    user = session.user
    dialog = session.open(2011, "Switch to NMEA Protocol")
    assert [dialog.text(1290 + i) for i in range(10)] == ["1", "1", "5", "5", "1", "1", "0", "0", "0", "0"]
    assert dialog.items(12912) == ([str(rate) for rate in desktop.Rates], str(Rate))
    assert shown(dialog, 12911) == 1 and shown(dialog, 12913) == 2
    assert not dialog.control(12915)["enabled"]
    wait_for("the receiver's time comes", lambda: dialog.text(1518))
    dialog.press(12916)
    box = user.dialog("Switching Baudrate")
    assert box.texts[0].startswith("Switching the SiRF chip to another baudrate is dangerous on some devices.")
    box.dismiss("OK")

    dialog.enter(1299, "256")
    refused(user, dialog, 12914, "User 10 Update Rate", "Range 0-255 s")
    dialog.enter(1299, "0")
    dialog.enter(1292, "1")
    assert session.sent() == b"" and user.stored("NmeaIntervalIdx01") is None
    dialog.pick(12912, "9600")
    dialog.press(12914)
    session.wait_sent("81 02 0101 0101 0101 0501 0101 0101 0001 0001 0001 0001 2580")
    wait_for("=Baud is enabled", lambda: dialog.control(12915)["enabled"])
    assert [user.stored(f"NmeaIntervalIdx{i:02}") for i in range(1, 11)] == [1, 1, 1, 5, 1, 1, 0, 0, 0, 0]
    time.sleep(1)  # the receiver's change of rate
    dialog.press(12915)
    wait_for("sentences arrive", lambda: dialog.text(901), 20)
    wait_for("the rate is stored", lambda: user.stored("NmeaBaudrateIdx") == desktop.Rates.index(9600))
    assert user.stored("BaudrateIdx") == desktop.Rates.index(9600)
    dialog.dismiss("Close")
    wait_for("the page is that of NMEA", lambda: user.page()[7].startswith(" Longitude"), 30)
    assert session.program.running()


# ---- Polls and refusals by the receiver ---------------------------------------------------------------

def test_opening_polls_only_when_sirf_is_recognised(user):
    _, line = user.start_connected(Rate)

    def open_all(recognised):
        ends = list(Ends.values())
        for number, (item, caption, poll) in enumerate(AllDialogs):
            before = len(line.received)
            user.choose(item)
            dialog = user.dialog(caption)
            polls = poll and (recognised or item == 2010)
            if polls:
                wait_for("the poll is sent", lambda: len(line.received) > before)
            ends[number % 3](user, dialog)
            assert bytes(line.received[before:]) == (frame(poll) if polls else b""), caption
    open_all(False)
    user.store(BaudrateIdx=0)
    line.send(frame("0B 80"))
    wait_for("SiRF binary is recognised", lambda: user.stored("BaudrateIdx") == desktop.Rates.index(Rate))
    open_all(True)


def test_refusals_of_the_receiver_are_worded(desktop_session):
    session = Session(desktop_session, "--refuse", "140,143")
    user = session.user
    dialog = session.open(2017, "Power Mask")
    session.wait_sent("A88C")
    time.sleep(1)
    assert user.dialogs() == ["Power Mask"]  # nobody has asked for this poll
    dialog.press(1401)
    box = user.dialog("NAcknowledgment")
    assert box.texts == ["Command 168 with parameter 140 not accepted."]
    box.dismiss("OK")
    enter(dialog, {1403: "20", 1404: "20"})
    dialog.press(1402)
    box = user.dialog("NAcknowledgment")
    assert box.texts == ["Command 140\r\rCommand or parameter not accepted."]
    box.dismiss("OK")
    dialog.dismiss("Close")
    user.tidy()


# ---- Keypad layout ------------------------------------------------------------------------------------

def test_keypad_layout_sets_the_same(desktop_session):
    """List boxes in place of drop-down lists, and everything else as on a touch screen."""
    session = Session(desktop_session, environment={"TORAVANE_PLATFORM": "SmartPhone"})
    for case in Cases[:4]:
        dialog = session.open(case.item, case.caption)
        wait_shown(dialog, case.factory)
        assert dialog.controls("ListBox") and not dialog.controls("ComboBox")
        enter(dialog, case.changed)
        dialog.press(case.set)
        wait_for("the command is sent", lambda: len(session.sent()) > len(frame(case.poll)))
        dialog.dismiss("OK")
        dialog = session.open(case.item, case.caption)
        wait_shown(dialog, case.changed)
        dialog.dismiss("OK")
    dialog = session.open(2020, "Set Message Rate")
    dialog.pick(16616, "41 Geodetic Navigation Data")
    dialog.pick(16617, "5")
    dialog.press(16618)
    session.wait_sent("A6 00 29 05 00000000")
    dialog.dismiss("OK")
    session.user.tidy()
