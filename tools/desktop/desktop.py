# SPDX-License-Identifier: MIT
"""A desktop of our own for the program: a display in memory and a Wine prefix inside the build folder.

Neither the user's display nor the user's Wine prefix is ever changed.
"""

import os
import subprocess
from pathlib import Path

from prefix import MemoryDisplay, Rates, Wine, display_reachable, say, stop

__all__ = ["MemoryDisplay", "Rates", "Wine", "display_reachable", "say", "stop"]  # for those who import this module

Root = Path(__file__).resolve().parents[2]
Build = Root / "build"
Program = Build / "desktop" / "toravane.exe"
HandheldProgram = Build / "desktop" / "handheld" / "toravane.exe"  # with the hand-held shell beside it
Driver = Build / "desktop" / "toravane-driver.exe"
Tools = Path(os.environ.get("TORAVANE_TOOLS", Build / "native"))  # where the tools were built
Receiver = Tools / "toravane-receiver"

# The hand-held devices that the shell stands for: platform type, and screen in pixels.
Handhelds = {
    "pocketpc": ("PocketPC", (240, 320)),
    "smartphone": ("SmartPhone", (176, 220)),
    "smartphone-large": ("SmartPhone", (240, 320)),
}


def handheld_environment(name):
    """The environment that chooses the device for the program and the shell."""
    platform, (width, height) = Handhelds[name]
    return {"TORAVANE_PLATFORM": platform, "TORAVANE_SCREEN": f"{width}x{height}"}


def start_software_receiver(*options):
    """The receiver's process and the terminal that it speaks on."""
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
