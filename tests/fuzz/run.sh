#!/bin/bash
# SPDX-License-Identifier: MIT
# run.sh [TARGET [SECONDS]]: fuzzes one target, or all in turn, for so many seconds of processor time each (default
# 60), and prints what was done. New inputs collect in build/fuzz/found/TARGET; one that faults ends the run with an error and is kept
# there as crash-* (or timeout-*).
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
targets=(reception dialogs registry names replay chart console_answers console_arguments console_convert console_profile)
[ $# -gt 0 ] && targets=("$1")
seconds=${2:-60}
for target in "${targets[@]}"; do
    [ -f "tests/fuzz/$target.cpp" ] || { echo "No target $target" >&2; exit 2; }
done
command -v clang++ >/dev/null || { echo 'Install the Debian packages clang and libclang-rt-14-dev' >&2; exit 2; }

mkdir -p build
tools/build.sh fuzz >build/fuzz.log 2>&1 || { cat build/fuzz.log; exit 1; }
# Most of an input's time would go into stacks of allocations, into fresh memory and into the search for leaks, which
# the replay of the corpora does.
export ASAN_OPTIONS=malloc_context_size=2:quarantine_size_mb=16:max_malloc_fill_size=0:detect_leaks=0
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1

result=0
printf '%-10s %12s %10s %9s %8s  %s\n' target executions 'CPU s' coverage corpus result
for target in "${targets[@]}"; do
    found=build/fuzz/found/$target
    mkdir -p "$found"
    log=build/fuzz/$target.log
    "build/fuzz/fuzz_$target" -timeout=25 -max_len=2048 -rss_limit_mb=3000 -print_final_stats=1 \
        -artifact_prefix="$found/" "$found" "tests/fuzz/corpus/$target" >"$log" 2>&1 &
    fuzzer=$! cpu=0
    # The fuzzer can count real time only, which a busy machine makes longer: here its processor time ends it.
    while now=$(ps -o cputimes= -p $fuzzer) && cpu=$((now)) && [ "$cpu" -lt "$seconds" ]; do sleep 1; done
    kill -USR1 $fuzzer 2>/dev/null
    wait $fuzzer
    verdict='no finding'
    if grep -qE '(SUMMARY|ERROR|runtime error|headless:|Not given back)' "$log"; then
        verdict="FINDING, see $log"
        result=1
    fi
    last=$(grep -E '^#[0-9]+' "$log" | tail -1)
    printf '%-10s %12s %10s %9s %8s  %s\n' "$target" \
        "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" \
        "$cpu" \
        "$(sed -n 's/.* cov: \([0-9]*\).*/\1/p' <<<"$last")" \
        "$(sed -n 's/.* corp: \([0-9]*\).*/\1/p' <<<"$last")" "$verdict"
done
exit $result
