"""Filing as it shows on disk: which files a macro leaves behind, also when a folder vanishes or the host is ended."""
import hashlib
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

import host
from host import HostTest, NO_SENDER, run

ONE = b"From: Alice <alice@example.com>\r\nSubject: one\r\n\r\n1\r\n"
TWO = b"From: Bob <bob@example.com>\r\nSubject: two\r\n\r\n2\r\n"
LINE = b"From alice@example.com Mon Jun  2 09:00:00 2025\r\n"


class Filing(HostTest):
    def setUp(self):
        super().setUp()
        self.mails = self.folder / "mails"
        (self.mails / "inbox").mkdir(parents=True)
        (self.mails / "work").mkdir()
        (self.mails / "inbox/one.eml").write_bytes(ONE)
        (self.mails / "inbox/two.eml").write_bytes(TWO)
        (self.mails / "list.mbox").write_bytes(LINE + ONE + b"\r\n" + LINE + TWO)

    def files(self):
        """{path: content} of all files of the tree."""
        return {file.relative_to(self.mails).as_posix(): file.read_bytes()
                for file in self.mails.rglob("*") if file.is_file()}

    def run_filing(self, source, *arguments):
        return self.run_macro(source, "--mail", self.mails, *arguments)

    def assert_filed(self, source, out, changes):
        """The macro prints `out`, and the tree changes by {path: content, None when the file is gone}."""
        expected = {**self.files(), **changes}
        self.assert_output(self.run_filing(source), out)
        self.assertEqual(self.files(), {path: content for path, content in expected.items() if content is not None})


