#!/usr/bin/env bash
# make_icon.sh: renders orvane.svg into orvane.ico (icon 128 of the window) and orvane-64.png. Run it after the
# drawing changed and commit what it makes. Needs Debian's librsvg2-bin, imagemagick and icoutils.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

bitmaps=()
for size in 16 24 32 48 64 256; do
    rsvg-convert --width "$size" --height "$size" orvane.svg --output "$folder/$size.png"
    # Files that say nothing about when and by what they were made are the same each time.
    convert "$folder/$size.png" -strip -define png:exclude-chunks=date,time -depth 8 "PNG32:$folder/$size.png"
    if [ "$size" -lt 256 ]; then bitmaps+=("$folder/$size.png"); fi
done
# Only the largest is stored as a PNG: resource compilers and old systems read the others as 32-bit bitmaps.
icotool --create --bit-depth=32 --output=orvane.ico "${bitmaps[@]}" --raw="$folder/256.png"
cp "$folder/64.png" orvane-64.png
icotool --list orvane.ico
