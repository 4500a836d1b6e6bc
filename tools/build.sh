#!/bin/bash
# SPDX-License-Identifier: MIT
# build.sh PRESET [TARGET]... configures a preset if necessary, and builds all of it or only the given targets.
set -euo pipefail
cd "$(dirname "$0")/.."
preset=$1
shift
echo "Building $preset"
[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
cmake --build --preset "$preset" ${1:+--target "$@"}
