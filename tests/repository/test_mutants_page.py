"""The table of mutants of docs/reliability.md: writing it keeps what was measured elsewhere and loses what is stale."""
import os
import pathlib
import sys
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import mutants_page  # noqa: E402


def page(*rows):
    return "\n".join(["before", "", mutants_page.FIRST, "", mutants_page.HEAD, *rows, "", mutants_page.LAST, "behind", ""])


def result(text, killed, survived=0, of=None):
    return {"text": text, "count": {"killed": killed, "survived": survived}, "of": of or killed + survived}


KEPT = "| src/a/kept.cpp | aa | 8 of 20 | 3 | 1 | 2 | 1 | 1 | 75.0 % |"


class Written(unittest.TestCase):
    def test_a_row_of_which_this_folder_has_no_result_stays(self):
        made = mutants_page.written(page(KEPT), {"src/b/new.cpp": result("b", 9)},
                                    {"src/a/kept.cpp": "aaa", "src/b/new.cpp": "b"})
        self.assertEqual(made, page(KEPT, "| src/b/new.cpp | b | 9 | 9 | 0 | 0 | 0 | 0 | 100.0 % |",
                                    "| all of these | | 17 of 29 | 12 | 1 | 2 | 1 | 1 | 92.3 % |"))

    def test_a_new_result_takes_the_place_of_the_row(self):
        made = mutants_page.written(page(KEPT), {"src/a/kept.cpp": result("aaa", 19, 1)}, {"src/a/kept.cpp": "aaa"})
        self.assertEqual(mutants_page.rows_of(made), {
            "src/a/kept.cpp": ("aaa", {"killed": 19, "survived": 1, "explained": 0, "same": 0, "refused": 0}, 20)})

    def test_a_file_that_changed_since_its_run_is_told_as_not_run(self):
        made = mutants_page.written(page(KEPT), {"src/a/kept.cpp": result("an older text", 20)}, {"src/a/kept.cpp": "b"})
        self.assertEqual(mutants_page.rows_of(made), {})
        self.assertIn("\nNot run: src/a/kept.cpp.\n", made)

    def test_a_row_of_an_older_text_goes_also_without_a_result(self):
        made = mutants_page.written(page(KEPT), {}, {"src/a/kept.cpp": "b"})
        self.assertEqual(mutants_page.rows_of(made), {})
        self.assertIn("\nNot run: src/a/kept.cpp.\n", made)

    def test_a_row_of_a_file_that_is_gone_goes_too(self):
        made = mutants_page.written(page(KEPT), {}, {"src/b/new.cpp": "b"})
        self.assertNotIn("kept.cpp", made)


class Excuses(unittest.TestCase):
    def test_a_line_that_has_equals_is_named_by_its_place_among_them(self):
        text = "a = 0;\n  b;\n    a = 0;\n"
        self.assertEqual([mutants_page.placed(text, number, line) for number, line in ((1, "a = 0;"), (2, "b;"), (3, "a = 0;"))],
                         ["1 of 2: a = 0;", "b;", "2 of 2: a = 0;"])


class Page(unittest.TestCase):
    text = mutants_page.PAGE.read_text(encoding="utf-8")

    def test_it_shows_no_row_of_another_text(self):
        self.assertGreater(len(mutants_page.rows_of(self.text)), 30)
        self.assertEqual(mutants_page.written(self.text, {}, mutants_page.texts()), self.text, "./dev docs takes them out")

    def test_every_row_reaches_the_promised_score(self):
        for name, row in mutants_page.rows_of(self.text).items():
            self.assertGreaterEqual(mutants_page.score(row.count), 90, name)


if __name__ == "__main__":
    unittest.main()
