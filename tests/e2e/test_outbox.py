"""An outbox that several hosts use: each mail goes once, and what others put there is told apart."""
import subprocess
import unittest

import host
from test_transmission import TransmissionTest, WRITE


class OutboxOfSeveral(TransmissionTest):
    def test_of_two_hosts_that_run_the_outbox_each_mail_goes_once(self):
        self.outbox.mkdir(parents=True)
        for i in range(30):
            (self.outbox / f"{i:02}.eml").write_bytes(b"To: a@example.com\r\nSubject: s\r\n\r\n" + str(i).encode())
        macro = self.write("test.macro", "print SendRemain(), \" \", SentMailCount()\n")
        arguments = ["--english", "--mail", "mails", "--macro", str(macro)]
        hosts = [subprocess.Popen(host.command() + arguments, cwd=self.folder, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE) for _ in range(2)]
        results = [process.communicate(timeout=host.TIMEOUT_SECONDS) for process in hosts]
        sent = sum(int(out.decode().split()[1]) for out, _ in results)
        self.assertEqual((sent, self.names(self.outbox), len(self.names(self.sent))), (30, [], 30), results)
        self.assertEqual(sum(err.count(b"would send:") for _, err in results), 30)

    def test_what_an_ended_host_left_in_the_outbox_is_told_at_the_next_start(self):
        self.outbox.mkdir(parents=True)
        (self.outbox / "1.tmp").write_bytes(b"To: a@exa")
        result = self.run_here("print SendRemain()\n")
        self.assertRegex(result.err, r"^wrenfold: wrenfold.outbox.1\.tmp was left by a write that was interrupted: it is no mail; "
                                     r"look into it, then delete it\n$")
        self.assertEqual((result.out, self.names(self.outbox)), ("1\n", ["1.tmp"]))

    def test_at_the_end_mails_of_others_are_told_apart_from_those_of_the_run(self):
        self.outbox.mkdir(parents=True)
        for name in ("1.eml", "2.eml"):
            (self.outbox / name).write_bytes(b"To: a@example.com\r\nSubject: s\r\n\r\n")
        result = self.run_here(WRITE + "print SendNow()\n")
        self.assertEqual((result.out, result.code), ("1\n", 0))
        self.assertNotIn(" wait", result.err, "what this run wrote was sent")
        result = self.run_here(WRITE + "print SendLater()\n")
        self.assertIn("wrenfold: 1 mail waits in ", result.err)
        self.assertIn(", beside 2 mails of other runs or programs; TransmitCustom(0) or SendRemain() sends them\n", result.err)


if __name__ == "__main__":
    unittest.main()
