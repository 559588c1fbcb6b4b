#!/usr/bin/env python3
"""The command line as a user has it: what goes to which stream, and the exit status.

usage: batch_test.py BATCH-RUNNER
"""
import os
import pathlib
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import xml.etree.ElementTree

from checks import check, end

runner = str(pathlib.Path(sys.argv[1]).resolve())
tests = pathlib.Path(__file__).resolve().parent.parent
iris = str(tests / "reference" / "data" / "iris.csv")
small, bad = "small.csv", "bad.csv"


def run(*arguments, **options):
    done = subprocess.run([runner, *arguments], capture_output=True, text=True, timeout=60, **options)
    return done.returncode, done.stdout, done.stderr


def check_wrong_command_lines():
    for line in (tests / "batch" / "wrong_command_lines.tsv").read_text().splitlines()[1:]:
        says, arguments = line.split("\t")
        code, out, err = run(*[iris if word == "iris.csv" else word for word in shlex.split(arguments)])
        first = err.partition("\n")[0]
        check("%s: %r" % (arguments, (code, out, err)), code == 2 and out == "" and
              first.startswith("ombrivantel-batch: ") and says in first and "--help" in err)


def check_answers():
    code, out, err = run("--version")
    check("version", code == 0 and out.startswith("ombrivantel-batch ") and err == "")
    for arguments in (["--help"], ["fundamental", "--help"]):
        code, out, err = run(*arguments)
        check("help %s" % arguments, code == 0 and "usage" in out and "--exclude" in out and err == "")
    check("options of a kind", "--[no-]covariance" in out)


def check_manners():
    check("short forms", run("-V") == run("--version") and run("-h") == run("help") == run("--help"))
    check("help of a word", run("help", "pca") == run("pca", "-h") and run("help", "import") == run("import", "-h"))
    kinds = re.findall(r"^  ([a-z][\w-]*)  ", run("--help")[1], re.MULTILINE)
    check("many kinds", len(kinds) > 20)
    for kind in kinds[1:]:
        example = re.search(r"^  ombrivantel-batch (.*)", run("help", kind)[1], re.MULTILINE)[1]
        code, out, err = run(*shlex.split(example), cwd=tests.parent / "samples")
        check("the example of %s: %s" % (kind, err), code == 0 and example.startswith(kind + " "))
    with open(iris, "rb") as file:
        whole = run("fundamental", iris)
        check("standard input, standard output", run("fundamental", "--output=-", "-", stdin=file) == whole)
        check("nothing is left in it", run("fundamental", "-", stdin=file)[0] == 1)
    os.mkfifo("pipe")
    writer = subprocess.Popen(["cp", iris, "pipe"])
    check("a pipe is read", run("fundamental", "pipe") == whole and writer.wait(timeout=60) == 0)
    os.remove("pipe")


def check_run_file():
    os.mkdir("a b")
    os.rename("small.csv", "a b/my data.csv")
    lines = ["\ufeff# two files", "summary 'my data.csv'  # as it is", "", "C:\\x\\ombrivantel-batch.exe summary ../bad.csv", "summry",
             r'summary --path "c:\d\\" --exclude "#1" --output a.txt "my data.csv"']
    path = pathlib.Path("a b/all.txt")
    path.write_text("\r\n".join(lines), encoding="utf-8")
    first, bad = run("summary", "my data.csv", cwd="a b"), run("summary", "bad.csv")
    ended = "ombrivantel-batch: line %d of 'a b/all.txt' ended with status %d\n"
    check("the first failure ends a run", run("run", str(path)) == (1, first[1] + bad[1], first[2] + bad[2] + ended % (4, 1)))
    code, out, err = run("run", "--keep-going", str(path))
    check("kept going", (code, out) == (1, first[1] + bad[1]) and ended % (5, 2) in err)
    check("the last line, quotes and backslashes", pathlib.Path("a b/a.txt").read_text() ==
          run("summary", "--path", "c:\\d\\", "--exclude", "#1", "my data.csv", cwd="a b")[1])
    for fault, text in (("line 2 of '-': run", "summary bad.csv\nrun x"), ("line 1 of '-': its quotes", "summary 'bad.csv\n"),
                        ("line 2 of '-': there is a NUL", "summary bad.csv\nsummary bad.csv # \0")):
        code, out, err = run("run", "-", input=text)
        check("%s: %s" % (fault, err), code == 2 and out == "" and fault in err)
    check("no commands", run("run", "-", input="# nothing\n\n") == (0, "", "") and run("run", "no.txt")[::2] == (
        1, "error : cannot read 'no.txt'\n"))
    os.rename("a b/my data.csv", "small.csv")
    shutil.rmtree("a b")


