# SPDX-License-Identifier: MIT
"""Makes the pictures of the manual, with the real program and the software receiver, operated as a user would do it."""

import sys
import time
from pathlib import Path

Root = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(Root / "tests" / "desktop"), str(Root / "tools")]

import guide_pictures
import harness
from harness import Port, VK_RIGHT, desktop, wait_for
from PIL import Image, ImageGrab
from resource_ids import Id

Images = desktop.Root / "docs" / "images"
MaxBytes = 600_000  # size of all pictures together: they are stored with the sources
Northing, Easting = 3, 4  # channels of the chart
Colors = 64  # colours of a picture: enough for the chart's lines and the blended edges of letters


# ---- Pictures -----------------------------------------------------------------------------------------

def keep(picture, name):
    picture.convert("RGB").quantize(Colors, dither=Image.Dither.NONE).save(Images / f"{name}.png", optimize=True)


class Photographer(harness.User):
    def shoot(self, name, window):
        """The picture of a window, given by its number, when it no longer changes."""
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


def shows(*numbers):
    """True if each of the controls, texts, lists or boxes, shows the receiver's answer."""
    def is_filled(dialog, number):
        control = dialog.control(number)
        if control["class"] == "ComboBox":
            return dialog.items(number)[1]
        return control["checked"] != 2 if control["class"] == "Button" else control["text"]
    return lambda dialog: all(is_filled(dialog, number) for number in numbers)


# ---- Scenes -------------------------------------------------------------------------------------------

def first_start(user):
    user.tidy()
    user.start()
    box = user.dialog("About Toravane")
    user.shoot("about", box.window)
    box.dismiss("OK")


def nmea_page_and_chart(user):
    # A walk of some minutes in some seconds, along the sides of a square; it starts at a corner.
    user.start_with_receiver(4800, "--track", "walk", "--speed", "10")
    wait_for("corrections are used", lambda: " DGPS " in user.page()[4], 60)
    options = user.open(Id.COMMAND_GRAPH, "Graph Options")
    options.press("Zero")
    for channel in (Northing, Easting):
        options.enter(Id.CONTROL_GRAPH_VALUE_MIN + channel, "-20")
        options.enter(Id.CONTROL_GRAPH_VALUE_MAX + channel, "180")
    options.dismiss("Show")
    time.sleep(45)
    user.shoot_main("chart")
    options = user.open(Id.COMMAND_GRAPH, "Graph Options")
    user.shoot("graph-options", options.window)
    options.close()
    user.press(VK_RIGHT)
    wait_for("the page with corrections", lambda: " DGPS " in user.page()[4], 60)
    user.shoot_main("text-page")


def nmea_dialogs(user):
    user.start_with_receiver(4800, "--track", "walk")
    user.store(SirfBaudrateIdx=desktop.Rates.index(38400))
    dialog = user.open(Id.COMMAND_COMMUNICATION, "Communication")
    wait_for("statistics", lambda: dialog.text(Id.CONTROL_COM_STATUS))
    time.sleep(3)
    user.shoot("communication", dialog.window)
    dialog.close()
    user.shoot_dialog(Id.DIALOG_NMEA_SET_SERIAL_PORT, "Set Serial Port", "set-serial-port", shows(Id.CONTROL_NMEA_TIME))
    dialog = user.open(Id.DIALOG_NMEA_NAVIGATION_INITIALIZATION, "Navigation Initialization")
    dialog.press("Set")
    wait_for("the receiver's text", lambda: "Baud rate" in dialog.text(Id.CONTROL_NMEA_GREY_BOX))
    user.shoot("navigation-initialization", dialog.window)
    dialog.close()
    dialog = user.open(Id.DIALOG_NMEA_SET_MESSAGE_RATE, "Set Message Rate")
    dialog.pick(Id.CONTROL_NMEA_RATE_MESSAGE, "ZDA")
    dialog.pick(Id.CONTROL_NMEA_RATE_SECONDS, "2")
    dialog.press("Set")
    wait_for("ZDA arrives", lambda: dialog.text(Id.CONTROL_STAMP_ZDA), 30)
    wait_for("GSV arrives", lambda: dialog.text(Id.CONTROL_STAMP_GSV), 30)
    user.shoot("nmea-set-message-rate", dialog.window)
    dialog.close()
    dialog = user.open(Id.DIALOG_NMEA_DEVELOPMENT_DATA, "Development Data")
    dialog.press("Set")
    time.sleep(1)
    dialog.enter(Id.CONTROL_DEVELOPMENT_COMMAND, "PSRF103,99,0,1,1")
    dialog.press("Set")
    wait_for("the receiver's text", lambda: dialog.text(Id.CONTROL_NMEA_GREY_BOX))
    user.shoot("development-data", dialog.window)
    dialog.close()
    user.shoot_dialog(Id.DIALOG_NMEA_SELECT_DATUM, "Select Datum", "select-datum")


