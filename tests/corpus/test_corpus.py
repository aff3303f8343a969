#!/usr/bin/env python3
"""A few hundred mails, read by the small host and by Python's email package with its default policy: subjects,
addresses, texts, attachments. A difference is a mistake, or it is listed in DIFFERENCES with its reason.

    WFINFO_READ_MAIL=build/native/read_mail python3 tests/corpus/test_corpus.py

The mails are made by make_mails.py and, where ./dev could fetch them, those of Python's own tests (build/corpus)."""

import email
import html.parser
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
from email import policy

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import make_mails  # noqa: E402

SOURCE = pathlib.Path(__file__).resolve().parents[2]
FETCHED = SOURCE / "build" / "corpus"
ADDRESS_FIELDS = ("from", "to", "cc", "reply-to", "sender")
FIELDS = ("subject", "list-id", "organization", "x-mailer") + ADDRESS_FIELDS


# --- What is compared: the same form from both readers ---

def plain(text):
    """Blanks and line ends do not count, nor how many U+FFFD stand for what is broken."""
    return re.sub("\ufffd+", "\ufffd", re.sub(r"\s+", " ", text.replace("\0", " "))).strip()


class ShownText(html.parser.HTMLParser):
    HIDDEN = ("script", "style", "title")

    def __init__(self, source):
        super().__init__()
        self.shown, self.hidden = [], 0
        self.feed(source)
        self.close()

    def handle_starttag(self, tag, attributes):
        self.hidden += tag in self.HIDDEN

    def handle_endtag(self, tag):
        self.hidden -= tag in self.HIDDEN

    def handle_data(self, data):
        if not self.hidden:
            self.shown.append(data)


def without_blanks(text):
    return re.sub("[\\s\u00ad\u034f\u200b\u2060\ufeff]+", "", text)


def addresses(header):
    return sorted((plain(each.display_name), each.addr_spec) for each in header.addresses)


# --- Python's side ---

def content(leaf):
    """The text of a part, as Python decodes it; with an unknown charset as Windows-1252, the host's rule."""
    try:
        return leaf.get_content()
    except (LookupError, KeyError):
        return leaf.get_payload(decode=True).decode("cp1252", "replace")


def leaves(part):
    """Forwarded mails are leaves."""
    if part.is_multipart() and part.get_content_maintype() == "multipart":
        for each in part.iter_parts():
            yield from leaves(each)
    else:
        yield part


def payload(leaf):
    if leaf.get_content_type() == "message/rfc822":
        return None  # written anew by Python, not as it lay in the mail
    return leaf.get_payload(decode=True)


def read_by_python(raw):
    message = email.message_from_bytes(raw, policy=policy.default)
    read = {}
    for field in FIELDS:
        value = message[field]
        if value is None:
            continue
        if field in ADDRESS_FIELDS:
            read[field] = addresses(value)
        else:
            read[field] = plain(str(value))
    body = message.get_body(("plain", "html"))
    read["text"] = content(body) if body is not None else ""
    read["html"] = body is not None and body.get_content_type() == "text/html"
    read["attachments"], read["inline"] = [], 0
    for leaf in leaves(message):
        text = leaf.get_content_type() in ("text/plain", "text/html") and not leaf.get_filename()
        if leaf is body or (text and leaf.get_content_disposition() != "attachment"):
            read["inline"] += 1
        elif leaf.get_content_maintype() != "multipart":  # one without parts holds nothing
            read["attachments"].append((leaf.get_filename(), leaf.get_content_type(), payload(leaf)))
    return read


# --- The host's side ---

def header_values(header, name):
    unfolded = re.sub("\r\n(?=[ \t])", "", header)
    return [line.split(":", 1)[1] for line in unfolded.split("\r\n") if line.lower().startswith(name + ":")]


def read_by_host(line):
    made = json.loads(line)
    units = made["text"].encode("utf-16-le", "surrogatepass")
    header = units[:2 * made["body"]].decode("utf-16-le", "replace")
    read = {}
    for field in FIELDS:
        for value in header_values(header, field)[:1]:
            made_header = policy.default.header_factory(field, value)
            read[field] = addresses(made_header) if field in ADDRESS_FIELDS else plain(value)
    read["text"] = units[2 * made["body"]:].decode("utf-16-le", "replace")
    read["html"] = made["html"]
    read["attachments"] = [(each["name"], each["type"], bytes.fromhex(each["bytes"])) for each in made["attachments"]]
    return read


# --- The comparison ---

