#!/usr/bin/env bash
# screens.sh FOLDER [PHOTO CLASSIFIER]: pictures of every state of the operator's window, as PNG files in
# FOLDER/qt (drawn into memory), FOLDER/x11 (on an X server) and FOLDER/windows (under Wine). The tests' programs
# must be built. PHOTO is a picture file, CLASSIFIER the file that finds its face; else a drawn face is shown.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../.." && pwd)
folder=$(realpath -m "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

if [ $# -ge 3 ]; then
    # What the tests read: an uncompressed 24-bit bitmap with the short header.
    convert "$2" -resize '1200x1200>' -alpha off -type TrueColor -define bmp:format=bmp3 "$work/photo.bmp"
    export ORVANE_SCREEN_PHOTO=$work/photo.bmp
    ORVANE_SCREEN_CLASSIFIER=$(realpath "$3")
    export ORVANE_SCREEN_CLASSIFIER
fi

take() { # take NAME COMMAND...: runs the tests that take the pictures
    local name=$1
    shift
    rm -rf "${folder:?}/$name"
    mkdir -p "$folder/$name"
    echo "== screens of $name"
    ORVANE_SCREENS=$folder/$name "$@" --gtest_filter='Screens.*' >"$work/log" 2>&1 || { tail -n 30 "$work/log"; exit 1; }
}

program=build/linux/bin/window_sessions_tests
cd "$root"
QT_QPA_PLATFORM=offscreen take qt "$program"
QT_QPA_PLATFORM=xcb take x11 bash cmake/xvfb.sh "$program"
if [ -f build/windows-x64/bin/window_sessions_tests.exe ]; then
    bash cmake/wine.sh start-window
    # Wine sees the whole file system as drive Z:, and takes paths with slashes.
    take windows bash cmake/wine.sh run-window build/windows-x64/bin/window_sessions_tests.exe
    bash cmake/wine.sh stop-window
    mogrify -format png "$folder"/windows/*.bmp
    rm -f "$folder"/windows/*.bmp
fi
echo "$(find "$folder" -name '*.png' | wc -l) pictures in $folder"
