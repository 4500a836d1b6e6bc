# SPDX-License-Identifier: MIT
"""Ports that cannot be opened: the holder, and what helps."""

import errno
import os
import pty
import subprocess
import sys

import pytest
import streams
from streams import Build, Limit, environment, run

# Takes the port for itself, under a name with a sequence that would make the terminal red.
Holder = r"""
import fcntl, sys
port = open(sys.argv[1])
fcntl.flock(port, fcntl.LOCK_EX)
with open("/proc/self/comm", "w") as name:
    name.write("x\x1b[31m\xc3\xa9")
print(flush=True)
sys.stdin.read()
"""


def test_the_name_of_a_holder_is_printable():
    master, slave = pty.openpty()
    port = os.ttyname(slave)
    holder = subprocess.Popen([sys.executable, "-c", Holder, port], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    holder.stdout.readline()
    os.close(slave)
    done = run("probe", "-p", port, check=3)
    holder.communicate(timeout=Limit)
    os.close(master)
    assert f"held by x?[31m???? ({holder.pid})" in done.stderr.decode()


@pytest.mark.skipif(os.geteuid() != 0, reason="only root may give files to other groups")
@pytest.mark.parametrize("owner, group, mode, remedy", [
    (0, 1, 0o660, "no permission; become a member of the group daemon (sudo usermod -aG daemon $USER, then log in "
                  "again)"),
    (0, 0, 0o660, "no permission; only root may open it; a udev rule can change this"),
    (0, 1, 0o600, "no permission; only root may open it; a udev rule can change this"),
    (0, 1, 0o620, "no permission; only root may open it; a udev rule can change this"),
    (1, 1, 0o620, "no permission; only its owner and root may open it; a udev rule can change this"),
])
def test_the_remedy_fits_the_port(tmp_path, owner, group, mode, remedy):
    port = tmp_path / "port"
    port.touch()
    os.chown(port, owner, group)
    port.chmod(mode)
    faults = environment() | {"LD_PRELOAD": str(Build / "failing_calls.so"),
                              "TORAVANE_FAULT": f"open {errno.EACCES} 1 {port}"}
    done = subprocess.run(streams.command("probe", "-p", port), capture_output=True, timeout=Limit, env=faults)
    assert (done.returncode, done.stderr.decode()) == (3, f"toravanectl: {port}: {remedy}\n")