class OnDisk(Filing):
    def test_moved_mails_lie_in_their_folder(self):
        self.assert_filed('SelectFolder("inbox", null)\nSelectAllMail()\nprint Move("work", null), MailCount()\n', "10\n",
                          {"inbox/one.eml": None, "inbox/two.eml": None, "work/one.eml": ONE, "work/two.eml": TWO})
        self.assert_output(self.run_filing('print GetFolderMailCount("inbox", null, null), GetFolderMailCount("work", null, null)'),
                           "02\n")

    def test_no_mail_goes_where_none_is_read(self):
        (self.mails / "filters.txt").write_text("Subject: one => WRENFOLD\nSubject: two => work/wrenfold/deep\n")
        reason = 'no folder can be called "{}": it would not be read: it lies too deep, behind a link, or where mails wait'.format
        before = self.files()
        self.assert_output(self.run_filing(
            'SelectFolder("inbox", null)\n'
            'for name in ["wrenfold", "work/Wrenfold/deep", join(split("d,d,d,d,d,d,d,d,d,d,d,d,d,d,d,d,d", ","), "/d/")]\n'
            '  print MakeFolder(name, null), HostReason(), " ", Move(name, null)\nend\n'
            'SelectAllMail()\nprint DoFilter(), HostReason()\n'),
            "".join(f"0{reason(name)} 0\n" for name in ("wrenfold", "work/Wrenfold/deep", "/".join(33 * "d")))
            + f"0{reason('work/wrenfold/deep')}\n")
        self.assertEqual(self.files(), before)

    def test_a_folder_is_deleted_in_any_case(self):
        (self.mails / "notes.txt").write_text("kept")
        self.assert_output(self.run_filing(
            'print MakeFolder("WORK/Sub", null)\nSelectFolder("inbox", null)\nprint Move("WORK/Sub", null)\n'
            'print DeleteFolder("work", null), HostReason()\n'), "1\n1\n1\n")
        self.assertFalse((self.mails / "work").exists())
        self.assertEqual((self.mails / "trash/one.eml").read_bytes(), ONE)

    def test_a_mail_of_an_mbox_leaves_the_others(self):
        self.assert_filed('SelectFolder("list", null)\nprint Move("work", null), MailCount(), RootHeader("Subject")\n', "11two\n",
                          {"list.mbox": LINE + TWO, "work/19700101-000000.eml": ONE})

    def test_a_mail_moves_into_an_mbox(self):
        (self.mails / "list.mbox").write_bytes(LINE + TWO)
        self.assert_filed(
            'SelectFolder("inbox", null)\nprint Move("list", null)\nSelectFolder("list", null)\nSetMailIndex(1)\n'
            'print MailCount(), RootHeader("Subject"), " ", MailFileOffset()\n', f"1\n2one {2 * len(LINE) + len(TWO) + 2}\n",
            {"inbox/one.eml": None,
             "list.mbox": LINE + TWO + b"\r\nFrom alice@example.com Thu Jan  1 00:00:00 1970\r\n" + ONE + b"\r\n"})

    def test_a_deleted_mail_lies_in_the_trash_until_it_is_deleted_there(self):
        self.assert_filed('SelectFolder("inbox", null)\nprint Delete(), MailFileName()\n', "1two.eml\n",
                          {"inbox/one.eml": None, "trash/one.eml": ONE})
        self.assert_filed('SelectFolder("trash", null)\nprint Delete(), MailCount()\n', "10\n", {"trash/one.eml": None})

    def test_a_deleted_folder_leaves_its_mails_in_the_trash(self):
        (self.mails / "inbox/deep").mkdir()
        (self.mails / "inbox/deep/one.eml").write_bytes(TWO)
        self.assert_filed('print DeleteFolder("inbox", null), DeleteFolder("list", null)\n', "11\n",
                          {"inbox/one.eml": None, "inbox/two.eml": None, "inbox/deep/one.eml": None, "list.mbox": None,
                           "trash/one.eml": ONE, "trash/two.eml": TWO, "trash/one (2).eml": TWO,
                           "trash/19700101-000000.eml": ONE, "trash/19700101-000000 (2).eml": TWO})
        self.assertFalse((self.mails / "inbox").exists())

    def test_what_is_kept_of_a_folder_is_read_again(self):
        self.run_filing('SetFolderIcon("inbox", null, 5)\nMakeGrepFolder("twos", null, "Subject: two")\nMakeFolder("a/b", null)\n')
        self.assert_output(self.run_filing(
            'print GetFolderIcon("inbox", null), GetFolderMailCount("twos", null, null), SelectFolder("a/b", null)\n'), "521\n")

    def test_rules_sort(self):
        (self.mails / "filters.txt").write_bytes(b"Subject: two => work\nFrom: alice => people/alice\n")
        self.assert_filed('SelectFolder("inbox", null)\nSelectAllMail()\nprint DoFilter()\n', "2\n",
                          {"inbox/one.eml": None, "inbox/two.eml": None, "work/two.eml": TWO, "people/alice/one.eml": ONE})

    def test_a_wrong_rule_files_nothing(self):
        (self.mails / "filters.txt").write_bytes(b"Subject: two => work\nSubject\n")
        before = self.files()
        result = self.run_filing('SelectFolder("inbox", null)\nSelectAllMail()\nprint DoFilter()\n', "--trace")
        self.assertEqual((result.out, self.files()), ("0\n", before))
        self.assertIn('filters.txt, line 2: "=> folder" is missing)', result.err)

    def test_each_path_has_its_own_trash_and_is_read_once(self):
        macro = ('print MailCount(), GetTabCount()\nprint SelectAccountGroup("mails"), Delete()\n'
                 'SelectFolder("work", null)\nprint MailCount()\n')
        result = self.run_macro(macro, "--mail", self.mails / "inbox", "--mail", self.mails)
        self.assert_output(result, "22\n11\n0\n")
        self.assertEqual((self.mails / "trash/19700101-000000.eml").read_bytes(), ONE)
        self.assertEqual(sorted(file.name for file in (self.mails / "inbox").iterdir()), ["one.eml", "two.eml"])

    def test_a_sent_mail_is_kept_where_the_macro_says(self):
        self.run_filing('NewMail()\nSetHeader("To", "c@example.com")\nSetSentFolder("work", null)\nSendNow()\n')
        kept = next((self.mails / "work").glob("2*.eml")).read_bytes()  # named by its date
        self.assertIn(b"\r\nTo: c@example.com\r\n", b"\r\n" + kept)