def same_text(host, python):
    """Python chooses one text; the host shows all that are inline, so that one must be among them."""
    text = "".join(ShownText(python["text"]).shown) if python["html"] else python["text"]
    if python["inline"] > 1:
        return without_blanks(plain(text)) in without_blanks(plain(host["text"]))
    return host["html"] == python["html"] and without_blanks(plain(host["text"])) == without_blanks(plain(text))


def same_attachments(host, python):
    """Names that the host made up and bytes that Python writes anew are not compared."""
    if len(host) != len(python):
        return False
    for (name, kind, data), (their_name, their_kind, their_data) in zip(host, python):
        if kind != their_kind or (their_name is not None and plain(name) != plain(their_name)):
            return False
        if their_data is not None and data.replace(b"\r\n", b"\n") != their_data.replace(b"\r\n", b"\n"):
            return False
    return True


def differences(host, python):
    for field in FIELDS:
        if host.get(field) != python.get(field):
            yield field
    if not same_text(host, python):
        yield "text"
    if not same_attachments(host["attachments"], python["attachments"]):
        yield "attachments"


# Why the two differ, in which field of which mails. Each of these must differ.
REASONS = {
    "Python reads raw 8-bit headers as UTF-8 only, and no raw ISO-2022-JP": {
        "subject": ["raw_headers-%d" % number for number in range(4, 17)]},
    "Python does not know the name gb_2312-80": {
        "subject": ["words-65", "words-66", "words-67", "words-68"], "text": ["bodies-49", "bodies-50", "bodies-51"]},
    "Python shows no text of a mail that holds nothing but forwarded ones": {
        "text": ["trees-1", "trees-10", "trees-25", "trees-58", "trees-67", "trees-106", "msg_11", "msg_28", "msg_30",
                 "msg_46"]},
    "Python shows no text of a multipart whose boundary is missing or never used": {
        "text": ["damaged-4", "damaged-5", "msg_17", "msg_25", "msg_31", "msg_41"]},
    "without an end boundary the last line end may belong to the part: the host keeps it, Python does not": {
        "attachments": ["trees-29", "trees-69", "trees-108"]},
    "Python gives base64 that is cut off as it lies there; the host decodes it as far as it goes": {
        "attachments": ["damaged-28", "damaged-32", "damaged-34", "damaged-36", "damaged-37"]},
    "Windows forbids quotation marks in file names": {"attachments": ["names-13", "names-14"]},
    "RFC 6266: of filename and filename* the latter is meant": {"attachments": ["names-19", "names-20"]},
    "a mail's own header may hold lines that are none; the body begins behind the empty line": {
        "text": ["msg_35"]},
}
DIFFERENCES = {(mail, field): why
               for why, fields in REASONS.items() for field, mails in fields.items() for mail in mails}


def corpus():
    yield from make_mails.mails()
    for file in sorted(FETCHED.glob("**/*.txt")):
        raw = file.read_bytes()
        # A mail with an mbox's first line; the host takes it off when it reads the file.
        yield file.stem, raw.split(b"\n", 1)[1] if raw.startswith(b"From ") else raw


def read_all(mails):
    with tempfile.TemporaryDirectory() as folder:
        files = []
        for number, (_, raw) in enumerate(mails):
            files.append(os.path.join(folder, str(number)))
            pathlib.Path(files[-1]).write_bytes(raw)
        done = subprocess.run([os.environ["WFINFO_READ_MAIL"]] + files, stdout=subprocess.PIPE, check=True)
    return [read_by_host(line) for line in done.stdout.splitlines()]


class Corpus(unittest.TestCase):
    maxDiff = None

    def test_the_host_reads_what_python_reads(self):
        mails = list(corpus())
        self.assertGreater(len(mails), 300)
        met, wrong = set(), []
        for (name, raw), host in zip(mails, read_all(mails), strict=True):
            python = read_by_python(raw)
            for field in differences(host, python):
                met.add((name, field))
                if (name, field) not in DIFFERENCES:
                    wrong.append(f"{name}, {field}:\n    host:   {str(host.get(field))[:150]}\n"
                                 f"    python: {str(python.get(field))[:150]}")
        if wrong:
            self.fail(f"{len(wrong)} differences\n" + "\n".join(wrong))
        names = {name for name, _ in mails}
        gone = [each for each in DIFFERENCES if each[0] in names and each not in met]
        self.assertEqual(gone, [], "listed, but they do not differ")


if __name__ == "__main__":
    unittest.main()
