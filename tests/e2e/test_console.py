"""The prompt in a console: keys are typed, and the screen is read."""
import os
import re
import shutil
import subprocess
import unittest

import host
from host import HostTest
from test_mapi import BUILD, MapiTest, windows_path

TYPIST = BUILD / "doubles/console_typist.exe"


class ConsoleTest(HostTest):
    def screen(self, *steps, arguments=("--english", "--prompt"), environment=None, manner=()):
        """What the screen shows at the end, without the greeting, and the exit code. To a file: consoles keep pipes open."""
        command = " ".join(f'"{word}"' for word in (windows_path(host.EXECUTABLE), *arguments))
        with open(self.folder / "screen.txt", "wb") as out:
            subprocess.run([*host.command(TYPIST), *manner, command, *steps], cwd=self.folder, stdin=subprocess.DEVNULL, stdout=out,
                           env={**os.environ, "NO_COLOR": "1", **(environment or {})}, timeout=host.TIMEOUT_SECONDS)
        lines = (self.folder / "screen.txt").read_text(encoding="utf-8").splitlines()
        return [line for line in lines if line and not line.startswith("wrenfold 1.")]


class Prompt(ConsoleTest):
    def test_tab_completes_a_name_and_mends_its_letter_case(self):
        self.assertEqual(self.screen("wait >", "type toupp\\t\"a\")\\n", "wait A", "type quit\\n", "end"),
                         ['> ToUpper("a")', "A", "> quit", "code 0"])

    def test_tab_shows_the_names_when_there_are_several(self):
        lines = self.screen("wait >", "type RootHeader\\t", "wait RootHeader2(", "type 2(\"x\", 0)\\n", "type quit\\n", "end")
        self.assertEqual(lines, ["> RootHeader", "RootHeader(        RootHeader2(       RootHeaderUnited(",
                                 '> RootHeader2("x", 0)', "wrenfold: no mails were given: --mail MAIL", "> quit", "code 0"])

    def test_tab_takes_away_what_stands_behind_the_cursor(self):
        self.assertEqual(self.screen("wait >", "type ToUpp + 12345", "left 8", "type \\t\"a\")\\n", "wait A", "type quit\\n", "end"),
                         ['> ToUpper("a")', "A", "> quit", "code 0"])

    def test_variables_and_functions_of_before_complete_too(self):
        self.assertEqual(self.screen("wait >", "type long_name = 7\\n", "type long\\t + 1\\n", "wait 8", "type quit\\n", "end"),
                         ["> long_name = 7", "> long_name + 1", "8", "> quit", "code 0"])

    def test_tab_in_a_text_is_a_blank(self):
        self.assertEqual(self.screen("wait >", "type \"Root\\tH\"\\n", "wait Root H", "type quit\\n", "end"),
                         ['> "Root H"', "Root H", "> quit", "code 0"])

    def test_lines_before_come_back(self):
        self.assertEqual(self.screen("wait >", "type 6 * 7\\n", "wait 42", "up", "type  + 1\\n", "wait 43", "type quit\\n", "end"),
                         ["> 6 * 7", "42", "> 6 * 7 + 1", "43", "> quit", "code 0"])

    @unittest.skipUnless(host.takes_any_path(), "this locale lets no Japanese reach the typist")
    def test_japanese_is_typed_and_shown(self):
        self.assertEqual(self.screen("wait >", "type ToUpper(\"日本語 é☕x\")\\n", "wait é☕X", "type quit\\n", "end"),
                         ['> ToUpper("日本語 é☕x")', "日本語 é☕X", "> quit", "code 0"])

    def test_marks_and_messages_have_colours_unless_the_user_wants_none(self):
        for no_color, mark, message in (("", "11", "12"), ("1", None, None)):
            with self.subTest(no_color):
                lines = self.screen("wait >", "type Subject()\\n", "wait wrenfold: no", "type quit\\n", "end", "colours",
                                    environment={"NO_COLOR": no_color})
                plain = lines[0].split()[0]  # of the greeting
                self.assertEqual([line for line in lines[1:-1] if not line.strip().isdigit()],
                                 [f"{mark or plain} > Subject()", f"{message or plain} wrenfold: no mails were given: --mail MAIL",
                                  f"{mark or plain} > quit"])

    def test_a_mail_that_stands_alone_is_shown_at_the_prompt(self):
        mail = self.write("a.eml", "Subject: Minutes\n\nx\n")
        self.assertEqual(self.screen("wait >", "type Subject()\\n", "wait Minutes", "type quit\\n", "end",
                                     arguments=[windows_path(mail)]),
                         ["> Subject()", "Minutes", "> quit", "code 0"])


