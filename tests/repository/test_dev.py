"""./dev explains itself: each command stands in a group of ./dev help, and tells more with --help, without doing anything."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
COMMANDS = re.findall(r"^command_(\w+)\(\)", (SOURCE / "dev").read_text(encoding="utf-8"), re.M)


@unittest.skipIf(os.name == "nt", "./dev is a script of Linux")
class Dev(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # What answers, and nothing that builds, installs or tests.
        cls.programs = tempfile.mkdtemp(prefix="dev-")
        cls.addClassCleanup(shutil.rmtree, cls.programs)
        for name in ("awk", "dirname"):
            os.symlink(shutil.which(name), pathlib.Path(cls.programs, name))

    def dev(self, *words):
        return subprocess.run([shutil.which("bash"), str(SOURCE / "dev"), *words], capture_output=True, text=True, env={"PATH": self.programs})

    def test_each_command_explains_itself_and_does_nothing(self):
        self.assertGreater(len(COMMANDS), 15)
        for command in COMMANDS:
            for option in ("--help", "-h"):
                with self.subTest(f"{command} {option}"):
                    answer = self.dev(command, option)
                    self.assertEqual((answer.returncode, answer.stderr), (0, ""))
                    self.assertRegex(answer.stdout, rf"\A\./dev {command}( .*)?\n  \w")

    def test_help_shows_each_command_in_one_group(self):
        for words in (["help"], ["--help"], []):
            answer = self.dev(*words)
            self.assertEqual((answer.returncode, answer.stderr), (0, ""))
            groups = re.split(r"\n\n(?=[A-Z])", answer.stdout.split("\n\n", 1)[1])[:-1]
            self.assertGreaterEqual(len(groups), 4)
            shown = [name for group in groups for name in re.findall(r"^  ([a-z]+)\b", group, re.M)]
            self.assertEqual(sorted(shown), sorted(COMMANDS))

    def test_help_is_short_and_the_rest_comes_with_the_command(self):
        self.assertNotIn("--wine10 runs", self.dev("help").stdout)
        self.assertIn("--wine10 runs", self.dev("test", "--help").stdout)
        self.assertLess(self.dev("help").stdout.count("\n"), 60)

    def test_each_function_that_the_scripts_call_is_there(self):
        scripts = [SOURCE / "dev", *sorted((SOURCE / "tools").glob("*.sh"))]
        text = "\n".join(script.read_text(encoding="utf-8") for script in scripts)
        defined = set(re.findall(r"^(\w+)\(\)", text, re.M))
        called = set(re.findall(r"(?:^|[;&|(!]|\bif|\bthen|\bdo) *([a-z0-9]+_[a-z0-9_]+)(?= |;|$|\))(?! *\()", text, re.M))
        self.assertGreater(len(called & defined), 20)
        self.assertEqual({name for name in called - defined if not shutil.which(name)}, set())

    def test_an_unknown_command_is_told(self):
        answer = self.dev("explode")
        self.assertEqual((answer.returncode, answer.stderr.splitlines()[-1]), (1, "dev: unknown command: explode"))


if __name__ == "__main__":
    unittest.main()
