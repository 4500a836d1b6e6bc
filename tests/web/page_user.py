# SPDX-License-Identifier: MIT
"""A user of the page, with the same acts as the user of the desktop program: the same tests run with both. Reads the
page's own elements, and acts with keys, mouse and their events.
"""

import base64
import io
import json
import os
import shutil
import tempfile
from pathlib import Path

import harness
from chromium import Chromium
from harness import desktop, raw, wait_for
from resource_ids import Id
from serial_bridge import Bridge

Usb = {"usbVendorId": 0x067B, "usbProductId": 0x2303}
SilentPort = 8
Names = {str(number): "USB 067b:2303" for number in range(1, 9)}  # so that each port keeps its number
Keys = {0x0D: "Enter", 0x1B: "Escape", 0x25: "ArrowLeft", 0x26: "ArrowUp", 0x27: "ArrowRight", 0x28: "ArrowDown",
        0x79: "F10", 0x09: "Tab", 0x20: " "}

Eyes = """
self.eyes = {
    windows() {
        const found = [...document.querySelectorAll("dialog[open]")].map((dialog) => ({
            window: Number(dialog.dataset.window), class: "#32770", enabled: 0, foreground: 0,
            text: dialog.querySelector("h2").textContent,
            client: [], outer: [],
        }));
        if (found.length) found.at(-1).enabled = found.at(-1).foreground = 1;
        const chart = document.getElementById("chart");
        if (!document.querySelector("#view").hidden)
            found.unshift({window: 0, class: "Toravane", text: document.title, enabled: found.length ? 0 : 1,
                           client: [0, 0, chart.width, chart.height], outer: []});
        return found;
    },
    controls(window) {
        const dialog = document.querySelector(`dialog[data-window="${window}"]`);
        if (!dialog) return [];
        if (dialog.matches(".box")) {
            const text = toravane.windows.get(window).text;
            const shown = dialog.querySelector("p").textContent;
            if (shown !== text.replace(/\\r\\n?/g, "\\n")) throw Error("the box shows another text: " + shown);
            const buttons = [...dialog.querySelectorAll(".buttons button")].map((button, index) => (
                {window: `${window}/${index}`, class: "Button", id: index, text: button.textContent, enabled: 1,
                 checked: 0}));
            return [{window: -1, class: "Static", id: 0xffff, text, enabled: 1, checked: 0}, ...buttons];
        }
        return [...dialog.querySelectorAll("[data-control]")].map((element) => {
            const field = element.matches(".tick, .combo") ? element.querySelector("input") : element;
            const kind = element.matches(".tick, button:not(.colour)") ? "Button" :
                element.matches("select[size]") ? "ListBox" :
                element.matches("select, .combo") ? "ComboBox" :
                element.matches("input, textarea") ? "Edit" : "Static";
            const text = element.matches("select") ? (element.selectedOptions[0]?.textContent ?? "") :
                element.matches("textarea") ? field.value.replace(/\\n/g, "\\r\\n") :
                element.matches("input, .combo") ? field.value : element.textContent;
            const place = element.getBoundingClientRect();
            return {window: Number(element.dataset.window), class: kind, id: Number(element.dataset.control), text,
                    enabled: field.disabled ? 0 : 1, visible: element.hidden ? 0 : 1,
                    checked: field.indeterminate ? 2 : field.checked ? 1 : 0,
                    outer: [place.left, place.top, place.right, place.bottom].map(Math.round)};
        });
    },
    find: (window) => typeof window === "string" ?
        document.querySelectorAll(`[data-window="${window.split("/")[0]}"] .buttons button`)[window.split("/")[1]] :
        document.querySelector(`.client [data-window="${window}"]`),
    list: (window) => eyes.find(window).matches("select") ? eyes.find(window) :
        eyes.find(window).querySelector("select"),
    centre(element) {
        element.scrollIntoView({block: "nearest"});
        const {left, top, width, height} = element.getBoundingClientRect();
        const [x, y] = [left + width / 2, top + height / 2];
        const there = document.elementFromPoint(x, y);
        return [x, y, there && (element.contains(there) || there.contains(element))];
    },
};
"""


