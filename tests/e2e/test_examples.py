"""Every export has an example in examples/, and every example prints what stands in it.

One host runs a whole family: standard output and standard error come in one stream, in the order in which a terminal
would show them. A line "## Name" in that stream begins each example. An example in C is a program of its own.

"# Run with: OPTIONS" in an example, or in the head of its file for all of them, tells what the host is started with beside
the mails; the host of a family is started with all that its examples name. "# Needs: ..." tells what else must be there.
"""
import concurrent.futures
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

import example_set_ups
import host

EXAMPLES = host.SOURCE / "examples"
OUT = pathlib.Path(os.environ.get("WFINFO_OUT", host.SOURCE / "out"))
BUILD = pathlib.Path(os.environ.get("WFINFO_BUILD", host.SOURCE / "build/windows"))
# What lies beside the program in a family's run: libraries that nobody can expect to be installed.
STAND_INS = {"archivers": ["doubles/archivers/unlha32.dll", "doubles/archivers/Zip32J.dll"]}
# What runs while a family's examples do: see example_set_ups.py.
SET_UPS = {"http": example_set_ups.web_site, "sockets": example_set_ups.mail_server, "smime": example_set_ups.certificates,
           "pgp": example_set_ups.key_ring, "mapi": example_set_ups.mail_receiver,
           "application": example_set_ups.server_folders, "transmission": example_set_ups.server_folders}
# Set-ups that bring a Wine prefix, and so a desktop, of their own: these families run beside the others, since making a prefix
# takes long. The others run one by one: hosts on one desktop find each other's windows.
OWN_DESKTOP = {"smime"}
# What stands in front of each example in C.
C_HEAD = '#define WFINFO_NO_MAPI\n#include <windows.h>\n#include <mapi.h>\n#include <stdio.h>\n#include "wfinfo.h"\n'
# The system's Simple MAPI first: programs know nothing else, and find our functions through it.
C_LIBRARIES = ["-lmapi32", OUT / "libWFINFO.dll.a"]
C_COMPILER = ["x86_64-w64-mingw32-gcc", "-Wall", "-Wextra", "-Werror", f"-I{OUT}"]
USUAL = ["--english", "--mail", "samples/mails"]


def catalogue():
    """Names of the exports by family file, in the catalogue's order."""
    families = {}
    for path in sorted((host.SOURCE / "catalogue").glob("*.def")):
        rows = re.findall(r"^(?:THIN|HAND|COMMAND|START|MENU)\w*\(\s*(?:(?:Int|Int32|UInt32|Str|OptStr|Handle|Void),\s*)?(\w+)",
                          path.read_text(), re.M)
        if rows:
            families[path.stem] = rows
    return families


def form_of(path):
    """What stands in front of a heading and of a line of output."""
    return ("// ## ", "//>") if path.suffix == ".c" else ("## ", "#>")


def example_files():
    return sorted([*EXAMPLES.glob("*.macro"), *EXAMPLES.glob("*.c")])


def names_of(heading, path):
    return heading[len(form_of(path)[0]):].split(", ")


def examples_of(path):
    """The file's head, then for each example its heading and its lines."""
    heading, _ = form_of(path)
    head, *parts = re.split(rf"^(?={heading})", path.read_text(encoding="utf-8"), flags=re.M)
    return head, [tuple(part.split("\n", 1)) for part in parts]


def told(word, lines, path):
    """What the comments "# WORD: ..." of some lines tell, one each."""
    return marked(f"{'//' if path.suffix == '.c' else '#'} {word}:", lines)


def options_of(path):
    """What the host of a family is started with: the mails, and each option that an example names, once."""
    options = list(USUAL)
    for line in told("Run with", path.read_text(encoding="utf-8"), path):
        for option, value in re.findall(r"(--[a-z-]+)(?: ([^-\s]\S*))?", line):
            words = [option, value] if value else [option]
            if not any(options[i:i + len(words)] == words for i in range(len(options))):
                options += words
    return options


def macro_of(lines):
    """The lines of an example that its macro has: the first, a comment, makes room for its heading."""
    for mark in ("#>", "# Run with:", "# Needs:"):
        lines = without(mark, lines)
    return lines.partition("\n")[2]


def marked(mark, lines):
    """The lines behind a mark, which is followed by a blank or by nothing."""
    return [line[len(mark) + 1:] for line in lines.split("\n") if line == mark or line.startswith(mark + " ")]


def without(mark, lines):
    return "\n".join(line for line in lines.split("\n") if line != mark and not line.startswith(mark + " "))


