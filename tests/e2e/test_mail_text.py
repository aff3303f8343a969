"""Macros read and write real mails through the library and the small host."""
import unittest

import host
from host import HostTest, run, sample


class Reading(HostTest):
    def test_headers_and_body_of_a_plain_mail(self):
        self.assert_output(self.run_macro(
            'print RootHeader("Subject"), "|", RootHeader("subject:"), "|", RootHeader("None"), "|"\n'
            'print Subject(), "|", From()\nprint CountRootHeader("Received"), CountRootHeader("None")\n'
            'print RootHeader2("Received", 0)\nprint "[", RootHeader2("Received", 1), "]"\n'
            'print RootBodyLineCount(), ": ", RootBodyLine(0), "|", RootBodyLine(13), "|", RootBodyLine(99), "|"\n',
            "--mail", sample("plain-ascii.eml")),
            "Minutes of the March meeting|Minutes of the March meeting||\n"
            "Minutes of the March meeting|Alice Baker <alice@example.com>\n10\n"
            "from mail.example.com (mail.example.com [192.0.2.10])\n\tby mx.example.org with ESMTPS id 4XyZ12abcD\n"
            "\tfor <bob@example.org>; Mon, 3 Mar 2025 09:15:02 +0900\n[]\n"
            "14: Hello Bob,|alice@example.com||\n")

    def test_japanese_and_characters_outside_its_code_page_come_out_as_they_are(self):
        for mail, subject in (("japanese-iso-2022-jp.eml", "来週の打ち合わせについて（資料を添えます）"),
                              ("japanese-shift-jis.eml", "ﾃｽﾄ送信のお知らせ ①②③"),
                              ("beyond-shift-jis.eml", "Café ☕ 회의 日程 😀")):
            with self.subTest(mail):
                self.assert_output(self.run_macro(
                    f'print RootHeader("Subject"), RootHeader("Subject") == "{subject}"', "--mail", sample(mail)),
                    subject + "1\n")

    def test_a_header_longer_than_the_short_buffer(self):
        result = self.run_macro('print RootHeader("References")', "--mail", sample("folded-and-repeated.eml"))
        self.assert_success(result)
        self.assertGreater(len(result.out.replace("\n", "\r\n")), 8191)

    def test_the_current_mail_is_read_through_the_host(self):
        self.assert_output(self.run_macro(
            'print CurrentHeader("Subject"), CountCurrentHeader("Received"), CountCurrentHeader("None")\n'
            'print CurrentHeader2("Received", 1) == "", CurrentHeader("References") == ""',
            "--mail", sample("plain-ascii.eml")), "Minutes of the March meeting10\n11\n")

    def test_a_long_header_of_the_current_mail_is_the_same_as_the_root_mails(self):
        self.assert_output(self.run_macro(
            'print CurrentHeader("References") == RootHeader("References"), CurrentHeader("References") != ""',
            "--mail", sample("folded-and-repeated.eml")), "11\n")

    def test_state_flags(self):
        mail = self.write("m.mbox", b"From a@b Mon Jun  2 09:00:00 2025\nFrom: a@b\nSubject: s\nStatus: RO\nX-Status: F\n"
                                    b"X-Priority: 1\nCc: c@d\n\nx\n")
        self.assert_output(self.run_macro(
            'print IsUnread(), IsMarked(), GetMailFlag("cc"), GetMailFlag("priority1"), GetMailFlag("attach"), IsOrikaeshi()\n'
            'SwitchUnread()\nSwitchMark()\nSetMailFlag("reply", 1)\nSetOrikaeshi(0)\n'
            'print IsUnread(), IsMarked(), GetMailFlag("reply"), IsOrikaeshi(), IsRootOrikaeshi()\n', "--mail", mail),
            "011101\n10100\n")


class Quoting(HostTest):
    def test_quotes_and_folds(self):
        self.assert_output(self.run_macro(
            'print Quote("a\\nb")\nprint Quote2("a\\nb", "| ")\nprint QuoteOE("a")\n'
            'print QuoteWidth("' + "x" * 45 + '", 10)\nprint QuotedRootBody()\n', "--mail", sample("missing-headers.eml")),
            "> a\n> b\n| a\n| b\n> a\n> " + "x" * 40 + "\n> " + "x" * 5 + "\n" + self.quoted_body())

    def quoted_body(self):
        text = sample("missing-headers.eml").read_bytes().decode().replace("\r\n", "\n")
        body = text.split("\n\n", 1)[1]
        return "".join(f"> {line}\n" for line in body.removesuffix("\n").split("\n"))