class FindPack(Filing):
    def test_a_macro_gives_the_find_pack_back_when_it_ends(self):
        first = self.write("first.macro", 'SetFindPack("before")\nAutoRestoreFindPack()\nSetFindPack("mine")\nprint GetFindPack(0, 0)\n')
        second = self.write("second.macro", 'print GetFindPack(0, 0)\n')
        self.assert_output(run("--english", "--mail", self.mails, "--macro", first, "--macro", second), "mine\nbefore\n")


class NothingIsLost(Filing):
    def talk(self):
        """A host at whose prompt lines are typed one by one."""
        talking = subprocess.Popen(host.command() + ["--prompt", "--english", "--trace", "--mail", str(self.mails)],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

        def end():
            talking.kill()
            talking.communicate()
        self.addCleanup(end)
        return talking

    @staticmethod
    def say(talking, line):
        """Types a line and waits for what it prints."""
        talking.stdin.write(line.encode() + b"\n")
        talking.stdin.flush()
        return talking.stdout.readline().decode().strip()

    def test_a_mail_stays_when_its_folder_vanishes(self):
        talking = self.talk()
        self.assertEqual(self.say(talking, 'SelectFolder("inbox", null)'), "1")
        (self.mails / "work").rmdir()
        before = self.files()
        self.assertEqual(self.say(talking, 'Move("work", null)'), "0")
        self.assertEqual(self.say(talking, 'MailFileName()'), "one.eml")
        self.assertEqual(self.files(), before)
        _, err = talking.communicate(b"quit\n", timeout=60)
        self.assertRegex(err.decode(), r'Move: code 14 \(0, "work", null\) -> 0 \(cannot write .*one\.eml: there is no folder .*work\)')

    def test_a_mail_stays_when_its_mbox_cannot_be_rewritten(self):
        (self.mails / "list.mbox.new/in the way").mkdir(parents=True)
        before = self.files()
        result = self.run_filing('SelectFolder("list", null)\nSelectAllMail()\nprint Move("work", null), Delete(), MailCount()\n',
                                 "--trace")
        self.assertEqual((result.out, self.files()), ("002\n", before))
        self.assertRegex(result.err, r"Move: .* -> 0 \(cannot write .*list\.mbox: access denied\)")

    def test_an_mbox_that_another_program_changed_is_left_alone(self):
        talking = self.talk()
        self.say(talking, 'SelectFolder("list", null)')
        (self.mails / "list.mbox").write_bytes(LINE + TWO + b"\r\n" + LINE + ONE)
        before = self.files()
        self.assertEqual(self.say(talking, 'Move("work", null)'), "0")
        self.assertEqual(self.files(), before)
        self.assertEqual(self.say(talking, 'RefreshFolder("list", null)'), "1")
        self.assertEqual(self.say(talking, 'Move("work", null)'), "1")
        self.assertEqual(self.files()["work/19700101-000000.eml"], ONE)
        self.assertEqual(self.files()["list.mbox"], LINE + TWO + b"\r\n")

    def test_a_host_that_is_ended_leaves_whole_files(self):
        talking = self.talk()
        self.say(talking, 'SelectFolder("list", null)')
        self.assertEqual(self.say(talking, 'Move("work", null)'), "1")
        self.assertEqual(self.say(talking, 'SetFolderIcon("work", null, 3)'), "1")
        talking.kill()
        talking.wait()
        self.assertEqual(self.files(), {
            "inbox/one.eml": ONE, "inbox/two.eml": TWO, "list.mbox": LINE + TWO, "work/19700101-000000.eml": ONE,
            "folders.txt": b"[work]\r\nicon = 3\r\n"})

    def test_what_an_interrupted_write_left_is_no_mail(self):
        (self.mails / "work/half.eml.new").write_bytes(ONE[:20])
        (self.mails / "list.mbox.new").write_bytes(LINE)
        expected = {**self.files(), "list.mbox": LINE + TWO, "inbox/19700101-000000.eml": ONE}
        del expected["list.mbox.new"]
        result = self.run_filing('print MailCount(), GetFolderMailCount("work", null, null)\n'
                                 'SelectFolder("list", null)\nprint Move("inbox", null)\n')
        self.assertEqual((result.out, self.files()), ("20\n1\n", expected))
        [line] = result.err.splitlines()
        named, told = line.removeprefix("wrenfold: ").split(" were left ")
        self.assertEqual([name.rsplit("mails", 1)[1][1:].replace("\\", "/") for name in named.split(", ")],
                         ["list.mbox.new", "work/half.eml.new"])
        self.assertEqual(told, "by writes that were interrupted: they are no mails; look into them, then delete them")

    def test_a_folder_is_one_whatever_the_case_of_its_letters(self):
        self.assert_output(self.run_filing(
            'print MakeFolder("drafts", null)\nMakeReply("", 0)\nprint SaveDraft2(1), MakeFolder("DRAFTS", null)\n'
            'RefreshFolder("drafts", null)\nprint GetFolderMailCount("drafts", null, null)\n'
            'folder = AddString(GetNextFolder("mails", null))\ni = 0\nwhile folder != "" and i < 9\n'
            '  print ToBaseName(folder)\n  folder = AddString(GetNextFolder(folder, null))\n  i = i + 1\nend\n'),
            "1\n10\n1\nlist.mbox\ninbox\nwork\ndrafts\n", NO_SENDER)

    def test_a_file_that_was_written_anew_is_read_anew(self):
        out = self.write("out.eml", ONE).as_posix()
        one, two, mbox = ((self.mails / name).as_posix() for name in ("inbox/one.eml", "inbox/two.eml", "list.mbox"))
        other = self.write("other.mbox", LINE + TWO + b"\r\n" + LINE + ONE).as_posix()
        self.assert_output(self.run_filing(f"""\
print LoadRootMail("{out}", 0), RootHeader("Subject"), Bypass_CopyFile("{two}", "{out}", 0)
print LoadRootMail("{out}", 0), RootHeader("Subject")
print LoadRootMail("{one}", 0), RootHeader("Subject"), Bypass_CopyFile("{two}", "{one}", 0)
print LoadRootMail("{one}", 0), RootHeader("Subject"), GetFolderMailCount("inbox", null, null)
print LoadRootMail("{mbox}", {len(LINE)}), RootHeader("Subject"), Bypass_CopyFile("{other}", "{mbox}", 0)
print LoadRootMail("{mbox}", {len(LINE)}), RootHeader("Subject"), GetFolderMailCount("list", null, null)
"""), "1one1\n1two\n1one1\n1two2\n1one1\n1two2\n")

    def test_a_new_rule_counts_folders_as_a_walk_through_them_does(self):
        self.assert_output(self.run_filing("""\
MakeFolder("first", null)
MakeFolder("second", null)
DeleteFolder("first", null)
SelectFolder("inbox", null)
number = 0
folder = GetPrevFolder("second", null)
while folder != ""
  number = number + 1
  folder = GetPrevFolder(folder, null)
end
print RegistSub(2, number, 0, 0), RegistSub(2, number + 1, 0, 0), RegistSub(2, -1, 0, 0)
"""), "100\n")
        self.assertEqual(self.files()["filters.txt"], b"Subject: one => second\r\n")

    def test_changes_that_nobody_saved_outlive_a_new_file(self):
        one, two = ((self.mails / name).as_posix() for name in ("inbox/one.eml", "inbox/two.eml"))
        self.assert_output(self.run_filing(f"""\
LoadRootMail("{one}", 0)
NoWarningHeaderUpdate()
SetHeader("Subject", "mine")
Bypass_CopyFile("{two}", "{one}", 0)
print LoadRootMail("{one}", 0), CurrentHeader("Subject")
"""), "1mine\n")

    def test_an_empty_folder_takes_imported_mails(self):
        one = (self.mails / "inbox/one.eml").as_posix()
        self.assert_output(self.run_filing(
            'print SelectFolder("work", null), MailCount(), CheckDuplication("batch", null, null, 0, 0)\n'
            f'print Import("{one}", "auto", "", ""), MailCount(), RootHeader("Subject")\n'), "100\n11one\n")
        self.assertEqual([content for path, content in self.files().items() if path.startswith("work/")], [ONE])


class OtherPlaces(HostTest):
    def test_a_link_to_a_folder_is_not_followed(self):
        (self.folder / "real").mkdir()
        (self.folder / "mails").mkdir()
        self.write("real/kept.eml", ONE)
        self.write("mails/one.eml", TWO)
        (self.folder / "mails/link").symlink_to(self.folder / "real")
        (self.folder / "mails/back").symlink_to(self.folder / "mails")
        result = run("--english", "--mail", "mails", "--macro", self.write(
            "m.macro", 'print MailCountAll(), SelectFolder("link", null), DeleteFolder("link", null)\n'), folder=self.folder)
        self.assertEqual((result.out, result.code), ("100\n", 0))
        self.assertEqual((self.folder / "real/kept.eml").read_bytes(), ONE)

    @unittest.skipUnless(os.path.isdir("/dev/shm"), "needs another volume")
    def test_a_mail_goes_to_another_volume_and_leaves_this_one(self):
        with tempfile.TemporaryDirectory(dir="/dev/shm") as other:
            self.assertNotEqual(os.stat(other).st_dev, os.stat(self.folder).st_dev)
            (Path(other) / "far").mkdir()
            (Path(other) / "far/one.eml").write_bytes(TWO)
            (self.folder / "mails").mkdir()
            self.write("mails/one.eml", ONE)
            result = run("--english", "--mail", "mails", "--mail", f"Z:{other}/far", "--macro", self.write(
                "m.macro", 'print Move("far", null), HostReason()\n'), folder=self.folder)
            self.assertEqual((result.out, result.code), ("1\n", 0))
            self.assertEqual([path.read_bytes() for path in sorted((Path(other) / "far").iterdir())], [ONE, TWO])
            self.assertEqual(list((self.folder / "mails").iterdir()), [])


class ReadOnly(HostTest):
    def test_no_file_of_the_samples_changes(self):
        shutil.copytree(host.SOURCE / "samples", self.folder / "samples")

        def state():
            return {path: hashlib.sha256(path.read_bytes()).digest() if path.is_file() else None
                    for path in (self.folder / "samples").rglob("*")}
        before = state()
        result = run("--english", "--read-only", "--mail", "samples/mails", "--macro", "samples/macros/file_newsletters.macro",
                     "--macro", self.write("more.macro", """\
print MakeFolder("work", null), Copy("work", null), Delete(), DeleteFolder("lists", null), SetFolderIcon("work", null, 3)
SelectAllMail()
print DoFilter(), RegistSub(0, 0, 0, 0), MakeGrepFolder("found", null, "x"), GetFolderMailCount("work", null, null)
SelectFolder("trash", null)
print MailCount(), Delete(), MailCount()
"""), folder=self.folder)
        self.assertEqual((result.out.splitlines()[-3:], result.code), (["11111", "1011", "211"], 0))
        self.assertEqual(state(), before)

    def test_an_edited_mail_changes_in_memory_alone(self):
        (self.folder / "mails").mkdir()
        mail = self.write("mails/one.eml", ONE)
        mbox = self.write("mails/list.mbox", LINE + ONE + b"\r\n" + LINE + TWO)
        edit = 'BeginEditMail()\nHostSetBody("gone")\nprint SaveEditMail(), HostReason()\nprint RootBody()\n'
        alter = 'SetHeader("Subject", "changed")\nOpenMail()\nprint AlterSave(), HostReason(), RootHeader("Subject")\n'
        result = run("--english", "--read-only", "--mail", "mails", "--macro", self.write(
            "edit.macro", edit + alter + 'SelectFolder("list", null)\nNextMail()\n' + edit + alter + edit), folder=self.folder)
        once = "1\ngone\n1changed\n"
        self.assertEqual((result.out, result.code), (once + once + "1\ngone\n", 0))
        self.assertEqual((mail.read_bytes(), mbox.read_bytes()), (ONE, LINE + ONE + b"\r\n" + LINE + TWO))


if __name__ == "__main__":
    unittest.main()
