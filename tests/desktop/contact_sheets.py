# SPDX-License-Identifier: MIT
"""Pictures of every dialog on each hand-held device, screen by screen, in build/contact-sheets/: to be looked at.
Names of devices as arguments choose some of them."""

import sys
import time

from PIL import Image, ImageDraw

import harness
from harness import desktop, wait_for
from resource_ids import Id

Rate = 38400
Items = (Id.COMMAND_ABOUT, Id.COMMAND_COMMUNICATION,
         *(number for name, number in vars(Id).items() if name.startswith(("DIALOG_NMEA_", "DIALOG_SIRF_"))),
         Id.COMMAND_GRAPH)
Folder = desktop.Build / "contact-sheets"
Margin, TextHeight, RowWidth = 8, 14, 1500
WM_COMMAND, WM_VSCROLL, SB_PAGEDOWN = 0x111, 0x115, 3


def settled(user, device):
    """The screen, once it has stopped changing, as it does between the receiver's messages."""
    picture = None
    while picture is None or picture.tobytes() != user.screen(device).tobytes():
        picture = user.screen(device)
        time.sleep(0.2)
    return picture


def photograph(user, device, item):
    """The caption of a command's dialog, and its screens from top to bottom."""
    user.choose(item)
    window = wait_for(f"a dialog of {item}", lambda: next(
        (w for w in user.driver.windows() if w["class"] == harness.DialogClass), None))
    dialog = harness.Dialog(user, window)
    time.sleep(0.5)  # for what it asks the receiver
    screens, top = [], None
    while top != (top := dialog.controls()[0]["outer"][1]):  # until a page further is no further
        screens.append(settled(user, device))
        user.driver.post(dialog.window, WM_VSCROLL, SB_PAGEDOWN)
        time.sleep(0.3)
    user.driver.post(dialog.window, WM_COMMAND, 1)
    dialog.wait_gone()
    return dialog.caption, screens


def arrange(pictures):
    """One sheet of all (caption, screens)."""
    width, height = pictures[0][1][0].size
    places, left, top = [], Margin, Margin
    for caption, screens in pictures:
        wide = len(screens) * (width + 2)
        if left + wide > RowWidth:
            left, top = Margin, top + height + TextHeight + Margin
        places.append((left, top, caption, screens))
        left += wide + Margin
    sheet = Image.new("RGB", (RowWidth, top + height + TextHeight + Margin), "grey")
    draw = ImageDraw.Draw(sheet)
    for left, top, caption, screens in places:
        draw.text((left, top), caption)
        for i, screen in enumerate(screens):
            sheet.paste(screen, (left + i * (width + 2), top + TextHeight))
    return sheet


def main():
    user = harness.User()
    Folder.mkdir(parents=True, exist_ok=True)
    try:
        for device in sys.argv[1:] or desktop.Handhelds:
            user.tidy()
            user.connect_receiver(Rate, "--protocol", "sirf", "--start", "hot")
            user.store(CommPortIdx=harness.Port, BaudrateIdx=desktop.Rates.index(Rate))
            user.start_handheld(device)
            user.main_window()
            time.sleep(5)  # for the first fixes
            pictures = [("Main window", [user.screen(device)])]
            pictures += [photograph(user, device, item) for item in Items]
            arrange(pictures).save(Folder / f"{device}.png")
            print(Folder / f"{device}.png", flush=True)
        user.tidy()
    finally:
        user.leave()


if __name__ == "__main__":
    main()
