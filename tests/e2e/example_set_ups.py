"""What some families of examples/ need beside the mails: servers, keys, certificates, a host that takes mails.

A set-up is a context manager: it gets the folder in which the examples of a family run, starts what they need, yields what
they are told of it, and ends what it started.
"""
import contextlib
import http.server
import os
import pathlib
import shutil
import socket
import socketserver
import subprocess
import tempfile
import threading
import time
import typing

import host


class Provided(typing.NamedTuple):
    variables: dict = {}  # of the macros: numbers and texts by name
    environment: typing.Mapping = os.environ

    def macro(self):
        """A macro that sets the variables."""
        return "".join(f'{name} = {value}\n' if isinstance(value, int) else f'{name} = "{value}"\n'
                       for name, value in self.variables.items())


@contextlib.contextmanager
def nothing(_folder):
    yield Provided()


@contextlib.contextmanager
def server_folders(folder):
    """The folders that stand for the servers that mails are received from."""
    for name in ("server", "imap"):
        (folder / name).mkdir()
    yield Provided()


@contextlib.contextmanager
def serving(server):
    """Serves on a free port of this machine, which it yields."""
    threading.Thread(target=server.serve_forever, daemon=True).start()
    try:
        yield server.server_address[1]
    finally:
        server.shutdown()
        server.server_close()


# --- http ---

PAGES = {
    "/menu.txt": (200, "text/plain; charset=utf-8", "Monday: カレー\r\nTuesday: soup\r\n"),
    "/rates.csv": (200, "text/csv", "currency,yen\r\nUSD,150\r\nEUR,163\r\n"),
    "/version.txt": (200, "text/plain", "1.4"),
}


class Site(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        if self.path == "/old":
            self.answer(301, "text/plain", "moved", [("Location", "/version.txt")])
        else:
            self.answer(*PAGES.get(self.path, (404, "text/plain", "There is no such page here.")))

    def answer(self, status, content_type, text, headers=()):
        body = text.encode()
        self.send_response(status)
        for name, value in [("Content-Type", content_type), ("Content-Length", str(len(body))), *headers]:
            self.send_header(name, value)
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


@contextlib.contextmanager
def web_site(_folder):
    with serving(http.server.ThreadingHTTPServer(("127.0.0.1", 0), Site)) as port:
        yield Provided({"site": f"http://127.0.0.1:{port}"})


# --- sockets ---


class Mailbox(socketserver.StreamRequestHandler):
    """A POP3 server with three mails: as much of one as a macro can talk to, which sends all it has to say ahead."""

    ANSWERS = {b"STAT": b"+OK 3 4711\r\n", b"QUIT": b"+OK bye\r\n"}

    def handle(self):
        self.wfile.write(b"+OK ready\r\n")
        for line in self.rfile:
            self.wfile.write(self.ANSWERS.get(line.split()[0] if line.split() else b"", b"+OK\r\n"))
            if line.strip() == b"QUIT":
                self.request.shutdown(socket.SHUT_WR)
                # The answer is in the client's hands before the connection goes.
                self.rfile.read()
                return


@contextlib.contextmanager
def mail_server(_folder):
    with serving(socketserver.ThreadingTCPServer(("127.0.0.1", 0), Mailbox)) as port:
        yield Provided({"port": port})


# --- smime ---


@contextlib.contextmanager
def certificates(folder):
    """Stores of certificates with the keys of Alice and Bob; None where the stand-in for crypt32 was not built."""
    import smime_peer  # needs what only a whole test run sets

    if not smime_peer.is_possible():
        yield None
        return
    world = smime_peer.Surroundings()
    try:
        smime_peer.Lists.files = {f"/{name}.crl": (world.pki / f"{name}.crl").read_bytes() for name in ("mid", "root")}
        # Of Grace no store knows yet.
        subject = "/CN=Grace Example/emailAddress=grace@example.org"
        request = smime_peer.openssl("req", "-new", "-key", world.pki / "frank.key", "-subj", subject).stdout
        smime_peer.openssl("x509", "-req", "-CA", world.pki / "mid.pem", "-CAkey", world.pki / "mid.key", "-set_serial", 77,
                           "-days", 5, "-outform", "DER", "-out", world.pki / "grace.der", stdin=request)
        for name in ("signed.eml", "detached.eml", "grace.der"):
            shutil.copy(world.pki / name, folder)
        yield Provided(environment=world.environment)
    finally:
        world.close()


# --- pgp ---

PASS_PHRASE = "open sesame"


@contextlib.contextmanager
def key_ring(_folder):
    """Keys of Alice and Bob in a home of GnuPG, and the bridge that lets Wine start the gpg of this system."""
    if shutil.which("gpg") is None:
        yield None
        return
    # A short path: the agent's socket lies there.
    with tempfile.TemporaryDirectory(prefix="gpg-", ignore_cleanup_errors=True) as home:
        pathlib.Path(home, "gpg.conf").write_text("pinentry-mode loopback\nno-auto-key-locate\ndisable-dirmngr\n")
        # A pass phrase that is remembered would make a wrong one do.
        pathlib.Path(home, "gpg-agent.conf").write_text("allow-loopback-pinentry\ndefault-cache-ttl 0\nmax-cache-ttl 0\n")
        bridge = pathlib.Path(os.environ.get("WFINFO_BUILD", host.SOURCE / "build/windows")) / "doubles/gpg_bridge"
        environment = {**os.environ, "GNUPGHOME": home, "WINEPATH": "Z:" + str(bridge).replace("/", "\\")}
        for owner in ("alice@example.com", "bob@example.com"):
            subprocess.run(["gpg", "--batch", "--passphrase", PASS_PHRASE, "--quick-gen-key", f"<{owner}>", "future-default",
                            "default", "never"], env=environment, check=True, capture_output=True)
        yield Provided({"pass_phrase": PASS_PHRASE}, environment)
        subprocess.run(["gpgconf", "--kill", "all"], env=environment)


# --- mapi ---


@contextlib.contextmanager
def mail_receiver(folder):
    """The small host as the system's mail client, running, with three mails in its store."""
    home = folder / "home"
    (home / "mails").mkdir(parents=True)
    for name, sample in (("1-minutes.eml", "plain-ascii.eml"), ("2-files.eml", "attachments.eml"), ("3-old.eml", "reply.eml")):
        shutil.copy(host.sample(sample), home / "mails" / name)
    (folder / "minutes.txt").write_text("All agreed.\r\n")
    client = pathlib.Path(os.environ.get("WFINFO_BUILD", host.SOURCE / "build/windows")) / "doubles/mapi_client.exe"
    registered = host.run("--register-mapi", "--yes")
    assert registered.code == 0, registered.err
    server = subprocess.Popen([*host.command(), "--serve", "--home", str(home)], stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        end = time.monotonic() + 30
        while host.run("frame", executable=client).code != 0 and time.monotonic() < end:
            time.sleep(0.1)
        yield Provided()
        # The calls give 0 whatever happens: what they sent tells.
        sent = [mail.read_text() for mail in sorted((home / "outbox").glob("*.eml"))]
        assert len(sent) == 2 and "Subject: Minutes" in sent[0] and "minutes.txt" in sent[1], sent
    finally:
        host.run("close", executable=client)
        server.kill()
        server.wait()
        host.run("--unregister-mapi")
