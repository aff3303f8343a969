"""The table of docs/reliability.md that ./dev mutants --write makes: a row for each file, and which were not run."""
import collections
import re

FIRST, LAST = "<!-- mutants: written by ./dev mutants --write -->", "<!-- end of mutants -->"
STATES = ("killed", "survived", "explained", "same", "refused")
HEAD = "| file | mutants | killed | survived | explained | same code | not compiled | score |\n|---|---|---|---|---|---|---|---|"
ROW = re.compile(r"^\| (src/\S+) \| (?:\d+ of )?(\d+) \| " + r" \| ".join([r"(\d+)"] * len(STATES)) + r" \|", re.M)


def score(count):
    seen = count["killed"] + count["survived"]
    return 100 * count["killed"] / seen if seen else 100.0


def line(name, count, of):
    seen = sum(count.values())
    numbers = " | ".join(str(count[state]) for state in STATES)
    return f"| {name} | {seen if seen == of else f'{seen} of {of}'} | {numbers} | {score(count):.1f} % |"


def rows_of(table):
    """{file: (count, number of its mutants)} of the rows that stand in the table."""
    return {found[1]: (collections.Counter(dict(zip(STATES, map(int, found.groups()[2:])))), int(found[2]))
            for found in ROW.finditer(table)}


def written(page, results, texts):
    """The page with the results of this build folder: {file: {"text": hash, "count": {state: number}, "of": number}}.

    `texts` has the hash of each file that there is. A result of another text than the file's is none, and drops its row;
    the row of a file of which the folder has no result stays as it is: another folder had it.
    """
    before, rest = page.split(FIRST)
    table, behind = rest.split(LAST)
    rows = {name: row for name, row in rows_of(table).items() if name in texts and name not in results}
    rows |= {name: (collections.Counter(row["count"]), row["of"]) for name, row in results.items()
             if row["text"] == texts.get(name)}
    lines = [HEAD] + [line(name, *rows[name]) for name in sorted(rows)]
    lines.append(line("all of these", sum((count for count, _ in rows.values()), collections.Counter()),
                      sum(of for _, of in rows.values())))
    left = [name for name in sorted(texts) if name not in rows]
    if left:
        lines.append("\nNot run: " + ", ".join(left) + ".")
    return f"{before}{FIRST}\n\n" + "\n".join(lines) + f"\n\n{LAST}{behind}"
