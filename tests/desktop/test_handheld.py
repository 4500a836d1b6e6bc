# SPDX-License-Identifier: MIT
"""The program on the screens of hand-held devices: every dialog from the menu, commands, keys, the log."""

import re

import pytest

from harness import Port, VK_DOWN, VK_ESCAPE, VK_LEFT, VK_RETURN, VK_RIGHT, desktop, sentence, wait_for
from resource_ids import Id

VK_TAB, VK_F1, VK_F2 = 0x09, 0x70, 0x71
Devices = ("pocketpc", "smartphone", "smartphone-large")
WM_COMMAND, WM_LBUTTONUP, BM_SETCHECK, UDM_GETRANGE, OK = 0x111, 0x202, 0xF1, 0x466, 1

# Each command of the menu with its dialog's caption, in the order of the keypad's two pop-ups.
NmeaMenu = {Id.COMMAND_ABOUT: "About Toravane", Id.COMMAND_COMMUNICATION: "Communication",
            Id.DIALOG_NMEA_SET_SERIAL_PORT: "Set Serial Port",
            Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION: "Navigation Initialization",
            Id.DIALOG_NMEA_SET_MESSAGE_RATE: "Set Message Rate", Id.DIALOG_NMEA_DEVELOPMENT_DATA: "Development Data",
            Id.DIALOG_NMEA_SELECT_DATUM: "Select Datum", Id.COMMAND_GRAPH: "Graph Options"}
SirfMenu = {Id.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT: "Advanced Power Management",
            Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE: "Initialize Data Source",
            Id.DIALOG_SIRF_SWITCH_TO_NMEA: "Switch to NMEA Protocol",
            Id.DIALOG_SIRF_DGPS_SOURCE: "DGPS Source", Id.DIALOG_SIRF_MODE_CONTROL: "Mode Control",
            Id.DIALOG_SIRF_DOP_MASK: "DOP Mask", Id.DIALOG_SIRF_DGPS_MODE: "DGPS Mode",
            Id.DIALOG_SIRF_ELEVATION_MASK: "Elevation Mask",
            Id.DIALOG_SIRF_POWER_MASK: "Power Mask", Id.DIALOG_SIRF_STATIC_NAVIGATION: "Static Navigation",
            Id.DIALOG_SIRF_TRICKLE_POWER: "Trickle Power", Id.DIALOG_SIRF_SET_MESSAGE_RATE: "Set Message Rate",
            Id.DIALOG_SIRF_LOW_POWER: "Low Power", Id.DIALOG_SIRF_SBAS: "SBAS",
            Id.DIALOG_SIRF_POLL_SOFTWARE_VERSION: "Poll Software Version"}


def start(user, device):
    """The program on an open line, and what it has sent until then."""
    line = user.connect()
    user.store(CommPortIdx=Port, BaudrateIdx=2)
    user.start_handheld(device)
    wait_for("the program sets the line's rate", lambda: line.rate() == 4800)
    user.main_window()
    line.send(sentence("GPVTG,231.8,T,,M,10.0,N,18.5,K,D"))
    wait_for("the program answers with a hot start", lambda: line.received)
    line.received.clear()
    return line


def opened(user, item):
    user.choose(item)
    return user.dialog({**NmeaMenu, **SirfMenu}[item])


def leave(dialog):
    dialog.user.driver.post(dialog.window, WM_COMMAND, OK)
    dialog.wait_gone()


def received(line, expected):
    wait_for(f"the receiver gets {expected}", lambda: expected in bytes(line.received))
    line.received.clear()


def bars(user):
    return {w["class"]: w["outer"] for w in reversed(user.driver.windows()) if w["class"].startswith("Shell")}


def focus(dialog):
    """The number of the control that has the focus."""
    thread_focus = dialog.user.driver.focus(dialog.window)
    return next((c["id"] for c in dialog.controls() if c["window"] == thread_focus), None)


def walk(user, dialog, goal, key=VK_DOWN):
    """Presses a key until a control has the focus; returns the controls on the way."""
    way = [focus(dialog)]
    while way[-1] != goal:
        assert len(way) < 120, f"{goal} is not reached: {way}"
        before = way[-1]
        user.press(key)
        way.append(wait_for("the focus moves", lambda: (now := focus(dialog)) != before and now))
    return way


def wait_visible(dialog, number):
    """Waits until a control is within the area between the bars."""
    top, bottom = (dialog.user.main_window()["client"][i] for i in (1, 3))

    def is_visible():
        outer = dialog.control(number)["outer"]
        return top <= outer[1] and outer[3] <= bottom
    wait_for(f"control {number} of '{dialog.caption}' is seen", is_visible)


