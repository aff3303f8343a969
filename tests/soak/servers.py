"""The peers of a soak, on this machine: a server of pages and one of plain TCP, both of which break their word on demand.

What a peer does stands in what it is asked: "GET /half-body/12/3000" or "flood 12 3000" is number 12 with 3,000 bytes.
"""
import contextlib
import socket
import socketserver
import string
import struct
import threading
import time

LETTERS = string.ascii_lowercase.encode()
FLOOD_BYTES = 40_000
PATIENCE_SECONDS = 60


def body(number, size):
    """The bytes of a number: letters in a row, which tests/soak/peers.h knows too."""
    start = number % len(LETTERS)
    return ((LETTERS[start:] + LETTERS[:start]) * (size // len(LETTERS) + 1))[:size]


def header(status, *lines):
    return "\r\n".join([f"HTTP/1.1 {status}", "Content-Type: text/plain", *lines, "", ""]).encode()


def with_length(status, size, *lines):
    return header(status, f"Content-Length: {size}", *lines)


def in_chunks(content):
    pieces = [content[at:at + 5000] for at in range(0, len(content), 5000)]
    return b"".join(b"%x\r\n%s\r\n" % (len(piece), piece) for piece in pieces) + b"0\r\n\r\n"


class Breaking(socketserver.StreamRequestHandler):
    """A peer that can end a connection in every way."""

    def setup(self):
        self.request.settimeout(PATIENCE_SECONDS)
        super().setup()

    def reset(self):
        self.request.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))

    def handle(self):
        # The other side may go at any time.
        with contextlib.suppress(ConnectionError, socket.timeout):
            while self.answer_one():
                pass

    def finish(self):
        with contextlib.suppress(OSError):
            super().finish()


class Pages(Breaking):
    def answer_one(self):
        """Answers a request; false when the connection is to end."""
        line = self.rfile.readline()
        while line.strip():
            if line.startswith(b"GET "):
                _, kind, number, size = line.split()[1].decode().split("/")
            line = self.rfile.readline()
            if not line:
                return False
        if not line:
            return False
        return self.send(kind, body(int(number), int(size)))

    def send(self, kind, content):
        size, half = len(content), content[:len(content) // 2]
        answers = {
            "page": with_length("200 OK", size) + content,
            "empty": with_length("200 OK", 0),
            "missing": with_length("404 Not Found", size) + content,
            "moved": with_length("302 Found", size, "Location: /page/1/1") + content,
            "chunked": header("200 OK", "Transfer-Encoding: chunked") + in_chunks(content),
        }
        if kind in answers:
            self.wfile.write(answers[kind])
            return True
        if kind in ("reset", "reset-body"):
            self.reset()
        if kind in ("half-body", "reset-body"):
            self.wfile.write(with_length("200 OK", size) + half)
        if kind == "half-header":
            self.wfile.write(b"HTTP/1.1 200 OK\r\nContent-Le")
        return False


class Exchange(Breaking):
    def answer_one(self):
        line = self.rfile.readline()
        if not line:
            return False
        kind, number, size = line.decode().split()
        content = body(int(number), int(size))
        if kind == "reset":
            # Not before the client waits: under Wine a connection that is gone by then is waited for, 20 seconds.
            time.sleep(0.05)
            self.reset()
        elif kind == "gone":
            self.reset()
        elif kind == "pieces":
            for at in range(0, len(content), 1 + len(content) // 5):
                self.wfile.write(content[at:at + 1 + len(content) // 5])
                time.sleep(0.001)
        elif kind == "flood":
            self.wfile.write(body(int(number), FLOOD_BYTES))
            self.wait_for_close()
        elif kind == "deaf":
            self.wait_for_close()
        elif kind == "answer":
            self.wfile.write(content)
        return False

    def wait_for_close(self):
        self.rfile.read()


class Server(socketserver.ThreadingTCPServer):
    daemon_threads = True
    request_queue_size = 64


@contextlib.contextmanager
def serving(handler):
    """The port of a server that lives as long as the block."""
    with Server(("127.0.0.1", 0), handler) as server:
        threading.Thread(target=server.serve_forever, daemon=True).start()
        yield server.server_address[1]
        server.shutdown()


@contextlib.contextmanager
def closed_port():
    """A port that nobody listens on and nobody else is given."""
    with socket.socket() as unused:
        unused.bind(("127.0.0.1", 0))
        yield unused.getsockname()[1]
