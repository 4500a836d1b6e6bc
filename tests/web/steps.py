# SPDX-License-Identifier: MIT
"""Steps that several tests of the page use."""

import base64
import io
import json
import subprocess
from pathlib import Path

from PIL import Image

Root = Path(__file__).resolve().parents[2]
Pictures = Root / "build" / "web-tests"
Replay = Root / "build" / "native" / "toravane-replay"
Logs = Root / "tests" / "data"
Axe = Root / "platform" / "web" / "node_modules" / "axe-core" / "axe.min.js"

Clock = "document.querySelector('.line')?.textContent"


def lines(tab):
    """The text page."""
    return tab.run("[...document.querySelectorAll('.line')].map(line => line.textContent)")


def wait_clock(tab, seconds=30):
    """Waits until the time in the first line advances."""
    before = tab.run(Clock)
    tab.wait("the time goes on", f"{Clock} !== {json.dumps(before)}", seconds)


def choose(tab, *path):
    """Chooses an item of the menu with the mouse, by its name and the name of its menu."""
    for name in path:
        tab.find("menuitem", name).click()


def open_dialog(tab, caption, *path):
    choose(tab, *path)
    return tab.find("dialog", caption)


def close_dialog(tab, caption):
    tab.find("button", "Close dialog").click()
    wait_gone(tab, "dialog", caption)


def wait_gone(tab, role, name):
    import time
    end = time.monotonic() + 15
    while tab.find_all(role, name):
        assert time.monotonic() < end, f"the {role} {name!r} stays"
        time.sleep(0.02)


def drop(tab, file):
    """Drops a file on the page."""
    data = base64.b64encode(file.read_bytes()).decode()
    tab.run(f"""(() => {{
        const bytes = Uint8Array.from(atob("{data}"), (character) => character.charCodeAt(0));
        const transfer = new DataTransfer();
        transfer.items.add(new File([bytes], {json.dumps(file.name)}));
        for (const kind of ["dragenter", "dragover", "drop"])
            document.body.dispatchEvent(new DragEvent(kind, {{dataTransfer: transfer, bubbles: true}}));
    }})()""")


def choose_file(tab, button, file):
    """Opens a file through a button and the browser's own chooser."""
    tab.call("Page.setInterceptFileChooserDialog", enabled=True)
    chosen = []
    tab.browser.listen(tab.session, lambda method, parameters: chosen.append(parameters["backendNodeId"])
                       if method == "Page.fileChooserOpened" else None)
    tab.find("button", button).click()
    import time
    end = time.monotonic() + 10
    while not chosen:
        assert time.monotonic() < end, "no chooser opened"
        time.sleep(0.02)
    tab.call("DOM.setFileInputFiles", files=[str(file)], backendNodeId=chosen[0])


def canvas(element):
    data = element.run("function () { return this.toDataURL() }").partition(",")[2]
    return Image.open(io.BytesIO(base64.b64decode(data))).convert("RGB")


def replayed(*arguments):
    """The replay tool's output."""
    return subprocess.run([Replay, *arguments], check=True, capture_output=True, encoding="utf-8").stdout


def complaints_of_axe(tab):
    """The faults that the accessibility checker finds."""
    tab.run(Axe.read_text(encoding="utf-8") + ";0")
    found = tab.run("axe.run().then(({violations}) => violations.map("
                    "({id, nodes}) => [id, ...nodes.map(({html}) => html)]))")
    return found


def cut_texts(tab, within):
    """The texts below an element, given by a selector, that are larger than their place."""
    return tab.run(f"""[...document.querySelectorAll({json.dumps(within)} + " *")].filter((element) =>
        element.checkVisibility() && !element.matches("textarea, select, option, canvas, .arrow") &&
        (element.childElementCount === 0 || element.matches("label, button")) &&
        (element.scrollWidth > element.clientWidth + 1 && element.clientWidth > 0 ||
         element.scrollHeight > element.clientHeight + 4 && element.clientHeight > 0 &&
         getComputedStyle(element).display !== "inline")
    ).map((element) => [element.className, element.textContent || element.value,
        element.scrollWidth, element.clientWidth, element.scrollHeight, element.clientHeight])""")