class PageDriver:
    """The routines of tools/desktop/driver.py, for a page."""

    def __init__(self, user):
        self.user = user

    def run(self, expression):
        return self.user.tab.run(expression)

    def windows(self):
        return self.run("self.eyes && document.body ? eyes.windows() : []") if self.user.tab else []

    def controls(self, window):
        return self.run(f"eyes.controls({window})")

    def main_window(self):
        return next((w for w in self.windows() if w["class"] == "Toravane" and w["text"] == "Toravane"), None)

    def click(self, button):
        """Clicks with the mouse; the browser does not press disabled elements."""
        x, y, reachable = self.run(f"eyes.centre(eyes.find({json.dumps(button)}))")
        assert reachable, f"something covers the button {button}"
        self.user.tab.click_at(x, y)

    def set_text(self, control, text):
        self.run(f"(() => {{const e = eyes.find({control});"
                 " const f = e.matches('.combo') ? e.querySelector('input') : e; f.focus(); f.select()})()")
        if text:
            self.user.tab.call("Input.insertText", text=text)
        else:
            self.user.tab.key("Backspace")

    def items(self, control):
        """Ports with the program's names for them, which the page does not show."""
        items, selection = self.run(f"""(({{options, selectedIndex, dataset}}) => [[...options].map(
            ({{value, textContent}}) => dataset.control === "{Id.CONTROL_COM_PORT}" ?
                `COM${{value}}: ${{textContent}}` : textContent), selectedIndex])(eyes.list({control}))""")
        return items, selection

    def select(self, control, index):
        self.run(f"(() => {{const list = eyes.list({control}); list.selectedIndex = {index};"
                 " list.dispatchEvent(new Event('change', {bubbles: true}))})()")

    def post(self, window, message, wparam=0, _=0):
        if message == raw.WM_COMMAND:
            self.run(f"document.querySelector('[data-command=\"{wparam}\"]').click()")
        elif message == raw.WM_SYSCOMMAND and wparam == raw.SC_CLOSE:
            self.run(f"document.querySelector('dialog[data-window=\"{window}\"] .cross').click()")
        elif message == raw.WM_CLOSE and window == 0:
            self.run(f"document.querySelector('[data-command=\"{Id.COMMAND_EXIT}\"]').click()")
        else:
            raise NotImplementedError(f"message {message:#x} to {window}")

    def menu(self, _, number):
        """The items in the order of the menu bar, as the template's."""
        assert number == Id.MENU_MAIN, "the page has the menu of touch screens and desktops"
        if not self.user.tab:
            self.user.start()
        return self.run("""[...document.querySelectorAll("#menubar [data-command]")].filter(
            ({dataset}) => dataset.command !== "0").map((item) => {
                const menu = item.closest("[role=menu]");
                const path = (menu ? menu.getAttribute("aria-label") + "/" : "") + item.textContent;
                return {id: Number(item.dataset.command), path};
            })""")

    def focus(self, _):
        return self.run("Number(document.activeElement?.closest('[data-window]')?.dataset.window ?? 0)")

    def key(self, virtual_key):
        self.user.tab.key(Keys.get(virtual_key) or chr(virtual_key).lower())

    def page(self, _):
        return [line.rstrip() for line in self.run("[...document.querySelectorAll('.line')].map(l => l.textContent)")]


class Wires:
    """The terminal at the other end of each port, as links, like those of Wine."""

    def __init__(self):
        self.prefix = Path(tempfile.mkdtemp(prefix="toravane-ports-"))
        (self.prefix / "dosdevices").mkdir()

    def map_port(self, number, device):
        link = self.prefix / "dosdevices" / f"com{number}"
        link.unlink(missing_ok=True)
        link.symlink_to(device)

    def device(self, port):
        """Number of the browser's port: the program's number minus one."""
        link = self.prefix / "dosdevices" / f"com{port + 1}"
        return os.readlink(link) if link.is_symlink() else None

    def close(self):
        shutil.rmtree(self.prefix, ignore_errors=True)


