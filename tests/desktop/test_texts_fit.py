# SPDX-License-Identifier: MIT
"""Every text of every dialog has room in its control: captions, words on buttons, entries of lists, and the longest
value of each field. Measured in the dialogs' own font and in the real window, on the desktop and on hand-held screens."""

import pytest

from harness import Port, desktop, wait_for
from resource_ids import Id
from test_handheld import NmeaMenu, SirfMenu, leave

Looks = ("desktop", *desktop.Handhelds)
EM_GETMARGINS = 0xD4

# Parts of a control that no text may use, in pixels, as the system draws them.
ButtonFrame = 3  # at each side: edge and focus
BoxWidth = 17  # of a check box or an option, with the gap before its text
ListGap = 1  # at each side of an entry
ComboFrame, ComboArrow = 3, 17

TypeMask, CheckTypes, NoText, MultilineButton = 0xF, {2, 3, 4, 5, 6, 9}, {0xB}, 0x2000
NoWordWrap, NoPrefix = 0xC, 0x80  # styles of a text
MultilineEdit = 0x4  # scrolls


# ---- The longest values -------------------------------------------------------------------------------

Time, Seconds, Coordinate, Milliseconds = "23:59:59", "604800", "-10000000", "3600000"


def row(first, *texts):
    return {first + i: text for i, text in enumerate(texts)}


def start_fields(first):
    """Position, clock, time of week, week and channels."""
    return row(first, Coordinate, Coordinate, Coordinate, "1000000", Seconds, "10000", "12")


def twelve(title, value, unit=""):
    """A line of reports: twelve satellites are the most."""
    return title + f" {value}" * 12 + unit


def reports(first):
    return row(first, "DGPS Source: Internal Beacon", twelve("Sv: ", 32), twelve("Cor:", -327, " m"),
               twelve("Age:", 255, " s"))


Measured = {Id.CONTROL_SIRF_ON_TIME: "900", Id.CONTROL_SIRF_OFF_TIME: Milliseconds, Id.CONTROL_SIRF_TIME: Time}
Stamps = (Id.CONTROL_STAMP_GGA, Id.CONTROL_STAMP_GLL, Id.CONTROL_STAMP_GSA, Id.CONTROL_STAMP_GSV, Id.CONTROL_STAMP_MSS,
          Id.CONTROL_STAMP_RMC, Id.CONTROL_STAMP_VTG, Id.CONTROL_STAMP_ZDA, Id.CONTROL_STAMP_SRF150,
          Id.CONTROL_STAMP_SRF151, Id.CONTROL_STAMP_SRF152, Id.CONTROL_STAMP_SRF154, Id.CONTROL_STAMP_SRFTXT,
          Id.CONTROL_STAMP_OTHER)

# A sentence and the receiver's answers may be of any length; their controls scroll.
Free = {Id.CONTROL_DEVELOPMENT_COMMAND, Id.CONTROL_NMEA_GREY_BOX, Id.CONTROL_SOFTWARE_VERSION}

# A port's label has the name of its adapter and its device's; drivers of hand-held devices have short names.
KeypadPort = "COM9: Serial Cable"

# The names of messages, which their numbers lead; the narrowest screen has no room for the end of some.
NarrowScreen, Led = "smartphone", Id.CONTROL_RATE_MESSAGE_ID

