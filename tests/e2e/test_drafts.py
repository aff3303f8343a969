"""Mails that macros write: their files as Python's email reads them, and that none is lost."""
import email
import email.policy
import os
import shutil
import stat
import unittest

import host
from host import HostTest, Result

PLAIN = (b"From: Alice <alice@example.com>\r\nTo: b@example.com\r\nSubject: Minutes\r\nMessage-ID: <1@example.com>\r\n\r\n"
         b"one\r\n")
KEPT = 'wrenfold: kept as a draft in Drafts: "{}"{}\n'


def parsed(file):
    return email.message_from_bytes(file.read_bytes(), policy=email.policy.default)


def text_of(part):
    return part.get_content().replace("\r\n", "\n")


class Drafts(HostTest):
    def setUp(self):
        super().setUp()
        self.mail = self.write("a.eml", PLAIN)
        self.write("accounts.txt", "[home]\nszMailFromSpecify = Bob Baker <bob@example.com>\n")

    def run_on_mail(self, source, *arguments):
        return self.run_macro(source, "--mail", self.mail, *arguments)

    def drafts(self, folder="Drafts"):
        return sorted((self.folder / folder).glob("*.eml"))

    def draft(self):
        [file] = self.drafts()
        return parsed(file)


class Files(Drafts):
    def test_a_name_makes_one_recipient_and_an_address_that_is_none_is_refused(self):
        names = ("a> <b", "a@x.example> <b@x.example>, c", 'x" <b@x.example>, "y', "back\\\\", "(open", "山> <b, c")
        for name in names:
            with self.subTest(name):
                quoted = name.replace('"', '\\"')
                self.run_on_mail(f'NewMail()\nSetHeader("To", HostAddress("{quoted}", "c@d.example"))\nSaveDraft2(1)\n')
                addresses = self.draft()["To"].addresses
                self.assertEqual([a.addr_spec for a in addresses], ["c@d.example"], name)
                shutil.rmtree(self.folder / "Drafts", ignore_errors=True)
        result = self.run_on_mail('print "[", HostAddress("x", "a@b.example> <c@d.example"), "] ", HostReason()\n')
        self.assert_output(result, '[] "a@b.example> <c@d.example" is not one address\n')

    def test_an_attachment_keeps_its_name_when_the_new_one_is_none(self):
        self.write("book.bin", b"x")
        reason = 'no file can be called "{}": a name is no path and one line'.format
        for name, told in ((r"..\\evil.exe", reason(r"..\\evil.exe")), ("a/b", reason("a/b")), ("C:x", reason("C:x")),
                           (r"a\r\nBcc: x@y", reason(r"a\r\nBcc: x@y")), ("  ", "an attachment needs a name")):
            with self.subTest(name):
                self.assert_output(self.run_on_mail(
                    f'NewMail()\nAddAttach("{self.folder.as_posix()}/book.bin")\n'
                    f'print RenameAttach(0, "{name}"), " ", HostReason()\nprint HostAttachments()\n'
                    'print DeleteAttach(0)\n'), f"0 {told}\nbook.bin\n1\n")

    def test_a_draft_is_read_by_others(self):
        self.write("book.bin", bytes(range(256)))
        self.assert_output(self.run_on_mail(
            'NewMail()\nSetHeader("To", HostAddress("Doe, Jane", "jane@example.com") + ", " + HostAddress("山田 太郎", "t@example.jp"))\n'
            'SetHeader("Bcc", "secret@example.com")\n'
            'SetHeader("Subject", "見積書をお送りします。どうぞよろしくお願いいたします。これは長い件名です 😀")\n'
            'HostSetHtml("<p>本文 &amp; <b>more</b></p>")\n'
            f'AddAttach("{self.folder.as_posix()}/book.bin")\nRenameAttach(0, "見積 \\"1\\".bin")\nprint SaveDraft2(1)\n'), "1\n")
        draft = self.draft()
        self.assertEqual([(a.display_name, a.addr_spec) for a in draft["To"].addresses],
                         [("Doe, Jane", "jane@example.com"), ("山田 太郎", "t@example.jp")])
        self.assertEqual((draft["From"], draft["Bcc"], draft["X-Unsent"]), ("Bob Baker <bob@example.com>", "secret@example.com", "1"))
        self.assertEqual(draft["Subject"], "見積書をお送りします。どうぞよろしくお願いいたします。これは長い件名です 😀")
        self.assertIsNotNone(draft["Date"].datetime)
        self.assertEqual(draft.get_content_type(), "multipart/mixed")
        self.assertEqual(text_of(draft.get_body(("plain",))), "本文 & more\n")
        self.assertEqual(text_of(draft.get_body(("html",))), "<p>本文 &amp; <b>more</b></p>\n")
        [attachment] = draft.iter_attachments()
        self.assertEqual((attachment.get_filename(), attachment.get_content()), ('見積 "1".bin', bytes(range(256))))
        self.assertEqual([part.defects for part in draft.walk() if part.defects], [])

    def test_the_character_set_is_the_chosen_one_when_it_holds_the_text(self):
        for text, charset in (("日本", "iso-2022-jp"), ("日本 é", "utf-8")):
            with self.subTest(charset):
                self.assert_output(self.run_on_mail(
                    f'NewMail()\nSetCharSet("japan", 0)\nHostSetBody("{text}\\n")\nprint SaveDraft2(1)\n'), "1\n")
                draft = self.draft()
                self.assertEqual((draft.get_content_charset(), text_of(draft)), (charset, text + "\n"))
                self.drafts()[0].unlink()

    def test_an_attached_mail_is_a_mail(self):
        for macro, subject in (("MakeAttachForward", "New"), ("MakeAttachForwardLog", "Minutes")):
            with self.subTest(macro):
                self.assert_output(self.run_on_mail(
                    f'NoWarningHeaderUpdate()\nSetHeader("Subject", "New")\n{macro}()\nprint SaveDraft2(1)\n'), "1\n")
                [attachment] = self.draft().iter_attachments()
                self.assertEqual(attachment.get_content_type(), "message/rfc822")
                self.assertEqual(attachment.get_content()["Subject"], subject)
                self.drafts()[0].unlink()

    def test_an_edited_mail_is_read_by_others(self):
        other = b"From x Mon Jan  1 10:00:00 2024\r\nSubject: other\r\n\r\nx\r\n"
        mbox = self.write("box.mbox", b"From a Mon Jan  1 10:00:00 2024\r\n" + PLAIN + b"\r\n" + other)
        self.assert_output(self.run_macro(
            'OpenMail()\nprint BeginEditMail(), HostSetBody("私の本文\\nFrom me\\n"), SaveEditMail()\n'
            'SetMailIndex(1)\nSetHeader("Subject", "題")\nNoWarningHeaderUpdate()\nprint AlterSave()\n', "--mail", mbox),
            "111\n1\n", 'wrenfold: headers of "other" are changed in memory only: AlterSave() writes them '
            "(NoWarningHeaderUpdate() leaves this out)\n")
        content = mbox.read_bytes()
        first, second = content.split(b"\r\n\r\nFrom x", 1)
        self.assertEqual(text_of(parsed_bytes(first.split(b"\r\n", 1)[1])).rstrip(), "私の本文\nFrom me")
        self.assertTrue(first.split(b"\r\n", 1)[1].startswith(PLAIN.split(b"\r\n\r\n")[0]))
        self.assertEqual(parsed_bytes(second.split(b"\r\n", 1)[1])["Subject"], "題")
        self.assertTrue(second.endswith(b"\r\n\r\nx\r\n"))

    def test_a_mail_that_another_program_changed_is_not_overwritten(self):
        result = self.run_on_mail(
            'OpenMail()\nBeginEditMail()\nHostSetBody("mine\\n")\n'
            f'Bypass_CopyFile("{(self.folder / "accounts.txt").as_posix()}", "{self.mail.as_posix()}", 0)\n'
            'print SaveEditMail(), HostBody()\n')
        self.assertEqual((result.out, result.code), ("0mine\n\n", 1))
        [kept] = self.folder.glob("unsaved-*.eml")
        self.assertRegex(result.err, 'wrenfold: the changes to "Minutes" were not saved: .*a.eml was changed by another program')
        self.assertIn("wrenfold: the changed mail lies in ", result.err)
        self.assertIn(kept.name, result.err)
        self.assertEqual((parsed(kept)["Subject"], text_of(parsed(kept))), ("Minutes", "mine\n"))
        self.assertEqual(self.mail.read_bytes(), (self.folder / "accounts.txt").read_bytes())

    def test_changes_that_nobody_saved_are_told(self):
        result = self.run_on_mail('OpenMail()\nBeginEditMail()\nHostSetBody("mine\\n")\n')
        self.assertEqual((result.out, result.code), ("", 0))
        self.assertIn('wrenfold: the changes to "Minutes" are lost: SaveEditMail() was not called\n', result.err)


