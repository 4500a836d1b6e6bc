# SPDX-License-Identifier: MIT
"""probe, switch, rates, restart and --through-sirf."""

import json

import pytest
from streams import Receiver, end, run, sentence, start

Rates = (1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200)


def ctl(receiver, *arguments, **options):
    return run("-p", receiver.port, *arguments, **options)


@pytest.mark.parametrize("protocol, rate", [("nmea", 4800), ("nmea", 9600), ("sirf", 57600), ("sirf", 115200)])
def test_probe_finds_and_sends_nothing(tmp_path, protocol, rate):
    record = tmp_path / "heard"
    with Receiver("--protocol", protocol, "--rate", rate, "--record", record) as receiver:
        found = json.loads(ctl(receiver, "probe", "--json", check=0).stdout)
        assert (found["port"], found["protocol"], found["rate"]) == (receiver.port, protocol, rate)
        assert found["messages"] >= 1
    assert record.read_bytes() == b""


def test_probe_names_silence_noise_and_ports():
    with Receiver("--fault", "freeze-after-switch=0", "--fault", "lose=1") as receiver:
        assert json.loads(ctl(receiver, "-b", 4800, "--json", "probe", check=6).stdout)["error"]["kind"] == "silent"
    with Receiver() as receiver:
        assert json.loads(ctl(receiver, "-b", 9600, "--json", "probe", check=6).stdout)["error"]["kind"] == "noise"
    assert json.loads(run("-p", "/dev/nix", "--json", "probe", check=3).stdout)["error"]["kind"] == "port"
    run("-p", "/etc/passwd", "probe", check=3)
    run("-b", 4801, "probe", check=2)


def test_a_second_instance_is_refused():
    from streams import read_some
    with Receiver() as receiver:
        first = start("-p", receiver.port, "-b", 4800, "log", "-")
        try:
            read_some(first.stdout.fileno(), lambda data: data)
            done = ctl(receiver, "-b", 4800, "probe", check=3)
            assert b"busy" in done.stderr
        finally:
            end(first)


def test_switch_frames():
    assert run("switch", "-n", "sirf", 57600, check=0).stdout == b"> $PSRF100,0,57600,8,1,0*37\n"
    assert run("switch", "-n", "nmea", 4800, check=0).stdout.decode() == (
        "> A0 A2 00 18 81 02 01 01 01 01 05 01 05 01 01 01 01 01 00 01 00 01 00 01 00 01 12 C0 01 6D B0 B3\n")
    lines = run("switch", "-n", "nmea", 115200, "--rates", "GGA=1,GSV=5", check=0).stdout.decode().splitlines()
    assert lines == [
        "> A0 A2 00 18 81 02 01 01 00 01 00 01 05 01 00 01 00 01 00 01 00 01 00 01 00 01 E1 00 01 74 B0 B3",
        "> $PSRF100,1,115200,8,1,0*05"]
    run("switch", "-n", "sirf", check=2)
    run("switch", "-n", "nmea", 4801, check=2)
    run("switch", "-n", "ubx", 4800, check=2)
    run("switch", "-n", "nmea", 4800, "--rates", "GGA=256", check=2)
    done = run("switch", "-n", "nmea", 4800, "--rates", "GGA=0,RMC=0", check=2)  # nothing could be heard
    assert b"no sentence is on" in done.stderr and not done.stdout


def test_there_and_back_at_every_kind_of_step():
    with Receiver() as receiver:
        for protocol, rate in (("sirf", 38400), ("sirf", 115200), ("nmea", 115200), ("nmea", 9600), ("sirf", None),
                               ("nmea", 4800)):
            words = ["switch", protocol] + ([rate] if rate else [])
            done = json.loads(ctl(receiver, "--json", *words, check=0).stdout)
            assert done["wanted"] == done["found"]
            assert done["found"]["protocol"] == protocol
            assert rate is None or done["found"]["rate"] == rate
        again = ctl(receiver, "-v", "switch", "nmea", 4800, check=0)
        assert b"> " not in again.stderr


