# SPDX-License-Identifier: MIT
"""A separate desktop for the program: a display in memory and a Wine prefix inside the build folder.

The user's display and the user's Wine prefix are never changed.
"""

import os
import subprocess
from pathlib import Path

from prefix import MemoryDisplay, Rates, Wine, display_reachable, say, stop

__all__ = ["MemoryDisplay", "Rates", "Wine", "display_reachable", "say", "stop"]  # for modules that import this one

Root = Path(__file__).resolve().parents[2]
Build = Root / "build"
Program = Build / "desktop" / "toravane.exe"
HandheldProgram = Build / "desktop" / "handheld" / "toravane.exe"  # the folder that also contains the hand-held shell
Driver = Build / "desktop" / "toravane-driver.exe"
Tools = Path(os.environ.get("TORAVANE_TOOLS", Build / "native"))  # folder of the built tools
Receiver = Tools / "toravane-receiver"

# The hand-held devices that the shell imitates: platform type, and screen in pixels.
Handhelds = {
    "pocketpc": ("PocketPC", (240, 320)),
    "smartphone": ("SmartPhone", (176, 220)),
    "smartphone-large": ("SmartPhone", (240, 320)),
}


def handheld_environment(name):
    """The environment variables that select the device for the program and the shell."""
    platform, (width, height) = Handhelds[name]
    return {"TORAVANE_PLATFORM": platform, "TORAVANE_SCREEN": f"{width}x{height}"}


def start_software_receiver(*options):
    """The receiver's process and its terminal."""
    receiver = subprocess.Popen([Receiver, *map(str, options)], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                text=True)
    terminal = receiver.stdout.readline().strip()
    if not terminal:
        raise RuntimeError("the software receiver did not start")
    return receiver, terminal


def save_screenshot(display, path, box=None):
    """The display's pixels, or those of (left, top, right, bottom), as a PNG."""
    from PIL import ImageGrab
    path.parent.mkdir(parents=True, exist_ok=True)
    ImageGrab.grab(bbox=box, xdisplay=display).save(path)
