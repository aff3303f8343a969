"""Mails in and out of the small host: inbox and outbox folders, a program that really sends, the end of a server."""
import email
import email.policy
import os
import pathlib
import shutil
import subprocess
import time
import unittest

import host
from host import HostTest, NO_SENDER, run

BUILD = pathlib.Path(os.environ.get("WFINFO_BUILD", host.SOURCE / "build/windows"))
PEER = BUILD / "doubles/send_peer.exe"



def windows_path(path):
    return str(path) if os.name == "nt" else "Z:" + str(path).replace("/", "\\")


WRITE = 'NewMail()\nSetHeader("To", "Zoë <zoe@example.com>")\nSetHeader("Subject", "日本語の件名")\n'


class TransmissionTest(HostTest):
    def setUp(self):
        super().setUp()
        self.mails = self.folder / "mails"
        self.mails.mkdir()
        self.write("mails/a.eml", "From: Alice <alice@example.com>\r\nSubject: a\r\n\r\na\r\n")
        self.outbox = self.folder / "wrenfold/outbox"
        self.sent = self.folder / "wrenfold/Sent"

    def run_here(self, source, *options):
        return run("--english", "--mail", "mails", "--macro", self.write("test.macro", source), *options, folder=self.folder)

    def names(self, folder):
        return sorted(file.name for file in folder.iterdir()) if folder.is_dir() else []

    def only(self, folder):
        files = list(folder.iterdir())
        self.assertEqual(len(files), 1, files)
        return email.message_from_bytes(files[0].read_bytes(), policy=email.policy.default)


