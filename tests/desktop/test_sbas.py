# SPDX-License-Identifier: MIT
"""The SBAS dialog in the real window, with the software receiver: sky plot, satellites, settings."""

import math
import re
import struct
import time

from PIL import Image

from harness import Output, Port, desktop, frame, wait_for
from resource_ids import Id

Rate = 57600
Place = 47.3769, 8.5417  # position of the software receiver
Sbas = Id.DIALOG_SIRF_SBAS
Prn, Mode, Timeout, Get, Set = (Id.CONTROL_SBAS_PRN, Id.CONTROL_SBAS_MODE, Id.CONTROL_SBAS_TIMEOUT,
                                Id.CONTROL_SBAS_GET, Id.CONTROL_SBAS_SET)
Visibles = (Id.CONTROL_SBAS_VISIBLE_SVS, Id.CONTROL_SBAS_VISIBLE_AZIMUTHS, Id.CONTROL_SBAS_VISIBLE_ELEVATIONS)
Sv, CarrierToNoise, State, Azimuth, Elevation = (Id.CONTROL_SBAS_SV, Id.CONTROL_SBAS_CARRIER_TO_NOISE,
                                                 Id.CONTROL_SBAS_STATE, Id.CONTROL_SBAS_AZIMUTH,
                                                 Id.CONTROL_SBAS_ELEVATION)
Satellites = {120: -15.5, 124: 21.5, 126: 25, 127: 64, 128: 55}  # in view there
PlotArea = 31, 62, 149, 182
Black, White = (0, 0, 0), (255, 255, 255)


def look_up(sv):
    """Elevation and azimuth of a satellite, in degrees, from the two positions in space."""
    phi, delta = math.radians(Place[0]), math.radians(Satellites[sv] - Place[1])
    there = (42164 / 6378 * math.cos(delta), 42164 / 6378 * math.sin(delta), 0)
    up = there[0] * math.cos(phi) - 1
    north = -there[0] * math.sin(phi)
    return math.degrees(math.atan2(up, math.hypot(north, there[1]))), math.degrees(math.atan2(there[1], north)) % 360


def open_dialog(user, *options, environment=None):
    """The dialog, with a receiver in SiRF binary that has a fix, and the file with the bytes that the program sends."""
    record = user.connect_receiver(Rate, "--protocol", "sirf", "--start", "hot", "--track", "still", *options)
    user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(Rate))
    user.start(environment=environment)
    wait_for("a fix", lambda: re.match(r" Latitude: 47\.37", user.page()[8]), 30)
    user.choose(Sbas)
    return user.dialog("SBAS"), record


def wait_sky(dialog):
    """The texts of the satellites in view, as soon as there are any."""
    return wait_for("satellites in view", lambda: dialog.text(Visibles[0]) and [dialog.text(v) for v in Visibles])


def picture(user, dialog):
    """The pixels of the dialog's client area."""
    window = next(w for w in user.driver.windows() if w["window"] == dialog.window)
    file = Output / "sbas-dialog.png"
    desktop.save_screenshot(user.display.name, file, tuple(window["client"]))
    with Image.open(file) as image:
        return image.convert("RGB")


def plot(user, dialog):
    return picture(user, dialog).crop(PlotArea).tobytes()


def wait_picture(user, dialog, what, condition):
    return wait_for(what, lambda: condition(picture(user, dialog)))


def geodetic(latitude, longitude):
    """A fix at a place, 2024-02-29 12:00:00; message id 41."""
    return frame(struct.pack(">BHHHIHBBBBHIii", 41, 0, 4, 0, 0, 2024, 2, 29, 12, 0, 0, 0, round(latitude * 1e7),
                             round(longitude * 1e7)).ljust(91, b"\0"))


def place(sv):
    """The position of a satellite in the plot."""
    elevation, azimuth = look_up(sv)
    radius, angle = (90 - elevation) / 1.8, math.radians(azimuth + 180)
    return round(90 + math.sin(angle) * radius), round(122 - math.cos(angle) * radius)


def has_line(image, x, y):
    """True if a line passes within a pixel."""
    return any(image.getpixel((x + dx, y + dy)) == Black for dx in (-1, 0, 1) for dy in (-1, 0, 1))


def has_frame(image, x, y):
    """True if the place is inside a frame: a line above and one below it, wide enough for three digits."""
    def is_edge(row):
        return all(image.getpixel((x + dx, row)) == Black for dx in range(-8, 9))
    return any(map(is_edge, range(y - 12, y - 5))) and any(map(is_edge, range(y + 5, y + 13)))


def assert_plot_is_free(user, dialog):
    """No control reaches into the plot's area."""
    window = next(w for w in user.driver.windows() if w["window"] == dialog.window)
    left, top = window["client"][:2]
    for control in dialog.controls():
        x1, y1, x2, y2 = control["outer"]
        beside = x2 - left <= PlotArea[0] or x1 - left >= PlotArea[2]
        above_or_below = y2 - top <= PlotArea[1] or y1 - top >= PlotArea[3]
        assert beside or above_or_below, control


def test_lines_show_the_satellites_in_view(user):
    dialog, _ = open_dialog(user)
    expected = [look_up(sv) for sv in Satellites]
    assert wait_sky(dialog) == ["".join(f"{sv} " for sv in Satellites),
                                "".join(f"{azimuth:03.0f} " for _, azimuth in expected),
                                "".join(f"{elevation: 4.0f} " for elevation, _ in expected)]


