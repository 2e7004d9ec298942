# shellcheck shell=bash
# What the tests of the examples for clusters share: drawn photographs, a run that is killed in the middle, and what
# must hold when it was resumed.
# begin_test BIN: a folder of the test's own, $work, with the tool in it, which finds faces in drawn photographs.
photos=48
shards=4

fail() {
    echo "$*"
    exit 1
}

begin_test() {
    local bin=$1 i
    work=$(mktemp -d)
    # Names that a shell would take apart.
    in="$work/photos of \$HOME; it's \"one\""
    out="$work/por  traits & more"
    mkdir "$work/home" "$work/before" "$in" "$out"
    cp "$bin/orvane" "$work/home/orvane"
    "$bin/example_input" "$work/home" >"$work/draw.log" || fail "no photographs: $(cat "$work/draw.log")"
    export ORVANE=$work/home/orvane
    for ((i = 0; i < photos; i++)); do
        cp "$work/home/photo.bmp" "$in/p'$i \$x.bmp"
        # One byte of the first pixel, so that no two are the same.
        printf "\\x$(printf %02x "$i")" | dd of="$in/p'$i \$x.bmp" bs=1 seek=54 conv=notrunc status=none
    done
}

count_portraits() { find "$out" -maxdepth 1 -name '*.png' | wc -l; }

# wait_until SECONDS COMMAND...: until the command is good.
wait_until() {
    local tries=$(($1 * 10))
    shift
    until "$@"; do
        if [ $((tries -= 1)) -le 0 ]; then return 1; fi
        sleep 0.1
    done
}

some_portraits() { [ "$(count_portraits)" -ge 8 ]; }

# start_session COMMAND...: in a session of its own, whose processes are all found again, with its log in $work/log.
start_session() {
    setsid "$@" >"$work/log" 2>&1 </dev/null &
    session=$!
}

session_processes() { ps -o pid= -s "$session" | grep -v '^ *$'; }

end_session() {
    local process
    for process in $(session_processes); do kill -KILL "$process" 2>/dev/null || true; done
    wait "$session" 2>/dev/null || true
}

no_worker() { ! pgrep -f -- "$ORVANE worker" >/dev/null; }

# note_what_is_done: for check_run, after the run was killed.
note_what_is_done() {
    local count
    # Workers whose run has gone end by themselves.
    wait_until 30 no_worker || fail "workers outlive the run"
    count=$(count_portraits)
    if [ "$count" -ge "$photos" ]; then fail "the run was over before it was killed"; fi
    find "$out" -maxdepth 1 -name '*.png' -printf '%f %i %T@\0' >"$work/before/portraits"
    cp "$out"/report-*.csv "$work/before/" 2>/dev/null || true
    echo "killed with $count of $photos portraits"
}

# check_run: nothing was lost, and nothing done twice.
check_run() { /usr/bin/python3 "$(dirname "${BASH_SOURCE[0]}")/check_run.py" "$work/before" "$out" "$photos"; }
