#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Photographs the page in Firefox, into build/web-tests/.

First look, five dialogs, a message box, a log, the chart; a narrow, a dark and an enlarged page.
"""

import base64
import sys
import time
from pathlib import Path

Root = Path(__file__).resolve().parents[3]
sys.path[:0] = [str(Root / "tools")]

from marionette import Firefox  # noqa: E402
from serve_page import Server  # noqa: E402

Pictures = Root / "build" / "web-tests"
Streams = "return /^ UTC: \\d{4}-/.test(document.querySelector('.line')?.textContent)"
Dialogs = [("Communication", "Com"), ("Navigation Initialization", "NMEA", "Navigation Initialization"),
           ("SBAS", "SiRF", "SBAS"), ("Graph Options", "Graph"), ("Mode Control", "SiRF", "Mode Control")]


def visit(server, name, width, height, **options):
    firefox = Firefox(**options)
    firefox.size(width, height)
    firefox.visit(server.address)
    firefox.wait("the page streams", Streams)
    time.sleep(2)
    firefox.screenshot(Pictures / f"firefox-{name}.png")
    return firefox


def main():
    server = Server()
    firefox = visit(server, "first-look", 1000, 760)
    for caption, *path in Dialogs:
        for item in path:
            firefox.find("menuitem", item).click()
        firefox.find("dialog", caption)
        time.sleep(0.5)
        firefox.screenshot(Pictures / f"firefox-{caption.replace(' ', '-').lower()}.png")
        firefox.key("\ue00c")
        firefox.wait("it is closed", "return !document.querySelector('dialog[open]')")
    for item in ("NMEA", "Set Message Rate"):
        firefox.find("menuitem", item).click()
    firefox.find("button", "Set").click()
    firefox.find("alertdialog", "Message")
    firefox.screenshot(Pictures / "firefox-message-box.png")
    firefox.key("\ue006")
    firefox.key("\ue00c")
    firefox.wait("it is closed", "return !document.querySelector('dialog[open]')")
    data = base64.b64encode((Root / "tests" / "data" / "walk-south-west.txt").read_bytes()).decode()
    firefox.run("""
        const bytes = Uint8Array.from(atob(arguments[0]), (character) => character.charCodeAt(0));
        const transfer = new DataTransfer();
        transfer.items.add(new File([bytes], "walk-south-west.txt"));
        document.body.dispatchEvent(new DragEvent("drop", {dataTransfer: transfer, bubbles: true}));""", data)
    time.sleep(4)
    firefox.screenshot(Pictures / "firefox-replay.png")
    firefox.find("button", "Back to the receiver in this page").click()
    time.sleep(2)
    firefox.find("button", "Show the chart").click()
    firefox.find("image", "Chart")
    time.sleep(6)
    firefox.screenshot(Pictures / "firefox-chart.png")
    firefox.close()
    visit(server, "narrow", 450, 800).close()  # no window of Firefox is narrower
    visit(server, "dark", 1000, 760, dark=True).close()
    visit(server, "enlarged", 500, 380, zoom=2).close()
    server.close()
    print("\n".join(sorted(str(file) for file in Pictures.glob("firefox-*.png"))))


if __name__ == "__main__":
    main()
