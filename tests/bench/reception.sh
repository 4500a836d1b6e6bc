#!/bin/bash
# SPDX-License-Identifier: MIT
# Figures of the reception path: how fast toravane-replay gets through a 50 MB log made by repetition, and how
# many instructions a received byte costs (needs valgrind). Usage: reception.sh [LOG...]
# Instructions are the difference between two runs of unequal length, so that the start of the process does not
# count; they are the same in every run.
set -euo pipefail
cd "$(dirname "$0")/../.."
replay=${TORAVANE_TOOLS:-build/native}/toravane-replay
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# repeat LOG BYTES FILE: the log over and over, at least so many bytes, always whole.
repeat() {
    local count=$((($2 + $(stat -c %s "$1") - 1) / $(stat -c %s "$1")))
    for ((i = 0; i < count; i++)); do cat "$1"; done >"$3"
}
instructions() {
    valgrind --tool=callgrind --callgrind-out-file=/dev/null "$replay" --stats "$1" 2>&1 |
        sed -n 's/.*Collected : //p'
}

for log in "${@:-tests/data/walk-south-west.txt}"; do
    repeat "$log" 50000000 "$folder/long"
    start=$(date +%s%N)
    "$replay" --stats "$folder/long" >/dev/null
    nanoseconds=$(($(date +%s%N) - start))
    printf '%s: %d MB/s' "$log" $(($(stat -c %s "$folder/long") * 1000 / nanoseconds))
    if command -v valgrind >/dev/null; then
        repeat "$log" 100000 "$folder/short"
        cat "$folder/short" "$folder/short" >"$folder/double"
        bytes=$(stat -c %s "$folder/short")
        printf ', %d instructions a byte' $((($(instructions "$folder/double") - $(instructions "$folder/short")) / bytes))
    fi
    printf '\n'
done
