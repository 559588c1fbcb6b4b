#!/usr/bin/env python3
"""Tries the way of a table that stays in its engine: statement, moments, analysis, scores. 200,000 x 20 through the file and
through DuckDB and PostgreSQL must agree to 1e-10 in every number of the JSON report that both have, and scores to 1e-7; then
50,000,000 x 10, which is made in DuckDB with 2 GB of memory, for times.

usage: run.py BATCH-RUNNER FOLDER-WITH-ENGINES [ROWS-OF-THE-LARGE-TABLE]
"""
import csv
import json
import math
import pathlib
import random
import subprocess
import sys
import time

runner = str(pathlib.Path(sys.argv[1]).resolve())
folder = pathlib.Path(sys.argv[2]).resolve()
large_rows = int(sys.argv[3]) if len(sys.argv) > 3 else 50_000_000
here = pathlib.Path(__file__).resolve().parent
names = ["x%d" % (j + 1) for j in range(19)] + ["y"]
passed = failed = 0


def check(good, *said):
    global passed, failed
    passed, failed = passed + bool(good), failed + (not good)
    if not good:
        print("FAILED", *said, flush=True)


def run(arguments):
    done = subprocess.run([runner, *arguments], capture_output=True, text=True)
    check(done.returncode == 0, arguments, done.stderr)
    return done.stdout


def duckdb(statements, output=None, memory="8GB"):
    (folder / "statements.sql").write_text(statements)
    done = subprocess.run(["node", str(here / "query.mjs"), "tables.duckdb", memory, "statements.sql",
                           *([str(output)] if output else [])], cwd=folder, capture_output=True, text=True)
    check(done.returncode == 0, done.stderr[-400:])
    return float(done.stdout or "nan")


def postgresql(statements, output=None):
    lines = statements.strip().rstrip(";").split(";\n")
    if output:
        lines[-1] = "\\copy (%s) to '%s' csv header" % (" ".join(lines[-1].split()), output)
    text = "".join(line + ("\n" if line.startswith("\\") else ";\n") for line in lines)
    start = time.perf_counter()
    done = subprocess.run(["psql", "-q", "-v", "ON_ERROR_STOP=1", "-h", str(folder / "socket"), "-U", "postgres"],
                          input=text, capture_output=True, text=True)
    check(done.returncode == 0, done.stderr[-400:])
    return time.perf_counter() - start


def write_table(path):
    """Two common parts and noise, so that everything correlates; group 1 to 3 shifts the means; some cells are empty."""
    chance = random.Random(7)
    with open(path, "w") as file:
        file.write("label,%s,g\n" % ",".join(names))
        for i in range(200_000):
            group, common, other = 1 + i % 3, chance.gauss(0, 1), chance.gauss(0, 1)
            row = [math.exp(0.3 * (common + 0.1 * j * other + chance.gauss(0, 1) + 0.2 * group)) for j in range(20)]
            file.write("s%d,%s,%d\n" % (i, ",".join("%.12g" % value for value in row), group))


def numbers_of(report):
    """Of every table: the numbers by caption, label of the row and place."""
    found = {}
    for part in json.loads(report)["reports"]:
        for table in part["tables"]:
            for row in table["rows"]:
                for place, value in enumerate(row["values"]):
                    found[table["caption"], row["label"], place] = value
    return found


def differs(a, b, tolerance):
    if isinstance(a, str) or isinstance(b, str) or a is None or b is None:
        return a != b
    return not abs(a - b) <= tolerance * max(abs(a), abs(b), 1)


all_columns = ",".join(names)
kinds = [
    ("pca", [], ""), ("pca", ["--base=covariance"], ""), ("canonical", ["--purpose=x1,x2,y"], ""),
    ("regression", ["--purpose=y", "--method=all"], ""), ("regression", ["--purpose=y"], ""),
    ("polynomial", ["--purpose=y", "--degree=x1=2,x2=0.5"], ""), ("involution", ["--purpose=y"], ""),
    ("exponential", ["--purpose=y"], ""), ("inverse", ["--purpose=y"], ""), ("fundamental", ["--covariance"], ""),
    ("principal-factor", ["--factors=2"], ""), ("ml-factor", ["--factors=2"], ""), ("discriminant", [], "g"),
]
scored = ("pca", "canonical", "regression", "polynomial", "involution", "exponential", "inverse", "principal-factor",
          "discriminant")


def compare(engine, query, table, path):
    worst, seconds = 0.0, 0.0
    for kind, options, group in kinds:
        options = [*options, "--numerics=textbook"]  # whose own rounding is far below what is asked
        given = ["--group=" + group] if group else ["--exclude=g"]
        statement = run(["sql", kind, "--columns", all_columns, "--table", "t", "--dialect", engine, *options,
                         *(["--group=g"] if group else [])])
        moments = folder / "moments.csv"
        seconds += query(statement, moments)
        here_too = numbers_of(run([kind, "--format=json", *options, *given, str(path)]))
        there = numbers_of(run([kind, "--format=json", *options, "--moments", str(moments)]))
        both = here_too.keys() & there.keys()
        # Wilks' lambda of groups that are near one another is close to 1: the F and probabilities that are made of what it
        # lacks have so many digits less as the engine's covariances have them rounded.
        tolerance = 1e-8 if kind == "discriminant" else 1e-10
        wrong = [key for key in both if differs(abs_of(here_too[key]), abs_of(there[key]), tolerance)]
        worst = max([worst, *[size_of(here_too[key], there[key]) for key in both if kind != "discriminant"]])
        check(len(both) > 15 and len(both) == len(there) and not wrong, engine, kind, options, len(both), wrong[:3],
              [(here_too[key], there[key]) for key in wrong[:3]])
        if kind in scored:
            scores = run([kind, "--score-sql", "--dialect", engine, *options, "--moments", str(moments)])
            query("select *, %s from t order by cast(substr(label, 2) as integer) limit 1000" % scores, folder / "scores.csv")
            run([kind, *options, *given, "--save", str(folder / "saved.csv"), "--output", str(folder / "report.txt"), str(path)])
            compare_scores(engine, kind)
    print("%s: %d statements of 200,000 x 20 in %.1f s; numbers differ by %.0e at most" % (engine, len(kinds), seconds, worst),
          flush=True)


