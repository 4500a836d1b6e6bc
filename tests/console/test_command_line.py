# SPDX-License-Identifier: MIT
"""The command line: wrong usage and its messages, help, and values from the environment. No test opens a port."""

import json
import re
import subprocess

import pytest
from streams import Build, Limit, command, environment, run

RateList = "1200, 2400, 4800, 9600, 19200, 38400, 57600 or 115200"


def error(*arguments):
    """The message of wrong usage."""
    done = run(*arguments, check=2)
    assert done.stdout == b""
    text = done.stderr.decode().replace("\r\n", "\n")
    assert text.startswith("toravanectl: ") and text.count("\n") == 1
    return text[len("toravanectl: "):-1]


def run_with(variables, *arguments):
    done = subprocess.run(command(*arguments), capture_output=True, timeout=Limit, stdin=subprocess.DEVNULL,
                          env=environment() | variables)
    return done.returncode, done.stdout.decode().replace("\r\n", "\n"), done.stderr.decode().replace("\r\n", "\n")


@pytest.mark.parametrize("arguments, message", [
    (["bogus"], 'no command "bogus"; "toravanectl --help" lists them'),
    (["GET"], 'no command "GET"; "toravanectl --help" lists them'),
    (["bogus", "x", "--quiet"], 'no command "bogus"; "toravanectl --help" lists them'),
    (["--port", "x", "bogus"], 'no command "bogus"; "toravanectl --help" lists them'),
    (["profile", "bogus", "x"], 'no command "profile bogus"; "toravanectl profile --help" lists them'),
    (["send", "GGA"], 'no command "send GGA"; "toravanectl send --help" lists them'),
    (["help", "bogus"], 'no command "bogus"; "toravanectl --help" lists them'),
    (["help", "profile", "bogus"], 'no command "profile bogus"; "toravanectl profile --help" lists them'),
    (["help", "get", "bogus"], 'no command "get bogus"'),
    ([], 'give a command; "toravanectl --help" lists them'),
    (["--quiet"], 'give a command; "toravanectl --help" lists them'),
    (["profile"], 'give a command; "toravanectl profile --help" lists them'),
    (["--bogus"], 'no option "--bogus" (--help explains)'),
])
def test_a_wrong_command_is_named(arguments, message):
    assert error(*arguments) == message


def test_failures_have_an_object_with_their_command():
    done = run("--json", "get", "bogus", "-b", "96", check=2)
    assert json.loads(done.stdout) == {"command": "get", "exit": 2, "error": {
        "kind": "usage", "message": f'--rate: "96" is no rate: {RateList}'}}
    done = run("profile", "show", "", "--json", check=2)
    assert json.loads(done.stdout)["command"] == "profile show"


def test_help_is_the_help_of_the_program():
    assert run("help", check=0).stdout == run("--help", check=0).stdout
    assert b"print the firmware's version" in run("help", check=0).stdout
    shown = run("help", "profile", "save", check=0).stdout
    assert shown == run("profile", "save", "--help", check=0).stdout
    assert b"Usage: toravanectl profile save [OPTIONS] FILE" in shown
    assert b"print the help of a command" in run("help", "--help", check=0).stdout


@pytest.mark.parametrize("arguments, option", [
    (["-p", "", "probe"], "--port"),
    (["--port=", "probe"], "--port"),
    (["probe", "--port", ""], "--port"),
    (["-b", "", "probe"], "--rate"),
    (["-t", "", "probe"], "--timeout"),
    (["date", "--reference", ""], "--reference"),
    (["monitor", "--for", ""], "--for"),
    (["convert", "x", "--to", "gpx", "-o", ""], "--output"),
    (["convert", "", "--to", "gpx"], "FILE"),
    (["relay", "--pty", ""], "--pty"),
    (["relay", "--tcp=", "2948"], "--tcp"),
    (["switch", "nmea", "--rates", ""], "--rates"),
    (["switch", "nmea", ""], "RATE"),
    (["version", "--through-sirf="], "--through-sirf"),
    (["--through-sirf=", "version"], "--through-sirf"),
    (["get", ""], "NAME"),
    (["get", "sbas", ""], "NAME"),
    (["set", "sbas", ""], "KEY=VALUE"),
    (["log", ""], "FILE"),
    (["profile", "show", ""], "FILE"),
    (["send", "nmea", ""], "BODY"),
    (["help", ""], "COMMAND"),
])
def test_an_empty_value_is_refused(arguments, option):
    assert error(*arguments, "-n").removesuffix(" (--help explains)") == f"{option}: the value is empty"


