#!/usr/bin/env -S /usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Measures the page's goals; each figure by its name, all except the hour if no name is given.

Usage: figures.py [size | start | load | idle | hour [MINUTES [TIMES]]]...

  size    all files of the page, compressed
  start   from navigation to the first line of a streaming text page, at a first visit
  load    share of a processor at 115200 baud without a pause (11,520 bytes a second)
  idle    the same on an open line that is silent, with the receiver in the page at 4800 baud, and without a page
  hour    memory in use before and after an hour (or MINUTES) of full load, fed TIMES as fast (1)
"""

import gzip
import json
import statistics
import sys
import time

from conftest import Page, Server, wait_streaming
from chromium import Chromium
from steps import Logs, wait_clock

FullLoad = 11520  # bytes a second at 115200 baud

# A port in the page itself, so that nothing but the page is measured: it repeats a recorded log at a rate.
Feeder = """
(() => {
    const log = Uint8Array.from(atob("%s"), (character) => character.charCodeAt(0));
    const rate = %d;
    let fed = 0;
    const port = new (class extends EventTarget {
        getInfo() { return {}; }
        async open() {
            const start = performance.now();
            fed = 0;
            this.readable = new ReadableStream({
                start: (controller) => {
                    if (rate) this.timer = setInterval(() => {
                        const due = Math.floor((performance.now() - start) / 1000 * rate) - fed;
                        const chunk = new Uint8Array(due);
                        for (let i = 0; i < due; ++i) chunk[i] = log[(fed + i) %% log.length];
                        fed += due;
                        self.fedBytes = fed;
                        if (due) controller.enqueue(chunk);
                    }, 50);
                },
                cancel: () => clearInterval(this.timer),
            });
            this.writable = new WritableStream();
        }
        async close() { clearInterval(this.timer); this.readable = this.writable = null; }
    })();
    const serial = new EventTarget();
    serial.getPorts = async () => [port];
    Object.defineProperty(Navigator.prototype, "serial", {configurable: true, get: () => serial});
})();
"""


def size():
    total = 0
    for file in sorted(Page.iterdir()):
        data = file.read_bytes()
        compressed = len(gzip.compress(data, 9))
        total += compressed
        print(f"  {file.name:22} {len(data):8} {compressed:8}")
    print(f"size: {total} bytes compressed in all (at most 350000)")


def start():
    browser, server = Chromium(), Server()
    times = []
    for _ in range(5):
        tab = browser.tab()
        tab.before_load("""new MutationObserver((_, observer) => {
            if (!/^ UTC: \\d{4}-/.test(document.querySelector(".line")?.textContent)) return;
            self.streamsAt = performance.now();
            observer.disconnect();
        }).observe(document, {subtree: true, childList: true, characterData: true});""")
        tab.visit(server.address)
        times.append(tab.wait("the page streams", "self.streamsAt"))
        tab.close()
    browser.close()
    server.close()
    print(f"start: {statistics.median(times):.0f} ms from navigation to a streaming page, five first visits: "
          f"{', '.join(f'{t:.0f}' for t in times)} (at most 1500)")


def processor_time(browser):
    """Seconds used so far by the processes of pages, and by all of the browser's."""
    processes = browser.call("SystemInfo.getProcessInfo")["processInfo"]
    return (sum(p["cpuTime"] for p in processes if p["type"] == "renderer"), sum(p["cpuTime"] for p in processes))


def share(browser, seconds=30):
    before = processor_time(browser)
    time.sleep(seconds)
    return [100 * (after - then) / seconds for after, then in zip(processor_time(browser), before)]


def fed_page(browser, server, log, rate):
    import base64
    tab = browser.tab()
    if log is not None:
        tab.before_load(Feeder % (base64.b64encode(log).decode(), rate))
        tab.visit(server.address + "icon.svg")
        for name, value in {"CommPortIdx": 1, "BaudrateIdx": 7, "Ports": json.dumps({"1": ""})}.items():
            tab.run(f"localStorage.setItem('{name}', {json.dumps(str(value))})")
    tab.visit(server.address)
    return tab


def load():
    for name in ("walk-south-west.txt", "walk-south-west.srf"):
        browser, server = Chromium(), Server()
        tab = fed_page(browser, server, (Logs / name).read_bytes(), FullLoad)
        wait_clock(tab, 30)
        time.sleep(3)
        page, everything = share(browser)
        print(f"load, {name}: {page:.1f} % of a processor in the page's process (at most 10), "
              f"{everything:.1f} % in all of the browser's")
        browser.close()
        server.close()


def empty_page(browser, _):
    browser.tab().visit("about:blank")


def silent_line(browser, server):
    fed_page(browser, server, b"\0", 0)


def receiver_in_the_page(browser, server):
    wait_streaming(fed_page(browser, server, None, 0))


def idle():
    for name, visit in (("silent line (at most 1)", silent_line),
                        ("receiver in the page, 4800 baud", receiver_in_the_page),
                        ("no page at all, the browser's own", empty_page)):
        browser, server = Chromium(), Server()
        visit(browser, server)
        time.sleep(8)
        page, everything = share(browser)
        print(f"idle, {name}: {page:.2f} % of a processor in the page's process, "
              f"{everything:.2f} % in all of the browser's")
        browser.close()
        server.close()


def memory(tab):
    """Bytes that the page's scripts and its program hold, without what only waits to be collected."""
    for _ in range(2):  # the first collection lets go of what holds other things
        tab.call("HeapProfiler.collectGarbage")
    usage = tab.call("Runtime.getHeapUsage")
    return {"scripts": usage["usedSize"], "elements": usage["embedderHeapUsedSize"],
            "buffers": usage["backingStorageSize"]}


def hour(minutes=60.0, times=1.0):
    browser, server = Chromium(), Server()
    tab = fed_page(browser, server, (Logs / "walk-south-west.txt").read_bytes(), int(FullLoad * times))
    wait_clock(tab, 30)
    duration = minutes * 60 / times
    time.sleep(duration / 12)  # the first twelfth fills what is filled once
    first = memory(tab)
    print(f"  after {tab.run('fedBytes')} bytes: {first}", flush=True)
    for _ in range(11):
        time.sleep(duration / 12)
        last = memory(tab)
        print(f"  after {tab.run('fedBytes')} bytes: {last}", flush=True)
    growth = sum(last.values()) - sum(first.values())
    print(f"hour: {minutes:g} minutes of full load, fed {times:g} times as fast: {growth:+} bytes "
          f"of {sum(last.values())}")
    browser.close()
    server.close()


Figures = {"size": size, "start": start, "load": load, "idle": idle, "hour": hour}


def main():
    words = sys.argv[1:] or ["size", "start", "load", "idle"]
    while words:
        name = words.pop(0)
        if name not in Figures:
            sys.exit(__doc__)
        numbers = []
        while words and words[0].replace(".", "").isdigit():
            numbers.append(float(words.pop(0)))
        Figures[name](*numbers)


if __name__ == "__main__":
    main()
