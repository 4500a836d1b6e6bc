#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: ./package.sh [--here | --site]
#
# Makes all packages into build/packages/ from the last commit, byte for byte the same each time:
#
#   toravane-VERSION-windows.zip    portable: the program, toravanectl, toravane-replay, the page, the guide
#   toravane-VERSION-setup.exe      installer
#   toravane-VERSION-web.zip        the page, for any web server
#   toravane_VERSION_amd64.deb      Debian and Ubuntu: the program, through Wine
#   toravane-tools_VERSION_amd64.deb  toravanectl, toravane-replay, toravane-receiver
#   toravane-web_VERSION_all.deb    the page, and a command that opens it
#   toravane_VERSION.dsc, .tar.xz   Debian source package of all three, for every architecture
#   toravane-VERSION.spdx.json      what all of it is made of
#   SHA256SUMS                      checksums of the files above
#
# --here takes the current files, committed or not, and the programs for Windows and the page that were built here.
# --site makes the web site in build/site/ instead: pages, guide, protocols, and the existing packages.
set -euo pipefail
cd "$(dirname "$0")"

output=$PWD/build/packages
case "${1:-}" in
"" | --here) ;;
--site)
    tools/install_packages.sh packaging
    exec packaging/site.py docs build/site "$output"
    ;;
*)
    sed -n '/^# Usage/,/^set/{/^#/s/^# \{0,1\}//p}' package.sh >&2
    exit 2
    ;;
esac
tools/install_packages.sh packaging web

# Packages have the date of the release, not of the day on which they are made.
changelog() {
    dpkg-parsechangelog --file packaging/debian/changelog --show-field "$1"
}
SOURCE_DATE_EPOCH=$(changelog Timestamp)
version=$(changelog Version)
export SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C.UTF-8
umask 022
grep -q "^project(toravane VERSION $version " CMakeLists.txt || {
    echo "packaging/debian/changelog and CMakeLists.txt name different versions" >&2
    exit 1
}

# dated FOLDER: gives all files in it the release's date.
dated() {
    find "$1" -exec touch --no-dereference --date "@$SOURCE_DATE_EPOCH" {} +
}

echo "Packing version $version"
rm -rf "$output"
source=$output/staging/toravane-$version
mkdir -p "$source"
if [ $# = 1 ]; then
    git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
        [ ! -e "$file" ] || printf '%s\0' "$file"
    done | tar --create --null --files-from - | tar -x -C "$source"
    tools/build.sh desktop toravane toravanectl
    tools/build.sh desktop-tools
    tools/build.sh web
    mkdir "$source"/build{,/desktop,/desktop-tools}
    cp build/desktop/toravane{,ctl}.exe "$source/build/desktop"
    cp build/desktop-tools/toravane-replay.exe "$source/build/desktop-tools"
    cp -r build/web "$source/build"
else
    # Equal modes, no matter who packs: tar would otherwise keep them for root alone.
    git -c tar.umask=0022 archive HEAD | tar -x -C "$source"
fi
mv "$source/packaging/debian" "$source/debian"
dated "$source"

# ---- Debian and Ubuntu ----
log=$output/staging/debian.log
(cd "$source" && dpkg-buildpackage --no-sign >"$log" 2>&1) || {
    tail --lines 40 "$log" >&2
    exit 1
}
mv "$output/staging"/*.{deb,dsc,tar.xz} "$output"

# ---- Page ----
page=$output/staging/web/toravane-$version-web
mkdir -p "$page"
cp -r "$source/build/web/." "$page"
dated "$page"
(cd "$output/staging/web" &&
    find "toravane-$version-web" -print | sort | zip --quiet -X -@ "$output/toravane-$version-web.zip")

# ---- Windows ----
windows=$output/staging/windows/toravane-$version
mkdir -p "$windows"
(cd "$source" && make --quiet --file debian/rules build/guide/toravane{,ctl,-replay}.exe >"$log" 2>&1) || {
    tail --lines 40 "$log" >&2
    exit 1
}
cp "$source"/build/guide/{*.exe,user-guide.html} "$windows"
cp "$source/LICENSE" "$windows/license.txt"
cp -r "$page" "$windows/page"
dated "$windows"
(cd "$output/staging/windows" &&
    find "toravane-$version" -print | sort | zip --quiet -X -@ "$output/toravane-$version-windows.zip")
makensis -V2 -NOCD -DVERSION="$version" -DFILES="$windows" -DICON=resources/toravane.ico \
    -DOUTPUT="$output/toravane-$version-setup.exe" packaging/windows/installer.nsi

packaging/bill_of_materials.py "$version" "$SOURCE_DATE_EPOCH" >"$output/toravane-$version.spdx.json"
rm -rf "$output/staging"
(cd "$output" && sha256sum -- * >SHA256SUMS)
echo "Packages:"
(cd "$output" && printf '  build/packages/%s\n' *)
