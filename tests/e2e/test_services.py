"""What the small host's services do: each macro of tests/e2e/services is run on copies of the samples.

NAME.txt beside NAME.macro holds what it prints; a first line "# options: ..." gives options beside the usual ones.
"""
import difflib
import re
import shutil
import unittest

import host
from host import HostTest, run

SCRIPTS = sorted((host.SOURCE / "tests/e2e/services").glob("*.macro"))
USUAL = ["--english", "--mail", "samples/mails", "--accounts", "samples/accounts.txt", "--templates", "samples/templates",
         "--book", "samples/address-book.csv"]


class Services(HostTest):
    def test_each_service_does_what_its_name_promises(self):
        for script in SCRIPTS:
            with self.subTest(script.stem):
                folder = self.folder / script.stem
                shutil.copytree(host.SOURCE / "samples", folder / "samples")
                options = re.match(r"# options: (.*)", script.read_text(encoding="utf-8"))
                result = run(*USUAL, *(options[1].split() if options else []), "--macro", script, folder=folder)
                # The macro's own path depends on where the repository lies.
                result = result._replace(err=result.err.replace(str(script), script.name))
                printed = result.out + (f"--- standard error ---\n{result.err}" if result.err else "")
                expected = script.with_suffix(".txt").read_text(encoding="utf-8")
                if printed != expected:
                    self.fail("\n".join(difflib.unified_diff(expected.splitlines(), printed.splitlines(), "expected",
                                                             "printed", lineterm="")))
                self.assertEqual(result.code, 0)


class Scripts(unittest.TestCase):
    def test_each_has_its_expected_output(self):
        names = {path.stem for path in (host.SOURCE / "tests/e2e/services").iterdir()}
        self.assertEqual(names, {script.stem for script in SCRIPTS})
        self.assertTrue(SCRIPTS)


if __name__ == "__main__":
    unittest.main()
