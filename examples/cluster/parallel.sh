#!/usr/bin/env bash
# parallel.sh IN OUT SHARDS [LOGIN...]: makes the portraits of the photographs in the folder IN, into the folder OUT,
# by GNU parallel: in SHARDS jobs that are shared out among the machines of LOGIN..., else on this one. A LOGIN is what
# ssh takes, with a number in front for so many jobs at once: 4/user@machine. Every machine must have orvane and see
# both folders under the same path. Run again after any end, it goes on where it ended.
set -euo pipefail
if [ $# -lt 3 ]; then
    echo "usage: parallel.sh IN OUT SHARDS [LOGIN...]" >&2
    exit 2
fi
in=$(realpath -- "$1") out=$(realpath -- "$2") shards=$3
shift 3
machines=()
for login; do machines+=(--sshlogin "$login"); done

# --quote keeps names of all characters whole on their way through the shells of this and the other machines. A job ends
# with an error when a photograph gave no portrait; the reports tell, and the other jobs go on.
seq "$shards" | parallel --quote "${machines[@]}" --workdir / \
    "${ORVANE:-orvane}" portrait --resume --quiet --jobs 1 --shard "{}/$shards" \
    --report "$out/report-{}.csv" -o "$out" -- "$in" || true

reports=()
for ((shard = 1; shard <= shards; shard++)); do reports+=("$out/report-$shard.csv"); done
"${ORVANE:-orvane}" report join "${reports[@]}" -o "$out/report.csv" --force
