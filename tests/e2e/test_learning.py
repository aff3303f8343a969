"""The twelve macros of docs/learn.md: each is run by the command of the page, on a copy of the samples, and prints what
stands in tests/e2e/expected, which is what the pages show.

./dev itself tells what it would start: its builds and the host are replaced by functions that do nothing or print.
"""
import email
import email.policy
import hashlib
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import example_set_ups
import host

sys.path.insert(0, str(host.SOURCE / "tools"))
import learning_path  # noqa: E402

SIGNED = learning_path.STEPS[-1]
STARTED = """. ./dev help >/dev/null
need_wine() { :; }; command_build() { :; }; need_host() { :; }
host() { printf '%s\\n' "$@"; printf '\\n'; }
command_run "$@" 2>/dev/null"""


def started_by_dev(arguments):
    """What ./dev run hands to the host, a list for each start."""
    printed = subprocess.run(["bash", "-c", STARTED, "dev", *arguments], cwd=host.SOURCE, stdout=subprocess.PIPE, check=True)
    return [start.split("\n") for start in printed.stdout.decode().rstrip("\n").split("\n\n")]


def state(folder):
    return {path: hashlib.sha256(path.read_bytes()).digest() for path in folder.rglob("*") if path.is_file()}


def set_up_of(step):
    return example_set_ups.key_ring if step == SIGNED else example_set_ups.nothing


def run_step(step, folder, set_up):
    """The step in a folder of its own, in which lies a copy of the samples; None where GnuPG is missing."""
    shutil.copytree(host.SOURCE / "samples", folder / "samples")
    with set_up(folder) as provided:
        if provided is None:
            return None
        [start] = started_by_dev(learning_path.arguments_of(step))
        return host.run(*start, folder=folder, environment=provided.environment)


