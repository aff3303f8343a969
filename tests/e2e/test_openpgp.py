"""Macros and real GnuPG: what they sign and encrypt is accepted by plain gpg, and the other way round.

Under Wine gpg.exe is a small program that hands its command line to the gpg of the system around it.
"""
import base64
import email
import email.policy
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest
import unittest.mock

import host
from host import HostTest, run

BUILD = pathlib.Path(os.environ.get("WFINFO_BUILD", host.SOURCE / "build/windows"))
SAMPLES = host.SOURCE / "samples/macros/openpgp"
PASS_PHRASE = "open sesame"
ALICE, BOB = "alice@example.com", "bob@example.com"
LEFT_FILES = ("$PgpIn.asc", "$PgpIn", "$PgpOut.asc", "$PgpErr.$$$")

# No pass phrase is remembered, or a wrong one would do; nobody is asked; nothing is looked up.
GPG_CONF = "pinentry-mode loopback\nno-auto-key-locate\ndisable-dirmngr\n"
AGENT_CONF = "allow-loopback-pinentry\ndefault-cache-ttl 0\nmax-cache-ttl 0\n"


def gpg(*arguments, input=b""):
    """Plain gpg, outside Wine."""
    return subprocess.run(["gpg", "--batch", "--yes", "--passphrase", PASS_PHRASE, *arguments], input=input,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE)


