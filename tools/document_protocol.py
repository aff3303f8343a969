#!/usr/bin/env python3
"""docs/host-protocol-by-code.md: what each code and menu command of the catalogue brings and answers.

    python3 tools/document_protocol.py            rewrites the page
    python3 tools/document_protocol.py --print    prints it as it should be

Taken from the catalogue, its list of codes, the private messages of src/bridge/host_protocol.h and the rows of the small
host's services. What stands outside the marks of the page is written by hand.
"""
import dataclasses
import re
import sys

from catalogue_rows import CARRIERS, DISPATCHERS, all_rows, allowed_during_dialog, hand_forms
from page_marks import between_marks
from service_rows import ROOT, NotUnderstood, all_services

PAGE = "docs/host-protocol-by-code.md"
TYPES = {
    "Text": "text",
    "OptText": "text or null",
    "RawText": "text, not checked",
    "WideText": "UTF-16 text",
    "Int32": "number of 32 bits",
    "UInt32": "number of 32 bits without sign",
    "Int64": "number of 64 bits",
    "Value": "number, or address of a text",
    "Handle": "handle",
    "Bytes": "address",
    "Record": "address",
    "Rest": "further slots",
}
ANSWERS = {"Number": "number", "Text": "text", "WideText": "text in UTF-16", "Record": "address", "Handle": "handle"}
# Exports that add their parameter to a command: the first one, and how many the small host has.
FURTHER_COMMANDS = {40044: 3}


def names(exports):
    return ", ".join(f"`{name}`" for name in exports)


def unique(items):
    return list(dict.fromkeys(items))


def slot_lines(form):
    """The slots of a block, numbered from 1."""
    lines = [] if form.first is None else [f"sub-command, number of 32 bits: {form.first}"]
    for kind, name, doc in form.slots:
        if kind not in TYPES:
            raise NotUnderstood(f"{kind} is no type of a slot")
        lines.append(f"`{name}`, {TYPES[kind]}{': ' if doc else ''}{doc}")
    return [f"{number}. {line}" for number, line in enumerate(lines, 1)]


def block_of(form, several):
    """The lines that tell of one form of a block."""
    slots = slot_lines(form)
    who = f" of {names(form.exports)}" if several and form.exports else ""
    if form.text_itself:
        return ["No block: lParam is the address of the text.  "]
    return [f"Block{who}:", "", *slots, ""] if slots else [f"No block{who}.  "]


def joined(forms):
    """Forms whose slots are of the same types as one, which tells what the first of them does."""
    found = {}
    for form in forms:
        same = found.setdefault((form.first, tuple(slot[0] for slot in form.slots)), form)
        if same is not form and same.exports:
            found[form.first, tuple(slot[0] for slot in form.slots)] = dataclasses.replace(same, exports=same.exports + form.exports)
    return list(found.values())


def answer_of(forms):
    kinds = unique(ANSWERS[form.answer] for form in forms)
    doc = next((form.doc for form in forms if form.doc), "")
    # The list of codes tells of each text that the export needs no longer when it returns.
    if kinds == ["text"] and " at once" not in doc:
        kinds = ["text, handed on"]
    return f"Answer ({' or '.join(kinds)}){': ' if doc else ''}{doc}."


def served(services, key):
    doc = services.get(key)
    if doc is None:
        return "The small host: does not serve it."
    # The rows are written for the page of the small host.
    return "The small host: " + doc.replace("](#", "](small-host.md#") + "."


def ways_of(key, rows):
    """[(how it comes, exports)]"""
    found = {}
    for row in rows:
        for request in row.requests:
            if request.key() != key:
                continue
            if request.way == "M":
                way = "message of the menu"
            elif request.code in CARRIERS:
                way = f"[code {request.code}](#code-{request.code}) ({DISPATCHERS[request.way]})"
            else:
                way = DISPATCHERS[request.way]
            exports = found.setdefault(way, [])
            if row.name not in exports:
                exports.append(row.name)
    return list(found.items())


