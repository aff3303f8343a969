"""Every example of examples/ prints what stands in it, and none is missing in a family that has its file.

One host runs a whole family: standard output and standard error come in one stream, in the order in which a terminal
would show them. A line "## Name" in that stream begins each example.
"""
import difflib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import host

EXAMPLES = host.SOURCE / "examples"
OUT = pathlib.Path(os.environ.get("WFINFO_OUT", host.SOURCE / "out"))
OPTIONS = ["--english", "--mail", "samples/mails", "--accounts", "samples/accounts.txt", "--templates", "samples/templates",
           "--book", "samples/address-book.csv"]


def catalogue():
    """Names of the exports by family file, in the catalogue's order."""
    families = {}
    for path in sorted((host.SOURCE / "catalogue").glob("*.def")):
        rows = re.findall(r"^(?:THIN|HAND|COMMAND|START|MENU)\w*\(\s*(?:(?:Int|Int32|UInt32|Str|OptStr|Handle|Void),\s*)?(\w+)",
                          path.read_text(), re.M)
        if rows:
            families[path.stem] = rows
    return families


def examples_of(text):
    """The file's head, then for each example its heading and its lines."""
    head, *parts = re.split(r"^(?=## )", text, flags=re.M)
    return head, [tuple(part.split("\n", 1)) for part in parts]


def is_output(line):
    return line == "#>" or line.startswith("#> ")


def macro_of(heading, lines):
    kept = [line for line in lines.split("\n") if not is_output(line)]
    return f'print "{heading}"\n' + "\n".join(kept) + "\n"


def run_family(path, folder):
    """What each example prints, by its heading; what comes before the first is a complaint about the file."""
    _, examples = examples_of(path.read_text(encoding="utf-8"))
    shutil.copytree(host.SOURCE / "samples", folder / "samples")
    macros = []
    for number, (heading, lines) in enumerate(examples):
        macro = folder / f"{number:03}.example"
        macro.write_text(macro_of(heading, lines), encoding="utf-8")
        macros += ["--macro", macro.name]
    with open(folder / "printed", "wb") as printed:
        subprocess.run([*host.command(), *OPTIONS, *macros], stdin=subprocess.DEVNULL, stdout=printed,
                       stderr=subprocess.STDOUT, cwd=folder, timeout=300)
    text = (folder / "printed").read_text(encoding="utf-8")
    first, *parts = re.split(r"^(?=## )", text.replace("\r\n", "\n"), flags=re.M)
    return first, dict(part.split("\n", 1) for part in parts)


def with_output(lines, printed):
    """The example with what it printed behind each run of `#>` lines, or at its end."""
    kept = [line for line in lines.rstrip("\n").split("\n") if not is_output(line)]
    while kept and not kept[-1]:
        kept.pop()
    return "\n".join(kept + [("#> " + line).rstrip() for line in printed.rstrip("\n").split("\n") if printed]) + "\n"


class Examples(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="examples-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def test_each_example_prints_what_stands_in_it(self):
        for path in sorted(EXAMPLES.glob("*.macro")):
            folder = self.folder / path.stem
            folder.mkdir()
            first, printed = run_family(path, folder)
            with self.subTest(path.stem):
                self.assertEqual(first, "")
            for heading, lines in examples_of(path.read_text(encoding="utf-8"))[1]:
                with self.subTest(heading):
                    expected = [line[3:] for line in lines.split("\n") if is_output(line)]
                    got = printed.get(heading, "(did not run)").rstrip("\n").split("\n")
                    difference = difflib.unified_diff(expected, got, "expected", "printed", lineterm="")
                    self.assertEqual(got, expected or [""], "\n" + "\n".join(difference))
                    self.assertNotIn("not served", "\n".join(got))


class Completeness(unittest.TestCase):
    def test_a_file_has_one_example_for_each_export_of_its_family(self):
        families = catalogue()
        for path in sorted(EXAMPLES.glob("*.macro")):
            with self.subTest(path.stem):
                _, examples = examples_of(path.read_text(encoding="utf-8"))
                shown = [name for heading, _ in examples for name in re.findall(r"\w+", heading)]
                self.assertEqual(sorted(shown), sorted(families.get(path.stem, [])))

    def test_the_catalogue_was_read_whole(self):
        names = [name for names in catalogue().values() for name in names]
        reference = [row["name"] for row in json.loads((OUT / "reference.json").read_text(encoding="utf-8"))]
        self.assertEqual(sorted(names), sorted(reference))

    def test_each_example_says_what_it_is_for_and_prints_something(self):
        for path in sorted(EXAMPLES.glob("*.macro")):
            for heading, lines in examples_of(path.read_text(encoding="utf-8"))[1]:
                with self.subTest(heading):
                    self.assertRegex(lines, r"\A# \w")
                    self.assertRegex(lines, r"(?m)^#> ")


def write(family):
    path = EXAMPLES / (family + ".macro")
    with tempfile.TemporaryDirectory(prefix="examples-") as folder:
        first, printed = run_family(path, pathlib.Path(folder))
    head, examples = examples_of(path.read_text(encoding="utf-8"))
    blocks = [f"{heading}\n{with_output(lines, printed.get(heading, ''))}" for heading, lines in examples]
    path.write_text(head.rstrip("\n") + "\n\n" + "\n".join(blocks), encoding="utf-8")
    print(first, end="")


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1] == "--write":
        write(sys.argv[2])
    else:
        unittest.main()
