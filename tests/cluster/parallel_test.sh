#!/usr/bin/env bash
# parallel_test.sh BIN: examples/cluster/parallel.sh over machines that are all this one, killed in the middle and
# resumed.
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
. "$here/common.sh"
example=$here/../../examples/cluster/parallel.sh
begin_test "$(realpath "$1")"
trap 'end_session; rm -rf "$work"' EXIT

start_session "$example" "$in" "$out" "$shards" 2/:
wait_until 60 some_portraits || fail "no portraits: $(cat "$work/log")"
end_session
note_what_is_done

start_session "$example" "$in" "$out" "$shards" 2/:
wait "$session" || fail "the resumed run failed: $(cat "$work/log")"
cat "$work/log"
grep -qx "$photos photos: $photos portraits, 0 without a face, 0 failed" "$work/log" || fail "the report tells otherwise"
check_run