# ---- Screens ------------------------------------------------------------------------------------------

@pytest.mark.parametrize("device", Devices)
def test_every_dialog_fills_the_screen(user, device):
    line = start(user, device)
    width, height = desktop.Handhelds[device][1]
    bar = width // 9
    room = [0, bar, width, height - bar]
    assert user.main_window()["client"] == room
    assert bars(user) == {"ShellTitleBar": [0, 0, width, bar], "ShellMenuBar": [0, height - bar, width, height]}
    for item in {**NmeaMenu, **SirfMenu}:
        dialog = opened(user, item)
        window = next(w for w in user.driver.windows() if w["window"] == dialog.window)
        assert window["outer"] == room, dialog.caption
        kinds = {c["class"] for c in dialog.controls()}
        assert ("ListBox" if device == "pocketpc" else "ComboBox") not in kinds
        scrollbar = width - (window["client"][2] - window["client"][0])
        for control in dialog.controls():
            left, top, right, bottom = control["outer"]
            assert 0 <= left < right <= width - scrollbar, (dialog.caption, control["id"])
            assert device != "pocketpc" or bottom <= room[3], (dialog.caption, control["id"])
        leave(dialog)
    assert b"$PSRF" not in line.received  # nobody pressed anything
    user.close()
    user.programs[-1].wait_end()


# ---- Commands -----------------------------------------------------------------------------------------

