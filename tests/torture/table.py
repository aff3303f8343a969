"""docs/reliability-calls.md: which system calls fail under which exports, and what comes of it.

    table.py OUTPUT         writes the page from what torture_tests.exe printed into the file OUTPUT

`./dev torture --write` makes both.
"""
import collections
import pathlib
import re
import sys

SOURCE = pathlib.Path(__file__).resolve().parents[2]
PAGE = SOURCE / "docs/reliability-calls.md"
CALLS = SOURCE / "tests/torture/system_calls.cpp"

HEAD = """# System calls made to fail

Written by `./dev torture --write` from a run of the [torture](reliability.md#torture); do not edit. The functions are those
that the library imports and those that it binds by name; a test compares them with the library that was built.
"""
FAILED = """
## Calls that failed

Each failure is one call of the export in which one call of the function, the first to the sixth, failed. What the export gave
then: what it gives else, its failure value, or another value that the test names with the reason. Nothing crashed, leaked or
stayed on the disk, or the run would have failed.

| function | failures | exports | as usual | failure value | other |
|---|---|---|---|---|---|
"""
UNDER = """
## Call by export

Exports under which the same calls failed equally often, with the same outcome, stand together. Behind a function: how many
of its calls failed in turn, of which `u` gave what the export gives else, `f` its failure value, `o` another.

| exports | functions |
|---|---|
"""
NOT_REACHED = """
## Calls that can fail and did not come up

They stand on paths that take a peer that answers, a message or certificate that is real, a program that starts, a box, or a
first use that was over. `tests/inside/` and `tests/faults/` make those of OpenPGP, S/MIME and the network fail.

"""
EXEMPT = """
## Calls that are not made to fail

| why | functions |
|---|---|
"""


def rows():
    """{function: why it is not made to fail, "" when it is}, from the table of the test."""
    text = CALLS.read_text(encoding="utf-8")
    whys = dict(re.findall(r'constexpr std::string_view (k\w+) =\s*"([^"]*)";', text))
    found = {}
    for name, why in re.findall(r'\{"(\w+)",[^{}]*?, (""|k\w+)\},', text):
        found[name] = "" if why == '""' else whys[why]
    return found


def outcomes(printed):
    """{(export, function): (usual, failure, other)}"""
    line = r"^under (\w+) failed (\w+): (\d+) usual, (\d+) failure, (\d+) other\r?$"
    return {(export, name): (int(u), int(f), int(o)) for export, name, u, f, o in re.findall(line, printed, re.M)}


def ticked(names):
    return ", ".join(f"`{name}`" for name in sorted(names, key=str.lower))


def shown(outcome):
    parts = [f"{count}{letter}" for count, letter in zip(outcome, "ufo") if count]
    return f"{sum(outcome)} ({' '.join(parts)})"


def by_function(found):
    lines = []
    for name in sorted({name for _, name in found}, key=str.lower):
        mine = [outcome for (_, each), outcome in found.items() if each == name]
        usual, failure, other = (sum(column) for column in zip(*mine))
        lines.append(f"| `{name}` | {usual + failure + other} | {len(mine)} | {usual} | {failure} | {other} |")
    return "\n".join(lines) + "\n"


def by_export(found):
    calls_of = collections.defaultdict(list)
    for (export, name), outcome in sorted(found.items(), key=lambda item: item[0][1].lower()):
        calls_of[export].append(f"`{name}` {shown(outcome)}")
    alike = collections.defaultdict(list)
    for export in calls_of:
        alike[", ".join(calls_of[export])].append(export)
    groups = sorted(alike.items(), key=lambda group: min(group[1], key=str.lower).lower())
    return "".join(f"| {ticked(exports)} | {calls} |\n" for calls, exports in groups)


def page(printed):
    known, found = rows(), outcomes(printed)
    failed = {name for _, name in found}
    not_reached = [name for name, why in known.items() if not why and name not in failed]
    exempt = collections.defaultdict(list)
    for name, why in known.items():
        if why:
            exempt[why].append(name)
    reasons = "".join(f"| {why} | {ticked(names)} |\n" for why, names in sorted(exempt.items()))
    total = sum(sum(outcome) for outcome in found.values())
    count = f"\n{total} failures of {len(failed)} functions under {len({export for export, _ in found})} exports.\n"
    return (HEAD + count + FAILED + by_function(found) + UNDER + by_export(found) + NOT_REACHED +
            ticked(not_reached) + "\n" + EXEMPT + reasons)


def main(arguments):
    printed = pathlib.Path(arguments[0]).read_text(encoding="ascii", errors="replace")
    if not outcomes(printed) or "[  PASSED  ] 1 test." not in printed:
        print(f"{arguments[0]} is not the output of a whole run that passed: the page is left as it is")
        return 1
    PAGE.write_text(page(printed), encoding="utf-8")
    print(f"{PAGE.relative_to(SOURCE)} is written")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
