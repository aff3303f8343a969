"""What some families of examples/ need beside the mails: servers, keys, certificates, a host that takes mails.

A set-up is a context manager: it gets the folder in which the examples of a family run, starts what they need, yields what
they are told of it, and ends what it started.
"""
import contextlib
import http.server
import os
import socket
import socketserver
import threading
import typing


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
