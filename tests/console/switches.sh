#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: switches.sh [ROUNDS [FIRST_SEED]]
# Lets the console program switch protocol and rate of receivers that lose bytes, freeze, land at another rate or
# ignore the command, each round with a seed of its own, and holds what the program reports against the state that
# the receiver is in. Prints the seed of any failure and ends with 1 then. 1000 rounds take a quarter of an hour.
set -euo pipefail
cd "$(dirname "$0")"
exec /usr/bin/python3 -B switches.py "${1:-1000}" "${2:-1}"
