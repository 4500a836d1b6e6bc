# SPDX-License-Identifier: MIT
"""Shows a receiver's data in the program, through Wine. ./run.sh --help shows how to call it."""

import argparse
import contextlib
import os
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

from desktop import (Build, HandheldProgram, Handhelds, MemoryDisplay, Program, Rates, Root, Wine, caption_fonts,
                     display_reachable, handheld_environment, save_screenshot, say, start_software_receiver, stop)
from driver import VK_RIGHT, WM_CLOSE, Driver, DriverError
from ports import friendly_name, map_adapters, problem_with

Port = 3  # Wine uses COM1 and COM2 for the machine's own ports
Output = Build / "run"
UnattendedSeconds = 20
ColdStartSeconds = 60  # until the software receiver has found satellites, position and corrections
FirstLookSeconds = 8


def fail(text, code=1):
    print("run.sh:", text, file=sys.stderr)
    sys.exit(code)


class Parser(argparse.ArgumentParser):
    """Prints an error as one line, in the name of ./run.sh, which has its own --help."""

    def error(self, message):
        fail(f"{message.removeprefix('argument ')} (--help explains)", 2)


def rate(text):
    if text not in map(str, Rates):
        raise argparse.ArgumentTypeError(f"'{text}' is none of {', '.join(map(str, Rates))}")
    return int(text)


def parse_arguments():
    parser = Parser(add_help=False, allow_abbrev=False)
    layout = parser.add_mutually_exclusive_group()
    for name in ("pocketpc", "smartphone"):
        layout.add_argument("--" + name, dest="handheld", action="store_const", const=name)
    parser.add_argument("--sirf", action="store_true")
    parser.add_argument("--cold", action="store_true")
    parser.add_argument("device", nargs="?", metavar="DEVICE")
    parser.add_argument("rate", nargs="?", metavar="RATE", type=rate)
    arguments = parser.parse_args()
    if arguments.device and (arguments.sirf or arguments.cold):
        parser.error("--sirf and --cold are for the software receiver; a real one decides for itself")
    arguments.rate = arguments.rate or (38400 if arguments.sirf else 4800)
    return arguments


def build(preset, *targets):
    subprocess.run([Root / "tools" / "build.sh", preset, *targets], check=True)


def wait_until_closed(program):
    say("The program is running; close its window to end")
    return program.wait()


def keep_text_page(driver, display, box, window):
    """A screenshot of the text page, and its lines as read from the same picture. The letters of a hand-held device are
    not read."""
    if window is None:
        save_screenshot(display, Output / "text-page.png", box)
        return
    page = None
    while page != driver.page(window["window"]):
        page = driver.page(window["window"])
        save_screenshot(display, Output / "text-page.png", box)
    say("The text page at the end:")
    for line in page:
        say("|" + line)


def runs_on(program, seconds):
    """True if the program is still running after that time."""
    with contextlib.suppress(subprocess.TimeoutExpired):
        program.wait(seconds)
        say("The program has ended by itself")
        return False
    return True


def start_program(wine, handheld, attended):
    """Starts the program. On a real display, a hand-held device is a desktop window of its size."""
    if not handheld:
        return wine.start(Program, stdin=subprocess.DEVNULL)
    width, height = Handhelds[handheld][1]
    around = ("explorer", f"/desktop=toravane-{handheld},{width}x{height}") if attended else ()
    return wine.start(*around, HandheldProgram, environment=handheld_environment(handheld), stdin=subprocess.DEVNULL)


def run_unattended(wine, display, program, seconds, handheld):
    """Lets the program run for a while, keeps the content of its window, and closes it."""
    say(f"No display: running for {seconds} seconds on one in memory")
    with contextlib.closing(Driver(wine)) as driver:
        if not runs_on(program, FirstLookSeconds):
            return 1
        window = driver.main_window()
        box = (0, 0, *Handhelds[handheld][1]) if handheld else window["outer"]
        save_screenshot(display, Output / "first-look.png", box)
        if not runs_on(program, seconds - FirstLookSeconds):
            return 1
        try:
            keep_text_page(driver, display, box, None if handheld else window)
            driver.key(VK_RIGHT)
            time.sleep(3)  # the chart comes with the next fix
            save_screenshot(display, Output / "chart.png", box)
        except DriverError as problem:
            save_screenshot(display, Output / "display.png")
            say(f"The text page cannot be read: {problem}")
            return 1
        finally:
            say("Screenshots:")
            for file in sorted(Output.glob("*.png")):
                say(f"  {file.relative_to(Root)}")
        driver.post(window["window"], WM_CLOSE)
        return program.wait(30)


def main():
    arguments = parse_arguments()
    if arguments.device and (problem := problem_with(arguments.device)):
        fail(problem)
    build("tools", "toravane-receiver")
    build("desktop")

    # When this script ends, for any reason, all programs that it started end, too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    signal.signal(signal.SIGHUP, lambda *_: sys.exit(1))
    shutil.rmtree(Output, ignore_errors=True)
    with contextlib.ExitStack() as cleanup:
        display = os.environ.get("DISPLAY", "")
        attended = display_reachable(display)
        if not attended:
            memory_display = cleanup.enter_context(contextlib.closing(MemoryDisplay()))
            display = memory_display.name

        terminal = arguments.device
        if not terminal:
            receiver, terminal = start_software_receiver(
                "--protocol", "sirf" if arguments.sirf else "nmea", "--rate", arguments.rate,
                "--start", "cold" if arguments.cold else "hot")
            cleanup.callback(stop, receiver)
        say(f"Receiver on {terminal} at {arguments.rate} baud is COM{Port}")

        wine = cleanup.enter_context(contextlib.closing(Wine(
            Build / "wine", display, window_manager=attended, fonts=caption_fonts())))
        wine.map_port(Port, terminal)
        wine.store_port(Port, arguments.rate)
        name = friendly_name(Path(arguments.device).resolve()) if arguments.device else "Software receiver"
        for number, text in sorted(map_adapters(wine, {Port: name}).items()):
            say(f"COM{number}: {text}")
        program = start_program(wine, arguments.handheld, attended)
        cleanup.callback(stop, program)
        if attended:
            code = wait_until_closed(program)
        else:
            seconds = ColdStartSeconds if arguments.cold else UnattendedSeconds
            code = run_unattended(wine, display, program, seconds, arguments.handheld)
    if code:
        say(f"The program ended with code {code}")
    return 1 if code else 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(1)
    except (OSError, RuntimeError, subprocess.SubprocessError) as problem:
        fail(problem)
