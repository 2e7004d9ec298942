#!/usr/bin/env bash
# check_windows_file.sh FILE...: Windows may load a delivered library or program at any address, takes its data for no
# code, guards its stacks and finds all that it needs on every machine. A library offers the twelve functions under
# their plain names.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
failed=0

# What the file's header says of it, as objdump names it.
check_header() {
    local file=$1 headers=$2 flag wanted=(DYNAMIC_BASE NX_COMPAT)
    if grep -q 'file format pei-x86-64' <<<"$headers"; then wanted+=(HIGH_ENTROPY_VA); fi
    for flag in "${wanted[@]}"; do
        if ! grep -qw "$flag" <<<"$headers"; then
            echo "$file lacks $flag"
            failed=1
        fi
    done
    # Without relocations the flags of the address are an empty promise.
    if grep -q 'relocations stripped' <<<"$headers" ||
        ! grep -qE '^Entry 5 [0-9a-f]+ 0*[1-9a-f][0-9a-f]* Base Relocation' <<<"$headers"; then
        echo "$file has no relocations"
        failed=1
    fi
}

for file in "$@"; do
    before=$failed
    headers=$(objdump -p "$file")
    check_header "$file" "$headers"
    if ! grep -qaF 'stack smashing detected' "$file"; then # what the guard says at the end
        echo "$file lacks guarded stacks"
        failed=1
    fi
    case $file in
        *.dll) bash "$here/check_library.sh" "$file" || failed=1 ;;
        *) bash "$here/check_program.sh" "$file" || failed=1 ;;
    esac
    if [ "$failed" -eq "$before" ]; then echo "$file may lie anywhere, keeps data from running and guards its stacks"; fi
done
exit "$failed"