def check_predictions():
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
    importing = "use ombrivantel-batch import FILE\n"
    for note, text, *arguments in [
            ("there is no such file\n", "failed to open the file or no data.", "summary", "missing.csv"),
            ("this is a folder\n", "failed to open the file or no data.", "summary", "."),
            ("line 2: it has 1 of 2 cells; " + importing, "illegal data nor data structure.", "fundamental", bad),
            *(("", "no effective variable.", kind, "--exclude", "#1,#2,#3,#4", small)
              for kind in ("fundamental", "regression", "discriminant", "quant2", "hazard"))]:
        check("%s: %s" % (arguments[0], text), run(*arguments) == (
            1, "\n\t%s\n" % text, ("note : " + note if note else "") + "error : %s\n" % text))

    warning = "warning : 3 cells are not numbers, the first is row 2, column d, line 3; they count as the number they " \
        "begin with, or 0; leave such samples out with --missing omit, or " + importing
    code, out, err = run("summary", small)
    check("cells that are no numbers", code == 0 and err == warning + "status : opened data file named : 'small.csv'\n")
    check("a cell counts as what it begins with", "r4,      3.000,      3.000,      3.000" in out)
    code, out, err = run("summary", "--strict", small)
    check("strict", code == 1 and out == "\n\tillegal data nor data structure.\n" and err.startswith(warning))
    check("missing cells fail", run("summary", "--missing=fail", small) == (code, out, err))
    code, out, err = run("summary", "--strict", "--missing", "omit", small)
    check("samples left out", code == 0 and "-- 4 samples" in out and "  2,             r5," in out and
          err.startswith("note : 3 of 7 samples left out; missing cells: d 3\nstatus"))
    lost = "warning : line 3: the last line does not end in a newline, so it is not read; end it, or " + importing
    for options, error in (["--missing=omit"], "too few samples or too much variables."), (
            ["--missing=omit", "--strict"], "illegal data nor data structure."):
        code, out, err = run("fundamental", *options, "words.csv")
        check("all samples left out", code == 1 and err == (
            "note : 1 of 1 samples left out; missing cells: a 1, b 1\n" + lost + "error : " + error + "\n"))
    code, out, err = run("summary", "--strict", "--exclude", "d", small)
    check("strict without the column", code == 0 and "variables : a b, c, f\n" in out)
    code, out, err = run("summary", "--exclude=#4,a b,#4", "--", small)
    check("by number, by a name with a blank, twice", code == 0 and "variables : c, d\n" in out)
    check("repeated --exclude", run("summary", "--exclude=#4", "--exclude", "a b", "--exclude=#4", small)[1] ==
          run("summary", "--exclude=#4,a b", small)[1])
    code, out, err = run("summary", "--path", "C:\\lab\\set.csv", "--variable-width", "5", "--label-width=2", small)
    check("widths and path", "'set.csv'" in out and "\n  n,  ,  a b,    c," in out and "\n  1,r1, 1.00," in out)


