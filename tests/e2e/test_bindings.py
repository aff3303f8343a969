"""The bindings for other languages: each has every export, and what can be compiled and run here is."""
import ctypes
import importlib.util
import json
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest
import unittest.mock

import host

OUT = pathlib.Path(os.environ.get("WFINFO_OUT", host.SOURCE / "out"))
BINDINGS = OUT / "bindings"
SAMPLES = host.SOURCE / "samples/bindings"
NODE = host.SOURCE / "build/node"
FIRST_STEPS = ["interface 18", "CAFé ☕ 漢字", "2025/06/02", 'Alice <alice@example.com>; "Bob, B." <bob@example.com>']
FIFTY = [
    ('GetWFInfoVersion(0)', '18'),
    ('IsWrenfold()', '0'),
    ('IsTamarinMail()', '0'),
    ('STARTUNIMACRO()', '0'),
    ('GetMessageBoxParent()', '0'),
    ('ToUpper("ab漢c")', '"AB漢C"'),
    ('ToLower("AB漢C ☕")', '"ab漢c ☕"'),
    ('LeftStr("漢字x", 3)', '"漢"'),
    ('RightStr("漢字x", 2)', '"字x"'),
    ('MidStr("abcdef", 2, 3)', '"cde"'),
    ('YenEncode("say \\"表\\" \\\\")', '"say \\\\\\"表\\\\\\" \\\\\\\\"'),
    ('UnDoubleQuote("\\"a \\"\\"b\\"\\"\\"")', '"a \\"\\"b\\"\\""'),
    ('ToBaseName("C:\\\\表\\\\x.eml")', '"x.eml"'),
    ('IfEqual("a", "a", 1, 2)', '1'),
    ('IfInclude("newsletter", "news", 1, 2)', '1'),
    ('CheckRandomString("xkqzvbtw")', '1'),
    ('CheckRandomDomain("example.com")', '0'),
    ('SetNameOnly("山田 <yamada@example.jp>")', '"山田"'),
    ('SetEmailOnly("山田 <yamada@example.jp>")', '"yamada@example.jp"'),
    ('CountEmailList("a@example.com, \\"B, b\\" <b@example.com>")', '2'),
    ('GetEmailList("a@example.com, b@example.com", 1)', '"b@example.com"'),
    ('AddString("a", "☕", null, "漢")', '"a☕"'),
    ('AddSama("山田", null, 0)', '"山田様"'),
    ('FormatDate("Mon, 2 Jun 2025 09:00:00 +0900", "YYYY/MM/DD")', '"2025/06/02"'),
    ('FormatDateDefault1601("no date", "YYYY/MM/DD")', '"1601/01/01"'),
    ('SubtractDate("Tue, 3 Jun 2025 09:00:00 +0900", "Mon, 2 Jun 2025 09:00:00 +0900", "hour")', '24'),
    ('SaveStringToFile("fifty.csv", "name,mail\\r\\n漢,\\"a, b\\"\\r\\n", 0, 0)', '1'),
    ('Bypass_GetFileSize("fifty.csv")', '22'),
    ('CSV_LoadFile("fifty.csv")', '1'),
    ('CSV_GetLineCount()', '2'),
    ('CSV_SkipOneLine()', '1'),
    ('CSV_GetColumnCount()', '2'),
    ('CSV_GetColumnText(1)', '"a, b"'),
    ('CSV_GetMaxColumnCount()', '2'),
    ('CSV_SetCurrentLine(0)', '1'),
    ('CSV_Free()', 'undefined'),
    ('Bypass_CopyFile("fifty.csv", "copy.csv", 1)', '1'),
    ('Bypass_GetFileAttributes("copy.csv")', '32'),
    ('Bypass_DeleteFile("copy.csv")', '1'),
    ('Bypass_CreateDirectory("made")', '1'),
    ('Bypass_RemoveDirectory("made")', '1'),
    ('Bypass_IsWindowVisible(0)', '0'),
    ('Orikaeshi("a\\nb\\n")', '"a\\r\\nb\\r\\n"'),
    ('DontOrikaeshi("a\\n")', '"a\\r\\r\\n"'),
    ('IsFunctionExist("kernel32.dll", "Sleep")', '1'),
    ('Sock_gethostbyname("127.0.0.1")', '"1.0.0.127"'),
    ('Inet_GetResponseCode()', '-1'),
    ('RootHeader("Subject")', '""'),
    ('MailCount()', '0'),
    ('PgpGetExitCode()', '0'),
]
MISSING = "WFINFO.DLL: String parameter missing or numeric parameter specified that should be string."


def rows():
    return json.loads((OUT / "reference.json").read_text(encoding="utf-8"))


def read(name):
    return (BINDINGS / name).read_text(encoding="utf-8")


