#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Serves the page for the browser to this computer only, and opens a browser if there is a display."""

import argparse
import functools
import http.server
import os
import signal
import sys
import threading
import webbrowser
from pathlib import Path

UsualPort = 8190
Page = Path(__file__).resolve().parents[1] / "build" / "web"

Description = """\
Serves the page for the browser to this computer alone, and opens a browser
where there is a display. Ctrl+C, or the end of the terminal, ends it."""

Footer = """\
A browser keeps settings and permitted serial ports by address, so the port is
the same each time.

Exit status:
  0  ended by the user
  1  the port cannot be used
  2  a wrong option, a folder without a page

Examples:
  $ %(prog)s
  $ %(prog)s --port 8080 --no-browser"""


class Help(argparse.RawDescriptionHelpFormatter):
    def add_usage(self, usage, actions, groups, prefix="Usage: "):  # manual pages are made from it
        super().add_usage(usage, actions, groups, prefix)


class Handler(http.server.SimpleHTTPRequestHandler):
    # The system's own table may lack these, and a browser does not compile a file of another type.
    extensions_map = http.server.SimpleHTTPRequestHandler.extensions_map | {
        ".html": "text/html; charset=utf-8",
        ".js": "text/javascript; charset=utf-8",
        ".css": "text/css; charset=utf-8",
        ".wasm": "application/wasm",
        ".svg": "image/svg+xml",
        ".webmanifest": "application/manifest+json",
    }

    def end_headers(self):
        self.send_header("Cache-Control", "no-cache")  # a page that was built again is shown immediately
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
        pass  # not an error: the browser has closed the connection before the end of a file

    def close(self):
        self.shutdown()
        self.server_close()


def port_number(text):
    number = int(text) if text.isascii() and text.isdigit() and len(text) <= 5 else -1
    if not 0 <= number <= 65535:
        raise argparse.ArgumentTypeError(f"'{text}' is no port from 1 to 65535, or 0 for any free one")
    return number


def main(program=None, page=Page):
    """Runs the program; `program` is its name in the help, `page` the folder that it serves by default."""
    parser = argparse.ArgumentParser(prog=program, description=Description, epilog=Footer, formatter_class=Help)
    parser.add_argument("--port", type=port_number, metavar="NUMBER", default=UsualPort,
                        help=f"port to serve at, 0 for any free one; {UsualPort} if not given")
    parser.add_argument("--no-browser", action="store_true", help="open no browser")
    parser.add_argument("folder", nargs="?", type=Path, default=page, metavar="FOLDER",
                        help="folder of the page, if not the one that was installed or built")
    options = parser.parse_args()
    if not (options.folder / "index.html").is_file():
        parser.error(f"{options.folder} holds no page")
    try:
        server = Server(options.folder, options.port)
    except OSError as error:
        parser.exit(1, f"{parser.prog}: port {options.port} cannot be used ({error.strerror}); choose another with --port\n")

    ended = threading.Event()
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(number, lambda *_: ended.set())
    print(f"The page is at {server.address} (Ctrl+C ends it)", flush=True)
    if not options.no_browser and (os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")):
        webbrowser.open(server.address)
    ended.wait()
    server.close()


if __name__ == "__main__":
    sys.exit(main())
