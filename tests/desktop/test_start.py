# SPDX-License-Identifier: MIT
"""The program from its start to its end: settings, first sentence, menus, boxes, keys and the text page."""

import re
import time

import pytest

from harness import (Port, VK_DOWN, VK_ESCAPE, VK_F10, VK_LEFT, VK_RETURN, VK_RIGHT, VK_UP, desktop, frame, sentence,
                     wait_for)
from resource_ids import Id

HotStart = b"$PSRF101,0,0,0,0,0,0,12,1*15\r\n"

# A short recording with every sentence that the page shows.
Record = b"".join(map(sentence, [
    "GPGGA,183725.50,4916.4500,N,12311.1200,W,2,08,1.2,100.0,M,47.5,M,3,0120",
    "GPGSA,A,3,04,05,09,12,,,,,,,,,2.3,1.2,1.9",
    "GPGSV,2,1,05,04,60,215,42,05,12,047,38,09,05,301,,12,33,118,45",
    "GPGSV,2,2,05,120,28,190,33",
    "GPRMC,183726.00,A,4916.4500,N,12311.1200,W,10.0,231.8,210626,,,D",
    "GPVTG,231.8,T,,M,10.0,N,18.5,K,D",
]))
Page = [
    " UTC: 2026-06-21 18:37:26",
    " Sv:04 05 09 12 12000 00 00 00 00 00 00",
    " Cn:42 38 00 45 33 00 00 00 00 00 00 00",
    " El: 60 12 05 33 28 00 00 00 00 00 00 00",
    " Fix: 8 SVs DGPS Age 3 s",
    " HDOP: 1.2",
    " Latitude: 49.2741667 °N",
    " Longitude: 123.1853333 °W",
    " Northing: 5485446.50 m",
    " Easting: 17200536.00 m",
    " VDOP: 1.9",
    " Altitude MSL: 100.00 m",
    " Geoid Separation: 47.50 m",
    " Speed: 5.15 m/s",
    " Course: 231.80 °",
    "",
    "",
    "",
    " Use joystick to toggle graph/text.",
]
StartPage = [" Menu Com. Open a port."] + [""] * 18

