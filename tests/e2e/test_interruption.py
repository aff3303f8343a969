"""Ctrl+C: the mail being written is kept, whatever the small host is doing, and what it was sending waits."""
import os
import signal
import socket
import subprocess
import threading
import time
import unittest

import host
from host import HostTest
from test_transmission import PEER, windows_path

WRITE = 'NewMail()\nSetHeader("To", "a@b.example")\nHostSetBody("typed")\nprint "written"\n'
SECONDS = 30


class Run:
    """A host that runs, whose output is read as it comes."""

    def __init__(self, *arguments, folder):
        group = {"creationflags": subprocess.CREATE_NEW_PROCESS_GROUP} if os.name == "nt" else {}
        self.process = subprocess.Popen(
            host.command() + ["--english", *arguments], cwd=folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.PIPE, **group)
        self.err = b""
        self.reader = threading.Thread(target=self.read_errors)
        self.reader.start()

    def read_errors(self):
        self.err = self.process.stderr.read()

    def type(self, text):
        self.process.stdin.write(text.encode())
        self.process.stdin.flush()

    def wait_for(self, line):
        for got in self.process.stdout:
            if got.decode().strip() == line:
                return
        raise AssertionError(f"{line} never came")

    def interrupt(self):
        """Nothing, when the process has ended by itself."""
        self.process.send_signal(signal.CTRL_BREAK_EVENT if os.name == "nt" else signal.SIGINT)

    def end(self):
        """Exit code and standard error, without closing the input."""
        try:
            code = self.process.wait(SECONDS)
        except subprocess.TimeoutExpired:
            code = "hangs"
            self.process.kill()
        self.reader.join()
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            stream.close()
        return code, self.err.decode().replace("\r\n", "\n")


class Interruption(HostTest):
    def setUp(self):
        super().setUp()
        self.write("a.eml", "From: a@b.example\r\nSubject: a\r\n\r\na\r\n")

    def start(self, *arguments):
        for file in self.folder.glob("Drafts/*.eml"):
            file.unlink()
        return Run("--mail", "a.eml", *arguments, folder=self.folder)

    def wait_for_file(self, name):
        end = time.monotonic() + SECONDS
        while not (self.folder / name).exists():
            self.assertLess(time.monotonic(), end, f"no {name}")
            time.sleep(0.05)

    def drafts(self):
        return [file.read_text() for file in self.folder.glob("Drafts/*.eml")]

    def assert_kept(self, run):
        code, err = run.end()
        self.assertEqual(code, 130, err)
        self.assertIn('wrenfold: kept as a draft in Drafts: "" to a@b.example\n', err)
        [draft] = self.drafts()
        self.assertIn("typed", draft)

    def test_at_a_piped_prompt_keeps_the_mail_being_written(self):
        for name, typed in {"idle": "", "in an open block": "while 1\n"}.items():
            with self.subTest(name):
                run = self.start("--prompt")
                run.type(WRITE + typed)
                run.wait_for("written")
                time.sleep(0.5)
                run.interrupt()
                self.assert_kept(run)

    def test_twice_in_a_statement_of_the_prompt_keeps_it_too(self):
        run = self.start("--prompt")
        run.type(WRITE + 'print "turning"\nwhile 1\nend\n')
        run.wait_for("turning")
        time.sleep(0.5)
        run.interrupt()
        time.sleep(0.02)
        run.interrupt()
        self.assert_kept(run)

    def test_once_in_a_statement_of_the_prompt_goes_on_with_the_next(self):
        run = self.start("--prompt")
        run.type(WRITE + 'print "turning"\nwhile 1\nend\n')
        run.wait_for("turning")
        time.sleep(0.5)
        run.interrupt()
        run.type('print HostBody()\n')
        run.wait_for("typed")
        run.process.stdin.close()
        code, err = run.end()
        self.assertEqual(code, 1, err)
        self.assertIn("stopped by Ctrl+C", err)
        self.assertEqual(len(self.drafts()), 1)

    def test_twice_in_a_call_that_never_comes_back_keeps_it_too(self):
        for gap_seconds in (0.02, 1):
            with self.subTest(gap_seconds), socket.socket() as server:
                server.bind(("127.0.0.1", 0))
                server.listen(5)
                port = server.getsockname()[1]
                macro = self.write("test.macro", WRITE + f'Inet_OpenUrl("http://127.0.0.1:{port}/")\n')
                run = self.start("--macro", str(macro))
                run.wait_for("written")
                server.settimeout(SECONDS)
                connection, _ = server.accept()
                with connection:
                    run.interrupt()
                    time.sleep(gap_seconds)
                    run.interrupt()
                    self.assert_kept(run)

    def test_twice_in_a_macro_ends_it_once(self):
        macro = self.write("test.macro", WRITE + "while 1\nend\n")
        for gap_seconds in (0, 0.02, 0.05, 0.06, 0.07, 0.08):  # the later ones meet the program at its end
            with self.subTest(gap_seconds):
                run = self.start("--macro", str(macro))
                run.wait_for("written")
                run.interrupt()
                time.sleep(gap_seconds)
                run.interrupt()
                self.assert_kept(run)

    def test_the_rest_of_what_is_sent_in_the_background_waits(self):
        sending = 'print StartSendRemain()\nwhile 1\nend\n'
        source = 'for i in 3\nNewMail()\nSetHeader("To", "a@b.example")\nSendLater()\nend\n' + sending
        run = self.start("--macro", str(self.write("test.macro", source)), "--send-with",
                         f'"{windows_path(PEER)}" got.eml sleep')
        self.wait_for_file("got.eml")
        run.interrupt()
        time.sleep(0.5)
        self.write("stop", "")
        code, err = run.end()
        self.assertEqual(code, 130, err)
        self.assertIn("transmission: stopped; received 0 mails, sent 0 mails, 1 failure, cancelled\n", err)
        self.assertEqual(err.count("send_peer: 2 words"), 1, err)
        self.assertIn("wrenfold: 3 mails wait in ", err)


if __name__ == "__main__":
    unittest.main()
