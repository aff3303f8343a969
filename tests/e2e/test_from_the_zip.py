"""From the zip alone: a stranger unpacks the archive and does what its first page says, in the order of that page, in a Wine
prefix of his own that holds nothing else.

The page is README.md of the archive (docs/install.md here). A block "macro" is saved under the last name in front of it; the lines of a
block "powershell" are typed; a block "text" behind them is all that they print. Lines of a transcript that begin with "> " are typed at
the prompt. Nothing of the checkout is on the stranger's path; the compiler, Node for Windows with koffi, and a typist for the console
stand for what he has himself.

The lines of docs/learn.md that are meant for this folder are typed in it, too.

    test_from_the_zip.py --write      writes into the page what comes
"""
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import typing
import unittest
import zipfile

import host

sys.path.insert(0, str(host.SOURCE / "tools"))
import learning_path  # noqa: E402
import make_kit  # noqa: E402
import make_package  # noqa: E402
import make_site  # noqa: E402

PAGES = [host.SOURCE / "docs" / name for name in ("install.md", "install.ja.md")]
NODE = host.SOURCE / "build/node"
TYPIST = pathlib.Path(os.environ.get("WFINFO_BUILD", host.SOURCE / "build/windows")) / "doubles/console_typist.exe"
COMPILER = "x86_64-w64-mingw32-gcc"
JAVASCRIPT = "JavaScript"
BLOCK = re.compile(r"^## (?P<step>[^\n]*)$|^```(?P<language>\w*)\n(?P<text>.*?)^```$", re.M | re.S)
# What is never the same in the sample's list of mails: day and time, and the size, as the mail's identifier has a process's number.
VARYING = [(re.compile(r"\b\d{4}/\d\d/\d\d \d\d:\d\d(?=\t.*\t\d+$)", re.M), "‹day and time›"), (re.compile(r"(?<=\t)\d+$", re.M), "‹size›")]
# The host that the library starts has no window; under Wine its standard error is the caller's all the same.
OF_THE_HIDDEN_HOST = re.compile(r"^wrenfold: serving Simple MAPI; home is (.*)$\n", re.M)


class Block(typing.NamedTuple):
    step: str
    said: str
    came: typing.Optional[str]  # None where it cannot be tried here


def normalised(text):
    text = text.replace("\r\n", "\n")
    for pattern, shown in VARYING:
        text = pattern.sub(shown, text)
    return text


