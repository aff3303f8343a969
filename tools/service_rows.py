"""What the small host does with each code and menu command: the tables of `Service` and `Command` rows in
host/services/. Whatever is not understood there is an error, so that no row is left out in silence.
"""
import json
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[1]

TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|#[^\n]*|"(?:[^"\\\n]|\\.)*"|->|\w+|\s+|.', re.S)
CLOSING = {"(": ")", "{": "}", "[": "]"}


class NotUnderstood(Exception):
    """A row that this tool cannot read, or that lacks something."""


def tokens(source):
    """What the compiler sees: no blanks, comments, directives."""
    return [token for token in TOKEN.findall(source) if not token.isspace() and not token.startswith(("//", "/*", "#"))]


def fields(words, at, angles=False):
    """The parts between the bracket at `at` and its end, cut at its commas; and the place behind it. `angles`:
    < and > are brackets too (of templates)."""
    closing = {**CLOSING, "<": ">"} if angles else CLOSING
    open_brackets, parts, place = [closing[words[at]]], [[]], at + 1
    while open_brackets:
        if place == len(words):
            raise NotUnderstood(f"no {open_brackets[-1]} behind {' '.join(words[at:at + 8])}")
        word = words[place]
        if word in closing:
            open_brackets.append(closing[word])
        elif word in closing.values():
            if word != open_brackets.pop():
                raise NotUnderstood(f"unexpected {word} in {' '.join(words[at:place + 1][-12:])}")
        if word == "," and len(open_brackets) == 1:
            parts.append([])
        elif open_brackets:
            parts[-1].append(word)
        place += 1
    if not parts[-1]:
        parts.pop()  # a comma behind the last, or nothing at all
    return parts, place


def text_of(part, where):
    """The text that adjacent literals make."""
    if not part or not all(word.startswith('"') for word in part):
        raise NotUnderstood(f"{where}: {' '.join(part) or 'nothing'} is no text")
    return "".join(json.loads(word) for word in part)


# --- The services ---


def constants_of(name, seen=None):
    """{name: value} of the whole numbers that a file and what it includes define."""
    seen = set() if seen is None else seen
    if name in seen or not (ROOT / name).is_file():
        return {}
    seen.add(name)
    source, found = (ROOT / name).read_text(encoding="utf-8"), {}
    for included in re.findall(r'^#include "([^"]+)"', source, re.M):
        found.update(constants_of(included, seen))
    found.update({constant: int(value) for constant, value in re.findall(r"\b(k\w+) = (\d+)[,;]", source)})
    return found


def checked_doc(doc, where):
    """What stands in a row of a table."""
    if not doc.strip():
        raise NotUnderstood(f"{where} has an empty doc")
    if doc != doc.strip() or "\n" in doc or re.search(r"(?<!\\)\|", doc):
        raise NotUnderstood(f"{where}: a doc is one line without | and without blanks around it")
    if doc.endswith(".") and not doc.endswith("..."):
        raise NotUnderstood(f"{where}: no full stop behind a doc")
    return doc


def table_rows(kind, part, constants, where):
    """(kind, number, doc) of one row."""
    if not part or part[0] != "{":
        raise NotUnderstood(f"{where}: {' '.join(part)} is no row")
    row, _ = fields(part, 0, angles=True)
    members = {"Service": 4, "Command": 3}[kind]
    number = "".join(row[0]) if row else ""
    where = f"{where}: row {number}"
    if len(row) != members:
        raise NotUnderstood(f"{where} has {len(row)} of {members} members; the last is its doc")
    value = int(number) if number.isdigit() else constants.get(number.rpartition("::")[2])
    if value is None:
        raise NotUnderstood(f"{where}: the value of {number} is not known")
    return kind, value, checked_doc(text_of(row[-1], where), where)


def services_of(source, constants, where):
    """(kind, number, doc) of all rows of a file; every family of it is made of them."""
    words, rows, tables = tokens(source), [], set()
    for at, kind in enumerate(words):
        if kind in ("Service", "Command") and words[at + 2:at + 6] == ["[", "]", "=", "{"]:
            tables.add(words[at + 1])
            for part in fields(words, at + 5)[0]:
                rows.append(table_rows(kind, part, constants, where))
    for at, word in enumerate(words):
        if word == "ServiceFamily" and words[at + 2:at + 4] == ["=", "{"]:
            for part in fields(words, at + 3)[0]:
                if part != ["{", "}"] and (len(part) != 1 or part[0] not in tables):
                    raise NotUnderstood(f"{where}: {' '.join(part)} of {words[at + 1]} is no table of this file")
    return rows


def all_services():
    """{(kind, number): doc} of all files."""
    found = {}
    for path in sorted((ROOT / "host/services").rglob("*.cpp")):
        name = path.relative_to(ROOT).as_posix()
        for kind, number, doc in services_of(path.read_text(encoding="utf-8"), constants_of(name), name):
            if (kind, number) in found:
                raise NotUnderstood(f"{name}: {kind} {number} has a row already")
            found[kind, number] = doc
    return found
