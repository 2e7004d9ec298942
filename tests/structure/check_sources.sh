#!/usr/bin/env bash
# check_sources.sh ROOT: the rules of the source tree. Prints each breach and fails when there is one.
#  1. System and toolkit headers stand only in platform files, so that the rest stays portable.
#  2. Folders include downwards only: platform < primitives < image < detect, capture < actions <
#     session < dialog < api; detect and capture do not know each other.
#  3. No source has more than 600 lines.
set -euo pipefail
cd "$1"

folders=(platform primitives image detect capture actions session dialog api tools tests bench fuzz include examples)
layers=(platform primitives image "detect capture" actions session dialog api)
system_headers='<(windows|winuser|wingdi|windowsx|objbase|objidl|oaidl|ocidl|ole2|olectl|shlobj|commctrl|tlhelp32)\.h>'
system_headers+='|<(dshow|strmif|qedit|control|amvideo|uuids|ks|ksmedia|ksproxy)\.h>'
system_headers+='|<(dlfcn|unistd|pthread|sched|fcntl|poll|link)\.h>|<(sys|linux|gdk|gdk-pixbuf|glib|gst|pango|X11|xcb)/|<cairo[-a-z]*\.h>'
system_headers+='|<(glib|gio|gobject|gtk)(-[a-z]+)?[./]|<Q[A-Za-z/]+>'
# Files that may name a system: a system's own folders, the picture files of the tools, what the tests
# need of a host, and the public header, which has the system's handle types.
system_files='(^|/)(windows|win32|linux|qt|directshow|gstreamer|support)/|^include/|^examples/|^tests/(exports|tools|watch)/'

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

# may_not FOLDER FORBIDDEN: no file of a folder includes one of the forbidden folders (joined by "|").
may_not() {
    [ -d "$1" ] || return 0
    while IFS= read -r line; do
        breach "$line: $1 may not use what does not lie below it"
    done < <(grep -rnE "^[[:space:]]*#[[:space:]]*include[[:space:]]*\"(\.\./)*($2)/" "$1" || true)
}
for ((level = 0; level < ${#layers[@]}; level++)); do
    for layer in ${layers[level]}; do
        beside=${layers[level]//$layer/}
        forbidden="$beside ${layers[*]:level + 1} tools tests bench fuzz"
        may_not "$layer" "$(xargs <<<"$forbidden" | tr ' ' '|')"
    done
done

if [ "$breaches" -gt 0 ]; then
    echo "$breaches breaches in ${#sources[@]} sources"
    exit 1
fi
echo "${#sources[@]} sources keep the rules"