class Folder(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="bindings-"))
        self.addCleanup(shutil.rmtree, self.folder)
        for name in ("WFINFO.dll", "wfinfo.h", "libWFINFO.dll.a"):
            shutil.copy(OUT / name, self.folder)

    def bring(self, *paths):
        for path in paths:
            shutil.copy(path, self.folder)

    def assert_first_steps(self, *words):
        # To files: what Wine leaves behind may keep a pipe open.
        with open(self.folder / "out.txt", "wb") as out, open(self.folder / "err.txt", "wb") as err:
            subprocess.run([*([] if os.name == "nt" else ["wine"]), *words], cwd=self.folder, stdin=subprocess.DEVNULL, stdout=out,
                           stderr=err, timeout=host.TIMEOUT_SECONDS, check=True)
        self.assertEqual((self.folder / "out.txt").read_text(encoding="utf-8").splitlines(), FIRST_STEPS)
        self.assertEqual((self.folder / "err.txt").read_text(encoding="utf-8").splitlines(), [MISSING])


class Everything(unittest.TestCase):
    def test_each_export_stands_once_in_each_language(self):
        names = [row["name"] for row in rows()]
        for name, pattern in {"cpp/wfinfo.hpp": r"^(?:inline )?(?!template|namespace|constexpr)[\w:<>* ]+ (\w+)\(.*\) \{ .*::\1\(",
                              "python/wfinfo.py": r"^    def ([A-Za-z]\w*)\(self(?!, function)", "csharp/Wfinfo.cs": r"^  public static [\w ]+ (\w+)\(.*Native\.\1\(",
                              "javascript/wfinfo.js": r"^  (\w+): \['", "autohotkey/wfinfo.ahk": r"DllCall\('WFINFO\\(\w+)'"}.items():
            with self.subTest(name):
                self.assertEqual(re.findall(pattern, read(name), re.M), names)

    def test_the_page_tells_of_each_binding(self):
        page = (host.SOURCE / "docs/bindings.md").read_text(encoding="utf-8")
        for path in BINDINGS.rglob("*.*"):
            self.assertIn(f"`{path.relative_to(BINDINGS).as_posix()}`", page)

    def test_each_has_its_first_program(self):
        self.assertEqual({path.name for path in SAMPLES.iterdir()}, {path.name for path in BINDINGS.iterdir()})


class Cpp(Folder):
    def test_the_first_program_runs(self):
        self.bring(BINDINGS / "cpp/wfinfo.hpp", SAMPLES / "cpp/first_steps.cpp")
        line = re.search(r"^//\s+(x86_64\S+ .*)$", (self.folder / "first_steps.cpp").read_text(encoding="utf-8"), re.M)[1]
        subprocess.run([*line.split(), "-Wall", "-Wextra", "-Werror"], cwd=self.folder, check=True)
        self.assert_first_steps("first_steps.exe")

    def test_it_stands_beside_the_systems_mapi(self):
        self.bring(BINDINGS / "cpp/wfinfo.hpp")
        (self.folder / "x.cpp").write_text("#include <windows.h>\n#include <mapi.h>\n#define WFINFO_NO_MAPI\n#include \"wfinfo.hpp\"\nint main() {}\n")
        subprocess.run(["x86_64-w64-mingw32-g++", "-std=c++17", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "x.cpp"], cwd=self.folder, check=True)


class CSharp(Folder):
    @unittest.skipUnless(shutil.which("mcs"), "Mono's compiler is not installed")
    def test_it_compiles_as_powershell_would(self):
        self.bring(BINDINGS / "csharp/Wfinfo.cs", SAMPLES / "csharp/FirstSteps.cs")
        done = subprocess.run(["mcs", "-langversion:5", "-warnaserror", "-platform:x64", "FirstSteps.cs", "Wfinfo.cs"], cwd=self.folder,
                              capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout + done.stderr), (0, ""))