class Outbox(TransmissionTest):
    def test_a_written_mail_outlives_the_program(self):
        result = self.run_here(WRITE + "print SendLater()\n")
        self.assertEqual((result.out, result.code), ("1\n", 0))
        self.assertTrue(result.err.startswith(NO_SENDER))
        self.assertRegex(result.err.removeprefix(NO_SENDER), r"^wrenfold: 1 mail waits in wrenfold.outbox; TransmitCustom\(0\) or "
                                                             r"SendRemain\(\) sends it\n$")
        self.assertEqual(len(self.names(self.outbox)), 1)
        result = self.run_here("print SendRemain(), SentMailCount()\n")
        self.assertEqual((result.out, result.code), ("11\n", 0))
        self.assertIn("would send:\n| To: Zoë <zoe@example.com>\n| Subject: 日本語の件名\n", result.err)
        self.assertNotIn("waits", result.err)
        self.assertEqual(self.names(self.outbox), [])
        mail = self.only(self.sent)
        self.assertEqual((mail["To"], mail["Subject"]), ("Zoë <zoe@example.com>", "日本語の件名"))
        self.assertTrue(mail["Date"].datetime)
        self.assertRegex(mail["Message-ID"], r"^<[\w.-]+@wrenfold\.invalid>$")

    def test_the_sender_is_the_first_account(self):
        accounts = self.write("accounts.txt", "[me]\nszMailFromSpecify = me@example.com\n")
        self.run_here(WRITE + "SendNow()\n", "--accounts", accounts)
        self.assertEqual(self.only(self.sent)["From"], "me@example.com")

    def test_a_resent_mail_keeps_what_it_had(self):
        (self.mails / "a.eml").write_bytes(
            b"From: alice@example.com\r\nMessage-ID: <1@x>\r\nDate: Mon, 2 Jun 2025 09:00:00 +0000\r\n"
            b"Content-Transfer-Encoding: base64\r\n\r\naGVsbG8=\r\n")
        self.run_here('print MakeResentForward("dave@example.com", "sendnow", "", "")\n')
        mail = self.only(self.sent)
        self.assertEqual((mail["Message-ID"], mail["Resent-To"]), ("<1@x>", "dave@example.com"))
        self.assertTrue(mail["Resent-Date"] and mail["Resent-Message-ID"])
        self.assertEqual(mail.get_payload(), "aGVsbG8=\r\n")

    def test_mails_without_recipient_are_refused_and_unsent_ones_wait(self):
        self.outbox.mkdir(parents=True)
        (self.outbox / "1.eml").write_bytes(b"Subject: nobody\r\n\r\n")
        (self.outbox / "2.eml").write_bytes(b"To: a@example.com\r\nX-Unsent: 1\r\n\r\n")
        (self.outbox / "3.eml").write_bytes(b"To: a@example.com\r\n\r\n")
        result = self.run_here("print SendRemainAll(), TransmitError(), SentMailCount()\n")
        self.assertEqual((result.out, result.code), ("011\n", 1))
        self.assertIn("transmission: 1.eml has no recipient\n", result.err)
        self.assertEqual((self.names(self.outbox), self.names(self.sent)), (["1.eml", "2.eml"], ["3.eml"]))

    def test_a_mail_that_cannot_reach_all_its_readers_is_refused_at_once(self):
        for headers, reason in (
                ({"To": "nobody"}, "To names no address: nobody"),
                ({"To": "a@b.example", "Cc": "x y z"}, "Cc names no address: x y z"),
                ({"To": "a@b.example", "Bcc": "c@d.example, <broken"}, "Bcc names no address: <broken"),
                ({"To": "Bob <bob>, a@b.example"}, "To names no address: Bob <bob>"),
                ({"To": "a@b.example, Alice"}, "To names no address: Alice"),
                ({"To": "", "Subject": "s"}, "the mail has no recipient"),
                ({"To": "Doe, John <j@b.example>", "Cc": "undisclosed-recipients:;"}, "")):
            for send in ("SendLater", "SendNow"):
                with self.subTest(headers, send=send):
                    lines = "".join(f'SetHeader("{name}", "{value}")\n' for name, value in headers.items())
                    result = self.run_here(f'NewMail()\n{lines}print {send}(), " ", HostReason(), " ", NewMailType()\n')
                    self.assertEqual(result.out, f"0 {reason} 0\n" if reason else "1  0\n", result.err)

    def test_so_is_a_mail_to_be_resent(self):
        for mode, bcc, header in (("sendnow", "", "Resent-To"), ("sendlater", "bcc", "Resent-Bcc")):
            with self.subTest(mode):
                result = self.run_here(f'print MakeResentForward("nobody", "{mode}", "", "{bcc}"), " ", HostReason()\n')
                self.assertEqual(result.out, f"0 {header} names no address: nobody\n", result.err)
                self.assertEqual(self.names(self.outbox), [])

    def test_a_resent_mail_never_goes_to_those_it_came_for(self):
        (self.mails / "a.eml").write_bytes(b"From: alice@example.com\r\nTo: team@example.com\r\nBcc: old@example.com\r\n"
                                           b"Resent-To: first@example.com\r\nMessage-ID: <1@x>\r\n\r\nhello\r\n")
        open_it = 'MakeResentForward("{}", "open", "", "")\n'
        for source, answer in (
                ('print MakeResentForward("", "sendnow", "", "")', "0 the mail has no recipient"),
                ('print MakeResentForward("Grp:;", "sendlater", "", "")', "0 the mail has no recipient"),
                (open_it.format("") + "print SendNow()", "0 the mail has no recipient"),
                (open_it.format("d@x.jp") + 'HostSetBody("mine")\nprint SendNow()',
                 "0 a mail that is resent goes on as it came, but this one was changed: MakeForward() makes one of your own"),
                ('NewMail()\nSetHeader("To", "a@x.jp")\nSetHeader("Resent-To", "b@x.jp")\nprint SendLater()',
                 "0 a mail of your own has no Resent-To: MakeResentForward() hands one on"),
                (open_it.format("") + 'SetHeader("Resent-To", "d@x.jp")\nprint SaveDraft2(1), SelectFolder("Drafts"), OpenMail(), SendNow()',
                 "1111 ")):
            with self.subTest(source):
                shutil.rmtree(self.mails / "Drafts", ignore_errors=True)
                result = self.run_here(source + ', " ", HostReason()\n')
                self.assertEqual(result.out, answer + "\n", result.err)
                self.assertEqual(self.names(self.outbox), [])
        sent = next(self.sent.iterdir()).read_bytes()
        self.assertRegex(sent, rb"^Resent-Date: [^\r]*\r\nResent-Message-ID: [^\r]*\r\nResent-To: d@x.jp\r\n"
                               rb"From: alice@example.com\r\nTo: team@example.com\r\nX-Resent-To: first@example.com\r\n"
                               rb"Message-ID: <1@x>\r\n\r\nhello\r\n$")

    def test_an_outbox_that_cannot_be_written_loses_nothing(self):
        self.write("blocked", "a file in the place of the folder")
        result = self.run_here(WRITE + 'print SendLater(), SendNow(), CurrentHeader("Subject")\n',
                               "--outbox", "blocked/outbox", "--trace")
        self.assertEqual((result.out, result.code), ("00日本語の件名\n", 0))
        self.assertIn("(cannot make the folder blocked/outbox: there is a file blocked)", result.err)

    def test_a_deferred_mail_waits_for_its_time(self):
        defer = 'SetMailTransmitDate("{}")\n'
        result = self.run_here(WRITE + defer.format("1 Jan 2125 10:00:00 +0900") + "print SendNow(), SendRemain(), SentMailCount()\n")
        self.assertEqual((result.out, result.code), ("110\n", 0))
        self.assertIn("the mail waits in the outbox for the time of its Deferred-Delivery\n", result.err)
        self.assertIn("1 mail waits in", result.err)
        self.assertIn("sends it, 1 not before Deferred-Delivery\n", result.err)
        self.assertNotIn("would send", result.err)
        self.assertEqual((len(self.names(self.outbox)), self.names(self.sent)), (1, []))
        result = self.run_here(WRITE + defer.format("1 Jan 2025 10:00:00 +0900") + "print SendNow(), SentMailCount()\n")
        self.assertEqual((result.out, result.code), ("11\n", 0))
        self.assertEqual(self.only(self.sent)["Deferred-Delivery"], "1 Jan 2025 10:00:00 +0900")

    def test_a_mail_with_a_time_that_is_no_date_waits_and_says_so(self):
        for send in ("SendNow()", "SendLater()"):
            with self.subTest(send):
                result = self.run_here(f'{WRITE}SetHeader("Deferred-Delivery", "tomorrow")\nprint {send}, SendRemain(), SentMailCount()\n')
                self.assertEqual((result.out, result.code), ("110\n", 0))
                self.assertIn('the mail waits in the outbox: its Deferred-Delivery "tomorrow" is no date\n', result.err)
                self.assertNotIn("would send", result.err)
                self.assertEqual((len(self.names(self.outbox)), self.names(self.sent)), (1, []))
                shutil.rmtree(self.outbox)

    def test_the_copy_of_a_sent_mail_is_the_mail_that_was_sent(self):
        self.run_here(WRITE + 'MakeFolder("kept", null)\nSetSentFolder("kept", null)\nprint SendNow()\n')
        kept = [file.read_bytes() for file in (self.mails / "kept").glob("*.eml")]
        self.assertEqual(kept, [file.read_bytes() for file in self.sent.iterdir()])

    def test_where_mails_wait_is_no_folder_of_mails(self):
        (self.mails / "sub/wrenfold/inbox").mkdir(parents=True)
        (self.mails / "sub/wrenfold/inbox/x.eml").write_bytes(b"Subject: x\r\n\r\n")
        macro = 'print SelectFolder("wrenfold"), SelectFolder("inbox"), SelectFolder("sub"), MailCount()\n'
        self.assertEqual(self.run_here(macro).out, "0010\n")
        self.assertEqual(self.run_here(macro, "--inbox", "mails/sub/wrenfold/inbox").out, "0010\n")


