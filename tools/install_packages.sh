#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: install_packages.sh [--list | --sizes] [SET]...
#
# Installs the Debian packages of the named sets that are still missing, and those of the set "running", which all
# others need. Prints nothing and changes nothing if all are installed.
#
#   running      build the program and the tools, run them (./run.sh)
#   testing      build and run the tests, the program for devices included (./test.sh)
#   packaging    make the packages (./package.sh)
#   web          build and test the page for the browser
#
# --list prints the packages instead, --sizes the number and the size of the packages that each set adds to a bare
# Debian system.
set -euo pipefail

# Set      Package              Reason
packages='
running    g++                  compiler of the tools on Linux
running    g++-mingw-w64-x86-64 compiler of the desktop program, with its resource compiler
running    cmake                build
running    ninja-build          build
running    libasio-dev          serial ports and sockets of the console program
running    libcli11-dev         options of the tools and of the console program
running    zlib1g-dev           packs the pictures of the chart that the replay tool writes
running    libpugixml-dev       reads the tracks (GPX) of the software receiver
running    nlohmann-json3-dev   JSON of the desktop driver and of the console program
running    wine                 runs the desktop program on Linux
running    wine64               its 64-bit half, the only one that we use
running    fonts-liberation     the fixed-pitch and dialog fonts that Wine draws with
running    libxrender1          Wine draws text through it
running    xvfb                 a display for machines without one
running    python3              starts the program, reads and drives its window
running    python3-pil          screenshots

testing    gcc-arm-none-eabi    compiler of the program for devices
testing    libnewlib-arm-none-eabi mathematics of that program
testing    libstdc++-arm-none-eabi-dev C++ headers of that program
testing    clang-format         checks the format of the sources
testing    clang-tidy           finds faults in the sources
testing    shellcheck           finds faults in shell scripts
testing    pyflakes3            finds faults in Python programs
testing    pycodestyle          checks the format of Python programs
testing    libgtest-dev         unit tests
testing    libbenchmark-dev     benchmarks
testing    libunicorn-dev       emulated ARM processors, which run the image for devices
testing    file                 reads the image for devices in its tests
testing    pev                  reads it, too
testing    icoutils             lists the resources in it
testing    python3-pefile       reads all of it
testing    cabextract           unpacks the install packages for devices
testing    python3-pytest       tests written in Python
testing    python3-pytest-xdist several of them at once, where they wait
testing    fish                 completes commands of the console program in a test
testing    zsh                  the same
testing    groff                reads its manual page in a test
testing    systemd              checks the unit that the user guide shows

packaging  appstream            checks what software centres show
packaging  build-essential      what every Debian package is built with
packaging  debhelper            makes the Debian packages
packaging  dpkg-dev             makes them, too
packaging  fakeroot             so that no root is needed for it
packaging  desktop-file-utils   checks the menu entry
packaging  help2man             manual pages of the tools
packaging  lintian              checks the Debian packages
packaging  libz-mingw-w64-dev   the same, for the replay tool on Windows
packaging  nsis                 makes the installer for Windows
packaging  pandoc               makes the guide as one HTML file
packaging  zip                  makes the portable archive

web        emscripten           compiler of the program for pages
web        npm                  type check, faults and format of the scripts of the page
web        chromium             tests of the page, without a display
web        firefox-esr          tests of the page with a real serial port
'

sets=(running testing packaging web)
action=install
wanted=(running)
for argument; do
    case $argument in
    running | testing | packaging | web) wanted+=("$argument") ;;
    --list | --sizes) action=${argument#--} ;;
    *)
        sed -n '/^# Usage/,/^set/{/^#/s/^# \{0,1\}//p}' "$0" >&2
        exit 2
        ;;
    esac
done

# rows SET...: the rows of these sets, without the set's name.
rows() {
    while read -r name package reason; do
        [[ -n $name && " $* " = *" $name "* ]] && echo "$package $reason"
    done <<<"$packages"
    return 0
}

# archives PACKAGE...: name and size of each archive that a system without any package would download for them.
archives() {
    apt-get -o Dir::State::status=/dev/null -o Dir::Cache::archives=/nonexistent/ -o APT::Install-Recommends=false --print-uris --yes install "$@" |
        awk '/^.(http|https|file|copy|cdrom):/ { print $2, $3 }' | sort
}

sizes() {
    local base set
    base=$(archives '?priority(required)' apt)
    for set in "${sets[@]}"; do
        # shellcheck disable=SC2046 # package names are words
        comm -13 <(echo "$base") <(archives '?priority(required)' apt $(rows running "$set" | cut -d' ' -f1)) |
            awk -v set="$set" '{ size += $2 } END { printf "%-10s %4d packages %5d MB\n", set, NR, size / 1e6 }'
    done
}

case $action in
list)
    rows "${wanted[@]}" | cut -d' ' -f1
    exit
    ;;
sizes)
    sizes
    exit
    ;;
esac

# Names of the installed packages, and of the packages that they provide.
installed=$(dpkg-query --show --showformat='${db:Status-Status} ${Package}, ${Provides}\n' |
    sed -n 's/^installed //; t names; d; :names; s/ ([^)]*)//g; s/, */\n/g; p')
missing=()
while read -r package reason; do
    [ -n "$package" ] || continue
    if ! grep -qxF "$package" <<<"$installed"; then
        printf 'Missing: %-21s %s\n' "$package" "$reason"
        missing+=("$package")
    fi
done < <(rows "${wanted[@]}")
[ ${#missing[@]} -gt 0 ] || exit 0

as_root=()
if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || { echo "Install these packages as root: ${missing[*]}" >&2; exit 1; }
    as_root=(sudo)
    [ -t 0 ] || as_root+=(--non-interactive)
fi
echo "Installing ${#missing[@]} packages"
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install --yes --no-install-recommends "${missing[@]}" </dev/null
