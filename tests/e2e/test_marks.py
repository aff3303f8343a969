"""Marks, flags, colours and bookmarks last from one run to the next, in a file beside the mails."""
import os
import time
import unittest

from host import HostTest
from test_interruption import Run

SHOW = """
i = 0
while SetMailIndex(i)
  print RootHeader("Subject"), " ", IsMarked(), IsUnread(), GetMailFlag("reply"), GetMailFlag("orikaeshi"), " ", GetMailColor(), " ", IsBookmarked()
  i = i + 1
end
"""
LINE = "From alice@example.com Mon Jun  2 09:00:00 2025\r\n"
UNTOUCHED = "0101 0 0"


def mail(name):
    return f"Message-ID: <{name}@x>\r\nFrom: a@b.example\r\nSubject: {name}\r\n\r\n{name}\r\n"


class Folders(HostTest):
    def setUp(self):
        super().setUp()
        self.mails = self.folder / "mails"
        (self.mails / "in").mkdir(parents=True)
        (self.mails / "out").mkdir()
        for name in "abc":
            (self.mails / f"in/{name}.eml").write_bytes(mail(name).encode())
        self.write_mbox("x", "y", "z")
        self.file = self.mails / "in/wrenfold.marks"

    def write_mbox(self, *names):
        (self.mails / "l.mbox").write_bytes("".join(LINE + mail(name) + "\r\n" for name in names).encode())

    def run_on(self, source, *arguments):
        return self.run_macro(source, "--mail", self.mails, *arguments)

    def state(self, folder, *arguments):
        """What a run of its own sees: {subject: "marked unread replied folds colour bookmarked"}."""
        result = self.run_on(f'SelectFolder("{folder}", null)\n{SHOW}', *arguments)
        self.assert_success(result)
        return dict(line.split(" ", 1) for line in result.out.splitlines())

    def files(self):
        return {file.relative_to(self.mails).as_posix(): file.read_bytes()
                for file in self.mails.rglob("*") if file.is_file()}


