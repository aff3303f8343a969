"""Mails of programs that know only the system's Simple MAPI: client -> mapi32 -> WFINFO.dll -> wrenfold.exe -> outbox."""
import email
import email.message
import email.policy
import os
import pathlib
import shutil
import subprocess
import time
import unittest

import host
from host import HostTest, run, sample

BUILD = pathlib.Path(os.environ.get("WFINFO_BUILD", host.SOURCE / "build/windows"))
CLIENT = BUILD / "doubles/mapi_client.exe"
SAMPLE_CLIENT = BUILD / "doubles/send_mail.exe"
MAPI_DIALOG = 8
UNREAD_ONLY = 0x20
ENVELOPE_ONLY = 0x40
PEEK = 0x80
SUPPRESS_ATTACH = 0x800


def text_hex(value, encoding="utf-8"):
    return "-" if value is None else value.encode(encoding).hex() or "00"


def windows_path(path):
    return str(path) if os.name == "nt" else "Z:" + str(path).replace("/", "\\")


class Answer:
    """What the client printed: pairs in order, and its last line."""

    def __init__(self, text):
        lines = text.splitlines()
        self.pairs = [tuple(line.split("=", 1)) for line in lines[:-1]]
        last = dict(word.split("=") for word in lines[-1].split())
        self.code, self.milliseconds = int(last["code"]), int(last["ms"])

    def all(self, name):
        return [None if value == "-" else bytes.fromhex(value) for key, value in self.pairs if key == name]

    def one(self, name):
        values = self.all(name)
        return values[0] if values else None


class MapiTest(HostTest):
    @classmethod
    def setUpClass(cls):
        result = run("--register-mapi", "--yes")
        if result.code != 0:
            raise AssertionError(result.err)
        cls.addClassCleanup(run, "--unregister-mapi")

    def setUp(self):
        super().setUp()
        self.home = self.folder / "home"
        (self.home / "mails").mkdir(parents=True)
        self.environment = {**os.environ, "WRENFOLD_HOME": windows_path(self.home)}
        self.addCleanup(self.end_hosts)
        self.outputs = 0

    # Hosts and clients write to files: a host that a client started would keep a pipe open.
    def start(self, executable, *words):
        self.outputs += 1
        output = open(self.folder / f"output{self.outputs}.txt", "wb")
        self.addCleanup(output.close)
        process = subprocess.Popen(host.command(executable) + [str(word) for word in words], env=self.environment,
                                   stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL)
        process.output = pathlib.Path(output.name)
        return process

    def finish(self, process):
        process.wait(timeout=host.TIMEOUT_SECONDS)
        text = process.output.read_text(encoding="ascii")
        self.assertIn("code=", text)
        return Answer(text)

    def client(self, *words):
        return self.finish(self.start(CLIENT, *words))

    def serve(self, *options):
        """A host that is there before the client."""
        process = self.start(host.EXECUTABLE, "--serve", "--home", windows_path(self.home), *options)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.wait_until(lambda: self.frame_exists(), "no frame")
        return process

    def frame_exists(self):
        return self.ask_client("frame") == 0

    def box(self):
        """What a box in front of the host says; "" without one."""
        return self.texts("box")

    def window(self):
        """What the host's own window says; "" when it does not show."""
        return self.texts("window")

    def texts(self, word):
        return subprocess.run(host.command(CLIENT) + [word], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=host.TIMEOUT_SECONDS).stdout.decode(errors="replace")

    def ask_client(self, word):
        return subprocess.run(host.command(CLIENT) + [word], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=host.TIMEOUT_SECONDS).returncode

    def end_hosts(self):
        # A host that stayed would take the mails of the next test.
        self.assertEqual(self.ask_client("close"), 0, "a host is still there")

    def wait_until(self, condition, reason, seconds=30):
        end = time.monotonic() + seconds
        while not condition():
            self.assertLess(time.monotonic(), end, reason)
            time.sleep(0.05)

    def outbox(self):
        return sorted((self.home / "outbox").glob("*.eml"))

    def sent(self, count=1):
        """The mails of the outbox, parsed by another's parser."""
        files = self.outbox()
        self.assertEqual(len(files), count, files)
        return [email.message_from_bytes(file.read_bytes(), policy=email.policy.default) for file in files]

    def send(self, flags, subject, text, *more):
        answer = self.client("send", flags, text_hex(subject), text_hex(text), *more)
        self.assertEqual(answer.code, 0)
        return answer


