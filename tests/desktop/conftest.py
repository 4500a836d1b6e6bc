import pytest

import harness


@pytest.hookimpl(hookwrapper=True)
def pytest_runtest_makereport(item, call):
    report = (yield).get_result()
    if call.when == "call":
        item.failed = report.failed


@pytest.fixture(scope="session")
def desktop_session():
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
