"""The Windows test kit: what is packed, and its runner under Wine with planted tests beside the real ones."""
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

import host

sys.path.insert(0, str(host.SOURCE / "tools"))
import make_kit  # noqa: E402

PLANTED = make_kit.BUILD / "kit/kit_planted.exe"
PLANTED_SECONDS = 4
SETTINGS = "HKCU\\Software\\Quenby\\Wrenfold\\Config"
# Some of each kind.
REAL = "dll.Strings*:dll.Quoting.*:pgp.*Command*:smime.SmimeEngine.Each*:services_macros.html:examples.strings:learning.3*:system.*Script*:e2e.test_kit"


def wine(*words, **more):
    return subprocess.run([*(["wine"] if os.name != "nt" else []), *map(str, words)], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=200, **more)


def settings():
    """What the registry holds of ours, as reg.exe prints it."""
    return wine("reg", "query", "HKCU\\Software\\Quenby", "/s").stdout


def temp_folder():
    return pathlib.Path(subprocess.run(["winepath", "-u", wine("cmd", "/c", "echo %TEMP%").stdout.decode().strip()],
                                       stdout=subprocess.PIPE, check=True).stdout.decode().strip())


class Contents(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.packed = make_kit.contents()

    def test_no_path_of_the_building_machine_is_inside(self):
        folders = {str(host.SOURCE), str(pathlib.Path.home()), os.path.realpath(host.SOURCE)} - {"/"}
        for name, content in self.packed.items():
            for folder in folders:
                with self.subTest(name, folder=folder):
                    self.assertNotIn(f"{folder}/".encode(), content)
                    self.assertNotIn(f"{folder}/".encode("utf-16-le"), content)

    def test_a_path_in_a_program_would_be_found_and_taken_out(self):
        with tempfile.TemporaryDirectory() as folder:
            source, program = pathlib.Path(folder, "a.c"), pathlib.Path(folder, "a.exe")
            source.write_text(f'#include <stdio.h>\nint main(void) {{ return puts("{host.SOURCE}/tests/a.c") < 0; }}\n')
            subprocess.run(["x86_64-w64-mingw32-gcc", str(source), "-o", str(program)], check=True)
            self.assertIn(f"{host.SOURCE}/".encode(), program.read_bytes())
            content = make_kit.stripped(program)
            self.assertNotIn(f"{host.SOURCE}/".encode(), content)
            program.write_bytes(content)
            self.assertEqual(wine(program).stdout.decode().strip().lstrip("./"), "tests/a.c")

    def test_the_same_files_give_the_same_archive(self):
        few = {name: content for name, content in self.packed.items() if len(content) < 100000}
        with tempfile.TemporaryDirectory() as folder:
            one, two = pathlib.Path(folder, "one.zip"), pathlib.Path(folder, "two.zip")
            make_kit.pack(one, few)
            time.sleep(2.1)  # the archive's clock has steps of two seconds
            make_kit.pack(two, dict(reversed(few.items())))
            self.assertEqual(one.read_bytes(), two.read_bytes())

    def test_the_page_lists_what_is_inside(self):
        page = (host.SOURCE / "docs/test-kit.md").read_text(encoding="utf-8")
        listed = re.findall(r"^\| `([^`]+)` \|", page.partition("## What is in the kit")[2].partition("\n## ")[0], re.M)
        def line_of(name):
            return [line for line in listed if name == line or (line.endswith("/") and name.startswith(line))]
        self.assertEqual([name for name in self.packed if not line_of(name)], [])
        self.assertEqual([line for line in listed if not any(line in line_of(name) for name in self.packed)], [])

    def test_each_python_test_is_told_as_not_run(self):
        plan = json.loads(self.packed["kit.json"])
        absent = {entry["name"] for entry in plan["absent"]}
        self.assertLessEqual({f"e2e.{path.stem}" for path in (host.SOURCE / "tests/e2e").glob("test_*.py")}, absent)
        runs = {run["name"] for run in plan["macros"]}
        examples = {f"examples.{path.stem}" for path in (host.SOURCE / "examples").glob("*.macro")}
        self.assertEqual(examples - runs - absent, set())
        self.assertTrue(all(entry["reason"] for entry in plan["absent"] + plan["left_out"]))


class Runs(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.base = pathlib.Path(tempfile.mkdtemp(prefix="kit-"))
        cls.addClassCleanup(shutil.rmtree, cls.base, ignore_errors=True)
        cls.folder = cls.base / ("テスト キット" if host.takes_any_path() else "test kit")
        make_kit.pack(cls.base / "kit.zip")
        with zipfile.ZipFile(cls.base / "kit.zip") as archive:
            archive.extractall(cls.folder)
        shutil.copy(PLANTED, cls.folder / "programs")
        plan = json.loads((cls.folder / "kit.json").read_text(encoding="utf-8"))
        plan["suites"].append({"name": "planted", "program": "programs/kit_planted.exe", "folder": "programs",
                               "desktop": False, "seconds": PLANTED_SECONDS})
        plan["suites"].append({"name": "gone", "program": "programs/gone.exe", "folder": "programs"})
        (cls.folder / "kit.json").write_text(json.dumps(plan), encoding="utf-8")
        record = json.loads((cls.folder / "expected.json").read_text(encoding="utf-8"))
        record["tests"]["planted.Planted.Fails"] = {"outcome": "failed", "why": "as it should"}
        (cls.folder / "expected.json").write_text(json.dumps(record), encoding="utf-8")
        cls.temp = temp_folder()

    def setUp(self):
        wine("reg", "add", SETTINGS, "/v", "MapiSendMacro", "/d", "日本.macro" if host.takes_any_path() else "mine.macro", "/f")
        wine("reg", "add", SETTINGS, "/v", "MapiSend", "/t", "REG_DWORD", "/d", "2", "/f")
        self.addCleanup(wine, "reg", "delete", "HKCU\\Software\\Quenby", "/f")
        self.before = settings(), self.left()
        self.assertIn(b"MapiSendMacro", self.before[0])

    def left(self):
        return sorted(path.name for path in self.temp.iterdir() if not path.name.startswith("wfinfo-report"))

    def take_report(self, folder):
        """The report as a tree, and its page; both files go."""
        [told] = folder.glob("wfinfo-report-*.json")
        page = told.with_suffix(".html")
        report, text = json.loads(told.read_text(encoding="utf-8")), page.read_text(encoding="utf-8")
        told.unlink()
        page.unlink()
        report["by_name"] = {test["name"]: test for test in report["tests"]}
        return report, text

    def run_kit(self, *words):
        return wine("cmd", "/c", "run.cmd", *words, cwd=self.folder)

    def assert_as_before(self):
        self.assertEqual((settings(), self.left()), self.before)

    def test_real_tests_pass_from_a_folder_with_any_name_and_nothing_is_left(self):
        result = self.run_kit("--like-wine", "--only", REAL)
        report, page = self.take_report(self.folder)
        failed = [test for test in report["tests"] if test["outcome"] == "failed"]
        self.assertEqual((failed, result.returncode, result.stderr), ([], 0, b""), result.stdout.decode())
        self.assertGreater(report["counts"]["passed"], 20)
        for name in ("services_macros.html", "examples.strings", "learning.3_count_lines", "kit.settings_are_as_before",
                     "kit.own_folder_is_gone"):
            self.assertEqual(report["by_name"][name]["outcome"], "passed", name)
        self.assertIn("Python", report["by_name"]["e2e.test_kit"]["reason"])
        self.assertEqual(report["by_name"]["system.SendMailScript.IsReadAndItsTypesAreCompiledByPowerShell"]["first"], True)
        self.assertLessEqual({"Windows", "code pages", "language", "crypt32.dll"}, set(report["system"]))
        for name in report["by_name"]:
            self.assertIn(name, page)
        self.assert_as_before()

    def test_planted_tests_are_told_as_what_they_are(self):
        result = self.run_kit("--only", "planted.*:gone.*")
        report, page = self.take_report(self.folder)
        self.assertEqual(result.returncode, 1, result.stdout.decode() + result.stderr.decode())
        tests = report["by_name"]
        told = {name.rpartition(".")[2]: (test["outcome"], test.get("reason", "")) for name, test in tests.items()
                if name.startswith("planted")}
        self.assertRegex(told.pop("Fails")[1], r"planted_test\.cpp:\d+: Expected equality")
        self.assertEqual(told, {
            "Passes": ("passed", ""), "Skips": ("skipped", "there is a reason"),
            "Hangs": ("failed", f"hung: ended after {PLANTED_SECONDS} seconds"), "Crashes": ("failed", "crashed: 0xC0000005"),
            "EndsWithoutAWord": ("failed", "ended with 0 and did not say that it passed"), "ChangesTheSettings": ("passed", ""),
            "LeavesAFileInTheTemporaryFolder": ("passed", "")})
        self.assertRegex(tests["gone.(list)"]["reason"], "lists no tests: could not be started: error 2")
        self.assertIn("<b>planted</b> & told in <work>\\programs\\kit_planted.exe", tests["planted.Planted.Fails"]["output"])
        self.assertIn("&lt;b&gt;planted&lt;/b&gt; &amp; told", page)
        self.assertEqual(tests["planted.Planted.Fails"]["wine_reason"], "as it should")
        self.assertIn("failed: as it should", page)
        self.assert_as_before()

    def test_the_exit_code_is_0_when_only_that_failed_what_failed_under_wine(self):
        for words, code in ((["--only", "planted.*.Passes"], 0), (["--only", "planted.*.Fails"], 1),
                            (["--only", "planted.*.Fails", "--like-wine"], 0), (["--only", "no such test"], 2), (["--what"], 2)):
            with self.subTest(words):
                self.assertEqual(self.run_kit(*words).returncode, code)
                if words != ["--what"]:
                    self.take_report(self.folder)

    def test_where_the_kit_cannot_be_written_the_report_goes_to_the_temporary_folder(self):
        medium = self.base / "medium"
        shutil.copytree(self.folder, medium)
        mounted = subprocess.run(["mount", "--bind", "-o", "ro", str(medium), str(medium)], capture_output=True)
        if mounted.returncode == 0:
            self.addCleanup(subprocess.run, ["umount", str(medium)])
        elif os.geteuid() != 0:
            medium.chmod(0o555)
            self.addCleanup(medium.chmod, 0o755)
        else:
            self.skipTest("root writes everywhere, and nothing can be mounted here: " + mounted.stderr.decode().strip())
        result = wine("cmd", "/c", "run.cmd", "--only", "planted.*.Passes", cwd=medium)
        report, _ = self.take_report(self.temp)
        self.assertEqual((result.returncode, report["counts"]["passed"]), (0, 3))
        self.assert_as_before()

    def start_hanging(self):
        """A run that hangs in a test, and has our settings put away."""
        process = subprocess.Popen([*host.command(self.folder / "kit.exe"), "--only", "planted.*.Hangs"], cwd=self.folder,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        end = time.monotonic() + 30
        while not list(self.temp.glob("wfinfo-kit-*/test*.out")):
            self.assertLess(time.monotonic(), end, "the test never began")
            time.sleep(0.1)
        return process

    def test_ctrl_c_ends_it_with_a_report(self):
        process = self.start_hanging()
        process.send_signal(signal.SIGINT)
        self.assertEqual(process.wait(30), 130)
        report, page = self.take_report(self.folder)
        self.assertTrue(report["stopped"])
        self.assertEqual(report["by_name"]["planted.Planted.Hangs"]["reason"], "stopped by Ctrl+C")
        self.assertIn("stopped with Ctrl+C", page)
        self.assert_as_before()

    def test_what_a_killed_run_left_is_put_back_by_the_next(self):
        process = self.start_hanging()
        process.kill()
        process.wait()
        self.assertNotEqual(settings(), self.before[0])
        self.assertEqual(self.run_kit("--only", "planted.*.Passes").returncode, 0)
        report, _ = self.take_report(self.folder)
        self.assertIn("cut off", " ".join(report["notes"]))
        self.assertEqual(settings(), self.before[0])
        for folder in self.temp.glob("wfinfo-kit-*"):
            shutil.rmtree(folder)


if __name__ == "__main__":
    unittest.main()
