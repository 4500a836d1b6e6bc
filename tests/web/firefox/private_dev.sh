#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: unshare --mount private_dev.sh COMMAND...
#
# Runs a command with its own /dev, which has no serial device: Firefox opens every node there that looks like one.
# Nodes that are made there disappear with the command.
set -euo pipefail
dev=$(mktemp -d)
mount -t tmpfs tmpfs "$dev"
for node in null zero full random urandom tty; do cp -a "/dev/$node" "$dev/$node"; done
mkdir "$dev/pts" "$dev/shm"
mount --bind /dev/pts "$dev/pts"
mount -t tmpfs tmpfs "$dev/shm"
ln -s pts/ptmx "$dev/ptmx"
ln -s /proc/self/fd "$dev/fd"
mount --move "$dev" /dev
rmdir "$dev"
exec "$@"
