#!/usr/bin/env bash
# check_windows_file_test.sh COMPILER BITS: check_windows_file.sh passes a library as it should be and notices a flag
# that is missing, missing relocations, stacks without guards, decorated or missing functions and a foreign library.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
compiler=$1 bits=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failures=0

mapfile -t names < <(sed -n '/^orv_/p' "$here/check_library.sh")
for name in "${names[@]}"; do echo "__declspec(dllexport) void $name(void) {}"; done >good.c
echo 'int value = 1; int* address = &value;' >>good.c # something to relocate
tail -n +2 good.c >lacking.c
sed '1s/void/void __stdcall/' good.c >decorated.c # 32 bit alone decorates
echo 'int toolkit(void) { return 0; }' >toolkit.c
{ cat good.c; echo 'int toolkit(void); int use(void) { return toolkit(); }'; } >needy.c

build() { # build NAME SOURCE [ARGUMENT...]
    "$compiler" -shared -static -fstack-protector-all -o "$1.dll" "$2.c" "${@:3}"
}
build toolkit toolkit
build good good
build fixed good -Wl,--disable-dynamicbase
build data_runs good -Wl,--disable-nxcompat
build unguarded good -fno-stack-protector
build lacking lacking
build needy needy toolkit.dll
objcopy --remove-section .reloc good.dll stripped.dll # the linker itself would drop the flags too

# expect RESULT NAME WORD: what the check makes of a library, and a word that it says about it.
expect() {
    local result=passes
    bash "$here/check_windows_file.sh" "$2.dll" >output 2>&1 || result=fails
    if [ "$result" != "$1" ] || ! grep -q "$3" output; then
        echo "$2.dll should be: $1 ($3), but it: $result"
        cat output
        failures=$((failures + 1))
    fi
}
expect passes good 'may lie anywhere'
expect fails fixed DYNAMIC_BASE
expect fails data_runs NX_COMPAT
expect fails unguarded 'guarded stacks'
expect fails lacking "${names[0]}"
expect fails needy toolkit.dll
expect fails stripped relocations
if [ "$bits" = 64 ]; then
    build low_addresses good -Wl,--disable-high-entropy-va
    expect fails low_addresses HIGH_ENTROPY_VA
else
    build decorated decorated
    expect fails decorated "${names[0]}@0"
fi

if [ "$failures" -gt 0 ]; then exit 1; fi
echo "every rule notices its breach"
