#!/usr/bin/env bash
# tarball_test.sh ARCHIVE PHOTO VERSION: the archive for Linux, unpacked in one place and moved to another, works there:
# its programs, a host built with pkg-config and one built with CMake.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
archive=$(realpath "$1") photo=$(realpath "$2") version=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
cp "$photo" photo.png
cp "$here/language_host.c" .
tar -xzf "$archive"
mv orvane-"$version"-linux-* 'moved elsewhere'
folder=$work/'moved elsewhere' bin=$folder/bin
. "$here/used.sh"
unset LD_LIBRARY_PATH DISPLAY WAYLAND_DISPLAY

use_tool
use_operator

export PKG_CONFIG_PATH=$folder/lib/pkgconfig
run 0 pkg-config --modversion orvane
said "$version"
cp -r "$folder/share/doc/liborvane-dev/examples" made
# The moved folder has a space in its name, which make and pkg-config pass on quoted.
run 0 make -C made LDFLAGS="-Wl,-rpath,'$folder/lib'"
eval "run 0 cc -o language_host language_host.c $(pkg-config --cflags --libs orvane) -Wl,-rpath,'$folder/lib'"
use_host made/host ./language_host
run 0 cmake -S made -B made/build -DCMAKE_PREFIX_PATH="$folder"
run 0 cmake --build made/build
use_host made/build/host ./language_host
run 0 ldd made/build/host
said "$folder/lib/liborvane.so.1"

# Built for no place: nothing in it names the folders where it was made.
if grep -rlF "$(realpath "$here/../..")" "$folder"; then fail "these name the folder of the build"; fi
bash "$here/texts_test.sh" "$folder" || fail "manuals or completions"
finish "the archive for Linux, moved to another folder,"
