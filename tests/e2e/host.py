"""Runs the small host from outside, for the end to end tests.

    result = run("--mail", sample("plain-ascii.eml"), "--macro", macro)
    self.assertEqual((result.out, result.err, result.code), ("...\n", "", 0))

`WFINFO_HOST` names wrenfold.exe, `WFINFO_SOURCE` the repository. Output is text: the host writes UTF-8 everywhere.
"""
import os
import pathlib
import shutil
import subprocess
import tempfile
import typing
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).parents[2]))
EXECUTABLE = pathlib.Path(os.environ.get("WFINFO_HOST", SOURCE / "out/host/wrenfold.exe"))
TIMEOUT_SECONDS = 120
# What the host tells once when a mail is begun and it has no account.
NO_SENDER = "wrenfold: no account: the mail has no sender; --accounts FILE names one\n"


class Result(typing.NamedTuple):
    out: str
    err: str
    code: int


def command(executable=EXECUTABLE):
    """How a Windows program is started here."""
    return [str(executable)] if os.name == "nt" else ["wine", str(executable)]


def run(*arguments, input="", executable=EXECUTABLE, folder=None, environment=None):
    """Runs the host with `input` on its standard input; each line end comes back as one LF."""
    finished = subprocess.run(
        command(executable) + [str(a) for a in arguments],
        input=input.encode(), stdout=subprocess.PIPE, stderr=subprocess.PIPE, cwd=folder, env=environment,
        timeout=TIMEOUT_SECONDS)
    return Result(finished.stdout.decode(), finished.stderr.decode(), finished.returncode)


def sample(name):
    return SOURCE / "samples/mails" / name


def takes_any_path():
    """False where the locale lets Wine see ASCII file names only; Windows itself takes any."""
    return os.name == "nt" or "utf" in os.environ.get("LC_ALL", "").lower()


class HostTest(unittest.TestCase):
    """A test with a folder of its own for macros and mails."""

    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="wrenfold-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, content):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        return path

    def run_macro(self, source, *arguments):
        return run("--macro", self.write("test.macro", source), "--english", *arguments)

    def prompt(self, *lines, arguments=()):
        return run("--prompt", "--english", *arguments, input="\n".join(lines) + "\n")

    def assert_output(self, result, out, err=""):
        """The run printed exactly `out`, complained of nothing but `err` and succeeded."""
        self.assertEqual(result, Result(out, err, 0))

    def assert_success(self, result):
        """The run complained of nothing and succeeded, whatever it printed."""
        self.assertEqual(result, Result(result.out, "", 0))
