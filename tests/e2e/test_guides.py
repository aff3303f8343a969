"""The guides by task: what a page says to save is saved, what it says to run is run, and what it shows is what comes.

A page is read from its beginning: a block of a macro is saved under the last name in front of it, the lines of a block "sh" are
commands, and a block "text" behind them is all that they print. One folder, with a copy of the samples, serves a page. The pages in Japanese
have the same blocks (tests/repository/test_translations.py).

    test_guides.py --write      writes into the pages what comes
"""
import contextlib
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import unittest

import example_set_ups
import host

sys.path.insert(0, str(host.SOURCE / "tools"))
import make_site  # noqa: E402
import test_learning  # noqa: E402

BLOCK = re.compile(r"^```(\w*)\n(.*?)^```$", re.M | re.S)
# The address in the pages stands for the small server of the tests, which takes a free port.
SERVER = "http://127.0.0.1:8080"


@contextlib.contextmanager
def home_of_the_host(folder):
    """The folder is where a host that is started by itself keeps its mails; it ends, and is no client any more, whatever happens."""
    home = str(folder) if os.name == "nt" else "Z:" + str(folder).replace("/", "\\")
    try:
        yield example_set_ups.Provided(environment={**os.environ, "WRENFOLD_HOME": home})
    finally:
        host.run("--stop")
        host.run("--unregister-mapi")


@contextlib.contextmanager
def keys_and_certificates(folder):
    """A key ring of GnuPG, and stores of certificates in a Wine prefix of their own."""
    with example_set_ups.key_ring(folder) as keys, example_set_ups.certificates(folder) as stores:
        if keys is None or stores is None:
            yield None
            return
        of_gnupg = {name: keys.environment[name] for name in ("GNUPGHOME", "WINEPATH")}
        yield example_set_ups.Provided(environment={**stores.environment, **of_gnupg})


SET_UPS = {"sign-and-verify.md": keys_and_certificates, "fetch-a-page.md": example_set_ups.web_site,
           "be-the-mail-client.md": home_of_the_host}


def command(words, folder):
    """How a line of a page is started here."""
    if words[0] == "wrenfold":
        return [*host.command(), *words[1:]]
    if words[0].endswith(".exe"):
        return [*host.command(folder / words[0]), *words[1:]]
    return words


def output(line, folder, environment):
    """What a command prints, its failures behind it. A file takes it: a program may leave a host behind, which would keep a pipe open."""
    with open(folder / "printed", "w+b") as printed, open(folder / "complained", "w+b") as complained:
        done = subprocess.run(command(shlex.split(line), folder), cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=printed,
                              stderr=complained, timeout=host.TIMEOUT_SECONDS)
        if line.split()[0].endswith(".exe"):
            complained.truncate(0)  # by a host that it has started
        printed.seek(0)
        complained.seek(0)
        text = (printed.read() + complained.read()).decode().replace("\r\n", "\n")
    return text + (f"(exit code {done.returncode})\n" if done.returncode else "")


def walked(page, folder, provided):
    """[(what stands in the page, what came)] for each block of output; "" stands where commands print nothing and no block is there."""
    site = provided.variables.get("site", SERVER)
    shutil.copytree(host.SOURCE / "samples", folder / "samples")
    found, came, end = [], None, 0
    for block in BLOCK.finditer(page):
        language, text = block[1], block[2]
        if came is not None and language != "text":
            found.append(("", came))
        if language == "macro":
            [name] = re.findall(r"`(\w+\.macro)`", page[end:block.start()])[-1:]
            (folder / name).write_text(text.replace(SERVER, site), encoding="utf-8")
            came = None
        elif language == "sh":
            came = "".join(output(line, folder, provided.environment) for line in text.splitlines()).replace(site, SERVER)
        elif language == "text":
            found.append((text, came))
            came = None
        end = block.end()
    return found + ([("", came)] if came is not None else [])


def walk(name):
    """The same of a page by its name; None where what it needs cannot be had."""
    with tempfile.TemporaryDirectory(prefix="guide-", ignore_cleanup_errors=True) as folder:
        with SET_UPS.get(name, example_set_ups.nothing)(pathlib.Path(folder)) as provided:
            return provided and walked((host.SOURCE / "docs" / name).read_text(encoding="utf-8"), pathlib.Path(folder), provided)


class Guides(unittest.TestCase):
    maxDiff = None

    def test_what_they_say_is_what_comes(self):
        for name in make_site.GUIDES:
            with self.subTest(name):
                blocks = walk(name)
                if blocks is None:
                    self.skipTest("needs gpg, and the stand-in for crypt32")
                self.assertGreater(len(blocks), 0)
                for said, came in blocks:
                    self.assertEqual(came, said)

    def test_they_hold_nothing_that_is_not_run(self):
        for name in make_site.GUIDES:
            page = (host.SOURCE / "docs" / name).read_text(encoding="utf-8")
            languages = [block[1] for block in BLOCK.finditer(page)]
            with self.subTest(name):
                self.assertEqual(set(languages) - {"macro", "sh", "text"}, set())
                saved = set(re.findall(r"`(\w+\.macro)`", page))
                commands = " ".join(block[2] for block in BLOCK.finditer(page) if block[1] == "sh")
                self.assertEqual([macro for macro in saved if macro not in commands], [])


class FirstMacro(unittest.TestCase):
    """docs/first-macro.md: what it says to type on Windows and on Linux, with the macro that it shows."""

    page = (host.SOURCE / "docs/first-macro.md").read_text(encoding="utf-8")

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="first-"))
        self.addCleanup(shutil.rmtree, self.folder)
        shutil.copytree(host.SOURCE / "samples", self.folder / "samples")
        [macro] = [block[2] for block in BLOCK.finditer(self.page) if block[1] == "macro"]
        (self.folder / "hello.macro").write_text(macro, encoding="utf-8")
        self.expected = "".join(line[3:] + "\n" for line in macro.splitlines() if line.startswith("#> "))

    def test_its_lines_for_windows_run(self):
        lines = re.findall(r"^small-host\\wrenfold\.exe (.*)$", self.page, re.M)
        self.assertEqual(len(lines), 2)
        for line in lines:
            # Backslashes are Windows' own; a test under Linux has them too.
            result = host.run(*line.split(), folder=self.folder)
            self.assertEqual(result, host.Result(result.out, "", 0))
            self.assertNotEqual(result.out, "")
            if "hello.macro" in line:
                self.assertEqual(result.out, self.expected)

    def test_its_line_for_linux_runs(self):
        [line] = re.findall(r"^\./dev run (.*)$", self.page, re.M)
        [start] = test_learning.started_by_dev(line.split())
        self.assertEqual(host.run(*start, folder=self.folder), host.Result(self.expected, "", 0))


def write():
    """Writes into the pages, of both languages, what comes."""
    for name in make_site.GUIDES:
        came = [came for _, came in walk(name)]
        for path in (host.SOURCE / "docs" / name, host.SOURCE / "docs" / name.replace(".md", ".ja.md")):
            rest = iter([text for text in came if text])
            page = re.sub(r"^```text\n.*?^```$", lambda _: f"```text\n{next(rest)}```", path.read_text(encoding="utf-8"), flags=re.M | re.S)
            path.write_text(page, encoding="utf-8")
            assert next(rest, None) is None, f"{name}: a block of commands prints, and no block of text shows it"


if __name__ == "__main__" and sys.argv[1:2] == ["--write"]:
    sys.exit(write() or 0)

if __name__ == "__main__":
    unittest.main()
