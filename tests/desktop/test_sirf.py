# SPDX-License-Identifier: MIT
"""SiRF binary in the real window: the page, and the boxes of refused commands."""

import struct
import time

import pytest

from harness import Port, desktop, frame, wait_for
from resource_ids import Id


def message(number, length, **fields):
    """A payload, zero but for its number and the fields: at7="04d2" puts two bytes at offset 7."""
    payload = bytearray(length)
    payload[0] = number
    for place, text in fields.items():
        data = bytes.fromhex(text)
        offset = int(place[2:])
        payload[offset:offset + len(data)] = data
    return frame(bytes(payload))


Navigation = message(2, 41, at19="84", at28="07")  # differential 3D fix, seven satellites
Tracking = message(4, 188, at7="03",
                   at8="07785a00bf28292a2b2c28292a2b2c",
                   at23="1ff0b400ff32323232323232323232",
                   at38="780103012d0909090909090909090a")


def geodetic(course=35999):
    """2024-02-29 23:59:58 at 52.1234567 N 4.5678901 W."""
    return message(41, 91, at3="0204", at11="07e8021d173be484", at23="1f116887fd46fecb00003039fffffd5a",
                   at39="1504d2" + struct.pack(">H", course).hex(), at50="000001c800000315", at89="09")


Page = [
    " UTC: 2024-02-29 23:59:58",
    " Sv:07 31 120",
    " Cn:42 00 09",
    " St:BF FF 2D",
    " El: 45 90 01",
    " Fix: 3D Kalman Filter, 7 SVs, DGPS",
    " HDOP: 1.8",
    " EstimatedHorizontalPrecisionError: 4.56 m",
    " Latitude: 52.1234567 °N",
    " Longitude: 4.5678901 °W",
    " Northing: 5802643.82 m",
    " Easting: -312212.23 m",
    " EstimatedVerticalPrecisionError: 7.89 m",
    " Altitude Ellipsoid: 123.45 m",
    " Altitude MSL: -6.78 m",
    " Speed: 12.34 m/s",
    " Course: 359.99 °",
    " Map Datum: WGS-84",
    " Use joystick to toggle graph/text.",
]


def start_with_page(user, rate=38400):
    program, line = user.start_connected(rate)
    line.send(Tracking + Navigation + geodetic())
    user.wait_page(Page)
    return program, line


def refuse(line, command):
    line.send(frame(bytes([12, command])))


def refusal(user):
    return user.dialog("NAcknowledgment")


def not_accepted(command):
    return f"Command {command}\r\rCommand or parameter not accepted."


# ---- Page ---------------------------------------------------------------------------------------------

def test_page_shows_the_messages(user):
    start_with_page(user)
    user.screenshot("sirf-page")


def test_first_message_stores_port_and_rate_and_sends_nothing(user):
    _, line = user.start_connected(rate=9600)
    user.store(CommPortIdx=8, BaudrateIdx=0)
    line.send(frame(b"\x07"))
    wait_for("the port is stored", lambda: user.stored("CommPortIdx") == Port)
    wait_for("the rate is stored", lambda: user.stored("BaudrateIdx") == desktop.Rates.index(9600))
    assert line.received == b""


# ---- Refused commands ---------------------------------------------------------------------------------

@pytest.mark.parametrize("command, text", [
    (0, not_accepted(0)),
    (128, not_accepted(128)),
    (255, not_accepted(255)),
    (170, "Set SBAS parameters not accepted. A likely reason is that it is not supported on XTrac firmware."),
])
def test_refusal_is_shown(user, command, text):
    program, line = start_with_page(user)
    refuse(line, command)
    box = refusal(user)
    assert box.texts == [text]
    assert box.buttons == ["OK"]
    box.dismiss("OK")
    wait_for("the window is enabled", lambda: user.main_window()["enabled"])
    assert program.running()


def test_refused_poll_that_nobody_asked_for_is_not_shown(user):
    _, line = start_with_page(user)
    refuse(line, 168)
    time.sleep(1)
    assert user.dialogs() == []


def test_refusals_are_shown_one_after_another(user):
    _, line = start_with_page(user)
    for command in (128, 133, 136):
        refuse(line, command)
    for command in (128, 133, 136):
        box = refusal(user)
        assert box.texts == [not_accepted(command)]
        assert user.dialogs() == ["NAcknowledgment"]
        box.dismiss("OK")
    time.sleep(0.5)
    assert user.dialogs() == []


def test_reception_goes_on_while_a_refusal_is_shown(user):
    _, line = start_with_page(user)
    refuse(line, 128)
    box = refusal(user)
    line.send(geodetic(course=4200))
    wait_for("the page is painted anew", lambda: user.page()[16] == " Course: 42.00 °")
    box.dismiss("OK")


def test_refusal_leaves_an_open_dialog_in_charge(user):
    _, line = start_with_page(user)
    user.choose(Id.COMMAND_ABOUT)
    about = user.dialog("About Toravane")
    refuse(line, 128)
    refusal(user).dismiss("OK")
    wait_for("the window is disabled again", lambda: not user.main_window()["enabled"])
    about.dismiss("OK")
    wait_for("the window is enabled", lambda: user.main_window()["enabled"])


def test_program_closes_while_a_refusal_is_shown(user):
    program, line = start_with_page(user, rate=115200)
    line.stream(Tracking + Navigation + geodetic() + frame(bytes([12, 128])), 115200)
    refusal(user)
    time.sleep(1)  # more are waiting
    user.close()
    assert program.wait_end() == 0
    assert user.dialogs() == []
