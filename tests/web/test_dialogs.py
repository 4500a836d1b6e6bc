# SPDX-License-Identifier: MIT
"""Every dialog of the program as HTML: roles and names, places, keys, focus, accessibility, narrow, dark, enlarged."""

import time

import pytest
import templates
from conftest import wait_streaming
from resource_ids import Id
from steps import (Pictures, choose, close_dialog, complaints_of_axe, cut_texts, open_dialog, wait_clock, wait_gone)

Commands = ["Get", "Set", "Close"]
Channels = ["SVsInFix", "HDOP", "EHPE", "Northing", "Easting", "VDOP", "EVPE", "Altitude", "Speed", "Course"]
Stamps = ["GGA", "GLL", "GSA", "GSV", "MSS", "RMC", "VTG", "ZDA", "SRF150", "SRF151", "SRF152", "SRF154", "SRFTXT",
          "Other"]
Starts = ["Snap Start", "Hot Start", "Warm Start (Init)", "Warm Start (No Init)", "Cold Start", "Factory Reset"]
Place = ["ECEF X [m]", "ECEF Y [m]", "ECEF Z [m]", "Clock Offset [Hz]", "Time of Week [s]", "Week Number", "Channels"]


def reports(title):
    return [f"{title} {number}" for number in range(1, 5)]


