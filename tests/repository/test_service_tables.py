"""What a host is asked, as the page for host authors has it: each code has its block, its answer, its exports, and what the
small host does with it."""
import os
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import catalogue_rows as catalogue  # noqa: E402
import document_protocol as protocol  # noqa: E402
import service_rows as services  # noqa: E402

FAMILY = "const ServiceFamily kFamily = {%s};"


class Page(unittest.TestCase):
    page = (SOURCE / protocol.PAGE).read_text(encoding="utf-8")

    def test_the_page_shows_the_catalogue_and_the_services(self):
        self.assertTrue(protocol.documented(self.page) == self.page, "run ./dev docs")

    def test_each_text_answer_tells_how_long_it_is_needed(self):
        answers = re.findall(r"^Answer \(text.*$", self.page, re.M)
        self.assertGreater(len(answers), 100)
        self.assertEqual([line for line in answers if ("handed on)" in line) == (" at once" in line)], [])

    def test_the_page_for_host_authors_lists_what_passes_during_a_dialog(self):
        page = (SOURCE / "docs/write-a-host.md").read_text(encoding="utf-8")
        rows = re.search(r"^## While a dialog shows$(.*?)^## ", page, re.M | re.S)[1]
        listed = [int(code) for row in re.findall(r"^\| ([\d, ]+) \|", rows, re.M) for code in row.split(",")]
        self.assertEqual(sorted(listed), sorted(catalogue.allowed_during_dialog()))

    def test_the_page_for_host_authors_has_each_member_of_the_shared_blocks(self):
        page = (SOURCE / "docs/write-a-host.md").read_text(encoding="utf-8")
        header = (SOURCE / "src/mapi/host_blocks.h").read_text(encoding="utf-8")
        members = re.findall(r"offsetof\(\w+, (\w+)\) == (\d+)", header)
        self.assertGreater(len(members), 10)
        listed = re.findall(r"^\| (\d+) \| `(\w+)` \|", page.split("## Mails of other programs")[1], re.M)
        self.assertEqual(sorted((member, offset) for offset, member in listed), sorted(members))

    def test_no_request_of_the_golden_list_is_missing(self):
        golden = (SOURCE / "tests/golden/requests.txt").read_text(encoding="utf-8")
        wanted = set()
        for line in golden.splitlines():
            if line.startswith("#") or line.endswith("- -"):
                continue
            _, way, code = line.split()
            code, _, command = code.partition(":")
            wanted |= {f"Menu command {code}"} if way == "M" else {f"Code {code}"}
            wanted |= {f"Menu command {command}"} if command else set()
        self.assertGreater(len(wanted), 350)
        headings = re.findall(r"^### (.*)$", self.page, re.M)
        self.assertEqual(sorted(wanted - set(headings)), [])
        self.assertEqual(len(headings), len(set(headings)))

    def test_every_export_that_sends_stands_in_a_section(self):
        missing = [row.name for row in catalogue.all_rows() if row.requests and f"`{row.name}`" not in self.page]
        self.assertEqual(missing, [])

    def test_there_are_services(self):
        self.assertGreater(len(services.all_services()), 100)

    def test_codes_that_carry_commands_have_no_rows_of_their_own(self):
        # A service would be asked before the command that the code carries.
        self.assertEqual([code for code in catalogue.CARRIERS if ("Service", code) in services.all_services()], [])
        header = (SOURCE / "src/bridge/host_protocol.h").read_text(encoding="utf-8")
        carriers = re.findall(r"kCode(?:Run|Start)Command = (\d+);", header)
        self.assertEqual(sorted(map(int, carriers)), sorted(catalogue.CARRIERS))

    def test_every_family_is_in_the_list(self):
        listed = re.findall(r"&(k\w+)", (SOURCE / "host/services/services_win.cpp").read_text(encoding="utf-8"))
        families = [name for path in (SOURCE / "host/services").rglob("*.cpp")
                    for name in re.findall(r"^const ServiceFamily (\w+) =", path.read_text(encoding="utf-8"), re.M)]
        self.assertEqual(sorted(listed), sorted(families))


