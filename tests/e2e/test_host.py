"""The small host itself: command line, macros, prompt, trace, and what it says about bad input."""
import json
import pathlib
import re
import shutil
import subprocess
import unittest

import host
from host import HostTest, run

MAIL = (b"From: Alice <alice@example.com>\r\nTo: bob@example.org\r\nSubject: First\r\n"
        b"Message-ID: <1@example.com>\r\n\r\none\r\n")
TWO_MAILS = (b"From alice@example.com Mon Jun  2 09:00:00 2025\nFrom: Alice <alice@example.com>\nSubject: First\n\none\n\n"
             b"From bob@example.org Mon Jun  2 10:00:00 2025\nFrom: Bob <bob@example.org>\nSubject: Second\n"
             b"Status: RO\nX-Status: F\nX-Priority: 1\nCc: c@example.org\n\ntwo\n")


def example_of(file, name):
    """The example of an export as examples/ has it."""
    text = (host.SOURCE / "examples" / file).read_text(encoding="utf-8")
    example = re.search(rf"^(?:// )?## {name}\b.*\n((?:(?!(?:// )?## ).*\n)*)", text, re.M)[1].rstrip("\n") + "\n"
    return re.sub(r"^(#|//) (Run with|Needs): .*\n", "", example, flags=re.M)


class CommandLine(HostTest):
    def test_tells_versions(self):
        self.assert_output(run("--version"), "wrenfold 1.0.0\nWFINFO.dll interface 18\n")

    def test_helps_on_standard_output(self):
        result = run("--help")
        self.assert_success(result)
        self.assertTrue(result.out.startswith("wrenfold --mail MAIL"))

    def test_a_wrong_command_line_is_told_in_one_line_and_ends_with_2(self):
        for arguments, reason in ((["--english"], "nothing to do: give --macro FILE or --prompt"),
                                  (["--promt"], "unknown option '--promt'; did you mean --prompt?"),
                                  (["--macro"], "--macro needs a file name behind it")):
            with self.subTest(arguments):
                result = run(*arguments)
                self.assertEqual((result.out, result.code), ("", 2))
                self.assertEqual(result.err, f"wrenfold: {reason}; wrenfold --help lists the options\n")

    def test_runs_several_macros_and_then_asks(self):
        first, second = self.write("a.macro", "x = 1\nprint x"), self.write("b.macro", "x = x + 1\nprint x")
        self.assert_output(run("--macro", first, "--macro", second, "--prompt", input="x + 1\n"), "1\n2\n3\n")

    def test_takes_japanese_paths(self):
        if not host.takes_any_path():
            self.skipTest("this locale lets Wine see ASCII file names only")
        mail = self.write("日本語 メール.eml", MAIL)
        macro = self.write("マクロ ソ表.macro", "print MailFileName()")
        self.assert_output(run("--mail", mail, "--macro", macro), "日本語 メール.eml\n")