class Stranger:
    """A machine with Wine and mingw, a home and a prefix that were not there before, and the unpacked archive."""

    def __init__(self, archive):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="stranger-"))
        (self.root / "home").mkdir()
        unpacked = self.root / "a folder of mine"
        with zipfile.ZipFile(archive) as packed:
            packed.extractall(unpacked)
        [self.top] = unpacked.iterdir()
        self.here = self.top
        self.hidden_home = None
        programs = sorted({str(pathlib.Path(shutil.which(name)).parent) for name in ("wine", COMPILER, "sh")})
        self.environment = {"PATH": os.pathsep.join(programs), "HOME": str(self.root / "home"), "LC_ALL": "C.UTF-8",
                            "WINEPREFIX": str(self.root / "prefix"), "WINEARCH": "win64", "WINEDEBUG": "-all"}
        self.has_node = (NODE / "bin/node.exe").exists()

    def begin(self):
        """What the page tells people under Linux to do once."""
        self.run("wineboot", "-i")
        self.run("wine", "reg", "add", "HKCU\\Software\\Wine\\Drivers", "/v", "Graphics", "/d", "null", "/f")
        self.run("wineserver", "-k")
        self.run("wineserver", "-w")
        self.run("wineserver", "-p")
        # A console that was open once: Wine notes its colours then.
        shutil.copy(TYPIST, self.root)
        self.run("wine", str(self.root / TYPIST.name), "cmd /c exit", "end")
        if self.has_node:
            self.run("wine", "winecfg", "-v", "win10")
            (self.root / "node").mkdir()
            shutil.copy(NODE / "bin/node.exe", self.root / "node")
            self.environment["WINEPATH"] = "Z:" + str(self.root / "node").replace("/", "\\")

    def end(self):
        self.run("wineserver", "-k", check=False)
        self.run("wineserver", "-w", check=False)
        shutil.rmtree(self.root, ignore_errors=True)

    def run(self, *words, check=True):
        """What it prints, its messages behind it. To files: what is left behind would keep a pipe open."""
        with open(self.root / "out", "w+b") as out, open(self.root / "err", "w+b") as err:
            done = subprocess.run(words, cwd=self.here, env=self.environment, stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                                  timeout=host.TIMEOUT_SECONDS)
            out.seek(0)
            err.seek(0)
            printed, messages = out.read().decode(), err.read().decode().replace("\r\n", "\n")
        if check and done.returncode != 0:
            raise AssertionError(f"{words}: exit code {done.returncode}\n{printed}{messages}")
        for home in OF_THE_HIDDEN_HOST.findall(messages):
            self.hidden_home = home
        return printed + OF_THE_HIDDEN_HOST.sub("", messages)

    def typed(self, line, answer):
        """What one line of a block prints; `answer` is the transcript behind it."""
        words = line.split()
        if words[0] == COMPILER:
            return self.run(*words)
        if words[0] == "cd":
            self.here = (self.here / words[1].replace("\\", "/")).resolve(strict=True)
            return ""
        if words[:2] == ["npm", "install"]:
            shutil.copytree(NODE / "node_modules" / words[2], self.here / "node_modules" / words[2])
            return ""
        if "--prompt" in words:
            return self.at_the_prompt(line, re.findall(r"^> (.*)$", answer, re.M))
        # The command prompt of Windows reads it; only its copy speaks of what it did.
        (self.root / "line.cmd").write_text(f"@{line}{' >nul' if words[0] == 'copy' else ''}\n")
        return self.run("wine", "cmd", "/c", "Z:" + str(self.root / "line.cmd").replace("/", "\\"))

    def at_the_prompt(self, line, lines):
        """The screen of a console, as it stands at the end."""
        keys = [f"type {typed}\\n" for typed in lines]
        screen = self.run("wine", str(self.root / TYPIST.name), line, "wait >", *keys, "end")
        rows = [row for row in screen.replace("\r\n", "\n").splitlines() if row]
        assert rows[-1] == "code 0", screen
        return "".join(row + "\n" for row in rows[:-1])

    def walk(self, page):
        """A Block for each transcript of the page; commands without one have to print nothing."""
        step, came, found, can, end = "", None, [], True, 0
        blocks = [*BLOCK.finditer(page)]
        for at, block in enumerate(blocks):
            if block["step"]:
                step = block["step"]
                can = self.has_node or JAVASCRIPT not in step
            elif block["language"] == "macro":
                [name] = re.findall(r"`(\w+\.macro)`", page[end:block.start()])[-1:]
                (self.here / name).write_text(block["text"], encoding="utf-8")
            elif block["language"] == "powershell":
                answer = blocks[at + 1]["text"] or ""
                lines = block["text"].splitlines()
                came = normalised("".join(self.typed(line, answer) for line in lines)) if can else None
            else:
                found.append(Block(step, block["text"], came))
            end = block.end()
        return found

    def registry(self):
        """Programs' settings of the machine and of the user, as their exports."""
        found = []
        for key in ("HKLM\\Software", "HKCU"):
            self.run("wine", "reg", "export", key, "Z:" + str(self.root / "exported.reg").replace("/", "\\"), "/y")
            found.append((self.root / "exported.reg").read_text(encoding="utf-16"))
        return found

    def files(self):
        """{file outside of the unpacked folder: a sum of what it holds}; Wine's own books of the registry say nothing."""
        kept = [path for folder in ("home", "prefix") for path in sorted((self.root / folder).rglob("*"))
                if path.is_file() and not path.is_symlink() and path.suffix != ".reg"]
        return {path.relative_to(self.root).as_posix(): hashlib.sha256(path.read_bytes()).hexdigest() for path in kept}


