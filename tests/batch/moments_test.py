#!/usr/bin/env python3
"""Holds each analysis of moments to that of the samples, whose moments are computed here by exact sums; then moments as they
are published to an independent computation, and moments that are wrong to what is said of them.

usage: moments_test.py BATCH-RUNNER
"""
import csv
import io
import math
import pathlib
import re
import subprocess
import sys

from checks import check, end

runner = str(pathlib.Path(sys.argv[1]).resolve())
samples = pathlib.Path(__file__).resolve().parent.parent.parent / "samples"


def run(arguments, text=""):
    done = subprocess.run([runner, *arguments], input=text.encode(), capture_output=True, timeout=60)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


def read(name):
    rows = [row for row in csv.reader(open(samples / name)) if not row[0].startswith((";", "//"))]
    return rows[0][1:], [[float(cell) for cell in row[1:]] for row in rows[1:]]


def numbers_of(rows, places):
    n = len(rows)
    means = [math.fsum(row[j] for row in rows) / n for j in places]
    pairs = [(i, j) for i in range(len(places)) for j in range(i + 1)]
    product = lambda i, j: math.fsum((r[places[i]] - means[i]) * (r[places[j]] - means[j]) for r in rows) / n
    return n, means, [max(abs(row[j]) for row in rows) for j in places], {pair: product(*pair) for pair in pairs}


def table_of(lines):
    text = io.StringIO()
    csv.writer(text, lineterminator="\n").writerows(lines)
    return text.getvalue()


def wide(names, rows, group=None):
    """One row, or one for each group, as an engine writes it: all names in lower case."""
    places = [j for j in range(len(names)) if names[j] != group]
    head = [*["mean_" + names[j].lower() for j in places], *["MAX_" + names[j].upper() for j in places]]
    head = ["n", "left_out", *head, *["cov_%d_%d" % (i + 1, j + 1) for i in range(len(places)) for j in range(i + 1)]]
    parts = [("", rows)]
    if group:
        column = names.index(group)
        parts = [(int(g), [row for row in rows if row[column] == g]) for g in sorted({row[column] for row in rows})]
    lines = [[group] * bool(group) + head]
    for number, part in parts:
        n, means, sizes, products = numbers_of(part, places)
        lines.append([number] * bool(group) + [n, 3, *means, *sizes, *products.values()])
    return table_of(lines)


def tall(names, rows, _):
    n, means, sizes, products = numbers_of(rows, range(len(names)))
    lines = [["i", "n", "left_out", "name", "mean", "max", *["cov_%d" % (j + 1) for j in range(len(names))]]]
    for i, name in enumerate(names):
        lines.append([i + 1, n, 0, name, means[i], sizes[i], *[products.get((i, j), "") for j in range(len(names))]])
    return table_of(lines)


def typed(names, rows, _):
    """The lower triangle of the correlations below the deviations, divisor N - 1."""
    n, means, _, products = numbers_of(rows, range(len(names)))
    sds = [math.sqrt(products[i, i] * n / (n - 1)) for i in range(len(names))]
    lines = [["", *names], ["n", n], ["mean", *means], ["sd", *sds]]
    for i, name in enumerate(names):
        root = lambda k: math.sqrt(products[k, k])
        lines.append([name, *[products[i, j] / root(i) / root(j) for j in range(i)], 1])
    return table_of(lines)


def alike(one, other, tolerance):
    """Whether two lines have the same texts, and numbers up to rounding."""
    number = r"-?\d+\.\d+"
    pairs = list(zip(map(float, re.findall(number, one)), map(float, re.findall(number, other))))
    text = lambda line: re.sub(r"[ \d.-]+", "#", line.lower())
    return text(one) == text(other) and all(
        abs(abs(a) - abs(b)) <= tolerance * max(1, abs(a)) for a, b in pairs)  # vectors have any sign


def hold(arguments, name, form, group=None, change=None):
    """Every line of the report of moments stands in that of the samples, in the same order, but for the one that says so; and
    all lines of the latter do that are not of samples, variables' extremes or ranks."""
    names, rows = read(name)
    moved = [change(row) for row in rows] if change else rows
    status, report, notes = run([*arguments, "--moments", "-"], form(names, moved, group))
    whole = run([*arguments, *(["--group", group] if group else []), str(samples / name)])[1]
    lines, tolerance = report.split("\n"), 2e-6 if form is typed else 1e-9
    check((arguments, name, notes, report[:300]), status == 0 and "-- moments of %d samples" % len(rows) in lines)
    rest = iter(whole.split("\n"))
    for line in lines:
        if not line.startswith("-- moments") and not any(alike(line, other, tolerance) for other in rest):
            return check((arguments, name, form.__name__, line), False)
    check((arguments, name, "is short"), len(lines) > 10)
    check((arguments, notes), form is not wide or "3 samples left out" in notes or group)


fits = ["--method", "all"], ["--method", "forward"], ["--method=backward", "--criterion=f"], ["--numerics=textbook"]
for form in (wide, tall, typed):
    hold(["pca"], "USArrests.csv", form)
    hold(["pca", "--base", "covariance", "--numerics", "textbook"], "USArrests.csv", form)
    hold(["canonical", "--purpose", "Fertility,Infant.Mortality"], "swiss.csv", form)
    hold(["principal-factor", "--factors", "2", "--rotation", "orthogonal"], "mtcars.csv", form)
    hold(["ml-factor", "--factors", "2"], "mtcars.csv", form)
    hold(["fundamental", "--covariance", "--correlation", "--exclude", "Rape"], "USArrests.csv", form)
    for options in fits:
        hold(["regression", "--purpose", "Fertility", *options, "--predict", "Education=9"], "swiss.csv", form)