class Window(MapiTest):
    def test_it_tells_that_the_host_serves_and_closing_it_ends_the_host(self):
        server = self.serve("--window")
        self.wait_until(lambda: "Simple MAPI" in self.window(), "no window")
        self.assertIn(windows_path(self.home), self.window())
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"))
        self.assertEqual(len(self.sent()), 1)
        self.assertEqual(self.ask_client("close"), 0)
        self.assertEqual(server.wait(timeout=host.TIMEOUT_SECONDS), 0)

    def test_a_second_one_does_not_come(self):
        self.serve()
        result = run("--window", "--home", windows_path(self.home))
        self.assertEqual((result.out, result.err, result.code),
                         ("", "wrenfold: a host serves on this desktop already; wrenfold --stop ends it\n", 1))

    def test_the_host_that_a_program_starts_shows_none(self):
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"))
        self.assertEqual((self.frame_exists(), self.window()), (True, ""))


class Sending(MapiTest):
    def test_a_mail_lies_in_the_outbox_byte_for_byte(self):
        self.send(0, "Hello", "Dear all\nbye", "to", text_hex("Jo"), text_hex("SMTP:jo@x.jp"), "to", "-", text_hex("k@x.jp"),
                  "cc", text_hex("Sales (Osaka)"), text_hex("s@x.jp"), "bcc", "-", text_hex("b@x.jp"))
        mail, = self.sent()
        raw = self.outbox()[0].read_bytes().decode("ascii")
        self.assertEqual(raw, (
            "From: wrenfold@localhost\r\nTo: Jo <jo@x.jp>,\r\n k@x.jp\r\nCc: \"Sales (Osaka)\" <s@x.jp>\r\nBcc: b@x.jp\r\n"
            f"Subject: Hello\r\nDate: {mail['Date']}\r\nMessage-ID: <{self.outbox()[0].stem}@wrenfold.invalid>\r\n"
            "MIME-Version: 1.0\r\nX-Unsent: 1\r\nX-Wrenfold-Command: newmail\r\nContent-Type: text/plain; charset=UTF-8\r\n"
            "Content-Transfer-Encoding: 7bit\r\n\r\nDear all\r\nbye\r\n"))

    def test_the_dialog_flag_asks_for_a_signature(self):
        self.send(MAPI_DIALOG, "s", "t", "to", "-", text_hex("a@x.jp"))
        self.assertEqual(self.sent()[0]["X-Wrenfold-Options"], "sign=1")

    def test_without_a_text_the_template_is_used(self):
        self.send(0, "s", None, "to", "-", text_hex("a@x.jp"))
        self.assertEqual(self.sent()[0]["X-Wrenfold-Options"], "template=1 sign=1")

    def test_japanese_in_shift_jis_and_utf_8(self):
        for encoding in ("cp932", "utf-8"):
            with self.subTest(encoding):
                words = ["send", 0, text_hex("日本語の件名です", encoding), text_hex("本文です。\r\nソ表\r\n", encoding),
                         "to", text_hex("山田", "cp932"), text_hex("y@x.jp")]
                self.assertEqual(self.client(*words).code, 0)
        for mail in self.sent(2):
            self.assertEqual(mail["Subject"], "日本語の件名です")
            self.assertEqual(mail.get_content(), "本文です。\r\nソ表\r\n")
            self.assertEqual(mail["To"].addresses[0].display_name, "山田")

    def test_recipients_in_utf_8_are_read_as_such(self):
        self.send(0, "s", "t", "to", text_hex("山田 é"), text_hex("y@x.jp"), "to", text_hex("鈴木", "cp932"), text_hex("s@x.jp"),
                  "cc", text_hex("김, 철수 (서울)"), text_hex("SMTP:k@x.jp"))
        mail, = self.sent()
        self.assertEqual([a.display_name for a in mail["To"].addresses], ["山田 é", "鈴木"])
        self.assertEqual([a.display_name for a in mail["Cc"].addresses], ["김, 철수 (서울)"])

    def test_file_names_in_utf_8_are_read_as_such(self):
        file = self.write("a.txt", "one")
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"), "file", text_hex(windows_path(file)), text_hex("表示名 é.txt"))
        if host.takes_any_path():
            other = self.write("表 한.txt", "two")
            self.assertEqual(self.client("documents", "-", text_hex(windows_path(other))).code, 0)
        parts = [next(mail.iter_attachments()) for mail in self.sent(2 if host.takes_any_path() else 1)]
        self.assertEqual([(part.get_filename(), part.get_content()) for part in parts],
                         [("表示名 é.txt", b"one"), ("表 한.txt", b"two")][:len(parts)])

    def test_what_shift_jis_lacks_arrives_too(self):
        self.send(0, "é ü 한", "é", "to", "-", text_hex("a@x.jp"))
        mail, = self.sent()
        self.assertEqual((mail["Subject"], mail.get_content()), ("é ü 한", "é\r\n"))

    def test_attachments_keep_their_bytes_and_display_names(self):
        first = self.write("a b.bin", bytes(range(256)) * 20)
        second = self.write("c.txt", "second")
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"), "file", text_hex(windows_path(first)), text_hex("表示名.bin", "cp932"),
                  "file", text_hex(windows_path(second)), "-")
        first.unlink()  # the call is back: the caller may delete his files
        parts = list(self.sent()[0].iter_attachments())
        self.assertEqual([part.get_filename() for part in parts], ["表示名.bin", "c.txt"])
        self.assertEqual([part.get_content() for part in parts], [bytes(range(256)) * 20, b"second"])

    def test_a_file_that_is_not_there_does_not_keep_the_mail_back(self):
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"), "file", text_hex("C:\\gone.txt"), "-")
        mail = self.sent()[0]
        self.assertEqual(mail["X-Wrenfold-Missing-File"], "C:\\gone.txt")
        self.assertEqual(mail.get_content().splitlines(), ["t", "[missing attachment: gone.txt]"])

    def test_documents_open_a_new_mail(self):
        files = [self.write("a b.txt", "one"), self.write("c.txt", "two")]
        paths = ";".join(windows_path(file) for file in files)
        self.assertEqual(self.client("documents", text_hex(";"), text_hex(paths)).code, 0)
        mail, = self.sent()
        self.assertEqual(mail["X-Wrenfold-Options"], "template=1 sign=1")
        self.assertEqual([part.get_content() for part in mail.iter_attachments()], [b"one", b"two"])

    def test_the_sample_client_sends(self):
        process = self.start(SAMPLE_CLIENT, "jo@x.jp", "from C", "text")
        process.wait(timeout=host.TIMEOUT_SECONDS)
        self.assertEqual(process.output.read_text().strip(), "MAPISendMail: 0")
        self.assertEqual(self.sent()[0]["Subject"], "from C")

    def test_the_sample_client_sends_files_under_their_names(self):
        first, second = self.write("a.txt", "one"), self.write("b.txt", "two")
        name = "表示名.txt" if host.takes_any_path() else "first.txt"
        process = self.start(SAMPLE_CLIENT, "jo@x.jp", "s", "t", windows_path(first), name, windows_path(second), "b b.txt")
        process.wait(timeout=host.TIMEOUT_SECONDS)
        self.assertEqual(process.output.read_text().strip(), "MAPISendMail: 0")
        self.assertEqual([(part.get_filename(), part.get_content()) for part in self.sent()[0].iter_attachments()],
                         [(name, b"one"), ("b b.txt", b"two")])

    @unittest.skipUnless(host.takes_any_path(), "this locale lets no such name through")
    def test_the_sample_client_refuses_what_code_page_932_lacks(self):
        process = self.start(SAMPLE_CLIENT, "jo@x.jp", "é ☕", "t", windows_path(self.write("a.txt", "one")), "é.txt")
        self.assertEqual(process.wait(timeout=host.TIMEOUT_SECONDS), 1)
        self.assertEqual(self.outbox(), [])

    def test_a_mail_that_cannot_be_kept_is_told_by_a_box(self):
        (self.home / "outbox").write_text("a file where the folder should be")
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"))
        self.wait_until(lambda: "is lost" in self.box(), "no box")
        self.assertIn("outbox", self.box())
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"))  # the box does not keep the next caller back

    def test_settings_tell_the_sender(self):
        (self.home / "settings.txt").write_text("from=山田 <y@x.jp>\n", encoding="utf-8")
        self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"))
        self.assertEqual(self.sent()[0]["From"].addresses[0].display_name, "山田")

    def test_a_session_closes_the_host_that_it_started(self):
        self.assertEqual(self.client("session", 0).pairs, [("session", "1")])
        self.wait_until(lambda: not self.frame_exists(), "the host is still there")

    def test_a_session_leaves_a_running_host_alone(self):
        self.serve()
        self.client("session", 0)
        time.sleep(0.5)
        self.assertTrue(self.frame_exists())

    def test_eight_callers_at_once_each_mail_arrives_once(self):
        # Nobody serves yet: several callers find no host and start one each.
        processes = [self.start(CLIENT, "send", 0, text_hex(f"mail {i}"), text_hex("t"), "to", "-", text_hex("a@x.jp"))
                     for i in range(8)]
        for process in processes:
            self.assertEqual(self.finish(process).code, 0)
        self.assertEqual(sorted(mail["Subject"] for mail in self.sent(8)), [f"mail {i}" for i in range(8)])


