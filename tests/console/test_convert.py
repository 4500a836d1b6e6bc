# SPDX-License-Identifier: MIT
"""convert: tracks of logs, and refused arguments."""

import datetime
import os
import re
import signal
import subprocess
import xml.etree.ElementTree as ElementTree

import pytest
from streams import Root, lines_of_json, run, sentence, start, wait_until

Gpx = "{http://www.topografix.com/GPX/1/1}"
Kml = "{http://www.opengis.net/kml/2.2}"


def gga(clock, quality=1, latitude="4722.6140,N", longitude="00832.5020,E", altitude="459.5"):
    return sentence(f"GPGGA,{clock},{latitude},{longitude},{quality},09,1.1,{altitude},M,48.2,M,,0000")


def rmc(clock, date="210608", knots="10.00"):
    return sentence(f"GPRMC,{clock},A,4722.6140,N,00832.5020,E,{knots},90.00,{date},,,A")


def epoch(clock, date="210608", **options):
    return gga(clock, **options) + rmc(clock, date)


@pytest.fixture
def log(tmp_path):
    def write(*parts, name="log.txt", changed=None):
        path = tmp_path / name
        path.write_bytes(b"".join(parts))
        if changed:
            moment = datetime.datetime.fromisoformat(changed + "T12:00:00+00:00").timestamp()
            os.utime(path, (moment, moment))
        return path
    return write


def csv(*arguments):
    lines = run("convert", *arguments, "--to", "csv", check=0).stdout.decode().splitlines()
    assert lines[0] == "time,latitude,longitude,altitude,speed,course,hdop,satellites"
    return lines[1:]


def test_csv_has_a_line_for_each_sample_with_position_and_fix(log):
    path = log(epoch("100035.000"), epoch("100036.000", quality=0), gga("100037.000", latitude=",", longitude=","),
               epoch("100038.000", latitude="3330.0000,S", longitude="07040.5000,W", altitude="-1.5"))
    assert csv(path) == ["2008-06-21T10:00:35Z,47.3769,8.5417,459.5,5.144,90,1.1,9",
                         "2008-06-21T10:00:38Z,-33.5,-70.675,-1.5,5.144,90,1.1,9"]


def test_gpx_follows_the_schema_and_parts_segments(log):
    path = log(epoch("100035.000"), epoch("100040.000"), epoch("100046.000"), epoch("100045.000"))
    root = ElementTree.fromstring(run("convert", path, "--to", "gpx", check=0).stdout)
    assert root.tag == Gpx + "gpx" and root.get("version") == "1.1"
    segments = root.findall(f"{Gpx}trk/{Gpx}trkseg")
    assert [len(segment) for segment in segments] == [2, 1, 1]
    point = segments[0][0]
    assert (point.get("lat"), point.get("lon")) == ("47.3769", "8.5417")
    assert [(child.tag.removeprefix(Gpx), child.text) for child in point] == [
        ("ele", "459.5"), ("time", "2008-06-21T10:00:35Z"), ("sat", "9"), ("hdop", "1.1")]


def test_kml_has_the_same_places(log):
    path = log(epoch("100035.000"), epoch("100036.000"), epoch("100046.000"))
    root = ElementTree.fromstring(run("convert", path, "--to", "kml", check=0).stdout)
    marks = root.findall(f"{Kml}Document/{Kml}Placemark")
    assert len(marks) == 2
    assert marks[0].find(f"{Kml}LineString/{Kml}coordinates").text.split() == ["8.5417,47.3769,459.5"] * 2
    assert marks[1].find(f"{Kml}Point/{Kml}coordinates").text == "8.5417,47.3769,459.5"


def test_json_has_the_lines_of_monitor(log):
    path = log(sentence("GPGSV,1,1,01,06,69,120,44"), epoch("100035.000"))
    assert lines_of_json(run("convert", path, "--to", "json", check=0).stdout) == [
        {"class": "SKY", "satellites": [{"PRN": 6, "ss": 44, "el": 69, "az": 120}]},
        {"class": "TPV", "time": "2008-06-21T10:00:35Z", "mode": 3, "lat": 47.3769, "lon": 8.5417, "altMSL": 459.5,
         "altHAE": 507.7, "geoidSep": 48.2, "speed": 5.144, "track": 90.0, "hdop": 1.1}]


def test_several_files_and_standard_input_are_one_stream(log):
    whole = epoch("100035.000") + epoch("100036.000")
    first, second = log(whole[:100], name="a"), log(whole[100:], name="b")
    assert len(csv(first, second)) == 2
    assert run("convert", "-", "--to", "csv", input=whole, check=0).stdout.count(b"\n") == 3


