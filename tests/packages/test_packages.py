# SPDX-License-Identifier: MIT
"""The packages as their users get them: they are made, inspected, installed, started and removed again."""

import json
import os
import re
import signal
import socket
import subprocess
import sys
import urllib.parse
import urllib.request
import zipfile
from pathlib import Path

import pefile
import pytest

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "desktop"))
os.environ.setdefault("TORAVANE_TEST_FOLDER", "package-tests")

from harness import Output, Port, Settings, User, desktop, wait_for
import driver as raw

Packages = desktop.Build / "packages"
UninstallKey = r"HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Toravane"
UsersMayWrite = "D:P(A;CI;KA;;;BA)(A;CI;KA;;;SY)(A;CI;CCDCLCSWRPRC;;;BU)"


@pytest.fixture(scope="session")
def packages():
    subprocess.run([desktop.Root / "package.sh", "--here"], check=True)
    return Packages


@pytest.fixture(scope="session")
def user():
    user = User()
    user.tidy()
    yield user
    user.tidy()
    user.leave()


def only(folder, pattern):
    found, = folder.glob(pattern)
    return found


def start(user, program):
    """Starts a copy of the program, without a port, and waits for its window."""
    user.store(CommPortIdx=3)  # without a rate: nothing is opened, and no About box is shown
    process = user.wine.start(program, stdin=subprocess.DEVNULL)
    try:
        wait_for("the main window appears", user.driver.main_window, 60)
        user.wait_page([" Menu Com. Open a port."] + [""] * 18)
    except BaseException:
        desktop.stop(process)
        raise
    return process


def close(user, process):
    try:
        user.close()
        assert process.wait(60) == 0
    finally:
        desktop.stop(process)


def check_manual(folder):
    """The guide is one file, which needs nothing else."""
    file = only(folder, "*.html")
    assert file.name == "user-guide.html"
    text = file.read_text()
    assert "<h1 id=\"every-box-and-what-to-do\"" in text
    places = set(re.findall(r'id="([^"]*)"', text))
    for target in re.findall(r'(?:src|href)="(?!data:|https?:)([^"]*)"', text):
        assert target == "#" or target[0] == "#" and target[1:] in places, target


# ---- Windows ------------------------------------------------------------------------------------------

Files = ["license.txt", "page", "toravane-replay.exe", "toravane.exe", "toravanectl.exe", "user-guide.html"]
Libraries = {  # those of each Windows
    "advapi32.dll", "comdlg32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "mswsock.dll", "setupapi.dll",
    "shell32.dll", "user32.dll", "ws2_32.dll"}


@pytest.fixture(scope="session")
def unzipped(packages, tmp_path_factory):
    folder = tmp_path_factory.mktemp("windows")
    with zipfile.ZipFile(only(packages, "*-windows.zip")) as archive:
        archive.extractall(folder)
    return only(folder, "toravane-*")


def test_zip(unzipped):
    assert sorted(file.name for file in unzipped.iterdir()) == Files
    check_manual(unzipped)


@pytest.mark.parametrize("name, description", [
    ("toravane", "Settings of GPS receivers with SiRF chipsets"),
    ("toravanectl", "Settings of GPS receivers with SiRF chipsets, from a terminal"),
    ("toravane-replay", "Decodes logs of GPS receivers with SiRF chipsets")])
def test_what_windows_knows_of_a_program(unzipped, name, description):
    program = pefile.PE(unzipped / f"{name}.exe")
    assert {library.dll.decode().lower() for library in program.DIRECTORY_ENTRY_IMPORT} <= Libraries
    texts = {key.decode(): value.decode() for info in program.FileInfo[0] for table in getattr(info, "StringTable", [])
             for key, value in table.entries.items()}
    assert texts == {
        "CompanyName": "The Toravane authors", "FileDescription": description, "FileVersion": "2.20",
        "InternalName": name, "LegalCopyright": "Copyright 2026 The Toravane authors",
        "OriginalFilename": f"{name}.exe", "ProductName": "Toravane", "ProductVersion": "2.20"}
    manifest, = (kind for kind in program.DIRECTORY_ENTRY_RESOURCE.entries if kind.id == 24)
    language, = manifest.directory.entries[0].directory.entries
    text = program.get_data(language.data.struct.OffsetToData, language.data.struct.Size).decode()
    for part in ('name="Microsoft.Windows.Common-Controls" version="6.0.0.0"', 'level="asInvoker"',
                 ">PerMonitorV2, PerMonitor<", ">UTF-8<"):
        assert part in text
    program.close()


