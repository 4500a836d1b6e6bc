# SPDX-License-Identifier: MIT
"""docs/protocols.md against the decoders: fields of sentences, places and types of message fields, commands as they are
written in the code. The other test links the tables and constants that headers declare; this one reads those that are
local to a source file."""

import re
import unittest
from pathlib import Path

Root = Path(__file__).resolve().parents[3]
Document = (Root / "docs" / "protocols.md").read_text()


def code(name):
    return (Root / name).read_text()


def section(heading, document=Document):
    """The text below a heading, up to the next one."""
    return re.search(rf"^#+ {re.escape(heading)}$(.*?)(?=^#|\Z)", document, re.M | re.S)[1]


def rows(heading, document=Document):
    """The cells of all tables below a heading, without the tables' own headings."""
    lines = section(heading, document).splitlines()
    return [[cell.strip() for cell in line.strip("|").split("|")] for before, line in zip(lines, lines[1:])
            if line.startswith("|") and not line.startswith("|---") and before.startswith("|")]


def numbers(text):
    return [int(number) for number in re.findall(r"\d+", text)]


# ---- NMEA ---------------------------------------------------------------------------------------------

Decoder = code("nmea/sentence_decoder.cpp")


def sentences():
    """Each sentence that the decoder knows with the body of its routine, empty for one that is ignored."""
    known = dict(re.findall(r'\{"(\w+)", [^}]*CONTROL_\w+, (\w+)\}', Decoder))
    bodies = dict(re.findall(r"^void (Decode\w+)\(\)\n\{(.*?)^\}", Decoder, re.M | re.S))
    return {name: bodies.get(routine, "") for name, routine in known.items()}


def used_fields(body):
    used = set(map(int, re.findall(r"\b(?:Take\w+|HasField|Field)\((\d+)\)", body)))
    used |= {int(index) + 1 for index in re.findall(r"\bTake(?:Latitude|Longitude)\((\d+)\)", body)}  # N or S, E or W
    group = re.search(r"FirstGroup = (\d+), FieldsPerGroup = (\d+), GroupsPerMessage = (\d+)", body)
    if group:
        first, size, count = map(int, group.groups())
        used |= set(range(first, first + size * count))
    return used


class Nmea(unittest.TestCase):
    def test_fields_of_each_sentence(self):
        decoded = {name: body for name, body in sentences().items() if body}
        self.assertEqual(len(decoded), 7)
        for name, body in decoded.items():
            with self.subTest(name):
                documented = [number for row in rows(name) for number in numbers(row[0])]
                self.assertEqual(len(documented), len(set(documented)))
                self.assertEqual(set(documented), used_fields(body))

    def test_names_of_the_receivers_own_text(self):
        documented = {row[0].strip("`") for row in rows("The receiver's own text")}
        self.assertEqual(documented, set(re.findall(r'"([A-Z][A-Za-z ]*:)"', Decoder)))

    def test_commands(self):
        literals = {literal for file in [*Root.glob("nmea/**/*.cpp"), *Root.glob("app/*.cpp")]
                    for literal in re.findall(r'"(PSRF1\d\d,[^"]*)"', file.read_text())} - {"PSRF103,0_,0_,0_,0_"}
        documented = {re.sub(r"[A-Z]+(?=,|$)", "%", row[0].strip("`")) for row in rows("NMEA commands")}
        self.assertEqual(documented, {re.sub(r"%[du]", "%", literal) for literal in literals})
        self.assertGreater(len(documented), 5)

    def test_numbers_of_choices(self):
        text = section("NMEA commands")
        datums = code("nmea/dialogs/select_datum_dialog.cpp")
        names = re.findall(r'L"([^"]+)"', re.search(r"DatumTexts\[\] = \{(.*?)\}", datums, re.S)[1])
        codes = numbers(re.search(r"DatumCodes\[\] = \{(.*?)\}", datums, re.S)[1])
        self.assertIn(", ".join(f"{number} {name}" for number, name in zip(codes, names)), text)
        kinds = re.search(r"MessageTexts\[\] = \{(.*?)\}", code("nmea/dialogs/set_message_rate_dialog.cpp"), re.S)[1]
        for number, name in enumerate(re.findall(r'L"([^"]+)"', kinds)):
            self.assertIn(f"{number} {name}" if "User" not in name else str(number), text)

    def test_fix_qualities(self):
        qualities = re.findall(r"case (\d): *\n? *FormatTextLine\(NmeaLineFix", code("nmea/page_lines.cpp"))
        self.assertIn("fix quality: {} none, {} fix, {} with corrections, {} dead reckoning".format(*qualities), Document)

    def test_factors(self):
        value = re.search(r"\bMetresPerSecondPerKnot = ([\d.]+);", Decoder)[1]
        self.assertIn(value, section("NMEA sentences"))


# ---- SiRF binary --------------------------------------------------------------------------------------

Messages = code("sirf/message_decoder.cpp")
ReadBack = code("sirf/read_back.cpp")
Sources = Messages + ReadBack + code("sirf/read_back.h")

