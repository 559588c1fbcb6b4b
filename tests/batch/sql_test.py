#!/usr/bin/env python3
"""The statements of `sql`, run by SQLite with the functions that it lacks, against sums over the rows themselves.

usage: sql_test.py BATCH-RUNNER
"""
import csv
import itertools
import math
import pathlib
import random
import sqlite3
import subprocess
import sys
import tempfile

from checks import check, end

runner = str(pathlib.Path(sys.argv[1]).resolve())
samples = pathlib.Path(__file__).resolve().parent.parent.parent / "samples"


def run(*arguments):
    return subprocess.run([runner, *arguments], capture_output=True, text=True, timeout=60)


def covariance(pairs):
    means = [math.fsum(side) / len(pairs) for side in zip(*pairs)]
    return math.fsum((a - means[0]) * (b - means[1]) for a, b in pairs) / len(pairs)


class Covariance:
    def __init__(self):
        self.pairs = []

    def step(self, *pair):
        if None not in pair:
            self.pairs.append(pair)

    def finalize(self):
        return covariance(self.pairs) if self.pairs else None


engine = sqlite3.connect(":memory:")
engine.create_aggregate("covar_pop", 2, Covariance)
engine.create_function("power", 2, math.pow)
engine.create_function("ln", 1, math.log)  # raises outside of its domain


def fill(names, rows):
    engine.execute("drop table if exists t")
    engine.execute("create table t (%s)" % ", ".join('"%s"' % name.replace('"', '""') for name in names))
    engine.executemany("insert into t values (%s)" % ", ".join("?" * len(names)), rows)


def result(*arguments):
    done = run("sql", *arguments, "--table", "t")
    try:
        found = engine.execute(done.stdout)
        return [column[0] for column in found.description], found.fetchall()
    except (sqlite3.Error, TypeError) as error:
        check("%s: %s %s" % (arguments, error, done.stderr), False)
        return [], []


def moments(rows, left_out):
    """What one row of the result holds."""
    columns = list(zip(*rows))
    return [len(rows), left_out, *(math.fsum(x) / len(x) for x in columns), *(max(map(abs, x)) for x in columns),
            *(covariance(list(zip(columns[i], columns[j]))) for i in range(len(columns)) for j in range(i + 1))]


def are_near(found, expected):
    return len(found) == len(expected) and all(
        a == b or (isinstance(b, float) and math.isclose(a, b, rel_tol=1e-9, abs_tol=1e-12)) for a, b in zip(found, expected))


def check_curves():
    names = ["a", 'b "q" c', "y"]
    random.seed(20)
    rows = [[random.choice([-1, 1, 40]) * random.random() for _ in names] for _ in range(300)]
    for cell in (None, math.inf, -math.inf, 0.0, 1e-320):
        rows += [[cell if i == k else 0.5 for i in range(3)] for k in range(3)]
    fill(names, rows)
    keep, positive, logit = (lambda x: x), (lambda x: x if x > 0 else 1 / 0), (lambda x, whole=1: math.log(x / (whole - x)))
    for kind, explanatory, purpose in [
            ("regression", keep, keep), ("involution", lambda x: math.log(positive(x)), lambda x: math.log(positive(x))),
            ("exponential", keep, lambda x: math.log(positive(x))), ("inverse", keep, lambda x: 1 / (x if abs(x) > 1e-310 else 0)),
            ("logistic-curve-1", keep, logit), ("logistic-curve-2", keep, lambda x: logit(x, 100))]:
        check_one(kind, rows, names, [explanatory, explanatory, purpose])
    check_one("polynomial", rows, names, [lambda x: math.pow(x, 3), lambda x: math.pow(x, 0.5), keep],
              "--degree", '#2=0.5,a=3', "--method=all")


def check_one(kind, rows, names, functions, *options):
    used = []
    for row in rows:
        try:
            values = [function(x) for function, x in zip(functions, row)]
        except (TypeError, ValueError, ZeroDivisionError, OverflowError):
            continue
        if None not in row and all(map(math.isfinite, row)) and row[0] < 30:
            used.append(values)
    head, found = result(kind, "--columns", ",".join(names[:2]), "--purpose", names[2], "--where", '"a" is null or "a" < 30 -- )',
                         *options)
    taken = sum(row[0] is None or row[0] < 30 for row in rows)
    check("%s: %s" % (kind, found), len(found) == 1 and are_near(found[0], moments(used, taken - len(used))))
    check("%s: %s" % (kind, head), head == ["n", "left_out", *("mean_" + name for name in names), *("max_" + name for name in names),
                                            "cov_1_1", "cov_2_1", "cov_2_2", "cov_3_1", "cov_3_2", "cov_3_3"])


