#!/usr/bin/env bash
# check_module_test.sh COMPILER [FLAG...]: check_module.sh passes a module as it should be, and notices a missing entry
# and a function too many.
set -euo pipefail
check=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/check_module.sh
compiler=("$@")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failures=0

# expect RESULT SOURCE: what the check makes of a module with these functions.
expect() {
    local result=passes
    echo "$2" >module.c
    "${compiler[@]}" -shared -fPIC -o module.so module.c
    bash "$check" module.so entry >output 2>&1 || result=fails
    if [ "$result" != "$1" ]; then
        echo "'$2' should be: $1, but it: $result"
        cat output
        failures=$((failures + 1))
    fi
}
expect passes 'void entry(void) {}'
expect fails 'void other(void) {}'
expect fails 'void entry(void) {} void other(void) {}'
expect fails 'static int nothing;'

if [ "$failures" -gt 0 ]; then exit 1; fi
echo "every rule notices its breach"
