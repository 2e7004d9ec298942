#!/usr/bin/env bash
# debian.sh OUTPUT: builds the Debian packages from a copy of the sources in build/package/source and puts them into
# the folder OUTPUT. The build tree stays there, for the archive of the other Linuxes.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
output=$(realpath -m "$1")
source=build/package/source
version=$(packaging/version.sh)

rm -rf "$source" build/package/*.deb build/package/*.buildinfo build/package/*.changes
mkdir -p "$source" "$output"
tar -c --exclude=./build --exclude=./demo --exclude=./.git . | tar -x -C "$source"
mv "$source/packaging/debian" "$source/debian"
# The last change of the user's changelog dates the packages, so that the same sources give the same packages.
date=$(git log -1 --format=%cD -- CHANGELOG.md 2>/dev/null || date -R -r CHANGELOG.md)
sed "s/@VERSION@/$version/; s/@DATE@/$date/" "$source/debian/changelog.in" >"$source/debian/changelog"
rm "$source/debian/changelog.in"

# The packages' build knows no home folder; the compiler's cache is found by its own name.
if command -v ccache >/dev/null; then
    CCACHE_DIR=$(ccache --get-config cache_dir)
    export CCACHE_DIR CCACHE_BASEDIR=$PWD/$source CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=pch_defines,time_macros
    export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
export DEB_BUILD_OPTIONS="nocheck noautodbgsym parallel=${ORVANE_JOBS:-$(nproc)}"
(cd "$source" && dpkg-buildpackage --build=binary --no-sign)
mv build/package/*.deb "$output/"
