"""Windows, timers and files of the small host: macros in other windows, dialogs that are pressed, saved texts."""
import unittest

import host
from host import HostTest, run

MAIL = b"Subject: First\r\n\r\none\r\n"
DESKTOP = host.SOURCE / "samples/macros/desktop"


class OtherWindows(HostTest):
    def two_mails(self):
        mail = self.write("two.mbox", b"From a Mon Jun  2 09:00:00 2025\nSubject: First\n\none\n\n"
                                      b"From b Mon Jun  2 10:00:00 2025\nSubject: Second\n\ntwo\n")
        return "--mail", mail

    def test_a_macro_text_runs_in_the_main_window_and_answers_its_last_value(self):
        self.assert_output(self.run_macro(
            'print ExecAtMain("MailCount() * 10 + 1")\nprint ExecAtMain("x = 1")\nprint ExecAtMain("print \\"inside\\"")\n',
            *self.two_mails()), "21\n1\ninside\n1\n")

    def test_parameters_are_variables_and_the_variables_are_its_own(self):
        self.assert_output(self.run_macro(
            'x = 5\nprint ExecAtMain("x = p1 + 1\\nprint p2, p3, x\\nx", 7, "text"), x'), "text08\n85\n")

    def test_a_find_pack_is_restored_when_the_macro_that_asked_for_it_ends(self):
        self.assert_output(self.run_macro(
            'SetFindPack("a")\nAutoRestoreFindPack()\nSetFindPack("b")\n'
            'print ExecAtMain("AutoRestoreFindPack()\\nSetFindPack(\\"c\\")\\nprint GetFindPack(0, 0)"), GetFindPack(0, 0)\n',
            "--macro", self.write("next.macro", "print GetFindPack(0, 0)\n"), *self.two_mails()), "c\n1b\na\n")

    def test_a_macro_runs_in_the_window_it_is_sent_to(self):
        self.assert_output(self.run_macro(
            'OpenMail()\nprint IsWrenfoldMain()\nprint ExecAt(MainWnd(), "IsWrenfoldMain()"), IsWrenfoldMain()\n'
            'view = Bypass_FindWindow("WrenfoldOuterView", null)\nprint ExecAt(view, "IsWrenfoldMain()")\n'
            'print ExecAtMain("ExecAt(p1, \\"IsWrenfoldMain()\\") * 10 + IsWrenfoldMain()", view)\n',
            *self.two_mails()), "0\n10\n0\n1\n")

    def test_a_macro_file_runs_too(self):
        other = self.write("other.macro", "print \"other \", p1\nMailCount()\n")
        path = str(other).replace("\\", "\\\\")
        self.assert_output(self.run_macro(f'print ExecAtMain("{path}", 3)', *self.two_mails()), "other 3\n2\n")

    def test_a_macro_with_a_mistake_is_told_and_the_caller_goes_on(self):
        self.assertEqual(self.run_macro('print ExecAtMain("1 +"), ExecAtMain("NoSuchExport()"), ExecAtMain("1 / 0")'),
                         host.Result("000\n", "wrenfold: macro:1:4: a value is missing before the end of the macro; write "
                                     "a number, a \"text\", a variable or a call Name(...)\n"
                                     "wrenfold: macro:1:1: no export 'NoSuchExport'\n"
                                     "wrenfold: macro:1:3: division by 0\n", 0))

    def test_macros_that_call_themselves_end(self):
        macro = self.write("endless.macro", "")
        path = str(macro).replace("\\", "\\\\")
        macro.write_text(f'print ExecAtMain("{path}")\n')
        self.assert_output(run("--macro", macro, "--english"), "0\n" + 20 * "1\n")

    def test_a_wrong_window_is_reported(self):
        self.assertEqual(self.run_macro('print ExecAt(1, "1")'),
                         host.Result("0\n", "WFINFO.DLL: The 1st parameter of ExecAt is invalid.\n"
                                     f'  in {self.folder}/test.macro:1:7: ExecAt(1, "1")\n', 0))