Types = {"uint8_t": "u8", "uint16_t": "u16", "uint32_t": "u32", "int16_t": "s16", "int32_t": "s32"}


def fields(source):
    """Name, place and type of each field that is declared as one."""
    found = {}
    for kind, declared in re.findall(r"constexpr MessageField<(\w+)>\s*([^;]+);", source):
        for name, offset in re.findall(r"(\w+)\{(\d+)\}", declared):
            found[name] = int(offset), Types[kind]
    return found


def routine(source, name):
    return re.search(rf"^void {name}\([^)]*\)\n\{{(.*?)^\}}", source, re.M | re.S)[1]


def documented_fields(*headings):
    return {row[2]: (int(row[0]), row[1].replace("f32", "u32")) for heading in headings for row in rows(heading)}


def part(start, end):
    """A part of the decoder, from one heading in it to another."""
    return Messages[Messages.index(start):Messages.index(end)]


class Sirf(unittest.TestCase):
    def test_names_of_messages(self):
        names = dict(row for row in rows("Message numbers"))
        for number, name, _ in rows("SiRF binary messages"):
            self.assertEqual(name, names[number])

    def test_navigation_fields(self):
        second = fields(part("// ---- Message id 2", "// ---- Message id 41"))
        time_of_week = second.pop("TimeOfWeekMs")  # declared early, but of message 41
        self.assertEqual(documented_fields("Message 2"), second)
        geodetic = fields(part("// ---- Message id 41", "// ---- Message id 4:"))
        self.assertEqual(documented_fields("Message 41"), geodetic | {"TimeOfWeekMs": time_of_week})
        self.assertGreater(len(geodetic), 15)

    def test_tracking_fields(self):
        source = part("// ---- Message id 4:", "// ---- Answers")
        places = dict(re.findall(r"(\w+) = (\d+)", source))
        text = section("Message 4")
        for row in rows("Message 4"):
            if row[2] in fields(source):
                self.assertEqual((int(row[0]), row[1]), fields(source)[row[2]])
            else:
                self.assertEqual(row[0], places[row[2]])
        self.assertEqual(len(rows("Message 4")), len(fields(source)) + 3)
        self.assertIn(f"{places['TrackedChannelBytes']} bytes (TrackedChannelBytes)", text)
        self.assertIn(f"{places['CarrierToNoiseCount']} measurements (CarrierToNoiseCount)", text)

    def test_navigation_parameters(self):
        documented = documented_fields("Message 19")
        for name, place in fields(routine(ReadBack, "ShowNavigationParameters")).items():
            self.assertEqual(documented.pop(name), place)
        power = re.search(r"constexpr uint32_t (Enabled = [^;]*);", code("sirf/setting_values.cpp"))[1]
        self.assertEqual(documented, {name: (int(place), "u8") for name, place in re.findall(r"(\w+) = (\d+)", power)})

    def test_corrections(self):
        status = dict(re.findall(r"(\w+) = (\d+)", routine(ReadBack, "ShowDgpsStatus").split(";")[0]))
        self.assertEqual({row[2]: row[0] for row in rows("Message 27")},
                         {name: status[name] for name in ("Source", "Ages", "FirstSatellite")})
        text = section("Message 27")
        self.assertIn(f"{status['Satellites']} satellites (Satellites)", text)
        self.assertIn(f"{status['SatelliteBytes']} bytes (SatelliteBytes)", text)
        body = routine(ReadBack, "ShowCorrection")
        source = re.search(r"constexpr uint32_t Source = (\d+);", body)[1]
        self.assertEqual(documented_fields("Message 29"), fields(body) | {"Source": (int(source), "u8")})

    def test_messages_that_are_not_listed(self):
        unlisted = re.findall(r"case (\d+):", code("sirf/arrival_list.cpp"))
        self.assertIn(f"not listed there are {', '.join(unlisted[:-1])} and {unlisted[-1]}.",
                      section("SiRF binary messages"))

    def test_sizes_of_what_is_kept(self):
        sizes = [re.search(rf"{name}\[(\d+)\]", Messages)[1] for name in ("InternalMessageText", "DevelopmentText")]
        self.assertIn(f"225 and 255 are kept ({sizes[0]} and {sizes[1]} bytes)", section("SiRF binary messages"))

    def test_reset_configuration(self):
        source = code("sirf/dialogs/initialize_data_source.cpp")
        bits = {name.replace("_", " ").title(): value for name, value in
                re.findall(r"\{CONTROL_INIT_(\w+), 0x(\w\w)", source)}
        text = re.search(r"Reset configuration: (.*?)\(hexadecimal\)", Document, re.S)[1]
        documented = {name.strip(" ,;").replace("(", "").replace(")", ""): value for name, value in
                      re.findall(r"([A-Za-z() ]+) (\d\d)(?=[,;\s])", text.replace("\n", " ").replace("and ", ""))}
        self.assertEqual({name.title(): value for name, value in documented.items()}, bits)

    def test_switch_to_nmea(self):
        self.assertIn("payload[22] = static_cast<uint8_t>(baud >> 8)", code("sirf/switch_to_nmea_command.cpp"))
        self.assertEqual([row[0] for row in rows("129 Switch to NMEA Protocol, 24 bytes")], ["1", "2 to 21", "22"])

    def test_polls(self):
        sender = code("sirf/frame_sender.cpp")
        self.assertEqual(re.findall(r"payload\[\] = \{(\d+), (?:0|commandId)\}", sender), ["132", "152", "168"])
        for heading in ("132 Poll Software Version", "152 Poll Navigation Parameters", "168 Poll Parameters"):
            section(heading + ", 2 bytes")