def parsed_bytes(raw):
    return email.message_from_bytes(raw, policy=email.policy.default)


class NothingIsLost(Drafts):
    TO_ALICE = " to Alice <alice@example.com>"

    def test_another_mail_and_the_end_of_the_program_keep_the_one_before(self):
        self.assert_output(self.run_on_mail('MakeReply("", 0)\nHostSetBody("mine")\nMakeForward()\nNewMail()\nNewMail()\n'), "",
                           KEPT.format("Re: Minutes", self.TO_ALICE) + KEPT.format("Fwd: Minutes", ""))
        self.assertEqual([parsed(file)["Subject"] for file in self.drafts()], ["Re: Minutes", "Fwd: Minutes"])
        self.assertEqual(text_of(parsed(self.drafts()[0])), "mine\n")

    def test_so_does_a_macro_that_fails(self):
        result = self.run_on_mail('MakeReply("", 0)\nprint HostGoToLine("x")\n')
        self.assertEqual(result.code, 1)
        self.assertTrue(result.err.endswith(KEPT.format("Re: Minutes", self.TO_ALICE)), result.err)
        self.assertEqual(len(self.drafts()), 1)

    def test_what_is_saved_already_is_not_told_again(self):
        self.assert_output(self.run_on_mail('MakeReply("", 0)\nSaveDraft()\n'), "")
        self.assertEqual(len(self.drafts()), 1)
        self.assert_output(self.run_on_mail('SelectFolder("Drafts")\nOpenMail()\nprint CurrentHeader("Subject"), NewMailType()\n'),
                           "Re: Minutes1\n")
        self.assertEqual(len(self.drafts()), 1)

    def test_a_draft_is_written_on_in_the_next_run_and_gone_once_it_is_sent(self):
        self.run_on_mail('MakeReply("", 0)\nHostSetBody("mine")\n')
        self.assert_output(self.run_on_mail('SelectFolder("Drafts")\nOpenMail()\nHostSetBody(HostBody() + "more")\nprint AlterSave()\n'),
                           "1\n")
        self.assertEqual(text_of(self.draft()), "mine\nmore\n")
        result = self.run_on_mail('SelectFolder("Drafts")\nOpenMail()\nprint SendNow(), MailCount()\nSelectFolder("'
                                  f'{self.folder.name}")\nprint GetMailFlag("reply")\n')
        self.assertEqual((result.out, result.code), ("10\n1\n", 0))
        self.assertIn("| mine\n| more\n", result.err)
        self.assertEqual(self.drafts(), [])

    def test_a_draft_that_somebody_else_changed_or_sent_is_not_overwritten(self):
        for replaced in (True, False):
            with self.subTest(replaced):
                shutil.rmtree(self.folder / "Drafts", ignore_errors=True)
                self.run_on_mail('MakeReply("", 0)\nHostSetBody("first\\n")\nSaveDraft2(1)\n')
                [file] = self.drafts()
                change = (f'Bypass_CopyFile("{self.mail.as_posix()}", "{file.as_posix()}", 0)\n' if replaced else
                          f'Bypass_MoveFile("{file.as_posix()}", "{(self.folder / "sent.txt").as_posix()}")\n')
                result = self.run_on_mail('SelectFolder("Drafts")\nOpenMail()\nHostSetBody("mine\\n")\n' + change +
                                          'print SaveDraft(), HostReason()\n')
                self.assertRegex(result.out, "^0.*another program")
                self.assertEqual(file.exists() and file.read_bytes(), replaced and PLAIN)
                [mine] = [other for other in self.drafts() if other != file]
                self.assertEqual((text_of(parsed(mine)), parsed(mine)["X-Unsent"]), ("mine\n", "1"))
                (self.folder / "sent.txt").unlink(missing_ok=True)

    def test_a_draft_that_was_sent_is_not_sent_again(self):
        for number in range(3):
            self.run_on_mail(f'NewMail()\nSetHeader("To", "a@b.jp")\nSetHeader("Subject", "s{number}")\nSaveDraft2(1)\n')
        result = self.run_on_mail('SelectFolder("Drafts")\nfor i in 3\n  SetMailIndex(i)\n  print OpenMail(), SendLater(), " "\nend\n'
                                  'print OpenMail(), HostReason()\n')
        sent = sorted(parsed(file)["Subject"] for file in (self.folder / "wrenfold/outbox").glob("*.eml"))
        # Two leave the list under the number that counts on; the number 2 names none, and the open mail is gone.
        self.assertRegex(result.out, r"^11 \n11 \n00 \n0the draft was sent or deleted: .*eml is gone\n$")
        self.assertEqual((sent, self.draft()["Subject"]), (["s0", "s2"], "s1"))

    def test_an_answer_to_a_mail_that_is_gone_is_told(self):
        self.run_on_mail('MakeReply("", 0)\n')
        other = self.write("b.eml", b"Subject: other\r\n\r\n")
        for quiet in ("", "NoWarningRootUpdateFail()\n"):
            result = self.run_macro(f'{quiet}SelectFolder("Drafts")\nOpenMail()\nSaveDraft()\nMakeReply("", 0)\nSelectFolder("Drafts")\n'
                                    'OpenMail()\nprint SendLater()\n', "--mail", other)
            told = 'wrenfold: the mail that "Re: Minutes" to Alice <alice@example.com> answers is not here to be marked'
            self.assertEqual((told in result.err, result.out), (not quiet, "1\n"), result.err)
            if not quiet:
                for file in self.drafts():
                    file.unlink()
                self.run_on_mail('MakeReply("", 0)\n')

    def test_an_answer_to_a_mail_that_was_removed_for_good_is_told(self):
        result = self.run_on_mail('MakeReply("", 0)\nprint Delete(), SelectFolder("trash", null), Delete(), MailCount()\nprint SendLater()\n')
        self.assertEqual((result.out, result.code), ("1110\n1\n", 0))
        self.assertIn('wrenfold: the mail that "Re: Minutes" to Alice <alice@example.com> answers is not here to be marked', result.err)

    def test_the_state_of_the_mail_being_written_is_its_own(self):
        states = 'print IsOrikaeshi(), IsRootOrikaeshi(), GetMailFlag("mark"), MailType()\n'
        self.assert_output(self.run_on_mail(
            f'{states}MakeReply("", 0)\nSetOrikaeshi(0)\nSetMailFlag("mark", 1)\n{states}SyncOrikaeshi()\nSetMailFlag("mark", 0)\n{states}'
            f'SetMailFlag("mark", 1)\nSaveDraft2(1)\n{states}NewMail()\n{states}'
            f'SelectFolder("Drafts", null)\n{states}OpenMail()\n{states}'), "1101\n0112\n1102\n1101\n1102\n1102\n1102\n")

    def test_html_has_the_html_form_of_the_signature(self):
        for name, text in (("sign/Plain.txt", "-- \r\nBob"), ("sign/Rich.html", "<p>-- <br><b>Bob</b></p>")):
            (self.folder / name).parent.mkdir(exist_ok=True)
            self.write(name, text)
        self.assert_output(self.run_on_mail(
            'NewMail()\nHostSetBody("a < b\\n")\nSwitchSign("Rich")\nHtmlEdit(1)\nprint HostHtml()\nHtmlEdit(0)\nSwitchSign("Plain")\n'
            'HtmlEdit(1)\nprint HostHtml()\nHtmlEdit(0)\nSwitchSign("Rich")\nHostSetBody("c")\nHtmlEdit(1)\nprint HostHtml()\n'
            'SaveDraft2(1)\n', "--templates", self.folder),
            "a &lt; b<br>\n<p>-- <br><b>Bob</b></p>\na &lt; b<br>\n-- <br>\nBob\nc\n")

    def test_a_new_mail_is_found_after_the_main_window_was_raised(self):
        self.assert_output(self.run_on_mail('RestoreWindow()\nprint SetMainWndTop()\nNewMail()\nSetHeader("Subject", "x")\n'
                                            'print SetFindPack("x"), SaveDraft2(1)\n'), "1\n11\n")
        self.assertEqual(self.draft()["Subject"], "x")

    def test_a_folder_that_cannot_be_made_keeps_the_mail_and_says_so(self):
        place = self.write("Drafts", "a file")
        result = self.run_on_mail('MakeReply("", 0)\nHostSetBody("mine")\nprint SaveDraft()\nMakeForward()\n'
                                  'print NewMailType(), CurrentHeader("Subject"), HostBody()\n')
        self.assertEqual((result.out, result.code), ("0\n1Re: Minutesmine\n", 1))
        self.assertIn('wrenfold: the mail being written, "Re: Minutes" to Alice <alice@example.com>, cannot be kept as a draft: '
                      "cannot make the folder ", result.err)
        self.assertIn("there is a file ", result.err)
        self.assertTrue(result.err.endswith("\n\nmine\n"), "the mail is shown, whole: " + result.err)
        self.assertEqual(place.read_text(), "a file")

    def test_a_mail_that_cannot_be_kept_lies_whole_elsewhere(self):
        self.write("Drafts", "a file")
        self.write("att.bin", bytes(range(256)))
        result = self.run_on_mail('MakeReply("", 0)\nHtmlEdit(1)\nHostSetHtml("<b>bold</b>")\nSetHeader("Bcc", "secret@b.jp")\n'
                                  f'AddAttach("{self.folder.as_posix()}/att.bin")\n')
        [file] = self.folder.glob("unsent-*.eml")
        self.assertEqual(result.code, 1)
        self.assertIn("wrenfold: it lies in ", result.err)
        self.assertIn(file.name, result.err)
        mail = parsed(file)
        self.assertEqual((mail["Bcc"], text_of(mail.get_body(("html",)))), ("secret@b.jp", "<b>bold</b>\n"))
        self.assertEqual([part.get_content() for part in mail.iter_attachments()], [bytes(range(256))])

    def test_a_file_is_no_folder_for_drafts_or_the_outbox(self):
        place = self.write("place", "a file")
        for option in ("--drafts", "--outbox"):
            result = self.run_on_mail("NewMail()\n", option, place)
            self.assertEqual((result.out, result.code), ("", 1))
            self.assertRegex(result.err, "wrenfold: .*place cannot .*: it is no folder\n")

    @unittest.skipIf(os.name == "nt" or os.geteuid() == 0, "root and Windows write into read-only folders")
    def test_a_folder_that_cannot_be_written_keeps_the_mail_and_says_so(self):
        folder = self.folder / "Drafts"
        folder.mkdir()
        folder.chmod(stat.S_IRUSR | stat.S_IXUSR)
        self.addCleanup(folder.chmod, stat.S_IRWXU)
        result = self.run_on_mail('MakeReply("", 0)\nHostSetBody("mine")\nprint SaveDraft()\n')
        self.assertEqual((result.out, result.code), ("0\n", 1))
        self.assertIn("cannot write ", result.err)

    def test_no_half_written_draft_is_left(self):
        self.run_on_mail('MakeReply("", 0)\n')
        self.assertEqual([file.suffix for file in (self.folder / "Drafts").iterdir()], [".eml"])

    def test_where_drafts_lie(self):
        self.assert_output(self.run_on_mail('MakeReply("", 0)\nSaveDraft()\n', "--drafts", self.folder / "mine/drafts"), "")
        self.assertEqual(len(self.drafts("mine/drafts")), 1)
        # Without mails: beside the accounts.
        self.assert_output(self.run_macro('NewMail()\nSetHeader("To", "a@b")\n', "--accounts", self.folder / "accounts.txt"), "",
                           KEPT.format("", " to a@b"))
        self.assertEqual(len(self.drafts()), 1)


