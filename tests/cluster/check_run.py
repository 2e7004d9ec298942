#!/usr/bin/python3
"""check_run.py BEFORE OUT COUNT: whether a run that was killed and resumed made each of COUNT portraits exactly once.

Told by the portraits themselves, by the joined report, by the reports of both runs, and by the journals.
"""

import collections
import csv
import glob
import os
import sys


def rows_of(report):
    # A row that was cut off when its run was killed is none.
    with open(report, newline="", encoding="utf-8") as file:
        text = file.read()
    return list(csv.DictReader(text[: text.rfind("\n") + 1].splitlines(keepends=True)))


def main():
    before, out, count = sys.argv[1], sys.argv[2], int(sys.argv[3])
    problems = []

    with open(os.path.join(before, "portraits"), "rb") as file:
        done = [record.rsplit(b" ", 2) for record in file.read().split(b"\0") if record]
    for name, inode, _ in done:
        now = os.stat(os.path.join(os.fsencode(out), name))
        if now.st_ino != int(inode):
            problems.append(f"{name} was made again")
    portraits = [name for name in os.listdir(out) if name.endswith(".png")]
    if len(portraits) != count:
        problems.append(f"{len(portraits)} portraits instead of {count}")

    joined = rows_of(os.path.join(out, "report.csv"))
    outcomes = collections.Counter(row["status"] for row in joined)
    if len({row["input"] for row in joined}) != count or len(joined) != count:
        problems.append(f"{len(joined)} rows in the joined report instead of {count}")
    if outcomes["kept"] != len(done) or outcomes["portrait"] != count - len(done):
        problems.append(f"{len(done)} portraits were there, and the resumed run tells {dict(outcomes)}")

    made = collections.Counter()
    for report in glob.glob(glob.escape(before) + "/*.csv") + glob.glob(glob.escape(out) + "/report-*.csv"):
        made.update(row["input"] for row in rows_of(report) if row["status"] == "portrait")
    problems += [f"{name} was told as made {times} times" for name, times in made.items() if times > 1]

    # The last word of a line is the portrait's name, with blanks as %20.
    written = collections.Counter()
    for journal in glob.glob(glob.escape(out) + "/.orvane-journal*"):
        with open(journal, "rb") as file:
            written.update(line.split(b" ")[-1].strip().replace(b"%20", b" ") for line in file)
    problems += [f"{name} stands {written[name]} times in the journals" for name, _, _ in done if written[name] != 1]
    missing = [name for name in portraits if written[os.fsencode(name)] < 1]
    problems += [f"{name} stands in no journal" for name in missing]

    for problem in problems:
        print(problem)
    if not problems:
        print(f"{count} portraits, {len(done)} of them kept from the run that was killed, none made twice")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
