# SPDX-License-Identifier: MIT
"""Boxes of the receiver over an open dialog, answered with real keys: the focus returns to its field."""

import pytest

from harness import VK_DOWN, VK_ESCAPE, VK_RETURN, Port, desktop, frame, wait_for
from resource_ids import Id

VK_TAB, VK_F1 = 0x09, 0x70
ElevationMask, Tracking, Navigation = (Id.DIALOG_SIRF_ELEVATION_MASK, Id.CONTROL_ELEVATION_TRACKING,
                                       Id.CONTROL_ELEVATION_NAVIGATION)
WM_CLOSE = 0x10


class Layout:
    """The start of the program, and the keys of a user of that screen."""

    def __init__(self, user, handheld):
        self.user = user
        self.line = user.connect()
        user.store(CommPortIdx=Port, BaudrateIdx=desktop.Rates.index(38400))
        if handheld:
            user.start_handheld("smartphone")
        else:
            user.start()
        self.next, self.leave = (VK_DOWN, VK_F1) if handheld else (VK_TAB, VK_ESCAPE)
        wait_for("the program sets the line's rate", lambda: self.line.rate() == 38400)
        user.choose(ElevationMask)
        self.dialog = user.dialog("Elevation Mask")
        self.type_in(Tracking, "1")
        user.press(self.next)
        self.wait_focus(Navigation)

    def focus(self):
        window = self.user.driver.focus(self.dialog.window)
        return next((c["id"] for c in self.dialog.controls() if c["window"] == window), None)

    def wait_focus(self, number):
        wait_for(f"control {number} has the focus", lambda: self.focus() == number)

    def type_in(self, number, digits):
        """Types into the field that has the focus."""
        self.wait_focus(number)
        before = self.dialog.text(number)
        self.user.press(*map(ord, digits))
        wait_for("the keys have typed", lambda: self.dialog.text(number) == before + digits)

    def refuse(self, command):
        self.line.send(frame(bytes([12, command])))

    def answer(self, caption, text):
        """Presses Enter on a box."""
        box = self.user.dialog(caption)
        wait_for("the box is the right one", lambda: text in " ".join(box.texts))
        wait_for("the box is in front", lambda: any(
            w["window"] == box.window and w["foreground"] for w in self.user.driver.windows()))
        self.user.press(VK_RETURN)
        box.wait_gone()

    def keyboard_works(self):
        """The field still has the focus and accepts keys, the next field is reached, and the dialog closes."""
        self.type_in(Navigation, "7")
        self.user.press(self.next)
        wait_for("the focus moves", lambda: self.focus() not in (None, Navigation))
        assert not self.user.main_window()["enabled"]
        self.user.press(self.leave)
        self.dialog.wait_gone()
        wait_for("the window is enabled", lambda: self.user.main_window()["enabled"])


@pytest.fixture(params=[False, True], ids=["desktop", "keypad"])
def layout(user, request):
    return Layout(user, request.param)


def test_refusal_gives_the_keyboard_back(layout):
    layout.refuse(139)
    layout.answer("NAcknowledgment", "Command 139")
    layout.keyboard_works()


def test_refusals_in_a_row_give_the_keyboard_back(layout):
    layout.refuse(139)
    layout.refuse(140)
    layout.answer("NAcknowledgment", "Command 139")
    layout.answer("NAcknowledgment", "Command 140")
    layout.keyboard_works()


def test_refusal_over_a_box_of_the_dialog_gives_the_keyboard_back(layout):
    """Both boxes are answered in turn; the dialog is disabled as long as one of them is up."""
    layout.type_in(Navigation, "9999")  # out of range
    layout.dialog.press(Id.CONTROL_ELEVATION_SET)
    box = layout.user.dialog("Navigation Mask")
    layout.refuse(139)
    layout.answer("NAcknowledgment", "Command 139")
    wait_for("the first box is in front", lambda: any(
        w["window"] == box.window and w["foreground"] for w in layout.user.driver.windows()))
    layout.user.press(VK_RETURN)
    box.wait_gone()
    wait_for("the dialog has the focus", layout.focus)
    assert not layout.user.main_window()["enabled"]
    layout.user.press(layout.leave)
    layout.dialog.wait_gone()
