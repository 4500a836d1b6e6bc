#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Serves the page for the browser to this computer alone, and opens a browser where there is a display.

Usage: serve_page.py [--port NUMBER] [FOLDER]

FOLDER is build/web if not given. The port is 8190 if not given, the same each time: a browser keeps settings and permitted
serial ports by address.
"""

import argparse
import functools
import http.server
import os
import threading
import webbrowser
from pathlib import Path

UsualPort = 8190
Page = Path(__file__).resolve().parents[1] / "build" / "web"


class Handler(http.server.SimpleHTTPRequestHandler):
    # The system's own table may lack these, and a browser compiles nothing that has another type.
    extensions_map = http.server.SimpleHTTPRequestHandler.extensions_map | {
        ".html": "text/html; charset=utf-8",
        ".js": "text/javascript; charset=utf-8",
        ".css": "text/css; charset=utf-8",
        ".wasm": "application/wasm",
        ".svg": "image/svg+xml",
        ".webmanifest": "application/manifest+json",
    }

    def end_headers(self):
        self.send_header("Cache-Control", "no-cache")  # a page that was built again is seen immediately
        super().end_headers()

    def log_message(self, *_):
        pass


class Server(http.server.ThreadingHTTPServer):
    """A server that already listens, on a thread of its own; for tests, too."""

    def __init__(self, folder=Page, port=0):
        super().__init__(("127.0.0.1", port), functools.partial(Handler, directory=folder))
        self.address = f"http://127.0.0.1:{self.server_port}/"
        self.thread = threading.Thread(target=self.serve_forever, daemon=True)
        self.thread.start()

    def handle_error(self, *_):
        pass  # a browser that goes away in the middle of a file is none

    def close(self):
        self.shutdown()
        self.server_close()


def main():
    parser = argparse.ArgumentParser(description=__doc__.partition("\n")[0])
    parser.add_argument("--port", type=int, default=UsualPort, help=f"number of the port, {UsualPort} if not given")
    parser.add_argument("folder", nargs="?", type=Path, default=Page, help="folder of the page, build/web if not given")
    options = parser.parse_args()
    if not (options.folder / "index.html").is_file():
        parser.error(f"{options.folder} holds no page")
    try:
        server = Server(options.folder, options.port)
    except (OSError, OverflowError) as error:
        parser.exit(1, f"{parser.prog}: port {options.port} cannot be used ({error}); choose another with --port\n")
    print(f"The page is at {server.address} (Ctrl+C ends it)", flush=True)
    if os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY"):
        webbrowser.open(server.address)
    try:
        server.thread.join()
    except KeyboardInterrupt:
        server.close()


if __name__ == "__main__":
    main()