# Template, caption, path in the menu, and the names of its elements by role.
Dialogs = [
    (Id.DIALOG_ABOUT, "About Toravane", ["About"], {"button": ["OK"]}),
    (Id.DIALOG_COMMUNICATION, "Communication", ["Com"], {
        "combobox": ["Comm Port", "Baudrate"], "status": ["Protocol", "Statistics"], "group": ["Log File"],
        "button": ["Find Port & Baud", "Open", "Find Baud", "Close", "Open", "Close", "OK"]}),
    (Id.DIALOG_NMEA_SET_SERIAL_PORT, "Set Serial Port", ["NMEA", "Set Serial Port (Switch to SiRF)"], {
        "combobox": ["Baudrate", "Protocol"], "status": ["NmeaTime", "SirfTime"], "textbox": ["Receiver messages"],
        "button": ["Set", "=Baud", "Help", "Close"]}),
    (Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION, "Navigation Initialization", ["NMEA", "Navigation Initialization"], {
        "textbox": [*Place, "Receiver messages"], "radio": Starts, "button": ["Set", "Close"]}),
    (Id.DIALOG_NMEA_SET_MESSAGE_RATE, "Set Message Rate", ["NMEA", "Set Message Rate"], {
        "combobox": ["Message", "Update Rate [s]"], "checkbox": ["Use Checksum"], "status": Stamps,
        "textbox": ["Receiver messages"], "button": ["Set", "Close"]}),
    (Id.DIALOG_NMEA_DEVELOPMENT_DATA, "Development Data", ["NMEA", "Development Data"], {
        "textbox": ["Command", "Receiver messages"], "button": ["Set", "Close"]}),
    (Id.DIALOG_NMEA_SELECT_DATUM, "Select Datum", ["NMEA", "Select Datum"], {
        "combobox": ["Datum"], "textbox": ["Receiver messages"], "button": ["Set", "Close"]}),
    (Id.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, "Advanced Power Management", ["SiRF", "Advanced Power Management"], {
        "checkbox": ["APM Enabled"], "button": Commands, "group": ["Measured"],
        "status": ["On-Time [ms]", "Off-Time [ms]", "UTC"],
        "textbox": ["APM Cycles Before Sleep", "Time Between Fixes [s]", "Max Response Time [s]",
                    "Power Duty Cycle [%]"],
        "combobox": ["Max Horizontal Error [m]", "Max Vertical Error [m]", "Accuracy Priority", "Timing Priority"]}),
    (Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source", ["SiRF", "Initialize Data Source"], {
        "textbox": Place, "radio": [*Starts, "System Reset"], "checkbox": ["NavLib", "Debug", "Clear"],
        "group": ["Messages", "User Ram"], "button": Commands}),
    (Id.DIALOG_SIRF_SWITCH_TO_NMEA, "Switch to NMEA Protocol", ["SiRF", "Switch to NMEA Protocol"], {
        "combobox": ["GGA", "GLL", "GSA", "GSV", "RMC", "VTG", "MSS", "User 8", "ZDA", "User 10", "Baudrate"],
        "group": ["Update Rate [s]"], "checkbox": ["Use Checksums", "Debug Messages"],
        "status": ["SirfTime", "NmeaTime"], "button": ["Set", "=Baud", "Help", "Close"]}),
    (Id.DIALOG_SIRF_DGPS_SOURCE, "DGPS Source", ["SiRF", "DGPS Source"], {
        "combobox": ["DGPS Source"], "textbox": ["Internal Beacon Frequency [Hz]", "Internal Beacon Bit Rate [bps]"],
        "group": ["MID 27 DGPS Status", "MID 29 Nav.Lib. Differential GPS Data"], "button": Commands,
        "status": [*reports("MID 27 DGPS Status"), *reports("MID 29 Nav.Lib. Differential GPS Data")]}),
    (Id.DIALOG_SIRF_MODE_CONTROL, "Mode Control", ["SiRF", "Mode Control"], {
        "combobox": ["Degraded Mode", "Altitude Hold Mode", "Altitude Hold Source"], "checkbox": ["Track Smoothing"],
        "textbox": ["Altitude [m]", "Degraded Timeout [s]", "Dead Reckoning Timeout [s]"], "button": Commands}),
    (Id.DIALOG_SIRF_DOP_MASK, "DOP Mask", ["SiRF", "DOP Mask"], {
        "combobox": ["DOP Selection"], "textbox": ["GDOP Value", "PDOP Value", "HDOP Value"], "button": Commands}),
    (Id.DIALOG_SIRF_DGPS_MODE, "DGPS Mode", ["SiRF", "DGPS Mode"], {
        "combobox": ["DGPS Selection"], "textbox": ["DGPS Time Out [s]"], "button": Commands}),
    (Id.DIALOG_SIRF_ELEVATION_MASK, "Elevation Mask", ["SiRF", "Elevation Mask"], {
        "textbox": ["Tracking Mask [°]", "Navigation Mask [°]"], "button": Commands}),
    (Id.DIALOG_SIRF_POWER_MASK, "Power Mask", ["SiRF", "Power Mask"], {
        "textbox": ["Tracking Mask [dB-Hz]", "Navigation Mask [dB-Hz]"], "button": Commands}),
    (Id.DIALOG_SIRF_STATIC_NAVIGATION, "Static Navigation", ["SiRF", "Static Navigation"], {
        "checkbox": ["Static Navigation"], "button": Commands}),
    (Id.DIALOG_SIRF_TRICKLE_POWER, "Trickle Power", ["SiRF", "Trickle Power"], {
        "checkbox": ["Push-to-Fix Mode"], "textbox": ["Duty Cycle [%]", "On-Time [ms]"], "group": ["Measured"],
        "status": ["On-Time [ms]", "Off-Time [ms]", "UTC"], "button": Commands}),
    (Id.DIALOG_SIRF_SET_MESSAGE_RATE, "Set Message Rate", ["SiRF", "Set Message Rate"], {
        "combobox": ["MID", "Update Rate [s]"], "group": ["Last arrivals"],
        "status": [f"Last arrivals {number}" for number in range(1, 14)], "button": ["Set", "Close"]}),
    (Id.DIALOG_SIRF_LOW_POWER, "Low Power", ["SiRF", "Low Power"], {
        "textbox": ["Max Off Time [ms]", "Max Acq. Search Time [ms]", "Push-to-Fix Period [s]"],
        "checkbox": ["Adaptive TricklePower"], "button": Commands}),
    (Id.DIALOG_SIRF_SBAS, "SBAS", ["SiRF", "SBAS"], {
        "combobox": ["SBAS PRN", "SBAS Mode", "Timeout"], "button": Commands,
        "status": ["SV", "C/No", "State", "Azimuth", "Elevation", "Visibles", "Azimuth", "Elevation"]}),
    (Id.DIALOG_GRAPH_OPTIONS, "Graph Options", ["Graph"], {
        "textbox": [f"{channel} {field}" for channel in Channels
                    for field in ("Zero", "Value Min", "Value Max", "Pixel Min", "Pixel Max")],
        "checkbox": [*(f"{channel} Visible" for channel in Channels), "Lines"], "combobox": ["Time scale"],
        "button": [*(f"{channel} Colour" for channel in Channels), "Help", "Zero", "Save", "Hide", "Show", "OK"]}),
    (Id.DIALOG_SIRF_POLL_SOFTWARE_VERSION, "Poll Software Version", ["SiRF", "Poll Software Version"], {
        "textbox": ["Software Version"], "button": ["Get", "Close"]}),
]
Roles = ["textbox", "combobox", "checkbox", "radio", "status", "group", "button"]
by_number = pytest.mark.parametrize("number, caption, way, names", Dialogs, ids=[number for number, *_ in Dialogs])


@pytest.fixture(scope="module")
def one_page(browser):
    tab = browser.tab()
    yield tab
    tab.close()


@pytest.fixture
def shared(one_page, server):
    """One page for all tests that do not change it; started again after a test that did."""
    one_page.size(1000, 760)
    if not one_page.run("!!self.toravane && !document.querySelector('dialog')"):
        one_page.visit(server.address)
        wait_streaming(one_page)
    return one_page


