# SPDX-License-Identifier: MIT
"""The calls of the driver, one method per command: reading the windows, and acting on them."""

import json
import queue
import subprocess
import threading

from desktop import Driver as DriverFile

WM_CLOSE = 0x0010
WM_COMMAND = 0x0111
WM_SYSCOMMAND = 0x0112
SC_MINIMIZE = 0xF020
SC_CLOSE = 0xF060
VK_RIGHT = 0x27


class DriverError(Exception):
    """The driver could not carry out a command."""


class Driver:
    def __init__(self, wine, patience=30):
        self.patience = patience
        self.process = wine.start(DriverFile, stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8")
        self.answers = queue.Queue()
        threading.Thread(target=self._listen, daemon=True).start()

    def _listen(self):
        for line in self.process.stdout:
            self.answers.put(json.loads(line))

    def call(self, *words):
        self.process.stdin.write("\t".join(map(str, words)) + "\n")
        self.process.stdin.flush()
        try:
            answer = self.answers.get(timeout=self.patience)
        except queue.Empty:
            raise DriverError(f"no answer to {words}") from None
        if "error" in answer:
            raise DriverError(f"{answer['error']}: {words}")
        return answer

    def windows(self):
        return self.call("windows")["windows"]

    def controls(self, window):
        return self.call("controls", window)["controls"]

    def set_text(self, control, text):
        self.call("set-text", control, text)

    def click(self, button):
        self.call("click", button)

    def items(self, control):
        """The texts of a list and the index of the selected one, -1 for none."""
        answer = self.call("items", control)
        return answer["items"], answer["selection"]

    def select(self, control, index):
        self.call("select", control, index)

    def text_size(self, text, width=0):
        """Width and height in pixels of a text in a dialog, in one line, or wrapped at a width."""
        answer = self.call("text-size", width, text)
        return answer["width"], answer["height"]

    def post(self, window, message, wparam=0, lparam=0):
        self.call("post", window, message, wparam, lparam)

    def focus(self, window):
        """The control that has the focus in a window's program."""
        return self.call("focus", window)["focus"]

    def key(self, virtual_key):
        self.call("key", virtual_key)

    def menu(self, file, resource):
        return self.call("menu", file, resource)["items"]

    def get_value(self, key, name):
        return self.call("get-value", key, name)["value"]

    def set_value(self, key, name, value):
        self.call("set-value", key, name, value)

    def delete_key(self, key):
        self.call("delete-key", key)

    def key_access(self, key):
        return self.call("key-access", key)["access"]

    def page(self, window, lines=19):
        return self.call("page", window, lines)["lines"]

    def dot(self, window, x, y):
        self.call("dot", window, x, y)

    def main_window(self):
        """The program's main window, or None."""
        return next((w for w in self.windows() if w["class"] == "Toravane" and w["text"] == "Toravane"), None)

    def close(self):
        self.process.stdin.close()
        self.process.wait(self.patience)