class BeforeSending(TransmissionTest):
    """--send-macro: only a macro that ends in a number other than 0 lets a mail go."""

    SEND = WRITE + 'print SendNow(), " ", HostReason()\nSelectFolder("mails")\n' \
                   'print MakeResentForward("dave@example.com", "sendnow", "", ""), " ", HostReason()\n'

    def send(self, guard, source=SEND):
        return self.run_here(source, "--send-macro", self.write("guard.macro", guard))

    def test_what_is_no_number_holds_every_mail_back(self):
        number = "does not end in a number, which would let the mail go"
        end = "could not be run to its end"
        for guard, reason, told in (
                ("ok = 0\n", number, True), ("ok = 1\n", number, True), ("# 1\n", number, True), ("print 1\n", number, True),
                ('"1"\n', number, True), ("0\n", "refused the mail", False),
                ('CurrentHeader("Subject")\n', number, True), ("if MailCount() > 5\nMailCount()\nend\n", number, True),
                ("function f()\nMailCount()\nreturn 1\nend\nprint f()\n", number, True),
                ("x = 1 / 0\n", end, True), ("Exit()\nwhile 1\nend\n", end, True),
                ("NewMail()\nMailCount()\n", "closed the mail", True),
                ('IfEqual("a", "a", 0, 1)\n', "refused the mail", False)):
            with self.subTest(guard):
                result = self.send(guard)
                reason = f"the macro before sending, {self.folder}/guard.macro, {reason}"
                answers = [line for line in result.out.splitlines() if line != "1"]  # which a macro may print
                self.assertEqual(answers or ["none"], [f"0 {reason}"] * len(answers))
                self.assertEqual(f"wrenfold: the mail is held back: {reason}\n" in result.err, told, result.err)
                self.assertNotIn("would send", result.err)
                self.assertEqual((self.names(self.outbox), self.names(self.sent)), ([], []))

    def test_a_number_lets_it_go_whatever_the_file_is_called(self):
        guard = 'AddHeader("X-Checked", "yes")\nIfEqual("a", "a", 1, 0)\n'
        result = self.send(guard)
        self.assertEqual((result.out, result.code), ("1 \n1 \n", 0), result.err)
        result = self.run_here(self.SEND, "--send-macro", self.write("guard.txt", guard))
        self.assertEqual(result.out, "1 \n1 \n", result.err)
        checked = [b"X-Checked" in file.read_bytes() for file in sorted(self.sent.iterdir())]
        self.assertEqual(sorted(checked), [False, False, True, True], "a resent mail goes on as it came")

    def test_the_last_line_may_be_any_expression(self):
        for guard in ("1\n", "ok = 2\nok - 1\n", "not (MailCount() == 0)\n"):
            with self.subTest(guard):
                result = self.send(guard)
                self.assertEqual((result.out, result.code), ("1 \n1 \n", 0), result.err)

    def test_it_sees_whom_a_mail_is_resent_to_and_what_is_being_written_stays(self):
        guard = 'print "to ", CurrentHeader("Resent-To")\nIfEqual(CurrentHeader("Resent-To"), "eve@example.com", 0, 1)\n'
        source = WRITE + 'print MakeResentForward("eve@example.com", "sendlater", "", ""), ' \
                         'MakeResentForward("bob@example.com", "sendnow", "", ""), " ", CurrentHeader("Subject")\n'
        result = self.send(guard, source)
        self.assertEqual(result.out, "to eve@example.com\nto bob@example.com\n01 日本語の件名\n", result.err)
        self.assertEqual(self.only(self.sent)["Resent-To"], "bob@example.com")

    def test_one_that_cannot_be_used_is_told_before_anything_runs(self):
        broken = self.write("broken.macro", "if 1\n")
        empty = self.write("empty.macro", "")
        for file, reason in (("none.macro", "cannot read the macro none.macro"), ("1", "cannot read the macro 1"),
                             (broken, f"{broken}:"), (empty, f"the macro {empty} is empty: write its statements into it")):
            with self.subTest(file):
                result = self.run_here("print 1\n", "--send-macro", file)
                self.assertEqual((result.out, result.code), ("", 1))
                self.assertIn(f"wrenfold: --send-macro: {reason}", result.err)

    def test_it_cannot_send_a_mail_itself(self):
        guard = 'print SendNow(), " ", HostReason()\nnumber("1")\n'
        result = self.send(guard, WRITE + 'print SendNow(), " ", HostReason(), SentMailCount()\n')
        self.assertEqual(result.out, f"0 the macro before sending, {self.folder}/guard.macro, cannot send a mail itself\n1 1\n", result.err)
        self.assertNotIn("held back", result.err)
        self.assertEqual(len(self.names(self.sent)), 1)

    def test_one_that_goes_while_the_program_runs_holds_the_mails_back(self):
        guard = self.write("guard.macro", "MailCount()\n")
        result = self.run_here(f'SaveStringToFile("guard.macro", "ok", 0, 2)\n' + self.SEND, "--send-macro", guard)
        self.assertEqual([line[:2] for line in result.out.splitlines()], ["0 ", "0 "], result.err)
        self.assertEqual(self.names(self.sent), [])


