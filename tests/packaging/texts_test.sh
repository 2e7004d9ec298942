#!/usr/bin/env bash
# texts_test.sh FOLDER: what the manuals and the completions of an installation say is what its programs do. Every
# option and command of a program's help stands in its manual and in each completion, and none that it has not.
set -euo pipefail
root=$(realpath "$1")
failures=0

fail() {
    echo "$*"
    failures=$((failures + 1))
}

# Long options in a text, sorted. A manual writes them as "Fl -name".
options() { grep -oE -- '(^|[^-a-z])--[a-z][-a-z]+' | sed 's/.*--/--/' | sort -u; }

check_program() { # check_program NAME COMMAND...
    local name=$1 help told text file command
    shift
    help=$("$root/bin/$name" help | options)
    # Of the two that no summary names: -o has a long form, and --help and --version are commands.
    help=$(printf '%s\n--output\n' "$help" | sort -u)
    for file in share/man/man1/$name.1 share/bash-completion/completions/$name share/zsh/site-functions/_$name \
        share/fish/vendor_completions.d/$name.fish; do
        case $file in
            *.1) text=$(sed -E 's/Fl -([a-z])/--\1/g; s/\\-/-/g' "$root/$file") ;;
            *.fish) text=$(sed -E 's/ -l ([a-z])/ --\1/g' "$root/$file") ;;
            *) text=$(cat "$root/$file") ;;
        esac
        told=$(options <<<"$text" | grep -vE '^--(help|version)$')
        if [ "$told" != "$help" ]; then
            fail "$file tells other options than $name help (< help, > file):"
            diff <(echo "$help") <(echo "$told") || true
        fi
        for command in "$@"; do
            if ! grep -qw "$command" <<<"$text"; then fail "$file does not tell of $command"; fi
        done
    done
}
check_program orvane portrait detect check watch documents print report info help version
check_program orvane-operator review live devices help

for page in "$root"/share/man/man1/*.1; do
    problems=$(mandoc -T lint -W warning "$page" 2>&1) || fail "$page: $problems"
done

# complete WORD...: what bash offers for the last word of a command line.
complete_words() {
    bash -c '. "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        "_$(tr - _ <<<"$1")" && echo "${COMPREPLY[*]}"' bash "$root/share/bash-completion/completions/$1" "$@"
}
expect() { # expect WORDS COMMAND LINE...
    local got
    got=$(complete_words "${@:2}")
    if [ "$got" != "$1" ]; then fail "bash completes '${*:2}' to '$got' instead of '$1'"; fi
}
expect 'portrait print' orvane p
expect --cut-marks orvane print a.jpg --cu
expect --tolerance orvane portrait a.jpg --to
expect --json orvane detect --js
expect --document orvane check --doc
expect --sheet orvane portrait a.jpg --she
expect --output-name orvane watch in --output-
expect join orvane report ''
expect '' orvane help -
expect live orvane-operator l
expect german.txt orvane-operator review --language g
expect --device orvane-operator live --d
zsh -n "$root"/share/zsh/site-functions/_orvane
zsh -n "$root"/share/zsh/site-functions/_orvane-operator
fish -n "$root"/share/fish/vendor_completions.d/*.fish

if [ "$failures" -gt 0 ]; then exit 1; fi
echo "manuals and completions tell what the programs do"
