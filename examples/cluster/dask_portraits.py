#!/usr/bin/python3
"""Makes the portraits of a folder of photographs on the workers of a Dask cluster, one shard a task.

Every machine must have orvane and see both folders under the same path. Run again after any end, it goes on where it
ended. Without --scheduler the workers are two processes of this machine.
"""

import argparse
import os
import subprocess
import sys

from distributed import Client, LocalCluster, as_completed

ORVANE = os.environ.get("ORVANE", "orvane")


def report_of(shard, out):
    return os.path.join(out, f"report-{shard}.csv")


def make_portraits(shard, shards, folder, out):
    """Works one shard, on whichever machine; gives what went wrong, as text, or None."""
    command = [ORVANE, "portrait", "--resume", "--quiet", "--jobs", "1", "--shard", f"{shard}/{shards}",
               "--report", report_of(shard, out), "-o", out, "--", folder]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace")
    # 1 and 10 tell of photographs without a portrait, which the report names.
    return None if done.returncode in (0, 1, 10) and os.path.exists(report_of(shard, out)) else done.stderr


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("folder", help="where the photographs are")
    parser.add_argument("out", help="an existing folder for the portraits")
    parser.add_argument("shards", type=int, help="number of tasks, some times that of the workers")
    parser.add_argument("--scheduler", help="address of a cluster, such as tcp://machine:8786")
    options = parser.parse_args()
    folder, out = os.path.abspath(options.folder), os.path.abspath(options.out)

    if options.scheduler:
        client = Client(options.scheduler)
    else:
        client = Client(LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None))
    shards = range(1, options.shards + 1)
    with client:
        # Not pure: else the cluster would take a result of an earlier run for that of this one.
        tasks = client.map(make_portraits, shards, shards=options.shards, folder=folder, out=out, pure=False)
        for task in as_completed(tasks):
            problem = task.result()
            if problem is not None:
                print(problem, file=sys.stderr)

    reports = [report_of(shard, out) for shard in shards]
    join = [ORVANE, "report", "join", *reports, "-o", os.path.join(out, "report.csv"), "--force"]
    return subprocess.run(join).returncode


if __name__ == "__main__":
    sys.exit(main())
