#!/usr/bin/env python3
"""Holds what --score-sql prints of samples, and of their moments, to what --save writes, as SQLite evaluates it.

usage: score_sql_test.py BATCH-RUNNER
"""
import math
import os
import pathlib
import shlex
import sqlite3
import subprocess
import sys
import tempfile

from checks import check, end

runner = str(pathlib.Path(sys.argv[1]).resolve())
samples = pathlib.Path(__file__).resolve().parent.parent.parent / "samples"

# Arguments with the file last; "moments" in front of those of which the moments do, too.
cases = """
moments regression --purpose dist cars.csv
moments regression --purpose Fertility --method all --alpha 0.1 swiss.csv
moments polynomial --purpose dist --degree speed=2.5 cars.csv
polynomial --purpose dist --degree speed=3 --alpha 0 cars.csv
moments involution --purpose dist cars.csv
moments exponential --purpose population uspop.csv
moments inverse --purpose mpg --alpha 1e-6 --exclude cyl,disp,drat,qsec,vs,am,gear,carb mtcars.csv
moments logistic-curve-1 --purpose share --exclude percent menarche.csv
logistic-curve-2 --purpose percent --exclude share menarche.csv
moments pca --components 3 USArrests.csv
moments pca --components 3 --min-eigenvalue 0 --base covariance USArrests.csv
moments canonical --purpose Fertility,Infant.Mortality swiss.csv
moments principal-factor --factors 2 --rotation orthogonal mtcars.csv
ml-factor --factors 2 --criterion quartimin mtcars.csv
moments discriminant --group Species iris.csv
moments discriminant --group twos --forward-selection odd.csv
discriminant --group cyl --canon-alpha 0.5 odd.csv
logistic --state low --division 1.5 --exclude race,bwt birthwt.csv
"""
# What a curve takes in the place of an explanatory variable, and of the purpose variable.
log, same = math.log, lambda x: x
curves = {"polynomial": (lambda x: x ** 2.5, same), "involution": (log, log), "exponential": (same, log),
          "inverse": (same, lambda y: 1 / y), "logistic-curve-1": (same, lambda y: log(y / (1 - y)))}
functions = {"power": math.pow, "ln": math.log, "exp": math.exp, "sqrt": math.sqrt}  # which fail as those of engines do


def run(*arguments):
    return subprocess.run([runner, *arguments], capture_output=True, text=True, timeout=60)


def read(file):
    names, *rows = [line.split(",") for line in pathlib.Path(file).read_text().splitlines()]
    return names, rows


def evaluate(file, expressions):
    """The table with the expressions; behind its rows one of nulls, and some for which functions would fail."""
    names, rows = read(file)
    rows += [[None] * len(names)] + [[far] * len(names) for far in ("0", "-1", "-1e6", "1e6", "1e60")]
    engine = sqlite3.connect(":memory:")
    for name, of in functions.items():
        engine.create_function(name, 2 if name == "power" else 1, lambda *x, of=of: None if None in x else of(*x))
    engine.execute("create table t (%s)" % ", ".join('"%s"' % name.replace('"', '""') for name in names))
    engine.executemany("insert into t values (%s)" % ", ".join("?" * len(names)), rows)
    answer = engine.execute("select *, %s from t" % expressions)
    return [column[0] for column in answer.description], answer.fetchall(), len(names)