class Steps(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="learning-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def check(self, step):
        """Runs the step, and gives the folder in which it ran."""
        folder = self.folder / str(learning_path.STEPS.index(step) + 1)
        folder.mkdir()
        result = run_step(step, folder, set_up_of(step))
        if result is None:
            self.skipTest("needs gpg")
        out, _, err = learning_path.read(learning_path.expected_file(step)).partition(learning_path.ERROR_MARK)
        self.assertEqual(result, host.Result(out, err, 0))
        original, copy = state(host.SOURCE / "samples"), state(folder / "samples")
        self.assertEqual({path.relative_to(folder / "samples"): digest for path, digest in copy.items()},
                         {path.relative_to(host.SOURCE / "samples"): digest for path, digest in original.items()})
        return folder

    def test_each_prints_what_the_pages_show_and_leaves_the_samples_as_they_are(self):
        for step in learning_path.STEPS[:-1]:
            with self.subTest(step[0]):
                self.check(step)

    def test_a_reader_who_follows_the_steps_sees_what_the_pages_show(self):
        """All in one folder, as in a repository, the tour before them."""
        shutil.copytree(host.SOURCE / "samples", self.folder / "samples")
        for start in [[], *(learning_path.arguments_of(step) for step in learning_path.STEPS[:-1])]:
            results = [host.run(*each, folder=self.folder) for each in started_by_dev(start)]
            if not start:
                continue
            step = next(step for step in learning_path.STEPS if learning_path.arguments_of(step) == start)
            with self.subTest(step[0]):
                out, _, err = learning_path.read(learning_path.expected_file(step)).partition(learning_path.ERROR_MARK)
                self.assertEqual(results, [host.Result(out, err, 0)])

    def test_the_last_one_keeps_a_signed_answer_and_exports_the_mail(self):
        folder = self.check(SIGNED)
        [draft] = (folder / "out/learn/12/drafts").glob("*.eml")
        answer = email.message_from_bytes(draft.read_bytes(), policy=email.policy.default)
        self.assertEqual(answer["To"], "Alice Baker <alice@example.com>")
        self.assertIn("-----BEGIN PGP SIGNATURE-----", answer.get_content())
        self.assertIn("I agree.\n\n> Hello Bob,", answer.get_content().replace("\r\n", "\n"))
        [exported] = (folder / "done").iterdir()
        self.assertEqual(exported.read_bytes(), host.sample("plain-ascii.eml").read_bytes())

    def test_the_last_one_takes_no_other_mail_of_the_folder(self):
        macro, options = SIGNED
        folder = options.replace("samples/mails/plain-ascii.eml", "samples/mails")
        self.assertNotEqual(folder, options)
        result = run_step((macro, folder), self.folder, example_set_ups.key_ring)
        if result is None:
            self.skipTest("needs gpg")
        self.assertEqual(result, host.Result(result.out, "", 0))
        self.assertEqual(result.out.splitlines()[1:], ["exported: 1", "filed: 見積書をお送りします", "left here: 10, done: 1"])
        [exported] = (self.folder / "done").iterdir()
        self.assertEqual(exported.read_bytes(), host.sample("attachments.eml").read_bytes())

    def test_the_last_one_files_nothing_when_the_answer_cannot_be_kept(self):
        (self.folder / "out").write_text("a file where the folder of the drafts would be made")
        result = run_step(SIGNED, self.folder, example_set_ups.key_ring)
        if result is None:
            self.skipTest("needs gpg")
        self.assertRegex(result.out, r"\Anot kept, and nothing filed: .+\n\Z")
        self.assertFalse((self.folder / "done").exists())

    def test_the_last_one_files_nothing_when_the_answer_cannot_be_signed(self):
        shutil.copytree(host.SOURCE / "samples", self.folder / "samples")
        [start] = started_by_dev(learning_path.arguments_of(SIGNED))
        result = host.run(*start, "--english", folder=self.folder)  # without a gpg that Wine can start
        if "gpg.exe" not in result.err:
            self.skipTest("a gpg.exe is installed")
        self.assertEqual((result.out, result.code), ("not signed for bob@example.com, and nothing filed: \n", 0))
        self.assertFalse((self.folder / "done").exists())


class Form(unittest.TestCase):
    def test_there_are_twelve_which_begin_with_the_tour(self):
        macros = [learning_path.macro_of(step) for step in learning_path.STEPS]
        self.assertEqual(len(set(macros)), 12)
        tour = [start[-1] for start in started_by_dev([])]
        self.assertEqual(macros[:len(tour)], tour)

    def test_each_is_short_and_explained_in_both_languages(self):
        for step in learning_path.STEPS:
            with self.subTest(step[0]):
                lines = learning_path.read(host.SOURCE / learning_path.macro_of(step)).splitlines()
                self.assertLessEqual(len(lines), 25)
                comments = [line for line in lines if line.startswith("# ")]
                self.assertTrue(any(re.match(r"# [A-Z]", line) for line in comments))
                self.assertTrue(any(re.search("[ぁ-ん]", line) for line in comments))

    def test_the_pages_show_what_is_run(self):
        for page in learning_path.PAGES:
            with self.subTest(page):
                self.assertTrue(learning_path.documented(page) == learning_path.read(host.SOURCE / page), "run ./dev docs")

    def test_the_line_for_the_archive_says_what_dev_adds(self):
        def pairs(words):
            """Options with their values; macros stay in their order, and of the rest none matters."""
            taken = re.findall(r"(--\S+)(?: (?!--)(\S+))?", " ".join(words))
            return sorted(pair for pair in taken if pair[0] != "--macro"), [pair for pair in taken if pair[0] == "--macro"]

        for step in learning_path.STEPS:
            with self.subTest(step[0]):
                program, *words = learning_path.on_windows(step).replace("\\", "/").split(" ")
                self.assertEqual(program, "small-host/wrenfold.exe")
                [start] = started_by_dev(learning_path.arguments_of(step))
                self.assertEqual(pairs(words), pairs(start))

    def test_several_macros_are_handed_on_in_their_order(self):
        [start] = started_by_dev(["--macro", "a", "--trace", "--macro", "b"])
        self.assertEqual(start, ["--trace", "--mail", "samples/mails", "--read-only", "--drafts", "out/drafts",
                                 "--macro", "a", "--macro", "b"])

    def test_a_folder_of_drafts_that_is_named_is_taken(self):
        [start] = started_by_dev(["--drafts", "mine", "--macro", "a"])
        self.assertEqual(start, ["--mail", "samples/mails", "--read-only", "--drafts", "mine", "--macro", "a"])
        drafts = [start[start.index("--drafts") + 1] for start in started_by_dev([])]
        self.assertEqual(len(set(drafts)), len(drafts), "a macro of the tour lists what another one kept")


def write():
    """Writes what each step prints where nothing is expected yet."""
    for step in learning_path.STEPS:
        if not learning_path.expected_file(step).exists():
            with tempfile.TemporaryDirectory() as folder:
                result = run_step(step, pathlib.Path(folder), set_up_of(step))
            assert result and result.code == 0, result
            learning_path.expected_file(step).write_text(
                result.out + (learning_path.ERROR_MARK + result.err if result.err else ""), encoding="utf-8")


if __name__ == "__main__" and sys.argv[1:2] == ["--write"]:
    sys.exit(write() or 0)

if __name__ == "__main__":
    unittest.main()