def check_output():
    code, out, err = run("fundamental", "--output", "report.txt", iris)
    report = pathlib.Path("report.txt")
    written = report.read_text()
    check("output", code == 0 and out == "" and written == run("fundamental", iris)[1])
    report.chmod(0o600)
    os.symlink("report.txt", "link.txt")
    os.symlink("made.txt", "dangling.txt")
    code, out, err = run("fundamental", "--output", "link.txt", "bad.csv")
    check("a failed run leaves the output file", code == 1 and report.read_text() == written)
    inode = report.stat().st_ino
    code, out, err = run("summary", "--output", "link.txt", iris)
    check("through a link, whole and with its mode", code == 0 and os.readlink("link.txt") == "report.txt" and
          report.stat().st_mode & 0o777 == 0o600 and report.stat().st_ino != inode and "iris.csv" in report.read_text())
    check("a link to no file", run("summary", "--output", "dangling.txt", iris)[0] == 0 and os.path.isfile("made.txt") and
          os.path.islink("dangling.txt"))
    report.chmod(0o444)
    full = "error : failed to open nor create a file.\n"
    # Before the data are read: they are missing, too.
    for path in ("report.txt", "no/such/report.txt", "."):
        code, out, err = run("fundamental", "--output", path, "missing.csv")
        check("output that cannot be written: %s" % path, code == 1 and "failed to open nor create a file." in out and
              err == full)
    check("a short report on a full device", run("summary", "--output", "/dev/full", iris)[::2] == (1, full))
    os.mkfifo("pipe")
    reader = subprocess.Popen(["cat", "pipe"], stdout=subprocess.PIPE, text=True)
    check("a pipe is written in place", run("fundamental", "--output", "pipe", iris)[0] == 0 and
          reader.communicate(timeout=60)[0] == written)
    with open("/dev/full", "w") as device:
        done = subprocess.run([runner, "summary", iris], stdout=device, stderr=subprocess.PIPE, text=True, timeout=60)
    check("full standard output", done.returncode == 1 and done.stderr == full)
    for name in ("report.txt", "link.txt", "dangling.txt", "made.txt", "pipe"):
        os.remove(name)
    check("nothing is left behind", sorted(os.listdir(".")) == ["bad.csv", "small.csv", "words.csv"])