def moments(file, group, of_purpose, curve):
    """Of all columns, or by the groups of one, as a statement of an engine gives them."""
    names, rows = read(file)
    place = names.index(group) if group else 0
    taken = [k for k in range(1, len(names)) if k != place]
    value = lambda row, k: curve[names[k] == of_purpose](float(row[k]))
    head = ["mean_" + names[k] for k in taken] + ["max_" + names[k] for k in taken]
    head += ["cov_%d_%d" % (i + 1, j + 1) for i in range(len(taken)) for j in range(i + 1)]
    lines = [[group] * bool(group) + ["n", "left_out"] + head]
    for number in sorted({row[place] for row in rows}) if group else [None]:
        part = [[value(row, k) for k in taken] for row in rows if not group or row[place] == number]
        n, columns = len(part), list(zip(*part))
        means = [math.fsum(column) / n for column in columns]
        sums = [math.fsum((x - a) * (y - b) for x, y in zip(columns[i], columns[j])) / n
                for i, a in enumerate(means) for j, b in enumerate(means[:i + 1])]
        lines.append([number] * bool(group) + [n, 0] + means + [max(map(abs, column)) for column in columns] + sums)
    pathlib.Path("moments.csv").write_text("".join(",".join(map(str, line)) + "\n" for line in lines))


def compare(what, file, expressions, turns=False):
    try:
        names, rows, first = evaluate(file, expressions)
    except sqlite3.Error as error:
        return check("%s: %s" % (what, error), False)
    saved_names, saved = read("saved.csv")
    names, rows = names[first:], [row[first:] for row in rows]
    saved = [[float(cell) for cell in row[-len(names):]] for row in saved]
    check("%s: names %s" % (what, names), names == saved_names[-len(names):])
    if turns:  # the sign of a score hangs on the last digits of the moments
        signs = [math.copysign(1, x * y) for x, y in zip(rows[0], saved[0])]
        rows = [[x and x * sign for x, sign in zip(row, signs)] for row in rows]
    scales = [max(map(abs, column)) for column in zip(*saved)]
    wrong = [(k, name, x, y) for k, row in enumerate(saved) for name, x, y, scale in zip(names, rows[k], row, scales)
             if x is None or abs(x - y) > 1e-9 * scale]
    check("%s: %s" % (what, wrong[:3]), not wrong)
    check("%s: null of nulls" % what, set(rows[len(saved)]) == {None})


def check_case(words, has_moments):
    *arguments, file = words
    what = " ".join(words)
    value_of = lambda option: arguments[arguments.index(option) + 1] if option in arguments else ""
    for numerics in ("classic", "textbook"):
        given = [*arguments, "--numerics", numerics]
        saved, scored = run(*given, "--save=saved.csv", file), run(*given, "--score-sql", file)
        check("%s: %s" % (what, scored.stderr), (scored.returncode, scored.stderr) == (0, saved.stderr))
        compare(what, file, scored.stdout)
        if has_moments:
            moments(file, value_of("--group"), value_of("--purpose"), curves.get(arguments[0], (same, same)))
            compare("moments of " + what, file, run(*given, "--score-sql", "--moments=moments.csv").stdout, True)
    spark = run(*given, "--score-sql", "--dialect=spark", file).stdout
    check("%s: spark" % what, 'cast("' not in spark and spark.replace("as double)", "as double precision)").replace(
        "`", "").replace('"', "") == scored.stdout.replace('"', ""))


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        for file in samples.glob("*.csv"):
            pathlib.Path(file.name).write_bytes(file.read_bytes())
        names, rows = read("mtcars.csv")
        names = ["label", 'the "m"pg', "cyl", "score 1", "hp", "score 1.2", "wt", "twos"]
        rows = [row[:1] + [row[1], "%d" % (int(row[2]) // 2 - 1)] + row[3:7] + ["%d" % (int(row[9]) + 1)] for row in rows]
        pathlib.Path("odd.csv").write_text("".join(",".join(row) + "\n" for row in [names, *rows]))
        for case in cases.strip().splitlines():
            words = shlex.split(case)
            check_case(words[words[0] == "moments":], words[0] == "moments")
        done = run("pca", "--min-eigenvalue=99", "--score-sql", "iris.csv")
        check("no expressions", (done.returncode, done.stdout) == (1, "") and "no expressions" in done.stderr)
        os.chdir("/")
    return end()


if __name__ == "__main__":
    sys.exit(main())
