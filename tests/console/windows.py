# SPDX-License-Identifier: MIT
"""Runs toravanectl.exe under Wine in place of the program: a Wine prefix, with serial ports as COM links."""

import atexit
import itertools
import os
import shutil
import sys
from pathlib import Path

Root = Path(__file__).resolve().parents[2]
Program = Path(os.environ.get("TORAVANE_WINDOWS_BUILD", Root / "build/desktop")) / "toravanectl.exe"

sys.path.append(str(Root / "tools" / "desktop"))

Linux = "Linux alone has it: "
Signal = "Windows has no such signal"
Terminal = "a console of Wine does not carry out ANSI sequences; test_windows.py has what it can"

# Files and tests that cannot be run with the Windows program, with the reason.
Reasons = {
    "test_completion": "made of the same description on every system, for shells of Linux",
    "test_convert::test_a_link_stays_a_link": Linux + "symbolic links, which Wine follows unseen",
    "test_convert::test_links_in_a_circle_are_an_error": Linux + "symbolic links, which Wine follows unseen",
    "test_convert::test_permissions_stay": Linux + "permissions of a file for others",
    "test_convert::test_pipes_are_written_directly": Linux + "a name for standard output",
    "test_documents::test_the_unit_is_one_that_systemd_takes": Linux + "systemd",
    "test_documents::test_the_rule_starts_that_unit": Linux + "udev",
    "test_failing_calls": Linux + "a library that is loaded into the program and lets its system calls fail",
    "test_interruptions::test_an_interruption_leaves_the_receiver_as_it_was[=57600-> $PSRF100,0,-15]": Signal,
    "test_interruptions::test_an_interruption_leaves_the_receiver_as_it_was[-> A0 A2 00 02 A8 8B -1]": Signal,
    "test_interruptions::test_an_interruption_of_a_question": Terminal,
    "test_interruptions::test_an_interruption_while_nobody_reads_the_output": Signal,
    "test_profile::test_doctor_names_a_program_that_takes_bytes_away": Linux + "/proc",
    "test_interruptions::test_a_program_that_nohup_started_goes_on": Signal,
    "test_log::test_progress_is_shown_on_a_terminal": Terminal,
    "test_log::test_interrupted_the_file_is_whole[15]": Signal,
    "test_monitor_and_date::test_plain_lines_on_a_terminal_too": Terminal,
    "test_monitor_and_date::test_the_page_is_renewed_in_place": Terminal,
    "test_monitor_and_date::test_the_page_has_the_reason": Terminal,
    "test_ports": Linux + "groups, and names of processes that hold a port",
    "test_profile::test_colours_on_a_terminal": Terminal,
    "test_profile::test_saving_leaves_other_files_and_permissions": Linux + "permissions of a file for others",
    "test_relay::test_pseudo_terminal": Linux + "--pty",
    "test_relay::test_more_readers_than_descriptors": Linux + "setrlimit",
    "test_relay::test_mended_dates": Linux + "--pty",
    "test_relay::test_a_link_that_an_earlier_run_has_left_is_replaced": Linux + "--pty",
    "test_relay::test_the_link_goes_with_the_device": Linux + "--pty",
    "test_relay::test_what_cannot_be_made": Linux + "--pty",
    "test_relay::test_what_readers_write_reaches_the_receiver_on_request_alone": Linux + "--pty",
    "test_switch::test_a_second_instance_is_refused": "Wine lets a second program open a port; Windows does not",
}


def reason_to_skip(file, test, name):
    """`name` is the test's name with its parameters."""
    return Reasons.get(file) or Reasons.get(f"{file}::{test}") or Reasons.get(f"{file}::{name}")


class Machine:
    """One for each process that runs tests."""

    def __init__(self):
        from prefix import Wine
        folder = Root / "build/console-tests"
        name = "wine-" + os.environ.get("PYTEST_XDIST_WORKER", "alone")
        self.wine = Wine(folder / name, "", home=folder / "home")
        self.wine.environment["LC_ALL"] = "C.UTF-8"  # for names of files and arguments
        atexit.register(self.wine.close)
        for remembered in (self.wine.prefix / "drive_c/users").glob("*/AppData/Local/Toravane"):
            shutil.rmtree(remembered)
        self.numbers = itertools.count(20)

    def port(self, terminal):
        """The Windows program's name for a terminal; a new one each time, so that no remembered rate is used."""
        number = next(self.numbers)
        self.wine.map_port(number, terminal)
        return f"COM{number}"
