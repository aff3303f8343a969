"""The macro language as a user meets it: what is told before a run, Ctrl+C, failures with their reasons."""
import re
import unittest

from host import HostTest, Result, run

MAIL = b"From: Alice <alice@example.com>\r\nSubject: First\r\n\r\none\r\n"


class BeforeTheRun(HostTest):
    def test_a_name_that_nothing_is_assigned_to_is_told(self):
        macro = self.write("m.macro", "print 1\nsubject = 2\nif 0\n  print subjct\nend\n")
        self.assertEqual(run("--macro", macro), Result(
            "", f"wrenfold: {macro}:4:9: no variable 'subjct': nothing is assigned to it; did you mean subject?\n", 1))

    def test_functions_and_variables_of_earlier_macros_are_known(self):
        first = self.write("a.macro", "x = 2\nfunction twice(n)\n  return n * x\nend\n")
        second = self.write("b.macro", "print twice(4)\n")
        self.assert_output(run("--macro", first, "--macro", second, "--prompt", input="twice(5)\n"), "8\n10\n")
        self.assertEqual(run("--macro", second, "--macro", first).err,
                         f"wrenfold: {second}:1:7: no export 'twice'\n")

    def test_a_mistyped_function_of_the_language_or_the_host_is_proposed(self):
        for call, near in (("splitt(1, 2)", "split"), ("HostReasn()", "HostReason"), ("RootHeder(1)", "RootHeader")):
            with self.subTest(call):
                self.assertIn(near, self.run_macro(f"x = {call}\n").err)

    def test_the_prompt_checks_each_statement(self):
        self.assertEqual(self.prompt("x = 1", "print x, y", "function f(a)", "return a + x", "end", "f(1)", "f()"), Result(
            "2\n", "column 10: no variable 'y': nothing is assigned to it; did you mean x?\n"
            "column 1: f takes 1 parameter, 0 given\n", 1))

    def test_an_export_takes_no_list(self):
        macro = self.write("m.macro", "x = []\nprint ToUpper(x)\n")
        self.assertEqual(run("--macro", macro).err, f"wrenfold: {macro}:2:7: parameter 1 (text) of ToUpper is a text, and a "
                         "list was given: ToUpper(text)\n")

    def test_a_problem_in_a_function_names_its_file(self):
        first, second = self.write("a.macro", "function f(n)\n  return 1 / n\nend\n"), self.write("b.macro", "\n\nf(0)\n")
        self.assertEqual(run("--macro", first, "--macro", second).err, f"wrenfold: {first}:2:12: division by 0\n")


class CtrlC(HostTest):
    # A console of its own, so that Ctrl+C reaches nobody else.
    PRESS = ('print "begun"\nlibrary = LoadDll("kernel32.dll")\n'
             'DllFunc(library, "FreeConsole", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)\n'
             'DllFunc(library, "AllocConsole", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)\n'
             'DllFunc(library, "GenerateConsoleCtrlEvent", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)\n')

    def test_it_ends_a_macro_with_file_line_and_130(self):
        for loop in ("while 1\nend\n", "while 1\n  x = 1\nend\n", "for i in 0x7FFFFFFFFFFFFFFF\nend\n"):
            with self.subTest(loop):
                result = self.run_macro(self.PRESS + loop + 'print "never"\n')
                self.assertEqual((result.out, result.code), ("begun\n", 130))
                self.assertRegex(result.err, r"^wrenfold: .*test\.macro:[67]:\d: stopped by Ctrl\+C\n$")

    def test_at_the_prompt_it_ends_the_statement_alone(self):
        result = self.prompt("if 1", *self.PRESS.splitlines(), "while 1", "end", "end", "1 + 1")
        self.assertEqual((result.out, result.code), ("begun\n2\n", 1))
        self.assertRegex(result.err, r"^line [67], column \d: stopped by Ctrl\+C\n$")