class Writing(HostTest):
    def test_header_editing_of_a_new_mail(self):
        self.assert_output(self.run_macro(
            'NewMail()\nSetHeader("To", "a@b")\nAddHeader("X", "1")\nAddHeader("X", "2")\nAddHeader("X", "3")\n'
            'print CountCurrentHeader("X"), CurrentHeader2("X", 2), CurrentHeaderUnited("X", "+")\n'
            'SetHeaderUnited("X", "日本")\nprint CountCurrentHeader("X"), CurrentHeader("X")\n'
            'SetOrDeleteHeader("X", "")\nAddHeaderIf("Y", "")\nDeleteHeader("Subject")\nprint AllCurrentHeader()\n',
            "--mail", sample("plain-ascii.eml"), "--drafts", self.folder / "Drafts"), "331+2+3\n1日本\nTo: a@b\n\n",
            host.NO_SENDER + 'wrenfold: kept as a draft in Drafts: "" to a@b\n')

    def test_a_name_that_other_programs_cannot_read_is_no_header(self):
        mail = self.write("m.eml", b"Subject: old\r\nA B: x\r\n\r\n")
        reason = "no header can be called {}: names are ASCII without blanks and colons\n".format
        self.assert_output(self.run_macro(
            'print SetHeader("Reply To", "x"), HostReason()\nprint AddHeader("Überschrift", "x"), HostReason()\n'
            'print SetHeader("Bad:Name", "x"), HostReason()\nprint SetHeaderForMultiSelect("a b", "x"), HostReason()\n'
            'print AllCurrentHeader()\nprint DeleteHeader("A B"), HostReason()\n', "--mail", mail),
            reason('"Reply To"') + reason('"Überschrift"') + reason('"Bad:Name"') + "0" + reason('"a b"')
            + "Subject: old\nA B: x\n\n1\n",
            'wrenfold: headers of "old" are changed in memory only: AlterSave() writes them (NoWarningHeaderUpdate() leaves '
            'this out)\n')

    def test_a_mail_without_a_header_is_all_body(self):
        mail = self.write("m.eml", b"Dear Bob,\n\nhello\n")
        self.assert_output(self.run_macro('print "[", AllRootHeader(), "][", RootBody(), "]"\nSetHeader("Subject", "s")\nOpenMail()\n'
                                          'print AlterSave()\n', "--mail", mail), "[][Dear Bob,\n\nhello]\n1\n",
                           'wrenfold: headers of "" are changed in memory only: AlterSave() writes them '
                           '(NoWarningHeaderUpdate() leaves this out)\n')
        self.assertEqual(mail.read_bytes(), b"Subject: s\n\nDear Bob,\n\nhello\n")

    def test_a_reply_answers_the_root_mail(self):
        self.assert_output(self.run_macro(
            'MakeReply("", "")\nprint NewMailType(), CurrentHeader("To"), "|", CurrentHeader("Subject")\n'
            'print RootHeader("Subject")\n', "--mail", sample("plain-ascii.eml"), "--drafts", self.folder / "Drafts"),
            "1Alice Baker <alice@example.com>|Re: Minutes of the March meeting\nMinutes of the March meeting\n",
            host.NO_SENDER + 'wrenfold: kept as a draft in Drafts: "Re: Minutes of the March meeting" to Alice Baker <alice@example.com>\n')

    def test_changed_headers_leave_the_root_mail_and_its_file_alone(self):
        mail = self.write("m.eml", b"Subject: old\r\n\r\n")
        self.assert_output(self.run_macro('SetHeader("Subject", "new")\nprint RootHeader("Subject"), CurrentHeader("Subject")',
                                          "--mail", mail), "oldnew\n",
            'wrenfold: headers of "old" are changed in memory only: AlterSave() writes them (NoWarningHeaderUpdate() leaves '
            'this out)\n')
        self.assertEqual(mail.read_bytes(), b"Subject: old\r\n\r\n")


class Tour(HostTest):
    def test_each_sample_macro_runs_on_the_sample_mails(self):
        macros = sorted((host.SOURCE / "samples/macros/tour").glob("*.macro"))
        self.assertGreaterEqual(len(macros), 5)
        for macro in macros:
            with self.subTest(macro.name):
                result = run("--mail", host.SOURCE / "samples/mails", "--drafts", self.folder / "Drafts", "--macro", macro)
                kept = macro.name == "5_reply.macro"
                self.assertEqual((result.err.startswith(host.NO_SENDER + "wrenfold: kept as a draft in Drafts: ") if kept else not result.err,
                                  result.code), (True, 0), result.err)
                self.assertGreater(len(result.out.splitlines()), 2)


if __name__ == "__main__":
    unittest.main()
