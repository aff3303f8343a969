"""A Wine prefix with the stand-in crypt32, a small PKI in its stores, and OpenSSL on the other side."""
import http.server
import os
import pathlib
import shutil
import subprocess
import tempfile
import threading

SOURCE = pathlib.Path(os.environ["WFINFO_SOURCE"])
BUILD = pathlib.Path(os.environ["WFINFO_BUILD"])
STAND_IN = BUILD / "doubles/crypt32"
PLAIN = {**os.environ, "LC_ALL": "C"}

# The marks of a report, and what stands where.
GOOD, UNSURE, PROBLEM = "○", "△", "×"


def is_possible():
    return (STAND_IN / "crypt32.dll").exists()


def openssl(*arguments, check=True, stdin=None):
    return subprocess.run(["openssl", *map(str, arguments)], input=stdin, capture_output=True, check=check, env=PLAIN)


class Outcome:
    """What the tool printed: fields by name, boxes and messages as lists."""

    def __init__(self, text):
        self.fields, self.boxes, self.messages, self.all = {}, [], [], []
        for line in text.splitlines():
            name, separator, value = line.partition("=")
            try:
                decoded = bytes.fromhex(value).decode("cp932", "replace")
            except ValueError:
                continue
            if separator:
                self.all.append((name, decoded))
                self.fields[name] = decoded
                if name == "box":
                    self.boxes.append(decoded)
                if name == "message":
                    self.messages.append(decoded)

    def __getattr__(self, name):
        return self.fields[name]


class Lists(http.server.BaseHTTPRequestHandler):
    """Serves what a test puts into `files`, and remembers what was asked for."""

    files, asked = {}, []

    def do_GET(self):
        Lists.asked.append(self.path)
        body = Lists.files.get(self.path)
        self.send_response(200 if body is not None else 404)
        body = body if body is not None else b"no such list"
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


class Surroundings:
    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="wfinfo-smime-"))
        self.pki = self.folder / "pki"
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Lists)
        self.url = f"http://127.0.0.1:{self.server.server_port}"
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        subprocess.run(["bash", str(SOURCE / "samples/pki/make_pki.sh"), str(self.pki), self.url], check=True,
                       env=PLAIN, capture_output=True)
        self.prefix = self.folder / "prefix"
        self.environment = {**os.environ, "WINEPREFIX": str(self.prefix), "WINEARCH": "win64", "WINEDEBUG": "-all"}
        self.environment.pop("DISPLAY", None)
        self._make_prefix()
        self.environment.update(WINEDLLPATH=str(self.folder / "wine"), WINEDLLOVERRIDES="crypt32=n")
        subprocess.run(["bash", str(SOURCE / "samples/pki/install_pki.sh"), str(self.pki),
                        str(BUILD / "install_identity.exe")], check=True, env=self.environment,
                       stdin=subprocess.DEVNULL, capture_output=True, timeout=300)

    def _make_prefix(self):
        locale = os.environ.get("LC_ALL", "C")
        script = f'. tools/wine_prefix.sh; wine_prefix_start "{self.prefix}" "{locale}"'
        subprocess.run(["bash", "-c", script], cwd=SOURCE, env=self.environment, check=True,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=240)
        # Wine loads a built-in library only where a file of its name lies: that of the Wine which made the prefix.
        system = self.prefix / "drive_c/windows/system32"
        (system / "crypt32.dll").rename(system / "wcrypt32.dll")
        shutil.copytree(STAND_IN / "wine", self.folder / "wine", symlinks=True)
        (self.folder / "wine/x86_64-windows").mkdir()
        shutil.copy(system / "wcrypt32.dll", self.folder / "wine/x86_64-windows")
        shutil.copy(STAND_IN / "crypt32.dll", system / "crypt32.dll")

    def close(self):
        self.server.shutdown()
        self.server.server_close()
        subprocess.run(["wineserver", "-k"], env=self.environment, stdin=subprocess.DEVNULL)
        subprocess.run(["wineserver", "-w"], env=self.environment, stdin=subprocess.DEVNULL, timeout=60)
        shutil.rmtree(self.folder, ignore_errors=True)

    def wine(self, program, *arguments, **environment):
        done = subprocess.run(["wine", str(BUILD / program), *map(str, arguments)],
                              env={**self.environment, **environment}, stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=300)
        return done.returncode, done.stdout.decode("latin-1")

    def install(self, store, name, with_key=False):
        key = [self.pki / f"{name}.msblob", f"wfinfo-{name}"] if with_key else []
        code, text = self.wine("install_identity.exe", store, self.pki / f"{name}.der", *key)
        assert code == 0, f"{name} into {store}: {text}"

    def tool(self, *arguments, language="en"):
        code, text = self.wine("smime_tests.exe", "tool", *arguments, WFINFO_LANGUAGE=language)
        assert code == 0, f"{arguments}: exit code {code}\n{text}"
        return Outcome(text)

    def path(self, name):
        return self.folder / name

    def write(self, name, content):
        self.path(name).write_bytes(content)
        return self.path(name)
