# SPDX-License-Identifier: MIT
"""A headless Firefox, controlled through its Marionette port."""

import atexit
import base64
import json
import os
import shutil
import socket
import subprocess
import tempfile
import time
from pathlib import Path

Preferences = {
    "dom.webserial.enabled": True,
    "dom.webserial.gated": False,  # no add-on must be installed first
    "datareporting.policy.dataSubmissionEnabled": False,
    "app.update.enabled": False,
    "browser.shell.checkDefaultBrowser": False,
    "network.captive-portal-service.enabled": False,
    "network.connectivity-service.enabled": False,
    "intl.accept_languages": "en-US",
}
ElementKey = "element-6066-11e4-a52e-4f735466cecf"


class FirefoxError(Exception):
    """Firefox refused a command, or a script in the page threw."""


class Firefox:
    def __init__(self, preload=None, dark=False, zoom=1, patience=60):
        self.home = Path(tempfile.mkdtemp(prefix="toravane-firefox-"))
        profile = self.home / "profile"
        profile.mkdir()
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            port = probe.getsockname()[1]
        preferences = Preferences | {"marionette.port": port, "ui.systemUsesDarkTheme": int(dark),
                                     "layout.css.prefers-color-scheme.content-override": 0 if dark else 1,
                                     "layout.css.devPixelsPerPx": str(float(zoom))}
        (profile / "user.js").write_text("".join(
            f"user_pref({json.dumps(name)}, {json.dumps(value)});\n" for name, value in preferences.items()))
        environment = os.environ | {"HOME": str(self.home), "MOZ_HEADLESS": "1"}
        if preload:
            environment["LD_PRELOAD"] = str(preload)
        self.process = subprocess.Popen(
            ["firefox-esr", "--headless", "--marionette", "--remote-allow-system-access", "--profile", str(profile),
             "--no-remote"], env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        atexit.register(shutil.rmtree, self.home, ignore_errors=True)  # also after an error
        atexit.register(self.process.kill)
        end = time.monotonic() + patience
        while True:
            try:
                self.socket = socket.create_connection(("127.0.0.1", port))
                break
            except OSError:
                if time.monotonic() > end:
                    raise FirefoxError("does not start") from None
                time.sleep(0.1)
        self.socket.settimeout(patience)
        self.rest = b""
        self.number = 0
        self._read()
        self.call("NewSession", capabilities={})

    def _read(self):
        while b":" not in self.rest:
            self.rest += self._more()
        length, _, self.rest = self.rest.partition(b":")
        while len(self.rest) < int(length):
            self.rest += self._more()
        text, self.rest = self.rest[:int(length)], self.rest[int(length):]
        return json.loads(text)

    def _more(self):
        data = self.socket.recv(1 << 16)
        if not data:
            raise FirefoxError("has gone")
        return data

    def command(self, name, **parameters):
        self.number += 1
        data = json.dumps([0, self.number, name, parameters]).encode()
        self.socket.sendall(str(len(data)).encode() + b":" + data)
        _, _, error, result = self._read()
        if error:
            raise FirefoxError(f"{name}: {error.get('error')}: {error.get('message', '')[:400]}")
        return result

    def call(self, name, **parameters):
        return self.command(f"WebDriver:{name}", **parameters)

    def visit(self, address):
        self.call("Navigate", url=address)

    def run(self, script, *arguments):
        """The value that a script returns."""
        return self.call("ExecuteScript", script=script, args=list(arguments))["value"]

    def in_browser(self, script):
        """The same in the browser's own windows."""
        self.command("Marionette:SetContext", value="chrome")
        try:
            return self.call("ExecuteScript", script=script, args=[])["value"]
        finally:
            self.command("Marionette:SetContext", value="content")

    def wait(self, what, condition, seconds=30):
        """Waits until a script, or a procedure, returns a true value."""
        end = time.monotonic() + seconds
        while True:
            value = condition() if callable(condition) else self.run(condition)
            if value:
                return value
            if time.monotonic() > end:
                raise AssertionError(f"did not happen within {seconds} s: {what}")
            time.sleep(0.05)

    Selectors = {
        "button": "button", "menuitem": "[role=menuitem]", "combobox": "select, input[list]", "dialog": "dialog[open]",
        "textbox": "input:not([type]), textarea", "status": "[role=status]", "alertdialog": "dialog.box[open]",
        "alert": "[role=alert]", "image": "canvas", "region": "section", "checkbox": "[type=checkbox]",
    }

    def find(self, role, name, seconds=15):
        """The only element with this role and name in Firefox; of two, the one in the topmost dialog."""
        def look():
            found = []
            for entry in self.call("FindElements", using="css selector", value=self.Selectors[role]):
                element = entry[ElementKey]
                if not self.call("IsElementDisplayed", id=element)["value"]:
                    continue
                label = self.call("GetComputedLabel", id=element)["value"]
                if label == name and self.call("GetComputedRole", id=element)["value"] == role:
                    found.append(element)
            return found[-1:]
        return Element(self, self.wait(f"a {role} named {name!r}", look, seconds)[0])

    def screenshot(self, file):
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(base64.b64decode(self.call("TakeScreenshot", full=False)["value"]))
        return file

    def size(self, width, height):
        """The size of the page itself, without the window's frame."""
        self.call("SetWindowRect", width=width, height=height)
        frame = self.run("return [outerWidth - innerWidth, outerHeight - innerHeight]")
        self.call("SetWindowRect", width=width + frame[0], height=height + frame[1])

    def key(self, key):
        actions = [{"type": kind, "value": key} for kind in ("keyDown", "keyUp")]
        self.call("PerformActions", actions=[{"type": "key", "id": "keys", "actions": actions}])

    def close(self):
        try:
            self.command("Marionette:Quit", flags=["eForceQuit"])
        except (FirefoxError, OSError):
            self.process.kill()
        self.process.wait(30)
        shutil.rmtree(self.home, ignore_errors=True)


class Element:
    def __init__(self, firefox, number):
        self.firefox, self.number = firefox, number

    def run(self, script, *arguments):
        return self.firefox.run(script, {ElementKey: self.number}, *arguments)

    @property
    def text(self):
        return self.run("return 'value' in arguments[0] ? arguments[0].value : arguments[0].textContent")

    def click(self):
        self.firefox.call("ElementClick", id=self.number)

    def fill(self, text):
        self.firefox.call("ElementClear", id=self.number)
        self.firefox.call("ElementSendKeys", id=self.number, text=text)

    def choose(self, text):
        assert self.run("""
            const [list, text] = arguments;
            const option = [...list.options].find((one) => one.textContent === text);
            if (option) { list.value = option.value; list.dispatchEvent(new Event("change", {bubbles: true})); }
            return !!option""", text), f"no entry {text!r}"
