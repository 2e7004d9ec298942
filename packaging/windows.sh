#!/usr/bin/env bash
# windows.sh OUTPUT: packs build/windows-x86 and build/windows-x64, which must be built, as a zip file each.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
output=$(realpath -m "$1")
mkdir -p "$output"
version=$(packaging/version.sh)
date=$(git log -1 --format=%cI -- CHANGELOG.md 2>/dev/null || date -Iseconds -r CHANGELOG.md)

# text FILE NEW: a text with the line ends of Windows.
text() { sed "s/@VERSION@/$version/; s/\$/\r/" "$1" >"$2"; }

# The machine of each, as the maker of import libraries calls it.
declare -A machine=([x86]=i386 [x64]=i386:x86-64)
for bits in x86 x64; do
    name=orvane-windows-$bits
    folder=build/package/$name
    rm -rf "$folder"
    mkdir -p "$folder"
    for component in runtime development tool operator; do
        cmake --install "build/windows-$bits" --prefix "$PWD/$folder" --component "$component" --strip
    done
    cp api/orvane.def "$folder/lib/"
    # In the short form of Microsoft's own tools, which take names as the C compiler decorates them and import them
    # plain; the long form of binutils stops their 32-bit linker, which wants to know each object's handlers.
    llvm-dlltool -m "${machine[$bits]}" -d api/orvane.def -l "$folder/lib/Orvane.lib"
    mv "$folder/examples/skins" "$folder/skins"
    rm "$folder"/examples/*/Makefile "$folder"/examples/*/*.config # pkg-config's and Mono's
    text packaging/windows/README-windows.txt "$folder/README-windows.txt"
    text examples/README.md "$folder/examples/README.md"
    text LICENSE "$folder/LICENSE.txt"
    text CHANGELOG.md "$folder/CHANGELOG.txt"
    find "$folder" -exec touch -d "$date" {} +
    rm -f "$output/$name.zip"
    (cd build/package && find "$name" | sort | TZ=UTC zip -9Xq "$output/$name.zip" -@)
done
