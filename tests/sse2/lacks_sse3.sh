#!/usr/bin/env bash
# lacks_sse3.sh PROGRAM COMMAND...: PROGRAM, which needs SSE3, runs on this machine, and where COMMAND runs it, it meets
# an illegal instruction.
set -euo pipefail
ulimit -c 0
program=$1
shift
"$program" || { echo "$program does not run on this machine"; exit 1; }
status=0
"$@" "$program" >/dev/null 2>&1 || status=$?
if [ "$status" -ne 132 ]; then # 128 and SIGILL
    echo "SSE3 gives $status, not an illegal instruction: $*"
    exit 1
fi
echo "SSE3 is an illegal instruction: $*"
