#!/usr/bin/env bash
# check_hardened.sh FILE...: delivered files for Linux keep what the compiler and the linker can do against faults: no
# place that is both written and run, tables of addresses closed before the program runs, guarded stacks, string
# functions that know their buffers, calls and returns that go where they may, programs at any address.
set -euo pipefail
failed=0

for file in "$@"; do
    before=$failed
    lacks() {
        echo "$file lacks $1"
        failed=1
    }
    headers=$(readelf -lW "$file") dynamic=$(readelf -dW "$file")
    symbols=$(nm -D --undefined-only "$file")
    grep -q '^  GNU_RELRO ' <<<"$headers" || lacks "tables that are closed (RELRO)"
    grep -qE '\((BIND_NOW|FLAGS_1)\).*NOW|\(FLAGS\).*BIND_NOW' <<<"$dynamic" || lacks "names that are found at the start"
    grep -qE '^  GNU_STACK .* RW +0x' <<<"$headers" || lacks "a stack that does not run"
    if grep -qE '^  LOAD .* RWE ' <<<"$headers"; then lacks "a line between code and data"; fi
    grep -q '^Elf file type is DYN ' <<<"$headers" || lacks "a free choice of its address (PIE)"
    grep -qw '__stack_chk_fail' <<<"$symbols" || lacks "guarded stacks"
    grep -qE ' __(mem|str|sn?|vsn?|f|read|realpath|pread)[a-z]*_chk' <<<"$symbols" || lacks "string functions that know their buffers"
    readelf -nW "$file" | grep -q 'SHSTK' || lacks "the word that a shadow stack may guard it"
    # Every function that others find begins with the mark of what may be called by its address. Code that is told as so
    # far from a name is none of it.
    offered=$(nm -D --defined-only "$file" | awk '$2 == "T" { sub(/@.*/, "", $3); printf "%s ", $3 }')
    unmarked=$(objdump -d --no-show-raw-insn "$file" | awk -v names="$offered" '
        BEGIN { n = split(names, list); for (i = 1; i <= n; i++) wanted[list[i]] = 1 }
        /^[0-9a-f]+ <.*>:$/ {
            first = !/[+-]0x[0-9a-f]+>:$/
            name = $2
            gsub(/[<>:]/, "", name)
            sub(/@.*/, "", name)
            next
        }
        first && name in wanted { if ($2 != "endbr64") printf " %s", name; first = 0 }')
    if [ -n "$unmarked" ]; then lacks "the mark of a call's end at$unmarked"; fi
    if [ "$failed" -eq "$before" ]; then echo "$file is hardened"; fi
done
exit "$failed"
