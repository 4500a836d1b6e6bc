# SPDX-License-Identifier: MIT
"""Makes the pictures of the manual: the real program, the software receiver, and what a user does with both."""

import sys
import time
from pathlib import Path

Root = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(Root / "tests" / "desktop"), str(Root / "tools")]

import guide_pictures
import harness
from harness import Port, VK_RIGHT, desktop, wait_for
from PIL import Image, ImageGrab

Images = desktop.Root / "docs" / "images"
MaxBytes = 600_000  # of all pictures: they are kept with the sources
ValueMin, ValueMax, Northing, Easting = 1810, 1820, 3, 4  # fields of Graph Options, and the channels in them
Colors = 64  # of a picture, which has few; the chart's lines and the blended edges of letters need that many


# ---- Pictures -----------------------------------------------------------------------------------------

def keep(picture, name):
    picture.convert("RGB").quantize(Colors, dither=Image.Dither.NONE).save(Images / f"{name}.png", optimize=True)


class Photographer(harness.User):
    def shoot(self, name, window):
        """The picture of a window, by its number, once it has stopped changing for a moment."""
        place = next(w["outer"] for w in self.driver.windows() if w["window"] == window)
        for _ in range(10):
            time.sleep(0.3)
            before, after = (ImageGrab.grab(bbox=place, xdisplay=self.display.name) for _ in range(2))
            if before.tobytes() == after.tobytes():
                break
        keep(after, name)
        print(f"{name}: {after.width} x {after.height}", flush=True)

    def shoot_main(self, name):
        self.shoot(name, self.main_window()["window"])

    def start_with_receiver(self, rate, *options):
        self.tidy()
        self.connect_receiver(rate, "--start", "hot", *options)
        self.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(rate))
        self.start()
        wait_for("a position", lambda: any(line.startswith(" Latitude") for line in self.page()), 30)

    def open(self, item, caption):
        self.choose(item)
        return self.dialog(caption)

    def shoot_dialog(self, item, caption, name, ready=lambda dialog: True):
        """Opens a dialog, waits until the receiver has filled it, and closes it again."""
        dialog = self.open(item, caption)
        wait_for(f"'{caption}' is filled", lambda: ready(dialog), 30)
        time.sleep(0.5)
        self.shoot(name, dialog.window)
        dialog.close()


def shows(number):
    """Whether a text, a list or a box has what the receiver has answered."""
    def ready(dialog):
        control = dialog.control(number)
        if control["class"] == "ComboBox":
            return dialog.items(number)[1]
        return control["checked"] != 2 if control["class"] == "Button" else control["text"]
    return ready


# ---- Scenes -------------------------------------------------------------------------------------------

def first_start(user):
    user.tidy()
    user.start()
    box = user.dialog("About Toravane")
    user.shoot("about", box.window)
    box.dismiss("OK")


def nmea_page_and_chart(user):
    # A walk of some minutes in some seconds, along the sides of a square with the start at a corner.
    user.start_with_receiver(4800, "--track", "walk", "--speed", "10")
    wait_for("corrections are used", lambda: " DGPS " in user.page()[4], 60)
    options = user.open(408, "Graph Options")
    options.press("Zero")
    for channel in (Northing, Easting):
        options.enter(ValueMin + channel, "-20")
        options.enter(ValueMax + channel, "180")
    options.dismiss("Show")
    time.sleep(45)
    user.shoot_main("chart")
    options = user.open(408, "Graph Options")
    user.shoot("graph-options", options.window)
    options.close()
    user.press(VK_RIGHT)
    wait_for("the page with corrections", lambda: " DGPS " in user.page()[4], 60)
    user.shoot_main("text-page")


