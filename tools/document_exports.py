#!/usr/bin/env python3
"""The tables of exports in the pages by subject, from the rows of the catalogue.

    python3 tools/document_exports.py             rewrites the pages

Which page a family has stands in docs/architecture.md; where two are named, the first one has the table. It stands at
the end of the page and shows the first sentence of each row; out/reference.md has the rest.
"""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
from document_services import NotUnderstood, between_marks, fields, text_of, tokens  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[1]
ROW = re.compile(r"(?:THIN|HAND|COMMAND|START|MENU)(?:_[A-Z]+)?")
WITH_RESULT = ("THIN", "HAND")  # the name stands behind the result
PAGES_HEAD = "| families | page |\n|---|---|\n"


def first_sentence(doc):
    """Without its full stop. What does not begin like a sentence behind a stop belongs to the one before."""
    return re.split(r"(?<=[.)])\s+(?=[A-Z0-9\"(-])", doc, 1)[0].rstrip(".")


def exports_of(family):
    """[(name, first sentence)] of the rows of catalogue/FAMILY.def."""
    words = tokens((ROOT / f"catalogue/{family}.def").read_text(encoding="utf-8"))
    found, at = [], 0
    while at < len(words):
        if not ROW.fullmatch(words[at]):
            at += 1
            continue
        row, end = fields(words, at + 1)
        name = row[1 if words[at].startswith(WITH_RESULT) else 0]
        if len(name) != 1:
            raise NotUnderstood(f"catalogue/{family}.def: {' '.join(name)} is no name")
        found.append((name[0], first_sentence(text_of(row[-1], f"{family}: {name[0]}"))))
        at = end
    return found


def pages():
    """{family: its page}, in the order of the table."""
    table = (ROOT / "docs/architecture.md").read_text(encoding="utf-8").split(PAGES_HEAD)[1].split("\n\n")[0]
    found = {}
    for line in table.splitlines():
        families, links = line.strip("| ").split(" | ")
        found.update({family: "docs/" + re.search(r"\((\S+\.md)\)", links)[1] for family in families.split(", ")})
    return found


def table_of(family):
    rows = [f"| `{name}` | {doc.replace('|', chr(92) + '|')} |" for name, doc in exports_of(family)]
    return "\n".join([f"| {family} | what it does |", "|---|---|", *rows])


def documented(name):
    """The text of a page with its tables as they should be."""
    page = (ROOT / name).read_text(encoding="utf-8")
    for family, own_page in pages().items():
        if own_page == name:
            page = between_marks(page, f"exports of {family}", table_of(family))
    return page


def main():
    try:
        wanted = {name: documented(name) for name in pages().values()}
    except NotUnderstood as problem:
        sys.exit(f"document_exports: {problem}")
    for name, text in wanted.items():
        (ROOT / name).write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
