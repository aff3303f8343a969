"""The documentation site: built from the pages as they are, read as a browser does, from a folder and without a network."""
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import urllib.parse

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import check_site  # noqa: E402
import make_site  # noqa: E402

BROWSER = shutil.which("chromium")


def exports():
    return json.loads((make_site.OUT / "reference.json").read_text(encoding="utf-8"))


def setUpModule():
    if not (make_site.OUT / "reference.json").exists():
        raise unittest.SkipTest("the reference is not printed yet: ./dev build")


@unittest.skipUnless(make_site.can_build(), "MkDocs and its Material theme are not installed")
class Site(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.top = pathlib.Path(tempfile.mkdtemp(prefix="site-"))
        cls.addClassCleanup(shutil.rmtree, cls.top)
        make_site.build(cls.top)
        cls.pages = check_site.pages(cls.top)

    def read(self, name):
        return (self.top / name).read_text(encoding="utf-8")

    def steps_from(self, name, without=()):
        """{(page, place): how many links of the texts lead there}, not counting the navigation, which shows every page on each."""
        found, now = {(name, ""): 0}, [name]
        for step in range(1, 4):
            following = []
            for page in now:
                for target, in_text in self.pages[page].links:
                    to = check_site.resolved(page, target)
                    if in_text and to and to[0] in self.pages and to[0] not in without and to not in found:
                        found[to] = step
                        following.append(to[0])
            now = sorted(set(following))
        return found

    def test_every_link_leads_somewhere_and_nothing_is_fetched_from_elsewhere(self):
        self.assertEqual(list(check_site.faults(self.top)), [])

    def test_every_export_is_found_by_its_subject_within_three_clicks(self):
        families = make_site.families()
        # By subject alone: who knows the name looks into the list from A to Z.
        for home, without in (("index.html", ("reference/index.html",)), ("index.ja.html", ("reference/index.html", "index.html"))):
            steps = self.steps_from(home, without)
            far = [row["name"] for row in exports() if (f"reference/{families[row['family']]}.html", row["name"].lower()) not in steps]
            self.assertEqual(far, [], home)

    def test_every_export_is_found_by_its_name_within_two_clicks(self):
        families, steps = make_site.families(), self.steps_from("index.html")
        for row in exports():
            place = (f"reference/{families[row['family']]}.html", row["name"].lower())
            self.assertEqual(steps.get(place), 2, row["name"])

    def test_each_family_has_a_page_with_an_entry_for_each_of_its_exports(self):
        titles = {row["family"] for row in exports()}
        self.assertEqual(titles, set(make_site.families()))
        for title, stem in make_site.families().items():
            page = self.read(f"reference/{stem}.html")
            for row in exports():
                if row["family"] == title:
                    with self.subTest(row["name"]):
                        entry = re.search(rf'<h2 id="{row["name"].lower()}">.*?(?=<h2 |</article>)', page, re.S)[0]
                        self.assertIn("Result:", entry)
                        self.assertIn("<pre", entry)
                        self.assertEqual(bool(row["parameters"]), "<table" in entry)

    def test_the_families_are_told_in_both_languages(self):
        self.assertEqual(sorted(make_site.titles_in_order()), sorted(make_site.families()))
        for name in ("families.html", "families.ja.html"):
            linked = {check_site.resolved(name, target)[0] for target, in_text in self.pages[name].links if in_text and "reference/" in target}
            self.assertEqual({f"reference/{stem}.html" for stem in make_site.families().values()} - linked, set(), name)

    def test_the_index_of_the_search_knows_every_export_and_every_page(self):
        index = json.loads(self.read("search/index.js").removeprefix(make_site.INDEX).removesuffix(";\n"))
        places = {entry["location"] for entry in index["docs"]}
        families = make_site.families()
        self.assertEqual([row["name"] for row in exports() if f"reference/{families[row['family']]}.html#{row['name'].lower()}" not in places], [])
        self.assertEqual({name for name in self.pages} - places - {"index.html"}, set())

    def test_pages_say_their_language(self):
        for name in self.pages:
            self.assertIn(f'<html lang="{"ja" if name.endswith(".ja.html") else "en"}"', self.read(name)[:300], name)

    def test_nothing_tells_the_day_or_the_machine(self):
        self.assertEqual([path.name for path in self.top.rglob("sitemap*")], [])
        for path in self.top.rglob("*"):
            if path.is_file():
                content = path.read_bytes()
                for told in (str(SOURCE), str(self.top), tempfile.gettempdir() + "/"):
                    self.assertFalse(re.search(re.escape(told.encode()) + rb"(?=[/\w])", content) and told not in ("/", "/tmp/"),
                                     f"{path}: {told}")

    def test_nothing_that_python_reads_otherwise_is_left_of_the_markdown(self):
        for name in self.pages:
            text = re.sub(r"<(pre|code|script).*?</\1>", "", self.read(name), flags=re.S)
            for left in re.findall(r"<p>[^<]*\n(?:- |\* |\d+\. |\|).*|\]\([\w./#-]+\)|^```.*", text, re.M):
                self.fail(f"{name}: {left}")

    @unittest.skipUnless(BROWSER, "Chromium is not installed")
    def test_a_browser_finds_an_export_from_a_folder(self):
        for words, place in (("GetFolderMailCount", "reference/folders.html"), ("振り分ける", "sort-a-mailbox.ja.html")):
            with self.subTest(words), tempfile.TemporaryDirectory() as home:
                shown = subprocess.run(
                    [BROWSER, "--headless", "--no-sandbox", "--disable-gpu", f"--user-data-dir={home}", "--virtual-time-budget=60000",
                     "--dump-dom", f"{self.top.as_uri()}/index.html?q={urllib.parse.quote(words)}"], capture_output=True, text=True, timeout=120).stdout
                results = re.findall(r'class="md-search-result__link"[^>]*href="([^"]+)"|href="([^"]+)"[^>]*class="md-search-result__link"', shown)
                self.assertTrue(any(place in "".join(found) for found in results[:3]), results[:5])


class Checker(unittest.TestCase):
    def test_each_kind_of_fault_would_be_told(self):
        page = '<html><body><article><h1 id="there">x</h1>{}</article></body></html>'
        for planted, told in (('<a href="gone.html">', "gone.html leads nowhere"), ('<a href="#gone">', "#gone has no such place"),
                              ('<a href="../out.html">', "../out.html leads nowhere"),
                              ('<a href="other.html#gone">', "other.html#gone has no such place"),
                              ('<script src="https://example.com/x.js">', "https://example.com/x.js is fetched from elsewhere"),
                              ('<img src="gone.svg">', "gone.svg leads nowhere"),
                              ('<a href="https://example.com/"><a href="other.html#there"><a href="#there">', None)):
            with self.subTest(planted), tempfile.TemporaryDirectory() as folder:
                pathlib.Path(folder, "index.html").write_text(page.format(planted))
                pathlib.Path(folder, "other.html").write_text(page.format(""))
                self.assertEqual(list(check_site.faults(folder)), [f"index.html: {told}"] if told else [])


class Markdown(unittest.TestCase):
    def test_links_and_names_lead_into_the_site(self):
        links = make_site.Links()
        for text, source, name, expected, why in (
                ("[x](learn.md#a)", "docs/macros.md", "macros.md", "[x](learn.md#a)", "a page beside it"),
                ("[learn.md](learn.md#a)", "docs/macros.md", "macros.md",
                 '[Twelve macros, from "who wrote?" to "answer, file, export and sign"](learn.md#a)', "a page under the name of its file"),
                ("[x](../CHANGELOG.md)", "docs/macros.md", "macros.md", "[x](changelog.md)", "a page of the root"),
                ("[x](../out/reference.md#rootheader)", "docs/macros.md", "macros.md", "[x](reference/message_text.md#rootheader)", "an export"),
                ("[x](docs/macros.md)", "CHANGELOG.md", "changelog.md", "[x](macros.md)", "from the root"),
                ("[x](../docs/macros.md)", "out/reference.md", "reference/csv.md", "[x](../macros.md)", "from a page of a family"),
                ("[x](../samples)", "examples/README.md", "examples.md", "x", "a folder is not in the site"),
                ("`RootHeader` x", "docs/macros.md", "macros.md", "[`RootHeader`](reference/message_text.md#rootheader) x", "a name"),
                ("## `RootHeader`", "docs/macros.md", "macros.md", "## `RootHeader`", "a heading"),
                ("```\n`RootHeader` [x](gone.md)\n```\n", "docs/macros.md", "macros.md", "```\n`RootHeader` [x](gone.md)\n```\n", "code")):
            with self.subTest(why):
                self.assertEqual(links.relinked(text, source, name), expected)
        with self.assertRaisesRegex(SystemExit, "docs/gone.md"):
            links.relinked("[x](gone.md)", "docs/macros.md", "macros.md")

    def test_long_names_in_tables_break_before_a_word(self):
        page = "<td><a><code>GetLastSMIMESigned</code></a> <code>Inet_HttpQueryInfo</code> <code>MailCount</code></td><code>SetViewAreaFinder</code>"
        self.assertEqual(make_site.with_breakable_names(page),
                         "<td><a><code>Get<wbr>Last<wbr>SMIMESigned</code></a> <code>Inet_<wbr>Http<wbr>Query<wbr>Info</code> "
                         "<code>MailCount</code></td><code>SetViewAreaFinder</code>")

    def test_lists_and_macros_are_read_as_they_are_meant(self):
        self.assertEqual(make_site.with_room_for_lists("One:\n- a\n- b\n\n1. c\n2. d\n"), "One:\n\n- a\n- b\n\n1. c\n2. d\n")
        self.assertEqual(make_site.with_marked_macros("```\nprint 1\n```\n```sh\nprint 1\n```\n"), "```macro\nprint 1\n```\n```sh\nprint 1\n```\n")

    def test_lines_of_japanese_are_joined_and_code_is_not_touched(self):
        self.assertEqual(make_site.as_read_here("- これは\n  一つの文です。\nEnglish\n文\n\n```\nこれは\n二行\n```\n![a](b.svg)\n"),
                         "- これは一つの文です。\nEnglish\n文\n\n```\nこれは\n二行\n```\n[![a](b.svg)](b.svg)\n")

    def test_a_page_that_is_left_out_of_the_navigation_is_told(self):
        listed = list(make_site.pages_of(make_site.navigation({"write-a-host.md": b""})))
        self.assertEqual(len(listed), len(set(listed)))
        self.assertIn("write-a-host.md", listed)
        self.assertNotIn("from-your-program.md", listed)


if __name__ == "__main__":
    unittest.main()
