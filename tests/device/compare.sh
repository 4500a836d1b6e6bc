#!/bin/bash
# SPDX-License-Identifier: MIT
# compare.sh [--all]: runs the scenarios with the program and with its device image on the emulated device; their
# transcripts must be equal byte for byte. Every scenario on one core, a few on each other core, at another address and
# with another stack; with --all every scenario on every core at both addresses. Needs the presets native and device
# built. Logs of real receivers, where a folder of them is configured (-DTORAVANE_LOGS=FOLDER), take part.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1

tools=${TORAVANE_TOOLS:-build/native}
native=$tools/scenarios_native
emulated=("$tools/scenarios_emulated" --image build/device/toravane.exe --symbols build/device/toravane.elf)
few=('start plain' 'start smartphone' 'log walk-south-west' 'dialog plain 403' 'dialog pocketpc 2009'
     'dialog smartphone 2005' 'command line StaticNavigationOn')
other_base=0x02000000

logs=(--logs tests/data)
folder=$(sed -n 's/^TORAVANE_LOGS:PATH=//p' "$tools/CMakeCache.txt")
if [ -d "$folder" ]; then
    logs+=(--logs "$folder")
else
    echo "Skipped: logs of real receivers, there is no folder $folder"
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# compare NAME OPTIONS... -- SCENARIOS...: one run of the image against one of the program.
compare() {
    local name=$1 options=()
    shift
    while [ "$1" != -- ]; do options+=("$1"); shift; done
    shift
    "$native" "${logs[@]}" "$@" >"$work/native" 2>"$work/native.messages" &
    local result=0
    "${emulated[@]}" "${logs[@]}" "${options[@]}" "$@" >"$work/emulated" 2>"$work/emulated.messages" || result=1
    wait $! || result=1
    if [ $result = 0 ] && cmp --silent "$work/native" "$work/emulated"; then
        printf 'Equal: %-34s %3d scenarios, %7d lines\n' "$name" "$(grep -c '^===' "$work/native")" \
            "$(wc -l <"$work/native")"
        return
    fi
    failures=$((failures + 1))
    echo "DIFFERENT: $name"
    tail -n 20 "$work/native.messages" "$work/emulated.messages"
    diff "$work/native" "$work/emulated" | cut -c1-150 | head -40
}

if [ "${1:-}" = --all ]; then
    for core in $("${emulated[@]}" --list-cores yes); do
        compare "$core" --core "$core" --
        compare "$core at $other_base" --core "$core" --base $other_base --stack-skew 4 --
    done
else
    compare "926" --core 926 --
    for core in $("${emulated[@]}" --list-cores yes); do
        compare "$core at $other_base" --core "$core" --base $other_base --stack-skew 4 -- "${few[@]}"
    done
fi
compare "926 below a system of Thumb code" --core 926 --system thumb -- "${few[@]}"

[ $failures = 0 ] || { echo "$failures runs differ"; exit 1; }
