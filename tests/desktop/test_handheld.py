# SPDX-License-Identifier: MIT
"""The program on the screens of hand-held devices: every dialog from the menu, commands, keys, the log."""

import re

import pytest

from harness import Port, VK_DOWN, VK_ESCAPE, VK_LEFT, VK_RETURN, VK_RIGHT, desktop, sentence, wait_for

VK_F1, VK_F2 = 0x70, 0x71
Devices = ("pocketpc", "smartphone", "smartphone-large")
WM_COMMAND, WM_LBUTTONUP, BM_SETCHECK, UDM_GETRANGE, OK = 0x111, 0x202, 0xF1, 0x466, 1

# Each command of the menu with its dialog's caption, in the order of the keypad's two pop-ups.
NmeaMenu = {401: "About Toravane", 403: "Communication", 2003: "Set Serial Port", 2004: "Navigation Initialization",
            2005: "Set Message Rate", 2007: "Development Data", 2008: "Select Datum", 408: "Graph Options"}
SirfMenu = {2009: "Advanced Power Management", 2010: "Initialize Data Source", 2011: "Switch to NMEA Protocol",
            2012: "DGPS Source", 2013: "Mode Control", 2014: "DOP Mask", 2015: "DGPS Mode", 2016: "Elevation Mask",
            2017: "Power Mask", 2018: "Static Navigation", 2019: "Trickle Power", 2020: "Set Message Rate",
            2021: "Low Power", 2022: "SBAS", 2025: "Poll Software Version"}


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
    """Presses a key until a control has the focus, as often as it takes; what lies on the way."""
    way = [focus(dialog)]
    while way[-1] != goal:
        assert len(way) < 120, f"{goal} is not reached: {way}"
        before = way[-1]
        user.press(key)
        way.append(wait_for("the focus moves", lambda: (now := focus(dialog)) != before and now))
    return way


def wait_visible(dialog, number):
    """Waits until a control lies within the room between the bars."""
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
    (2004, {}, 1018, b"$PSRF101,"),
    (2005, {1031: 2, 1032: "5"}, 1034, b"$PSRF103,2,0,5,1*"),
    (2007, {1051: "PSRF105,1"}, 1052, b"$PSRF105,1*"),
    (2008, {1061: 1}, 1062, b"$PSRF106,"),
]
SirfCommands = [
    (2009, {5301: 1, 5302: "1", 5303: "30", 5304: 1, 5305: 1, 5306: "0", 5307: 1, 5308: "20", 5309: 1}, 5311, 53),
    (2012, {1331: 1, 1332: "0", 1333: "0"}, 1335, 133),
    (2013, {1363: 1, 1364: "10", 1365: 0, 1366: 0, 1367: "30", 1368: "15", 1369: 1}, 1362, 136),
    (2014, {1373: 1, 1374: "8", 1375: "8", 1376: "8"}, 1372, 137),
    (2015, {1383: 1, 1384: "30"}, 1382, 138),
    (2016, {1393: "5", 1394: "7.5"}, 1392, 139),
    (2017, {1403: "28", 1404: "28"}, 1402, 140),
    (2018, {1433: 1}, 1432, 143),
    (2019, {1513: 1, 1514: "20", 1515: "200"}, 1512, 151),
    (2021, {1673: "30000", 1674: "120000", 1675: "30", 1676: 1}, 1672, 167),
    (2022, {1701: 1, 1702: 0, 1703: 0}, 1705, 170),
    (2020, {16616: "2", 16617: "1"}, 16618, 166),
    (2010, {1287: "12", 12812: 1, 12818: 0, 12819: 0, 12820: 0}, 12810, 128),
]
LastCommand = (2003, {1001: 3, 1002: 0}, 1004, b"$PSRF100,0,9600,8,1,0*")  # the program then waits for SiRF binary


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
    """From the main window through the menu into a dialog that is higher than the screen, and a command sent."""
    line = start(user, "smartphone")
    user.press(VK_F2)
    user.press(*[VK_DOWN] * 5, VK_RETURN)  # the fifth entry
    dialog = user.dialog(SirfMenu[2013])
    line.received.clear()
    assert focus(dialog) == 1363
    user.press(VK_RIGHT)
    wait_for("an entry is chosen", lambda: dialog.items(1363)[1])
    first = dialog.control(1363)["outer"]
    for number, keys in ((1364, "15"), (1365, VK_RIGHT), (1366, VK_RIGHT), (1367, "30"), (1368, "20"),
                         (1369, VK_RETURN)):
        walk(user, dialog, number)
        wait_visible(dialog, number)
        user.press(*([keys] if isinstance(keys, int) else map(ord, keys)))
    way = walk(user, dialog, 1362)
    wait_visible(dialog, 1362)
    assert dialog.control(1363)["outer"] != first  # it has scrolled
    user.press(VK_RETURN)
    wait_for("the receiver gets the command", lambda: b"\xA0\xA2\x00\x0E\x88" in line.received)
    assert dialog.text(1364) == "15"
    assert dialog.control(1369)["checked"] == 1
    assert 1361 in way
    user.press(VK_F1)  # OK
    dialog.wait_gone()
    user.press(VK_F1, VK_DOWN, VK_RETURN)
    user.dialog("About Toravane")
    user.press(VK_RETURN)
    wait_for("it disappears", lambda: not user.dialogs())


