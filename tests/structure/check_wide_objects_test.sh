#!/usr/bin/env bash
# check_wide_objects_test.sh NM COMPILER [FLAG...]: check_wide_objects.sh passes an object with a table alone, and
# notices a function beside it, one that may be shared, an inline variable and a missing table.
set -euo pipefail
check=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/check_wide_objects.sh
nm=$1
compiler=("${@:2}")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failures=0

table='namespace orvane { namespace { int Own() { return 1; } }
       extern int (*const kRowKernels256)(); int (*const kRowKernels256)() = Own; }'

# expect RESULT WORD SOURCE: what the check makes of an object, and a word that it says about it.
expect() {
    local result=passes
    echo "$3" >object.cpp
    "${compiler[@]}" -c -O1 -o object.o object.cpp
    bash "$check" "$nm" object.o >output 2>&1 || result=fails
    if [ "$result" != "$1" ] || ! grep -q -- "$2" output; then
        echo "'$3' should be: $1 ($2), but it: $result"
        cat output
        failures=$((failures + 1))
    fi
}
expect passes 'tables alone' "$table"
expect passes 'tables alone' "$table"'
    asm(".globl __x86.get_pc_thunk.ax\n__x86.get_pc_thunk.ax: .byte 0xc3");'
expect passes 'tables alone' "$table"'
    extern const void* const guard asm(".refptr.__stack_chk_guard"); const void* const guard = nullptr;'
expect fails 'T _*Z5Otherv' "$table int Other() { return 2; }"
expect fails 'Shared' "$table template <typename T> __attribute__((noinline)) T Shared(T v) { return v + 1; }
                       namespace { __attribute__((used)) int Use(int v) { return Shared(v); } }"
expect fails 'variable' "$table inline int variable = 3; namespace { __attribute__((used)) int* at = &variable; }"
expect fails 'no table' 'namespace { __attribute__((used)) int Alone() { return 1; } }'

if bash "$check" "$nm" >output 2>&1; then
    echo "no objects at all should fail"
    failures=$((failures + 1))
fi
if [ "$failures" -gt 0 ]; then exit 1; fi
echo "every rule notices its breach"