def run_macros(path, folder, provided):
    """What each example of macros prints, by its heading; what comes before the first is a complaint about the file."""
    _, examples = examples_of(path)
    shutil.copytree(host.SOURCE / "samples", folder / "samples")
    for file in STAND_INS.get(path.stem, []):
        shutil.copy(BUILD / file, folder)
    macros = []
    if provided.macro():
        (folder / "set up.macro").write_text(provided.macro(), encoding="utf-8")
        macros = ["--macro", "set up.macro"]
    for heading, lines in examples:
        macro = folder / f"{names_of(heading, path)[0]}.example"
        macro.write_text(f'print "{heading}"\n{macro_of(lines)}\n', encoding="utf-8")
        macros += ["--macro", macro.name]
    typed = "".join(line + "\n" for _, lines in examples for line in marked("#<", lines))
    with open(folder / "printed", "wb") as printed:
        subprocess.run([*host.command(), *options_of(path), *macros], input=typed.encode(),
                       stdout=printed, stderr=subprocess.STDOUT, cwd=folder, env=provided.environment, timeout=300)
    text = (folder / "printed").read_text(encoding="utf-8")
    # The host names the place of what it complains of; a reader's file has a name of its own.
    text = re.sub(r"\b\w+\.example:(?=\d)", "FILE:", text.replace("\r\n", "\n"))
    first, *parts = re.split(r"^(?=## )", text, flags=re.M)
    return first, dict(part.split("\n", 1) for part in parts)


def run_programs(path, folder, provided):
    """The same for examples in C, each a program of its own."""
    shutil.copy(OUT / "WFINFO.dll", folder)
    first, printed = "", {}
    for number, (heading, lines) in enumerate(examples_of(path)[1]):
        source = folder / f"{number:03}.c"
        source.write_text(C_HEAD + lines, encoding="utf-8")
        built = subprocess.run([*C_COMPILER, source.name, "-o", f"{number:03}.exe", *C_LIBRARIES],
                               stderr=subprocess.PIPE, cwd=folder, text=True)
        first += built.stderr
        if built.returncode == 0:
            ran = subprocess.run(host.command(folder / f"{number:03}.exe"), stdin=subprocess.DEVNULL,
                                 stdout=subprocess.PIPE, cwd=folder, env=provided.environment,
                                 timeout=host.TIMEOUT_SECONDS)
            printed[heading] = ran.stdout.decode().replace("\r\n", "\n")
    return first, printed


def run_file(path, folder):
    """What the examples of a file print; None where what they need cannot be had."""
    with SET_UPS.get(path.stem, example_set_ups.nothing)(folder) as provided:
        if provided is None:
            return None
        return (run_programs if path.suffix == ".c" else run_macros)(path, folder, provided)


def run_files(paths, folder):
    """The same for several files, each in a folder of its own: by file, something whose result() that is."""
    def run(path):
        own = folder / path.name
        own.mkdir()
        return run_file(path, own)

    with concurrent.futures.ThreadPoolExecutor(1) as here, concurrent.futures.ThreadPoolExecutor(1) as beside:
        return {path: (beside if path.stem in OWN_DESKTOP else here).submit(run, path) for path in paths}


def with_output(mark, lines, printed):
    """The example with what it printed at its end."""
    kept = without(mark, lines.rstrip("\n")).rstrip("\n")
    return "\n".join([kept] + [f"{mark} {line}" if line else mark for line in printed.rstrip("\n").split("\n") if printed]) + "\n"