Longest = {
    Id.COMMAND_COMMUNICATION: {
        Id.CONTROL_COM_PORT: "COM9: USB-Serial Controlle (ttyUSB0)",
        Id.CONTROL_COM_PROTOCOL: "NMEA",
        Id.CONTROL_COM_STATUS: "Messages NMEA 4294967295 SiRF 4294967295\r\nBaudrate NMEA 115200 Effective 115200\r\n"
                               "Bytes 4294967295"},
    Id.DIALOG_NMEA_SET_SERIAL_PORT: {Id.CONTROL_NMEA_TIME: Time, Id.CONTROL_SIRF_TIME: Time},
    Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION: start_fields(Id.CONTROL_NAVINIT_ECEF_X),
    Id.DIALOG_NMEA_SET_MESSAGE_RATE: dict.fromkeys(Stamps, Time),
    Id.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT: {
        Id.CONTROL_APM_CYCLES: "255", Id.CONTROL_APM_TIME_BETWEEN_FIXES: "180", Id.CONTROL_APM_MAX_RESPONSE_TIME: "255",
        Id.CONTROL_APM_DUTY_CYCLE: "100", **Measured},
    Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE: start_fields(Id.CONTROL_INIT_ECEF_X),
    Id.DIALOG_SIRF_SWITCH_TO_NMEA: {Id.CONTROL_NMEA_TIME: Time, Id.CONTROL_SIRF_TIME: Time},
    Id.DIALOG_SIRF_DGPS_SOURCE: {
        Id.CONTROL_DGPS_BEACON_FREQUENCY: "325000", Id.CONTROL_DGPS_BEACON_BIT_RATE: "200",
        **reports(Id.CONTROL_DGPS_STATUS_SOURCE), **reports(Id.CONTROL_DGPS_DATA_SOURCE)},
    Id.DIALOG_SIRF_MODE_CONTROL: {
        Id.CONTROL_MODE_ALTITUDE: "-10000", Id.CONTROL_MODE_DEGRADED_TIMEOUT: "120", Id.CONTROL_MODE_DR_TIMEOUT: "120"},
    Id.DIALOG_SIRF_DOP_MASK: row(Id.CONTROL_DOP_GDOP, "50", "50", "50"),
    Id.DIALOG_SIRF_DGPS_MODE: {Id.CONTROL_DGPS_TIMEOUT: "255"},
    Id.DIALOG_SIRF_ELEVATION_MASK: row(Id.CONTROL_ELEVATION_TRACKING, "-20.0", "-20.0"),
    Id.DIALOG_SIRF_POWER_MASK: row(Id.CONTROL_POWER_TRACKING, "50", "50"),
    Id.DIALOG_SIRF_TRICKLE_POWER: {
        Id.CONTROL_TRICKLE_DUTY_CYCLE: "100.0", Id.CONTROL_TRICKLE_ON_TIME: "900", **Measured},
    Id.DIALOG_SIRF_SET_MESSAGE_RATE: row(Id.CONTROL_ARRIVAL_ROWS + 1, *[f"255  {Time}"] * 13),
    Id.DIALOG_SIRF_LOW_POWER: row(Id.CONTROL_LOW_POWER_MAX_OFF_TIME, Milliseconds, Milliseconds, "3600"),
    # Seven satellites are the most that stand above one horizon.
    Id.DIALOG_SIRF_SBAS: {
        **row(Id.CONTROL_SBAS_SV, "138", "255", "BF", "360", "90"),
        Id.CONTROL_SBAS_VISIBLE_SVS: "120 124 126 127 128 129 137 ", Id.CONTROL_SBAS_VISIBLE_AZIMUTHS: "360 " * 7,
        Id.CONTROL_SBAS_VISIBLE_ELEVATIONS: "  90 " * 7},
    Id.COMMAND_GRAPH: {
        **row(Id.CONTROL_GRAPH_VALUE_ZERO, *["-20037508"] * 10), **row(Id.CONTROL_GRAPH_VALUE_MIN, *["-999"] * 10),
        **row(Id.CONTROL_GRAPH_VALUE_MAX, *["-999"] * 10), **row(Id.CONTROL_GRAPH_PIXEL_MIN, *["999"] * 10),
        **row(Id.CONTROL_GRAPH_PIXEL_MAX, *["999"] * 10)},
}


# ---- Measuring ----------------------------------------------------------------------------------------

