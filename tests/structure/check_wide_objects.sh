#!/usr/bin/env bash
# check_wide_objects.sh NM OBJECT...: each object file of wider vectors offers its table of functions, a constant whose
# name ends with the vectors' bits, and nothing else. A function that the linker may share with other files, such as
# the body of a template, could take the place of theirs and run on a processor that lacks its instructions. The
# compiler's own two instructions that fetch the program counter in 32 bits, and on Windows the address of the value
# that guards the stack, are the same in every file.
set -euo pipefail
nm=$1
shift
if [ $# -eq 0 ]; then
    echo "no objects to check"
    exit 1
fi
table='^[DR] _{1,2}ZN6orvane[0-9]+k[A-Za-z]+Kernels[0-9]+E$'
compilers_own='^T __x86\.get_pc_thunk\.[a-z]+$|^R \.refptr\._{2,3}stack_chk_guard$'
failed=0
for object in "$@"; do
    # Local symbols have small letters, but for u, v and w, which are shared ones.
    offered=$("$nm" --defined-only "$object" | awk '$(NF - 1) ~ /^[A-MO-Zuvw]$/ { print $(NF - 1), $NF }')
    others=$(grep -vE "$table|$compilers_own" <<<"$offered" || true)
    if [ -z "$offered" ]; then
        echo "$object offers no table"
        failed=1
    elif [ -n "$others" ]; then
        echo "$object offers more than its table:" $others
        failed=1
    fi
done
if [ "$failed" -eq 0 ]; then echo "$# objects offer their tables alone"; fi
exit "$failed"
