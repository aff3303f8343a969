"""S/MIME against OpenSSL, in both directions. Under Wine this needs the stand-in crypt32: what passes here agrees with
OpenSSL and with the stand-in; it is no proof about Windows."""
import re
import subprocess
import unittest

import smime_peer
from smime_peer import GOOD, PROBLEM, UNSURE, Lists, openssl

TEXT = b"Content-Type: text/plain\r\n\r\nThe text of a mail.\r\n"
LEGACY = ["-provider", "legacy", "-provider", "default"]

ALGORITHMS = {  # selector: OpenSSL's name in `cms -cmsout -print`, object identifier
    0: "1.2.840.113549.3.2", 1: "1.2.840.113549.3.7", 2: "1.3.14.3.2.7", 3: "1.2.840.113549.3.2",
    4: "1.2.840.113549.3.2", 5: "1.2.840.113549.3.2", 6: "2.16.840.1.101.3.4.1.2",
    7: "2.16.840.1.101.3.4.1.42", 9: "1.2.840.113549.3.2"}
RC2_VERSIONS = {3: 58, 4: 120, 5: 160, 9: 160}  # how the key length is written: 128, 64, 40 bits
HASHES = {0: "sha256", 1: "sha1", 3: "sha256", 4: "sha512"}


def oid_bytes(dotted):
    first, second, *rest = map(int, dotted.split("."))
    out = bytes([first * 40 + second])
    for arc in rest:
        septets = [arc & 0x7F]
        while arc := arc >> 7:
            septets.insert(0, 0x80 | arc & 0x7F)
        out += bytes(septets)
    return b"\x06" + bytes([len(out)]) + out


