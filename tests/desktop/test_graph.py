# SPDX-License-Identifier: MIT
"""The strip chart in the real window, and the Graph Options dialog."""

import math
import subprocess
import time

import pytest
from PIL import Image, ImageChops

from harness import Output, VK_DOWN, VK_RETURN, desktop, raw, sentence, wait_for
from resource_ids import Id

Replay = desktop.Tools / "toravane-replay"
GraphItem, AboutItem = Id.COMMAND_GRAPH, Id.COMMAND_ABOUT
Help, Zero, Show, Hide, Save, TimeScale, Lines = (Id.CONTROL_GRAPH_HELP, Id.CONTROL_GRAPH_ZERO, Id.CONTROL_GRAPH_SHOW,
                                                  Id.CONTROL_GRAPH_HIDE, Id.CONTROL_GRAPH_SAVE,
                                                  Id.CONTROL_GRAPH_TIME_SCALE, Id.CONTROL_GRAPH_LINES)
Name, ValueMin, ValueMax, PixelMin, PixelMax, Color, Visible, ValueZero = (
    Id.CONTROL_GRAPH_NAME, Id.CONTROL_GRAPH_VALUE_MIN, Id.CONTROL_GRAPH_VALUE_MAX, Id.CONTROL_GRAPH_PIXEL_MIN,
    Id.CONTROL_GRAPH_PIXEL_MAX, Id.CONTROL_GRAPH_COLOR, Id.CONTROL_GRAPH_VISIBLE, Id.CONTROL_GRAPH_VALUE_ZERO)
Northing, Easting, Altitude, Speed = 3, 4, 7, 8

# Name, value zero, min, max, pixel min, max of each channel
Rows = [
    ("SVsInFix", 0, 0, 12, 255, 267),
    ("HDOP", 0, 0, 10, 235, 255),
    ("EHPE", 0, 0, 20, 215, 235),
    ("Northing", 6592520, -40, 40, 175, 215),
    ("Easting", 723400, -40, 40, 135, 175),
    ("VDOP", 0, 0, 10, 115, 135),
    ("EVPE", 0, 0, 25, 90, 115),
    ("Altitude", 70, -50, 50, 40, 90),
    ("Speed", 0, 0, 2, 20, 40),
    ("Course", 0, 0, 360, 0, 20),
]
Scales = ["1 sec/pixel", " 5 sec/pixel", "20 sec/pixel", "1 min/pixel", "3 min/pixel", "6 min/pixel"]


def angle(degrees, digits):
    return f"{int(degrees):0{digits}d}{degrees % 1 * 60:07.4f}"


def fix(second):
    """The sentences of one second on a walk round the place that the chart's default bands show; now and then
    it leaves them."""
    clock = f"{second // 3600 % 24:02d}{second // 60 % 60:02d}{second % 60:02d}.00"
    latitude = (6592520 + 50 * math.sin(second / 25)) / 111325
    longitude = (723400 + 30 * math.cos(second / 19)) / 111325 / math.cos(math.radians(latitude))
    place = f"{angle(latitude, 2)},N,{angle(longitude, 3)},E"
    hdop = 5 + 6 * math.sin(second / 7)
    return b"".join(map(sentence, [
        f"GPGSA,A,3,04,05,09,12,,,,,,,,,{hdop * 1.5:.1f},{hdop:.1f},{10 - hdop:.1f}",
        f"GPRMC,{clock},A,{place},{2 + 2.5 * math.sin(second / 11):.1f},{second * 3 % 360:.1f},210626,,,A",
        f"GPGGA,{clock},{place},1,{6 + int(7 * math.sin(second / 15)):02d},{hdop:.1f},"
        f"{70 + 60 * math.sin(second / 40):.1f},M,0,M,,",
    ]))


def walk(*seconds):
    return b"".join(fix(second) for second in seconds)