def test_sirf_binary_counts_its_message_41(log):
    data = (Root / "tests/data/walk-south-west.srf").read_bytes()
    types = [kind[1] & 7 for kind in re.findall(rb"\xa0\xa2\x00\x5b\x29..(..)", data, re.S)]
    assert len(csv(Root / "tests/data/walk-south-west.srf")) == len([kind for kind in types if kind]) > 10
    mixed = log((Root / "tests/data/walk-south-west.srf").read_bytes(), epoch("120000.000"))
    assert csv(mixed)[-1].startswith("2008-06-21T12:00:00Z,47.3769,8.5417,")


def test_dates_are_corrected_by_the_files_last_change(log):
    path = log(epoch("100035.000", "070407"), changed="2026-11-25")
    assert csv(path)[0].startswith("2007-04-07T10:00:35Z,")
    assert csv(path, "--correct-dates")[0].startswith("2026-11-21T10:00:35Z,")
    # The date of a file that was copied years later proves nothing.
    late = log(epoch("100035.000", "070407"), changed="2030-01-01", name="late")
    assert csv(late, "--correct-dates")[0].startswith("2007-04-07T10:00:35Z,")
    assert csv(late, "--correct-dates", "--reference", "2026-08-01")[0].startswith("2026-11-21T10:00:35Z,")
    line = lines_of_json(run("convert", path, "--to", "json", "--correct-dates", check=0).stdout)[0]
    assert (line["time"], line["rawTime"]) == ("2026-11-21T10:00:35Z", "2007-04-07T10:00:35Z")


def test_output_goes_into_a_file_that_is_whole(log, tmp_path):
    path, output = log(epoch("100035.000")), tmp_path / "track.gpx"
    done = run("convert", path, "--to", "gpx", "-o", output, "--json", check=0)
    assert lines_of_json(done.stdout) == [{"command": "convert", "exit": 0, "points": 1}]
    assert len(ElementTree.fromstring(output.read_bytes()).findall(f".//{Gpx}trkpt")) == 1
    assert sorted(entry.name for entry in tmp_path.iterdir()) == ["log.txt", "track.gpx"]


def test_what_cannot_be_done_leaves_no_file(log, tmp_path):
    path = log(epoch("100035.000"))
    assert run("convert", path, "--to", "gpx", "-o", tmp_path / "none/track.gpx").returncode == 1
    assert run("convert", tmp_path / "missing", "--to", "gpx", "-o", tmp_path / "track.gpx").returncode == 1
    assert run("convert", tmp_path, "--to", "gpx", "-o", tmp_path / "track.gpx").returncode == 1
    assert run("convert", path, "--to", "gpx", "-o", "/dev/full").returncode == 1
    assert [entry.name for entry in tmp_path.iterdir()] == ["log.txt"]
    with open("/dev/full", "wb") as full:
        process = start("convert", path, "--to", "gpx", stdout=full)
        assert process.wait(30) == 1
        process.stderr.close()


@pytest.mark.parametrize("arguments", [
    ["--to", "nmea"], [], ["--to", "csv", "--reference", "2026-02-30", "--correct-dates"], ["--to", "csv", "--json"],
    ["--to", "csv", "--frobnicate"]])
def test_wrong_usage(log, arguments):
    assert run("convert", log(epoch("100035.000")), *arguments).returncode == 2


def test_a_log_is_not_written_over(log):
    path = log(epoch("100035.000"))
    assert run("convert", path, "--to", "csv", "-o", path).returncode == 2
    assert path.read_bytes() == epoch("100035.000")


def test_without_a_message_it_is_no_track(log):
    assert run("convert", log(b""), "--to", "csv").returncode == 6
    assert run("convert", log(bytes(range(256)) * 20), "--to", "csv").returncode == 6
    done = run("convert", log(epoch("100035.000", quality=0)), "--to", "csv", check=0)
    assert b"the track is empty" in done.stderr


@pytest.mark.parametrize("data", [b"", bytes(range(256)) * 20], ids=["nothing", "noise"])
def test_what_is_no_track_replaces_none(log, tmp_path, data):
    output = tmp_path / "track.gpx"
    output.write_bytes(b"old")
    assert run("convert", log(data), "--to", "gpx", "-o", output).returncode == 6
    assert output.read_bytes() == b"old"
    assert sorted(entry.name for entry in tmp_path.iterdir()) == ["log.txt", "track.gpx"]


