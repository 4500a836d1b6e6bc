#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""The command toravane: finds the serial ports, and starts the program in its own Wine prefix."""

import argparse
import contextlib
import difflib
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

from ports import Positions, adapters, friendly_name, map_adapters, place, problem_with
from prefix import MemoryDisplay, PrefixInUse, Rates, Wine, display_reachable, environment, say, stop

Here = Path(__file__).resolve().parent
Program = Here / "toravane.exe"
UsualRate = 4800
UnseenSeconds = 60  # an action takes twelve; after a longer time it is waiting for a user who is not present
Actions = ("StaticNavigationOn", "StaticNavigationOff")  # the command lines of the program itself

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
    """Ends with an error for a word that is neither an action nor the path of a device."""
    lower = {action.lower(): action for action in Actions}
    near = difflib.get_close_matches(word.lower(), lower, 1)
    parser.error(f"'{word}' is no action; did you mean {lower[near[0]]}?" if near else
                 f"'{word}' is neither {' nor '.join(Actions)} nor a device like /dev/ttyUSB0")


def parse_arguments():
    parser = argparse.ArgumentParser(prog="toravane", usage=Usage, description=Description, epilog=Examples,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("device", nargs="?", metavar="DEVICE", help="the receiver's serial port, as in /dev/ttyUSB0")
    parser.add_argument("rate", nargs="?", metavar="RATE", type=int, choices=Rates,
                        help=f"its rate in baud: {Rates[0]} to {Rates[-1]} (the one that worked last, or {UsualRate})")
    parser.add_argument("--list", action="store_true", help="list the serial adapters and end")
    parser.add_argument("--version", action="version", version="toravane " + (Here / "version").read_text().strip())
    words = sys.argv[1:]
    action = [words.pop(0)] if words and words[0] in Actions else []
    if words and not action and not words[0].startswith(("-", "/", ".")):
        refuse_word(parser, words[0])
    return parser.parse_args(words, argparse.Namespace(action=action))


def tell(text):
    """Shows an error: on the terminal, or in a box if there is no terminal."""
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
    """A second start only brings the first window to the front; the program does this itself."""
    if arguments.device or arguments.action:
        fail("Toravane is running already; close its window first")
    return subprocess.run(["wine", Program], env=environment(prefix, display, Path.home()),
                          stdin=subprocess.DEVNULL).returncode


def check_action(wine, number):
    """Ends if the port of an action is not known or cannot be used."""
    if number not in Positions:
        fail("which port has the receiver? Name it once: toravane StaticNavigationOff /dev/ttyUSB0 4800")
    device = wine.prefix / "dosdevices" / f"com{number}"
    if not device.exists():
        fail(f"COM{number}, the port that worked last, is not there; is the receiver plugged in?")
    problem = problem_with(str(device.resolve()))
    if problem:
        fail(problem)


def choose_settings(wine, arguments, number):
    """The settings to store before the program starts: the port `number`, if it was given, and a rate if none is known.
    An action also needs the rates of both protocols, which a new installation does not have."""
    stored = wine.stored()
    known = {name for name, index in stored.items() if index in range(len(Rates))}
    if not number and arguments.action:
        check_action(wine, stored.get("CommPortIdx"))
    values = {"CommPortIdx": number} if number else {}
    index = Rates.index(arguments.rate or UsualRate)
    if not arguments.rate and "BaudrateIdx" in known:
        index = stored["BaudrateIdx"]
    elif number or arguments.action:
        values["BaudrateIdx"] = index
    if arguments.action:
        values.update({name: index for name in ("SirfBaudrateIdx", "NmeaBaudrateIdx") if name not in known})
    return values


def run(wine, arguments, patience=None):
    """Starts the program and waits until it ends, at most `patience` seconds."""
    names, number = {}, None
    if arguments.device:
        number = place(wine, arguments.device)
        names[number] = friendly_name(Path(arguments.device).resolve())
    names = map_adapters(wine, names)
    wine.store(choose_settings(wine, arguments, number))
    for position, name in sorted(names.items()):
        say(f"COM{position}: {name}")
    program = wine.start(Program, *arguments.action, stdin=subprocess.DEVNULL)
    try:
        return program.wait(patience)
    except subprocess.TimeoutExpired:
        fail(f"{arguments.action[0]} was not carried out: the program shows a box that nobody can answer; start it in a "
             "graphical session to read it")
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
    seen = display_reachable(display)
    if not seen and not arguments.action:
        fail(f"there is no display '{display}'; start this in a graphical session")

    # When this script ends, for any reason, the program ends, too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))
    signal.signal(signal.SIGHUP, lambda *_: sys.exit(1))
    data = Path(os.environ.get("XDG_DATA_HOME") or Path.home() / ".local" / "share")
    prefix = data / "toravane" / "wine"
    with contextlib.ExitStack() as cleanup:
        if not seen:
            try:
                display = cleanup.enter_context(contextlib.closing(MemoryDisplay())).name
            except (OSError, RuntimeError):
                fail("there is no display, and none can be made in memory: install xvfb")
        try:
            wine = cleanup.enter_context(contextlib.closing(Wine(prefix, display, window_manager=seen)))
            if problems and not arguments.action:
                tell("\n".join(problems))
            return run(wine, arguments, None if seen else UnseenSeconds)
        except PrefixInUse:
            return start_beside(prefix, display, arguments)
        except (OSError, subprocess.SubprocessError) as problem:
            fail(f"Wine does not work: {problem}")


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(1)