class MboxDrafts(TransmissionTest):
    DRAFT = "From a@example.org Mon Jan  1 00:00:00 2024\nTo: z@example.com\nSubject: {}\nX-Unsent: 1\n\ntext\n\n"

    def setUp(self):
        super().setUp()
        self.write("mails/Waiting.mbox", self.DRAFT.format("one") + self.DRAFT.format("two"))

    def waiting(self):
        return (self.mails / "Waiting.mbox").read_text().count("Subject: one")

    def test_is_sent_once(self):
        for option in ([], ["--read-only"]):
            with self.subTest(option):
                self.write("mails/Waiting.mbox", self.DRAFT.format("one") + self.DRAFT.format("two"))
                shutil.rmtree(self.folder / "wrenfold", ignore_errors=True)
                result = self.run_here('SelectFolder("Waiting")\nprint OpenMail(), SendNow(), MailCount()\nSelectFolder("Waiting")\n'
                                       'print RootHeader("Subject"), MailCount()\n', *option)
                self.assertEqual((result.out, result.code), ("111\ntwo1\n", 0), result.err)
                self.assertEqual((len(self.names(self.sent)), self.waiting()), (1, 0))

    def test_goes_out_of_the_mbox_when_it_is_saved_to_a_file_of_its_own(self):
        result = self.run_here('SelectFolder("Waiting")\nOpenMail()\nSetHeader("Subject", "three")\nprint SaveDraft(), SendNow()\n')
        self.assertEqual((result.out, result.code), ("11\n", 0), result.err)
        self.assertEqual((self.waiting(), self.only(self.sent)["Subject"]), (0, "three"))
        self.assertEqual(self.names(self.mails / "Drafts"), [])

    def test_one_in_a_file_with_a_from_line_is_sent_once_too(self):
        (self.mails / "Waiting.mbox").unlink()
        (self.mails / "x").mkdir()
        self.write("mails/x/draft.eml", self.DRAFT.format("one"))
        result = self.run_here('SelectFolder("x")\nprint OpenMail(), SendNow(), MailCount()\n')
        self.assertEqual((result.out, result.code), ("110\n", 0), result.err)
        self.assertEqual((len(self.names(self.sent)), self.names(self.mails / "x")), (1, []))


