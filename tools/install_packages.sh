#!/bin/bash
# Usage: install_packages.sh [packaging]
# Installs the Debian packages that are still missing: those for building and testing, with `packaging` also those for
# making packages. Says nothing and touches nothing when all are there.
set -euo pipefail

# Package            Reason
Packages='
g++                  compiler of the tests and tools on Linux
g++-mingw-w64-x86-64 compiler of the desktop program, with its resource compiler
gcc-arm-none-eabi    compiler of the program for devices
libnewlib-arm-none-eabi mathematics of that program
libstdc++-arm-none-eabi-dev C++ headers of that program
cmake                build
ninja-build          build
clang-format         checks the format of the sources
libgtest-dev         unit tests
libbenchmark-dev     benchmarks
libpng-dev           pictures of the chart that the replay tool writes
libunicorn-dev       emulated ARM processors, that run the image for devices
wine                 runs the desktop program on Linux
wine64               its 64-bit half, the only one that we use
fonts-liberation     the fixed-pitch and dialog fonts that Wine draws with
libxrender1          Wine draws text through it
xvfb                 a display for machines without one
file                 reads the image for devices in its tests
pev                  reads it, too
icoutils             lists the resources in it
python3-pefile       reads all of it
cabextract           unpacks the install packages for devices
python3              launcher and desktop tests
python3-pil          screenshots
python3-pytest       desktop tests
'

PackagingPackages='
debhelper            makes the .deb
desktop-file-utils   checks its menu entry
lintian              checks it
nsis                 makes the installer for Windows
pandoc               makes the manual
zip                  makes the portable archive
'

[ "${1:-}" != packaging ] || Packages+=$PackagingPackages
missing=()
while read -r package reason; do
    [ -n "$package" ] || continue
    status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true)
    if [ "$status" != installed ]; then
        printf 'Missing: %-21s %s\n' "$package" "$reason"
        missing+=("$package")
    fi
done <<<"$Packages"
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
