#!/usr/bin/python3 -B
"""The command toravane: finds the serial ports, and starts the program in a Wine prefix of its own."""

import argparse
import contextlib
import difflib
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

from ports import adapters, friendly_name, map_adapters, place, problem_with
from prefix import PrefixInUse, Rates, Wine, display_reachable, environment, say, stop

Here = Path(__file__).resolve().parent
Program = Here / "toravane.exe"
Actions = ("StaticNavigationOn", "StaticNavigationOff")  # the program's own command lines

Usage = """\
toravane [DEVICE [RATE]]
       toravane StaticNavigationOn|StaticNavigationOff [DEVICE [RATE]]
       toravane --list | --help | --version"""

Description = """\
Checks and changes the settings of GPS receivers with SiRF chipsets.

Every serial adapter that is plugged in becomes one of the ports COM1 to COM9 of
the program. Without DEVICE the program opens the port that worked last; menu
Com chooses another or searches for the receiver.

StaticNavigationOn and StaticNavigationOff switch the receiver's static
navigation without a user, and end."""

Examples = """\
examples:
  toravane                      with the port that worked last
  toravane --list               which adapters there are, and what is wrong
  toravane /dev/ttyUSB0 57600   with this port, at this rate
  toravane StaticNavigationOff  to be pressed before each walk"""


def refuse_word(parser, word):
    """Ends with an error about a word that is neither an action nor the path of a device."""
    lower = {action.lower(): action for action in Actions}
    near = difflib.get_close_matches(word.lower(), lower, 1)
    parser.error(f"'{word}' is no action; did you mean {lower[near[0]]}?" if near else
                 f"'{word}' is neither {' nor '.join(Actions)} nor a device like /dev/ttyUSB0")


def parse_arguments():
    parser = argparse.ArgumentParser(prog="toravane", usage=Usage, description=Description, epilog=Examples,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("device", nargs="?", metavar="DEVICE", help="the receiver's serial port, as in /dev/ttyUSB0")
    parser.add_argument("rate", nargs="?", metavar="RATE", type=int, choices=Rates, default=4800,
                        help=f"its rate in baud: {Rates[0]} to {Rates[-1]} (4800)")
    parser.add_argument("--list", action="store_true", help="list the serial adapters and end")
    parser.add_argument("--version", action="version", version="toravane " + (Here / "version").read_text().strip())
    words = sys.argv[1:]
    action = [words.pop(0)] if words and words[0] in Actions else []
    if words and not action and not words[0].startswith(("-", "/", ".")):
        refuse_word(parser, words[0])
    return parser.parse_args(words, argparse.Namespace(action=action))


def tell(text):
    """Says what has gone wrong: on the terminal, or in a box for those who have none."""
    print("toravane:", text, file=sys.stderr, flush=True)
    if sys.stderr.isatty():
        return
    for box in (["zenity", "--warning", "--no-markup", "--title=Toravane", "--text=" + text],
                ["kdialog", "--title", "Toravane", "--sorry", text],
                ["xmessage", "-center", text]):
        if shutil.which(box[0]):
            subprocess.Popen(box, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            return


def fail(text):
    tell(text)
    sys.exit(1)


def list_adapters():
    found = adapters()
    for device in found:
        say(f"{device}: {friendly_name(device)}")
        problem = problem_with(device)
        if problem:
            say(problem)
    if found:
        return 0
    say("No serial adapter is plugged in. A built-in port is used by its name: toravane /dev/ttyS0")
    return 1


def start_beside(prefix, display, arguments):
    """A second start only brings the first to the front, which the program does by itself."""
    if arguments.device or arguments.action:
        fail("Toravane is running already; close its window first")
    return subprocess.run(["wine", Program], env=environment(prefix, display, Path.home()),
                          stdin=subprocess.DEVNULL).returncode


def run(wine, arguments):
    names = {}
    if arguments.device:
        number = place(wine, arguments.device)
        wine.store_port(number, arguments.rate)
        names[number] = friendly_name(Path(arguments.device).resolve())
    for number, name in sorted(map_adapters(wine, names).items()):
        say(f"COM{number}: {name}")
    program = wine.start(Program, *arguments.action, stdin=subprocess.DEVNULL)
    try:
        return program.wait()
    finally:
        stop(program)


def main():
    arguments = parse_arguments()
    if arguments.list:
        return list_adapters()
    problems = list(filter(None, map(problem_with, [arguments.device] if arguments.device else adapters())))
    if arguments.device and problems:
        fail(problems[0])
    display = os.environ.get("DISPLAY", "")
    if not display_reachable(display):
        fail(f"there is no display '{display}'; start this in a graphical session")

    # Whatever ends this script, the program ends too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    signal.signal(signal.SIGHUP, lambda *_: sys.exit(1))
    data = Path(os.environ.get("XDG_DATA_HOME") or Path.home() / ".local" / "share")
    prefix = data / "toravane" / "wine"
    try:
        with contextlib.closing(Wine(prefix, display, window_manager=True)) as wine:
            if problems:
                tell("\n".join(problems))
            return run(wine, arguments)
    except PrefixInUse:
        return start_beside(prefix, display, arguments)
    except (OSError, subprocess.SubprocessError) as problem:
        fail(f"Wine does not work: {problem}")


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(1)
