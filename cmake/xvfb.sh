#!/usr/bin/env bash
# xvfb.sh COMMAND...: runs a command with an X server of its own, without a screen, and ends the server behind
# it. The command's result is the script's.
set -euo pipefail

numbers=$(mktemp)
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$numbers" >/dev/null 2>&1 &
server=$!
trap 'kill "$server" 2>/dev/null || true; wait "$server" 2>/dev/null || true; rm -f "$numbers"' EXIT
for ((i = 0; i < 200; i++)); do
    if [ -s "$numbers" ]; then break; fi
    kill -0 "$server" 2>/dev/null || { echo "Xvfb did not start"; exit 1; }
    sleep 0.05
done
[ -s "$numbers" ] || { echo "Xvfb names no display"; exit 1; }

status=0
env -u WAYLAND_DISPLAY DISPLAY=":$(head -n 1 "$numbers")" "$@" || status=$?
exit "$status"
