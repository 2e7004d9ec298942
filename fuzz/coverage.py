#!/usr/bin/env python3
"""coverage.py EXPORT ROOT AIMS: the lines reached of the sources that a target aims at, by a summary of llvm-cov.

A line for all, then one for each.
"""
import json
import os
import sys

export, root, aims = sys.argv[1:]
with open(aims, encoding="utf-8") as file:
    wanted = file.read().split()
with open(export, encoding="utf-8") as file:
    told = {os.path.relpath(os.path.join(root, f["filename"]), root): f["summary"]["lines"]
            for f in json.load(file)["data"][0]["files"]}
missing = [name for name in wanted if name not in told]
if missing:
    sys.exit(f"not in the program: {' '.join(missing)}")
count = sum(told[name]["count"] for name in wanted)
covered = sum(told[name]["covered"] for name in wanted)
print(f"{covered}/{count} ({100 * covered / count:.1f} %)")
for name in wanted:
    lines = told[name]
    print(f"    {lines['percent']:5.1f} %  {lines['covered']:4d}/{lines['count']:<4d}  {name}")
