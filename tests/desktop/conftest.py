# SPDX-License-Identifier: MIT
import sys
from pathlib import Path

import pytest

import harness

Root = Path(__file__).resolve().parents[2]


def pytest_addoption(parser):
    parser.addoption("--page", action="store_true", help="run the tests with the page in a browser, where they apply")


def pytest_collection_modifyitems(config, items):
    """Leaves out what the page cannot have; each test or file with its reason."""
    if not config.getoption("--page"):
        return
    sys.path[:0] = [str(Root / "tests" / "web"), str(Root / "tools")]
    from desktop_only import Reasons
    used = set()
    for item in items:
        file = Path(item.fspath).stem
        for name in (file, f"{file}::{item.originalname}", f"{file}::{item.name}"):
            if name in Reasons:
                item.add_marker(pytest.mark.skip(reason=Reasons[name]))
                used.add(name)
    files = {Path(item.fspath).stem for item in items}
    stale = [name for name in Reasons if name.partition("::")[0] in files and name not in used]
    selected = config.getoption("keyword") or config.getoption("lf", False) or any("::" in name for name in config.args)
    if stale and not selected:
        raise pytest.UsageError(f"tests/web/desktop_only.py names tests that are not there: {', '.join(stale)}")


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    if call.when == "call":
        item.failed = report.failed


@pytest.fixture(scope="session")
def desktop_session(request):
    if request.config.getoption("--page"):
        from page_user import PageUser
        from serve_page import Server
        server = Server()
        user = PageUser(server)
        yield user
        user.leave()
        server.close()
        return
    user = harness.User()
    yield user
    user.leave()


@pytest.fixture
def user(desktop_session, request):
    """A user at a desktop on which nothing runs and nothing is stored."""
    desktop_session.tidy()
    yield desktop_session
    if getattr(request.node, "failed", False):
        print("Screenshot:", desktop_session.screenshot(request.node.name))
    desktop_session.tidy()