class Examples(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="examples-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def test_each_example_prints_what_stands_in_it(self):
        for path, run in run_files(example_files(), self.folder).items():
            _, mark = form_of(path)
            ran = None
            with self.subTest(path.name):
                ran = run.result()
                if ran is None:
                    self.skipTest("what these examples need could not be built")
                self.assertEqual(ran[0], "")
            for heading, lines in examples_of(path)[1] if ran else []:
                with self.subTest(heading):
                    expected = marked(mark, lines)
                    got = ran[1].get(heading, "(did not run)").rstrip("\n").split("\n")
                    difference = difflib.unified_diff(expected, got, "expected", "printed", lineterm="")
                    self.assertEqual(got, expected or [""], "\n" + "\n".join(difference))
                    self.assertNotIn("not served", "\n".join(got))


class Completeness(unittest.TestCase):
    def test_each_export_has_one_example_in_the_files_of_its_family(self):
        families = catalogue()
        self.assertEqual({path.stem for path in example_files()}, set(families))
        for family, exports in families.items():
            with self.subTest(family):
                shown = []
                for path in EXAMPLES.glob(family + ".*"):
                    shown += [name for heading, _ in examples_of(path)[1] for name in names_of(heading, path)]
                self.assertEqual(sorted(shown), sorted(exports))

    def test_the_catalogue_was_read_whole(self):
        names = [name for names in catalogue().values() for name in names]
        reference = [row["name"] for row in json.loads((OUT / "reference.json").read_text(encoding="utf-8"))]
        self.assertEqual(sorted(names), sorted(reference))

    def test_the_reference_shows_each_example(self):
        reference = {row["name"]: row for row in json.loads((OUT / "reference.json").read_text(encoding="utf-8"))}
        for path in example_files():
            head, examples = examples_of(path)
            run_with, needs = (f"{'//' if path.suffix == '.c' else '#'} {word}:" for word in ("Run with", "Needs"))
            for heading, lines in examples:
                for name in names_of(heading, path):
                    with self.subTest(name):
                        shown = without(needs, without(run_with, lines))
                        self.assertEqual(reference[name]["example"].strip("\n"), shown.strip("\n"))
                        options = " ".join(told("Run with", head, path) + told("Run with", lines, path))
                        self.assertEqual(reference[name]["run_with"],
                                         options and f"wrenfold --mail samples/mails {options} --macro FILE")
                        self.assertEqual(reference[name]["needs"],
                                         "; ".join(told("Needs", head, path) + told("Needs", lines, path)))

    def test_what_an_example_is_run_with_are_options_of_the_host(self):
        for path in example_files():
            for line in told("Run with", path.read_text(encoding="utf-8"), path):
                with self.subTest(f"{path.name}: {line}"):
                    self.assertRegex(line, r"\A(--[a-z]+( [a-z][\w./-]*)?( (?=-)|\Z))+\Z")

    def test_families_that_need_more_than_the_host_say_what(self):
        for family in [*STAND_INS, *SET_UPS]:
            for path in EXAMPLES.glob(family + ".*"):
                with self.subTest(family):
                    text = path.read_text(encoding="utf-8")
                    self.assertTrue(told("Needs", text, path) or told("Run with", text, path))

    def test_no_example_prints_the_name_of_its_file(self):
        for path in example_files():
            self.assertNotRegex(path.read_text(encoding="utf-8"), r"\.example:\d", path.name)

    def test_each_example_says_what_it_is_for_and_prints_something(self):
        for path in example_files():
            _, mark = form_of(path)
            for heading, lines in examples_of(path)[1]:
                with self.subTest(heading):
                    self.assertRegex(lines, r"\A(#|//) \w")
                    self.assertTrue(any(marked(mark, lines)))


def write(family):
    """Fills in what the examples of a family print; "" when all of them ran."""
    return "".join(write_file(path) for path in example_files() if path.stem == family)


def write_file(path):
    _, mark = form_of(path)
    with tempfile.TemporaryDirectory(prefix="examples-") as folder:
        first, printed = run_file(path, pathlib.Path(folder))
    head, examples = examples_of(path)
    blocks = [f"{heading}\n{with_output(mark, lines, printed.get(heading, ''))}" for heading, lines in examples]
    path.write_text(head.rstrip("\n") + "\n\n" + "\n".join(blocks), encoding="utf-8")
    return first


def run_alone(family):
    """The examples of a family that print something else in a host of their own: they lean on one before them."""
    leaning = []
    path = EXAMPLES / f"{family}.macro"
    for heading, lines in examples_of(path)[1]:
        with tempfile.TemporaryDirectory(prefix="examples-") as name:
            folder = pathlib.Path(name)
            one = folder / "one" / path.name
            one.parent.mkdir()
            one.write_text(f"\n{heading}\n{lines}", encoding="utf-8")
            (folder / "run").mkdir()
            first, printed = run_file(one, folder / "run")
        if first or printed.get(heading, "").rstrip("\n").split("\n") != marked("#>", lines):
            leaning.append(f"{heading}\n{first}{printed.get(heading, '')}")
    return "".join(leaning)


if __name__ == "__main__" and sys.argv[1:2] == ["--write"]:
    sys.exit(write(sys.argv[2]) or 0)

if __name__ == "__main__" and sys.argv[1:2] == ["--alone"]:
    sys.exit(run_alone(sys.argv[2]) or 0)

if __name__ == "__main__":
    unittest.main()
