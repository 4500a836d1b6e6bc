#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: tools/screenshots.sh
#
# Makes the pictures of the manual again, in docs/images/: builds, starts the program through Wine on a display in
# memory, and operates it with the software receiver at its port. Takes about two minutes.
set -euo pipefail
cd "$(dirname "$0")/.."

tools/install_packages.sh running
export TORAVANE_TOOLS=$PWD/build/tools
tools/build.sh tools toravane-receiver
tools/build.sh desktop
exec /usr/bin/python3 -B tools/desktop/screenshots.py "$@"
