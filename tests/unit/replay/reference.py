# SPDX-License-Identifier: MIT
"""A second decoder of NMEA and SiRF binary, written only from the messages' descriptions, without the program's code:
the text page, the samples, the statistics and the receiver text after a log. Simple and slow."""
import math
import re
import struct

HOT_START = "$PSRF101,0,0,0,0,0,0,12,1*15"
LAST_LINE = " Use joystick to toggle graph/text."
FIELD_COUNTS = {"GPGGA": (15,), "GPGLL": (7, 8), "GPGSA": (18,), "GPGSV": (8, 12, 16, 20), "GPRMC": (12, 13),
                "GPVTG": (9, 10)}
WITHOUT_TEXT = ("GPMSS", "GPZDA", "PSRF150")


def float32(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def integer(text):
    match = re.match(r"\s*([+-]?\d+)", text)
    return int(match.group(1)) if match else 0


def decimal(text):
    match = re.match(r"\s*([+-]?(\d+\.?\d*|\.\d+))", text)
    return max(-1e15, min(1e15, float(match.group(1)))) if match else 0.0


def fixed(value, decimals, width=0):
    return f"{value:0{width}.{decimals}f}"


def sentences(data):
    """Accepted sentences: the end of each, and its body."""
    position = 0
    while True:
        start = data.find(b"$", position)
        if start < 0:
            return
        match = re.compile(rb"\$([\x20-\x29\x2b-\x7e]*)(\*([0-9A-Fa-f]{2})?)?\r\n").match(data, start)
        if not match:
            # Everything up to the wrong byte is dropped with it.
            broken = re.compile(rb"\$[\x20-\x29\x2b-\x7e]*(\*[0-9A-Fa-f]{0,2})?\r?").match(data, start).end()
            body = re.compile(rb"\$([\x20-\x29\x2b-\x7e]*)\*([0-9A-Fa-f]{2})").match(data, start)
            if body and not checksum_fits(body.group(1), body.group(2)):
                broken = body.end() - 1
            position = broken + 1
            continue
        body, digits = match.group(1), match.group(3)
        if digits is not None and not checksum_fits(body, digits):
            position = match.end(3)  # the search continues after the second digit
            continue
        position = match.end()
        assert len(body) < 256, "overlong bodies are left to the unit tests"
        yield position, body.decode("ascii")


def frames(data):
    """Accepted SiRF frames: the end of each, and its payload. A wrong byte is dropped with its frame."""
    i = 0
    while (i := data.find(b"\xa0", i)) >= 0:
        if data[i + 1:i + 2] != b"\xa2":
            i += 2
            continue
        length = int.from_bytes(data[i + 2:i + 4], "big")
        if not 1 <= length <= 1023:
            i += 4
            continue
        payload, tail = data[i + 4:i + 4 + length], data[i + 4 + length:i + 8 + length]
        if len(tail) < 4:
            return
        i += 4 + length
        if sum(payload) & 0x7FFF != int.from_bytes(tail[:2], "big") & 0x7FFF:
            i += 2
        elif tail[2] != 0xB0:
            i += 3
        else:
            i += 4
            if tail[3] == 0xB3:
                yield i, payload


def checksum_fits(body, digits):
    checksum = 0
    for byte in body:
        checksum ^= byte
    return checksum == int(digits, 16)


class Reference:
    def __init__(self):
        self.lines = [" Menu Com. Open a port."] + [""] * 18
        self.values = [0.0] * 10
        self.time = [0, 0, 0, 0, 0, 0]
        self.latitude = self.longitude = 0.0
        self.satellites = [[0, 0, 0] for _ in range(12)]  # PRN, elevation, C/No
        self.count = self.frame_count = self.reported = 0
        self.geodetic_seen = False
        self.text = ""
        self.samples = []

    def feed(self, data):
        nmea = [(end, self.sentence, body) for end, body in sentences(data)]
        sirf = [(end, self.frame, payload) for end, payload in frames(data)]
        for _, handle, message in sorted(nmea + sirf, key=lambda item: item[0]):
            handle(message)

    def protocol(self):
        return {(True, False): "NMEA", (False, True): "SiRF"}.get((bool(self.count), bool(self.frame_count)), "-")

    def begin(self):
        self.lines = [""] * 18 + [LAST_LINE]

    def sentence(self, body):
        if not self.count:
            self.begin()
        self.count += 1
        self.dispatch(body)

    def frame(self, payload):
        if not self.frame_count:
            self.begin()
        self.frame_count += 1
        payload = payload.lstrip(b"\xee")
        handlers = {2: (self.measured_navigation, 41), 4: (self.measured_tracking, 188), 41: (self.geodetic, 91)}
        if payload and payload[0] in handlers:
            handle, least = handlers[payload[0]]
            if len(payload) >= least:
                handle(payload)

    def dispatch(self, body):
        fields = body.split(",")[:20]
        name = fields[0]
        if name in FIELD_COUNTS:
            if len(fields) in FIELD_COUNTS[name]:
                getattr(self, name.lower())(fields)
        elif name not in WITHOUT_TEXT:
            self.receiver_text(fields)

    # ---- fields

    def cut(self, fields, index):
        """Two-digit numbers of a time or date, and the effect of cutting it apart on the fields after it."""
        text = "\0".join(fields[index:])
        parts = [integer(text[4:].split("\0")[0]), integer(text[2:4].split("\0")[0]), integer(text[0:2].split("\0")[0])]
        if len(fields[index]) < 5:
            characters = list(text)
            for place in (4, 2):
                if place < len(characters):
                    characters[place] = "\0"
            text, place = "".join(characters), 0
            for i in range(index, len(fields)):
                length = len(fields[i])
                fields[i] = text[place:place + length].split("\0")[0]
                place += length + 1
        return parts[2] & 0xFFFF, parts[1] & 0xFFFF, parts[0] & 0xFFFF

    def utc(self):
        y, mo, d, h, mi, s = self.time
        self.lines[0] = f" UTC: {y:04d}-{mo:02d}-{d:02d} {h:02d}:{mi:02d}:{s:02d}"

    def take_time(self, fields, index):
        self.time[3:] = self.cut(fields, index)
        self.utc()

    def take_date(self, fields, index):
        day, month, year = self.cut(fields, index)
        self.time[:3] = [(year + 2000) & 0xFFFF, month, day]
        self.utc()

    def take_position(self, fields, index):
        text, hemisphere = fields[index], fields[index + 1][:1]
        if len(text) >= 9 and text[4] == ".":
            angle = integer(text[:2]) + decimal(text[2:]) * 0.016666666666666666
            self.lines[6] = f" Latitude: {fixed(angle, 7, 9)} \u00b0" + (hemisphere + "      " if hemisphere else "")
            self.latitude = -angle if hemisphere == "S" else angle
            self.values[3] = float32(self.latitude * 111325.0)
            self.lines[8] = f" Northing: {fixed(self.values[3], 2)} m             "
        text, hemisphere = fields[index + 2], fields[index + 3][:1]
        if len(text) >= 10 and text[5] == ".":
            angle = integer(text[:3]) + decimal(text[3:]) * 0.016666666666666666
            self.lines[7] = f" Longitude: {fixed(angle, 7, 9)} \u00b0" + (hemisphere + "        " if hemisphere else "")
            self.longitude = 360.0 - angle if hemisphere == "W" else angle
            self.values[4] = float32(math.cos(self.latitude * 0.017453292519943295) * self.longitude * 111325.0)
            self.lines[9] = f" Easting: {fixed(self.values[4], 2)} m             "

    def take_hdop(self, text):
        if text:
            self.values[1] = float32(decimal(text))
            self.lines[5] = f" HDOP: {fixed(self.values[1], 1, 3)}  "

    def take_speed(self, text):
        if text:
            self.values[8] = float32(decimal(text) * 0.5147777777777778)
            self.lines[13] = f" Speed: {fixed(self.values[8], 2, 4)} m/s        "

    def take_course(self, text):
        if text:
            self.values[9] = float32(decimal(text))
            self.lines[14] = f" Course: {fixed(self.values[9], 2, 4)} \u00b0        "

    # ---- sentences

    def gpgga(self, f):
        self.take_time(f, 1)
        self.take_position(f, 2)
        if f[7]:
            self.values[0] = integer(f[7])
        self.take_hdop(f[8])
        if f[9]:
            altitude = float32(decimal(f[9]))
            self.values[7] = altitude
            self.lines[11] = f" Altitude MSL: {fixed(altitude, 2, 4)} m      "
        if f[11]:
            separation = float32(decimal(f[11]))
            self.lines[12] = f" Geoid Separation: {fixed(separation, 2, 4)} m      "
            if f[9]:
                self.values[7] = float32(altitude - separation)
        if f[6]:
            self.lines[4] = {
                0: " Fix: -                           ",
                1: f" Fix: {integer(f[7])} SVs                      ",
                2: f" Fix: {integer(f[7])} SVs DGPS Age {integer(f[13])} s        ",
                6: " Fix: Dead Reckoning              ",
            }.get(integer(f[6]), " " * 38)
        self.samples.append({"time": list(self.time), "values": list(self.values)})

    def gpgll(self, f):
        self.take_position(f, 1)
        self.take_time(f, 5)

    def gpgsa(self, f):
        self.take_hdop(f[16])
        if f[17]:
            self.values[5] = float32(decimal(f[17]))
            self.lines[10] = f" VDOP: {fixed(self.values[5], 1, 3)}  "

    def gpgsv(self, f):
        number, in_view = integer(f[2]) & 255, integer(f[3])
        if 1 <= number <= 3:
            for i in range((len(f) - 4) // 4):
                prn, elevation, _, noise = (integer(text) & 255 for text in f[4 + 4 * i:8 + 4 * i])
                self.satellites[(number - 1) * 4 + i] = [prn, elevation, noise]
        if f[2][:1] != f[1][:1]:
            return
        for satellite in self.satellites[max(0, in_view):]:
            satellite[0] = satellite[2] = 0
        rows = [" Sv:", " Cn:", " El:"]
        for i, (prn, elevation, noise) in enumerate(self.satellites):
            cells = (f"{prn:02d} " if prn <= 99 else f"{prn:03d}", f"{noise:02d} ", f" {elevation:02d}")
            rows = [row[:4 + 3 * i] + cell for row, cell in zip(rows, cells)]
        self.lines[1:4] = rows

    def gprmc(self, f):
        self.take_date(f, 9)
        self.take_time(f, 1)
        self.take_position(f, 3)
        self.take_speed(f[7])
        self.take_course(f[8])

    def gpvtg(self, f):
        self.take_course(f[1])
        self.take_speed(f[5])

    def receiver_text(self, f):
        text = f[0]
        if f[0].startswith("PSRFTXT"):
            text = f[0][7:] if len(f) < 2 else f[1]
        if text.startswith("Baud rate:"):
            self.reported = integer(text[10:])
        if len(self.text) + len(text) + 2 < 2048:
            self.text += text + "\r\n"

    # ---- SiRF binary

    def sample(self):
        self.samples.append({"time": list(self.time), "values": list(self.values)})

    def sirf_position(self, latitude, longitude):
        self.lines[8] = f" Latitude: {fixed(abs(latitude), 7, 9)} \u00b0{'S' if latitude < 0 else 'N'}      "
        self.lines[9] = f" Longitude: {fixed(abs(longitude), 7, 9)} \u00b0{'W' if longitude < 0 else 'E'}        "
        self.lines[10] = f" Northing: {fixed(self.values[3], 2)} m             "
        self.lines[11] = f" Easting: {fixed(self.values[4], 2)} m             "
        self.lines[6] = f" HDOP: {fixed(self.values[1], 1, 3)}  "

    def measured_navigation(self, p):
        x, y, z = struct.unpack(">iii", p[1:13])
        mode, hdop, svs = p[19], p[20], p[28]
        fix = mode & 7
        self.lines[5] = {
            0: " Fix: No Fix", 1: f" Fix: Degraded Kalman Filter, {svs} SVs", 2: f" Fix: Degraded Kalman Filter, {svs} SVs",
            3: f" Fix: 2D Kalman Filter, {svs} SVs", 4: f" Fix: 3D Kalman Filter, {svs} SVs",
            5: f" Fix: 2-D Least-Squares, {svs} SVs", 6: f" Fix: 3-D Least-Squares, {svs} SVs",
            7: " Fix: Dead Reckoning"}[fix] + (", DGPS" + " " * 32 if mode & 128 else " " * 38)
        self.values[0] = float(svs)
        if self.geodetic_seen:
            return
        seconds = int.from_bytes(p[24:28], "big") // 100
        self.time[3:] = [seconds // 3600 % 24, seconds // 60 % 60, seconds % 60]
        self.utc()
        self.values[1] = hdop * 0.2
        a, b = 6378137.0, 6356752.3142
        across = math.sqrt(float(x) * x + float(y) * y)
        theta = math.atan2(z * a, across * b)
        latitude = math.atan2(z + 42841.31160397719 * math.sin(theta) ** 3,
                              across - 42697.67279723614 * math.cos(theta) ** 3)
        normal = 40680631590769.0 / math.sqrt(
            40680631590769.0 * math.cos(latitude) ** 2 + 40408299984087.055 * math.sin(latitude) ** 2)
        height = across / math.cos(latitude) - normal
        latitude *= 57.29577951308232
        longitude = math.atan2(y, x) * 57.29577951308232
        self.values[3] = latitude * 111325.0
        self.values[4] = math.cos(latitude * 0.017453292519943295) * longitude * 111325.0
        self.values[7] = height
        self.sirf_position(latitude, longitude)
        self.lines[13] = f" Altitude Ellipsoid: {fixed(height, 2, 4)} m      "
        self.sample()

    def measured_tracking(self, p):
        rows = [" Sv: ", " Cn: ", " St: ", " El: "]
        for i in range(min(p[7], 12)):
            channel = p[8 + 15 * i:23 + 15 * i]
            state = int.from_bytes(channel[3:5], "big")
            noise = 0 if state == 0x00FF else sum(channel[5:15]) // 10
            sv, elevation = channel[0], channel[2] // 2
            cells = (f"{sv:03d} " if sv > 99 else f"{sv:02d} ", f"{noise:02d} ", f"{state & 255:02X} ", f"{elevation:02d} ")
            tails = ("   ", "", "   ", "   ")
            for row, (cell, tail) in enumerate(zip(cells, tails)):
                start = 4 + 3 * i + (row == 3)
                rows[row] = rows[row][:start] + cell + tail
        self.lines[1:5] = rows

    def geodetic(self, p):
        self.geodetic_seen = True
        (valid, kind) = struct.unpack(">HH", p[1:5])
        (week_ms, year, month, day, hour, minute, milliseconds) = struct.unpack(">IHBBBBH", p[7:19])
        (lat, lon, ellipsoid, msl, datum, speed, course) = struct.unpack(">iiiiBHH", p[23:44])
        (ehpe, evpe) = struct.unpack(">II", p[50:58])
        self.values[3] = lat * 0.0111325
        self.values[4] = lon * math.cos(lat * 1.7453292519943295e-9) * 0.0111325
        self.values[2], self.values[6] = ehpe * 0.01, evpe * 0.01
        self.values[7] = msl * 0.01
        self.values[1] = p[89] * 0.2
        if day:
            self.time = [year, month, day, hour, minute, milliseconds // 1000]
        else:
            seconds = (week_ms - 14000) // 1000
            self.time[3:] = [seconds // 3600 % 24, seconds // 60 % 60, seconds % 60]
        self.utc()
        self.sirf_position(lat * 1e-7, lon * 1e-7)
        self.lines[7] = f" EstimatedHorizontalPrecisionError: {fixed(self.values[2], 2, 4)} m          "
        self.lines[12] = f" EstimatedVerticalPrecisionError: {fixed(self.values[6], 2, 4)} m          "
        single = float32(float32(float(ellipsoid)) * float32(0.01))
        self.lines[13] = f" Altitude Ellipsoid: {fixed(single, 2, 4)} m      "
        self.lines[14] = f" Altitude MSL: {fixed(self.values[7], 2, 4)} m      "
        if not kind & 0x1000:
            self.values[8] = speed * 0.01
            self.lines[15] = f" Speed: {fixed(self.values[8], 2, 4)} m/s        "
        if not valid & 0x8000:
            self.values[9] = course * 0.01
            self.lines[16] = f" Course: {fixed(self.values[9], 2, 4)} \u00b0        "
        names = {21: "WGS-84", 178: "Tokyo Mean", 179: "Tokyo Japan", 180: "Tokyo Korea", 181: "Tokyo Okinawa"}
        self.lines[17] = f" Map Datum: {names.get(datum, datum)}"
        self.sample()