class Marks(Folders):
    def test_last(self):
        self.assert_output(self.run_on(
            'SelectFolder("in", null)\nSetMailIndex(0)\nSwitchMark()\nSetMailColor(3)\nAddBookmark()\n'
            'SetMailIndex(1)\nSetMailFlag("unread", 0)\nSetMailFlag("reply", 1)\nSetMailFlag("orikaeshi", 0)\n'
            'SelectFolder("l", null)\nSetMailIndex(1)\nprint SetMailFlag("mark", 1)\n'), "1\n")
        self.assertEqual(self.state("in"), {"a": "1101 3 1", "b": "0010 0 0", "c": UNTOUCHED})
        self.assertEqual(self.state("l"), {"x": UNTOUCHED, "y": "1101 0 0", "z": UNTOUCHED})
        self.assertIn(b"\r\na.eml\tid=<a@x>\tmark=1\tcolour=3\tbookmark=1\r\n", self.file.read_bytes())

    def test_a_run_that_changes_nothing_writes_nothing(self):
        before = self.files()
        self.state("in")
        self.assertEqual(self.files(), before)
        self.run_on('SwitchMark()\nSwitchMark()\n')
        self.assertEqual(self.files(), before)
        self.run_on('SelectFolder("in", null)\nSwitchMark()\n')
        os.utime(self.file, (1, 1))
        self.state("in")
        self.assertEqual(self.file.stat().st_mtime, 1)
        self.run_on('SelectFolder("in", null)\nSwitchMark()\n')
        self.assertEqual(self.files(), before)

    def test_go_along_with_filed_mails(self):
        self.run_on('SelectFolder("in", null)\nSwitchMark()\nSetMailColor(2)\nAddBookmark()\n')
        self.assert_output(self.run_on(
            'SelectFolder("in", null)\nprint Move("out", null)\nSelectFolder("l", null)\nSwitchMark()\nprint Move("out", null)\n'
            'SelectFolder("out", null)\nSetMailIndex(1)\nprint Copy("in", null)\n'), "1\n1\n1\n")
        self.assertEqual(self.state("out"), {"a": "1101 2 1", "x": "1101 0 0"})
        self.assertEqual(self.state("in")["a"], "1101 2 0")
        self.assertEqual(self.state("l"), {"y": UNTOUCHED, "z": UNTOUCHED})
        self.assert_output(self.run_on('print DeleteFolder("out", null), HostReason()\n'), "1\n")
        self.assertFalse((self.mails / "out").exists())
        self.assertEqual(self.state("trash"), {"a": "1101 2 1", "x": "1101 0 0"})

    def test_are_there_when_the_program_is_killed_behind_a_move(self):
        self.run_on('SelectFolder("in", null)\nSwitchMark()\n')
        run = Run("--mail", str(self.mails), "--prompt", folder=self.folder)
        run.type('SelectFolder("in", null)\nprint Move("out", null)\nprint "moved"\n')
        run.wait_for("moved")
        run.process.kill()
        run.end()
        self.assertEqual(self.state("out"), {"a": "1101 0 0"})

    def test_last_when_ctrl_c_ends_the_program(self):
        for typed in ("", "while 1\nend\n"):
            with self.subTest(typed):
                run = Run("--mail", str(self.mails), "--prompt", folder=self.folder)
                run.type('SelectFolder("in", null)\nSwitchMark()\nprint "marked"\n' + typed)
                run.wait_for("marked")
                time.sleep(0.5)
                run.interrupt()
                time.sleep(0.1)
                run.interrupt()
                code, err = run.end()
                self.assertEqual(code, 130, err)
                self.assertEqual(self.state("in")["a"], "1101 0 0" if typed == "" else UNTOUCHED)

    def test_are_read_but_not_written_read_only(self):
        self.run_on('SelectFolder("in", null)\nSwitchMark()\n')
        before = self.files()
        self.assert_output(self.run_on(
            'SelectFolder("in", null)\nprint IsMarked(), Move("out", null)\nSwitchMark()\n', "--read-only"), "11\n")
        self.assertEqual(self.files(), before)
        self.assertEqual(self.state("in", "--read-only")["a"], "1101 0 0")

    def test_that_cannot_be_written_are_told_once(self):
        (self.mails / "in/wrenfold.marks.new/x").mkdir(parents=True)
        result = self.run_on('SelectFolder("in", null)\nSwitchMark()\nSetMailIndex(1)\nprint Move("out", null)\n')
        self.assertEqual((result.out, result.code), ("1\n", 1))
        self.assertEqual(result.err.count("wrenfold: marks of mails are not kept: cannot write "), 1)
        self.assertNotIn("wrenfold.marks", " ".join(self.files()))

    def test_an_odd_line_is_told_and_left_alone(self):
        self.file.write_bytes(b"# mine\r\n\xff\xfe\0garbage\r\na.eml\tid=<a@x>\tmark=1\tnote=call\r\nb.eml\r\n")
        result = self.run_on('SelectFolder("in", null)\nprint IsMarked()\nSetMailColor(1)\n')
        self.assertEqual((result.out, result.code), ("1\n", 0))
        self.assertRegex(result.err, r"^wrenfold: .*wrenfold\.marks:2: this line keeps no mail's marks \(skipped, and 1 more\)\n$")
        self.assertEqual(self.file.read_bytes(), b"# mine\r\na.eml\tid=<a@x>\tmark=1\tcolour=1\tnote=call\r\n"
                                                 b"\xff\xfe\0garbage\r\nb.eml\r\n")

    def test_go_only_to_the_mails_that_are_the_same(self):
        self.run_on('SelectFolder("l", null)\nSetMailIndex(1)\nSwitchMark()\nSelectFolder("in", null)\nSwitchMark()\n')
        self.write_mbox("new", "x", "z", "y")
        (self.mails / "in/a.eml").write_bytes(mail("other").encode())
        self.assertEqual(self.state("l"), {"new": UNTOUCHED, "x": UNTOUCHED, "z": UNTOUCHED, "y": "1101 0 0"})
        self.assertEqual(self.state("in"), {"other": UNTOUCHED, "b": UNTOUCHED, "c": UNTOUCHED})
        self.write_mbox("x", "z")
        self.assertEqual(self.state("l"), {"x": UNTOUCHED, "z": UNTOUCHED})

    def test_of_a_file_given_alone_last_too(self):
        for name, folder in (("in/b.eml", "in"), ("l.mbox", "l")):
            self.assert_output(self.run_macro("SwitchMark()\n", "--mail", self.mails / name), "")
            self.assertIn("1101 0 0", self.state(folder).values(), name)

    def test_the_file_is_no_mail(self):
        self.run_on('SelectFolder("in", null)\nSwitchMark()\n')
        result = self.run_macro("print 1", "--mail", self.file)
        self.assertEqual((result.out, result.code), ("", 1))
        self.assertIn("it keeps the marks of mails and is none", result.err)
        self.assert_output(self.run_on('print MakeFolder("in/wrenfold.marks", null), MailCountAll()\n'), "03\n")


class Copies(Folders):
    def test_into_the_own_folder_are_refused(self):
        self.assert_output(self.run_on(
            'SelectFolder("in", null)\nfor n in [Copy("in", null), CopyWithCopyAttach("in", null), Move("in", null)]\n'
            '  print n\nend\nprint HostReason(), " ", MailCount()\n'),
            "0\n0\n0\nwhat is selected lies in in already 3\n")

    def test_of_numbered_files_count_on(self):
        for folder in ("in", "out"):
            (self.mails / folder / "01 (2).eml").write_bytes(mail(folder).encode())
        self.assert_output(self.run_on('SelectFolder("in", null)\nSetMailIndex(0)\nprint MailFileName(), Copy("out", null)\n'),
                           "01 (2).eml1\n")
        self.assertEqual(sorted(path.name for path in (self.mails / "out").glob("*.eml")), ["01 (2).eml", "01 (3).eml"])


class Reasons(Folders):
    def test_without_a_mail_being_written(self):
        reason = "no mail is being written, or open in a window of its own"
        self.assert_output(self.run_on('for n in [1]\n  print SaveDraft(), HostReason()\n  print SaveDraft2(1), HostReason()\nend\n'),
                           f"0{reason}\n0{reason}\n")


if __name__ == "__main__":
    unittest.main()
