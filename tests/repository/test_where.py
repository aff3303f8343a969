"""./dev where finds all that belongs to an export, and to a code."""
import os
import pathlib
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import catalogue_rows  # noqa: E402
import service_rows  # noqa: E402
import where  # noqa: E402


class Where(unittest.TestCase):
    def test_finds_code_tests_example_and_page_of_every_export(self):
        rows = catalogue_rows.all_rows()
        self.assertGreater(len(rows), 600)
        for row in rows:
            export = where.Export(row)
            with self.subTest(row.name):
                self.assertEqual((len(export.code()), len(export.example())), (1, 1))
                self.assertGreater(len(export.tests()), 1 if export.requests else 0)
                if export.family != "library":  # of these the reference says all
                    self.assertGreater(len(export.page()), 0)

    def test_finds_what_serves_every_code(self):
        served = service_rows.all_services()
        self.assertEqual({key: len(where.served(*key)) for key in served}, {key: 1 for key in served})
        for row in catalogue_rows.all_rows():
            self.assertEqual([request for request in row.requests if not where.served(*request.key())], [], row.name)

    def test_helps_with_a_wrong_name(self):
        def answer(*words):
            done = subprocess.run([sys.executable, str(SOURCE / "tools/where.py"), *words], capture_output=True, text=True)
            return done.returncode, done.stdout + done.stderr

        self.assertIn("host/services/list/mail_list_win.cpp", answer("89")[1])
        self.assertTrue(answer("isunread")[1].startswith("IsUnread, of the family "))
        self.assertEqual(answer("IsUnred"), (1, "dev where: no export IsUnred; did you mean IsUnread, IsMarked, SwitchUnread?\n"))
        self.assertEqual(answer("99999")[0], 1)
        self.assertEqual(answer()[0], 1)


if __name__ == "__main__":
    unittest.main()
