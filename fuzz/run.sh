#!/usr/bin/env bash
# run.sh BUILD TARGET SECONDS: fuzzes one target of a build of the preset linux-fuzz and tells executions, lines reached of
# the sources that it aims at (fuzz/aims/TARGET) and findings; fails on a finding. What was found interesting stays in
# build/fuzz-corpus/TARGET, and the next run goes on from there; inputs that broke something are kept in
# build/fuzz-findings.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
build=$1 target=$2 seconds=$3
program=$build/bin/fuzz_$target
kept=build/fuzz-corpus/$target findings=build/fuzz-findings profile=$build/$target.profraw log=$build/$target.log
[ -x "$program" ] || { echo "there is no target '$target'"; exit 1; }
mkdir -p "$kept" "$findings"

options=(-timeout=60 -report_slow_units=60 -rss_limit_mb=2560 -verbosity=1 -print_final_stats=1 -artifact_prefix="$findings/$target-")
# Inputs are headers of choices, or small files.
options+=(-max_len=4096 -len_control=0 -close_fd_mask=1)
case $target in
    picture_file | portrait_file | skin) options+=(-dict=fuzz/dictionaries/pictures) ;;
    language | documents | corrections) options+=(-dict="fuzz/dictionaries/$target") ;;
esac
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1
export QT_QPA_PLATFORM=offscreen

status=0
before=$(find "$findings" -name "$target-*" | wc -l)
TIMEFORMAT='%U %S'
{
    time LLVM_PROFILE_FILE=/dev/null "$program" "$kept" "fuzz/corpus/$target" -max_total_time="$seconds" \
        "${options[@]}" >"$log" 2>&1 </dev/null || status=$?
} 2>"$log.time"
found=$(($(find "$findings" -name "$target-*" | wc -l) - before))
if [ "$status" -ne 0 ] && [ "$found" -lt 1 ]; then found=1; fi

# What all inputs together reach.
LLVM_PROFILE_FILE=$profile "$program" "$kept" "fuzz/corpus/$target" -runs=0 "${options[@]}" >"$log.replay" 2>&1 \
    </dev/null || true
lines=unknown
if [ -s "$profile" ] && llvm-profdata merge -sparse "$profile" -o "${profile%raw}data"; then
    llvm-cov export -summary-only -instr-profile="${profile%raw}data" "$program" >"$build/$target.json"
    lines=$(python3 fuzz/coverage.py "$build/$target.json" "$PWD" "fuzz/aims/$target") || exit 1
fi
executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
processor=$(awk 'END { printf "%d", $1 + $2 }' "$log.time")
printf '%-14s %s executions in %d s of processor time, %d inputs kept, lines reached %s, %d findings\n' "$target" \
    "${executions:-no}" "$processor" "$(find "$kept" -type f | wc -l)" "$(head -n 1 <<<"$lines")" "$found"
tail -n +2 <<<"$lines"
if [ "$found" -gt 0 ]; then
    grep -E '^broken: |ERROR: |runtime error: |SUMMARY: |^Test unit written' "$log" || tail -n 20 "$log"
    exit 1
fi
