#!/usr/bin/env python3
"""Turns the documents for users into HTML pages, with the pictures that they show.

usage: pages.py SOURCE-FOLDER TARGET-FOLDER

Every Markdown file of the source folder but those for developers becomes a page of the target
folder. Links between pages are kept, links to files that a package has not got become plain text.
Packages: cmark-gfm.
"""
import html
import pathlib
import re
import shutil
import subprocess
import sys

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>%s</title>
<style>
body { font: 16px/1.5 "Segoe UI", sans-serif; max-width: 56em; margin: 2em auto; padding: 0 1em; color: #1a1a1a; background: #fff }
pre, code { font-family: Consolas, "DejaVu Sans Mono", monospace; font-size: 14px; background: #f3f3f3 }
pre { padding: 0.7em; overflow-x: auto }
table { border-collapse: collapse }
th, td { border: 1px solid #bbb; padding: 0.2em 0.6em; text-align: left; vertical-align: top }
img { max-width: 100%% }
a { color: #0645ad }
</style>
</head>
<body>
%s</body>
</html>
"""


def anchored(body):
    """Gives each heading the name by which links on GitHub call it."""
    seen = {}

    def heading(match):
        text = html.unescape(re.sub("<.*?>", "", match[2])).strip().lower()
        name = re.sub(r"[^\w\- ]", "", text).replace(" ", "-")
        seen[name] = seen.get(name, -1) + 1
        name += "-%d" % seen[name] if seen[name] else ""
        return '<h%s id="%s">%s</h%s>' % (match[1], html.escape(name), match[2], match[1])

    return re.sub(r"<h([1-6])>(.*?)</h\1>", heading, body, flags=re.DOTALL)


def main():
    source, target = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
    documents = {path.name for path in source.glob("*.md")} - {"architecture.md", "debugging.md"}
    packaged = target.parent
    target.mkdir(parents=True)

    def link(match):
        whole, address, text = match[0], html.unescape(match[1]), match[2]
        name, mark, place = address.partition("#")
        if name in documents:
            return '<a href="%s">%s</a>' % (html.escape(name.removesuffix(".md") + ".html" + mark + place), text)
        if not name or re.match("[a-z]+:", name) or (target / name).resolve().is_relative_to(packaged) and (
                target / name).exists():
            return whole
        return text

    def picture(match):
        name = html.unescape(match[1])
        if not re.match("[a-z]+:", name):
            copy = (target / name).resolve()
            if not copy.is_relative_to(target):
                sys.exit("%s lies outside of %s" % (name, source))
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source / name, copy)
        return match[0]

    for name in sorted(documents):
        body = subprocess.run(["cmark-gfm", "-e", "table", "-e", "strikethrough", source / name], check=True,
                              capture_output=True, encoding="utf-8").stdout
        body = re.sub(r'<img src="(.*?)"', picture, anchored(body))
        body = re.sub(r'<a href="(.*?)">(.*?)</a>', link, body, flags=re.DOTALL)
        title = re.search(r"<h1.*?>(.*?)</h1>", body, re.DOTALL)
        page = PAGE % (re.sub("<.*?>", "", title[1]) if title else name, body)
        (target / name).with_suffix(".html").write_text(page, encoding="utf-8")


if __name__ == "__main__":
    main()
