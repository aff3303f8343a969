#!/usr/bin/env python3
"""The tables of docs/small-host.md: what each code and menu command answers, from the rows of the services.

    python3 tools/document_services.py            rewrites the page
    python3 tools/document_services.py --print    prints it as it should be

Read are the tables of `Service` and `Command` rows in host/services/, and the catalogue for the exports that send a
code. Whatever is not understood there is an error, so that no row is left out in silence.
"""
import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
PAGE = "docs/small-host.md"
CARRIERS = (12, 57)  # codes whose first slot is a menu command: the rows of commands answer them
MOST_NAMES = 4       # of exports in one row; of more, the first ones and their number

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
    value = int(number) if number.isdigit() else constants.get(number)
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
    for path in sorted((ROOT / "host/services").glob("*.cpp")):
        name = path.relative_to(ROOT).as_posix()
        for kind, number, doc in services_of(path.read_text(encoding="utf-8"), constants_of(name), name):
            if (kind, number) in found:
                raise NotUnderstood(f"{name}: {kind} {number} has a row already")
            found[kind, number] = doc
    return found


# --- The catalogue ---


def request_of(word, where):
    """(kind, number) of a word in the column of requests; None for those that are none."""
    match = re.fullmatch(r"(?:[HFV](\d+)(?::(\d+))?|M(\d+))", word)
    if match is None:
        if word not in ("any", "copies"):
            raise NotUnderstood(f"{where}: {word} is no request")
        return None
    if match[3]:
        return "Command", int(match[3])
    if int(match[1]) in CARRIERS:
        return "Command", int(match[2])
    return "Service", int(match[1])


def sent_by(macro, parts, where):
    """(export, [(kind, number), ...]) of one row of the catalogue."""
    row = ["".join(part) for part in parts]
    if macro in ("THIN", "THIN_INFERRED", "THIN_SUB"):
        return row[1], [("Service", int(row[3]))]
    if macro == "COMMAND":
        return row[0], [("Command", int(row[2]))]
    if macro in ("START", "MENU"):
        return row[0], [("Command", int(row[1]))]
    if macro in ("HAND", "HAND_INFERRED", "HAND_VARIADIC"):
        words = text_of(parts[2], where).split()
        return row[1], [request for word in words if (request := request_of(word, where))]
    raise NotUnderstood(f"{where}: {macro} is no row")


def senders_of(source, where):
    """(export, requests) of all rows of a family."""
    words, at, found = tokens(source), 0, []
    while at < len(words):
        if at + 1 == len(words) or words[at + 1] != "(":
            raise NotUnderstood(f"{where}: {words[at]} is no row")
        parts, behind = fields(words, at + 1)
        found.append(sent_by(words[at], parts, where))
        at = behind
    return found


def all_senders():
    """{(kind, number): [export, ...]} in the order of the catalogue."""
    found = {}
    families = re.findall(r'^#include "(catalogue/\w+\.def)"', (ROOT / "catalogue/all.def").read_text(encoding="utf-8"), re.M)
    for name in families:
        for export, requests in senders_of((ROOT / name).read_text(encoding="utf-8"), name):
            for request in requests:
                names = found.setdefault(request, [])
                if export not in names:
                    names.append(export)
    return found


# --- The page ---


# Exports that add their parameter to a command: the first one, and how many the host has.
FURTHER_COMMANDS = {40044: 3}  # SwitchHeaderView


def named(exports):
    shown = exports if len(exports) <= MOST_NAMES else exports[:MOST_NAMES - 1]
    text = ", ".join(f"`{name}`" for name in shown)
    return text if shown == exports else f"{text} and {len(exports) - len(shown)} more"


def table(kind, head, services, senders):
    lines = [head, "|---|---|---|"]
    for key in sorted(key for key in services if key[0] == kind):
        for first, count in FURTHER_COMMANDS.items():
            if kind == "Command" and first < key[1] < first + count:
                senders.setdefault(key, senders[kind, first])
        if key not in senders:
            raise NotUnderstood(f"{kind} {key[1]}: no export sends it")
        lines.append(f"| {key[1]} | {named(senders[key])} | {services[key]} |")
    return "\n".join(lines)


def between_marks(page, name, text):
    first, last = f"<!-- {name}: written by ./dev docs -->", f"<!-- end of {name} -->"
    if page.count(first) != 1 or page.count(last) != 1:
        raise NotUnderstood(f"{PAGE} has no marks around the {name}")
    before, rest = page.split(first)
    return f"{before}{first}\n\n{text}\n\n{last}{rest.split(last)[1]}"


def documented(page):
    """The page with its tables as the rows have them."""
    services, senders = all_services(), all_senders()
    codes = table("Service", "| code | exports | answer |", services, senders)
    commands = table("Command", "| menu command | exports | what it does |", services, senders)
    return between_marks(between_marks(page, "codes", codes), "menu commands", commands)


def main():
    page = (ROOT / PAGE).read_text(encoding="utf-8")
    try:
        wanted = documented(page)
    except NotUnderstood as problem:
        sys.exit(f"document_services: {problem}")
    if "--print" in sys.argv[1:]:
        sys.stdout.write(wanted)
    elif wanted != page:
        (ROOT / PAGE).write_text(wanted, encoding="utf-8")


if __name__ == "__main__":
    main()
