# SPDX-License-Identifier: MIT
"""relay: the same bytes to every reader; on request in both directions, and with corrected dates."""

import os
import resource
import socket
import termios
import time
import tty

import pytest
from streams import Limit, Receiver, end, read_some, run, start, valid_sentences, wait_until

Rate = 57600


@pytest.fixture
def receiver():
    with Receiver("--rate", Rate, "--start", "hot", "--date", "2026-11-21T10:00:00", "--pivot-week", 1290) as one:
        yield one


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Relay:
    def __init__(self, receiver, *options):
        self.process = start("relay", "-p", receiver.port, "-b", Rate, *options)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            assert end(self.process)[0] == 130
        for pipe in (self.process.stdout, self.process.stderr):
            pipe.close()


def connect(port):
    limit = time.monotonic() + Limit
    while True:
        try:
            return socket.create_connection(("127.0.0.1", port), timeout=Limit)
        except ConnectionRefusedError:
            assert time.monotonic() < limit
            time.sleep(0.05)


def open_link(link):
    wait_until(link.is_symlink, "the link")
    file = os.open(link, os.O_RDWR | os.O_NOCTTY)
    assert not termios.tcgetattr(file)[tty.LFLAG] & (termios.ECHO | termios.ICANON)
    return file


def seconds(count):
    return lambda data: data.count(b"$GPRMC") > count


def test_pseudo_terminal(receiver, tmp_path):
    link = tmp_path / "gps"
    with Relay(receiver, "--pty", link) as relay:
        file = open_link(link)
        good, bad = valid_sentences(read_some(file, seconds(2)))
        assert len(good) > 5 and bad <= 1  # the first one may be incomplete
        assert any(",070407,,," in line for line in good)
        os.close(file)
        again = os.open(link, os.O_RDWR | os.O_NOCTTY)
        assert b"$GPGGA" in read_some(again, seconds(1))
        os.close(again)
        assert end(relay.process)[0] == 130
    assert not link.is_symlink()


def test_a_link_that_an_earlier_run_has_left_is_replaced(receiver, tmp_path):
    link = tmp_path / "gps"
    link.symlink_to("/dev/pts/987654")
    with Relay(receiver, "--pty", link):
        wait_until(lambda: os.readlink(link) != "/dev/pts/987654", "the link")
        os.close(open_link(link))
    assert not link.is_symlink()


def test_several_readers_of_the_network(receiver):
    port = free_port()
    with Relay(receiver, "--tcp", port):
        first, second = connect(port), connect(port)
        for reader in (first, second):
            good, bad = valid_sentences(read_some(reader.fileno(), seconds(2)))
            assert len(good) > 5 and bad <= 1
        first.close()
        assert b"$GPGGA" in read_some(second.fileno(), seconds(1))
        second.close()
        connect(port).close()


def test_mended_dates(receiver, tmp_path):
    link, port = tmp_path / "gps", free_port()
    with Relay(receiver, "--pty", link, "--tcp", port, "--correct-dates", "--reference", "2026-11-01"):
        reader = connect(port)
        good, _ = valid_sentences(read_some(reader.fileno(), seconds(2)))
        dated = [line for line in good if line.startswith("$GPRMC")]
        assert dated and all(",211126,,," in line for line in dated)
        assert any(line.startswith("$GPGGA") for line in good)
        reader.close()


@pytest.mark.parametrize("option, rate", [(["--write"], True), ([], False)])
def test_what_readers_write_reaches_the_receiver_on_request_alone(receiver, tmp_path, option, rate):
    link, port = tmp_path / "gps", free_port()
    with Relay(receiver, "--pty", link, "--tcp", port, *option):
        reader = connect(port)
        read_some(reader.fileno(), seconds(1))
        reader.sendall(b"$PSRF103,8,0,1,1*2D\r\n")  # ZDA each second
        shown = read_some(reader.fileno(), seconds(4))
        assert (b"$GPZDA" in shown) == rate
        terminal = open_link(link)
        os.write(terminal, b"$PSRF103,6,0,1,1*23\r\n")  # MSS each second
        shown = read_some(terminal, seconds(4))
        assert (b"$GPMSS" in shown) == rate
        os.close(terminal)
        reader.close()


