# SPDX-License-Identifier: MIT
"""Real receivers, through serial ports whose other end the test controls: found, kept, refused and lost ports."""

import os
import re
import time

import pytest
from conftest import wait_streaming
from harness import Line, desktop, sentence
from resource_ids import Id
from serial_bridge import Bridge
from steps import Logs, Pictures, choose, close_dialog, drop, open_dialog, wait_clock

Usb = {"usbVendorId": 0x067B, "usbProductId": 0x2303}
BuiltIn = {}


@pytest.fixture
def receiver(tmp_path):
    """Starts software receivers; returns the terminal and the file with the bytes that the page has sent."""
    started = []

    def start(*options):
        record = tmp_path / f"sent-{len(started)}"
        process, terminal = desktop.start_software_receiver("--start", "hot", "--record", record, *options)
        started.append(process)
        return terminal, record
    yield start
    for process in started:
        desktop.stop(process)


@pytest.fixture
def visit(new_tab, server):
    """Visits the page with serial ports that are connected to terminals, in the given order; None: not connected."""
    bridges = []

    def begin(*devices, chosen=0, hidden=(), infos=None, stored=None):
        tab = new_tab()
        bridges.append(Bridge(tab, infos or [Usb] * len(devices), dict(enumerate(devices)).get, chosen, hidden))
        tab.visit(server.address + "icon.svg")
        for name, value in (stored or {}).items():
            tab.run(f"localStorage.setItem('{name}', '{value}')")
        tab.visit(server.address)
        tab.bridge = bridges[-1]
        return tab
    yield begin
    for bridge in bridges:
        bridge.close()


def status(tab):
    return tab.find("status", "Receiver").text


def wait_status(tab, pattern, seconds=30):
    end = time.monotonic() + seconds
    while not re.search(pattern, status(tab)):
        assert time.monotonic() < end, f"{status(tab)!r} is not {pattern!r}; complaints: {tab.complaints}"
        time.sleep(0.05)


def ports_listed(tab):
    open_dialog(tab, "Communication", "Com")
    entries = tab.find("combobox", "Comm Port").run("function () { return [...this.options].map(o => o.textContent) }")
    close_dialog(tab, "Communication")
    return entries


@pytest.mark.parametrize("protocol, rate", [("nmea", 4800), ("sirf", 57600)])
def test_connecting_searches_the_rate(visit, receiver, protocol, rate):
    terminal, _ = receiver("--rate", rate, "--protocol", protocol)
    tab = visit(terminal, hidden=[0])
    wait_streaming(tab)
    assert ports_listed(tab) == ["Receiver in this page"]
    tab.find("button", "Connect a receiver").click()
    wait_status(tab, r"^Searching on USB 067b:2303: listening at \d+ baud\.$")
    name = {"nmea": "NMEA", "sirf": "SiRF"}[protocol]
    wait_status(tab, rf"^USB 067b:2303: {name}, {rate} baud\. The search found it\.$")
    tab.wait("its data stand on the page", "/^ UTC: \\d{4}-/.test(document.querySelector('.line').textContent)")
    wait_clock(tab)
    assert ports_listed(tab) == ["Receiver in this page", "USB 067b:2303"]
    assert tab.find_all("alert") == []
    tab.screenshot(Pictures / f"connected-{protocol}.png")


def test_cancelled_chooser_needs_no_sentence(visit):
    tab = visit(None, chosen=-1, hidden=[0])
    wait_streaming(tab)
    before = status(tab)
    tab.find("button", "Connect a receiver").click()
    wait_clock(tab)
    assert tab.find_all("alert") == [] and status(tab) == before


def test_nothing_heard(visit):
    line = Line()
    try:
        tab = visit(line.device, hidden=[0])
        wait_streaming(tab)
        tab.find("button", "Connect a receiver").click()
        heard = tab.find("alert", "", 60).text
        assert heard.startswith("No receiver was heard on USB 067b:2303 at any rate. Is it switched on")
        wait_status(tab, "^The receiver in this page streams: NMEA")
    finally:
        line.close()


def test_port_that_is_held(visit):
    tab = visit(None, hidden=[0])
    wait_streaming(tab)
    tab.find("button", "Connect a receiver").click()
    assert re.search("USB 067b:2303 cannot be opened: another program or page holds it, or this user may not use it",
                     tab.find("alert", "").text)


def test_saved_port_is_opened_at_the_next_visit(visit, receiver):
    terminal, record = receiver("--rate", 9600)
    tab = visit(terminal, stored={"CommPortIdx": 1, "BaudrateIdx": desktop.Rates.index(9600),
                                  "Ports": '{"1":"USB 067b:2303"}'})
    wait_status(tab, "^USB 067b:2303: NMEA, 9600 baud")
    wait_clock(tab)
    assert record.read_bytes().count(b"$PSRF101,0,0,0,0,0,0,12,1*15\r\n") == 1  # the unattended hot start


def test_saved_port_that_is_not_there_gives_way_to_the_receiver_in_the_page(visit):
    tab = visit(stored={"CommPortIdx": 1, "BaudrateIdx": 3, "Ports": '{"1":"USB 067b:2303"}'})
    wait_streaming(tab)
    assert status(tab).startswith("The receiver in this page streams")
    assert tab.find_all("alertdialog") == []


