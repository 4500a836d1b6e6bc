# SPDX-License-Identifier: MIT
"""The SiRF command dialogs in the real window: against the software receiver, which keeps its settings."""

import time

import pytest

from harness import Port, VK_ESCAPE, VK_RETURN, Dialog, desktop, wait_for
from resource_ids import Id

Rate = 38400
FirstArrival = Id.CONTROL_ARRIVAL_ROWS + 1


def frame(payload):
    """A payload, given in hexadecimal, as it goes over the line."""
    data = bytes.fromhex(payload)
    return b"\xa0\xa2" + len(data).to_bytes(2, "big") + data + sum(data).to_bytes(2, "big") + b"\xb0\xb3"


# ---- Dialogs ------------------------------------------------------------------------------------------

class Case:
    """A dialog: the texts for a receiver with factory settings, the entries that are set then, and refused entries."""

    def __init__(self, item, caption, get, set, poll, factory=None, changed=None, refused=None):
        self.item, self.caption, self.get, self.set, self.poll = item, caption, get, set, poll
        self.factory, self.changed, self.refused = factory or {}, changed or {}, refused


Cases = [
    Case(Id.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, "Advanced Power Management", Id.CONTROL_APM_GET, Id.CONTROL_APM_SET,
         "9800",
         {Id.CONTROL_APM_ENABLED: 0, Id.CONTROL_APM_CYCLES: "0", Id.CONTROL_APM_TIME_BETWEEN_FIXES: "30",
          Id.CONTROL_APM_MAX_HORIZONTAL_ERROR: "No Max", Id.CONTROL_APM_MAX_VERTICAL_ERROR: "No Max",
          Id.CONTROL_APM_MAX_RESPONSE_TIME: "0", Id.CONTROL_APM_ACCURACY_PRIORITY: "No Preference",
          Id.CONTROL_APM_DUTY_CYCLE: "20", Id.CONTROL_APM_TIMING_PRIORITY: "No Preference"},
         {Id.CONTROL_APM_ENABLED: 1, Id.CONTROL_APM_CYCLES: "255", Id.CONTROL_APM_TIME_BETWEEN_FIXES: "180",
          Id.CONTROL_APM_MAX_HORIZONTAL_ERROR: "5", Id.CONTROL_APM_MAX_VERTICAL_ERROR: "160",
          Id.CONTROL_APM_MAX_RESPONSE_TIME: "60", Id.CONTROL_APM_ACCURACY_PRIORITY: "Max Horizontal Error",
          Id.CONTROL_APM_DUTY_CYCLE: "100", Id.CONTROL_APM_TIMING_PRIORITY: "Power Duty Cycle"},
         (Id.CONTROL_APM_TIME_BETWEEN_FIXES, "181", "Time Between Fixes", "Range 10-180")),
    Case(Id.DIALOG_SIRF_DGPS_SOURCE, "DGPS Source", Id.CONTROL_DGPS_SOURCE_GET, Id.CONTROL_DGPS_SOURCE_SET, "A885",
         {Id.CONTROL_DGPS_SOURCE: "SBAS", Id.CONTROL_DGPS_BEACON_FREQUENCY: "0", Id.CONTROL_DGPS_BEACON_BIT_RATE: "0"},
         {Id.CONTROL_DGPS_SOURCE: "Internal Beacon", Id.CONTROL_DGPS_BEACON_FREQUENCY: "325000",
          Id.CONTROL_DGPS_BEACON_BIT_RATE: "200"},
         (Id.CONTROL_DGPS_BEACON_FREQUENCY, "283499", "Internal Beacon Frequency", "Range 0 or 283500-325000 Hz")),
    Case(Id.DIALOG_SIRF_MODE_CONTROL, "Mode Control", Id.CONTROL_MODE_GET, Id.CONTROL_MODE_SET, "A888",
         {Id.CONTROL_MODE_DEGRADED: "Hold direction,clock", Id.CONTROL_MODE_ALTITUDE: "0",
          Id.CONTROL_MODE_ALTITUDE_HOLD: "Auto", Id.CONTROL_MODE_ALTITUDE_SOURCE: "Last computed",
          Id.CONTROL_MODE_DEGRADED_TIMEOUT: "30", Id.CONTROL_MODE_DR_TIMEOUT: "15",
          Id.CONTROL_MODE_TRACK_SMOOTHING: 0},
         {Id.CONTROL_MODE_DEGRADED: "Disable", Id.CONTROL_MODE_ALTITUDE: "10000",
          Id.CONTROL_MODE_ALTITUDE_HOLD: "Always", Id.CONTROL_MODE_ALTITUDE_SOURCE: "User input",
          Id.CONTROL_MODE_DEGRADED_TIMEOUT: "120", Id.CONTROL_MODE_DR_TIMEOUT: "0", Id.CONTROL_MODE_TRACK_SMOOTHING: 1},
         (Id.CONTROL_MODE_ALTITUDE, "-1001", "Altitude", "Range -1000 to +10000 m")),
    Case(Id.DIALOG_SIRF_DOP_MASK, "DOP Mask", Id.CONTROL_DOP_GET, Id.CONTROL_DOP_SET, "A889",
         {Id.CONTROL_DOP_SELECTION: "Auto PDOP/HDOP", Id.CONTROL_DOP_GDOP: "8", Id.CONTROL_DOP_PDOP: "8",
          Id.CONTROL_DOP_HDOP: "8"},
         {Id.CONTROL_DOP_SELECTION: "Disabled", Id.CONTROL_DOP_GDOP: "1", Id.CONTROL_DOP_PDOP: "50",
          Id.CONTROL_DOP_HDOP: "12"}, (Id.CONTROL_DOP_HDOP, "51", "HDOP Value", "Range 1-50")),
    Case(Id.DIALOG_SIRF_DGPS_MODE, "DGPS Mode", Id.CONTROL_DGPS_MODE_GET, Id.CONTROL_DGPS_MODE_SET, "A88A",
         {Id.CONTROL_DGPS_MODE: "Auto", Id.CONTROL_DGPS_TIMEOUT: "30"},
         {Id.CONTROL_DGPS_MODE: "Never use", Id.CONTROL_DGPS_TIMEOUT: "255"},
         (Id.CONTROL_DGPS_TIMEOUT, "256", "DGPS TimeOut", "Range 0-255 s")),
    Case(Id.DIALOG_SIRF_ELEVATION_MASK, "Elevation Mask", Id.CONTROL_ELEVATION_GET, Id.CONTROL_ELEVATION_SET, "A88B",
         {Id.CONTROL_ELEVATION_TRACKING: "5.0", Id.CONTROL_ELEVATION_NAVIGATION: "7.5"},
         {Id.CONTROL_ELEVATION_TRACKING: "0.0", Id.CONTROL_ELEVATION_NAVIGATION: "10.5"},
         (Id.CONTROL_ELEVATION_TRACKING, "900.1", "Tracking Mask", "Range -20.0 to 90.0 °")),
    Case(Id.DIALOG_SIRF_POWER_MASK, "Power Mask", Id.CONTROL_POWER_GET, Id.CONTROL_POWER_SET, "A88C",
         {Id.CONTROL_POWER_TRACKING: "28", Id.CONTROL_POWER_NAVIGATION: "28"},
         {Id.CONTROL_POWER_TRACKING: "0", Id.CONTROL_POWER_NAVIGATION: "20"},
         (Id.CONTROL_POWER_NAVIGATION, "51", "Navigation Mask", "Range 0-50 dBHz")),
    Case(Id.DIALOG_SIRF_STATIC_NAVIGATION, "Static Navigation", Id.CONTROL_STATIC_NAVIGATION_GET,
         Id.CONTROL_STATIC_NAVIGATION_SET, "A88F", {Id.CONTROL_STATIC_NAVIGATION: 0},
         {Id.CONTROL_STATIC_NAVIGATION: 1}),
    Case(Id.DIALOG_SIRF_TRICKLE_POWER, "Trickle Power", Id.CONTROL_TRICKLE_GET, Id.CONTROL_TRICKLE_SET, "A897",
         {Id.CONTROL_TRICKLE_PUSH_TO_FIX: 0, Id.CONTROL_TRICKLE_DUTY_CYCLE: "100.0", Id.CONTROL_TRICKLE_ON_TIME: "200"},
         {Id.CONTROL_TRICKLE_PUSH_TO_FIX: 0, Id.CONTROL_TRICKLE_DUTY_CYCLE: "0.0", Id.CONTROL_TRICKLE_ON_TIME: "900"},
         (Id.CONTROL_TRICKLE_ON_TIME, "901", "On-Time", "Range 200-900 ms")),
    # The receiver reports only the two times of this dialog's settings.
    Case(Id.DIALOG_SIRF_LOW_POWER, "Low Power", Id.CONTROL_LOW_POWER_GET, Id.CONTROL_LOW_POWER_SET, "9800",
         {Id.CONTROL_LOW_POWER_MAX_OFF_TIME: "30000", Id.CONTROL_LOW_POWER_MAX_SEARCH_TIME: "120000"},
         {Id.CONTROL_LOW_POWER_MAX_OFF_TIME: "3600000", Id.CONTROL_LOW_POWER_MAX_SEARCH_TIME: "0",
          Id.CONTROL_LOW_POWER_PERIOD: "3600", Id.CONTROL_LOW_POWER_ADAPTIVE: 0},
         (Id.CONTROL_LOW_POWER_MAX_OFF_TIME, "3600001", "Max Off Time", "Range 0-3600000 ms\rDefault 30 s")),
]
UnreadFields = {Id.CONTROL_LOW_POWER_PERIOD, Id.CONTROL_LOW_POWER_ADAPTIVE}