class Inbox(TransmissionTest):
    def test_an_mbox_is_received_mail_by_mail_and_goes(self):
        (self.folder / "inbox").mkdir()
        mbox = b"".join(b"From a@x Mon Jan  1 00:00:00 2024\nSubject: %d\nStatus: RO\n\ntext\n\n" % i for i in range(3))
        (self.folder / "inbox/new.MBOX").write_bytes(mbox)
        (self.folder / "inbox/odd.mbox").write_bytes(b"Subject: no mbox\n\n")
        result = self.run_here('print Receive(), " ", HostReason()\nprint MailCount(), RecvMailCount(), " ", GetStatusBarText()\n',
                               "--inbox", "inbox")
        self.assertRegex(result.out, r'^0 cannot read inbox.odd\.mbox: an mbox file begins with a "From " line\n'
                                     r"43 received 3 mails, sent 0 mails, 1 failure\n$")
        self.assertEqual(self.names(self.folder / "inbox"), ["odd.mbox"])
        self.assertEqual(len([name for name in self.names(self.mails) if name.endswith(".eml")]), 4)
        self.assertTrue((self.mails / "wrenfold.marks").is_file(), "they are unread, though their headers say that they are not")

    def test_mails_come_to_the_folder_of_their_account(self):
        (self.folder / "inbox/office").mkdir(parents=True)
        (self.mails / "office").mkdir()
        (self.mails / "office/w.eml").write_bytes(b"Subject: w\r\n\r\n")
        (self.folder / "inbox/a.eml").write_bytes(b"Subject: new\r\n\r\n")
        (self.folder / "inbox/office/b.eml").write_bytes(b"Subject: work\r\n\r\n")
        accounts = self.write("accounts.txt", "[first]\n[office]\n")
        result = self.run_here("print ReceiveAll(), MailCount()\n", "--inbox", "inbox", "--accounts", accounts)
        self.assert_output(result._replace(err=""), "12\n")
        # The mail that was there, and the received one under a free name.
        self.assertEqual(self.names(self.mails), ["a (2).eml", "a.eml", "office"])
        self.assertEqual(self.names(self.mails / "office"), ["b.eml", "w.eml"])

    def test_without_mails_the_received_ones_are_the_first(self):
        (self.folder / "home/inbox").mkdir(parents=True)
        (self.folder / "home/inbox/a.eml").write_bytes(b"Subject: first\r\n\r\n")
        result = run("--english", "--home", "home", "--macro",
                     self.write("test.macro", "print Receive(), MailCount(), Subject()\n"), folder=self.folder)
        self.assertEqual((result.out, result.err, result.code), ("11first\n", "sound: mail received\n", 0))
        self.assertEqual(self.names(self.folder / "home/mails"), ["a.eml"])

    def test_a_folder_of_mails_that_are_read_is_no_inbox_and_no_outbox(self):
        for option in ("--inbox", "--outbox", "--imap"):
            result = self.run_here("print 1\n", option, "./mails")
            self.assertEqual((result.out, result.err, result.code),
                             ("", f"wrenfold: {option} ./mails is the folder of mails that --mail names: take another one\n", 1))
        (self.mails / "sub").mkdir()
        (self.mails / "sub/b.eml").write_bytes(b"Subject: b\r\n\r\n")
        (self.folder / "link").symlink_to(self.mails)
        for option, folder in (("--inbox", "mails/sub"), ("--outbox", "mails/sub"), ("--imap", "mails/../mails/sub"),
                               ("--outbox", "mails/new/deep"), ("--inbox", "link/sub")):
            result = self.run_here("print 1\n", option, folder)
            self.assertEqual((result.out, result.err, result.code),
                             ("", f"wrenfold: {option} {folder} is one of the folders of mails below mails: take one outside of it\n", 1))
        self.assertEqual(self.names(self.mails), ["a.eml", "sub"])

    def test_what_the_server_holds_is_not_uploaded_again(self):
        (self.folder / "server").mkdir()
        result = self.run_here('print ImapUpload(), ImapUpload(), " ", HostReason()\n', "--imap", "server")
        self.assertEqual(result.out, "10 the server holds what is selected already\n", result.err)
        self.assertEqual(self.names(self.folder / "server"), ["a.eml"])

    def test_an_import_of_a_folder_tells_what_it_passes_over(self):
        (self.folder / "o/sub").mkdir(parents=True)
        for name, text in (("0.eml", ""), ("1.eml", "Subject: 1\r\n\r\n"), ("b.mbox", "From x\n\n")):
            self.write(f"o/{name}", text)
        result = self.run_here('print Import("o", "auto", "", "", "", "", "")\n')
        self.assertEqual((result.out, result.code), ("1\n", 0), result.err)
        self.assertRegex(result.err, r"^wrenfold: Import reads the .eml files of o alone: 1 .mbox files and 1 folders in it are passed over\n"
                                     r"wrenfold: o.0.eml is no file of the type asked for \(skipped\)\n$")

    def test_a_folder_that_is_none_is_told_before_anything_runs(self):
        for option in ("--inbox", "--imap"):
            result = self.run_here("print 1\n", option, "none")
            self.assertEqual((result.out, result.err, result.code), ("", "wrenfold: there is no folder none\n", 1))

    def test_failures_say_why(self):
        result = self.run_here("Receive()\nImapSync()\nImapUpload()\nHangup()\nStopSound()\nRemoteMailDelete()\n"
                               'LoadStringFromFile("none.txt")\nImport("none.mbox", "auto", "", "")\n'
                               'Export("no/such.mbox", "mbox", "encode", "", "", "")\n', "--trace")
        for reason in (r"nothing to receive from: there is no folder wrenfold.inbox \(--inbox DIR names another\)",
                       "no IMAP server: --imap DIR names a folder that stands for one",
                       "no dial-up connection is open", "no sound plays", "none of the selected mails is on the server",
                       "cannot read none.txt: no such file or folder", "cannot read none.mbox: no such file or folder",
                       "cannot write no/such.mbox: there is no folder no"):
            self.assertRegex(result.err, r"-> 0 \(" + reason + r"\)\n")

    def test_without_mails_a_macro_learns_that_there_are_none_once(self):
        result = self.run_macro('print RootHeader("Subject"), RootBody(), Import("x", "auto", "", "")\n')
        self.assertEqual(result, host.Result("0\n", f"wrenfold: {self.folder}/test.macro:1:7: no mails were given: --mail MAIL\n", 0))

    def test_what_the_library_writes_itself_says_why_too(self):
        result = self.run_here('print SaveStringToFile("no/such/a.txt", "x", 0, 2), SaveStringToFile("a.txt", "x", 0, 2)\n',
                               "--trace")
        self.assertEqual((result.out, result.code), ("01\n", 0))
        self.assertIn(' -> 0 (cannot write no/such/a.txt: there is no folder no/such)\n', result.err)
        self.assertEqual(result.err.count("cannot write"), 1)


