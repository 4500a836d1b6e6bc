# SPDX-License-Identifier: MIT
"""A separate Wine prefix for the program: the common part of the packages' launcher and of the build's launcher."""

import ctypes
import fcntl
import os
import re
import shutil
import subprocess
from pathlib import Path

SettingsKey = r"HKEY_LOCAL_MACHINE\Software\Quenmark\Toravane"
Rates = (1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200)  # the stored number is an index into this list

# Wine's settings for every prefix. An empty debugger lets a crash end the program at once, so that its exit code shows
# it; Wine must not map the port to a number of its own choice.
PrefixSettings = r"""REGEDIT4

[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Debugger"=""

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="{managed}"
"""


def say(text):
    print(text, flush=True)


def display_reachable(name):
    """True if a window can be opened on the display of that name."""
    if not name:
        return False
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XCloseDisplay.argtypes = [ctypes.c_void_p]
    display = x11.XOpenDisplay(name.encode())
    if display:
        x11.XCloseDisplay(display)
    return bool(display)


def stop(process, patience=5):
    """Ends a process that we started, gently first."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(patience)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()


class MemoryDisplay:
    """An X display without a screen, on the first free number."""

    def __init__(self, size="1024x768"):
        reader, writer = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", size + "x24", "-nolisten", "tcp"],
            pass_fds=[writer], stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True)
        os.close(writer)
        with os.fdopen(reader) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.name = ":" + number

    def close(self):
        stop(self.process)


class PrefixInUse(SystemExit):
    """Another run uses the prefix. If it is not caught, it ends the program with one line of text."""


def environment(prefix, display, home):
    """The environment for Windows programs in that prefix."""
    return {
        **os.environ,
        "WINEPREFIX": str(prefix),
        "WINEARCH": "win64",
        "WINEDEBUG": "-all",
        # No .NET, no browser, no entries in the user's desktop menus.
        "WINEDLLOVERRIDES": "mscoree,mshtml=;winemenubuilder.exe=",
        "DISPLAY": display,
        "HOME": str(home),
    }


class Wine:
    """A Wine prefix that stays up until it is closed. `home`: where the user's own files are; `fonts`: files of
    fonts besides the system's."""

    def __init__(self, prefix, display, window_manager=False, home=Path.home(), fonts=()):
        self.prefix = prefix
        self.environment = environment(prefix, display, home)
        home.mkdir(parents=True, exist_ok=True)
        prefix.parent.mkdir(parents=True, exist_ok=True)
        self.lock = open(prefix.with_suffix(".lock"), "w")
        try:
            fcntl.flock(self.lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise PrefixInUse(f"{prefix} is in use by another run") from None
        self._server("-k")  # left by a run that was killed
        complete = prefix / "complete"
        if not complete.exists():
            say(f"Creating the Wine prefix {prefix}")
            shutil.rmtree(prefix, ignore_errors=True)
            prefix.mkdir()
        self._add_fonts(fonts)
        # The server maps the machine's own ports when it starts; ours are mapped while it runs.
        self._server("-p")
        self.run("wineboot")
        complete.touch()
        settings = prefix / "settings.reg"
        settings.write_text(PrefixSettings.format(managed="Y" if window_manager else "N"))
        self.run("regedit", "/S", str(settings))

    def _add_fonts(self, fonts):
        folder = self.prefix / "drive_c" / "windows" / "Fonts"
        for font in fonts:
            folder.mkdir(parents=True, exist_ok=True)
            shutil.copy(font, folder)

    def _server(self, option):
        subprocess.run(["wineserver", option], env=self.environment, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=60)

    def run(self, *command):
        """Runs a Windows program until it ends."""
        subprocess.run(["wine", *command], env=self.environment, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True, timeout=300)

    def start(self, *command, environment=None, **options):
        """Starts a Windows program; the process is the program's own, with its exit code."""
        return subprocess.Popen(["wine", *map(str, command)], env={**self.environment, **(environment or {})},
                                **options)

    def map_port(self, number, device):
        """Maps COM<number> to a device or a terminal."""
        link = self.prefix / "dosdevices" / f"com{number}"
        link.unlink(missing_ok=True)
        link.symlink_to(device)

    def documents(self):
        """The folder of the user's documents, in which the program stores its files."""
        return next(path for path in (self.prefix / "drive_c" / "users").glob("*/Documents")
                    if path.parent.name != "Public")

    def stored(self):
        """The program's stored numbers by their names."""
        answer = subprocess.run(["wine", "reg", "query", SettingsKey], env=self.environment, stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, errors="replace",
                                timeout=300, check=False).stdout
        return {name: int(value, 16) for name, value in re.findall(r"(\w+)\s+REG_DWORD\s+0x([0-9a-fA-F]+)", answer)}

    def store(self, values):
        """Stores numbers by their names."""
        for name, value in values.items():
            self.run("reg", "add", SettingsKey, "/f", "/v", name, "/t", "REG_DWORD", "/d", str(value))

    def store_port(self, number, rate):
        """Stores the port and rate that the program opens when it starts."""
        self.store({"CommPortIdx": number, "BaudrateIdx": Rates.index(rate)})

    def close(self):
        self._server("-k")
        self._server("-w")
        self.lock.close()
