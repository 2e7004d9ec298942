#!/usr/bin/env bash
# Runs Windows programs of the tests under Wine, in prefixes of their own under build/: one without a screen,
# and one whose windows open on a virtual screen.
#   wine.sh start                             make the prefix ready and keep its server alive
#   wine.sh run PROGRAM [ARGUMENT...]         run a program
#   wine.sh stop                              end the server
#   wine.sh start-window, run-window, stop-window   the same with the screen
#   wine.sh x86 COMMAND...                    the same for 32-bit programs, by the Wine that get_wine32.sh brought
set -euo pipefail

bits=x64
if [ "${1:-}" = x86 ]; then
    bits=x86
    shift
fi
command=${1:-}
build=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build
prefix=wine
if [ "$bits" = x86 ]; then prefix=wine-x86; fi
if [[ $command == *-window ]]; then prefix+=-window; fi
export WINEPREFIX="$build/$prefix"
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

if [ "$bits" = x86 ]; then
    wine=$(find_program "$build/wine32/usr/lib/wine/wine")
    server=$(find_program "$build/wine32/usr/lib/wine/wineserver")
    # Other programs pass over libraries that have not their own size.
    export LD_LIBRARY_PATH="$build/wine32/usr/lib/i386-linux-gnu:$build/wine32/lib/i386-linux-gnu"
    export WINEARCH=win32
else
    # A 32-bit loader, where it is installed, runs both kinds of programs; `wine` may be a script that adds
    # a remark of its own to every run, so it comes last.
    wine=$(find_program /usr/lib/wine/wine /usr/lib/wine/wine64 wine64 wine)
    server=$(find_program wineserver /usr/lib/wine/wineserver64 wineserver-stable)
fi
export WINELOADER="$wine"

# The screen's number and the process that shows it.
screen_file=$WINEPREFIX/screen

stop_screen() {
    local number process
    [ -f "$screen_file" ] || return 0
    read -r number process <"$screen_file"
    rm -f "$screen_file"
    # Only the process that was started here, and not a later one that was given its number.
    if [ "$(cat "/proc/$process/comm" 2>/dev/null)" = Xvfb ]; then kill "$process"; fi
}

start_screen() {
    local number=
    stop_screen
    # Xvfb chooses a free number and says which. Like the first program of Wine it must not hold the caller's
    # output open.
    Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$screen_file.number" </dev/null >/dev/null 2>&1 &
    local process=$! tries
    for ((tries = 0; tries < 100; tries++)); do
        if [ -s "$screen_file.number" ]; then break; fi
        sleep 0.1
    done
    read -r number <"$screen_file.number" || true
    rm -f "$screen_file.number"
    if [ -z "$number" ]; then
        echo "wine.sh: Xvfb does not start" >&2
        return 1
    fi
    echo "$number $process" >"$screen_file"
}

# What chooses a prefix's screen is its first program, so all of them get the same.
unset DISPLAY WAYLAND_DISPLAY
use_screen() {
    local number
    read -r number _ <"$screen_file"
    export DISPLAY=:$number
}

case $command in
    start | start-window)
        # Whatever starts first leaves processes behind that hold its output open; a test driver that
        # reads a pipe until its end would wait for them. So the first start goes to /dev/null.
        # The server ends by itself a minute after the last program, should nobody stop it.
        mkdir -p "$WINEPREFIX"
        if [ "$command" = start-window ]; then
            "$server" -k </dev/null >/dev/null 2>&1 || true # its programs know the screen of the time before
            start_screen
            use_screen
        fi
        "$server" -p60 </dev/null >/dev/null 2>&1 || true # already running is well
        "$wine" wineboot --init </dev/null >/dev/null 2>&1
        if [ "$command" = start-window ]; then
            # Nobody manages this screen's windows, and Wine would wait two seconds for whoever does, each time.
            "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f </dev/null >/dev/null 2>&1
            "$wine" explorer /desktop </dev/null >/dev/null 2>&1 &
        else
            # The first wish for a window, here in vain, starts a desktop that would hold a test's output open.
            "$wine" winver </dev/null >/dev/null 2>&1 || true
        fi
        ;;
    run | run-window)
        if [ "$command" = run-window ]; then use_screen; fi
        shift
        exec "$wine" "$@"
        ;;
    stop | stop-window)
        "$server" -k </dev/null >/dev/null 2>&1 || true # nothing to end is well
        if [ "$command" = stop-window ]; then stop_screen; fi
        ;;
    *)
        sed -n '2,8s/^# *//p' "${BASH_SOURCE[0]}" >&2
        exit 1
        ;;
esac