def check_groups_and_rows():
    random.seed(21)
    names = ["n", *("it's %d" % k for k in range(53))]
    rows = [[random.choice([None, 1, 2]), *(random.random() for _ in names[1:])] for _ in range(40)]
    rows[3][7] = None
    fill(names, rows)
    by_group = {g: [row[1:] for row in rows if row[0] == g] for g in (None, 1, 2)}
    used = {g: [row for row in part if None not in row and g is not None] for g, part in by_group.items()}
    head, found = result("discriminant", "--columns", ",".join(names[:4]), "--group", "n", "--no-box-m")
    check("groups", found[0][:3] == (None, 0, len(by_group[None])) and head[:2] == ["n", "n"] and len(found) == 3)
    for row, g in zip(found[1:], (1, 2)):
        check("group %d" % g, are_near(row, [g, *moments([cells[:3] for cells in by_group[g]], 0)]))
    head, found = result("pca", "--columns", ",".join(names[1:]))
    whole = [row[1:] for row in rows if None not in row[1:]]
    flat = moments(whole, 1)
    check("a row for each column", head == ["i", "n", "left_out", "name", "mean", "max", *("cov_%d" % j for j in range(1, 54))] and len(found) == 53)
    for i, row in enumerate(found):
        start = 2 + 106 + i * (i + 1) // 2
        want = [i + 1, 39, 1, names[i + 1], flat[2 + i], flat[55 + i], *flat[start:start + i + 1], *[None] * (52 - i)]
        check("row %d" % (i + 1), are_near(row, want))
    head, found = result("discriminant", "--columns", ",".join(names), "--group", "n")
    check("groups of rows", [row[:4] for row in found] == [
        (g, i, len(used[g]), len(by_group[g]) - len(used[g])) for g, i in itertools.product((None, 1, 2), range(1, 54))])


def check_tables():
    with open(samples / "hair-eye.csv", newline="") as file:
        head, *rows = list(csv.reader(file))
    fill(head[1:], [row[1:] for row in rows] + [[None, 1, 1], [1, 5, 7]])
    with tempfile.TemporaryDirectory() as folder:
        table = str(pathlib.Path(folder) / "table.csv")

        def save(*arguments):
            head, rows = result(*arguments)
            with open(table, "w", newline="") as file:
                csv.writer(file, lineterminator="\n").writerows([head, *rows])

        save("loglinear", "--columns=Hair,Eye,Sex", "--a=4", "--b=4", "--c=2")
        report = run("loglinear", "--a=4", "--b=4", "--c=2", table)
        check("log-linear models", report.returncode == 0 and report.stdout.split("\n", 4)[4] == run(
            "loglinear", "--data=variable", str(samples / "hair-eye.csv")).stdout.split("\n", 4)[4])
        save("quant3", "--data=cross", "--columns=Hair,Eye", "--categories=4")
        counts = [list(map(int, row[1:])) for row in csv.reader(open(table)) if row[0] != "label"]
        pairs = [(row[1], row[2]) for row in rows]
        check("a cross table", counts == [[pairs.count((str(i), str(j))) for j in range(1, 5)] for i in range(1, 5)])
        check("is read", run("quant3", "--data=cross", "--strict", table).returncode == 0)


def check_refusals():
    for says, *arguments in [
            ("sql: cluster needs the samples themselves", "cluster"), ("did you mean 'pca'", "pcb"), ("did you mean '--columns'", "pca", "--colums=a"),
            ("--columns NAME[,NAME...] is needed", "pca"), ("--table TABLE is needed", "pca", "--columns=a"),
            ("'a' stands there twice", "pca", "--columns=a,b,a", "--table=t"), ("more than 62", "pca", "--table=t", "--columns=" + 63 * "x"),
            ("--purpose NAME is needed", "inverse", "--columns=a,b", "--table=t"), ("no positive", "polynomial", "--purpose=b", "--degree=a=0", "--columns=a,b", "--table=t"),
            ("3 columns, not 2", "loglinear", "--columns=a,b", "--table=t"), ("--c N is needed", "loglinear", "--columns=a,b,c", "--table=t", "--a=2", "--b=2"),
            ("'mysql'", "pca", "--dialect=mysql"), ("did you mean 'speed'", "pca", "--columns=speed,b", "--exclude=sped", "--table=t")]:
        done = run("sql", *arguments)
        check("%s: %s" % (arguments, done.stderr), done.returncode == 2 and done.stdout == "" and says in done.stderr)
    spark = run("sql", "pca", "--dialect=spark", "--columns=a`b,c\"d", "--table=t").stdout
    check("another way of quoting", "cast(`a``b` as double) as `v1`" in spark and "`mean_c\"d`" in spark)


def main():
    check_curves()
    check_groups_and_rows()
    check_tables()
    check_refusals()
    return end()


if __name__ == "__main__":
    sys.exit(main())