# For each dialog what is filled in (control and text, list entry by its place, or check mark) and the button; what
# the receiver then gets.
NmeaCommands = [
    (Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION, {}, Id.CONTROL_NAVINIT_SET, b"$PSRF101,"),
    (Id.DIALOG_NMEA_SET_MESSAGE_RATE, {Id.CONTROL_NMEA_RATE_MESSAGE: 2, Id.CONTROL_NMEA_RATE_SECONDS: "5"},
     Id.CONTROL_NMEA_RATE_SET, b"$PSRF103,2,0,5,1*"),
    (Id.DIALOG_NMEA_DEVELOPMENT_DATA, {Id.CONTROL_DEVELOPMENT_COMMAND: "PSRF105,1"}, Id.CONTROL_DEVELOPMENT_SET,
     b"$PSRF105,1*"),
    (Id.DIALOG_NMEA_SELECT_DATUM, {Id.CONTROL_DATUM: 1}, Id.CONTROL_DATUM_SET, b"$PSRF106,"),
]
SirfCommands = [
    (Id.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, {Id.CONTROL_APM_ENABLED: 1, Id.CONTROL_APM_CYCLES: "1",
                                                Id.CONTROL_APM_TIME_BETWEEN_FIXES: "30",
                                                Id.CONTROL_APM_MAX_HORIZONTAL_ERROR: 1,
                                                Id.CONTROL_APM_MAX_VERTICAL_ERROR: 1,
                                                Id.CONTROL_APM_MAX_RESPONSE_TIME: "0",
                                                Id.CONTROL_APM_ACCURACY_PRIORITY: 1, Id.CONTROL_APM_DUTY_CYCLE: "20",
                                                Id.CONTROL_APM_TIMING_PRIORITY: 1}, Id.CONTROL_APM_SET, 53),
    (Id.DIALOG_SIRF_DGPS_SOURCE, {Id.CONTROL_DGPS_SOURCE: 1, Id.CONTROL_DGPS_BEACON_FREQUENCY: "0",
                                  Id.CONTROL_DGPS_BEACON_BIT_RATE: "0"}, Id.CONTROL_DGPS_SOURCE_SET, 133),
    (Id.DIALOG_SIRF_MODE_CONTROL, {Id.CONTROL_MODE_DEGRADED: 1, Id.CONTROL_MODE_ALTITUDE: "10",
                                   Id.CONTROL_MODE_ALTITUDE_HOLD: 0, Id.CONTROL_MODE_ALTITUDE_SOURCE: 0,
                                   Id.CONTROL_MODE_DEGRADED_TIMEOUT: "30", Id.CONTROL_MODE_DR_TIMEOUT: "15",
                                   Id.CONTROL_MODE_TRACK_SMOOTHING: 1}, Id.CONTROL_MODE_SET, 136),
    (Id.DIALOG_SIRF_DOP_MASK, {Id.CONTROL_DOP_SELECTION: 1, Id.CONTROL_DOP_GDOP: "8", Id.CONTROL_DOP_PDOP: "8",
                               Id.CONTROL_DOP_HDOP: "8"}, Id.CONTROL_DOP_SET, 137),
    (Id.DIALOG_SIRF_DGPS_MODE, {Id.CONTROL_DGPS_MODE: 1, Id.CONTROL_DGPS_TIMEOUT: "30"}, Id.CONTROL_DGPS_MODE_SET, 138),
    (Id.DIALOG_SIRF_ELEVATION_MASK, {Id.CONTROL_ELEVATION_TRACKING: "5", Id.CONTROL_ELEVATION_NAVIGATION: "7.5"},
     Id.CONTROL_ELEVATION_SET, 139),
    (Id.DIALOG_SIRF_POWER_MASK, {Id.CONTROL_POWER_TRACKING: "28", Id.CONTROL_POWER_NAVIGATION: "28"},
     Id.CONTROL_POWER_SET, 140),
    (Id.DIALOG_SIRF_STATIC_NAVIGATION, {Id.CONTROL_STATIC_NAVIGATION: 1}, Id.CONTROL_STATIC_NAVIGATION_SET, 143),
    (Id.DIALOG_SIRF_TRICKLE_POWER, {Id.CONTROL_TRICKLE_PUSH_TO_FIX: 1, Id.CONTROL_TRICKLE_DUTY_CYCLE: "20",
                                    Id.CONTROL_TRICKLE_ON_TIME: "200"}, Id.CONTROL_TRICKLE_SET, 151),
    (Id.DIALOG_SIRF_LOW_POWER, {Id.CONTROL_LOW_POWER_MAX_OFF_TIME: "30000",
                                Id.CONTROL_LOW_POWER_MAX_SEARCH_TIME: "120000", Id.CONTROL_LOW_POWER_PERIOD: "30",
                                Id.CONTROL_LOW_POWER_ADAPTIVE: 1}, Id.CONTROL_LOW_POWER_SET, 167),
    (Id.DIALOG_SIRF_SBAS, {Id.CONTROL_SBAS_PRN: 1, Id.CONTROL_SBAS_MODE: 0, Id.CONTROL_SBAS_TIMEOUT: 0},
     Id.CONTROL_SBAS_SET, 170),
    (Id.DIALOG_SIRF_SET_MESSAGE_RATE, {Id.CONTROL_RATE_MESSAGE_ID: "2", Id.CONTROL_RATE_SECONDS: "1"},
     Id.CONTROL_RATE_SET, 166),
    (Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, {Id.CONTROL_INIT_CHANNELS: "12", Id.CONTROL_INIT_HOT_START: 1,
                                             Id.CONTROL_INIT_NAVLIB: 0, Id.CONTROL_INIT_DEBUG: 0,
                                             Id.CONTROL_INIT_CLEAR: 0}, Id.CONTROL_INIT_SET, 128),
]
LastCommand = (Id.DIALOG_NMEA_SET_SERIAL_PORT, {Id.CONTROL_TO_SIRF_BAUDRATE: 3, Id.CONTROL_SERIAL_PROTOCOL: 0},
               Id.CONTROL_SERIAL_SET, b"$PSRF100,0,9600,8,1,0*")  # the program then waits for SiRF binary


def fill(dialog, fields):
    driver = dialog.user.driver
    for number, value in fields.items():
        control = dialog.control(number)
        if control["class"] == "Button":
            driver.call("send", control["window"], BM_SETCHECK, value, 0)
        elif isinstance(value, int):
            driver.select(control["window"], value)
        elif control["class"] == "ListBox":
            dialog.pick(number, next(item for item in dialog.items(number)[0] if re.match(rf"\D*0*{value}\b", item)))
        else:
            driver.set_text(control["window"], value)


def send_sentence(user, line, item, fields, button, expected):
    dialog = opened(user, item)
    fill(dialog, fields)
    dialog.press(button)
    received(line, expected)
    leave(dialog)


@pytest.mark.parametrize("device", ("pocketpc", "smartphone"))
def test_one_command_of_each_dialog(user, device):
    line = start(user, device)
    for item, fields, button, expected in NmeaCommands:
        send_sentence(user, line, item, fields, button, expected)
    for item, fields, button, message in SirfCommands:
        dialog = opened(user, item)
        fill(dialog, fields)
        line.received.clear()
        dialog.press(button)
        wait_for(f"the receiver gets message {message}", lambda: re.search(
            rb"\xA0\xA2\x00." + re.escape(bytes([message])), bytes(line.received), re.DOTALL))
        leave(dialog)
    send_sentence(user, line, *LastCommand)