class ClosedByAMessage(HostTest):
    """WM_CLOSE, from a macro or another program (MAPILogoff posts it)."""

    CLOSE = "Bypass_PostMessage({}, 16, 0, 0)\n"

    def test_the_main_window_ends_the_macro_and_what_would_come_behind_it(self):
        for rest in ("print MailCount()\n", "while 1\nend\n", "ExecAtMain(\"print 2\")\nprint 3\n"):
            with self.subTest(rest):
                result = self.run_macro("print 1\n" + self.CLOSE.format("MainWnd()") + rest, "--prompt",
                                        "--macro", self.write("next.macro", "print 4\n"))
                self.assertEqual(result, host.Result(
                    "1\n", f"wrenfold: {self.folder}/test.macro:3:1: stopped: the main window was closed\n", 130))

    def test_the_main_window_ends_the_prompt_and_keeps_what_is_written(self):
        result = self.prompt("NewMail()", 'HostSetBody("typed")', self.CLOSE.format("MainWnd()").strip(), "print 1",
                             arguments=("--mail", self.write("a.eml", MAIL)))
        self.assertNotIn("print", result.out)
        self.assertIn("wrenfold: stopped: the main window was closed\n", result.err)
        self.assertEqual(["typed" in file.read_text() for file in self.folder.glob("Drafts/*.eml")], [True])

    def test_the_outer_view_shows_no_mail_any_more_and_serves_again(self):
        self.assert_output(self.run_macro(
            "OpenMail()\nview = Bypass_FindWindow(\"WrenfoldOuterView\", null)\nprint IsWrenfoldMain()\n"
            + self.CLOSE.format("view") + "print IsWrenfoldMain(), MailCount()\nOpenMail()\nprint IsWrenfoldMain()\n",
            "--mail", self.write("a.eml", MAIL)), "0\n11\n0\n")

    def test_the_outer_view_stays_while_a_mail_is_written_in_it(self):
        result = self.run_macro(
            "NewMail()\nview = Bypass_FindWindow(\"WrenfoldOuterView\", null)\n" + self.CLOSE.format("view")
            + "print SetHeader(\"Subject\", \"kept\")\nprint CurrentHeader(\"Subject\")\n",
            "--mail", self.write("a.eml", MAIL))
        self.assertEqual(result.out.splitlines()[-1], "kept")

    def test_a_search_window_goes(self):
        self.assert_output(self.run_macro(
            'DoGrep("", "", 0)\nprint GrepWnd() != 0\n' + self.CLOSE.format("GrepWnd()") + "print GrepWnd()\n"), "1\n0\n")


class GrepWindows(HostTest):
    def test_they_open_and_close(self):
        self.assert_output(self.run_macro(
            'print GrepWnd() != 0, CloseGrepWnd(0)\nprint DoGrep2("", "", 0, 0), DoGrep2("", "", 0, 0), GrepWnd() != 0\n'
            "print IsWrenfoldGrep(), IsWrenfoldMain()\nprint CloseGrepWnd(0), GrepWnd() != 0\n"
            'print DoGrep("", "", 0), CloseGrepWnd(1), GrepWnd() != 0\n'), "00\n111\n01\n11\n110\n")

    def test_a_search_goes_on_until_messages_are_handled(self):
        self.assert_output(self.run_macro(
            'print StartDoGrep("", "", 0), IsGrepProcessing(), StopGrepFolderRealtime(), IsGrepProcessing()\n'
            'StartDoGrep("", "", 0)\nprint IsGrepProcessing(), CloseGrepWnd(1)\n'), "1110\n01\n")

    def test_during_a_search_windows_stay(self):
        self.assertEqual(self.run_macro('print StartDoGrep("", "", 0), CloseGrepWnd(0)'),
                         host.Result("10\n", "WFINFO.DLL: Cannot call CloseGrepWnd in grep processing.\n"
                                     f"  in {self.folder}/test.macro:1:31: CloseGrepWnd(0)\n", 0))

    def test_a_raised_one_acts_for_the_host_until_it_closes(self):
        self.assert_output(self.run_macro(
            'DoGrep("", "", 0)\nprint SetGrepWndTop(), IsWrenfoldGrep(), SetGrepWndTop()\n'
            "Bypass_PostMessage(GrepWnd(), 273, 2, 0)\nprint GrepWnd() != 0, IsWrenfoldGrep(), IsWrenfoldMain()\n"),
            "110\n001\n")