@pytest.mark.parametrize("rate", ["9601", "x", "0", "-1"])
def test_the_rate_of_the_way_through_sirf_is_checked(rate):
    message = f'--through-sirf: "{rate}" is no rate: {RateList}'
    assert error("--dry-run", "version", f"--through-sirf={rate}") == message
    assert error(f"--through-sirf={rate}", "get", "sbas") == message


@pytest.mark.parametrize("option", ["--through-sirf", "--through-sirf=57600"])
def test_the_way_through_sirf_may_stand_before_and_after_the_command(option):
    shown = b"> A0 A2 00 02 84 00 00 84 B0 B3"
    assert run(option, "-n", "version", check=0).stdout.strip() == shown
    assert run("-n", "version", option, check=0).stdout.strip() == shown


def test_a_wrong_rate_has_its_source():
    assert error("probe", "-b", "96oo") == f'--rate: "96oo" is no rate: {RateList}'
    assert error("switch", "sirf", "96oo") == f'RATE: "96oo" is no rate: {RateList}'
    wrong = {"TORAVANE_RATE": "96oo"}
    assert run_with(wrong, "probe") == (2, "", f'toravanectl: TORAVANE_RATE: "96oo" is no rate: {RateList}\n')
    status, _, message = run_with(wrong, "probe", "--rate", "1")
    assert (status, message) == (2, f'toravanectl: --rate: "1" is no rate: {RateList}\n')
    assert run_with(wrong, "--rate", "9600", "-n", "version")[0] == 0


@pytest.mark.parametrize("arguments", [["settings"], ["completion", "bash"], ["help"], ["profile", "show", "FILE"]])
def test_without_a_port_the_rate_does_not_matter(arguments, tmp_path):
    path = tmp_path / "a.profile"
    path.write_text("static-navigation enabled=on\n")
    arguments = [path if word == "FILE" else word for word in arguments]
    status, out, message = run_with({"TORAVANE_RATE": "96oo"}, *arguments)
    assert (status, message) == (0, "") and out
    run(*arguments, "--rate", "96oo", check=2)


@pytest.mark.parametrize("arguments, statuses", [(["ports"], (0, 3)), (["convert", "no.log", "--to", "csv"], (1,))])
def test_nor_if_such_a_command_fails(arguments, statuses):
    status, _, message = run_with({"TORAVANE_RATE": "96oo"}, *arguments)
    assert status in statuses and "rate" not in message


def test_empty_variables_count_as_not_set():
    empty = {"TORAVANE_PORT": "", "TORAVANE_RATE": ""}
    assert run_with(empty, "-n", "version") == (0, "> A0 A2 00 02 84 00 00 84 B0 B3\n", "")
    status, _, message = run_with(empty, "--port", "/no/such/port", "probe")
    assert (status, "empty" in message) == (3, False)


@pytest.mark.parametrize("name, usage, rows", [
    ("get", "NAME...", ["  NAME... ", "  --through-sirf[=RATE] "]),
    ("set", "NAME KEY=VALUE...", ["  NAME ", "  KEY=VALUE... "]),
    ("switch", "PROTOCOL [RATE]", ["  PROTOCOL ", "  RATE ", "  --rates LIST "]),
    ("rates", "[NAME=SECONDS...]", ["  NAME=SECONDS... "]),
    ("convert", "FILE...", ["  FILE... ", "  --to FORMAT REQUIRED ", "  -o,--output FILE "]),
    ("log", "FILE", ["  FILE "]),
    ("completion", "SHELL", ["  SHELL "]),
])
def test_help_shows_what_is_optional_and_repeatable(name, usage, rows):
    shown = run(name, "--help", check=0).stdout.decode().replace("\r\n", "\n")
    assert f"Usage: toravanectl {name} [OPTIONS] {usage}\n" in shown
    for row in rows:
        assert "\n" + row in shown
    assert not re.search("TEXT|[{}]", shown)
    assert shown.endswith("\nOptions of every command (--port, --rate, --json, ...): toravanectl --help\n")


def test_the_manual_shows_what_is_optional_and_repeatable():
    page = (Build / "toravanectl.1").read_text()
    for row in (r".SS get \fINAME\fR...", r".SS switch \fIPROTOCOL\fR [\fIRATE\fR]",
                r".SS rates [\fINAME=SECONDS\fR...]", r".SS set \fINAME\fR \fIKEY=VALUE\fR...",
                r".SS profile \fICOMMAND\fR", r".SS help [\fICOMMAND\fR...]", r"\fB\-\-through\-sirf\fR[=\fIRATE\fR]",
                r"\fB\-o\fR \fIFILE\fR, \fB\-\-output\fR \fIFILE\fR"):
        assert row + "\n" in page, row
