"""The repository checks itself: what a file name promises, and what must never be committed."""
import os
import pathlib
import re
import subprocess
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))


def files(*patterns):
    return sorted(path for pattern in patterns for path in SOURCE.glob(pattern))


def is_pure(path):
    return not re.search(r"_(win|export)\.(cpp|h)$", path.name)


class Repository(unittest.TestCase):
    def lines_with(self, paths, pattern):
        found = []
        for path in paths:
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                if re.search(pattern, line):
                    found.append(f"{path.relative_to(SOURCE)}:{number}: {line.strip()}")
        return found

    def test_pure_files_know_no_windows(self):
        pure = [path for path in files("src/**/*.cpp", "src/**/*.h", "host/**/*.cpp", "host/**/*.h") if is_pure(path)]
        pure = [path for path in pure if path.name not in ("declarations.h", "row_macros.h")]
        self.assertGreater(len(pure), 5)
        self.assertEqual(self.lines_with(pure, r"windows\.h|\bHWND\b|\bGetLastError\b"), [])

    def test_pure_files_take_the_standard_library_and_nothing_beside_it(self):
        # Its headers have no ending. What else there is: vector instructions, a library in two files of the host, and what
        # stands in for Windows in the native tests.
        known = {"emmintrin.h", "immintrin.h", "cpuid.h"}
        libraries = {"host/mime/html_text.cpp": {"gumbo.h"}, "host/charset/code_pages_native.cpp": {"iconv.h"},
                     "host/files/file_hold_native.cpp": {"fcntl.h", "sys/file.h", "unistd.h"},
                     "host/files/renaming_native.cpp": {"fcntl.h"}}
        found = {}
        for path in files("src/**/*.cpp", "src/**/*.h", "host/**/*.cpp", "host/**/*.h"):
            name = path.relative_to(SOURCE).as_posix()
            taken = set(re.findall(r"^#include <(\w+[./][^>]*)>", path.read_text(encoding="utf-8"), re.M)) - known
            if is_pure(path) and taken and name != "src/catalogue/declarations.h":
                found[name] = taken
        self.assertEqual(found, libraries)

    def test_pure_sources_of_the_library_hold_ascii_only(self):
        pure = [path for path in files("src/**/*.cpp", "src/**/*.h") if is_pure(path)]
        found = []
        for path in pure:
            for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
                code = line.split("//")[0]
                if not code.isascii():
                    found.append(f"{path.relative_to(SOURCE)}:{number}: {line.strip()}")
        self.assertEqual(found, [])

    def test_the_library_uses_no_streams(self):
        sources = files("src/**/*.cpp", "src/**/*.h")
        self.assertEqual(self.lines_with(sources, r"#include <(iostream|fstream|sstream|chrono|format|regex)>"), [])

    def test_exports_hold_no_exceptions(self):
        # Every definition is noexcept: the prototypes from the catalogue are, so the compiler sees to it. What is
        # left to check is that nobody throws or catches.
        self.assertEqual(self.lines_with(files("src/**/*.cpp", "src/**/*.h"), r"\b(throw|catch)\s*[ (]"), [])

    def test_what_is_compiled_for_avx_stands_in_files_of_that_name(self):
        # The build moves their vectors unaligned, and they are reached only when the processor was asked.
        others = [path for path in files("src/**/*.cpp", "src/**/*.h")
                  if not path.name.endswith(("_avx2.cpp", "_avx512.cpp")) and path.name != "simd.h"]
        self.assertEqual(self.lines_with(others, r"_mm(256|512)_|__m(256|512)|target\(|WFINFO_BEGIN_AVX"), [])
        # The compiler's own test of the processor needs a constructor at every load.
        self.assertEqual(self.lines_with(files("src/**/*.cpp", "src/**/*.h"), r"__builtin_cpu_"), [])

    def test_every_family_is_in_the_list(self):
        listed = (SOURCE / "catalogue/all.def").read_text(encoding="utf-8")
        for path in files("catalogue/*.def"):
            if path.name != "all.def":
                self.assertIn(f'#include "catalogue/{path.name}"', listed)

    def test_the_project_the_library_and_the_small_host_have_one_version(self):
        def read(name, pattern):
            found = re.findall(pattern, (SOURCE / name).read_text(encoding="utf-8"), re.M)
            self.assertTrue(found, f"{name}: {pattern}")
            return found
        version = read("CMakeLists.txt", r"^project\(WFINFO VERSION ([\d.]+)")[0]
        self.assertEqual(read("host/base/version.h", r'kHostVersion\[\] = "([\d.]+)"'), [version])
        major, minor, _ = map(int, version.split("."))
        self.assertEqual(read("host/base/version.h", r"kHostVersionNumber = (\d+);"), [str(100 * major + minor)])
        # The resource's fourth number is that of the interface.
        numbers = read("resources/wfinfo.rc", r"VERSION ([\d,]+),\d+$") + read("resources/wfinfo.rc", r'Version", "([\d.]+)\.\d+"')
        self.assertEqual([number.replace(",", ".") for number in numbers], [version] * 4)

    def test_every_text_that_may_be_null_stands_in_the_page(self):
        rows = re.findall(r"^HAND\w*\(OptStr, (\w+)", "\n".join(
            path.read_text(encoding="utf-8") for path in files("catalogue/*.def")), re.M)
        self.assertGreater(len(rows), 10)
        page = (SOURCE / "docs/text-results.md").read_text(encoding="utf-8")
        table = page.split("| Exports | Null when |")[1].split("\n\n")[0]
        self.assertEqual(sorted(rows), sorted(re.findall(r"`(\w+)`(?=[^|\n]*\|)", "\n".join(
            line.split("|")[1] + "|" for line in table.splitlines()[2:]))))

    def test_every_python_test_that_is_run_runs_its_tests(self):
        # Without this end the file defines tests, runs none of them, and passes.
        tests = files("tests/**/test_*.py")
        self.assertGreater(len(tests), 15)
        end = re.compile(r'^if __name__ == "__main__":\n    unittest\.main\(\)\n\Z', re.M)
        self.assertEqual([str(path.relative_to(SOURCE)) for path in tests if not end.search(path.read_text(encoding="utf-8"))], [])

    def test_nothing_that_a_fuzzer_left_is_committed(self):
        tracked = subprocess.run(["git", "ls-files"], cwd=SOURCE, capture_output=True, text=True)
        if tracked.returncode != 0:
            self.skipTest("not a git checkout")
        left = re.compile(r"(crash|leak|oom|slow-unit|timeout)-[0-9a-f]{40}$")
        self.assertEqual([name for name in tracked.stdout.splitlines() if left.search(name)], [])

    def test_nothing_names_a_path_of_one_machine(self):
        tracked = subprocess.run(["git", "ls-files"], cwd=SOURCE, capture_output=True, text=True)
        if tracked.returncode != 0:
            self.skipTest("not a git checkout")  # a source archive has nothing to check here
        pattern = re.compile("/" + "(work|farm|root|home/[a-z]+)/")
        found = []
        for name in tracked.stdout.split():
            path = SOURCE / name
            if path.suffix in (".cpp", ".h", ".py", ".md", ".cmake", ".sh", ".def", ".json", ".txt") and path.exists():
                for number, line in enumerate(path.read_text(encoding="utf-8", errors="replace").splitlines(), 1):
                    if pattern.search(line):
                        found.append(f"{name}:{number}: {line.strip()}")
        self.assertEqual(found, [])


if __name__ == "__main__":
    unittest.main()