NmeaItems = [
    (Id.DIALOG_NMEA_SET_SERIAL_PORT, "Set Serial Port (Switch to SiRF)"),
    (Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION, "Navigation Initialization"),
    (Id.DIALOG_NMEA_SET_MESSAGE_RATE, "Set Message Rate"),
    (Id.DIALOG_NMEA_DEVELOPMENT_DATA, "Development Data"),
    (Id.DIALOG_NMEA_SELECT_DATUM, "Select Datum"),
]
SirfItems = [
    (Id.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, "Advanced Power Management"),
    (Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source"),
    (Id.DIALOG_SIRF_SWITCH_TO_NMEA, "Switch to NMEA Protocol"),
    (Id.DIALOG_SIRF_DGPS_SOURCE, "DGPS Source"),
    (Id.DIALOG_SIRF_MODE_CONTROL, "Mode Control"),
    (Id.DIALOG_SIRF_DOP_MASK, "DOP Mask"),
    (Id.DIALOG_SIRF_DGPS_MODE, "DGPS Mode"),
    (Id.DIALOG_SIRF_ELEVATION_MASK, "Elevation Mask"),
    (Id.DIALOG_SIRF_POWER_MASK, "Power Mask"),
    (Id.DIALOG_SIRF_STATIC_NAVIGATION, "Static Navigation"),
    (Id.DIALOG_SIRF_TRICKLE_POWER, "Trickle Power"),
    (Id.DIALOG_SIRF_SET_MESSAGE_RATE, "Set Message Rate"),
    (Id.DIALOG_SIRF_LOW_POWER, "Low Power"),
    (Id.DIALOG_SIRF_SBAS, "SBAS"),
    (Id.DIALOG_SIRF_POLL_SOFTWARE_VERSION, "Poll Software Version"),
]


def turned(course):
    """The record's page after a sentence with another course, and that sentence."""
    page = [f" Course: {course:.2f} °" if text.startswith(" Course") else text for text in Page]
    return page, sentence(f"GPVTG,{course},T,,M,10.0,N,18.5,K,D")


# ---- First sentence -----------------------------------------------------------------------------------

@pytest.mark.parametrize("rate", [4800, 115200])
def test_opens_the_stored_port_at_the_stored_rate(user, rate):
    user.start_connected(rate)  # waits until the line has that rate
    user.wait_page(StartPage)


def test_first_sentence_sends_one_hot_start(user):
    program, line = user.start_connected()
    assert line.received == b""
    line.send(Record)
    user.wait_page(Page)
    page, turn = turned(5.0)
    line.send(Record + turn)
    user.wait_page(page)
    assert line.received == HotStart
    assert program.running()


def test_first_sentence_stores_port_and_rate(user):
    _, line = user.start_connected(rate=9600)
    user.store(CommPortIdx=8, BaudrateIdx=0)
    line.send(sentence("GPZDA,183725.50,21,06,2026,00,00"))
    wait_for("the port is stored", lambda: user.stored("CommPortIdx") == Port)
    wait_for("the rate is stored", lambda: user.stored("BaudrateIdx") == desktop.Rates.index(9600))


def test_wrong_checksum_is_no_first_sentence(user):
    _, line = user.start_connected()
    line.send(b"$GPVTG,231.8,T,,M,10.0,N,18.5,K,D*00\r\n")
    user.store(CommPortIdx=8)
    time.sleep(1)
    assert line.received == b""
    assert user.stored("CommPortIdx") == 8
    user.wait_page(StartPage)


def test_port_that_does_not_exist(user):
    user.store(CommPortIdx=7, BaudrateIdx=2)
    program = user.start()
    user.dialog("Cannot open COM7:").dismiss("OK")
    assert program.running()
    user.close()
    assert program.wait_end() == 0


# ---- Page and keys ------------------------------------------------------------------------------------

def test_page_shows_the_sentences(user):
    _, line = user.start_connected()
    line.send(Record)
    user.wait_page(Page)


def test_page_shows_the_moving_software_receiver(user):
    """Two programs that were written independently understand each other, at a slow and at the fastest rate."""
    for rate in (4800, 115200):
        record = user.connect_receiver(rate, "--start", "hot", "--track", "circle")
        user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(rate))
        program = user.start()
        wait_for("a fix", lambda: re.fullmatch(r" Fix: \d+ SVs.*", user.page()[4]), 30)
        wait_for("satellites", lambda: re.fullmatch(r" Sv:(\d\d ?){12}", user.page()[1]), 30)
        latitude = user.page()[6]
        assert re.fullmatch(r" Latitude: 47\.3\d{6} °N", latitude)
        wait_for("the position changes", lambda: user.page()[6] != latitude)
        assert record.read_bytes() == HotStart
        user.close()
        assert program.wait_end() == 0


def test_wrong_page_is_noticed(user):
    """The comparison itself: a wrong expectation is a difference, and so is a single wrong pixel."""
    _, line = user.start_connected()
    line.send(Record)
    user.wait_page(Page)
    shown = user.page()
    for number, text in enumerate(Page):
        wrong = Page.copy()
        wrong[number] = text[:-1] + "#"
        assert shown != wrong

    user.driver.dot(user.main_window()["window"], 300, 100)
    assert user.page() != Page


def test_shorter_text_leaves_nothing_behind(user):
    _, line = user.start_connected()
    user.wait_page(StartPage)
    line.send(sentence("GPVTG,7.0,T,,M,10.0,N,18.5,K,D"))
    user.wait_page([""] * 13 + [" Speed: 5.15 m/s", " Course: 7.00 °", "", "", "", Page[18]])


@pytest.mark.parametrize("key", [VK_LEFT, VK_UP, VK_RIGHT, VK_DOWN], ids=["left", "up", "right", "down"])
def test_direction_key_toggles_chart_and_text(user, key):
    _, line = user.start_connected()
    line.send(Record)
    user.wait_page(Page)
    page, turn = turned(5.0)
    user.press(key)
    time.sleep(0.5)  # the screen does not show that the key has arrived
    line.send(turn)
    time.sleep(1)
    assert user.page() != page  # the text is no longer painted
    user.press(key)
    user.wait_page(page)  # at once, without another sentence


