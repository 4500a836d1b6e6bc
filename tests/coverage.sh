#!/bin/bash
# SPDX-License-Identifier: MIT
# coverage.sh: line coverage of the product's folders by all native tests together; fails below 95 %.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/build.sh coverage
find build/coverage -name '*.gcda' -delete
ctest --test-dir build/coverage --output-on-failure -j2 >build/coverage/tests.log || { tail -50 build/coverage/tests.log; exit 1; }
gcovr -r . --filter '(app|graph|link|nmea|settings|sirf|sky|text|ui)/' -j2 --sort-uncovered --fail-under-line 95 \
    build/coverage