Noon = 12 * 3600
Logs = {
    "a single fix": walk(Noon + 17),
    "one sweep": walk(*range(Noon, Noon + 150)),
    "more than one sweep": walk(*range(Noon, Noon + 700)),
    "a gap over the edge": walk(*range(Noon, Noon + 100), *range(Noon + 330, Noon + 350)),
    "past midnight": walk(*range(86400 - 130, 86400), *range(40)),
    "the clock is set back": walk(*range(Noon, Noon + 200), *range(Noon + 60, Noon + 90)),
    "twice a second": walk(*(Noon + i // 2 for i in range(300)), Noon + 20, Noon + 20),
    "recorded NMEA": (desktop.Root / "tests/data/walk-south-west.txt").read_bytes(),
    "recorded SiRF": (desktop.Root / "tests/data/walk-south-west.srf").read_bytes(),
}


def expected_picture(log, size):
    """The replay tool's picture."""
    Output.mkdir(parents=True, exist_ok=True)
    file, picture = Output / "graph.txt", Output / "expected-chart.png"
    file.write_bytes(log)
    subprocess.run([Replay, "--chart", picture, "--size", "x".join(map(str, size)), file], check=True)
    return Image.open(picture).convert("RGB")


def wait_picture(user, expected, name):
    def differs():
        return ImageChops.difference(user.picture(), expected).getbbox()
    try:
        wait_for("the window shows the expected chart", lambda: differs() is None, 20)
    except AssertionError:
        expected.save(Output / f"{name}-expected.png")
        user.picture().save(Output / f"{name}-shown.png")
        raise AssertionError(f"the window differs within {differs()}; see {Output}/{name}-*.png") from None


def start_with_chart(user):
    program, line = user.start_connected(rate=115200)
    user.press(VK_DOWN)
    time.sleep(0.5)  # the screen does not show that the key has arrived: the chart appears with a fix
    return program, line


def open_options(user):
    user.main_window()
    user.choose(GraphItem)
    return user.dialog("Graph Options")


def rows(dialog):
    """The texts of all rows, in the form of the table."""
    texts = {c["id"]: c["text"] for c in dialog.controls()}
    return [(texts[Name + i], *(int(texts[base + i]) for base in (ValueZero, ValueMin, ValueMax, PixelMin, PixelMax)))
            for i in range(10)]


def checked(dialog, number):
    return bool(dialog.control(number)["checked"])


# ---- The chart ----------------------------------------------------------------------------------------

@pytest.mark.parametrize("name", Logs)
def test_window_shows_what_the_replay_draws(user, name):
    _, line = start_with_chart(user)
    left, top, right, bottom = user.main_window()["client"]
    assert bottom - top >= 268  # room for the default bands
    expected = expected_picture(Logs[name], (right - left, bottom - top))
    assert len(expected.getcolors()) >= 10
    line.send(Logs[name])
    wait_picture(user, expected, name.replace(" ", "-"))


def test_chart_comes_back_after_a_window_has_covered_it(user):
    _, line = start_with_chart(user)
    line.send(Logs["one sweep"])
    left, top, right, bottom = user.main_window()["client"]
    expected = expected_picture(Logs["one sweep"], (right - left, bottom - top))
    wait_picture(user, expected, "uncovered")
    user.choose(AboutItem)
    user.dialog("About Toravane").dismiss("OK")
    wait_picture(user, expected, "uncovered")


# ---- Graph Options ------------------------------------------------------------------------------------

def test_options_show_a_row_for_each_channel(user):
    user.start_connected()
    dialog = open_options(user)
    assert rows(dialog) == Rows
    assert all(c["checked"] for c in dialog.controls() if c["id"] in range(Visible, Visible + 10))
    assert dialog.items(TimeScale) == (Scales, Scales[0])
    assert checked(dialog, Lines)
    assert {"Help", "Zero", "Save", "Hide", "Show", "Lines"} <= set(dialog.buttons)
    assert [text for text in dialog.texts if text in ("Value", "Pixel", "Time scale")] == [
        "Value", "Pixel", "Time scale"]


@pytest.mark.parametrize("platform", ["", "SmartPhone"])
def test_every_control_lies_inside_the_dialog(user, platform):
    user.start_connected(environment={"TORAVANE_PLATFORM": platform})
    dialog = open_options(user)
    client = next(w for w in user.driver.windows() if w["window"] == dialog.window)["client"]
    for control in dialog.controls():
        left, top, right, bottom = control["outer"]
        assert client[0] <= left < right <= client[2] and client[1] <= top, control
        assert bottom <= client[3] or control["id"] == TimeScale, control
    user.screenshot("graph-options-" + (platform or "touch"))


def test_saved_settings_are_loaded_by_the_next_start(user):
    program, _ = user.start_connected()
    dialog = open_options(user)
    dialog.enter(ValueMin + Speed, "-3")
    dialog.enter(ValueMax + Speed, "7")
    dialog.enter(PixelMax + Speed, "38")
    dialog.press(Visible + Altitude)
    dialog.press(Lines)
    dialog.pick(TimeScale, "3 min/pixel")
    dialog.press(Save)
    wait_for("the last setting is stored", lambda: user.stored("TimeScaleIdx") == 4)
    assert user.stored("SpeedValueMin") == -3
    assert user.stored("SpeedValueMax") == 7
    assert user.stored("SpeedPixelMax") == 38
    assert user.stored("SpeedColor") == 0x0000FF
    assert user.stored("AltitudeUse") == 0
    assert user.stored("Lines") == 0
    assert user.stored("NorthingValueZero") == 6592520
    assert "Graph Options" in user.dialogs()  # it stays open
    dialog.close()
    user.close()
    program.wait_end()

    user.start_connected()
    dialog = open_options(user)
    assert rows(dialog)[Speed] == ("Speed", 0, -3, 7, 20, 38)
    assert not checked(dialog, Visible + Altitude)
    assert checked(dialog, Visible + Speed)
    assert not checked(dialog, Lines)
    assert dialog.items(TimeScale)[1] == "3 min/pixel"


@pytest.mark.parametrize("way", ["cross", "enter", Show, Hide])
def test_every_way_out_applies(user, way):
    user.start_connected()
    dialog = open_options(user)
    dialog.enter(ValueMax + Speed, "9")
    dialog.enter(ValueMin + Speed, "none")
    if way == "cross":
        dialog.close()
    elif way == "enter":
        user.press(VK_RETURN)
        dialog.wait_gone()
    else:
        dialog.dismiss(way)
    assert user.stored("SpeedValueMax") is None
    assert rows(open_options(user))[Speed] == ("Speed", 0, 0, 9, 20, 40)


def test_show_and_hide_switch_the_window(user):
    _, line = user.start_connected(rate=115200)
    log = Logs["one sweep"]
    line.send(log)
    wait_for("the last fix is on the page", lambda: " UTC: 2026-06-21 12:02:29" in user.page())
    page = user.page()
    open_options(user).dismiss(Show)
    left, top, right, bottom = user.main_window()["client"]
    wait_picture(user, expected_picture(log, (right - left, bottom - top)), "show")
    open_options(user).dismiss(Hide)
    user.wait_page(page)


def test_change_of_the_time_scale_clears_the_chart(user):
    _, line = start_with_chart(user)
    line.send(Logs["one sweep"])
    left, top, right, bottom = user.main_window()["client"]
    wait_picture(user, expected_picture(Logs["one sweep"], (right - left, bottom - top)), "before")
    dialog = open_options(user)
    dialog.pick(TimeScale, " 5 sec/pixel")
    dialog.dismiss(Show)
    wait_for("only background and edges are left", lambda: {color for _, color in user.picture().getcolors()} == {
        (255, 255, 255), (0xC0, 0xC0, 0xC0)})


def test_zero_takes_the_present_position(user):
    _, line = user.start_connected()
    line.send(sentence("GPGGA,183725.50,4916.4500,N,12311.1200,W,2,08,1.2,100.4,M,47.5,M,3,0120"))
    wait_for("the fix is on the page", lambda: " Altitude MSL: 100.40 m" in user.page())
    dialog = open_options(user)
    dialog.press(Zero)
    wait_for("the zeros are shown", lambda: dialog.text(ValueZero + Altitude) == "52")  # above the ellipsoid
    assert dialog.text(ValueZero + Northing) == "5485446"
    assert dialog.text(ValueZero + Easting) == "17200536"


def test_help(user):
    user.start_connected()
    dialog = open_options(user)
    dialog.press(Help)
    box = user.dialog("Graph")
    assert box.texts[-1] == (
        "Messages GGA, GSA and RMC are needed in NMEA protocol. Messages MID2 and MID41 are needed in SiRF "
        "protocol. VDOP is not supported in SiRF protocol. EHPE and EVPE, are not supported in NMEA protocol. "
        "Use joystick to toggle graph/text in main screen.")
    box.dismiss("OK")


def test_colour_can_be_chosen(user):
    custom, red, green, blue = 719, 706, 707, 708  # of the system's dialog
    user.start_connected()
    dialog = open_options(user)
    field = dialog.control(Color + Altitude)
    left, top, right, bottom = field["client"]

    def wait_colour(expected):
        wait_for(f"the field is {expected}",
                 lambda: user.pixel((left + right) // 2, (top + bottom) // 2) == expected)
    wait_colour((0, 0xC0, 0))
    user.driver.post(dialog.window, raw.WM_COMMAND, Color + Altitude, field["window"])  # a click on it
    chooser = user.dialog("Color")
    chooser.press(custom)
    wait_for("it shows the channel's colour", lambda: chooser.text(green) == "192")
    for part, value in ((red, 18), (green, 52), (blue, 86)):
        chooser.enter(part, str(value))
    chooser.dismiss("OK")
    wait_colour((18, 52, 86))
    dialog.press(Save)
    wait_for("the settings are stored", lambda: user.stored("TimeScaleIdx") == 0)
    assert user.stored("AltitudeColor") == 0x563412
