# SPDX-License-Identifier: MIT
import pytest
import streams
import windows


def pytest_addoption(parser):
    parser.addoption("--windows", action="store_true", help="run the tests with toravanectl.exe under Wine")


def pytest_configure(config):
    streams.UnderWine = config.getoption("--windows")


def pytest_collection_modifyitems(config, items):
    for item in items:
        own = item.path.stem == "test_windows"
        if config.getoption("--windows"):
            reason = windows.reason_to_skip(item.path.stem, item.originalname, item.name)
        else:
            reason = "for the Windows program: --windows" if own else None
        if reason:
            item.add_marker(pytest.mark.skip(reason=reason))
