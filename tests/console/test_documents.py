# SPDX-License-Identifier: MIT
"""The commands and the output in the documents are those of the program."""

import re
import shlex
import subprocess

import pytest
import transcript
from streams import Program, Root, run


def block(beginning):
    """The guide's block that begins with this text."""
    return re.search(rf"^```\n({re.escape(beginning)}.*?)^```$", (Root / "docs/user-guide.md").read_text(), re.M | re.S)[1]


def commands():
    """The command lines in the documents' blocks and in the manual page's examples."""
    text = "".join((Root / path).read_text() for path in ("docs/user-guide.md", "docs/toravanectl.md"))
    lines = re.findall(r"^(?:ExecStart=/usr/bin/)?(toravanectl .*)$", text, re.M)
    page = (Root / "packaging/toravanectl-sections.man").read_text().replace("\\-", "-")
    lines += re.findall(r"^(toravanectl .*)$", page, re.M)
    return sorted(set(lines))


def test_the_session_is_what_the_program_prints():
    assert transcript.session() == transcript.shown()


def test_there_are_commands():
    assert len(commands()) > 20


@pytest.mark.parametrize("line", commands())
def test_each_command_is_right_usage(line, tmp_path):
    (tmp_path / "walk.log").write_text("$GPGGA,100035.000,4722.6140,N,00832.5020,E,1,09,1.1,459.5,M,48.2,M,,0000\r\n")
    (tmp_path / "receiver.profile").write_text("static-navigation enabled=on\n")
    (tmp_path / "port").write_text("")
    words = [word.replace("/etc/toravane/", f"{tmp_path}/").replace("/dev/%I", f"{tmp_path}/port")
             for word in shlex.split(line)[1:]]
    # No real port: a command with right usage ends with the port's error, or well.
    done = run(*([] if "--port" in words else ["--port", tmp_path / "port"]), *words, cwd=tmp_path)
    assert done.returncode in (0, 3) or (words[0] in ("ports", "doctor") and done.returncode == 1), done.stderr


def test_the_unit_is_one_that_systemd_takes(tmp_path):
    unit = tmp_path / "toravane-receiver@.service"
    text = block("[Unit]")
    assert text.count("/usr/bin/toravanectl ") == 3
    unit.write_text(text.replace("/usr/bin/toravanectl", str(Program)))
    done = subprocess.run(["systemd-analyze", "verify", unit], capture_output=True, text=True, timeout=60)
    assert (done.returncode, done.stdout, done.stderr) == (0, "", "")
    unit.write_text(unit.read_text().replace("Type=oneshot", "Typ=oneshot"))  # a slip is noticed
    done = subprocess.run(["systemd-analyze", "verify", unit], capture_output=True, text=True, timeout=60)
    assert "Typ" in done.stderr


def test_the_rule_starts_that_unit():
    """Each part of the rule is a valid key with a valid operator, either a match or an assignment."""
    parts = dict(re.fullmatch(r'([A-Z]+(?:{[A-Z_]+})?)((?:==|\+?=)"[^"]*")', part).groups()
                 for part in block("ACTION==").strip().split(", "))
    assert parts == {"ACTION": '=="add"', "SUBSYSTEM": '=="tty"', "ENV{ID_VENDOR_ID}": '=="067b"',
                     "ENV{ID_MODEL_ID}": '=="2303"', "SYMLINK": '+="gps"', "TAG": '+="systemd"',
                     "ENV{SYSTEMD_WANTS}": '="toravane-receiver@%k.service"'}
    assert "`/etc/systemd/system/toravane-receiver@.service`" in (Root / "docs/user-guide.md").read_text()
