#!/usr/bin/env bash
#SBATCH --job-name=orvane
#SBATCH --requeue
# slurm.sh IN OUT SHARDS: one task of a job array of Slurm, which makes the portraits of one shard of the photographs in
# the folder IN, into the folder OUT. Every machine must have orvane and see both folders under the same path.
#
#   sbatch --array=1-16 slurm.sh IN OUT 16
#
# A task that was ended, or that is put in the queue again, goes on where it ended; so does the same array, submitted
# again, or a part of it: --array=3,7.
set -euo pipefail
if [ $# -ne 3 ]; then
    echo "usage: sbatch --array=1-SHARDS slurm.sh IN OUT SHARDS" >&2
    exit 2
fi
in=$1 out=$2 shards=$3 shard=$SLURM_ARRAY_TASK_ID code=0
"${ORVANE:-orvane}" portrait --resume --quiet --jobs "${SLURM_CPUS_PER_TASK:-1}" --shard "$shard/$shards" \
    --report "$out/report-$shard.csv" -o "$out" -- "$in" || code=$?

# 1 and 10 tell of photographs without a portrait: the report names them, and the task itself has done its work.
case $code in
    0 | 1 | 10) test -s "$out/report-$shard.csv" ;;
    *) exit "$code" ;;
esac
