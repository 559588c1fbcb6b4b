#!/usr/bin/env python3
"""Runs the batch runner on every case of cases.tsv and compares reports, status lines and exit codes with
those of an independent computation.

usage: run.py BATCH-RUNNER [NAME-PREFIX]
"""
import pathlib
import shlex
import subprocess
import sys

sys.dont_write_bytecode = True
from compare import differences

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


def main():
    runner = str(pathlib.Path(sys.argv[1]).resolve())
    prefix = sys.argv[2] if len(sys.argv) > 2 else ""
    passed = failed = 0
    for line in (here / "cases.tsv").read_text().splitlines():
        name, kind, options, data, exit_code = line.split("\t")
        if not name.startswith(prefix):
            continue
        wrong = run_case(runner, name, kind, options, data, exit_code)
        if wrong:
            print("%s: %s" % (name, wrong))
            failed += 1
        else:
            passed += 1
    print("%d passed, %d failed" % (passed, failed))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
