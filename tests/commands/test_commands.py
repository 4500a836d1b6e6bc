# SPDX-License-Identifier: MIT
"""The commands that users start, and their answers before any window: ./run.sh and the launcher of the package."""

import glob
import importlib
import os
import shutil
import signal
import socket
import subprocess
import urllib.request
from pathlib import Path

import pytest

Root = Path(__file__).resolve().parents[2]


def run(*command):
    done = subprocess.run(list(map(str, command)), capture_output=True, text=True, stdin=subprocess.DEVNULL, timeout=60)
    return done.returncode, done.stdout, done.stderr


@pytest.fixture
def launcher(tmp_path):
    """The launcher with its modules beside it, as the package installs it."""
    for file in ("packaging/launcher.py", "tools/desktop/ports.py", "tools/desktop/prefix.py"):
        shutil.copy(Root / file, tmp_path)
    (tmp_path / "version").write_text("2.20\n")
    return tmp_path / "launcher.py"


def test_launcher_names_its_actions_when_one_is_mistyped(launcher):
    for word in ("StaticNavigationof", "staticnavigationon", "COM3", "--colour"):
        code, out, error = run(launcher, word)
        assert (code, out) == (2, "")
        assert error.splitlines()[-1].startswith("toravane: ") and word in error.splitlines()[-1]
    assert "did you mean StaticNavigationOff?" in run(launcher, "StaticNavigationof")[2]
    assert "did you mean StaticNavigationOn?" in run(launcher, "staticnavigationon")[2]
    assert "a device like /dev/ttyUSB0" in run(launcher, "COM3")[2]


def test_launcher_lists_nothing_with_an_error(launcher):
    plugged = [name for pattern in ("ttyUSB*", "ttyACM*", "rfcomm*") for name in glob.glob("/dev/" + pattern)]
    code, out, error = run(launcher, "--list")
    assert error == ""
    if plugged:
        assert code == 0 and all(name in out for name in plugged)
    else:
        assert code == 1 and out.startswith("No serial adapter is plugged in.")


@pytest.mark.parametrize("arguments, error", [
    (["--colour"], "run.sh: unrecognized arguments: --colour (--help explains)\n"),
    (["/dev/null", "4801"], "run.sh: RATE: '4801' is none of 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200 "
                            "(--help explains)\n"),
    (["--sirf", "/dev/null"], "run.sh: --sirf and --cold are for the software receiver; a real one decides for itself "
                              "(--help explains)\n"),
    (["/dev/nowhere"], "run.sh: /dev/nowhere: no such device; is the receiver plugged in?\n"),
    (["/etc/passwd"], "run.sh: /etc/passwd: not a serial port\n"),
])
def test_run_names_itself_in_its_errors(arguments, error):
    code, out, text = run(Root / "run.sh", *arguments)
    assert (code, out, text) == (2 if "explains" in error else 1, "", error)


def test_run_explains_itself():
    for option in ("-h", "--help"):
        code, out, error = run(Root / "run.sh", option)
        assert (code, error) == (0, "") and out.startswith("Usage: ./run.sh")
    with open("/dev/full", "w") as full:
        assert subprocess.run([Root / "run.sh", "--help"], stdout=full, stderr=subprocess.DEVNULL).returncode != 0


# ---- The font of the launcher's pictures --------------------------------------------------------------

@pytest.fixture
def desktop(monkeypatch, tmp_path):
    """The launcher's module, with a build folder and an apt-get of the test's own."""
    monkeypatch.syspath_prepend(Root / "tools" / "desktop")
    module = importlib.import_module("desktop")
    monkeypatch.setattr(module, "Build", tmp_path)
    monkeypatch.setattr(module, "FetchSeconds", 2)
    monkeypatch.setenv("PATH", f"{tmp_path}:{os.environ['PATH']}")

    def apt_get(script):
        (tmp_path / "apt-get").write_text(f"#!/bin/sh\n{script}\n")
        (tmp_path / "apt-get").chmod(0o755)
    module.apt_get = apt_get
    return module


def test_run_goes_on_without_the_font_of_symbols(desktop, tmp_path, capsys):
    for script in ("exit 100", "echo rubbish >fonts-wine.deb", "exit 0", "exec sleep 60"):
        desktop.apt_get(script)
        assert desktop.caption_fonts() == []
        assert capsys.readouterr().out.startswith("The font of caption symbols cannot be fetched")
        assert list((tmp_path / "fonts").iterdir()) == []


def test_font_of_symbols_is_fetched_alone_and_once(desktop, tmp_path):
    files = tmp_path / "package"
    (files / "DEBIAN").mkdir(parents=True)
    (files / "DEBIAN" / "control").write_text("Package: fonts-wine\nVersion: 1\nArchitecture: all\n"
                                              "Maintainer: nobody <nobody@localhost>\nDescription: fonts\n")
    fonts = files / "usr" / "share" / "wine" / "fonts"
    fonts.mkdir(parents=True)
    for name in ("marlett.ttf", "tahoma.ttf"):
        (fonts / name).write_text(name)
    desktop.apt_get(f"dpkg-deb --build {files} fonts-wine_1_all.deb >&2")
    assert [font.read_text() for font in desktop.caption_fonts()] == ["marlett.ttf"]
    desktop.apt_get("exit 100")
    assert [font.name for font in desktop.caption_fonts()] == ["marlett.ttf"]
    assert [font.name for font in (tmp_path / "fonts").iterdir()] == ["marlett.ttf"]


@pytest.fixture
def page(tmp_path):
    """A folder with a page to serve."""
    (tmp_path / "index.html").write_text("<title>A page</title>")
    return tmp_path


def test_page_is_served_until_it_is_interrupted(page):
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        port = probe.getsockname()[1]
    environment = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    server = subprocess.Popen([Root / "tools" / "serve_page.py", "--port", str(port), page], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, env=environment)
    try:
        address = f"http://127.0.0.1:{port}/"
        assert server.stdout.readline() == f"The page is at {address} (Ctrl+C ends it)\n"
        with urllib.request.urlopen(address, timeout=10) as answer:
            assert answer.read() == b"<title>A page</title>"
        server.send_signal(signal.SIGINT)
        assert (server.wait(10), *server.communicate()) == (0, "", "")
    finally:
        server.kill()


def test_page_names_a_port_that_is_busy(page):
    with socket.create_server(("127.0.0.1", 0)) as other:
        port = other.getsockname()[1]
        code, out, error = run(Root / "tools" / "serve_page.py", "--port", port, page)
    assert (code, out) == (1, "") and error.startswith(f"serve_page.py: port {port} cannot be used (")
    assert error.count("\n") == 1


def test_scripts_that_begin_with_an_interpreter_are_executable():
    listed = subprocess.run(["git", "ls-files", "-z"], cwd=Root, check=True, capture_output=True, text=True).stdout
    files = [Root / name for name in listed.split("\0") if name and (Root / name).is_file()]
    scripts = [file for file in files if file.read_bytes()[:2] == b"#!"]
    assert len(scripts) > 10
    assert [file for file in scripts if not file.stat().st_mode & 0o111] == []
