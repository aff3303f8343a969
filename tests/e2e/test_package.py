"""What people install: the archive as it is packed, its checker with planted faults, and what links with it."""
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

import host

sys.path.insert(0, str(host.SOURCE / "tools"))
import check_package  # noqa: E402
import make_kit  # noqa: E402
import make_package  # noqa: E402
import make_site  # noqa: E402

TOP = make_package.TOP
COMPILER = "x86_64-w64-mingw32-gcc"
PROGRAM = """#include <stdio.h>

#include "wfinfo.h"

int main(void) {
  printf("interface %d, %s\\n", GetWFInfoVersion(NULL), ToUpper("made with " WFINFO_VERSION));
  return 0;
}
"""
WITHOUT_A_LIBRARY = """#include "wfinfo.h"
__declspec(dllimport) void ExitProcess(unsigned);
void Begin(void) { ExitProcess(GetWFInfoVersion((void*)0)); }
"""


def archive_of(packed, folder):
    archive = pathlib.Path(folder, f"{TOP}.zip")
    make_kit.pack(archive, {f"{TOP}/{name}": content for name, content in packed.items()})
    return archive


def summed(packed):
    """The same with sums that are right again."""
    rest = {name: content for name, content in packed.items() if name != "SHA256SUMS"}
    sums = "".join(f"{hashlib.sha256(content).hexdigest()}  {name}\n" for name, content in sorted(rest.items()))
    return rest | {"SHA256SUMS": sums.encode()}


def setUpModule():
    if not make_site.can_build():
        raise unittest.SkipTest("MkDocs, which builds the pages of the package, is not installed")
    make_kit.pack()
    folder = pathlib.Path(tempfile.mkdtemp(prefix="package-"))
    unittest.addModuleCleanup(shutil.rmtree, folder)
    PackageTest.packed = make_package.contents()
    PackageTest.archive = archive_of(PackageTest.packed, folder)
    with zipfile.ZipFile(PackageTest.archive) as packed:
        packed.extractall(folder)
    PackageTest.top = folder / TOP


class PackageTest(unittest.TestCase):
    """With the archive, as it is packed and as it is unpacked; none of them changes it."""

    maxDiff = None

    def unpacked(self, packed, folder):
        """A folder with what was packed, as linked copies but for what differs: packing takes seconds each time."""
        top = pathlib.Path(folder, TOP)
        shutil.copytree(self.top, top, copy_function=os.link)
        for name, content in packed.items():
            if self.packed.get(name) != content:
                (top / name).unlink(missing_ok=True)
                (top / name).write_bytes(content)
        return top