class ReallySending(TransmissionTest):
    """send_peer.exe OUT CODE [FILE]: keeps its standard input, or FILE, and ends with the code."""

    def peer(self, *words):
        return f'"{windows_path(PEER)}" ' + " ".join(str(word) for word in words)

    def test_the_program_gets_the_finished_mail_on_its_standard_input(self):
        result = self.run_here(WRITE + "print SendNow(), SentMailCount()\n", "--send-with", self.peer("got.eml", 0))
        self.assertEqual((result.out, result.code), ("11\n", 0))
        self.assertNotIn("would send", result.err)
        self.assertIn("send_peer: 2 words\n", result.err)
        got = (self.folder / "got.eml").read_bytes()
        self.assertEqual([got], [file.read_bytes() for file in self.sent.iterdir()])
        self.assertTrue(email.message_from_bytes(got)["Message-ID"])

    def test_or_the_name_of_the_file_and_each_word_as_it_was_written(self):
        outbox = self.folder / "out & box"
        result = self.run_here(WRITE + "print SendNow()\n", "--outbox", outbox, "--send-with",
                               self.peer("got.eml", 0, "{file}", '"two words & | > x.txt"', "%PATH%"))
        self.assertEqual((result.out, result.code), ("1\n", 0), result.err)
        self.assertIn("word 4: two words & | > x.txt\nword 5: %PATH%\n", result.err)
        self.assertIn(b"zoe@example.com", (self.folder / "got.eml").read_bytes())
        self.assertFalse((self.folder / "x.txt").exists())

    def test_a_program_may_do_with_its_copy_what_it_likes(self):
        result = self.run_here(WRITE + "print SendNow(), SentMailCount(), TransmitError()\n", "--send-with", "cmd /c del {file}")
        self.assertEqual((result.out, result.code), ("110\n", 0), result.err)
        self.assertEqual(self.only(self.sent)["Subject"], "日本語の件名")

    def test_a_mail_whose_file_another_program_has_open_is_not_sent(self):
        self.run_here(WRITE + "SendLater()\n")
        waiting = next(self.outbox.iterdir())
        hold = ["cmd", "/c", f"ping -n 30 127.0.0.1 < {windows_path(waiting)}"]
        holder = subprocess.Popen((["wine"] if os.name != "nt" else []) + hold, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(3)
        try:
            result = self.run_here("for i in 2\nprint SendRemain(), \" \", HostReason(), \" \", TransmitError(), SentMailCount()\nend\n",
                                   "--send-with", self.peer("got.eml", 0))
        finally:
            holder.kill()
            holder.wait()
        self.assertEqual(result.code, 1)
        self.assertRegex(result.out, r"^(0 [^\n]*it is not sent: another program uses it \(system error 32\) 10\n){2}$")
        self.assertFalse((self.folder / "got.eml").exists())
        self.assertEqual((len(self.names(self.outbox)), self.names(self.sent)), (1, []))

    def test_a_program_that_fails_leaves_the_mail_with_its_message_id(self):
        for line, reason in ((self.peer("got.eml", 3), "ended with exit code 3"),
                             ("no-such-program.exe -t", "cannot start no-such-program.exe, error 2")):
            result = self.run_here(WRITE + "print SendNow(), TransmitError()\n", "--send-with", line)
            self.assertEqual((result.out, result.code), ("01\n", 1))
            self.assertIn(reason, result.err)
            self.assertIn("1 mail waits", result.err)
            self.assertEqual("beside 1 mail of other runs" in result.err, "3" not in reason, result.err)
        first = email.message_from_bytes((self.folder / "got.eml").read_bytes())["Message-ID"]
        self.assertEqual((len(self.names(self.outbox)), self.names(self.sent)), (2, []))
        # What waits is not what this run tried; what it could not send at first has gone at the end.
        self.assertEqual(self.run_here("print 1\n").code, 0)
        result = self.run_here("SendRemain()\n", "--send-with", self.peer("got.eml", 0))
        self.assertEqual(result.code, 0, result.err)
        self.assertIn(first, [email.message_from_bytes(file.read_bytes())["Message-ID"] for file in self.sent.iterdir()])

    def test_while_one_host_sends_a_mail_no_other_does_and_killed_it_leaves_the_outbox_whole(self):
        macro = self.write("test.macro", WRITE + "SendNow()\n")
        arguments = ["--english", "--mail", "mails", "--macro", str(macro), "--send-with", self.peer("got.eml", "sleep")]
        process = subprocess.Popen(host.command() + arguments, cwd=self.folder, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        deadline = time.monotonic() + host.TIMEOUT_SECONDS
        while not (self.folder / "got.eml").exists():
            self.assertLess(time.monotonic(), deadline, "the program was never started")
            time.sleep(0.1)
        second = self.run_here("print SendRemain()\n", "--send-with", self.peer("twice.eml", 0))
        self.assertEqual(second.out, "0\n")
        self.assertIn("another program is sending it\n", second.err)
        process.kill()
        process.wait()
        (self.folder / "stop").touch()
        self.assertFalse((self.folder / "twice.eml").exists())
        for claim in self.outbox.glob("*.sending"):
            claim.unlink()
        waiting = self.only(self.outbox)
        self.assertEqual((waiting["Subject"], self.names(self.sent)), ("日本語の件名", []))
        self.run_here("SendRemain()\n", "--send-with", self.peer("again.eml", 0))
        self.assertEqual(self.only(self.sent)["Message-ID"], waiting["Message-ID"])

    @unittest.skipIf(os.name == "nt", "Windows starts no Unix program; every other one can be waited for")
    def test_a_program_that_cannot_be_waited_for_is_not_said_to_have_taken_ten_minutes(self):
        program = self.write("send.sh", f"#!/bin/sh\ncat > '{self.folder}/got.eml'\n")
        program.chmod(0o755)
        result = self.run_here(WRITE + "print SendNow()\n", "--send-with", program)
        self.assertEqual((result.out, result.code), ("0\n", 1), result.err)
        self.assertIn("was started, but cannot be waited for, error 6: look whether it has sent the mail, which would be sent again\n",
                      result.err)
        self.assertNotIn("ten minutes", result.err)
        self.assertEqual((len(self.names(self.outbox)), self.names(self.sent)), (1, []))

    def test_a_line_without_a_program_is_told_before_anything_runs(self):
        result = self.run_here("print 1\n", "--send-with", '"open')
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertIn("no program in --send-with", result.err)


class Questions(TransmissionTest):
    MACRO = ('print Bypass_GetOpenFileName("open what?", "", ""), Bypass_GetSaveFileName("save where?", "", "", "here")\n'
             'print DialupSelect(null), CurrentDialup()\n')

    def test_are_answered_by_a_file_then_by_what_is_proposed(self):
        answers = self.write("answers.txt", "見積書.txt\r\n\r\n")
        result = self.run_here(self.MACRO, "--answer", answers, "--yes")
        self.assertEqual((result.out, result.code), ("見積書.txthere\n1simulated\n", 0))
        self.assertEqual(result.err, "asked: open what? 見積書.txt\nasked: save where?\nasked: connection:\n")

    def test_behind_the_file_the_terminal_asks(self):
        result = run("--english", "--macro", self.write("test.macro", self.MACRO), "--answer",
                     self.write("answers.txt", "a\n"), input="b\nwork\n", folder=self.folder)
        self.assertEqual((result.out, result.code), ("ab\n1work\n", 0))

    def test_a_file_that_is_none_is_told(self):
        result = self.run_here("print 1\n", "--answer", "none.txt")
        self.assertEqual((result.out, result.err, result.code), ("", "wrenfold: cannot read the answers none.txt: no such file or folder\n", 1))


class Ending(TransmissionTest):
    def test_exit_ends_the_macro_and_the_prompt_without_an_error(self):
        self.assert_output(self.run_here("print 1\nExit()\nprint 2\n", "--prompt"), "1\n")
        self.assertEqual(self.prompt("1", "Exit()", "2").out, "1\n1\n")

    def test_one_in_the_background_ends_before_another_begins(self):
        (self.folder / "inbox").mkdir()
        for name in "bcdef":
            (self.folder / f"inbox/{name}.eml").write_bytes(b"Subject: x\r\n\r\n")
        result = self.run_here("print StartReceive(), ReceiveAll(), TransmitError(), MailCount()\n", "--inbox", "inbox")
        self.assertEqual((result.out, result.code), ("1106\n", 0), result.err)

    def test_a_transmission_in_the_background_is_carried_to_its_end(self):
        (self.folder / "inbox").mkdir()
        for name in "bcdef":
            (self.folder / f"inbox/{name}.eml").write_bytes(b"Subject: x\r\n\r\n")
        self.assertEqual(self.run_here("print StartReceive()\n", "--inbox", "inbox").out, "1\n")
        self.assertEqual(self.names(self.mails), [f"{name}.eml" for name in "abcdef"])
        self.assertEqual(self.names(self.folder / "inbox"), [])


    def test_a_macro_that_fails_stops_one_in_the_background(self):
        result = self.run_here((WRITE + "SendLater()\n") * 3 + "print StartSendRemain()\nx = 1 / 0\n")
        self.assertEqual((result.out, result.code), ("1\n", 1))
        self.assertNotIn("would send", result.err)
        self.assertIn("transmission: stopped; received 0 mails, sent 0 mails, cancelled\n", result.err)
        self.assertIn("wrenfold: 3 mails wait in ", result.err)
        result = self.run_here("print StartSendRemain()\nx = 1 / 0\n")
        self.assertIn("wrenfold: 3 mails wait in ", result.err, "also of mails that an earlier run has put there")
        self.assertEqual((len(self.names(self.outbox)), self.names(self.sent)), (3, []))


class Stopping(HostTest):
    def test_a_serving_host_ends_and_one_that_runs_macros_does_not(self):
        self.assertEqual(run("--stop"), host.Result("", "wrenfold: no host serves on this desktop\n", 1))
        macro = self.write("test.macro", "i = 0\nwhile i == i\ni = i + 1\nend\n")
        busy = subprocess.Popen(host.command() + ["--macro", str(macro)], stdin=subprocess.DEVNULL,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        serving = subprocess.Popen(host.command() + ["--serve", "--home", str(self.folder)], stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        try:
            self.assertIn(b"serving", serving.stderr.readline())
            self.assertEqual(run("--stop"), host.Result("The serving host has ended.\n", "", 0))
            self.assertEqual(serving.wait(timeout=host.TIMEOUT_SECONDS), 0)
            self.assertIsNone(busy.poll())
        finally:
            for process in (busy, serving):
                process.kill()
                process.wait()
            serving.stderr.close()


    def test_one_that_does_not_answer_is_told(self):
        deaf = subprocess.Popen(host.command() + ["--serve", "--deaf", "--home", str(self.folder)],
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
        try:
            self.assertIn(b"serving", deaf.stderr.readline())
            result = run("--stop")
            self.assertEqual((result.out, result.code), ("", 1))
            self.assertRegex(result.err, r"^wrenfold: the serving host \(process \d+\) does not end\n$")
        finally:
            deaf.kill()
            deaf.wait()
            deaf.stderr.close()


class Progress(TransmissionTest):
    def test_never_shows_in_a_pipe(self):
        for i in range(1500):
            (self.mails / f"{i}.eml").write_bytes(b"Subject: x\r\n\r\n" + b"x" * 2000 + b"\r\n")
        self.assert_output(self.run_here("print MailCount()\n"), "1501\n")


if __name__ == "__main__":
    unittest.main()
