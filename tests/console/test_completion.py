# SPDX-License-Identifier: MIT
"""Completion scripts, manual page and --help, which are all made from one description."""

import os
import pty
import re
import shlex
import signal
import subprocess

import pytest
from streams import Build, environment, read_some, run

Shells = ["bash", "zsh", "fish"]


def script(shell):
    return run("completion", shell, check=0).stdout.decode()


def commands():
    text = run("--help", check=0).stdout.decode()
    listed = re.search(r"Commands:\n(.*)", text, re.S)[1]
    return re.findall(r"^  (\w+)", listed, re.M)


def options(command):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]+", run(command, "--help", check=0).stdout.decode()))


def manual():
    page = (Build / "toravanectl.1").read_text()
    shown = subprocess.run(["groff", "-man", "-Tascii", "-P-cbou", "-ww", "-rLL=200n"], input=page, text=True,
                           capture_output=True, timeout=30)
    assert shown.returncode == 0 and shown.stderr == "", shown.stderr
    return shown.stdout


# What Tab does in a line of a shell on a terminal. ^G prints the line. The shells insert all possible words, if ALL is
# set.
BashStart = r"""
source .functions/_toravanectl
PS1='READY> '
bind 'set enable-bracketed-paste off'
show() { printf '<%s>' "$READLINE_LINE"; }
bind -x '"\C-g": show'
[ -z "$ALL" ] || bind '"\t": insert-completions'
"""
ZshStart = r"""
PS1='READY> '
fpath=($PWD/.functions $fpath)
autoload -U compinit
compinit -D -u
setopt no_auto_menu
show() { print -rn -- "<$BUFFER>" }
zle -N show
bindkey '^G' show
zstyle ':completion:*:messages' format ''
if [ -n "$ALL" ]; then
    zstyle ':completion:*' completer _all_matches _complete
    zstyle ':completion:*' insert true
fi
"""


class Terminal:
    """An interactive shell that has loaded its script."""

    def __init__(self, shell, folder, insert_all=True, programs=Build):
        folder.mkdir(exist_ok=True)
        path = folder / (".zshrc" if shell == "zsh" else ".bashrc")
        path.write_text({"bash": BashStart, "zsh": ZshStart}[shell])
        (folder / ".functions").mkdir()
        (folder / ".functions/_toravanectl").write_text(script(shell))
        words = {"bash": ["bash", "--noprofile", "--rcfile", str(path), "-i"],
                 "zsh": ["zsh", "-o", "noglobalrcs", "-i"]}[shell]
        own = {"PATH": f"{programs}:{environment()['PATH']}", "TERM": "dumb", "ZDOTDIR": str(folder),
               "ALL": "1" if insert_all else "", "COLUMNS": "4000", "HOME": str(folder), "HISTFILE": ""}
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            os.chdir(folder)
            os.execvpe(shell, words, environment() | own)
        self.read(rb"READY> ")

    def read(self, pattern):
        data = read_some(self.terminal, lambda data: re.search(pattern, data, re.S))
        return re.search(pattern, data, re.S)

    def line(self, typed):
        """The line after typing this text and Tab."""
        os.write(self.terminal, typed.encode() + b"\t\x07")
        line = self.read(rb"<([^>]*)>")[1].decode()
        os.write(self.terminal, b"\x15")  # ^U empties the line
        return line

    def words(self, typed):
        """All words that Tab offers for the last one of this text."""
        line = shlex.split(self.line(typed))
        before = shlex.split(typed)
        return [] if line == before else line[len(before) - (not typed.endswith(" ")):]

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.kill(self.child, signal.SIGKILL)
        os.waitpid(self.child, 0)
        os.close(self.terminal)


def test_every_command_and_option_is_everywhere():
    scripts, page = {shell: script(shell) for shell in Shells}, manual()
    names = commands()
    assert {"monitor", "log", "convert", "date", "relay", "probe", "completion"} <= set(names)
    for name in names:
        assert re.search(rf"^ +{name}\b", page, re.M), name
        for shell, text in scripts.items():
            assert re.search(rf"\b{name}\b", text), (shell, name)
        for option in options(name):
            assert option in page, option
            for shell in ("bash", "zsh"):
                assert option in scripts[shell], (shell, name, option)
            assert f"-l {option[2:]}" in scripts["fish"], (name, option)


class Fish:
    """Like Terminal; fish itself prints what it completes."""

    def __init__(self, folder, programs=Build):
        folder.mkdir(exist_ok=True)
        self.folder, self.programs = folder, programs
        (folder / "toravanectl.fish").write_text(script("fish"))

    def words(self, typed):
        own = {"HOME": str(self.folder), "PATH": f"{self.programs}:{environment()['PATH']}"}
        text = f"source toravanectl.fish; complete -C {shlex.quote(typed)}"
        done = subprocess.run(["fish", "--no-config", "-c", text], capture_output=True, text=True,
                              timeout=30, env=environment() | own, cwd=self.folder)
        assert done.returncode == 0 and done.stderr == "", done.stderr
        words = [row.split("\t")[0] for row in done.stdout.splitlines()]
        return [] if words == typed.split(" ")[-1:] else words

    def __enter__(self):
        return self

    def __exit__(self, *_):
        pass


Names = ("advanced-power dgps-mode dgps-source dop-mask elevation-mask low-power mode-control power-mask sbas "
         "static-navigation trickle-power")