class Contents(PackageTest):
    def test_the_archive_has_no_fault(self):
        self.assertEqual(check_package.faults(self.archive), [])

    def test_each_kind_of_fault_would_be_told(self):
        library = self.packed["library/WFINFO.dll"]
        definition = self.packed["development/WFINFO.def"]
        page, examples = self.packed["docs/mail-files.html"], self.packed["examples/README.md"]
        for plants, told in (
                ({"LICENSE.txt": b"x"}, "LICENSE.txt: not what SHA256SUMS says"),
                ({"more.txt": b"x"}, "more.txt: only packed"),
                ({"library/WFINFO.dll": library.replace(b"USER32.dll\0", b"OTHERS.dll\0")}, "library/WFINFO.dll: needs others.dll"),
                ({"development/WFINFO.def": definition.replace(b" RootHeader\n", b"\n")}, "RootHeader: not in WFINFO.def"),
                ({"reference.md": self.packed["reference.md"].replace(b"### `RootHeader`\n", b"")}, "RootHeader: not in reference.md"),
                ({"examples/README.md": examples + b"\n[x](gone.md)\n"}, "examples/README.md: gone.md leads nowhere"),
                ({"examples/README.md": examples + b"\n[x](../docs/mail-files.html#gone)\n"},
                 "examples/README.md: ../docs/mail-files.html#gone has no such heading"),
                ({"docs/mail-files.html": page + b'<a href="gone.html">'}, "docs/mail-files.html: gone.html leads nowhere"),
                ({"samples/x.txt": b"docs/small-host.md\n"}, "samples/x.txt: names docs/small-host.md, which is not packed"),
                ({"samples/x.txt": f"{host.SOURCE}/x".encode()}, f"samples/x.txt: holds the path {host.SOURCE}"),
                ({"samples/x.txt": f"{host.SOURCE}/x".encode("utf-16-le")}, f"samples/x.txt: holds the path {host.SOURCE}"),
                ({"CHANGELOG.md": b"# What changed\n"}, "CHANGELOG.md: does not speak of version")):
            with self.subTest(told), tempfile.TemporaryDirectory() as folder:
                self.assertNotEqual({**self.packed, **plants}, self.packed, "nothing was planted")
                packed = {**self.packed, **plants}
                if "SHA256SUMS" not in told and "only packed" not in told:
                    packed = summed(packed)
                found = check_package.faults_of_folder(self.unpacked(packed, folder))
                self.assertEqual([fault for fault in found if fault.startswith(told)], found[:1], found)

    def test_a_program_that_is_not_hardened_would_be_told(self):
        with tempfile.TemporaryDirectory() as folder:
            source, program = pathlib.Path(folder, "a.c"), pathlib.Path(folder, "a.exe")
            source.write_text("int main(void) { return 0; }\n")
            subprocess.run([COMPILER, "-g", "-Wl,--disable-dynamicbase,--disable-nxcompat", source, "-o", program], check=True)
            found = check_package.faults_of_folder(self.unpacked(summed({**self.packed, "samples/a.exe": program.read_bytes()}), folder))
        for told in ("HIGH_ENTROPY_VA is missing", "DYNAMIC_BASE is missing", "NX_COMPAT is missing", "carries .debug_info"):
            self.assertIn(f"samples/a.exe: {told}", found)

    def test_the_first_page_tells_of_each_file(self):
        page = self.packed["README.md"].decode()
        named = {name for cell in re.findall(r"^\| ([^|]+) \|", page, re.M) for name in re.findall(r"`([^`]+)`", cell)}
        others = {"README.md", "CHANGELOG.md", "SECURITY.md"}
        self.assertEqual({name.split("/")[0] for name in self.packed} - others, {name.rstrip("/") for name in named})

    def test_the_bill_of_materials_names_what_the_notices_name(self):
        notices = self.packed["THIRD-PARTY-NOTICES.txt"].decode()
        bill = make_package.json.loads(self.packed["sbom.cdx.json"])
        parts = {part["name"]: part["version"] for part in bill["components"]}
        for name, number, licence, _, _ in make_package.linked():
            self.assertEqual(parts[name], number)
            self.assertIn(f"- {name} {number}: {licence}", notices)
        known = {part["bom-ref"] for part in bill["components"]} | {bill["metadata"]["component"]["bom-ref"]}
        self.assertEqual({ref for need in bill["dependencies"] for ref in [need["ref"], *need["dependsOn"]]}, known)


class Linking(PackageTest):
    """Programs that are built with what the archive holds; its first page, step by step: test_from_the_zip.py."""

    def wine(self, name, folder):
        finished = subprocess.run([*([] if os.name == "nt" else ["wine"]), name], cwd=folder, stdin=subprocess.DEVNULL,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=host.TIMEOUT_SECONDS)
        return finished.stdout.decode().replace("\r\n", "\n"), finished.returncode

    def test_a_program_in_c_knows_the_version_and_needs_no_header_of_windows(self):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copy(self.top / "library/WFINFO.dll", folder)
            pathlib.Path(folder, "program.c").write_text(PROGRAM)
            subprocess.run([COMPILER, "program.c", f"-I{self.top}/development", self.top / "development/libWFINFO.dll.a", "-o", "program.exe"],
                           cwd=folder, check=True)
            self.assertEqual(self.wine("program.exe", folder), (f"interface 18, MADE WITH {make_package.version()}\n", 0))

    @unittest.skipUnless(shutil.which("lld-link-14"), "LLVM's linker for Windows is not installed")
    def test_the_import_library_for_microsofts_linker_links(self):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copy(self.top / "library/WFINFO.dll", folder)
            pathlib.Path(folder, "begin.c").write_text(WITHOUT_A_LIBRARY)
            subprocess.run([COMPILER, "-c", "begin.c", f"-I{self.top}/development", "-fno-asynchronous-unwind-tables"], cwd=folder, check=True)
            kernel = subprocess.run([COMPILER, "-print-file-name=libkernel32.a"], capture_output=True, text=True, check=True).stdout.strip()
            subprocess.run(["lld-link-14", "/entry:Begin", "/subsystem:console", "/nodefaultlib", "/out:begin.exe", "begin.o",
                            f"{self.top}/development/WFINFO.lib", kernel], cwd=folder, check=True)
            self.assertEqual(self.wine("begin.exe", folder)[1], 18)