def test_refused_values_are_named_in_their_order(user):
    line = start(user, "smartphone")
    dialog = opened(user, 2016)
    for number in (1393, 1394):
        dialog.enter(number, "9999")
    for caption, number in (("Tracking Mask", 1393), ("Navigation Mask", 1394)):
        dialog.press(1392)  # Set
        box = user.dialog(caption)
        assert user.dialogs() == [caption, SirfMenu[2016]] or user.dialogs() == [SirfMenu[2016], caption]
        assert len(box.texts) == 1 and box.texts[0].startswith("Range ")
        user.press(VK_RETURN)
        box.wait_gone()
        assert b"\xA0\xA2\x00\x05\x8B" not in line.received
        dialog.enter(number, "5")
    dialog.press(1392)
    wait_for("the receiver gets the command", lambda: b"\xA0\xA2\x00\x05\x8B" in line.received)
    leave(dialog)


def test_every_field_is_seen_when_it_has_the_focus(user):
    start(user, "smartphone")
    for item, fewest in ((2010, 8), (408, 70)):  # and how many fields the keys reach at least
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
    dialog = opened(user, 2016)
    dialog.enter(1393, "12")
    walk(user, dialog, 1394)
    user.press(ord("4"), ord("5"))
    wait_for("the keys have typed", lambda: dialog.text(1394) == "45")
    user.press(VK_ESCAPE)
    wait_for("the last digit is erased", lambda: dialog.text(1394) == "4")
    user.press(ord("A"), ord("7"))  # numbers only
    wait_for("the digit has been typed", lambda: dialog.text(1394) == "47")
    user.press(VK_ESCAPE, VK_ESCAPE, VK_ESCAPE)
    wait_for("nothing is left", lambda: dialog.text(1394) == "")
    assert dialog.text(1393) == "12"
    assert user.dialogs() == [SirfMenu[2016]]


def test_spinners_go_through_the_whole_list(user):
    """Left and right in a list of ports; the spinner's own arrows reach all entries too."""
    line = user.connect()
    user.store(CommPortIdx=Port)  # nothing is opened
    user.start_handheld("smartphone")
    dialog = opened(user, 403)
    items = wait_for("the list is filled", lambda: len(dialog.items(1651)[0]) == 10 and dialog.items(1651)[0])
    assert dialog.items(1651)[1] == items[Port]
    assert focus(dialog) == 1651
    user.press(VK_RIGHT)
    wait_for("the next one", lambda: dialog.items(1651)[1] == items[Port + 1])
    user.press(VK_LEFT, VK_LEFT)
    wait_for("the one before", lambda: dialog.items(1651)[1] == items[Port - 1])
    for spinner, count in ((300, 10), (301, 8)):
        limits = user.driver.call("send", dialog.control(spinner)["window"], UDM_GETRANGE, 0, 0)["result"]
        assert (limits >> 16, limits & 0xFFFF) == (0, count - 1)
    assert line.rate() == 300


def test_log_has_a_name_of_its_own_on_a_smartphone(user):
    line = start(user, "smartphone")
    dialog = opened(user, 403)
    dialog.press(1659)
    box = user.dialog("Log File Name")
    path = next(text for text in box.texts if text.endswith(".txt"))
    box.dismiss("OK")
    line.send(b"$GPXXX*00\r\n")
    dialog.press(16510)
    wait_for("the log is closed", lambda: dialog.control(1659)["enabled"])
    file = user.wine.prefix / "drive_c" / path[3:].replace("\\", "/")
    wait_for("the log is there", file.exists)
    assert "AppData" in path
    file.unlink()


def test_pocketpc_closes_by_its_title_and_by_its_bar(user):
    """Without a platform type of its own the shell makes the program a Pocket PC."""
    line = user.connect()
    user.store(CommPortIdx=Port)
    user.start(file=desktop.HandheldProgram)
    dialog = opened(user, 2017)
    assert dialog.control(1403)["class"] == "Edit"
    title = next(w for w in user.driver.windows() if w["class"] == "ShellTitleBar")
    user.driver.post(title["window"], WM_LBUTTONUP, 0, (10 << 16) | 230)
    dialog.wait_gone()
    dialog = opened(user, 2017)
    bar = next(w for w in user.driver.windows() if w["class"] == "ShellMenuBar" and w["owner"] == dialog.window)
    user.driver.post(bar["window"], WM_LBUTTONUP, 0, (10 << 16) | 8)
    dialog.wait_gone()
    assert not line.received
