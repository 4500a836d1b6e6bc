# SPDX-License-Identifier: MIT
"""Logs that are dropped on the page or chosen: the program plays them like the replay tool."""

import json
import time

import pytest
from conftest import wait_streaming
from PIL import Image, ImageChops
from resource_ids import Id
from steps import Clock, Logs, Pictures, canvas, choose_file, drop, lines, open_dialog, replayed, wait_clock

# Recordings whose page and chart are the same with another mathematics library.
Played = ["walk-south-west.txt", "walk-south-west.srf", "cold-start.txt", "noisy-line.txt", "noisy-line.srf"]


def wait_lines(tab, expected, seconds=20):
    end = time.monotonic() + seconds
    while lines(tab) != expected and time.monotonic() < end:
        time.sleep(0.05)
    assert lines(tab) == expected


@pytest.mark.parametrize("name", Played)
def test_page_is_that_of_the_replay(tab, name):
    drop(tab, Logs / name)
    wait_lines(tab, replayed("--page", Logs / name).splitlines())
    assert name in tab.find("status", "Receiver").text
    tab.screenshot(Pictures / f"replay-{name}.png")


@pytest.mark.parametrize("name", Played)
def test_chart_is_that_of_the_replay(tab, name, tmp_path):
    drop(tab, Logs / name)
    wait_lines(tab, replayed("--page", Logs / name).splitlines())
    width, height = tab.run("[document.getElementById('chart').width, document.getElementById('chart').height]")
    replayed("--chart", tmp_path / "chart.png", "--size", f"{width}x{height}", Logs / name)
    expected = Image.open(tmp_path / "chart.png").convert("RGB")
    tab.key("ArrowRight")
    shown = canvas(tab.find("image", "Chart"))
    assert shown.size == (width, height) and len(expected.getcolors()) >= 5
    assert ImageChops.difference(shown, expected).getbbox() is None


def test_playback(tab):
    group = tab.find("group", "Playback")
    assert group.run("function () { return [...this.querySelectorAll('[type=radio]')].map("
                     "radio => radio.parentElement.textContent.trim()) }") == ["At once", "1x", "10x"]
    assert tab.find("radio", "At once").properties["checked"] == "true"
    tab.find("radio", "10x").click()
    choose_file(tab, "Open a log", Logs / "cold-start.txt")  # a minute
    tab.find("button", "Back to the receiver in this page")
    wait_streaming(tab)
    assert 1 <= time_to_play(tab, 20) < 18  # a busy machine may be late, never early
    pause = tab.find("button", "Pause")
    pause.click()
    time.sleep(0.5)
    held = tab.run(Clock)
    time.sleep(1)
    assert tab.run(Clock) == held
    tab.find("radio", "1x").click()
    tab.find("button", "Pause").click()
    wait_clock(tab)
    assert time_to_play(tab, 4) >= 2
    tab.find("button", "Back to the receiver in this page").click()
    tab.wait("the receiver is back",
             "document.getElementById('receiver').textContent.startsWith('The receiver in this page')")


def time_to_play(tab, seconds):
    """The time that the page needs for this number of seconds of the log."""
    begin, first = time.monotonic(), clock_of(tab.run(Clock))
    while clock_of(tab.run(Clock)) - first < seconds:
        assert time.monotonic() - begin < 60
        time.sleep(0.05)
    return time.monotonic() - begin


def clock_of(line):
    hours, minutes, seconds = line.split()[-1].split(":")
    return int(hours) * 3600 + int(minutes) * 60 + int(seconds)


def test_log_of_the_receiver_is_downloaded(tab):
    open_dialog(tab, "Communication", "Com")
    group = tab.find("group", "Log File")
    group.run("function () { this.querySelectorAll('button')[0].click() }")
    tab.wait("the log is open", f"!document.querySelector('[data-control=\"{Id.CONTROL_COM_LOG_CLOSE}\"]').disabled")
    time.sleep(3)
    group.run("function () { this.querySelectorAll('button')[1].click() }")
    from pathlib import Path
    end = time.monotonic() + 10
    while not (files := [f for f in Path(tab.downloads).iterdir() if f.suffix == ".txt"]):
        assert time.monotonic() < end, "nothing was downloaded"
        time.sleep(0.05)
    assert len(files[0].stem) == 12 and files[0].stem.isdigit()
    text = files[0].read_text(encoding="ascii")
    assert "$GPGGA," in text
    # The replay tool decodes the logged bytes.
    assert "Messages NMEA" in replayed("--stats", files[0])
    messages = int(replayed("--stats", files[0]).split()[2])
    assert messages >= 5


def test_settings_go_out_and_come_in(tab, tmp_path):
    from pathlib import Path
    tab.run("localStorage.setItem('NmeaIntervalIdx01', '3')")
    tab.find("button", "Export settings").click()
    file = Path(tab.downloads) / "toravane-settings.json"
    end = time.monotonic() + 10
    while not file.is_file():
        assert time.monotonic() < end
        time.sleep(0.05)
    exported = json.loads(file.read_text())
    assert exported["NmeaIntervalIdx01"] == 3
    assert all(isinstance(value, int) for value in exported.values())

    imported = tmp_path / "settings.json"
    imported.write_text(json.dumps({"NmeaIntervalIdx01": 7, "NmeaIntervalIdx02": -1}))
    choose_file(tab, "Import settings", imported)
    tab.wait("the settings are stored", "localStorage.getItem('NmeaIntervalIdx01') === '7'")
    assert tab.run("localStorage.getItem('NmeaIntervalIdx02')") == "-1"
    wait_streaming(tab)
    open_dialog(tab, "Switch to NMEA Protocol", "SiRF", "Switch to NMEA Protocol")
    assert tab.find("combobox", "GGA").text == "7"
    tab.key("Escape")

    for text in ("no settings", "[1]", '{"a": "b"}', '{"a": 4294967296}', '{"with blank": 1}', "null"):
        imported.write_text(text)
        tab.run("document.querySelector('.notice button')?.click()")
        choose_file(tab, "Import settings", imported)
        notice = tab.find("alert", "")
        assert "holds no settings of this program" in notice.text
        assert tab.run("localStorage.getItem('NmeaIntervalIdx01')") == "7"
