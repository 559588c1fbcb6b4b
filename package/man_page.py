#!/usr/bin/env python3
"""Prints the manual page of the batch runner, made from what its --help says.

usage: man_page.py BATCH-RUNNER
"""
import re
import subprocess
import sys

NAME = "ombrivantel-batch"


def output(*arguments):
    return subprocess.run([sys.argv[1], *arguments], check=True, capture_output=True, text=True).stdout


def plain(text):
    """A text of which groff prints every character as it is."""
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def options(help_text):
    for name, value, meaning in re.findall(r"^  ((?:-\w, )?--\S+)(?: (\S+(?: \(\d[^)]*\))?))?\s+(.*(?:\n {28}.*)*)", help_text, re.MULTILINE):
        print(".TP\n\\fB%s\\fR%s\n%s" % (plain(name), value and " " + plain(value), plain(" ".join(meaning.split()))))


def main():
    general = output("--help")
    kinds = re.findall(r"^  ([a-z][\w-]*) {2,}(.*)", general.split("kinds:")[1], re.MULTILINE)
    what = plain(" ".join(general.split("\n\n")[1].split()))
    print('.TH %s 1 "" "%s" "Ombrivantel"' % (NAME.upper(), output("--version").strip()))
    print(".SH NAME\n%s \\- multivariate statistics of a table of numbers" % plain(NAME))
    print(".SH SYNOPSIS\n.B %s\nKIND [options] FILE.csv\n.br\n.B %s\nimport [options] FILE\n.br\n.B %s\nsql KIND \\-\\-columns NAMES \\-\\-table TABLE [options]\n.br\n.B %s\nrun [\\-\\-keep\\-going] COMMANDS.txt"
          % ((plain(NAME),) * 4))
    print(".SH DESCRIPTION\n%s\n.PP\nThe kinds of analysis:" % what)
    for kind, meaning in kinds:
        print(".TP\n.B %s\n%s" % (plain(kind), plain(" ".join(meaning.split()))))
    print(".SH OPTIONS\nThese every kind takes.")
    options(general.split("options:")[1])
    pictures = ""
    for kind, _ in kinds:
        own, _, of_picture = output(kind, "--help").split("options of every analysis:")[0].partition(
            "options of its picture:")
        pictures = pictures or of_picture
        if "of this analysis:" in own and "  --" in own:
            print(".SS Options of %s" % plain(kind))
            options(own)
    print(".SS Options of the analyses that have a picture")
    options(pictures)
    print(".SS Options of run")
    options(output("run", "--help").split("options of this command:")[1])
    print(".SS Options of import")
    options(output("import", "--help").split("options of this command:")[1])
    print(".SS Options of sql")
    options(output("sql", "--help").split("options of this command:")[1])
    print(".SH EXIT STATUS\n.TP\n0\nsuccess\n.TP\n1\nthe file or the analysis failed; the report says why")
    print(".TP\n2\nwrong command line")
    print(".SH EXAMPLES\n.nf\nombrivantel\\-batch fundamental %s\nombrivantel\\-batch pca \\-\\-components 2 \\-\\-graph pca.svg %s\n.fi"
          % (("/usr/share/doc/%s/samples/iris.csv" % NAME,) * 2))
    print(".SH SEE ALSO\n/usr/share/doc/%s/docs" % NAME)


if __name__ == "__main__":
    main()
