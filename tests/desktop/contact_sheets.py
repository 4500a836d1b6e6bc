# SPDX-License-Identifier: MIT
"""Makes pictures of every dialog on the desktop and on each hand-held device, screen by screen, in
build/contact-sheets/, to be looked at. Names of devices as arguments select some devices."""

import sys
import time

from PIL import Image, ImageDraw, ImageGrab

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


def seen(user, device, window):
    """The picture of a window; on a hand-held device, of the whole screen."""
    if device in desktop.Handhelds:
        return user.screen(device)
    place = next(w["outer"] for w in user.driver.windows() if w["window"] == window)
    return ImageGrab.grab(bbox=place, xdisplay=user.display.name).convert("RGB")


def settled(user, device, window):
    """The same, when it no longer changes, as between the receiver's messages."""
    picture = None
    while picture is None or picture.tobytes() != seen(user, device, window).tobytes():
        picture = seen(user, device, window)
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
    while top != (top := dialog.controls()[0]["outer"][1]):  # until the next page is the last one
        screens.append(settled(user, device, dialog.window))
        user.driver.post(dialog.window, WM_VSCROLL, SB_PAGEDOWN)
        time.sleep(0.3)
    user.driver.post(dialog.window, WM_COMMAND, 1)
    dialog.wait_gone()
    return dialog.caption, screens


def arrange(pictures):
    """One sheet with all (caption, screens), in rows."""
    places, left, top, bottom = [], Margin, Margin, Margin
    for caption, screens in pictures:
        wide = sum(screen.width + 2 for screen in screens)
        if left + wide > RowWidth:
            left, top = Margin, bottom + Margin
        places.append((left, top, caption, screens))
        left += wide + Margin
        bottom = max(bottom, top + TextHeight + screens[0].height)
    sheet = Image.new("RGB", (RowWidth, bottom + Margin), "grey")
    draw = ImageDraw.Draw(sheet)
    for left, top, caption, screens in places:
        draw.text((left, top), caption)
        for screen in screens:
            sheet.paste(screen, (left, top + TextHeight))
            left += screen.width + 2
    return sheet


def main():
    user = harness.User(fonts=desktop.caption_fonts())
    Folder.mkdir(parents=True, exist_ok=True)
    try:
        for device in sys.argv[1:] or ("desktop", *desktop.Handhelds):
            user.tidy()
            user.connect_receiver(Rate, "--protocol", "sirf", "--start", "hot")
            user.store(CommPortIdx=harness.Port, BaudrateIdx=desktop.Rates.index(Rate))
            if device in desktop.Handhelds:
                user.start_handheld(device)
            else:
                user.start()
            window = user.main_window()["window"]
            time.sleep(5)  # for the first fixes
            pictures = [("Main window", [seen(user, device, window)])]
            pictures += [photograph(user, device, item) for item in Items]
            arrange(pictures).save(Folder / f"{device}.png")
            print(Folder / f"{device}.png", flush=True)
        user.tidy()
    finally:
        user.leave()


if __name__ == "__main__":
    main()