def nmea_dialogs(user):
    user.start_with_receiver(4800, "--track", "walk")
    user.store(SirfBaudrateIdx=desktop.Rates.index(38400))
    dialog = user.open(403, "Communication")
    wait_for("statistics", lambda: dialog.text(1658))
    time.sleep(3)
    user.shoot("communication", dialog.window)
    dialog.close()
    user.shoot_dialog(2003, "Set Serial Port", "set-serial-port", shows(901))
    dialog = user.open(2004, "Navigation Initialization")
    dialog.press("Set")
    wait_for("the receiver's text", lambda: "Baud rate" in dialog.text(902))
    user.shoot("navigation-initialization", dialog.window)
    dialog.close()
    dialog = user.open(2005, "Set Message Rate")
    dialog.pick(1031, "ZDA")
    dialog.pick(1032, "2")
    dialog.press("Set")
    wait_for("ZDA arrives", lambda: dialog.text(10313), 30)
    wait_for("GSV arrives", lambda: dialog.text(1039), 30)
    user.shoot("nmea-set-message-rate", dialog.window)
    dialog.close()
    dialog = user.open(2007, "Development Data")
    dialog.press("Set")
    time.sleep(1)
    dialog.enter(1051, "PSRF103,99,0,1,1")
    dialog.press("Set")
    wait_for("the receiver's text", lambda: dialog.text(902))
    user.shoot("development-data", dialog.window)
    dialog.close()
    user.shoot_dialog(2008, "Select Datum", "select-datum")


SirfDialogs = [
    (2009, "Advanced Power Management", "advanced-power-management", shows(5303)),
    (2010, "Initialize Data Source", "initialize-data-source", lambda d: shows(1281)(d) and shows(12818)(d)),
    (2011, "Switch to NMEA Protocol", "switch-to-nmea-protocol", shows(1518)),
    (2012, "DGPS Source", "dgps-source", lambda d: shows(1331)(d) and shows(1338)(d)),
    (2013, "Mode Control", "mode-control", shows(1364)),
    (2014, "DOP Mask", "dop-mask", shows(1374)),
    (2015, "DGPS Mode", "dgps-mode", shows(1384)),
    (2016, "Elevation Mask", "elevation-mask", shows(1393)),
    (2017, "Power Mask", "power-mask", shows(1403)),
    (2018, "Static Navigation", "static-navigation", shows(1433)),
    (2019, "Trickle Power", "trickle-power", lambda d: shows(1514)(d) and shows(1518)(d)),
    (2020, "Set Message Rate", "sirf-set-message-rate", shows(16607)),
    (2021, "Low Power", "low-power", shows(1673)),
    (2022, "SBAS", "sbas", lambda d: shows(401)(d) and shows(1706)(d)),
    (2025, "Poll Software Version", "poll-software-version", shows(1322)),
]


def sirf_page_and_dialogs(user):
    user.start_with_receiver(57600, "--protocol", "sirf", "--track", "walk")
    wait_for("corrections are used", lambda: "DGPS" in user.page()[5], 60)
    user.shoot_main("text-page-sirf")
    for dialog in SirfDialogs:
        user.shoot_dialog(*dialog)
    dialog = user.open(2016, "Elevation Mask")
    wait_for("the answer", lambda: dialog.text(1393))
    dialog.enter(1393, "999")
    dialog.press("Set")
    box = user.dialog("Tracking Mask")
    user.shoot("box", box.window)
    box.dismiss("OK")
    dialog.close()


def main():
    harness.Output = desktop.Build / "screenshots"
    Images.mkdir(parents=True, exist_ok=True)
    for old in Images.glob("*.png"):
        old.unlink()
    user = Photographer(fonts=desktop.caption_fonts())
    try:
        for scene in (first_start, nmea_page_and_chart, nmea_dialogs, sirf_page_and_dialogs):
            scene(user)
        user.tidy()
    finally:
        user.leave()
    guide_pictures.write_record()
    size = sum(file.stat().st_size for file in Images.glob("*.png"))
    print(f"{size} bytes in all")
    return size > MaxBytes


if __name__ == "__main__":
    sys.exit(main())
