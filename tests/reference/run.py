#!/usr/bin/env python3
"""Runs the batch runner on every case of cases.tsv and compares reports, status lines and exit codes with
those of an independent computation; then on every case of textbook.tsv, by textbook numerics, and compares what
is printed with the numbers of textbook.R.

usage: run.py BATCH-RUNNER [NAME-PREFIX]
"""
import functools
import itertools
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
from compare import decimals, differences, number

here = pathlib.Path(__file__).resolve().parent


def run_case(runner, name, kind, options, data, exit_code):
    """What differs, as text; empty when nothing does."""
    command = [runner, kind] + ([] if options == "-" else shlex.split(options)) + [str(here / "data" / data)]
    done = subprocess.run(command, capture_output=True, timeout=300)
    wrong = []
    if done.returncode != int(exit_code):
        wrong.append("exit status %d, not %s" % (done.returncode, exit_code))
    status = (here / "expected" / (name + ".status")).read_bytes()
    # A note on the numerics may stand in front of it.
    told = [line for line in done.stderr.splitlines() if not line.startswith(b"note : ")]
    if b"\n".join(told).strip() != status.strip():
        wrong.append("status %r, not %r" % (done.stderr, status))
    expected = (here / "expected" / (name + ".txt")).read_bytes()
    wrong += differences(expected, done.stdout)[:20]
    return "\n".join(wrong)


def row_of(report, title, label, first):
    """The cells from the first one on of the row with this label, or line #n, below the title that begins so."""
    for table in re.split(r"^\t", report, flags=re.MULTILINE)[1:]:
        for n, line in enumerate(table.split("\n") if table.startswith(title) else []):
            cells = [cell.strip() for cell in line.split(",")]
            if label == "#%d" % n or (n and ":".join(cells[1:first] + [""]).startswith(label + ":")):
                return cells[first:]
    return []


def rounds_to(value, cell):
    shown = number(cell)
    return shown is not None and abs(shown - value) <= 0.5 * 10.0 ** -decimals(cell) + 1e-9 * abs(value)


def saved_columns(runner, table):
    """The columns of a saved table by their names; the program reads it again, and has no doubts about it."""
    done = subprocess.run([runner, "summary", "--strict", table], capture_output=True, text=True, timeout=300)
    if done.returncode != 0 or done.stderr.count("\n") != 1:
        return {"": [done.stderr]}
    lines = [line.split(",") for line in pathlib.Path(table).read_text().splitlines()]
    return {column[0]: column[1:] for column in zip(*lines)}


def agrees(value, cell):
    return abs(float(cell) - value) <= 1e-7 * max(1.0, abs(value))


def run_textbook_case(runner, name, kind, options, data, rows):
    command = [runner, kind, "--numerics", "textbook"] + ([] if options == "-" else shlex.split(options))
    wrong, columns = [], {}
    with tempfile.TemporaryDirectory() as folder:
        table = str(pathlib.Path(folder, "saved.csv"))
        command += ["--save", table] if any(row[4] == "saved" for row in rows) else []
        done = subprocess.run(command + [str(here / "data" / data)], capture_output=True, text=True, timeout=300)
        saved = saved_columns(runner, table) if "--save" in command else {}
    if done.stdout.split("\n")[2:3] != ["-- textbook numerics"]:
        wrong.append("no remark below the title")
    if not done.stderr.rstrip("\n").endswith(", textbook numerics"):
        wrong.append("status %r" % done.stderr)
    for title, label, first, values, turned in (row[4:] for row in rows):
        expected = [float(value) for value in values.split("|")]
        cells = (saved.get(label, []) if title == "saved" else row_of(done.stdout, title, label, int(first)))[:len(expected)]
        if len(cells) < len(expected):
            wrong.append("%s: no such row %s" % (title, label))
        for place, pair in enumerate(zip(cells, expected)):
            # A column that may be turned has one sign in all its rows.
            column = label if title == "saved" else place
            key = (title, column) if turned == "turned" else (title, column, label, place)
            columns.setdefault(key, []).append(pair)
    for key, pairs in columns.items():
        signs = (1, -1) if len(key) == 2 else (1,)
        matches = agrees if key[0] == "saved" else rounds_to
        if not any(all(matches(sign * value, cell) for cell, value in pairs) for sign in signs):
            wrong.append("%s: %s" % (key, " ".join("%s not %.15g" % pair for pair in pairs)))
    return "\n".join(wrong[:20])


def main():
    runner = str(pathlib.Path(sys.argv[1]).resolve())
    prefix = sys.argv[2] if len(sys.argv) > 2 else ""
    passed = failed = 0
    cases = [(run_case, line.split("\t")) for line in (here / "cases.tsv").read_text().splitlines()]
    lines = [line.split("\t") for line in (here / "textbook.tsv").read_text().splitlines()]
    for case, rows in itertools.groupby(lines, lambda line: line[:4]):
        cases.append((functools.partial(run_textbook_case, rows=list(rows)), case))
    for run, case in cases:
        name = case[0]
        if not name.startswith(prefix):
            continue
        wrong = run(runner, *case)
        if wrong:
            print("%s: %s" % (name, wrong))
            failed += 1
        else:
            passed += 1
    print("%d passed, %d failed" % (passed, failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