def stopped_run(*arguments):
    """A run that is stopped once it has its neighbour of o.txt: before it has read its data."""
    process = subprocess.Popen([runner, *arguments], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    for _ in range(6000):
        if any(name.startswith("o.txt.") for name in os.listdir(".")):
            break
        time.sleep(0.005)
    process.send_signal(signal.SIGSTOP)
    return process


def check_interrupted_output():
    for number in (signal.SIGINT, signal.SIGTERM):
        os.mkfifo("data")  # that nobody writes
        process = stopped_run("summary", "--output", "o.txt", "data")
        check("a neighbour while the run lasts", len(os.listdir(".")) == 5)
        process.send_signal(number)
        process.send_signal(signal.SIGCONT)
        check("%s ends the run and leaves nothing" % number.name, process.wait(timeout=60) == -number and
              sorted(os.listdir(".")) == ["bad.csv", "data", "small.csv", "words.csv"])
        os.remove("data")
    os.mkfifo("data")
    first = stopped_run("summary", "--output", "o.txt", "data")
    check("two runs at once", run("summary", "--output", "o.txt", iris)[0] == 0 and "iris" in open("o.txt").read())
    os.remove("o.txt")
    os.mkdir("o.txt")
    first.send_signal(signal.SIGCONT)
    with open("data", "w") as data:
        data.write("label,a\n")  # a pipe cannot be read twice: the run fails
    check("a failed run removes its neighbour", first.wait(timeout=60) == 1 and os.listdir("o.txt") == [])
    os.rmdir("o.txt")
    os.remove("data")
    pathlib.Path("wide.csv").write_text("label" + ",v" * 400 + "\n" + ("r" + ",1" * 400 + "\n") * 4000)
    process = stopped_run("summary", "--output", "o.txt", "wide.csv")
    os.mkdir("o.txt")
    process.send_signal(signal.SIGCONT)
    check("a move that fails removes the neighbour", process.wait(timeout=60) == 1)
    os.rmdir("o.txt")
    os.remove("wide.csv")
    check("nothing is left behind by interrupted runs", sorted(os.listdir(".")) == ["bad.csv", "small.csv", "words.csv"])


def check_killed_writers():
    """Ended at a byte of a file or at a moment, a run leaves what was there or all of what is new, and beside it at most the
    one neighbour that it was writing; where only its writing is ended there, not even that."""
    pathlib.Path("t.tsv").write_text("x\tkind\n" + "".join("%d\t%s\n" % (i, "pqr"[i % 3]) for i in range(9000)))
    before = sorted(os.listdir("."))
    for arguments, names in [
            (["pca", "--components=2", "--output", "r.txt", "--save", "s.csv", "--graph", "g.svg", iris], ["r.txt", "s.csv", "g.svg"]),
            (["import", "t.tsv", "--output", "o.csv", "--codebook", "c.csv"], ["o.csv", "c.csv"]),
            (["sql", "regression", "--columns", "a,b,y", "--purpose", "y", "--table", "t", "--output", "q.sql"], ["q.sql"])]:
        begin = time.monotonic()
        check("a run that is not killed: %s" % arguments[0], run(*arguments)[0] == 0)
        lasts = time.monotonic() - begin
        whole = {name: pathlib.Path(name).read_bytes() for name in names}
        most = max(map(len, whole.values()))
        held, ended, killed = True, set(), 0
        for number, point in [(signal.SIGXFSZ, most * k // 6) for k in range(6)] + [(0, most // 2), (0, most - 1)] + [
                (signal.SIGKILL, lasts * k / 12) for k in range(14)]:
            for name in names:
                pathlib.Path(name).write_bytes(b"old")

            def limit():
                if number == signal.SIGKILL:
                    return
                if number == 0:
                    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (point, -1))

            process = subprocess.Popen([runner, *arguments], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=limit)
            if number == signal.SIGKILL:
                time.sleep(point)
                process.kill()
            status = process.wait(timeout=60)
            ended.add(status)
            killed += status < 0
            left = [name for name in os.listdir(".") if name.endswith(".new")]
            held = held and status in ([1] if number == 0 else [-number, 0] if number == signal.SIGKILL else [-number]) and all(
                pathlib.Path(name).read_bytes() in ([b"old", whole[name]] if status else [whole[name]]) and
                sum(each.startswith(name + ".") for each in left) <= (status < 0) for name in names)
            for name in left:
                os.remove(name)
        check("old or new: %s" % arguments[0], held and ended >= {-signal.SIGXFSZ, -signal.SIGKILL} and
              sorted(os.listdir(".")) == sorted(before + names))
        for name in names:
            os.remove(name)
        print("figure: writers killed %d" % killed)
    os.remove("t.tsv")


def check_one_file_twice():
    text = pathlib.Path(small).read_text()
    os.symlink(small, "soft.csv")
    os.link(small, "hard.csv")
    here = os.path.basename(os.getcwd())
    for output in (small, "soft.csv", "hard.csv", "../%s/small.csv" % here):
        code, out, err = run("summary", "--output", output, small)
        check("the data file as output: %s" % err, code == 2 and out == "" and "one file" in err)
    code, out, err = run("pca", "--components=2", "--output", "x", "--graph", "../%s/x" % here, iris)
    check("report and picture in one file", code == 2 and "one file" in err and not os.path.exists("x"))
    code, out, err = run("pca", "--components=2", "--output", "/dev/null", "--graph", "/dev/null", iris)
    check("devices can be named twice", code == 0)
    check("the data file is as it was", pathlib.Path(small).read_text() == text)
    for name in ("soft.csv", "hard.csv"):
        os.remove(name)


def check_long_report():
    # Longer than the window's report can be.
    rows = "".join("row%d%s\n" % (k, ",%d" % k * 20) for k in range(6000))
    pathlib.Path("long.csv").write_text("label" + ",v" * 20 + "\n" + rows)
    code, out, err = run("summary", "long.csv")
    check("a long report is whole", code == 0 and len(out) > 1048576 and out.count("\n") == 6000 + 7)


def check_pictures():
    report = run("pca", "--components", "3", iris)
    picture = run("pca", "--components", "3", "--graph", "a.svg", iris)
    check("a picture changes no report", picture == report)

    def texts():
        return {text.text: text for text in xml.etree.ElementTree.parse("a.svg").iter(svg + "text")}
    svg = "{http://www.w3.org/2000/svg}"
    check("axes and vectors", {"factor 1", "factor 2", "Sepal.Length"} <= set(texts()) and "factor 3" not in texts())
    run("pca", "--components", "3", "--graph", "a.svg", "--axes=3,1", "--numbering", "--highlight=42",
        "--sized-vectors", "--size", "700x600", iris)
    check("options of a picture", 'width="700" height="600"' in pathlib.Path("a.svg").read_text() and
          "factor 2" not in texts() and texts()["42"].get("font-style") == "italic" and "150" in texts())
    run("regression", "--graph", "a.svg", "--numbering", iris)
    check("numbers in any picture", "150" in texts())
    iris5 = pathlib.Path(iris).read_text().splitlines()
    pathlib.Path("groups.csv").write_text("".join(line.replace(",", ",%s," % (("b", "", "a")[i % 3] if i else "g"), 1) +
                                                  "\n" for i, line in enumerate(iris5)))
    report = run("pca", "--components", "2", "--exclude", "g", "groups.csv")
    picture = run("pca", "--components", "2", "--exclude", "g", "--graph", "a.svg", "--colour-by", "g", "--ellipses",
                  "groups.csv")
    circles = list(xml.etree.ElementTree.parse("a.svg").iter(svg + "circle"))
    # Of three kinds of samples one has no group; the circles are those of "a", the first, and its key.
    check("a chart changes no report and has its groups", picture == report and {"g", "a", "b"} <= set(texts()) and
          len(circles) == 51 and 'width="800" height="600"' in pathlib.Path("a.svg").read_text())
    os.remove("a.svg")
    os.remove("groups.csv")
    check("a picture that cannot be written", run("pca", "--graph=no/such.svg", "missing.csv")[2] ==
          "error : failed to open nor create a file.\n")
    for arguments, says in ((("--components=1",), "too few vector number"), (("--components=3", "--axes=4,1"), "--axes")):
        code, out, err = run("pca", "--numerics=classic", "--graph", "a.svg", *arguments, iris)
        check("no picture: %s" % err, code == 1 and "principal component" in out and says in err and
              err.count("\n") == 2 and not os.path.exists("a.svg"))


def check_import():
    plain = "label,x,kind\nA,1.5,2\nB,2.25,1\nC,NA,2\n"
    others = {"a": '"","x","kind"\n"A",1.5,2\n"B",2.25,1\n"C",NA,2\n', "b": '"";"x";"kind"\n"A";1,5;2\n"B";2,25;1\n"C";NA;2\n',
              "c": '"x"\t"kind"\n"A"\t1.5\t2\n"B"\t2.25\t1\n"C"\tNA\t2\n', "d": "label,x,kind\r\nA,1.5,q\r\nB,2.25,p\r\nC,,q\r\n"}
    for name, text in others.items():
        pathlib.Path("other.csv").write_text(text)
        code, out, err = run("import", "other.csv")
        check("import %s: %s" % (name, err), code == 0 and out == (plain if name != "d" else plain.replace("2\n", "0\n")
              .replace("1\n", "2\n").replace("0\n", "1\n")) and "samples: 3" in err)
    check("import from a pipe", run("import", "-", input=text)[1] == out)
    code, out, err = run("import", "other.csv", "--output", "made.csv", "--codebook=codes.csv")
    check("codebook", code == 0 and out == "" and pathlib.Path("codes.csv").read_text() ==
          'variable,category,text\nkind,1,"q"\nkind,2,"p"\n')
    check("an imported table is read", run("summary", "--exclude=x", "--strict", "made.csv")[0] == 0)
    made = pathlib.Path("made.csv").read_text()
    code, out, err = run("import", "other.csv", "--output", "other.csv")
    check("the table that is imported as output", code == 2 and "one file" in err)
    pathlib.Path("other.csv").write_text("label;x\nA;1\nsum\n")
    code, out, err = run("import", "other.csv", "--output", "made.csv")
    check("a refused import leaves the output: %s" % err, code == 1 and "line 3 has 1 cells" in err and
          pathlib.Path("made.csv").read_text() == made)
    check("no such file", run("import", "missing.csv")[::2] == (1, "error : cannot read 'missing.csv'\n"))
    for name in ("other.csv", "made.csv", "codes.csv"):
        os.remove(name)
    check("an import leaves nothing behind", sorted(os.listdir(".")) == ["bad.csv", "small.csv", "words.csv"])


def check_threads():
    rows = "".join("r%d,%s\n" % (i, ",".join(str(pow(i + 2, j + 3, 9973) % (7 ** j + 1)) for j in range(9))) for i in range(9000))
    pathlib.Path("long.csv").write_text("label,%s\n%s" % (",".join("abcdefghi"), rows))
    alone, *others = [run("fundamental", "--format=json", "--threads=%d" % count, "long.csv") for count in (1, 2, 7)]
    check("any number of threads prints the same", alone[0] == 0 and others == [alone, alone])
    os.remove("long.csv")


def check_saved():
    numbers = "".join("r%d%s\n" % (i, "".join(",0.%018d" % (pow(i + 2, j, 997) * 10 ** 15 + j) for j in range(3, 193))) for i in range(199))
    pathlib.Path("wide.csv").write_text("label%s\n" % "".join(",v %d" % j for j in range(190)) + numbers)
    wide = ["regression", "--method=all", "--purpose=#1", "--predict=v 1=2", "--save=a.csv", "wide.csv"]
    code, out, err = run(*wide)
    remedy = err.partition("would do: ")[2].partition("\n")[0]
    check("a line that would be too long", code == 2 and out == "" and not os.path.exists("a.csv") and remedy == "--exclude=#3,#4")
    code, out, err = run(*wide, remedy)
    lines = pathlib.Path("a.csv").read_text().splitlines() if code == 0 else [""]
    check("the remedy does", code == 0 and max(map(len, lines)) <= 4094 and lines[0].startswith("label,v 0,v 1,v 4,v 5,"))
    check("it is read again", run("summary", "--strict", "a.csv")[0] == 0)
    code, out, err = run("pca", "--min-eigenvalue=99", "--save=b.csv", iris)
    check("nothing to save", code == 1 and "principal" in out and "no columns" in err and not os.path.exists("b.csv"))
    check("nothing is saved on a full device", run("pca", "--save=/dev/full", iris)[0] == 1)
    check("a report stays as it is", run("pca", "--save=a.csv", iris) == run("pca", iris))
    code, out, err = run("pca", "--save=a.csv", "a.csv")
    check("the data file to save to", code == 2 and "--save and the data file are one file" in err)
    for name in ("wide.csv", "a.csv"):
        os.remove(name)


def main():
    with tempfile.TemporaryDirectory() as folder:
        os.chdir(folder)
        pathlib.Path("small.csv").write_text(
            "label,a b,c,d,f\nr1,1,2,3,4\nr2,2,1,,0\nr3,5,4,x,1\nr4,3,3,3x,9\nr5,4,5,1,2\nr6,6,7,2,3\nr7,1,1,1,1\n")
        pathlib.Path("bad.csv").write_text("label,a\nr1\n")
        pathlib.Path("words.csv").write_text("label,a,b\nr1,x,1e999\nr2,1,1")
        check_wrong_command_lines()
        check_answers()
        check_manners()
        check_run_file()
        check_predictions()
        check_threads()
        check_files()
        check_pictures()
        check_saved()
        check_output()
        check_interrupted_output()
        check_killed_writers()
        check_one_file_twice()
        check_import()
        check_long_report()
        os.chdir("/")
    return end()


if __name__ == "__main__":
    sys.exit(main())
