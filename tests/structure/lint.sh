#!/usr/bin/env bash
# lint.sh BUILD: format and the rules of the source tree on all sources, clang-tidy and cppcheck on all but
# tests and fuzz targets. BUILD is a configured directory with compile_commands.json. Runs every check, then fails when
# one did.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
compile_commands=$1/compile_commands.json
[ -f "$compile_commands" ] || { echo "no $compile_commands"; exit 1; }

# What the compile commands name of this system. Tests and fuzz targets are left out: most of what is found there
# stands in GoogleTest's macros, and takes minutes.
mapfile -t compiled < <(sed -n 's/^ *"file": "\(.*\)"$/\1/p' "$compile_commands" |
    grep "^$PWD/" | grep -vE "^$PWD/(tests|fuzz|build)/" | sort -u)
mapfile -t sources < <(find . -path ./build -prune -o -type f \( -name '*.cpp' -o -name '*.h' -o -name '*.c' \) -print | sort)

failed=0
check() { # check NAME COMMAND...
    local name=$1
    shift
    echo "== $name"
    "$@" || { echo "$name: failed"; failed=1; }
}

tidy() {
    printf '%s\n' "${compiled[@]}" |
        xargs -P "$(nproc)" -n 4 clang-tidy -p "$(dirname "$compile_commands")" --quiet 2> >(grep -vE '^[0-9]+ warnings? generated' >&2)
}

# cppcheck without its portability group, which reports every plane of floats in a block of bytes, and
# without constStatement, which takes an advancing pointer in a for statement for an unused value.
check "clang-format, ${#sources[@]} files" clang-format --dry-run -Werror "${sources[@]}"
check "clang-tidy, ${#compiled[@]} files" tidy
check "cppcheck" cppcheck -j "$(nproc)" --std=c++20 -I . -I include --enable=warning,performance \
    --inline-suppr --suppress=constStatement --error-exitcode=1 --quiet "${compiled[@]}"
check "rules of the source tree" bash tests/structure/check_sources.sh .
exit "$failed"
