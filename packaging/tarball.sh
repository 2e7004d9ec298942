#!/usr/bin/env bash
# tarball.sh OUTPUT: packs what the Debian packages hold for the other Linuxes: one folder that works wherever it is
# unpacked. Takes the build tree that debian.sh left, with other folders of the installation; nothing is compiled anew.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
output=$(realpath -m "$1")
source=build/package/source
version=$(packaging/version.sh)
name=orvane-$version-linux-$(uname -m)
tree=$(echo "$source"/obj-*)
folder=build/package/$name

rm -rf "$folder"
mkdir -p "$folder" "$output"
cmake -S "$source" -B "$tree" -DCMAKE_INSTALL_PREFIX=/opt/orvane -DCMAKE_INSTALL_LIBDIR=lib \
    -DORVANE_ZSH_DIR=share/zsh/site-functions
for component in runtime development tool operator; do
    cmake --install "$tree" --prefix "$PWD/$folder" --component "$component" --strip
done
cp LICENSE CHANGELOG.md "$folder/"
cp packaging/templates/README-linux.txt "$folder/README.txt"
date=$(git log -1 --format=%cI -- CHANGELOG.md 2>/dev/null || date -Iseconds -r CHANGELOG.md)
tar -C build/package --sort=name --owner=0 --group=0 --numeric-owner --mtime="$date" -c "$name" |
    gzip -9n >"$output/$name.tar.gz"
