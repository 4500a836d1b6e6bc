# SPDX-License-Identifier: MIT
"""The check of the user guide notices missing texts, and finds the program's texts."""

import importlib.machinery
import importlib.util
import sys
import unittest
import unittest.mock
from pathlib import Path

Root = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(Root / "tools"))
loader = importlib.machinery.SourceFileLoader("check_guide", str(Root / "tools" / "check_guide"))
check_guide = importlib.util.module_from_spec(importlib.util.spec_from_loader("check_guide", loader))
loader.exec_module(check_guide)

Guide = check_guide.guide_text()

# A caption, texts of boxes, a filled-in text, a label, a menu item, a list's entry, a text in two pieces.
Examples = [
    ("Alt Hold Mode", "`Alt Hold Mode`"),
    ("Range 0-255", "`Range 0-255` "),
    ("Range 10-180", "`Range 10-180`"),
    ("Could only write %u of %u bytes.", "`Could only write 12 of 25 bytes.`"),
    ("Dead Reckoning Timeout [s]", "*Dead Reckoning Timeout [s]*"),
    ("Set Serial Port (Switch to SiRF)", "*Set Serial Port (Switch to SiRF)*"),
    ("Hold clock,direction", "; Hold clock,direction;"),
    ("Use joystick to toggle graph/text.", "`Use joystick to toggle\ngraph/text.`"),
]


def missing(guide):
    return {check_guide.squeezed(text) for text, _ in check_guide.missing(guide)}


class GuideCheck(unittest.TestCase):
    def test_complete(self):
        self.assertEqual(missing(Guide), set())

    def test_each_lost_text_is_noticed(self):
        for text, marked in Examples:
            with self.subTest(text):
                guide = Guide.replace(marked, marked[0] + "gone" + marked[-1])
                guide = guide.replace("(Switch to SiRF)\n", "\n") if "Switch" in text else guide
                self.assertNotEqual(guide, Guide)
                self.assertEqual(missing(guide), {text})

    def test_changed_number_is_noticed(self):
        self.assertEqual(missing(Guide.replace("Range 200-900 ms", "Range 200-800 ms")), {"Range 200-900 ms"})

    def test_empty_guide_lacks_all(self):
        self.assertEqual(len(missing("")), len({*map(check_guide.squeezed, check_guide.program_texts())}))
        self.assertGreater(len(check_guide.program_texts()), 350)

    def test_texts_of_code(self):
        source = 'InfoBox(L"Caption", L"One "  // note: L"no"\n L"two\\r\\nthree"); SettingsGetDword(L"Name", -1);'
        self.assertEqual([*check_guide.code_texts(source)], ["Caption", "One two three"])

    def test_texts_of_resources(self):
        source = '// "no"\nLTEXT "Mask [\\x00B0]", 1\nPUSHBUTTON "Find && Go", 2\nFONT 8, "Font"\n'
        self.assertEqual([*check_guide.resource_texts(source)], ["Mask [°]", "Find & Go"])

    def test_a_picture_is_noticed_when_its_source_or_its_size_changes(self):
        pictures = check_guide.guide_pictures
        pages = pictures.pages()
        self.assertEqual([*pictures.faults(pages)], [])
        with unittest.mock.patch.object(pictures, "significant", lambda file: b"another source"):
            self.assertEqual(len([*pictures.faults(pages)]), len(pictures.Sources))
        with unittest.mock.patch.object(pictures, "size", lambda name: "1x1"):
            self.assertEqual(len([*pictures.faults(pages)]), len(pictures.Sources))
        without = pages.replace("images/sbas.png", "images/other.png")
        self.assertEqual([*pictures.faults(without)],
                         ["docs/images/other.png: missing", "docs/images/sbas.png: shown nowhere"])


if __name__ == "__main__":
    unittest.main()
