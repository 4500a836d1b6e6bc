#!/bin/bash
# Usage: ./package.sh [--here]
#
# Makes all packages into build/packages/ from the last commit, byte for byte the same each time:
#
#   toravane-VERSION-windows.zip   portable: the program and its manual
#   toravane-VERSION-setup.exe     installer
#   toravane_VERSION_amd64.deb     Debian and Ubuntu, through Wine
#   toravane-VERSION-web.zip       the page, for any web server
#
# --here takes the files as they are, committed or not, and what is built already.
set -euo pipefail
cd "$(dirname "$0")"

output=build/packages
case "${1:-}" in
"")
    tools/install_packages.sh packaging web
    rm -rf $output
    mkdir -p $output/source
    git archive HEAD | tar -x -C $output/source
    $output/source/package.sh --here
    mv $output/source/$output/toravane* $output
    rm -rf $output/source
    exit
    ;;
--here) ;;
*)
    sed -n '2,/^set/{/^#/s/^# \{0,1\}//p}' package.sh
    exit 2
    ;;
esac

# Packages are dated by the release, not by the day on which they are made.
changelog() {
    dpkg-parsechangelog --file packaging/debian/changelog --show-field "$1"
}
SOURCE_DATE_EPOCH=$(changelog Timestamp)
version=$(changelog Version)
date=$(date --utc --date "@$SOURCE_DATE_EPOCH" +%F)
export SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C.UTF-8
umask 022
grep -q "^project(toravane VERSION $version " CMakeLists.txt || {
    echo "packaging/debian/changelog and CMakeLists.txt name different versions" >&2
    exit 1
}

CXXFLAGS=-ffile-prefix-map=$PWD=. tools/build.sh desktop toravane
export DEB_BUILD_MAINT_OPTIONS=hardening=+all
CXXFLAGS="$(dpkg-buildflags --get CXXFLAGS) $(dpkg-buildflags --get CPPFLAGS)" LDFLAGS=$(dpkg-buildflags --get LDFLAGS) \
    tools/build.sh tools toravane-replay toravane-receiver

echo "Packing version $version"
rm -rf $output
work=$output/work
windows=$work/toravane-$version
debian=$work/debian-package
mkdir -p "$windows" $debian/man $debian/usr/{bin,share/{toravane,applications,doc/toravane}}

# dated FOLDER: gives everything below the release's date.
dated() {
    find "$1" -exec touch --no-dereference --date "@$SOURCE_DATE_EPOCH" {} +
}

# ---- Windows ----
x86_64-w64-mingw32-strip -o "$windows/toravane.exe" build/desktop/toravane.exe
pandoc --standalone --self-contained --from gfm --css packaging/manual.css --metadata pagetitle="Toravane user guide" \
    --resource-path docs --output "$windows/user-guide.html" docs/user-guide.md
dated "$windows"
(cd $work && find "toravane-$version" -print | sort | zip --quiet -X -@ "../toravane-$version-windows.zip")
makensis -V2 -NOCD -DVERSION="$version" -DFILES="$windows" -DICON=resources/toravane.ico \
    -DOUTPUT="$output/toravane-$version-setup.exe" packaging/windows/installer.nsi

# ---- Debian and Ubuntu ----
cp -r packaging/debian $debian
cp build/tools/toravane-replay build/tools/toravane-receiver $debian/usr/bin
cp packaging/launcher.py $debian/usr/share/toravane
install --mode 644 tools/desktop/{prefix,ports}.py "$windows/toravane.exe" $debian/usr/share/toravane
echo "$version" >$debian/usr/share/toravane/version
cp packaging/toravane.desktop $debian/usr/share/applications
cp "$windows/user-guide.html" $debian/usr/share/doc/toravane
/usr/bin/python3 - resources/toravane.ico $debian/usr/share/icons/hicolor <<'END'
import pathlib, sys
from PIL import Image
for size in Image.open(sys.argv[1]).ico.sizes():
    file = pathlib.Path(sys.argv[2], "%dx%d" % size, "apps", "toravane.png")
    file.parent.mkdir(parents=True)
    Image.open(sys.argv[1]).ico.getimage(size).save(file)
END
sed "s/@VERSION@/$version/; s/@DATE@/$date/" packaging/toravane.1 >$debian/man/toravane.1
# manual TOOL SUMMARY: a tool's manual page, made from its --help.
manual() {
    help2man --no-info --section 1 --version-string "$version" --name "$2" "build/tools/$1" >"$debian/man/$1.1"
}
manual toravane-receiver "a SiRF receiver in software, on a pseudo-terminal"
manual toravane-replay "shows what Toravane makes of recorded receiver logs"
(cd $debian && debian/rules binary >/dev/null)
mv $work/*.deb $output

# ---- Page ----
tools/build.sh web
cp -r build/web "$work/toravane-$version-web"
dated "$work/toravane-$version-web"
(cd $work && find "toravane-$version-web" -print | sort | zip --quiet -X -@ "../toravane-$version-web.zip")

rm -rf $work
echo "Packages:"
printf '  %s\n' $output/*