class Output(HostTest):
    FULL = pathlib.Path("/dev/full")

    def test_that_finds_no_room_is_an_error(self):
        if not self.FULL.exists():
            self.skipTest("no device of this system is always full")
        macro = self.write("m.macro", "n = 0\nwhile n < 3\n  n = n + 1\n  print n\n  x = CountEmailList(\"a@b\")\nend")
        for arguments, told in ((["--help"], ""), (["--macro", macro], r"m\.macro:\d:\d: ")):
            with self.subTest(arguments), self.FULL.open("wb") as full:
                done = subprocess.run([*host.command(), *arguments], stdin=subprocess.DEVNULL, stdout=full,
                                      stderr=subprocess.PIPE, check=False, timeout=60)
                self.assertEqual(done.returncode, 1)
                self.assertRegex(done.stderr.decode(), told + r"standard output cannot be written: no room is left")

    def test_that_nobody_reads_any_more_ends_the_macro(self):
        macro = self.write("m.macro", "while 1\n  print \"x\"\nend")
        with subprocess.Popen([*host.command(), "--macro", macro], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as writing:
            writing.stdout.read(3)
            writing.stdout.close()
            self.assertEqual(writing.wait(timeout=60), 1)
            self.assertRegex(writing.stderr.read().decode(), r"m\.macro:\d:\d: standard output cannot be written: ")


class BadInput(HostTest):
    def assert_refused(self, result, reason):
        self.assertEqual(result, host.Result("", "wrenfold: " + reason + "\n", 1))

    def test_an_unreadable_mail_is_told_before_anything_runs(self):
        macro = self.write("m.macro", "print 1")
        result = run("--mail", self.folder / "none.eml", "--macro", macro)
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertRegex(result.err, r"^wrenfold: cannot read .*none\.eml: .*\n$")

    def test_an_unreadable_mail_in_a_folder_is_skipped_and_named(self):
        (self.folder / "mails").mkdir()
        self.write("mails/a.eml", MAIL)
        self.write("mails/b.eml", b"")
        macro = self.write("m.macro", "print RootHeader(\"Subject\")")
        result = run("--mail", self.folder / "mails", "--macro", macro)
        self.assertEqual((result.out, result.code), ("First\n", 0))
        self.assertRegex(result.err, r"^wrenfold: cannot read .*b\.eml: the file is empty \(skipped\)\n$")
        result = run("--mail", self.folder / "mails", "--strict-mails", "--macro", macro)
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertRegex(result.err, r"^wrenfold: cannot read .*b\.eml: the file is empty\n$")

    def test_a_mail_whose_path_is_too_long_is_named(self):
        # On the side of Linux nothing keeps a path short.
        folder = self.folder / "mails"
        while len(str(folder)) < 330:
            folder = folder / ("f" * 60)
        folder.mkdir(parents=True)
        (folder / "deep.eml").write_bytes(MAIL)
        self.write("mails/a.eml", MAIL)
        macro = self.write("m.macro", "print RootHeader(\"Subject\")")
        result = run("--mail", self.folder / "mails", "--macro", macro)
        self.assertEqual((result.out, result.code), ("First\n", 0))
        self.assertRegex(result.err, r"^wrenfold: cannot read .*f{60}: its name is too long, with the folders above it "
                                     r"\(skipped\)\n$")
        self.assertEqual(run("--mail", self.folder / "mails", "--strict-mails", "--macro", macro).code, 1)

    def test_an_unreadable_macro(self):
        self.assert_refused(run("--macro", "none.macro"), "cannot read the macro none.macro: no such file or folder")

    def test_a_macro_that_is_no_text_in_utf_8_says_what_to_do(self):
        for name, content, reason in (
                ("empty.macro", b"", "the macro {} is empty: write its statements into it"),
                ("blank.macro", b"\xef\xbb\xbf \r\n\n", "the macro {} is empty: write its statements into it"),
                ("marked.macro", "print 1\n".encode("utf-16"), "the macro {} is UTF-16: save it as UTF-8"),
                ("big.macro", b"\xfe\xff" + "print 1\n".encode("utf-16-be"), "the macro {} is UTF-16: save it as UTF-8"),
                ("plain.macro", "print 1\n".encode("utf-16-le"), "the macro {} is UTF-16: save it as UTF-8")):
            with self.subTest(name):
                macro = self.write(name, content)
                self.assert_refused(run("--macro", macro), reason.format(macro))
        self.assert_refused(run("--macro", self.folder), f"cannot read the macro {self.folder}: it is a folder; name the macros in it one by one")

    def test_a_number_that_an_export_cannot_take_opens_no_other_mail(self):
        macro = self.write("m.macro", "print SetMailIndex(4294967296)\nprint 2\n")
        self.assertEqual(run("--macro", macro), host.Result(
            "", f"wrenfold: {macro}:1:7: parameter 1 (index) of SetMailIndex is a number of 32 bits, and 4294967296 was given, "
            "which needs more\n", 1))
        self.assertEqual(self.run_macro("print SetMailIndex(4294967295)\n").code, 0)

    def test_lines_of_accounts_and_address_books_that_mean_nothing_are_told_and_passed_over(self):
        accounts = self.write("accounts.txt", "szSignature = early\n[me]\nszMailFromSpecify me@x.jp\nszMailFromSpecify = me@x.jp\n")
        book = self.write("book.csv", "address, name\na@x, A\n, nobody\nd@x, Doe, Dan\n")
        result = self.run_macro('print Account(), " ", AccountFrom(null), " ", FindBook("a@x"), FindBook("d@x")\n',
                                "--accounts", accounts, "--book", book)
        self.assertEqual((result.out, result.code), ("me me@x.jp A\n", 0), result.err)
        self.assertEqual(result.err,
                         f"wrenfold: {accounts}:1: it stands in front of the first [section] (skipped)\n"
                         f"wrenfold: {accounts}:3: it is neither [section] nor key = value (skipped)\n"
                         f"wrenfold: {book}:3: it has no address (skipped)\n"
                         f"wrenfold: {book}:4: it has more values than there are columns; one with a comma in it stands in double "
                         "quotes (skipped)\n")

    def test_what_is_typed_at_the_prompt_cannot_command_the_terminal(self):
        for line in ("x\u009b31m", "mails x\u009b31m", "run x\u009b31m", 'ExecAtMain("x\u009b31m")', "open \x1b[2J",
                     "print 1 \u009b"):
            with self.subTest(line):
                result = self.prompt(line)
                self.assertNotRegex(result.out + result.err, "[\x00-\x08\x0b-\x1f\x7f-\x9f]")
                self.assertIn("x9B" if "\u009b" in line else "x1B", result.out + result.err)

    def test_a_syntax_error_is_told_before_anything_runs(self):
        macro = self.write("m.macro", "print 1\nif 1\nprint (2\nend\n")
        self.assert_refused(run("--macro", macro), f"{macro}:3:7: this ( has no ) on its line")

    def test_an_unknown_export_is_told_before_anything_runs(self):
        macro = self.write("m.macro", "print 1\nprint HomeDirr()\n")
        self.assert_refused(run("--macro", macro), f"{macro}:2:7: no export 'HomeDirr'; did you mean HomeDir?")

    def test_a_wrong_number_of_parameters_is_told_before_anything_runs(self):
        macro = self.write("m.macro", "print 1\nprint SetMailIndex()\n")
        self.assert_refused(run("--macro", macro),
                            f"{macro}:2:7: SetMailIndex takes 1 parameter (index), 0 given: SetMailIndex(index)")

    def test_an_error_while_running_stops_there(self):
        macro = self.write("m.macro", "print 1\nprint SetMailIndex(\"x\")\nprint 2\n")
        self.assertEqual(run("--macro", macro), host.Result(
            "1\n", f"wrenfold: {macro}:2:7: parameter 1 (index) of SetMailIndex is a number, and a text was given: "
            "SetMailIndex(index)\n", 1))

    def copied_host(self, library):
        executable = shutil.copy(host.EXECUTABLE, self.folder / "wrenfold.exe")
        if library is not None:
            self.write("WFINFO.dll", library)
        return executable

    def test_a_missing_library(self):
        result = run("--macro", self.write("m.macro", "print 1"), executable=self.copied_host(None))
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertRegex(result.err, r"^wrenfold: cannot find .*\\WFINFO\.dll; put the library beside wrenfold\.exe\n$")

    def test_a_library_that_is_none(self):
        result = run("--macro", self.write("m.macro", "print 1"), executable=self.copied_host(b"no library at all"))
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertRegex(result.err, r"^wrenfold: .*WFINFO\.dll.*\n$")

    def test_a_library_without_the_hand_over(self):
        other = self.copied_host(host.EXECUTABLE.read_bytes())  # a module, but not ours
        result = run("--macro", self.write("m.macro", "print 1"), executable=other)
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertRegex(result.err, r"^wrenfold: .*WFINFO\.dll is no WFINFO library: the hand-over is missing\n$")


class Requests(HostTest):
    def mail(self):
        return "--mail", self.write("first.eml", MAIL)

    def mails(self):
        return "--mail", self.write("two.mbox", TWO_MAILS)

    def test_answers_what_it_knows_of_the_mail_and_its_file(self):
        self.assert_output(self.run_macro(
            'print MailFileName(), " ", MailFileOffset(), " ", GetMailSize()\n'
            'folder = CurrentFolder()\nprint folder == RootFolder(), folder + "\\\\" + MailFileName() == MailFilePath()\n',
            *self.mail()), f"first.eml 0 {len(MAIL)}\n11\n")

    def test_moves_between_mails(self):
        self.assert_output(self.run_macro(
            "print MailCount(), MailCountAll(), MailIndex(), MailFileOffset() < 60\n"
            "print NextMail(), MailIndex(), MailFileOffset() > 0\n"
            "print NextMail(), MailIndex()\nprint PrevMail(), MailIndex()\n"
            "print SetMailIndex(1), SetMailIndex(2), SetMailIndex(-1), MailIndex()\n", *self.mails()),
            "2201\n111\n01\n10\n1001\n")

    def test_knows_host_and_version(self):
        self.assert_output(self.run_macro("print WrenfoldVersion(), TamarinMailVersionBeta()\nprint HomeDir() != \"\"\n"),
                           "1000\n1\n")

    def test_without_a_mail_the_answers_are_empty(self):
        result = self.run_macro('print "[", MailFileName(), "]", MailCount(), NextMail(), SwitchMark()\nMailFileName()\n')
        self.assertEqual(result, host.Result(
            "[]000\n", f"wrenfold: {self.folder}/test.macro:1:12: no mails were given: --mail MAIL\n", 0))

    def test_an_mbox_without_a_mail_is_named(self):
        (self.folder / "none.mbox").write_bytes(b"")
        result = self.run_macro('print "[", RootHeader("To"), "]"\n', "--mail", self.folder / "none.mbox")
        self.assertEqual((result.out, result.code), ("[]\n", 0))
        self.assertRegex(result.err, r"^wrenfold: \S+/test.macro:1:12: no mails lie in .*none\.mbox\n$")

    def test_a_request_that_is_not_served_is_answered_0_and_counted(self):
        macro = f"wrenfold: {self.folder}/test.macro"
        # There are three header views.
        self.assertEqual(self.run_macro("print SwitchHeaderView(9), SwitchHeaderView(8)\nSwitchHeaderView(8)"), host.Result(
            "00\n", f"{macro}:1:7: SwitchHeaderView is not served by the small host (menu command 40053)\n"
            f"{macro}:1:28: SwitchHeaderView is not served by the small host (menu command 40052)\n"
            f"{macro}:2:1: SwitchHeaderView is not served by the small host (menu command 40052)\n"
            "wrenfold: 3 requests, 3 not served: menu command 40052 (SwitchHeaderView) 2 times, "
            "menu command 40053 (SwitchHeaderView)\n", 0))

    def test_a_mail_in_a_window_of_its_own_is_asked_there(self):
        self.assert_output(self.run_macro("print OpenMail(), MailFileName(), MailCount()", *self.mail()), "1first.eml1\n")


class Folders(HostTest):
    def folders(self):
        inner = "受信" if host.takes_any_path() else "in"
        (self.folder / "box" / inner).mkdir(parents=True)
        for name in ("a.eml", "b.eml", f"{inner}/c.eml"):
            self.write("box/" + name, MAIL)
        self.write("box/list.mbox", TWO_MAILS)
        return "--mail", self.folder / "box"

    def test_a_macro_browses_all_folders(self):
        mails = self.folders()
        result = self.run_macro(
            'more = 1\nwhile more\n  print MailFileName(), " ", MailCount(), " ", MailIndex()\n'
            '  next = GetNextFolder()\n  more = next != "" and SelectFolder(next)\nend\n'
            'print GetNextFolder(), GetPrevFolder() != ""\n'
            'print SelectFolder("list"), MailFileName()\nprint SelectFolder("no such folder"), MailFileName()\n', *mails)
        lines = result.out.splitlines()
        self.assertEqual((sorted(lines[:3]), lines[3:], result.err),
                         (["a.eml 2 0", "c.eml 1 0", "list.mbox 2 0"], ["1", "1list.mbox", "0list.mbox"], ""))

    def test_menu_commands_go_to_neighbours(self):
        mails = self.folders()
        self.assert_output(self.run_macro("print PrevFolder(), NextFolder(), NextFolder(), NextFolder()", *mails), "0110\n")

    def test_a_selection_is_walked(self):
        mails = self.folders()
        self.assert_output(self.run_macro(
            'print SelectedMailCount()\nSelectAllMail()\nprint SelectedMailCount()\nLockSelection()\ni = 0\n'
            'while EnumSelection(i)\n  print MailFileName()\n  i = i + 1\nend\n'
            'UnlockSelection()\nprint EnumSelection(0), SelectedMailCount()\n', *mails), "1\n2\na.eml\nb.eml\n01\n")


class Writing(HostTest):
    def test_a_new_mail_is_the_current_one(self):
        mail = self.write("first.eml", MAIL)
        self.assert_output(self.run_macro(
            'print NewMailType(), NewMail(), AllCurrentHeader()\nprint MailFileName()', "--mail", mail),
            "01To: \nSubject: \n\nfirst.eml\n", host.NO_SENDER)


class Notices(HostTest):
    def test_notices_and_balloons_are_printed(self):
        self.assertEqual(self.run_macro(
            'print GetNotifyWnd()\nprint ShowNotifyWnd("新着", "2 通") == GetNotifyWnd(), GetNotifyWnd() != 0\n'
            'HideNotifyWnd()\nprint GetNotifyWnd()\n'
            'print ShowBalloonMessage("a", "b"), AddBalloonMessage("a", "b"), AddBalloonMessage("a", "b", "c")\n'),
            host.Result("0\n11\n0\n111\n",
                        "notice: 新着: 2 通\nballoon: a: b\nballoon: a: b\nballoon: a: b: c\n", 0))


class Settings(HostTest):
    def test_a_macro_reads_back_what_it_set(self):
        self.assert_output(self.run_macro(
            "print CurrentPane(), ViewArea(), SortMethod(), IsThreadView()\n"
            "SelectPane(2)\nSetViewArea(3)\nSetSortMethod(4)\nSetThreadView(1)\n"
            "print CurrentPane(), ViewArea(), SortMethod(), IsThreadView()\n"), "0000\n2341\n")


class Trace(HostTest):
    def trace(self, source, *arguments):
        result = self.run_macro(source, "--trace", *arguments)
        self.assertEqual(result.code, 0, result.err)
        return result.err.replace(f"{self.folder}/test.macro", "test.macro")

    def test_shows_exports_that_ask_nobody(self):
        self.assertEqual(self.trace('x = ToUpper(LeftStr("abc", 2))\n'),
                         'trace: test.macro:1:13: LeftStr("abc", 2) -> "ab"\n'
                         'trace: test.macro:1:5: ToUpper("ab") -> "AB"\n'
                         "trace: 0 requests, 0 not served\n")

    def test_can_be_limited_to_exports_and_codes(self):
        mail = self.write("first.eml", MAIL)
        source = 'x = MailFileName()\nx = ToUpper("a")\nx = MailCount()\nx = MailFileOffset()\n'
        result = self.run_macro(source, "--trace=ToUpper,30", "--mail", mail)
        self.assertEqual(result.err.replace(f"{self.folder}/", ""),
                         'trace: test.macro:2:5: ToUpper("a") -> "A"\n'
                         "trace: MailCount: code 30 -> 1\n"
                         "trace: test.macro:3:5: MailCount() -> 1\n"
                         "trace: 1 shown of 3 requests, 0 not served\n")

    def test_is_written_as_json(self):
        mail = self.write("first.eml", MAIL)
        self.assert_output(self.run_macro('x = MailFileName()\nx = FormatDate("日\\x01\\"", "DD")\n', "--mail", mail, "--trace-json",
                                          self.folder / "trace.jsonl"), "")
        lines = [json.loads(line) for line in (self.folder / "trace.jsonl").read_text(encoding="utf-8").splitlines()]
        macro = str(self.folder / "test.macro")
        self.assertEqual(lines, [
            {"request": "MailFileName", "code": 52, "command": 0, "slots": [], "answer": "first.eml", "served": True, "reason": ""},
            {"call": "MailFileName", "file": macro, "line": 1, "column": 5, "parameters": [], "result": "first.eml", "reason": ""},
            {"call": "FormatDate", "file": macro, "line": 2, "column": 5, "parameters": ['日\x01"', "DD"], "result": "",
             "reason": '"日\\x01\\"" is no date'}])
        self.run_macro('x = Quote("日本" + "x")\nx = SelectFolder("a", null)\nx = SetMailIndex(-1)\nx = SetMailFlag("no", 1)\n'
                       "x = 1 / 0\n", "--english", "--mail", mail, "--trace-json", self.folder / "trace.jsonl")
        lines = [json.loads(line) for line in (self.folder / "trace.jsonl").read_text(encoding="utf-8").splitlines()]
        slots = {line["code"]: (line["slots"], line["answer"]) for line in lines if "request" in line}
        self.assertEqual(slots[86], (["日本x"], "> 日本x"))
        self.assertEqual(slots[33], ([-1], 0))
        self.assertIn([None, "a"], [given for given, _ in slots.values()])
        [message] = [line for line in lines if "message" in line]
        self.assertEqual(message["call"], "SetMailFlag")
        self.assertTrue(message["message"].startswith("WFINFO.DLL: Invalid flag parameter"), message)
        self.assertEqual(lines[-1], {"stopped": f"{macro}:5:7: division by 0"})
        result = self.run_macro("print 1\n", "--trace-json", self.folder / "none" / "t.jsonl")
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertIn("wrenfold: cannot write the trace ", result.err)

    def test_shows_names_codes_slots_and_answers(self):
        mail = self.write("first.eml", MAIL)
        self.assertEqual(self.trace('x = MailFileName()\nx = SetMailIndex(-1)\nNextMail()\nx = Quote("日本😀")\n'
                                    "SwitchHeaderView(9)\nSwitchHeaderView(9)\n", "--mail", mail),
                         'trace: MailFileName: code 52 -> "first.eml"\n'
                         'trace: test.macro:1:5: MailFileName() -> "first.eml"\n'
                         "trace: SetMailIndex: code 33 (-1) -> 0 (the list has no mail -1; it shows 1)\n"
                         "trace: test.macro:2:5: SetMailIndex(-1) -> 0 (the list has no mail -1; it shows 1)\n"
                         "trace: NextMail: code 12, command 40031 (40031) -> 0 (no such mail behind the open one)\n"
                         "trace: test.macro:3:1: NextMail() -> 0 (no such mail behind the open one)\n"
                         'trace: Quote: code 86 ("日本😀") -> "> 日本😀"\n'
                         'trace: test.macro:4:5: Quote("日本😀") -> "> 日本😀"\n'
                         "trace: not served: menu command 40053 (SwitchHeaderView) -> 0\n"
                         "trace: test.macro:5:1: SwitchHeaderView(9) -> 0 (menu command 40053 is not served by the small host)\n"
                         "trace: test.macro:6:1: SwitchHeaderView(9) -> 0 (menu command 40053 is not served by the small host)\n"
                         "trace: 6 requests, 2 not served: menu command 40053 (SwitchHeaderView) 2 times\n")

    def test_cuts_long_texts(self):
        mail = self.write("first.eml", MAIL.replace(b"First", b"x" * 100))
        self.assertIn('trace: RootHeader: code 1 -> "From: Alice <alice@example.com>\\r\\nTo: bob@example.org\\r\\nSubjec'
                      f'"... ({len(MAIL) + 95} bytes)\n', self.trace('x = RootHeader("Subject")', "--mail", mail))


class Prompt(HostTest):
    def test_through_a_pipe_it_writes_results_only(self):
        self.assert_output(self.prompt("1 + 2", 'x = "日本"', "x + 1", "print x", "if 1", "print 4", "end", "quit", "5"),
                           "3\n日本1\n日本\n4\n")

    def test_lists_and_opens_mails(self):
        mail = self.write("two.mbox", TWO_MAILS)
        self.assert_output(self.prompt("mails", "open 2", "MailIndex()", arguments=("--mail", mail)),
                           "open N counts these from 1, over all folders; SetMailIndex(n) the current folder's from 0\n"
                           "* 1  First (two.mbox)\n  2  Second (two.mbox)\n* 2  Second (two.mbox)\n1\n")

    def test_names_folders_as_macros_take_them(self):
        for name in ("T2/a.eml", "T2/Inbox/b.eml", "T2/lists/users/c.eml"):
            (self.folder / name).parent.mkdir(parents=True, exist_ok=True)
            self.write(name, MAIL)
        arguments = ("--mail", self.folder / "T2")
        listed = self.prompt("folders", arguments=arguments).out
        names = [line[2:line.rindex(" (")] for line in listed.splitlines()]
        self.assertEqual(names, ['"T2"', '"Inbox"', '"lists"', '"lists/users"'])
        self.assertEqual([line[-2] for line in listed.splitlines()], list("1101"))
        self.assert_output(self.prompt(*(f"SelectFolder({name})" for name in names), arguments=arguments), "1\n" * 4)
        mails = self.prompt('mails "lists\\\\users"', "mails lists/users", "mails Inbox", arguments=arguments).out.splitlines()
        self.assertEqual([line for line in mails if not line.startswith("open N")],
                         ['  3  First (c.eml) in "lists/users"'] * 2 + ['  2  First (b.eml) in "Inbox"'])

    def test_a_refused_line_does_not_let_its_block_delete_a_mail(self):
        self.write("a.eml", MAIL)
        result = self.prompt("if 1 = 2", "Delete()", "end", "if 0 then", "Delete()", "end", "MailCount()",
                             arguments=("--mail", self.folder))
        self.assertEqual(result.out, "1\n")
        self.assertEqual(result.err.count("nothing of this block was run\n"), 2)
        self.assertTrue((self.folder / "a.eml").exists())

    def test_helps(self):
        self.assert_output(self.prompt("help SetMailIndex"),
                           "SetMailIndex(index)\nOpens a mail of the list, which is then the only one selected. "
                           "1, or 0 when there is none at that place: so a loop over the list ends.\n"
                           "  index: number; place in the list as it shows, 0 for the first\n"
                           "Result: a number\n"
                           "Sends: code 33 (Frame)\n"
                           "Refused while a dialog shows.\n"
                           "The parameter list is inferred from the family and the name.\n"
                           "See also: MailCount, NextMail, MailIndex, PrevMail\n\n" +
                           example_of("mail_list.macro", "SetMailIndex"))

    def test_helps_with_the_examples_of_every_family(self):
        firsts = {}
        for path in sorted((host.SOURCE / "examples").iterdir()):
            if path.suffix in (".macro", ".c"):
                text = path.read_text(encoding="utf-8")
                firsts[path.name] = re.search(r"^(?:// )?## (\w+)", text, re.M)[1]
        printed = self.prompt(*(f"help {name}" for name in firsts.values())).out
        for file, name in firsts.items():
            self.assertIn("\n\n" + example_of(file, name), printed, (file, name))
        self.assertIn("\nRun with: wrenfold --mail samples/mails --accounts samples/accounts.txt --macro FILE\n", printed)

    def test_goes_on_after_a_mistake_and_ends_with_1(self):
        self.assertEqual(self.prompt("HomeDirr()", "1 +", "open 9", "2"), host.Result(
            "2\n", "column 1: no export 'HomeDirr'; did you mean HomeDir?\n"
            "column 4: a value is missing before the end of the line; write a number, a \"text\", a variable or a call "
            "Name(...)\nthere is no mail '9'; mails lists them\n", 1))

    def test_ends_with_the_input_even_without_a_line_end(self):
        self.assert_output(run("--prompt", input="1"), "1\n")


class Messages(HostTest):
    NUMBER_FOR_TEXT = 'print DecodeHeader(5)\n'

    def test_the_library_speaks_english_on_standard_error(self):
        self.assertEqual(self.run_macro(self.NUMBER_FOR_TEXT), host.Result(
            "\n", "WFINFO.DLL: String parameter missing or numeric parameter specified that should be string.\n"
            f"  in {self.folder}/test.macro:1:7: DecodeHeader(5)\n", 0))

    def test_the_library_speaks_japanese_on_standard_error(self):
        result = run("--macro", self.write("m.macro", self.NUMBER_FOR_TEXT), "--japanese")
        self.assertEqual(result, host.Result(
            "\n", "WFINFO.DLL: 文字列が渡されるべき所に数値が指定されたか、またはパラメータが足りません。\n"
            f"  in {self.folder}/m.macro:1:7: DecodeHeader(5)\n", 0))

    def test_log_lines_come_with_their_number(self):
        self.assertEqual(self.run_macro('print DumpSmall("ログ😀")'), host.Result("1\n", "log 7178: ログ😀\n", 0))

    def test_controls_of_a_mail_cannot_reach_the_terminal(self):
        self.assert_output(self.run_macro('print "a\\x1B[2Jb\\r\\nc\\rd"'), "a\\x1B[2Jb\nc\\rd\n")


if __name__ == "__main__":
    unittest.main()
