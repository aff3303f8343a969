"""docs/reliability-calls.md and the table of system calls against the library that was built and its sources: a function
that is imported or bound by name cannot be forgotten."""
import os
import pathlib
import re
import subprocess
import unittest

import table

SOURCE = table.SOURCE
LIBRARY = pathlib.Path(os.environ.get("WFINFO_BUILD", SOURCE / "build/windows")).parents[1] / "out/WFINFO.dll"

# Where a name that is looked up is no literal, and whose it is.
NAMES_OF_OTHERS = {
    "src/bridge/module_win.cpp": "the tables of WFINFO_SLOT",
    "src/bridge/module_win.h": "what its callers name",
    "src/libraries/archiver_win.cpp": "an archiver's",
    "src/libraries/extension_libraries_export.cpp": "a macro's",
    "src/smime/crypto_binding_win.cpp": "the list of WFINFO_CRYPT32_ENTRIES",
}
# Functions of the host's own library.
OF_THE_HOST = {"TmRegOpenKeyEx", "TmRegQueryValueEx", "TmRegCloseKey"}


def imported(library):
    """The functions in the import tables of a library."""
    printed = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", library], capture_output=True, text=True,
                             check=True, env={**os.environ, "LC_ALL": "C"}).stdout
    tables = printed.split("The Import Tables")[1].split("The Export Tables")[0]
    return set(re.findall(r"^\t[0-9a-f]+\t *\d+  (\w+)$", tables, re.M))


def bound(sources):
    """(the functions that sources look up by name, the files in which a name is no literal)."""
    names, others = set(), set()
    for path, text in sources.items():
        names |= set(re.findall(r"\bWFINFO_SLOT\((\w+)\),", text))
        names |= set(re.findall(r"^ +ENTRY\((\w+)\)", text, re.M))
        for what in re.findall(r"\b(?:ProcOf<[^;]*?>|GetProcAddress|[.]entry|Find)\(([^;]*?)\)", text):
            literal = re.search(r'"(\w+)"', what)
            if literal:
                names.add(literal[1])
            elif "name" in what or "entry_point" in what:
                others.add(path)
    return names, others


def sources():
    return {path.relative_to(SOURCE).as_posix(): path.read_text(encoding="utf-8")
            for path in (SOURCE / "src").rglob("*_*.*")}


class TableOfCalls(unittest.TestCase):
    def test_every_function_that_is_imported_or_bound_stands_in_the_table_and_on_the_page(self):
        taken = imported(LIBRARY)
        self.assertGreater(len(taken), 100)
        names, others = bound(sources())
        self.assertLessEqual({"recv", "InternetOpenA", "CertOpenStore", "WinVerifyTrust", "RegOpenKeyExA"}, names)
        self.assertEqual(others, set(NAMES_OF_OTHERS), "a name that is looked up and is no literal")
        page = table.PAGE.read_text(encoding="utf-8")
        functions = page.split(table.UNDER)[0] + page.split(table.NOT_REACHED)[1]  # the other part names exports too
        wanted = sorted((taken | names) - OF_THE_HOST)
        known, shown = table.rows(), set(re.findall(r"`(\w+)`", functions))
        self.assertEqual([name for name in wanted if name not in known], [], "no row in system_calls.cpp")
        self.assertEqual([name for name in wanted if name not in shown], [], "not on the page: ./dev torture --write")

    def test_the_page_gives_the_reasons_of_the_table(self):
        can_fail, exempt = table.PAGE.read_text(encoding="utf-8").split(table.EXEMPT)
        reasons = {name: why for why, names in re.findall(r"^\| ([^|]+) \| (.*) \|$", exempt, re.M)
                   for name in re.findall(r"`(\w+)`", names)}
        self.assertEqual(reasons, {name: why for name, why in table.rows().items() if why}, "./dev torture --write")
        missing = [name for name, why in table.rows().items() if not why and f"`{name}`" not in can_fail]
        self.assertEqual(missing, [], "./dev torture --write")

    def test_a_page_is_written_from_what_a_run_printed(self):
        page = table.page("under Beep failed LocalAlloc: 1 usual, 2 failure, 0 other\n"
                          "under Bell failed LocalAlloc: 1 usual, 2 failure, 0 other\r\n"
                          "under Ring failed CreateFileW: 0 usual, 0 failure, 4 other\n")
        self.assertIn("10 failures of 2 functions under 3 exports.", page)
        self.assertIn("| `LocalAlloc` | 6 | 2 | 2 | 4 | 0 |", page)
        self.assertIn("| `Beep`, `Bell` | `LocalAlloc` 3 (1u 2f) |", page)
        self.assertIn("| `Ring` | `CreateFileW` 4 (4o) |", page)

    def test_names_are_found_in_every_form_in_which_they_are_looked_up(self):
        names, others = bound({"a": "const x = ProcOf<decltype(b.c)>(module, \"One\"); WFINFO_SLOT(Two), g.entry(m, \"Three\")",
                               "b": "  ENTRY(Four)  \\\n", "c": "GetProcAddress(module, function_name)"})
        self.assertEqual(names, {"One", "Two", "Three", "Four"})
        self.assertEqual(others, {"c"})


if __name__ == "__main__":
    unittest.main()
