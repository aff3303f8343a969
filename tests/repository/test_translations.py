"""Each page in Japanese is the same as its English one: as many headings of each level, the same code, tables of the same size, and each
leads to the other."""
import pathlib
import re
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import house  # noqa: E402

JAPANESE = [name for name in house.repository_files() if re.fullmatch(r"docs/[\w-]+\.ja\.md", name)]
# What a macro author reads first.
AUTHORS_PAGES = {"index", "install", "first-macro", "learn", "macros", "families", "host-text", "text-results", "threads", "dialogs", "odd-behaviour", "answer-a-mail",
                 "sort-a-mailbox", "read-a-csv", "sign-and-verify", "fetch-a-page", "be-the-mail-client"}
FENCE = re.compile(r"^```.*?^```$", re.M | re.S)


def without_exports(page):
    """Without the tables of exports, which ./dev docs writes in English; the family pages have them."""
    return re.sub(r"<!-- exports of \w+: .*?<!-- end of exports of \w+ -->", "", page, flags=re.S)


def shape(page):
    page = without_exports(page)
    prose = FENCE.sub("", page)
    return {"headings": [len(marks) for marks in re.findall(r"^(#+) ", prose, re.M)],
            "code": FENCE.findall(page),
            "columns of tables": [line.replace("\\|", "").count("|") for line in re.findall(r"^\|.*$", prose, re.M)],
            "points": len(re.findall(r"^(?:-|\d+\.) ", prose, re.M))}


class Translations(unittest.TestCase):
    maxDiff = None

    def test_what_a_macro_author_reads_is_there_in_japanese(self):
        self.assertEqual(AUTHORS_PAGES - {name.removeprefix("docs/").removesuffix(".ja.md") for name in JAPANESE}, set())

    def test_each_has_the_shape_of_its_english_page(self):
        for name in JAPANESE:
            with self.subTest(name):
                english = house.read(name.replace(".ja.md", ".md"))
                self.assertEqual(shape(house.read(name)), shape(english))

    def test_each_is_in_japanese(self):
        for name in JAPANESE:
            with self.subTest(name):
                prose = FENCE.sub("", house.read(name))
                self.assertGreater(len(re.findall(r"[ぁ-んァ-ヶ一-龠]", prose)), 300)
                # Sentences end politely.
                plain = re.findall(r"[^\s|]{6}(?:である|のだ|した|する|ある|ない)。", re.sub(r"^\|.*$", "", prose, flags=re.M))
                self.assertEqual(plain, [])

    def test_a_page_and_its_translation_lead_to_each_other(self):
        for name in JAPANESE:
            english = name.replace(".ja.md", ".md")
            for page, other in ((name, english), (english, name)):
                with self.subTest(page):
                    head = house.read(page).split("\n## ")[0]
                    self.assertIn(f"]({pathlib.Path(other).name})", head)


if __name__ == "__main__":
    unittest.main()