class Questions(Drafts):
    ASK = 'MakeReply("", 0)\nprint ConfirmSend()\nSaveDraft2(1)\n'

    def test_the_user_is_asked_whether_to_send(self):
        question = 'send "Re: Minutes" to Alice <alice@example.com>? [y/N]\n'
        macro = self.write("ask.macro", self.ASK)
        for answer, sure in (("y\n", "1\n"), ("Yes\n", "1\n"), ("n\n", "0\n"), ("\n", "0\n"), ("", "0\n")):
            with self.subTest(answer):
                self.assertEqual(host.run("--english", "--mail", self.mail, "--macro", macro, input=answer), Result(sure, question, 0))
        self.assertEqual(self.run_on_mail(self.ASK, "--yes"), Result("1\n", question, 0))

    def test_the_address_book_is_a_menu(self):
        book = self.write("book.csv", 'address, name\na@example.com, "Ä, B"\nb@example.com\n')
        macro = self.write("menu.macro", 'print "[", BookMenu(), "]"\n')
        for answer, chosen in (("1\n", '"Ä, B" <a@example.com>'), ("2", "b@example.com"), ("3\n", ""), ("x\n", ""), ("", "")):
            with self.subTest(answer):
                result = host.run("--english", "--mail", self.mail, "--book", book, "--macro", macro, input=answer)
                self.assertEqual((result.out, result.code), (f"[{chosen}]\n", 0))
                self.assertIn('  1  "Ä, B" <a@example.com>\n  2  b@example.com\n', result.err)

    def test_the_book_that_cannot_be_written_stays(self):
        book = self.write("book.csv", "address, name\na@example.com, A\n")
        (self.folder / "book.csv.new").mkdir()
        self.assert_output(self.run_on_mail(
            'print AddBookMember("c@example.com", "C", null, null), "[", FindBook("c@example.com"), "]"\n', "--book", book), "0[]\n")
        self.assertEqual(book.read_text(), "address, name\na@example.com, A\n")


if __name__ == "__main__":
    unittest.main()