class Room:
    """The room for a text in a control, and whether a text has it."""

    def __init__(self, driver, control):
        self.driver, self.control = driver, control
        left, top, right, bottom = control["client"]
        self.width, self.height, self.wraps = right - left, bottom - top, False
        kind, style = control["class"], control["style"]
        if kind == "Static":
            self.wraps = style & 0x1F != NoWordWrap
        elif kind == "Button" and style & TypeMask in CheckTypes:
            self.width -= BoxWidth
            self.wraps = bool(style & MultilineButton)
        elif kind == "Button":
            self.width -= 2 * ButtonFrame
        elif kind == "ComboBox":
            self.width -= 2 * ComboFrame + ComboArrow
        elif kind == "ListBox":
            self.width -= 2 * ListGap
        elif kind == "Edit":
            margins = driver.call("send", control["window"], EM_GETMARGINS, 0, 0)["result"]
            self.width -= (margins & 0xFFFF) + (margins >> 16)

    def problem(self, text, prefixed=False):
        """What is wrong with a text in it, or None. In prefixed texts "&&" is one character."""
        text = text if prefixed else text.replace("&", "&&")
        width = height = 0
        for line in text.splitlines():
            line_width, line_height = self.driver.text_size(line, self.width if self.wraps else 0)
            width, height = max(width, line_width), height + line_height
        if width <= self.width and height <= self.height:
            return None
        return f"{self.control['id']}: {text!r} needs {width} x {height}, has {self.width} x {self.height}"


def texts_of(user, item, control):
    """All texts that a control may show, each with the sign that "&&" is one character in it."""
    kind, number = control["class"], control["id"]
    longest = KeypadPort if number == Id.CONTROL_COM_PORT and kind == "ListBox" else Longest.get(item, {}).get(number)
    if longest is not None:
        yield longest, False
    if kind in ("ComboBox", "ListBox"):
        yield from ((text, False) for text in user.driver.items(control["window"])[0])
    elif kind == "Static" and longest is None or kind == "Button" and control["style"] & TypeMask not in NoText:
        yield control["text"], not control["style"] & NoPrefix or kind == "Button"


def needs_longest(control):
    """True for a field whose text is not in the template."""
    return control["class"] == "Edit" or control["class"] == "Static" and control["text"] in ("", "-")


def problems(user, look, item, dialog):
    inner = {c["window"] for c in dialog.controls("Edit") if c["id"] == 1001}  # of lists that can be typed into
    for control in dialog.controls():
        number = control["id"]
        if control["window"] in inner or number in Free or not control["visible"]:
            continue
        if number == Led and look == NarrowScreen:
            continue
        if needs_longest(control) and number not in Longest.get(item, {}):
            yield f"{dialog.caption}: the longest value of {number} is not known"
        room = Room(user.driver, control)
        for text, prefixed in texts_of(user, item, control):
            problem = text and room.problem(text, prefixed)
            if problem:
                yield f"{dialog.caption}: {problem}"


def start(user, look):
    line = user.connect()
    user.store(CommPortIdx=Port, BaudrateIdx=2)
    if look == "desktop":
        user.start()
    else:
        user.start_handheld(look)
    wait_for("the program sets the line's rate", lambda: line.rate() == 4800)


@pytest.mark.parametrize("look", Looks)
def test_every_text_has_room(user, look):
    start(user, look)
    found, measured = [], 0
    for item, caption in {**NmeaMenu, **SirfMenu}.items():
        user.choose(item)
        dialog = user.dialog(caption)
        found += problems(user, look, item, dialog)
        measured += len(dialog.controls())
        leave(dialog)
    assert not found, "\n".join(found)
    assert measured > 400


def test_font_is_that_of_the_dialogs(user):
    """A unit of a template is a part of the font's mean width and height, so the size of a dialog shows its font."""
    start(user, "desktop")
    user.choose(Id.DIALOG_SIRF_POWER_MASK)
    dialog = user.dialog("Power Mask")
    letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
    width, height = user.driver.text_size(letters)
    unit = (width // 26 + 1) // 2, height
    left, top, right, bottom = dialog.control(Id.CONTROL_POWER_GET)["client"]
    assert (right - left, bottom - top) == (round(48 * unit[0] / 4), round(14 * unit[1] / 8))
