#!/usr/bin/env python3
"""The command line as a user has it: what goes to which stream, and the exit status.

usage: batch_test.py BATCH-RUNNER
"""
import os
import pathlib
import subprocess
import sys
import tempfile
import xml.etree.ElementTree

runner = str(pathlib.Path(sys.argv[1]).resolve())
iris = str(pathlib.Path(__file__).resolve().parent.parent / "reference" / "data" / "iris.csv")
failures = []
checks = 0


def run(*arguments, **options):
    done = subprocess.run([runner, *arguments], capture_output=True, text=True, timeout=60, **options)
    return done.returncode, done.stdout, done.stderr


def check(what, is_so):
    global checks
    checks += 1
    if not is_so:
        failures.append(what)


def wrong_command_line(*arguments, says):
    code, out, err = run(*arguments)
    first = err.splitlines()[0] if err else ""
    check("%s: %r" % (arguments, (code, out, err)),
          code == 2 and out == "" and first.startswith("ombrivantel-batch: ") and says in first and "--help" in err)


def check_wrong_command_lines():
    wrong_command_line(says="which analysis")
    wrong_command_line("fundamentals", iris, says="'fundamentals'")
    wrong_command_line("summary", says="which file")
    wrong_command_line("summary", iris, "small.csv", says="small.csv")
    wrong_command_line("summary", "--covariance", iris, says="'--covariance'")
    wrong_command_line("fundamental", "--no-mean", iris, says="'--no-mean'")
    wrong_command_line("fundamental", "--no-kendall=1", iris, says="--no-kendall")
    wrong_command_line("summary", "--label-width", "0", iris, says="--label-width")
    wrong_command_line("summary", "--variable-width=wide", iris, says="'wide'")
    wrong_command_line("summary", iris, "--exclude", says="--exclude")
    wrong_command_line("summary", "--exclude", "c,e", "small.csv", says="'e'")
    wrong_command_line("summary", "--exclude", "#5", "small.csv", says="'#5'")
    wrong_command_line("summary", "--exclude", ",".join(["c"] * 11), "small.csv", says="10")
    wrong_command_line("summary", "x" * 260, says="259")


def check_answers():
    code, out, err = run("--version")
    check("version", code == 0 and out.startswith("ombrivantel-batch ") and err == "")
    for arguments in (["--help"], ["fundamental", "--help"]):
        code, out, err = run(*arguments)
        check("help %s" % arguments, code == 0 and "usage" in out and "--exclude" in out and err == "")
    check("options of a kind", "--[no-]covariance" in out)


def check_assignments():
    def wrong(*arguments, says):
        wrong_command_line(*arguments, "--purpose", "Petal.Width", iris, says=says)
    for value in ("", "Sepal.Length", "=3", "Sepal.Length=", "Sepal.Length=x", "Sepal.Length=3x", "Sepal.Length=1e999",
                  "Sepal.Length=3,", "Sepal.Length=3,,Sepal.Width=1"):
        wrong("regression", "--predict", value, says="--predict takes NAME=X[,NAME=X...], not '%s'" % value)
    wrong("regression", "--predict", "Sepal=3", says="--predict: there is no variable 'Sepal'; the variables are Sepal.L")
    wrong("regression", "--predict", "Petal.Width=3", says="'Petal.Width' is the purpose variable")
    wrong("regression", "--exclude", "Sepal.Width", "--predict", "Sepal.Width=3", says="no variable 'Sepal.Width'")
    wrong("regression", "--degree", "Sepal.Width=3", says="no option '--degree'")
    wrong("fundamental", "--predict", "Sepal.Width=3", says="no option '--predict'")
    wrong("polynomial", "--degree", "Sepal=2", says="--degree: there is no variable 'Sepal'")
    wrong("regression", "--f-in", "1.5", says="f-in should be larger than f-out")
    wrong_command_line("regression", "--purpose", "Petal", iris, says="--purpose: there is no variable 'Petal'")

    report = run("regression", "--purpose", "Petal.Width", iris)[1]
    code, out, err = run("regression", "--purpose", "Petal.Width", "--predict", "#2= 3 ,#1=5,#1=6",
                         "--predict=Petal.Length=4", iris)
    check("two predictions", code == 0 and out.startswith(report) and err == "status : prediction statistics\n")
    first, second = out[len(report):].split("\nprediction statistics\n")[1:]
    check("entered values", "Sepal.Length,   6.000000\n  2,    Sepal.Width,   3.000000\n" in first)
    check("others are means", "Sepal.Length,   5.843333" in second and "Petal.Length,   4.000000" in second)
    code, out, err = run("polynomial", "--purpose=Petal.Width", "--degree", "#1=3", "--degree=Sepal.Width=0.5,#1=2", iris)
    check("degrees", "Sepal.Length,   2.000000\n  2,    Sepal.Width,   0.500000\n" in out)
    code, out, err = run("involution", "--purpose=Petal.Width", "--predict", "Petal.Length=0", iris)
    check("the code of a prediction", code == 1 and out.startswith("\n\tdetected nan") and "involution" not in out)


