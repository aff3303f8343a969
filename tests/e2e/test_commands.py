"""The sample macros of the keyword commands, run as a user runs them: on copies of the samples, with exact output.

What each prints stands in tests/e2e/expected/NAME.txt: standard output, then a line "--- standard error ---" and
standard error.
"""
import email
import email.policy
import re
import shutil
import unittest

import host
from host import HostTest, run

MARK = "--- standard error ---\n"


class SampleMacros(HostTest):
    def setUp(self):
        super().setUp()
        shutil.copytree(host.SOURCE / "samples", self.folder / "samples")

    def run_sample(self, name, *arguments):
        result = run("--english", "--macro", f"samples/macros/{name}.macro", *arguments, folder=self.folder)
        expected = (host.SOURCE / "tests/e2e/expected" / (name + ".txt")).read_text(encoding="utf-8")
        out, mark, err = expected.partition(MARK)
        told = re.sub(r"^(\| Resent-(?:Date|Message-ID): )\S.*$", r"\1...", result.err, flags=re.M)  # of this minute
        self.assertEqual(result._replace(err=told), host.Result(out, err, 0))

    def file_text(self, name):
        return (self.folder / name).read_text(encoding="utf-8")

    def test_accounts(self):
        self.run_sample("accounts", "--accounts", "samples/accounts.txt")
        self.assertEqual(self.file_text("samples/accounts.txt"), """\
# Accounts of the samples: keys as in docs/account-record.md, "\\n" for a line end.
[example]
szMailFromSpecify = bob@example.com
szSecondPop3Server = pop.example.com
szEmailAlias = robert@example.com, bob.baker@example.com
fImapSync = 1
nAccountIcon = 44
szSignature = -- \\nBob\\nbob@example.com
fCcAlways = 1
szCcEmail = copy@example.com
szReplyTemplate = Dear sir,\\n

[archive]
szCcEmail = archive@example.com

[second]
""")

    def test_flags(self):
        self.run_sample("flags", "--mail", "samples/mails")

    def test_navigation(self):
        self.run_sample("navigation", "--mail", "samples/mails")

    def test_reply(self):
        self.run_sample("reply", "--mail", "samples/mails", "--accounts", "samples/accounts.txt")

    def test_reply_with_date(self):
        self.run_sample("reply_with_date", "--mail", "samples/mails/japanese-iso-2022-jp.eml")

    def test_answer_as_draft(self):
        arguments = ("answer_as_draft", "--mail", "samples/mails/plain-ascii.eml", "--accounts", "samples/accounts.txt", "--templates",
                     "samples/templates")
        self.run_sample(*arguments)
        # Once more, beside its first draft and another one.
        other = self.folder / "samples/mails/Drafts/0.eml"
        other.write_bytes(b"To: a@example.com\r\nSubject: another\r\nX-Unsent: 1\r\n\r\ntext\r\n")
        self.run_sample(*arguments)

    def test_mails_from_csv(self):
        self.run_sample("mails_from_csv", "--mail", "samples/mails/plain-ascii.eml", "--accounts", "samples/accounts.txt")
        drafts = [email.message_from_bytes(file.read_bytes(), policy=email.policy.default)
                  for file in sorted((self.folder / "samples/mails/Drafts").glob("*.eml"))]
        self.assertEqual([[a.addr_spec for a in draft["To"].addresses] for draft in drafts],
                         [["jane@example.com"], ["taro@example.co.jp"]])
        self.assertIn("Dear 山田 太郎,\r\n", drafts[1].get_body().get_content())
        contacts = (self.folder / "samples/data/contacts.csv").read_bytes()
        self.assertEqual([a.get_payload(decode=True) for a in drafts[0].iter_attachments()], [contacts])

    def test_templates(self):
        self.run_sample("templates", "--mail", "samples/mails", "--templates", "samples/templates")

    def test_address_book(self):
        self.run_sample("address_book", "--mail", "samples/mails/plain-ascii.eml", "--book", "samples/address-book.csv")

    def test_who_wrote(self):
        self.run_sample("who_wrote", "--mail", "samples/mails")

    def test_grep(self):
        self.run_sample("grep", "--mail", "samples/mails")

    def test_list_mails(self):
        self.run_sample("list_mails", "--mail", "samples/mails")

    def test_export_sender(self):
        self.run_sample("export_sender", "--mail", "samples/mails")
        self.assertEqual(sorted(file.name for file in (self.folder / "alice").iterdir()),
                         ["20250303-091500.eml", "20250602-090000.eml", "20250603-080000.eml"])
        self.assertEqual((self.folder / "alice/20250303-091500.eml").read_bytes(),
                         (self.folder / "samples/mails/plain-ascii.eml").read_bytes())

    def test_duplicates(self):
        self.run_sample("duplicates", "--mail", "samples/copies")

    def test_file_newsletters(self):
        self.run_sample("file_newsletters", "--mail", "samples/mails")
        mails = self.folder / "samples/mails"
        self.assertEqual(sorted(file.name for file in (mails / "lists").iterdir()), ["20250602-090000.eml", "euc-jp.eml"])
        self.assertEqual([file.name for file in (mails / "newsletter").iterdir()], ["koi8-r.eml"])
        self.assertNotIn(b"List-Id", (mails / "mailing-list.mbox").read_bytes())
        # What is filed already is not filed again.
        again = run("--mail", mails, "--macro", "samples/macros/file_newsletters.macro", folder=self.folder)
        self.assertEqual(again, host.Result("0 mails filed\n", "", 0))

    def test_import_export(self):
        self.run_sample("import_export", "--mail", "samples/mails")
        self.assertEqual(sorted(file.name for file in (self.folder / "exported").iterdir()), [
            "0001.txt", "0002.txt", "0003.txt", "0004.txt", "20250602-090000.eml", "20250602-130000.eml",
            "20250602-193000.eml", "20250603-080000.eml"])
        # The mails as they came, in an mbox twice; decoded ones as UTF-8.
        first = (self.folder / "exported/20250602-090000.eml").read_bytes()
        self.assertIn(b"\n\nFrom what I read", first)
        mbox = (self.folder / "exported.mbox").read_bytes()
        self.assertTrue(mbox.startswith(b"From alice@example.com Mon Jun  2 09:00:00 2025\r\n" + first[:60]))
        self.assertEqual(mbox.count(b"\n>From what I read"), 2)
        self.assertIn("Alice さん、こんにちは。", self.file_text("exported/0002.txt"))


