#!/bin/bash
# SPDX-License-Identifier: MIT
# shellcheck disable=SC2016 # what the other system runs is expanded there
# Usage: tests/packages/clean_root.sh [RELEASE [FOLDER]]
#
# Installs the .deb packages of build/packages/ in a new Debian system (bookworm, or another release), with nothing but
# what apt brings for them, and uses them there as an ordinary user; then removes them, and looks for what is left. As
# root, with debootstrap and Xvfb. A picture of the program's screen is put into build/clean-root-RELEASE.png. The system
# is made in FOLDER, a temporary one if not given, and removed at the end. Ends with an error at the first unexpected
# result.
set -euo pipefail
shopt -s extglob
tree=$(realpath "$(dirname "$0")"/../..)
mapfile -t packages < <(realpath "$tree"/build/packages/toravane{,-tools,-web}_*_@(amd64|all).deb)
driver=$tree/build/desktop/toravane-driver.exe
release=${1:-bookworm}
root=${2:-$(mktemp --directory /tmp/toravane-root.XXXXXX)}

# Mounts and processes inside end with this script.
if [ "${TORAVANE_UNSHARED:-}" != yes ]; then
    export TORAVANE_UNSHARED=yes
    exec unshare --mount --pid --fork --kill-child "$0" "$release" "$root"
fi
trap 'umount --recursive "$root/proc" "$root/dev/pts" 2>/dev/null; rm -rf --one-file-system "$root"' EXIT

inside() {
    chroot "$root" /usr/bin/env --ignore-environment PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@"
}
as_user() {
    echo "anna\$ $*"
    inside runuser --user anna -- env HOME=/home/anna DISPLAY="${display:-}" "$@"
}
# expect TEXT COMMAND...: runs it as the user and requires the text in its output, with any exit code. Shows the first
# lines.
expect() {
    local text=$1 output
    shift
    output=$(as_user "$@" 2>&1) || true
    head --lines 8 <<<"$output"
    grep --quiet --fixed-strings -- "$text" <<<"$output" || { echo "expected: $text" >&2; exit 1; }
}

echo "=== System"
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' | head --lines 1)
log=$(debootstrap --variant=minbase "$release" "$root" "$mirror" 2>&1) || { tail <<<"$log"; exit 1; }
chmod 755 "$root" # a temporary folder is closed to ordinary users
cp /etc/resolv.conf "$root/etc"
mount -t proc proc "$root/proc"
mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
inside sh -c '. /etc/os-release && echo "$PRETTY_NAME, $(dpkg-query --show | wc --lines) packages"'

echo "=== Installation"
cp "${packages[@]}" "$root/tmp"
inside apt-get update --quiet=2
inside apt-get install --yes --no-install-recommends --quiet=2 "${packages[@]/#*\//\/tmp\/}" >"$root/tmp/install.log" 2>&1 || {
    tail "$root/tmp/install.log"
    exit 1
}
inside dpkg-query --show --showformat '${Package} ${Version} ${db:Status-Status}\n' toravane toravane-tools toravane-web wine wine64
inside apt-get install --yes --no-install-recommends --quiet=2 man-db adduser >/dev/null 2>&1

echo "=== Commands and manual pages"
inside adduser --quiet --disabled-password --gecos Anna anna
expect "usage: toravane [DEVICE [RATE]]" toravane --help
for tool in toravane toravanectl toravane-replay toravane-receiver; do
    expect "$tool 2." $tool --version
    expect "SYNOPSIS" man $tool
done
expect "SYNOPSIS" man toravane-web
echo '$GPVTG,231.8,T,,M,10.0,N,18.5,K,D*0D' | sed 's/$/\r/' >"$root/tmp/line.txt"
expect " Course: 231.80" toravane-replay /tmp/line.txt
inside bash -c '. /usr/share/bash-completion/completions/toravane-replay
    COMP_WORDS=(toravane-replay --st) COMP_CWORD=1; _toravane_tool toravane-replay; [ "${COMPREPLY[*]}" = --stats ]'
inside bash -n /usr/share/bash-completion/completions/toravanectl
cp "$tree/packaging/debian/tests/receiver" "$root/tmp/autopkgtest"
expect "Protocol SiRF" sh /tmp/autopkgtest
cp "$tree/packaging/debian/tests/page" "$root/tmp/autopkgtest"
expect "files are served" sh /tmp/autopkgtest

echo "=== Ports"
expect "No serial adapter" toravane --list
mknod --mode 660 "$root/dev/ttyUSB0" c 4 64
inside chown root:dialout /dev/ttyUSB0
expect "sudo adduser anna dialout" toravane --list
expect "sudo adduser anna dialout" toravane /dev/ttyUSB0
inside adduser --quiet anna dialout
expect "/dev/ttyUSB0: ttyUSB0" toravane --list
expect "there is no display" toravane /dev/ttyUSB0
inside runuser --user anna -- sleep 1000 <>"$root/dev/ttyUSB0" &
sleep 1
expect "in use by sleep (process" toravane --list
kill $!
rm "$root/dev/ttyUSB0"

echo "=== Program"
exec 3< <(Xvfb -displayfd 1 -screen 0 800x600x24 2>/dev/null)
read -r display <&3
display=:$display
exec 4< <(as_user toravane-receiver --start hot)
read -r _ <&4 # the command
read -r terminal <&4
as_user toravane "$terminal" &
program=$!
cp "$driver" "$root/tmp/driver.exe"
window() {
    printf '%s\n' "$@" | inside runuser --user anna -- env HOME=/home/anna DISPLAY="$display" WINEDEBUG=-all \
        WINEPREFIX=/home/anna/.local/share/toravane/wine wine /tmp/driver.exe
}
for _ in {1..60}; do
    sleep 2
    [ -e "$root/home/anna/.local/share/toravane/wine/ports.reg" ] || continue # the prefix is being created
    id=$(window windows | /usr/bin/python3 -c '
import json, sys
print(*(w["window"] for w in json.load(sys.stdin)["windows"] if w["class"] == w["text"] == "Toravane"))')
    [ -n "$id" ] || continue
    page=$(window page$'\t'"$id"$'\t'19)
    [[ $page != *" SVs"* ]] || break
done
/usr/bin/python3 -c 'import json, sys; print(*json.loads(sys.argv[1])["lines"], sep="\n")' "$page"
[[ $page == *" SVs"* ]]
PYTHONPATH=$tree/tools/desktop /usr/bin/python3 -B -c '
import pathlib, sys, desktop
desktop.save_screenshot(sys.argv[1], pathlib.Path(sys.argv[2]))' "$display" "$tree/build/clean-root-$release.png"
window "post"$'\t'"$id"$'\t'16$'\t'0$'\t'0 >/dev/null
wait $program
! grep --no-messages wine "$root"/proc/[0-9]*/comm || { echo "left running: the above"; exit 1; }

echo "=== Removal"
inside apt-get remove --yes --quiet=2 toravane toravane-tools toravane-web >/dev/null 2>&1
inside dpkg --purge toravane toravane-tools toravane-web >/dev/null 2>&1 # apt knows them no more
# Names and contents, except of the users' files, and of what apt, dpkg and man remember.
left=$(find "$root"/{etc,opt,root,srv,usr,var} -name '*toravane*'
    grep --recursive --files-with-matches --exclude='*-old' toravane "$root"/etc "$root"/var/lib || true)
[ -z "$left" ] || { echo "left behind: $left"; exit 1; }
echo "Nothing is left. All as expected."
