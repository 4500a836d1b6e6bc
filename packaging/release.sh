#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: packaging/release.sh [--dry-run]
#
# Makes a release of the last commit: tests everything, makes the packages twice, and sets the tag vVERSION. Refuses a
# tree with changes, different versions, a version without an entry in CHANGELOG.md or with an existing tag, a failing
# check, and packages that differ the second time. --dry-run ends before the tests.
set -euo pipefail
cd "$(dirname "$0")/.."

refuse() {
    echo "release.sh: $*" >&2
    exit 1
}

case "${1:-}" in
"" | --dry-run) ;;
*)
    sed -n '/^# Usage/,/^set/{/^#/s/^# \{0,1\}//p}' packaging/release.sh >&2
    exit 2
    ;;
esac

version=$(sed -n 's/^project(toravane VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
[ -z "$(git status --porcelain)" ] || refuse "the tree has changes that are not committed"
[ "$(dpkg-parsechangelog --file packaging/debian/changelog --show-field Version)" = "$version" ] ||
    refuse "packaging/debian/changelog does not begin with version $version"
for file in packaging/*.metainfo.xml; do
    grep -q "<release version=\"$version\"" "$file" || refuse "$file does not name version $version"
done
grep -q "^## \[$version\]" CHANGELOG.md || refuse "CHANGELOG.md has no entry for version $version"
! sed -n '/^## \[Unreleased\]/,/^## \[[0-9]/p' CHANGELOG.md | grep -q '^- ' ||
    refuse "CHANGELOG.md has entries that belong to no version"
! git rev-parse --quiet --verify "refs/tags/v$version" >/dev/null || refuse "version $version is released already"
echo "Version $version can be released"
[ "${1:-}" != --dry-run ] || exit 0

./test.sh || refuse "a check has failed"
./package.sh
cp build/packages/SHA256SUMS build/first-sums
./package.sh
cmp build/first-sums build/packages/SHA256SUMS || refuse "the packages came out different the second time"
git tag --annotate "v$version" --message "Toravane $version"
echo "Tagged v$version; the packages are in build/packages/"