# ---- Keys ---------------------------------------------------------------------------------------------

def test_keys_alone_suffice_on_a_smartphone(user):
    """From the main window through the menu to a dialog that is higher than the screen, where a command is sent."""
    line = start(user, "smartphone")
    user.press(VK_F2)
    user.press(*[VK_DOWN] * 5, VK_RETURN)  # the fifth entry
    dialog = user.dialog(SirfMenu[Id.DIALOG_SIRF_MODE_CONTROL])
    line.received.clear()
    assert focus(dialog) == Id.CONTROL_MODE_DEGRADED
    user.press(VK_RIGHT)
    wait_for("an entry is chosen", lambda: dialog.items(Id.CONTROL_MODE_DEGRADED)[1])
    first = dialog.control(Id.CONTROL_MODE_DEGRADED)["outer"]
    for number, keys in ((Id.CONTROL_MODE_ALTITUDE, "15"), (Id.CONTROL_MODE_ALTITUDE_HOLD, VK_RIGHT),
                         (Id.CONTROL_MODE_ALTITUDE_SOURCE, VK_RIGHT), (Id.CONTROL_MODE_DEGRADED_TIMEOUT, "30"),
                         (Id.CONTROL_MODE_DR_TIMEOUT, "20"),
                         (Id.CONTROL_MODE_TRACK_SMOOTHING, VK_RETURN)):
        walk(user, dialog, number)
        wait_visible(dialog, number)
        user.press(*([keys] if isinstance(keys, int) else map(ord, keys)))
    way = walk(user, dialog, Id.CONTROL_MODE_SET)
    wait_visible(dialog, Id.CONTROL_MODE_SET)
    assert dialog.control(Id.CONTROL_MODE_DEGRADED)["outer"] != first  # it has scrolled
    user.press(VK_RETURN)
    wait_for("the receiver gets the command", lambda: b"\xA0\xA2\x00\x0E\x88" in line.received)
    assert dialog.text(Id.CONTROL_MODE_ALTITUDE) == "15"
    assert dialog.control(Id.CONTROL_MODE_TRACK_SMOOTHING)["checked"] == 1
    assert Id.CONTROL_MODE_GET in way
    user.press(VK_F1)  # OK
    dialog.wait_gone()
    user.press(VK_F1, VK_DOWN, VK_RETURN)
    user.dialog("About Toravane")
    user.press(VK_RETURN)
    wait_for("it disappears", lambda: not user.dialogs())


def test_refused_values_are_named_in_their_order(user):
    line = start(user, "smartphone")
    dialog = opened(user, Id.DIALOG_SIRF_ELEVATION_MASK)
    for number in (Id.CONTROL_ELEVATION_TRACKING, Id.CONTROL_ELEVATION_NAVIGATION):
        dialog.enter(number, "9999")
    for caption, number in (("Tracking Mask", Id.CONTROL_ELEVATION_TRACKING),
                            ("Navigation Mask", Id.CONTROL_ELEVATION_NAVIGATION)):
        dialog.press(Id.CONTROL_ELEVATION_SET)  # Set
        box = user.dialog(caption)
        assert sorted(user.dialogs()) == sorted([caption, SirfMenu[Id.DIALOG_SIRF_ELEVATION_MASK]])
        assert len(box.texts) == 1 and box.texts[0].startswith("Range ")
        user.press(VK_RETURN)
        box.wait_gone()
        assert b"\xA0\xA2\x00\x05\x8B" not in line.received
        dialog.enter(number, "5")
    dialog.press(Id.CONTROL_ELEVATION_SET)
    wait_for("the receiver gets the command", lambda: b"\xA0\xA2\x00\x05\x8B" in line.received)
    leave(dialog)


def test_every_field_is_seen_when_it_has_the_focus(user):
    start(user, "smartphone")
    # Each dialog with the smallest number of fields that the keys must reach.
    for item, fewest in ((Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, 8), (Id.COMMAND_GRAPH, 70)):
        dialog = opened(user, item)
        numbers = {c["window"]: c["id"] for c in dialog.controls()}
        here = first = user.driver.focus(dialog.window)
        seen = []
        while not seen or here != first:
            assert len(seen) < 120, f"the way does not end: {seen}"
            before = here
            user.press(VK_DOWN)
            here = wait_for("the focus moves", lambda: (now := user.driver.focus(dialog.window)) != before and now)
            seen.append(numbers[here])
            if len(seen) % 5 == 0:
                wait_visible(dialog, seen[-1])
        assert len(seen) >= fewest
        leave(dialog)


