#!/bin/bash
# SPDX-License-Identifier: MIT
# rounds.sh [ROUNDS]: runs all tests that search for a deadlock of the two threads. First the unit tests that open,
# close and log while the receiver streams, with another order of the threads in each round; then the real program under
# Wine, opened and closed this number of times (200 by default, about three seconds each).
set -euo pipefail
cd "$(dirname "$0")/../.."
native=${TORAVANE_TOOLS:-build/native}
tools/build.sh native link_tests communication_tests
timeout 300 "$native"/link_tests --gtest_brief=1 --gtest_filter='*WhileTheReceiverStreams*:*WhileThePort*'
timeout 300 "$native"/communication_tests --gtest_brief=1 \
    --gtest_filter='*WhileTheReceiverStreams*:*WhileThePortIsBeingClosed*:FailingLog.*'
tests/races/run.sh 60
tools/build.sh desktop
/usr/bin/python3 -B tests/desktop/long_open_close.py "${1:-200}"
