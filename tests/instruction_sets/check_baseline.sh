#!/usr/bin/env bash
# check_baseline.sh NM FILE...: the library or program has the test's answer to the question for the widest instructions,
# and the one that asks the processor has left it.
set -euo pipefail
nm=$1
shift
failed=0
for file in "$@"; do
    functions=$("$nm" "$file" | awk '{ print $NF }')
    if grep -qx '_ZN6orvane18BestInstructionSetEv' <<<"$functions"; then
        echo "$file asks the processor"
        failed=1
    elif ! grep -qx '__wrap__ZN6orvane18BestInstructionSetEv' <<<"$functions"; then
        echo "$file has nobody to ask"
        failed=1
    fi
done
if [ "$failed" -eq 0 ]; then echo "$# files have the baseline alone"; fi
exit "$failed"
