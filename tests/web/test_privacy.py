# SPDX-License-Identifier: MIT
"""The page sends no request to another host, stores no cookie, and works without a network after the first visit."""

import urllib.parse

import pytest
from chromium import BrowserError
from conftest import Page, Server, wait_streaming
from steps import Logs, close_dialog, drop, open_dialog, wait_clock


def own(address, url):
    return url.startswith((address, "data:", f"blob:{address}"))


def test_no_request_leaves_the_host(tab, server):
    open_dialog(tab, "SBAS", "SiRF", "SBAS")
    close_dialog(tab, "SBAS")
    tab.find("button", "Export settings").click()
    drop(tab, Logs / "walk-south-west.txt")
    tab.find("button", "Back to the receiver in this page").click()
    wait_clock(tab)
    tab.run("navigator.serviceWorker.ready.then(() => 0)")
    assert len(tab.requests) > 5
    assert [url for url in tab.requests if not own(server.address, url)] == []
    assert tab.call("Network.getCookies")["cookies"] == []
    assert tab.complaints == []


def test_another_host_would_be_noticed_and_is_refused(tab, server):
    """The test above can fail, and the page's policy refuses such requests."""
    other = Server()
    try:
        with pytest.raises(BrowserError):
            tab.run(f"fetch('{other.address}icon.svg', {{mode: 'no-cors'}}).then(() => 'came through')")
        assert any("Content Security Policy" in complaint for complaint in tab.complaints)
        image = ("new Promise((done) => { const i = new Image(); i.onload = () => done(1); i.onerror = () => done(0);"
                 f" i.src = '{other.address}icon.svg' }})")
        assert tab.run(image) == 0
        tab.call("Page.setBypassCSP", enabled=True)
        tab.visit(server.address)
        wait_streaming(tab)
        assert tab.run(image) == 1
        assert [url for url in tab.requests if not own(server.address, url)]
    finally:
        other.close()


def test_works_offline_after_the_first_visit(new_tab):
    server = Server()
    tab = new_tab()
    tab.visit(server.address)
    wait_streaming(tab)
    tab.run("navigator.serviceWorker.ready.then(() => 0)")
    server.close()  # the server no longer answers
    tab.call("Network.clearBrowserCache")
    tab.visit(server.address)
    wait_streaming(tab)
    wait_clock(tab)


def test_can_be_installed(tab):
    tab.run("navigator.serviceWorker.ready.then(() => 0)")
    manifest = tab.call("Page.getAppManifest")
    assert manifest["errors"] == [] and "Toravane" in manifest["data"]
    errors = [e["errorId"] for e in tab.call("Page.getInstallabilityErrors")["installabilityErrors"]]
    assert [e for e in errors if e != "in-incognito"] == []  # a separate context counts as a private window


def test_service_worker_keeps_every_file(tab):
    kept = tab.run("navigator.serviceWorker.ready.then(() => caches.open('toravane')).then(cache => cache.keys())"
                   ".then(requests => requests.map(request => new URL(request.url).pathname))")
    shipped = {f"/{file.name}" for file in Page.iterdir()} | {"/"}
    assert {urllib.parse.unquote(path) for path in kept} == shipped - {"/sw.js"}