# The other dialogs have their own tests.
AllDialogs = [(c.item, c.caption, c.poll) for c in Cases] + [
    (Id.DIALOG_SIRF_SWITCH_TO_NMEA, "Switch to NMEA Protocol", None),
    (Id.DIALOG_SIRF_SET_MESSAGE_RATE, "Set Message Rate", None),
    (Id.DIALOG_SIRF_POLL_SOFTWARE_VERSION, "Poll Software Version", "8400"),
    (Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source", "A880")]


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
        """The bytes that the program has sent since a dialog was opened."""
        return self.sent_in_all()[self.mark:]

    def wait_sent(self, *payloads):
        expected = b"".join(map(frame, payloads))
        wait_for(f"{payloads} is sent", lambda: self.sent() == expected)


@pytest.fixture(scope="module")
def sessions(desktop_session):
    yield []
    desktop_session.tidy()


@pytest.fixture
def session(desktop_session, sessions, request):
    """One for all tests; after a test that failed, which may have left a dialog open, a new one."""
    if not sessions:
        sessions.append(Session(desktop_session))
    yield sessions[0]
    if getattr(request.node, "failed", False):
        sessions.clear()


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
    """Set is the default button, even while a field or a list has the focus."""
    dialog = session.open(Id.DIALOG_SIRF_POWER_MASK, "Power Mask")
    wait_for("the dialog shows the setting", lambda: dialog.text(Id.CONTROL_POWER_NAVIGATION))
    enter(dialog, {Id.CONTROL_POWER_TRACKING: "21", Id.CONTROL_POWER_NAVIGATION: "22"})
    session.user.press(VK_RETURN)
    session.wait_sent("A88C", "8C1516")
    assert session.user.dialogs() == ["Power Mask"]
    dialog.dismiss("Close")


def test_enter_does_not_restart_or_switch_the_receiver(session):
    for number, caption, polls in ((Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source", ["A880"]),
                                   (Id.DIALOG_SIRF_SWITCH_TO_NMEA, "Switch to NMEA Protocol", [])):
        dialog = session.open(number, caption)
        session.user.press(VK_RETURN)
        dialog.wait_gone()
        session.wait_sent(*polls)


def test_undecided_box_is_refused(session):
    dialog = session.open(Id.DIALOG_SIRF_STATIC_NAVIGATION, "Static Navigation")
    wait_for("the dialog shows the setting", lambda: shown(dialog, Id.CONTROL_STATIC_NAVIGATION) != 2)
    enter(dialog, {Id.CONTROL_STATIC_NAVIGATION: 2})
    refused(session.user, dialog, Id.CONTROL_STATIC_NAVIGATION_SET, "Static Navigation Flag", "Indeterminate")
    session.wait_sent("A88F")
    dialog.dismiss("Close")


def test_trickle_power_warns_before_a_long_sleep(session):
    dialog = session.open(Id.DIALOG_SIRF_TRICKLE_POWER, "Trickle Power")
    wait_shown(dialog, {Id.CONTROL_TRICKLE_DUTY_CYCLE: "0.0"})
    enter(dialog, {Id.CONTROL_TRICKLE_PUSH_TO_FIX: 0, Id.CONTROL_TRICKLE_DUTY_CYCLE: "1.0",
                   Id.CONTROL_TRICKLE_ON_TIME: "200"})
    dialog.press(Id.CONTROL_TRICKLE_SET)
    box = session.user.dialog("Warning")
    assert box.texts == ["GPS will be on for only 200 milliseconds every 20 seconds."
                         " It may be VERY difficult to communicate with it. Try anyway?"]
    assert box.buttons == ["OK", "Cancel"]
    session.user.press(0x0D)  # Return presses the default button
    box.wait_gone()
    session.wait_sent("A897")
    enter(dialog, {Id.CONTROL_TRICKLE_DUTY_CYCLE: "100"})
    dialog.press(Id.CONTROL_TRICKLE_SET)  # 0.2 s: no warning
    session.wait_sent("A897", "97 0000 03E8 000000C8")
    wait_for("the time of day comes", lambda: dialog.text(Id.CONTROL_SIRF_TIME))
    dialog.dismiss("Close")


def test_software_version(session):
    dialog = session.open(Id.DIALOG_SIRF_POLL_SOFTWARE_VERSION, "Poll Software Version")
    version = wait_for("the version comes", lambda: dialog.text(Id.CONTROL_SOFTWARE_VERSION))
    assert len(version) > 3
    dialog.press(Id.CONTROL_SOFTWARE_VERSION_GET)
    session.wait_sent("8400", "8400")
    dialog.dismiss("Close")


def test_message_rate(session):
    dialog = session.open(Id.DIALOG_SIRF_SET_MESSAGE_RATE, "Set Message Rate")
    wait_for("messages are listed", lambda: dialog.text(FirstArrival) and dialog.text(FirstArrival + 1))
    assert dialog.text(FirstArrival)[3:5] == "  " and dialog.text(FirstArrival)[7] == ":"
    dialog.enter(Id.CONTROL_RATE_SECONDS, "31")
    dialog.enter(Id.CONTROL_RATE_MESSAGE_ID, "0")
    refused(session.user, dialog, Id.CONTROL_RATE_SET, "Message Rate", "Range 0-30 s")
    dialog.pick(Id.CONTROL_RATE_SECONDS, "0")
    refused(session.user, dialog, Id.CONTROL_RATE_SET, "Message ID", "Range 1-255")
    dialog.pick(Id.CONTROL_RATE_MESSAGE_ID, "4 Measured Tracking Data")
    assert session.sent() == b""
    dialog.press(Id.CONTROL_RATE_SET)
    session.wait_sent("A6 00 04 00 00000000")

    def row(message):
        return next((dialog.text(n) for n in range(FirstArrival, FirstArrival + 13) if dialog.text(n).startswith(message)), None)
    time.sleep(1.5)
    stopped = row("004")
    others = row("002")
    wait_for("other messages go on", lambda: row("002") != others)
    assert row("004") == stopped
    dialog.enter(Id.CONTROL_RATE_SECONDS, "1")
    dialog.press(Id.CONTROL_RATE_SET)
    wait_for("it is sent again", lambda: row("004") != stopped)
    dialog.dismiss("Close")


def test_initialize_data_source(session):
    user = session.user
    dialog = session.open(Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source")
    wait_shown(dialog, {Id.CONTROL_INIT_CHANNELS: "12", Id.CONTROL_INIT_SNAP_START: 1, Id.CONTROL_INIT_NAVLIB: 0,
                        Id.CONTROL_INIT_DEBUG: 0, Id.CONTROL_INIT_CLEAR: 0})
    session.wait_sent("A880")
    assert not dialog.control(Id.CONTROL_INIT_ECEF_X)["enabled"] and dialog.control(Id.CONTROL_INIT_CHANNELS)["enabled"]
    dialog.press(Id.CONTROL_INIT_WARM_START_INIT)
    wait_for("the fields open", lambda: dialog.control(Id.CONTROL_INIT_WEEK)["enabled"])
    enter(dialog, {Id.CONTROL_INIT_ECEF_X: "10000001", Id.CONTROL_INIT_ECEF_Y: "0", Id.CONTROL_INIT_ECEF_Z: "0",
                   Id.CONTROL_INIT_CLOCK_OFFSET: "96000", Id.CONTROL_INIT_WEEK: "1443"})
    refused(user, dialog, Id.CONTROL_INIT_SET, "ECEF X", "Range -10000000 to 10000000 m")
    enter(dialog, {Id.CONTROL_INIT_CHANNELS: "8"})
    dialog.press(Id.CONTROL_INIT_SYSTEM_RESET)
    wait_for("the fields close and Clear is ticked",
             lambda: not dialog.control(Id.CONTROL_INIT_WEEK)["enabled"] and shown(dialog, Id.CONTROL_INIT_CLEAR) == 1)
    dialog.press(Id.CONTROL_INIT_HOT_START)
    enter(dialog, {Id.CONTROL_INIT_NAVLIB: 0, Id.CONTROL_INIT_DEBUG: 0, Id.CONTROL_INIT_CLEAR: 0})
    dialog.press(Id.CONTROL_INIT_SET)
    session.wait_sent("A880", "80" + "00" * 22 + "08 40")
    dialog.dismiss("Close")
    time.sleep(2)  # the receiver starts

    dialog = session.open(Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source")
    wait_shown(dialog, {Id.CONTROL_INIT_CHANNELS: "8", Id.CONTROL_INIT_SNAP_START: 0, Id.CONTROL_INIT_HOT_START: 1,
                        Id.CONTROL_INIT_CLEAR: 0})
    dialog.close()
    dialog = session.open(Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source")
    wait_shown(dialog, {Id.CONTROL_INIT_CHANNELS: "8"})
    dialog.press(Id.CONTROL_INIT_GET)
    session.wait_sent("A880", "A880")
    user.press(VK_ESCAPE)
    dialog.wait_gone()


# ---- Switch to NMEA -----------------------------------------------------------------------------------

def test_switch_to_nmea(session):
    """The last test with this program: the receiver really switches, the port follows, the page of NMEA is shown."""
    user = session.user
    dialog = session.open(Id.DIALOG_SIRF_SWITCH_TO_NMEA, "Switch to NMEA Protocol")
    assert [dialog.text(Id.CONTROL_TO_NMEA_RATES + i) for i in range(10)] == ["1", "1", "5", "5", "1", "1", "0", "0",
                                                                              "0", "0"]
    assert dialog.items(Id.CONTROL_TO_NMEA_BAUDRATE) == ([str(rate) for rate in desktop.Rates], str(Rate))
    assert shown(dialog, Id.CONTROL_TO_NMEA_CHECKSUMS) == 1 and shown(dialog, Id.CONTROL_TO_NMEA_DEBUG) == 2
    assert not dialog.control(Id.CONTROL_TO_NMEA_FOLLOW)["enabled"]
    wait_for("the receiver's time comes", lambda: dialog.text(Id.CONTROL_SIRF_TIME))
    dialog.press(Id.CONTROL_TO_NMEA_HELP)
    box = user.dialog("Switching Baudrate")
    assert box.texts[0].startswith("Switching the SiRF chip to another baudrate is dangerous on some devices.")
    box.dismiss("OK")

    dialog.enter(Id.CONTROL_TO_NMEA_RATES + 9, "256")
    refused(user, dialog, Id.CONTROL_TO_NMEA_SET, "User 10 Update Rate", "Range 0-255 s")
    dialog.enter(Id.CONTROL_TO_NMEA_RATES + 9, "0")
    dialog.enter(Id.CONTROL_TO_NMEA_RATES + 2, "1")
    assert session.sent() == b"" and user.stored("NmeaIntervalIdx01") is None
    dialog.pick(Id.CONTROL_TO_NMEA_BAUDRATE, "9600")
    dialog.press(Id.CONTROL_TO_NMEA_SET)
    session.wait_sent("81 02 0101 0101 0101 0501 0101 0101 0001 0001 0001 0001 2580")
    wait_for("=Baud is enabled", lambda: dialog.control(Id.CONTROL_TO_NMEA_FOLLOW)["enabled"])
    assert [user.stored(f"NmeaIntervalIdx{i:02}") for i in range(1, 11)] == [1, 1, 1, 5, 1, 1, 0, 0, 0, 0]
    time.sleep(1)  # the receiver's change of rate
    dialog.press(Id.CONTROL_TO_NMEA_FOLLOW)
    wait_for("sentences arrive", lambda: dialog.text(Id.CONTROL_NMEA_TIME))
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
            polls = poll and (recognised or item == Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE)
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
    dialog = session.open(Id.DIALOG_SIRF_POWER_MASK, "Power Mask")
    session.wait_sent("A88C")
    time.sleep(3)  # a refusal that came after the next press would count for that one
    assert user.dialogs() == ["Power Mask"]  # the user has not requested this poll
    dialog.press(Id.CONTROL_POWER_GET)
    box = user.dialog("NAcknowledgment")
    assert box.texts == ["Command 168 with parameter 140 not accepted."]
    box.dismiss("OK")
    enter(dialog, {Id.CONTROL_POWER_TRACKING: "20", Id.CONTROL_POWER_NAVIGATION: "20"})
    dialog.press(Id.CONTROL_POWER_SET)
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
    dialog = session.open(Id.DIALOG_SIRF_SET_MESSAGE_RATE, "Set Message Rate")
    dialog.pick(Id.CONTROL_RATE_MESSAGE_ID, "41 Geodetic Navigation Data")
    dialog.pick(Id.CONTROL_RATE_SECONDS, "5")
    dialog.press(Id.CONTROL_RATE_SET)
    session.wait_sent("A6 00 29 05 00000000")
    dialog.dismiss("OK")
    session.user.tidy()