class Reasons(HostTest):
    def reasons(self, source, *arguments):
        """What a macro prints, and the library's messages with the calls that they are about."""
        result = self.run_macro(source, *arguments)
        return result.out, result.err.replace(f"{self.folder}/test.macro", "test.macro")

    def mail(self):
        return "--mail", self.write("a.eml", MAIL)

    def test_a_request_that_failed_says_why(self):
        # The state of mails is asked of the open mail; without one, that is the reason.
        out, err = self.reasons("x = MailFileName()\nprint HostReason()\nx = ToUpper(\"a\")\nprint HostReason()\n")
        self.assertEqual((out, err), ("no mail is open\n\n", "wrenfold: test.macro:1:5: no mails were given: --mail MAIL\n"))

    def test_a_call_that_is_not_served_says_so(self):
        # There are three header views.
        out, err = self.reasons("for i in 3\n  SwitchHeaderView(9)\nend\nprint HostReason()\n", *self.mail())
        self.assertEqual(out, "menu command 40053 is not served by the small host\n")
        self.assertEqual(err, "wrenfold: test.macro:2:3: SwitchHeaderView is not served by the small host (menu command 40053)\n"
                         "wrenfold: 3 requests, 3 not served: menu command 40053 (SwitchHeaderView) 3 times\n")

    def test_a_message_of_the_library_shows_the_call(self):
        out, err = self.reasons('x = "x" + DecodeHeader(5)\nprint HostReason()\n')
        self.assertEqual(out, "String parameter missing or numeric parameter specified that should be string.\n")
        self.assertEqual(err, "WFINFO.DLL: String parameter missing or numeric parameter specified that should be string.\n"
                         "  in test.macro:1:11: DecodeHeader(5)\n")

    def test_a_message_of_two_lines_is_a_reason_of_one(self):
        out, err = self.reasons('x = SetMailFlag("none", 1)\nprint HostReason()\n', *self.mail())
        self.assertEqual(out, 'Invalid flag parameter in GetMailFlag series function. flag name = none; name cannot be "none"; '
                         "it takes: one of unread, reply, forward, mark, hot, altered, send, sent, sentunknown, orikaeshi, "
                         "remotemail_wantdownload, remotemail_wantdelete, letter case counts; the other words of "
                         "GetMailFlag can only be read\n")
        self.assertIn("WFINFO.DLL: Invalid flag parameter in GetMailFlag series function.\nflag name = none\n  in ", err)

    def test_a_text_that_is_no_date_is_named(self):
        out, err = self.reasons(
            'd = "Tue, 5 Mar 2024 09:07:03 +0900"\n'
            'for call in 4\n'
            '  if call == 0\n    x = FormatDate("31st of never", "DD")\n'
            '  else if call == 1\n    x = SubtractDate(d, "soon", null)\n'
            '  else if call == 2\n    x = SubtractDate(d, d, null)\n'
            '  else\n    x = FormatDate(d, "YYYY")\n  end\n'
            '  print x, " [", HostReason(), "]"\nend\n')
        self.assertEqual((out, err), (' ["31st of never" is no date]\n0 ["soon" is no date]\n0 []\n2024 []\n', ""))

    def test_null_says_which_call_gave_it(self):
        out, err = self.reasons('x = UnDoubleQuote(null)\nprint HostReason()\nprint "" + x\n')
        self.assertIn("null (UnDoubleQuote gave null", err)
        out, err = self.reasons('x = FreeDll(LoadDll("kernel32.dll"))\ny = Inet_Read()\nprint "" + y\n')
        self.assertIn("  in test.macro:2:5: Inet_Read()\n", err)
        self.assertRegex(err, r"wrenfold: test.macro:3:10: null \(Inet_Read gave null: .*\) cannot be joined to a text; write \"\"\n")

    def test_a_function_of_the_host_says_why_and_leaves_no_old_reason(self):
        out, err = self.reasons('print HostSetBody("x"), " ", HostReason(), " ", HostReason()\n'
                                'print HostAddress("", "a@example.com"), "[", HostReason(), "]"\n')
        self.assertEqual((out, err), ("0 no mail is open or being written no mail is open or being written\n"
                                      "a@example.com[]\n", ""))

    def test_strict_goes_on_where_a_walk_ends(self):
        (self.folder / "mails/Inner").mkdir(parents=True)
        for name in ("mails/a.eml", "mails/b.eml", "mails/Inner/c.eml"):
            self.write(name, MAIL)
        for walk, steps, reason in (
                ("NextMail()", 1, "no such mail behind the open one"), ("PrevMail()", 0, "no such mail before the open one"),
                ("SetMailIndex(n)", 2, "the list has no mail 2; it shows 2"), ("NextFolder()", 1, "there is no folder that way"),
                ("EnumSelection(n)", 0, "no mail 0 is locked; LockSelection took 0"),
                ("NextUnreadCustom(\"\")", 1, "no such mail on the way"), ("OpenReplyMail()", 0, "the open mail has no Message-ID"),
                ("SelectRecvMail(n)", 0, "no received mail 0; there are 0")):
            with self.subTest(walk):
                self.assert_output(self.run_macro(f"n = 0\nwhile {walk} and n < 9\n  n = n + 1\nend\nr = HostReason()\nprint n, ' ', r\n"
                                                  .replace("'", '"'), "--strict", "--mail", self.folder / "mails"),
                                   f"{steps} {reason}\n")
        result = self.run_macro("SetMailIndex(-1)\n", "--strict", "--mail", self.folder / "mails")
        self.assertIn("SetMailIndex: the list has no mail -1; it shows 2 (--strict)", result.err)

    def test_a_search_in_a_folder_that_is_not_there_fails(self):
        searches = 'print DoGrep("none", null, 0), " ", HostReason(), GrepWnd()\nprint DoGrep("none", null, 1), DoGrep("", null, 0)\n'
        self.assert_output(self.run_macro(searches, *self.mail()), '0 no folder "none"0\n11\n')
        result = self.run_macro(searches, "--strict", *self.mail())
        self.assertIn('DoGrep: no folder "none" (--strict)', result.err)

    def test_strict_stops_there(self):
        for source, reason in (("SwitchHeaderView(9)\n", "SwitchHeaderView: menu command 40053 is not served by the small host"),
                               ("print MailFileName()\n", "MailFileName: no mail is open"),
                               ('HostSetBody("x")\n', "HostSetBody: no mail is open or being written"),
                               ("DecodeHeader(5)\n", "DecodeHeader: String parameter missing or numeric parameter specified "
                                                     "that should be string.")):
            with self.subTest(source):
                result = self.run_macro(source + 'print "never"\n', "--strict")
                self.assertEqual((result.out, result.code), ("", 1))
                self.assertRegex(result.err, rf"wrenfold: .*test.macro:1:\d: {re.escape(reason)} \(--strict\)\n")
        self.assert_output(self.run_macro('print MailFileName()\n', "--strict", *self.mail()), "a.eml\n")


if __name__ == "__main__":
    unittest.main()