def test_the_sentences_of_a_switch_within_nmea():
    with Receiver() as receiver:
        for rate in (4800, 38400):  # the first one is the present rate
            done = ctl(receiver, "-v", "switch", "nmea", rate, "--rates", "vtg=2,GGA=1", check=0)
            assert done.stdout.decode() == f"now NMEA at {rate} baud\n"
            assert [line.split("*")[0] for line in done.stderr.decode().splitlines() if "$PSRF103" in line] == [
                "> $PSRF103,0,0,1,1", "> $PSRF103,1,0,0,1", "> $PSRF103,2,0,0,1", "> $PSRF103,3,0,0,1",
                "> $PSRF103,4,0,0,1", "> $PSRF103,5,0,2,1", "> $PSRF103,6,0,0,1", "> $PSRF103,7,0,0,1",
                "> $PSRF103,8,0,0,1", "> $PSRF103,9,0,0,1"]
            assert b"nothing was sent" not in done.stderr
            rates = json.loads(ctl(receiver, "--json", "rates", "--for", 7, check=0).stdout)["rates"]
            assert rates == {"GGA": pytest.approx(1, abs=0.2), "VTG": pytest.approx(2, abs=0.2)}
            ctl(receiver, "rates", "--no-verify", "RMC=1", check=0)


def test_the_sentences_of_a_switch_are_seen():
    with Receiver("--fault", "mute=PSRF103") as receiver:
        done = json.loads(ctl(receiver, "--json", "switch", "nmea", 4800, "--rates", "GGA=1,ZDA=1", check=8).stdout)
        assert done["error"]["kind"] == "differs"
        differences = done["error"]["message"].split(", ")
        # One that comes every five seconds may stay away for three.
        assert [each for each in differences if each[:3] not in ("GSA", "GSV")] == [
            "GLL still comes", "RMC still comes", "VTG still comes", "ZDA does not come"]
        assert done["found"] == done["wanted"] == {"protocol": "nmea", "rate": 4800}
    with Receiver("--protocol", "sirf", "--rate", 57600) as receiver:
        ctl(receiver, "switch", "nmea", 9600, "--rates", "RMC=1,GSA=2", check=0)
    with Receiver("--protocol", "sirf", "--rate", 57600) as receiver:  # which has no sentence USER8
        done = ctl(receiver, "switch", "nmea", 9600, "--rates", "RMC=1,USER8=1", check=8)
        assert b": USER8 does not come\n" in done.stderr


def test_a_switch_that_ends_elsewhere_is_named():
    with Receiver("--fault", "switch-lands-at=9600") as receiver:
        done = json.loads(ctl(receiver, "--json", "switch", "sirf", 57600, check=8).stdout)
        assert done["found"] == {"protocol": "sirf", "rate": 9600}
        assert done["error"]["kind"] == "differs"
    with Receiver("--fault", "ignore-switches=1") as receiver:
        done = json.loads(ctl(receiver, "--json", "switch", "sirf", 57600, check=8).stdout)
        assert done["found"] == {"protocol": "nmea", "rate": 4800}
    with Receiver("--fault", "freeze-after-switch=6") as receiver:
        ctl(receiver, "switch", "sirf", 57600, check=0)


def test_a_receiver_with_rare_sentences_is_waited_for():
    with Receiver("--protocol", "sirf", "--rate", 57600, "--fault", "freeze-after-switch=8") as receiver:
        process = start("-p", receiver.port, "-b", 57600, "switch", "nmea", 38400, "--rates", "GGA=24")
        assert process.stdout.readline() == b"now NMEA at 38400 baud\n"
        end(process)


def test_a_receiver_that_is_lost():
    with Receiver("--fault", "freeze-after-switch=100") as receiver:
        done = json.loads(ctl(receiver, "--json", "switch", "sirf", 57600, check=10).stdout)
        assert done["found"] is None and done["error"]["kind"] == "lost"


