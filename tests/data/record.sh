#!/bin/bash
# SPDX-License-Identifier: MIT
# Records the logs of this folder from the software receiver, in fast motion. The receiver is that of TORAVANE_TOOLS, build/native by default.
# After a change of the receiver: run it, look at what changed, run expect.sh, commit both.
set -euo pipefail
cd "$(dirname "$0")"
receiver=${TORAVANE_TOOLS:-../../build/native}/toravane-receiver

# record NAME SECONDS OPTION...: records the receiver's data in this time; `commands`, if given, is sent to it.
record() {
    local name=$1 seconds=$2 link
    shift 2
    link=$(mktemp -u)
    "$receiver" --link "$link" --duration "$seconds" --speed 20 --seed 7 "$@" >/dev/null &
    while [ ! -e "$link" ]; do sleep 0.05; done
    cat "$link" >"$name" 2>/dev/null || true
    wait
    echo "$name: $(stat -c %s "$name") bytes"
}

# No fix, then a fix at rest: the start of every receiver.
record cold-start.txt 60 --rate 9600 --track still --start cold
# In motion, south and west, with a height below sea level and SBAS satellites.
record walk-south-west.txt 30 --rate 9600 --track walk --start hot --position -33.4489,-70.6693,-12.5
# A line that loses and changes bytes.
record noisy-line.txt 40 --rate 9600 --track circle --start hot --fault lose=0.002 --fault flip=0.002

# The same three in SiRF binary, without "NavLib" and "Debug" messages, which are not requested here.
record cold-start.srf 45 --protocol sirf --rate 38400 --track still --start cold
record walk-south-west.srf 15 --protocol sirf --rate 38400 --track walk --start hot --position -33.4489,-70.6693,-12.5
record noisy-line.srf 20 --protocol sirf --rate 38400 --track circle --start hot --fault lose=0.0005 --fault flip=0.0005
# Some firmware puts each message into another.
record wrapped.srf 5 --protocol sirf --rate 38400 --track circle --start hot --wrap
