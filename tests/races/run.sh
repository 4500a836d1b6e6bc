#!/bin/bash
# SPDX-License-Identifier: MIT
# run.sh [SECONDS]: the two threads at the same time under ThreadSanitizer; at least one round through every dialog.
# Fails when a race is reported that suppressions.txt does not name, and when nothing has ended after five minutes.
set -euo pipefail
cd "$(dirname "$0")/../.."
tools/build.sh tsan races
# The sanitizer's memory map does not fit every random one.
fixed=()
setarch "$(uname -m)" -R true 2>/dev/null && fixed=(setarch "$(uname -m)" -R)
export TSAN_OPTIONS=suppressions=$PWD/tests/races/suppressions.txt:history_size=4:print_suppressions=1
timeout 300 "${fixed[@]}" build/tsan/races "${1:-8}"
