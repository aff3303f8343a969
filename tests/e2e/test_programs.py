"""The programs of samples/program and samples/host: built by the lines in their heads, run, and shown on the pages as they are."""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

import host
from test_bindings import BINDINGS, NODE, OUT
from test_mapi import BUILD

PROGRAMS = host.SOURCE / "samples/program"
HOSTS = host.SOURCE / "samples/host"
MISSING = "WFINFO.DLL: String parameter missing or numeric parameter specified that should be string."
ON_EDITOR = ("WFINFO.DLL: A WFINFO.dll function called on editor window but it cannot be executable on editor.\n"
             "function code = 30")
PAGES = {"from-your-program.md": PROGRAMS, "write-a-host.md": HOSTS, "simple-mapi.md": host.SOURCE / "samples/mapi"}
USED = ["kept without a copy: Bob", "copied: Alice <alice@example.com>; Bob <bob@example.com>",
        "through host text: CAFé 漢字", "UTF-8 as it is: E6 BC", "a number: abc", "a text: abc",
        "its result is one too: the same", "wrong names in two threads: 0", "mails: 0", 'without a text: ""']
CONVERTED = "12 bytes of host text: café 漢字"


def build_line(path):
    """The first line of the program's head that calls mingw's compiler."""
    return re.search(r"^\W*(x86_64-w64-mingw32-.*)$", path.read_text(encoding="utf-8"), re.M)[1].split()


class Program(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="programs-"))
        self.addCleanup(shutil.rmtree, self.folder)
        for path in (OUT / "WFINFO.dll", OUT / "wfinfo.h", OUT / "libWFINFO.dll.a", BINDINGS / "cpp/wfinfo.hpp", *PROGRAMS.iterdir()):
            shutil.copy(path, self.folder)

    def build(self, path):
        shutil.copy(path, self.folder)
        subprocess.run([*build_line(path), "-Wall", "-Wextra", "-Werror"], cwd=self.folder, check=True)
        return self.folder / path.with_suffix(".exe").name

    def run_program(self, program, *words):
        """Its lines and those of its standard error. To files: what Wine leaves behind may keep a pipe open."""
        with open(self.folder / "out.txt", "wb") as out, open(self.folder / "err.txt", "wb") as err:
            subprocess.run([*host.command(program), *words], cwd=self.folder, stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                           timeout=host.TIMEOUT_SECONDS, check=True)
        return [(self.folder / name).read_text(encoding="utf-8").splitlines() for name in ("out.txt", "err.txt")]


