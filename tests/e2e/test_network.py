"""The network samples against servers on this machine."""
import http.server
import socket
import socketserver
import threading
import unittest

from host import SOURCE, HostTest


class Page(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        body = b"<html><body>a page from this very machine</body></html>"
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *arguments):
        pass


class Lines(socketserver.StreamRequestHandler):
    def handle(self):
        self.wfile.write(b"220 ready\r\n")
        for line in self.rfile:
            if line == b"QUIT\r\n":
                self.wfile.write(b"221 bye\r\n")
                self.wfile.flush()
                self.request.shutdown(socket.SHUT_WR)
                # The answer is in the client's hands before the connection goes.
                self.rfile.read()
                return
            self.wfile.write(b"250 " + line)


class Network(HostTest):
    def serve(self, server):
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        return server.server_address[1]

    def run_sample(self, name, port_in_sample, port):
        source = (SOURCE / "samples/macros" / name).read_text(encoding="utf-8")
        self.assertIn(port_in_sample, source)
        return self.run_macro(source.replace(port_in_sample, str(port)))

    def test_a_page_is_fetched(self):
        port = self.serve(http.server.ThreadingHTTPServer(("127.0.0.1", 0), Page))
        self.assert_output(self.run_sample("fetch_page.macro", "8080", port),
                           "status:       200\ncontent type: text/html\n"
                           "begins with:  <html><body>a page from this very machin\n")

    def test_a_server_that_is_not_there_is_told(self):
        with socket.socket() as unused:
            unused.bind(("127.0.0.1", 0))
            port = unused.getsockname()[1]
        self.assert_output(self.run_sample("fetch_page.macro", "8080", port),
                           f"no answer from http://127.0.0.1:{port}/\n")
        self.assert_output(self.run_sample("line_protocol.macro", "2525", port),
                           "not connected: connect function failed.\n")

    def test_a_line_protocol_is_spoken(self):
        port = self.serve(socketserver.ThreadingTCPServer(("127.0.0.1", 0), Lines))
        answer = "220 ready\n250 HELO example.com\n221 bye\n"
        size = len(answer.replace("\n", "\r\n"))
        self.assert_output(self.run_sample("line_protocol.macro", "2525", port), f"{size} bytes:\n{answer}\n")


if __name__ == "__main__":
    unittest.main()
