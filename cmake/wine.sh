#!/usr/bin/env bash
# Runs Windows programs of the tests under Wine, in a prefix of its own under build/.
#   wine.sh start                      make the prefix ready and keep its server alive
#   wine.sh run PROGRAM [ARGUMENT...]  run a program
#   wine.sh stop                       end the server
set -euo pipefail

export WINEPREFIX="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wine"
export WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree=;mshtml=;winemenubuilder.exe="
export HOME="${HOME:-/root}"

# The path of the first name that exists, as a file or on the search path.
find_program() {
    local name
    for name in "$@"; do
        command -v "$name" && return
    done
    echo "wine.sh: none of these is installed: $*" >&2
    return 1
}

# A 32-bit loader, where it is installed, runs both kinds of programs; `wine` may be a script that adds
# a remark of its own to every run, so it comes last.
wine=$(find_program /usr/lib/wine/wine /usr/lib/wine/wine64 wine64 wine)
server=$(find_program wineserver /usr/lib/wine/wineserver64 wineserver-stable)
export WINELOADER="$wine"

case "${1:-}" in
    start)
        # Whatever starts first leaves processes behind that hold its output open; a test driver that
        # reads a pipe until its end would wait for them. So the first start goes to /dev/null.
        # The server ends by itself a minute after the last program, should nobody stop it.
        mkdir -p "$WINEPREFIX"
        "$server" -p60 </dev/null >/dev/null 2>&1 || true # already running is well
        "$wine" wineboot --init </dev/null >/dev/null 2>&1
        ;;
    run)
        shift
        exec "$wine" "$@"
        ;;
    stop)
        "$server" -k </dev/null >/dev/null 2>&1 || true # nothing to end is well
        ;;
    *)
        sed -n '2,5s/^# *//p' "${BASH_SOURCE[0]}" >&2
        exit 1
        ;;
esac