def check_programs(user, folder):
    """Starts each program of a folder and checks that it works."""
    def run(name, *arguments):
        process = user.wine.start(folder / f"{name}.exe", *arguments, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT, environment={"LANG": "C.UTF-8"}, text=True)
        output = process.communicate(timeout=120)[0]
        return process.returncode, output

    close(user, start(user, folder / "toravane.exe"))
    assert run("toravanectl", "--version") == (0, "toravanectl 2.20\n")
    user.connect_receiver(38400, "--protocol", "sirf", "--start", "hot")
    status, found = run("toravanectl", "--port", f"COM{Port}", "probe")
    assert status == 0 and "SiRF" in found and "38400" in found
    log, picture = Output / "walk-\N{GREEK SMALL LETTER OMEGA}.txt", Output / "chart-\N{GREEK SMALL LETTER OMEGA}.png"
    log.write_text("$GPVTG,231.8,T,,M,10.0,N,18.5,K,D*0D\r\n", newline="")
    assert run("toravane-replay", log, "--stats", "--chart", picture) == (
        0, "Messages NMEA 1 SiRF 0\nBaudrate NMEA 0\nBytes 38\nProtocol NMEA\n")
    assert picture.read_bytes().startswith(b"\x89PNG")
    picture.unlink()


class Installed:
    """The files and entries that the installer makes in the prefix."""

    def __init__(self, user):
        self.user = user
        drive = user.wine.prefix / "drive_c"
        self.folder = drive / "Program Files" / "Toravane"
        self.menu = drive / "ProgramData" / "Microsoft" / "Windows" / "Start Menu" / "Programs" / "Toravane"

    def links(self):
        return {link.stem: link.read_bytes().decode("utf-16-le", errors="ignore")
                + link.read_bytes()[1:].decode("utf-16-le", errors="ignore") for link in self.menu.glob("*.lnk")}

    def is_listed(self):
        return self.user.wine.start("reg", "query", UninstallKey, stdin=subprocess.DEVNULL,
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).wait(60) == 0

    def uninstall(self, *options):
        """The uninstaller removes its own file, so it runs from a copy, whose end cannot be waited for."""
        self.user.wine.run(str(self.folder / "uninstall.exe"), "/S", *options)
        wait_for("everything is removed", lambda: not (
            self.folder.exists() or self.menu.exists() or self.is_listed()), 60)


def test_installer(packages, user):
    setup = only(packages, "*-setup.exe")
    installed = Installed(user)
    user.wine.run(str(setup), "/S")
    assert sorted(file.name for file in installed.folder.iterdir()) == sorted([*Files, "uninstall.exe"])
    assert (installed.folder / "page" / "toravane.wasm").is_file()
    check_manual(installed.folder)
    assert installed.is_listed()

    links = installed.links()
    assert sorted(links) == ["Static navigation off", "Static navigation on", "Toravane", "User guide"]
    assert all("user-guide.html" in text if name == "User guide" else "toravane.exe" in text
               for name, text in links.items())
    assert {name: re.findall("StaticNavigation(?:On|Off)", text) for name, text in links.items()} == {
        "Static navigation off": ["StaticNavigationOff"], "Static navigation on": ["StaticNavigationOn"],
        "Toravane": [], "User guide": []}

    assert user.driver.key_access(Settings) == UsersMayWrite

    check_programs(user, installed.folder)
    user.store(GraphRate=7)
    user.wine.run(str(setup), "/S")  # over an older version: keeps the settings
    assert user.stored("GraphRate") == 7
    installed.uninstall()
    assert user.stored("GraphRate") == 7

    user.wine.run(str(setup), "/S")
    installed.uninstall("/SETTINGS")
    with pytest.raises(raw.DriverError):
        user.driver.key_access(Settings)


def test_installer_waits_for_a_running_program(packages, user):
    program = start(user, desktop.Program)
    setup = user.wine.start(only(packages, "*-setup.exe"), "/S", stdin=subprocess.DEVNULL)
    assert setup.wait(300) == 2
    assert not Installed(user).folder.exists()
    assert program.poll() is None
    close(user, program)


# ---- Debian and Ubuntu --------------------------------------------------------------------------------

@pytest.fixture(scope="session")
def unpacked(packages, tmp_path_factory):
    folder = tmp_path_factory.mktemp("debian")
    for package in packages.glob("*.deb"):
        subprocess.run(["dpkg-deb", "--extract", package, folder], check=True)
    return folder


def test_lintian(packages):
    assert sorted(file.name for file in packages.glob("*.deb")) == [
        "toravane-tools_2.20_amd64.deb", "toravane-web_2.20_all.deb", "toravane_2.20_amd64.deb"]
    files = [*packages.glob("*.deb"), only(packages, "*.dsc")]
    subprocess.run(["lintian", "--allow-root", "--fail-on", "error,warning", *files], check=True)