def test_rates_are_measured_and_set():
    with Receiver() as receiver:
        rates = json.loads(ctl(receiver, "--json", "rates", check=0).stdout)["rates"]
        assert rates["GGA"] == pytest.approx(1, abs=0.2) and rates["GSV"] == pytest.approx(5, abs=0.3)
        ctl(receiver, "rates", "GSA=0", "GSV=0", "GGA=2", check=0)
        rates = json.loads(ctl(receiver, "--json", "rates", "--for", 7, check=0).stdout)["rates"]
        assert rates["GGA"] == pytest.approx(2, abs=0.2) and "GSV" not in rates and "GSA" not in rates
        ctl(receiver, "rates", "41=1", check=11)
        ctl(receiver, "rates", "GGA=3", "GSA=2", check=0)
    with Receiver("--fault", "mute=PSRF103") as receiver:
        done = ctl(receiver, "rates", "GGA=4", "RMC=1", check=8)
        assert done.stderr == b"toravanectl: GGA comes more often\n" and not done.stdout
    for wrong in ("GGA=256", "GGA=-1", "XYZ=1", "41=31", "0=1", "GGA"):
        run("-p", "/nowhere", "rates", wrong, check=2)
    run("-p", "/nowhere", "rates", "GGA=1", "41=1", check=2)


def test_rates_of_messages():
    with Receiver("--protocol", "sirf", "--rate", 57600, "--refuse", "166") as receiver:
        ctl(receiver, "rates", "41=2", check=7)
    with Receiver("--protocol", "sirf", "--rate", 57600) as receiver:
        ctl(receiver, "rates", "4=0", "41=2", check=0)
        rates = json.loads(ctl(receiver, "--json", "rates", "--for", 5, check=0).stdout)["rates"]
        assert rates["41"] == pytest.approx(2, abs=0.2) and "4" not in rates
    with Receiver("--protocol", "sirf", "--rate", 57600, "--fault", "mute=166") as receiver:
        ctl(receiver, "rates", "41=0", check=8)
        ctl(receiver, "rates", "4=3", check=8)
        ctl(receiver, "rates", "41=0", "--no-verify", check=9)


def test_restarts():
    lines = run("restart", "-n", "cold", check=0).stdout.decode().splitlines()
    assert lines[0] == "> $PSRF101,0,0,0,0,0,0,12,4*10"
    assert lines[1].startswith("> A0 A2 00 19 80 00") and lines[1].endswith(" 0C 04 00 90 B0 B3")
    for protocol in ("nmea", "sirf"):
        with Receiver("--protocol", protocol, "--rate", 38400, "--start", "hot") as receiver:
            ctl(receiver, "restart", "warm", check=0)
            done = json.loads(ctl(receiver, "--json", "restart", "hot", "--wait", check=0).stdout)
            assert 0 < done["seconds"] < 30
            ctl(receiver, "restart", "factory", check=2)
            ctl(receiver, "restart", "factory", "-y", check=0)
    with Receiver() as receiver:
        ctl(receiver, "restart", "cold", "--wait", "--for", 6, check=9)
    with Receiver("--start", "hot", "--fault", "mute=PSRF101") as receiver:
        for words in (["hot"], ["cold", "--wait"], ["factory", "-y"]):
            done = ctl(receiver, "restart", *words, check=9)
            assert b"no sign of a restart" in done.stderr and not done.stdout


WithFix, WithoutFix = (sentence(f"GPRMC,100013.000,{status},4722.7,N,00832.5,E,0.0,0.0,210608,,,A") for status in "AV")


