"""The tables of the small host's services: each code has one row that says what it answers, and the page shows it."""
import os
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import document_services as tables  # noqa: E402

FAMILY = "const ServiceFamily kFamily = {%s};"


class Page(unittest.TestCase):
    def test_the_page_shows_the_rows_of_the_services(self):
        page = (SOURCE / tables.PAGE).read_text(encoding="utf-8")
        self.assertTrue(tables.documented(page) == page, "run ./dev docs")

    def test_there_are_services(self):
        self.assertGreater(len(tables.all_services()), 100)

    def test_codes_that_carry_commands_have_no_rows_of_their_own(self):
        # A service would be asked before the command that the code carries.
        self.assertEqual([code for code in tables.CARRIERS if ("Service", code) in tables.all_services()], [])
        protocol = (SOURCE / "src/bridge/host_protocol.h").read_text(encoding="utf-8")
        carriers = re.findall(r"kCode(?:Run|Start)Command = (\d+);", protocol)
        self.assertEqual(sorted(map(int, carriers)), sorted(tables.CARRIERS))

    def test_every_family_is_in_the_list(self):
        listed = re.findall(r"&(k\w+)", (SOURCE / "host/services/services_win.cpp").read_text(encoding="utf-8"))
        families = [name for path in (SOURCE / "host/services").glob("*.cpp")
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
                self.assertEqual(tables.services_of(source + FAMILY % "kA, {}", {"kId": 99}, "here"), expected)

    def test_a_row_that_is_not_understood_is_an_error(self):
        for source, expected, why in self.WRONG:
            with self.subTest(why):
                with self.assertRaisesRegex(tables.NotUnderstood, re.escape(expected)):
                    tables.services_of(source + (FAMILY % "kA, {}" if "kFamily" not in source else ""), {}, "here")


class Senders(unittest.TestCase):
    CASES = [
        ('THIN(Str, RootFolder, HostStr, 42, (), "x")', [("RootFolder", [("Service", 42)])], "a thin export"),
        ('THIN_SUB(Int, A, Host, 8, 1, ((Text, b)), "x")', [("A", [("Service", 8)])], "one of several of a code"),
        ('COMMAND(A, Host, 40031, "x")\nSTART(B, 40024, "x")\nMENU(C, 40179, "x")',
         [("A", [("Command", 40031)]), ("B", [("Command", 40024)]), ("C", [("Command", 40179)])], "commands"),
        ('HAND(Int, A, "H1 F12:40024 M40179 any", ((Text, b, "c, d")), "x" "y")',
         [("A", [("Service", 1), ("Command", 40024), ("Command", 40179)])], "written by hand"),
    ]

    def test_the_catalogue_tells_who_sends_a_code(self):
        for source, expected, why in self.CASES:
            with self.subTest(why):
                self.assertEqual(tables.senders_of(source, "here"), expected)

    def test_a_row_that_is_not_understood_is_an_error(self):
        for source in ('WHAT(Int, A, Host, 1, (), "x")', 'HAND(Int, A, "Q1", (), "x")', "THIN"):
            with self.subTest(source), self.assertRaises(tables.NotUnderstood):
                tables.senders_of(source, "here")

    def test_many_names_are_counted(self):
        self.assertEqual(tables.named(list("abcd")), "`a`, `b`, `c`, `d`")
        self.assertEqual(tables.named(list("abcdef")), "`a`, `b`, `c` and 3 more")


if __name__ == "__main__":
    unittest.main()
