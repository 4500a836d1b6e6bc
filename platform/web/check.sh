#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: check.sh
#
# Checks the page's sources: types, common faults, format. Needs npm, and the generated files such as messages.d.ts,
# which the build of the preset `web` makes.
set -euo pipefail
cd "$(dirname "$0")"

command -v npm >/dev/null || { echo "npm is missing: install the package npm" >&2; exit 1; }
if ! cmp -s package-lock.json node_modules/installed-lock.json; then
    npm ci --no-fund --no-audit --loglevel error
    cp package-lock.json node_modules/installed-lock.json
fi
npm run --silent check
