# SPDX-License-Identifier: MIT
"""The first visit: a receiver sends data, immediately and without a question."""

import re
import time

from conftest import wait_streaming
from steps import Pictures, canvas, choose, lines, wait_clock, wait_gone

Menu = ["About", "Com", "NMEA", "SiRF", "Graph", "Exit"]


def test_receiver_streams_without_a_question(tab):
    assert len(lines(tab)) == 19
    region = tab.find("region", "Text page")
    assert region.run("function () { return this.children.length }") == 19
    assert tab.find_all("dialog") == [] and tab.find_all("alertdialog") == [] and tab.find_all("alert") == []
    tab.wait("a fix", "/^ Fix: \\d+ SVs/.test(document.querySelectorAll('.line')[4].textContent)")
    wait_clock(tab)
    status = tab.find("status", "Receiver").text
    assert re.fullmatch(r"The receiver in this page streams: NMEA, \d+ baud\. "
                        r"It is software; nothing is plugged in\.", status)
    for name in ("Connect a receiver", "Open a log", "Export settings", "Import settings"):
        tab.find("button", name)
    assert tab.complaints == []
    tab.screenshot(Pictures / "first-look.png")


def test_menubar_holds_the_programs_menus(tab):
    bar = tab.find("menubar", "Program")
    assert bar.run("function () { return [...this.querySelectorAll(':scope > div > [role=menuitem]')]"
                   ".map(item => item.textContent) }") == Menu
    tab.find("menuitem", "NMEA").click()
    menu = tab.find("menu", "NMEA")
    assert menu.run("function () { return [...this.children].map(item => item.textContent) }") == [
        "Set Serial Port (Switch to SiRF)", "Navigation Initialization", "Set Message Rate", "Development Data",
        "Select Datum"]
    assert tab.find("menuitem", "NMEA").properties["expanded"] is True
    tab.key("Escape")
    wait_gone(tab, "menu", "NMEA")
    assert tab.find("menuitem", "NMEA").has_focus


def test_menubar_by_keys(tab):
    tab.key("F10")
    tab.find("menuitem", "About")
    for key in ("ArrowRight", "ArrowRight", "ArrowDown"):
        tab.key(key)
    assert tab.find("menuitem", "Set Serial Port (Switch to SiRF)").has_focus
    tab.key("ArrowUp")
    assert tab.find("menuitem", "Select Datum").has_focus
    tab.key("Home")
    tab.key("ArrowRight")
    assert tab.find("menuitem", "Advanced Power Management").has_focus
    tab.key("End")
    tab.key("s")  # moves to the next item with this first letter
    assert tab.find("menuitem", "Switch to NMEA Protocol").has_focus
    tab.key("p")
    tab.key("Enter")
    tab.find("dialog", "Power Mask")
    tab.key("Escape")
    wait_gone(tab, "dialog", "Power Mask")
    assert tab.find("menuitem", "SiRF").has_focus


def test_any_key_goes_from_page_to_chart_and_back(tab):
    tab.key("ArrowRight")
    chart = tab.find("image", "Chart")
    assert tab.find_all("region", "Text page") == []
    assert re.search(r"SVsInFix \d+", chart.description) and "HDOP" in chart.description
    assert len(canvas(chart).getcolors(1 << 20)) > 5
    tab.screenshot(Pictures / "chart.png")
    tab.key("x")
    tab.find("region", "Text page")
    tab.find("button", "Show the chart").click()  # for a finger
    tab.find("image", "Chart")
    tab.find("button", "Show the text page").click()
    tab.find("region", "Text page")


def test_chart_is_sharp_on_a_dense_screen(new_tab, server):
    for scale in (1, 2, 3, 1.5):
        tab = new_tab(1000, 700)
        tab.size(1000, 700, scale)
        tab.visit(server.address)
        wait_streaming(tab)
        tab.key("ArrowRight")
        points = tab.find("image", "Chart").run(
            "function () { return this.getBoundingClientRect().width * devicePixelRatio / this.width }")
        assert abs(points - round(points)) < 0.01 and round(points) >= 1, (scale, points)


def test_exit_closes_and_names_the_way_back(tab):
    choose(tab, "Exit")
    reload = tab.find("button", "Reload the page")
    assert tab.find("status", "Receiver").text == (
        "The program has ended, and its port is closed. Reload the page to start it again.")
    assert tab.find_all("menubar") == [] and tab.find_all("region", "Text page") == []
    assert reload.has_focus
    reload.click()
    time.sleep(0.2)
    wait_streaming(tab)
