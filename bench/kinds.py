#!/usr/bin/env python3
"""One table of every kind of the batch runner: size, time from start to end, throughput of the file and peak memory, and
how often the time holds twice the samples and twice the variables; then some kinds of two large tables, beside the floor:
the time that the bytes of the file take to be read with nothing done. The data comes from fixed seeds.

usage: kinds.py BATCH-RUNNER [KIND...]
"""
import multiprocessing
import os
import pathlib
import random
import subprocess
import sys
import tempfile
import time

chance = random.Random(5)


def normal(_):
    return "%.6g" % chance.gauss(0, 1)


def share(_):
    return "%.6f" % chance.uniform(0.05, 0.95)


def category(_):
    return chance.choice("1234")


def grouped(column):
    return category(column) if column == 0 else normal(column)


def event(column):
    return chance.choice("01") if column == 0 else "%.6f" % chance.expovariate(1) if column == 1 else normal(column)


def table(samples, variables, draw):
    return [[draw(j) for j in range(variables)] for _ in range(samples)]


def counts(samples, variables, draw):
    """Whole numbers that are alike on both sides of the diagonal."""
    rows = [[chance.randint(1, 99) for _ in range(samples)] for _ in range(samples)]
    return [["%d" % rows[max(i, j)][min(i, j)] for j in range(samples)] for i in range(samples)]


# Kind, samples, variables, values, options. Square tables have no variables that grow alone.
cases = [
    ("summary", 100000, 20, normal, []),
    ("fundamental", 20000, 10, normal, []),
    ("regression", 20000, 20, normal, []),
    ("pca", 20000, 20, normal, []),
    ("canonical", 20000, 20, normal, ["--purpose=v1,v2,v3"]),
    ("principal-factor", 20000, 20, normal, []),
    ("ml-factor", 20000, 20, normal, []),
    ("discriminant", 20000, 20, grouped, ["--group=v1"]),
    ("cluster", 1000, 20, normal, []),
    ("association", 50000, 8, category, []),
    ("quant1", 20000, 8, category, []),
    ("quant2", 20000, 8, category, ["--group=v1"]),
    ("quant3", 20000, 8, category, []),
    ("loglinear", 100000, 3, category, ["--data=variable"]),
    ("mds", 150, 0, None, []),
    ("quant4", 150, 0, None, []),
    ("pcoa", 150, 0, None, []),
    ("logistic", 50000, 6, event, []),
    ("weibull", 50000, 6, event, []),
    ("hazard", 50000, 6, event, []),
    ("polynomial", 20000, 20, share, []),
    ("involution", 20000, 20, share, []),
    ("exponential", 20000, 20, share, []),
    ("inverse", 20000, 20, share, []),
    ("logistic-curve-1", 20000, 20, share, []),
    ("logistic-curve-2", 20000, 20, share, []),
]


# Kind and options, of 200,000 x 20 and 1,000,000 x 5 numbers with 12 decimals; threads where they make a difference.
large_cases = [
    ("summary", []),
    ("fundamental", ["--threads=1"]),
    ("fundamental", []),
    ("regression", ["--method=all"]),
    ("pca", []),
    ("canonical", ["--purpose=v1,v2"]),
]


def precise(_):
    return "%.12f" % chance.gauss(0, 1)


def write_rows(path, samples, variables, draw):
    rows = (table if draw else counts)(samples, variables, draw)
    with open(path, "w") as file:
        file.write("label," + ",".join("v%d" % (j + 1) for j in range(len(rows[0]))) + "\n")
        file.writelines("s%d,%s\n" % (i, ",".join(row)) for i, row in enumerate(rows))


def write(*case):
    """In a process of its own, since the peak memory of a new process begins with that of its parent."""
    writer = multiprocessing.Process(target=write_rows, args=case)
    writer.start()
    writer.join()


def measure(runner, kind, options, path):
    """The least seconds of three runs, peak memory in MB and the exit status."""
    least = peak = float("inf")
    for _ in range(3):
        start = time.perf_counter()
        process = subprocess.Popen([runner, kind, *options, path], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        least, peak = min(least, time.perf_counter() - start), min(peak, usage.ru_maxrss / 1024)
    return least, peak, process.returncode


def floor(path):
    """The least seconds of three readings."""
    least = float("inf")
    for _ in range(3):
        start = time.perf_counter()
        with open(path, "rb", buffering=0) as file:
            while file.read(1 << 18):
                pass
        least = min(least, time.perf_counter() - start)
    return least


def measure_large(runner, wanted):
    with tempfile.TemporaryDirectory() as folder:
        path = folder + "/bench.csv"
        for samples, variables in ((200000, 20), (1000000, 5)):
            write(path, samples, variables, precise)
            least, megabytes = floor(path), os.path.getsize(path) / 1e6
            print("\n%d x %d, %.1f MB of text, read in %.3f s" % (samples, variables, megabytes, least))
            for kind, options in large_cases:
                if wanted and kind not in wanted:
                    continue
                seconds, peak, status = measure(runner, kind, options, path)
                print("%-13s %-18s %7.3f s %8.1f MB/s %6.1f MB, %4.1f times the reading%s" % (
                    kind, " ".join(options), seconds, megabytes / seconds, peak, seconds / least,
                    "  exit status %d" % status if status else ""), flush=True)


def main():
    runner, wanted = str(pathlib.Path(sys.argv[1]).resolve()), sys.argv[2:]
    print("%-17s %14s %9s %8s %9s %11s %13s" % ("kind", "size", "time", "MB/s", "memory", "2 x samples", "2 x variables"))
    with tempfile.TemporaryDirectory() as folder:
        path = folder + "/bench.csv"
        for kind, samples, variables, draw, options in cases:
            if wanted and kind not in wanted:
                continue
            write(path, samples, variables, draw)
            seconds, peak, status = measure(runner, kind, options, path)
            speed = os.path.getsize(path) / 1e6 / seconds
            write(path, 2 * samples, variables, draw)
            longer = measure(runner, kind, options, path)[0] / seconds
            wider = 0
            if draw and kind != "loglinear":
                write(path, samples, 2 * variables, draw)
                wider = measure(runner, kind, options, path)[0] / seconds
            print("%-17s %8d x %-3d %7.3f s %8.1f %6.1f MB %11.1f %13s%s" % (
                kind, samples, variables or samples, seconds, speed, peak, longer, "%.1f" % wider if wider else "",
                "  exit status %d" % status if status else ""), flush=True)
    measure_large(runner, wanted)


if __name__ == "__main__":
    main()