for options in [], ["--box-m", "--forward-selection"], ["--numerics=textbook"]:
    hold(["discriminant", *options], "iris.csv", wide, read("iris.csv")[0][-1])
purpose = read("cars.csv")[0].index("dist")
logs = lambda row: [math.log(x) for x in row]
hold(["involution", "--purpose", "dist"], "cars.csv", wide, change=logs)
hold(["polynomial", "--purpose", "dist", "--degree", "speed=2"], "cars.csv", wide,
     change=lambda row: [x if j == purpose else x * x for j, x in enumerate(row)])

# Covariances of six tests of 112 people as published; R 4.2: principal factors by eigen(), repeated from squared multiple
# correlations until the communalities settle to 1e-14, and factanal().
ability = """tests,general,picture,blocks,maze,reading,vocab
n,112
general,24.641
picture,5.991,6.700
blocks,33.520,18.137,149.831
maze,6.023,1.782,19.424,12.711
reading,20.755,4.936,31.430,4.757,52.604
vocab,29.701,7.204,50.753,9.075,66.762,135.292
"""
published = {"principal-factor": [(.749758796, .070427072), (.523883731, .319492279), (.750009093, .521756078),
                                  (.392331171, .220252912), (.818302325, -.518692332), (.726507014, -.376413253)],
             "ml-factor": [(.647526359, .354239244), (.347431578, .538478535), (.471081608, .748266368),
                           (.253020569, .408116582), (.964058494, -.134682824), (.815401020, -.039151552)]}
for kind, expected in published.items():
    report = run([kind, "--factors=2", "--rotation=none", "--numerics=textbook", "--moments", "-"], ability)[1]
    table = report[report.find("factor loading"):]
    for name, loadings in zip(ability.split("\n")[0].split(",")[1:], expected):
        row = re.search(r"%s,([^\n]*)" % name, table)
        found = [abs(float(cell)) for cell in row[1].split(",")[:2]] if row else []
        good = all(abs(a - abs(b)) < 2e-6 for a, b in zip(found, loadings))
        # Unrotated maximum likelihood factors are determined up to a rotation: what each variable has of them is not.
        total = abs(sum(a * a for a in found) - sum(b * b for b in loadings)) < 5e-6
        check((kind, name, found, loadings), found and (good or (kind == "ml-factor" and total)))

small = "n,left_out,mean_a,mean_b,cov_1_1,cov_2_1,cov_2_2\n9,0,1,2,4,1,9\n"
matrix = ",a,b,c\na,1\nb,.9,1\nc,-.9,.9,1\n"
wrong = [
    ("nothing of 'b' and 'a'", small.replace("cov_2_1,", "").replace(",4,1,9", ",4,9")),
    ("n is '0'", small.replace("\n9,", "\n0,")), ("n is '8.5'", small.replace("\n9,", "\n8.5,")),
    ("variable 'a' stands there twice", small.replace("mean_b", "mean_a")),
    ("'cov_1_1' stands there twice", small.replace("cov_2_1", "cov_1_1")),
    ("'left_out' stands there twice", small.replace("left_out", "left_out,left_out").replace("9,0", "9,0,0")),
    ("'cov_3_1'", small.replace("cov_2_1", "cov_3_1")), ("'mode_b'", small.replace("mean_b", "mode_b")),
    ("'NaN' of 'cov_2_1'", small.replace(",4,1,", ",4,NaN,")), ("more than their", small.replace(",4,1,", ",4,7,")),
    ("variance or deviation of 'a'", small.replace(",4,1,", ",-4,1,")), ("another number of cells", small + "1,2\n"),
    ("more than one row", small + small.split("\n")[1] + "\n"), ("no column n", small.replace("n,", "", 1).replace("9,", "", 1)),
    ("no moments", "n,mean_a\n"), ("quotes do not end", small.replace("mean_a", '"mean_a')), ("a NUL", small + "\0"),
    ("2,147,483,647", small.replace("\n9,", "\n3000000000,")), ("group '3'", "g," + small.replace("\n9", "\n3,9")),
    ("group 'x'", "g," + small.replace("\n9", "\nx,9")), ("not positive semi-definite", matrix),
    ("not symmetric in 'b' and 'a'", matrix.replace("\na,1", "\na,1,.8")), ("row of 'd'", matrix.replace("\nc,", "\nd,")),
    ("nothing of 'c' and 'a'", matrix.replace("-.9,.9", ",.9")), ("'x' of 'b'", matrix.replace(".9,1\nc", ".9,x\nc")),
    ("not the root", "sd,2,3\n".join(("h,a,b\n", "a,4\nb,1,16\n"))), ("'a' stands there twice", ",a,a\na,1\na,1,1\n"),
    ("n, the number", ",a,b\na,1\nb,.5,1\n"), ("more than their", ",a,b\na,50\nb,70,80\n"),
    ("the moments of all samples", "g," + small.replace("\n9", "\n1,9"))]
for words, text in wrong:
    status, report, notes = run(["pca", "--moments", "-"], text)
    check((words, status, notes), status == 1 and words in notes and "illegal data nor data structure" in report)
for words, arguments in (("a row sd", ["regression", "--purpose=b"]), ("a row mean", ["regression", "--purpose=a"])):
    status, _, notes = run([*arguments, "--moments", "-"], ",a,b\nn,9\na,%d\nb,.5,1\n" % (1 + (words == "a row mean")))
    check((words, notes), status == 1 and words in notes)
for arguments in (["cluster"], ["summary"], ["pca", "--save=s.csv"], ["pca", "--graph=p.svg"], ["pca", "--missing=omit"],
                  ["pca", "x.csv"]):
    check(arguments, run([*arguments, "--moments", "-"], small)[0] == 2)

sys.exit(end())