class Questions(HostTest):
    def ask(self, source, answers):
        return run("--macro", self.write("m.macro", source), "--english", input=answers)

    def test_file_names_come_from_standard_input(self):
        self.assert_output(self.ask('print "[", Bypass_GetOpenFileName("open?", null, null), "]"\n'
                                    'print "[", Bypass_GetSaveFileName("save?", null, null, "d.txt"), "]"\n',
                                    "日本 😀.csv\r\nother.txt\n"), "[日本 😀.csv]\n[other.txt]\n")

    def test_an_empty_line_and_the_end_of_input_choose_nothing(self):
        self.assert_output(self.ask('print "[", Bypass_GetOpenFileName(null, null, null), "]"\n'
                                    'print "[", Bypass_GetSaveFileName(null, null, null, "d.txt"), "]"\n'
                                    'print "[", Bypass_GetSaveFileName(null, null, null, null), "]"\n', "\n"),
                           "[]\n[d.txt]\n[]\n")


class Samples(HostTest):
    def sample(self, name, answers=""):
        return run("--mail", host.SOURCE / "samples/mails", "--macro", DESKTOP / name, "--english", input=answers)

    def test_confirmations_are_pressed(self):
        self.assert_output(self.sample("press_confirmation.macro"),
                           "the confirmation was answered with Yes\nstep 1: No\nstep 2: No\nstep 3: No\n")

    def test_a_table_is_printed(self):
        self.assert_output(self.sample("walk_csv.macro", str(host.SOURCE / "samples/data/contacts.csv") + "\n"),
                           "4 lines, 3 columns\n| Name | Mail | Note |\n| Doe, Jane | jane@example.com | says \"hello\" |\n"
                           "| 山田 太郎 | taro@example.co.jp |  |\n| Café Noir |  | two\nlines |\n")

    def test_a_missing_table_is_told(self):
        self.assert_output(self.sample("walk_csv.macro", "none.csv\n"), "cannot read none.csv\n")

    def test_texts_are_saved_in_four_encodings(self):
        result = self.sample("save_encodings.macro", str(self.folder / "text") + "\n")
        text, more = "日本語 and café\r\n", "again: 日本語 and café\r\n"
        # The é is no character of code page 932: the text is saved as UTF-16 instead.
        expected = [b"\xff\xfe" + (text + more).encode("utf-16-le"), b"\xff\xfe" + (text + more).encode("utf-16-le"),
                    (text + more).encode(), b"\xef\xbb\xbf" + (text + more).encode()]
        self.assert_success(result)
        for encoding, content in enumerate(expected):
            with self.subTest(encoding):
                self.assertIn(f"text{encoding}.txt: {len(content)} bytes: 日本語 and café\nagain: 日本語 and café\n", result.out)
                self.assertEqual((self.folder / f"text{encoding}.txt").read_bytes(), content)

    def test_other_windows_are_reached(self):
        result = self.sample("other_window.macro")
        self.assert_success(result)
        lines = result.out.splitlines()
        self.assertEqual(lines[0], "in the main window: 0")
        self.assertRegex(lines[1], "^mails there: [1-9][0-9]*$")
        self.assertEqual(lines[2:], ["got 40 and a text", "and to it, with parameters: 40",
                                     "a search window is open: 1, and searching: 0", "closed: 1, open: 0"])


if __name__ == "__main__":
    unittest.main()