class BadFiles(HostTest):
    def test_files_that_cannot_be_read_are_told_before_anything_runs(self):
        wrong_book = self.write("book.csv", "name, mail\n")
        for option, file, reason in (("--book", "none.csv", "cannot read the address book none.csv"),
                                     ("--book", wrong_book, "the address book .* does not begin with a line of columns"),
                                     ("--templates", "none", "cannot read the templates none")):
            with self.subTest(reason):
                result = self.run_macro("print 1", option, file)
                self.assertEqual((result.out, result.code), ("", 1))
                self.assertRegex(result.err, "^wrenfold: " + reason)

    def test_without_them_nothing_is_found(self):
        mail = self.write("a.eml", b"Subject: s\r\n\r\n")
        self.assert_output(self.run_macro(
            'print "[", GetTemplateName("reply", 0), LoadTemplate("sign", "x"), FindBook("a@example.com"), "]"\n'
            'print DoBookGrep("a", 0, 0), GetGrepResult(0), SwitchTemplate("x"), SwitchSign("")\n'
            'print Import("none.mbox", "auto", "", ""), Export("no/such/folder", "mbox", "encode", "", "", ""), '
            'Export_FailedCount()\n', "--mail", mail), "[]\n000\n001\n")


class Accounts(HostTest):
    LOAD = 'print LoadAccountProp("local")\n'

    def test_without_mails_or_an_option_the_accounts_lie_beside_the_program(self):
        self.assert_output(self.run_macro(self.LOAD), "0\n")

    def test_the_accounts_lie_beside_the_mails(self):
        mail = self.write("a.eml", "Subject: x\r\n\r\n")
        self.assert_output(self.run_macro('print MakeAccount("local")\n' + self.LOAD, "--mail", mail), "1\n1\n")
        self.assertEqual((self.folder / "accounts.txt").read_bytes(), b"[local]\r\n")
        self.assert_output(self.run_macro(self.LOAD, "--mail", self.folder), "1\n")

    def test_a_mail_belongs_to_the_account_that_it_is_addressed_to(self):
        mails = self.folder / "mails"
        mails.mkdir()
        for name, header in (("1", "To: Bob <bob@example.com>"), ("2", "Cc: x@example.com, AT.WORK@example.com"),
                             ("3", "Delivered-To: old@example.com"), ("4", "To: notbob@example.com.au")):
            (mails / f"{name}.eml").write_text(header + "\n\n")
        accounts = self.write("accounts.txt", "[first]\nszMailFromSpecify = me@example.com\n"
                              "[home]\nszMailFromSpecify = bob@example.com\nszEmailAlias = old@example.com\ngroup = Private\n"
                              "[work]\nszMailFromSpecify = at.work@example.com\ngroup = Office\n")
        self.assert_output(self.run_macro(
            'i = 0\nwhile SetMailIndex(i)\nprint Account(), " ", CurrentAccount(), " [", CurrentAccountGroup(), "]"\n'
            'i = i + 1\nend\n', "--mail", mails, "--accounts", accounts),
            "first home [Private]\nfirst work [Office]\nfirst home [Private]\nfirst first []\n")

    def test_without_accounts_there_is_a_local_one(self):
        mail = self.write("a.eml", "Subject: x\r\n\r\n")
        self.assert_output(self.run_macro('print Account(), CurrentAccount(), "[", CurrentAccountGroup(), "]"', "--mail", mail),
                           "locallocal[]\n")

    def test_accounts_that_cannot_be_read(self):
        result = self.run_macro(self.LOAD, "--accounts", self.folder)
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertRegex(result.err, "^wrenfold: cannot read the accounts ")

    def test_a_title_in_use_is_not_saved(self):
        accounts = self.write("accounts.txt", "[local]\n[other]\n")
        self.assert_output(self.run_macro(
            self.LOAD + 'print SetAccountProp("szTitle", "other"), SaveAccountProp(), SaveAccountProp()\n',
            "--accounts", accounts), "1\n100\n")
        self.assertEqual(accounts.read_text(), "[local]\n[other]\n")

    def test_other_accounts_are_asked_while_one_is_loaded(self):
        accounts = self.write("accounts.txt", "[local]\n[other]\nfImapSync = 1\n")
        self.assert_output(self.run_macro(
            self.LOAD + 'SetAccountProp("nAccountIcon", 7)\n'
            'print IsImapSyncAccount("other"), IsImapSyncAccount("local"), IsImapSyncAccount("LOCAL")\n'
            'SetAccountProp("fImapSync", 1)\n'
            'print IsImapSyncAccount("local"), IsImapSyncAccount("LOCAL"), IsImapSyncAccount("none")\n'
            'print GetAccountProp("nAccountIcon"), SaveAccountProp()\n',
            "--accounts", accounts), "1\n100\n110\n71\n")
        self.assertIn("nAccountIcon = 7\n", accounts.read_text())

    def test_the_long_texts_stay_while_the_title_is_changed(self):
        accounts = self.write("accounts.txt", "[local]\nszSignature = Bob\nszNewTemplate = Dear\n")
        self.assert_output(self.run_macro(
            self.LOAD + 'SetAccountProp("szTitle", "home")\n'
            'print AddString(GetAccountProp("szSignature"))\n'
            'SetAccountProp("szNewTemplate", "Hello")\n'
            'print SaveAccountProp(), LoadAccountProp("local"), LoadAccountProp("home")\n'
            'print AddString(GetAccountProp("szSignature")), " ", AddString(GetAccountProp("szNewTemplate"))\n',
            "--accounts", accounts), "1\nBob\n101\nBob Hello\n")
        self.assertEqual(accounts.read_text(), "[home]\nszSignature = Bob\nszNewTemplate = Hello\n")