class HostOfMacros(MapiTest):
    """A host that runs macros has a frame too, but no outbox: it refuses, and says so."""

    def setUp(self):
        super().setUp()
        macro = self.write("endless.macro", "n = 1\nwhile n\n  n = 3 - n\nend\n")
        self.complaints = self.folder / "complaints.txt"
        with open(self.complaints, "wb") as errors:
            process = subprocess.Popen(host.command() + ["--english", "--macro", str(macro)], stdin=subprocess.DEVNULL,
                                       stdout=subprocess.DEVNULL, stderr=errors)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        self.wait_until(self.frame_exists, "no frame")

    def complained(self):
        return self.complaints.read_text(encoding="utf-8")

    def test_a_mail_is_refused_by_name(self):
        self.send(0, "日本語の件名", "t", "to", text_hex("Jo"), text_hex("SMTP:jo@x.jp"))
        self.assertEqual(self.complained(), 'wrenfold: a mail of another program ("日本語の件名" to Jo <jo@x.jp>) was refused: this '
                         "host runs macros and serves no other program; send it again when this host has ended\n")
        self.assertEqual(self.outbox(), [])

    def test_a_mail_commands_no_terminal(self):
        self.send(0, "\x1b[2J", "t", "to", "-", text_hex("a@x.jp"))
        self.assertIn('("\\x1B[2J" to a@x.jp) was refused', self.complained())

    def test_a_reader_does_not_wait(self):
        answer = self.client("find", 0)
        self.assertNotIn(answer.code, (0, 16))  # neither found, nor found to be the last
        self.assertLess(answer.milliseconds, 1000)
        self.assertIn("another program's wish to read mails was refused", self.complained())