def test_ports_keep_their_numbers(visit, receiver):
    terminal, _ = receiver("--rate", 4800)
    tab = visit(None, terminal, infos=[BuiltIn, Usb], stored={"Ports": '{"4":"USB 067b:2303"}'})
    wait_streaming(tab)
    assert ports_listed(tab) == ["Receiver in this page", "Serial port 1", "USB 067b:2303"]
    tab.run("serialDouble.chosen = 1")
    tab.find("button", "Connect a receiver").click()
    wait_status(tab, "The search found it")
    tab.wait("the port is stored", "localStorage.getItem('CommPortIdx') === '4'")


def test_device_that_is_pulled_out_and_comes_back(visit, receiver):
    terminal, _ = receiver("--rate", 4800)
    tab = visit(terminal, stored={"CommPortIdx": 1, "BaudrateIdx": 2, "Ports": '{"1":"USB 067b:2303"}'})
    wait_status(tab, "NMEA, 4800 baud")
    tab.run("serialDouble.pullOut(0)")
    assert "was pulled out. Plug it in again" in tab.find("alert", "").text
    wait_status(tab, "^USB 067b:2303 was pulled out")
    for box in tab.find_all("alertdialog"):
        tab.key("Escape")
    choose(tab, "Com")
    tab.find("dialog", "Communication")
    tab.key("Escape")
    tab.find("button", "Connect a receiver").click()
    wait_status(tab, "The search found it")
    wait_clock(tab)


def test_rate_of_the_receiver_is_changed(visit, receiver):
    """The program follows with its own port; for this the browser's port is closed and opened again."""
    terminal, record = receiver("--rate", 4800)
    tab = visit(terminal, stored={"CommPortIdx": 1, "BaudrateIdx": 2, "Ports": '{"1":"USB 067b:2303"}'})
    wait_status(tab, "NMEA, 4800 baud")
    for _ in range(3):  # after the first sentence the receiver restarts, and then ignores its input for a second
        wait_clock(tab)
    open_dialog(tab, "Set Serial Port", "NMEA", "Set Serial Port (Switch to SiRF)")
    tab.find("combobox", "Baudrate").fill("38400")
    tab.find("combobox", "Protocol").choose("SiRF")
    tab.find("button", "Set").click()
    end = time.monotonic() + 10
    while b"$PSRF100,0,38400,8,1,0*3C\r\n" not in record.read_bytes():
        assert time.monotonic() < end, "the command does not arrive"
        time.sleep(0.05)
    time.sleep(1)  # the receiver's change of rate
    tab.find("button", "=Baud").click()
    tab.wait("SiRF binary arrives",
             f"document.querySelector('[data-control=\"{Id.CONTROL_SIRF_TIME}\"]').textContent !== ''")
    close_dialog(tab, "Set Serial Port")
    wait_status(tab, "SiRF, 38400 baud")


def test_log_gives_way_to_a_receiver(visit, receiver):
    terminal, _ = receiver("--rate", 4800)
    tab = visit(terminal, hidden=[0])
    wait_streaming(tab)
    drop(tab, Logs / "walk-south-west.txt")
    wait_status(tab, "The log walk-south-west.txt is played")
    tab.find("button", "Connect a receiver").click()
    wait_status(tab, "The search found it")


def test_broken_bytes_do_not_end_the_stream(visit):
    line = Line()
    try:
        tab = visit(line.device, stored={"CommPortIdx": 1, "BaudrateIdx": 7, "Ports": '{"1":"USB 067b:2303"}'})
        end = time.monotonic() + 15
        while line.rate() != 115200:
            assert time.monotonic() < end, "the port is not opened"
            time.sleep(0.05)
        time.sleep(0.3)
        line.send(os.urandom(2000).replace(b"$", b"") + b"\r\n" + sentence("GPVTG,231.8,T,,M,10.0,N,18.5,K,D"))
        tab.wait("the sentence is shown",
                 "[...document.querySelectorAll('.line')].some(l => l.textContent.trimEnd() === ' Course: 231.80 °')")
    finally:
        line.close()


# ---- Browsers and places without serial ports ---------------------------------------------------------------

def test_browser_without_serial_ports(new_tab, server):
    tab = new_tab()
    tab.before_load("delete Navigator.prototype.serial")
    tab.visit(server.address)
    wait_streaming(tab)
    tab.find("button", "Connect a receiver").click()
    assert "This browser cannot reach serial ports. Open the page in" in tab.find("alert", "").text
    tab.find("button", "Dismiss").click()
    assert tab.find_all("alert") == []


def test_place_that_is_not_secure(new_tab, server):
    tab = new_tab()
    tab.before_load("delete Navigator.prototype.serial; Object.defineProperty(self, 'isSecureContext', {value: false})")
    tab.visit(server.address)
    wait_streaming(tab)
    tab.find("button", "Connect a receiver").click()
    assert "did not come over a secure connection" in tab.find("alert", "").text


def test_page_that_the_browser_forbids_ports(visit):
    tab = visit(None, hidden=[0])
    wait_streaming(tab)
    tab.run("navigator.serial.requestPort = async () => { throw new DOMException('', 'SecurityError') }")
    tab.find("button", "Connect a receiver").click()
    assert "The browser refused to let a port be chosen" in tab.find("alert", "").text