def test_contents(unpacked):
    check_manual(unpacked / "usr/share/doc/toravane")
    for name in ("toravane", "toravane-web"):
        subprocess.run(["desktop-file-validate", unpacked / f"usr/share/applications/{name}.desktop"], check=True)
        subprocess.run(["appstreamcli", "validate", "--no-net", unpacked / f"usr/share/metainfo/{name}.metainfo.xml"],
                       check=True)
    for name in ("toravane", "toravanectl", "toravane-replay", "toravane-receiver", "toravane-web"):
        program = unpacked / "usr/bin" / name
        if name != "toravane-web":
            version = subprocess.run([program, "--version"], capture_output=True, text=True).stdout
            assert version.startswith(f"{name} 2.20")
        options = set(re.findall(r"--[a-z]+[a-z-]*", subprocess.run(
            [program, "--help"], capture_output=True, text=True, check=True).stdout))
        page = subprocess.run(["groff", "-man", "-Tutf8", "-P-cbou", "-ww"], capture_output=True, check=True, input=(
            subprocess.run(["zcat", unpacked / f"usr/share/man/man1/{name}.1.gz"], capture_output=True).stdout))
        assert page.stderr == b""
        text = page.stdout.decode().replace("\N{HYPHEN}", "-")
        assert [option for option in sorted(options) if option not in text] == []


def test_completions_are_those_of_the_program(unpacked):
    for shell, place in (("bash", "bash-completion/completions/toravanectl"), ("zsh", "zsh/vendor-completions/_toravanectl"),
                         ("fish", "fish/vendor_completions.d/toravanectl.fish")):
        printed = subprocess.run([unpacked / "usr/bin/toravanectl", "completion", shell], capture_output=True, check=True)
        assert (unpacked / "usr/share" / place).read_bytes() == printed.stdout != b"", shell


def test_installed_tools_find_each_other(unpacked):
    """The tests that autopkgtest runs in an installed system, with the unpacked tools."""
    environment = {**os.environ, "PATH": f"{unpacked / 'usr/bin'}:{os.environ['PATH']}"}
    subprocess.run([desktop.Root / "packaging/debian/tests/receiver"], env=environment, check=True, timeout=120)


def test_adapter_names_give_no_rights(unpacked):
    rules = only(unpacked, "**/udev/rules.d/*toravane*.rules").read_text()
    known = re.findall(r'^ATTRS\{idVendor\}=="([0-9a-f]{4})", ATTRS\{idProduct\}=="([0-9a-f]{4})", SYMLINK\+="toravane%n"$',
                       rules, re.MULTILINE)
    assert len(known) == rules.count("SYMLINK+=") >= 1
    assert not re.search("MODE|GROUP|OWNER|RUN|TAG|PROGRAM|IMPORT", rules)


def test_completions(unpacked):
    for shell, file in (("bash", "usr/share/bash-completion/completions/toravanectl"),
                        ("zsh", "usr/share/zsh/vendor-completions/_toravanectl"),
                        ("fish", "usr/share/fish/vendor_completions.d/toravanectl.fish")):
        assert "probe" in (unpacked / file).read_text()
        subprocess.run([shell, "-n", unpacked / file], check=True)


def test_sums_and_bill_of_materials(packages):
    subprocess.run(["sha256sum", "--check", "--quiet", "SHA256SUMS"], cwd=packages, check=True)
    listed = {line.split()[1] for line in (packages / "SHA256SUMS").read_text().splitlines()}
    assert listed == {file.name for file in packages.iterdir()} - {"SHA256SUMS"}
    bill = json.loads(only(packages, "*.spdx.json").read_text())
    names = {part["name"]: part["versionInfo"] for part in bill["packages"]}
    assert names["toravane"] == "2.20" and {"zlib1g-dev", "libcli11-dev", "libpugixml-dev"} <= set(names)


class LaunchersPrefix:
    """The Wine prefix that the launcher has made, to start the driver in."""

    start = desktop.Wine.start

    def __init__(self, environment, prefix):
        self.environment = {**environment, "WINEPREFIX": str(prefix)}


def shows_a_fix(watcher, window):
    try:
        return re.fullmatch(r" Fix: \d+ SVs.*", watcher.page(window)[4])
    except raw.DriverError:
        return False  # not painted yet


