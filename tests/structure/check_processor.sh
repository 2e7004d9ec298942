#!/usr/bin/env bash
# check_processor.sh FILE...: 32-bit libraries and programs hold no instruction that a processor with SSE2 and nothing
# newer lacks. The assembler is the judge: what is disassembled must assemble for such a processor. The files need
# their symbols, which tell code from data and name functions.
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failed=0

# Tables that the linker lays in with the code, and numbers that the system's exponentials have among theirs.
data='^(\\.gcc_except_table|\\.[cd]tors(\\.[0-9]+)?|__[CD]TOR_LIST__|one|limit)$' # awk takes one of two backslashes

# Functions that may hold newer instructions, since they are called only where the processor says that it has them:
# the sources of std::random_device, which ask CPUID, and which Orvane never uses; and, as the program starts, the
# compiler's help for CPUID, which asks what the system saves where CPUID says that one can.
declare -A guarded=(
    ['.text$_ZNSt12_GLOBAL__N_112__x86_rdrandEPv']=rdrand
    ['.text$_ZNSt12_GLOBAL__N_112__x86_rdseedEPv']=rdseed
    ['.text$_ZNSt12_GLOBAL__N_119__x86_rdseed_rdrandEPv']=rdseed
    ['.text.startup']=xgetbv
)

# And the wider forms of inner loops, all of a namespace: they are reached through tables of which CPUID chooses one.
wide='10kernels256'

# Lines of a function and one of its instructions. Where a jump leads and what a number is does not matter. "rep bsf",
# which compilers write where bsf and the newer tzcnt give the same, is shown as tzcnt, but older processors take it for
# bsf; a tzcnt that is meant has the same bytes and goes unnoticed here.
instructions() {
    objdump -d -z -w --no-show-raw-insn "$1" | awk -F '\t' -v data="$data" '
        /^[0-9a-f]+ <.*>:$/ { name = $0; sub(/^[^<]*</, "", name); sub(/>:$/, "", name); next }
        NF < 2 || name ~ data { next }
        {
            line = $2
            sub(/ *[<#].*/, "", line)
            sub(/ +$/, "", line)
            if (line ~ /^((bnd|notrack) )?(j|call|loop)[a-z]* +[0-9a-f]+$/) sub(/[0-9a-f]+$/, ".", line)
            gsub(/0x[0-9a-f]+/, "0x1", line)
            sub(/^tzcnt/, "bsf", line)
            sub(/^\.byte/, "(bad)", line)
            print name "\t" line
        }' | LC_ALL=C sort -u
}

check() {
    local file=$1 number name line count=0 refused=0
    if objdump -t "$file" | grep '^no symbols$' >/dev/null; then
        echo "$file: has no symbols"
        return 1
    fi
    instructions "$file" >"$folder/all"
    cut -f 2 "$folder/all" >"$folder/code.s"
    if ! [ -s "$folder/code.s" ]; then
        echo "$file: holds no code"
        return 1
    fi
    as --32 -march=pentium4 -mindex-reg -o /dev/null "$folder/code.s" >"$folder/errors" 2>&1 || refused=1
    sed -nE 's/^[^:]*:([0-9]+): (Error|Warning).*/\1/p' "$folder/errors" | sort -nu >"$folder/numbers"
    if [ "$refused" -eq 1 ] && ! [ -s "$folder/numbers" ]; then
        cat "$folder/errors"
        return 1
    fi
    while read -r number; do
        IFS=$'\t' read -r name line < <(sed -n "${number}p" "$folder/all")
        if [ "${guarded[$name]:-}" = "${line%% *}" ] || [[ $name == *"$wide"* ]]; then continue; fi
        echo "$file: $name has '$line'"
        count=$((count + 1))
    done <"$folder/numbers"
    [ "$count" -eq 0 ] || return 1
    echo "$file asks no more of a processor than SSE2"
}

for file in "$@"; do check "$file" || failed=1; done
exit "$failed"
