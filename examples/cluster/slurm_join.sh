#!/usr/bin/env bash
#SBATCH --job-name=orvane-report
# slurm_join.sh OUT SHARDS: joins the reports of all tasks of slurm.sh when they have ended.
#
#   array=$(sbatch --parsable --array=1-16 slurm.sh IN OUT 16)
#   sbatch --dependency="afterany:$array" slurm_join.sh OUT 16
set -euo pipefail
if [ $# -ne 2 ]; then
    echo "usage: slurm_join.sh OUT SHARDS" >&2
    exit 2
fi
out=$1 shards=$2 reports=()
for ((shard = 1; shard <= shards; shard++)); do reports+=("$out/report-$shard.csv"); done
"${ORVANE:-orvane}" report join "${reports[@]}" -o "$out/report.csv" --force
