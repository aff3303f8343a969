#!/usr/bin/env python3
"""The table in docs/macros.md of the functions that the small host has beside the exports, from the rows of
host/library/*_functions_win.cpp, which `help` at the prompt prints too.

    python3 tools/document_functions.py            rewrites the page
"""
import re
import sys

from page_marks import between_marks
from service_rows import ROOT, NotUnderstood, fields, text_of, tokens

PAGE = "docs/macros.md"
SOURCES = ["host/library/host_functions_win.cpp", "host/library/draft_functions_win.cpp"]  # in the order of the list
MEMBERS = 5  # of HostFunction: the last two are form and doc
# Names of functions, calls, texts in quotes, and the address behind one.
CODE = re.compile(r'\b[A-Z]\w*[a-z_][A-Z]\w*(?:\([^()]*\))?|"[^"]*"(?: <[^>]*>)?')


def functions():
    """(form, doc) of each row."""
    found = []
    for name in SOURCES:
        words = tokens((ROOT / name).read_text(encoding="utf-8"))
        tables = [at for at, word in enumerate(words)
                  if word == "HostFunction" and words[at + 2:at + 6] == ["[", "]", "=", "{"]]
        if len(tables) != 1:
            raise NotUnderstood(f"{name} has {len(tables)} tables of functions")
        for part in fields(words, tables[0] + 5)[0]:
            row = fields(part, 0)[0] if part[0] == "{" else []
            if len(row) != MEMBERS:
                raise NotUnderstood(f"{name}: {' '.join(part)} is no row of {MEMBERS} members")
            found.append((text_of(row[3], name), text_of(row[4], name)))
    return found


def sentence(doc):
    """As a cell of the table: what macros write stands in code."""
    if "|" in doc or "\n" in doc or not doc.endswith("."):
        raise NotUnderstood(f"{doc}: a doc is one line that ends in a full stop, without |")
    return CODE.sub(lambda found: f"`{found[0]}`", doc)


def documented(page):
    rows = [f"| `{form}` | {sentence(doc)} |" for form, doc in functions()]
    return between_marks(page, "functions", "\n".join(["| function | what it does |", "|---|---|", *rows]), PAGE)


def main():
    page = (ROOT / PAGE).read_text(encoding="utf-8")
    try:
        wanted = documented(page)
    except NotUnderstood as problem:
        sys.exit(f"document_functions: {problem}")
    if wanted != page:
        (ROOT / PAGE).write_text(wanted, encoding="utf-8")


if __name__ == "__main__":
    main()