class PageProgram:
    def __init__(self, user):
        self.user = user

    def running(self):
        return self.user.driver.main_window() is not None

    def wait_end(self, seconds=30):
        wait_for("the program ends", lambda: not self.running(), seconds)
        return 0


class PageUser(harness.User):
    """A user with a browser and access to the ports 1 to 8. Acts that only a desktop has fail at once."""

    def __init__(self, server):
        self.server = server
        self.browser = Chromium()
        self.wine = Wires()
        self.driver = PageDriver(self)
        self.tab = self.bridge = None
        self.values = {}
        self.programs, self.receivers, self.lines = [], [], []

    def leave(self):
        self.tidy()
        self.browser.close()
        self.wine.close()

    def tidy(self):
        if self.tab:
            self.bridge.close()
            self.tab.close()
            self.tab = self.bridge = None
        for receiver in self.receivers:
            desktop.stop(receiver)
        for line in self.lines:
            line.close()
        for left in (self.programs, self.receivers, self.lines):
            left.clear()
        for link in (self.wine.prefix / "dosdevices").iterdir():
            link.unlink()
        self.values = {}

    def store(self, **values):
        self.values |= values
        if self.tab:
            for name, value in values.items():
                self.tab.run(f"localStorage.setItem({json.dumps(name)}, '{value}')")

    def stored(self, name):
        value = self.tab.run(f"localStorage.getItem({json.dumps(name)})")
        return None if value is None else int(value)

    def start(self, *arguments, environment=None, file=None):
        assert not arguments and not environment and not file, "a page has no command line and one layout"
        settings = self.values
        if self.tab:  # a new start keeps the stored settings
            settings = self.tab.run("({...localStorage})") | {name: str(value) for name, value in settings.items()}
            self.bridge.close()
            self.tab.close()
        self.values = {}
        opens = {"CommPortIdx", "BaudrateIdx"} <= settings.keys()
        opened = {} if opens else self.silent_port()
        self.tab = self.browser.tab()
        self.bridge = Bridge(self.tab, [Usb] * 8, self.wine.device)
        self.tab.before_load(Eyes)
        self.tab.visit(self.server.address + "icon.svg")  # of the same origin: only its settings are needed
        for name, value in ({"Ports": json.dumps(Names)} | settings | opened).items():
            self.tab.run(f"localStorage.setItem({json.dumps(name)}, {json.dumps(str(value))})")
        self.tab.visit(self.server.address)
        self.tab.wait("the program runs", "document.querySelectorAll('.line').length === 19")
        if not opens:
            self.close_silent_port(opened.keys() - settings.keys(), settings)
        program = PageProgram(self)
        self.programs.append(program)
        return program

    # Where the desktop program opens nothing, the page would open its own receiver: it gets a silent line, and closes it.

    def silent_port(self):
        line = harness.Line()
        self.lines.append(line)
        self.wine.map_port(SilentPort, line.device)
        return {"CommPortIdx": SilentPort, "BaudrateIdx": 2}

    def close_silent_port(self, added, settings):
        is_open = "document.getElementById('receiver').textContent.startsWith('USB')"
        self.tab.wait("the silent line is open", is_open)
        self.tab.run("toravane.program.connect(-1, 0)")
        self.tab.wait("it is closed", f"!{is_open}")
        (self.wine.prefix / "dosdevices" / f"com{SilentPort}").unlink()
        for name in added:
            self.tab.run(f"localStorage.removeItem('{name}')")
        for name, value in settings.items():
            self.tab.run(f"localStorage.setItem({json.dumps(name)}, {json.dumps(str(value))})")

    def close(self):
        self.driver.post(0, raw.WM_CLOSE)

    def screenshot(self, name):
        safe = "".join(c if c.isalnum() or c in "-." else "_" for c in name)
        return self.tab and self.tab.screenshot(harness.Output.parent / "web-tests" / f"{safe}.png")

    def picture(self):
        from PIL import Image
        data = self.tab.run("document.getElementById('chart').toDataURL()").partition(",")[2]
        return Image.open(io.BytesIO(base64.b64decode(data))).convert("RGB")