def found_in(dialog, role):
    """Names of that role inside the dialog."""
    return [element.name for element in dialog.tab.find_all(role)
            if element.run("function () { return this.closest('dialog') !== null }")]


def test_every_template_is_tested():
    assert sorted(number for number, *_ in Dialogs) == sorted(templates.dialogs())


@by_number
def test_every_field_is_found_by_role_and_name(shared, number, caption, way, names):
    dialog = open_dialog(shared, caption, *way)
    for role in Roles:
        expected = names.get(role, []) + (["Close dialog"] if role == "button" else [])
        assert sorted(found_in(dialog, role)) == sorted(expected), role
    shared.screenshot(Pictures / f"dialog-{number}.png")
    close_dialog(shared, caption)
    assert shared.find("menuitem", way[0]).has_focus


@by_number
def test_no_fault_of_accessibility_and_no_text_cut_off(shared, number, caption, way, names):
    open_dialog(shared, caption, *way)
    for dark in (False, True):
        shared.dark(dark)
        assert complaints_of_axe(shared) == []
    shared.dark(False)
    assert cut_texts(shared, "dialog[open]") == []
    close_dialog(shared, caption)


@by_number
def test_controls_stand_where_the_template_has_them(shared, number, caption, way, names):
    template = templates.dialogs()[number]
    open_dialog(shared, caption, *way)
    shown = shared.run("""[...document.querySelectorAll("dialog[open] [data-control]")].map((element) => {
        const {left, top, width, height} = element.getBoundingClientRect();
        const client = element.closest(".client").getBoundingClientRect();
        const scale = client.width / parseFloat(element.closest(".client").style.width.match(/[\\d.]+(?=\\))/)[0]);
        return {id: Number(element.dataset.control), text: element.textContent, order: Number(element.dataset.window),
                place: [left - client.left, top - client.top, width, height].map((value) => value / scale)};
    })""")
    assert len(shown) == len(template["controls"])
    for control, element in zip(template["controls"], sorted(shown, key=lambda one: one["order"])):
        x, y, width, height = control["place"]
        assert element["id"] & 0xFFFF == control["id"]
        if control["class"] == "Button":
            assert element["text"] == control["text"].replace("&&", "&")
        wanted = [x * 1.5, y * 1.625, width * 1.5]
        assert all(abs(is_ - should) < 1.1 for is_, should in zip(element["place"], wanted)), control
        if control["class"] != "ComboBox":
            assert abs(element["place"][3] - height * 1.625) < 1.1, control
    order = shared.run("[...document.querySelectorAll('dialog[open] [data-control]')].map(e => +e.dataset.window)")
    assert order == sorted(order)  # the Tab key follows the template's order
    close_dialog(shared, caption)


@by_number
def test_narrow_screen(shared, number, caption, way, names):
    tab = shared
    tab.size(360, 640)
    dialog = open_dialog(tab, caption, *way)
    left, right = dialog.run("function () { const r = this.getBoundingClientRect(); return [r.left, r.right] }")
    assert left == 0 and right == 360
    assert tab.run("document.scrollingElement.scrollWidth") == 360
    assert dialog.run("function () { return this.scrollWidth <= this.clientWidth }")
    assert cut_texts(tab, "dialog[open]") == []
    tab.screenshot(Pictures / f"narrow-{number}.png")
    close_dialog(tab, caption)
    tab.size(1000, 760)


# ---- Page -------------------------------------------------------------------------------------------

@pytest.mark.parametrize("width, height, scale, dark", [
    (1000, 760, 1, False), (1000, 760, 1, True), (500, 380, 2, False), (360, 640, 3, False), (320, 480, 2, True)])
def test_page_in_every_size(new_tab, server, width, height, scale, dark):
    """500 x 380 at scale 2 is a screen of 1000 x 760 enlarged to 200 %."""
    tab = new_tab(width, height)
    tab.size(width, height, scale)
    tab.dark(dark)
    tab.visit(server.address)
    wait_streaming(tab)
    assert complaints_of_axe(tab) == []
    assert cut_texts(tab, "body") == []
    assert tab.run("document.scrollingElement.scrollWidth") == width
    tab.screenshot(Pictures / f"page-{width}x{height}-{'dark' if dark else 'light'}.png")
    tab.key("ArrowRight")
    chart = tab.find("image", "Chart")
    assert chart.run("function () { return this.getBoundingClientRect().right }") <= width
    assert complaints_of_axe(tab) == []