@unittest.skipUnless(shutil.which("gpg") and os.name != "nt", "needs gpg and Wine")
class OpenPgp(HostTest):
    @classmethod
    def setUpClass(cls):
        cls.home = pathlib.Path(tempfile.mkdtemp(prefix="gpg-"))  # short: the agent's socket lies in it
        cls.addClassCleanup(shutil.rmtree, cls.home, ignore_errors=True)
        (cls.home / "gpg.conf").write_text(GPG_CONF)
        (cls.home / "gpg-agent.conf").write_text(AGENT_CONF)
        bridge = "Z:" + str(BUILD / "doubles/gpg_bridge").replace("/", "\\")
        cls.environment = {"GNUPGHOME": str(cls.home), "WINEPATH": bridge}
        cls.previous = {name: os.environ.get(name) for name in cls.environment}
        os.environ.update(cls.environment)
        cls.addClassCleanup(cls.restore_environment)
        for owner in (ALICE, BOB):
            made = gpg("--quick-gen-key", f"<{owner}>", "future-default", "default", "never")
            assert made.returncode == 0, made.stderr.decode()
        cls.addClassCleanup(subprocess.run, ["gpgconf", "--kill", "all"], env={**os.environ})

    @classmethod
    def restore_environment(cls):
        for name, value in cls.previous.items():
            if value is None:
                del os.environ[name]
            else:
                os.environ[name] = value

    def mail(self, body, name="mail.eml"):
        body = body if isinstance(body, bytes) else body.encode("cp932")
        return self.write(name, b"From: Alice <alice@example.com>\r\nSubject: Test\r\nMIME-Version: 1.0\r\n"
                          b"Content-Type: text/plain; charset=Shift_JIS\r\nContent-Transfer-Encoding: 8bit\r\n\r\n" + body)

    def run_macros(self, mail, *sources, err=""):
        """Runs samples (by name) and macro texts on a mail, with the settings before them."""
        arguments = ["--mail", mail, "--english", "--macro", SAMPLES / "settings.macro"]
        for number, source in enumerate(sources):
            is_sample = source.endswith(".macro")
            arguments += ["--macro", SAMPLES / source if is_sample else self.write(f"{number}.macro", source)]
        result = run(*arguments, folder=self.folder)
        self.assertEqual((result.err, result.code), (err, 0), result.out)
        self.assertEqual([name for name in LEFT_FILES if (self.folder / name).exists()], [])
        return result.out

    def test_a_signed_answer_lies_among_the_drafts(self):
        self.assertEqual(self.run_macros(self.mail("Shall we?\r\n"), "signed_mail.macro", err=host.NO_SENDER), "saved: 1\n")
        [file] = (self.folder / "Drafts").glob("*.eml")
        draft = email.message_from_bytes(file.read_bytes(), policy=email.policy.default)
        self.assertEqual((draft["To"], draft["Subject"]), ("Alice <alice@example.com>", "Re: Test"))
        verified = gpg("--verify", input=draft.get_content().replace("\n", "\r\n").encode())
        self.assertEqual(verified.returncode, 0, verified.stderr.decode())
        self.assertIn("> Shall we?", draft.get_content())

    def encrypted(self, text, *options):
        made = gpg("-ea", "--trust-model", "always", "-r", ALICE, *options, input=text)
        self.assertEqual(made.returncode, 0, made.stderr.decode())
        return made.stdout

    # --- Macros first, gpg behind them ---

    def test_plain_gpg_decrypts_what_a_macro_encrypts(self):
        out = self.run_macros(self.mail("one\r\ntwo\r\n"), "encrypt.macro")
        self.assertTrue(out.startswith("-----BEGIN PGP MESSAGE-----\n"), out)
        self.assertEqual(gpg("-d", input=out.encode()).stdout, b"one\r\ntwo")

    def test_plain_gpg_verifies_what_a_macro_signs(self):
        out = self.run_macros(self.mail("one\r\ntwo\r\n"), "sign.macro")
        self.assertTrue(out.startswith("-----BEGIN PGP SIGNED MESSAGE-----\n"), out)
        self.assertEqual(gpg("--verify", input=out.encode()).returncode, 0)
        self.assertEqual(gpg("--verify", input=out.replace("two", "too").encode()).returncode, 1)

    def test_encrypts_and_signs_for_two_recipients(self):
        out = self.run_macros(self.mail("both\r\n"), f'print PgpEncryptSuper(2, RootBody(), "{ALICE}  {BOB}", sender, '
                              "pass_phrase, 0, 0, 0)\nprint PgpGetExitCode()")
        message, code = out.rsplit("\n", 2)[:2]
        self.assertEqual(code, "0")
        opened = gpg("-d", "--status-fd", "2", input=message.encode())
        self.assertEqual(opened.stdout, b"both")
        self.assertIn(b"GOODSIG", opened.stderr)
        self.assertEqual(opened.stderr.count(b"ENC_TO"), 2)

    def test_a_recipient_without_a_key_gives_nothing(self):
        out = self.run_macros(self.mail("secret\r\n"), 'recipients = "nobody@example.com"', "encrypt.macro")
        self.assertTrue(out.startswith("not encrypted (exit code 2)\n"), out)
        self.assertIn("nobody@example.com", out)
        self.assertNotIn("secret", out)

    def test_a_wrong_pass_phrase_signs_nothing(self):
        out = self.run_macros(self.mail("one\r\n"), 'pass_phrase = "wrong"', "sign.macro")
        self.assertTrue(out.startswith("not signed (exit code 2)\n"), out)

    # --- gpg first, macros behind it ---

    def test_a_macro_decrypts_what_plain_gpg_encrypts(self):
        out = self.run_macros(self.mail(self.encrypted(b"from outside\r\nsecond")), "decrypt.macro")
        self.assertEqual(out, "from outside\nsecond\n")

    def test_a_wrong_pass_phrase_decrypts_nothing(self):
        mail = self.mail(self.encrypted(b"hidden words"))
        out = self.run_macros(mail, 'pass_phrase = "wrong"', "decrypt.macro")
        self.assertTrue(out.startswith("do not trust this message (exit code 2)\n"), out)
        self.assertNotIn("hidden words", out)
        out = self.run_macros(mail, 'print PgpDecrypt(RootBody(), "wrong", null, 0) == ""')
        self.assertEqual(out, "1\n")

    def test_a_good_and_a_tampered_signature(self):
        signed = gpg("--clearsign", "-u", ALICE, input=b"pay 10\n").stdout
        out = self.run_macros(self.mail(signed), "verify.macro")
        self.assertTrue(out.startswith("good signature\n"), out)
        self.assertIn(ALICE, out)
        out = self.run_macros(self.mail(signed.replace(b"pay 10", b"pay 99")), "verify.macro")
        self.assertTrue(out.startswith("bad signature (exit code 1)\n"), out)

    def test_a_detached_signature(self):
        signature = gpg("-ab", "-u", ALICE, input=b"the data\r\n").stdout
        mail = self.mail(signature)
        out = self.run_macros(mail, 'signed_data = "the data\\r\\n"', "verify.macro")
        self.assertTrue(out.startswith("good signature\n"), out)
        out = self.run_macros(mail, 'signed_data = "the date\\r\\n"', "verify.macro")
        self.assertTrue(out.startswith("bad signature (exit code 1)\n"), out)

    def test_a_manipulated_message_shows_in_the_exit_code_alone(self):
        armored = self.encrypted(b"A" * 2000, "-z", "0", "--cipher-algo", "AES256")
        body = armored.split(b"\n\n", 1)[1].split(b"\n=", 1)[0]
        packets = bytearray(base64.b64decode(body))
        packets[-200] ^= 1
        lines = base64.encodebytes(bytes(packets))
        mail = self.mail(b"-----BEGIN PGP MESSAGE-----\n\n" + lines + b"-----END PGP MESSAGE-----\n")
        out = self.run_macros(mail, "decrypt.macro")
        self.assertTrue(out.startswith("do not trust this message (exit code 2)\n"), out)
        out = self.run_macros(mail, 'text = PgpDecrypt(RootBody(), pass_phrase, null, 1)\nprint LeftStr(text, 4)')
        self.assertEqual(out, "AAAA\n", "the text comes back all the same")

    # --- Both ways ---

    def test_japanese_text_comes_back(self):
        text = "日本語のソース表\r\n２行目 ｱｲｳ"
        out = self.run_macros(self.mail(text + "\r\n"), "sign.macro")
        self.assertIn("日本語のソース表\n２行目 ｱｲｳ\n", out)
        self.assertEqual(gpg("--verify", input=out.encode("cp932")).returncode, 0, "the signature is over Shift-JIS")
        out = self.run_macros(self.mail(text + "\r\n"), f'print PgpDecrypt(PgpEncrypt(RootBody(), "{ALICE}"), pass_phrase, '
                              "null, 0) == RootBody(), PgpGetExitCode()")
        self.assertEqual(out, "10\n")

    def test_five_megabytes_come_back(self):
        line = b"0123456789" * 7 + b"\r\n"
        mail = self.mail(line * (5 * 1024 * 1024 // len(line)))
        out = self.run_macros(mail, f'secret = PgpEncrypt(RootBody(), "{ALICE}")\nprint PgpGetExitCode(), secret == ""\n'
                              "print PgpDecrypt(secret, pass_phrase, null, 0) == RootBody(), PgpGetExitCode()")
        self.assertEqual(out, "00\n10\n")

    def traced(self, mail, source):
        macro = self.write("traced.macro", source)
        return run("--mail", mail, "--english", "--trace", "--macro", SAMPLES / "settings.macro", "--macro", macro,
                   folder=self.folder)

    def test_messages_in_utf8_become_host_text(self):
        if not host.takes_any_path():
            self.skipTest("this locale lets Wine give programs ASCII command lines only")
        result = self.traced(self.mail("x\r\n"),
                             'text = PgpEncrypt(RootBody(), "日本ソ表@example.com")\nprint PgpGetInfo()')
        self.assertIn("日本ソ表@example.com", result.out)
        self.assertRegex(result.err, r"code 315 \(.*\) -> 0\ntrace: .*code 316 \(.*\) -> \".*日本ソ表@example\.com")

    def test_messages_in_another_code_page_stay(self):
        made = gpg("--charset", "utf-8", "--quick-gen-key", "Jürgen <juergen@example.com>", "future-default", "default",
                   "never")
        self.assertEqual(made.returncode, 0, made.stderr.decode())
        signed = gpg("--clearsign", "-u", "juergen@example.com", input=b"one\n").stdout
        result = self.traced(self.mail(signed), 'text = PgpDecrypt(RootBody(), "", null, 1)\nprint PgpGetInfo()')
        self.assertIn("juergen@example.com", result.out, result.err)
        self.assertRegex(result.err, r"code 315 \(.*\) -> 1\n")
        self.assertNotIn("code 316", result.err)

    def test_messages_come_as_host_text_without_temporary_files(self):
        out = self.run_macros(self.mail("x\r\n"), 'recipients = "nobody@example.com"', "encrypt.macro")
        for name in LEFT_FILES:
            self.assertNotIn(name, out)


CENTRED = """
user32 = LoadDll("user32.dll")
kernel32 = LoadDll("kernel32.dll")
window = ShowNotifyWnd("text", "title")
DllFunc(user32, "MoveWindow", window, 3, 4, 100, 50, 0, 0, 0, 0, 0)
print SetWindowCenter(window), SetWindowCenter(0x7FFFFFF0)
place = DllFunc(kernel32, "LocalAlloc", 64, 16, 0, 0, 0, 0, 0, 0, 0, 0)
middle = DllFunc(kernel32, "LocalAlloc", 64, 16, 0, 0, 0, 0, 0, 0, 0, 0)
DllFunc(user32, "GetWindowRect", window, place, 0, 0, 0, 0, 0, 0, 0, 0)
left = (DllFunc(user32, "GetSystemMetrics", 0, 0, 0, 0, 0, 0, 0, 0, 0, 0) - 100) / 2
top = (DllFunc(user32, "GetSystemMetrics", 1, 0, 0, 0, 0, 0, 0, 0, 0, 0) - 50) / 2
DllFunc(user32, "SetRect", middle, left, top, left + 100, top + 50, 0, 0, 0, 0, 0)
print DllFunc(user32, "EqualRect", place, middle, 0, 0, 0, 0, 0, 0, 0, 0)
"""


def requests(trace, folder):
    """The lines of a trace but those of the macro's calls, which begin with its file."""
    return "".join(line for line in trace.splitlines(keepends=True) if not line.startswith(f"trace: {folder}"))


class WaitingForAProgram(HostTest):
    def test_a_window_is_put_into_the_middle_of_the_screen(self):
        result = self.run_macro(CENTRED)
        self.assertEqual((result.out, result.code), ("10\n1\n", 0), result.err)

    @unittest.skipIf(os.name == "nt", "names the program by Wine's search path")
    def test_the_dialog_after_ten_seconds_finds_all_that_it_asks_for(self):
        program = "Z:" + str(BUILD / "doubles/openpgp/gpg").replace("/", "\\")
        macro = self.write("slow.macro", 'PgpSetProgram(1)\nprint PgpEncrypt("text", "a"), PgpGetExitCode()')
        with unittest.mock.patch.dict(os.environ, WINEPATH=program, CHILD_SLEEP="11500", CHILD_OUTPUT="x", CHILD_EXIT="3"):
            result = run("--macro", macro, "--english", "--trace", folder=self.folder)
        self.assertEqual((result.out, result.code), ("x3\n", 0), result.err)
        self.assertRegex(requests(result.err, self.folder), r"^trace: .*: code 105 \(0x[0-9A-F]+\) -> 1\ntrace: 1 request, 0 not served\n$")


class WithoutEditorAndSpamFilter(HostTest):
    """The small host serves these requests and has nothing for them."""

    def trace(self, source):
        result = self.run_macro(source, "--trace")
        self.assertEqual(result.code, 0, result.err)
        return result.out, requests(result.err, self.folder)

    def test_nothing_is_encrypted_in_an_editor(self):
        self.assertEqual(self.trace('print EncryptSign(1, -2, 3, 4) == ""'),
                         ("1\n", 'trace: EncryptSign: code 175 (1, -2, 3, 4) -> ""\n'
                                 "trace: 1 request, 0 not served\n"))

    def test_there_is_no_spam_filter(self):
        out, err = self.trace('print LoadAndGetSpamFilter() == "", GetSpamFilterTitle() == "", '
                              'GetSpamFilterVersion() == ""\n'
                              "print CallAnySpamFilterFunc(48, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10)\n")
        self.assertEqual(out, "111\n0\n")
        self.assertEqual(err, 'trace: LoadAndGetSpamFilter: code 176 -> ""\n'
                              'trace: GetSpamFilterTitle: code 176 () -> ""\n'
                              'trace: GetSpamFilterVersion: code 176 () -> ""\n'
                              'trace: CallAnySpamFilterFunc: code 176 () -> ""\n'
                              "trace: 4 requests, 0 not served\n")


class SystemLibrary(HostTest):
    def test_a_macro_calls_functions_of_the_system(self):
        self.assert_output(run("--english", "--macro", SAMPLES.parent / "system_library.macro"),
                           "characters: 12\nproduct:    42\n")


if __name__ == "__main__":
    unittest.main()
