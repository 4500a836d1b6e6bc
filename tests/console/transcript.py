#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Makes the session in docs/toravanectl.md with the software receiver: prints it, or writes it there with --write."""

import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

import streams

Page = streams.Root / "docs/toravanectl.md"
Block = re.compile(r"(<!-- session:[^\n]*-->\n```\n)(.*?)(```\n<!-- end of session -->)", re.S)
ShownPort = "/dev/ttyUSB0"

Commands = """
toravanectl probe
toravanectl get elevation-mask
toravanectl switch sirf 57600
toravanectl get static-navigation elevation-mask
toravanectl set elevation-mask navigation=10
toravanectl set elevation-mask navigation=10
toravanectl set power-mask tracking=60
toravanectl version
toravanectl profile save receiver.profile
toravanectl set static-navigation enabled=on
toravanectl profile diff receiver.profile
toravanectl profile apply receiver.profile
toravanectl get sbas --json
toravanectl date --reference 2008-07-01
toravanectl switch nmea 4800
"""


def session():
    text = ""
    with streams.Receiver("--start", "hot") as receiver, tempfile.TemporaryDirectory() as folder:
        variables = streams.environment() | {"TORAVANE_PORT": receiver.port}
        for command in Commands.strip().splitlines():
            done = subprocess.run(streams.command(*shlex.split(command)[1:]), stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, text=True, cwd=folder, env=variables, timeout=60)
            text += f"$ {command}\n{done.stdout}"
            if done.returncode:
                text += f"$ echo $?\n{done.returncode}\n"
        return text.replace(receiver.port, ShownPort)


def shown():
    return Block.search(Page.read_text())[2]


if __name__ == "__main__":
    made = session()
    if sys.argv[1:] == ["--write"]:
        pathlib.Path(Page).write_text(Block.sub(lambda match: match[1] + made + match[3], Page.read_text()))
    else:
        print(made, end="")
