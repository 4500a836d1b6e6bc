# SPDX-License-Identifier: MIT
import sys
from pathlib import Path

import pytest

Root = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(Root / "tools"), str(Root / "tests" / "desktop"), str(Root / "tools" / "desktop")]

from chromium import Chromium  # noqa: E402
from serve_page import Page, Server  # noqa: E402


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    if call.when == "call":
        item.failed = report.failed


@pytest.fixture(scope="session")
def server():
    assert (Page / "index.html").is_file(), "build the preset web first"
    server = Server()
    yield server
    server.close()


@pytest.fixture(scope="session")
def browser():
    browser = Chromium()
    yield browser
    browser.close()


@pytest.fixture
def new_tab(browser, request):
    """Opens independent tabs, and closes them."""
    tabs = []

    def open_tab(*size):
        tabs.append(browser.tab(*size))
        return tabs[-1]
    yield open_tab
    for number, tab in enumerate(tabs):
        if getattr(request.node, "failed", False):
            name = "".join(c if c.isalnum() else "-" for c in request.node.name)
            print("Screenshot:", tab.screenshot(Root / "build" / "web-tests" / f"failed-{name}-{number}.png"))
        tab.close()


@pytest.fixture
def tab(new_tab, server):
    """The page at its first visit, while its receiver streams."""
    tab = new_tab()
    tab.visit(server.address)
    wait_streaming(tab)
    return tab


def wait_streaming(tab, seconds=30):
    tab.wait("the receiver's time stands in the first line",
             "/^ UTC: \\d{4}-/.test(document.querySelector('.line')?.textContent)", seconds)