def test_enlarged_dialog_can_be_reached_whole(new_tab, server):
    tab = new_tab(500, 380)
    tab.size(500, 380, 2)
    tab.visit(server.address)
    wait_streaming(tab)
    open_dialog(tab, "Power Mask", "SiRF", "Power Mask")
    close_dialog(tab, "Power Mask")
    open_dialog(tab, "Graph Options", "Graph")
    tab.screenshot(Pictures / "enlarged-graph-options.png")
    tab.find("button", "Help").click()
    tab.find("alertdialog", "Graph")


# ---- Boxes, keys and focus -----------------------------------------------------------------------------

def test_message_box(tab):
    open_dialog(tab, "Set Message Rate", "NMEA", "Set Message Rate")
    tab.find("button", "Set").click()
    box = tab.find("alertdialog", "Message")
    assert box.description == "Select a message."
    assert tab.find("button", "OK").has_focus
    assert complaints_of_axe(tab) == []
    tab.screenshot(Pictures / "message-box.png")
    assert tab.find_all("combobox", "Message") == []  # elements below cannot be reached
    tab.key("Escape")
    wait_gone(tab, "alertdialog", "Message")
    assert tab.find("button", "Set").has_focus
    tab.key("Enter")
    tab.find("alertdialog", "Message")
    tab.key("Enter")
    wait_gone(tab, "alertdialog", "Message")
    close_dialog(tab, "Set Message Rate")


def test_tab_goes_through_the_fields_and_escape_closes(tab):
    tab.find("menuitem", "SiRF").focus()
    for key in ("ArrowDown", "e", "Enter"):
        tab.key(key)
    tab.find("dialog", "Elevation Mask")
    reached = []
    for _ in range(6):
        reached.append(tab.run("document.activeElement.labels?.[0]?.textContent || document.activeElement.ariaLabel ||"
                               " document.activeElement.textContent"))
        tab.key("Tab")
    assert reached == ["Tracking Mask [°]", "Navigation Mask [°]", "Get", "Set", "Close", "Close dialog"]
    tab.key("Escape")
    wait_gone(tab, "dialog", "Elevation Mask")
    assert tab.find("menuitem", "SiRF").has_focus
    assert tab.complaints == []


def test_enter_sends_and_closes_where_that_would_restart_the_receiver(tab):
    open_dialog(tab, "Set Message Rate", "NMEA", "Set Message Rate")
    tab.find("checkbox", "Use Checksum").focus()
    tab.key("Enter")
    tab.find("alertdialog", "Message")  # nothing is chosen yet
    tab.key("Enter")
    wait_gone(tab, "alertdialog", "Message")
    close_dialog(tab, "Set Message Rate")
    open_dialog(tab, "Initialize Data Source", "SiRF", "Initialize Data Source")
    tab.find("textbox", "Channels").focus()
    tab.key("Enter")
    wait_gone(tab, "dialog", "Initialize Data Source")


def test_three_states_of_a_box(tab):
    open_dialog(tab, "Static Navigation", "SiRF", "Static Navigation")
    states = []
    for _ in range(3):
        box = tab.find("checkbox", "Static Navigation")
        states.append(box.properties["checked"])
        box.click()
        time.sleep(0.1)
    assert sorted(states) == ["false", "mixed", "true"]
    assert tab.find("checkbox", "Static Navigation").properties["checked"] == states[0]
    close_dialog(tab, "Static Navigation")


def test_sky_is_described(tab):
    open_dialog(tab, "SBAS", "SiRF", "SBAS")
    tab.find("image", "Sky")
    tab.wait("satellites stand there", "/satellite \\d+ elevation -?\\d+ azimuth \\d+/.test(sky())".replace(
        "sky()", "document.getElementById('sky-values').textContent"))
    assert "azimuth" in tab.find("image", "Sky").description
    tab.screenshot(Pictures / "sky.png")


def test_colour_is_picked(tab):
    open_dialog(tab, "Graph Options", "Graph")
    button = tab.find("button", "HDOP Colour")
    before = button.run("function () { return getComputedStyle(this).backgroundColor }")
    button.run("""function () {
        const picker = this.querySelector("input");
        picker.value = "#336699";
        picker.dispatchEvent(new Event("change", {bubbles: true}));
    }""")
    end = time.monotonic() + 5
    while (now := button.run("function () { return getComputedStyle(this).backgroundColor }")) == before:
        assert time.monotonic() < end, "the colour stays"
        time.sleep(0.05)
    assert now == "rgb(51, 102, 153)"


def test_dialog_is_filled_while_the_receiver_streams(tab):
    choose(tab, "NMEA", "Set Message Rate")
    tab.find("dialog", "Set Message Rate")
    tab.wait("a GGA has come", rf"""/^\d\d:\d\d:\d\d$/.test(
        document.querySelector('[data-control="{Id.CONTROL_STAMP_GGA}"]').textContent)""")
    close_dialog(tab, "Set Message Rate")
    wait_clock(tab)
