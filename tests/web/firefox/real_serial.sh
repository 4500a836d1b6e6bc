#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: real_serial.sh [TOOLS]
#
# A real Web Serial port without a device: a headless Firefox chooses the software receiver's terminal in its own
# chooser, finds its rate, changes it, switches the protocol there and back, sets a setting and reads it back, and notices
# that the device is pulled out. Needs root, for a /dev of its own. TOOLS: folder of toravane-receiver, build/native if
# not given. Needs build/web.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../../.." && pwd)
tools=$(realpath "${1:-$root/build/native}")

if [ "${TORAVANE_PRIVATE_DEV:-}" != 1 ]; then
    TORAVANE_PRIVATE_DEV=1 exec unshare --mount "$here/private_dev.sh" "$0" "$tools"
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cc -shared -fPIC -o modem_lines.so "$here/modem_lines.c" -ldl
/usr/bin/python3 -B "$here/real_serial.py" "$tools/toravane-receiver" "$work/modem_lines.so"