class Reading(MapiTest):
    def setUp(self):
        super().setUp()
        for name in ("plain-ascii.eml", "attachments.eml", "reply.eml"):
            shutil.copy(sample(name), self.home / "mails" / name)
        self.serve()

    def find(self, flags=0):
        answer = self.client("find", flags)
        self.assertEqual(answer.code, 16)  # no more messages
        return [identifier.decode() for identifier in answer.all("id")]

    def test_all_mails_are_found_in_order(self):
        self.assertEqual(self.find(), ["attachments.eml", "plain-ascii.eml", "reply.eml"])

    def test_a_mail_is_read_as_its_file_says(self):
        parsed = email.message_from_bytes(sample("plain-ascii.eml").read_bytes(), policy=email.policy.default)
        answer = self.client("read", text_hex("plain-ascii.eml"), 0)
        self.assertEqual(answer.code, 0)
        self.assertEqual(answer.one("subject").decode(), parsed["Subject"])
        self.assertEqual(answer.one("text").decode("cp932").split(), parsed.get_content().split())
        self.assertEqual(answer.one("date").decode(), parsed["Date"].datetime.strftime("%Y/%m/%d %H:%M"))
        sender = parsed["From"].addresses[0]
        self.assertEqual(answer.one("from.0.name").decode(), sender.display_name or sender.addr_spec)
        self.assertEqual(answer.one("from.0.address").decode(), "SMTP:" + sender.addr_spec)
        self.assertEqual([a.decode() for a in answer.all("recipient.1.address")],
                         ["SMTP:" + a.addr_spec for a in parsed["To"].addresses])

    def test_attachments_are_files_for_the_reader(self):
        parsed = email.message_from_bytes(sample("attachments.eml").read_bytes(), policy=email.policy.default)
        expected = [part.get_payload(decode=True) for part in parsed.iter_attachments()]
        answer = self.client("read", text_hex("attachments.eml"), PEEK)
        self.assertEqual(len(answer.all("file.path")), len(expected))
        self.assertGreater(len(expected), 1)
        if not host.takes_any_path():
            return  # this locale lets Wine see ASCII file names only
        for path, content in zip(answer.all("file.path"), expected):
            unix = subprocess.run(["winepath", "-u", path.decode("cp932")], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                  stdin=subprocess.DEVNULL, timeout=60).stdout.decode().strip() if os.name != "nt" else path
            self.assertEqual(pathlib.Path(unix).read_bytes(), content)
        self.assertEqual(self.client("read", text_hex("attachments.eml"), PEEK | SUPPRESS_ATTACH).all("file.path"), [])
        self.assertIsNone(self.client("read", text_hex("attachments.eml"), PEEK | ENVELOPE_ONLY).one("text"))

    def unix(self, path):
        """A path that a reader was given, as this program opens it."""
        if os.name == "nt":
            return pathlib.Path(path.decode("cp932"))
        text = subprocess.run(["winepath", "-u", path.decode("cp932")], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              stdin=subprocess.DEVNULL, timeout=60).stdout.decode().strip()
        return pathlib.Path(text)

    def write_mail_with(self, *names):
        mail = email.message.EmailMessage()
        mail["Subject"] = "s"
        mail.set_content("t")
        for name in names:
            mail.add_attachment(("content of " + name).encode(), "application", "octet-stream", filename=name)
        (self.home / "mails/own.eml").write_bytes(mail.as_bytes())

    def test_attachments_with_names_of_devices_are_files_all_the_same(self):
        names = ["NUL", "AUX.txt", "com1.tar.gz", "COM\u00b9", "CON .txt", "lpt1", "a.txt. ", "b\U0001F600.txt", "NUL"]
        self.write_mail_with(*names)
        answer = self.client("read", text_hex("own.eml"), PEEK)
        self.assertEqual(answer.code, 0)
        paths = [self.unix(path) for path in answer.all("file.path")]
        self.assertEqual([path.name for path in paths], ["_NUL", "_AUX.txt", "_com1.tar.gz", "_COM_", "_CON .txt", "_lpt1",
                                                         "a.txt", "b__.txt", "_NUL (2)"])
        self.assertEqual([path.read_text() for path in paths], ["content of " + name for name in names])

    def test_attachments_that_cannot_be_stored_fail_the_read(self):
        self.write_mail_with("a.txt")
        stored = self.unix(self.client("read", text_hex("own.eml"), PEEK).one("file.path"))
        folder, aside = stored.parents[1], stored.parents[1].with_name("wrenfold.aside")
        folder.rename(aside)
        self.addCleanup(aside.rename, folder)
        folder.write_text("a file where the folder should be")
        self.addCleanup(folder.unlink)
        answer = self.client("read", text_hex("own.eml"), 0)
        self.assertEqual((answer.code, answer.pairs), (12, []))
        self.assertEqual(self.client("read", text_hex("own.eml"), PEEK | SUPPRESS_ATTACH).code, 0)
        self.assertIn("own.eml", self.find(UNREAD_ONLY))

    def test_reading_marks_read_but_peeking_does_not(self):
        self.client("read", text_hex("reply.eml"), PEEK)
        self.assertIn("reply.eml", self.find(UNREAD_ONLY))
        self.client("read", text_hex("reply.eml"), 0)
        self.assertEqual(self.find(UNREAD_ONLY), [name for name in self.find() if name != "reply.eml"])

    def test_a_deleted_mail_is_gone(self):
        self.assertEqual(self.client("delete", text_hex("reply.eml")).code, 0)
        self.assertFalse((self.home / "mails/reply.eml").exists())
        self.assertEqual(self.client("delete", text_hex("reply.eml")).code, 17)
        self.assertEqual(self.client("read", text_hex("reply.eml"), 0).code, 17)
        self.assertEqual(self.find(), ["attachments.eml", "plain-ascii.eml"])

    def test_names_are_resolved_without_the_host(self):
        answer = self.client("resolve", text_hex("Jo <jo@x.jp>"))
        self.assertEqual((answer.code, answer.one("recipient.1.name"), answer.one("recipient.1.address")),
                         (0, b"Jo", b"jo@x.jp"))