class LockedSelection(HostTest):
    def test_export_writes_the_locked_mails_until_they_are_unlocked(self):
        mails = self.folder / "mails"
        mails.mkdir()
        for name in "abcd":
            (mails / f"{name}.eml").write_text(f"Subject: {name}\n\n")
        result = run("--english", "--mail", mails, "--macro", self.write(
            "test.macro", 'SetFindPack("Subject: b")\nDoGrep2("", "", 0, 0)\nSetFindPack("Subject: d")\n'
            'DoGrepAppend("", "", 0, 0)\nLockSelection()\nEnumSelection(1)\n'
            'print Export("locked", "eml-subject", "encode", "", "", "")\n'
            'UnlockSelection()\nprint Export("all", "eml-subject", "encode", "", "", "")\n'), folder=self.folder)
        self.assertEqual(result, host.Result("2\n4\n", "", 0))
        self.assertEqual(sorted(file.name for file in (self.folder / "locked").iterdir()), ["b.eml", "d.eml"])
        self.assertEqual(len(list((self.folder / "all").iterdir())), 4)

    def test_why_nothing_was_exported(self):
        mails = self.folder / "mails"
        mails.mkdir()
        (mails / "a.eml").write_text("Subject: a\n\n")
        file = self.write("file", "kept")
        result = run("--english", "--mail", mails, "--macro", self.write(
            "test.macro", 'print Export("file", "eml-subject", "encode", "", "", ""), HostReason()\n'
            'SetFindPack("Subject: none")\nDoGrep("", "", 1)\nLockSelection()\n'
            'print Export("o1", "eml-subject", "encode", "", "", ""), HostReason()\n'), folder=self.folder)
        self.assertEqual(result, host.Result("0cannot write mails into file: it is a file\n0no mail is selected to be exported\n",
                                             "", 0))
        self.assertEqual(file.read_text(), "kept")


