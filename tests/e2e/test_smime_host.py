"""S/MIME in the small host: a mail that OpenSSL signed is verified, its certificates are registered and checked for
revocation by macros. As in test_smime.py, a stand-in takes the place of Wine's crypt32."""
import os
import pathlib
import subprocess
import unittest
import zlib

import smime_peer
from smime_peer import GOOD, Lists

HOST = os.environ["WFINFO_HOST"]
MACROS = smime_peer.SOURCE / "samples/macros/smime"


@unittest.skipUnless(smime_peer.is_possible() and pathlib.Path(HOST).exists(), "no stand-in crypt32, or no host")
class SmimeHost(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.world = smime_peer.Surroundings()
        cls.addClassCleanup(cls.world.close)

    def run_macro(self, macro, mail="signed.eml"):
        done = subprocess.run(["wine", HOST, "--mail", mail, "--macro", str(macro)], cwd=self.world.pki,
                              env=self.world.environment, stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
        self.assertEqual(done.returncode, 0, done.stderr.decode())
        return done.stdout.decode()

    def run_lines(self, *lines):
        return self.run_macro(self.world.write("test.macro", "\n".join(lines).encode()))

    def serve(self):
        Lists.asked = []
        Lists.files = {f"/{name}.crl": (self.world.pki / f"{name}.crl").read_bytes() for name in ("mid", "root")}

    def test_opaque_and_detached_mails_are_verified(self):
        out = self.run_lines(
            'print HostReadSmime("signed.eml")',
            'print SMIMEVerify(HostSmimeMessage(), HostSmimeMessageSize(), null, 0, "alice@example.org", null)',
            'print PgpGetSMIMEOutputSize()',
            'print HostReadSmime("detached.eml")',
            'print SMIMEVerify(HostSmimeMessage(), HostSmimeMessageSize(), HostSmimeContent(), HostSmimeContentSize(), null, null)',
            'store = RetrieveCertificate()',
            'print store != 0, " ", RetrieveCertificate(), " ", FreeCertificate(store)')
        self.assertEqual(out, "0\nContent-Type: text/plain\n\nHello Bob, this is Alice.\n\n55\n1\nOK\n1 0 1\n")

    def test_revocation_is_checked_through_the_host(self):
        self.serve()
        out = self.run_lines(
            'HostReadSmime("signed.eml")',
            'SMIMEVerify(HostSmimeMessage(), HostSmimeMessageSize(), null, 0, null, null)',
            'window = HostNewReport("")',
            'store = RetrieveCertificate()',
            'print SMIMEVerifyRevocation(store, window), " ", FreeCertificate(store)',
            'print HostReportText(window)')
        self.assertTrue(out.startswith("1 1\n"), out)
        self.assertEqual(Lists.asked, ["/mid.crl", "/root.crl"])

    def test_the_remembered_choice_picks_the_signer(self):
        """Two certificates for one address: the host's number of a serial number decides, without a dialog."""
        pki = self.world.pki
        serial = 0x1234567890
        request = self.world.path("second.req")
        smime_peer.openssl("req", "-new", "-key", pki / "frank.key", "-out", request, "-subj",
                           "/CN=Frank Second/emailAddress=frank@example.org")
        smime_peer.openssl("x509", "-req", "-in", request, "-CA", pki / "mid.pem", "-CAkey", pki / "mid.key",
                           "-set_serial", str(serial), "-days", "5", "-outform", "DER", "-out", pki / "second.der")
        (pki / "second.msblob").write_bytes((pki / "frank.msblob").read_bytes())
        for name in ("frank", "second"):
            self.world.install("My", name, with_key=True)
        first = int(smime_peer.openssl("x509", "-in", pki / "frank.pem", "-noout", "-serial").stdout.split(b"=")[1], 16)
        for name, number in (("Frank Example", first), ("Frank Second", serial)):
            # The system keeps a serial number with its lowest byte first.
            choice = zlib.crc32(number.to_bytes((number.bit_length() + 8) // 8, "little"))
            out = self.run_lines(
                'PgpSetProgram(2)',
                'library = LoadDll("WFINFO.dll")',
                f'made = DllFunc(library, "PgpEncryptSuper", 1, "A text", null, "frank@example.org", "", 6, 0, {choice}, 0, 0)',
                'print SMIMEVerify(made, PgpGetSMIMEOutputSize(), "A text", 6, null, null)',
                'print PgpGetInfo()')
            self.assertRegex(out, f"(Signer:|署名者：) {name}\n")

    def test_the_sample_macros_work(self):
        self.serve()
        out = self.run_macro(MACROS / "verify.macro")
        self.assertIn(GOOD, out)
        self.assertIn("Alice Example", out)
        self.assertIn("Hello Bob, this is Alice.", out)
        self.assertIn("The certificates are registered.", out)
        # Alice and the authority above her; the lists may be in the store already.
        # The mark is written in wide form; the macro reads the control's ANSI text, which holds it in code page 932 only.
        mark = GOOD if "ja_JP" in os.environ.get("LC_ALL", "") else "?"
        self.assertEqual(out.count(f"  {mark} "), 2, out)
        out = self.run_macro(MACROS / "sign_and_encrypt.macro")
        self.assertRegex(out, r"The detached signature has [1-9]\d+ bytes\.")
        self.assertIn("A text to encrypt.\n", out)

    def test_what_is_no_smime_mail_is_told(self):
        self.assertEqual(
            self.run_lines('HostReadSmime("signed.eml")',
                           'print HostReadSmime("pki.cnf"), " ", HostReason()',
                           'print HostSmimeMessage(), HostSmimeMessageSize()',
                           'print HostReadSmime("none.eml"), " ", HostReason()',
                           'print HostReadSmime("signed.eml"), " ", HostReason(), "."'),
            "-1 pki.cnf is no S/MIME mail\n00\n-1 cannot read the mail none.eml\n0 .\n")
        macro = self.world.write("wrong.macro", b'HostReadSmime()')
        done = subprocess.run(["wine", HOST, "--mail", "signed.eml", "--macro", str(macro)], cwd=self.world.pki,
                              env=self.world.environment, stdin=subprocess.DEVNULL, capture_output=True, timeout=120)
        self.assertIn("HostReadSmime takes 1 parameter", done.stderr.decode())


if __name__ == "__main__":
    unittest.main()
