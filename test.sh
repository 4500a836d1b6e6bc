#!/bin/bash
# SPDX-License-Identifier: MIT
# Builds everything and runs every test, the same on a developer's machine and in continuous integration.
# Ends with a summary and, if anything failed, with an error.
set -uo pipefail
cd "$(dirname "$0")" || exit 1

summary=()
failures=0

# step NAME COMMAND...: runs a command and notes how it went, with a remark if the command has left one.
step() {
    local name=$1 start=$SECONDS result=passed remark=
    shift
    printf '\n=== %s\n' "$name"
    if ! "$@" </dev/null; then
        result=FAILED
        failures=$((failures + 1))
    fi
    summary+=("$(printf '%-7s %4d s  %s' "$result" $((SECONDS - start)) "$name$remark")")
    [ "$result" = passed ]
}

sources() {
    find . -path ./build -prune -o \( -name '*.cpp' -o -name '*.h' \) -print0
}
check_format() {
    sources | xargs -0 clang-format --dry-run -Werror
}

# The product's folders, as the preset native compiles them.
check_constructs() {
    run-clang-tidy -quiet -p build/native "^$PWD/(app|graph|link|nmea|settings|sirf|sky|text|ui)/"
}

# test_preset PRESET: builds a preset and runs its unit tests.
test_preset() {
    step "build $1" nice tools/build.sh "$1" && step "unit tests, $1" ctest --preset "$1"
}

# python_tests ARGUMENT...: pytest. Tests that failed get a second try, one by one: those that wait for windows and
# browsers may find them too slow on a machine that is busy with other tests. The summary names such a step.
python_tests() {
    local pytest=(/usr/bin/python3 -B -m pytest -o cache_dir="$PWD/build/pytest/${*//[^a-z]/-}" --durations=5 -v)
    "${pytest[@]}" "$@" && return
    printf '\n--- Second try\n'
    remark=' (second try)'
    "${pytest[@]}" "$@" -n 0 --last-failed --last-failed-no-failures none
}

# programs INTERPRETER SUFFIX: every file for that interpreter, those without a suffix too.
programs() {
    { git ls-files "*.$2"; git ls-files -z | xargs -0 grep -lE "^#!.*$1" --; } | sort -u
}
check_shell_scripts() {
    programs bash sh | xargs shellcheck
}
check_python_programs() {
    local files
    files=$(programs python3 py)
    # Imports may follow the lines that make them possible; an operator may begin or end a line.
    xargs pyflakes3 <<<"$files" && xargs pycodestyle --max-line-length=130 --ignore=E402,W503,W504,E731 <<<"$files"
}

# Tests that mostly wait: for windows, browsers, receivers.
waiting_tests() {
    step "console tests" python_tests tests/console -n 8
    # All of tests/console can run so (docs/testing.md); these cover what Windows does in its own way.
    step "console tests, Windows program" python_tests --windows -n 4 \
        tests/console/test_windows.py tests/console/test_convert.py tests/console/test_settings.py
    step "switches of the console program" tests/console/switches.sh 30
    step "desktop tests" python_tests tests/desktop
    step "program of the page" node --no-experimental-fetch --test tests/web/engine_test.mjs
    step "checks of the page" platform/web/check.sh
    step "page tests" python_tests tests/web -n 4
    step "desktop tests with the page" python_tests tests/desktop --page -n 4 --dist loadfile
    if unshare --mount true 2>/dev/null; then
        step "serial port in Firefox" tests/web/firefox/real_serial.sh
    else
        summary+=("left out        serial port in Firefox: needs root, for a /dev of its own")
    fi
}

# beside COMMAND: starts a procedure with steps of its own beside the following ones, which occupy the processors.
beside() {
    rm -f build/beside.summary
    # shellcheck disable=SC2030,SC2031 # on purpose its own; join takes them over
    (
        summary=() failures=0
        "$@"
        printf '%s\n' "${summary[@]}" >build/beside.summary
        exit $failures
    ) >build/beside.log 2>&1 &
    lane=$!
}

# join: waits for it, shows what it printed, and takes over how its steps went.
join() {
    local more
    wait "$lane"
    # shellcheck disable=SC2031
    failures=$((failures + $?))
    cat build/beside.log
    mapfile -t more <build/beside.summary
    # shellcheck disable=SC2031
    summary+=("${more[@]}")
}

if step "packages" tools/install_packages.sh testing packaging web; then
    step "format" check_format
    step "licenses" tools/license_heads
    step "include graph" tools/check_includes
    step "shell scripts" check_shell_scripts
    step "Python programs" check_python_programs
    step "commands" python_tests tests/commands
    step "rows of the mutation check" tests/mutation/mutate.py --check
    step "user guide" tools/check_guide
    test_preset native
    step "build desktop" tools/build.sh desktop
    beside waiting_tests
    step "build web" tools/build.sh web
    step "constructs" check_constructs
    test_preset native-asan
    step "races" tests/races/run.sh
    step "build device" tools/build.sh device && step "device tests" python_tests tests/device &&
        step "emulated device" tests/device/compare.sh
    step "package tests" python_tests tests/packages
    join
fi

printf '\n=== Summary\n'
printf '%s\n' "${summary[@]}"
if [ $failures -gt 0 ]; then
    echo "$failures of ${#summary[@]} steps failed"
    exit 1
fi
echo "All ${#summary[@]} steps passed in $SECONDS s"
