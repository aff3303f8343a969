"""The table of docs/reliability.md that ./dev mutants --write makes: a row for each file, and which were not run.

mutants_page.py    takes out the rows of files that changed since; ./dev docs does so"""
import collections
import hashlib
import os
import pathlib
import re

ROOT = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[1]))
PAGE = ROOT / "docs/reliability.md"

FIRST, LAST = "<!-- mutants: written by ./dev mutants --write -->", "<!-- end of mutants -->"
STATES = ("killed", "survived", "explained", "same", "refused")
HEAD = ("| file | text | mutants | killed | survived | explained | same code | not compiled | score |\n"
        "|---|---|---|---|---|---|---|---|---|")
ROW = re.compile(r"^\| (src/\S+) \| ([0-9a-f]+) \| (?:\d+ of )?(\d+) \| " + r" \| ".join([r"(\d+)"] * len(STATES)) + r" \|", re.M)
SHOWN = 8  # digits of a text's hash, as sha1sum prints it

Row = collections.namedtuple("Row", "text count of")


def texts():
    """{file: hash of its text} of all files whose mutants are run."""
    names = [path.relative_to(ROOT).as_posix() for path in sorted((ROOT / "src").rglob("*"))
             if re.search(r"(?<!_win)(?<!_export)\.cpp$|_kernel\.h$", path.name)]
    return {name: hashlib.sha1((ROOT / name).read_bytes()).hexdigest() for name in names
            if name != "src/base/out_of_range.cpp"}  # of the DLL alone


def placed(text, number, line):
    """The line as mutants_explained.tsv names it: "2 of 3: at = 0;" when the file has more of them."""
    equal = [n for n, other in enumerate(text.split("\n"), 1) if other.strip() == line]
    return line if len(equal) == 1 else f"{equal.index(number) + 1} of {len(equal)}: {line}"


def score(count):
    seen = count["killed"] + count["survived"]
    return 100 * count["killed"] / seen if seen else 100.0


def line(name, text, count, of):
    seen = sum(count.values())
    numbers = " | ".join(str(count[state]) for state in STATES)
    return f"| {name} | {text} | {seen if seen == of else f'{seen} of {of}'} | {numbers} | {score(count):.1f} % |"


def rows_of(table):
    """{file: Row} of those that stand in the table."""
    return {found[1]: Row(found[2], collections.Counter(dict(zip(STATES, map(int, found.groups()[3:])))), int(found[3]))
            for found in ROW.finditer(table)}


def written(page, results, texts):
    """The page with the results of this build folder: {file: {"text": hash, "count": {state: number}, "of": number}}.

    `texts` has the hash of each file that there is. A row or result of another text than the file's is none. The row of a
    file of which the folder has no result stays as it is: another folder had it.
    """
    before, rest = page.split(FIRST)
    table, behind = rest.split(LAST)
    rows = {name: row for name, row in rows_of(table).items() if texts.get(name, "").startswith(row.text)}
    rows |= {name: Row(row["text"][:SHOWN], collections.Counter(row["count"]), row["of"]) for name, row in results.items()
             if row["text"] == texts.get(name)}
    lines = [HEAD] + [line(name, *rows[name]) for name in sorted(rows)]
    lines.append(line("all of these", "", sum((row.count for row in rows.values()), collections.Counter()),
                      sum(row.of for row in rows.values())).replace("  ", " "))
    left = [name for name in sorted(texts) if name not in rows]
    if left:
        lines.append("\nNot run: " + ", ".join(left) + ".")
    return f"{before}{FIRST}\n\n" + "\n".join(lines) + f"\n\n{LAST}{behind}"


if __name__ == "__main__":
    PAGE.write_text(written(PAGE.read_text(encoding="utf-8"), {}, texts()), encoding="utf-8")
