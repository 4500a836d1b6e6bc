#!/bin/bash
# SPDX-License-Identifier: MIT
# shellcheck disable=SC2016 # what the other system runs is expanded there
# Usage: tests/packages/cross_root.sh [arm64 | armhf] [FOLDER]
#
# Builds the Debian package of the tools for boards with ARM processors out of the source package in build/packages/, in
# a new Debian 12 system made for it, installs it there, and uses it on an emulated processor: toravanectl finds the
# software receiver. As root, with debootstrap. The system is made in FOLDER, which then stays for another run, or in a
# temporary one. The package is left in build/packages/.
set -euo pipefail
architecture=${1:-arm64}
packages=$(realpath "$(dirname "$0")"/../../build/packages)
keep=${2:+yes}
root=${2:-$(mktemp --directory /tmp/toravane-cross.XXXXXX)}
case $architecture in
arm64) emulator=qemu-aarch64-static ;;
armhf) emulator=qemu-arm-static ;;
*)
    sed -n '/^# Usage/,/^set/{/^#/s/^# \{0,1\}//p}' "$0" >&2
    exit 2
    ;;
esac

# Mounts and processes inside end with this script.
if [ "${TORAVANE_UNSHARED:-}" != yes ]; then
    export TORAVANE_UNSHARED=yes
    exec unshare --mount --pid --fork --kill-child "$0" "$architecture" "$root" ${keep:+"$keep"}
fi
[ -n "${3:-}" ] || trap 'umount --recursive "$root/proc" "$root/dev/pts" 2>/dev/null; rm -rf --one-file-system "$root"' EXIT

inside() {
    chroot "$root" /usr/bin/env --ignore-environment PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@"
}

echo "=== System"
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' | head --lines 1)
if [ ! -d "$root/usr" ]; then
    log=$(debootstrap --variant=minbase bookworm "$root" "$mirror" 2>&1) || { tail <<<"$log"; exit 1; }
fi
cp /etc/resolv.conf "$root/etc"
mount -t proc proc "$root/proc"
mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
inside dpkg --add-architecture "$architecture"
inside apt-get update --quiet=2
inside apt-get install --yes --no-install-recommends --quiet=2 build-essential "crossbuild-essential-$architecture" \
    qemu-user-static fakeroot >/dev/null

echo "=== Build for $architecture"
inside rm -rf /build
mkdir "$root/build"
cp "$packages"/toravane_*.dsc "$packages"/toravane_*.tar.xz "$root/build"
inside sh -c 'cd /build && dpkg-source --extract *.dsc toravane >/dev/null'
inside sh -c "cd /build/toravane && apt-get build-dep --yes --no-install-recommends --quiet=2 \
    --host-architecture $architecture --arch-only --build-profiles cross,nocheck ./ >/dev/null"
inside sh -c "cd /build/toravane && dpkg-buildpackage --no-sign --host-arch $architecture --build=any \
    --build-profiles=cross,nocheck >../log 2>&1" || { tail --lines 30 "$root/build/log"; exit 1; }
cp "$root/build"/*.deb "$packages"
inside sh -c 'ls -l /build/*.deb'

echo "=== Use on an emulated processor"
inside sh -c "apt-get install --yes --no-install-recommends --quiet=2 /build/*.deb >/dev/null"
inside dpkg-query --show --showformat '${Package} ${Version} ${Architecture} ${db:Status-Status}\n' \
    "toravane-tools:$architecture"
inside file -L /usr/bin/toravanectl 2>/dev/null || true
exec 4< <(inside "$emulator" /usr/bin/toravane-receiver --protocol sirf --rate 57600 --start hot)
read -r terminal <&4
found=$(inside "$emulator" /usr/bin/toravanectl --port "$terminal" probe)
echo "$found"
[[ $found == *SiRF* && $found == *57600* ]]
inside "$emulator" /usr/bin/toravane-replay --version

echo "=== Removal"
inside apt-get purge --yes --quiet=2 "toravane-tools:$architecture" >/dev/null
left=$(find "$root"/usr "$root"/lib/udev -name '*toravane*')
[ -z "$left" ] || { echo "left behind: $left"; exit 1; }
echo "Nothing is left. All as expected."
