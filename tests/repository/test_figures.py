"""Figures on pages, and the files that they come from."""
import collections
import json
import os
import pathlib
import re
import sys
import unittest

SOURCE = pathlib.Path(os.environ.get("WFINFO_SOURCE", pathlib.Path(__file__).resolve().parents[2]))
sys.path.insert(0, str(SOURCE / "tools"))
import mutants_page  # noqa: E402


def read(name):
    return (SOURCE / name).read_text(encoding="utf-8")


class Figures(unittest.TestCase):
    def test_the_kits_page_counts_the_answers_that_are_kept(self):
        tests = json.loads(read("tests/kit/expected.json"))["tests"]
        outcomes = collections.Counter(one["outcome"] for one in tests.values())
        told = re.search(r"are of (\d+) tests: (\d+) passed, (\d+) failed, (\d+) were skipped", read("docs/test-kit.md"))
        self.assertIsNotNone(told)
        self.assertEqual([int(number) for number in told.groups()],
                         [len(tests), outcomes["passed"], outcomes["failed"], outcomes["skipped"]])

    def test_the_pages_of_the_torture_agree(self):
        failures, functions = re.search(r"^(\d+) failures of (\d+) functions", read("docs/reliability-calls.md"), re.M).groups()
        page = read("docs/reliability.md")
        self.assertIn(f"| [{int(failures):,} failures](#torture) |", page)
        self.assertIn(f"| {int(failures):,} | {functions} | `./dev torture`", page)

    def test_the_monkeys_and_the_fuzzers_sums_are_right(self):
        page = read("docs/reliability.md")
        monkeys = page.split("### Figures")[1].split("\n\n")[1]
        clean = re.findall(r"^\| (?:[\d,]+ each, )?([\d,]+) \|.*\| nothing[^|]*\|$", monkeys, re.M)
        total = sum(int(number.replace(",", "")) for number in clean)
        self.assertIn(f"[{total:,} calls](#figures)", page)
        self.assertIn(f"In all {total:,} calls", page)
        fuzz = re.findall(r"^\| `\w+` \| (\d+) \| ([\d,]+) \|", page.split("## Fuzzing")[1], re.M)
        self.assertEqual(len(fuzz), len([*SOURCE.glob("fuzz/fuzz_*.cpp"), *SOURCE.glob("fuzz/windows/fuzz_*.cpp")]))
        executed = sum(int(number.replace(",", "")) for _, number in fuzz)
        self.assertIn(f"{executed:,} executions in {round(sum(int(seconds) for seconds, _ in fuzz) / 60)} minutes", page)

    def test_every_excuse_of_a_mutant_is_for_a_line_that_there_is(self):
        lines = {}
        for row in read("tools/mutants_explained.tsv").splitlines():
            if not row or row.startswith("#"):
                continue
            file, before, _, why = row.split("\t")
            if file not in lines:
                text = read(file)
                lines[file] = {mutants_page.placed(text, number, line.strip()) for number, line in enumerate(text.split("\n"), 1)}
            self.assertIn(before, lines[file], file)
            self.assertNotEqual(why, "")


if __name__ == "__main__":
    unittest.main()
