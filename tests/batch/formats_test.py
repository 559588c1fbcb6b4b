#!/usr/bin/env python3
"""Holds every reference case in JSON, Markdown and HTML to its text: line by line and cell by cell.

usage: formats_test.py BATCH-RUNNER
"""
import html.parser
import itertools
import json
import pathlib
import re
import shlex
import subprocess
import sys

from checks import check, end

runner = str(pathlib.Path(sys.argv[1]).resolve())
reference = pathlib.Path(__file__).resolve().parent.parent / "reference"


def run(*arguments):
    done = subprocess.run([runner, *arguments], capture_output=True, timeout=300)
    return done.returncode, done.stdout.decode(), done.stderr.decode()


def is_shown(cell, value):
    """Whether a cell of the text is what it prints of a JSON value; names are cut to no fewer than 9 characters."""
    if isinstance(value, str):
        return cell == value or (len(cell) >= 9 and value.startswith(cell))
    if value is None:
        return cell in ("", "---")
    return cell == "%.*f" % (len(cell.partition(".")[2]), value)


def lines_of_json(document):
    for report in document["reports"]:
        yield from [report["title"], *report["options"]]
        for table in report["tables"]:
            yield from [table["caption"]] * (table["caption"] != "") + table["notes"]
            if table["columns"]:
                yield ["n", table["label"], *table["columns"]]
            yield from ([row["number"], row["label"], *row["values"]] for row in table["rows"])


def lines_of_markdown(document):
    plain = lambda text: re.sub(r"\\(.)", r"\1", text.strip())
    for line in filter(None, document.split("\n")):
        cells = [plain(cell) for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        if any(cells) and not re.fullmatch(r"[-:| ]+", line):
            yield cells
        elif not cells:
            yield plain(re.sub(r"^# |^\*\*|\*\*$", "", line))


class Page(html.parser.HTMLParser):
    def __init__(self, document):
        super().__init__()
        self.lines, self.open = [], []
        self.feed(document)

    def handle_starttag(self, tag, attributes):
        self.open += [tag] * (tag != "meta")
        if tag in ("h1", "p", "caption", "tr"):
            self.lines.append([] if tag == "tr" else "")
        if tag in ("td", "th"):
            self.lines[-1].append("")

    def handle_endtag(self, tag):
        assert self.open.pop() == tag

    def handle_data(self, data):
        if self.open[-1:] in (["td"], ["th"]):
            self.lines[-1][-1] += data
        elif self.open[-1:] in (["h1"], ["p"], ["caption"]):
            self.lines[-1] += data.rstrip("\n")


def differences(text, lines, same):
    for expected, line in itertools.zip_longest(filter(None, text.replace("\t", "").split("\n")), lines):
        if isinstance(line, str) or None in (line, expected):
            wrong = expected is None or line is None or expected.strip() != line
        else:
            cells = [cell.strip() for cell in expected.split(",")]
            cells += [None] * (len(line) - len(cells))
            wrong = len(cells) != len(line) or not all(map(same, cells, line))
        if wrong:
            yield "%r, not %r" % (line, expected)


def check_case(kind, options, data):
    command = [kind, *([] if options == "-" else shlex.split(options)), str(reference / "data" / data)]
    code, text, err = run(*command)
    status = err.rstrip("\n").rpartition("\n")[2]
    wrong, told = [], {}
    for name in ("json", "markdown", "html"):
        *answer, told[name], errors = run(*command, "--format", name)
        wrong += ["%s: %s" % (name, errors)] * (answer != [code] or errors != err)
    document, page = json.loads(told["json"]), Page(told["html"])
    if code != 0:
        error = "\n".join(filter(None, text.replace("\t", "").split("\n")))
        paragraphs = [error.replace("\n", " ")]
        return wrong + [d for d, is_so in ((document, document == {"status": status, "error": error}),
                        (told, page.lines == paragraphs == list(lines_of_markdown(told["markdown"])))) if not is_so]
    same = lambda cell, shown: (cell or "") == shown
    facts = [document["kind"], document["status"], document["file"]["size"], len(document["excluded"])]
    excluded = re.search(r"--exclude[ =](\S+)", options)
    if facts != [kind, status, (reference / "data" / data).stat().st_size,
                 excluded[1].count(",") + 1 if excluded else 0]:
        wrong.append(facts)
    cut = {name[:width] for name in document["variables"] for width in (11, 15)} - set(document["variables"])
    wrong += [word for line in lines_of_json(document) if isinstance(line, list) for word in cut & set(line)]
    wrong += ["json: " + line for line in differences(text, lines_of_json(document), is_shown)]
    wrong += ["markdown: " + line for line in differences(text, lines_of_markdown(told["markdown"]), same)]
    wrong += ["html: " + line for line in differences(text, page.lines, same)]
    if run(*document["arguments"])[:2] != (0, text):
        wrong.append("another report by %s" % document["arguments"])
    return wrong


def main():
    cases = [line.split("\t")[:4] for line in (reference / "cases.tsv").read_text().splitlines()]
    kinds = re.findall(r"^  ([a-z][-\w]*) ", run("--help")[1], re.MULTILINE)
    for name, *case in cases + [["case of %s" % kind, kind, "-", ""] for kind in set(kinds) - {c[1] for c in cases}]:
        wrong = check_case(*case) if case[2] else ["there is none"]
        check("%s: %s" % (name, "\n    ".join(map(str, wrong[:5]))), not wrong)
    return end()


if __name__ == "__main__":
    sys.exit(main())