def test_plot_is_drawn(user):
    dialog, _ = open_dialog(user)
    wait_sky(dialog)
    assert_plot_is_free(user, dialog)

    def is_drawn(image):
        """The horizon east and west of north, white inside, and the frames of two satellites at their places."""
        horizon = all(has_line(image, 90 + side * 35, 122 + 35) for side in (-1, 1))
        return horizon and image.getpixel((90, 140)) == White and all(has_frame(image, *place(sv)) for sv in (120, 128))

    wait_picture(user, dialog, "the plot is drawn", is_drawn)
    user.screenshot("sbas")


def test_each_fix_draws_once(user):
    """If satellites cover each other, they are on top in turns, so each drawing is shown."""
    _, line = user.start_connected(Rate)
    user.choose(Sbas)
    dialog = user.dialog("SBAS")
    pictures = [plot(user, dialog)]
    for _ in range(4):
        line.send(geodetic(*Place))
        wait_for("another picture", lambda: plot(user, dialog) != pictures[-1])
        pictures.append(plot(user, dialog))
        time.sleep(0.3)
        assert plot(user, dialog) == pictures[-1]  # and nothing more until the next fix
    assert pictures[0] != pictures[1] == pictures[3] != pictures[2] == pictures[4]


def test_plot_follows_the_receiver(user):
    _, line = user.start_connected(Rate)
    user.choose(Sbas)
    dialog = user.dialog("SBAS")
    line.send(geodetic(*Place))
    wait_picture(user, dialog, "120 at its place", lambda image: has_frame(image, *place(120)))
    line.send(geodetic(-Place[0], Place[1]))  # at this position it is in the north
    wait_picture(user, dialog, "120 mirrored",
                 lambda image: has_frame(image, place(120)[0], 244 - place(120)[1]) and
                 not has_frame(image, *place(120)))


def test_tracked_satellite_is_shown(user):
    dialog, _ = open_dialog(user)
    sv = int(wait_for("a satellite is tracked", lambda: dialog.text(Sv), 30))
    elevation, azimuth = look_up(sv)
    assert abs(int(dialog.text(Elevation)) - elevation) <= 1.5
    assert abs(int(dialog.text(Azimuth)) - azimuth) <= 2.5  # sent in steps of a degree and a half
    assert re.fullmatch("[0-9A-F]{2,4}", dialog.text(State))
    wait_for("its signal", lambda: 20 <= int(dialog.text(CarrierToNoise)) <= 60)


def test_set_and_get(user):
    dialog, record = open_dialog(user)
    assert record.read_bytes() == frame(bytes([168, 170]))
    wait_for("the receiver's settings", lambda: dialog.items(Timeout)[1])
    assert [dialog.items(name)[1] for name in (Prn, Mode, Timeout)] == ["Auto", "Integrity", "Default"]

    choice = ["126 EGNOS", "Testing", "User input"]
    for name, text in zip((Prn, Mode, Timeout), choice):
        dialog.pick(name, text)
    dialog.press(Set)
    sent = frame(bytes([168, 170])) + frame(bytes([170, 126, 0, 9, 0, 0]))
    wait_for("the command", lambda: record.read_bytes() == sent)
    for name, text in zip((Prn, Mode, Timeout), ("138 WAAS", "Integrity", "Default")):
        dialog.pick(name, text)
    dialog.press(Get)
    wait_for("what was set", lambda: [dialog.items(name)[1] for name in (Prn, Mode, Timeout)] == choice)
    assert record.read_bytes() == sent + frame(bytes([168, 170]))
    wait_for("the chosen satellite is tracked", lambda: dialog.text(Sv) == "126", 30)


def test_bad_selection_and_refusals(user):
    dialog, record = open_dialog(user, "--refuse", "170")
    time.sleep(0.5)
    assert user.dialogs() == ["SBAS"]  # the refusal of the first poll is not shown
    dialog.press(Set)
    box = user.dialog("SBAS PRN")
    assert box.texts == ["Bad selection"]
    box.dismiss("OK")
    dialog.press(Get)
    box = user.dialog("NAcknowledgment")
    assert "Get SBAS parameters not accepted." in box.texts[0]
    box.dismiss("OK")
    for name, text in ((Prn, "Auto"), (Mode, "Integrity"), (Timeout, "Default")):
        dialog.pick(name, text)
    dialog.press(Set)
    box = user.dialog("NAcknowledgment")
    assert "Set SBAS parameters not accepted." in box.texts[0]
    box.dismiss("OK")
    assert record.read_bytes() == 2 * frame(bytes([168, 170])) + frame(bytes([170, 0, 1, 0, 0, 0]))
    dialog.close()


def test_keypad_layout(user):
    dialog, _ = open_dialog(user, environment={"TORAVANE_PLATFORM": "SmartPhone"})
    wait_sky(dialog)
    wait_for("the receiver's settings", lambda: dialog.items(Timeout)[1])
    assert [c["class"] for c in dialog.controls() if c["id"] in (Prn, Mode, Timeout)] == ["ListBox"] * 3
    assert_plot_is_free(user, dialog)
    user.screenshot("sbas-keypad")