def test_letter_key_toggles_twice(user):
    _, line = user.start_connected()
    line.send(Record)
    user.wait_page(Page)
    page, turn = turned(5.0)
    user.press(ord("A"))
    time.sleep(0.5)  # the screen does not show that the key has arrived
    line.send(turn)
    user.wait_page(page)


# ---- Menus --------------------------------------------------------------------------------------------

def under(popup, items):
    return [(number, f"{popup}/{text}") for number, text in items]


def test_menu_items(user):
    items = user.driver.menu(desktop.Program, 2000)
    assert [(item["id"], item["path"]) for item in items] == [
        (Id.COMMAND_ABOUT, "About"), (Id.COMMAND_COMMUNICATION, "Com"), *under("NMEA", NmeaItems),
        *under("SiRF", SirfItems), (Id.COMMAND_GRAPH, "Graph"),
        (Id.COMMAND_EXIT, "Exit")]


def test_keypad_menu_items(user):
    items = user.driver.menu(desktop.Program, 2100)
    assert [(item["id"], item["path"]) for item in items] == [
        (Id.COMMAND_ABOUT, "NMEA/About Toravane"), (Id.COMMAND_COMMUNICATION, "NMEA/Communication"),
        *under("NMEA", NmeaItems),
        (Id.COMMAND_GRAPH, "NMEA/Graph Options"), (Id.COMMAND_EXIT, "NMEA/Exit"), *under("SiRF", SirfItems)]


def test_menu_opens_the_about_box(user):
    program, _ = user.start_connected()
    user.choose(Id.COMMAND_ABOUT)
    user.dialog("About Toravane").dismiss("OK")
    assert program.running()


def test_menu_by_keyboard(user):
    """The window really has the menu: its first item is reached with the keyboard only."""
    user.start_connected()
    user.press(VK_F10, VK_RETURN)
    user.dialog("About Toravane").dismiss("OK")


def test_menu_exit_ends_the_program(user):
    program, _ = user.start_connected()
    user.choose(Id.COMMAND_EXIT)
    assert program.wait_end() == 0


# ---- First start and command line ---------------------------------------------------------------------

def close_with_ok(user, box):
    box.dismiss("OK")


def close_with_escape(user, box):
    user.press(VK_ESCAPE)
    box.wait_gone()


def close_with_cross(user, box):
    box.close()


@pytest.mark.parametrize("close", [close_with_ok, close_with_escape, close_with_cross])
def test_first_start_shows_the_about_box(user, close):
    program = user.start()
    box = user.dialog("About Toravane")
    assert "Toravane v 2.20" in box.texts
    close(user, box)
    user.wait_page(StartPage)
    assert user.main_window()["enabled"]
    user.close()
    assert program.wait_end() == 0


def test_first_start_ignores_the_command_line(user):
    program = user.start("StaticNavigationOn")
    user.dialog("About Toravane").dismiss("OK")
    time.sleep(1)
    assert user.dialogs() == []
    assert program.running()


@pytest.mark.parametrize("stored, arguments, caption, text", [
    ({"BaudrateIdx": 2}, ["StaticNavigationOn"], "CmdLine", "Unknown Comm Port for GPS"),
    ({"CommPortIdx": Port}, ["StaticNavigationOn"], "CmdLine", "Unknown Baudrate for Comm Port"),
    ({"CommPortIdx": Port, "BaudrateIdx": 2}, ["staticnavigationon"], "Un-supported CmdLine", "staticnavigationon"),
    ({"CommPortIdx": Port, "BaudrateIdx": 2}, ["StaticNavigationOn 1"], "Un-supported CmdLine", "StaticNavigationOn 1"),
], ids=["no-port", "no-rate", "other-case", "blank"])
def test_command_line_is_answered_and_ends_the_program(user, stored, arguments, caption, text):
    user.connect()
    user.store(**stored)
    program = user.start(*arguments)
    box = user.dialog(caption)
    assert box.texts == [text]
    assert box.buttons == ["OK"]
    box.dismiss("OK")
    assert program.wait_end() == 0