# ---- What the text says -------------------------------------------------------------------------------

# File, pattern in it, and the phrase that the document makes of the number that the pattern finds.
Facts = [
    ("nmea/sentence_assembler.cpp", r"ShortestMeasuredBody = (\d+)", lambda n: f"more than {n - 1} characters"),
    ("nmea/sentence_assembler.cpp", r"b >= 0x(\w+) && b <= 0x7E", lambda n: f"{n} to 7E hexadecimal"),
    ("nmea/sentence_decoder.cpp", r"MaxFields = (\d+)", lambda n: f"Up to {n} fields"),
    ("nmea/dialogs/development_data_dialog.cpp", r"MaxCharacters = (\d+)", lambda n: f"up to {n} characters |"),
    ("sirf/frame_assembler.cpp", r"MeasuredLength = (\d+)", lambda n: f"messages of {n} bytes"),
    ("sirf/message_decoder.cpp", r"LeapMilliseconds = (\d+)000", lambda n: f"time of week less {n} s"),
    ("sirf/message_decoder.cpp", r"ChannelElevation\) / (\d)", lambda n: f"in {1 / n} degrees"),
    ("sirf/message_decoder.cpp", r"ChannelAzimuth\) \* (\d) / 2", lambda n: f"in {n / 2} degrees"),
    ("sirf/message_decoder.cpp", r"PollParameter = (\d+)", lambda n: f"A refused poll ({n})"),
    ("sirf/read_back.cpp", r"MaxCharacters = (\d+)", lambda n: f"up to {n} characters or a zero"),
    ("sirf/setting_values.cpp", r"WithPowerManagement = (\d+)", lambda n: f"If offset 1 is {n} (WithPowerManagement)"),
    ("sirf/setting_values.cpp", r"message\[Enabled\] >> (\d)", lambda n: f"bit {n}: on; bits 0 to 4: duty cycle, 5 %"),
    ("sirf/setting_values.cpp", r"message\[Priorities\] >> (\d) & 3", lambda n: f"bits {n} and {n + 1} accuracy"),
    ("sirf/command_layouts.cpp", r"hertz >= (\d+)", lambda n: f"The frequency is 0 or at least {n}, the bit rate 0, "),
]


class Text(unittest.TestCase):
    text = " ".join(Document.split())

    def test_facts(self):
        for file, pattern, phrase in Facts:
            with self.subTest(file=file, pattern=pattern):
                self.assertIn(phrase(int(re.search(pattern, code(file))[1])), self.text)

    def test_frame_bytes(self):
        framer = code("sirf/frame_assembler.cpp")
        start1, start2, end1, end2 = re.findall(r"(?:Start|End)Byte\d = 0x(\w\w)", framer)
        self.assertIn(f"| 2 | {start1} {start2} |", self.text)
        self.assertIn(f"| 2 | {end1} {end2} |", self.text)

    def test_beacon_bit_rates(self):
        rates = re.findall(r"bitsPerSecond == (\d+)", code("sirf/command_layouts.cpp"))
        self.assertIn(f"the bit rate {', '.join(rates[:-1])} or {rates[-1]}.", self.text)

    def test_bits_of_message_41(self):
        for name, phrase in (("NoCourse", "bit {}: course is not valid"), ("NoSpeed", "bit {}: speed is not valid")):
            mask = int(re.search(rf"{name} = (0x\w+)", Messages)[1], 16)
            self.assertIn(phrase.format(mask.bit_length() - 1), self.text)

    def test_resets_of_nmea(self):
        resets = dict(re.findall(r"\{CONTROL_NAVINIT_(\w+), (\d)\}",
                                 code("nmea/dialogs/navigation_initialization_dialog.cpp")))
        self.assertIn("reset: {SNAP_START} snap, {HOT_START} hot, {WARM_START_NO_INIT} warm without and "
                      "{WARM_START_INIT} with the values before, {COLD_START} cold, {FACTORY_RESET} factory"
                      .format(**resets), self.text)

    def test_hot_start(self):
        self.assertEqual(self.text.count(re.search(r'NmeaSendFromReader\("([^"]+)"', code("app/start_up_text.cpp"))[1]), 2)


if __name__ == "__main__":
    unittest.main()
