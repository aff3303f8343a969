"""What the exports send, from the rows of the catalogue and its list of codes (catalogue/README.md).

Whatever is not understood there is an error, so that no row is left out in silence.
"""
import dataclasses
import json
import re

from service_rows import ROOT, NotUnderstood, fields, text_of, tokens

CARRIERS = (12, 57)  # codes whose first slot is a menu command
DISPATCHERS = {"H": "Host", "F": "Frame", "V": "View", "M": ""}
ANSWERS = ("Number", "Text", "WideText", "Record", "Handle")


@dataclasses.dataclass(frozen=True)
class Request:
    """One way in which an export asks: `way` is H, F, V, or M for a menu command sent as a message."""
    way: str
    code: int     # 0 for M
    command: int  # carried by a code or sent as a message; 0 for none

    def key(self):
        return ("Command", self.command) if self.command else ("Service", self.code)


@dataclasses.dataclass(frozen=True)
class Form:
    """A block: the slots behind each other. `first` is a fixed sub-command in front of them, or None."""
    exports: tuple  # of rows; () for the list of codes, whose forms are those of all exports written by hand
    first: object
    slots: tuple    # (type, name, doc)
    answer: str
    doc: str = ""
    text_itself: bool = False


@dataclasses.dataclass(frozen=True)
class Row:
    name: str
    requests: tuple
    form: object  # None for exports written by hand and for commands


def folder_pairs():
    """What WFINFO_FOLDER_PAIR and its kin stand for."""
    source = (ROOT / "src/catalogue/row_macros.h").read_text(encoding="utf-8").replace("\\\n", " ")
    return {name: fields(tokens(f"({slots})"), 0)[0]
            for name, slots in re.findall(r"^#define (WFINFO_\w*FOLDER_PAIR) (.*)$", source, re.M)}


def slots_of(part, where):
    """((type, name, doc), ...) of a parameter list in its brackets."""
    found, pairs = [], folder_pairs()
    for slot in fields(part, 0)[0]:
        for piece in pairs[slot[0]] if len(slot) == 1 and slot[0] in pairs else [slot]:
            members = fields(piece, 0)[0]
            if len(members) not in (2, 3) or len(members[0]) != 1:
                raise NotUnderstood(f"{where}: {' '.join(piece)} is no parameter")
            doc = text_of(members[2], where) if len(members) == 3 else ""
            found.append((members[0][0], "".join(members[1]), doc))
    return tuple(found)


def request_of(word, where):
    """The request that a word in the column of requests names; None for those that are none."""
    match = re.fullmatch(r"([HFV])(\d+)(?::(\d+))?|M(\d+)", word)
    if match is None:
        if word not in ("any", "copies"):
            raise NotUnderstood(f"{where}: {word} is no request")
        return None
    if match[4]:
        return Request("M", 0, int(match[4]))
    return Request(match[1], int(match[2]), int(match[3] or 0))


def row_of(macro, parts, where):
    """A row of the catalogue."""
    row = ["".join(part) for part in parts]
    if macro in ("THIN", "THIN_INFERRED", "THIN_SUB"):
        first = int(row[4]) if macro == "THIN_SUB" else None
        slots = slots_of(parts[5 if macro == "THIN_SUB" else 4], where)
        answer = "Text" if row[0] == "Str" else "Number"
        return Row(row[1], (Request(row[2][0], int(row[3]), 0),), Form((row[1],), first, slots, answer))
    if macro == "COMMAND":
        return Row(row[0], (Request(row[1][0], 12, int(row[2])),), None)
    if macro == "START":
        return Row(row[0], (Request("F", 57, int(row[1])),), None)
    if macro == "MENU":
        return Row(row[0], (Request("M", 0, int(row[1])),), None)
    if macro in ("HAND", "HAND_INFERRED", "HAND_VARIADIC"):
        words = text_of(parts[2], where).split()
        return Row(row[1], tuple(found for word in words if (found := request_of(word, where))), None)
    raise NotUnderstood(f"{where}: {macro} is no row")


def calls_of(source, where):
    """(macro, parts) of all macro calls of a file."""
    words, at = tokens(source), 0
    while at < len(words):
        if at + 1 == len(words) or words[at + 1] != "(":
            raise NotUnderstood(f"{where}: {words[at]} is no row")
        parts, behind = fields(words, at + 1)
        yield words[at], parts
        at = behind


def rows_of(source, where):
    return [row_of(macro, parts, where) for macro, parts in calls_of(source, where)]


def all_rows():
    """All rows, in the order of the catalogue."""
    listed = (ROOT / "catalogue/all.def").read_text(encoding="utf-8")
    return [row for name in re.findall(r'^#include "(catalogue/\w+\.def)"', listed, re.M)
            for row in rows_of((ROOT / name).read_text(encoding="utf-8"), name)]


def hand_forms_of(source, where):
    """{key: form} of the list of codes."""
    found = {}
    for macro, parts in calls_of(source, where):
        if macro == "LOOK_UP":
            continue
        if macro not in ("CODE", "CODE_OF_TEXT", "CARRIED"):
            raise NotUnderstood(f"{where}: {macro} is no row")
        carried = macro == "CARRIED"
        code, answer, slots, doc = parts[0], *parts[2 if carried else 1:]
        key = ("Command", int("".join(parts[1]))) if carried else ("Service", int("".join(code)))
        if "".join(answer) not in ANSWERS:
            raise NotUnderstood(f"{where}: {key[1]}: {''.join(answer)} is no answer")
        found[key] = Form((), None, slots_of(slots, where), "".join(answer), text_of(doc, where), macro == "CODE_OF_TEXT")
    return found


def hand_forms():
    name = "catalogue/codes.inc"
    return hand_forms_of((ROOT / name).read_text(encoding="utf-8"), name)


def allowed_during_dialog():
    source = (ROOT / "src/bridge/host_protocol.h").read_text(encoding="utf-8")
    return set(json.loads("[" + re.search(r"kAllowedDuringDialog\[\] = \{([\d, ]+)\}", source)[1] + "]"))