@unittest.skipUnless((NODE / "bin/node.exe").exists() or os.name == "nt", "Node for Windows could not be fetched")
class JavaScript(Folder):
    def setUp(self):
        super().setUp()
        self.bring(BINDINGS / "javascript/wfinfo.js", SAMPLES / "javascript/first_steps.js")
        os.symlink(NODE / "node_modules", self.folder / "node_modules")
        # Node asks for Windows 10, which Wine's prefixes of this age are not by themselves.
        subprocess.run(["wine", "winecfg", "-v", "win10"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       check=True, timeout=host.TIMEOUT_SECONDS)

    def node(self, script):
        (self.folder / "x.js").write_text(script, encoding="utf-8")
        with open(self.folder / "out.txt", "wb") as out, open(self.folder / "err.txt", "wb") as err:
            code = subprocess.run(["wine", str(NODE / "bin/node.exe"), "x.js"], cwd=self.folder, stdin=subprocess.DEVNULL, stdout=out,
                                  stderr=err, timeout=host.TIMEOUT_SECONDS).returncode
        self.assertEqual((code, (self.folder / "err.txt").read_text(encoding="utf-8", errors="replace")), (0, ""))
        return (self.folder / "out.txt").read_text(encoding="utf-8")

    def test_the_first_program_runs(self):
        self.assert_first_steps(str(NODE / "bin/node.exe"), "first_steps.js")

    def test_each_export_is_bound_and_each_unit_comes_back(self):
        printed = self.node("""
const { load, toHost, fromHost } = require('./wfinfo');
const library = load('WFINFO.dll');  // binds them all
for (let unit = 1; unit < 0x10000; ++unit) {
  const text = 'a' + String.fromCharCode(unit) + 'b';
  const bytes = toHost(text);
  if (fromHost(bytes.subarray(0, bytes.length - 1)) !== text) console.log(unit.toString(16));
}
try { library.ToUpper(); } catch (error) { console.log(error.message); }
console.log(Object.keys(library).length);
""")
        self.assertEqual(printed.splitlines(), ["ToUpper takes text", str(len(rows()))])

    def test_fifty_exports_answer(self):
        printed = self.node("const library = require('./wfinfo').load('WFINFO.dll');\nrequire('./wfinfo').reportErrorsTo(library, () => {});\n"
                            + "".join(f"console.log(JSON.stringify(library.{call}, (_, value) => typeof value === 'bigint' ? Number(value) : value));\n"
                                      for call, _ in FIFTY))
        self.assertEqual(printed.splitlines(), [answer for _, answer in FIFTY])
        self.assertEqual(len({call.split("(")[0] for call, _ in FIFTY}), 50)


class Recorder:
    """Stands in for the library: keeps what it is called with, and answers a text."""

    def __init__(self, path):
        self.path, self.calls = path, []

    def __getattr__(self, name):
        def function(*slots):
            self.calls.append((name, [ctypes.string_at(slot.value) if isinstance(slot, ctypes.c_void_p) and slot.value else slot.value
                                      for slot in slots]))
            self.answer = ctypes.create_string_buffer("漢字".encode("cp932") + b"\x1a\x95\xa6\x8c")
            return ctypes.addressof(self.answer) if function.restype is ctypes.c_void_p else 7
        return function


class Python(unittest.TestCase):
    def setUp(self):
        found = importlib.util.spec_from_file_location("wfinfo", BINDINGS / "python/wfinfo.py")
        self.module = importlib.util.module_from_spec(found)
        found.loader.exec_module(self.module)
        self.module.ctypes.WinDLL = Recorder
        self.addCleanup(delattr, ctypes, "WinDLL")
        self.library = self.module.Wfinfo("x.dll")

    def test_each_unit_comes_back(self):
        for unit in range(1, 0x10000):
            text = f"a{chr(unit)}b"
            host_text = self.module.to_host(text)
            units = self.module.from_host(host_text) if not 0xD800 <= unit <= 0xDFFF else text  # halves of a pair stand for nothing
            self.assertEqual(units, text, f"U+{unit:04X} {host_text.hex()}")
        self.assertEqual(self.module.from_host(self.module.to_host("x😀y")), "x😀y")

    @unittest.skipIf(os.name == "nt", "here is a Python for Windows")
    def test_a_python_that_is_not_for_windows_is_told_what_it_lacks(self):
        with unittest.mock.patch.object(ctypes, "WinDLL"):
            del ctypes.WinDLL
            with self.assertRaisesRegex(OSError, "it needs Python for Windows"):
                self.module.Wfinfo("WFINFO.dll")

    def test_escapes_are_those_of_the_library(self):
        for text, expected, why in (("\x1a", "1a9a8084", "the mark itself"), ("☕", "1a95a68c", "full width"), ("é", "1ae98085", "bit 7, narrow"),
                                    ("¥", "1aa58085", "no look-alike"), ("漢", "8abf", "in the code page")):
            self.assertEqual(self.module.to_host(text).hex(), expected, why)

    def test_parameters_and_results_go_as_the_header_says(self):
        self.assertEqual(self.library.RootHeader("件名"), "漢字\u2615")
        self.assertEqual(self.library._library.calls[-1], ("RootHeader", ["件名".encode("cp932")]))
        self.library.QuoteWidth("a", 60)
        self.assertEqual(self.library._library.calls[-1], ("QuoteWidth", [b"a", 60]))
        self.library.ExecAt(None, "Beep", 1)
        name, slots = self.library._library.calls[-1]
        self.assertEqual((name, slots[0], slots[-1]), ("ExecAt", None, 1))
        self.assertEqual(self.library.MailCount(), 7)

    def test_each_row_has_as_many_parameters_as_the_library(self):
        import inspect
        for row in rows():
            taken = inspect.signature(getattr(self.library, row["name"])).parameters
            self.assertEqual(len(taken), len(row["parameters"]), row["name"])


if __name__ == "__main__":
    unittest.main()
