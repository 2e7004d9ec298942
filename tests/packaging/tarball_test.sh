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

files=()
while IFS= read -r -d '' file; do
    if head -c 4 "$file" | grep -qa '^.ELF'; then files+=("$file"); fi
done < <(find "$folder" -type f -print0)
[ ${#files[@]} -ge 5 ] || fail "${#files[@]} programs and libraries"
run 0 bash "$here/../structure/check_hardened.sh" "${files[@]}"
use_tool
use_operator

export PKG_CONFIG_PATH=$folder/lib/pkgconfig
run 0 pkg-config --modversion orvane
said "$version"
cp -r "$folder/share/doc/liborvane-dev/examples" made
# The moved folder has a space in its name, which make and pkg-config pass on quoted.
for host in host-linked host-c host-cpp host-csharp; do
    run 0 make -C "made/$host" LDFLAGS="-Wl,-rpath,'$folder/lib'"
done
eval "run 0 cc -o language_host language_host.c $(pkg-config --cflags --libs orvane) -Wl,-rpath,'$folder/lib'"
use_host made/host-linked/host-linked ./language_host
use_sample made/host-c/host-c "$folder/lib/liborvane.so.1"
use_sample made/host-cpp/host-cpp
use_sample env LD_LIBRARY_PATH="$folder/lib" mono made/host-csharp/Host.exe
for host in host-linked host-c host-cpp; do
    run 0 cmake -S "made/$host" -B "built/$host" -DCMAKE_PREFIX_PATH="$folder"
    run 0 cmake --build "built/$host"
done
use_host built/host-linked/host-linked ./language_host
use_sample built/host-c/host-c "$folder/lib/liborvane.so.1"
use_sample built/host-cpp/host-cpp
run 0 ldd built/host-linked/host-linked
said "$folder/lib/liborvane.so.1"

# Built for no place: nothing in it names the folders where it was made.
if grep -rlF "$(realpath "$here/../..")" "$folder"; then fail "these name the folder of the build"; fi
bash "$here/texts_test.sh" "$folder" || fail "manuals or completions"
finish "the archive for Linux, moved to another folder,"