class Misbehaving(MapiTest):
    """Hosts that are slow, modal, deaf or die: every wait has its end."""

    def setUp(self):
        super().setUp()
        shutil.copy(sample("reply.eml"), self.home / "mails/reply.eml")

    def test_a_slow_host_is_waited_for(self):
        self.serve("--slow", 2500)
        answer = self.client("read", text_hex("reply.eml"), 0)
        self.assertEqual(answer.code, 0)
        self.assertGreaterEqual(answer.milliseconds, 2500)

    def test_a_mail_reaches_a_slow_host_after_the_caller_went_on(self):
        self.serve("--slow", 15000)
        answer = self.send(0, "late", "t", "to", "-", text_hex("a@x.jp"))
        self.assertTrue(9900 <= answer.milliseconds < 15000, answer.milliseconds)
        self.wait_until(self.outbox, "the mail is lost")
        self.assertEqual(self.sent()[0]["Subject"], "late")

    def test_a_modal_host_is_waited_for(self):
        self.serve("--modal", 3000)
        answer = self.client("read", text_hex("reply.eml"), 0)
        self.assertEqual(answer.code, 0)
        self.assertGreater(answer.milliseconds, 500)

    def test_a_deaf_host_keeps_a_mail_for_ten_seconds(self):
        self.serve("--deaf")
        answer = self.send(0, "s", "t", "to", "-", text_hex("a@x.jp"))
        self.assertTrue(9900 <= answer.milliseconds < 25000, answer.milliseconds)

    def test_a_host_that_dies_in_the_middle_fails_a_reader(self):
        self.serve("--die")
        answer = self.client("read", text_hex("reply.eml"), 0)
        self.assertEqual(answer.code, 2)
        self.assertLess(answer.milliseconds, 20000)

    def test_the_mail_after_a_death_is_sent(self):
        self.serve("--die")
        self.send(0, "taken along", "t", "to", "-", text_hex("a@x.jp"))
        self.send(0, "next", "t", "to", "-", text_hex("a@x.jp"))
        self.assertEqual([mail["Subject"] for mail in self.sent()], ["next"])


