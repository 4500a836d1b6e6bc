# SPDX-License-Identifier: MIT
"""Serial ports for a page in a browser: each is connected to a terminal of this machine, with a receiver."""

import base64
import json
import os
import select
import termios
import threading
import tty
from pathlib import Path

Double = (Path(__file__).parent / "serial_double.js").read_text(encoding="utf-8")


class Bridge:
    """Gives a tab the ports that it may use. `device_of(port)` is a terminal's path, or None if there is no such."""

    def __init__(self, tab, granted, device_of, chosen=-1, hidden=()):
        self.tab, self.device_of = tab, device_of
        self.open = {}  # port: [file, True while it is read, reader]
        self.log = []
        tab.offer("serialCall", self._called)
        setup = {"granted": granted, "chosen": chosen, "hidden": list(hidden)}
        tab.before_load(f"self.serialDoubleSetup = {json.dumps(setup)};\n{Double}")

    def _called(self, request):
        port = request["port"]
        self.log.append((request["kind"], port, request.get("rate")))
        error = ""
        if request["kind"] == "open":
            error = self._open(port, request["rate"])
        elif request["kind"] == "close":
            self._close(port)
        elif port in self.open:
            data = base64.b64decode(request["data"])
            while data:
                data = data[os.write(self.open[port][0], data):]
        else:
            error = "NetworkError"
        self.tab.run(f"serialDouble.answer({request['call']}, {json.dumps(error)})")
        if request["kind"] == "open" and port in self.open:
            self.open[port][2].start()  # now the page has a stream for the bytes

    def _open(self, port, rate):
        try:
            file = os.open(self.device_of(port), os.O_RDWR | os.O_NOCTTY)
        except (OSError, TypeError):
            return "NetworkError"  # the browser's name for every failure to open
        tty.setraw(file)
        settings = termios.tcgetattr(file)
        settings[4] = settings[5] = getattr(termios, f"B{rate}")
        termios.tcsetattr(file, termios.TCSANOW, settings)
        self.open[port] = state = [file, True]
        state.append(threading.Thread(target=self._read, args=(port, state), daemon=True))
        return ""

    def _read(self, port, state):
        from chromium import BrowserError
        while state[1]:
            if not select.select([state[0]], [], [], 0.05)[0]:
                continue
            try:
                data = os.read(state[0], 4096)
            except OSError:
                return
            if data and state[1]:
                try:
                    self.tab.run(f"serialDouble.bytes({port}, '{base64.b64encode(data).decode()}')")
                except BrowserError:
                    return

    def _close(self, port):
        state = self.open.pop(port, None)
        if state:
            state[1] = False
            if state[2].is_alive():
                state[2].join()
            os.close(state[0])

    def close(self):
        for port in list(self.open):
            self._close(port)