def code_lines(code, rows, forms, services, allowed):
    """The section of a code."""
    ways = ways_of(("Service", code), rows)
    several = len(forms) > 1
    lines = [f"### Code {code}", ""]
    lines += [f"{way}: {names(exports)}." for way, exports in ways]
    lines[2:] = ["  \n".join(lines[2:])]
    if code in allowed:
        lines[-1] += " Goes through while a dialog shows."
    lines.append("")
    for form in forms:
        lines += block_of(form, several)
    return lines + [f"{answer_of(forms)}  ", served(services, ("Service", code)), ""]


def command_lines(command, rows, form, services):
    """The section of a menu command."""
    ways = [f"{way}: {names(exports)}." for way, exports in ways_of(("Command", command), rows)]
    lines = [f"### Menu command {command}", "", "  \n".join(ways), ""]
    if form is not None:
        lines += [*block_of(form, False), f"{answer_of([form])}  "]
    for further in range(1, FURTHER_COMMANDS.get(command, 1)):
        lines.append(f"The small host, {command + further}: {services['Command', command + further]}.  ")
    return [*lines, served(services, ("Command", command)), ""]


def codes_of(rows):
    return sorted({request.code for row in rows for request in row.requests if request.key()[0] == "Service"})


def commands_of(rows):
    return sorted({request.command for row in rows for request in row.requests if request.command})


def forms_of(code, rows, by_hand):
    own = [row.form for row in rows if row.form and row.requests[0].key() == ("Service", code)]
    listed = by_hand.get(("Service", code))
    if listed is None and not own:
        raise NotUnderstood(f"code {code}: only exports written by hand send it, and catalogue/codes.inc does not tell its block")
    return joined(([listed] if listed else []) + own)


def messages():
    """The private messages, from the header that library and host share."""
    source = (ROOT / "src/bridge/host_protocol.h").read_text(encoding="utf-8")
    lines, said = ["| message | |", "|---|---|"], ""
    for line in source.splitlines():
        if line.startswith("// "):
            said = f"{said} {line[3:]}".strip()
            continue
        match = re.fullmatch(r"inline constexpr unsigned (kHost\w+) = (\d+);(?:\s+// (.*))?", line)
        if match:
            lines.append(f"| {match[2]} `{match[1]}` | {(match[3] or said).rstrip('.')} |")
        said = ""
    if len(lines) < 5:
        raise NotUnderstood("src/bridge/host_protocol.h: the private messages are not where they were")
    return "\n".join(lines)


def documented(page):
    """The page with its sections as the rows have them."""
    rows, by_hand, services, allowed = all_rows(), hand_forms(), all_services(), allowed_during_dialog()
    codes, commands = codes_of(rows), commands_of(rows)
    reached = {("Service", code) for code in codes} | {("Command", command) for command in commands}
    reached |= {("Command", first + n) for first, count in FURTHER_COMMANDS.items() for n in range(count)}
    for kind, number in services:
        if (kind, number) not in reached:
            raise NotUnderstood(f"{kind} {number}: no export sends it")
    page = between_marks(page, "messages", messages(), PAGE)
    sections = [code_lines(code, rows, forms_of(code, rows, by_hand), services, allowed) for code in codes]
    page = between_marks(page, "codes", "\n".join(line for lines in sections for line in lines).rstrip(), PAGE)
    sections = [command_lines(command, rows, by_hand.get(("Command", command)), services) for command in commands]
    return between_marks(page, "menu commands", "\n".join(line for lines in sections for line in lines).rstrip(), PAGE)


def main():
    page = (ROOT / PAGE).read_text(encoding="utf-8")
    try:
        wanted = documented(page)
    except NotUnderstood as problem:
        sys.exit(f"document_protocol: {problem}")
    if "--print" in sys.argv[1:]:
        sys.stdout.write(wanted)
    elif wanted != page:
        (ROOT / PAGE).write_text(wanted, encoding="utf-8")


if __name__ == "__main__":
    main()
