#!/usr/bin/env bash
# lint.sh BUILD: format, clang-tidy, cppcheck and the rules of the source tree, on all sources. BUILD is a
# configured directory with compile_commands.json. Runs every check, then fails when one did.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
compile_commands=$1/compile_commands.json
[ -f "$compile_commands" ] || { echo "no $compile_commands"; exit 1; }

# What the compile commands name: the sources of this system, GoogleTest's apart.
mapfile -t compiled < <(sed -n 's/^ *"file": "\(.*\)"$/\1/p' "$compile_commands" | grep "^$PWD/" | sort -u)
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

check "clang-format, ${#sources[@]} files" clang-format --dry-run -Werror "${sources[@]}"
check "clang-tidy, ${#compiled[@]} files" tidy
check "cppcheck" cppcheck -j "$(nproc)" --project="$compile_commands" --enable=warning,performance,portability \
    --inline-suppr --suppress='*:/usr/*' --library=googletest --error-exitcode=1 --quiet
check "rules of the source tree" bash tests/structure/check_sources.sh .
exit "$failed"
