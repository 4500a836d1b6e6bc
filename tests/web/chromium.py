# SPDX-License-Identifier: MIT
"""A headless Chromium, controlled through a pipe in its DevTools protocol, and a user's acts in one of its tabs."""

import base64
import fcntl
import itertools
import json
import os
import queue
import shutil
import subprocess
import tempfile
import threading
import time

Flags = (
    "--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
    "--disable-background-networking", "--disable-component-update", "--disable-sync", "--disable-extensions",
    "--disable-default-apps", "--mute-audio", "--hide-scrollbars", "--force-color-profile=srgb",
    "--remote-debugging-pipe",
)


class BrowserError(Exception):
    """The browser refused a command, or a script in the page threw."""


class Chromium:
    """One browser process with its own profile. Commands may come from several threads."""

    def __init__(self, patience=30):
        self.patience = patience
        self.profile = tempfile.mkdtemp(prefix="toravane-chromium-")
        to_browser, self._out = os.pipe()
        self._in, from_browser = os.pipe()

        ends = [fcntl.fcntl(end, fcntl.F_DUPFD_CLOEXEC, 10) for end in (to_browser, from_browser)]

        def place_pipes():  # the browser expects them at 3 and 4
            os.dup2(ends[0], 3)
            os.dup2(ends[1], 4)

        self.process = subprocess.Popen(
            ["chromium", *Flags, f"--user-data-dir={self.profile}", "about:blank"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            preexec_fn=place_pipes, pass_fds=(3, 4),
        )
        for end in (to_browser, from_browser, *ends):
            os.close(end)
        self._numbers = itertools.count(1)
        self._answers = {}
        self._listeners = {}
        self._lock = threading.Lock()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        rest = b""
        while True:
            try:
                got = os.read(self._in, 1 << 20)
            except OSError:
                return
            if not got:
                return
            *whole, rest = (rest + got).split(b"\0")
            for text in whole:
                message = json.loads(text)
                if "id" in message:
                    self._answers[message["id"]].put(message)
                else:
                    for listener in self._listeners.get(message.get("sessionId"), ()):
                        listener(message["method"], message["params"])

    def call(self, method, session=None, **parameters):
        number = next(self._numbers)
        answer = self._answers[number] = queue.Queue()
        message = {"id": number, "method": method, "params": parameters} | ({"sessionId": session} if session else {})
        with self._lock:
            data = json.dumps(message).encode() + b"\0"
            while data:
                data = data[os.write(self._out, data):]
        try:
            result = answer.get(timeout=self.patience)
        except queue.Empty:
            raise BrowserError(f"no answer to {method}") from None
        finally:
            del self._answers[number]
        if "error" in result:
            raise BrowserError(f"{method}: {result['error']['message']}")
        return result["result"]

    def listen(self, session, listener):
        self._listeners.setdefault(session, []).append(listener)

    def tab(self, *size):
        return Tab(self, *size)

    def close(self):
        try:
            self.call("Browser.close")
        except (BrowserError, OSError):
            self.process.kill()
        self.process.wait(self.patience)
        os.close(self._out)
        shutil.rmtree(self.profile, ignore_errors=True)


KeyCodes = {
    "Enter": 13, "Escape": 27, "Tab": 9, "ArrowLeft": 37, "ArrowUp": 38, "ArrowRight": 39, "ArrowDown": 40, "F10": 121,
    "Home": 36, "End": 35, "Backspace": 8, " ": 32,
}


class Tab:
    """A page in a separate context: without stored settings, cache, or data of another tab."""

    def __init__(self, browser, width=1000, height=760):
        self.browser = browser
        self.context = browser.call("Target.createBrowserContext")["browserContextId"]
        self.target = browser.call("Target.createTarget", url="about:blank", browserContextId=self.context,
                                   width=width, height=height)["targetId"]
        self.session = browser.call("Target.attachToTarget", targetId=self.target, flatten=True)["sessionId"]
        self.requests = []
        self.complaints = []
        self.downloads = tempfile.mkdtemp(prefix="toravane-downloads-")
        self.bindings = {}
        self._work = queue.Queue()
        threading.Thread(target=self._serve, daemon=True).start()
        browser.listen(self.session, self._event)
        for domain in ("Page", "Runtime", "Network", "Log"):
            self.call(f"{domain}.enable")
        self.call("Browser.setDownloadBehavior", behavior="allow", browserContextId=self.context,
                  downloadPath=self.downloads)
        self.size(width, height)

    def _event(self, method, parameters):
        if method == "Network.requestWillBeSent":
            self.requests.append(parameters["request"]["url"])
        elif method == "Runtime.exceptionThrown":
            details = parameters["exceptionDetails"]
            self.complaints.append(details.get("exception", {}).get("description", details["text"]))
        elif method == "Log.entryAdded" and parameters["entry"]["level"] == "error":
            self.complaints.append(parameters["entry"]["text"] + " " + parameters["entry"].get("url", ""))
        elif method == "Runtime.consoleAPICalled" and parameters["type"] in ("error", "assert", "warning"):
            self.complaints.append(" ".join(str(a.get("value", a.get("description"))) for a in parameters["args"]))
        elif method == "Runtime.bindingCalled":
            self._work.put((parameters["name"], parameters["payload"]))

    def _serve(self):
        while True:
            name, payload = self._work.get()
            if name is None:
                return
            try:
                self.bindings[name](json.loads(payload))
            except BrowserError:
                pass  # the page no longer exists

    def call(self, method, **parameters):
        return self.browser.call(method, self.session, **parameters)

    def offer(self, name, procedure):
        """Gives the page a function that calls a procedure of the test with one value."""
        self.bindings[name] = procedure
        self.call("Runtime.addBinding", name=name)

    def before_load(self, script):
        """A script that runs before the page's own, at each visit."""
        self.call("Page.addScriptToEvaluateOnNewDocument", source=script)

    def visit(self, address):
        answer = self.call("Page.navigate", url=address)
        if "errorText" in answer:
            raise BrowserError(f"{address}: {answer['errorText']}")

    def run(self, expression, *, gesture=False):
        """The value of an expression in the page; a promise is awaited."""
        answer = self.call("Runtime.evaluate", expression=expression, returnByValue=True, awaitPromise=True,
                           userGesture=gesture)
        if "exceptionDetails" in answer:
            details = answer["exceptionDetails"]
            raise BrowserError(details.get("exception", {}).get("description", details["text"]))
        return answer["result"].get("value")

    def size(self, width, height, scale=1.0):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=scale,
                  mobile=False)

    def dark(self, dark=True):
        self.call("Emulation.setEmulatedMedia",
                  features=[{"name": "prefers-color-scheme", "value": "dark" if dark else "light"}])

    def offline(self, offline=True):
        self.call("Network.emulateNetworkConditions", offline=offline, latency=0, downloadThroughput=-1,
                  uploadThroughput=-1)

    def key(self, key, shift=False):
        code = KeyCodes.get(key, ord(key[0].upper()))
        text = {"Enter": "\r"}.get(key, key if len(key) == 1 else "")
        common = {"key": key, "code": key if len(key) > 1 else "", "windowsVirtualKeyCode": code,
                  "modifiers": 8 if shift else 0}
        self.call("Input.dispatchKeyEvent", type="keyDown" if text else "rawKeyDown", **common,
                  **({"text": text} if text else {}))
        self.call("Input.dispatchKeyEvent", type="keyUp", **common)

    def click_at(self, x, y):
        for kind in ("mousePressed", "mouseReleased"):
            self.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)

    def find_all(self, role, name=None):
        """The elements with this role and name, as assistive software finds them; hidden elements are not found."""
        root = self.call("Runtime.evaluate", expression="document")["result"]["objectId"]
        wanted = {"role": role} | ({} if name is None else {"accessibleName": name})
        nodes = self.call("Accessibility.queryAXTree", objectId=root, **wanted)["nodes"]
        return [Element(self, node) for node in nodes if not node.get("ignored") and "backendDOMNodeId" in node]

    def find(self, role, name, seconds=15):
        """The only element with this role and name, as soon as it exists."""
        end = time.monotonic() + seconds
        while True:
            found = self.find_all(role, name)
            if len(found) == 1:
                return found[0]
            if time.monotonic() > end:
                raise AssertionError(f"{len(found)} elements of role {role} are named {name!r}")
            time.sleep(0.02)

    def screenshot(self, file):
        data = self.call("Page.captureScreenshot", format="png")["data"]
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(base64.b64decode(data))
        return file

    def wait(self, what, expression, seconds=30):
        """Waits until an expression in the page is true, and returns it."""
        end = time.monotonic() + seconds
        while True:
            value = self.run(expression)
            if value:
                return value
            if time.monotonic() > end:
                raise AssertionError(f"did not happen within {seconds} s: {what}; complaints: {self.complaints}")
            time.sleep(0.02)

    def close(self):
        self._work.put((None, None))
        self.browser.call("Target.disposeBrowserContext", browserContextId=self.context)
        shutil.rmtree(self.downloads, ignore_errors=True)