@unittest.skipUnless(smime_peer.is_possible(), "no stand-in crypt32 was built")
class Smime(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.world = smime_peer.Surroundings()
        cls.addClassCleanup(cls.world.close)
        for name in ("carol", "mallory", "frank", "eve", "ldap"):
            cls.world.install("My", name, with_key=True)
        cls.text = cls.world.write("text", TEXT)
        cls.root = cls.world.pki / "root.pem"

    def pem(self, name):
        return self.world.pki / f"{name}.pem"

    def key(self, name):
        return self.world.pki / f"{name}.key"

    def make(self, mode, recipients="-", signer="-", algorithm=6, hash_selector=0, text=None, **more):
        output = self.world.path("made")
        output.unlink(missing_ok=True)
        outcome = self.world.tool("make", mode, text or self.text, recipients, signer, algorithm, hash_selector, output,
                                  **more)
        return outcome, output

    def signed(self, *signers, name="message", options=(), content=TEXT, certificates=("mid",)):
        """A message that OpenSSL signed, with its content."""
        chain = b"".join(self.pem(each).read_bytes() for each in certificates)
        extra = ["-certfile", self.world.write("chain.pem", chain)] if chain else []
        who = [word for signer in signers for word in ("-signer", self.pem(signer), "-inkey", self.key(signer))]
        output = self.world.path(name)
        openssl("cms", "-sign", "-binary", "-nodetach", "-outform", "DER", "-in", self.world.write("content", content),
                "-out", output, *who, *extra, *options)
        return output

    def verify(self, message, content="-", sender="alice@example.org", **more):
        self.world.path("out").unlink(missing_ok=True)
        return self.world.tool("verify", message, self.world.path("out"), content, sender, **more)

    # --- What we make, OpenSSL reads ---

    def test_openssl_verifies_our_detached_signatures(self):
        for selector, name in HASHES.items():
            with self.subTest(hash=name):
                outcome, made = self.make(1, signer="alice@example.org", hash_selector=selector)
                self.assertEqual(outcome.boxes, [])
                message = made.read_bytes()
                self.assertEqual(int(outcome.size), len(message))
                self.assertNotIn(b"The text of a mail", message, "a detached signature holds no text")
                done = openssl("cms", "-verify", "-binary", "-inform", "DER", "-in", made, "-content", self.text,
                               "-CAfile", self.root, "-purpose", "any")
                self.assertEqual(done.stdout, TEXT)
                printed = openssl("cms", "-cmsout", "-print", "-inform", "DER", "-in", made).stdout.decode()
                self.assertIn(f"algorithm: {name} ", printed)
                self.assertEqual(printed.count("d.certificate"), 3, "the whole chain is carried")
                self.assertIn("signedAttrs:\n          <ABSENT>", printed)

    def test_the_md5_selector_writes_its_own_number(self):
        # OpenSSL refuses this object identifier, so the bytes have to do.
        outcome, made = self.make(1, signer="alice@example.org", hash_selector=2)
        if outcome.boxes:
            self.assertEqual(len(outcome.boxes), 1)
            self.assertIn("CryptSignMessage failed", outcome.boxes[0])
        else:
            self.assertIn(oid_bytes("1.3.14.3.2.3"), made.read_bytes())

    def test_openssl_decrypts_what_we_encrypt(self):
        for selector, oid in ALGORITHMS.items():
            with self.subTest(algorithm=selector):
                outcome, made = self.make(0, recipients="bob@example.org alice@example.org", algorithm=selector)
                self.assertEqual(outcome.boxes, [])
                message = made.read_bytes()
                self.assertIn(oid_bytes(oid), message)
                if selector in RC2_VERSIONS:
                    version = RC2_VERSIONS[selector]
                    number = b"\x02\x01" + bytes([version]) if version < 128 else b"\x02\x02\x00" + bytes([version])
                    self.assertIn(number + b"\x04\x08", message)
                for name in ("bob", "alice"):
                    done = openssl("cms", "-decrypt", "-inform", "DER", "-in", made, "-recip", self.pem(name), "-inkey",
                                   self.key(name), *LEGACY)
                    self.assertEqual(done.stdout, TEXT)

    def test_openssl_reads_what_we_sign_and_encrypt(self):
        short = self.world.write("short", b"abc")
        outcome, made = self.make(2, "bob@example.org", "alice@example.org", text=short)
        self.assertEqual(outcome.boxes, [])
        inner = self.world.path("inner")
        openssl("cms", "-decrypt", "-inform", "DER", "-in", made, "-recip", self.pem("bob"), "-inkey", self.key("bob"),
                "-out", inner)
        done = openssl("cms", "-verify", "-binary", "-inform", "DER", "-in", inner, "-CAfile", self.root, "-purpose",
                       "any")
        self.assertEqual(done.stdout, b"abc\0", "the terminating zero is part of it")
        outcome, made = self.make(0, "bob@example.org", text=short)
        done = openssl("cms", "-decrypt", "-inform", "DER", "-in", made, "-recip", self.pem("bob"), "-inkey",
                       self.key("bob"))
        self.assertEqual(done.stdout, b"abc", "but not when it is only encrypted")

    # --- What OpenSSL makes, we read ---

    def test_we_decrypt_what_openssl_encrypts(self):
        for cipher in ("-des3", "-aes128", "-aes256", "-rc2-40", "-rc2-64", "-rc2-128"):
            for stream in ([], ["-stream"]):
                with self.subTest(cipher=cipher, stream=stream):
                    message = self.world.path("message")
                    openssl("cms", "-encrypt", "-binary", cipher, "-outform", "DER", *stream, "-in", self.text, "-out",
                            message, *LEGACY, self.pem("bob"))
                    output = self.world.path("out")
                    outcome = self.world.tool("decrypt", message, output)
                    self.assertEqual(output.read_bytes(), TEXT)
                    self.assertEqual((outcome.size, outcome.state, outcome.exit), (str(len(TEXT)), "0", "-1"))
                    self.assertEqual(outcome.info, GOOD + " The encrypted email was successfully decrypted\r\n"
                                     "(It was not digitally signed.)\r\n")

    def test_a_message_for_somebody_else_is_not_decrypted(self):
        message = self.world.path("message")
        openssl("cms", "-encrypt", "-binary", "-aes128", "-outform", "DER", "-in", self.text, "-out", message,
                self.pem("dave"))
        outcome = self.world.tool("decrypt", message, self.world.path("out"))
        self.assertEqual((outcome.result, outcome.size), ("", "0"))
        self.assertEqual(outcome.boxes, ["Error occurred in S/MIME: The certificate for decryption not found., \n"
                                         "error code=0x8009200C"])
        outcome = self.world.tool("decrypt", self.world.write("message", b"no message at all"), self.world.path("out"))
        self.assertEqual(len(outcome.boxes), 1)
        self.assertIn("Decryption failed., ", outcome.boxes[0])

    def test_an_unknown_cipher_is_said_to_be_one(self):
        message = self.world.path("message")
        openssl("cms", "-encrypt", "-binary", "-camellia128", "-outform", "DER", "-in", self.text, "-out", message,
                self.pem("bob"))
        outcome = self.world.tool("decrypt", message, self.world.path("out"))
        self.assertEqual(outcome.boxes, ["Error occurred in S/MIME: Unknown encryption algorithm is used., \n"
                                         "error code=0x80090008"])

    def test_we_verify_what_openssl_signs(self):
        variants = {"plain": [], "without attributes": ["-noattr"], "streamed": ["-stream"],
                    "SHA-1": ["-md", "sha1"], "SHA-512": ["-md", "sha512"]}
        for name, options in variants.items():
            with self.subTest(name):
                outcome = self.verify(self.signed("alice", options=options))
                self.assertEqual(self.world.path("out").read_bytes(), TEXT)
                self.assertEqual((outcome.state, outcome.size), ("1", str(len(TEXT))))
                self.assertEqual(
                    outcome.info,
                    GOOD + " This email was successfully verified and not altered.\r\n"
                    "Signer: Alice Example\r\nSigner email address: alias@example.org\r\n"
                    "Publisher: Sample Intermediate\r\n"
                    "Email address alias: alias@example.org, alice2@example.org\r\n\r\n\r\n"
                    + GOOD + " The email sender matches the certificate email address alias.\r\n"
                    + GOOD + " The certificate is in validity period.\r\n"
                    + GOOD + " The certificate path is correct.\r\n"
                    "Certificate path:\r\n  Sample Root\r\n    Sample Intermediate\r\n      Alice Example\r\n")

    def test_a_detached_signature_gives_ok(self):
        message = self.world.path("message")
        openssl("cms", "-sign", "-binary", "-outform", "DER", "-in", self.text, "-out", message, "-signer",
                self.pem("frank"), "-inkey", self.key("frank"))
        outcome = self.verify(message, self.text, "FRANK@example.org")
        self.assertEqual((outcome.result, outcome.size, outcome.state), ("OK", "0", "1"))
        self.assertIn(GOOD + " Ther certificate email address matches the email sender.\r\n", outcome.info)
        self.assertNotIn("alias", outcome.info, "one address has no alias")
        self.assertTrue(outcome.info.endswith("  Sample Root\r\n    Frank Example\r\n"), "a chain of two")
        altered = self.verify(message, self.world.write("altered", TEXT + b"!"))
        self.assertEqual((altered.result, altered.state), ("OK", "0"))

    def detached(self, name="alice", content=TEXT, options=()):
        message = self.world.path("detached")
        openssl("cms", "-sign", "-binary", "-outform", "DER", "-in", self.world.write("content", content), "-out",
                message, "-signer", self.pem(name), "-inkey", self.key(name), "-certfile", self.pem("mid"), *options)
        return message

    def test_a_detached_signature_without_its_content_is_not_verified(self):
        """CryptVerifyMessageSignature answers TRUE for it, and has verified nothing."""
        for options in ([], ["-noattr"]):
            message = self.detached(options=options)
            tampered = message.read_bytes()[:-1] + bytes([message.read_bytes()[-1] ^ 1])
            for each in (message, self.world.write("tampered", tampered)):
                sealed = self.sealed(each)
                for command, path in (("verify", each), ("decrypt", each), ("open", each), ("open", sealed)):
                    with self.subTest(options=options, message=each.name, command=command, sealed=path is sealed):
                        arguments = ["-", "alice@example.org"] if command == "verify" else ["alice@example.org"]
                        outcome = self.world.tool(command, path, self.world.path("out"), *arguments)
                        self.assertEqual((outcome.result, outcome.state, outcome.size), ("OK", "0", "0"))
                        self.assertIn(PROBLEM, outcome.info)
                        self.assertNotIn(GOOD, outcome.info)

    def test_a_detached_signature_over_nothing_is_good_without_content(self):
        message = self.detached(content=b"")
        for path in (message, self.sealed(message)):
            outcome = self.world.tool("open", path, self.world.path("out"), "alias@example.org")
            self.assertEqual((outcome.result, outcome.state, outcome.size), ("OK", "1", "0"), outcome.info)

    def test_each_further_signer_is_verified_inside_an_envelope_too(self):
        message = self.signed("alice", "frank", options=["-noattr"]).read_bytes()
        broken = self.world.write("broken", message[:-1] + bytes([message[-1] ^ 1]))
        for path in (broken, self.sealed(broken)):
            outcome = self.world.tool("open", path, self.world.path("out"))
            self.assertEqual((outcome.result, outcome.state, outcome.size), ("OK", "0", "0"))
            self.assertIn("(BAD SIGNATURE)", outcome.info)

    def test_senders_are_compared_with_all_addresses(self):
        message = self.signed("alice")
        findings = {
            "alias@example.org": GOOD + " Ther certificate email address matches the email sender.\r\n",
            "ALICE2@example.org": GOOD + " The email sender matches the certificate email address alias.\r\n",
            "alice2@example.or": PROBLEM + " !!!! The certificate email address does not matches the email sender.\r\n"
                                 "       Email sender: alice2@example.or\r\n",
            "mallory@example.org": PROBLEM + " !!!! The certificate email address does not matches the email sender.\r\n"
                                   "       Email sender: mallory@example.org\r\n",
            "-": UNSURE + " It is not verified whether the certificate email address matches the email sender.\r\n"}
        for sender, finding in findings.items():
            with self.subTest(sender):
                self.assertIn(finding, self.verify(message, sender=sender).info)

    def test_a_sender_cannot_write_findings(self):
        info = self.verify(self.signed("alice"), sender="hex:" + ("x\r\n" + GOOD + " fine").encode("cp932").hex()).info
        self.assertIn("       Email sender: x? fine\r\n", info)

    def test_tampered_messages_are_told(self):
        bare = self.signed("alice", options=["-noattr"]).read_bytes()
        outcome = self.verify(self.world.write("message", bare.replace(b"The text", b"The next")))
        self.assertEqual((outcome.result, outcome.state, outcome.size), ("OK", "0", "0"))
        self.assertEqual(outcome.info, PROBLEM + " !!!! The digital signature is invalid or email is alterd. "
                         "(BAD SIGNATURE)\r\nerror code = 0x80090006")
        full = self.signed("alice").read_bytes()
        outcome = self.verify(self.world.write("message", full.replace(b"The text", b"The next")))
        self.assertEqual(outcome.info, PROBLEM + " !!!! Invalid hash value.\r\nerror code = 0x80091007")
        outcome = self.verify(self.world.write("message", b"0\x82"))
        self.assertEqual((outcome.result, outcome.state), ("OK", "0"))
        self.assertRegex(outcome.info, "^" + UNSURE + r" Failed to verify\. Please search the error code by web site "
                         r"\(e\.g\. google\)\r\nerror code = 0x[0-9A-F]{8}$")

    def test_all_signers_have_to_be_good(self):
        both = self.signed("alice", "frank")
        self.assertEqual(self.verify(both).state, "1")
        message = self.signed("alice", "frank", options=["-noattr"]).read_bytes()
        # The last 256 bytes are one of the two signatures.
        broken = self.world.write("broken", message[:-1] + bytes([message[-1] ^ 1]))
        outcome = self.verify(broken)
        self.assertEqual((outcome.result, outcome.state, outcome.size), ("OK", "0", "0"))
        self.assertIn("(BAD SIGNATURE)", outcome.info)

    def test_a_message_without_signers_names_none(self):
        message = self.world.path("message")
        openssl("crl2pkcs7", "-nocrl", "-certfile", self.pem("alice"), "-outform", "DER", "-out", message)
        outcome = self.verify(message)
        self.assertEqual((outcome.result, outcome.state), ("OK", "0"))
        self.assertEqual(outcome.info,
                         UNSURE + " The digital signature is verified correctly but the signer is unknown.\r\n")

    def test_decrypting_a_signed_message_verifies_it(self):
        message = self.signed("alice")
        outcome = self.world.tool("decrypt", message, self.world.path("out"), "alice@example.org")
        self.assertEqual(self.world.path("out").read_bytes(), TEXT)
        self.assertEqual((outcome.state, outcome.boxes), ("1", []))
        self.assertIn(GOOD + " This email was successfully verified", outcome.info)

    def sealed(self, inner, recipient="bob", name="sealed"):
        """A message that OpenSSL put into an envelope."""
        output = self.world.path(name)
        openssl("cms", "-encrypt", "-binary", "-aes256", "-outform", "DER", "-in", inner, "-out", output,
                self.pem(recipient))
        return output

    def test_a_signature_inside_an_envelope_is_verified(self):
        """At once with decryption parameters, or in two steps."""
        ours, made = self.make(2, "bob@example.org", "alice@example.org")
        cases = {"OpenSSL's": (self.sealed(self.signed("alice"), name="one"), "alice2@example.org", TEXT),
                 "two signers": (self.sealed(self.signed("alice", "frank"), name="two"), None, TEXT),
                 "ours": (made, "alice2@example.org", TEXT + b"\0")}
        for name, (message, sender, content) in cases.items():
            with self.subTest(name):
                outcome = self.world.tool("open", message, self.world.path("out"), sender or "-")
                self.assertEqual(self.world.path("out").read_bytes(), content)
                self.assertEqual((outcome.state, outcome.size, outcome.boxes), ("1", str(len(content)), []))
                self.assertIn(GOOD + " This email was successfully verified and not altered.\r\n", outcome.info)
                if sender:
                    self.assertIn(GOOD + " The email sender matches the certificate email address alias.\r\n",
                                  outcome.info)
                outcome = self.world.tool("decrypt", message, self.world.path("inner"))
                self.assertEqual(outcome.state, "0")
                outcome = self.world.tool("decrypt", self.world.path("inner"), self.world.path("out"))
                self.assertEqual((outcome.state, self.world.path("out").read_bytes()), ("1", content))

    def test_an_envelope_around_a_bad_signature_is_no_excuse(self):
        bare = self.signed("alice", options=["-noattr"]).read_bytes()
        tampered = self.world.write("tampered", bare.replace(b"The text", b"The next"))
        outcome = self.world.tool("open", self.sealed(tampered), self.world.path("out"))
        self.assertEqual((outcome.result, outcome.state, outcome.size), ("OK", "0", "0"))
        self.assertIn("(BAD SIGNATURE)", outcome.info)
        outcome = self.world.tool("open", self.sealed(self.signed("alice"), "dave"), self.world.path("out"))
        self.assertEqual((outcome.result, outcome.state), ("OK", "0"))
        self.assertTrue(outcome.info.endswith("error code = 0x8009200C"), outcome.info)
        outcome = self.world.tool("open", self.signed("alice"), self.world.path("out"))
        self.assertEqual((outcome.state, self.world.path("out").read_bytes()), ("1", TEXT), "no envelope at all")

    def test_troubled_certificates_are_reported(self):
        first = GOOD + " The certificate is in validity period.\r\n"
        expired = PROBLEM + " !!!!The certificate is expired.\r\n"
        early = PROBLEM + " !!!!The validity period of the certificate is in the future.\r\n"
        for name, start in {"carol": expired, "dave": early, "mallory": first}.items():
            with self.subTest(name):
                report = self.world.tool("report", self.world.pki / f"{name}.der").report
                self.assertTrue(report.startswith(start), report)
                self.assertIn(PROBLEM, report)
        report = self.world.tool("report", self.world.pki / "carol.der").report
        self.assertEqual(report.lower().count("expire"), 1, "said once: " + report)
        report = self.world.tool("report", self.world.pki / "mallory.der").report
        self.assertEqual(report, first + PROBLEM
                         + " The certificate or certificate chain is based on an untrusted root.\r\n")

    def test_a_good_signature_by_somebody_untrusted_is_reported_as_such(self):
        outcome = self.verify(self.signed("mallory", certificates=()), sender="mallory@example.org")
        self.assertEqual((outcome.state, outcome.result.encode()), ("1", TEXT))
        self.assertTrue(outcome.info.endswith(
            GOOD + " Ther certificate email address matches the email sender.\r\n"
            + GOOD + " The certificate is in validity period.\r\n"
            + PROBLEM + " The certificate or certificate chain is based on an untrusted root.\r\n"), outcome.info)

    def test_a_forged_certificate_is_a_problem(self):
        """Alice's with another signature under it: what it signs verifies, but nobody vouches for it."""
        true = (self.world.pki / "alice.der").read_bytes()
        forged = self.world.write("forged.der", true[:-1] + bytes([true[-1] ^ 1]))
        report = self.world.tool("report", forged).report
        self.assertTrue(report.startswith(GOOD + " The certificate is in validity period.\r\n" + PROBLEM), report)
        message = self.signed("alice", options=["-noattr"]).read_bytes()
        self.assertIn(true, message)
        outcome = self.verify(self.world.write("message", message.replace(true, forged.read_bytes())))
        self.assertIn(PROBLEM, outcome.info)

    # --- What we refuse ---

    def test_a_troubled_signer_is_refused(self):
        outcome, made = self.make(1, signer="carol@example.org")
        self.assertEqual((outcome.result, outcome.size), ("", "0"))
        self.assertEqual(len(outcome.boxes), 1)
        self.assertTrue(outcome.boxes[0].startswith("The certificate for signing has a problem.\n\n" + PROBLEM
                                                    + " !!!!The certificate is expired."), outcome.boxes[0])

    def test_all_troubled_recipients_are_told_in_one_box(self):
        outcome, made = self.make(0, "carol@example.org bob@example.org cora@example.org")
        self.assertEqual((outcome.result, len(outcome.boxes)), ("", 1))
        text = outcome.boxes[0].replace("\r\n", "\n")
        self.assertTrue(text.startswith("The certificate for encryption has a problem.\n\n\nEmail = carol@example.org\n"
                                        + PROBLEM), text)
        self.assertIn("\n\n\nEmail = cora@example.org\n" + PROBLEM, text)
        self.assertNotIn("bob@example.org", text)

    def test_missing_certificates_are_told(self):
        for mode, recipients, signer in ((1, "-", "nobody@example.org"),
                                         (0, "bob@example.org nobody@example.org", "-")):
            outcome, made = self.make(mode, recipients, signer)
            self.assertEqual((outcome.result, outcome.boxes),
                             ("", ["The certificate not found. email address=nobody@example.org"]))

    def test_japanese_reports_have_the_same_marks(self):
        message = self.signed("alice")
        english = self.verify(message).info
        japanese = self.verify(message, language="ja").info
        self.assertEqual(re.findall(f"[{GOOD}{UNSURE}{PROBLEM}]", english),
                         re.findall(f"[{GOOD}{UNSURE}{PROBLEM}]", japanese))
        self.assertIn("署名者メールアドレス： alias@example.org\r\n", japanese)
        self.assertEqual(english.count("\r\n"), japanese.count("\r\n"))

    def test_what_the_kit_asks_windows_can_be_answered(self):
        """tests/kit/system/smime_test.cpp, but for WinVerifyTrust, in which Wine accepts everything."""
        code, text = self.world.wine("system_smime_tests.exe", "--gtest_filter=-SystemTrust.*")
        self.assertEqual(code, 0, text)

    # --- Revocation ---

    def lists(self, **files):
        """Serves these lists, and empties the store of those taken before."""
        Lists.files = {f"/{name}.crl": content for name, content in files.items()}
        Lists.asked = []
        key = r"HKCU\Software\Microsoft\SystemCertificates\CA\CRLs"
        subprocess.run(["wine", "reg", "delete", key, "/f"], env=self.world.environment, stdin=subprocess.DEVNULL,
                       capture_output=True)

    def crl(self, name):
        return (self.world.pki / f"{name}.crl").read_bytes()

    def revocation(self, *signers, times=1, **more):
        return self.world.tool("revoke", self.signed(*signers), times, **more)

    def test_a_good_certificate_is_checked_up_to_the_root(self):
        self.lists(mid=self.crl("mid"), root=self.crl("root"))
        outcome = self.revocation("alice")
        self.assertEqual(outcome.checked, "1")
        self.assertEqual(Lists.asked, ["/mid.crl", "/root.crl"])
        added = outcome.control.split("----Checking revocation--------\r\n")[1]
        good = "  " + GOOD + " The certificate is not revoked. (CertVerifyCRLRevocation succeeded)\r\n"
        self.assertEqual(
            added,
            f"Alice Example\r\n  Downloading revocation list... {self.world.url}/mid.crl\r\n"
            f"  The revocation list was obtained successfully, size={len(self.crl('mid'))}Bytes\r\n{good}"
            f"Sample Intermediate\r\n  Downloading revocation list... {self.world.url}/root.crl\r\n"
            f"  The revocation list was obtained successfully, size={len(self.crl('root'))}Bytes\r\n{good}"
            "The downloaded  2 revocation lists are registered to the Windows certificate store.\r\n")

    def test_a_revoked_certificate_is_told(self):
        self.lists(mid=self.crl("mid"), root=self.crl("root"))
        outcome = self.revocation("eve")
        self.assertEqual(outcome.checked, "1")
        # The system sets no last error for "revoked".
        self.assertIn("  " + PROBLEM + " !!!! CertVerifyCRLRevocation failed, The certificate is revoked.\r\n"
                      "error code=0x80092010\r\n", outcome.control)

    def test_a_list_is_found_in_the_store_the_next_time(self):
        self.lists(mid=self.crl("mid"), root=self.crl("root"))
        outcome = self.revocation("alice", times=2)
        self.assertEqual(Lists.asked, ["/mid.crl", "/root.crl"])
        self.assertIn("A valid revocation list was obtained from the Windows certificate store.", outcome.control)

    def test_what_cannot_be_obtained_is_told(self):
        self.lists(mid=b"garbage", root=self.crl("root"))
        outcome = self.revocation("alice")
        self.assertRegex(outcome.control, PROBLEM + r" CertCreateCRLContext failed, error code=0x[0-9A-F]{8}\r\n")
        self.assertEqual(outcome.checked, "1")
        self.lists(root=self.crl("root"))  # the other is gone: the server's page is no list
        outcome = self.revocation("alice")
        self.assertIn("CertCreateCRLContext failed", outcome.control)
        self.lists(mid=b"\0" * 3_000_000, root=self.crl("root"))
        outcome = self.revocation("alice")
        self.assertIn("size=3000000Bytes", outcome.control)

    def test_a_list_that_is_no_longer_valid_is_used_but_never_served_from_the_store(self):
        self.lists(mid=self.crl("mid_old"), root=self.crl("root"))
        outcome = self.revocation("alice", times=2)
        self.assertEqual(Lists.asked.count("/mid.crl"), 2)
        good = "  " + GOOD + " The certificate is not revoked. (CertVerifyCRLRevocation succeeded)\r\n"
        self.assertEqual(outcome.control.count(good), 2, outcome.control)

    def test_a_list_elsewhere_than_http_is_not_fetched(self):
        self.lists(mid=self.crl("mid"), root=self.crl("root"))
        outcome = self.revocation("ldap")
        self.assertEqual(outcome.checked, "1")
        self.assertIn("Ldap Example\r\n  " + PROBLEM + " The revocation list distribution point is not http "
                      "(TamarinMail needs http protocol)\r\nSample Intermediate\r\n", outcome.control)
        self.assertEqual(Lists.asked, ["/root.crl"])

    def test_a_chain_of_one_is_no_chain(self):
        outcome = self.revocation("mallory")
        self.assertEqual(outcome.checked, "0")
        self.assertTrue(outcome.control.endswith(UNSURE + " Failed to create certficate chain."), outcome.control)

    # --- Balance ---

    def test_nothing_is_left_open_after_a_thousand_operations(self):
        message = self.signed("alice")
        envelope = self.world.path("envelope")
        openssl("cms", "-encrypt", "-binary", "-aes128", "-outform", "DER", "-in", self.text, "-out", envelope,
                self.pem("bob"))
        outcome = self.world.tool("balance", message, envelope, 334)
        self.assertEqual((outcome.good, outcome.held), (str(3 * 334), "0"))


if __name__ == "__main__":
    unittest.main()