def test_launcher(unpacked, user, tmp_path):
    """Makes its prefix, maps the port, starts the program, and has it come to the front with a second start."""
    environment = {**user.wine.environment, "XDG_DATA_HOME": str(tmp_path)}
    del environment["WINEPREFIX"]
    receiver, terminal = desktop.start_software_receiver("--rate", 38400, "--start", "hot")
    user.receivers.append(receiver)
    launcher = unpacked / "usr/bin/toravane"
    log = Output / "launcher.txt"
    with open(log, "w") as output:
        process = subprocess.Popen([launcher, terminal, "38400"], env=environment, stdin=subprocess.DEVNULL,
                                   stdout=output, stderr=output)
    try:
        prefix = tmp_path / "toravane" / "wine"
        wait_for("the port is named", lambda: re.search(r"COM\d: ", log.read_text()), 300)
        number, = re.findall(r"COM(\d): " + terminal.rsplit("/", 1)[1], log.read_text())
        assert (prefix / "dosdevices" / f"com{number}").readlink() == Path(terminal)
        beside = subprocess.run([launcher, terminal], env=environment, capture_output=True, text=True)
        assert (beside.returncode, beside.stderr) == (
            1, "toravane: Toravane is running already; close its window first\n")
        watcher = raw.Driver(LaunchersPrefix(environment, prefix))
        window = wait_for("the main window appears", watcher.main_window, 60)
        wait_for("a fix", lambda: shows_a_fix(watcher, window["window"]), 60)
        assert subprocess.run([launcher], env=environment, timeout=60).returncode == 0
        assert len([w for w in watcher.windows() if w["class"] == "Toravane"]) == 1
        watcher.post(window["window"], raw.WM_CLOSE)
        assert process.wait(60) == 0
    finally:
        desktop.stop(process)
        print(log.read_text())
    unknown = subprocess.run([launcher, "StaticNavigationOn", "/dev/ttyUSB99"], env=environment,
                             capture_output=True, text=True)
    assert unknown.stderr == "toravane: /dev/ttyUSB99: no such device; is the receiver plugged in?\n"


# ---- Page ---------------------------------------------------------------------------------------------

class Launched:
    """The command toravane-web as a user starts it."""

    def __init__(self, unpacked, *arguments):
        self.process = subprocess.Popen(
            [unpacked / "usr/bin/toravane-web", "--no-browser", *arguments], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def address(self):
        return re.fullmatch(r"The page is at (http://127\.0\.0\.1:\d+/) \(Ctrl\+C ends it\)\n",
                            self.process.stdout.readline())[1]

    def end(self, number=signal.SIGTERM):
        self.process.send_signal(number)
        return self.process.wait(20), *self.process.communicate()


@pytest.fixture
def launched(unpacked):
    launched = Launched(unpacked, "--port", "0")
    yield launched
    desktop.stop(launched.process)


def test_the_page_is_served_to_this_computer(unpacked, packages, launched):
    address = launched.address()
    folder = unpacked / "usr/share/toravane-web/page"
    types = {".css": "text/css", ".html": "text/html", ".js": "text/javascript", ".svg": "image/svg+xml",
             ".wasm": "application/wasm", ".webmanifest": "application/manifest+json"}
    files = sorted(folder.iterdir())
    assert {"index.html", "main.js", "toravane.js", "toravane.wasm"} <= {file.name for file in files}
    for file in files:
        with urllib.request.urlopen(address + file.name, timeout=20) as answer:
            assert answer.read() == file.read_bytes()
            assert answer.headers.get_content_type() == types[file.suffix], file.name
    with urllib.request.urlopen(address, timeout=20) as answer:
        assert answer.read() == (folder / "index.html").read_bytes()
    with zipfile.ZipFile(only(packages, "*-web.zip")) as archive:
        zipped = {Path(name).name: archive.read(name) for name in archive.namelist() if not name.endswith("/")}
    assert zipped == {file.name: file.read_bytes() for file in files}

    port = urllib.parse.urlsplit(address).port
    with pytest.raises(ConnectionRefusedError):
        socket.create_connection(("127.0.0.2", port), 5)  # another address of this computer
    beside = Launched(unpacked, "--port", str(port))
    assert (beside.process.wait(20), *beside.process.communicate()) == (
        1, "", f"toravane-web: port {port} cannot be used (Address already in use); choose another with --port\n")
    assert launched.end() == (0, "", "")


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGHUP])
def test_the_page_is_served_until_the_user_ends_it(launched, number):
    launched.address()
    assert launched.end(number) == (0, "", "")


def test_page_of_the_package_streams(launched):
    sys.path[:0] = [str(desktop.Root / "tests" / "web"), str(desktop.Root / "tools")]
    from chromium import Chromium
    browser = Chromium()
    try:
        tab = browser.tab()
        tab.visit(launched.address())
        tab.wait("the receiver in the page streams",
                 "/^ UTC: \\d{4}-/.test(document.querySelector('.line')?.textContent)")
        assert tab.complaints == []
    finally:
        browser.close()
