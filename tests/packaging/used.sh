# What each test of an installation asks of it; read by the tests. They set `bin`, `work` (a folder to write to, with
# photo.png, whatever its format is, and language_host.c) and `version`.
failures=0

fail() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

# run EXIT COMMAND...: runs quietly, and tells when it does not end as it should.
run() {
    local expected=$1 status=0
    shift
    "$@" >"$work/output" 2>&1 </dev/null || status=$?
    if [ "$status" -ne "$expected" ]; then
        fail "exit $status instead of $expected: $*"
        tail -n 5 "$work/output"
    fi
}

# said TEXT: whether the last run said so.
said() { grep -qF -- "$1" "$work/output" || fail "'$1' was not said, but: $(head -n 3 "$work/output")"; }

# magic FILE BYTES: whether a file begins so.
magic() { [ "$(head -c ${#2} "$1" 2>/dev/null)" = "$2" ] || fail "$1 does not begin with $2"; }

languages="german.txt french.txt portuguese.txt spanish.txt turkish.txt"

use_tool() {
    run 0 "$bin/orvane" --version
    said "orvane $version"
    run 0 "$bin/orvane" info
    said "stages"
    run 0 "$bin/orvane" portrait "$work/photo.png" -o "$work/portrait.jpg" --force
    [ -s "$work/portrait.jpg" ] || fail "no portrait"
    run 0 "$bin/orvane" portrait "$work/photo.png" -o "$work/photo.bmp" --actions none --force
    magic "$work/photo.bmp" BM
    run 0 "$bin/orvane" portrait "$work/photo.bmp" -o "$work/tool.bmp" --size 480x640 --crop-ratio 1 \
        --actions crop,colour --force
    magic "$work/tool.bmp" BM
    run 0 "$bin/orvane" documents
    said "us-visa"
    run 0 "$bin/orvane" portrait "$work/photo.png" -o "$work/visa.png" --document us-visa --fill edge --force
    magic "$work/visa.png" "$(printf '\211PNG')"
}

# use_host HOST LANGUAGE_HOST: the shortest sample host, and one that opens language files.
use_host() {
    rm -f "$work/host.bmp"
    run 0 "$1" "$work/photo.bmp" "$work/host.bmp"
    said "result 0"
    magic "$work/host.bmp" BM
    run 0 "$2" $languages
    run 1 "$2" latin.txt
    said "no latin.txt"
}

# use_sample COMMAND...: a sample host that makes the tool's portrait, and that tells what is no bitmap.
use_sample() {
    rm -f "$work/sample.bmp"
    run 0 "$@" "$work/photo.bmp" "$work/sample.bmp"
    cmp "$work/tool.bmp" "$work/sample.bmp" || fail "the portrait of $* is not the tool's"
    run 4 "$@" "$work/photo.png" "$work/none.bmp"
    said "photo.png is not a bitmap file"
}

use_operator() {
    run 0 "$bin/orvane-operator" review "$work/photo.png" -o "$work/operator.png" --hidden --language german.txt --force
    said "result 0"
    run 1 "$bin/orvane-operator" devices
    if grep -q 'working without a camera' "$work/output"; then fail "$(cat "$work/output")"; fi
    # Nobody is there to press Ok: the window is open when the time is over.
    run 124 env QT_QPA_PLATFORM=offscreen timeout 10 "$bin/orvane-operator" review "$work/photo.png" \
        -o "$work/window.png" --force
    if grep -q 'working without a window' "$work/output"; then fail "$(cat "$work/output")"; fi
}

finish() { # finish WHAT
    if [ "$failures" -gt 0 ]; then
        echo "$1: $failures failures"
        exit 1
    fi
    echo "$1 works"
}