class Element:
    """An element that was found by role and name."""

    def __init__(self, tab, node):
        self.tab = tab
        self.role, self.name, self.description = (node.get(part, {}).get("value", "")
                                                  for part in ("role", "name", "description"))
        self.properties = {entry["name"]: entry["value"].get("value") for entry in node.get("properties", ())}
        self._node = node["backendDOMNodeId"]

    def __repr__(self):
        return f"<{self.role} {self.name!r}>"

    def run(self, function, *arguments):
        """Calls a function, given as text, with the element as `this`."""
        handle = self.tab.call("DOM.resolveNode", backendNodeId=self._node)["object"]["objectId"]
        answer = self.tab.call("Runtime.callFunctionOn", objectId=handle, functionDeclaration=function,
                               arguments=[{"value": value} for value in arguments], returnByValue=True,
                               awaitPromise=True, userGesture=True)
        if "exceptionDetails" in answer:
            details = answer["exceptionDetails"]
            raise BrowserError(details.get("exception", {}).get("description", details["text"]))
        return answer["result"].get("value")

    @property
    def text(self):
        return self.run("function () { return 'value' in this ? this.value : this.textContent }")

    @property
    def has_focus(self):
        return self.run("function () { return document.activeElement === this }")

    def click(self):
        """Clicks the element with the mouse."""
        x, y, is_free = self.run("""function () {
            this.scrollIntoView({block: "nearest"});
            const {left, top, width, height} = this.getBoundingClientRect();
            const at = [left + width / 2, top + height / 2];
            const there = document.elementFromPoint(...at);
            return [...at, !!there && (this.contains(there) || there.contains(this) || this.labels?.[0] === there)];
        }""")
        assert is_free, f"something covers {self}"
        self.tab.click_at(x, y)

    def focus(self):
        self.run("function () { this.focus() }")

    def fill(self, text):
        """Types a text that replaces the old one."""
        self.run("function () { this.focus(); this.select() }")
        if text:
            self.tab.call("Input.insertText", text=text)
        else:
            self.tab.key("Backspace")

    def choose(self, text):
        """Selects an entry of a list."""
        assert self.run("""function (text) {
            const option = [...this.options].find((one) => one.textContent === text);
            if (!option) return false;
            this.value = option.value;
            this.dispatchEvent(new Event("change", {bubbles: true}));
            return true;
        }""", text), f"{self} has no entry {text!r}"