class Registration(HostTest):
    KEY = "HKLM\\Software\\Clients\\Mail"

    def registry(self):
        result = subprocess.run(host.command("reg") + ["query", self.KEY, "/s"], stdin=subprocess.DEVNULL,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=host.TIMEOUT_SECONDS)
        return result.stdout

    def test_is_fully_undone(self):
        before = self.registry()
        self.assert_output(run("--register-mapi", "--yes"), "Wrenfold is the system's mail client now.\n")
        during = self.registry()
        self.assertIn(b"DLLPathEx", during)
        run("--register-mapi", "--yes")  # twice does not lose the former client
        self.assert_output(run("--unregister-mapi"), "Wrenfold is no longer registered.\n")
        self.assertEqual(self.registry(), before)
        result = run("--unregister-mapi")
        self.assertEqual((result.err, result.code), ("wrenfold: Wrenfold is not registered\n", 1))

    def test_asks_before_another_client_is_replaced(self):
        before = self.registry()
        self.assertTrue(before, "this system has a mail client of its own")
        result = run("--register-mapi", input="n\n")
        self.assertIn("Replace it with Wrenfold? [y/N]", result.out)
        self.assertIn("32-bit programs cannot use Wrenfold", result.out)
        self.assertEqual((result.err, result.code), ("wrenfold: nothing was changed\n", 1))
        self.assertEqual(self.registry(), before)
        result = run("--register-mapi", input="y\n")
        self.assertEqual(result.code, 0)
        run("--unregister-mapi")
        self.assertEqual(self.registry(), before)


if __name__ == "__main__":
    unittest.main()