SirfDialogs = [
    (Id.DIALOG_SIRF_ADVANCED_POWER_MANAGEMENT, "Advanced Power Management", "advanced-power-management",
     shows(Id.CONTROL_APM_TIME_BETWEEN_FIXES)),
    (Id.DIALOG_SIRF_INITIALIZE_DATA_SOURCE, "Initialize Data Source", "initialize-data-source",
     shows(Id.CONTROL_INIT_ECEF_X, Id.CONTROL_INIT_NAVLIB)),
    (Id.DIALOG_SIRF_SWITCH_TO_NMEA, "Switch to NMEA Protocol", "switch-to-nmea-protocol",
     shows(Id.CONTROL_SIRF_TIME)),
    (Id.DIALOG_SIRF_DGPS_SOURCE, "DGPS Source", "dgps-source",
     shows(Id.CONTROL_DGPS_SOURCE, Id.CONTROL_DGPS_STATUS_CORRECTIONS)),
    (Id.DIALOG_SIRF_MODE_CONTROL, "Mode Control", "mode-control",
     shows(Id.CONTROL_MODE_ALTITUDE)),
    (Id.DIALOG_SIRF_DOP_MASK, "DOP Mask", "dop-mask",
     shows(Id.CONTROL_DOP_GDOP)),
    (Id.DIALOG_SIRF_DGPS_MODE, "DGPS Mode", "dgps-mode",
     shows(Id.CONTROL_DGPS_TIMEOUT)),
    (Id.DIALOG_SIRF_ELEVATION_MASK, "Elevation Mask", "elevation-mask",
     shows(Id.CONTROL_ELEVATION_TRACKING)),
    (Id.DIALOG_SIRF_POWER_MASK, "Power Mask", "power-mask",
     shows(Id.CONTROL_POWER_TRACKING)),
    (Id.DIALOG_SIRF_STATIC_NAVIGATION, "Static Navigation", "static-navigation",
     shows(Id.CONTROL_STATIC_NAVIGATION)),
    (Id.DIALOG_SIRF_TRICKLE_POWER, "Trickle Power", "trickle-power",
     shows(Id.CONTROL_TRICKLE_DUTY_CYCLE, Id.CONTROL_SIRF_TIME)),
    (Id.DIALOG_SIRF_SET_MESSAGE_RATE, "Set Message Rate", "sirf-set-message-rate",
     shows(Id.CONTROL_ARRIVAL_ROWS + 6)),
    (Id.DIALOG_SIRF_LOW_POWER, "Low Power", "low-power",
     shows(Id.CONTROL_LOW_POWER_MAX_OFF_TIME)),
    (Id.DIALOG_SIRF_SBAS, "SBAS", "sbas",
     shows(Id.CONTROL_SBAS_SV, Id.CONTROL_SBAS_VISIBLE_SVS)),
    (Id.DIALOG_SIRF_POLL_SOFTWARE_VERSION, "Poll Software Version", "poll-software-version",
     shows(Id.CONTROL_SOFTWARE_VERSION)),
]


def sirf_page_and_dialogs(user):
    user.start_with_receiver(57600, "--protocol", "sirf", "--track", "walk")
    wait_for("corrections are used", lambda: "DGPS" in user.page()[5], 60)
    user.shoot_main("text-page-sirf")
    for dialog in SirfDialogs:
        user.shoot_dialog(*dialog)
    dialog = user.open(Id.DIALOG_SIRF_ELEVATION_MASK, "Elevation Mask")
    wait_for("the answer", lambda: dialog.text(Id.CONTROL_ELEVATION_TRACKING))
    dialog.enter(Id.CONTROL_ELEVATION_TRACKING, "999")
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