class Writing(HostTest):
    MAIL = (b"From: Alice <alice@example.com>\r\nTo: b@example.com\r\nSubject: s\r\n"
            b"Content-Type: multipart/mixed; boundary=x\r\n\r\n--x\r\n\r\none\r\n--x\r\n"
            b"Content-Disposition: attachment; filename=a.txt\r\n\r\nA\r\n--x--\r\n")

    def test_attachments_go_along_when_asked_for(self):
        mail = self.write("a.eml", self.MAIL)
        result = self.run_macro('MakeReplyCustom("", "CopyAttach", "", 0)\nprint SendNow(), SendNow()\n', "--mail", mail)
        self.assertEqual((result.out, result.code), ("10\n", 0))
        self.assertIn("| To: Alice <alice@example.com>\n| Subject: Re: s\n", result.err)
        self.assertIn("| > one\n", result.err)
        self.assertIn("| [attachment: a.txt]\n", result.err)

    def test_an_opened_resent_mail_is_the_current_one(self):
        mail = self.write("a.eml", self.MAIL)
        self.assert_output(self.run_macro(
            'print MakeResentForward("c@example.com", "open", "log", ""), CurrentHeader("Resent-To")\n'
            'print MakeResentForward(5, "open", "", "")\n', "--mail", mail), "1c@example.com\n0\n",
            'wrenfold: kept as a draft in Drafts: "s" to b@example.com\n')

    def test_logs_show_the_mail(self):
        mail = self.write("a.eml", b"Subject: =?us-ascii?Q?s?=\r\n\r\nx\r\n")
        result = self.run_macro('print OpenLog("direct"), OpenLog("decode"), OpenLog(null)\n', "--mail", mail)
        self.assertEqual(result, host.Result(
            "111\n", "log, direct:\nSubject: =?us-ascii?Q?s?=\n\nx\n\nlog, decoded:\nSubject: s\n\nx\n\nlog:\na.eml at byte 0, "
            "32 bytes\n", 0))


if __name__ == "__main__":
    unittest.main()
