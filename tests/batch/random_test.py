#!/usr/bin/env python3
"""Every kind of the batch runner with random small data and random option values, extreme ones included: it ends in
time with status 0, 1 or 2, and without a report of a sanitizer. The kinds and their options are those of --help.

usage: random_test.py BATCH-RUNNER
"""
import os
import pathlib
import random
import re
import subprocess
import sys
import tempfile

runner = str(pathlib.Path(sys.argv[1]).resolve())
chance = random.Random(20260101)
extremes = ["0", "-1", "1e300", "-1e300", "1e-300", "1e999", "-1e999", "nan", "inf", "1.5", "abc", "", "4294967297"]
# Likely values by what a usage text says; what is not here is a list of words.
values = {"NAME": ["v1", "v2", "#3"], "NAME[,NAME...]": ["v2", "#3,v1"], "NAME=X[,NAME=X...]": ["v2=3", "v1=0.5,#3=2"],
          "X": ["0", "0.05", "0.5", "1", "1.9", "1e-9"], "N": ["1", "2", "3", "4", "18", "64"], "I,J": ["1,2", "3,1"],
          "WxH": ["200x10000", "480x333"], "FILE.svg": ["p.svg"], "FILE": ["r.txt"], "TEXT": ["c:\\x"]}
columns = [lambda: "%.6g" % chance.gauss(0, 1), lambda: "0.%d" % chance.randint(1, 9), lambda: chance.choice("01"),
           lambda: chance.choice("12"), lambda: chance.choice("123"), lambda: "%d" % chance.randint(1, 9),
           lambda: chance.choice(extremes)]


def listed(pattern, *arguments):
    done = subprocess.run([runner, *arguments, "--help"], capture_output=True, text=True, check=True, timeout=60)
    return re.findall(pattern, done.stdout.split("kinds:")[-1], re.MULTILINE)


def random_arguments(options):
    for negation, name, usage in options:
        needed = usage in ("NAME", "NAME[,NAME...]", "FILE.svg", "classic|textbook") and name not in ("exclude", "colour-by")
        if chance.random() < (0.9 if needed else 0.08):
            likely = values.get(usage) or usage.split("|")
            value = "=" + chance.choice(extremes if chance.random() < 0.04 else likely) if usage else ""
            yield "--" + chance.choice(("", negation)) + name + value


def random_data():
    count = chance.choice((1, 2, 3, 3, 3, 3, 4, 5, 6))
    samples = chance.choice((1, 8, 30, 30, 30, 30, 30, count))
    draws = chance.choices(columns[:-1], k=count) if chance.random() < 0.4 else [chance.choice(columns)] * count
    rows = [["v%d" % j for j in range(1, count + 1)]] + [[draw() for draw in draws] for _ in range(samples)]
    return "".join("r%d,%s\n" % (i, ",".join(row)) for i, row in enumerate(rows))


def status_or_fault(arguments):
    try:
        done = subprocess.run([runner, *arguments], capture_output=True, text=True, errors="replace", timeout=20)
    except subprocess.TimeoutExpired:
        return "no end within 20 s"
    if done.returncode not in (0, 1, 2) or "Sanitizer" in done.stderr or "runtime error" in done.stderr:
        return "status %d\n%s" % (done.returncode, done.stderr[:4000])
    return done.returncode


def main():
    ends, tried, failed, kinds = [], 0, 0, listed(r"^  ([a-z][\w-]*)  ")
    for kind in kinds:
        options, faults = listed(r"^  --(?!help|version|moments|divisor|dialect)(\[no-\])?([\w-]+)(?: (\S+))?", kind), []
        options = [(negation[1:-1], name, usage) for negation, name, usage in options]
        for _ in range(80):
            arguments = [kind, *random_arguments(options), "d.csv"]
            pathlib.Path("d.csv").write_text(random_data())
            ends.append(status_or_fault(arguments))
            tried += len(arguments) - 2
            if ends[-1] not in (0, 1, 2):
                faults.append("failed: %r: %s\n%s" % (arguments, ends[-1], pathlib.Path("d.csv").read_text()))
        print("".join(faults[:3]), end="")
        failed += bool(faults)
    # Where little is computed, little is tried.
    failed += ends.count(0) < len(ends) // 6
    print("of %d runs %s ended with status 0, 1, 2" % (len(ends), [ends.count(status) for status in (0, 1, 2)]))
    print("figure: runs of the batch runner with random data and options %d" % len(ends))
    print("figure: random option values in these runs %d" % tried)
    print("%d passed, %d failed" % (len(kinds) + 1 - failed, failed))
    return 1 if failed else 0


if __name__ == "__main__":
    with tempfile.TemporaryDirectory() as scratch:
        os.chdir(scratch)
        sys.exit(main())