@pytest.mark.parametrize("log, status", [
    (WithFix * 20, 9),
    (WithoutFix * 20, 9),
    (WithFix * 5 + WithoutFix * 5, 0),
    (WithFix * 10 + bytes(960), 0),  # a pause of two seconds at 4800 baud
    (WithFix * 5 + sentence("PSRFTXT,Command refused") * 5, 9),
    (WithFix * 5 + sentence("PSRFTXT,Version: GSW3") * 5, 0),
    (WithFix * 5 + sentence("PSRF150,1") * 5, 0),
])
def test_signs_of_a_restart(tmp_path, log, status):
    (tmp_path / "log").write_bytes(log)
    with Receiver("--play", tmp_path / "log", "--repeat", "--rate", 4800) as receiver:
        ctl(receiver, "-b", 4800, "restart", "hot", check=status)


@pytest.mark.parametrize("protocol, off", [("nmea", "GGA=0"), ("sirf", "41=0")])
def test_a_fix_is_noticed_in_other_messages(protocol, off):
    with Receiver("--protocol", protocol, "--rate", 38400, "--start", "hot") as receiver:
        ctl(receiver, "rates", off, check=0)
        ctl(receiver, "restart", "hot", "--wait", "--for", 25, check=0)


def test_through_sirf_and_back():
    with Receiver() as receiver:
        ctl(receiver, "rates", "GSA=0", "VTG=2", check=0)
        done = ctl(receiver, "get", "dop-mask", "--through-sirf", check=0)
        assert done.stdout == b"dop-mask selection=auto gdop=8 pdop=8 hdop=8\n"
        rates = json.loads(ctl(receiver, "--json", "rates", check=0).stdout)["rates"]
        assert rates["VTG"] == pytest.approx(2, abs=0.2) and "GSA" not in rates and "GSV" in rates
        ctl(receiver, "set", "sbas", "prn=200", "--through-sirf=57600", check=2)
        ctl(receiver, "set", "sbas", "prn=120", "--through-sirf=57600", check=0)
        found = json.loads(ctl(receiver, "--json", "probe", check=0).stdout)
        assert (found["protocol"], found["rate"]) == ("nmea", 4800)


@pytest.mark.parametrize("alteration, difference", [
    ("129:4:4", b"GLL comes less often"), ("129:12:1", b"VTG comes more often"), ("129:18:1", b"ZDA still comes")])
def test_sentences_that_come_back_otherwise_are_named(alteration, difference):
    with Receiver("--fault", "alter=" + alteration) as receiver:
        ctl(receiver, "rates", "GSA=0", "GSV=0", "VTG=4", check=0)
        done = ctl(receiver, "get", "power-mask", "--through-sirf", check=8)
        assert b"toravanectl: back in NMEA, but " + difference in done.stderr


def test_sentences_that_cannot_be_brought_back_are_not_left(tmp_path):
    log, heard = tmp_path / "log", tmp_path / "heard"
    log.write_bytes(sentence("PSRF150,1") * 50)
    with Receiver("--play", log, "--repeat", "--rate", 4800, "--record", heard) as receiver:
        done = ctl(receiver, "get", "power-mask", "--through-sirf", check=1)
        assert b"nothing was sent" in done.stderr
    assert heard.read_bytes() == b""


def test_send():
    assert run("send", "-n", "nmea", "PSRF105,1", check=0).stdout == b"> $PSRF105,1*3E\n"
    assert run("send", "-n", "sirf", "84", "00", check=0).stdout == b"> A0 A2 00 02 84 00 00 84 B0 B3\n"
    for wrong in (("nmea", "A$B"), ("nmea", ""), ("nmea", "A" * 256), ("sirf", "8G"), ("sirf", "840")):
        run("send", "-n", *wrong, check=2)
    with Receiver("--protocol", "sirf", "--rate", 57600) as receiver:
        answer = ctl(receiver, "send", "sirf", "A8", "8F", check=0).stdout.decode()
        assert "\n2B 8F 00" in "\n" + answer
        ctl(receiver, "send", "sirf", "A8", "01", check=7)
        ctl(receiver, "send", "nmea", "PSRF105,1", check=11)