def test_files_of_other_names_stay(log, tmp_path):
    for name in ("track.csv.part", "track.csv.part2", "track.csv.new"):
        (tmp_path / name).write_bytes(b"mine")
    run("convert", log(epoch("100035.000")), "--to", "csv", "-o", tmp_path / "track.csv", check=0)
    assert (tmp_path / "track.csv").read_bytes().count(b"\n") == 2
    for name in ("track.csv.part", "track.csv.part2", "track.csv.new"):
        assert (tmp_path / name).read_bytes() == b"mine"
    assert len(list(tmp_path.iterdir())) == 5


@pytest.mark.parametrize("mode", [0o600, 0o666])
def test_permissions_stay(log, tmp_path, mode):
    output = tmp_path / "track.csv"
    output.touch()
    output.chmod(mode)
    run("convert", log(epoch("100035.000")), "--to", "csv", "-o", output, check=0)
    assert output.stat().st_size > 0 and output.stat().st_mode & 0o777 == mode


@pytest.mark.parametrize("exists", [True, False])
def test_a_link_stays_a_link(log, tmp_path, exists):
    folder = tmp_path / "tracks"
    folder.mkdir()
    if exists:
        (folder / "track.csv").write_bytes(b"old")
    (tmp_path / "first").symlink_to("second")
    (tmp_path / "second").symlink_to("tracks/track.csv")
    run("convert", log(epoch("100035.000")), "--to", "csv", "-o", tmp_path / "first", check=0)
    assert os.readlink(tmp_path / "first") == "second" and os.readlink(tmp_path / "second") == "tracks/track.csv"
    assert (folder / "track.csv").read_bytes().startswith(b"time,latitude,")
    assert [entry.name for entry in folder.iterdir()] == ["track.csv"]


def test_links_in_a_circle_are_an_error(log, tmp_path):
    (tmp_path / "a").symlink_to("b")
    (tmp_path / "b").symlink_to("a")
    run("convert", log(epoch("100035.000")), "--to", "csv", "-o", tmp_path / "a", check=1)
    assert sorted(entry.name for entry in tmp_path.iterdir()) == ["a", "b", "log.txt"]


def test_pipes_are_written_directly(log):
    done = run("convert", log(epoch("100035.000")), "--to", "csv", "-o", "/dev/stdout", check=0)
    assert done.stdout.count(b"\n") == 2


@pytest.mark.parametrize("data", [b"", gga("100035.000", quality=0) + b"x" * 100000], ids=["nothing", "no fix"])
def test_interrupted_before_any_point_it_keeps_the_old_file(tmp_path, data):
    output = tmp_path / "track.gpx"
    output.write_bytes(b"old")
    process = start("convert", "-", "--to", "gpx", "-o", output, stdin=subprocess.PIPE)
    wait_until(lambda: len(list(tmp_path.iterdir())) == 2, "a draft")
    process.stdin.write(data)
    process.stdin.flush()
    process.send_signal(signal.SIGINT)
    assert process.wait(30) == 130
    process.communicate()
    assert output.read_bytes() == b"old" and len(list(tmp_path.iterdir())) == 1


def test_corrections_are_reported_with_their_reason(log):
    def notes(*arguments):
        return run("convert", *arguments, "--to", "csv", "--correct-dates", check=0).stderr.decode()
    path = log(epoch("100035.000", "070407"), epoch("100036.000", "070407"), changed="2026-11-25")
    corrected = "dates: plus 1024 weeks it lies within 26 weeks of the file's last change, 2026-11-25\n"
    assert notes(path) == corrected
    assert notes(path, "-q") == ""
    late = log(epoch("100040.000", "070407"), changed="2030-01-01", name="late")
    refused = "dates: no number of 1024 weeks brings the date within 26 weeks of the file's last change, 2030-01-01\n"
    assert notes(late) == refused
    assert notes(path, late, late, path) == corrected + refused + corrected


def test_interrupted_it_ends_with_a_whole_track(tmp_path):
    output, unfinished = tmp_path / "track.gpx", tmp_path / "track.gpx.part"
    process = start("convert", "-", "--to", "gpx", "-o", output, stdin=subprocess.PIPE)
    process.stdin.write(b"".join(epoch(f"1000{second:02}.000") for second in range(60)) * 20)
    process.stdin.flush()  # more than one portion; and the pipe stays open
    wait_until(lambda: unfinished.exists() and unfinished.stat().st_size > 0, "points in the track")
    process.send_signal(signal.SIGINT)
    assert process.wait(30) == 130
    process.communicate()
    assert len(ElementTree.fromstring(output.read_bytes()).findall(f".//{Gpx}trkpt")) > 100
    assert not unfinished.exists()
