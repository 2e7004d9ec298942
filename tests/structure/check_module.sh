#!/usr/bin/env bash
# check_module.sh FILE ENTRY: a module of the library offers its one entry and nothing else.
set -euo pipefail
exported=$(nm -D --defined-only "$1" | awk '{ print $NF }')
if [ "$exported" != "$2" ]; then
    echo "$1 should export $2 alone, but exports:" $exported
    exit 1
fi
echo "$1 exports $2 alone"