def linked_or_copied(source, target):
    """A link to what is read alone; import libraries and the linker's map are written with their library."""
    if not str(source).endswith((".dll.a", ".map")):
        try:
            return os.link(source, target)
        except OSError:
            pass
    return shutil.copy(source, target)


class AnotherFolder(PackageTest):
    """The archive does not depend on folder and time: programs are compiled in part, linked, and packed once more in a folder of
    another name. `./dev package --twice` builds all of it there."""

    COMPILED = ("src/dates/date_parse.cpp", "src/dates/dates_export.cpp", "src/bridge/results_win.cpp", "resources/wfinfo.rc",
                "host/main_win.cpp", "tests/doubles/net/wininet.c")
    LINKED = ("libwfinfo_pure.a", "WFINFO.dll", "wrenfold.exe", "WININET.dll", "net_doubles_tests.exe")
    BUILD = pathlib.Path("build/windows")

    def setUp(self):
        folder = pathlib.Path(tempfile.mkdtemp(prefix="another-"))
        self.addCleanup(shutil.rmtree, folder)
        self.there = folder / "a-folder-of-another-name"
        tops = {".git", "build", "out"}
        shutil.copytree(host.SOURCE, self.there, symlinks=True,
                        ignore=lambda at, names: tops & set(names) if pathlib.Path(at) == host.SOURCE else [])
        shutil.copytree(make_package.OUT, self.there / "out", ignore=shutil.ignore_patterns("site", "drafts", "tour", "*.zip"))
        shutil.copytree(host.SOURCE / self.BUILD, self.there / self.BUILD, copy_function=linked_or_copied, symlinks=True,
                        ignore=shutil.ignore_patterns("googletest", "Testing"))
        os.symlink(host.SOURCE / "build/libraries", self.there / "build/libraries")

    def commands(self):
        """Of the build, those for COMPILED and LINKED, as they would be there."""
        printed = subprocess.run(["ninja", "-t", "commands", f"{make_package.OUT}/host/wrenfold.exe", "wininet_double", "net_doubles_tests.exe"],
                                 cwd=host.SOURCE / self.BUILD, capture_output=True, text=True, check=True).stdout
        for line in printed.splitlines():
            made = re.findall(r" (?:-o|qc) (\S+)", line) or re.findall(r"windres.* (\S+)$", line)
            if not made:
                continue
            if any(f"{host.SOURCE}/{name}" in line.split() for name in self.COMPILED) or pathlib.Path(made[0]).name in self.LINKED:
                yield made[0].replace(str(host.SOURCE), str(self.there)), line.replace(str(host.SOURCE), str(self.there))

    def test_the_same_archive_is_made_there(self):
        made = []
        for target, line in self.commands():
            # It may be a link to the file that was built here.
            (self.there / self.BUILD / target).unlink()
            subprocess.run(line, shell=True, cwd=self.there / self.BUILD, check=True, env={**os.environ, "CCACHE_DISABLE": "1"})
            made.append(pathlib.Path(target).name)
        self.assertEqual(len(made), len(self.COMPILED) + len(self.LINKED), made)
        subprocess.run([sys.executable, "tools/make_kit.py"], cwd=self.there, check=True, env=self.surroundings())
        subprocess.run([sys.executable, "tools/make_package.py"], cwd=self.there, check=True, env=self.surroundings())
        archive = self.there / "out" / self.archive.name
        with zipfile.ZipFile(archive) as packed:
            other = {name.removeprefix(f"{TOP}/"): packed.read(name) for name in packed.namelist()}
        self.assertEqual([name for name in sorted(other.keys() | self.packed.keys()) if other.get(name) != self.packed.get(name)], [])
        self.assertEqual(hashlib.sha256(archive.read_bytes()).hexdigest(), hashlib.sha256(self.archive.read_bytes()).hexdigest())

    def surroundings(self):
        """Git answers there as it does here, and writes nothing."""
        rest = {name: value for name, value in os.environ.items() if not name.startswith("WFINFO_")}
        found = subprocess.run(["git", "rev-parse", "--absolute-git-dir"], cwd=host.SOURCE, capture_output=True, text=True)
        of_git = {"GIT_DIR": found.stdout.strip(), "GIT_WORK_TREE": str(self.there), "GIT_OPTIONAL_LOCKS": "0"} if found.returncode == 0 else {}
        return {**rest, **of_git, "PYTHONDONTWRITEBYTECODE": "1"}


if __name__ == "__main__":
    unittest.main()