class Dropped(ConsoleTest):
    """Files that are dropped on the program: it has a console of its own, and no options."""

    def setUp(self):
        super().setUp()
        self.macro = self.write("x.macro", 'print "run"\nSaveStringToFile("ran.txt", "x", 0, 0)\n')

    def test_the_window_stays_until_a_key(self):
        self.assertEqual(self.screen("file ran.txt", "wait Press a key", arguments=[windows_path(self.macro)], manner=["--alone"]),
                         ["run", "Press a key to close this window.", "code runs"])
        (self.folder / "ran.txt").unlink()
        self.assertEqual(self.screen("file ran.txt", "wait Press a key", "type x", "end", arguments=[windows_path(self.macro)],
                                     manner=["--alone"])[-1], "code 0")

    def test_nobody_is_waited_for_when_it_starts_hidden_or_with_options(self):
        for manner, options in (("--hidden", []), ("--alone", ["--english"])):
            with self.subTest(manner):
                self.assertEqual(self.screen("end", arguments=[*options, windows_path(self.macro)], manner=[manner]), ["code 0"])


class DoubleClick(MapiTest):
    def start_it(self, manner):
        process = self.start(TYPIST, manner, f'"{windows_path(host.EXECUTABLE)}"', "end")
        self.wait_until(self.frame_exists, "no frame")
        return process

    def test_a_window_tells_that_mails_are_served(self):
        process = self.start_it("--alone")
        self.wait_until(lambda: "Simple MAPI" in self.window(), "no window")
        self.assertEqual(self.ask_client("close"), 0)
        process.wait(timeout=host.TIMEOUT_SECONDS)
        self.assertEqual(process.output.read_text(), "code 0\n")

    def test_a_hidden_start_shows_none(self):
        process = self.start_it("--hidden")
        self.assertEqual(self.window(), "")
        self.assertEqual(self.ask_client("close"), 0)
        process.wait(timeout=host.TIMEOUT_SECONDS)


class Alone(HostTest):
    def test_a_macro_that_stands_alone_runs(self):
        macro = self.write("x.macro", 'print "run"\n')
        self.assert_output(host.run(macro, "--english"), "run\n")

    def test_what_is_neither_mail_nor_macro_is_told(self):
        result = host.run(self.write("x.pdf", ""))
        self.assertEqual(result.code, 2)
        self.assertIn("stands alone and is neither a mail", result.err)


class WindowsPage(HostTest):
    def test_the_runs_on_it_succeed(self):
        shutil.copytree(host.SOURCE / "samples", self.folder / "samples")
        page = (host.SOURCE / "docs/windows.md").read_text(encoding="utf-8")
        self.write("hello.macro", "\ufeff" + re.search(r"^Set-Content hello.macro '(.*)' -Encoding utf8$", page, re.M)[1] + "\r\n")
        lines = re.findall(r"^small-host\\wrenfold\.exe (--mail .*?)(?: \| .*)?$", page, re.M)
        self.assertEqual(len(lines), 4)
        for line in lines:
            with self.subTest(line):
                result = host.run(*line.split(), folder=self.folder)
                self.assert_success(result)


if __name__ == "__main__":
    unittest.main()