def test_back_erases_in_an_edit_and_closes_nothing(user):
    start(user, "smartphone")
    dialog = opened(user, Id.DIALOG_SIRF_ELEVATION_MASK)
    dialog.enter(Id.CONTROL_ELEVATION_TRACKING, "12")
    walk(user, dialog, Id.CONTROL_ELEVATION_NAVIGATION)
    user.press(ord("4"), ord("5"))
    wait_for("the keys have typed", lambda: dialog.text(Id.CONTROL_ELEVATION_NAVIGATION) == "45")
    user.press(VK_ESCAPE)
    wait_for("the last digit is erased", lambda: dialog.text(Id.CONTROL_ELEVATION_NAVIGATION) == "4")
    user.press(ord("A"), ord("7"))  # numbers only
    wait_for("the digit has been typed", lambda: dialog.text(Id.CONTROL_ELEVATION_NAVIGATION) == "47")
    user.press(VK_ESCAPE, VK_ESCAPE, VK_ESCAPE)
    wait_for("nothing is left", lambda: dialog.text(Id.CONTROL_ELEVATION_NAVIGATION) == "")
    assert dialog.text(Id.CONTROL_ELEVATION_TRACKING) == "12"
    assert user.dialogs() == [SirfMenu[Id.DIALOG_SIRF_ELEVATION_MASK]]


def test_spinners_go_through_the_whole_list(user):
    """Left and right in a list of ports; the spinner's own arrows also reach all entries."""
    line = user.connect()
    user.store(CommPortIdx=Port)  # nothing is opened
    user.start_handheld("smartphone")
    dialog = opened(user, Id.COMMAND_COMMUNICATION)
    wait_for("the list is filled", lambda: len(dialog.items(Id.CONTROL_COM_PORT)[0]) == 10)
    items = dialog.items(Id.CONTROL_COM_PORT)[0]
    assert dialog.items(Id.CONTROL_COM_PORT)[1] == items[Port]
    assert focus(dialog) == Id.CONTROL_COM_PORT
    user.press(VK_RIGHT)
    wait_for("the next one", lambda: dialog.items(Id.CONTROL_COM_PORT)[1] == items[Port + 1])
    user.press(VK_LEFT, VK_LEFT)
    wait_for("the one before", lambda: dialog.items(Id.CONTROL_COM_PORT)[1] == items[Port - 1])
    for spinner, count in ((300, 10), (301, 8)):
        limits = user.driver.call("send", dialog.control(spinner)["window"], UDM_GETRANGE, 0, 0)["result"]
        assert (limits >> 16, limits & 0xFFFF) == (0, count - 1)
    assert line.rate() == 300


def test_log_has_a_name_of_its_own_on_a_smartphone(user):
    line = start(user, "smartphone")
    dialog = opened(user, Id.COMMAND_COMMUNICATION)
    dialog.press(Id.CONTROL_COM_LOG_OPEN)
    box = user.dialog("Log File Name")
    path = next(text for text in box.texts if text.endswith(".txt"))
    box.dismiss("OK")
    line.send(b"$GPXXX*00\r\n")
    dialog.press(Id.CONTROL_COM_LOG_CLOSE)
    wait_for("the log is closed", lambda: dialog.control(Id.CONTROL_COM_LOG_OPEN)["enabled"])
    file = user.wine.prefix / "drive_c" / path[3:].replace("\\", "/")
    wait_for("the log is there", file.exists)
    assert "AppData" in path
    file.unlink()


def test_pocketpc_closes_by_its_title_alone(user):
    """If no platform type is set, the shell's type is Pocket PC."""
    line = user.connect()
    user.store(CommPortIdx=Port)
    user.start(file=desktop.HandheldProgram)
    dialog = opened(user, Id.DIALOG_SIRF_POWER_MASK)
    assert dialog.control(Id.CONTROL_POWER_TRACKING)["class"] == "Edit"
    bar = next(w for w in user.driver.windows() if w["class"] == "ShellMenuBar" and w["owner"] == dialog.window)
    user.driver.post(bar["window"], WM_LBUTTONUP, 0, (10 << 16) | 8)  # it has no button
    user.press(VK_TAB)
    wait_for("the keyboard works", lambda: user.driver.focus(dialog.window)
             == dialog.control(Id.CONTROL_POWER_NAVIGATION)["window"])
    title = next(w for w in user.driver.windows() if w["class"] == "ShellTitleBar")
    user.driver.post(title["window"], WM_LBUTTONUP, 0, (10 << 16) | 230)
    dialog.wait_gone()
    assert not line.received
