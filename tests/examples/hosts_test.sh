#!/usr/bin/env bash
# hosts_test.sh KIND INPUT LIBRARY ELEVEN TOOL HOST [EMULATOR...]: one of the sample hosts (KIND is c, cpp or csharp) on
# a drawn photo, and on what it can't make a portrait of. INPUT draws the photos, ELEVEN is a library that lacks a
# function, TOOL the command line tool whose portrait the host's must equal, or - where it is not built.
set -euo pipefail
kind=$1 input=$2 library=$3 eleven=$4 tool=$5 host=$6
emulator=("${@:7}")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# No operator sits here: the library works without a window, wherever the tests run, and says so.
unset DISPLAY WAYLAND_DISPLAY WAYLAND_SOCKET QT_QPA_PLATFORM WINDOWID LD_LIBRARY_PATH
export LC_ALL=C.UTF-8
failures=0

fail() {
    echo "$kind: $*"
    failures=$((failures + 1))
}

# Host, library and classifier lie together, as a setup would put them; names are such as people give.
app="$folder/Käse & Söhne" away="$folder/elsewhere"
mkdir "$app" "$away" "$folder/photos"
cp "$host" "$library" "$app/"
if [ -e "$host.config" ]; then cp "$host.config" "$app/"; fi
file=$app/$(basename "$library")
command=("${emulator[@]}" "$app/$(basename "$host")")
if [[ $kind != c && $file == *.so.* ]]; then export LD_LIBRARY_PATH=$app; fi # host-c looks beside itself
if [ "$kind" = csharp ]; then emulator=(); fi                               # it is the host's alone
cd "$folder/photos"
"${emulator[@]}" "$input" .
mv Orvane.dat "$app/"
mv photo.bmp 'Grüße №1.bmp'
head -c 1000 'Grüße №1.bmp' >cut.bmp
head -c 40 'Grüße №1.bmp' >head.bmp
: >empty.bmp
echo 'a letter, not a picture, and long enough for the headers of one' >letter.bmp
# patch FILE OFFSET BYTES: flat.bmp with other bytes.
patch() {
    cp flat.bmp "$1"
    printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none
}
patch eight.bmp 28 '\x08'
patch packed.bmp 30 '\x01'
patch downwards.bmp 22 '\x88\xff\xff\xff'
patch wide.bmp 18 '\x00\x80'
patch nothing.bmp 18 '\x00'

# expect STATUS TEXT ARGUMENT...: runs the host, which should end so and say so.
expect() {
    local status=0 output
    output=$("${command[@]}" "${@:3}" 2>&1 </dev/null) || status=$?
    if [ "$status" -ne "$1" ] || ! grep -qF -- "$2" <<<"$output"; then
        fail "(${*:3}) expected exit $1 and '$2'; got exit $status and '$output'"
    fi
}

expect 0 'Größe.bmp: 480x' 'Grüße №1.bmp' Größe.bmp
if [ "$tool" != - ]; then
    cp "$tool" "$app/"
    "${emulator[@]}" "$app/$(basename "$tool")" portrait 'Grüße №1.bmp' -o tool.bmp --size 480x640 --crop-ratio 1 \
        --actions crop,colour >tool.txt 2>&1 || fail "the tool: $(cat tool.txt)"
    cmp tool.bmp Größe.bmp || fail "its portrait is not the tool's"
fi

# The pixels stand where the file says, not always behind the shortest headers.
{
    head -c 10 'Grüße №1.bmp'
    printf '\x8a\0\0\0\x7c'
    head -c 54 'Grüße №1.bmp' | tail -c +16
    head -c 84 /dev/zero
    tail -c +55 'Grüße №1.bmp'
} >longer.bmp
expect 0 'longer-portrait.bmp: 480x' longer.bmp longer-portrait.bmp
cmp Größe.bmp longer-portrait.bmp || fail "a longer header changes the portrait"

expect 10 'flat.bmp: no face was found' flat.bmp out.bmp
expect 4 "missing.bmp can't be opened" missing.bmp out.bmp
expect 4 'empty.bmp is not a bitmap file' empty.bmp out.bmp
expect 4 'head.bmp is not a bitmap file' head.bmp out.bmp
expect 4 'letter.bmp is not a bitmap file' letter.bmp out.bmp
expect 4 'cut.bmp is cut off' cut.bmp out.bmp
expect 4 'eight.bmp is not an uncompressed 24-bit bitmap' eight.bmp out.bmp
expect 4 'packed.bmp is not an uncompressed 24-bit bitmap' packed.bmp out.bmp
expect 4 'downwards.bmp has its top row first' downwards.bmp out.bmp
expect 4 'wide.bmp has sides that' wide.bmp out.bmp
expect 4 'nothing.bmp has sides that' nothing.bmp out.bmp
expect 2 'usage: '
expect 2 'usage: ' 1 2 3 4
expect 6 "out.bmp can't be written" 'Grüße №1.bmp' absent/out.bmp
mv "$app/Orvane.dat" "$away/"
expect 5 'Orvane.dat beside the library is missing' 'Grüße №1.bmp' out.bmp

case $kind in
    c)
        expect 3 "none.so can't be loaded: " none.so flat.bmp out.bmp
        expect 3 "letter.bmp can't be loaded: " ./letter.bmp flat.bmp out.bmp
        expect 3 'the library has no function orv_GetOutputImage' "$eleven" flat.bmp out.bmp
        # A library that is named is taken, with the classifier beside it.
        cp "$library" "$away/"
        expect 0 'named.bmp: 480x' "$away/$(basename "$library")" 'Grüße №1.bmp' named.bmp
        cmp Größe.bmp named.bmp || fail "a library that is named gives another portrait"
        # The one beside the program is told when it does not load, not passed over.
        echo 'no library' >"$file"
        problem="it is no library, or not one for programs of this width"
        if [[ $file == *.so.* ]]; then problem="$file: "; fi
        expect 3 "the library can't be loaded: $problem" flat.bmp out.bmp
        ;;
    csharp)
        mv "$away/Orvane.dat" "$app/"
        cp "$eleven" "$file"
        expect 3 'the library has no function orv_GetOutputImage' 'Grüße №1.bmp' out.bmp
        rm "$file"
        # Where the system has the library it would be found there.
        if ! ldconfig -p | grep -q liborvane; then
            expect 3 "the library can't be loaded: Orvane.dll (liborvane.so) was not found" flat.bmp out.bmp
        fi
        ;;
    cpp)
        # Without a screen --review works as without it.
        mv "$away/Orvane.dat" "$app/"
        expect 0 'review.bmp: 480x' --review 'Grüße №1.bmp' review.bmp
        cmp Größe.bmp review.bmp || fail "a review that nobody sees gives another portrait"
        expect 10 'left-flat.bmp: 640x480 pixels, no face was found' --review flat.bmp left-flat.bmp
        ;;
esac

if [ -e out.bmp ]; then fail "a portrait was written where there is none"; fi
if [ "$failures" -gt 0 ]; then exit 1; fi
echo "the sample host ($kind) answers as it should"
