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
from catalogue_rows import calls_of  # noqa: E402
from page_marks import between_marks  # noqa: E402
from service_rows import NotUnderstood, text_of  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[1]
WITH_RESULT = ("THIN", "HAND")  # the name stands behind the result
PAGES_HEAD = "| families | page |\n|---|---|\n"


def first_sentence(doc):
    """Without its full stop. What does not begin like a sentence behind a stop belongs to the one before."""
    return re.split(r"(?<=[.)])\s+(?=[A-Z0-9\"(-])", doc, 1)[0].rstrip(".")


def exports_of(family):
    """[(name, first sentence)] of the rows of catalogue/FAMILY.def."""
    found = []
    for macro, parts in calls_of((ROOT / f"catalogue/{family}.def").read_text(encoding="utf-8"), family):
        name = "".join(parts[1 if macro.startswith(WITH_RESULT) else 0])
        found.append((name, first_sentence(text_of(parts[-1], f"{family}: {name}"))))
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
            page = between_marks(page, f"exports of {family}", table_of(family), name)
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
