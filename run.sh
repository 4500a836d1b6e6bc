#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: ./run.sh --web [--port NUMBER]
#        ./run.sh [--help] [--pocketpc | --smartphone] [--sirf] [--cold] [DEVICE [RATE]]
#
# Installs missing packages, builds, and shows a receiver's data in the program, through Wine.
#
#   ./run.sh                      the software receiver, moving along a track
#   ./run.sh --sirf               the same, in SiRF binary instead of NMEA
#   ./run.sh --cold               the same from a cold start: it searches for satellites first (also with --sirf)
#   ./run.sh --pocketpc           the program as on a Pocket PC: a touch screen of 240 x 320
#   ./run.sh --smartphone         as on a Smartphone: 176 x 220 and a keypad. The arrows and Enter are its joystick,
#                                 Escape is Back, F1 and F2 are the soft keys
#   ./run.sh --web                the program as a page in the browser, at http://127.0.0.1:8190/ or another port
#   ./run.sh /dev/ttyUSB0         a real receiver at 4800 baud
#   ./run.sh /dev/ttyUSB0 57600   the same at another rate, 1200 to 115200
#
# With a display the window stays until it is closed. Without a display the program runs for about 20 seconds (60 from a
# cold start) on a display in memory, and screenshots are saved in build/run/.
set -euo pipefail
cd "$(dirname "$0")"

case " $* " in
*" --help "* | *" -h "*)
    sed -n '/^# Usage/,/^set/{/^#/s/^# \{0,1\}//p}' run.sh
    exit
    ;;
esac

if [ "${1:-}" = --web ]; then
    tools/install_packages.sh running web
    tools/build.sh web
    exec tools/serve_page.py "${@:2}"
fi

tools/install_packages.sh running
export TORAVANE_TOOLS=$PWD/build/tools
exec /usr/bin/python3 tools/desktop/launch.py "$@"
