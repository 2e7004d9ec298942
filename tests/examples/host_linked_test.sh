#!/usr/bin/env bash
# host_test.sh [EMULATOR...] HOST: the example host on a flat grey picture, and on files that are none.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failures=0
# No operator sits here: the library works without a window, wherever the tests run, and says so.
unset DISPLAY WAYLAND_DISPLAY WAYLAND_SOCKET QT_QPA_PLATFORM

# expect STATUS OUTPUT ARGUMENT...: runs the host.
expect() {
    local expected="exit $1, $2" status=0 output
    output=$("${host[@]}" "${@:3}" 2>&1 | tr -d '\r' | { grep -v '^orvane: working without a window: ' || true; }) || status=$?
    if [ "exit $status, $output" != "$expected" ]; then
        echo "host ${*:3}: expected $expected; got exit $status, $output"
        failures=$((failures + 1))
    fi
}
host=("$@")

# 160 by 120 pixels: file header, bitmap header, 57,600 bytes of grey.
{
    printf 'BM\x36\xe1\0\0\0\0\0\0\x36\0\0\0'
    printf '\x28\0\0\0\xa0\0\0\0\x78\0\0\0\x01\0\x18\0\0\0\0\0\0\xe1\0\0'
    head -c 16 /dev/zero
    head -c 57600 /dev/zero | tr '\0' '\200'
} >flat.bmp
: >empty.bmp
head -c 40 flat.bmp >short.bmp

expect 1 'result 10' flat.bmp out.bmp
expect 1 'result -60' short.bmp out.bmp
expect 2 "empty.bmp can't be read" empty.bmp out.bmp
expect 2 "missing.bmp can't be read" missing.bmp out.bmp
expect 2 'usage: host-linked PHOTO.bmp PORTRAIT.bmp'
if [ -e out.bmp ]; then
    echo "a portrait was written without a face"
    failures=$((failures + 1))
fi
if [ "$failures" -gt 0 ]; then exit 1; fi
echo "the example host answers as it should"