Rates = "115200 1200 19200 2400 38400 4800 57600 9600"
Completions = [
    ("mon", "monitor"),
    ("xyz", ""),
    ("--json completion f", "fish"),
    ("completion ", "bash fish zsh"),
    ("monitor --corr", "--correct-dates"),
    ("probe --js", "--json"),
    ("-p get mon", "monitor"),
    ("probe -t set ", ""),
    ("-n -b 9600 res", "restart"),
    ("restart ", "cold factory hot warm"),
    ("get ", f"{Names} all"),
    ("get sbas dop", "dop-mask"),
    ("set ", Names),
    ("set power-mask ", "navigation= tracking="),
    ("set power-mask tracking=7 n", "navigation="),
    ("set power-mask tracking=", ""),
    ("set power-mask mode", ""),
    ("set sbas mo", "mode=integrity mode=testing"),
    ("set sbas mode=i", "mode=integrity"),
    ("set --force static-navigation e", "enabled=off enabled=on"),
    ("set dgps-source bit-rate=1", "bit-rate=100"),
    ("switch ", "nmea sirf"),
    ("switch sirf ", Rates),
    ("switch sirf 57600 ", ""),
    ("--rate ", Rates),
    ("probe -b 9", "9600"),
    ("probe --rate=9", "--rate=9600"),
    ("rates ", "GGA= GLL= GSA= GSV= MSS= RMC= USER10= USER8= VTG= ZDA="),
    ("rates GGA=1 Z", "ZDA="),
    ("convert x.log --to ", "csv gpx json kml"),
    ("profile ", "apply diff save show"),
    ("help pro", "probe profile"),
    ("help profile ", "apply diff save show"),
    ("help profile save ", "apply diff save show"),
    ("convert wa", "walk.log"),
    ("convert walk.log wa", "walk.log"),
    ("convert -o wa", "walk.log"),
    ("convert m", "my walk.log"),
    ("profile show wa", "walk.log"),
    ("log -- wa", "walk.log"),
    ("probe wa", ""),
]


@pytest.mark.parametrize("shell", Shells)
def test_a_shell_completes(shell, tmp_path):
    folder = tmp_path / "here"
    with Fish(folder) if shell == "fish" else Terminal(shell, folder) as terminal:
        (folder / "walk.log").write_text("")
        (folder / "my walk.log").write_text("")
        done = {typed: sorted(terminal.words(f"toravanectl {typed}")) for typed, _ in Completions}
    assert done == {typed: [words] if words == "my walk.log" else sorted(words.split()) for typed, words in Completions}


@pytest.mark.parametrize("shell", ["bash", "zsh"])
def test_a_value_follows_its_key_without_a_blank(shell, tmp_path):
    with Terminal(shell, tmp_path / "here", insert_all=False) as terminal:
        assert terminal.line("toravanectl set sbas mo") == "toravanectl set sbas mode="
        assert terminal.line("toravanectl set sbas mode=i") == "toravanectl set sbas mode=integrity "
        assert terminal.line("toravanectl set power-mask tr") == "toravanectl set power-mask tracking="
        assert terminal.line("toravanectl version --through-sirf=11") == "toravanectl version --through-sirf=115200 "


@pytest.mark.parametrize("shell", Shells)
def test_ports_are_completed(shell, tmp_path):
    """The ports are those of the command `ports`, here one of the test's own, and then files."""
    own = tmp_path / "bin"
    own.mkdir()
    (own / "toravanectl").write_text("#!/bin/sh\n[ \"$*\" = ports ] && echo '/dev/gps:1 a receiver'\n")
    (own / "toravanectl").chmod(0o755)
    here = tmp_path / "here"
    with Fish(here, own) if shell == "fish" else Terminal(shell, here, programs=own) as terminal:
        assert terminal.words("toravanectl -p /dev/gp") == ["/dev/gps:1"]


def test_zsh_accepts_its_script(tmp_path):
    path = tmp_path / "_toravanectl"
    path.write_text(script("zsh"))
    done = subprocess.run(["zsh", "-f", "-n", path], capture_output=True, text=True, timeout=30)
    assert (done.returncode, done.stderr) == (0, "")
    loaded = subprocess.run(["zsh", "-f", "-c", f"autoload -U compinit; compinit -D -u; source {path}; "
                             "print $_comps[toravanectl]"], capture_output=True, text=True, timeout=30)
    assert (loaded.stdout, loaded.stderr) == ("_toravanectl\n", "")


def test_a_wrong_shell_is_wrong_usage():
    run("completion", "tcsh", check=2)
    run("completion", check=2)
    run("completion", "bash", "--json", check=2)


def test_the_manual_has_its_sections():
    page = manual()
    for heading in ("NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "COMMANDS", "EXIT STATUS", "ENVIRONMENT", "FILES",
                    "EXAMPLES"):
        assert re.search(rf"^{heading}$", page, re.M), heading
    for status in ("0", "1", "2", "3", "6", "7", "8", "9", "10", "11", "130"):
        assert re.search(rf"^ +{status} ", page, re.M), status


@pytest.mark.parametrize("name", ["probe", "monitor"])
def test_help_of_a_command_in_both_forms(name):
    assert run(name, "--help", check=0).stdout == run("help", name, check=0).stdout != b""