class Rows(unittest.TestCase):
    CASES = [
        ('constexpr Service kA[] = {{7, "T", F, "x"}};', [("Service", 7, "x")], "a plain row"),
        ('constexpr Service kA[] = {{7, nullptr, G<&A<1, 2>::b>, "x"},};', [("Service", 7, "x")], "commas in a template"),
        ('constexpr Service kA[] = {{7, "T", F, // said {here}\n "a, \\"b\\" "\n "{c}"}};', [("Service", 7, 'a, "b" {c}')],
         "a doc in pieces, with what looks like brackets"),
        ('constexpr Command kA[] = {{kId, F, "x"}, {40002, F, "y"}};', [("Command", 99, "x"), ("Command", 40002, "y")],
         "a name for a number"),
        ('constexpr Service kA[] = {{8, "", [](Request& r) -> Answer { return F(r, 1); }, "x"}};', [("Service", 8, "x")],
         "a handler that stands in the row"),
    ]
    WRONG = [
        ('constexpr Service kA[] = {{7, "T", F}};', "3 of 4 members", "no doc"),
        ('constexpr Command kA[] = {{40002, F}};', "2 of 3 members", "no doc of a command"),
        ('constexpr Service kA[] = {{7, "T", F, ""}};', "empty doc", "nothing said"),
        ('constexpr Service kA[] = {{7, "T", F, "It is so."}};', "full stop", "a sentence"),
        ('constexpr Service kA[] = {{7, "T", F, "a | b"}};', "without |", "would end a column"),
        ('constexpr Service kA[] = {{7, "T", F, kDoc}};', "kDoc is no text", "a doc elsewhere"),
        ('constexpr Service kA[] = {{kNo, "T", F, "x"}};', "kNo is not known", "a number elsewhere"),
        ('constexpr Service kA[] = {ROW(7, F, "x")};', "is no row", "a row made by a macro"),
        ('constexpr Service kA[] = {{7, "T", F, "x"};', "no } behind", "a bracket that is not closed"),
        ('constexpr auto kA = MakeRows();' + FAMILY % "kA, {}", "kA of kFamily is no table", "a table of another kind"),
    ]

    def test_rows_are_read_as_the_compiler_reads_them(self):
        for source, expected, why in self.CASES:
            with self.subTest(why):
                self.assertEqual(services.services_of(source + FAMILY % "kA, {}", {"kId": 99}, "here"), expected)

    def test_a_row_that_is_not_understood_is_an_error(self):
        for source, expected, why in self.WRONG:
            with self.subTest(why):
                with self.assertRaisesRegex(services.NotUnderstood, re.escape(expected)):
                    services.services_of(source + (FAMILY % "kA, {}" if "kFamily" not in source else ""), {}, "here")


class Catalogue(unittest.TestCase):
    H = catalogue.Request
    CASES = [
        ('THIN(Str, A, Host, 42, (), "x")', [H("H", 42, 0)], (None, (), "Text"), "a thin export"),
        ('THIN_SUB(Int, A, Frame, 8, 1, ((Text, b, "c, d")), "x")', [H("F", 8, 0)], (1, (("Text", "b", "c, d"),), "Number"),
         "one of several of a code"),
        ('COMMAND(A, Host, 40031, "x")', [H("H", 12, 40031)], None, "a command that is waited for"),
        ('START(A, 40024, "x")', [H("F", 57, 40024)], None, "a command that is started"),
        ('MENU(A, 40179, "x")', [H("M", 0, 40179)], None, "a command of the menu"),
        ('HAND(Int, A, "H1 F12:40024 M40179 any", ((Text, b, "c, d")), "x" "y")',
         [H("H", 1, 0), H("F", 12, 40024), H("M", 0, 40179)], None, "written by hand"),
    ]

    def test_rows_tell_what_is_sent_and_what_it_carries(self):
        for source, requests, form, why in self.CASES:
            with self.subTest(why):
                row, = catalogue.rows_of(source, "here")
                self.assertEqual((row.name, list(row.requests)), ("A", requests))
                self.assertEqual(row.form and (row.form.first, row.form.slots, row.form.answer), form)

    def test_the_pair_that_names_a_folder_is_two_slots(self):
        row, = catalogue.rows_of('THIN(Int, A, Frame, 8, (WFINFO_FOLDER_PAIR, (Int32, n)), "x")', "here")
        self.assertEqual([slot[:2] for slot in row.form.slots], [("OptText", "folder1"), ("OptText", "folder2"), ("Int32", "n")])

    def test_a_row_that_is_not_understood_is_an_error(self):
        for source in ('WHAT(Int, A, Host, 1, (), "x")', 'HAND(Int, A, "Q1", (), "x")', "THIN",
                       'THIN(Int, A, Host, 1, ((Text)), "x")'):
            with self.subTest(source), self.assertRaises(services.NotUnderstood):
                catalogue.rows_of(source, "here")

    def test_the_list_of_codes_is_read(self):
        source = ('CODE(3, Number, ((Text, a), (Int32, b, "c")), "d") CARRIED(12, 40019, Text, (), "e")'
                  'CODE_OF_TEXT(297, Text, ((Text, t)), "f")')
        forms = catalogue.hand_forms_of(source, "here")
        self.assertEqual(forms["Service", 3].slots, (("Text", "a", ""), ("Int32", "b", "c")))
        self.assertEqual((forms["Command", 40019].answer, forms["Command", 40019].doc), ("Text", "e"))
        self.assertTrue(forms["Service", 297].text_itself)
        with self.assertRaisesRegex(services.NotUnderstood, "Bits is no answer"):
            catalogue.hand_forms_of('CODE(3, Bits, (), "d")', "here")

    def test_a_code_whose_block_nobody_tells_is_an_error(self):
        rows = catalogue.rows_of('HAND(Int, A, "H1", (), "x")', "here")
        with self.assertRaisesRegex(services.NotUnderstood, "does not tell its block"):
            protocol.forms_of(1, rows, {})


if __name__ == "__main__":
    unittest.main()
