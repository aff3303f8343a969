#!/usr/bin/env python3
"""Where an export, or a code that the small host serves, stands: ./dev where IsUnread, ./dev where 40003."""
import difflib
import functools
import re
import sys

import catalogue_rows
from service_rows import ROOT, constants_of


@functools.cache
def files(name):
    return [(path, path.read_text(encoding="utf-8", errors="replace")) for path in sorted(ROOT.glob(name))]


def lines_with(pattern, *names):
    """path:line of the first line of each file that matches."""
    found = []
    for path, text in (file for name in names for file in files(name)):
        if match := re.search(pattern, text, re.M):
            found.append(f"{path.relative_to(ROOT).as_posix()}:{text.count(chr(10), 0, match.start()) + 1}")
    return found


class Export:
    def __init__(self, row):
        self.name, self.requests = row.name, row.requests
        [self.row] = lines_with(rf"^[A-Z_]+\(\s*(\w+,\s*)?{row.name},", "catalogue/*.def")
        self.family = self.row.split("/")[1].split(".")[0]
        self.thin = not lines_with(rf"^HAND\w*\(\s*\w+,\s*{row.name},", "catalogue/*.def")

    def code(self):
        if self.thin:
            return ["src/catalogue/thin_exports_win.cpp (a thin export: its row is all)"]
        return lines_with(rf"^[\w *]*\b{self.name}\(", f"src/*/{self.family}_export.cpp", f"src/{self.family}_export.cpp")

    def tests(self):
        rows = lines_with(rf"^{self.name}\b", "tests/golden/requests.txt")
        if self.thin:
            return ["tests/dll/catalogue/thin_rows_test.cpp (all thin exports)"] + rows
        return lines_with(rf"\b{self.name}\b", f"tests/dll/{self.family}_test.cpp", f"tests/dll/{self.family}_*_test.cpp") + rows

    def example(self):
        return lines_with(rf"^(// )?## (\w+, )*{self.name}\b", f"examples/{self.family}.macro", f"examples/{self.family}.c")

    def page(self):
        return lines_with(rf"^\| `{self.name}` \|", "docs/*.md")

    def small_host(self):
        keys = dict.fromkeys(request.key() for request in self.requests)
        return [f"{place} ({kind.lower()} {number})" for kind, number in keys for place in served(kind, number)]


@functools.cache
def all_served():
    """{(kind, number): where the tables of the small host have it}."""
    found = {}
    for path, text in files("host/services/**/*_win.cpp"):
        name = path.relative_to(ROOT).as_posix()
        constants = constants_of(name)
        for table in re.finditer(r"^constexpr (Service|Command) \w+\[\] = \{$.*?^\};$", text, re.M | re.S):
            for row in re.finditer(r"^    \{(?:wfinfo::)?(\w+),", table[0], re.M):
                number = int(row[1]) if row[1].isdigit() else constants[row[1]]
                line = text.count("\n", 0, table.start() + row.start()) + 1
                found.setdefault((table[1], number), []).append(f"{name}:{line}")
    return found


def served(kind, number):
    return all_served().get((kind, number), [])


def show_export(export):
    print(f"{export.name}, of the family {export.family}")
    for title, places in (("row", [export.row]), ("code", export.code()), ("tests", export.tests()),
                          ("example", export.example()), ("page", export.page()), ("small host", export.small_host())):
        print("\n".join(f"  {title if i == 0 else '':10} {place}" for i, place in enumerate(places or ["-"])))


def show_code(number, rows):
    places = [f"{place} ({kind.lower()})" for kind in ("Service", "Command") for place in served(kind, number)]
    users = [row.name for row in rows if any(request.key()[1] == number for request in row.requests)]
    if not places and not users:
        sys.exit(f"dev where: no export sends {number}, and the small host does not serve it")
    print(f"{number}: sent by {', '.join(users) or 'no export'}; served in {', '.join(places) or 'no table'}")


def main(arguments):
    if len(arguments) != 1:
        sys.exit("dev where: the name of one export, or the number of a code or menu command")
    rows = catalogue_rows.all_rows()
    if arguments[0].isdigit():
        return show_code(int(arguments[0]), rows)
    by_lowered = {row.name.lower(): row for row in rows}
    row = by_lowered.get(arguments[0].lower())
    if row is None:
        near = [by_lowered[name].name for name in difflib.get_close_matches(arguments[0].lower(), by_lowered, 3)]
        sys.exit(f"dev where: no export {arguments[0]}" + (f"; did you mean {', '.join(near)}?" if near else ""))
    return show_export(Export(row))


if __name__ == "__main__":
    main(sys.argv[1:])
