# SPDX-License-Identifier: MIT
"""What the documents show of the program is what it does."""

import re
import shlex

import pytest
import transcript
from streams import Root, run


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
    # A port that is none: whatever is right usage ends with its error, or well.
    done = run(*([] if "--port" in words else ["--port", tmp_path / "port"]), *words, cwd=tmp_path)
    assert done.returncode in (0, 3) or (words[0] in ("ports", "doctor") and done.returncode == 1), done.stderr
