#!/usr/bin/env bash
# check_sources.sh ROOT: the rules of the source tree. Prints each breach and fails when there is one.
#  1. System and toolkit headers stand only in platform files, so that the rest stays portable.
#  2. Folders include downwards only: platform < primitives < image < detect < actions < api.
#  3. No source has more than 600 lines.
set -euo pipefail
cd "$1"

folders=(platform primitives image detect actions api capture dialog tools tests bench fuzz include examples)
layers=(platform primitives image detect actions api)
system_headers='<(windows|winuser|wingdi|windowsx|objbase|ole2|dshow|shlobj|commctrl)\.h>'
system_headers+='|<(dlfcn|unistd|pthread|sched|fcntl|poll|link)\.h>|<(sys|linux|gdk|gdk-pixbuf|glib|gst|X11)/'
system_headers+='|<(glib|gio|gtk)[./]|<Q[A-Za-z/]+>'
# Files that may name a system: a system's own folders, the picture files of the tools, what the tests
# need of a host, and the public header, which has the system's handle types.
system_files='(^|/)(windows|win32|linux|qt|directshow|gstreamer|support)/|^include/|^examples/|^tests/(exports|tools)/'

existing=()
for folder in "${folders[@]}"; do
    if [ -d "$folder" ]; then existing+=("$folder"); fi
done
mapfile -t sources < <(find "${existing[@]}" -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) | sort)
if [ ${#sources[@]} -eq 0 ]; then
    echo "no sources under $1"
    exit 1
fi

breaches=0
breach() {
    echo "$*"
    breaches=$((breaches + 1))
}

for file in "${sources[@]}"; do
    lines=$(wc -l <"$file")
    if [ "$lines" -gt 600 ]; then breach "$file has $lines lines, more than 600"; fi

    if ! [[ $file =~ $system_files ]]; then
        while IFS= read -r line; do
            breach "$file:$line: a system header outside the platform files"
        done < <(grep -nE "^[[:space:]]*#[[:space:]]*include[[:space:]]*($system_headers)" "$file" || true)
    fi
done

for ((upper = 1; upper < ${#layers[@]}; upper++)); do
    above=$(IFS='|' && echo "${layers[*]:upper}")'|capture|dialog|tools|tests|bench|fuzz'
    layer=${layers[upper - 1]}
    [ -d "$layer" ] || continue
    while IFS= read -r line; do
        breach "$line: $layer may not use what lies above it"
    done < <(grep -rnE "^[[:space:]]*#[[:space:]]*include[[:space:]]*\"(\.\./)*($above)/" "$layer" || true)
done

if [ "$breaches" -gt 0 ]; then
    echo "$breaches breaches in ${#sources[@]} sources"
    exit 1
fi
echo "${#sources[@]} sources keep the rules"