def packed_in(folder):
    """The archive, packed as ./dev package does."""
    make_kit.pack()
    archive = pathlib.Path(folder, make_package.ZIP.name)
    make_kit.pack(archive, {f"{make_package.TOP}/{name}": content for name, content in make_package.contents().items()})
    return archive


class FromTheZip(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        if not make_site.can_build():
            raise unittest.SkipTest("MkDocs, which builds the pages of the package, is not installed")
        with tempfile.TemporaryDirectory(prefix="zip-") as folder:
            cls.stranger = Stranger(packed_in(folder))
        cls.addClassCleanup(cls.stranger.end)
        cls.stranger.begin()
        cls.before = cls.stranger.registry(), cls.stranger.files()
        cls.blocks = cls.stranger.walk((cls.stranger.top / "README.md").read_text(encoding="utf-8"))
        cls.after = cls.stranger.registry(), cls.stranger.files()

    def test_what_the_first_page_shows_is_what_comes(self):
        self.assertEqual(len({block.step for block in self.blocks}), 6)
        for block in self.blocks:
            if block.came is not None:
                with self.subTest(block.step):
                    self.assertEqual(block.came, block.said)

    def test_javascript_is_among_it(self):
        if not self.stranger.has_node:
            self.skipTest("Node for Windows could not be fetched")
        [block] = [block for block in self.blocks if JAVASCRIPT in block.step]
        self.assertEqual(block.came, block.said)

    def test_the_mail_lies_where_the_page_says(self):
        [mail] = (self.stranger.top / "small-host/outbox").glob("*.eml")
        self.assertIn("\r\n\r\nSee you at noon.", mail.read_bytes().decode())
        self.assertEqual(self.stranger.hidden_home, "Z:" + str(self.stranger.top / "small-host").replace("/", "\\") + "\\")

    def test_the_registry_is_as_before(self):
        for before, after in zip(self.before[0], self.after[0]):
            self.assertGreater(before.count("\n"), 100)
            self.assertEqual(after, before)

    def test_no_file_outside_of_the_folder_is_written(self):
        before, after = self.before[1], self.after[1]
        self.assertGreater(len(before), 100)
        self.assertEqual({name: after.get(name) for name in before.keys() | after.keys() if after.get(name) != before.get(name)}, {})

    def test_the_lines_of_the_twelve_macros_print_what_their_page_shows(self):
        """All but the last one, which wants GnuPG."""
        self.stranger.here = self.stranger.top
        for step in learning_path.STEPS[:-1]:
            with self.subTest(step[0]):
                shown = learning_path.read(learning_path.expected_file(step)).replace(learning_path.ERROR_MARK, "")
                self.assertEqual(self.stranger.typed(learning_path.on_windows(step), "").replace("\r\n", "\n"), shown)

    def test_a_double_click_leads_to_the_same_page(self):
        target = re.search(r'href="([^"]+)"', (self.stranger.top / "START-HERE.html").read_text(encoding="utf-8"))[1]
        shown = (self.stranger.top / target).read_text(encoding="utf-8")
        for block in self.blocks:
            self.assertIn(f">{block.step}<", shown)


def write():
    """Writes into the page, of both languages, what comes."""
    with tempfile.TemporaryDirectory(prefix="zip-") as folder:
        stranger = Stranger(packed_in(folder))
    try:
        stranger.begin()
        blocks = stranger.walk((stranger.top / "README.md").read_text(encoding="utf-8"))
    finally:
        stranger.end()
    for path in PAGES:
        rest = iter(block.said if block.came is None else block.came for block in blocks)
        page = path.read_text(encoding="utf-8")
        path.write_text(re.sub(r"^```text\n.*?^```$", lambda _: f"```text\n{next(rest)}```", page, flags=re.M | re.S), encoding="utf-8")


if __name__ == "__main__" and sys.argv[1:2] == ["--write"]:
    sys.exit(write() or 0)

if __name__ == "__main__":
    unittest.main()