def size_of(a, b):
    """How far two numbers are apart, by their size or 1."""
    return abs(abs(a) - abs(b)) / max(abs(a), abs(b), 1) if isinstance(a, (int, float)) and isinstance(b, (int, float)) else 0.0


def abs_of(value):
    """Vectors have any sign."""
    return abs(value) if isinstance(value, (int, float)) else value


def compare_scores(engine, kind):
    with open(folder / "saved.csv") as saved, open(folder / "scores.csv") as scores:
        ours, theirs = csv.reader(saved), csv.reader(scores)
        head, other = next(ours), next(theirs)
        added = len(other) - len(names) - 2  # behind label, variables and group, which only what takes it saves
        check(added > 0 and head[-added:] == other[-added:], engine, kind, head, other)
        for mine, yours in zip(ours, theirs):
            pairs = list(zip(mine[-added:], yours[-added:]))
            wrong = [(a, b) for a, b in pairs if differs(abs(float(a)), abs(float(b)), 1e-7)]
            if wrong:
                return check(False, engine, kind, mine[0], wrong[:3])
        check(True)


measure = """
import resource, subprocess, sys, time
start = time.perf_counter()
status = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode
print(status, time.perf_counter() - start, resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss / 1024)
"""


def peak_of(arguments):
    """Seconds and megabytes, by a small process, as the peak of a new one begins with that of its parent."""
    done = subprocess.run([sys.executable, "-c", measure, runner, *arguments], capture_output=True, text=True)
    status, seconds, megabytes = map(float, done.stdout.split())
    check(status == 0, arguments)
    return seconds, megabytes


def try_large():
    columns = ["v%d" % (j + 1) for j in range(10)]
    parts = ["sin(i * %d.7) * %d + u * 0.5 + random() as v%d" % (j + 3, j + 1, j + 1) for j in range(10)]
    make = "drop table if exists big;\ncreate table big as select i, %s from (select i, random() as u from range(%d) r(i));\n" % (
        ", ".join(parts), large_rows)
    print("made %d x 10 in %.1f s" % (large_rows, duckdb(make, memory="2GB")), flush=True)
    moments, scores = folder / "large.csv", folder / "large-scores.csv"
    for kind, options in (("regression", ["--purpose=v10", "--method=all"]), ("pca", ["--components=2"])):
        statement = run(["sql", kind, "--columns", ",".join(columns), "--table", "big", "--dialect", "duckdb", *options])
        seconds = duckdb(statement, moments, "2GB")
        ours, megabytes = peak_of([kind, *options, "--moments", str(moments)])
        expressions = run([kind, "--score-sql", "--dialect", "duckdb", *options, "--moments", str(moments)])
        duckdb("select *, %s from big where i < 1000 order by i" % expressions, scores, "2GB")
        print("%s: statement %.1f s, our part %.3f s and %.1f MB" % (kind, seconds, ours, megabytes), flush=True)
        compare_large(kind, json.loads(run([kind, "--format=json", *options, "--moments", str(moments)])), scores, columns)


def compare_large(kind, report, path, columns):
    """Scores by the printed coefficients."""
    tables = {table["caption"]: table["rows"] for table in report["reports"][0]["tables"]}
    with open(path) as file:
        for row in csv.DictReader(file):
            values = [float(row[name]) for name in columns]
            if kind == "regression":
                rows = next(rows for caption, rows in tables.items() if caption.startswith("partial regression"))
                weights = {each["label"]: each["values"][0] for each in rows}
                expected = weights["constant"] + sum(weights[name] * float(row[name]) for name in columns[:-1])
                found = float(row["prediction"])
            else:  # components: the scores of one vector of loadings
                loadings = [each["values"][0] for each in tables["principal component load"]]
                eigenvalue = sum(loading * loading for loading in loadings)
                moments = next(csv.DictReader(open(folder / "large.csv")))
                z = [(x - float(moments["mean_" + name])) / math.sqrt(float(moments["cov_%d_%d" % (k, k)]))
                     for k, (name, x) in enumerate(zip(columns, values), 1)]
                expected = sum(a * b for a, b in zip(z, loadings)) / eigenvalue
                found = float(row["score 1"])
            if differs(expected, found, 1e-7):
                return check(False, kind, row["i"], expected, found)
    check(True)


table = folder / "table.csv"
write_table(table)
types = ", ".join("%s double precision" % name for name in names)
duckdb("drop table if exists t;\ncreate table t as select * from read_csv('%s');\n" % table)
compare("duckdb", duckdb, "t", table)
postgresql("drop table if exists t;\ncreate table t (label text, %s, g integer);\n\\copy t from '%s' csv header\n" % (types, table))
compare("postgresql", postgresql, "t", table)
try_large()
print("%d passed, %d failed" % (passed, failed))
sys.exit(failed > 0)