def check_files():
    code, out, err = run("summary", "missing.csv")
    check("missing file", (code, out, err) == (
        1, "\n\tfailed to open the file or no data.\n", "error : failed to open the file or no data.\n"))
    code, out, err = run("fundamental", "bad.csv")
    check("malformed file", (code, out, err) == (
        1, "\n\tillegal data nor data structure.\n", "error : illegal data nor data structure.\n"))

    warning = "warning : 3 cells are not numbers, the first is row 2, column d\n"
    code, out, err = run("summary", "small.csv")
    check("cells that are no numbers", code == 0 and err == warning + "status : opened data file named : 'small.csv'\n")
    check("a cell counts as what it begins with", "r4,      3.000,      3.000,      3.000" in out)
    code, out, err = run("summary", "--strict", "small.csv")
    check("strict", code == 1 and out == "\n\tillegal data nor data structure.\n" and err.startswith(warning))
    code, out, err = run("summary", "--strict", "--exclude", "d", "small.csv")
    check("strict without the column", code == 0 and "variables : a b, c, c\n" in out)
    code, out, err = run("summary", "--exclude=#4,a b,#4", "--", "small.csv")
    check("by number, by a name with a blank, twice", code == 0 and "variables : c, d\n" in out)
    code, out, err = run("fundamental", "--exclude", "#1,#2,#3,#4", "small.csv")
    check("everything excluded", (code, out, err) == (
        1, "\n\tno effective variable.\n", "error : no effective variable.\n"))
    code, out, err = run("summary", "--path", "C:\\lab\\set.csv", "--variable-width", "5", "--label-width=2", "small.csv")
    check("widths and path", "'set.csv'" in out and "\n  n,  ,  a b,    c," in out and "\n  1,r1, 1.00," in out)


def check_output():
    code, out, err = run("fundamental", "--output", "report.txt", iris)
    written = pathlib.Path("report.txt").read_text()
    check("output", code == 0 and out == "" and written == run("fundamental", iris)[1])
    code, out, err = run("fundamental", "--output", "report.txt", "bad.csv")
    check("a failed run leaves the output file", code == 1 and pathlib.Path("report.txt").read_text() == written)
    code, out, err = run("fundamental", "--output", "no/such/report.txt", iris)
    check("output that cannot be written", code == 1 and "failed to open nor create a file." in out and
          err == "error : failed to open nor create a file.\n")
    check("nothing is left behind", sorted(os.listdir(".")) == ["bad.csv", "report.txt", "small.csv"])
    with open("/dev/full", "w") as full:
        done = subprocess.run([runner, "summary", iris], stdout=full, stderr=subprocess.PIPE, text=True, timeout=60)
    check("full standard output", done.returncode == 1 and
          done.stderr == "error : failed to open nor create a file.\n")

    # Longer than the window's report can be.
    rows = "".join("row%d,%s\n" % (k, ",".join("%d" % (k * j) for j in range(20))) for k in range(6000))
    pathlib.Path("long.csv").write_text("label," + ",".join("v%d" % j for j in range(20)) + "\n" + rows)
    code, out, err = run("summary", "long.csv")
    check("a long report is whole", code == 0 and len(out) > 1048576 and out.count("\n") == 6000 + 7)


def check_pictures():
    for arguments, says in ((("summary", "--graph", "a.svg"), "no picture of 'summary'"),
                            (("cluster", "--size=300x300"), "no picture of 'cluster'"),
                            (("pca", "--numbering"), "--graph"), (("pca", "--graph="), "--graph"),
                            (("pca", "--graph", "a.svg", "--axes", "1"), "'1'"),
                            (("pca", "--graph", "a.svg", "--axes", "0,1"), "'0,1'"),
                            (("pca", "--graph", "a.svg", "--size", "199x300"), "'199x300'"),
                            (("pca", "--graph", "a.svg", "--highlight", "151"), "150")):
        wrong_command_line(*arguments, iris, says=says)
    report = run("pca", "--components", "3", iris)
    picture = run("pca", "--components", "3", "--graph", "a.svg", iris)
    check("a picture changes no report", picture == report)
    svg = "{http://www.w3.org/2000/svg}"
    words = [text.text for text in xml.etree.ElementTree.parse("a.svg").iter(svg + "text")]
    check("axes and vectors", {"factor 1", "factor 2", "Sepal.Length"} <= set(words) and "factor 3" not in words)
    run("pca", "--components", "3", "--graph", "a.svg", "--axes=3,1", "--numbering", "--highlight=42",
        "--sized-vectors", "--size", "700x600", iris)
    root = xml.etree.ElementTree.parse("a.svg").getroot()
    texts = {text.text: text for text in root.iter(svg + "text")}
    check("options of a picture", (root.get("width"), root.get("height")) == ("700", "600") and
          "factor 2" not in texts and texts["42"].get("font-style") == "italic" and "150" in texts)
    run("regression", "--graph", "a.svg", "--numbering", iris)
    check("numbers in any picture", "150" in {t.text for t in xml.etree.ElementTree.parse("a.svg").iter(svg + "text")})
    os.remove("a.svg")
    for arguments, says in ((("--components=1",), "too few vector number"), (("--components=3", "--axes=4,1"), "--axes"),
                            (("--components=2", "--graph=no/such.svg"), "no/such.svg")):
        code, out, err = run("pca", "--graph", "a.svg", *arguments, iris)
        check("no picture: %s" % err, code == 1 and "principal component" in out and says in err and
              err.count("\n") == 2 and not os.path.exists("a.svg"))


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        pathlib.Path("small.csv").write_text(
            "label,a b,c,d,c\nr1,1,2,3,4\nr2,2,1,,0\nr3,5,4,x,1\nr4,3,3,3x,9\nr5,4,5,1,2\nr6,6,7,2,3\nr7,1,1,1,1\n")
        pathlib.Path("bad.csv").write_text("label,a\nr1\n")
        check_wrong_command_lines()
        check_answers()
        check_assignments()
        check_files()
        check_pictures()
        check_output()
        os.chdir("/")
    for failure in failures:
        print("failed: " + failure)
    print("%d passed, %d failed" % (checks - len(failures), len(failures)))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
