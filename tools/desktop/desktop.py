# SPDX-License-Identifier: MIT
"""A separate desktop for the program: a display in memory and a Wine prefix inside the build folder.

The user's display and the user's Wine prefix are never changed.
"""

import functools
import os
import shutil
import subprocess
import tempfile
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

FetchSeconds = 30  # before a font is given up

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


def caption_fonts():
    """Fonts that a prefix gets besides the system's: Wine's font of symbols, without which the close button of a
    caption is the letter r. Of the package that contains it the other fonts are not wanted: dialogs would be measured
    with them, and look different from the tests'. An empty list, after a message, if it cannot be fetched."""
    font = Build / "fonts" / "marlett.ttf"
    if not font.exists():
        font.parent.mkdir(parents=True, exist_ok=True)
        with tempfile.TemporaryDirectory(dir=font.parent) as folder:
            run = functools.partial(subprocess.run, cwd=folder, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                    check=True, timeout=FetchSeconds)
            try:
                run(["apt-get", "download", "-qq", "-o", "Acquire::Retries=0", "fonts-wine"])
                run(["dpkg-deb", "-x", *Path(folder).glob("*.deb"), "."])
                shutil.move(Path(folder) / "usr/share/wine/fonts" / font.name, font)
            except (OSError, subprocess.SubprocessError):
                say("The font of caption symbols cannot be fetched: close buttons show the letter r")
                return []
    return [font]


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
