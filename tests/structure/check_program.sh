#!/usr/bin/env bash
# check_program.sh FILE: a Windows program needs Orvane.dll and libraries that come with Windows, nothing else.
set -euo pipefail
program=$1
needed=$(objdump -p "$program" | sed -n 's/^[[:space:]]*DLL Name: //p')
# A runtime of the compiler would be libgcc, libstdc++ or libwinpthread.
foreign=$(grep -viE '^(orvane|kernel32|user32|gdi32|advapi32|msvcrt|ole32|oleaut32|shell32|windowscodecs)\.dll$' <<<"$needed" || true)
if [ -n "$foreign" ]; then
    echo "$program needs libraries that do not come with Windows:" $foreign
    exit 1
fi
if ! grep -qi '^orvane\.dll$' <<<"$needed"; then
    echo "$program does not use Orvane.dll"
    exit 1
fi
echo "$program needs Orvane.dll and what comes with Windows"
