# SPDX-License-Identifier: MIT
"""The common part of the desktop tests: the receiver's side of the line, and the user's view and actions."""

import os
import pty
import re
import select
import subprocess
import sys
import termios
import threading
import time
import tty
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools" / "desktop"))

import desktop
import driver as raw
from prefix import SettingsKey

# Tests that run at the same time need separate Wine prefixes.
Output = desktop.Build / os.environ.get("TORAVANE_TEST_FOLDER", "desktop-tests") / os.environ.get("PYTEST_XDIST_WORKER", "")
Settings = SettingsKey.split("\\", 1)[1]  # below the root
Port = 3

DialogClass = "#32770"
VK_RETURN, VK_ESCAPE, VK_LEFT, VK_UP, VK_RIGHT, VK_DOWN, VK_F10 = 0x0D, 0x1B, 0x25, 0x26, 0x27, 0x28, 0x79


def wait_for(what, condition, seconds=30):
    """Waits until the condition is true and returns its value; fails the test after the time-out."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        assert time.monotonic() < end, f"did not happen within {seconds} s: {what}"
        time.sleep(0.02)


def sentence(body):
    """A sentence as it is sent over the line."""
    checksum = 0
    for character in body:
        checksum ^= ord(character)
    return f"${body}*{checksum:02X}\r\n".encode()


def frame(payload):
    """A SiRF binary message as it is sent over the line."""
    checksum = sum(payload) & 0x7FFF
    return b"\xA0\xA2" + len(payload).to_bytes(2, "big") + payload + checksum.to_bytes(2, "big") + b"\xB0\xB3"


# ---- The receiver's side ------------------------------------------------------------------------------

class Line:
    """A serial line whose far end the test controls: it keeps every byte that the program sends, and sends only the
    given bytes."""

    def __init__(self):
        self.far, self.near = pty.openpty()  # the near end stays open here: closing a port must not hang up the line
        tty.setraw(self.near)
        self.hang_up()
        os.set_blocking(self.far, False)
        self.device = os.ttyname(self.near)
        self.received = bytearray()
        self.sent = 0  # bytes
        self._open = True
        self._listener = threading.Thread(target=self._listen)
        self._listener.start()

    def hang_up(self):
        """Sets a rate that the program never sets, to detect when the program opens the port."""
        settings = termios.tcgetattr(self.near)
        settings[4] = settings[5] = termios.B300
        termios.tcsetattr(self.near, termios.TCSANOW, settings)

    def rate(self):
        """The rate that the program has set, in bits per second; 300 since the last hang-up."""
        code = termios.tcgetattr(self.near)[5]
        return next(rate for rate in (300, *desktop.Rates) if getattr(termios, f"B{rate}") == code)

    def _listen(self):
        while self._open:
            if select.select([self.far], [], [], 0.05)[0]:
                self.received += os.read(self.far, 4096)

    def send(self, data, rate=None):
        """Sends bytes, all at once or with the speed of a line at this rate."""
        start = time.monotonic()
        sent = 0
        while sent < len(data) and self._open:
            due = len(data) if rate is None else int((time.monotonic() - start) * rate / 10) + 1
            try:
                count = os.write(self.far, data[sent:due])
            except BlockingIOError:
                count = 0  # the program is too slow
            sent += count
            self.sent += count
            if sent < len(data):
                time.sleep(0.005)

    def stream(self, data, rate):
        """Sends the same bytes again and again, without a pause, until the line is closed."""
        ten_seconds = data * (rate // len(data) + 1)

        def repeat():
            while self._open:
                self.send(ten_seconds, rate)
        self._streamer = threading.Thread(target=repeat)
        self._streamer.start()

    def close(self):
        self._open = False
        self._listener.join()
        if hasattr(self, "_streamer"):
            self._streamer.join()
        os.close(self.near)
        os.close(self.far)


# ---- The user's side ----------------------------------------------------------------------------------

class Dialog:
    """A dialog or a message box on the screen. Its controls are named by number, its buttons also by text."""

    def __init__(self, user, window):
        self.user = user
        self.window = window["window"]
        self.caption = window["text"]

    def controls(self, kind=None):
        """The current state of all controls, or of those of one window class, from first to last."""
        return [c for c in self.user.driver.controls(self.window) if kind in (None, c["class"])]

    def control(self, number):
        return next(c for c in self.controls() if c["id"] == number)

    @property
    def texts(self):
        """The texts in it."""
        return [c["text"] for c in self.controls("Static") if c["text"]]

    @property
    def buttons(self):
        return [c["text"].replace("&", "") for c in self.controls("Button")]

    def text(self, number):
        return self.control(number)["text"]

    def enter(self, number, text):
        self.user.driver.set_text(self.control(number)["window"], text)

    def items(self, number):
        """The texts of a list and the selected one, or None."""
        items, selection = self.user.driver.items(self.control(number)["window"])
        return items, items[selection] if selection >= 0 else None

    def pick(self, number, text):
        """Selects an item of a list."""
        self.user.driver.select(self.control(number)["window"], self.items(number)[0].index(text))

    def press(self, button):
        """Presses a button, given by its number or its text."""
        found = next(c for c in self.controls("Button") if button in (c["id"], c["text"].replace("&", "")))
        self.user.driver.click(found["window"])

    def dismiss(self, button):
        """Presses a button that makes the dialog disappear."""
        self.press(button)
        self.wait_gone()

    def close(self):
        """Presses the cross in its caption."""
        self.user.driver.post(self.window, raw.WM_SYSCOMMAND, raw.SC_CLOSE)
        self.wait_gone()

    def wait_gone(self):
        wait_for(f"'{self.caption}' disappears",
                 lambda: all(w["window"] != self.window for w in self.user.driver.windows()))


class Program:
    """A running copy of the program."""

    def __init__(self, user, arguments, environment, file):
        self.user = user
        self.process = user.wine.start(file, *arguments, environment=environment,
                                       stdin=subprocess.DEVNULL)

    def running(self):
        return self.process.poll() is None

    def wait_end(self, seconds=30):
        """The exit code of a program that is about to end."""
        wait_for("the program ends", lambda: not self.running(), seconds)
        return self.process.returncode


class User:
    """A user with a separate desktop, who starts and operates the program. `fonts`: font files beside the system's."""

    def __init__(self, program=desktop.Program, fonts=()):
        self.program = program
        self.display = desktop.MemoryDisplay()
        try:
            self.wine = desktop.Wine(Output / "wine", self.display.name, home=Output / "home", fonts=fonts)
            self.driver = raw.Driver(self.wine)
        except BaseException:
            self.display.close()
            raise
        self.programs = []
        self.receivers = []
        self.lines = []

    def leave(self):
        try:
            self.driver.close()
        finally:
            self.wine.close()
            self.display.close()

    def tidy(self):
        """Ends programs that a test has left, and forgets the settings."""
        for program in self.programs:
            desktop.stop(program.process)
        for receiver in self.receivers:
            desktop.stop(receiver)
        for line in self.lines:
            line.close()
        for left in (self.programs, self.receivers, self.lines):
            left.clear()
        self.driver.delete_key(Settings)

    # -- what is there before the program starts

    def connect(self):
        """A line to the program's COM3."""
        line = Line()
        self.lines.append(line)
        self.wine.map_port(Port, line.device)
        return line

    def pull_out(self, line):
        """Ends a line. Its port leads nowhere first: the system may give the terminal's number to another test at once."""
        for port in (self.wine.prefix / "dosdevices").iterdir():
            if port.is_symlink() and os.readlink(port) == line.device:
                port.unlink()
                port.symlink_to("/dev/pulled-out")
        line.close()
        self.lines.remove(line)

    def connect_receiver(self, rate, *options):
        """The software receiver on the program's COM3; the bytes that the program sends go into a file."""
        Output.mkdir(parents=True, exist_ok=True)
        record = Output / "sent-by-the-program"
        receiver, terminal = desktop.start_software_receiver("--rate", rate, "--record", record, *options)
        self.receivers.append(receiver)
        self.wine.map_port(Port, terminal)
        return record

    def store(self, **values):
        for name, value in values.items():
            self.driver.set_value(Settings, name, value)

    def stored(self, name):
        """A stored number, or None."""
        return self.driver.get_value(Settings, name)

    # -- the program and its windows

    def start(self, *arguments, environment=None, file=None):
        program = Program(self, arguments, environment, file or self.program)
        self.programs.append(program)
        return program

    def start_handheld(self, name):
        """The program on a hand-held device's screen, in the upper left corner of the display."""
        return self.start(environment=desktop.handheld_environment(name), file=desktop.HandheldProgram)

    def start_connected(self, rate=4800, environment=None):
        """Starts the program on an open line, before the receiver's first sentence."""
        line = self.connect()
        self.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(rate))
        program = self.start(environment=environment)
        wait_for("the program sets the line's rate", lambda: line.rate() == rate)
        self.main_window()
        return program, line

    def main_window(self):
        return wait_for("the main window appears", self.driver.main_window)

    def dialog(self, caption):
        """The dialog or box with this caption, as soon as it is complete on the screen."""
        window = wait_for(f"'{caption}' appears", lambda: next(
            (w for w in self.driver.windows() if w["class"] == DialogClass and w["text"] == caption), None))
        return Dialog(self, window)

    def dialogs(self):
        """The captions of all dialogs and boxes on the screen."""
        return [w["text"] for w in self.driver.windows() if w["class"] == DialogClass]

    def choose(self, item):
        """Chooses an item of the program's menu, by number."""
        self.driver.post(self.main_window()["window"], raw.WM_COMMAND, item)

    def press(self, *keys):
        """Presses keys on the keyboard; they go to the window in front."""
        for key in keys:
            self.driver.key(key)

    def close(self):
        self.driver.post(self.main_window()["window"], raw.WM_CLOSE)

    def minimise(self):
        self.driver.post(self.main_window()["window"], raw.WM_SYSCOMMAND, raw.SC_MINIMIZE)

    def page(self):
        """The 19 lines on the screen, without trailing blanks."""
        return self.driver.page(self.main_window()["window"])

    def wait_page(self, expected):
        """Waits until the page is as expected; shows the lines that are not."""
        last = []

        def matches():
            last[:] = self.page()
            return last == expected
        try:
            wait_for("the page is as expected", matches, 8)
        except AssertionError:
            assert last == expected
            raise

    def screenshot(self, name):
        file = Output / (re.sub(r"[^\w.-]+", "_", name) + ".png")
        desktop.save_screenshot(self.display.name, file)
        return file

    def picture(self):
        """The picture in the main window's client area, pixel by pixel."""
        from PIL import ImageGrab
        return ImageGrab.grab(bbox=self.main_window()["client"], xdisplay=self.display.name).convert("RGB")

    def screen(self, name):
        """The picture on the screen of a hand-held device."""
        from PIL import ImageGrab
        return ImageGrab.grab(bbox=(0, 0, *desktop.Handhelds[name][1]), xdisplay=self.display.name).convert("RGB")

    def pixel(self, x, y):
        """The colour of a point on the screen, as (red, green, blue)."""
        from PIL import ImageGrab
        return ImageGrab.grab(bbox=(x, y, x + 1, y + 1), xdisplay=self.display.name).convert("RGB").getpixel((0, 0))
