#!/usr/bin/env bash
# slurm_test.sh BIN: examples/cluster/slurm.sh as a job array on a Slurm of the test's own, whose only machine is this
# one: its parts run as ordinary processes in a temporary folder. The array is killed in the middle and submitted again.
set -euo pipefail
here=$(realpath "$(dirname "${BASH_SOURCE[0]}")")
. "$here/common.sh"
examples=$here/../../examples/cluster
begin_test "$(realpath "$1")"

slurm=$work/slurm
parts=()
end_test() {
    local part
    scancel --quiet --user="$(id -un)" 2>/dev/null || true
    for part in "${parts[@]}"; do kill "$part" 2>/dev/null || true; done
    for part in "${parts[@]}"; do wait "$part" 2>/dev/null || true; done
    rm -rf "$work"
}
trap end_test EXIT

free_port() {
    /usr/bin/python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}

machine=$(hostname -s)
mkdir -p "$slurm/state" "$slurm/spool"
mkdir -m 700 "$slurm/munge"
head -c 128 /dev/urandom >"$slurm/munge/key"
chmod 600 "$slurm/munge/key"
cat >"$slurm/slurm.conf" <<END
ClusterName=orvane
SlurmctldHost=$machine(127.0.0.1)
SlurmctldPort=$(free_port)
SlurmdPort=$(free_port)
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
AuthType=auth/munge
AuthInfo=socket=$slurm/munge/socket
CredType=cred/munge
StateSaveLocation=$slurm/state
SlurmdSpoolDir=$slurm/spool
SlurmctldPidFile=$slurm/slurmctld.pid
SlurmdPidFile=$slurm/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
MpiDefault=none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerParameters=sched_interval=2
ReturnToService=2
KillWait=2
NodeName=$machine NodeAddr=127.0.0.1 CPUs=2
PartitionName=all Nodes=$machine Default=YES MaxTime=INFINITE State=UP
END
export SLURM_CONF=$slurm/slurm.conf

# start_part NAME COMMAND...: one of Slurm's parts, which stays in the foreground.
start_part() {
    "${@:2}" >"$slurm/$1.log" 2>&1 </dev/null &
    parts+=("$!")
}
show_logs() { tail -n 15 "$slurm"/*.log; }

start_part munged munged --foreground --force --key-file="$slurm/munge/key" --socket="$slurm/munge/socket" \
    --pid-file="$slurm/munge/pid" --seed-file="$slurm/munge/seed" --log-file="$slurm/munge/log"
wait_until 20 test -S "$slurm/munge/socket" || fail "munged does not start: $(show_logs)"
start_part slurmctld slurmctld -D
start_part slurmd slurmd -D
is_up() { sinfo --noheader --format=%T 2>/dev/null | grep -qE '^(idle|mixed|allocated)'; }
wait_until 60 is_up || fail "Slurm does not start: $(show_logs)"

submit() {
    sbatch --parsable --chdir="$work" --output="$work/task-%a.log" --array=1-"$shards" "$@" \
        "$examples/slurm.sh" "$in" "$out" "$shards"
}
# is_over JOB: whether nothing of it waits or runs any more.
is_over() { ! squeue --noheader --jobs="$1" 2>/dev/null | grep -q .; }

array=$(submit)
wait_until 60 some_portraits || fail "no portraits: $(cat "$work"/task-*.log; show_logs)"
scancel --signal=KILL --full "$array"
scancel "$array"
wait_until 60 is_over "$array" || fail "the array does not end: $(show_logs)"
note_what_is_done

array=$(submit)
join=$(sbatch --parsable --chdir="$work" --output="$work/join.log" --dependency="afterany:$array" \
    "$examples/slurm_join.sh" "$out" "$shards")
wait_until 300 is_over "$array" || fail "the array does not end: $(show_logs)"
wait_until 60 is_over "$join" || fail "the join does not end: $(show_logs)"
cat "$work/join.log"
grep -qx "$photos photos: $photos portraits, 0 without a face, 0 failed" "$work/join.log" ||
    fail "the report tells otherwise: $(cat "$work"/task-*.log)"
check_run
