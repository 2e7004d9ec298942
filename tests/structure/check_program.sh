#!/usr/bin/env bash
# check_program.sh FILE: a Windows program needs libraries that come with Windows and nothing else, a host of the library
# Orvane.dll too. orvane.exe has the library in it.
set -euo pipefail
program=$1
needed=$(objdump -p "$program" | sed -n 's/^[[:space:]]*DLL Name: //p')
# A runtime of the compiler would be libgcc, libstdc++ or libwinpthread.
foreign=$(grep -viE '^(orvane|kernel32|user32|gdi32|advapi32|msvcrt|ole32|oleaut32|shell32|windowscodecs|mscms)\.dll$' <<<"$needed" || true)
if [ -n "$foreign" ]; then
    echo "$program needs libraries that do not come with Windows:" $foreign
    exit 1
fi
hosted=no uses=no
case $program in orvane.exe | */orvane.exe) ;; *) hosted=yes ;; esac
if grep -qi '^orvane\.dll$' <<<"$needed"; then uses=yes; fi
if [ "$hosted" = yes ] && [ "$uses" = no ]; then
    echo "$program does not use Orvane.dll"
    exit 1
elif [ "$hosted" = no ] && [ "$uses" = yes ]; then
    echo "$program uses Orvane.dll, which should be part of it"
    exit 1
fi
if [ "$uses" = yes ]; then echo "$program needs Orvane.dll and what comes with Windows"; fi
if [ "$uses" = no ]; then echo "$program needs what comes with Windows"; fi