# ---- One copy, and its end ----------------------------------------------------------------------------

def test_second_start_brings_the_first_to_the_front(user):
    first, _ = user.start_connected()
    other = user.wine.start("notepad")
    try:
        wait_for("another program is in front", lambda: any(
            w["class"] == "Notepad" and w["foreground"] for w in user.driver.windows()))
        assert not user.main_window()["foreground"]
        second = user.start()
        assert second.wait_end() == 0
        wait_for("the first copy is in front", lambda: user.main_window()["foreground"])
    finally:
        desktop.stop(other)
    assert first.running()
    assert len([w for w in user.driver.windows() if w["class"] == "Toravane"]) == 1


def test_second_start_brings_an_open_box_to_the_front(user):
    user.start_connected()
    user.choose(Id.COMMAND_ABOUT)
    user.dialog("About Toravane")
    second = user.start()
    assert second.wait_end() == 0
    wait_for("the box is in front", lambda: any(
        w["text"] == "About Toravane" and w["foreground"] for w in user.driver.windows()))


def test_second_start_brings_a_box_of_the_receiver_to_the_front(user):
    _, line = user.start_connected()
    line.send(frame(bytes([12, 128])))
    user.dialog("NAcknowledgment")
    assert user.start().wait_end() == 0
    wait_for("the box is in front", lambda: any(
        w["text"] == "NAcknowledgment" and w["foreground"] for w in user.driver.windows()))


def test_two_starts_at_once_give_one_window(user):
    user.store(CommPortIdx=Port)  # nothing is opened
    for _ in range(5):
        programs = [user.start(), user.start()]
        wait_for("one has ended", lambda: sum(program.running() for program in programs) == 1)
        user.main_window()
        time.sleep(0.5)  # a second window would come now
        assert len([w for w in user.driver.windows() if w["class"] == "Toravane"]) == 1
        user.close()
        for program in programs:
            assert program.wait_end() == 0


def test_unattended_switch_that_the_receiver_refuses(user):
    """It ends without a user nevertheless, and the next start uses the receiver's last rate."""
    line = user.connect()
    user.store(CommPortIdx=Port, BaudrateIdx=2, SirfBaudrateIdx=6, NmeaBaudrateIdx=2)
    program = user.start("StaticNavigationOff")
    wait_for("the receiver is sent to SiRF binary", lambda: b"$PSRF100,0,57600,8,1,0*37" in line.received)
    wait_for("static navigation is switched", lambda: b"\xA0\xA2\x00\x02\x8F\x00" in line.received)
    line.send(frame(bytes([12, 143])))
    wait_for("the receiver is sent back", lambda: b"\xA0\xA2\x00\x18\x81" in line.received)
    line.send(frame(bytes([12, 129])))
    assert program.wait_end() == 0
    assert user.stored("BaudrateIdx") == 6


def test_minimising_ends_the_program(user):
    program, _ = user.start_connected()
    user.minimise()
    assert program.wait_end() == 0


def test_minimised_start_shows_the_window(user):
    line = user.connect()
    line.stream(Record, 4800)
    user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(4800))
    program = user.start("/wait", "/min", "/unix", desktop.Program, file="start")
    wait_for("the page comes", lambda: user.page()[18] == Page[18])
    user.close()
    assert program.wait_end() == 0


def test_closing_while_the_receiver_streams(user):
    program, line = user.start_connected(115200)
    line.stream(Record, 115200)
    wait_for("the page comes", lambda: user.page()[18] == Page[18])
    user.close()
    assert program.wait_end() == 0


def test_closing_while_the_port_is_being_opened(user):
    line = user.connect()
    line.stream(Record, 115200)
    user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(115200))
    program = user.start()
    user.close()
    assert program.wait_end() == 0