def test_more_readers_than_descriptors(receiver):
    port = free_port()
    relay = start("relay", "-p", receiver.port, "-b", Rate, "--tcp", port,
                  preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NOFILE, (16, 16)))
    first = connect(port)
    others = [connect(port) for _ in range(20)]
    read_some(first.fileno(), seconds(1))
    for other in others:
        other.close()
    last = connect(port)
    assert b"$GPGGA" in read_some(last.fileno(), seconds(1))
    first.close()
    last.close()
    assert end(relay)[0] == 130


def test_what_readers_write_is_shown(receiver):
    port = free_port()
    with Relay(receiver, "-v", "--tcp", port, "--write") as relay:
        reader = connect(port)
        reader.sendall(b"$PSRF103,8,0,1,1*2D\r\n")
        wait_for_line(relay, b"> $PSRF103,8,0,1,1*2D\n")
        reader.sendall(b"$\x1b[31m\xa0")
        wait_for_line(relay, b"> 24 1B 5B 33 31 6D A0\n")
        reader.close()


def wait_for_line(relay, wanted):
    for line in relay.process.stderr:
        if line == wanted:
            return
    assert False, wanted


def test_a_slow_reader_does_not_hold_up_the_others(receiver):
    port = free_port()
    with Relay(receiver, "--tcp", port):
        slow, quick = connect(port), connect(port)
        slow.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 1)
        assert len(read_some(quick.fileno(), lambda data: len(data) > 4000)) > 4000
        slow.close()
        quick.close()


def test_only_this_computer_is_served(receiver):
    port = free_port()
    with Relay(receiver, "--tcp", port):
        connect(port).close()
        listening = [line.split() for line in open("/proc/net/tcp") if line.split()[1].endswith(f":{port:04X}")]
        assert [entry[1] for entry in listening if entry[3] == "0A"] == [f"0100007F:{port:04X}"]


def test_what_cannot_be_made(receiver, tmp_path):
    arguments = ["relay", "-p", receiver.port, "-b", Rate]
    run(*arguments, check=2)
    for value in ("0", "65536", "x"):
        run(*arguments, "--tcp", value, check=2)
    (tmp_path / "file").write_text("mine")
    run(*arguments, "--pty", tmp_path / "file", check=1)
    assert (tmp_path / "file").read_text() == "mine"
    (tmp_path / "link").symlink_to("/dev/null")
    done = run(*arguments, "--pty", tmp_path / "link", check=1)
    assert b"no link to a pseudo-terminal" in done.stderr and os.readlink(tmp_path / "link") == "/dev/null"
    run(*arguments, "--pty", tmp_path / "none/gps", check=1)
    with socket.socket() as taken:
        taken.bind(("127.0.0.1", 0))
        taken.listen()
        done = run(*arguments, "--tcp", taken.getsockname()[1], "--pty", tmp_path / "gps", check=1)
        assert b"--tcp" in done.stderr
    assert not (tmp_path / "gps").is_symlink()


def test_dates_of_binary_messages_are_not_mended():
    with Receiver("--protocol", "sirf", "--rate", Rate) as one:
        port = free_port()
        relay = start("relay", "-p", one.port, "-b", Rate, "--tcp", port, "--correct-dates")
        with connect(port) as reader:
            read_some(reader.fileno(), lambda data: data.count(b"\xA0\xA2") > 5)
        status, _, notes = end(relay)
        assert status == 130 and b"toravanectl switch nmea" in notes


def test_the_link_goes_with_the_device(tmp_path):
    link, script = tmp_path / "gps", tmp_path / "script"
    script.write_text("5 vanish 100\n")
    with Receiver("--rate", Rate, "--script", script) as one:
        with Relay(one, "--pty", link) as relay:
            assert relay.process.wait(Limit) == 1
    assert not link.is_symlink()
