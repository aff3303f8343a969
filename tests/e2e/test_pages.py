"""The macros that stand in the pages run as they stand, and print what stands behind them after "#>".

A fenced block is a macro when it is marked so, or when it is not marked and a line of it begins as a statement does.
"""
import pathlib
import re
import shutil
import sys
import tempfile
import unittest

import host

sys.path.insert(0, str(host.SOURCE / "tools"))
import make_site  # noqa: E402

# Guides have commands of their own (test_guides.py), pages in Japanese the code of the English ones (test_translations.py).
PAGES = [host.SOURCE / "README.md", *(path for path in sorted((host.SOURCE / "docs").glob("*.md"))
                                      if path.name not in make_site.GUIDES and not path.name.endswith(".ja.md"))]


def macros_of(page):
    blocks = re.findall(r"^```(\w*)\n(.*?)^```$", page.read_text(encoding="utf-8"), flags=re.M | re.S)
    return [block for language, block in blocks
            if language == "macro" or (not language and re.search(r"^(print|while|if) ", block, flags=re.M))]


def output_of(macro):
    return [line[3:] for line in macro.split("\n") if line == "#>" or line.startswith("#> ")]


class Pages(unittest.TestCase):
    maxDiff = None

    def test_macros_in_them_run_without_a_complaint_and_print_what_they_say(self):
        for page in PAGES:
            for number, macro in enumerate(macros_of(page)):
                with self.subTest(page=page.name, block=number), tempfile.TemporaryDirectory() as folder:
                    shutil.copytree(host.SOURCE / "samples", pathlib.Path(folder) / "samples")
                    (pathlib.Path(folder) / "page.macro").write_text(macro, encoding="utf-8")
                    result = host.run("--english", "--mail", "samples/mails", "--accounts", "samples/accounts.txt", "--macro", "page.macro",
                                      folder=folder)
                    self.assertEqual(result, host.Result(result.out, "", 0))
                    self.assertNotEqual(result.out, "", "it shows nothing")
                    expected = output_of(macro)
                    if expected:
                        self.assertEqual(result.out.replace("\r\n", "\n").rstrip("\n").split("\n"), expected)

    def test_pages_with_macros_are_found(self):
        self.assertLessEqual({"README.md", "dialogs.md", "files-and-csv.md", "first-macro.md", "host-text.md", "libraries.md", "macros.md"},
                             {page.name for page in PAGES if macros_of(page)})


if __name__ == "__main__":
    unittest.main()
