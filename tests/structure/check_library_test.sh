#!/usr/bin/env bash
# check_library_test.sh COMPILER [FLAG...]: check_library.sh passes a library as it should be and notices a missing
# function, one too many, and a library that is needed and not every system has.
set -euo pipefail
check=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/check_library.sh
compiler=("$@")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failures=0

mapfile -t names < <(sed -n '/^orv_/p' "$check")
for name in "${names[@]}"; do echo "void $name(void) {}"; done >good.c
tail -n +2 good.c >lacking.c
{ cat good.c; echo 'void orv_Thirteenth(void) {}'; } >surplus.c
echo 'int toolkit(void) { return 0; }' >toolkit.c
{ cat good.c; echo 'int toolkit(void); __attribute__((visibility("hidden"))) int use(void) { return toolkit(); }'; } >needy.c

build() { # build NAME [ARGUMENT...]
    "${compiler[@]}" -shared -fPIC -o "lib$1.so" "$1.c" "${@:2}"
}
build toolkit
build good
build lacking
build surplus
build needy -L. -Wl,--no-as-needed -ltoolkit

# expect RESULT NAME WORD: what the check makes of a library, and a word that it says about it.
expect() {
    local result=passes
    bash "$check" "lib$2.so" >output 2>&1 || result=fails
    if [ "$result" != "$1" ] || ! grep -q "$3" output; then
        echo "lib$2.so should be: $1 ($3), but it: $result"
        cat output
        failures=$((failures + 1))
    fi
}
expect passes good '12 exports'
expect fails lacking "${names[0]}"
expect fails surplus orv_Thirteenth
expect fails needy libtoolkit.so

if [ "$failures" -gt 0 ]; then exit 1; fi
echo "every rule notices its breach"