class InC(Program):
    def test_the_library_is_used(self):
        self.assertEqual(self.run_program(self.build(PROGRAMS / "use.c")), [["interface 18, in a host: 0", *USED], [MISSING]])

    def test_a_host_in_another_process_is_no_host_for_the_program(self):
        program = self.build(PROGRAMS / "use.c")
        with subprocess.Popen([*host.command(), "--serve", "--home", "."], cwd=self.folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as server:
            self.addCleanup(server.kill)
            self.wait_for_host()
            found = self.run_program(program)
            self.assertEqual(host.run("--stop").code, 0)
        self.assertEqual(found, [["interface 18, in a host: 0", *USED], [*ON_EDITOR.splitlines(), MISSING]])

    def wait_for_host(self):
        client = BUILD / "doubles/mapi_client.exe"
        end = time.monotonic() + 30
        while subprocess.run([*host.command(client), "frame"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL).returncode != 0:
            self.assertLess(time.monotonic(), end, "no host")
            time.sleep(0.1)

    def test_the_library_is_loaded_and_freed(self):
        self.assertEqual(self.run_program(self.build(PROGRAMS / "load.c")), [["Alice", "loaded: 0"], []])

    def test_every_character_comes_back(self):
        # Each UTF-16 unit but halves of pairs, which UTF-8 does not have alone.
        test = self.folder / "all.c"
        test.write_text("""#include <stdio.h>
#include "host_text.h"
/* x86_64-w64-mingw32-gcc all.c -o all.exe */
int main(void) {
  for (int unit = 1; unit < 0x10000; ++unit) {
    const wchar_t wide[] = {L'a', (wchar_t)unit, L'b', 0};
    char utf8[16];
    if (unit >= 0xD800 && unit <= 0xDFFF) continue;
    WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8, 16, NULL, NULL);
    char* const host = ToHostText(utf8);
    char* const back = FromHostText(host);
    if (strcmp(back, utf8) != 0) printf("%04X\\n", unit);
    free(host), free(back);
  }
  char* const host = ToHostText("\\x1A\\xC3\\xA9\\xC2\\xA5\\xE6\\xBC\\xA2\\xF0\\x9F\\x98\\x80");
  for (const char* at = host; *at != 0; ++at) printf("%02x", (unsigned char)*at);
  return 0;
}
""", encoding="utf-8")
        subprocess.run(["x86_64-w64-mingw32-gcc", "all.c", "-o", "all.exe"], cwd=self.folder, check=True)
        self.assertEqual(self.run_program(self.folder / "all.exe")[0], ["1a9a8084" "1ae98085" "1aa58085" "8abf" "1abdd886" "1a80de86"])

    def test_the_header_stands_beside_the_systems_mapi(self):
        (self.folder / "x.c").write_text("#include <windows.h>\n#include <mapi.h>\n#define WFINFO_NO_MAPI\n#include \"wfinfo.h\"\nint main(void) { return 0; }\n")
        subprocess.run(["x86_64-w64-mingw32-gcc", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", "x.c"], cwd=self.folder, check=True)


class InOtherLanguages(Program):
    def test_cpp_converts(self):
        self.assertEqual(self.run_program(self.build(PROGRAMS / "convert.cpp")), [[CONVERTED], []])

    @unittest.skipUnless((NODE / "bin/node.exe").exists(), "Node for Windows could not be fetched")
    def test_javascript_converts(self):
        shutil.copy(BINDINGS / "javascript/wfinfo.js", self.folder)
        (self.folder / "node_modules").symlink_to(NODE / "node_modules")
        subprocess.run(["wine", "winecfg", "-v", "win10"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                       check=True, timeout=host.TIMEOUT_SECONDS)
        self.assertEqual(self.run_program(NODE / "bin/node.exe", "convert.js"), [[CONVERTED], []])

    def test_python_converts(self):
        shutil.copy(BINDINGS / "python/wfinfo.py", self.folder)
        printed = subprocess.run([sys.executable, "convert.py"], cwd=self.folder, capture_output=True, check=True,
                                 env={"PYTHONIOENCODING": "utf-8", "PYTHONDONTWRITEBYTECODE": "1"}).stdout
        self.assertEqual(printed.decode(), CONVERTED + "\n")

    @unittest.skipUnless(shutil.which("mcs"), "Mono's compiler is not installed")
    def test_csharp_compiles(self):
        shutil.copy(BINDINGS / "csharp/Wfinfo.cs", self.folder)
        subprocess.run(["mcs", "-langversion:5", "-warnaserror", "-platform:x64", "Convert.cs", "Wfinfo.cs"], cwd=self.folder, check=True)

    @unittest.skipUnless(shutil.which("mcs"), "Mono's compiler is not installed")
    def test_the_types_of_the_powershell_sample_compile(self):
        script = (host.SOURCE / "samples/mapi/Send-Mail.ps1").read_text(encoding="utf-8")
        (self.folder / "x.cs").write_text(re.search(r"@'\n(.*?)\n'@", script, re.S)[1])
        subprocess.run(["mcs", "-langversion:5", "-warnaserror", "-target:library", "x.cs"], cwd=self.folder, check=True)


class MinimalHost(Program):
    def test_it_prints_what_its_page_says(self):
        page = (host.SOURCE / "docs/write-a-host.md").read_text(encoding="utf-8")
        wanted = re.search(r"## What it prints\n\n```\n(.*?)```", page, re.S)[1].splitlines()
        self.assertEqual(self.run_program(self.build(HOSTS / "minimal_host.c")), [wanted, []])

    def test_it_needs_windows_and_the_header_alone_and_is_short(self):
        source = (HOSTS / "minimal_host.c").read_text(encoding="utf-8")
        self.assertEqual(re.findall(r"#include (\S+)", source), ["<windows.h>", '"wfinfo.h"'])
        self.assertLessEqual(source.count("\n"), 150)


class Pages(unittest.TestCase):
    def test_their_code_is_that_of_the_samples(self):
        for name, folder in PAGES.items():
            page = (host.SOURCE / "docs" / name).read_text(encoding="utf-8")
            blocks = re.findall(r"^```(?:c|cpp|javascript|python|csharp)\n(.*?)^```$", page, flags=re.M | re.S)
            self.assertNotEqual(blocks, [], name)
            sources = [path.read_text(encoding="utf-8") for path in folder.iterdir()]
            for block in blocks:
                self.assertTrue(any("\n" + block in source for source in sources), f"{name}: in no sample:\n{block}")

    def test_their_build_lines_are_those_of_the_samples(self):
        for name in ("from-your-program.md", "write-a-host.md"):
            page = (host.SOURCE / "docs" / name).read_text(encoding="utf-8")
            lines = [line.strip(" `") for line in re.findall(r"x86_64-w64-mingw32-[^`\n]*", page)]
            built = [" ".join(build_line(path)) for path in (*PROGRAMS.glob("*.c"), *PROGRAMS.glob("*.cpp"), *HOSTS.glob("*.c"))]
            self.assertNotEqual(lines, [])
            self.assertEqual([line for line in lines if line not in built], [])


if __name__ == "__main__":
    unittest.main()
